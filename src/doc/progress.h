#pragma once

#include <cstdint>
#include <limits>

#include "frame/errors.h"

namespace zepkit10 {

/// After how many bytes a transfer reports once more.
inline constexpr std::int32_t kReportInterval = 1024;

/// How much of a transfer is done, as a percentage. Error 6 where a hundred times the bytes done
/// leave the 32-bit range.
inline float PercentageDone(std::int32_t done, std::int32_t whole) {
  const std::int64_t hundredfold = std::int64_t{done} * 100;
  if (hundredfold > std::numeric_limits<std::int32_t>::max()) {
    RaiseRuntimeError(ZepVbErrors3To98::zepVbErrOverflow, u"DocHand");
  }
  return static_cast<float>(static_cast<double>(hundredfold) / static_cast<double>(whole));
}

}  // namespace zepkit10
