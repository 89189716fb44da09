#include <functional>
#include <limits>
#include <utility>

#include "com/chart_fixture.h"
#include "com/sink.h"

namespace {

using client::Event;
using client::Object;
using client::Sink;
using Microsoft::WRL::ComPtr;

constexpr DISPID kNewPoint = 2;
constexpr UINT kAct = WM_APP;

/// A window without a place on the screen that runs an action for each message posted to it.
class Window {
 public:
  explicit Window(std::function<void()> action) : action_(std::move(action)) {
    WNDCLASSW description{};
    description.lpfnWndProc = &Procedure;
    description.hInstance = GetModuleHandleW(nullptr);
    description.lpszClassName = L"ChartMessagesTest";
    RegisterClassW(&description);
    window_ = CreateWindowExW(0, description.lpszClassName, nullptr, 0, 0, 0, 0, 0, HWND_MESSAGE,
                              nullptr, description.hInstance, nullptr);
    EXPECT_NE(nullptr, window_);
    SetWindowLongPtrW(window_, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
  }
  ~Window() { DestroyWindow(window_); }
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  void Post() const { EXPECT_TRUE(PostMessageW(window_, kAct, 0, 0)); }

 private:
  static LRESULT CALLBACK Procedure(HWND window, UINT message, WPARAM w, LPARAM l) {
    const auto* self = reinterpret_cast<Window*>(GetWindowLongPtrW(window, GWLP_USERDATA));
    if (message != kAct || !self) return DefWindowProcW(window, message, w, l);
    self->action_();
    return 0;
  }

  std::function<void()> action_;
  HWND window_;
};

/// While a chart draws, the thread's messages are handled now and then.
class ChartMessagesTest : public WithChart {};

TEST_P(ChartMessagesTest, AreHandledAfterEveryHundredthSample) {
  Add({L"x", 0, 350, 1}), Add({L"x", 0, -100, -0.5});
  int samples = 0;
  std::vector<int> handled;
  bool waiting = false;
  const Window window([&] { handled.push_back(samples), waiting = false; });
  const auto sink = Sink::Connect(chart_.get(), DIID___Chart, [&](const Event& event) {
    samples = event.id == kNewPoint ? samples + 1 : 0;
    if (!waiting && samples > 0) window.Post(), waiting = true;
    return S_OK;
  });
  EXPECT_OK(chart_.Call(L"Draw"));
  EXPECT_EQ((std::vector<int>{1, 101, 201, 301, 1, 101, 201}), handled);
}

TEST_P(ChartMessagesTest, AMessageThatPostsItselfKeepsNobody) {
  Add({L"x", 0, 350, 1});
  int handled = 0;
  Window* posting = nullptr;
  Window window([&] { ++handled, posting->Post(); });
  posting = &window;
  window.Post();
  const auto sink = Sink::Connect(chart_.get(), DIID___Chart);
  EXPECT_OK(chart_.Call(L"Draw"));
  EXPECT_EQ(352u, sink->events().size());
  EXPECT_GE(handled, 4);
}

TEST_P(ChartMessagesTest, AbortDrawStopsBeforeTheNextSample) {
  Add({L"x", 0, 1000, 1}), Add({L"x", 0, 1000, 1});
  const Window window([&] { EXPECT_OK(chart_.Call(L"AbortDraw")); });
  const auto sink = Sink::Connect(chart_.get(), DIID___Chart, [&](const Event& event) {
    if (event == Event{kNewPoint, {150.0, 150.0}}) window.Post();
    return S_OK;
  });
  EXPECT_OK(chart_.Call(L"Draw"));
  EXPECT_EQ(1 + 201 + 1u, sink->events().size());
}

TEST_P(ChartMessagesTest, AnIntervalLostInRoundingCanBeStopped) {
  // The step is lost at once, or after a while; the number of the sample then stays what it is.
  const Plot plots[] = {{L"1", 1e20, 2e20, 1},
                        {L"1", 9007199254740992.0 - 42, 1e17, 1},
                        {L"1", 9007199254740992.0 - 42, std::numeric_limits<double>::infinity(), 1},
                        {L"1", -1e20, -2e20, -1}};
  for (const Plot& plot : plots) {
    SCOPED_TRACE(plot.x_low);
    EXPECT_OK(functions_.Call(L"Clear"));
    Add(plot);
    int left = 500;
    Window* posting = nullptr;
    Window window(
        [&] { --left == 0 ? static_cast<void>(chart_.Call(L"AbortDraw")) : posting->Post(); });
    posting = &window;
    const auto sink =
        Sink::Connect(chart_.get(), DIID___Chart, [&, points = 0](const Event&) mutable {
          if (++points == 1000) window.Post();  // long after the step is lost
          return S_OK;
        });
    EXPECT_OK(chart_.Call(L"Draw"));
    EXPECT_EQ(0, left);
    EXPECT_LT(sink->events().size(), 2000u);
  }
}

TEST_P(ChartMessagesTest, NoIntervalEndsWithItsErrorEvenWhenAborted) {
  Add({L"x", 0, 1, 0});
  const Window window([&] { chart_.Call(L"AbortDraw"); });
  window.Post();
  const auto sink = Sink::Connect(chart_.get(), DIID___Chart, [&](const Event& event) {
    if (event.id == kNewPoint) chart_.Call(L"AbortDraw");
    return S_OK;
  });
  EXPECT_ERROR(chart_.Call(L"Draw"), 11, L"Zepkit10.Chart", L"Division by zero");
  EXPECT_EQ(2u, sink->events().size());
  MSG message;
  while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
}

TEST_P(ChartMessagesTest, TheRequestToQuitIsTheCallers) {
  Add({L"x", 0, 350, 1});
  int handled = 0;
  const Window window([&] { ++handled; });
  PostQuitMessage(42);
  const auto sink = Sink::Connect(chart_.get(), DIID___Chart, [&](const Event& event) {
    if (event == Event{kNewPoint, {150.0, 150.0}}) window.Post();
    return S_OK;
  });
  EXPECT_OK(chart_.Call(L"Draw"));
  EXPECT_EQ(352u, sink->events().size());
  EXPECT_EQ(1, handled);
  MSG message{};
  ASSERT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
  EXPECT_EQ(static_cast<UINT>(WM_QUIT), message.message);
  EXPECT_EQ(42u, message.wParam);
  EXPECT_FALSE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
}

TEST_P(ChartMessagesTest, MayDoAnythingToTheChart) {
  for (int way = 0; way < 6; ++way) {
    SCOPED_TRACE(way);
    EXPECT_OK(charts_.Call(L"Clear"));
    EXPECT_OK(sets_.Call(L"Clear"));
    set_ = sets_.CallObject(L"Add", {L"set"});
    chart_ = charts_.CallObject(L"Add", {L"chart"});
    functions_ = chart_.GetObject(L"FncInfos");
    EXPECT_OK(chart_.Set(L"VarSet", {set_}));
    const Object f = Add({L"x", 0, 150, 1});
    Add({L"x", 0, 150, 1});
    const Window window([&] {
      if (way == 0) EXPECT_OK(chart_.Call(L"Delete"));
      if (way == 1) EXPECT_OK(charts_.Call(L"Clear"));
      if (way == 2) EXPECT_OK(sets_.Call(L"Clear"));
      if (way == 3) EXPECT_OK(functions_.Call(L"Clear"));
      if (way == 4) EXPECT_OK(f.Call(L"Delete"));
      if (way == 5) EXPECT_OK(chart_.Call(L"Draw"));
    });
    bool posted = way == 5;
    const auto sink = Sink::Connect(chart_.get(), DIID___Chart, [&](const Event& event) {
      if (event == Event{kNewPoint, {50.0, 50.0}} && !std::exchange(posted, true)) window.Post();
      return S_OK;
    });
    if (way == 5) window.Post();  // handled after the first sample
    EXPECT_EQ(way < 3 ? zepErrAwaitTerm : 0, chart_.Call(L"Draw").number);
    const std::size_t expected[] = {102, 102, 102, 102, 102 + 152, 4 * 152};
    EXPECT_EQ(expected[way], sink->events().size());
  }
}

TEST_P(ChartMessagesTest, TheLastReferenceMayGo) {
  Add({L"x", 0, 150, 1});
  functions_.Reset();
  ComPtr<_Chart> chart;
  ASSERT_EQ(S_OK, chart_.get()->QueryInterface(IID_PPV_ARGS(&chart)));
  _Chart* raw = chart.Get();
  const Window window([&] {
    EXPECT_OK(charts_.Call(L"Clear"));
    chart_.Reset();
    chart.Reset();
  });
  window.Post();
  EXPECT_EQ(zepErrAwaitTerm, raw->Draw());
}

RUN_IN_BOTH_BINDINGS(ChartMessagesTest);

}  // namespace
