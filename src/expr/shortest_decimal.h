#pragma once

#include <cstdint>

namespace zepkit10 {

/// digits * 10^exponent
struct Decimal {
  std::uint64_t digits;
  int exponent;

  friend bool operator==(const Decimal&, const Decimal&) = default;
};

/// Of all decimals that read back to a number, the one with the fewest digits; of several the
/// closest to it, of two as close the even one. The number is finite and above 0. The digits do not
/// end in 0.
Decimal ShortestDecimal(double number);

}  // namespace zepkit10
