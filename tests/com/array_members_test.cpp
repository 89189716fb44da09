// The members of both roots that cut, rebase and flatten arrays.
#include "com/both_roots.h"
#include "com/foreign.h"
#include "com/value_array.h"

namespace {

using client::Value;
using value_array::Expect;
using value_array::ExpectUnallocated;
using value_array::Make;
using value_array::Samples;
using value_array::Unallocated;
using value_array::Values;
using value_array::Variants;

constexpr LONG kFirst = -2147483647 - 1, kLast = 2147483647;

class ArrayMembersTest : public BothRoots {
 protected:
  std::wstring Source() const { return std::wstring(L"Zepkit10.") + RootName(); }

  /// `found` is the client's variable.
  client::Outcome Flatten(const Value& array, VARIANT_BOOL* found) const {
    VARIANT reference;
    reference.vt = VT_BYREF | VT_BOOL;
    reference.pboolVal = found;
    return root_.Call(L"TransformPArray", {array, Value(reference)});
  }

  void ExpectOverflow(const client::Outcome& outcome) const {
    EXPECT_ERROR(outcome, 6, Source(), L"Overflow");
  }
};

TEST_P(ArrayMembersTest, CutsEveryTypeWhereverItStarts) {
  for (const VARTYPE type : value_array::kTypes) {
    const Values samples = Samples(type);
    for (const LONG lower : {kFirst, -2l, 0l, 1l, kLast - 4}) {
      const Value source = Make(type, lower, samples);
      const int first = static_cast<int>(lower);
      Expect(root_.Call(L"CutArray", {source, first + 1, 3}), type, lower + 1,
             {samples[1], samples[2], samples[3]});
      Expect(root_.Call(L"CutArray", {source, first, 5}), type, lower, samples);
      Expect(root_.Call(L"CutArray", {source, first + 4, 1}), type, lower + 4, {samples[4]});
    }
  }
}

TEST_P(ArrayMembersTest, ACutKeepsItsIndexes) {
  Values numbers;
  for (int i = 0; i < 10; ++i) numbers.emplace_back(i);
  const Value source = Make(VT_I4, 0, numbers);
  Expect(root_.Call(L"CutArray", {source, 3, 2}), VT_I4, 3, {3, 4});
  ExpectUnallocated(root_.Call(L"CutArray", {source, 3, 0}), VT_I4);
  ExpectUnallocated(root_.Call(L"CutArray", {source, 99, 0}), VT_I4);
  EXPECT_ROOT_ERROR(root_.Call(L"CutArray", {source, 9, 2}), zepErrBadCall);
  EXPECT_ROOT_ERROR(root_.Call(L"CutArray", {source, -1, 2}), zepErrBadCall);
  EXPECT_ROOT_ERROR(root_.Call(L"CutArray", {source, 10, 1}), zepErrBadCall);
  EXPECT_ROOT_ERROR(root_.Call(L"CutArray", {source, 3, -1}), zepErrBadCall);
  EXPECT_ROOT_ERROR(root_.Call(L"CutArray", {source, 0, 2147483647}), zepErrBadCall);
}

TEST_P(ArrayMembersTest, TheEndOfACutMayOverflow) {
  const Value source = Make(VT_I4, kLast, {5});
  Expect(root_.Call(L"CutArray", {source, 2147483647, 1}), VT_I4, kLast, {5});
  ExpectOverflow(root_.Call(L"CutArray", {source, 2147483647, 2}));
  ExpectOverflow(root_.Call(L"CutArray", {source, 2, 2147483647}));
  ExpectUnallocated(root_.Call(L"CutArray", {source, 2147483647, 0}), VT_I4);
}

TEST_P(ArrayMembersTest, NothingIsCutFromAnEmptyArray) {
  for (const VARTYPE type : value_array::kTypes) {
    ExpectUnallocated(root_.Call(L"CutArray", {Unallocated(type), 1, 5}), type);
    ExpectUnallocated(root_.Call(L"CutArray", {Make(type, 4, {}), 1, 5}), type);
  }
  EXPECT_ROOT_ERROR(root_.Call(L"CutArray", {Unallocated(), 1, -1}), zepErrBadCall);
  ExpectUnallocated(root_.Call(L"CutArray", {Unallocated(), 2147483647, 2}), VT_VARIANT);
}

TEST_P(ArrayMembersTest, RebasesEveryType) {
  for (const VARTYPE type : value_array::kTypes) {
    const Values samples = Samples(type);
    for (const LONG base : {kFirst, -2l, 0l, 1l, kLast - 4}) {
      Expect(root_.Call(L"TransformArray", {Make(type, 3, samples), static_cast<int>(base)}), type,
             base, samples);
    }
    ExpectUnallocated(root_.Call(L"TransformArray", {Unallocated(type), 1}), type);
    ExpectUnallocated(root_.Call(L"TransformArray", {Make(type, 4, {}), 1}), type);
  }
}

TEST_P(ArrayMembersTest, ANewBaseMayOverflow) {
  const Value source = Make(VT_BSTR, 0, {L"a", L"b"});
  Expect(root_.Call(L"TransformArray", {source, 2147483646}), VT_BSTR, kLast - 1, {L"a", L"b"});
  ExpectOverflow(root_.Call(L"TransformArray", {source, 2147483647}));
}

TEST_P(ArrayMembersTest, OnlyArraysOfOneDimensionAreCopied) {
  for (const Value& given :
       {Value(5), Value(L"x"), Value(), Value::Null(), Value::Nothing(), value_array::Grid(2)}) {
    EXPECT_ROOT_ERROR(root_.Call(L"CutArray", {given, 1, 1}), zepErrBadCall);
    EXPECT_ROOT_ERROR(root_.Call(L"TransformArray", {given, 1}), zepErrBadCall);
  }
  ExpectUnallocated(root_.Call(L"CutArray", {value_array::Grid(2), 1, 0}), VT_I4);
  ExpectUnallocated(root_.Call(L"TransformArray", {value_array::Grid(0), 1}), VT_I4);
}

TEST_P(ArrayMembersTest, LockedAndFixedSourcesAreReadOnly) {
  Value source = Make(VT_BSTR, 0, {L"a", L"b"});
  SAFEARRAY* array = source.raw().parray;
  SafeArrayLock(array);
  array->fFeatures |= FADF_FIXEDSIZE | FADF_STATIC;
  Expect(root_.Call(L"CutArray", {source.Reference(), 1, 1}), VT_BSTR, 1, {L"b"});
  Expect(root_.Call(L"TransformArray", {source.Reference(), 5}), VT_BSTR, 5, {L"a", L"b"});
  Expect(root_.Call(L"TransformPArray", {source.Reference()}), VT_VARIANT, 0, {L"a", L"b"});
  EXPECT_EQ(1u, array->cLocks);
  array->fFeatures &= ~(FADF_FIXEDSIZE | FADF_STATIC);
  SafeArrayUnlock(array);
  EXPECT_EQ(Values({L"a", L"b"}), value_array::Read(source));
}

TEST_P(ArrayMembersTest, CopiesShareNothingButObjects) {
  foreign::VarSet object;
  {
    Value inner = Make(VT_I4, 0, {1, 2});
    Value number = 8;
    const Value source = Variants(0, {Value(&object), inner, number.Reference()});
    const client::Outcome copy = root_.Call(L"TransformArray", {source, 1});
    const Values elements = value_array::Read(copy.value);
    ASSERT_EQ(3u, elements.size());
    static_cast<LONG*>(inner.raw().parray->pvData)[0] = 9;
    number = 5;
    EXPECT_EQ(elements[0], Value(&object));
    EXPECT_EQ(Values({1, 2}), value_array::Read(elements[1]));
    EXPECT_EQ(static_cast<VARIANT*>(copy.value.raw().parray->pvData)[2].vt, VT_I4);
    EXPECT_EQ(elements[2], Value(8));
  }
  EXPECT_EQ(1u, object.references);
}

TEST_P(ArrayMembersTest, FlatteningTakesOneLevel) {
  VARIANT_BOOL found = VARIANT_FALSE;
  const Value pair = Variants(0, {2, 3});
  Expect(Flatten(Variants(0, {1, pair, 4}), &found), VT_VARIANT, 0, {1, 2, 3, 4});
  EXPECT_EQ(VARIANT_TRUE, found);
  found = VARIANT_FALSE;
  const Value nested = Variants(0, {1, Variants(0, {Variants(0, {2})})});
  const Values elements = value_array::Read(Flatten(nested, &found).value);
  EXPECT_EQ(VARIANT_TRUE, found);
  ASSERT_EQ(2u, elements.size());
  EXPECT_EQ(elements[0], Value(1));
  EXPECT_EQ(Values{2}, value_array::Read(elements[1]));
}

TEST_P(ArrayMembersTest, FoundIsNeverReset) {
  VARIANT_BOOL found = VARIANT_TRUE;
  Expect(Flatten(Variants(0, {1}), &found), VT_VARIANT, 0, {1});
  EXPECT_EQ(VARIANT_TRUE, found);
  found = VARIANT_FALSE;
  Expect(Flatten(Variants(0, {1}), &found), VT_VARIANT, 0, {1});
  EXPECT_EQ(VARIANT_FALSE, found);
  Expect(root_.Call(L"TransformPArray", {Variants(0, {Variants(0, {1})})}), VT_VARIANT, 0, {1});
}

TEST_P(ArrayMembersTest, FoundMayBeAVariantInLateBinding) {
  if (root_.binding() == client::Binding::kVtable) GTEST_SKIP() << "late binding only";
  Value found = false;
  const Value nested = Variants(0, {Variants(0, {1})});
  Expect(root_.Call(L"TransformPArray", {nested, found.Reference()}), VT_VARIANT, 0, {1});
  EXPECT_EQ(found, Value(true));
}

TEST_P(ArrayMembersTest, FlatteningKeepsTheLowerBoundAndTypesOfElements) {
  for (const VARTYPE type : value_array::kTypes) {
    const Values samples = Samples(type);
    Expect(root_.Call(L"TransformPArray", {Make(type, -7, samples)}), VT_VARIANT, -7, samples);
    Expect(root_.Call(L"TransformPArray", {Variants(5, {Make(type, 9, samples)})}), VT_VARIANT, 5,
           samples);
  }
}

TEST_P(ArrayMembersTest, FlatteningFollowsReferences) {
  Value pair = Make(VT_BSTR, 1, {L"x", L"y"}), number = 7;
  VARIANT typed;
  typed.vt = VT_BYREF | VT_ARRAY | VT_BSTR;
  typed.pparray = &pair.raw().parray;
  Expect(root_.Call(L"TransformPArray",
                    {Variants(1, {pair.Reference(), number.Reference(), Value(typed)})}),
         VT_VARIANT, 1, {L"x", L"y", 7, L"x", L"y"});
}

TEST_P(ArrayMembersTest, NothingFlattensToNothing) {
  ExpectUnallocated(root_.Call(L"TransformPArray", {Unallocated(VT_BSTR)}), VT_VARIANT);
  ExpectUnallocated(root_.Call(L"TransformPArray", {Make(VT_I4, 4, {})}), VT_VARIANT);
  VARIANT_BOOL found = VARIANT_FALSE;
  ExpectUnallocated(Flatten(Variants(0, {Unallocated()}), &found), VT_VARIANT);
  EXPECT_EQ(VARIANT_TRUE, found);
}

TEST_P(ArrayMembersTest, FlatteningMayOverflow) {
  const Value pair = Make(VT_I4, 0, {1, 2});
  Expect(root_.Call(L"TransformPArray", {Variants(kLast - 1, {pair})}), VT_VARIANT, kLast - 1,
         {1, 2});
  ExpectOverflow(root_.Call(L"TransformPArray", {Variants(kLast, {pair})}));
}

TEST_P(ArrayMembersTest, OnlyArraysFlatten) {
  for (const Value& given : {Value(5), Value(L"x"), Value(), Value::Null(), Value::Nothing()}) {
    EXPECT_ROOT_ERROR(root_.Call(L"TransformPArray", {given}), zepErrUnexpected);
  }
  const Value grid = value_array::Grid(2);
  EXPECT_ROOT_ERROR(root_.Call(L"TransformPArray", {grid}), zepErrBadCall);
  EXPECT_ROOT_ERROR(root_.Call(L"TransformPArray", {Variants(0, {1, grid})}), zepErrBadCall);
}

RUN_WITH_BOTH_ROOTS(ArrayMembersTest);

}  // namespace
