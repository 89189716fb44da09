#include "com/index_kinds.h"

namespace index_kinds {
namespace {

using client::Value;

template <class T>
VARIANT Reference(VARTYPE type, T* variable) {
  VARIANT reference;
  reference.vt = static_cast<VARTYPE>(VT_BYREF | type);
  reference.byref = variable;
  return reference;
}

VARIANT Of(VARTYPE type, LONGLONG bits) {
  VARIANT value;
  value.vt = type;
  value.llVal = bits;
  return value;
}

}  // namespace

std::vector<Value> Accepted(short position, const wchar_t* name) {
  // What is passed by reference must outlive the test.
  static short short_variable;
  static LONG long_variable;
  static Value text_variable, variant_variable, nested_variable;
  short_variable = position;
  long_variable = position;
  text_variable = Value(name);
  variant_variable = Value(static_cast<int>(position));
  nested_variable = Value(name);
  return {Value(position),
          Value(static_cast<int>(position)),
          Value(Of(VT_INT, position)),
          Value(name),
          Value(Reference(VT_I2, &short_variable)),
          Value(Reference(VT_I4, &long_variable)),
          Value(Reference(VT_INT, &long_variable)),
          Value(Reference(VT_BSTR, &text_variable.raw().bstrVal)),
          variant_variable.Reference(),
          nested_variable.Reference()};
}

std::vector<Value> Refused(IDispatch* object) {
  static double double_variable = 1;
  static Value variant_variable = 1.0;
  Value currency(Of(VT_CY, 10000)), decimal(Of(VT_R8, 0));
  VarDecFromI4(1, &decimal.raw().decVal);
  decimal.raw().vt = VT_DECIMAL;
  return {Value(),
          Value::Null(),
          Value(1.0),
          Value(1.0f),
          Value(true),
          Value(object),
          Value::Nothing(),
          Value(Of(VT_DATE, 0x3FF0000000000000)),
          Value(Of(VT_UI1, 1)),
          Value(Of(VT_I1, 1)),
          Value(Of(VT_UI2, 1)),
          Value(Of(VT_UI4, 1)),
          Value(Of(VT_I8, 1)),
          Value(Of(VT_ERROR, E_FAIL)),
          currency,
          decimal,
          Value(Reference(VT_R8, &double_variable)),
          variant_variable.Reference()};
}

}  // namespace index_kinds
