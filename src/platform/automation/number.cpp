#include "platform/automation/number.h"

#include "platform/automation/translate.h"

namespace zepkit10 {
namespace {

/// Types whose every value a Decimal holds.
bool IsExact(VARTYPE type) {
  switch (type) {
    case VT_EMPTY:
    case VT_BOOL:
    case VT_I1:
    case VT_UI1:
    case VT_I2:
    case VT_UI2:
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_I8:
    case VT_UI8:
    case VT_CY:
    case VT_DECIMAL:
      return true;
    default:
      return false;
  }
}

bool IsNumber(VARTYPE type) {
  return IsExact(type) || type == VT_R4 || type == VT_R8 || type == VT_DATE;
}

Variant Convert(const VARIANT& value, VARTYPE type) {
  Variant converted;
  const HRESULT hr = VariantChangeTypeEx(converted.Out(), const_cast<VARIANT*>(&value),
                                         LOCALE_USER_DEFAULT, 0, type);
  if (FAILED(hr)) RaiseRefusal(hr);
  return converted;
}

}  // namespace

std::optional<Variant> NumberOf(const VARIANT& value) {
  const VARIANT* followed = Follow(&value);
  if (!followed || (followed->vt & VT_ARRAY)) return {};
  Variant number = CopyOf(*followed);
  if (IsNumber(number.get().vt)) return number;
  const HRESULT hr = VariantChangeTypeEx(number.Out(), number.Out(), LOCALE_USER_DEFAULT, 0, VT_R8);
  if (hr == E_OUTOFMEMORY) throw std::bad_alloc();
  if (FAILED(hr)) return {};
  return number;
}

int CompareNumbers(const VARIANT& left, const VARIANT& right) {
  if (IsExact(left.vt) && IsExact(right.vt)) {
    Variant exact_left = Convert(left, VT_DECIMAL), exact_right = Convert(right, VT_DECIMAL);
    return static_cast<int>(VarDecCmp(&exact_left.Out()->decVal, &exact_right.Out()->decVal)) -
           VARCMP_EQ;
  }
  const HRESULT order =
      VarCmp(const_cast<VARIANT*>(&left), const_cast<VARIANT*>(&right), LOCALE_USER_DEFAULT, 0);
  if (FAILED(order)) RaiseRefusal(order);
  return static_cast<int>(order) - VARCMP_EQ;
}

}  // namespace zepkit10
