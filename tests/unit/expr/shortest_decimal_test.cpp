// The shortest decimals, compared with those of the compiler's library.
#include "expr/shortest_decimal.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <iterator>
#include <limits>
#include <random>
#include <string>

namespace zepkit10 {
namespace {

std::string TextOf(const Decimal& decimal) {
  std::string digits = std::to_string(decimal.digits);
  const int exponent = decimal.exponent + static_cast<int>(digits.size()) - 1;
  if (digits.size() > 1) digits.insert(1, ".");
  std::string power = std::to_string(std::abs(exponent));
  if (power.size() < 2) power.insert(0, "0");
  return digits + (exponent < 0 ? "e-" : "e+") + power;
}

void ExpectShortest(double number) {
  char text[32];
  const auto end = std::to_chars(text, std::end(text), number, std::chars_format::scientific).ptr;
  ASSERT_EQ(TextOf(ShortestDecimal(number)), std::string(text, end));
}

/// The number and those next to it, as far as they are above 0 and finite.
void ExpectShortestAround(double number) {
  constexpr double kLargest = std::numeric_limits<double>::max();
  ExpectShortest(number);
  if (number < kLargest) ExpectShortest(std::nextafter(number, kLargest));
  if (std::nextafter(number, 0) > 0) ExpectShortest(std::nextafter(number, 0));
}

TEST(ShortestDecimal, OfFamiliarNumbers) {
  EXPECT_EQ(ShortestDecimal(1), (Decimal{1, 0}));
  EXPECT_EQ(ShortestDecimal(0.1), (Decimal{1, -1}));
  EXPECT_EQ(ShortestDecimal(120), (Decimal{12, 1}));
  EXPECT_EQ(ShortestDecimal(1.0 / 3), (Decimal{3333333333333333, -16}));
  EXPECT_EQ(ShortestDecimal(std::ldexp(1, -44)), (Decimal{5684341886080802, -29}));
  EXPECT_EQ(ShortestDecimal(9007199254740993), (Decimal{9007199254740992, 0}));
  EXPECT_EQ(ShortestDecimal(std::numeric_limits<double>::denorm_min()), (Decimal{5, -324}));
  EXPECT_EQ(ShortestDecimal(std::numeric_limits<double>::max()), (Decimal{17976931348623157, 292}));
}

TEST(ShortestDecimal, OfTheLeastNumbers) {
  for (std::uint64_t bits = 1; bits < 20'000; ++bits) ExpectShortest(std::bit_cast<double>(bits));
}

TEST(ShortestDecimal, AroundPowersOfTwo) {
  for (int power = -1074; power < 1024; ++power) ExpectShortestAround(std::ldexp(1, power));
}

TEST(ShortestDecimal, AroundPowersOfTen) {
  for (int power = -323; power <= 308; ++power) {
    for (const char* digits : {"1", "5", "9", "12", "99"}) {
      const double number = std::strtod((digits + ("e" + std::to_string(power))).c_str(), nullptr);
      if (std::isfinite(number)) ExpectShortestAround(number);
    }
  }
}

TEST(ShortestDecimal, OfNumbersAtRandom) {
  std::mt19937_64 random(1);
  for (int i = 0; i < 100'000; ++i) {
    const auto number = std::bit_cast<double>(random() >> 1);
    if (std::isfinite(number) && number > 0) ExpectShortest(number);
    ExpectShortest(static_cast<double>((random() >> random() % 64) | 1));
    ExpectShortest(static_cast<double>(1 + random() % 1'000'000) / 1000);
  }
}

}  // namespace
}  // namespace zepkit10
