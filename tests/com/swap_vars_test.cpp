// SwapVars of both roots.
#include "com/both_roots.h"
#include "com/foreign.h"
#include "com/value_array.h"

namespace {

using client::Outcome;
using client::Value;
using value_array::As;
using value_array::Decimal;
using value_array::Samples;
using value_array::Values;

template <class Variable>
Value Reference(VARTYPE type, Variable* variable) {
  VARIANT reference;
  reference.vt = static_cast<VARTYPE>(VT_BYREF | type);
  reference.byref = variable;
  return Value(reference);
}

class SwapVarsTest : public BothRoots {
 protected:
  Outcome Swap(Value& left, Value& right) const {
    return root_.Call(L"SwapVars", {left.Reference(), right.Reference()});
  }
  void ExpectLocked(const Outcome& outcome) const {
    EXPECT_ERROR(outcome, 10, std::wstring(L"Zepkit10.") + RootName(),
                 L"This array is fixed or temporarily locked");
  }
};

TEST_P(SwapVarsTest, ValuesOfEveryTypeChangePlaces) {
  for (const VARTYPE type : value_array::kTypes) {
    if (type == VT_VARIANT) continue;
    const Values samples = Samples(type);
    Value left = samples[0], right = samples[1];
    EXPECT_OK(Swap(left, right));
    EXPECT_EQ(left, samples[1]);
    EXPECT_EQ(right, samples[0]);
  }
  Value empty, another, null = Value::Null(), other_null = Value::Null();
  EXPECT_OK(Swap(empty, another));
  EXPECT_OK(Swap(null, other_null));
  EXPECT_EQ(null, Value::Null());
}

TEST_P(SwapVarsTest, DifferentTypesAreRefused) {
  const Value counter(component::Create<IDispatch>(CLSID_Counter).Get());
  const Value list(component::Create<IDispatch>(CLSID_List).Get());
  const Value longs = value_array::Make(VT_I4, 0, {1});
  const Values values = {1,
                         short{1},
                         1.0,
                         L"1",
                         As(VT_UI1, 1),
                         Decimal(L"1"),
                         counter,
                         list,
                         Value(),
                         true,
                         Value::Nothing(),
                         Value::Null(),
                         longs,
                         value_array::Variants(0, {1})};
  for (const Value& first : values) {
    for (const Value& second : values) {
      if (&first == &second) continue;
      Value left = first, right = second;
      EXPECT_ROOT_ERROR(Swap(left, right), zepErrBadParam);
      EXPECT_EQ(first.type(), left.type());
      EXPECT_EQ(second.type(), right.type());
    }
  }
}

TEST_P(SwapVarsTest, ObjectsAreSwappedAsReferences) {
  foreign::VarSet first, second;
  Value left(&first), right(&second);
  EXPECT_OK(Swap(left, right));
  EXPECT_EQ(&second, left.raw().pdispVal);
  EXPECT_EQ(&first, right.raw().pdispVal);
  EXPECT_EQ(2u, first.references);
  EXPECT_EQ(2u, second.references);
}

TEST_P(SwapVarsTest, TypedObjectVariablesMeetVariants) {
  foreign::VarSet first, second;
  IDispatch* typed = &first;
  first.AddRef();
  IUnknown* unknown = &second;
  second.AddRef();
  EXPECT_OK(
      root_.Call(L"SwapVars", {Reference(VT_DISPATCH, &typed), Reference(VT_UNKNOWN, &unknown)}));
  EXPECT_EQ(&second, typed);
  EXPECT_EQ(&first, unknown);
  EXPECT_EQ(2u, first.references);
  EXPECT_EQ(2u, second.references);
}

TEST_P(SwapVarsTest, ArraysChangePlaces) {
  Value left = value_array::Make(VT_I4, 0, {1, 2}), right = value_array::Make(VT_I4, 5, {3});
  SAFEARRAY* left_array = left.raw().parray;
  EXPECT_OK(Swap(left, right));
  EXPECT_EQ(left_array, right.raw().parray);
  EXPECT_EQ(Values{3}, value_array::Read(left));
  Value none = value_array::Unallocated(VT_I4);
  EXPECT_OK(Swap(left, none));
  EXPECT_EQ(nullptr, left.raw().parray);
  EXPECT_EQ(Values{3}, value_array::Read(none));
}

TEST_P(SwapVarsTest, LockedArraysStay) {
  Value left = value_array::Make(VT_I4, 0, {1, 2}), right = value_array::Make(VT_I4, 5, {3});
  SafeArrayLock(left.raw().parray);
  ExpectLocked(Swap(left, right));
  ExpectLocked(Swap(right, left));
  SafeArrayUnlock(left.raw().parray);
  EXPECT_EQ(Values({1, 2}), value_array::Read(left));
  EXPECT_EQ(Values{3}, value_array::Read(right));
}

TEST_P(SwapVarsTest, AFixedSizeVariableStaysButAFixedSizeValueMoves) {
  Value left = value_array::Make(VT_I4, 0, {1, 2}), right = value_array::Make(VT_I4, 5, {3});
  left.raw().parray->fFeatures |= FADF_FIXEDSIZE;
  ExpectLocked(root_.Call(L"SwapVars", {Reference(VT_ARRAY | VT_I4, &left.raw().parray),
                                        Reference(VT_ARRAY | VT_I4, &right.raw().parray)}));
  EXPECT_EQ(Values({1, 2}), value_array::Read(left));
  EXPECT_OK(Swap(left, right));
  EXPECT_EQ(Values({1, 2}), value_array::Read(right));
  right.raw().parray->fFeatures &= ~FADF_FIXEDSIZE;
}

TEST_P(SwapVarsTest, TypedVariablesChangePlaces) {
  LONG left = 1, right = 2;
  EXPECT_OK(root_.Call(L"SwapVars", {Reference(VT_I4, &left), Reference(VT_I4, &right)}));
  EXPECT_EQ(2, left);
  EXPECT_EQ(1, right);
  Value text = L"a", other = L"b";
  EXPECT_OK(root_.Call(L"SwapVars", {Reference(VT_BSTR, &text.raw().bstrVal),
                                     Reference(VT_BSTR, &other.raw().bstrVal)}));
  EXPECT_EQ(text, Value(L"b"));
  EXPECT_EQ(other, Value(L"a"));
  Value array = value_array::Make(VT_I4, 0, {1}), second = value_array::Make(VT_I4, 0, {2});
  EXPECT_OK(root_.Call(L"SwapVars", {Reference(VT_ARRAY | VT_I4, &array.raw().parray),
                                     Reference(VT_ARRAY | VT_I4, &second.raw().parray)}));
  EXPECT_EQ(Values{2}, value_array::Read(array));
}

TEST_P(SwapVarsTest, TypedVariablesMeetVariants) {
  LONG typed = 1;
  Value variant = 2;
  EXPECT_OK(root_.Call(L"SwapVars", {Reference(VT_I4, &typed), variant.Reference()}));
  EXPECT_EQ(2, typed);
  EXPECT_EQ(variant, Value(1));
  INT other = 5;  // the same type name, and another type
  EXPECT_OK(root_.Call(L"SwapVars", {variant.Reference(), Reference(VT_INT, &other)}));
  EXPECT_EQ(1, other);
  EXPECT_EQ(As(VT_I4, variant), Value(5));
  DECIMAL decimal = Decimal(L"1.5").raw().decVal;
  Value number = Decimal(L"7");
  EXPECT_OK(root_.Call(L"SwapVars", {number.Reference(), Reference(VT_DECIMAL, &decimal)}));
  EXPECT_EQ(number, Decimal(L"1.5"));
  EXPECT_EQ(7u, decimal.Lo32);
  EXPECT_EQ(0, decimal.wReserved);
  short small = 1;
  EXPECT_ROOT_ERROR(root_.Call(L"SwapVars", {Reference(VT_I2, &small), Reference(VT_I4, &typed)}),
                    zepErrBadParam);
  EXPECT_EQ(1, small);
}

TEST_P(SwapVarsTest, AVariableMayBeSwappedWithItself) {
  foreign::VarSet object;
  Value text = L"a", reference(&object), array = value_array::Make(VT_I4, 0, {1});
  LONG typed = 5;
  EXPECT_OK(Swap(text, text));
  EXPECT_OK(Swap(reference, reference));
  EXPECT_OK(Swap(array, array));
  EXPECT_OK(root_.Call(L"SwapVars", {Reference(VT_I4, &typed), Reference(VT_I4, &typed)}));
  EXPECT_EQ(text, Value(L"a"));
  EXPECT_EQ(&object, reference.raw().pdispVal);
  EXPECT_EQ(2u, object.references);
  EXPECT_EQ(Values{1}, value_array::Read(array));
  EXPECT_EQ(5, typed);
}

RUN_WITH_BOTH_ROOTS(SwapVarsTest);

}  // namespace
