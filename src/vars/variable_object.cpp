#include "vars/variable_object.h"

#include "vars/var_set_object.h"

namespace zepkit10 {

Ref<Expression> Variable::Expression() const {
  EnsureAlive();
  return expression_;
}

void Variable::SetExpression(_Expression* NewExpression) {
  EnsureAlive();
  auto* expression = zepkit10::Expression::From(NewExpression);
  if (!expression) Raise(ZepErrors::zepErrBadPropValue);
  Bind(Ref(expression));
}

void Variable::Bind(Ref<zepkit10::Expression> expression) {
  EnsureAlive();
  expression->Attach(Ref(&parent()));
  expression_ = std::move(expression);
  MeaningChanged();
}

void Variable::SetName(std::u16string_view NewName) {
  EnsureAlive();
  if (NewName.size() != 1) Raise(ZepErrors::zepErrBadPropValue);
  ItemOf::SetName(NewName);
  MeaningChanged();
}

void Variable::AttachParent(VarSet* parent) {
  ItemOf::AttachParent(parent);
  expression_->Attach(Ref(parent));
}

void Variable::ReleaseContent() {
  expression_ = nullptr;
  MeaningChanged();
}

}  // namespace zepkit10
