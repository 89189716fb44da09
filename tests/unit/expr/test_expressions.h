#pragma once

#include <bit>
#include <map>
#include <ostream>
#include <stdexcept>
#include <string>
#include <string_view>

#include "expr/evaluation.h"
#include "expr/term.h"
#include "frame/errors.h"
#include "unit/expr/naive_numbers.h"

namespace zepkit10 {

/// The failure that an action raises; the number 0 if there is none.
template <class Action>
Failure FailureOf(Action action) {
  try {
    action();
  } catch (const Failure& failure) {
    return failure;
  }
  return {0, {}, {}};
}

/// What an evaluation gives, to the last bit.
struct EvaluationOutcome {
  std::uint64_t bits = 0;
  Failure failure{};

  friend bool operator==(const EvaluationOutcome&, const EvaluationOutcome&) = default;
  friend std::ostream& operator<<(std::ostream& stream, const EvaluationOutcome& outcome) {
    return stream << std::hexfloat << std::bit_cast<double>(outcome.bits) << ", error "
                  << outcome.failure.number;
  }
};

inline EvaluationOutcome OutcomeOf(Evaluable& term) {
  EvaluationOutcome outcome;
  outcome.failure = FailureOf([&] { outcome.bits = std::bit_cast<std::uint64_t>(Evaluate(term)); });
  return outcome;
}

/// Has the evaluations that follow run machine code. False where the term has no plan or no code.
inline bool MakeCodeFor(Evaluable& term) {
  const Plan* plan = term.PlanFor(0, meaning);
  return plan && plan->MakeCode();
}

class TestExpressions;

/// A term whose variables are looked up in a set.
class TestExpression : public Evaluable {
 public:
  virtual ~TestExpression() = default;
  const zepkit10::Term& Term() const override { return term; }
  Evaluable& VariableNamed(char16_t name) override;
  Evaluable* FindVariable(char16_t name) override;

  zepkit10::Term term;
  TestExpressions* expressions = nullptr;
};

/// A term that never has a plan if it has variables.
class UnplannedExpression final : public TestExpression {
 public:
  Evaluable* FindVariable(char16_t) override { return nullptr; }
};

/// Named terms that may name each other. What is not there raises `zepErrItemNotExistant`.
class TestExpressions {
 public:
  void Set(char16_t name, std::u16string_view text) {
    At(name).term = ParseTerm(text, naive::EnglishNumbers());
  }
  void Set(char16_t name, double number) { At(name).term.SetNumber(number); }

  /// Evaluates a term in the order of the rules, again with a plan, and once more with the plan's
  /// machine code, which must come to the same to the last bit.
  double Evaluate(const Term& term) {
    TestExpression root;
    root.term = term;
    root.expressions = this;
    const EvaluationOutcome first = OutcomeOf(root);
    const std::u16string lookups_of_first = lookups;
    const EvaluationOutcome second = OutcomeOf(root);
    lookups = lookups_of_first;
    if (first != second) throw std::logic_error("the plan comes to something else");
    MakeCodeFor(root);
    const EvaluationOutcome third = OutcomeOf(root);
    lookups = lookups_of_first;
    if (first != third) throw std::logic_error("the plan's code comes to something else");
    if (first.failure.number != 0) throw first.failure;
    return std::bit_cast<double>(first.bits);
  }
  double Evaluate(std::u16string_view text) {
    return Evaluate(ParseTerm(text, naive::EnglishNumbers()));
  }

  /// A term that may be changed until the next evaluation.
  TestExpression& At(char16_t name) {
    MeaningChanged();
    TestExpression& expression = expressions_[name];
    expression.expressions = this;
    return expression;
  }

  TestExpression& Find(char16_t name) {
    lookups += name;
    const auto found = expressions_.find(name);
    if (found == expressions_.end()) {
      RaiseZepError(ZepErrors::zepErrItemNotExistant, u"VarSet");
    }
    return found->second;
  }

  /// The names that were looked up, in order.
  std::u16string lookups;

 private:
  friend class TestExpression;

  std::map<char16_t, TestExpression> expressions_;
};

inline Evaluable& TestExpression::VariableNamed(char16_t name) { return expressions->Find(name); }

inline Evaluable* TestExpression::FindVariable(char16_t name) {
  const auto found = expressions->expressions_.find(name);
  return found == expressions->expressions_.end() ? nullptr : &found->second;
}

}  // namespace zepkit10
