#include "platform/document_file.h"

#include <limits>
#include <vector>

#include "frame/errors.h"
#include "platform/file_errors.h"
#include "platform/shared_file.h"

namespace zepkit10 {
namespace {

using enum ZepVbErrors3To98;

/// Files whose documents went without closing them. They go with the library.
class LeftOpen {
 public:
  void Add(FileHandle file) noexcept try {
    AcquireSRWLockExclusive(&lock_);
    files_.push_back(std::move(file));
    ReleaseSRWLockExclusive(&lock_);
  } catch (...) {
    ReleaseSRWLockExclusive(&lock_);
  }

 private:
  SRWLOCK lock_ = SRWLOCK_INIT;
  std::vector<FileHandle> files_;
} left_open;

FileHandle OpenOrRaise(std::u16string_view path, DWORD access, DWORD disposition) {
  FileHandle file = OpenShared(path, access, disposition);
  if (!file) RaiseFileError(GetLastError());
  return file;
}

}  // namespace

DocumentFile::~DocumentFile() {
  if (file_) left_open.Add(std::move(file_));
}

void DocumentFile::Open(std::u16string_view path, Access access) {
  file_ = access == Access::kRead ? OpenOrRaise(path, GENERIC_READ, OPEN_EXISTING)
                                  : OpenOrRaise(path, GENERIC_READ | GENERIC_WRITE, OPEN_ALWAYS);
  next_ = 1;
}

void DocumentFile::Empty(std::u16string_view path) {
  const FileHandle file = OpenOrRaise(path, GENERIC_WRITE, OPEN_ALWAYS);
  if (!SetEndOfFile(file.get())) RaiseFileError(GetLastError());
}

std::int32_t DocumentFile::Length() const {
  if (!file_) RaiseRuntimeError(zepVbErrBadFileNameOrNumber);
  LARGE_INTEGER length;
  if (!GetFileSizeEx(file_.get(), &length)) RaiseFileError(GetLastError());
  if (length.QuadPart > std::numeric_limits<std::int32_t>::max()) {
    RaiseRuntimeError(zepVbErrOverflow);
  }
  return static_cast<std::int32_t>(length.QuadPart);
}

std::uint8_t DocumentFile::Read(std::int32_t position) {
  MoveTo(position);
  std::uint8_t byte = 0;
  DWORD count = 0;
  if (!ReadFile(file_.get(), &byte, 1, &count, nullptr)) RaiseFileError(GetLastError());
  if (count == 1) next_ = std::int64_t{position} + 1;
  return byte;
}

void DocumentFile::Write(std::int32_t position, std::uint8_t byte) {
  MoveTo(position);
  DWORD count = 0;
  if (!WriteFile(file_.get(), &byte, 1, &count, nullptr)) RaiseFileError(GetLastError());
  if (count != 1) RaiseRuntimeError(zepVbErrDiskFull);
  next_ = std::int64_t{position} + 1;
}

/// Leaves it unknown where the pointer stands, for the case that the transfer fails.
void DocumentFile::MoveTo(std::int32_t position) {
  if (!file_) RaiseRuntimeError(zepVbErrBadFileNameOrNumber);
  if (next_ != position) {
    LARGE_INTEGER offset;
    offset.QuadPart = std::int64_t{position} - 1;
    if (!SetFilePointerEx(file_.get(), offset, nullptr, FILE_BEGIN)) RaiseFileError(GetLastError());
  }
  next_ = 0;
}

}  // namespace zepkit10
