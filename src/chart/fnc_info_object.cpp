#include "chart/fnc_info_object.h"

#include "chart/chart_object.h"
#include "chart/fnc_infos_object.h"

namespace zepkit10 {

Ref<Expression> FncInfo::Expression() const {
  EnsureAlive();
  return expression_;
}

void FncInfo::SetExpression(_Expression* NewExpression) {
  EnsureAlive();
  auto* expression = zepkit10::Expression::From(NewExpression);
  if (!expression) Raise(ZepErrors::zepErrBadPropValue);
  expression_ = Ref(expression);
  AttachToChart();
}

void FncInfo::AttachParent(FncInfos* parent) {
  ItemOf::AttachParent(parent);
  AttachToChart();
}

void FncInfo::AttachToChart() { expression_->Attach(parent().Parent()->VarSet()); }

}  // namespace zepkit10
