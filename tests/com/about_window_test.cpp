// How an about window behaves towards the thread, its user and the system.
#include "com/about_user.h"
#include "com/client.h"
#include "com/component.h"
#include "com/gdi_objects.h"
#include "com/import_hook.h"
#include "platform/resource_ids.h"

DECLARE_IMPORT(CreateDialogParamW, 20);

namespace {

using client::Value;

HWND MakeWindow(DWORD style) {
  HWND window = CreateWindowW(L"STATIC", L"", WS_POPUP | style, 0, 0, 100, 100, nullptr, nullptr,
                              nullptr, nullptr);
  EXPECT_NE(nullptr, window);
  return window;
}

BOOL CALLBACK CountWindow(HWND, LPARAM count) {
  ++*reinterpret_cast<int*>(count);
  return TRUE;
}

int WindowsOfThread() {
  int count = 0;
  EnumThreadWindows(GetCurrentThreadId(), CountWindow, reinterpret_cast<LPARAM>(&count));
  return count;
}

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

TEST_F(AboutWindowTest, QuittingClosesItAndIsPassedOn) {
  user_.Do([](HWND) { PostQuitMessage(42); });
  EXPECT_OK(Show());
  MSG message{};
  ASSERT_TRUE(PeekMessageW(&message, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE));
  EXPECT_EQ(42u, message.wParam);
  EXPECT_EQ(nullptr, AboutUser::Window());
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

TEST_F(AboutWindowTest, EndsWithTheWindowBelowIt) {
  user_.Do([&](HWND outer) {
    AboutUser inner_user;
    inner_user.Do([&](HWND) { SendMessageW(outer, WM_CLOSE, 0, 0); });
    EXPECT_OK(Show());
  });
  EXPECT_OK(Show());
  HWND owner = MakeWindow(WS_VISIBLE);
  SetActiveWindow(owner);
  user_.Do([&](HWND) { DestroyWindow(owner); });
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
        SendMessageW(window, WM_VSCROLL, SB_LINEDOWN, reinterpret_cast<LPARAM>(bar));
        EXPECT_EQ(bottom, position(window));
      })
      .Press(IDOK);
  EXPECT_OK(Show(std::wstring(1000, L'\n')));
}

TEST_F(AboutWindowTest, IconsAreDestroyedWithTheirPictures) {
  root_.CallObject(L"LoadZepIcon", {0});
  const int before = GdiObjects();
  for (int i = 0; i < 10; ++i) EXPECT_TRUE(root_.CallObject(L"LoadZepIcon", {0}));
  EXPECT_LT(GdiObjects(), before + 5);
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

DWORD refusal = 0;
HWND WINAPI Refuse(HINSTANCE, LPCWSTR, HWND, DLGPROC, LPARAM) {
  SetLastError(refusal);
  return nullptr;
}

TEST_F(AboutWindowTest, WhatTheSystemRefusesIsAnError) {
  if (!component::IsLinked()) GTEST_SKIP() << "only what is linked can be hooked";
  const ImportHook<&__imp_CreateDialogParamW> hook(Refuse);
  refusal = 0;  // as without a display
  EXPECT_ERROR(Show(), 361, L"Zepkit10.Global", L"Can't load or unload this object");
  refusal = ERROR_NOT_ENOUGH_MEMORY;
  EXPECT_ERROR(Show(), 7, L"Zepkit10.Global", L"Out of memory");
}

}  // namespace
