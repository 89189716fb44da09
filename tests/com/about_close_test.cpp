// How an about window ends.
#include <future>
#include <thread>

#include "com/about_user.h"
#include "com/client.h"
#include "com/component.h"
#include "com/thread_windows.h"
#include "frame/shared_library_object.h"
#include "platform/resource_ids.h"

namespace {

using namespace std::chrono_literals;
using client::Value;

/// Waits on a thread of its own for the about window of the thread that makes it, and does
/// something to that window. It leaves the window's thread alone: no timer wakes its queue.
class Stranger {
 public:
  explicit Stranger(std::function<void(HWND window)> action)
      : thread_([this, action, shown_by = GetCurrentThreadId()] {
          HWND window = Await(shown_by);
          action(window);
          in_time_ = window && returned_.get_future().wait_for(2s) == std::future_status::ready;
          if (in_time_) return;
          PostMessageW(window, WM_CLOSE, 0, 0);
          PostThreadMessageW(shown_by, WM_NULL, 0, 0);
        }) {}

  /// To be told that the call which showed the window has returned. True if it did so within two
  /// seconds.
  bool SawReturn() {
    returned_.set_value();
    thread_.join();
    return in_time_;
  }

 private:
  static HWND Await(DWORD thread) {
    for (int i = 0; i < 1000; ++i) {
      if (HWND window = AboutUser::Window(thread)) return window;
      std::this_thread::sleep_for(10ms);
    }
    return nullptr;
  }

  std::promise<void> returned_;
  bool in_time_ = false;
  std::thread thread_;
};

client::Outcome ShowOf(const client::Object& root, const Value& line = L"a line") {
  return root.Call(L"ShowAbout", {L"About", Value::Nothing(), L"First", line});
}

class AboutCloseTest : public component::Test {
 protected:
  client::Outcome Show(const Value& line = L"a line") const { return ShowOf(root_, line); }

  client::Object root_{component::Create<IDispatch>(CLSID_Global).Get(),
                       client::Binding::kDispatch};
};

void Send(HWND window, UINT message, WPARAM parameter) {
  DWORD_PTR answer = 0;
  EXPECT_TRUE(SendMessageTimeoutW(window, message, parameter, 0, SMTO_NORMAL, 10000, &answer));
}

TEST_F(AboutCloseTest, ReturnsWhenItIsSentItsClose) {
  Stranger stranger([](HWND window) { Send(window, WM_CLOSE, 0); });
  EXPECT_OK(Show());
  EXPECT_TRUE(stranger.SawReturn());
}

TEST_F(AboutCloseTest, ReturnsWhenItIsSentItsCommand) {
  Stranger stranger([](HWND window) { Send(window, WM_COMMAND, IDOK); });
  EXPECT_OK(Show());
  EXPECT_TRUE(stranger.SawReturn());
}

TEST_F(AboutCloseTest, ReturnsWhenItsButtonIsSentAClick) {
  Stranger stranger([](HWND window) { Send(AboutUser::Control(window, IDOK), BM_CLICK, 0); });
  EXPECT_OK(Show());
  EXPECT_TRUE(stranger.SawReturn());
}

TEST_F(AboutCloseTest, QuittingClosesItAndIsPassedOn) {
  AboutUser user;
  user.Do([](HWND) { PostQuitMessage(42); });
  EXPECT_OK(Show());
  MSG message{};
  ASSERT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
  EXPECT_EQ(42u, message.wParam);
  EXPECT_EQ(nullptr, AboutUser::Window());
}

TEST_F(AboutCloseTest, QuittingClosesWindowsAboveEachOther) {
  AboutUser user;
  user.Do([&](HWND) {
    AboutUser inner_user;
    inner_user.Do([](HWND) { PostQuitMessage(42); });
    EXPECT_OK(Show());
  });
  const int before = WindowsOfThread();
  EXPECT_OK(Show());
  EXPECT_EQ(before, WindowsOfThread());
  MSG message{};
  ASSERT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
  EXPECT_EQ(42u, message.wParam);
  EXPECT_FALSE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
}

TEST_F(AboutCloseTest, EndsWithTheWindowBelowIt) {
  AboutUser user;
  user.Do([&](HWND outer) {
    AboutUser inner_user;
    inner_user.Do([&](HWND) { SendMessageW(outer, WM_CLOSE, 0, 0); });
    EXPECT_OK(Show());
  });
  EXPECT_OK(Show());
  HWND owner = MakeWindow(WS_VISIBLE);
  SetActiveWindow(owner);
  user.Do([&](HWND) { DestroyWindow(owner); });
  EXPECT_OK(Show());
}

TEST_F(AboutCloseTest, EnterAndEscapeCloseItFromTheScrollBar) {
  for (const WPARAM key : {VK_RETURN, VK_ESCAPE}) {
    AboutUser user;
    user.Do([](HWND window) {
          HWND bar = AboutUser::Control(window, ZEPKIT10_ABOUT_SCROLL_BAR);
          EXPECT_TRUE(IsWindowVisible(bar));
          SetFocus(bar);
          EXPECT_EQ(bar, GetFocus());
        })
        .Type(key);
    EXPECT_OK(Show(std::wstring(1000, L'\n')));
  }
}

/// Shows a window on a thread of its own, which is prepared by `enter` and cleaned up by `leave`
/// and has had no message so far.
void ShowOnNewThread(const std::function<void()>& enter, const std::function<void()>& leave) {
  std::thread thread([&] {
    enter();
    {
      const client::Object root(component::Create<IDispatch>(CLSID_Global).Get(),
                                client::Binding::kDispatch);
      Stranger stranger([](HWND window) { PostMessageW(window, WM_CLOSE, 0, 0); });
      EXPECT_OK(ShowOf(root));
      EXPECT_TRUE(stranger.SawReturn());
      Stranger sender([](HWND window) { Send(window, WM_CLOSE, 0); });
      EXPECT_OK(ShowOf(root));
      EXPECT_TRUE(sender.SawReturn());
    }
    leave();
    // Only a DLL is told of the end of a thread.
    if (component::IsLinked()) zepkit10::EndApartment();
  });
  thread.join();
}

TEST_F(AboutCloseTest, ShowsInTheApartmentOfManyThreads) {
  ShowOnNewThread([] { EXPECT_EQ(S_OK, CoInitializeEx(nullptr, COINIT_MULTITHREADED)); },
                  [] { CoUninitialize(); });
}

TEST_F(AboutCloseTest, ShowsOnAThreadWithoutApartment) {
  ShowOnNewThread([] {}, [] {});
}

}  // namespace
