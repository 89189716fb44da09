#include "com/about_user.h"

#include <gtest/gtest.h>

#include <map>

#include "com/fault_plan.h"
#include "platform/resource_ids.h"

namespace {

constexpr UINT kInterval = 10;          // ms
constexpr ULONGLONG kPatience = 30000;  // ms without progress

std::map<UINT_PTR, AboutUser*>& Users() {
  static std::map<UINT_PTR, AboutUser*> users;
  return users;
}

BOOL CALLBACK FindWindowOf(HWND window, LPARAM found) {
  if (!GetDlgItem(window, ZEPKIT10_ABOUT_FRAME) || !IsWindowVisible(window) ||
      !IsWindowEnabled(window)) {
    return TRUE;
  }
  *reinterpret_cast<HWND*>(found) = window;
  return FALSE;
}

}  // namespace

AboutUser::AboutUser()
    : timer_(SetTimer(nullptr, 0, kInterval, OnTimer)), deadline_(GetTickCount64() + kPatience) {
  EXPECT_NE(0u, timer_);
  Users()[timer_] = this;
}

AboutUser::~AboutUser() {
  KillTimer(nullptr, timer_);
  Users().erase(timer_);
  EXPECT_TRUE(steps_.empty()) << steps_.size() << " steps are left";
}

AboutUser& AboutUser::Do(std::function<void(HWND)> action) {
  return Await([action](HWND window) {
    action(window);
    return true;
  });
}

AboutUser& AboutUser::Await(std::function<bool(HWND)> condition) {
  steps_.push_back(std::move(condition));
  return *this;
}

AboutUser& AboutUser::Press(int button) {
  return Do([button](HWND window) { PostMessageW(GetDlgItem(window, button), BM_CLICK, 0, 0); });
}

AboutUser& AboutUser::Type(WPARAM key) {
  return Do([key](HWND window) {
    HWND focus = GetFocus();
    PostMessageW(focus && IsChild(window, focus) ? focus : window, WM_KEYDOWN, key, 1);
  });
}

HWND AboutUser::Window(DWORD thread) {
  HWND found = nullptr;
  EnumThreadWindows(thread, FindWindowOf, reinterpret_cast<LPARAM>(&found));
  return found;
}

HWND AboutUser::MovingText(HWND window) {
  return GetDlgItem(GetDlgItem(window, ZEPKIT10_ABOUT_FRAME), ZEPKIT10_ABOUT_MOVING_TEXT);
}

std::wstring AboutUser::TextOf(HWND window) {
  std::wstring text(static_cast<std::size_t>(SendMessageW(window, WM_GETTEXTLENGTH, 0, 0)), L'\0');
  SendMessageW(window, WM_GETTEXT, text.size() + 1, reinterpret_cast<LPARAM>(text.data()));
  return text;
}

RECT AboutUser::PlaceOf(HWND control) {
  RECT place{};
  GetWindowRect(control, &place);
  MapWindowPoints(nullptr, GetParent(control), reinterpret_cast<POINT*>(&place), 2);
  return place;
}

SIZE AboutUser::SizeOf(HWND window) {
  RECT area{};
  GetClientRect(window, &area);
  return {area.right, area.bottom};
}

void CALLBACK AboutUser::OnTimer(HWND, UINT, UINT_PTR timer, DWORD) {
  const faults::OutsideCall outside;
  const auto found = Users().find(timer);
  if (found != Users().end()) found->second->Tick();
}

void AboutUser::Tick() {
  HWND window = Window();
  if (GetTickCount64() > deadline_) {
    if (!steps_.empty()) ADD_FAILURE() << steps_.size() << " steps are left";
    steps_.clear();
    if (window) PostMessageW(window, WM_CLOSE, 0, 0);
    return;
  }
  if (steps_.empty() || !window) return;
  // A step may show another window, whose user goes on with the next one.
  const auto step = std::move(steps_.front());
  steps_.pop_front();
  if (step(window)) {
    deadline_ = GetTickCount64() + kPatience;
  } else {
    steps_.push_front(step);
  }
}
