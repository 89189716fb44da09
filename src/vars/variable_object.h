#pragma once

#include "expr/expression_object.h"
#include "variable_shim.h"
#include "vars/collection_object.h"

namespace zepkit10 {

class VarSet;

/// A one-letter name bound to an Expression, whose value is the variable's.
class Variable final : public ItemOf<Deletable<Variable, VariableShim>, VarSet> {
 public:
  Ref<zepkit10::Expression> Expression() const;
  void SetExpression(_Expression* NewExpression);

  /// `zepErrBadPropValue` unless the name is exactly one character.
  void SetName(std::u16string_view NewName);

  Unguarded<double> Value() const {
    EnsureAlive();
    return expression_->Value();
  }
  Unguarded<> SetValue(double NewValue) {
    EnsureAlive();
    return expression_->SetValue(NewValue);
  }

  /// Also attaches the bound Expression to the owner.
  void AttachParent(VarSet* parent);
  void ReleaseContent();

  /// The bound Expression of a variable that is alive.
  Evaluable& Bound() const { return *expression_; }
  /// Binds an Expression of this library; what `SetExpression` does with a client's pointer.
  void Bind(Ref<zepkit10::Expression> expression);

 private:
  Ref<zepkit10::Expression> expression_ = Make<zepkit10::Expression>();
};

}  // namespace zepkit10
