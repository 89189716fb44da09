#pragma once

#include <algorithm>
#include <vector>

#include "com/import_hook.h"

DECLARE_IMPORT(CreateFileW, 28);
DECLARE_IMPORT(GetFileSizeEx, 8);
DECLARE_IMPORT(ReadFile, 20);
DECLARE_IMPORT(SetEndOfFile, 4);
DECLARE_IMPORT(SetFilePointerEx, 20);
DECLARE_IMPORT(WriteFile, 20);

using OpenHook = ImportHook<&__imp_CreateFileW>;
using ReadHook = ImportHook<&__imp_ReadFile>;
using WriteHook = ImportHook<&__imp_WriteFile>;
using SizeHook = ImportHook<&__imp_GetFileSizeEx>;
using MoveHook = ImportHook<&__imp_SetFilePointerEx>;
using CutHook = ImportHook<&__imp_SetEndOfFile>;

/// Functions of the system some of whose calls fail, to be hooked in one at a time.
class FailingCalls {
 public:
  /// Which calls fail from now on, counted from 1, and with which error of the system.
  static void Begin(std::vector<int> numbers, DWORD error) {
    failing_ = std::move(numbers);
    error_ = error;
    count_ = 0;
  }
  static int count() { return count_; }

  // A transfer that fails has moved the file's pointer all the same.
  static BOOL WINAPI Read(HANDLE file, void* bytes, DWORD size, DWORD* count,
                          OVERLAPPED* overlapped) {
    const BOOL read = ReadHook::kSystem(file, bytes, size, count, overlapped);
    return !Fails() && read;
  }
  static BOOL WINAPI Write(HANDLE file, const void* bytes, DWORD size, DWORD* count,
                           OVERLAPPED* overlapped) {
    const BOOL written = WriteHook::kSystem(file, bytes, size, count, overlapped);
    return !Fails() && written;
  }
  /// Fails by writing nothing and saying so.
  static BOOL WINAPI WriteAll(HANDLE file, const void* bytes, DWORD size, DWORD* count,
                              OVERLAPPED* overlapped) {
    return WriteHook::kSystem(file, bytes, Fails() ? 0 : size, count, overlapped);
  }
  static HANDLE WINAPI Open(const wchar_t* name, DWORD access, DWORD share,
                            SECURITY_ATTRIBUTES* security, DWORD disposition, DWORD flags,
                            HANDLE pattern) {
    if (Fails()) return INVALID_HANDLE_VALUE;
    return OpenHook::kSystem(name, access, share, security, disposition, flags, pattern);
  }
  static BOOL WINAPI Size(HANDLE file, LARGE_INTEGER* size) {
    return !Fails() && SizeHook::kSystem(file, size);
  }
  static BOOL WINAPI Move(HANDLE file, LARGE_INTEGER distance, LARGE_INTEGER* position,
                          DWORD method) {
    return !Fails() && MoveHook::kSystem(file, distance, position, method);
  }
  static BOOL WINAPI Cut(HANDLE file) { return !Fails() && CutHook::kSystem(file); }

 private:
  static bool Fails() {
    ++count_;
    if (std::find(failing_.begin(), failing_.end(), count_) == failing_.end()) return false;
    SetLastError(error_);
    return true;
  }

  static inline std::vector<int> failing_;
  static inline DWORD error_ = ERROR_SUCCESS;
  static inline int count_ = 0;
};
