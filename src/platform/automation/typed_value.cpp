#include "platform/automation/typed_value.h"

namespace zepkit10 {

ULONG SizeOfValue(VARTYPE type) noexcept {
  if (type & VT_ARRAY) return sizeof(SAFEARRAY*);
  switch (type) {
    case VT_I1:
    case VT_UI1:
      return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
      return 2;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
    case VT_ERROR:
      return 4;
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
      return 8;
    case VT_DECIMAL:
      return sizeof(DECIMAL);
    case VT_VARIANT:
      return sizeof(VARIANT);
    case VT_BSTR:
    case VT_DISPATCH:
    case VT_UNKNOWN:
      return sizeof(void*);
    default:
      return 0;
  }
}

// A Decimal has its type in a part that it does not use, every other value in front of it.
VARIANT ReadValue(VARTYPE type, const void* variable) noexcept {
  VARIANT value{};
  if (type == VT_DECIMAL) {
    CopyMemory(&value.decVal, variable, sizeof value.decVal);
  } else {
    CopyMemory(&value.byref, variable, SizeOfValue(type));
  }
  value.vt = type;
  return value;
}

void WriteValue(const VARIANT& value, VARTYPE type, void* variable) noexcept {
  if (type == VT_DECIMAL) {
    DECIMAL decimal = value.decVal;
    decimal.wReserved = 0;
    CopyMemory(variable, &decimal, sizeof decimal);
  } else {
    CopyMemory(variable, &value.byref, SizeOfValue(type));
  }
}

}  // namespace zepkit10
