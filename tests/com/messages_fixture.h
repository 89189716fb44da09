#pragma once

#include <functional>
#include <vector>

#include "com/both_bindings.h"
#include "com/fault_plan.h"
#include "com/foreign.h"
#include "com/zep_error.h"

/// A test with an empty message board.
class WithBoard : public BothBindings {
 protected:
  using Indexes = std::vector<int>;

  /// The posting indexes on a board, in the order of For Each.
  static Indexes IndexesOf(const client::Object& board) {
    Indexes indexes;
    for (const client::Object& message : board.Items()) {
      indexes.push_back(message.Get(L"Index").value.raw().lVal);
    }
    return indexes;
  }

  client::Object board_ = Create(CLSID_Messages);
};

namespace message_values {

using client::Value;

/// A value of a type that has no C++ type of its own; `number` is what VARIANT holds.
inline Value OfType(VARTYPE type, LONGLONG number) {
  VARIANT value;
  value.vt = type;
  value.llVal = number;
  return Value(value);
}
/// In ten-thousandths.
inline Value Currency(LONGLONG number) { return OfType(VT_CY, number); }
inline Value Date(double days) {
  Value date(days);
  date.raw().vt = VT_DATE;
  return date;
}

/// An array of Variants.
inline Value Array(LONG lower_bound, const std::vector<Value>& items) {
  VARIANT value;
  value.vt = VT_ARRAY | VT_VARIANT;
  SAFEARRAYBOUND bound{static_cast<ULONG>(items.size()), lower_bound};
  value.parray = SafeArrayCreate(VT_VARIANT, 1, &bound);
  for (std::size_t i = 0; i < items.size(); ++i) {
    VariantCopy(static_cast<VARIANT*>(value.parray->pvData) + i,
                const_cast<VARIANT*>(&items[i].raw()));
  }
  const Value made(value);
  VariantClear(&value);
  return made;
}

/// The elements of a one-dimensional array of Variants, none of a null array; a failure for any
/// other value.
inline std::vector<Value> Elements(const Value& value) {
  std::vector<Value> elements;
  EXPECT_EQ(VT_ARRAY | VT_VARIANT, value.type());
  const SAFEARRAY* array = value.type() == (VT_ARRAY | VT_VARIANT) ? value.raw().parray : nullptr;
  for (ULONG i = 0; array && i < array->rgsabound[0].cElements; ++i) {
    elements.emplace_back(static_cast<const VARIANT*>(array->pvData)[i]);
  }
  return elements;
}

/// An object that runs a client's code when it is asked for its identity or, all references but its
/// maker's gone, released.
class Listener final : public foreign::Object<IDispatch> {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
    if (iid == IID_IUnknown) Run(when_compared);
    return Object::QueryInterface(iid, result);
  }
  ULONG STDMETHODCALLTYPE Release() override {
    --references;
    if (references == 1) Run(when_released);
    return references;
  }

  std::function<void()> when_compared, when_released;

 private:
  static void Run(std::function<void()>& code) {
    const faults::OutsideCall outside;
    if (const auto once = std::exchange(code, nullptr)) once();
  }
};

}  // namespace message_values
