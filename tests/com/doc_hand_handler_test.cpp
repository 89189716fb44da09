// DocHand: handlers of its events that change what is being done.
#include "com/doc_hand_fixture.h"

namespace {

using client::Object;
using client::Sink;
using client::Value;

class DocHandHandlerTest : public WithDocument {
 protected:
  /// Acts on one event, the first time it is heard.
  void On(const Event& event, std::function<void()> action) {
    Listen([=, done = false](const Event& heard) mutable {
      if (heard == event && !std::exchange(done, true)) action();
      return S_OK;
    });
  }
};

TEST_P(DocHandHandlerTest, ContentThatIsReplacedWhileReadingIsNotRead) {
  folder_.File(L"a.txt", Pattern(2048));
  const Object first = Content(), second = Create(CLSID_ZepVariant);
  EXPECT_OK(Put("first"));
  EXPECT_OK(document_.Let(L"Changed", {false}));
  On(PartlyRead(2048, 1024, 50), [&] { EXPECT_OK(document_.Set(L"Content", {second})); });
  EXPECT_OK(Open(path_));
  // While it is read, a document does not say that the content changes.
  EXPECT_EQ(Joined({Naming(path_),
                    {StatusChange(2), PartlyRead(2048, 0, 0), PartlyRead(2048, 1024, 50),
                     StatusChange(18), PartlyRead(2048, 2048, 100), StatusChange(2),
                     ContentChange(), PartlyRead(2048, 2048, 100), FileRead(), FileOpen(path_)}}),
            Heard());
  EXPECT_EQ(first.Get(L"DataString"), L"first");
  EXPECT_EQ(Value(second), Value(Content()));
  EXPECT_EQ(Bytes(), Pattern(2048));
}

TEST_P(DocHandHandlerTest, EditsWhileReadingAreLost) {
  folder_.File(L"a.txt", Pattern(1024));
  On(PartlyRead(1024, 1024, 100), [&] { EXPECT_OK(Put("edited")); });
  EXPECT_OK(Open(path_));
  EXPECT_EQ(Joined({Naming(path_),
                    {StatusChange(2), PartlyRead(1024, 0, 0), PartlyRead(1024, 1024, 100),
                     ContentChange(), PartlyRead(1024, 1024, 100), FileRead(), FileOpen(path_)}}),
            Heard());
  EXPECT_EQ(Bytes(), Pattern(1024));
}

TEST_P(DocHandHandlerTest, EditsAfterReadingStay) {
  folder_.File(L"a.txt", Pattern(1024));
  On(FileRead(), [&] { EXPECT_OK(Put("edited")); });
  EXPECT_OK(Open(path_));
  EXPECT_EQ(Joined({Naming(path_),
                    {StatusChange(2), PartlyRead(1024, 0, 0), PartlyRead(1024, 1024, 100),
                     ContentChange(), PartlyRead(1024, 1024, 100), FileRead(), StatusChange(18),
                     ContentChange(), FileOpen(path_)}}),
            Heard());
  EXPECT_EQ(Bytes(), "edited");
}

TEST_P(DocHandHandlerTest, EditsAtTheStartOfASavingAreSaved) {
  EXPECT_OK(Open(path_));
  EXPECT_OK(Put("first"));
  On(PartlyWritten(5, 0, 0), [&] { EXPECT_OK(Put("other and longer")); });
  EXPECT_OK(Save());
  EXPECT_EQ((Events{PartlyWritten(5, 0, 0), StatusChange(2), ContentChange(),
                    PartlyWritten(5, 5, 100), FileSaved()}),
            Heard());
  EXPECT_EQ(folder_.Read(L"a.txt"), "other");  // as many as there were
  EXPECT_EQ(Bytes(), "other and longer");
}

TEST_P(DocHandHandlerTest, ContentCutAtTheStartOfASavingEndsIt) {
  EXPECT_OK(Open(path_));
  EXPECT_OK(Put("first"));
  On(PartlyWritten(5, 0, 0), [&] { EXPECT_OK(Put("cut")); });
  EXPECT_RUNTIME_ERROR(Save(), 9, L"Subscript out of range");
  EXPECT_EQ(Events{PartlyWritten(5, 0, 0)}, Heard());
  EXPECT_EQ(folder_.Read(L"a.txt"), "cut");
  EXPECT_EQ(Status(), kOpen | kChanged);
}

TEST_P(DocHandHandlerTest, EditsWhileSavingAreNotSaved) {
  EXPECT_OK(Open(path_));
  EXPECT_OK(Put(Pattern(2048)));
  On(PartlyWritten(2048, 1024, 50), [&] { EXPECT_OK(Put("edited")); });
  EXPECT_OK(Save());
  EXPECT_EQ((Events{PartlyWritten(2048, 0, 0), PartlyWritten(2048, 1024, 50),
                    PartlyWritten(2048, 2048, 100), StatusChange(2), ContentChange(),
                    PartlyWritten(2048, 2048, 100), FileSaved()}),
            Heard());
  EXPECT_EQ(folder_.Read(L"a.txt"), Pattern(2048));
  EXPECT_EQ(Bytes(), "edited");
  EXPECT_EQ(Status(), kOpen);
}

TEST_P(DocHandHandlerTest, ClosingWhileReadingEndsIt) {
  folder_.File(L"a.txt", Pattern(2048));
  On(PartlyRead(2048, 1024, 50), [&] { EXPECT_OK(Close()); });
  EXPECT_RUNTIME_ERROR(Open(path_), 52, L"Bad file name or number");
  EXPECT_EQ(Joined({Naming(path_),
                    {StatusChange(2), PartlyRead(2048, 0, 0), PartlyRead(2048, 1024, 50),
                     StatusChange(0), FileClose()}}),
            Heard());
  EXPECT_EQ(Status(), 0);
  EXPECT_EQ(Bytes(), "");
}

TEST_P(DocHandHandlerTest, ClosingAtTheLastReportKeepsWhatWasRead) {
  folder_.File(L"a.txt", Pattern(1024));
  On(PartlyRead(1024, 1024, 100), [&] { EXPECT_OK(Close()); });
  EXPECT_OK(Open(path_));
  EXPECT_EQ(Bytes(), Pattern(1024));
  EXPECT_EQ(Status(), 0);
}

TEST_P(DocHandHandlerTest, ClosingWhileSavingEndsIt) {
  EXPECT_OK(Open(path_));
  EXPECT_OK(Put(Pattern(2048)));
  On(PartlyWritten(2048, 1024, 50), [&] { EXPECT_OK(Close()); });
  EXPECT_RUNTIME_ERROR(Save(), 52, L"Bad file name or number");
  EXPECT_EQ((Events{PartlyWritten(2048, 0, 0), PartlyWritten(2048, 1024, 50), StatusChange(16),
                    FileClose()}),
            Heard());
  EXPECT_EQ(folder_.Read(L"a.txt"), Pattern(1024));
  EXPECT_EQ(Status(), kChanged);
}

TEST_P(DocHandHandlerTest, SavingWhileReadingLeavesZeros) {
  folder_.File(L"a.txt", Pattern(1025));
  EXPECT_OK(Put("content"));
  On(PartlyRead(1025, 1024, 99.9024390f), [&] { EXPECT_OK(Save()); });
  EXPECT_OK(Open(path_));
  EXPECT_EQ(Bytes(), Pattern(1024) + std::string(1, '\0'));
  EXPECT_EQ(folder_.Read(L"a.txt"), "content");
}

TEST_P(DocHandHandlerTest, ReadingWhileReading) {
  folder_.File(L"a.txt", Pattern(1025));
  On(PartlyRead(1025, 1024, 99.9024390f), [&] { EXPECT_OK(Update()); });
  EXPECT_OK(Open(path_));
  EXPECT_EQ(Joined({Naming(path_),
                    {StatusChange(2), PartlyRead(1025, 0, 0), PartlyRead(1025, 1024, 99.9024390f),
                     // the inner one, which is an internal operation still
                     PartlyRead(1025, 0, 0), PartlyRead(1025, 1024, 99.9024390f),
                     PartlyRead(1025, 1025, 100), FileRead(),
                     // the outer one
                     ContentChange(), PartlyRead(1025, 1025, 100), FileRead(), FileOpen(path_)}}),
            Heard());
  EXPECT_EQ(Bytes(), Pattern(1025));
}

TEST_P(DocHandHandlerTest, OpeningAnotherFileWhileReading) {
  folder_.File(L"a.txt", Pattern(1500));
  const std::wstring other = folder_.File(L"b.txt", std::string(1100, 'b'));
  On(PartlyRead(1500, 1024, 68.2666667f), [&] { EXPECT_OK(Open(other)); });
  EXPECT_OK(Open(path_));
  EXPECT_EQ(Bytes(), Pattern(1024) + std::string(76, 'b') + std::string(400, '\0'));
  EXPECT_EQ(document_.Get(L"FileName"), other);
  EXPECT_EQ(FileOpen(path_), Heard().back());
  EXPECT_EQ(Status(), kOpen);
}

TEST_P(DocHandHandlerTest, ReopeningAtTheClosing) {
  folder_.File(L"a.txt", "a");
  const std::wstring other = folder_.File(L"b.txt", "b");
  EXPECT_OK(Open(path_));
  On(FileClose(), [&] { EXPECT_OK(Open(path_)); });
  EXPECT_OK(Open(other));
  EXPECT_EQ(document_.Get(L"FileName"), other);
  EXPECT_EQ(Bytes(), "b");
}

TEST_P(DocHandHandlerTest, ProtectedContentEndsAReading) {
  folder_.File(L"a.txt", Pattern(1024));
  EXPECT_OK(Put("old"));
  On(PartlyRead(1024, 1024, 100), [&] { EXPECT_OK(Content().Let(L"ReadOnly", {true})); });
  EXPECT_ZEP_ERROR(Open(path_), zepErrReadOnly, L"ZepVariant");
  EXPECT_EQ(Bytes(), "old");
  EXPECT_EQ(Status(), kOpen | kChanged);
}

TEST_P(DocHandHandlerTest, RefusedProtectionEndsAnOpening) {
  folder_.File(L"a.txt", "text");
  const auto content = Sink::Connect(Content().get(), DIID___ZepVariant, [](const Event& event) {
    if (event.id == 1) *event.arguments[1].raw().pboolVal = VARIANT_TRUE;
    return S_OK;
  });
  Listen();
  EXPECT_ZEP_ERROR(Open(path_, true), zepErrCallRefused, L"ZepVariant");
  EXPECT_EQ(Joined({Naming(path_), {StatusChange(1)}}), Heard());
  EXPECT_EQ(Status(), kReadOnly);
  EXPECT_EQ(Content().Get(L"ReadOnly"), false);
  EXPECT_EQ(1u, content->events().size());
}

TEST_P(DocHandHandlerTest, ReleasedProtectionIsAskedForTwice) {
  folder_.File(L"a.txt", "text");
  EXPECT_OK(Open(path_, true));
  int asked = 0, refused = 1;
  const auto content = Sink::Connect(Content().get(), DIID___ZepVariant, [&](const Event& event) {
    if (event.id == 1 && ++asked <= refused) *event.arguments[1].raw().pboolVal = VARIANT_TRUE;
    return S_OK;
  });
  EXPECT_OK(Update());
  EXPECT_EQ(3, asked);  // refused, taken off, put back
  EXPECT_EQ(Content().Get(L"ReadOnly"), true);
  asked = 0, refused = 2;
  Listen();
  EXPECT_ZEP_ERROR(Update(), zepErrCallRefused, L"ZepVariant");
  EXPECT_EQ(2, asked);
  EXPECT_EQ(Events{}, Heard());
  EXPECT_EQ(Bytes(), "text");
  content->Disconnect();  // closing the document takes protection off too
}

TEST_P(DocHandHandlerTest, WhatIsAssignedInAHandlerStays) {
  folder_.File(L"a.txt", "text");
  On(FileOpen(path_), [&] {
    EXPECT_OK(document_.Let(L"FileTitle", {L"title"}));
    EXPECT_OK(document_.Let(L"Changed", {true}));
  });
  EXPECT_OK(Open(path_));
  EXPECT_EQ(document_.Get(L"FileTitle"), L"title");
  EXPECT_EQ(Status(), kOpen | kChanged);
}

TEST_P(DocHandHandlerTest, FailingHandlersDisturbNothing) {
  folder_.File(L"a.txt", Pattern(2048));
  Listen([](const Event&) { return E_FAIL; });
  EXPECT_OK(Open(path_));
  EXPECT_EQ(Bytes(), Pattern(2048));
  EXPECT_OK(Save());
  EXPECT_OK(Close());
  EXPECT_EQ(18u, Heard().size());
}

TEST_P(DocHandHandlerTest, AnEditMayReleaseTheDocument) {
  const Object content = Content();
  Listen([&](const Event&) {
    document_.Reset();
    return S_OK;
  });
  EXPECT_OK(content.Let(L"DataString", {L"text"}));
  EXPECT_EQ((Events{StatusChange(16), ContentChange()}), sink_->events());
  EXPECT_OK(content.Let(L"ReadOnly", {true}));
}

TEST_P(DocHandHandlerTest, TheNameGivenMayChangeInAHandler) {
  folder_.File(L"a.txt", "text");
  Value name(path_);
  On(FileNameChange(path_), [&] { name = Value(L"another and a longer name"); });
  EXPECT_OK(document_.Call(L"OpenFile", {name.Reference(), false}));
  EXPECT_EQ(FileTitleChanged(path_), Heard()[1]);
  EXPECT_EQ(FileOpen(path_), sink_->events().back());
  EXPECT_EQ(document_.Get(L"FileName"), path_);
}

RUN_IN_BOTH_BINDINGS(DocHandHandlerTest);

}  // namespace
