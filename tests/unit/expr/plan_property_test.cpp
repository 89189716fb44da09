// Terms with a plan against the same terms in the order of the rules, with numbers that overflow,
// underflow, divide by zero and have no root. --gtest_repeat goes on with other terms.
#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "unit/expr/test_expressions.h"

namespace zepkit10 {
namespace {

using enum ZepMathOperation;

constexpr std::u16string_view kVariables = u"xyzt";

/// A number to be afraid of, half of the time.
double Hostile(std::mt19937& random) {
  using Limits = std::numeric_limits<double>;
  constexpr double kNumbers[] = {0,
                                 1,
                                 2,
                                 0.5,
                                 3,
                                 0.1,
                                 1e154,
                                 1.5e154,
                                 1e-154,
                                 709,
                                 710,
                                 1e308,
                                 1e-308,
                                 1e19,
                                 Limits::max(),
                                 Limits::min(),
                                 Limits::denorm_min(),
                                 Limits::epsilon()};
  const double sign = random() % 3 == 0 ? -1 : 1;
  if (random() % 2 == 0) return sign * kNumbers[random() % std::size(kNumbers)];
  for (;;) {
    const auto bits = std::uint64_t{random()} << 32 | random();
    const double number = std::bit_cast<double>(bits);
    if (IsFinite(number)) return random() % 2 == 0 ? number : std::fmod(number, 100);
  }
}

/// Appends a tree of at most that depth; leaves are variables, numbers and sometimes missing ones.
void Grow(std::vector<Term::Node>& nodes, std::mt19937& random, int depth) {
  const auto kind = random() % 8;
  if (depth == 0 || kind == 0) {
    if (random() % 4 == 0) return nodes.push_back({zepMONumber, 0, std::fabs(Hostile(random))});
    if (random() % 8 == 0) return nodes.push_back({zepMONumber, 0, 2});
    return nodes.push_back({zepMOGetVar, kVariables[random() % kVariables.size()], 0});
  }
  if (kind < 3) {
    const int functions[] = {0, 6, 7, 8, 9, 10, 11, 12};
    nodes.push_back({static_cast<ZepMathOperation>(functions[random() % 8]), 0, 0});
    return Grow(nodes, random, depth - 1);
  }
  nodes.push_back({static_cast<ZepMathOperation>(1 + random() % 5), 0, 0});
  Grow(nodes, random, depth - 1);
  Grow(nodes, random, depth - 1);
}

Term Grown(std::mt19937& random, int depth) {
  std::vector<Term::Node> nodes;
  Grow(nodes, random, depth);
  return Term(std::move(nodes));
}

TEST(PlanProperty, EveryResultAndFaultIsThatOfTheRules) {
  static std::uint32_t seed = 0;
  std::mt19937 random(++seed);
  int values = 0, faults = 0, codes = 0;
  for (int i = 0; i < 3000; ++i) {
    TestExpressions set;
    for (const char16_t name : kVariables) set.Set(name, 1.0);
    TestExpression planned;
    UnplannedExpression unplanned;
    planned.term = unplanned.term = Grown(random, 1 + static_cast<int>(random() % 6));
    planned.expressions = unplanned.expressions = &set;
    TestExpression* numbers[] = {&set.At(u'x'), &set.At(u'y'), &set.At(u'z')};
    set.At(u't').term = Grown(random, 0);
    if (random() % 4 == 0) set.At(u't').term = ParseTerm(u"x^2-y/z", naive::EnglishNumbers());
    for (int round = 0; round < 20; ++round) {
      if (round == 10) codes += MakeCodeFor(planned);
      // Numbers in place of numbers: the plan stays.
      for (TestExpression* number : numbers) number->term.SetNumber(Hostile(random));
      const EvaluationOutcome by_rule = OutcomeOf(unplanned);
      const std::u16string text = TermText(planned.term, naive::EnglishNumbers());
      ASSERT_EQ(OutcomeOf(planned), by_rule) << std::string(text.begin(), text.end());
      ++(by_rule.failure.number == 0 ? values : faults);
    }
  }
  EXPECT_GT(values, 10'000);
  EXPECT_GT(faults, 10'000);
  if (sizeof(void*) == 8) {  // there is no code for 32 bits
    EXPECT_GT(codes, 2000);
  }
}

}  // namespace
}  // namespace zepkit10
