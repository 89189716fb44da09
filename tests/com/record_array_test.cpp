// Arrays of a client's user-defined type in the members of both roots that copy arrays.
#include "com/both_roots.h"
#include "com/record.h"
#include "com/value_array.h"

namespace {

using client::Value;
using value_array::ExpectUnallocated;

class RecordArrayTest : public BothRoots {
 protected:
  /// Checks the type, the lower bound and the contents of an array of points.
  void ExpectPoints(const client::Outcome& outcome, LONG lower_bound, std::vector<LONG> contents) {
    ASSERT_TRUE(outcome.ok()) << outcome;
    ASSERT_EQ(VT_ARRAY | VT_RECORD, outcome.value.type());
    SAFEARRAY* const array = outcome.value.raw().parray;
    EXPECT_EQ(lower_bound, array->rgsabound[0].lLbound);
    const auto* first = static_cast<const LONG*>(array->pvData);
    EXPECT_EQ(contents, std::vector<LONG>(first, first + array->rgsabound[0].cElements));
    Microsoft::WRL::ComPtr<IRecordInfo> type;
    EXPECT_EQ(S_OK, SafeArrayGetRecordInfo(array, &type));
    EXPECT_EQ(&point_, type.Get());
  }
  void ExpectMismatch(const client::Outcome& outcome) {
    EXPECT_ERROR(outcome, 13, std::wstring(L"Zepkit10.") + RootName(), L"Type mismatch");
  }

  Record point_{L"Point"}, other_{L"Other"};
};

TEST_P(RecordArrayTest, RecordsAreCopiedAsTheirTypeCopiesThem) {
  Value points = point_.Array({10, 20, 30}, 5);
  ExpectPoints(root_.Call(L"CutArray", {points, 6, 2}), 6, {20, 30});
  ExpectPoints(root_.Call(L"TransformArray", {points, -1}), -1, {10, 20, 30});
  ExpectPoints(root_.Call(L"MergeArrays", {points, point_.Array({40}), 1}), 1, {10, 20, 30, 40});
  const Value reference = points.Reference();  // not copied on its way to the member
  point_.copied = E_FAIL;
  EXPECT_ERROR(root_.Call(L"TransformArray", {reference, 1}), E_FAIL,
               std::wstring(L"Zepkit10.") + RootName(),
               L"Description for err #-2147467259 not found");
}

TEST_P(RecordArrayTest, OnlyRecordsOfTheSameTypeAreMerged) {
  const Value points = point_.Array({10});
  ExpectMismatch(root_.Call(L"MergeArrays", {points, other_.Array({1}), 1}));
  ExpectMismatch(root_.Call(L"MergeArrays", {points, value_array::Make(VT_I4, 0, {1}), 1}));
  LONG content = 7;
  const Value mixed = value_array::Variants(0, {1});
  VARIANT& element = *static_cast<VARIANT*>(mixed.raw().parray->pvData);
  element = point_.Of(content).raw();
  ExpectPoints(root_.Call(L"MergeArrays", {points, mixed, 1}), 1, {10, 7});
  element.pvRecord = nullptr;
  ExpectMismatch(root_.Call(L"MergeArrays", {points, mixed, 1}));
  element.vt = VT_BYREF | VT_VARIANT;
  element.pvarVal = nullptr;
  ExpectMismatch(root_.Call(L"MergeArrays", {points, mixed, 1}));
  element.vt = VT_EMPTY;
}

TEST_P(RecordArrayTest, AnArrayThatWasNeverAllocatedTellsNoType) {
  const Value points = point_.Array({10}), nothing = value_array::Unallocated(VT_RECORD);
  ExpectMismatch(root_.Call(L"MergeArrays", {nothing, points, 1}));
  ExpectUnallocated(root_.Call(L"TransformArray", {nothing, 1}), VT_RECORD);
}

RUN_WITH_BOTH_ROOTS(RecordArrayTest);

}  // namespace
