// MergeArrays of both roots.
#include "com/both_roots.h"
#include "com/meddler.h"
#include "com/value_array.h"

namespace {

using client::Value;
using value_array::As;
using value_array::Expect;
using value_array::ExpectUnallocated;
using value_array::Make;
using value_array::Samples;
using value_array::Unallocated;
using value_array::Values;
using value_array::Variants;

constexpr LONG kFirst = -2147483647 - 1, kLast = 2147483647;

class MergeArraysTest : public BothRoots {
 protected:
  client::Outcome Merge(const Value& first, const Value& second, int base) const {
    return root_.Call(L"MergeArrays", {first, second, base});
  }
  std::wstring Source() const { return std::wstring(L"Zepkit10.") + RootName(); }
};

TEST_P(MergeArraysTest, JoinsEveryType) {
  Expect(Merge(Variants(0, {1, 2}), Variants(0, {3}), 1), VT_VARIANT, 1, {1, 2, 3});
  for (const VARTYPE type : value_array::kTypes) {
    const Values samples = Samples(type), more = Samples(type);
    Values all = samples;
    all.insert(all.end(), more.begin(), more.end());
    for (const LONG base : {kFirst, -2l, 0l, 1l, kLast - 9}) {
      Expect(Merge(Make(type, 3, samples), Make(type, -8, more), static_cast<int>(base)), type,
             base, all);
    }
  }
}

TEST_P(MergeArraysTest, OneEmptyArrayLeavesTheOtherRebased) {
  for (const VARTYPE type : value_array::kTypes) {
    const Values samples = Samples(type);
    for (const Value& empty : {Unallocated(type), Make(type, 4, {})}) {
      Expect(Merge(Make(type, 3, samples), empty, -1), type, -1, samples);
      Expect(Merge(empty, Make(type, 3, samples), 7), type, 7, samples);
    }
  }
}

TEST_P(MergeArraysTest, TwoEmptyArraysGiveTheFirst) {
  ExpectUnallocated(Merge(Unallocated(VT_I2), Unallocated(VT_BSTR), 1), VT_I2);
  ExpectUnallocated(Merge(Unallocated(VT_I2), Make(VT_BSTR, 4, {}), 1), VT_I2);
  Expect(Merge(Make(VT_I2, 4, {}), Unallocated(VT_BSTR), 1), VT_I2, 4, {});
  const client::Outcome grid = Merge(value_array::Grid(0), Unallocated(VT_BSTR), 1);
  EXPECT_OK(grid);
  EXPECT_EQ(VT_ARRAY | VT_I4, grid.value.type());
  EXPECT_EQ(2, grid.value.raw().parray->cDims);
}

TEST_P(MergeArraysTest, TheSecondIsConvertedToTheTypeOfTheFirst) {
  const Value longs = Make(VT_I4, 0, {1});
  Expect(Merge(longs, Make(VT_BSTR, 0, {L"12", L" 7 "}), 0), VT_I4, 0, {1, 12, 7});
  Expect(Merge(longs, Variants(0, {2.5, true, Value(), L"&HFF"}), 0), VT_I4, 0, {1, 2, -1, 0, 255});
  Expect(Merge(Make(VT_BSTR, 0, {L"a"}), Variants(0, {1, true, 2.5, Value()}), 0), VT_BSTR, 0,
         {L"a", L"1", L"True", L"2.5", L""});
  Expect(Merge(Variants(0, {1}), Make(VT_UI1, 0, {As(VT_UI1, 5)}), 0), VT_VARIANT, 0,
         {1, As(VT_UI1, 5)});
  Expect(Merge(Make(VT_DECIMAL, 0, {As(VT_DECIMAL, 1)}), Make(VT_CY, 0, {As(VT_CY, 2.5)}), 0),
         VT_DECIMAL, 0, {As(VT_DECIMAL, 1), As(VT_DECIMAL, 2.5)});
  Expect(Merge(Make(VT_BOOL, 0, {true}), Make(VT_I2, 0, {short{0}, short{3}}), 0), VT_BOOL, 0,
         {true, false, true});
  Expect(Merge(Make(VT_DATE, 0, {}), Make(VT_R8, 0, {1.5}), 0), VT_DATE, 0, {As(VT_DATE, 1.5)});
}

TEST_P(MergeArraysTest, AnEmptyFirstGivesTheType) {
  for (const Value& empty : {Unallocated(VT_I2), Make(VT_I2, 4, {})}) {
    Expect(Merge(empty, Make(VT_BSTR, 3, {L"12", L"13"}), -5), VT_I2, -5, {short{12}, short{13}});
  }
}

TEST_P(MergeArraysTest, ObjectsAndTheirDefaultValues) {
  const Value counter(component::Create<IDispatch>(CLSID_Counter).Get());
  client::Object(counter.raw().pdispVal, client::Binding::kDispatch).Let(L"Value", {42});
  Expect(Merge(Make(VT_DISPATCH, 0, {Value::Nothing()}), Variants(0, {counter}), 0), VT_DISPATCH, 0,
         {Value::Nothing(), counter});
  Expect(Merge(Make(VT_I4, 0, {1}), Make(VT_DISPATCH, 0, {counter}), 0), VT_I4, 0, {1, 42});
}

/// An array of one element that promises an interface, as typed arrays of objects do.
Value Typed(REFIID iid, const Value& object) {
  Value value = Unallocated(VT_DISPATCH);
  SAFEARRAYBOUND bound{1, 0};
  value.raw().parray = SafeArrayCreateEx(VT_DISPATCH, 1, &bound, const_cast<IID*>(&iid));
  LONG index = 0;
  EXPECT_EQ(S_OK, SafeArrayPutElement(value.raw().parray, &index, object.raw().pdispVal));
  return value;
}

TEST_P(MergeArraysTest, ATypedArrayOfObjectsKeepsItsInterface) {
  const Value counter(component::Create<IDispatch>(CLSID_Counter).Get());
  const Value other(component::Create<IDispatch>(CLSID_Counter).Get());
  const Value list(component::Create<IDispatch>(CLSID_List).Get());
  const Value typed = Typed(IID__Counter, counter);
  const client::Outcome merged = Merge(typed, Variants(0, {other, Value::Nothing()}), 0);
  Expect(merged, VT_DISPATCH, 0, {counter, other, Value::Nothing()});
  IID iid{};
  EXPECT_EQ(S_OK, SafeArrayGetIID(merged.value.raw().parray, &iid));
  EXPECT_EQ(IID__Counter, iid);
  EXPECT_ERROR(Merge(typed, Variants(0, {list}), 0), 13, Source(), L"Type mismatch");
  EXPECT_ERROR(Merge(typed, Make(VT_DISPATCH, 0, {list}), 0), 13, Source(), L"Type mismatch");
  Expect(Merge(Make(VT_DISPATCH, 0, {list}), typed, 0), VT_DISPATCH, 0, {list, counter});
}

TEST_P(MergeArraysTest, SourcesCannotBeTakenAwayMeanwhile) {
  Value source;
  int asked = 0;
  Meddler meddler([&] {
    ++asked;
    EXPECT_EQ(DISP_E_ARRAYISLOCKED, SafeArrayDestroy(source.raw().parray));
    SAFEARRAYBOUND shorter{1, 0};
    EXPECT_EQ(DISP_E_ARRAYISLOCKED, SafeArrayRedim(source.raw().parray, &shorter));
  });
  source = Variants(0, {Value(&meddler), 2});
  Expect(Merge(Make(VT_I4, 0, {1}), source.Reference(), 0), VT_I4, 0, {1, 7, 2});
  Expect(Merge(Unallocated(VT_I4), source.Reference(), 0), VT_I4, 0, {7, 2});
  EXPECT_EQ(2, asked);
  EXPECT_EQ(0u, source.raw().parray->cLocks);
}

TEST_P(MergeArraysTest, AnElementMayBeReplacedWhileItIsRead) {
  Value source;
  Meddler meddler([&] { VariantClear(static_cast<VARIANT*>(source.raw().parray->pvData)); });
  source = Variants(0, {Value(&meddler), 2});
  Expect(Merge(Make(VT_I4, 0, {1}), source.Reference(), 0), VT_I4, 0, {1, 7, 2});
  EXPECT_EQ(1u, meddler.references);
}

TEST_P(MergeArraysTest, WhatCannotBeConvertedIsRefused) {
  const Value longs = Make(VT_I4, 0, {1});
  const Value nested = Variants(0, {Variants(0, {1})});
  for (const Value& second : {Make(VT_BSTR, 0, {L"x"}), Variants(0, {Value::Null()}), nested,
                              Variants(0, {Value::Nothing()})}) {
    EXPECT_ERROR(Merge(longs, second, 0), 13, Source(), L"Type mismatch");
    EXPECT_ERROR(Merge(Unallocated(VT_I4), second, 0), 13, Source(), L"Type mismatch");
  }
  EXPECT_ERROR(Merge(Make(VT_DISPATCH, 0, {}), longs, 0), 13, Source(), L"Type mismatch");
  EXPECT_ERROR(Merge(Unallocated(VT_I2), Make(VT_I4, 0, {70000}), 0), 6, Source(), L"Overflow");
}

TEST_P(MergeArraysTest, TheUpperBoundMayOverflow) {
  const Value two = Make(VT_I4, 0, {1, 2});
  Expect(Merge(two, two, 2147483644), VT_I4, kLast - 3, {1, 2, 1, 2});
  EXPECT_ERROR(Merge(two, two, 2147483645), 6, Source(), L"Overflow");
  EXPECT_ERROR(Merge(two, Unallocated(), 2147483647), 6, Source(), L"Overflow");
  EXPECT_ERROR(Merge(Unallocated(VT_I4), two, 2147483647), 6, Source(), L"Overflow");
}

TEST_P(MergeArraysTest, OnlyArraysOfOneDimensionMerge) {
  const Value array = Make(VT_I4, 0, {1, 2});
  for (const Value& given :
       {Value(5), Value(L"x"), Value(), Value::Null(), Value::Nothing(), value_array::Grid(2)}) {
    EXPECT_ROOT_ERROR(Merge(given, array, 1), zepErrBadCall);
    EXPECT_ROOT_ERROR(Merge(array, given, 1), zepErrBadCall);
    EXPECT_ROOT_ERROR(Merge(given, Unallocated(), 1), zepErrBadCall);
    EXPECT_ROOT_ERROR(Merge(Unallocated(), given, 1), zepErrBadCall);
  }
}

TEST_P(MergeArraysTest, SourcesStayAsTheyAre) {
  Value source = Make(VT_BSTR, 2, {L"a", L"b"});
  SafeArrayLock(source.raw().parray);
  source.raw().parray->fFeatures |= FADF_FIXEDSIZE;
  Expect(Merge(source.Reference(), source.Reference(), 0), VT_BSTR, 0, {L"a", L"b", L"a", L"b"});
  EXPECT_EQ(1u, source.raw().parray->cLocks);
  source.raw().parray->fFeatures &= ~FADF_FIXEDSIZE;
  SafeArrayUnlock(source.raw().parray);
  EXPECT_EQ(Values({L"a", L"b"}), value_array::Read(source));
}

RUN_WITH_BOTH_ROOTS(MergeArraysTest);

}  // namespace
