#include "platform/dpi.h"

namespace zepkit10 {
namespace {

/// A function that younger systems have; null where there is none.
template <class Function>
Function* FindInUser32(const char* name) {
  const HMODULE user32 = GetModuleHandleW(L"user32.dll");
  return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(user32, name)));
}

HANDLE SetThreadAwareness(HANDLE context) {
  static const auto set = FindInUser32<HANDLE WINAPI(HANDLE)>("SetThreadDpiAwarenessContext");
  return set ? set(context) : nullptr;
}

int SystemDpi() {
  const HDC screen = GetDC(nullptr);
  const int dpi = GetDeviceCaps(screen, LOGPIXELSY);
  ReleaseDC(nullptr, screen);
  return dpi > 0 ? dpi : USER_DEFAULT_SCREEN_DPI;
}

}  // namespace

PerMonitorDpi::PerMonitorDpi() {
  const auto per_monitor = reinterpret_cast<HANDLE>(LONG_PTR{-3});
  const auto per_monitor_v2 = reinterpret_cast<HANDLE>(LONG_PTR{-4});
  before_ = SetThreadAwareness(per_monitor_v2);
  if (!before_) before_ = SetThreadAwareness(per_monitor);
}

PerMonitorDpi::~PerMonitorDpi() {
  if (before_) SetThreadAwareness(before_);
}

int DpiOf(HWND window) {
  static const auto get = FindInUser32<UINT WINAPI(HWND)>("GetDpiForWindow");
  const int dpi = get ? static_cast<int>(get(window)) : 0;
  return dpi > 0 ? dpi : SystemDpi();
}

LOGFONTW MessageFont(int dpi) {
  static const auto get =
      FindInUser32<BOOL WINAPI(UINT, UINT, void*, UINT, UINT)>("SystemParametersInfoForDpi");
  NONCLIENTMETRICSW metrics{};
  metrics.cbSize = sizeof metrics;
  if (get && get(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0, static_cast<UINT>(dpi))) {
    return metrics.lfMessageFont;
  }
  SystemParametersInfoW(SPI_GETNONCLIENTMETRICS, sizeof metrics, &metrics, 0);
  metrics.lfMessageFont.lfHeight = MulDiv(metrics.lfMessageFont.lfHeight, dpi, SystemDpi());
  return metrics.lfMessageFont;
}

int SystemMetric(int index, int dpi) {
  static const auto get = FindInUser32<int WINAPI(int, UINT)>("GetSystemMetricsForDpi");
  return get ? get(index, static_cast<UINT>(dpi)) : GetSystemMetrics(index);
}

SIZE WindowSize(HWND window, SIZE client, int dpi) {
  static const auto adjust =
      FindInUser32<BOOL WINAPI(RECT*, DWORD, BOOL, DWORD, UINT)>("AdjustWindowRectExForDpi");
  RECT area{0, 0, client.cx, client.cy};
  const auto style = static_cast<DWORD>(GetWindowLongW(window, GWL_STYLE));
  const auto extended = static_cast<DWORD>(GetWindowLongW(window, GWL_EXSTYLE));
  if (adjust) {
    adjust(&area, style, FALSE, extended, static_cast<UINT>(dpi));
  } else {
    AdjustWindowRectEx(&area, style, FALSE, extended);
  }
  return {area.right - area.left, area.bottom - area.top};
}

void DisableDialogScaling(HWND dialog) {
  static const auto set = FindInUser32<BOOL WINAPI(HWND, int, int)>("SetDialogDpiChangeBehavior");
  constexpr int kDisableAll = 1;
  if (set) set(dialog, kDisableAll, kDisableAll);
}

}  // namespace zepkit10
