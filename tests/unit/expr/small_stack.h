#pragma once

#include <functional>

namespace zepkit10 {

/// Runs an action on a thread whose stack has 256 KB, and waits for it. With AddressSanitizer,
/// whose frames are larger, it has 1 MB.
void OnSmallStack(const std::function<void()>& action);

}  // namespace zepkit10
