#include "expr/expression_object.h"

#include <utility>

#include "expr/transform.h"
#include "platform/user_number_format.h"
#include "vars/var_set_object.h"

namespace zepkit10 {

Expression::Expression() = default;

Expression::~Expression() = default;

void Expression::Clear() { SetTerm(zepkit10::Term()); }

std::u16string Expression::EString() const { return TermText(term_, UserNumberFormat()); }

void Expression::SetEString(std::u16string_view NewEString) {
  Clear();
  SetTerm(ParseTerm(NewEString, UserNumberFormat()));
}

void Expression::SetTerm(zepkit10::Term term) {
  term_ = std::move(term);
  MeaningChanged();
}

Variant Expression::Transform(const VARIANT& Source, ZepMathTransMode TransMode) const {
  using enum ZepMathTransMode;
  const VARIANT* source = Follow(&Source);
  const bool from_operation = TransMode == zepMTOpToPrio || TransMode == zepMTOpToChar;
  if (from_operation) {
    const bool is_long = source && (source->vt == VT_I4 || source->vt == (VT_BYREF | VT_I4));
    if (!is_long) Raise(ZepErrors::zepErrBadParam);
    const std::int32_t operation = *IntegerOf(*source);
    return TransMode == zepMTOpToPrio ? Variant(OperationToPriority(operation))
                                      : Variant(OperationToText(operation));
  }
  const auto text = source ? TextOf(*source) : std::nullopt;
  if (!text) Raise(ZepErrors::zepErrBadParam);
  switch (TransMode) {
    case zepMTCharToOp:
      return Variant(TextToOperation(*text, UserNumberFormat()));
    case zepMTCharToPrio:
      return Variant(TextToPriority(*text, UserNumberFormat()));
    case zepMTCharToCChar:
      return Variant(TextToToken(*text, UserNumberFormat()));
    default:
      Raise(ZepErrors::zepErrBadParam);
  }
}

Ref<VarSet> Expression::VarSet() const { return var_set_; }

void Expression::SetVarSet(_VarSet* NewVarSet) {
  auto* var_set = zepkit10::VarSet::From(NewVarSet);
  if (NewVarSet && !var_set) Raise(ZepErrors::zepErrBadPropValue);
  Attach(Ref(var_set));
}

void Expression::Attach(Ref<zepkit10::VarSet> var_set) {
  var_set_ = std::move(var_set);
  MeaningChanged();
}

Evaluable& Expression::VariableNamed(char16_t name) {
  if (!var_set_) Raise(ZepErrors::zepErrBadCallContext);
  return var_set_->VariableNamed({&name, 1}).Bound();
}

Evaluable* Expression::FindVariable(char16_t name) {
  const Variable* found = var_set_ ? var_set_->FindByName({&name, 1}) : nullptr;
  return found ? &found->Bound() : nullptr;
}

}  // namespace zepkit10
