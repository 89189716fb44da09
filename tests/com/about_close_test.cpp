// How an about window ends that another thread or program closes.
#include <future>
#include <thread>

#include "com/about_user.h"
#include "com/client.h"
#include "com/component.h"

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

class AboutCloseTest : public component::Test {
 protected:
  client::Outcome Show() {
    return root_.Call(L"ShowAbout", {L"About", Value::Nothing(), L"First", L"a line"});
  }

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

}  // namespace
