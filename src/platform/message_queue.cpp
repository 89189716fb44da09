#include "platform/message_queue.h"

#include <windows.h>

namespace zepkit10 {
namespace {

constexpr int kMost = 1000;  // a handler that posts again must not keep its caller

}  // namespace

void ProcessMessages() {
  if (HIWORD(GetQueueStatus(QS_ALLINPUT)) == 0) return;
  MSG message;
  for (int i = 0; i < kMost && PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE); ++i) {
    if (message.message == WM_QUIT) {
      PostQuitMessage(static_cast<int>(message.wParam));
      return;
    }
    TranslateMessage(&message);
    DispatchMessageW(&message);
  }
}

}  // namespace zepkit10
