// Numbers as text: what assigning Value writes and reading EString shows.
#include <bit>
#include <cmath>
#include <limits>
#include <random>

#include "com/both_bindings.h"
#include "com/german_user.h"
#include "com/zep_error.h"

namespace {

using client::Object;
using client::Value;

constexpr double kLargest = std::numeric_limits<double>::max();
constexpr double kSmallest = std::numeric_limits<double>::denorm_min();

class NumberTextTest : public BothBindings {
 protected:
  /// Assigns a number and demands it back, from Value and from the text read as a term.
  void RoundTrip(double number) {
    ASSERT_TRUE(expression_.Let(L"Value", {number}).ok()) << number;
    ASSERT_EQ(expression_.Get(L"Value"), number);
    const auto text = expression_.Get(L"EString");
    ASSERT_TRUE(text.ok()) << number;
    ASSERT_TRUE(expression_.Let(L"EString", {text.value}).ok()) << text;
    ASSERT_EQ(expression_.Get(L"Value"), number) << text;
  }

  void RoundTripMany() {
    for (const double number : {0.0, 1.0, 0.1, 1e-5, 1e15, 1e16, 1e22, 1e300, kLargest, kSmallest,
                                std::numeric_limits<double>::min(), 123456789012345678.0}) {
      RoundTrip(number);
      RoundTrip(-number);
    }
    std::mt19937_64 random(10);
    for (int i = 0; i < 3000;) {
      const auto number = std::bit_cast<double>(random());
      if (!std::isfinite(number)) continue;
      RoundTrip(number);
      ++i;
    }
    std::uniform_real_distribution<double> common(-1000, 1000);
    for (int i = 0; i < 1000; ++i) RoundTrip(common(random));
    for (int i = 0; i < 1000; ++i) {  // denormals
      RoundTrip(std::bit_cast<double>(random() & 0x800FFFFFFFFFFFFF));
    }
  }

  Object expression_ = Create(CLSID_Expression);
};

TEST_P(NumberTextTest, EveryFiniteNumberReadsBack) { RoundTripMany(); }

TEST_P(NumberTextTest, GermanNumbersReadBack) {
  SKIP_UNLESS_GERMAN();
  RoundTripMany();
}

TEST_P(NumberTextTest, TextsAreShortAndPlain) {
  const std::pair<double, const wchar_t*> texts[] = {{0, L"0"},
                                                     {-0.0, L"0"},
                                                     {2.5, L"2.5"},
                                                     {0.1, L"0.1"},
                                                     {1234567, L"1234567"},
                                                     {-3, L"0-3"},
                                                     {-0.25, L"0-0.25"},
                                                     {1e-5, L"0.00001"},
                                                     {1e15, L"1000000000000000"},
                                                     {1e22, L"10000000000000000000000"},
                                                     {0.1 + 0.2, L"0.30000000000000004"}};
  for (const auto& [number, text] : texts) {
    EXPECT_OK(expression_.Let(L"Value", {number}));
    EXPECT_EQ(expression_.Get(L"EString"), text);
  }
}

TEST_P(NumberTextTest, GermanTextsHaveADecimalComma) {
  SKIP_UNLESS_GERMAN();
  const std::pair<double, const wchar_t*> texts[] = {
      {2.5, L"2,5"}, {-0.25, L"0-0,25"}, {1234567.5, L"1234567,5"}, {1e-5, L"0,00001"}};
  for (const auto& [number, text] : texts) {
    EXPECT_OK(expression_.Let(L"Value", {number}));
    EXPECT_EQ(expression_.Get(L"EString"), text);
    EXPECT_EQ(expression_.Get(L"Value"), number);
  }
}

TEST_P(NumberTextTest, NumbersOfATermAreReadAsThePlatformReadsThem) {
  const std::pair<const wchar_t*, double> texts[] = {
      {L"1.5", 1.5}, {L"1,234", 1234}, {L"1,5", 15}, {L"007", 7}, {L"5.", 5}, {L"1,2,3", 123}};
  for (const auto& [text, number] : texts) {
    EXPECT_OK(expression_.Let(L"EString", {text}));
    EXPECT_EQ(expression_.Get(L"Value"), number);
  }
}

TEST_P(NumberTextTest, GermanNumbersOfATermHaveADecimalComma) {
  SKIP_UNLESS_GERMAN();
  const std::pair<const wchar_t*, double> texts[] = {
      {L"1,5", 1.5}, {L"1.234", 1234}, {L"1.234,5", 1234.5}, {L"1.2.3", 123}, {L"2,5*2", 5}};
  for (const auto& [text, number] : texts) {
    EXPECT_OK(expression_.Let(L"EString", {text}));
    EXPECT_EQ(expression_.Get(L"Value"), number);
  }
}

TEST_P(NumberTextTest, WhatIsNotFiniteIsRefused) {
  EXPECT_OK(expression_.Let(L"EString", {L"1+1"}));
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const double number : {kInfinity, -kInfinity, std::nan(""), -std::nan("")}) {
    EXPECT_ZEP_ERROR(expression_.Let(L"Value", {number}), zepErrBadPropValue, L"Expression");
  }
  EXPECT_EQ(expression_.Get(L"EString"), L"1+1");
}

RUN_IN_BOTH_BINDINGS(NumberTextTest);

}  // namespace
