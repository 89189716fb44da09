#pragma once

#include <windows.h>

namespace zepkit10 {

/// While this lives, controls that the thread creates follow the user's visual style, whatever the
/// program asks for. Not for calls of a client: its own controls would change, too.
class VisualStyle {
 public:
  VisualStyle();
  ~VisualStyle();
  VisualStyle(const VisualStyle&) = delete;
  VisualStyle& operator=(const VisualStyle&) = delete;

 private:
  HANDLE context_;
  ULONG_PTR cookie_ = 0;
  bool active_ = false;
};

}  // namespace zepkit10
