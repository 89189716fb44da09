// Max and Min of both roots.
#include <deque>

#include "com/both_roots.h"
#include "com/german_user.h"
#include "com/meddler.h"
#include "com/value_array.h"

namespace {

using client::Outcome;
using client::Value;
using value_array::As;
using value_array::Decimal;
using value_array::Int64;
using value_array::Make;
using value_array::TenThousandths;
using value_array::Unallocated;
using value_array::Values;
using value_array::Variants;

/// What the thread's error information says of a failed call.
Outcome Ended(HRESULT result, Value value) {
  Outcome outcome;
  outcome.result = result;
  outcome.value = std::move(value);
  if (SUCCEEDED(result)) return outcome;
  outcome.number = (result & 0xFFFF0000) == 0x800A0000 ? result & 0xFFFF : result;
  Microsoft::WRL::ComPtr<IErrorInfo> info;
  Value source(L""), description(L"");
  if (GetErrorInfo(0, &info) == S_OK) {
    SysFreeString(source.raw().bstrVal);
    SysFreeString(description.raw().bstrVal);
    info->GetSource(&source.raw().bstrVal);
    info->GetDescription(&description.raw().bstrVal);
  }
  outcome.source = source.raw().bstrVal;
  outcome.description = description.raw().bstrVal;
  return outcome;
}

class MaxMinTest : public BothRoots {
 protected:
  using Arguments = client::Object::Arguments;

  Outcome Max(Arguments values) const {
    if (root_.binding() == client::Binding::kDispatch) return root_.Call(L"Max", values);
    return Early(
        [](auto& root, SAFEARRAY** params, VARIANT* result) { return root.Max(params, result); },
        values);
  }
  Outcome Min(Arguments values) const {
    if (root_.binding() == client::Binding::kDispatch) return root_.Call(L"Min", values);
    return Early(
        [](auto& root, SAFEARRAY** params, VARIANT* result) { return root.Min(params, result); },
        values);
  }

 private:
  /// The platform's early binding does not serve parameter arrays: the slot is called directly.
  template <class Member>
  Outcome Early(Member member, Arguments values) const {
    Value params = Variants(0, values), result;
    Microsoft::WRL::ComPtr<_Global> global;
    Microsoft::WRL::ComPtr<_Library> library;
    HRESULT hr = E_NOINTERFACE;
    if (SUCCEEDED(root_.get()->QueryInterface(IID_PPV_ARGS(&global)))) {
      hr = member(*global.Get(), &params.raw().parray, &result.raw());
    } else if (SUCCEEDED(root_.get()->QueryInterface(IID_PPV_ARGS(&library)))) {
      hr = member(*library.Get(), &params.raw().parray, &result.raw());
    }
    return Ended(hr, result);
  }
};

TEST_P(MaxMinTest, FindTheExtremes) {
  EXPECT_EQ(Max({1, 2, 3}), 3);
  EXPECT_EQ(Min({1, 2, 3}), 1);
  EXPECT_EQ(Max({5}), 5);
  EXPECT_EQ(Min({2, -7, 3.5}), -7);
  EXPECT_EQ(Max({2, -7, 3.5}), 3.5);
  EXPECT_EQ(Max({-1, -2}), -1);
}

TEST_P(MaxMinTest, TextsCountAsNumbersAndStayTexts) {
  EXPECT_EQ(Max({3, L"12", 7}), L"12");
  EXPECT_EQ(Max({3, L"5", 7}), 7);
  EXPECT_EQ(Min({3, L"12", 7}), 3);
  EXPECT_EQ(Min({30, L"12", 17}), L"12");
  EXPECT_EQ(Max({L"9", L"10"}), L"10");
  EXPECT_EQ(Min({L"9", L"10"}), L"9");
  EXPECT_EQ(Max({L" 1e2 ", L"&HFF"}), L"&HFF");
}

TEST_P(MaxMinTest, TiesKeepTheEarlier) {
  EXPECT_EQ(Max({L"7", 7, 7.0}), L"7");
  EXPECT_EQ(Min({7.0, 7, L"7"}), 7.0);
  EXPECT_EQ(Max({Value(), 0}), Value());
  EXPECT_EQ(Max({0, Value()}), 0);
}

TEST_P(MaxMinTest, WinnersKeepTheirType) {
  for (const VARTYPE type : {VT_I1, VT_UI1, VT_I2, VT_UI2, VT_I4, VT_UI4, VT_INT, VT_UINT, VT_I8,
                             VT_UI8, VT_R4, VT_R8, VT_CY, VT_DATE, VT_DECIMAL}) {
    EXPECT_EQ(Max({1, As(type, 9), 3}), As(type, 9)) << type;
    EXPECT_EQ(Min({11, As(type, 9), L"13"}), As(type, 9)) << type;
    EXPECT_EQ(Max({1.5, As(type, 9), As(VT_CY, 3)}), As(type, 9)) << type;
    EXPECT_EQ(Min({As(VT_DECIMAL, 10), As(type, 9), As(VT_DATE, 11), 9.5f}), As(type, 9)) << type;
  }
}

TEST_P(MaxMinTest, EmptyAndBooleansAreNumbers) {
  EXPECT_EQ(Max({-1, Value()}), Value());
  EXPECT_EQ(Min({true, Value(), false}), true);
  EXPECT_EQ(Max({true, -2}), true);
  EXPECT_EQ(Max({true, false}), false);
}

TEST_P(MaxMinTest, LargeNumbersCompareExactly) {
  constexpr long long kLimit = 9007199254740992;
  EXPECT_EQ(Max({Int64(kLimit), Int64(kLimit + 1)}), Int64(kLimit + 1));
  EXPECT_EQ(Min({Int64(kLimit + 1), Int64(kLimit)}), Int64(kLimit));
  EXPECT_EQ(Max({Decimal(L"9007199254740992"), Int64(kLimit + 1)}), Int64(kLimit + 1));
  EXPECT_EQ(Max({Int64(kLimit), Decimal(L"9007199254740992.5")}), Decimal(L"9007199254740992.5"));
  EXPECT_EQ(
      Max({Decimal(L"79228162514264337593543950334"), Decimal(L"79228162514264337593543950335")}),
      Decimal(L"79228162514264337593543950335"));
  EXPECT_EQ(Max({TenThousandths(9223372036854775806), TenThousandths(9223372036854775807)}),
            TenThousandths(9223372036854775807));
  EXPECT_EQ(Max({As(VT_UI8, L"18446744073709551614"), As(VT_UI8, L"18446744073709551615"), 1}),
            As(VT_UI8, L"18446744073709551615"));
}

TEST_P(MaxMinTest, NestedArraysAreSearched) {
  const Value nested = Variants(0, {1, Variants(3, {Variants(-1, {L"40", 2}), 7}), Unallocated()});
  EXPECT_EQ(Max({3, nested}), L"40");
  EXPECT_EQ(Min({3, nested}), 1);
  EXPECT_EQ(Max({Make(VT_I4, 0, {1, 2, 3})}), 3);
  EXPECT_EQ(Min({Make(VT_BSTR, 0, {L"10", L"9"})}), L"9");
  EXPECT_EQ(Max({Make(VT_R8, 5, {1.5, 2.5}), Make(VT_BOOL, 0, {true})}), 2.5);
  EXPECT_EQ(Max({Make(VT_DECIMAL, 5, {Decimal(L"1.5")}), Unallocated(VT_I4)}), Decimal(L"1.5"));
}

TEST_P(MaxMinTest, ReferencesAreFollowed) {
  Value number = 9, array = Variants(0, {4, 12});
  VARIANT typed;
  typed.vt = VT_BYREF | VT_I4;
  typed.plVal = &number.raw().lVal;
  EXPECT_EQ(Max({1, number.Reference()}), 9);
  EXPECT_EQ(Max({1, Value(typed)}), 9);
  SafeArrayLock(array.raw().parray);
  EXPECT_EQ(Max({array.Reference(), number.Reference()}), 12);
  EXPECT_EQ(1u, array.raw().parray->cLocks);
  SafeArrayUnlock(array.raw().parray);
}

TEST_P(MaxMinTest, ObjectsCountByTheirDefaultValue) {
  const client::Object counter(component::Create<IDispatch>(CLSID_Counter).Get(),
                               client::Binding::kDispatch);
  counter.Let(L"Value", {7});
  EXPECT_EQ(Max({3, counter, 5}), counter);
  EXPECT_EQ(Min({3, counter, 5}), 3);
  EXPECT_EQ(Max({Make(VT_DISPATCH, 0, {counter}), 9}), 9);
}

TEST_P(MaxMinTest, ArraysCannotBeTakenAwayMeanwhile) {
  Value array;
  Meddler meddler([&] {
    EXPECT_EQ(DISP_E_ARRAYISLOCKED, SafeArrayDestroy(array.raw().parray));
    VariantClear(static_cast<VARIANT*>(array.raw().parray->pvData));
  });
  array = Variants(0, {Value(&meddler), 5});
  EXPECT_EQ(Max({6, array.Reference(), 3}), Value(&meddler));
  array = Variants(0, {Value(&meddler), 8});
  EXPECT_EQ(Max({6, array.Reference(), 3}), 8);
  EXPECT_EQ(0u, array.raw().parray->cLocks);
  EXPECT_EQ(1u, meddler.references);
}

TEST_P(MaxMinTest, WhatIsNotNumericIsRefused) {
  const Value missing = Value::Missing();
  for (const Value& given :
       {Value(L"x"), Value(L""), Value::Null(), Value::Nothing(), missing, value_array::Grid(2)}) {
    EXPECT_ROOT_ERROR(Max({1, given}), zepErrBadCall);
    EXPECT_ROOT_ERROR(Max({given, 1}), zepErrBadCall);
    EXPECT_ROOT_ERROR(Min({given}), zepErrBadCall);
    EXPECT_ROOT_ERROR(Min({1, Variants(0, {2, given})}), zepErrBadCall);
  }
}

TEST_P(MaxMinTest, NothingHasNoExtreme) {
  EXPECT_ROOT_ERROR(Max({}), zepErrBadCall);
  EXPECT_ROOT_ERROR(Min({}), zepErrBadCall);
  EXPECT_ROOT_ERROR(Max({Unallocated()}), zepErrBadCall);
  EXPECT_ROOT_ERROR(Min({Unallocated(), Variants(0, {Unallocated(VT_I4)})}), zepErrBadCall);
}

TEST_P(MaxMinTest, AnArrayInsideItselfIsRefused) {
  Value array = Variants(0, {1, 2});
  auto* elements = static_cast<VARIANT*>(array.raw().parray->pvData);
  elements[1].vt = VT_BYREF | VT_VARIANT;
  elements[1].pvarVal = &array.raw();
  EXPECT_ROOT_ERROR(Max({array.Reference()}), zepErrBadCall);
  elements[1].pvarVal = &elements[1];
  EXPECT_ROOT_ERROR(Min({array.Reference()}), zepErrBadCall);
  EXPECT_EQ(0u, array.raw().parray->cLocks);
  elements[1].vt = VT_EMPTY;
}

TEST_P(MaxMinTest, TheSameArrayMayComeTwice) {
  Value shared = Variants(0, {4, 12});
  std::deque<Value> levels;
  levels.push_back(shared);
  // Visiting every path would take 2 to the power of 40 steps.
  for (int i = 0; i < 40; ++i) {
    Value& inner = levels.back();
    levels.push_back(Variants(0, {inner.Reference(), inner.Reference()}));
  }
  EXPECT_EQ(Max({levels.back().Reference(), 5}), 12);
  EXPECT_EQ(Min({levels.back().Reference(), 5}), 4);
}

TEST_P(MaxMinTest, TheDepthIsNotLimited) {
  constexpr int kDepth = 20000;  // far more than calls fit on a stack
  Value nested = Variants(0, {L"77"});
  for (int i = 0; i < kDepth; ++i) {
    SAFEARRAYBOUND bound{1, 0};
    SAFEARRAY* outer = SafeArrayCreate(VT_VARIANT, 1, &bound);
    static_cast<VARIANT*>(outer->pvData)[0] = nested.raw();
    nested.raw().parray = outer;
  }
  EXPECT_EQ(Max({5, nested.Reference()}), L"77");
  EXPECT_EQ(Min({5, nested.Reference()}), 5);
  // The platform would take it apart by recursion.
  while (nested.type() & VT_ARRAY) {
    SAFEARRAY* outer = nested.raw().parray;
    EXPECT_EQ(0u, outer->cLocks);
    auto& element = static_cast<VARIANT*>(outer->pvData)[0];
    nested.raw() = std::exchange(element, VARIANT{});
    SafeArrayDestroy(outer);
  }
}

TEST_P(MaxMinTest, AMillionValuesAreSearched) {
  Value numbers = Make(VT_I4, 1, Values(1000000, Value(5)));
  static_cast<LONG*>(numbers.raw().parray->pvData)[999999] = 6;
  EXPECT_EQ(Max({numbers.Reference()}), 6);
}

TEST_P(MaxMinTest, GermanTextsReadAsGermanNumbers) {
  SKIP_UNLESS_GERMAN();
  EXPECT_EQ(Max({1, L"1,5"}), L"1,5");
  EXPECT_EQ(Max({2, L"1,5"}), 2);
  EXPECT_EQ(Max({2, L"1.000"}), L"1.000");
}

RUN_WITH_BOTH_ROOTS(MaxMinTest);

}  // namespace
