#pragma once

#include <windows.h>

#include <deque>
#include <functional>
#include <string>

/// Stands in for the user of the about windows of this thread. What it is told beforehand it does
/// one after the other, at the window that waits for input:
///     AboutUser user;
///     user.Do([](HWND window) { … }).Press(IDOK);
///     root.Call(L"ShowAbout", …);
/// A window that never comes or never does what is awaited fails the test and is closed, so that
/// the test ends. It expects everything to be done when it goes.
class AboutUser {
 public:
  AboutUser();
  ~AboutUser();
  AboutUser(const AboutUser&) = delete;
  AboutUser& operator=(const AboutUser&) = delete;

  /// Looks at the window, or does something to it.
  AboutUser& Do(std::function<void(HWND window)> action);
  /// Goes on when a condition holds.
  AboutUser& Await(std::function<bool(HWND window)> condition);
  AboutUser& Press(int button);
  AboutUser& Type(WPARAM key);

  /// The enabled about window of a thread; null where there is none.
  static HWND Window(DWORD thread = GetCurrentThreadId());
  static HWND Control(HWND window, int id) { return GetDlgItem(window, id); }
  /// The text that moves.
  static HWND MovingText(HWND window);
  static std::wstring TextOf(HWND window);
  /// A control's place on the client area of its parent.
  static RECT PlaceOf(HWND control);
  static SIZE SizeOf(HWND window);

 private:
  static void CALLBACK OnTimer(HWND, UINT, UINT_PTR timer, DWORD);
  void Tick();

  std::deque<std::function<bool(HWND)>> steps_;
  UINT_PTR timer_;
  ULONGLONG deadline_;
};
