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

TEST_P(DocHandTest, ANewFileOfAnEmptyDocumentIsToldAsAny) {
  Listen();
  EXPECT_OK(Begin());
  EXPECT_EQ((Events{StatusChange(16), ContentChange(), FileTitleChanged(Title()), StatusChange(0),
                    ContentChange(), NewFile()}),
            Heard());
}

TEST_P(DocHandTest, ANewFileAfterAFailedOpeningIsWritable) {
  EXPECT_ZEP_ERROR(Open(folder_ / L"missing", true), zepErrOpenFile, L"DocHand");
  Listen();
  EXPECT_OK(Begin());
  EXPECT_EQ((Events{StatusChange(4), StatusChange(20), ContentChange(), FileTitleChanged(Title()),
                    StatusChange(4), ContentChange(), NewFile()}),
            Heard());
  ExpectFlags(false, false, true, false);
  EXPECT_EQ(Content().Get(L"ReadOnly"), false);
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
