#pragma once

#include <windows.h>

#include <cstdint>
#include <string_view>

#include "platform/file_handle.h"

namespace zepkit10 {

/// A file that is read and written byte by byte, at positions from 1. While it is open, others may
/// read it but not write it. Failures are the runtime's errors: 52 of a file that is not open.
class DocumentFile {
 public:
  enum class Access {
    kRead,       // the file must be there
    kReadWrite,  // a missing file is created, one whose attributes call it read-only refused
  };

  DocumentFile() = default;
  /// The file is left open, until the library itself goes.
  ~DocumentFile();
  DocumentFile(const DocumentFile&) = delete;
  DocumentFile& operator=(const DocumentFile&) = delete;

  void Open(std::u16string_view path, Access access);
  void Close() noexcept { file_ = nullptr; }

  /// Empties a file that is not open, or creates it.
  static void Empty(std::u16string_view path);

  /// Error 6 where the file is longer than 2147483647 bytes.
  std::int32_t Length() const;

  /// 0 behind the end of the file.
  std::uint8_t Read(std::int32_t position);
  void Write(std::int32_t position, std::uint8_t byte);

 private:
  void MoveTo(std::int32_t position);

  FileHandle file_;
  std::int64_t next_ = 1;  // where the system's file pointer stands; 0 where that is not known
};

}  // namespace zepkit10
