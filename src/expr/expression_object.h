#pragma once

#include "expr/evaluation.h"
#include "expr/term.h"
#include "expression_shim.h"
#include "platform/automation/automation_object.h"

namespace zepkit10 {

class VarSet;

/// A term: parsed when it is assigned, evaluated when its value is read, against the variables of
/// the attached set.
class Expression final : public AutomationObject<Expression, ExpressionShim>, public Evaluable {
 public:
  Expression();
  ~Expression() override;

  /// Makes the term the number 0 again; the variable set stays.
  void Clear();

  /// The term rebuilt for display, without brackets.
  std::u16string EString() const;
  /// After a failure the term is the number 0.
  void SetEString(std::u16string_view NewEString);

  Variant Transform(const VARIANT& Source, ZepMathTransMode TransMode) const;

  Unguarded<double> Value() {
    if (const double* number = term_.Constant()) return *number;
    return Evaluate(*this);
  }
  Unguarded<> SetValue(double NewValue) {
    if (!IsFinite(NewValue)) Raise(ZepErrors::zepErrBadPropValue);
    if (!term_.Constant()) MeaningChanged();
    term_.SetNumber(NewValue);
    return {};
  }

  Ref<zepkit10::VarSet> VarSet() const;
  void SetVarSet(_VarSet* NewVarSet);

  /// Attaches a set of this library; what `SetVarSet` does with a client's pointer.
  void Attach(Ref<zepkit10::VarSet> var_set);

 private:
  const zepkit10::Term& Term() const override { return term_; }
  Evaluable& VariableNamed(char16_t name) override;
  Evaluable* FindVariable(char16_t name) override;
  void SetTerm(zepkit10::Term term);

  zepkit10::Term term_;
  Ref<zepkit10::VarSet> var_set_;
};

}  // namespace zepkit10
