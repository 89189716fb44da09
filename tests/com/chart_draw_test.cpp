#include <limits>

#include "com/chart_fixture.h"
#include "com/sink.h"

namespace {

using client::Event;
using client::Object;
using client::Sink;
using client::Value;
using Microsoft::WRL::ComPtr;

constexpr DISPID kNewFnc = 1, kNewPoint = 2;
using Events = std::vector<Event>;

Event NewFnc(const Plot& plot) {
  return {kNewFnc, {plot.term, plot.x_high, plot.x_low, plot.y_high, plot.y_low, plot.interval}};
}
Event NewPoint(double x, double y) { return {kNewPoint, {x, y}}; }

class ChartDrawTest : public WithChart {
 protected:
  ComPtr<Sink> Listen(Sink::Handler handler = {}) const {
    return Sink::Connect(chart_.get(), DIID___Chart, std::move(handler));
  }
  LONG ErrorCount(LONG number) const {
    const client::Outcome errors = chart_.Get(L"Errors");
    LONG count = -1;
    EXPECT_EQ(S_OK, SafeArrayGetElement(errors.value.raw().parray, &number, &count));
    return count;
  }
  LONG AllErrors() const {
    LONG sum = 0;
    for (LONG number = 1; number <= 76; ++number) sum += ErrorCount(number);
    return sum;
  }
  Object Variable(const wchar_t* name) const { return set_.GetObject(L"Item", {name}); }
};

TEST_P(ChartDrawTest, EveryFunctionAndEverySampleIsTold) {
  const Plot square{L"x^2", -1, 1, 0.5, -2, 3}, line{L"x+1", 0, 2, 1, 0, 4};
  Add(square), Add(line);
  const auto sink = Listen();
  EXPECT_OK(chart_.Call(L"Draw"));
  EXPECT_EQ((Events{NewFnc(square), NewPoint(-1, 1), NewPoint(-0.5, 0.25), NewPoint(0, 0),
                    NewPoint(0.5, 0.25), NewPoint(1, 1), NewFnc(line), NewPoint(0, 1),
                    NewPoint(1, 2), NewPoint(2, 3)}),
            sink->events());
}

TEST_P(ChartDrawTest, ANegativeIntervalCountsDown) {
  const Plot down{L"x", 1, -1, -1}, none{L"x", -1, 1, -1};
  Add(down), Add(none);
  const auto sink = Listen();
  EXPECT_OK(chart_.Call(L"Draw"));
  EXPECT_EQ((Events{NewFnc(down), NewPoint(1, 1), NewPoint(0, 0), NewPoint(-1, -1), NewFnc(none)}),
            sink->events());
}

TEST_P(ChartDrawTest, AnEmptyRangeHasNoPoint) {
  const Plot empty{L"x", 1, -1, 0.5};
  Add(empty);
  const auto sink = Listen();
  EXPECT_OK(chart_.Call(L"Draw"));
  EXPECT_EQ(Events{NewFnc(empty)}, sink->events());
}

TEST_P(ChartDrawTest, XAndYStayWhatTheyWereLast) {
  Add({L"x^2"});
  const Object last = Add({L"3*x", 0, 2, 1});
  EXPECT_EQ(set_.Get(L"Count"), 0);
  EXPECT_OK(chart_.Call(L"Draw"));
  EXPECT_EQ(set_.Get(L"Count"), 2);
  EXPECT_EQ(set_.GetObject(L"Item", {1}).Get(L"Name"), L"x");
  EXPECT_EQ(Variable(L"x").Get(L"Value"), 2.0);
  EXPECT_EQ(Variable(L"y").Get(L"Value"), 6.0);
  EXPECT_EQ(Variable(L"y").Get(L"Expression"), last.Get(L"Expression").value);
  EXPECT_OK(Variable(L"x").Let(L"Value", {5.0}));
  EXPECT_EQ(Variable(L"y").Get(L"Value"), 15.0);
}

TEST_P(ChartDrawTest, YIsBoundEvenToAFunctionWithoutSamples) {
  const Object function = Add({L"x", 1, -1, 1});
  EXPECT_OK(chart_.Call(L"Draw"));
  EXPECT_EQ(Variable(L"y").Get(L"Expression"), function.Get(L"Expression").value);
}

TEST_P(ChartDrawTest, TermsFollowOtherVariables) {
  Define(L"a", L"2*x");
  Add({L"a+1", 0, 1, 1});
  const auto sink = Listen();
  EXPECT_OK(chart_.Call(L"Draw"));
  ASSERT_EQ(3u, sink->events().size());
  EXPECT_EQ(NewPoint(1, 3), sink->events()[2]);
}

TEST_P(ChartDrawTest, AnExpressionTakenAwayComesBackToTheChartsSet) {
  const Object function = Add({L"x", 0, 1, 1});
  const Object other = sets_.CallObject(L"Add", {L"other"});
  EXPECT_OK(function.GetObject(L"Expression").Set(L"VarSet", {other}));
  const auto sink = Listen();
  EXPECT_OK(chart_.Call(L"Draw"));
  EXPECT_EQ(NewPoint(1, 1), sink->events().back());
  EXPECT_EQ(function.GetObject(L"Expression").Get(L"VarSet"), set_);
}

TEST_P(ChartDrawTest, NeedsAVarSetAndAFunction) {
  EXPECT_ZEP_ERROR(chart_.Call(L"Draw"), zepErrBadCallContext, L"FncInfos");
  const Object chart = charts_.CallObject(L"Add", {L"bare"});
  EXPECT_ZEP_ERROR(chart.Call(L"Draw"), zepErrBadCallContext, L"Chart");
  EXPECT_OK(chart.GetObject(L"FncInfos").Call(L"Add", {L"f"}));
  EXPECT_ZEP_ERROR(chart.Call(L"Draw"), zepErrBadCallContext, L"Chart");
}

TEST_P(ChartDrawTest, AnExplicitSetMustHaveXAndY) {
  Add({L"x"});
  EXPECT_OK(set_.Let(L"Explicit", {true}));
  const auto sink = Listen();
  EXPECT_ZEP_ERROR(chart_.Call(L"Draw"), zepErrItemNotExistant, L"VarSet");
  EXPECT_OK(set_.Call(L"Add", {L"x"}));
  EXPECT_ZEP_ERROR(chart_.Call(L"Draw"), zepErrItemNotExistant, L"VarSet");
  EXPECT_EQ(0u, sink->events().size());
  EXPECT_OK(set_.Call(L"Add", {L"y"}));
  EXPECT_OK(chart_.Call(L"Draw"));
  EXPECT_EQ(6u, sink->events().size());
}

TEST_P(ChartDrawTest, FailedSamplesAreCounted) {
  Add({L"1/x"});
  const auto sink = Listen();
  EXPECT_OK(chart_.Call(L"Draw"));
  ASSERT_EQ(6u, sink->events().size());
  EXPECT_EQ(NewPoint(0, 0), sink->events()[3]);
  EXPECT_EQ(NewPoint(0.5, 2), sink->events()[4]);
  EXPECT_EQ(1, ErrorCount(11));
  EXPECT_EQ(1, AllErrors());
}

TEST_P(ChartDrawTest, EveryRuntimeErrorHasItsCounter) {
  Add({L"1/x"}), Add({L"1/(x-x)"}), Add({L"(x*0+10)^308*100"}), Add({L"LOG(x-2)"});
  EXPECT_OK(chart_.Call(L"Draw"));
  EXPECT_EQ(6, ErrorCount(11));
  EXPECT_EQ(5, ErrorCount(6));
  EXPECT_EQ(5, ErrorCount(5));
  EXPECT_EQ(16, AllErrors());
}

TEST_P(ChartDrawTest, AFunctionOfItselfIsCounted) {
  Add({L"y+1"});
  EXPECT_OK(chart_.Call(L"Draw"));
  EXPECT_EQ(5, ErrorCount(28));
}

TEST_P(ChartDrawTest, ErrorsAreThoseOfTheLastDraw) {
  const Object function = Add({L"1/x"});
  for (int i = 0; i < 3; ++i) {
    EXPECT_OK(chart_.Call(L"Draw"));
    EXPECT_EQ(1, ErrorCount(11));
  }
  EXPECT_OK(function.GetObject(L"Expression").Let(L"EString", {L"x"}));
  EXPECT_OK(chart_.Call(L"Draw"));
  EXPECT_EQ(0, AllErrors());
  EXPECT_OK(function.GetObject(L"Expression").Let(L"EString", {L"1/x"}));
  EXPECT_OK(chart_.Call(L"Draw"));
  EXPECT_OK(functions_.Call(L"Clear"));
  EXPECT_FALSE(chart_.Call(L"Draw").ok());  // cleared before the functions are looked at
  EXPECT_EQ(0, AllErrors());
}

TEST_P(ChartDrawTest, AnyOtherErrorEndsTheDrawing) {
  const Plot good{L"x", 0, 1, 1}, bad{L"q", 0, 1, 1};
  Add(good), Add(bad), Add(good);
  EXPECT_OK(set_.Call(L"Add", {L"x"}));
  EXPECT_OK(set_.Call(L"Add", {L"y"}));
  EXPECT_OK(set_.Let(L"Explicit", {true}));  // q is unknown
  const auto sink = Listen();
  const client::Outcome outcome = chart_.Call(L"Draw");
  EXPECT_EQ(zepErrItemNotExistant, outcome.number) << outcome;
  EXPECT_EQ((Events{NewFnc(good), NewPoint(0, 0), NewPoint(1, 1), NewFnc(bad)}), sink->events());
  EXPECT_EQ(0, AllErrors());
  EXPECT_EQ(Variable(L"x").Get(L"Value"), 0.0);
}

TEST_P(ChartDrawTest, ThereAreSixteenColours) {
  const Plot plot{L"x", 0, 0, 1};
  for (int i = 0; i < 16; ++i) Add(plot);
  EXPECT_OK(chart_.Call(L"Draw"));
  Add(plot), Add(plot);
  const auto sink = Listen();
  EXPECT_ERROR(chart_.Call(L"Draw"), 5, L"Zepkit10.Chart", L"Invalid procedure call or argument");
  ASSERT_EQ(33u, sink->events().size());
  EXPECT_EQ(NewFnc(plot), sink->events().back());  // of the seventeenth
}

TEST_P(ChartDrawTest, AbortDrawEndsThePointsOfEveryFunction) {
  const Plot plot{L"x"};
  Add(plot), Add(plot);
  const auto sink = Listen([&](const Event& event) {
    if (event == NewPoint(-0.5, -0.5)) EXPECT_OK(chart_.Call(L"AbortDraw"));
    return S_OK;
  });
  const Events expected{NewFnc(plot), NewPoint(-1, -1), NewPoint(-0.5, -0.5), NewFnc(plot)};
  EXPECT_OK(chart_.Call(L"Draw"));
  EXPECT_EQ(expected, sink->events());
  EXPECT_EQ(Variable(L"y").Get(L"Expression"),
            functions_.GetObject(L"Item", {2}).Get(L"Expression").value);
}

TEST_P(ChartDrawTest, AbortDrawLastsUntilTheNextDraw) {
  Add({L"x"});
  EXPECT_OK(chart_.Call(L"AbortDraw"));
  const auto sink = Listen();
  EXPECT_OK(chart_.Call(L"Draw"));
  EXPECT_EQ(6u, sink->events().size());
}

TEST_P(ChartDrawTest, AbortDrawFromNewFncLeavesNoPoint) {
  Add({L"x"});
  const auto sink = Listen([&](const Event&) {
    EXPECT_OK(chart_.Call(L"AbortDraw"));
    return S_OK;
  });
  EXPECT_OK(chart_.Call(L"Draw"));
  EXPECT_EQ(1u, sink->events().size());
}

TEST_P(ChartDrawTest, NoIntervalRaises11AfterTheFirstSample) {
  Add({L"x", 1, 1, 0});
  const auto sink = Listen();
  EXPECT_ERROR(chart_.Call(L"Draw"), 11, L"Zepkit10.Chart", L"Division by zero");
  EXPECT_EQ(2u, sink->events().size());
  EXPECT_EQ(0, AllErrors());
}

TEST_P(ChartDrawTest, NoIntervalIsNoFaultWithoutSamples) {
  Add({L"x", 1, -1, 0});
  EXPECT_OK(chart_.Call(L"Draw"));
}

TEST_P(ChartDrawTest, IntervalIsReadAgainForTheNumberOfTheSample) {
  const Object function = Add({L"x", 0, 2, 1});
  const auto sink = Listen([&](const Event& event) {
    if (event == NewPoint(1, 1)) EXPECT_OK(function.Let(L"Interval", {0.0}));
    return S_OK;
  });
  EXPECT_ERROR(chart_.Call(L"Draw"), 11, L"Zepkit10.Chart", L"Division by zero");
  EXPECT_EQ(3u, sink->events().size());
}

TEST_P(ChartDrawTest, XLowIsReadAgainForTheNumberOfTheSample) {
  const Object function = Add({L"x", 0, 2, 1});
  const auto sink = Listen([&](const Event& event) {
    if (event == NewPoint(1, 1)) EXPECT_OK(function.Let(L"XLow", {-1e10}));
    return S_OK;
  });
  EXPECT_ERROR(chart_.Call(L"Draw"), 6, L"Zepkit10.Chart", L"Overflow");
  EXPECT_EQ(3u, sink->events().size());
}

TEST_P(ChartDrawTest, EndAndStepAreFixedAtTheStart) {
  const Object function = Add({L"x", 0, 2, 1});
  const auto sink = Listen([&](const Event& event) {
    if (event.id == kNewPoint) {
      EXPECT_OK(function.Let(L"XHigh", {100.0}));
      EXPECT_OK(function.Let(L"Interval", {7.0}));
    }
    return S_OK;
  });
  EXPECT_OK(chart_.Call(L"Draw"));
  EXPECT_EQ(NewPoint(2, 2), sink->events().back());
  EXPECT_EQ(4u, sink->events().size());
}

TEST_P(ChartDrawTest, SamplesWithoutANumberRaise6) {
  const Object function = Add({L"x", 0, 2, 1});
  const auto sink = Listen([&](const Event& event) {
    if (event == NewPoint(1, 1)) EXPECT_OK(function.Let(L"Interval", {1e-300}));
    return S_OK;
  });
  EXPECT_ERROR(chart_.Call(L"Draw"), 6, L"Zepkit10.Chart", L"Overflow");
}

TEST_P(ChartDrawTest, BoundsThatAreNoNumbersEnd) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  const Plot plots[] = {{L"x", -kInfinity, 1, 1},
                        {L"x", std::numeric_limits<double>::quiet_NaN(), 1, 1},
                        {L"x", 1e308, kInfinity, 1e308}};
  for (const Plot& plot : plots) {
    EXPECT_OK(functions_.Call(L"Clear"));
    Add(plot);
    EXPECT_EQ(zepErrBadPropValue, chart_.Call(L"Draw").number);
  }
}

TEST_P(ChartDrawTest, RangesAreThoseOfEachFunctionNotOfTheChart) {
  const Plot narrow{L"x", 0, 1, 1, 5, 6};
  Add(narrow), Add({L"x", -100, 100, 100});
  const auto sink = Listen();
  EXPECT_OK(chart_.Call(L"Draw"));
  EXPECT_EQ(NewFnc(narrow), sink->events()[0]);
  EXPECT_EQ(NewPoint(1, 1), sink->events()[2]);
  EXPECT_EQ(7u, sink->events().size());
}

TEST_P(ChartDrawTest, AnEmptyTermIsZero) {
  const Object function = functions_.CallObject(L"Add", {L"f"});
  EXPECT_OK(function.Let(L"Interval", {1.0}));
  const auto sink = Listen();
  EXPECT_OK(chart_.Call(L"Draw"));
  EXPECT_EQ((Events{NewFnc({L"0", 0, 0, 1, 0, 0}), NewPoint(0, 0)}), sink->events());
}

TEST_P(ChartDrawTest, AnyMetricEnds) {
  Add({L"x"});
  for (const double metric :
       {4.9e-324, 1e-320, 1e-45, -1e-45, 1e-40, -1e-30, 1e-8, -1e-8, 1e38, 1e300, -1e300,
        std::numeric_limits<double>::quiet_NaN(), std::numeric_limits<double>::infinity()}) {
    EXPECT_OK(chart_.Let(L"CoordMetric", {metric}));
    EXPECT_OK(chart_.Call(L"Draw"));
  }
}

RUN_IN_BOTH_BINDINGS(ChartDrawTest);

}  // namespace
