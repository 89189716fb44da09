// Terms that are evaluated again and again while their variables change: with a plan, and in the
// order of the rules. First come the values of three variables for some rounds, then a NUL and the
// text of the term, in Latin-1.
#include <cmath>
#include <cstdint>
#include <vector>

#include "fuzz/expect.h"
#include "fuzz/input.h"
#include "unit/expr/naive_numbers.h"
#include "unit/expr/test_expressions.h"

namespace {

using namespace zepkit10;

constexpr char16_t kNames[] = u"xyz";

struct Change {
  char16_t name;
  double number;  // not finite: the variable becomes a term instead
};

/// One byte tells what follows: a whole double, a small number or a power of two, or that this is
/// all.
std::vector<Change> Changes(Input& input) {
  std::vector<Change> changes;
  constexpr std::size_t kMost = 24;
  while (changes.size() < kMost) {
    const int kind = input.UpTo(15);
    if (kind == 0) break;
    const char16_t name = kNames[kind % 3];
    if (kind < 6) {
      changes.push_back({name, input.Any<double>()});
    } else if (kind < 11) {
      changes.push_back({name, input.Any<std::int8_t>() / 2.0});
    } else {
      changes.push_back({name, std::ldexp(1.0, input.Any<std::int16_t>() % 1080)});
    }
  }
  return changes;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr std::size_t kLongest = 1000;
  if (size > kLongest) return 0;
  Input input(data, size);
  const std::vector<Change> changes = Changes(input);
  TestExpressions set;
  for (const char16_t name : std::u16string_view(kNames)) set.Set(name, 1.0);
  set.Set(u't', u"x^2-y/z");
  TestExpression planned;
  UnplannedExpression unplanned;
  planned.expressions = unplanned.expressions = &set;
  try {
    planned.term = unplanned.term = ParseTerm(input.Text(), naive::EnglishNumbers());
  } catch (const Failure&) {
    return 0;
  }
  OutcomeOf(planned);
  for (const auto& [name, number] : changes) {
    TestExpression& variable = set.Find(name);
    if (std::isfinite(number)) {
      // A number in place of another one leaves the plan as it is.
      if (!variable.term.Constant()) MeaningChanged();
      variable.term.SetNumber(number);
    } else {
      set.Set(name, name == u'x' ? u"2y" : u"z+1");  // z becomes one that leads back to itself
    }
    set.lookups.clear();
    const EvaluationOutcome by_rule = OutcomeOf(unplanned);
    for (int again = 0; again < 2; ++again) {
      Expect(OutcomeOf(planned) == by_rule, "the plan comes to something else");
    }
    if (changes.size() % 2 == 0) continue;  // goes on step by step
    MakeCodeFor(planned);
    Expect(OutcomeOf(planned) == by_rule, "the plan's code comes to something else");
  }
  return 0;
}
