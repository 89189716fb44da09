// What becomes of an about window that the system refuses a part of.
#include "com/about_user.h"
#include "com/client.h"
#include "com/component.h"
#include "com/import_hook.h"
#include "com/thread_windows.h"

DECLARE_IMPORT(CreateDialogParamW, 20);
DECLARE_IMPORT(GetDC, 4);
DECLARE_IMPORT(SetDlgItemTextW, 12);
DECLARE_IMPORT(SetParent, 8);
DECLARE_IMPORT(SetTimer, 16);
DECLARE_IMPORT(SetWindowPos, 28);
DECLARE_IMPORT(SetWindowTextW, 8);

namespace {

using client::Value;

DWORD reason = 0;
template <class Result, class... Arguments>
Result WINAPI Refuse(Arguments...) {
  SetLastError(reason);
  return Result{};
}

using GetDCHook = ImportHook<&__imp_GetDC>;
bool contexts_are_refused = true;
HDC WINAPI RefuseContext(HWND window) {
  if (!window || !contexts_are_refused) return GetDCHook::kSystem(window);
  return Refuse<HDC>(window);
}

class AboutRefusalTest : public component::Test {
 protected:
  void SetUp() override {
    if (!component::IsLinked()) GTEST_SKIP() << "only what is linked can be hooked";
  }
  ~AboutRefusalTest() override {
    contexts_are_refused = true;
    DestroyWindow(visible_);
  }

  client::Outcome Show() const {
    return root_.Call(L"ShowAbout", {L"About", Value::Nothing(), L"First", L"a line"});
  }

  /// Refused for either reason, it is an error and leaves the thread as it was.
  void ExpectErrors() const {
    reason = 0;  // as without a display
    EXPECT_ERROR(Show(), 361, L"Zepkit10.Global", L"Can't load or unload this object");
    reason = ERROR_NOT_ENOUGH_MEMORY;
    EXPECT_ERROR(Show(), 7, L"Zepkit10.Global", L"Out of memory");
    ExpectNothingLeft();
  }

  void ExpectNothingLeft() const {
    EXPECT_EQ(before_, WindowsOfThread());
    EXPECT_TRUE(IsWindowEnabled(visible_));
  }

  const client::Object root_{component::Create<IDispatch>(CLSID_Global).Get(),
                             client::Binding::kDispatch};

 private:
  const AboutUser user_;  // closes a window that comes all the same, after a while
  const HWND visible_ = MakeWindow(WS_VISIBLE);
  const int before_ = WindowsOfThread();
};

TEST_F(AboutRefusalTest, OfTheWindow) {
  const ImportHook<&__imp_CreateDialogParamW> hook(Refuse);
  ExpectErrors();
}

TEST_F(AboutRefusalTest, OfTheCaption) {
  const ImportHook<&__imp_SetWindowTextW> hook(Refuse);
  ExpectErrors();
}

TEST_F(AboutRefusalTest, OfTheText) {
  const ImportHook<&__imp_SetDlgItemTextW> hook(Refuse);
  ExpectErrors();
}

TEST_F(AboutRefusalTest, OfTheFrameOfTheMovingText) {
  const ImportHook<&__imp_SetParent> hook(Refuse);
  ExpectErrors();
}

TEST_F(AboutRefusalTest, OfTheTimer) {
  const ImportHook<&__imp_SetTimer> hook(Refuse);
  ExpectErrors();
}

TEST_F(AboutRefusalTest, OfAContextToMeasureWith) {
  const GetDCHook hook(RefuseContext);
  ExpectErrors();
}

void ChangeDpi(HWND window) {
  RECT proposed{10, 10, 500, 500};
  SendMessageW(window, WM_DPICHANGED, MAKEWPARAM(192, 192), reinterpret_cast<LPARAM>(&proposed));
}

TEST_F(AboutRefusalTest, OnItsWayToAnotherScreen) {
  AboutUser user;
  const GetDCHook hook(RefuseContext);
  reason = ERROR_NOT_ENOUGH_MEMORY;
  contexts_are_refused = false;
  user.Do([](HWND window) {
    contexts_are_refused = true;
    ChangeDpi(window);
    EXPECT_FALSE(IsWindow(window));
  });
  EXPECT_ERROR(Show(), 7, L"Zepkit10.Global", L"Out of memory");
  ExpectNothingLeft();
}

using SetWindowPosHook = ImportHook<&__imp_SetWindowPos>;
int dialog_moves = 0;
int move_to_another_screen = 0;
/// One of the moves of the window itself brings it to a screen of other dots per inch.
BOOL WINAPI MoveToAnotherScreen(HWND window, HWND after, int x, int y, int width, int height,
                                UINT flags) {
  const bool child = GetWindowLongW(window, GWL_STYLE) & WS_CHILD;
  const BOOL moved = SetWindowPosHook::kSystem(window, after, x, y, width, height, flags);
  if (!child && ++dialog_moves == move_to_another_screen) {
    contexts_are_refused = true;
    ChangeDpi(window);
  }
  return moved;
}

using SetTimerHook = ImportHook<&__imp_SetTimer>;
int timers_of_no_window = 0;
UINT_PTR WINAPI CountTimer(HWND window, UINT_PTR id, UINT interval, TIMERPROC action) {
  if (!window) ++timers_of_no_window;
  return SetTimerHook::kSystem(window, id, interval, action);
}

TEST_F(AboutRefusalTest, BeforeItIsShown) {
  const GetDCHook contexts(RefuseContext);
  const SetWindowPosHook moves(MoveToAnotherScreen);
  const SetTimerHook timers(CountTimer);
  reason = ERROR_NOT_ENOUGH_MEMORY;
  timers_of_no_window = 0;
  for (move_to_another_screen = 1; move_to_another_screen <= 3; ++move_to_another_screen) {
    dialog_moves = 0;
    contexts_are_refused = false;
    EXPECT_ERROR(Show(), 7, L"Zepkit10.Global", L"Out of memory");
    EXPECT_EQ(move_to_another_screen, dialog_moves) << "nothing else is moved";
    ExpectNothingLeft();
  }
  EXPECT_EQ(0, timers_of_no_window);
}

}  // namespace
