#pragma once

#include "com/var_sets_fixture.h"

/// A test with the apartment's charts and variable sets, empty at first.
class WithCharts : public WithVarSet {
 protected:
  WithCharts() { EXPECT_OK(charts_.Call(L"Clear")); }
  ~WithCharts() override { charts_.Call(L"Clear"); }

  client::Object charts_ = global_.GetObject(L"Charts");
};

/// A function as a client describes it.
struct Plot {
  const wchar_t* term;
  double x_low = -1, x_high = 1, interval = 0.5, y_low = -1, y_high = 1;
};

/// A test with one chart, which draws with the variable set.
class WithChart : public WithCharts {
 protected:
  WithChart() { EXPECT_OK(chart_.Set(L"VarSet", {set_})); }

  /// Adds a function to the chart, named by its number.
  client::Object Add(const Plot& plot) const {
    const auto count = functions_.Get(L"Count").value.raw().lVal;
    const client::Object function = functions_.CallObject(L"Add", {std::to_wstring(count + 1)});
    EXPECT_OK(function.GetObject(L"Expression").Let(L"EString", {plot.term}));
    EXPECT_OK(function.Let(L"XLow", {plot.x_low}));
    EXPECT_OK(function.Let(L"XHigh", {plot.x_high}));
    EXPECT_OK(function.Let(L"YLow", {plot.y_low}));
    EXPECT_OK(function.Let(L"YHigh", {plot.y_high}));
    EXPECT_OK(function.Let(L"Interval", {plot.interval}));
    return function;
  }

  client::Object chart_ = charts_.CallObject(L"Add", {L"chart"});
  client::Object functions_ = chart_.GetObject(L"FncInfos");
};
