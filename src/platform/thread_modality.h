#pragma once

#include <windows.h>

#include <vector>

namespace zepkit10 {

/// Keeps the user away from all visible windows of the thread that show now.
class ThreadModality {
 public:
  ThreadModality();
  ~ThreadModality() { End(); }
  ThreadModality(const ThreadModality&) = delete;
  ThreadModality& operator=(const ThreadModality&) = delete;

  /// Lets the user at them again. Before the window that they wait for goes, so that the system can
  /// activate one of them.
  void End() noexcept;

 private:
  std::vector<HWND> disabled_;
};

}  // namespace zepkit10
