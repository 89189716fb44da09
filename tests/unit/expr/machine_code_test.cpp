#include "expr/machine_code.h"

#include <gtest/gtest.h>
#include <xmmintrin.h>

#include <cmath>
#include <string>
#include <string_view>

#include "unit/expr/test_expressions.h"

namespace zepkit10 {
namespace {

/// A term of x, y and t, which is a term itself.
class MachineCodeTest : public testing::Test {
 protected:
  void SetUp() override {
    if (sizeof(void*) == 4) GTEST_SKIP() << "there is code for 64 bits only";
    set_.Set(u'x', 3.0);
    set_.Set(u'y', 5.0);
    set_.Set(u't', u"SIN(x)+y");
    root_.expressions = &set_;
  }

  const ExecutableCode* CodeOf(std::u16string_view text) {
    MeaningChanged();
    root_.term = ParseTerm(text, naive::EnglishNumbers());
    const Plan* plan = root_.PlanFor(0, meaning);
    return plan ? plan->MakeCode() : nullptr;
  }
  double ValueOf(std::u16string_view text) {
    const ExecutableCode* code = CodeOf(text);
    EXPECT_TRUE(code);
    return code ? code->Run() : 0;
  }

  TestExpressions set_;
  TestExpression root_;
};

TEST_F(MachineCodeTest, EveryOperation) {
  EXPECT_EQ(8, ValueOf(u"x+y"));
  EXPECT_EQ(-2, ValueOf(u"x-y"));
  EXPECT_EQ(15, ValueOf(u"x*y"));
  EXPECT_EQ(0.6, ValueOf(u"x/y"));
  EXPECT_EQ(std::pow(3, 5), ValueOf(u"x^y"));
  EXPECT_EQ(9, ValueOf(u"x^2"));
  EXPECT_EQ(2, ValueOf(u"|x-y|"));
  EXPECT_EQ(std::sqrt(3), ValueOf(u"SQR(x)"));
  EXPECT_EQ(std::exp(3), ValueOf(u"EXP(x)"));
  EXPECT_EQ(std::log(3), ValueOf(u"LOG(x)"));
  EXPECT_EQ(std::sin(3), ValueOf(u"SIN(x)"));
  EXPECT_EQ(std::cos(3), ValueOf(u"COS(x)"));
  EXPECT_EQ(std::tan(3), ValueOf(u"TAN(x)"));
  EXPECT_EQ(std::atan(3), ValueOf(u"ATN(x)"));
}

TEST_F(MachineCodeTest, EveryOrderOfOperands) {
  EXPECT_EQ(1 - 8.0, ValueOf(u"1-(x+y)"));
  EXPECT_EQ(1 / 8.0, ValueOf(u"1/(x+y)"));
  EXPECT_EQ(std::pow(2, 8), ValueOf(u"2^(x+y)"));
  EXPECT_EQ(std::pow(8, 5), ValueOf(u"(x+y)^y"));
  // Of these the right operand needs more values than the left.
  EXPECT_EQ(8.0 - 15.0 * -2.0, ValueOf(u"(x+y)-(x*y)*(x-y)"));
  EXPECT_EQ(8.0 / (15.0 * -2.0), ValueOf(u"(x+y)/((x*y)*(x-y))"));
  EXPECT_EQ(std::pow(8.0, 15.0 / -2.0), ValueOf(u"(x+y)^((x*y)/(x-y))"));
}

TEST_F(MachineCodeTest, ValuesOutliveCalls) {
  EXPECT_EQ(8 * (15 - (2.0 * 3 + std::sin(9)) * (3.0 - std::cos(8))),
            ValueOf(u"(x+y)*(x*y-(2*x+SIN(x*x))*(x-COS(x+y)))"));
  EXPECT_EQ(8 - (std::sin(3) + 5), ValueOf(u"(x+y)-t"));
}

TEST_F(MachineCodeTest, NumbersWrittenLaterCount) {
  const ExecutableCode* code = CodeOf(u"x-y");
  ASSERT_TRUE(code);
  set_.Find(u'x').term.SetNumber(-7);
  EXPECT_EQ(-12, code->Run());
}

TEST_F(MachineCodeTest, NoFiniteNumberIsMadeOfAnInfiniteOne) {
  EXPECT_TRUE(std::isnan(ValueOf(u"1/(x/(y-5))")));
  EXPECT_TRUE(std::isnan(ValueOf(u"ATN(x/(y-5))")));
  EXPECT_TRUE(std::isnan(ValueOf(u"EXP(LOG(y-5))")));
  EXPECT_TRUE(std::isnan(ValueOf(u"(x/(y-5))^(0-1)")));
  EXPECT_TRUE(std::signbit(ValueOf(u"(y-5)/(x-4)")));
}

TEST_F(MachineCodeTest, ThereIsNoneForManyValuesOrManyInstructions) {
  const std::u16string four = u"((x+y)*(x-y)+(x*y)*(x/y))", eight = four + u"*" + four;
  EXPECT_TRUE(CodeOf(eight));
  EXPECT_FALSE(CodeOf(u"(" + eight + u")/(" + eight + u")"));
  std::u16string sum = u"x";
  for (int i = 0; i < 400; ++i) sum += u"+y";
  EXPECT_TRUE(CodeOf(sum));
  for (int i = 0; i < 100; ++i) sum += u"+y";
  EXPECT_FALSE(CodeOf(sum));
}

TEST_F(MachineCodeTest, OtherEnvironmentsGiveNoValue) {
  constexpr unsigned kDefault = 0x1F80, kFlags = 0x3F;
  constexpr unsigned kDown = 0x2000, kUp = 0x4000, kToZero = 0x6000;
  constexpr unsigned kFlushToZero = 0x8000, kSmallIsZero = 0x0040;
  const ExecutableCode* code = CodeOf(u"x+y");
  ASSERT_TRUE(code);
  for (const unsigned other : {kDown, kUp, kToZero, kFlushToZero, kSmallIsZero}) {
    _mm_setcsr(kDefault | other);
    const double value = code->Run();
    _mm_setcsr(kDefault);
    EXPECT_TRUE(std::isnan(value)) << other;
  }
  _mm_setcsr(kDefault | kFlags);
  EXPECT_EQ(8, code->Run());
  _mm_setcsr(kDefault);
}

}  // namespace
}  // namespace zepkit10
