#pragma once

#include <windows.h>

#include <memory>

namespace zepkit10 {

struct HandleCloser {
  void operator()(HANDLE handle) const { CloseHandle(handle); }
};

/// An open file that closes itself; null where it could not be opened.
using FileHandle = std::unique_ptr<void, HandleCloser>;

/// Takes over what CreateFileW returns; GetLastError still tells why there is none.
inline FileHandle OwnFile(HANDLE opened) {
  return FileHandle(opened == INVALID_HANDLE_VALUE ? nullptr : opened);
}

}  // namespace zepkit10
