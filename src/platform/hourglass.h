#pragma once

#include <windows.h>

namespace zepkit10 {

/// Shows the hourglass as the thread's pointer until it is restored or this ends.
class Hourglass {
 public:
  Hourglass() : before_(SetCursor(LoadCursorW(nullptr, IDC_WAIT))) {}
  ~Hourglass() { Restore(); }
  Hourglass(const Hourglass&) = delete;
  Hourglass& operator=(const Hourglass&) = delete;

  void Restore() {
    if (shown_) SetCursor(before_);
    shown_ = false;
  }

 private:
  const HCURSOR before_;
  bool shown_ = true;
};

}  // namespace zepkit10
