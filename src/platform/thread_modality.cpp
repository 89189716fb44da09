#include "platform/thread_modality.h"

#include <utility>

namespace zepkit10 {
namespace {

BOOL CALLBACK Collect(HWND window, LPARAM found) noexcept {
  if (!IsWindowVisible(window) || !IsWindowEnabled(window)) return TRUE;
  try {
    reinterpret_cast<std::vector<HWND>*>(found)->push_back(window);
    return TRUE;
  } catch (...) {
    return FALSE;
  }
}

}  // namespace

ThreadModality::ThreadModality() {
  EnumThreadWindows(GetCurrentThreadId(), Collect, reinterpret_cast<LPARAM>(&disabled_));
  for (HWND window : disabled_) EnableWindow(window, FALSE);
}

void ThreadModality::End() noexcept {
  // Enabling a window calls its owner's code, which may get here again.
  for (HWND window : std::exchange(disabled_, {})) {
    if (GetWindowThreadProcessId(window, nullptr) == GetCurrentThreadId()) {
      EnableWindow(window, TRUE);
    }
  }
}

}  // namespace zepkit10
