#include "util/log_file_object.h"

#include <windows.h>

#include <new>

#include "frame/errors.h"
#include "platform/ansi.h"
#include "platform/automation/variant.h"
#include "platform/file_errors.h"
#include "platform/shared_file.h"

namespace zepkit10 {
namespace {

/// To the second, as the user's settings write it; midnight is the date alone.
std::u16string TimeStamp() {
  SYSTEMTIME now;
  GetLocalTime(&now);
  Variant time;
  time.Out()->vt = VT_DATE;
  SystemTimeToVariantTime(&now, &time.Out()->date);
  const auto text = ConvertToText(time.get());
  if (!text) throw std::bad_alloc();
  return *text;
}

std::string LineOf(std::u16string_view text) {
  if (text.empty()) return "\r\n";
  return AnsiOf(TimeStamp().append(u": ").append(text).append(u"\r\n"));
}

FileHandle Open(std::u16string_view path) {
  if (FileHandle file = OpenShared(path, GENERIC_WRITE, OPEN_ALWAYS)) return file;
  const DWORD error = GetLastError();
  switch (RuntimeErrorOf(error)) {
    case ZepVbErrors3To98::zepVbErrFileNotFound:
    case ZepVbErrors3To98::zepVbErrPathNotFound:
      RaiseInCalledClass(ZepErrors::zepErrBadCallContext);
    default:
      RaiseFileError(error);
  }
}

/// Takes back what a failed write left behind.
void TruncateTo(HANDLE file, LARGE_INTEGER size) {
  if (SetFilePointerEx(file, size, nullptr, FILE_BEGIN)) SetEndOfFile(file);
}

}  // namespace

void AppendToLog(std::u16string_view path, std::u16string_view text) {
  const std::string line = LineOf(text);
  const FileHandle file = Open(path);
  LARGE_INTEGER old_size{};
  if (!SetFilePointerEx(file.get(), {}, &old_size, FILE_END)) RaiseFileError(GetLastError());
  DWORD written = 0;
  const bool done =
      WriteFile(file.get(), line.data(), static_cast<DWORD>(line.size()), &written, nullptr);
  if (done && written == line.size()) return;
  const DWORD error = done ? ERROR_DISK_FULL : GetLastError();
  TruncateTo(file.get(), old_size);
  RaiseFileError(error);
}

}  // namespace zepkit10
