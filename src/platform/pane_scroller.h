#pragma once

#include <windows.h>

#include <cstdint>

#include "about/text_pane.h"

namespace zepkit10 {

/// Scrolls a pane by a scroll bar, by keys and by the mouse wheel. Its members are true where the
/// pane has to be painted anew.
class PaneScroller {
 public:
  /// The scroll bar is a control; a row is what a single step scrolls, in pixels.
  void Attach(HWND bar, TextPane& pane, int row_height);

  /// A request of WM_VSCROLL.
  bool OnRequest(int request);
  bool OnWheel(int delta);

  /// The request that a key stands for; -1 for none.
  static int RequestOf(WPARAM key);

 private:
  bool ScrollTo(std::int64_t position);
  void ShowPosition() const;

  HWND bar_ = nullptr;
  TextPane* pane_ = nullptr;
  int row_height_ = 1;
  int wheel_ = 0;  // what turning the wheel has not scrolled yet
};

}  // namespace zepkit10
