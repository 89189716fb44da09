#pragma once

#include <set>

#include "com/import_hook.h"

DECLARE_IMPORT(CloseHandle, 4);
DECLARE_IMPORT(CreateFileW, 28);

/// Closes what the component, linked into the test program, opens and does not close.
class LeftOpenFiles {
 public:
  LeftOpenFiles() { open_.clear(); }
  ~LeftOpenFiles() {
    for (HANDLE file : open_) Close::kSystem(file);
  }
  std::size_t count() const { return open_.size(); }

 private:
  using Open = ImportHook<&__imp_CreateFileW>;
  using Close = ImportHook<&__imp_CloseHandle>;

  static HANDLE WINAPI OpenFile(const wchar_t* name, DWORD access, DWORD share,
                                SECURITY_ATTRIBUTES* security, DWORD disposition, DWORD flags,
                                HANDLE pattern) {
    HANDLE file = Open::kSystem(name, access, share, security, disposition, flags, pattern);
    if (file != INVALID_HANDLE_VALUE) open_.insert(file);
    return file;
  }
  static BOOL WINAPI CloseFile(HANDLE file) {
    open_.erase(file);
    return Close::kSystem(file);
  }

  static inline std::set<HANDLE> open_;
  const Open open_hook_{OpenFile};
  const Close close_hook_{CloseFile};
};
