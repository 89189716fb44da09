#pragma once

#include <windows.h>

namespace zepkit10 {

/// The library's icon in a width in pixels, which the caller destroys. Null where the system
/// refuses it: GetLastError tells why.
HICON LoadOwnIcon(int width);

}  // namespace zepkit10
