#pragma once

#include <windows.h>

namespace zepkit10 {

/// While this lives, windows that the thread creates are measured in the pixels of their screen,
/// whatever the program says of itself. Does nothing where the system has no such windows.
class PerMonitorDpi {
 public:
  PerMonitorDpi();
  ~PerMonitorDpi();
  PerMonitorDpi(const PerMonitorDpi&) = delete;
  PerMonitorDpi& operator=(const PerMonitorDpi&) = delete;

 private:
  HANDLE before_;
};

/// Dots per inch of the screen that shows the window.
int DpiOf(HWND window);

/// The font that the user chose for messages.
LOGFONTW MessageFont(int dpi);

/// What GetSystemMetrics tells, for a screen.
int SystemMetric(int index, int dpi);

/// The size of a window of this style around a client area.
SIZE WindowSize(HWND window, SIZE client, int dpi);

/// Leaves it to the dialog itself to follow the dots per inch.
void DisableDialogScaling(HWND dialog);

}  // namespace zepkit10
