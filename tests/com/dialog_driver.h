#pragma once

#include <windows.h>

#include <deque>
#include <functional>
#include <string>

/// What a user does in a file dialog.
class DialogUser {
 public:
  virtual ~DialogUser() = default;
  /// Puts a text into the field for the name.
  virtual DialogUser& Type(std::wstring name) = 0;
  /// Presses a button (IDOK, IDCANCEL) of the dialog.
  virtual DialogUser& Press(int button) = 0;
};

/// Stands in for the user of the file dialogs of this thread. What it is told beforehand it does
/// one after the other, each as soon as the window for it waits for input:
///     DialogDriver user;
///     user.Type(L"a.txt").Press(IDOK);
///     dialog.Call(L"ShowOpen");
/// A prompt nobody expects, or a dialog that is never ready, fails the test; the dialog is then
/// closed, and so is one that outlasts the driver's patience. It expects everything to be done when
/// it goes.
class DialogDriver final : public DialogUser {
 public:
  DialogDriver();
  ~DialogDriver() override;
  DialogDriver(const DialogDriver&) = delete;
  DialogDriver& operator=(const DialogDriver&) = delete;

  DialogDriver& Type(std::wstring name) override;
  /// Ticks the read-only box, or does not.
  DialogDriver& TickReadOnly(bool ticked);
  /// Chooses a filter, from 1.
  DialogDriver& ChooseFilter(int index);
  /// Looks at the dialog, or does something to it.
  DialogDriver& Do(std::function<void(HWND dialog)> action);
  DialogDriver& Press(int button) override;
  /// Presses a button of the prompt that the dialog shows.
  DialogDriver& Answer(int button);

  /// The controls of a dialog: null where it has or shows none.
  static HWND ReadOnlyBox(HWND dialog);
  static HWND HelpButton(HWND dialog);
  static std::wstring TextOf(HWND window);
  /// What the list of filters shows, line by line.
  static std::wstring FiltersOf(HWND dialog);
  static int ChosenFilterOf(HWND dialog);
  /// The text in the field for the name.
  static std::wstring NameIn(HWND dialog);

 private:
  struct Step {
    bool in_prompt;
    std::function<void(HWND)> action;
  };

  static void CALLBACK OnTimer(HWND, UINT, UINT_PTR timer, DWORD);
  void Tick();
  void GiveUp(const char* reason);
  bool IsIn(HWND dialog, HWND prompt) const;

  std::deque<Step> steps_;
  UINT_PTR timer_;
  ULONGLONG deadline_;
  bool given_up_ = false;
};
