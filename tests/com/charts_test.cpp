#include "com/apartment.h"
#include "com/chart_fixture.h"
#include "com/index_kinds.h"

namespace {

using client::Object;
using client::Value;

class ChartsTest : public WithCharts {};

TEST_P(ChartsTest, IsTheLibrarysOneCollection) {
  EXPECT_EQ(Create(CLSID_Global).Get(L"Charts"), charts_);
  EXPECT_EQ(global_.GetObject(L"Zep").Get(L"Charts"), charts_);
  EXPECT_EQ(charts_.Get(L"Parent"), global_.GetObject(L"Zep"));
}

TEST_P(ChartsTest, AddedChartsStandInOrder) {
  const Object b = charts_.CallObject(L"Add", {L"b"});
  const Object a = charts_.CallObject(L"Add", {L"a"});
  EXPECT_EQ(charts_.Get(L"Count"), 2);
  EXPECT_EQ(charts_.Get(L"Item", {1}), b);
  EXPECT_EQ(charts_.Get(L"Item", {2}), a);
  EXPECT_EQ(charts_.Get(L"Item", {L"a"}), a);
  EXPECT_EQ(a.Get(L"Name"), L"a");
  EXPECT_EQ(a.Get(L"Parent"), charts_);
}

TEST_P(ChartsTest, AddRefusesNamesInUse) {
  for (const wchar_t* name : {L"", L"c", L"C"}) {
    EXPECT_OK(charts_.Call(L"Add", {name}));
    EXPECT_ZEP_ERROR(charts_.Call(L"Add", {name}), zepErrItemAlreadyExists, L"Charts");
  }
  EXPECT_EQ(charts_.Get(L"Count"), 3);
}

TEST_P(ChartsTest, UnknownNamesAreNeverAdded) {
  charts_.Call(L"Add", {L"c"});
  EXPECT_ZEP_ERROR(charts_.Get(L"Item", {L"C"}), zepErrItemNotExistant, L"Charts");
  EXPECT_ZEP_ERROR(charts_.Call(L"Remove", {L"C"}), zepErrItemNotExistant, L"Charts");
  EXPECT_EQ(charts_.Get(L"Count"), 1);
}

TEST_P(ChartsTest, PositionsOutsideRaise9) {
  charts_.Call(L"Add", {L"c"});
  for (const int position : {0, -1, 2, INT_MAX, INT_MIN}) {
    EXPECT_ERROR(charts_.Get(L"Item", {position}), 9, L"Zepkit10.Charts",
                 L"Subscript out of range");
    EXPECT_ERROR(charts_.Call(L"Remove", {position}), 9, L"Zepkit10.Charts",
                 L"Subscript out of range");
  }
}

TEST_P(ChartsTest, PositionsAreIntegersAndNamesStrings) {
  const Object chart = charts_.CallObject(L"Add", {L"1"});
  for (const Value& index : index_kinds::Accepted(1, L"1")) {
    EXPECT_EQ(charts_.Get(L"Item", {index}), chart) << index;
  }
  for (const Value& index : index_kinds::Refused(global_.get())) {
    SCOPED_TRACE(index.type());
    EXPECT_ZEP_ERROR(charts_.Get(L"Item", {index}), zepErrBadParam, L"Charts");
    EXPECT_ZEP_ERROR(charts_.Call(L"Remove", {index}), zepErrBadParam, L"Charts");
  }
}

TEST_P(ChartsTest, RemoveDeletesTheChart) {
  for (const Value& index : index_kinds::Accepted(1, L"1")) {
    const Object chart = charts_.CallObject(L"Add", {L"1"});
    EXPECT_OK(charts_.Call(L"Remove", {index}));
    EXPECT_ZEP_ERROR(chart.Get(L"Name"), zepErrAwaitTerm, L"Chart");
    EXPECT_EQ(charts_.Get(L"Count"), 0);
  }
}

TEST_P(ChartsTest, ClearDeletesEveryChart) {
  const Object chart = charts_.CallObject(L"Add", {L"c"});
  const Object functions = chart.GetObject(L"FncInfos");
  EXPECT_OK(charts_.Call(L"Clear"));
  EXPECT_EQ(charts_.Get(L"Count"), 0);
  EXPECT_ZEP_ERROR(chart.Get(L"Name"), zepErrAwaitTerm, L"Chart");
  EXPECT_ZEP_ERROR(functions.Get(L"Count"), zepErrAwaitTerm, L"FncInfos");
}

TEST_P(ChartsTest, ForEachVisitsASnapshotInOrder) {
  for (const wchar_t* name : {L"c", L"a", L"b"}) charts_.Call(L"Add", {name});
  EXPECT_OK(charts_.Call(L"Remove", {L"a"}));
  std::wstring visited;
  for (const Object& chart : charts_.Items()) {
    visited += chart.Get(L"Name").value.raw().bstrVal;
    EXPECT_OK(chart.Call(L"Delete"));
  }
  EXPECT_EQ(L"cb", visited);
  EXPECT_EQ(charts_.Get(L"Count"), 0);
}

TEST_P(ChartsTest, AfterTheirLibraryTheyRefuseEveryMember) {
  component::InNewApartment([] {
    Object library = Create(CLSID_Global).GetObject(L"Zep");
    const Object charts = library.GetObject(L"Charts");
    library.Reset();
    EXPECT_ZEP_ERROR(charts.Call(L"Add", {L"c"}), zepErrAwaitTerm, L"Charts");
    EXPECT_ZEP_ERROR(charts.Call(L"Clear"), zepErrAwaitTerm, L"Charts");
    EXPECT_ZEP_ERROR(charts.Get(L"Count"), zepErrAwaitTerm, L"Charts");
    EXPECT_ZEP_ERROR(charts.Get(L"Item", {1.0}), zepErrAwaitTerm, L"Charts");
    EXPECT_ZEP_ERROR(charts.Get(L"NewEnum"), zepErrAwaitTerm, L"Charts");
    EXPECT_ZEP_ERROR(charts.Get(L"Parent"), zepErrAwaitTerm, L"Charts");
    EXPECT_ZEP_ERROR(charts.Call(L"Remove", {1.0}), zepErrAwaitTerm, L"Charts");
  });
}

TEST_P(ChartsTest, ChartsTakeNoHandlesOfTheSystem) {
  constexpr int kCharts = 100000;
  const DWORD gdi = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
  const DWORD user = GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS);
  for (int i = 0; i < kCharts; ++i)
    ASSERT_TRUE(charts_.Call(L"Add", {std::to_wstring(i)}).ok()) << i;
  EXPECT_EQ(charts_.Get(L"Count"), kCharts);
  EXPECT_EQ(gdi, GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS));
  EXPECT_EQ(user, GetGuiResources(GetCurrentProcess(), GR_USEROBJECTS));
  EXPECT_EQ(charts_.GetObject(L"Item", {kCharts}).Get(L"PictureWidth"), 480.0f);
  EXPECT_OK(charts_.Call(L"Clear"));
}

RUN_IN_BOTH_BINDINGS(ChartsTest);

}  // namespace
