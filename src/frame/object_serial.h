#pragma once

#include <cstdint>

namespace zepkit10 {

/// The next number of the process-wide series that starts at 0 and counts every object of the
/// library. Error 6 once the 32-bit range is used up.
std::int32_t NextObjectSerial();

}  // namespace zepkit10
