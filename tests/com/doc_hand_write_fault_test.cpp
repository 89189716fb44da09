// DocHand: openings and savings that fail. A step that fails is done once more.
#include "com/doc_hand_fault_fixture.h"

namespace {

using client::Outcome;

class DocHandWriteFaultTest : public WithFaults {
 protected:
  Outcome SaveWithWrites(std::vector<int> calls_failing) {
    return With<WriteHook>(FailingCalls::Write, std::move(calls_failing), ERROR_WRITE_FAULT,
                           [&] { return Save(); });
  }
  Outcome SaveWithOpenings(std::vector<int> calls_failing) {
    return With<OpenHook>(FailingCalls::Open, std::move(calls_failing), ERROR_SHARING_VIOLATION,
                          [&] { return Save(); });
  }
  static Events WholeWriting(int status) {
    return Joined({ReportsBefore(kLength, PartlyWritten),
                   {StatusChange(status), ContentChange(), PartlyWritten(kLength, kLength, 100),
                    FileSaved()}});
  }
};

TEST_P(DocHandWriteFaultTest, AWritingThatFailsOnceGoesOn) {
  for (const int position : {1, 1500, kLength}) {
    EXPECT_OK(Open(path_));
    EXPECT_OK(Put(Pattern(kLength)));
    Listen();
    EXPECT_OK(SaveWithWrites({position}));
    EXPECT_EQ(kLength + 1, FailingCalls::count());
    EXPECT_EQ(WholeWriting(2), Heard());
    EXPECT_EQ(folder_.Read(L"a.txt"), Pattern(kLength));
    ExpectPointerRestored();
    ExpectDeaf(false);
  }
}

TEST_P(DocHandWriteFaultTest, AWritingThatFailsTwiceEnds) {
  for (const int position : {1, 1500, kLength}) {
    document_ = Create(CLSID_DocHand);
    EXPECT_OK(Open(path_));
    EXPECT_OK(Put(Pattern(kLength)));
    Listen();
    EXPECT_RUNTIME_ERROR(SaveWithWrites({position, position + 1}), 57, L"Device I/O error");
    EXPECT_EQ(ReportsBefore(position, PartlyWritten), Heard());
    EXPECT_EQ(folder_.Read(L"a.txt"), Pattern(position));
    EXPECT_EQ(Status(), kOpen | kChanged);
    ExpectPointerRestored();
    // Another attempt may succeed; that the content changed is not told any more.
    EXPECT_OK(Save());
    EXPECT_EQ(Joined({ReportsBefore(kLength, PartlyWritten),
                      {StatusChange(2), PartlyWritten(kLength, kLength, 100), FileSaved()}}),
              Heard());
    EXPECT_EQ(folder_.Read(L"a.txt"), Pattern(kLength));
    ExpectDeaf(true);
    EXPECT_OK(Close());
  }
}

TEST_P(DocHandWriteFaultTest, AFullDiskStopsASaving) {
  EXPECT_OK(Open(path_));
  EXPECT_OK(Put(Pattern(kLength)));
  const auto save = [&] { return Save(); };
  EXPECT_OK(With<WriteHook>(FailingCalls::WriteAll, {7}, 0, save));
  EXPECT_EQ(folder_.Read(L"a.txt"), Pattern(kLength));
  EXPECT_RUNTIME_ERROR(With<WriteHook>(FailingCalls::WriteAll, {7, 8}, 0, save), 61, L"Disk full");
  EXPECT_EQ(folder_.Read(L"a.txt"), Pattern(6));
  EXPECT_RUNTIME_ERROR(With<WriteHook>(FailingCalls::Write, {1, 2}, ERROR_DISK_FULL, save), 61,
                       L"Disk full");
  ExpectPointerRestored();
}

TEST_P(DocHandWriteFaultTest, ATruncationThatFailsOnceGoesOn) {
  EXPECT_OK(Open(path_));
  EXPECT_OK(Put(Pattern(kLength)));
  Listen();
  EXPECT_OK(SaveWithOpenings({1}));
  EXPECT_EQ(3, FailingCalls::count());
  EXPECT_EQ(WholeWriting(2), Heard());
  EXPECT_EQ(folder_.Read(L"a.txt"), Pattern(kLength));
  EXPECT_OK(Put("other"));
  EXPECT_OK(With<CutHook>(FailingCalls::Cut, {1}, ERROR_ACCESS_DENIED, [&] { return Save(); }));
  EXPECT_EQ(folder_.Read(L"a.txt"), "other");
  ExpectPointerRestored();
  ExpectDeaf(false);
}

TEST_P(DocHandWriteFaultTest, ATruncationThatFailsTwiceLeavesTheFile) {
  EXPECT_OK(Open(path_));
  EXPECT_OK(Put("new"));
  Listen();
  EXPECT_RUNTIME_ERROR(SaveWithOpenings({1, 2}), 70, L"Permission denied");
  EXPECT_EQ(2, FailingCalls::count());
  EXPECT_EQ(folder_.Read(L"a.txt"), Pattern(kLength));
  ExpectPointerRestored();
  EXPECT_RUNTIME_ERROR(
      With<CutHook>(FailingCalls::Cut, {1, 2}, ERROR_ACCESS_DENIED, [&] { return Save(); }), 75,
      L"Path/File access error");
  EXPECT_EQ(folder_.Read(L"a.txt"), Pattern(kLength));
  EXPECT_EQ(Events{}, Heard());
  EXPECT_EQ(Status(), kOpen | kChanged);
  ExpectPointerRestored();
  ExpectDeaf(false);  // the content was not yet touched
}

TEST_P(DocHandWriteFaultTest, AReopeningThatFailsOnceGoesOn) {
  EXPECT_OK(Open(path_));
  EXPECT_OK(Put(Pattern(kLength)));
  Listen();
  EXPECT_OK(SaveWithOpenings({2}));
  EXPECT_EQ(3, FailingCalls::count());
  EXPECT_EQ(WholeWriting(2), Heard());
  EXPECT_EQ(folder_.Read(L"a.txt"), Pattern(kLength));
  ExpectPointerRestored();
  ExpectDeaf(false);
}

TEST_P(DocHandWriteFaultTest, AReopeningThatFailsTwiceLeavesAnEmptyFile) {
  EXPECT_OK(Open(path_));
  EXPECT_OK(Put("new"));
  Listen();
  EXPECT_RUNTIME_ERROR(SaveWithOpenings({2, 3}), 70, L"Permission denied");
  EXPECT_EQ(Events{}, Heard());
  EXPECT_EQ(folder_.Read(L"a.txt"), "");
  EXPECT_EQ(Status(), kOpen | kChanged);
  EXPECT_EQ(Bytes(), "new");
  ExpectPointerRestored();
  // The document counts as open, but there is no file to read.
  EXPECT_OK(Put("newer"));
  EXPECT_EQ(Events{ContentChange()}, Heard());
  EXPECT_OK(Save());
  EXPECT_EQ(folder_.Read(L"a.txt"), "newer");
}

TEST_P(DocHandWriteFaultTest, AFileThatWasNotReopenedIsNotRead) {
  EXPECT_OK(Open(path_));
  EXPECT_OK(Put("new"));
  EXPECT_FALSE(SaveWithOpenings({2, 3}).ok());
  Listen();
  EXPECT_RUNTIME_ERROR(Update(), 52, L"Bad file name or number");
  EXPECT_EQ(Bytes(), "new");
  EXPECT_OK(Close());
  EXPECT_EQ((Events{StatusChange(16), FileClose()}), Heard());
}

TEST_P(DocHandWriteFaultTest, AnOpeningIsTriedOnce) {
  const auto open = [&] { return Open(path_); };
  const auto save = [&] { return SaveAs(path_); };
  EXPECT_ZEP_ERROR(With<OpenHook>(FailingCalls::Open, {1}, ERROR_DISK_FULL, open), zepErrOpenFile,
                   L"DocHand");
  EXPECT_EQ(1, FailingCalls::count());
  EXPECT_EQ(Status(), kOpenErr);
  EXPECT_ZEP_ERROR(With<OpenHook>(FailingCalls::Open, {1}, ERROR_DISK_FULL, save), zepErrOpenFile,
                   L"DocHand");
  EXPECT_EQ(1, FailingCalls::count());
  EXPECT_EQ(folder_.Read(L"a.txt"), Pattern(kLength));
  ExpectPointerRestored();
}

TEST_P(DocHandWriteFaultTest, AFailedSavingUnderANameLeavesAnOpenDocument) {
  const std::wstring other = folder_ / L"b.txt";
  EXPECT_OK(Put(Pattern(kLength)));
  Listen();
  EXPECT_RUNTIME_ERROR(
      With<WriteHook>(FailingCalls::Write, {1, 2}, ERROR_DISK_FULL, [&] { return SaveAs(other); }),
      61, L"Disk full");
  EXPECT_EQ((Events{FileNameChange(other), FileTitleChanged(other), StatusChange(18),
                    PartlyWritten(kLength, 0, 0)}),
            Heard());
  EXPECT_EQ(Status(), kOpen | kChanged);
}

RUN_IN_BOTH_BINDINGS(DocHandWriteFaultTest);

}  // namespace
