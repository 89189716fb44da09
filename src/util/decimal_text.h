#pragma once

#include <cstdint>
#include <string>

namespace zepkit10 {

/// An integer in decimal digits, with a minus sign where it is negative.
inline std::u16string DecimalText(std::int64_t number) {
  const std::string digits = std::to_string(number);
  return {digits.begin(), digits.end()};
}

}  // namespace zepkit10
