// DocHand: what a document is and tells. How it moves bytes is in doc_hand_transfer_test.cpp.
#include "com/doc_hand_fixture.h"

namespace {

using client::Object;
using client::Outcome;
using client::Sink;
using client::Value;

constexpr wchar_t kFilters[] =
    L"Alle Dateien (*.*)|*.*|Textdateien (*.txt)|*.txt|Protokolldateien (*.log)|*.log|"
    L"Initialisierungsdateien (*.ini)|*.ini|DOS Batchdateien (*.bat)|*.bat";

class DocHandTest : public WithDocument {
 protected:
  Outcome Begin() const { return document_.Call(L"NewFile"); }
  std::wstring Title() const {
    const Outcome title = document_.Get(L"FileTitle");
    EXPECT_OK(title);
    return title.ok() ? std::wstring(title.value.raw().bstrVal) : std::wstring();
  }
  /// The number behind the title of a new document.
  int Untitled() const {
    const std::wstring title = Title(), word = L"Unbenannt";
    EXPECT_TRUE(title.starts_with(word)) << Value(title);
    return std::stoi(title.substr(word.size()));
  }
  void ExpectFlags(bool read_only, bool open, bool error, bool changed) const {
    EXPECT_EQ(document_.Get(L"ReadOnly"), read_only);
    EXPECT_EQ(document_.Get(L"Opened"), open);
    EXPECT_EQ(document_.Get(L"OpenErr"), error);
    EXPECT_EQ(document_.Get(L"Changed"), changed);
    EXPECT_EQ(Status(),
              (read_only ? 1 : 0) + (open ? 2 : 0) + (error ? 4 : 0) + (changed ? 16 : 0));
  }
};

TEST_P(DocHandTest, ANewDocumentIsEmpty) {
  ExpectFlags(false, false, false, false);
  EXPECT_EQ(document_.Get(L"FileName"), L"");
  EXPECT_EQ(document_.Get(L"FileTitle"), L"");
  EXPECT_EQ(document_.Get(L"Filter"), kFilters);
  EXPECT_EQ(document_.Get(L"FilterIndex"), 2);
  const Object content = Content();
  EXPECT_EQ(content.Get(L"ByteLength"), 0);
  EXPECT_EQ(content.Get(L"ReadOnly"), false);
  EXPECT_EQ(content.Get(L"StringType"), static_cast<int>(zepSTAnsi));
}

TEST_P(DocHandTest, TheContentIsShared) {
  EXPECT_EQ(Value(Content()), Value(Content()));
  EXPECT_OK(Content().Let(L"DataString", {L"text"}));
  EXPECT_EQ(Content().Get(L"DataString"), L"text");
}

TEST_P(DocHandTest, ContentOutlivesTheDocument) {
  const Object content = Content();
  document_.Reset();
  EXPECT_OK(content.Let(L"DataString", {L"text"}));
  EXPECT_OK(content.Let(L"ReadOnly", {true}));
  EXPECT_EQ(content.Get(L"DataString"), L"text");
}

TEST_P(DocHandTest, AssigningChangedTellsOfTheContent) {
  Listen();
  EXPECT_OK(document_.Let(L"Changed", {false}));
  EXPECT_EQ(Events{ContentChange()}, Heard());
  EXPECT_OK(document_.Let(L"Changed", {true}));
  EXPECT_EQ((Events{StatusChange(16), ContentChange()}), Heard());
  ExpectFlags(false, false, false, true);
  EXPECT_OK(document_.Let(L"Changed", {true}));
  EXPECT_EQ(Events{ContentChange()}, Heard());
  EXPECT_OK(document_.Let(L"Changed", {false}));
  EXPECT_EQ((Events{StatusChange(0), ContentChange()}), Heard());
  ExpectFlags(false, false, false, false);
}

TEST_P(DocHandTest, EditsOfTheContentMakeADocumentChanged) {
  Listen();
  const Object content = Content();
  EXPECT_OK(content.Let(L"DataString", {L"text"}));
  EXPECT_EQ((Events{StatusChange(16), ContentChange()}), Heard());
  EXPECT_OK(content.Let(L"DataByte", {9, 1}));
  EXPECT_OK(content.Let(L"DataString", {L"text"}));
  EXPECT_EQ((Events{ContentChange(), ContentChange()}), Heard());
  const Object view = content.GetObject(L"Range", {1, 2});
  EXPECT_EQ(Events{}, Heard());
  EXPECT_OK(view.Let(L"DataString", {L"T"}));
  EXPECT_EQ(Events{ContentChange()}, Heard());
  EXPECT_OK(content.Let(L"StringType", {static_cast<int>(zepSTUnicode)}));
  EXPECT_EQ(Events{}, Heard());
  EXPECT_EQ(Status(), kChanged);
}

TEST_P(DocHandTest, EditsOfAViewMakeADocumentChanged) {
  EXPECT_OK(Put("abcdef"));
  const Object view = Content().GetObject(L"Range", {2, 3});
  EXPECT_OK(document_.Let(L"Changed", {false}));
  Listen();
  EXPECT_OK(view.Let(L"DataString", {L"-"}));
  EXPECT_EQ((Events{StatusChange(16), ContentChange()}), Heard());
  EXPECT_EQ(Bytes(), "a-ef");
}

TEST_P(DocHandTest, AnotherContentIsHeardInsteadOfTheFirst) {
  const Object first = Content(), second = Create(CLSID_ZepVariant);
  EXPECT_OK(second.Let(L"DataString", {L"second"}));
  Listen();
  EXPECT_OK(document_.Set(L"Content", {second}));
  EXPECT_EQ((Events{StatusChange(16), ContentChange()}), Heard());
  EXPECT_EQ(Value(second), Value(Content()));
  EXPECT_OK(document_.Let(L"Changed", {false}));
  Heard();
  EXPECT_OK(first.Let(L"DataString", {L"first"}));
  EXPECT_EQ(Events{}, Heard());
  EXPECT_OK(second.Let(L"DataString", {L"edited"}));
  EXPECT_EQ((Events{StatusChange(16), ContentChange()}), Heard());
  EXPECT_OK(document_.Set(L"Content", {second}));
  EXPECT_EQ(Events{ContentChange()}, Heard());
  EXPECT_OK(second.Let(L"DataString", {L"once"}));
  EXPECT_EQ(Events{ContentChange()}, Heard());
  EXPECT_OK(first.Let(L"ReadOnly", {true}));
}

TEST_P(DocHandTest, OneContentMayServeTwoDocuments) {
  const Object other = Create(CLSID_DocHand);
  EXPECT_OK(other.Set(L"Content", {Content()}));
  EXPECT_OK(other.Let(L"Changed", {false}));
  EXPECT_OK(Content().Let(L"DataString", {L"text"}));
  EXPECT_EQ(document_.Get(L"Changed"), true);
  EXPECT_EQ(other.Get(L"Changed"), true);
}

TEST_P(DocHandTest, AReadOnlyContentStaysSo) {
  const Object content = Create(CLSID_ZepVariant);
  EXPECT_OK(content.Let(L"ReadOnly", {true}));
  EXPECT_OK(document_.Set(L"Content", {content}));
  EXPECT_EQ(content.Get(L"ReadOnly"), true);
  EXPECT_EQ(Status(), kChanged);
  EXPECT_OK(Begin());  // makes it what the document is
  EXPECT_EQ(content.Get(L"ReadOnly"), false);
}

TEST_P(DocHandTest, ContentMustBeABuffer) {
  Listen();
  EXPECT_ZEP_ERROR(document_.Set(L"Content", {Value::Nothing()}), zepErrBadPropValue, L"DocHand");
  EXPECT_EQ(Events{}, Heard());
  ExpectFlags(false, false, false, false);
}

TEST_P(DocHandTest, ContentOfAReadOnlyDocumentIsNotReplaced) {
  folder_.File(L"a.txt", "text");
  EXPECT_OK(Open(path_, true));
  Listen();
  const Object content = Content();
  for (const Value& value : {Value(Create(CLSID_ZepVariant)), Value::Nothing()}) {
    EXPECT_ZEP_ERROR(document_.Set(L"Content", {value}), zepErrReadOnly, L"DocHand");
  }
  EXPECT_EQ(Value(content), Value(Content()));
  EXPECT_EQ(Events{}, Heard());
}

TEST_P(DocHandTest, TheContentIsReadOnlyAsTheDocumentIs) {
  folder_.File(L"a.txt", "text");
  const Object content = Content();
  EXPECT_ZEP_ERROR(content.Let(L"ReadOnly", {true}), zepErrCallRefused, L"ZepVariant");
  EXPECT_OK(content.Let(L"ReadOnly", {false}));
  EXPECT_OK(Open(path_, true));
  EXPECT_EQ(content.Get(L"ReadOnly"), true);
  EXPECT_ZEP_ERROR(content.Let(L"ReadOnly", {false}), zepErrCallRefused, L"ZepVariant");
  EXPECT_OK(content.Let(L"ReadOnly", {true}));
  EXPECT_ZEP_ERROR(content.Let(L"DataString", {L"x"}), zepErrReadOnly, L"ZepVariant");
  EXPECT_OK(Close());
  EXPECT_EQ(content.Get(L"ReadOnly"), false);
  EXPECT_OK(content.Let(L"DataString", {L"x"}));
}

TEST_P(DocHandTest, AReadOnlyDocumentIsNotSaved) {
  folder_.File(L"a.txt", "text");
  EXPECT_OK(Open(path_, true));
  Listen();
  EXPECT_ZEP_ERROR(Save(), zepErrReadOnly, L"DocHand");
  EXPECT_ZEP_ERROR(SaveAs(folder_ / L"b.txt"), zepErrReadOnly, L"DocHand");
  EXPECT_ZEP_ERROR(document_.Call(L"SaveAsByCdl"), zepErrReadOnly, L"DocHand");
  EXPECT_ZEP_ERROR(document_.Call(L"SaveAsByCdl", {Value::Null()}), zepErrReadOnly, L"DocHand");
  EXPECT_EQ(Events{}, Heard());
  EXPECT_FALSE(folder_.Has(L"b.txt"));
  ExpectFlags(true, true, false, false);
}

TEST_P(DocHandTest, WithoutAFileNothingIsTransferred) {
  EXPECT_OK(Put("text"));
  Listen();
  EXPECT_ZEP_ERROR(Close(), zepErrBadCallContext, L"DocHand");
  EXPECT_ZEP_ERROR(Save(), zepErrBadCallContext, L"DocHand");
  EXPECT_ZEP_ERROR(Update(), zepErrBadCallContext, L"DocHand");
  EXPECT_EQ(Events{}, Heard());
  EXPECT_EQ(Bytes(), "text");
  ExpectFlags(false, false, false, true);
}

TEST_P(DocHandTest, TitlesAreTold) {
  Listen();
  EXPECT_OK(document_.Let(L"FileTitle", {L"a title"}));
  EXPECT_OK(document_.Let(L"FileTitle", {L"a title"}));
  EXPECT_EQ((Events{FileTitleChanged(L"a title"), FileTitleChanged(L"a title")}), Heard());
  EXPECT_EQ(document_.Get(L"FileTitle"), L"a title");
  EXPECT_EQ(document_.Get(L"FileName"), L"");
}

TEST_P(DocHandTest, FiltersAreThoseOfTheDialog) {
  EXPECT_OK(document_.Let(L"Filter", {L"One|*.1|Two|*.2"}));
  EXPECT_EQ(document_.Get(L"Filter"), L"One|*.1|Two|*.2");
  EXPECT_ZEP_ERROR(document_.Let(L"Filter", {L"One"}), zepErrBadPropValue, L"FileDialog");
  EXPECT_EQ(document_.Get(L"Filter"), L"One|*.1|Two|*.2");
  EXPECT_OK(document_.Let(L"FilterIndex", {32767}));
  EXPECT_EQ(document_.Get(L"FilterIndex"), 32767);
  EXPECT_ZEP_ERROR(document_.Let(L"FilterIndex", {32768}), zepErrBadPropValue, L"FileDialog");
  EXPECT_EQ(document_.Get(L"FilterIndex"), 32767);
}

TEST_P(DocHandTest, ANewFileEmptiesAndNames) {
  EXPECT_OK(Put("text"));
  EXPECT_OK(document_.Let(L"Changed", {false}));
  Listen();
  EXPECT_OK(Begin());
  const std::wstring title = Title();
  EXPECT_EQ((Events{StatusChange(16), ContentChange(), FileTitleChanged(title), StatusChange(0),
                    ContentChange(), NewFile()}),
            Heard());
  EXPECT_EQ(Bytes(), "");
  ExpectFlags(false, false, false, false);
  EXPECT_OK(Put("more"));
  Heard();
  EXPECT_OK(Begin());
  EXPECT_EQ((Events{ContentChange(), FileTitleChanged(Title()), StatusChange(0), ContentChange(),
                    NewFile()}),
            Heard());
}

TEST_P(DocHandTest, NewFilesAreCountedTogether) {
  EXPECT_OK(Begin());
  const int first = Untitled();
  const Object kept = std::exchange(document_, Create(CLSID_DocHand));
  EXPECT_OK(Begin());
  EXPECT_EQ(first + 1, Untitled());
  document_ = kept;
  EXPECT_EQ(first, Untitled());
  EXPECT_OK(Begin());
  EXPECT_EQ(first + 2, Untitled());
}

TEST_P(DocHandTest, ANewFileClosesTheFileButKeepsItsName) {
  folder_.File(L"a.txt", "text");
  EXPECT_OK(Open(path_, true));
  Listen();
  EXPECT_OK(Begin());
  EXPECT_EQ(
      (Events{StatusChange(1), StatusChange(0), FileClose(), StatusChange(16), ContentChange(),
              FileTitleChanged(Title()), StatusChange(0), ContentChange(), NewFile()}),
      Heard());
  EXPECT_EQ(document_.Get(L"FileName"), path_);
  EXPECT_EQ(Content().Get(L"ReadOnly"), false);
  EXPECT_ZEP_ERROR(Save(), zepErrBadCallContext, L"DocHand");
  EXPECT_EQ(folder_.Read(L"a.txt"), "text");
}

TEST_P(DocHandTest, ClosingKeepsNameTitleAndContent) {
  folder_.File(L"a.txt", "text");
  EXPECT_OK(Open(path_));
  EXPECT_OK(Put("changed"));
  Listen();
  EXPECT_OK(Close());
  EXPECT_EQ((Events{StatusChange(16), FileClose()}), Heard());
  EXPECT_EQ(document_.Get(L"FileName"), path_);
  EXPECT_EQ(document_.Get(L"FileTitle"), L"a.txt");
  EXPECT_EQ(Bytes(), "changed");
  ExpectFlags(false, false, false, true);
  EXPECT_EQ(folder_.Read(L"a.txt"), "text");
  EXPECT_ZEP_ERROR(Close(), zepErrBadCallContext, L"DocHand");
  EXPECT_EQ(Events{}, Heard());
}

TEST_P(DocHandTest, TheTitleEndsBeforeAQuote) {
  for (const auto& [name, title] : {std::pair{LR"(missing\folder\a.txt")", L"a.txt"},
                                    {LR"(missing\"a.txt"")", LR"("a.txt")"},
                                    {LR"(missing\)", L""},
                                    {LR"(missing\")", L""},
                                    {L"missing/a.txt", L"missing/a.txt"}}) {
    const std::wstring path = name == std::wstring(L"missing/a.txt") ? name : folder_ / name;
    EXPECT_ZEP_ERROR(Open(path, true), zepErrOpenFile, L"DocHand");
    EXPECT_EQ(document_.Get(L"FileName"), path);
    EXPECT_EQ(document_.Get(L"FileTitle"), title);
  }
}

TEST_P(DocHandTest, AFailedOpeningIsAState) {
  folder_.File(L"a.txt", "text");
  const std::wstring missing = folder_ / L"missing.txt";
  Listen();
  EXPECT_ZEP_ERROR(Open(missing, true), zepErrOpenFile, L"DocHand");
  EXPECT_EQ((Events{FileNameChange(missing), FileTitleChanged(missing), StatusChange(1),
                    StatusChange(5)}),
            Heard());
  ExpectFlags(true, false, true, false);
  EXPECT_EQ(Content().Get(L"ReadOnly"), true);
  EXPECT_EQ(document_.Get(L"FileTitle"), L"missing.txt");
  EXPECT_FALSE(folder_.Has(L"missing.txt"));
  EXPECT_ZEP_ERROR(Save(), zepErrReadOnly, L"DocHand");
  EXPECT_ZEP_ERROR(Update(), zepErrBadCallContext, L"DocHand");
  EXPECT_EQ(Events{}, Heard());
  // That there was an error is dropped in silence and told anew.
  EXPECT_ZEP_ERROR(Open(missing, true), zepErrOpenFile, L"DocHand");
  EXPECT_EQ((Events{FileNameChange(missing), FileTitleChanged(missing), StatusChange(5)}), Heard());
  EXPECT_OK(Open(path_));
  EXPECT_EQ((Events{FileNameChange(path_), FileTitleChanged(path_), StatusChange(0),
                    StatusChange(2), PartlyRead(4, 0, 0), ContentChange(), PartlyRead(4, 4, 100),
                    FileRead(), FileOpen(path_)}),
            Heard());
  ExpectFlags(false, true, false, false);
}

TEST_P(DocHandTest, OnlyOpeningForgetsAnError) {
  EXPECT_ZEP_ERROR(Open(folder_ / L"missing\\a.txt"), zepErrOpenFile, L"DocHand");
  EXPECT_EQ(Status(), kOpenErr);
  EXPECT_OK(Begin());
  EXPECT_EQ(Status(), kOpenErr);
  EXPECT_OK(SaveAs(path_));
  EXPECT_EQ(Status(), kOpen | kOpenErr);
  EXPECT_OK(Close());
  EXPECT_EQ(Status(), kOpenErr);
  EXPECT_OK(Open(path_));
  EXPECT_EQ(Status(), kOpen);
}

TEST_P(DocHandTest, AFailedOpeningClosesTheFileBefore) {
  folder_.File(L"a.txt", "text");
  EXPECT_OK(Open(path_, true));
  Listen();
  const std::wstring missing = folder_ / L"missing\\b.txt";
  EXPECT_ZEP_ERROR(Open(missing), zepErrOpenFile, L"DocHand");
  EXPECT_EQ((Events{StatusChange(1), StatusChange(0), FileClose(), FileNameChange(missing),
                    FileTitleChanged(missing), StatusChange(4)}),
            Heard());
  EXPECT_EQ(Bytes(), "text");
}

TEST_P(DocHandTest, AFailedSavingUnderANameIsAState) {
  EXPECT_OK(Put("text"));
  Listen();
  const std::wstring missing = folder_ / L"missing\\a.txt";
  EXPECT_ZEP_ERROR(SaveAs(missing), zepErrOpenFile, L"DocHand");
  EXPECT_EQ((Events{FileNameChange(missing), FileTitleChanged(missing), StatusChange(20)}),
            Heard());
  EXPECT_EQ(Bytes(), "text");
}

TEST_P(DocHandTest, NamesHoldNoNul) {
  folder_.File(L"a.txt", "text");
  EXPECT_OK(Open(path_));
  Listen();
  for (const std::wstring& name :
       {path_ + std::wstring(L"\0", 1), path_ + std::wstring(L"\0x", 2), std::wstring(L"\0", 1)}) {
    EXPECT_RUNTIME_ERROR(Open(name), 52, L"Bad file name or number");
    EXPECT_RUNTIME_ERROR(Open(name, true), 52, L"Bad file name or number");
    EXPECT_RUNTIME_ERROR(SaveAs(name), 52, L"Bad file name or number");
  }
  EXPECT_EQ(Events{}, Heard());
  ExpectFlags(false, true, false, false);
  EXPECT_EQ(document_.Get(L"FileName"), path_);
}

/// The list of an empty name has no last part, and what fails there leaves the events frozen.
TEST_P(DocHandTest, AnEmptyNameFreezesTheEvents) {
  folder_.File(L"a.txt", Pattern(2048));
  EXPECT_OK(document_.Let(L"Changed", {true}));
  Listen();
  EXPECT_ZEP_ERROR(Open(L""), zepErrIndexOutOfRange, L"List");
  EXPECT_OK(Open(path_));
  EXPECT_EQ(Bytes(), Pattern(2048));
  ExpectFlags(false, true, false, false);
  EXPECT_OK(Put("text"));
  ExpectFlags(false, true, false, true);
  EXPECT_OK(Save());
  ExpectFlags(false, true, false, false);
  EXPECT_OK(SaveAs(folder_ / L"b.txt"));
  EXPECT_OK(Update());
  EXPECT_OK(document_.Let(L"FileTitle", {L"title"}));
  EXPECT_EQ(document_.Get(L"FileTitle"), L"title");
  EXPECT_OK(Close());
  EXPECT_OK(Begin());
  EXPECT_EQ(Events{}, Heard());
  EXPECT_EQ(folder_.Read(L"a.txt"), "text");
  EXPECT_EQ(folder_.Read(L"b.txt"), "text");
}

TEST_P(DocHandTest, NamesForTheDialogAreTexts) {
  Listen();
  const Value bad = Value::Null();
  for (const auto& outcome :
       {document_.Call(L"OpenFileByCdl", {bad}), document_.Call(L"OpenFileByCdl", {L"", bad}),
        document_.Call(L"OpenFileByCdl", {Value::Missing(), Value::Nothing()}),
        document_.Call(L"SaveAsByCdl", {bad}), document_.Call(L"SaveAsByCdl", {L"", bad}),
        document_.Call(L"SaveAsByCdl", {Value::Missing(), Value::Missing(), bad})}) {
    EXPECT_ZEP_ERROR(outcome, zepErrBadParam, L"DocHand");
  }
  EXPECT_EQ(Events{}, Heard());
  ExpectFlags(false, false, false, false);
}

RUN_IN_BOTH_BINDINGS(DocHandTest);

}  // namespace
