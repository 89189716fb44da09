#pragma once

#include <windows.h>
#include <oaidl.h>

#include "platform/automation/variant.h"

namespace zepkit10 {

/// A client's variable, as it comes with a by-reference Variant: a Variant of its own, or a typed
/// variable that the Variant refers to.
class ClientVariable {
 public:
  /// Error 13 for a reference that leads nowhere or to itself, or to a record.
  explicit ClientVariable(VARIANT* reference);

  const VARIANT& get() const { return *variant_; }

  /// The value as this variable can hold it. Error 13 or 6 where it cannot.
  Variant Fit(Variant value) const;

  /// Replaces the value; a typed variable gets it converted to its own type. On an error (13 or 6)
  /// the variable keeps its value.
  void Assign(Variant value);

  /// Exchanges two variables, objects as references. Types that differ are converted where a
  /// variable is typed. Error 10 for an array that may not be moved. On an error both variables
  /// keep their values.
  static void Swap(ClientVariable left, ClientVariable right);

 private:
  VARTYPE Type() const { return variant_->vt & ~VT_BYREF; }
  bool IsTyped() const { return variant_->vt & VT_BYREF; }
  void CheckMovable() const;
  /// Takes the value out without copying, which leaves the variable to be filled by `Put`.
  VARIANT Take() const;
  void Put(VARIANT value) const;

  VARIANT* variant_;
};

}  // namespace zepkit10
