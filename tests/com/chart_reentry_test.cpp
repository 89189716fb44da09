#include <functional>

#include "com/chart_fixture.h"
#include "com/sink.h"

namespace {

using client::Event;
using client::Object;
using client::Sink;
using client::Value;
using Microsoft::WRL::ComPtr;

constexpr DISPID kNewFnc = 1, kNewPoint = 2;

/// A handler may do anything to the chart that is drawing.
class ChartReentryTest : public WithChart {
 protected:
  /// Connects a handler that acts once: at the given event, counted from 0.
  ComPtr<Sink> ActAt(std::size_t index, std::function<void()> action) const {
    return Sink::Connect(chart_.get(), DIID___Chart,
                         [=, heard = std::size_t{0}](const Event&) mutable {
                           if (heard++ == index) action();
                           return S_OK;
                         });
  }
};

/// Events of a drawing: NewFnc of f, its points at -1 to 1, NewFnc of g, its points.
constexpr std::size_t kFirstFnc = 0, kSecondPoint = 2, kLastPoint = 5, kSecondFnc = 6, kAll = 12;
constexpr std::size_t kEverywhere[] = {kFirstFnc, kSecondPoint, kLastPoint, kSecondFnc, kAll - 1};

TEST_P(ChartReentryTest, DeletingTheChartEndsTheDrawing) {
  chart_.Call(L"Delete");
  for (const std::size_t when : kEverywhere) {
    for (int way = 0; way < 4; ++way) {
      SCOPED_TRACE(testing::Message() << when << " " << way);
      chart_ = charts_.CallObject(L"Add", {L"chart"});
      functions_ = chart_.GetObject(L"FncInfos");
      EXPECT_OK(chart_.Set(L"VarSet", {set_}));
      Add({L"x"}), Add({L"x"});
      const auto sink = ActAt(when, [&] {
        if (way == 0) EXPECT_OK(chart_.Call(L"Delete"));
        if (way == 1) EXPECT_OK(charts_.Call(L"Clear"));
        if (way == 2) EXPECT_OK(charts_.Call(L"Remove", {L"chart"}));
        if (way == 3) EXPECT_OK(charts_.Call(L"Remove", {1}));
      });
      EXPECT_ZEP_ERROR(chart_.Call(L"Draw"), zepErrAwaitTerm, L"Chart");
      EXPECT_EQ(when + 1, sink->events().size());
    }
  }
}

TEST_P(ChartReentryTest, AFunctionThatIsDeletedIsLeft) {
  for (const std::size_t when : {kFirstFnc, kSecondPoint, kLastPoint}) {
    SCOPED_TRACE(when);
    EXPECT_OK(functions_.Call(L"Clear"));
    const Object f = Add({L"x"});
    Add({L"x"});
    const auto sink = ActAt(when, [&] { EXPECT_OK(f.Call(L"Delete")); });
    EXPECT_OK(chart_.Call(L"Draw"));
    EXPECT_EQ(when + 1 + 6, sink->events().size());
    EXPECT_EQ(functions_.Get(L"Count"), 1);
  }
}

TEST_P(ChartReentryTest, AFunctionThatIsDeletedBeforeItsTurnIsNotDrawn) {
  Add({L"x"});
  const Object g = Add({L"x"});
  Add({L"x"});
  const auto sink = ActAt(kSecondPoint, [&] { EXPECT_OK(g.Call(L"Delete")); });
  EXPECT_OK(chart_.Call(L"Draw"));
  EXPECT_EQ(12u, sink->events().size());
}

TEST_P(ChartReentryTest, ClearedFunctionsEndTheDrawing) {
  for (const std::size_t when : kEverywhere) {
    SCOPED_TRACE(when);
    Add({L"x"}), Add({L"x"});
    const auto sink = ActAt(when, [&] { EXPECT_OK(functions_.Call(L"Clear")); });
    EXPECT_OK(chart_.Call(L"Draw"));
    EXPECT_EQ(when + 1, sink->events().size());
  }
}

TEST_P(ChartReentryTest, AFunctionAddedMeanwhileDoesNoHarm) {
  Add({L"x"});
  const auto sink = ActAt(kSecondPoint, [&] { Add({L"x"}); });
  EXPECT_OK(chart_.Call(L"Draw"));
  EXPECT_EQ(6u, sink->events().size());
  EXPECT_OK(chart_.Call(L"Draw"));
  EXPECT_EQ(18u, sink->events().size());
}

TEST_P(ChartReentryTest, VariablesThatAreGoneEndTheDrawing) {
  for (const std::size_t when : {kFirstFnc, kSecondPoint, kSecondFnc}) {
    for (int way = 0; way < 6; ++way) {
      SCOPED_TRACE(testing::Message() << when << " " << way);
      EXPECT_OK(sets_.Call(L"Clear"));
      EXPECT_OK(functions_.Call(L"Clear"));
      set_ = sets_.CallObject(L"Add", {L"set"});
      EXPECT_OK(chart_.Set(L"VarSet", {set_}));
      Add({L"x"}), Add({L"x"});
      const auto sink = ActAt(when, [&] {
        if (way == 0) EXPECT_OK(set_.Call(L"Clear"));
        if (way == 1) EXPECT_OK(set_.Call(L"Delete"));
        if (way == 2) EXPECT_OK(sets_.Call(L"Clear"));
        if (way == 3) EXPECT_OK(set_.Call(L"Remove", {L"x"}));
        if (way == 4) EXPECT_OK(set_.Call(L"Remove", {L"y"}));
        if (way == 5) {
          EXPECT_OK(set_.Call(L"Clear"));
          EXPECT_OK(set_.Call(L"Add", {L"x"}));
          EXPECT_OK(set_.Call(L"Add", {L"y"}));
        }
      });
      EXPECT_EQ(zepErrAwaitTerm, chart_.Call(L"Draw").number);
      EXPECT_LE(sink->events().size(), when + 2);
      EXPECT_EQ(when + 1, sink->events().size());
    }
  }
}

TEST_P(ChartReentryTest, AnotherVarSetDoesNoHarm) {
  for (const std::size_t when : kEverywhere) {
    SCOPED_TRACE(when);
    EXPECT_OK(functions_.Call(L"Clear"));
    EXPECT_OK(chart_.Set(L"VarSet", {set_}));
    Add({L"x"}), Add({L"x"});
    const Object other = sets_.CallObject(L"Add");
    const auto sink = ActAt(when, [&] { EXPECT_OK(chart_.Set(L"VarSet", {other})); });
    EXPECT_OK(chart_.Call(L"Draw"));
    EXPECT_EQ(kAll, sink->events().size());
    EXPECT_EQ(chart_.Get(L"VarSet"), other);
    EXPECT_OK(chart_.Call(L"Draw"));
    EXPECT_OK(other.Call(L"Delete"));
  }
}

TEST_P(ChartReentryTest, AnotherSizeDoesNoHarm) {
  Add({L"x", -1, 1, 0.01}), Add({L"0-x", -1, 1, 0.01});
  float size = 0;
  const auto sink = Sink::Connect(chart_.get(), DIID___Chart, [&](const Event&) {
    size = size > 290 ? 1 : size + 7;
    EXPECT_OK(chart_.Let(L"PictureWidth", {size}));
    EXPECT_OK(chart_.Let(L"PictureHeight", {301 - size}));
    EXPECT_OK(chart_.Get(L"Picture"));
    return S_OK;
  });
  EXPECT_OK(chart_.Call(L"Draw"));
}

TEST_P(ChartReentryTest, AnotherTermIsDrawnFromThenOn) {
  const Object f = Add({L"x"});
  const auto sink =
      ActAt(2, [&] { EXPECT_OK(f.GetObject(L"Expression").Let(L"EString", {L"x+1"})); });
  EXPECT_OK(chart_.Call(L"Draw"));
  EXPECT_EQ((Event{kNewPoint, {-0.5, -0.5}}), sink->events()[2]);
  EXPECT_EQ((Event{kNewPoint, {0.0, 1.0}}), sink->events()[3]);
}

TEST_P(ChartReentryTest, AnotherExpressionIsDrawnNextTime) {
  const Object f = Add({L"x"});
  const Object other = Create(CLSID_Expression);
  EXPECT_OK(other.Let(L"EString", {L"x+1"}));
  const auto sink = ActAt(kSecondPoint, [&] { EXPECT_OK(f.Set(L"Expression", {other})); });
  EXPECT_OK(chart_.Call(L"Draw"));
  ASSERT_EQ(6u, sink->events().size());
  EXPECT_EQ((Event{kNewPoint, {1.0, 1.0}}), sink->events()[kLastPoint]);
  EXPECT_OK(chart_.Call(L"Draw"));
  EXPECT_EQ((Event{kNewPoint, {1.0, 2.0}}), sink->events().back());
}

TEST_P(ChartReentryTest, DrawingAgainInADrawing) {
  for (const std::size_t when : kEverywhere) {
    SCOPED_TRACE(when);
    EXPECT_OK(functions_.Call(L"Clear"));
    Add({L"x"}), Add({L"x"});
    const auto sink = ActAt(when, [&] { EXPECT_OK(chart_.Call(L"Draw")); });
    EXPECT_OK(chart_.Call(L"Draw"));
    EXPECT_EQ(2 * kAll, sink->events().size());
  }
}

TEST_P(ChartReentryTest, DrawingsWithinEachOtherEndAtSixteen) {
  Add({L"x", 0, 0, 1});
  int depth = 0, refused = 0;
  const auto sink = Sink::Connect(chart_.get(), DIID___Chart, [&](const Event& event) {
    if (event.id == kNewFnc && !refused) {
      ++depth;
      const client::Outcome inner = chart_.Call(L"Draw");
      if (!inner.ok()) {
        ++refused;
        EXPECT_ERROR(inner, 28, L"Zepkit10.Chart", L"Out of stack space");
      }
    }
    return S_OK;
  });
  EXPECT_OK(chart_.Call(L"Draw"));
  EXPECT_EQ(16, depth);
  EXPECT_EQ(1, refused);
  EXPECT_OK(chart_.Call(L"Draw"));  // and is over afterwards
}

TEST_P(ChartReentryTest, AFailedDrawingIsOver) {
  Add({L"x", 0, 0, 0});
  for (int i = 0; i < 40; ++i) EXPECT_EQ(11, chart_.Call(L"Draw").number);
}

TEST_P(ChartReentryTest, AnAbortWithinCountsForBoth) {
  Add({L"x"});
  int level = 0;
  const auto sink = Sink::Connect(chart_.get(), DIID___Chart, [&](const Event& event) {
    if (event.id == kNewFnc && level++ == 0) {
      EXPECT_OK(chart_.Call(L"Draw"));
      EXPECT_OK(chart_.Call(L"AbortDraw"));
    }
    return S_OK;
  });
  EXPECT_OK(chart_.Call(L"Draw"));
  EXPECT_EQ(7u, sink->events().size());
}

TEST_P(ChartReentryTest, TheLastReferenceMayGo) {
  Add({L"x"}), Add({L"x"});
  functions_.Reset();
  ComPtr<_Chart> chart;
  ASSERT_EQ(S_OK, chart_.get()->QueryInterface(IID_PPV_ARGS(&chart)));
  _Chart* raw = chart.Get();
  auto sink = ActAt(kSecondPoint, [&] {
    EXPECT_OK(charts_.Call(L"Clear"));
    chart_.Reset();
    chart.Reset();
  });
  EXPECT_EQ(zepErrAwaitTerm, raw->Draw());
  EXPECT_EQ(kSecondPoint + 1, sink->events().size());
}

TEST_P(ChartReentryTest, TheLibraryMayGo) {
  Add({L"x"}), Add({L"x"});
  functions_.Reset();
  ComPtr<_Chart> chart;
  ASSERT_EQ(S_OK, chart_.get()->QueryInterface(IID_PPV_ARGS(&chart)));
  const auto sink = ActAt(kSecondPoint, [&] {
    chart_.Reset(), charts_.Reset(), sets_.Reset(), set_.Reset(), global_.Reset();
  });
  const HRESULT result = chart->Draw();
  EXPECT_TRUE(result == S_OK || result == zepErrAwaitTerm) << result;
  chart->Delete();
  global_ = Create(CLSID_Global);
  charts_ = global_.GetObject(L"Charts");
  sets_ = global_.GetObject(L"VarSets");
}

TEST_P(ChartReentryTest, HandlersThatFailDisturbNothing) {
  Add({L"x"});
  for (const HRESULT failure :
       {E_FAIL, E_UNEXPECTED, DISP_E_EXCEPTION, static_cast<HRESULT>(0x800A000B)}) {
    const auto sink =
        Sink::Connect(chart_.get(), DIID___Chart, [=](const Event&) { return failure; });
    EXPECT_OK(chart_.Call(L"Draw"));
    EXPECT_EQ(6u, sink->events().size());
    EXPECT_EQ(S_OK, sink->Disconnect());
  }
}

TEST_P(ChartReentryTest, VariablesMaySetXInAHandler) {
  Add({L"x"});
  const auto sink = Sink::Connect(chart_.get(), DIID___Chart, [&](const Event& event) {
    if (event.id == kNewPoint) EXPECT_OK(set_.GetObject(L"Item", {L"x"}).Let(L"Value", {1000.0}));
    return S_OK;
  });
  EXPECT_OK(chart_.Call(L"Draw"));
  EXPECT_EQ((Event{kNewPoint, {1.0, 1.0}}), sink->events().back());
  EXPECT_EQ(6u, sink->events().size());
}

RUN_IN_BOTH_BINDINGS(ChartReentryTest);

}  // namespace
