#include "platform/automation/client_variable.h"

#include "frame/errors.h"
#include "platform/automation/translate.h"
#include "platform/automation/typed_value.h"

namespace zepkit10 {

using enum ZepVbErrors3To98;

ClientVariable::ClientVariable(VARIANT* reference)
    : variant_(const_cast<VARIANT*>(Follow(reference))) {
  if (!variant_ || (IsTyped() && SizeOfValue(Type()) == 0)) RaiseRuntimeError(zepVbErrTypeMismatch);
}

void ClientVariable::Assign(Variant value) {
  Variant fitting = Fit(std::move(value));
  // The old value goes last: an object's end may call back and look at the variable.
  Variant old;
  *old.Out() = Take();
  Put(fitting.Detach());
}

void ClientVariable::Swap(ClientVariable left, ClientVariable right) {
  left.CheckMovable();
  right.CheckMovable();
  if (left.Type() == right.Type() || (!left.IsTyped() && !right.IsTyped())) {
    const VARIANT from_left = left.Take(), from_right = right.Take();
    left.Put(from_right);
    right.Put(from_left);
    return;
  }
  Variant for_left = left.Fit(CopyOf(right.get())), for_right = right.Fit(CopyOf(left.get()));
  left.Assign(std::move(for_left));
  right.Assign(std::move(for_right));
}

void ClientVariable::CheckMovable() const {
  if (!(Type() & VT_ARRAY)) return;
  const SAFEARRAY* array = IsTyped() ? *variant_->pparray : variant_->parray;
  // A value may have a fixed size, but a fixed-size variable cannot get another array.
  const USHORT fixed = FADF_AUTO | FADF_STATIC | FADF_EMBEDDED | (IsTyped() ? FADF_FIXEDSIZE : 0);
  if (array && (array->cLocks > 0 || (array->fFeatures & fixed))) {
    RaiseRuntimeError(zepVbErrArrayFixedOrLocked);
  }
}

Variant ClientVariable::Fit(Variant value) const {
  if (!IsTyped() || value.get().vt == Type()) return value;
  const HRESULT hr =
      VariantChangeTypeEx(value.Out(), value.Out(), LOCALE_USER_DEFAULT, VARIANT_ALPHABOOL, Type());
  if (FAILED(hr)) RaiseValueRefusal(hr);
  return value;
}

VARIANT ClientVariable::Take() const {
  return IsTyped() ? ReadValue(Type(), variant_->byref) : *variant_;
}

void ClientVariable::Put(VARIANT value) const {
  if (IsTyped()) {
    WriteValue(value, Type(), variant_->byref);
  } else {
    *variant_ = value;
  }
}

}  // namespace zepkit10
