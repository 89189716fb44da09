// LogFile and LogText.
#include <windows.h>
#include <oleauto.h>

#include "com/both_roots.h"
#include "com/import_hook.h"
#include "com/temporary_folder.h"

DECLARE_IMPORT(CreateFileW, 28);
DECLARE_IMPORT(GetLocalTime, 4);
DECLARE_IMPORT(WriteFile, 20);

namespace {

using OpenHook = ImportHook<&__imp_CreateFileW>;
using TimeHook = ImportHook<&__imp_GetLocalTime>;
using WriteHook = ImportHook<&__imp_WriteFile>;
using client::Outcome;
using client::Value;

/// A point in time as the user writes it.
std::string TimeText(const FILETIME& time) {
  SYSTEMTIME fields;
  DATE date = 0;
  FileTimeToSystemTime(&time, &fields);
  SystemTimeToVariantTime(&fields, &date);
  BSTR text = nullptr;
  VarBstrFromDate(date, LOCALE_USER_DEFAULT, 0, &text);
  const std::string narrow(text, text + SysStringLen(text));
  SysFreeString(text);
  return narrow;
}

FILETIME LocalNow() {
  SYSTEMTIME now;
  FILETIME time;
  GetLocalTime(&now);
  SystemTimeToFileTime(&now, &time);
  return time;
}

/// Whether a text is the time of one of the seconds between two points.
bool IsTimeBetween(const std::string& text, FILETIME first, const FILETIME& last) {
  for (; CompareFileTime(&first, &last) <= 0 || TimeText(first) == TimeText(last);) {
    if (TimeText(first) == text) return true;
    ULARGE_INTEGER ticks{{first.dwLowDateTime, first.dwHighDateTime}};
    ticks.QuadPart += 10'000'000;
    first = {ticks.LowPart, ticks.HighPart};
  }
  return false;
}

class LogFileTest : public BothRoots {
 protected:
  void Use(const std::wstring& path) const { EXPECT_OK(root_.Let(L"LogFile", {path})); }
  Outcome Log(const std::wstring& text) const { return root_.Call(L"LogText", {text}); }

  void ExpectRuntimeError(const Outcome& outcome, long number, const wchar_t* text) const {
    EXPECT_ERROR(outcome, number, std::wstring(L"Zepkit10.") + RootName(), text);
  }

  TemporaryFolder folder_;
  const std::wstring log_ = folder_ / L"a.log";
};

TEST_P(LogFileTest, LogFileIsAPlainProperty) {
  EXPECT_EQ(root_.Get(L"LogFile"), L"");
  for (const std::wstring& path :
       {log_, std::wstring(L"|no name?"), std::wstring(L"a\0b", 3), std::wstring()}) {
    EXPECT_OK(root_.Let(L"LogFile", {path}));
    EXPECT_EQ(root_.Get(L"LogFile"), path);
  }
  EXPECT_FALSE(folder_.Has(L"a.log"));
}

TEST_P(LogFileTest, BothRootsShareOneLogFile) {
  const client::Object global(component::Create<IDispatch>(CLSID_Global).Get(), root_.binding());
  const client::Object library = global.GetObject(L"Zep");
  const bool from_global = RootName() == std::wstring_view(L"Global");
  EXPECT_OK((from_global ? global : library).Let(L"LogFile", {log_}));
  EXPECT_EQ(global.Get(L"LogFile"), log_);
  EXPECT_EQ(library.Get(L"LogFile"), log_);
  EXPECT_OK(global.Call(L"LogText", {L""}));
  EXPECT_OK(library.Call(L"LogText", {L""}));
  EXPECT_EQ(folder_.Read(L"a.log"), "\r\n\r\n");
}

TEST_P(LogFileTest, ALineIsTimeAndText) {
  Use(log_);
  const FILETIME before = LocalNow();
  EXPECT_OK(Log(L"some text: more"));
  const FILETIME after = LocalNow();
  const std::string line = folder_.Read(L"a.log"), end = ": some text: more\r\n";
  ASSERT_TRUE(line.ends_with(end)) << line;
  EXPECT_TRUE(IsTimeBetween(line.substr(0, line.size() - end.size()), before, after)) << line;
}

void WINAPI TellLateTime(SYSTEMTIME* now) { *now = {2026, 5, 2, 12, 23, 59, 59, 900}; }

TEST_P(LogFileTest, PartsOfASecondAreNotRounded) {
  if (!component::IsLinked()) return;
  Use(log_);
  SYSTEMTIME whole{2026, 5, 2, 12, 23, 59, 59, 0};
  FILETIME time;
  SystemTimeToFileTime(&whole, &time);
  const TimeHook late(TellLateTime);
  EXPECT_OK(Log(L"text"));
  EXPECT_EQ(folder_.Read(L"a.log"), TimeText(time) + ": text\r\n");
}

TEST_P(LogFileTest, GermanTimesAreTheUsers) {
  if (PRIMARYLANGID(GetUserDefaultLangID()) != LANG_GERMAN) GTEST_SKIP() << "needs a German user";
  Use(log_);
  EXPECT_OK(Log(L"text"));
  const std::string line = folder_.Read(L"a.log");
  EXPECT_EQ('.', line[2]) << line;
}

TEST_P(LogFileTest, AnEmptyTextIsAnEmptyLine) {
  Use(log_);
  EXPECT_OK(Log(L""));
  // Through the vtable of Library it has no default that the platform could pass.
  const bool has_default =
      root_.binding() == client::Binding::kDispatch || RootName() == std::wstring_view(L"Global");
  EXPECT_OK(has_default ? root_.Call(L"LogText") : Log(L""));
  EXPECT_EQ(folder_.Read(L"a.log"), "\r\n\r\n");
}

TEST_P(LogFileTest, Appends) {
  folder_.File(L"a.log", "no line end");
  Use(log_);
  EXPECT_OK(Log(L"one"));
  EXPECT_OK(Log(L"two"));
  const std::string text = folder_.Read(L"a.log");
  EXPECT_TRUE(text.starts_with("no line end")) << text;
  EXPECT_LT(text.find(": one\r\n"), text.find(": two\r\n"));
  EXPECT_TRUE(text.ends_with(": two\r\n")) << text;
}

TEST_P(LogFileTest, WritesAnsiAndEveryCharacter) {
  Use(log_);
  EXPECT_OK(Log(std::wstring(L"\u00e4\u20ac\u4e2d\0\r\n.", 7)));
  const std::string text = folder_.Read(L"a.log");
  EXPECT_TRUE(text.ends_with(std::string(": \xe4\x80?\0\r\n.\r\n", 11))) << text;
}

TEST_P(LogFileTest, ClosesTheFileAfterEveryCall) {
  Use(log_);
  EXPECT_OK(Log(L"text"));
  folder_.Remove(L"a.log");
  EXPECT_FALSE(folder_.Has(L"a.log"));
  EXPECT_OK(Log(L""));
  EXPECT_EQ(folder_.Read(L"a.log"), "\r\n");
}

TEST_P(LogFileTest, MayBeReadMeanwhile) {
  folder_.File(L"a.log");
  HANDLE reader = CreateFileW(log_.c_str(), GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_WRITE,
                              nullptr, OPEN_EXISTING, 0, nullptr);
  Use(log_);
  EXPECT_OK(Log(L""));
  CloseHandle(reader);
  EXPECT_EQ(folder_.Read(L"a.log"), "\r\n");
}

TEST_P(LogFileTest, TakesLongPathsAndAnyName) {
  const std::wstring below = folder_.Nest(std::wstring(100, L'd'), 4).substr(folder_.path().size());
  const std::wstring name = below + L"\\\u2603 \u4e2d.log";
  Use(folder_ / name);
  EXPECT_OK(Log(L""));
  EXPECT_EQ(folder_.Read(name), "\r\n");
}

TEST_P(LogFileTest, NoFileAndNoDirectoryIsABadContext) {
  folder_.File(L"file");
  EXPECT_ROOT_ERROR(Log(L"text"), zepErrBadCallContext);
  EXPECT_ROOT_ERROR(Log(L""), zepErrBadCallContext);
  for (const wchar_t* name : {L"missing\\a.log", L"missing\\more\\a.log", L"file\\a.log"}) {
    Use(folder_ / name);
    EXPECT_ROOT_ERROR(Log(L"text"), zepErrBadCallContext);
  }
  Use(L"Q:\\a.log");
  EXPECT_ROOT_ERROR(Log(L"text"), zepErrBadCallContext);
  EXPECT_FALSE(folder_.Has(L"missing"));
}

TEST_P(LogFileTest, OtherFailuresKeepTheirNumbers) {
  folder_.Directory(L"d");
  Use(folder_ / L"d");
  ExpectRuntimeError(Log(L"text"), 75, L"Path/File access error");
  folder_.File(L"read.log", "old");
  folder_.SetAttributes(L"read.log", FILE_ATTRIBUTE_READONLY);
  Use(folder_ / L"read.log");
  ExpectRuntimeError(Log(L"text"), 75, L"Path/File access error");
  EXPECT_EQ(folder_.Read(L"read.log"), "old");
  Use(folder_ / L"a|b");
  ExpectRuntimeError(Log(L"text"), 52, L"Bad file name or number");
  Use(log_ + std::wstring(L"\0x", 2));
  ExpectRuntimeError(Log(L"text"), 52, L"Bad file name or number");
  EXPECT_FALSE(folder_.Has(L"a.log"));
}

TEST_P(LogFileTest, AFileInUseIsRefused) {
  folder_.File(L"a.log", "old");
  Use(log_);
  HANDLE owner = CreateFileW(log_.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr);
  ExpectRuntimeError(Log(L"text"), 70, L"Permission denied");
  CloseHandle(owner);
  EXPECT_EQ(folder_.Read(L"a.log"), "old");
  EXPECT_OK(Log(L"text"));
}

TEST_P(LogFileTest, AFullDiskIsReported) {
  HANDLE device = CreateFileW(L"Z:\\dev\\full", GENERIC_WRITE, FILE_SHARE_WRITE, nullptr,
                              OPEN_EXISTING, 0, nullptr);
  if (device == INVALID_HANDLE_VALUE) GTEST_SKIP() << "needs a device that is always full";
  CloseHandle(device);
  Use(L"Z:\\dev\\full");
  ExpectRuntimeError(Log(L"text"), 61, L"Disk full");
}

/// What the system says where a file cannot be opened.
DWORD open_error = 0;

HANDLE WINAPI FailToOpen(LPCWSTR, DWORD, DWORD, SECURITY_ATTRIBUTES*, DWORD, DWORD, HANDLE) {
  SetLastError(open_error);
  return INVALID_HANDLE_VALUE;
}

TEST_P(LogFileTest, EveryErrorOfTheSystemHasItsNumber) {
  if (!component::IsLinked()) return;
  Use(log_);
  const OpenHook hook(FailToOpen);
  for (const DWORD missing : {ERROR_FILE_NOT_FOUND, ERROR_PATH_NOT_FOUND, ERROR_BAD_NETPATH}) {
    open_error = missing;
    EXPECT_ROOT_ERROR(Log(L"text"), zepErrBadCallContext);
  }
  const auto expect = [&](DWORD error, long number, const wchar_t* text) {
    open_error = error;
    ExpectRuntimeError(Log(L"text"), number, text);
  };
  expect(ERROR_NOT_ENOUGH_MEMORY, 7, L"Out of memory");
  expect(ERROR_INVALID_NAME, 52, L"Bad file name or number");
  expect(ERROR_OPEN_FILES, 55, L"File already open");
  expect(ERROR_IO_DEVICE, 57, L"Device I/O error");
  expect(ERROR_DISK_FULL, 61, L"Disk full");
  expect(ERROR_TOO_MANY_OPEN_FILES, 67, L"Too many files");
  expect(ERROR_DEV_NOT_EXIST, 68, L"Device unavailable");
  expect(ERROR_SHARING_VIOLATION, 70, L"Permission denied");
  expect(ERROR_WRITE_PROTECT, 70, L"Permission denied");
  expect(ERROR_NOT_READY, 71, L"Disk not ready");
  expect(ERROR_ACCESS_DENIED, 75, L"Path/File access error");
}

/// Writes half of it, and says so or fails.
template <DWORD error>
BOOL WINAPI WriteHalf(HANDLE file, const void* bytes, DWORD count, DWORD* written, OVERLAPPED*) {
  WriteHook::kSystem(file, bytes, count / 2, written, nullptr);
  SetLastError(error);
  return error == ERROR_SUCCESS;
}

TEST_P(LogFileTest, NothingIsHalfWritten) {
  if (!component::IsLinked()) return;
  folder_.File(L"a.log", "old\r\n");
  Use(log_);
  for (const wchar_t* text : {L"text", L""}) {
    {
      const WriteHook hook(WriteHalf<ERROR_SUCCESS>);
      ExpectRuntimeError(Log(text), 61, L"Disk full");
    }
    {
      const WriteHook hook(WriteHalf<ERROR_WRITE_FAULT>);
      ExpectRuntimeError(Log(text), 57, L"Device I/O error");
    }
  }
  EXPECT_EQ(folder_.Read(L"a.log"), "old\r\n");
  EXPECT_OK(Log(L""));
  EXPECT_EQ(folder_.Read(L"a.log"), "old\r\n\r\n");
}

RUN_WITH_BOTH_ROOTS(LogFileTest);

}  // namespace
