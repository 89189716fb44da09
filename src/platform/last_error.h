#pragma once

namespace zepkit10 {

/// Raises what the thread's last error tells of a window or an image that the system refused:
/// error 7 where memory or handles are exhausted, otherwise 361.
[[noreturn]] void RaiseLastError();

}  // namespace zepkit10
