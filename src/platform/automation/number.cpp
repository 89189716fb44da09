#include "platform/automation/number.h"

#include <cmath>
#include <limits>

#include "platform/automation/translate.h"

namespace zepkit10 {
namespace {

/// Types whose every value a Decimal holds.
bool IsExact(VARTYPE type) {
  switch (type) {
    case VT_EMPTY:
    case VT_UI1:
    case VT_I2:
    case VT_I4:
    case VT_I8:
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

bool IsInteger(VARTYPE type) { return IsExact(type) && type != VT_CY && type != VT_DECIMAL; }

/// The platform's arithmetic and comparison do not take all combinations with C's integer types.
VARTYPE Calculable(VARTYPE type) {
  switch (type) {
    case VT_I1:
    case VT_BOOL:
      return VT_I2;
    case VT_UI2:
    case VT_INT:
      return VT_I4;
    case VT_UI4:
    case VT_UINT:
      return VT_I8;
    case VT_UI8:
      return VT_DECIMAL;
    default:
      return type;
  }
}

using Operation = HRESULT(STDMETHODCALLTYPE*)(VARIANT*, VARIANT*, VARIANT*);

Variant Convert(const VARIANT& value, VARTYPE type) {
  Variant converted;
  const HRESULT hr = VariantChangeTypeEx(converted.Out(), const_cast<VARIANT*>(&value),
                                         LOCALE_USER_DEFAULT, 0, type);
  if (FAILED(hr)) RaiseValueRefusal(hr);
  return converted;
}

bool IsInfinite(const VARIANT& number) {
  return (number.vt == VT_R8 && std::isinf(number.dblVal)) ||
         (number.vt == VT_R4 && std::isinf(number.fltVal));
}

Variant CalculateByPlatform(const VARIANT& left, const VARIANT& right, Operation operation) {
  Variant result;
  const HRESULT hr =
      operation(const_cast<VARIANT*>(&left), const_cast<VARIANT*>(&right), result.Out());
  if (FAILED(hr)) RaiseValueRefusal(hr);
  if (IsInfinite(result.get()) && !IsInfinite(left) && !IsInfinite(right)) {
    RaiseRefusal(DISP_E_OVERFLOW);
  }
  return result;
}

/// The wider type of two; Empty is the narrowest.
VARTYPE WiderInteger(VARTYPE left, VARTYPE right) {
  if (left == VT_EMPTY && right == VT_EMPTY) return VT_I2;
  for (const VARTYPE type : {VT_I8, VT_I4, VT_I2}) {
    if (left == type || right == type) return type;
  }
  return VT_UI1;
}

/// The narrowest type from the operands' on that an integer fits, Double at last.
VARTYPE TypeOfResult(long long number, VARTYPE operands) {
  using Long = std::numeric_limits<LONG>;
  using Integer = std::numeric_limits<SHORT>;
  if (operands == VT_I8) return VT_I8;
  if (number < Long::min() || number > Long::max()) return VT_R8;
  if (operands == VT_I4 || number < Integer::min() || number > Integer::max()) return VT_I4;
  return operands == VT_I2 || number < 0 || number > 255 ? VT_I2 : VT_UI1;
}

/// Not every platform's `VarAdd` and `VarSub` notice that a result does not fit.
Variant CalculateIntegers(const VARIANT& left, const VARIANT& right, Operation operation) {
  const long long a = Convert(left, VT_I8).get().llVal, b = Convert(right, VT_I8).get().llVal;
  Variant result;
  result.Out()->vt = VT_I8;
  long long& exact = result.Out()->llVal;
  if (operation == VarAdd ? __builtin_add_overflow(a, b, &exact)
                          : __builtin_sub_overflow(a, b, &exact)) {
    return CalculateByPlatform(Convert(left, VT_R8).get(), Convert(right, VT_R8).get(), operation);
  }
  return Convert(result.get(), TypeOfResult(exact, WiderInteger(left.vt, right.vt)));
}

Variant Calculate(const VARIANT& left, const VARIANT& right, Operation operation) {
  return IsInteger(left.vt) && IsInteger(right.vt) ? CalculateIntegers(left, right, operation)
                                                   : CalculateByPlatform(left, right, operation);
}

}  // namespace

std::optional<Variant> NumberOf(const VARIANT& value) {
  const VARIANT* followed = Follow(&value);
  if (!followed || (followed->vt & VT_ARRAY)) return {};
  Variant number = CopyOf(*followed);
  const VARTYPE type = Calculable(number.get().vt);
  if (type != number.get().vt) return Convert(number.get(), type);
  if (IsNumber(type)) return number;
  const HRESULT hr = VariantChangeTypeEx(number.Out(), number.Out(), LOCALE_USER_DEFAULT, 0, VT_R8);
  if (hr == E_OUTOFMEMORY) throw std::bad_alloc();
  if (FAILED(hr)) return {};
  return number;
}

Variant Add(const VARIANT& left, const VARIANT& right) { return Calculate(left, right, VarAdd); }

Variant Subtract(const VARIANT& left, const VARIANT& right) {
  return Calculate(left, right, VarSub);
}

int CompareNumbers(const VARIANT& left, const VARIANT& right) {
  if (IsExact(left.vt) && IsExact(right.vt)) {
    Variant exact_left = Convert(left, VT_DECIMAL), exact_right = Convert(right, VT_DECIMAL);
    return static_cast<int>(VarDecCmp(&exact_left.Out()->decVal, &exact_right.Out()->decVal)) -
           VARCMP_EQ;
  }
  const HRESULT order =
      VarCmp(const_cast<VARIANT*>(&left), const_cast<VARIANT*>(&right), LOCALE_USER_DEFAULT, 0);
  if (FAILED(order)) RaiseValueRefusal(order);
  return static_cast<int>(order) - VARCMP_EQ;
}

}  // namespace zepkit10
