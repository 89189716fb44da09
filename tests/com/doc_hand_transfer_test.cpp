// DocHand: opening, reading and writing real files.
#include "com/doc_hand_fixture.h"

namespace {

using client::Object;
using client::Sink;
using client::Value;

class DocHandTransferTest : public WithDocument {
 protected:
  struct Report {
    int done;
    float percentage;
  };
  struct Size {
    int length;
    std::vector<Report> reports;  // between the first and the last
  };
  static inline const std::vector<Size> kSizes = {
      {0, {}},
      {1, {}},
      {1023, {}},
      {1024, {{1024, 100.0f}}},
      {1025, {{1024, 99.9024390f}}},
      {2048, {{1024, 50.0f}, {2048, 100.0f}}},
      {3000, {{1024, 34.1333333f}, {2048, 68.2666667f}}},
  };

  /// What a transfer tells on its way, then `news`, then the end of the reports.
  static Events Reports(Event (*report)(int, int, float), const Size& size, const Events& news) {
    Events all{report(size.length, 0, 0)};
    for (const auto& [done, percentage] : size.reports) {
      all.push_back(report(size.length, done, percentage));
    }
    return Joined({all, news, {report(size.length, size.length, 100)}});
  }
  static Events Reading(const Size& size, const Events& news = {ContentChange()}) {
    return Joined({Reports(PartlyRead, size, news), {FileRead()}});
  }
  static Events Writing(const Size& size, const Events& news = {ContentChange()}) {
    return Joined({Reports(PartlyWritten, size, news), {FileSaved()}});
  }
};

TEST_P(DocHandTransferTest, OpensFilesOfAllSizes) {
  for (const Size& size : kSizes) {
    folder_.File(L"a.txt", Pattern(size.length));
    Listen();
    EXPECT_OK(Open(path_));
    EXPECT_EQ(Joined({Naming(path_), {StatusChange(2)}, Reading(size), {FileOpen(path_)}}),
              Heard());
    EXPECT_EQ(Bytes(), Pattern(size.length));
    EXPECT_EQ(Content().Get(L"ByteLength"), size.length);
    EXPECT_OK(Close());
    EXPECT_EQ((Events{StatusChange(0), FileClose()}), Heard());
  }
}

TEST_P(DocHandTransferTest, OpensFilesOfAllSizesForReading) {
  for (const Size& size : kSizes) {
    folder_.File(L"a.txt", Pattern(size.length));
    Listen();
    EXPECT_OK(Open(path_, true));
    EXPECT_EQ(
        Joined(
            {Naming(path_), {StatusChange(1), StatusChange(3)}, Reading(size), {FileOpen(path_)}}),
        Heard());
    EXPECT_EQ(Bytes(), Pattern(size.length));
    EXPECT_EQ(Content().Get(L"ReadOnly"), true);
    EXPECT_OK(Close());
    EXPECT_EQ((Events{StatusChange(1), StatusChange(0), FileClose()}), Heard());
  }
}

TEST_P(DocHandTransferTest, SavesContentsOfAllSizes) {
  folder_.File(L"a.txt", "old");
  EXPECT_OK(Open(path_));
  for (const Size& size : kSizes) {
    EXPECT_OK(Put(Pattern(size.length)));
    Listen();
    EXPECT_OK(Save());
    EXPECT_EQ(Writing(size, {StatusChange(2), ContentChange()}), Heard());
    EXPECT_EQ(folder_.Read(L"a.txt"), Pattern(size.length));
    EXPECT_EQ(Bytes(), Pattern(size.length));
    EXPECT_OK(Save());  // although nothing is changed
    EXPECT_EQ(Writing(size), Heard());
    EXPECT_EQ(folder_.Read(L"a.txt"), Pattern(size.length));
  }
}

TEST_P(DocHandTransferTest, SavesContentsOfAllSizesUnderAName) {
  for (const Size& size : kSizes) {
    const std::wstring name = L"b" + std::to_wstring(size.length), path = folder_ / name;
    EXPECT_OK(Put(Pattern(size.length)));
    Listen();
    EXPECT_OK(SaveAs(path));
    EXPECT_EQ(Joined({Naming(path),
                      {StatusChange(18)},
                      Writing(size, {StatusChange(2), ContentChange()}),
                      {FileSavedAs(path)}}),
              Heard());
    EXPECT_EQ(folder_.Read(name), Pattern(size.length));
    EXPECT_EQ(document_.Get(L"FileTitle"), name);
    EXPECT_OK(Close());
  }
}

TEST_P(DocHandTransferTest, SavesAnUnchangedContentUnderAName) {
  EXPECT_ZEP_ERROR(Open(folder_ / L"missing\\a.txt"), zepErrOpenFile, L"DocHand");
  Listen();
  EXPECT_OK(SaveAs(path_));  // which leaves the error of the opening as it is
  EXPECT_EQ(Joined({Naming(path_), {StatusChange(6)}, Writing({0, {}}), {FileSavedAs(path_)}}),
            Heard());
  EXPECT_TRUE(folder_.Has(L"a.txt"));
}

TEST_P(DocHandTransferTest, ReadsAgain) {
  folder_.File(L"a.txt", Pattern(3000));
  for (const bool read_only : {false, true}) {
    const int open = read_only ? 3 : 2;
    EXPECT_OK(Open(path_, read_only));
    Listen();
    EXPECT_OK(Update());
    EXPECT_EQ(Reading(kSizes.back()), Heard());
    EXPECT_OK(document_.Let(L"Changed", {true}));
    EXPECT_EQ((Events{StatusChange(open | 16), ContentChange()}), Heard());
    EXPECT_OK(Update());
    EXPECT_EQ(Reading(kSizes.back(), {StatusChange(open), ContentChange()}), Heard());
    EXPECT_EQ(Content().Get(L"ReadOnly"), read_only);
  }
  EXPECT_OK(Open(path_));
  EXPECT_OK(Put("edited"));
  EXPECT_OK(Update());
  EXPECT_EQ(Bytes(), Pattern(3000));
  EXPECT_EQ(Status(), 2);
}

TEST_P(DocHandTransferTest, OpeningWhileOpenClosesFirst) {
  folder_.File(L"a.txt", "a");
  const std::wstring other = folder_.File(L"b.txt", "b");
  EXPECT_OK(Open(path_));
  Listen();
  EXPECT_OK(Open(other, true));
  EXPECT_EQ(Joined({{StatusChange(0), FileClose()},
                    Naming(other),
                    {StatusChange(1), StatusChange(3)},
                    Reading({1, {}}),
                    {FileOpen(other)}}),
            Heard());
  EXPECT_OK(Open(path_));
  EXPECT_EQ(Joined({{StatusChange(1), StatusChange(0), FileClose()},
                    Naming(path_),
                    {StatusChange(2)},
                    Reading({1, {}}),
                    {FileOpen(path_)}}),
            Heard());
  EXPECT_EQ(Bytes(), "a");
  EXPECT_TRUE(MayOpen(other, GENERIC_WRITE));
}

TEST_P(DocHandTransferTest, OpeningOverAChangedReadOnlyDocument) {
  folder_.File(L"a.txt", "a");
  EXPECT_OK(Open(path_, true));
  EXPECT_OK(document_.Let(L"Changed", {true}));
  Listen();
  EXPECT_OK(Open(path_, true));
  EXPECT_EQ(Joined({{StatusChange(17), StatusChange(16), FileClose()},
                    Naming(path_),
                    {StatusChange(17), StatusChange(19)},
                    Reading({1, {}}, {StatusChange(3), ContentChange()}),
                    {FileOpen(path_)}}),
            Heard());
}

TEST_P(DocHandTransferTest, OpeningOverAChangedContentDropsIt) {
  folder_.File(L"a.txt", "file");
  EXPECT_OK(Put("content"));
  Listen();
  EXPECT_OK(Open(path_));
  EXPECT_EQ(Joined({Naming(path_),
                    {StatusChange(18)},
                    Reading({4, {}}, {StatusChange(2), ContentChange()}),
                    {FileOpen(path_)}}),
            Heard());
  EXPECT_EQ(Bytes(), "file");
}

TEST_P(DocHandTransferTest, SavingUnderAnotherNameClosesFirst) {
  folder_.File(L"a.txt", "old");
  const std::wstring other = folder_ / L"b.txt";
  EXPECT_OK(Open(path_));
  EXPECT_OK(Put("new"));
  Listen();
  EXPECT_OK(SaveAs(other));
  EXPECT_EQ(Joined({{StatusChange(16), FileClose()},
                    Naming(other),
                    {StatusChange(18)},
                    Writing({3, {}}, {StatusChange(2), ContentChange()}),
                    {FileSavedAs(other)}}),
            Heard());
  EXPECT_EQ(folder_.Read(L"a.txt"), "old");
  EXPECT_EQ(folder_.Read(L"b.txt"), "new");
  EXPECT_TRUE(MayOpen(path_, GENERIC_WRITE));
  EXPECT_FALSE(MayOpen(other, GENERIC_WRITE));
}

TEST_P(DocHandTransferTest, SavingUnderTheSameNameKeepsTheBytes) {
  folder_.File(L"a.txt", "old");
  EXPECT_OK(Open(path_));
  EXPECT_OK(Put("newer"));
  EXPECT_OK(SaveAs(path_));
  EXPECT_EQ(folder_.Read(L"a.txt"), "newer");
  EXPECT_EQ(Status(), 2);
}

TEST_P(DocHandTransferTest, SavingLeavesExactlyTheContent) {
  folder_.File(L"a.txt", Pattern(3000));
  EXPECT_OK(Open(path_));
  EXPECT_OK(Content().Let(L"ByteLength", {1025}));
  EXPECT_OK(Save());
  EXPECT_EQ(folder_.Read(L"a.txt"), Pattern(1025));
  EXPECT_OK(Content().Let(L"ByteLength", {0}));
  EXPECT_OK(Save());
  EXPECT_EQ(folder_.Read(L"a.txt"), "");
  folder_.File(L"b.txt", Pattern(100));
  EXPECT_OK(Put("short"));
  EXPECT_OK(SaveAs(folder_ / L"b.txt"));
  EXPECT_EQ(folder_.Read(L"b.txt"), "short");
}

TEST_P(DocHandTransferTest, ReadsWhatWasSavedBefore) {
  EXPECT_OK(Put(Pattern(3000)));
  EXPECT_OK(SaveAs(path_));
  EXPECT_OK(Put("edited"));
  EXPECT_OK(Update());
  EXPECT_EQ(Bytes(), Pattern(3000));
}

TEST_P(DocHandTransferTest, ReadingChangesTheContentOnce) {
  folder_.File(L"a.txt", Pattern(3000));
  const auto content = Sink::Connect(Content().get(), DIID___ZepVariant);
  EXPECT_OK(Open(path_));
  EXPECT_EQ(Events{(Event{2, {}})}, content->events());
  EXPECT_OK(Save());
  EXPECT_EQ(Events{(Event{2, {}})}, content->events());
}

TEST_P(DocHandTransferTest, ReadingTakesProtectionOffAndBack) {
  folder_.File(L"a.txt", "text");
  EXPECT_OK(Open(path_, true));
  std::vector<std::pair<DISPID, bool>> heard;
  const auto content = Sink::Connect(Content().get(), DIID___ZepVariant, [&](const Event& event) {
    heard.emplace_back(event.id, Content().Get(L"ReadOnly") == Value(true));
    return S_OK;
  });
  EXPECT_OK(Update());
  EXPECT_EQ((std::vector<std::pair<DISPID, bool>>{
                {1, true}, {3, false}, {2, false}, {1, false}, {3, true}}),
            heard);
  content->Disconnect();  // closing the document takes protection off too
}

TEST_P(DocHandTransferTest, ViewsFollowTheFile) {
  folder_.File(L"a.txt", "abcdef");
  EXPECT_OK(Put("123456"));
  const Object view = Content().GetObject(L"Range", {2, 3});
  EXPECT_OK(Open(path_));
  EXPECT_EQ(view.Get(L"DataString"), L"bcd");
  EXPECT_OK(view.Let(L"DataString", {L"-"}));
  EXPECT_OK(Save());
  EXPECT_EQ(folder_.Read(L"a.txt"), "a-ef");
}

RUN_IN_BOTH_BINDINGS(DocHandTransferTest);

}  // namespace
