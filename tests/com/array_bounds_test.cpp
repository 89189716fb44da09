// The members of both roots that tell whether arrays have elements, a fixed size, and which bounds.
#include "com/both_roots.h"
#include "com/value_array.h"

namespace {

using client::Value;
using value_array::Grid;
using value_array::Make;
using value_array::Unallocated;

constexpr LONG kFirst = -2147483647 - 1, kLast = 2147483647;

class ArrayBoundsTest : public BothRoots {
 protected:
  static Value Longs(LONG lower_bound, int count) {
    return Make(VT_I4, lower_bound, value_array::Values(count, Value(7)));
  }

  /// Global takes the fallback by reference, which early binding does not make of a number.
  client::Outcome Bound(const wchar_t* member, const Value& array, LONG fallback) const {
    VARIANT reference;
    reference.vt = VT_BYREF | VT_I4;
    reference.plVal = &fallback;
    return root_.Call(member, {array, Value(reference)});
  }
  client::Outcome Lower(const Value& array, LONG fallback = 0) const {
    return Bound(L"ZepLBound", array, fallback);
  }
  client::Outcome Upper(const Value& array, LONG fallback = -1) const {
    return Bound(L"ZepUBound", array, fallback);
  }
};

TEST_P(ArrayBoundsTest, AnArrayWithoutElementsIsEmpty) {
  for (const VARTYPE type : value_array::kTypes) {
    EXPECT_EQ(root_.Call(L"IsArrayEmpty", {Unallocated(type)}), true) << type;
    EXPECT_EQ(root_.Call(L"IsArrayEmpty", {Make(type, 3, {})}), true) << type;
    EXPECT_EQ(root_.Call(L"IsArrayEmpty", {Make(type, 3, value_array::Samples(type))}), false);
  }
  EXPECT_EQ(root_.Call(L"IsArrayEmpty", {Longs(kFirst, 0)}), true);
  EXPECT_EQ(root_.Call(L"IsArrayEmpty", {Longs(kLast, 1)}), false);
}

TEST_P(ArrayBoundsTest, OnlyTheFirstDimensionCounts) {
  EXPECT_EQ(root_.Call(L"IsArrayEmpty", {Grid(3)}), false);
  EXPECT_EQ(root_.Call(L"IsArrayEmpty", {Grid(0)}), true);
  EXPECT_EQ(Lower(Grid(3)), 1);
  EXPECT_EQ(Upper(Grid(3)), 3);
}

TEST_P(ArrayBoundsTest, OnlyArraysAreTested) {
  for (const wchar_t* member : {L"IsArrayEmpty", L"IsArrayStatic"}) {
    for (const Value& given : {Value(5), Value(L"x"), Value(), Value::Null(), Value::Nothing()}) {
      EXPECT_ROOT_ERROR(root_.Call(member, {given}), zepErrBadCall);
    }
  }
}

TEST_P(ArrayBoundsTest, AFixedSizeMakesAnArrayStatic) {
  Value array = Longs(1, 2);
  EXPECT_EQ(root_.Call(L"IsArrayStatic", {array.Reference()}), false);
  for (const USHORT flag : {FADF_AUTO, FADF_STATIC, FADF_EMBEDDED, FADF_FIXEDSIZE}) {
    array.raw().parray->fFeatures |= flag;
    EXPECT_EQ(root_.Call(L"IsArrayStatic", {array.Reference()}), true) << flag;
    array.raw().parray->fFeatures &= ~flag;
  }
}

TEST_P(ArrayBoundsTest, ALockDoesNotMakeAnArrayStatic) {
  Value array = Longs(1, 2);
  SafeArrayLock(array.raw().parray);
  EXPECT_EQ(root_.Call(L"IsArrayStatic", {array.Reference()}), false);
  EXPECT_EQ(1u, array.raw().parray->cLocks);
  SafeArrayUnlock(array.raw().parray);
}

TEST_P(ArrayBoundsTest, AnEmptyArrayIsNotStatic) {
  EXPECT_EQ(root_.Call(L"IsArrayStatic", {Unallocated()}), false);
  Value empty = Longs(1, 0);
  empty.raw().parray->fFeatures |= FADF_FIXEDSIZE;
  EXPECT_EQ(root_.Call(L"IsArrayStatic", {empty.Reference()}), false);
  empty.raw().parray->fFeatures &= ~FADF_FIXEDSIZE;
}

TEST_P(ArrayBoundsTest, BoundsOfEveryKind) {
  for (const LONG lower : {kFirst, -3l, 0l, 1l, kLast - 2}) {
    EXPECT_EQ(Lower(Longs(lower, 3)), static_cast<int>(lower));
    EXPECT_EQ(Upper(Longs(lower, 3)), static_cast<int>(lower + 2));
  }
  Value array = Longs(4, 2);
  EXPECT_EQ(Upper(array.Reference()), 5);
  SafeArrayLock(array.raw().parray);
  EXPECT_EQ(Lower(array.Reference()), 4);
  SafeArrayUnlock(array.raw().parray);
}

TEST_P(ArrayBoundsTest, WhatHasNoBoundsGivesTheFallback) {
  for (const Value& given : {Value(5), Value(L"x"), Value(), Value::Null(), Value::Nothing(),
                             Unallocated(), Unallocated(VT_BSTR)}) {
    EXPECT_EQ(Lower(given), 0);
    EXPECT_EQ(Upper(given), -1);
    EXPECT_EQ(Lower(given, 77), 77);
    EXPECT_EQ(Upper(given, -5), -5);
  }
}

TEST_P(ArrayBoundsTest, AnArrayThatIsOnlyDescribedHasNoElements) {
  Value described = Unallocated(VT_I4);
  SAFEARRAY*& array = described.raw().parray;
  ASSERT_EQ(S_OK, SafeArrayAllocDescriptorEx(VT_I4, 1, &array));
  array->rgsabound[0] = {5, 2};
  EXPECT_EQ(root_.Call(L"IsArrayEmpty", {described.Reference()}), true);
  EXPECT_EQ(root_.Call(L"IsArrayStatic", {described.Reference()}), false);
  EXPECT_EQ(Lower(described.Reference(), 77), 77);
  EXPECT_EQ(Upper(described.Reference(), 77), 77);
  const Value longs = Longs(1, 2);
  value_array::ExpectUnallocated(root_.Call(L"CutArray", {described.Reference(), 2, 1}), VT_I4);
  value_array::ExpectUnallocated(root_.Call(L"TransformArray", {described.Reference(), 1}), VT_I4);
  value_array::Expect(root_.Call(L"MergeArrays", {described.Reference(), longs, 1}), VT_I4, 1,
                      {7, 7});
  array->rgsabound[0] = {0, 2};
}

TEST_P(ArrayBoundsTest, AnAllocatedArrayWithoutElementsHasItsRealBounds) {
  EXPECT_EQ(Lower(Longs(5, 0), 77), 5);
  EXPECT_EQ(Upper(Longs(5, 0), 77), 4);
  EXPECT_EQ(Lower(Longs(kFirst, 0), 77), static_cast<int>(kFirst));
  // Below the lowest index there is no bound to tell.
  EXPECT_EQ(Upper(Longs(kFirst, 0), 77), 77);
}

TEST_P(ArrayBoundsTest, TheFallbackMayBeOmittedOrGivenByValue) {
  // The platform's early binding hands a by-value default over as if it were a reference.
  if (RootName() == std::wstring_view(L"Global") && root_.binding() == client::Binding::kVtable) {
    GTEST_SKIP() << "late binding, and Library";
  }
  EXPECT_EQ(root_.Call(L"ZepLBound", {5}), 0);
  EXPECT_EQ(root_.Call(L"ZepUBound", {5}), -1);
  EXPECT_EQ(root_.Call(L"ZepLBound", {5, 77}), 77);
  EXPECT_EQ(root_.Call(L"ZepUBound", {5, L"78"}), 78);
}

TEST_P(ArrayBoundsTest, TheFallbackStaysAsItIs) {
  LONG fallback = 12;
  VARIANT reference;
  reference.vt = VT_BYREF | VT_I4;
  reference.plVal = &fallback;
  EXPECT_EQ(root_.Call(L"ZepLBound", {Longs(4, 1), Value(reference)}), 4);
  EXPECT_EQ(root_.Call(L"ZepUBound", {Unallocated(), Value(reference)}), 12);
  EXPECT_EQ(12, fallback);
}

RUN_WITH_BOTH_ROOTS(ArrayBoundsTest);

}  // namespace
