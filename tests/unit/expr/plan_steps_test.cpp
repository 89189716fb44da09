#include "expr/plan_steps.h"

#include <gtest/gtest.h>

#include <cmath>
#include <deque>
#include <limits>
#include <new>

#include "unit/expr/test_expressions.h"

namespace zepkit10 {
namespace {

using enum Joint;
using enum ZepMathOperation;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kFirst = 2, kSecond = 5;

double Stepped(RunStep run, double value) {
  const Plan::Step step{run, &kFirst, &kSecond};
  return run(value, step);
}

TEST(PlanSteps, JoinAValueWithANumber) {
  EXPECT_EQ(10, Stepped(Join(kAdd), 8));
  EXPECT_EQ(6, Stepped(Join(kSub), 8));
  EXPECT_EQ(-6, Stepped(Join(kSubFrom), 8));
  EXPECT_EQ(16, Stepped(Join(kMul), 8));
  EXPECT_EQ(4, Stepped(Join(kDiv), 8));
  EXPECT_EQ(0.25, Stepped(Join(kDivInto), 8));
  EXPECT_EQ(64, Stepped(Join(kRaise), 8));
  EXPECT_EQ(256, Stepped(Join(kRaiseInto), 8));
}

TEST(PlanSteps, JoinPairsAndTwice) {
  EXPECT_EQ(7, Stepped(JoinPair(kAdd), 8));
  EXPECT_EQ(-3, Stepped(JoinPair(kSub), 8));
  EXPECT_EQ(10, Stepped(JoinPair(kMul), 8));
  EXPECT_EQ(0.4, Stepped(JoinPair(kDiv), 8));
  EXPECT_EQ(80, Stepped(JoinWithPair(kMul, kMul), 8));
  EXPECT_EQ(-5, Stepped(JoinWithPair(kSubFrom, kSub), 2));
  EXPECT_EQ(11, Stepped(JoinTwice(kSub, kAdd), 8));
  EXPECT_EQ(30, Stepped(JoinTwice(kSubFrom, kMul), -4));
}

TEST(PlanSteps, OthersDoNotExist) {
  EXPECT_EQ(nullptr, Apply(zepMOAdd));
  EXPECT_EQ(nullptr, JoinPair(kRaise));
  EXPECT_EQ(nullptr, KeepAndJoinPair(kSubFrom));
  EXPECT_EQ(nullptr, JoinWithPair(kDiv, kAdd));
  EXPECT_EQ(nullptr, JoinWithPair(kAdd, kRaise));
  EXPECT_EQ(nullptr, JoinTwice(kDiv, kAdd));
  EXPECT_EQ(nullptr, JoinTwice(kAdd, kDiv));
}

TEST(PlanSteps, NoFiniteNumberIsMadeOfAnInfiniteOne) {
  EXPECT_TRUE(std::isnan(Stepped(Join(kDivInto), kInfinity)));
  EXPECT_TRUE(std::isnan(Stepped(Join(kRaiseInto), -kInfinity)));
  EXPECT_TRUE(std::isnan(Stepped(Apply(zepMOExp), -kInfinity)));
  EXPECT_TRUE(std::isnan(Stepped(Apply(zepMOAtn), kInfinity)));
}

/// A term for whose plan there is no memory.
class OutOfMemory final : public TestExpression {
 public:
  Evaluable* FindVariable(char16_t) override { throw std::bad_alloc(); }
};

TEST(Planner, WithoutMemoryTermsAreEvaluatedWithoutAPlan) {
  TestExpressions set;
  set.Set(u'x', 3.0);
  OutOfMemory root;
  root.term = ParseTerm(u"x+1", naive::EnglishNumbers());
  root.expressions = &set;
  for (int i = 0; i < 3; ++i) EXPECT_EQ(4, Evaluate(root));
}

/// x+1, where x is another one.
class Link final : public TestExpression {
 public:
  Evaluable& VariableNamed(char16_t) override { return *next; }
  Evaluable* FindVariable(char16_t) override { return next; }
  Evaluable* next = nullptr;
};

TEST(Planner, PlansAreNotNestedDeeplyWhateverIsPlannedFirst) {
  constexpr int kLinks = 200, kDeepest = 16;
  TestExpression end;
  end.term.SetNumber(0);
  std::deque<Link> links(kLinks);
  MeaningChanged();
  int planned = 0;
  for (int i = 0; i < kLinks; ++i) {
    Link& link = links[i];
    link.term = ParseTerm(u"x+1", naive::EnglishNumbers());
    link.next = i == 0 ? &end : static_cast<Evaluable*>(&links[i - 1]);
    for (int again = 0; again < 3; ++again) EXPECT_EQ(i + 1, Evaluate(link));
    const Plan* plan = link.PlanFor(0, meaning);
    if (!plan) continue;
    ++planned;
    EXPECT_LE(plan->Depth(), kDeepest);
  }
  EXPECT_GE(planned, kDeepest);
}

TEST(Planner, LongChainsOfVariablesAreEvaluatedWithoutAPlan) {
  TestExpressions set;
  set.Set(u'a', 1.0);
  for (char16_t name = u'b'; name <= u'z'; ++name) {
    set.Set(name, std::u16string(1, static_cast<char16_t>(name - 1)) + u"+1");
    EXPECT_EQ(name - u'a' + 1, set.Evaluate(std::u16string(1, name)));
  }
}

}  // namespace
}  // namespace zepkit10
