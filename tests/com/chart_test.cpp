#include <limits>

#include "com/chart_fixture.h"
#include "com/foreign.h"

namespace {

using client::Object;
using client::Outcome;
using client::Value;

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

class ChartTest : public WithChart {};

TEST_P(ChartTest, StartsEmpty) {
  const Object chart = charts_.CallObject(L"Add", {L"new"});
  EXPECT_EQ(chart.Get(L"CoordMetric"), 0.0);
  EXPECT_EQ(chart.Get(L"Name"), L"new");
  EXPECT_EQ(chart.Get(L"Parent"), charts_);
  EXPECT_EQ(chart.Get(L"PictureWidth"), 480.0f);
  EXPECT_EQ(chart.Get(L"PictureHeight"), 320.0f);
  EXPECT_EQ(chart.Get(L"VarSet"), Value::Nothing());
  EXPECT_EQ(chart.GetObject(L"FncInfos").Get(L"Count"), 0);
  EXPECT_EQ(chart.GetObject(L"FncInfos").Get(L"Parent"), chart);
  EXPECT_EQ(chart.Get(L"FncInfos"), chart.Get(L"FncInfos").value);
}

TEST_P(ChartTest, ErrorsAreSeventySixZerosAtFirst) {
  const Outcome errors = chart_.Get(L"Errors");
  ASSERT_EQ(VT_ARRAY | VT_I4, errors.value.type());
  SAFEARRAY* counters = errors.value.raw().parray;
  LONG low = 0, high = 0;
  EXPECT_EQ(1u, SafeArrayGetDim(counters));
  EXPECT_EQ(S_OK, SafeArrayGetLBound(counters, 1, &low));
  EXPECT_EQ(S_OK, SafeArrayGetUBound(counters, 1, &high));
  EXPECT_EQ(1, low);
  EXPECT_EQ(76, high);
  for (LONG number = 1; number <= 76; ++number) {
    LONG count = -1;
    EXPECT_EQ(S_OK, SafeArrayGetElement(counters, &number, &count));
    EXPECT_EQ(0, count);
  }
}

TEST_P(ChartTest, ErrorsAreACopy) {
  const Outcome errors = chart_.Get(L"Errors");
  LONG number = 11, count = 5;
  EXPECT_EQ(S_OK, SafeArrayPutElement(errors.value.raw().parray, &number, &count));
  EXPECT_EQ(S_OK, SafeArrayGetElement(chart_.Get(L"Errors").value.raw().parray, &number, &count));
  EXPECT_EQ(0, count);
}

TEST_P(ChartTest, CoordMetricTakesAnyNumber) {
  for (const double metric : {0.5, -1e300, 0.0, 4.9e-324, kInfinity}) {
    EXPECT_OK(chart_.Let(L"CoordMetric", {metric}));
    EXPECT_EQ(chart_.Get(L"CoordMetric"), metric);
  }
  EXPECT_OK(chart_.Let(L"CoordMetric", {kNan}));
}

TEST_P(ChartTest, NameIsUniqueAmongTheCharts) {
  const Object other = charts_.CallObject(L"Add", {L"other"});
  EXPECT_ZEP_ERROR(chart_.Let(L"Name", {L"other"}), zepErrItemAlreadyExists, L"Chart");
  EXPECT_ZEP_ERROR(chart_.Let(L"Name", {L"chart"}), zepErrItemAlreadyExists, L"Chart");
  EXPECT_EQ(chart_.Get(L"Name"), L"chart");
  EXPECT_OK(chart_.Let(L"Name", {L""}));
  EXPECT_EQ(charts_.Get(L"Item", {L""}), chart_);
  EXPECT_OK(other.Let(L"Name", {L"chart"}));
  EXPECT_EQ(charts_.Get(L"Item", {1}), chart_);
}

TEST_P(ChartTest, SizeIsInWholePixels) {
  const Object chart = charts_.CallObject(L"Add", {L"sized"});
  EXPECT_OK(chart.Let(L"PictureWidth", {1.0f}));
  EXPECT_OK(chart.Let(L"PictureHeight", {16384.0f}));
  EXPECT_EQ(chart.Get(L"PictureWidth"), 1.0f);
  EXPECT_EQ(chart.Get(L"PictureHeight"), 16384.0f);
  EXPECT_OK(chart.Let(L"PictureWidth", {100.25f}));
  EXPECT_EQ(chart.Get(L"PictureWidth"), 100.0f);
  EXPECT_EQ(chart.Get(L"PictureHeight"), 16384.0f);
}

TEST_P(ChartTest, SizesThatCannotBeMadeRaise5) {
  for (const double size : {0.0, -1.0, 0.25, 16385.0, 3e38, -3e38, kNan, kInfinity, -kInfinity}) {
    SCOPED_TRACE(size);
    for (const wchar_t* name : {L"PictureWidth", L"PictureHeight"}) {
      EXPECT_ERROR(chart_.Let(name, {static_cast<float>(size)}), 5, L"Zepkit10.Chart",
                   L"Invalid procedure call or argument");
    }
  }
  EXPECT_EQ(chart_.Get(L"PictureWidth"), 480.0f);
  EXPECT_EQ(chart_.Get(L"PictureHeight"), 320.0f);
}

TEST_P(ChartTest, VarSetAttachesEveryFunction) {
  const Object f = Add({L"x"}).GetObject(L"Expression"), g = Add({L"x"}).GetObject(L"Expression");
  const Object other = sets_.CallObject(L"Add", {L"other"});
  EXPECT_OK(chart_.Set(L"VarSet", {other}));
  EXPECT_EQ(chart_.Get(L"VarSet"), other);
  EXPECT_EQ(f.Get(L"VarSet"), other);
  EXPECT_EQ(g.Get(L"VarSet"), other);
  EXPECT_EQ(Add({L"x"}).GetObject(L"Expression").Get(L"VarSet"), other);
}

TEST_P(ChartTest, VarSetMustBeOne) {
  EXPECT_ZEP_ERROR(chart_.Set(L"VarSet", {Value::Nothing()}), zepErrBadPropValue, L"Chart");
  foreign::VarSet stranger;
  EXPECT_ZEP_ERROR(chart_.Set(L"VarSet", {Value(&stranger)}), zepErrBadPropValue, L"Chart");
  EXPECT_EQ(1u, stranger.references);
  EXPECT_EQ(chart_.Get(L"VarSet"), set_);
}

TEST_P(ChartTest, DeletedChartsRefuseEveryMember) {
  EXPECT_OK(chart_.Call(L"Delete"));
  EXPECT_EQ(charts_.Get(L"Count"), 0);
  for (const wchar_t* name : {L"AbortDraw", L"Delete", L"Draw"}) {
    EXPECT_ZEP_ERROR(chart_.Call(name), zepErrAwaitTerm, L"Chart");
  }
  for (const wchar_t* name : {L"CoordMetric", L"Errors", L"FncInfos", L"Name", L"Parent",
                              L"Picture", L"PictureHeight", L"PictureWidth", L"VarSet"}) {
    EXPECT_ZEP_ERROR(chart_.Get(name), zepErrAwaitTerm, L"Chart");
  }
  EXPECT_ZEP_ERROR(chart_.Let(L"CoordMetric", {1.0}), zepErrAwaitTerm, L"Chart");
  EXPECT_ZEP_ERROR(chart_.Let(L"Name", {L"chart"}), zepErrAwaitTerm, L"Chart");
  EXPECT_ZEP_ERROR(chart_.Let(L"PictureHeight", {0.0f}), zepErrAwaitTerm, L"Chart");
  EXPECT_ZEP_ERROR(chart_.Let(L"PictureWidth", {0.0f}), zepErrAwaitTerm, L"Chart");
  EXPECT_ZEP_ERROR(chart_.Set(L"VarSet", {Value::Nothing()}), zepErrAwaitTerm, L"Chart");
  EXPECT_OK(charts_.Call(L"Add", {L"chart"}));
}

TEST_P(ChartTest, ADeletedChartLetsGoOfItsVarSet) {
  EXPECT_OK(chart_.Call(L"Delete"));
  EXPECT_OK(set_.Call(L"Delete"));
  set_.Reset();  // nothing holds it any more, as the end of every test checks
}

RUN_IN_BOTH_BINDINGS(ChartTest);

}  // namespace
