#include "unit/expr/naive_comparison.h"

#include <bit>
#include <cmath>
#include <limits>
#include <set>

#include "expr/transform.h"
#include "unit/expr/naive_term.h"
#include "unit/expr/test_expressions.h"

namespace zepkit10::naive {
namespace {

/// All that can be observed of a term.
struct Outcome {
  Failure token{}, parse{}, evaluation{};
  std::u16string text;
  std::uint64_t value = 0;  // its bits
  std::u16string lookups;
  std::u16string first_token;

  friend bool operator==(const Outcome&, const Outcome&) = default;
};

struct NamedTerm {
  char16_t name;
  std::u16string_view text;
};
constexpr NamedTerm kTerms[] = {{u'y', u"0-3/2"}, {u't', u"x^2-y"}, {u'u', u"t+1/z"},
                                {u'v', u"-y^x"},  {u'w', u"w+1"},   {u'm', u"2k"},
                                {u'k', u"m-1"},   {u'i', u"|t|*q"}};
struct NamedNumber {
  char16_t name;
  double number;
};
constexpr NamedNumber kNumbers[] = {{u'x', 2},
                                    {u'z', 0},
                                    {u'n', -0.5},
                                    {u'h', 1e308},
                                    {u's', std::numeric_limits<double>::denorm_min()}};

TestExpressions Variables() {
  TestExpressions variables;
  for (const auto& [name, text] : kTerms) variables.Set(name, text);
  for (const auto& [name, number] : kNumbers) variables.Set(name, number);
  return variables;
}

Outcome ByEngine(std::u16string_view text, const NumberFormat& numbers) {
  static TestExpressions variables = Variables();
  Outcome outcome;
  outcome.token = FailureOf([&] { outcome.first_token = TextToToken(text, numbers); });
  outcome.parse = FailureOf([&] {
    const zepkit10::Term term = ParseTerm(text, numbers);
    outcome.text = TermText(term, numbers);
    variables.lookups.clear();
    outcome.evaluation =
        FailureOf([&] { outcome.value = std::bit_cast<std::uint64_t>(variables.Evaluate(term)); });
    outcome.lookups = variables.lookups;
  });
  return outcome;
}

/// Looks variables up as plainly as the terms are parsed.
class NaiveVariables {
 public:
  double operator()(char16_t name) {
    lookups += name;
    for (const auto& [known, number] : kNumbers) {
      if (known == name) return number;
    }
    for (const auto& [known, text] : kTerms) {
      if (known == name) return Compute(name, text);
    }
    RaiseZepError(ZepErrors::zepErrItemNotExistant, u"VarSet");
  }

  std::u16string lookups;

 private:
  double Compute(char16_t name, std::u16string_view text) {
    if (!in_progress_.insert(name).second) {
      RaiseRuntimeError(ZepVbErrors3To98::zepVbErrOutOfStackSpace, u"Expression");
    }
    const double value = Value(*Parse(text, EnglishNumbers()), std::ref(*this));
    in_progress_.erase(name);
    return value;
  }

  std::set<char16_t> in_progress_;
};

Outcome ByRule(std::u16string_view text, const NumberFormat& numbers) {
  Outcome outcome;
  outcome.token = FailureOf([&] { outcome.first_token = TokenAt(text, numbers); });
  outcome.parse = FailureOf([&] {
    const auto term = Parse(text, numbers);
    outcome.text = Text(*term, numbers);
    NaiveVariables variables;
    outcome.evaluation = FailureOf(
        [&] { outcome.value = std::bit_cast<std::uint64_t>(Value(*term, std::ref(variables))); });
    outcome.lookups = variables.lookups;
  });
  return outcome;
}

std::string Narrow(std::u16string_view text) {
  std::string narrow;
  for (const char16_t c : text) narrow += c < 0x7f && c >= u' ' ? static_cast<char>(c) : '?';
  return narrow;
}

std::string Told(const Outcome& outcome) {
  return "parse error " + std::to_string(outcome.parse.number) + ", first token '" +
         Narrow(outcome.first_token) + "' error " + std::to_string(outcome.token.number) +
         ", text '" + Narrow(outcome.text) + "', value " +
         std::to_string(std::bit_cast<double>(outcome.value)) + ", error " +
         std::to_string(outcome.evaluation.number) + ", variables '" + Narrow(outcome.lookups) +
         "'";
}

}  // namespace

std::string Difference(std::u16string_view text, const NumberFormat& numbers) {
  const Outcome engine = ByEngine(text, numbers);
  const Outcome rule = ByRule(text, numbers);
  if (!std::isfinite(std::bit_cast<double>(engine.value))) return "not finite: " + Narrow(text);
  if (engine == rule) return {};
  return "'" + Narrow(text) + "': " + Told(engine) + "; by the rule: " + Told(rule);
}

}  // namespace zepkit10::naive
