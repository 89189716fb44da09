#include "expr/shortest_decimal.h"

#include <array>
#include <bit>
#include <cstddef>

// R. Giulietti, "The Schubfach way to render doubles". The compiler's std::to_chars has the same
// results and would make the DLL larger by a fifth.
namespace zepkit10 {
namespace {

struct Wide {
  std::uint64_t high, low;
};

constexpr Wide Multiply(std::uint64_t a, std::uint64_t b) {
  constexpr std::uint64_t kLow = 0xffff'ffff;
  const std::uint64_t low = (a & kLow) * (b & kLow);
  const std::uint64_t middle = (a >> 32) * (b & kLow) + (low >> 32);
  const std::uint64_t other = (a & kLow) * (b >> 32) + (middle & kLow);
  return {(a >> 32) * (b >> 32) + (middle >> 32) + (other >> 32), other << 32 | (low & kLow)};
}

// The powers that the products with all doubles need.
constexpr int kLeastPower = -292, kGreatestPower = 324;
using Powers = std::array<Wide, kGreatestPower - kLeastPower + 1>;

/// A whole number of up to 1280 bits.
class Natural {
 public:
  consteval explicit Natural(int power_of_two) {
    limbs_[power_of_two / 32] = 1u << power_of_two % 32;
  }

  consteval void MultiplyByTen() {
    std::uint64_t carry = 0;
    for (std::uint32_t& limb : limbs_) {
      carry += limb * std::uint64_t{10};
      limb = static_cast<std::uint32_t>(carry);
      carry >>= 32;
    }
  }

  consteval void DivideByTen() {
    std::uint64_t rest = 0;
    for (auto limb = limbs_.rbegin(); limb != limbs_.rend(); ++limb) {
      rest = rest << 32 | *limb;
      *limb = static_cast<std::uint32_t>(rest / 10);
      rest %= 10;
    }
  }

  /// The 128 bits from the first that is set on, plus 1 if any are set behind them. The number has
  /// more bits than that.
  consteval Wide LeadingBits() const {
    std::size_t top = limbs_.size() - 1;
    while (limbs_[top] == 0) --top;
    const int shift = std::countl_zero(limbs_[top]);
    const auto shifted = [&](std::size_t limb) {
      return (std::uint64_t{limbs_[limb]} << 32 | limbs_[limb - 1]) << shift >> 32;
    };
    Wide bits{shifted(top) << 32 | shifted(top - 1), shifted(top - 2) << 32 | shifted(top - 3)};
    bool more = static_cast<std::uint32_t>(limbs_[top - 4] << shift) != 0;
    for (std::size_t limb = 0; limb < top - 4; ++limb) more = more || limbs_[limb] != 0;
    if (more && ++bits.low == 0) ++bits.high;
    return bits;
  }

 private:
  std::array<std::uint32_t, 40> limbs_{};
};

consteval Powers MakePowers() {
  Powers powers{};
  Natural rising(128), falling(1200);  // 128 bits more than the greatest and the least power need
  for (int power = 0; power <= kGreatestPower; ++power) {
    powers[power - kLeastPower] = rising.LeadingBits();
    rising.MultiplyByTen();
  }
  for (int power = -1; power >= kLeastPower; --power) {
    falling.DivideByTen();
    powers[power - kLeastPower] = falling.LeadingBits();
  }
  return powers;
}

/// The powers of ten, each divided by the power of two that makes it a number of 128 bits, and
/// rounded up.
constexpr Powers kPowers = MakePowers();

constexpr int FloorLog2OfPowerOfTen(int power) { return (power * 1741647) >> 19; }

/// The product of a power of ten and a number, of which the last bit also stands for all that would
/// come behind it.
std::uint64_t RoundToOdd(const Wide& power, std::uint64_t number) {
  const std::uint64_t carry = Multiply(power.low, number).high;
  Wide product = Multiply(power.high, number);
  product.low += carry;
  if (product.low < carry) ++product.high;
  return product.high | (product.low > 1);
}

Decimal WithoutTrailingZeros(Decimal decimal) {
  constexpr Decimal kPowersOfTen[] = {{100'000'000, 8}, {10'000, 4}, {100, 2}, {10, 1}};
  for (const auto& [power, zeros] : kPowersOfTen) {
    for (; decimal.digits % power == 0; decimal.exponent += zeros) decimal.digits /= power;
  }
  return decimal;
}

/// Of significand * 2^exponent. Numbers are compared as multiples of a quarter of the last digit.
Decimal Shortest(std::uint64_t significand, int exponent, bool is_power_of_two) {
  const int power = (exponent * 1262611 - (is_power_of_two ? 524031 : 0)) >> 22;
  const int shift = exponent + FloorLog2OfPowerOfTen(-power) + 1;
  const Wide& scale = kPowers[-power - kLeastPower];
  const std::uint64_t fourfold = 4 * significand;
  const std::uint64_t number = RoundToOdd(scale, fourfold << shift);
  // What lies between these reads back to the number; they themselves do if it is even.
  const bool odd = significand % 2 != 0;
  const std::uint64_t below = fourfold - (is_power_of_two ? 1 : 2);
  const std::uint64_t lower = RoundToOdd(scale, below << shift) + odd;
  const std::uint64_t upper = RoundToOdd(scale, (fourfold + 2) << shift) - odd;

  const std::uint64_t digits = number / 4;
  if (digits >= 10) {
    const std::uint64_t fewer = digits / 10;
    const bool down = lower <= 40 * fewer, up = 40 * fewer + 40 <= upper;
    if (down != up) return {fewer + up, power + 1};
  }
  const bool down = lower <= 4 * digits, up = 4 * digits + 4 <= upper;
  if (down != up) return {digits + up, power};
  const std::uint64_t middle = 4 * digits + 2;
  return {digits + (number > middle || (number == middle && digits % 2 != 0)), power};
}

}  // namespace

Decimal ShortestDecimal(double number) {
  constexpr int kFractionBits = 52, kBias = 1023 + kFractionBits;
  constexpr std::uint64_t kHidden = std::uint64_t{1} << kFractionBits;
  const auto bits = std::bit_cast<std::uint64_t>(number);
  const std::uint64_t fraction = bits & (kHidden - 1);
  const auto exponent = static_cast<int>(bits >> kFractionBits);
  if (exponent == 0) return WithoutTrailingZeros(Shortest(fraction, 1 - kBias, false));
  const bool is_power_of_two = fraction == 0 && exponent > 1;
  return WithoutTrailingZeros(Shortest(fraction | kHidden, exponent - kBias, is_power_of_two));
}

}  // namespace zepkit10
