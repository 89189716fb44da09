// DocHand: readings that fail. A step that fails is done once more.
#include "com/doc_hand_fault_fixture.h"

namespace {

using client::Outcome;

class DocHandReadFaultTest : public WithFaults {
 protected:
  Outcome UpdateWithReads(std::vector<int> calls_failing) {
    return With<ReadHook>(FailingCalls::Read, std::move(calls_failing), ERROR_CRC,
                          [&] { return Update(); });
  }
  static Events WholeReading() {
    return Joined({ReportsBefore(kLength, PartlyRead),
                   {ContentChange(), PartlyRead(kLength, kLength, 100), FileRead()}});
  }
};

TEST_P(DocHandReadFaultTest, AReadingThatFailsOnceGoesOn) {
  for (const int position : {1, 1500, kLength}) {
    document_ = Create(CLSID_DocHand);
    EXPECT_OK(Open(path_));
    EXPECT_OK(Put("old"));
    EXPECT_OK(document_.Let(L"Changed", {false}));
    std::vector<int> without_hourglass;
    Listen([&](const Event& event) {
      if (event.id == 5 && GetCursor() == cross_) {
        without_hourglass.push_back(event.arguments[1].raw().lVal);
      }
      return S_OK;
    });
    EXPECT_OK(UpdateWithReads({position}));
    EXPECT_EQ(kLength + 1, FailingCalls::count());
    EXPECT_EQ(WholeReading(), Heard());
    EXPECT_EQ(Bytes(), Pattern(kLength));
    ExpectPointerRestored();
    // Once restored, the pointer stays.
    std::vector<int> expected{kLength};
    if (position <= 2048) expected.insert(expected.begin(), 2048);
    if (position <= 1024) expected.insert(expected.begin(), 1024);
    EXPECT_EQ(expected, without_hourglass);
    ExpectDeaf(false);
    EXPECT_OK(Close());
  }
}

TEST_P(DocHandReadFaultTest, AReadingThatFailsTwiceEnds) {
  for (const int position : {1, 1500, kLength}) {
    document_ = Create(CLSID_DocHand);
    EXPECT_OK(Open(path_));
    EXPECT_OK(Put("old"));
    Listen();
    EXPECT_RUNTIME_ERROR(UpdateWithReads({position, position + 1}), 57, L"Device I/O error");
    EXPECT_EQ(position + 1, FailingCalls::count());
    EXPECT_EQ(ReportsBefore(position, PartlyRead), Heard());
    EXPECT_EQ(Bytes(), "old");
    EXPECT_EQ(Status(), kOpen | kChanged);
    ExpectPointerRestored();
    ExpectDeaf(true);
    EXPECT_OK(Close());
  }
}

TEST_P(DocHandReadFaultTest, OnlyTheFirstFailureIsForgiven) {
  EXPECT_OK(Open(path_));
  EXPECT_OK(Put("old"));
  EXPECT_RUNTIME_ERROR(UpdateWithReads({10, 2000}), 57, L"Device I/O error");
  EXPECT_EQ(2000, FailingCalls::count());
  EXPECT_EQ(Bytes(), "old");
  ExpectPointerRestored();
  EXPECT_OK(UpdateWithReads({10}));  // each transfer has its own
  EXPECT_EQ(Bytes(), Pattern(kLength));
}

TEST_P(DocHandReadFaultTest, AnOpeningWhoseReadingFailsLeavesAnOpenDocument) {
  Listen();
  EXPECT_RUNTIME_ERROR(With<ReadHook>(FailingCalls::Read, {1, 2}, ERROR_LOCK_VIOLATION,
                                      [&] { return Open(path_, true); }),
                       70, L"Permission denied");
  EXPECT_EQ((Events{FileNameChange(path_), FileTitleChanged(path_), StatusChange(1),
                    StatusChange(3), PartlyRead(kLength, 0, 0)}),
            Heard());
  EXPECT_EQ(Content().Get(L"ReadOnly"), false);  // as it was for the reading
  EXPECT_OK(Content().Let(L"ReadOnly", {true}));
  EXPECT_OK(Content().Let(L"ReadOnly", {false}));
  EXPECT_OK(Update());
  EXPECT_EQ(
      Joined({ReportsBefore(kLength, PartlyRead), {PartlyRead(kLength, kLength, 100), FileRead()}}),
      Heard());
  EXPECT_EQ(Bytes(), Pattern(kLength));
  EXPECT_EQ(Content().Get(L"ReadOnly"), true);
}

TEST_P(DocHandReadFaultTest, AnUnknownLength) {
  EXPECT_OK(Open(path_));
  Listen();
  EXPECT_OK(With<SizeHook>(FailingCalls::Size, {1}, ERROR_IO_DEVICE, [&] { return Update(); }));
  EXPECT_EQ(WholeReading(), Heard());
  EXPECT_OK(Put("old"));
  Heard();
  EXPECT_RUNTIME_ERROR(
      With<SizeHook>(FailingCalls::Size, {1, 2}, ERROR_IO_DEVICE, [&] { return Update(); }), 57,
      L"Device I/O error");
  EXPECT_EQ(Events{}, Heard());
  EXPECT_EQ(Bytes(), "old");
  ExpectPointerRestored();
  ExpectDeaf(true);
}

TEST_P(DocHandReadFaultTest, APositionThatIsNotReached) {
  EXPECT_OK(Open(path_));
  const auto update = [&] { return Update(); };
  Listen();
  EXPECT_OK(With<MoveHook>(FailingCalls::Move, {1}, ERROR_SEEK, update));
  EXPECT_EQ(WholeReading(), Heard());
  EXPECT_RUNTIME_ERROR(With<MoveHook>(FailingCalls::Move, {1, 2}, ERROR_SEEK, update), 57,
                       L"Device I/O error");
  EXPECT_EQ(Events{PartlyRead(kLength, 0, 0)}, Heard());
  ExpectPointerRestored();
}

TEST_P(DocHandReadFaultTest, BytesAreTransferredWithoutPositioning) {
  EXPECT_OK(With<MoveHook>(FailingCalls::Move, {}, 0, [&] { return Open(path_); }));
  EXPECT_EQ(0, FailingCalls::count());
  EXPECT_OK(With<MoveHook>(FailingCalls::Move, {}, 0, [&] { return Save(); }));
  EXPECT_EQ(0, FailingCalls::count());
  EXPECT_OK(With<MoveHook>(FailingCalls::Move, {}, 0, [&] { return Update(); }));
  EXPECT_EQ(1, FailingCalls::count());
}

RUN_IN_BOTH_BINDINGS(DocHandReadFaultTest);

}  // namespace
