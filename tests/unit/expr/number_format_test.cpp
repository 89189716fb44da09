#include "expr/number_format.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>
#include <random>

#include "unit/expr/naive_numbers.h"

namespace zepkit10 {
namespace {

using naive::EnglishNumbers;
using naive::GermanNumbers;

constexpr double kLargest = std::numeric_limits<double>::max();
constexpr double kSmallest = std::numeric_limits<double>::denorm_min();

TEST(NumberFormat, ShortestTextWithoutAnExponent) {
  const auto text = [](double number) { return NumberToText(number, EnglishNumbers()); };
  EXPECT_EQ(text(0), u"0");
  EXPECT_EQ(text(-0.0), u"0");
  EXPECT_EQ(text(1), u"1");
  EXPECT_EQ(text(-1.5), u"-1.5");
  EXPECT_EQ(text(0.1), u"0.1");
  EXPECT_EQ(text(0.1 + 0.2), u"0.30000000000000004");
  EXPECT_EQ(text(1e-5), u"0.00001");
  EXPECT_EQ(text(100), u"100");
  EXPECT_EQ(text(1e22), u"1" + std::u16string(22, u'0'));
  EXPECT_EQ(text(123456.789), u"123456.789");
  EXPECT_EQ(text(1234567890123456789.0), u"1234567890123456800");
  EXPECT_EQ(text(kLargest), u"17976931348623157" + std::u16string(292, u'0'));
  EXPECT_EQ(text(kSmallest), u"0." + std::u16string(323, u'0') + u"5");
}

TEST(NumberFormat, TheUsersDecimalSeparator) {
  EXPECT_EQ(NumberToText(2.5, GermanNumbers()), u"2,5");
  EXPECT_EQ(NumberToText(-1234.5, GermanNumbers()), u"-1234,5");
}

void ExpectReadBack(double number, const NumberFormat& format) {
  const std::u16string text = NumberToText(number, format);
  const auto read = TextToNumber(text, format);
  ASSERT_TRUE(read) << number;
  ASSERT_EQ(std::bit_cast<std::uint64_t>(*read), std::bit_cast<std::uint64_t>(number));
  ASSERT_EQ(NumberLength(text, format), text.size());
}

TEST(NumberFormat, EveryNumberReadsBack) {
  std::mt19937_64 random(1);
  for (int i = 0; i < 20'000; ++i) {
    const double number = std::fabs(std::bit_cast<double>(random()));
    if (!std::isfinite(number)) continue;
    ExpectReadBack(number, EnglishNumbers());
    ExpectReadBack(number, GermanNumbers());
    ExpectReadBack(std::bit_cast<double>(random() >> 12), EnglishNumbers());  // denormal
    ExpectReadBack(static_cast<double>(random() >> 11), EnglishNumbers());    // whole
  }
  for (const double number : {0.0, kLargest, kSmallest, std::numeric_limits<double>::min()}) {
    ExpectReadBack(number, GermanNumbers());
  }
}

TEST(NumberFormat, RoundsCorrectly) {
  const auto number = [](std::u16string_view text) { return TextToNumber(text, EnglishNumbers()); };
  EXPECT_EQ(number(u"9007199254740993"), 9007199254740992.0);  // a tie goes to the even neighbour
  EXPECT_EQ(number(u"9007199254740993.00000000000000000000000000001"), 9007199254740994.0);
  EXPECT_EQ(number(u"0." + std::u16string(400, u'0') + u"1"), 0.0);
  EXPECT_EQ(number(std::u16string(400, u'0') + u"1"), 1.0);
  EXPECT_EQ(number(u"1" + std::u16string(309, u'0')), std::nullopt);
}

TEST(NumberFormat, WhatIsNoNumber) {
  for (const std::u16string_view text : {u"", u".", u",", u",5", u"1.2.3", u"1..", u"x", u".,"}) {
    EXPECT_EQ(TextToNumber(text, EnglishNumbers()), std::nullopt);
  }
}

TEST(NumberFormat, ThePlatformIsAskedOnlyAboutGroups) {
  NumberFormat format{u'.', u',', [](std::u16string_view) { return std::optional(42.0); }};
  EXPECT_EQ(TextToNumber(u"1.5", format), 1.5);
  EXPECT_EQ(TextToNumber(u"1,5", format), 42.0);
  format.convert = [](std::u16string_view) { return std::numeric_limits<double>::infinity(); };
  EXPECT_EQ(TextToNumber(u"1,5", format), std::nullopt);
}

TEST(NumberFormat, LengthIsThatOfTheLongestPartThatConverts) {
  constexpr char16_t kCharacters[] = u"019.,x";
  for (const NumberFormat* format : {&EnglishNumbers(), &GermanNumbers()}) {
    for (int number = 0; number < 6 * 6 * 6 * 6 * 6; ++number) {
      std::u16string text;
      for (int rest = number; rest > 0; rest /= 6) text += kCharacters[rest % 6];
      std::size_t longest = std::min(text.find(u'x'), text.size());
      while (longest > 0 && !format->convert(text.substr(0, longest))) --longest;
      ASSERT_EQ(NumberLength(text, *format), longest) << number;
    }
  }
}

TEST(NumberFormat, LengthEndsBeforeANumberGetsTooLarge) {
  const auto length = [](std::u16string_view text) { return NumberLength(text, EnglishNumbers()); };
  const std::u16string zeros(308, u'0');
  EXPECT_EQ(length(u"1" + zeros), 309u);
  EXPECT_EQ(length(u"2" + zeros), 308u);
  EXPECT_EQ(length(u"1" + zeros + u"0"), 309u);
  EXPECT_EQ(length(u"000" + std::u16string(400, u'9')), 311u);
  EXPECT_EQ(length(u"1" + zeros + u".5"), 311u);
  EXPECT_EQ(length(u"1," + zeros + u"0"), 310u);
}

TEST(NumberFormat, SeparatorsThatNoTermCanContain) {
  const NumberFormat format{u'\u066b', u'\u066c', [](std::u16string_view) { return std::nullopt; }};
  EXPECT_EQ(NumberLength(u"12.5", format), 2u);
  EXPECT_EQ(NumberLength(u"12\u066b5", format), 2u);
  EXPECT_EQ(NumberToText(12.5, format), u"12\u066b5");
}

TEST(NumberFormat, DigitsOfAnyLengthAreRoundedCorrectly) {
  std::mt19937 random(4);
  for (int i = 0; i < 200'000; ++i) {
    std::u16string text;
    for (auto length = 1 + random() % 20; length > 0; --length) {
      text += static_cast<char16_t>(u'0' + random() % 10);
    }
    if (random() % 4 != 0) text.insert(random() % (text.size() + 1), u".");
    const auto read = TextToNumber(text, naive::EnglishNumbers());
    const auto expected = naive::EnglishNumbers().convert(text);
    ASSERT_TRUE(read);
    ASSERT_EQ(std::bit_cast<std::uint64_t>(*read), std::bit_cast<std::uint64_t>(*expected))
        << std::string(text.begin(), text.end());
  }
}

}  // namespace
}  // namespace zepkit10
