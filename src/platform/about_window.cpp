#include "platform/about_window.h"

#include <algorithm>

#include "platform/automation/module.h"
#include "platform/automation/string.h"
#include "platform/dpi.h"
#include "platform/last_error.h"
#include "platform/resource_ids.h"
#include "platform/visual_style.h"

namespace zepkit10 {
namespace {

constexpr UINT_PTR kTimer = 1;
constexpr UINT kTimerInterval = 30;  // ms
constexpr int kStep = 1;             // for 96 dots per inch
constexpr int kScreenMargin = 12;    // for 96 dots per inch

/// A drawing context of a window, for measuring.
class WindowContext {
 public:
  explicit WindowContext(HWND window) : window_(window), handle_(GetDC(window)) {
    if (!handle_) RaiseLastError();
  }
  ~WindowContext() { ReleaseDC(window_, handle_); }
  WindowContext(const WindowContext&) = delete;
  WindowContext& operator=(const WindowContext&) = delete;

  HDC get() const { return handle_; }

 private:
  HWND window_;
  HDC handle_;
};

std::u16string TextOfWindow(HWND window) {
  std::u16string text(static_cast<std::size_t>(GetWindowTextLengthW(window)), u'\0');
  GetWindowTextW(window, MutableText(text), static_cast<int>(text.size()) + 1);
  return text;
}

RECT WorkAreaAt(HWND window) {
  MONITORINFO monitor{};
  monitor.cbSize = sizeof monitor;
  GetMonitorInfoW(MonitorFromWindow(window, MONITOR_DEFAULTTONEAREST), &monitor);
  return monitor.rcWork;
}

void MoveControl(HWND control, const Box& to) {
  SetWindowPos(control, nullptr, to.left, to.top, to.width, to.height,
               SWP_NOZORDER | SWP_NOACTIVATE | SWP_NOCOPYBITS);
}

}  // namespace

AboutWindow::AboutWindow(const AboutContent& content)
    : caption_(ShownTitle(content.caption)),
      icon_(content.icon.Get()),
      text_(content.first_line, content.lines ? &*content.lines : nullptr) {}

AboutWindow::~AboutWindow() { Close(); }

void AboutWindow::Run() {
  Open();
  while (window_) {
    MSG message;
    if (!GetMessageW(&message, nullptr, 0, 0)) {
      Close();
      PostQuitMessage(static_cast<int>(message.wParam));
      break;
    }
    if (ScrollByKey(message) || IsDialogMessageW(window_, &message)) continue;
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
  if (failure_) std::rethrow_exception(failure_);
}

void AboutWindow::Open() {
  const PerMonitorDpi per_monitor;
  Create();
  const RECT around = EnterScreen();
  if (!window_) return;
  Arrange(DpiOf(window_));
  Centre(around);
  if (window_) Show();
}

void AboutWindow::Create() {
  const VisualStyle style;
  const std::u16string spoken = text_.Spoken();
  SetLastError(0);
  if (!CreateDialogParamW(ThisModule(), MAKEINTRESOURCEW(ZEPKIT10_ABOUT), GetActiveWindow(),
                          Receive, reinterpret_cast<LPARAM>(this))) {
    RaiseLastError();
  }
  moving_text_ = Control(ZEPKIT10_ABOUT_MOVING_TEXT);
  if (!SetParent(moving_text_, Control(ZEPKIT10_ABOUT_FRAME)) ||
      !SetWindowTextW(window_, WideText(caption_)) ||
      !SetDlgItemTextW(window_, ZEPKIT10_ABOUT_TEXT, WideText(spoken))) {
    RaiseLastError();
  }
}

void AboutWindow::Show() {
  if (!SetTimer(window_, kTimer, kTimerInterval, nullptr)) RaiseLastError();
  modality_.emplace();
  // ShowWindow would follow a program that was started hidden.
  SetWindowPos(window_, HWND_TOP, 0, 0, 0, 0, SWP_NOMOVE | SWP_NOSIZE | SWP_SHOWWINDOW);
}

INT_PTR CALLBACK AboutWindow::Receive(HWND window, UINT message, WPARAM wide, LPARAM parameter) {
  if (message == WM_INITDIALOG) {
    auto* self = reinterpret_cast<AboutWindow*>(parameter);
    self->window_ = window;
    SetWindowLongPtrW(window, DWLP_USER, parameter);
    DisableDialogScaling(window);
    return TRUE;
  }
  auto* self = reinterpret_cast<AboutWindow*>(GetWindowLongPtrW(window, DWLP_USER));
  if (!self || !self->window_) return FALSE;
  try {
    return self->Handle(message, wide, parameter);
  } catch (...) {
    // No exception passes the system's code between here and Run.
    self->failure_ = std::current_exception();
    self->Close();
    return TRUE;
  }
}

INT_PTR AboutWindow::Handle(UINT message, WPARAM wide, LPARAM parameter) {
  switch (message) {
    case WM_COMMAND:
      if (LOWORD(wide) == IDOK || LOWORD(wide) == IDCANCEL) Close();
      return TRUE;
    case WM_CLOSE:
      Close();
      return TRUE;
    case WM_DESTROY:
      OnDestroy();
      return TRUE;
    case WM_TIMER:
      MoveText();
      return TRUE;
    case WM_ERASEBKGND:
      EraseBackground(reinterpret_cast<HDC>(wide));
      SetWindowLongPtrW(window_, DWLP_MSGRESULT, TRUE);
      return TRUE;
    case WM_DRAWITEM:
      DrawControl(*reinterpret_cast<const DRAWITEMSTRUCT*>(parameter));
      return TRUE;
    case WM_VSCROLL:
      RepaintIf(scroller_.OnRequest(LOWORD(wide)));
      return TRUE;
    case WM_MOUSEWHEEL:
      RepaintIf(scroller_.OnWheel(GET_WHEEL_DELTA_WPARAM(wide)));
      return TRUE;
    case WM_DPICHANGED:
      OnDpiChanged(HIWORD(wide), *reinterpret_cast<const RECT*>(parameter));
      return TRUE;
    default:
      return FALSE;
  }
}

void AboutWindow::Close() noexcept {
  if (!window_) return;
  // First, so that the system activates the owner instead of another program's window.
  if (modality_) modality_->End();
  if (window_) DestroyWindow(window_);
}

void AboutWindow::OnDestroy() noexcept {
  KillTimer(window_, kTimer);
  window_ = nullptr;
  if (modality_) modality_->End();
  // A sent message is dispatched while the queue is waited at, which alone does not end the wait.
  PostThreadMessageW(GetCurrentThreadId(), WM_NULL, 0, 0);
}

// ---- layout ------------------------------------------------------------------------------------

void AboutWindow::Arrange(int dpi) {
  const RECT work = WorkAreaAt(window_);
  const SIZE frame = WindowSize(window_, {0, 0}, dpi);
  const int margin = 2 * Scaled(kScreenMargin, dpi);
  AboutSizes sizes;
  sizes.dpi = dpi;
  sizes.icon = icon_.SizeFor(dpi);
  sizes.scroll_bar_width = SystemMetric(SM_CXVSCROLL, dpi);
  sizes.screen = {static_cast<int>(work.right - work.left - frame.cx) - margin,
                  static_cast<int>(work.bottom - work.top - frame.cy) - margin};
  const WindowContext context(window_);
  const TextPane before = text_.Pane();
  text_.Wrap(context.get(), dpi,
             MaxTextWidth(dpi, sizes.icon.width, sizes.scroll_bar_width, sizes.screen.width));
  sizes.text = text_.Size();
  sizes.button_text = MeasureText(context.get(), text_.LineFont(), TextOfWindow(Control(IDOK)));
  sizes.moving_text = MeasureText(context.get(), text_.LineFont(), TextOfWindow(moving_text_));
  dpi_ = dpi;
  layout_ = LayOut(sizes);
  ticker_ = Ticker(layout_.frame.width, sizes.moving_text.width);
  text_.Pane().SetPageHeight(layout_.text.height);
  text_.Pane().ScrollLike(before);
  Place(layout_);
  MoveControl(moving_text_, {0, 0, sizes.moving_text.width, sizes.moving_text.height});
}

void AboutWindow::Place(const AboutLayout& layout) {
  MoveControl(Control(ZEPKIT10_ABOUT_ICON), layout.icon);
  MoveControl(Control(ZEPKIT10_ABOUT_TEXT), layout.text);
  MoveControl(Control(ZEPKIT10_ABOUT_FRAME), layout.frame);
  MoveControl(Control(IDOK), layout.button);
  const auto font = reinterpret_cast<WPARAM>(text_.LineFont());
  SendMessageW(Control(IDOK), WM_SETFONT, font, TRUE);
  SendMessageW(moving_text_, WM_SETFONT, font, TRUE);
  MoveControl(Control(ZEPKIT10_ABOUT_SCROLL_BAR), layout.scroll_bar);
  ShowWindow(Control(ZEPKIT10_ABOUT_SCROLL_BAR), layout.scroll_bar.width > 0 ? SW_SHOW : SW_HIDE);
  scroller_.Attach(Control(ZEPKIT10_ABOUT_SCROLL_BAR), text_.Pane(), text_.RowHeight());
}

RECT AboutWindow::EnterScreen() {
  HWND owner = GetWindow(window_, GW_OWNER);
  RECT around;
  const bool beside = owner && IsWindowVisible(owner) && !IsIconic(owner);
  if (!beside || !GetWindowRect(owner, &around)) around = WorkAreaAt(owner ? owner : window_);
  SetWindowPos(window_, nullptr, around.left, around.top, 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
  return around;
}

void AboutWindow::Centre(const RECT& around) {
  const SIZE size = WindowSize(window_, {layout_.client.width, layout_.client.height}, dpi_);
  const RECT work = WorkAreaAt(window_);
  const auto middle = [](LONG low, LONG high, LONG length, LONG lowest, LONG highest) {
    return std::max(std::min((low + high - length) / 2, highest - length), lowest);
  };
  SetWindowPos(window_, nullptr, middle(around.left, around.right, size.cx, work.left, work.right),
               middle(around.top, around.bottom, size.cy, work.top, work.bottom), size.cx, size.cy,
               SWP_NOZORDER | SWP_NOACTIVATE);
}

void AboutWindow::OnDpiChanged(int dpi, const RECT& proposed) {
  Arrange(dpi);
  const SIZE size = WindowSize(window_, {layout_.client.width, layout_.client.height}, dpi);
  SetWindowPos(window_, nullptr, proposed.left, proposed.top, size.cx, size.cy,
               SWP_NOZORDER | SWP_NOACTIVATE);
  RedrawWindow(window_, nullptr, nullptr, RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN);
}

// ---- painting ----------------------------------------------------------------------------------

void AboutWindow::EraseBackground(HDC context) const {
  const Box& footer = layout_.footer;
  const int line = std::max(Scaled(1, dpi_), 1);
  const RECT above{0, 0, footer.width, footer.top};
  const RECT border{0, footer.top, footer.width, footer.top + line};
  const RECT below{0, footer.top + line, footer.width, footer.Bottom()};
  FillRect(context, &above, GetSysColorBrush(COLOR_WINDOW));
  FillRect(context, &border, GetSysColorBrush(COLOR_3DLIGHT));
  FillRect(context, &below, GetSysColorBrush(COLOR_3DFACE));
}

void AboutWindow::DrawControl(const DRAWITEMSTRUCT& item) {
  if (item.CtlID == ZEPKIT10_ABOUT_TEXT) {
    text_.Draw(item.hDC, {layout_.text.width, layout_.text.height});
  } else if (item.CtlID == ZEPKIT10_ABOUT_ICON) {
    FillRect(item.hDC, &item.rcItem, GetSysColorBrush(COLOR_WINDOW));
    icon_.Draw(item.hDC, {layout_.icon.width, layout_.icon.height});
  }
}

void AboutWindow::MoveText() {
  ticker_.Step(std::max(Scaled(kStep, dpi_), 1));
  SetWindowPos(moving_text_, nullptr, ticker_.Position(), 0, 0, 0,
               SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}

// ---- scrolling ---------------------------------------------------------------------------------

bool AboutWindow::ScrollByKey(const MSG& message) {
  if (message.message != WM_KEYDOWN || layout_.scroll_bar.width == 0) return false;
  if (message.hwnd != window_ && !IsChild(window_, message.hwnd)) return false;
  const int request = PaneScroller::RequestOf(message.wParam);
  if (request >= 0) RepaintIf(scroller_.OnRequest(request));
  return request >= 0;
}

void AboutWindow::RepaintIf(bool scrolled) const {
  if (scrolled) InvalidateRect(Control(ZEPKIT10_ABOUT_TEXT), nullptr, FALSE);
}

}  // namespace zepkit10
