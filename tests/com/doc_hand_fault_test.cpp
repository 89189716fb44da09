// DocHand: file operations that fail. A step that fails is done once more.
#include "com/doc_hand_fixture.h"
#include "com/left_open_files.h"

DECLARE_IMPORT(GetFileSizeEx, 8);
DECLARE_IMPORT(ReadFile, 20);
DECLARE_IMPORT(SetEndOfFile, 4);
DECLARE_IMPORT(SetFilePointerEx, 20);
DECLARE_IMPORT(WriteFile, 20);

namespace {

using client::Object;
using client::Outcome;
using client::Sink;
using client::Value;

using OpenHook = ImportHook<&__imp_CreateFileW>;
using ReadHook = ImportHook<&__imp_ReadFile>;
using WriteHook = ImportHook<&__imp_WriteFile>;
using SizeHook = ImportHook<&__imp_GetFileSizeEx>;
using MoveHook = ImportHook<&__imp_SetFilePointerEx>;
using CutHook = ImportHook<&__imp_SetEndOfFile>;

/// Which calls of the hooked function fail, counted from 1.
std::vector<int> failing;
DWORD failure = ERROR_SUCCESS;
int calls = 0;

bool Fails() {
  ++calls;
  if (std::find(failing.begin(), failing.end(), calls) == failing.end()) return false;
  SetLastError(failure);
  return true;
}

// A transfer that fails has moved the file's pointer all the same.
BOOL WINAPI FailingRead(HANDLE file, void* bytes, DWORD size, DWORD* count,
                        OVERLAPPED* overlapped) {
  const BOOL read = ReadHook::kSystem(file, bytes, size, count, overlapped);
  return !Fails() && read;
}
BOOL WINAPI FailingWrite(HANDLE file, const void* bytes, DWORD size, DWORD* count,
                         OVERLAPPED* overlapped) {
  const BOOL written = WriteHook::kSystem(file, bytes, size, count, overlapped);
  return !Fails() && written;
}
BOOL WINAPI FailingToWriteAll(HANDLE file, const void* bytes, DWORD size, DWORD* count,
                              OVERLAPPED* overlapped) {
  return WriteHook::kSystem(file, bytes, Fails() ? 0 : size, count, overlapped);
}
HANDLE WINAPI FailingOpen(const wchar_t* name, DWORD access, DWORD share,
                          SECURITY_ATTRIBUTES* security, DWORD disposition, DWORD flags,
                          HANDLE pattern) {
  if (Fails()) return INVALID_HANDLE_VALUE;
  return OpenHook::kSystem(name, access, share, security, disposition, flags, pattern);
}
BOOL WINAPI FailingSize(HANDLE file, LARGE_INTEGER* size) {
  return !Fails() && SizeHook::kSystem(file, size);
}
BOOL WINAPI FailingMove(HANDLE file, LARGE_INTEGER distance, LARGE_INTEGER* position,
                        DWORD method) {
  return !Fails() && MoveHook::kSystem(file, distance, position, method);
}
BOOL WINAPI FailingCut(HANDLE file) { return !Fails() && CutHook::kSystem(file); }

// A large file that is not there.
LONGLONG pretended_size = 0;
BOOL WINAPI PretendSize(HANDLE, LARGE_INTEGER* size) {
  size->QuadPart = pretended_size;
  return TRUE;
}
BOOL WINAPI PretendToRead(HANDLE, void*, DWORD size, DWORD* count, OVERLAPPED*) {
  *count = size;
  return TRUE;
}
BOOL WINAPI PretendToWrite(HANDLE, const void*, DWORD size, DWORD* count, OVERLAPPED*) {
  *count = size;
  return TRUE;
}

constexpr int kLength = 3000;
constexpr int kLastSafeReport = 21474304, kFirstOverflow = 21475328;

class DocHandFaultTest : public WithDocument {
 protected:
  DocHandFaultTest() : before_(SetCursor(cross_)) {}
  ~DocHandFaultTest() override { SetCursor(before_); }

  void SetUp() override {
    if (!component::IsLinked()) GTEST_SKIP() << "nothing can be hooked in a DLL";
    folder_.File(L"a.txt", Pattern(kLength));
  }

  /// Runs an operation with some calls of a function failing.
  template <class Hook, class Operation>
  Outcome With(typename Hook::Function replacement, std::vector<int> calls_failing,
               DWORD system_error, Operation operation) {
    failing = std::move(calls_failing);
    failure = system_error;
    calls = 0;
    const Hook hook(replacement);
    return operation();
  }
  Outcome UpdateWithReads(std::vector<int> calls_failing) {
    return With<ReadHook>(FailingRead, std::move(calls_failing), ERROR_CRC,
                          [&] { return Update(); });
  }
  Outcome SaveWithWrites(std::vector<int> calls_failing) {
    return With<WriteHook>(FailingWrite, std::move(calls_failing), ERROR_WRITE_FAULT,
                           [&] { return Save(); });
  }
  Outcome SaveWithOpenings(std::vector<int> calls_failing) {
    return With<OpenHook>(FailingOpen, std::move(calls_failing), ERROR_SHARING_VIOLATION,
                          [&] { return Save(); });
  }

  /// The reports of a transfer of `kLength` bytes that ends before a position.
  static Events ReportsBefore(int position, Event (*report)(int, int, float)) {
    Events all{report(kLength, 0, 0)};
    if (position > 1024) all.push_back(report(kLength, 1024, 34.1333333f));
    if (position > 2048) all.push_back(report(kLength, 2048, 68.2666667f));
    return all;
  }
  static Events WholeReading() {
    return Joined({ReportsBefore(kLength, PartlyRead),
                   {ContentChange(), PartlyRead(kLength, kLength, 100), FileRead()}});
  }
  static Events WholeWriting(int status) {
    return Joined({ReportsBefore(kLength, PartlyWritten),
                   {StatusChange(status), ContentChange(), PartlyWritten(kLength, kLength, 100),
                    FileSaved()}});
  }

  void ExpectPointerRestored() const { EXPECT_EQ(cross_, GetCursor()); }
  /// Whether edits of the content still make the document changed.
  void ExpectDeaf(bool deaf) {
    EXPECT_OK(document_.Let(L"Changed", {false}));
    Listen();
    EXPECT_OK(Put("edited"));
    EXPECT_EQ(deaf ? Events{} : (Events{StatusChange(18), ContentChange()}), Heard());
    EXPECT_EQ(document_.Get(L"Changed"), !deaf);
  }

  const HCURSOR cross_ = LoadCursorW(nullptr, IDC_CROSS), wait_ = LoadCursorW(nullptr, IDC_WAIT);
  const HCURSOR before_;
};

TEST_P(DocHandFaultTest, TransfersShowTheHourglass) {
  std::vector<DISPID> waiting;
  Listen([&](const Event& event) {
    if (GetCursor() == wait_) waiting.push_back(event.id);
    return S_OK;
  });
  EXPECT_OK(Open(path_));
  EXPECT_EQ((std::vector<DISPID>{5, 5, 5, 1, 5, 7}), waiting);
  ExpectPointerRestored();
  waiting.clear();
  EXPECT_OK(Save());
  EXPECT_EQ((std::vector<DISPID>{6, 6, 6, 1, 6, 8}), waiting);
  ExpectPointerRestored();
}

TEST_P(DocHandFaultTest, RefusedTransfersShowNoHourglass) {
  Listen();
  EXPECT_ZEP_ERROR(Update(), zepErrBadCallContext, L"DocHand");
  EXPECT_ZEP_ERROR(Save(), zepErrBadCallContext, L"DocHand");
  ExpectPointerRestored();
}

TEST_P(DocHandFaultTest, AReadingThatFailsOnceGoesOn) {
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
    EXPECT_EQ(kLength + 1, calls);
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

TEST_P(DocHandFaultTest, AReadingThatFailsTwiceEnds) {
  for (const int position : {1, 1500, kLength}) {
    document_ = Create(CLSID_DocHand);
    EXPECT_OK(Open(path_));
    EXPECT_OK(Put("old"));
    Listen();
    EXPECT_RUNTIME_ERROR(UpdateWithReads({position, position + 1}), 57, L"Device I/O error");
    EXPECT_EQ(position + 1, calls);
    EXPECT_EQ(ReportsBefore(position, PartlyRead), Heard());
    EXPECT_EQ(Bytes(), "old");
    EXPECT_EQ(Status(), kOpen | kChanged);
    ExpectPointerRestored();
    ExpectDeaf(true);
    EXPECT_OK(Close());
  }
}

TEST_P(DocHandFaultTest, OnlyTheFirstFailureIsForgiven) {
  EXPECT_OK(Open(path_));
  EXPECT_OK(Put("old"));
  EXPECT_RUNTIME_ERROR(UpdateWithReads({10, 2000}), 57, L"Device I/O error");
  EXPECT_EQ(2000, calls);
  EXPECT_EQ(Bytes(), "old");
  ExpectPointerRestored();
  EXPECT_OK(UpdateWithReads({10}));  // each transfer has its own
  EXPECT_EQ(Bytes(), Pattern(kLength));
}

TEST_P(DocHandFaultTest, AnOpeningWhoseReadingFailsLeavesAnOpenDocument) {
  Listen();
  EXPECT_RUNTIME_ERROR(
      With<ReadHook>(FailingRead, {1, 2}, ERROR_LOCK_VIOLATION, [&] { return Open(path_, true); }),
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

TEST_P(DocHandFaultTest, AnUnknownLength) {
  EXPECT_OK(Open(path_));
  Listen();
  EXPECT_OK(With<SizeHook>(FailingSize, {1}, ERROR_IO_DEVICE, [&] { return Update(); }));
  EXPECT_EQ(WholeReading(), Heard());
  EXPECT_OK(Put("old"));
  Heard();
  EXPECT_RUNTIME_ERROR(
      With<SizeHook>(FailingSize, {1, 2}, ERROR_IO_DEVICE, [&] { return Update(); }), 57,
      L"Device I/O error");
  EXPECT_EQ(Events{}, Heard());
  EXPECT_EQ(Bytes(), "old");
  ExpectPointerRestored();
  ExpectDeaf(true);
}

TEST_P(DocHandFaultTest, AFileThatIsTooLong) {
  EXPECT_OK(Open(path_));
  pretended_size = LONGLONG{1} << 31;
  const SizeHook hook(PretendSize);
  EXPECT_RUNTIME_ERROR(Update(), 6, L"Overflow");
  ExpectPointerRestored();
}

TEST_P(DocHandFaultTest, APositionThatIsNotReached) {
  EXPECT_OK(Open(path_));
  const auto update = [&] { return Update(); };
  Listen();
  EXPECT_OK(With<MoveHook>(FailingMove, {1}, ERROR_SEEK, update));
  EXPECT_EQ(WholeReading(), Heard());
  EXPECT_RUNTIME_ERROR(With<MoveHook>(FailingMove, {1, 2}, ERROR_SEEK, update), 57,
                       L"Device I/O error");
  EXPECT_EQ(Events{PartlyRead(kLength, 0, 0)}, Heard());
  ExpectPointerRestored();
}

TEST_P(DocHandFaultTest, BytesAreTransferredWithoutPositioning) {
  EXPECT_OK(With<MoveHook>(FailingMove, {}, 0, [&] { return Open(path_); }));
  EXPECT_EQ(0, calls);
  EXPECT_OK(With<MoveHook>(FailingMove, {}, 0, [&] { return Save(); }));
  EXPECT_EQ(0, calls);
  EXPECT_OK(With<MoveHook>(FailingMove, {}, 0, [&] { return Update(); }));
  EXPECT_EQ(1, calls);
}

TEST_P(DocHandFaultTest, AWritingThatFailsOnceGoesOn) {
  for (const int position : {1, 1500, kLength}) {
    EXPECT_OK(Open(path_));
    EXPECT_OK(Put(Pattern(kLength)));
    Listen();
    EXPECT_OK(SaveWithWrites({position}));
    EXPECT_EQ(kLength + 1, calls);
    EXPECT_EQ(WholeWriting(2), Heard());
    EXPECT_EQ(folder_.Read(L"a.txt"), Pattern(kLength));
    ExpectPointerRestored();
    ExpectDeaf(false);
  }
}

TEST_P(DocHandFaultTest, AWritingThatFailsTwiceEnds) {
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

TEST_P(DocHandFaultTest, AFullDiskStopsASaving) {
  EXPECT_OK(Open(path_));
  EXPECT_OK(Put(Pattern(kLength)));
  const auto save = [&] { return Save(); };
  EXPECT_OK(With<WriteHook>(FailingToWriteAll, {7}, 0, save));
  EXPECT_EQ(folder_.Read(L"a.txt"), Pattern(kLength));
  EXPECT_RUNTIME_ERROR(With<WriteHook>(FailingToWriteAll, {7, 8}, 0, save), 61, L"Disk full");
  EXPECT_EQ(folder_.Read(L"a.txt"), Pattern(6));
  EXPECT_RUNTIME_ERROR(With<WriteHook>(FailingWrite, {1, 2}, ERROR_DISK_FULL, save), 61,
                       L"Disk full");
  ExpectPointerRestored();
}

TEST_P(DocHandFaultTest, ATruncationThatFailsOnceGoesOn) {
  EXPECT_OK(Open(path_));
  EXPECT_OK(Put(Pattern(kLength)));
  Listen();
  EXPECT_OK(SaveWithOpenings({1}));
  EXPECT_EQ(3, calls);
  EXPECT_EQ(WholeWriting(2), Heard());
  EXPECT_EQ(folder_.Read(L"a.txt"), Pattern(kLength));
  EXPECT_OK(Put("other"));
  EXPECT_OK(With<CutHook>(FailingCut, {1}, ERROR_ACCESS_DENIED, [&] { return Save(); }));
  EXPECT_EQ(folder_.Read(L"a.txt"), "other");
  ExpectPointerRestored();
  ExpectDeaf(false);
}

TEST_P(DocHandFaultTest, ATruncationThatFailsTwiceLeavesTheFile) {
  EXPECT_OK(Open(path_));
  EXPECT_OK(Put("new"));
  Listen();
  EXPECT_RUNTIME_ERROR(SaveWithOpenings({1, 2}), 70, L"Permission denied");
  EXPECT_EQ(2, calls);
  EXPECT_EQ(folder_.Read(L"a.txt"), Pattern(kLength));
  ExpectPointerRestored();
  EXPECT_RUNTIME_ERROR(
      With<CutHook>(FailingCut, {1, 2}, ERROR_ACCESS_DENIED, [&] { return Save(); }), 75,
      L"Path/File access error");
  EXPECT_EQ(folder_.Read(L"a.txt"), Pattern(kLength));
  EXPECT_EQ(Events{}, Heard());
  EXPECT_EQ(Status(), kOpen | kChanged);
  ExpectPointerRestored();
  ExpectDeaf(false);  // the content was not yet touched
}

TEST_P(DocHandFaultTest, AReopeningThatFailsOnceGoesOn) {
  EXPECT_OK(Open(path_));
  EXPECT_OK(Put(Pattern(kLength)));
  Listen();
  EXPECT_OK(SaveWithOpenings({2}));
  EXPECT_EQ(3, calls);
  EXPECT_EQ(WholeWriting(2), Heard());
  EXPECT_EQ(folder_.Read(L"a.txt"), Pattern(kLength));
  ExpectPointerRestored();
  ExpectDeaf(false);
}

TEST_P(DocHandFaultTest, AReopeningThatFailsTwiceLeavesAnEmptyFile) {
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

TEST_P(DocHandFaultTest, AFileThatWasNotReopenedIsNotRead) {
  EXPECT_OK(Open(path_));
  EXPECT_OK(Put("new"));
  EXPECT_FALSE(SaveWithOpenings({2, 3}).ok());
  Listen();
  EXPECT_RUNTIME_ERROR(Update(), 52, L"Bad file name or number");
  EXPECT_EQ(Bytes(), "new");
  EXPECT_OK(Close());
  EXPECT_EQ((Events{StatusChange(16), FileClose()}), Heard());
}

TEST_P(DocHandFaultTest, AnOpeningIsTriedOnce) {
  const auto open = [&] { return Open(path_); };
  const auto save = [&] { return SaveAs(path_); };
  EXPECT_ZEP_ERROR(With<OpenHook>(FailingOpen, {1}, ERROR_DISK_FULL, open), zepErrOpenFile,
                   L"DocHand");
  EXPECT_EQ(1, calls);
  EXPECT_EQ(Status(), kOpenErr);
  EXPECT_ZEP_ERROR(With<OpenHook>(FailingOpen, {1}, ERROR_DISK_FULL, save), zepErrOpenFile,
                   L"DocHand");
  EXPECT_EQ(1, calls);
  EXPECT_EQ(folder_.Read(L"a.txt"), Pattern(kLength));
  ExpectPointerRestored();
}

TEST_P(DocHandFaultTest, AFailedSavingUnderANameLeavesAnOpenDocument) {
  const std::wstring other = folder_ / L"b.txt";
  EXPECT_OK(Put(Pattern(kLength)));
  Listen();
  EXPECT_RUNTIME_ERROR(
      With<WriteHook>(FailingWrite, {1, 2}, ERROR_DISK_FULL, [&] { return SaveAs(other); }), 61,
      L"Disk full");
  EXPECT_EQ((Events{FileNameChange(other), FileTitleChanged(other), StatusChange(18),
                    PartlyWritten(kLength, 0, 0)}),
            Heard());
  EXPECT_EQ(Status(), kOpen | kChanged);
}

TEST_P(DocHandFaultTest, ReportsOverflow) {
  EXPECT_OK(Open(path_));
  const SizeHook size_hook(PretendSize);
  const ReadHook read_hook(PretendToRead);
  pretended_size = kFirstOverflow - 1;
  Listen();
  EXPECT_OK(Update());
  const Events heard = Heard();
  ASSERT_EQ(static_cast<std::size_t>(kLastSafeReport / 1024 + 4), heard.size());
  EXPECT_EQ(PartlyRead(kFirstOverflow - 1, kLastSafeReport, 99.9952393f),
            heard[kLastSafeReport / 1024]);
  pretended_size = kFirstOverflow;
  EXPECT_RUNTIME_ERROR(Update(), 6, L"Overflow");
  EXPECT_EQ(static_cast<std::size_t>(kLastSafeReport / 1024 + 1), Heard().size());
  EXPECT_EQ(Content().Get(L"ByteLength"), kFirstOverflow - 1);
  ExpectPointerRestored();
  ExpectDeaf(true);
}

TEST_P(DocHandFaultTest, ReportsOfASavingOverflow) {
  EXPECT_OK(Open(path_));
  const WriteHook hook(PretendToWrite);
  EXPECT_OK(Content().Let(L"ByteLength", {kFirstOverflow - 1}));
  EXPECT_OK(Save());
  EXPECT_OK(Content().Let(L"ByteLength", {kFirstOverflow}));
  Listen();
  EXPECT_RUNTIME_ERROR(Save(), 6, L"Overflow");
  const Events heard = Heard();
  ASSERT_EQ(static_cast<std::size_t>(kLastSafeReport / 1024 + 1), heard.size());
  EXPECT_EQ(PartlyWritten(kFirstOverflow, kLastSafeReport, 99.9952316f), heard.back());
  EXPECT_EQ(Status(), kOpen | kChanged);
  ExpectPointerRestored();
}

TEST_P(DocHandFaultTest, WithoutReportsNothingOverflows) {
  EXPECT_ZEP_ERROR(Open(L""), zepErrIndexOutOfRange, L"List");  // freezes events
  EXPECT_OK(Open(path_));
  pretended_size = kFirstOverflow;
  const SizeHook size_hook(PretendSize);
  const ReadHook read_hook(PretendToRead);
  EXPECT_OK(Update());
  EXPECT_EQ(Content().Get(L"ByteLength"), kFirstOverflow);
}

TEST_P(DocHandFaultTest, AReleasedDocumentLeavesItsFileOpen) {
  const LeftOpenFiles files;
  EXPECT_OK(Open(path_));
  document_.Reset();
  EXPECT_EQ(1u, files.count());
  document_ = Create(CLSID_DocHand);
  EXPECT_ZEP_ERROR(Open(path_, true), zepErrOpenFile, L"DocHand");
  EXPECT_EQ(folder_.Read(L"a.txt"), Pattern(kLength));
}

RUN_IN_BOTH_BINDINGS(DocHandFaultTest);

}  // namespace
