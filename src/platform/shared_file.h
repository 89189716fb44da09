#pragma once

#include <windows.h>

#include <string_view>

#include "platform/file_handle.h"

namespace zepkit10 {

/// Opens a file that others may read meanwhile but not write. Null where that is refused, as
/// writing a file is whose attributes call it read-only; GetLastError tells why.
FileHandle OpenShared(std::u16string_view path, DWORD access, DWORD disposition);

}  // namespace zepkit10
