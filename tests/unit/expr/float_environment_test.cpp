// Hosts that run with other floating-point environments than the default.
#include "expr/float_environment.h"

#include <gtest/gtest.h>

#include "unit/expr/test_expressions.h"

namespace zepkit10 {
namespace {

constexpr std::uint32_t kMxcsrDefault = 0x1f80;
constexpr std::uint32_t kTrapDivision = kMxcsrDefault & ~0x200u;
constexpr std::uint32_t kTrapAll = 0;
constexpr std::uint32_t kRoundUp = kMxcsrDefault | 0x4000;

std::uint16_t X87() {
  std::uint16_t control;
  asm volatile("fnstcw %0" : "=m"(control));
  return control;
}

void SetX87(std::uint16_t control) { asm volatile("fldcw %0" : : "m"(control)); }

/// What an evaluation gives, and that it leaves the environment as it was.
template <class Action>
void InEnvironment(std::uint32_t mxcsr, std::uint16_t x87, Action action) {
  const std::uint32_t mxcsr_before = _mm_getcsr();
  const std::uint16_t x87_before = X87();
  _mm_setcsr(mxcsr);
  SetX87(x87);
  action();
  const std::uint32_t mxcsr_after = _mm_getcsr();
  const std::uint16_t x87_after = X87();
  _mm_setcsr(mxcsr_before);
  asm volatile("fnclex");
  SetX87(x87_before);
  EXPECT_EQ(mxcsr_after & ~0x3fu, mxcsr);
  EXPECT_EQ(x87_after, x87);
}

struct Environment {
  std::uint32_t mxcsr;
  std::uint16_t x87;
};
constexpr Environment kEnvironments[] = {
    {kMxcsrDefault, 0x037f},
    {kTrapDivision, 0x0372},  // division, overflow and invalid operations
                              // trap
    {kTrapAll, 0x0340},
    {kRoundUp, 0x0b7f},
    {kMxcsrDefault, 0x007f},  // single precision
};

TEST(FloatEnvironment, ResultsAreThoseOfTheDefault) {
  TestExpressions set;
  const Term third = ParseTerm(u"1/3", naive::EnglishNumbers());
  const Term terms[] = {third, ParseTerm(u"SIN(2)^3*EXP(1/7)", naive::EnglishNumbers()),
                        ParseTerm(u"SQR(2)-LOG(3)*0.1", naive::EnglishNumbers())};
  for (const Term& term : terms) {
    const double expected = set.Evaluate(term);
    for (const auto& [mxcsr, x87] : kEnvironments) {
      double value = 0;
      InEnvironment(mxcsr, x87, [&] { value = set.Evaluate(term); });
      EXPECT_EQ(value, expected) << std::hex << mxcsr << " " << x87;
    }
  }
}

TEST(FloatEnvironment, FaultsAreRaisedNotTrapped) {
  TestExpressions set;
  const Term zero_divide = ParseTerm(u"2+1/0", naive::EnglishNumbers());
  const Term overflow = ParseTerm(u"EXP(1000)", naive::EnglishNumbers());
  const Term invalid = ParseTerm(u"SQR(0-1)", naive::EnglishNumbers());
  for (const auto& [mxcsr, x87] : kEnvironments) {
    std::int32_t numbers[3];
    InEnvironment(mxcsr, x87, [&] {
      numbers[0] = FailureOf([&] { set.Evaluate(zero_divide); }).number;
      numbers[1] = FailureOf([&] { set.Evaluate(overflow); }).number;
      numbers[2] = FailureOf([&] { set.Evaluate(invalid); }).number;
    });
    EXPECT_EQ(numbers[0], 11);
    EXPECT_EQ(numbers[1], 6);
    EXPECT_EQ(numbers[2], 5);
  }
}

TEST(FloatEnvironment, NumbersAreReadAsInTheDefault) {
  for (const auto& [mxcsr, x87] : kEnvironments) {
    const double* number = nullptr;
    Term term;
    InEnvironment(mxcsr, x87, [&] { term = ParseTerm(u"0.1", naive::EnglishNumbers()); });
    number = term.Constant();
    ASSERT_TRUE(number);
    EXPECT_EQ(*number, 0.1);
  }
}

}  // namespace
}  // namespace zepkit10
