#pragma once

#include <map>
#include <string>
#include <string_view>

#include "expr/evaluation.h"
#include "expr/term.h"
#include "frame/errors.h"
#include "unit/expr/naive_numbers.h"

namespace zepkit10 {

class TestExpressions;

/// A term whose variables are looked up in a set.
class TestExpression final : public Evaluable {
 public:
  const zepkit10::Term& Term() const override { return term; }
  Evaluable& VariableNamed(char16_t name) override;

  zepkit10::Term term;
  TestExpressions* expressions = nullptr;
};

/// Named terms that may name each other. What is not there raises `zepErrItemNotExistant`.
class TestExpressions {
 public:
  void Set(char16_t name, std::u16string_view text) {
    At(name).term = ParseTerm(text, naive::EnglishNumbers());
  }
  void Set(char16_t name, double number) { At(name).term.SetNumber(number); }

  double Evaluate(const Term& term) {
    TestExpression root;
    root.term = term;
    root.expressions = this;
    return zepkit10::Evaluate(root);
  }
  double Evaluate(std::u16string_view text) {
    return Evaluate(ParseTerm(text, naive::EnglishNumbers()));
  }

  TestExpression& At(char16_t name) {
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
  std::map<char16_t, TestExpression> expressions_;
};

inline Evaluable& TestExpression::VariableNamed(char16_t name) { return expressions->Find(name); }

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

}  // namespace zepkit10
