#include "com/dialog_driver.h"

#include <dlgs.h>
#include <gtest/gtest.h>

#include <map>

#include "com/fault_plan.h"

namespace {

constexpr UINT kInterval = 10;          // ms
constexpr ULONGLONG kPatience = 20000;  // ms without progress
constexpr int kNameField = cmb13, kFilters = cmb1, kReadOnlyBox = chx1, kHelpButton = pshHelp;

std::map<UINT_PTR, DialogDriver*>& Drivers() {
  static std::map<UINT_PTR, DialogDriver*> drivers;
  return drivers;
}

/// The visible dialogs of this thread: a file dialog, and the prompt that it shows.
struct Dialogs {
  HWND dialog = nullptr;
  HWND prompt = nullptr;
};

BOOL CALLBACK Sort(HWND window, LPARAM found) {
  wchar_t name[16] = L"";
  GetClassNameW(window, name, static_cast<int>(std::size(name)));
  if (wcscmp(name, L"#32770") != 0 || !IsWindowVisible(window)) return TRUE;
  auto& dialogs = *reinterpret_cast<Dialogs*>(found);
  (GetDlgItem(window, kFilters) ? dialogs.dialog : dialogs.prompt) = window;
  return TRUE;
}

Dialogs FindDialogs() {
  Dialogs found;
  EnumThreadWindows(GetCurrentThreadId(), Sort, reinterpret_cast<LPARAM>(&found));
  return found;
}

HWND Shown(HWND dialog, int control) {
  HWND window = GetDlgItem(dialog, control);
  return window && (GetWindowLongW(window, GWL_STYLE) & WS_VISIBLE) ? window : nullptr;
}

void PressLater(HWND dialog, int button) {
  // Posted: the button may open a prompt, and the timer must go on meanwhile.
  PostMessageW(dialog, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED),
               reinterpret_cast<LPARAM>(GetDlgItem(dialog, button)));
}

}  // namespace

DialogDriver::DialogDriver()
    : timer_(SetTimer(nullptr, 0, kInterval, OnTimer)), deadline_(GetTickCount64() + kPatience) {
  EXPECT_NE(0u, timer_);
  Drivers()[timer_] = this;
}

DialogDriver::~DialogDriver() {
  KillTimer(nullptr, timer_);
  Drivers().erase(timer_);
  EXPECT_TRUE(given_up_ || steps_.empty()) << steps_.size() << " steps are left";
}

DialogDriver& DialogDriver::Type(std::wstring name) {
  return Do([name](HWND dialog) { SetDlgItemTextW(dialog, kNameField, name.c_str()); });
}

DialogDriver& DialogDriver::TickReadOnly(bool ticked) {
  return Do([ticked](HWND dialog) {
    EXPECT_NE(nullptr, ReadOnlyBox(dialog));
    CheckDlgButton(dialog, kReadOnlyBox, ticked ? BST_CHECKED : BST_UNCHECKED);
  });
}

DialogDriver& DialogDriver::ChooseFilter(int index) {
  return Do([index](HWND dialog) {
    HWND filters = GetDlgItem(dialog, kFilters);
    SendMessageW(filters, CB_SETCURSEL, static_cast<WPARAM>(index - 1), 0);
    SendMessageW(dialog, WM_COMMAND, MAKEWPARAM(kFilters, CBN_SELENDOK),
                 reinterpret_cast<LPARAM>(filters));
  });
}

DialogDriver& DialogDriver::Do(std::function<void(HWND dialog)> action) {
  steps_.push_back({false, std::move(action)});
  return *this;
}

DialogDriver& DialogDriver::Press(int button) {
  return Do([button](HWND dialog) { PressLater(dialog, button); });
}

DialogDriver& DialogDriver::Answer(int button) {
  steps_.push_back({true, [button](HWND prompt) { PressLater(prompt, button); }});
  return *this;
}

HWND DialogDriver::ReadOnlyBox(HWND dialog) { return Shown(dialog, kReadOnlyBox); }

HWND DialogDriver::HelpButton(HWND dialog) { return Shown(dialog, kHelpButton); }

std::wstring DialogDriver::TextOf(HWND window) {
  wchar_t text[256] = L"";
  GetWindowTextW(window, text, static_cast<int>(std::size(text)));
  return text;
}

std::wstring DialogDriver::FiltersOf(HWND dialog) {
  HWND filters = GetDlgItem(dialog, kFilters);
  std::wstring lines;
  const LRESULT count = SendMessageW(filters, CB_GETCOUNT, 0, 0);
  for (LRESULT i = 0; i < count; ++i) {
    wchar_t line[256] = L"";
    SendMessageW(filters, CB_GETLBTEXT, static_cast<WPARAM>(i), reinterpret_cast<LPARAM>(line));
    lines.append(line).append(L"\n");
  }
  return lines;
}

int DialogDriver::ChosenFilterOf(HWND dialog) {
  return static_cast<int>(SendDlgItemMessageW(dialog, kFilters, CB_GETCURSEL, 0, 0)) + 1;
}

std::wstring DialogDriver::NameIn(HWND dialog) { return TextOf(GetDlgItem(dialog, kNameField)); }

void CALLBACK DialogDriver::OnTimer(HWND, UINT, UINT_PTR timer, DWORD) {
  const faults::OutsideCall outside;
  const auto found = Drivers().find(timer);
  if (found != Drivers().end()) found->second->Tick();
}

void DialogDriver::Tick() {
  const auto [dialog, prompt] = FindDialogs();
  if (given_up_) {
    for (const int button : {IDCANCEL, IDNO, IDOK}) {
      if (prompt) PressLater(prompt, button);
    }
    if (dialog && !prompt) PressLater(dialog, IDCANCEL);
    return;
  }
  if (GetTickCount64() > deadline_) return GiveUp("the dialog is not ready or does not end");
  if (prompt && (steps_.empty() || !steps_.front().in_prompt)) {
    return GiveUp("a prompt that was not expected");
  }
  if (steps_.empty() || !IsIn(dialog, prompt)) return;
  const Step step = std::move(steps_.front());
  steps_.pop_front();
  deadline_ = GetTickCount64() + kPatience;
  step.action(step.in_prompt ? prompt : dialog);
}

bool DialogDriver::IsIn(HWND dialog, HWND prompt) const {
  HWND wanted = steps_.front().in_prompt ? prompt : dialog;
  return wanted && IsWindowEnabled(wanted);
}

void DialogDriver::GiveUp(const char* reason) {
  ADD_FAILURE() << reason << "; " << steps_.size() << " steps are left";
  given_up_ = true;
  steps_.clear();
}
