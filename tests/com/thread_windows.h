#pragma once

#include <windows.h>
#include <gtest/gtest.h>

inline BOOL CALLBACK CountWindow(HWND, LPARAM count) {
  ++*reinterpret_cast<int*>(count);
  return TRUE;
}

/// How many top-level windows the thread has.
inline int WindowsOfThread() {
  int count = 0;
  EnumThreadWindows(GetCurrentThreadId(), CountWindow, reinterpret_cast<LPARAM>(&count));
  return count;
}

/// A window of the test's own, which it destroys.
inline HWND MakeWindow(DWORD style) {
  HWND window = CreateWindowW(L"STATIC", L"", WS_POPUP | style, 0, 0, 100, 100, nullptr, nullptr,
                              nullptr, nullptr);
  EXPECT_NE(nullptr, window);
  return window;
}
