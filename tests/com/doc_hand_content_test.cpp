// DocHand: the buffer that holds a document's bytes.
#include "com/doc_hand_fixture.h"
#include "com/foreign.h"

namespace {

using client::Object;
using client::Value;

using DocHandContentTest = WithDocument;

TEST_P(DocHandContentTest, TheContentIsShared) {
  EXPECT_EQ(Value(Content()), Value(Content()));
  EXPECT_OK(Content().Let(L"DataString", {L"text"}));
  EXPECT_EQ(Content().Get(L"DataString"), L"text");
}

TEST_P(DocHandContentTest, ContentOutlivesTheDocument) {
  const Object content = Content();
  document_.Reset();
  EXPECT_OK(content.Let(L"DataString", {L"text"}));
  EXPECT_OK(content.Let(L"ReadOnly", {true}));
  EXPECT_EQ(content.Get(L"DataString"), L"text");
}

TEST_P(DocHandContentTest, EditsOfTheContentMakeADocumentChanged) {
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

TEST_P(DocHandContentTest, EditsOfAViewMakeADocumentChanged) {
  EXPECT_OK(Put("abcdef"));
  const Object view = Content().GetObject(L"Range", {2, 3});
  EXPECT_OK(document_.Let(L"Changed", {false}));
  Listen();
  EXPECT_OK(view.Let(L"DataString", {L"-"}));
  EXPECT_EQ((Events{StatusChange(16), ContentChange()}), Heard());
  EXPECT_EQ(Bytes(), "a-ef");
}

TEST_P(DocHandContentTest, AnotherContentIsHeardInsteadOfTheFirst) {
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

TEST_P(DocHandContentTest, OneContentMayServeTwoDocuments) {
  const Object other = Create(CLSID_DocHand);
  EXPECT_OK(other.Set(L"Content", {Content()}));
  EXPECT_OK(other.Let(L"Changed", {false}));
  EXPECT_OK(Content().Let(L"DataString", {L"text"}));
  EXPECT_EQ(document_.Get(L"Changed"), true);
  EXPECT_EQ(other.Get(L"Changed"), true);
}

TEST_P(DocHandContentTest, ContentIsNotProtectedForOneOfTwoDocuments) {
  folder_.File(L"a.txt", "text");
  const Object other = Create(CLSID_DocHand);
  EXPECT_OK(other.Set(L"Content", {Content()}));
  Listen();
  EXPECT_ZEP_ERROR(Open(path_, true), zepErrCallRefused, L"ZepVariant");
  EXPECT_EQ(Joined({Naming(path_), {StatusChange(1)}}), Heard());
  EXPECT_EQ(Status(), kReadOnly);
  EXPECT_EQ(Content().Get(L"ReadOnly"), false);
}

TEST_P(DocHandContentTest, AReadOnlyContentStaysSo) {
  const Object content = Create(CLSID_ZepVariant);
  EXPECT_OK(content.Let(L"ReadOnly", {true}));
  EXPECT_OK(document_.Set(L"Content", {content}));
  EXPECT_EQ(content.Get(L"ReadOnly"), true);
  EXPECT_EQ(Status(), kChanged);
  EXPECT_OK(document_.Call(L"NewFile"));  // makes it what the document is
  EXPECT_EQ(content.Get(L"ReadOnly"), false);
}

TEST_P(DocHandContentTest, ContentMustBeABuffer) {
  Listen();
  EXPECT_ZEP_ERROR(document_.Set(L"Content", {Value::Nothing()}), zepErrBadPropValue, L"DocHand");
  foreign::ZepVariant other;
  EXPECT_RUNTIME_ERROR(document_.Set(L"Content", {Value(&other)}), 13, L"Type mismatch");
  EXPECT_EQ(Events{}, Heard());
  ExpectFlags(false, false, false, false);
}

TEST_P(DocHandContentTest, ContentOfAReadOnlyDocumentIsNotReplaced) {
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

TEST_P(DocHandContentTest, TheContentIsReadOnlyAsTheDocumentIs) {
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

RUN_IN_BOTH_BINDINGS(DocHandContentTest);

}  // namespace
