// How an about window behaves towards the thread, its user and the system.
#include "com/about_user.h"
#include "com/client.h"
#include "com/component.h"
#include "com/gdi_objects.h"
#include "com/thread_windows.h"
#include "platform/resource_ids.h"

namespace {

using client::Value;

class AboutWindowTest : public component::Test {
 protected:
  client::Outcome Show(const Value& line = L"a line") {
    return root_.Call(L"ShowAbout", {L"About", Value::Nothing(), L"First", line});
  }

  client::Object root_{component::Create<IDispatch>(CLSID_Global).Get(),
                       client::Binding::kDispatch};
  AboutUser user_;
};

TEST_F(AboutWindowTest, ATextMovesThroughItsFrameAndRestarts) {
  int start = 0;
  user_
      .Do([&](HWND window) {
        HWND text = AboutUser::MovingText(window);
        EXPECT_EQ(0u, AboutUser::TextOf(text).find(L"Zepkit10 "));
        start = AboutUser::PlaceOf(text).left;
        EXPECT_LE(start, 0);
      })
      .Await([&](HWND window) {
        return AboutUser::PlaceOf(AboutUser::MovingText(window)).left < start;
      })
      .Await([](HWND window) { return AboutUser::PlaceOf(AboutUser::MovingText(window)).left > 0; })
      .Do([](HWND window) {
        const RECT text = AboutUser::PlaceOf(AboutUser::MovingText(window));
        EXPECT_LE(text.left, AboutUser::SizeOf(GetParent(AboutUser::MovingText(window))).cx);
      })
      .Press(IDOK);
  EXPECT_OK(Show());
}

TEST_F(AboutWindowTest, OtherWindowsOfTheThreadWait) {
  HWND visible = MakeWindow(WS_VISIBLE), disabled = MakeWindow(WS_VISIBLE | WS_DISABLED);
  SetActiveWindow(visible);
  user_
      .Do([&](HWND window) {
        EXPECT_FALSE(IsWindowEnabled(visible));
        EXPECT_EQ(visible, GetWindow(window, GW_OWNER));
        EXPECT_EQ(window, GetActiveWindow());
        EXPECT_EQ(AboutUser::Control(window, IDOK), GetFocus());
      })
      .Press(IDOK);
  EXPECT_OK(Show());
  EXPECT_TRUE(IsWindowEnabled(visible));
  EXPECT_FALSE(IsWindowEnabled(disabled));
  EXPECT_EQ(visible, GetActiveWindow());
  DestroyWindow(visible);
  DestroyWindow(disabled);
}

TEST_F(AboutWindowTest, MessagesAreDispatched) {
  HWND other = MakeWindow(0);
  PostMessageW(other, WM_CLOSE, 0, 0);
  user_.Await([&](HWND) { return !IsWindow(other); }).Press(IDOK);
  EXPECT_OK(Show());
}

TEST_F(AboutWindowTest, AnotherMayBeShownMeanwhile) {
  HWND outer = nullptr;
  user_.Do([&](HWND window) {
    outer = window;
    AboutUser inner_user;
    inner_user
        .Do([&](HWND inner) {
          EXPECT_NE(outer, inner);
          EXPECT_FALSE(IsWindowEnabled(outer));
        })
        .Press(IDOK);
    EXPECT_OK(Show());
    EXPECT_TRUE(IsWindowEnabled(outer));
    user_.Do([&](HWND still) { EXPECT_EQ(outer, still); }).Press(IDOK);
  });
  EXPECT_OK(Show());
}

TEST_F(AboutWindowTest, FollowsTheDotsPerInchOfItsScreen) {
  SIZE before{};
  user_
      .Do([&](HWND window) {
        before = AboutUser::SizeOf(window);
        const SIZE button = AboutUser::SizeOf(AboutUser::Control(window, IDOK));
        RECT proposed{10, 10, 500, 500};
        SendMessageW(window, WM_DPICHANGED, MAKEWPARAM(192, 192),
                     reinterpret_cast<LPARAM>(&proposed));
        EXPECT_EQ(2 * button.cy, AboutUser::SizeOf(AboutUser::Control(window, IDOK)).cy);
        EXPECT_EQ(96, AboutUser::SizeOf(AboutUser::Control(window, ZEPKIT10_ABOUT_ICON)).cx);
        EXPECT_EQ(2 * before.cx, AboutUser::SizeOf(window).cx);
      })
      .Press(IDOK);
  EXPECT_OK(Show());
}

TEST_F(AboutWindowTest, StaysWhereItWasScrolledToOnAnotherScreen) {
  const auto position = [](HWND window) {
    SCROLLINFO info{};
    info.cbSize = sizeof info;
    info.fMask = SIF_POS | SIF_RANGE;
    EXPECT_TRUE(
        GetScrollInfo(AboutUser::Control(window, ZEPKIT10_ABOUT_SCROLL_BAR), SB_CTL, &info));
    return std::pair(info.nPos, info.nPos / (info.nMax + 1.0));
  };
  user_
      .Do([&](HWND window) {
        for (int i = 0; i < 7; ++i) SendMessageW(window, WM_VSCROLL, SB_PAGEDOWN, 0);
        const auto [before, share] = position(window);
        EXPECT_GT(before, 1000);
        RECT proposed{10, 10, 500, 500};
        const auto change_to = [&](int dpi) {
          SendMessageW(window, WM_DPICHANGED, MAKEWPARAM(dpi, dpi),
                       reinterpret_cast<LPARAM>(&proposed));
          return position(window);
        };
        const auto [larger, same_share] = change_to(192);
        EXPECT_GT(larger, before + before / 2);
        EXPECT_NEAR(share, same_share, 0.0002);
        EXPECT_NEAR(before, change_to(96).first, 2);
      })
      .Press(IDOK);
  EXPECT_OK(Show(std::wstring(1000, L'\n')));
}

TEST_F(AboutWindowTest, HasAButtonAndAFrameThatClips) {
  user_
      .Do([](HWND window) {
        EXPECT_EQ(L"OK", AboutUser::TextOf(AboutUser::Control(window, IDOK)));
        HWND frame = GetParent(AboutUser::MovingText(window));
        EXPECT_EQ(AboutUser::Control(window, ZEPKIT10_ABOUT_FRAME), frame);
        EXPECT_TRUE(GetWindowLongW(frame, GWL_STYLE) & WS_CLIPCHILDREN);
      })
      .Press(IDOK);
  EXPECT_OK(Show());
}

TEST_F(AboutWindowTest, GrowsWithItsTexts) {
  SIZE small{}, large{};
  user_.Do([&](HWND window) { small = AboutUser::SizeOf(window); }).Press(IDOK);
  EXPECT_OK(Show());
  user_.Do([&](HWND window) { large = AboutUser::SizeOf(window); }).Press(IDOK);
  EXPECT_OK(Show(std::wstring(100, L'm') + L"\n\n\n"));
  EXPECT_GT(large.cx, small.cx);
  EXPECT_GT(large.cy, small.cy);
}

TEST_F(AboutWindowTest, ScrollsByKeysWheelAndBar) {
  static const auto position = [](HWND window) {
    return GetScrollPos(AboutUser::Control(window, ZEPKIT10_ABOUT_SCROLL_BAR), SB_CTL);
  };
  int line = 0;
  user_.Type(VK_DOWN)
      .Await([&](HWND window) { return (line = position(window)) > 0; })
      .Type(VK_UP)
      .Await([](HWND window) { return position(window) == 0; })
      .Type(VK_NEXT)
      .Await([&](HWND window) { return position(window) > 3 * line; })
      .Type(VK_PRIOR)
      .Await([](HWND window) { return position(window) == 0; })
      .Type(VK_END)
      .Await([&](HWND window) { return position(window) > 100 * line; })
      .Type(VK_HOME)
      .Await([](HWND window) { return position(window) == 0; })
      .Do([&](HWND window) {
        SendMessageW(window, WM_MOUSEWHEEL, MAKEWPARAM(0, -WHEEL_DELTA), 0);
        EXPECT_GT(position(window), 0);
        SendMessageW(window, WM_MOUSEWHEEL, MAKEWPARAM(0, WHEEL_DELTA), 0);
        EXPECT_EQ(0, position(window));
        HWND bar = AboutUser::Control(window, ZEPKIT10_ABOUT_SCROLL_BAR);
        SendMessageW(window, WM_VSCROLL, SB_PAGEDOWN, reinterpret_cast<LPARAM>(bar));
        EXPECT_GT(position(window), 0);
        SendMessageW(window, WM_VSCROLL, SB_BOTTOM, reinterpret_cast<LPARAM>(bar));
        const int bottom = position(window);
        // Nobody drags the thumb: it is where it was.
        for (const WPARAM request : {SB_LINEDOWN, SB_THUMBTRACK, SB_THUMBPOSITION, SB_ENDSCROLL}) {
          SendMessageW(window, WM_VSCROLL, request, reinterpret_cast<LPARAM>(bar));
          EXPECT_EQ(bottom, position(window)) << request;
        }
        SendMessageW(window, WM_VSCROLL, SB_PAGEUP, reinterpret_cast<LPARAM>(bar));
        EXPECT_LT(position(window), bottom - 3 * line);
      })
      .Press(IDOK);
  EXPECT_OK(Show(std::wstring(1000, L'\n')));
}

/// How far the user wants a notch of the wheel to scroll, as long as this lives.
class WheelSetting {
 public:
  explicit WheelSetting(UINT rows) {
    SystemParametersInfoW(SPI_GETWHEELSCROLLLINES, 0, &before_, 0);
    Set(rows);
  }
  ~WheelSetting() { Set(before_); }
  WheelSetting(const WheelSetting&) = delete;
  WheelSetting& operator=(const WheelSetting&) = delete;

 private:
  static void Set(UINT rows) { SystemParametersInfoW(SPI_SETWHEELSCROLLLINES, rows, nullptr, 0); }

  UINT before_ = 0;
};

TEST_F(AboutWindowTest, TheWheelScrollsAsTheUserWants) {
  int notch[3] = {};
  constexpr UINT kRows[] = {1, 3, WHEEL_PAGESCROLL};
  for (int i = 0; i < 3; ++i) {
    const WheelSetting setting(kRows[i]);
    user_
        .Do([&notch, i](HWND window) {
          const HWND bar = AboutUser::Control(window, ZEPKIT10_ABOUT_SCROLL_BAR);
          SendMessageW(window, WM_MOUSEWHEEL, MAKEWPARAM(0, -1), 0);
          if (i == 0) {
            EXPECT_EQ(0, GetScrollPos(bar, SB_CTL)) << "too little for a pixel";
          }
          constexpr auto kRest = static_cast<WORD>(1 - WHEEL_DELTA);
          SendMessageW(window, WM_MOUSEWHEEL, MAKEWPARAM(0, kRest), 0);
          notch[i] = GetScrollPos(bar, SB_CTL);
        })
        .Press(IDOK);
    EXPECT_OK(Show(std::wstring(1000, L'\n')));
  }
  EXPECT_GT(notch[0], 0);
  EXPECT_EQ(3 * notch[0], notch[1]);
  EXPECT_GT(notch[2], notch[1]);
}

TEST_F(AboutWindowTest, LeavesNothingBehind) {
  const auto show = [&] {
    user_.Press(IDOK);
    EXPECT_OK(Show());
  };
  show();
  const int windows = WindowsOfThread();
  const int gdi = GdiObjects();
  EXPECT_GT(gdi, 0);
  for (int i = 0; i < 10; ++i) show();
  EXPECT_EQ(windows, WindowsOfThread());
  EXPECT_LT(GdiObjects(), gdi + 5);
}

}  // namespace
