#pragma once

#include <windows.h>
#include <oaidl.h>

#include "com/import_hook.h"

DECLARE_IMPORT(GetQueueStatus, 4);

// A drawing takes as long as its chart is large and its functions have points: both are kept small.

namespace monkey {

/// Makes a chart small that has become large; leaves every other object alone.
void LimitChart(IDispatch* object);

/// Has a chart end each drawing that runs while this lives after it has looked at the message queue
/// some times. One whose step is lost in rounding would go on for ever.
class DrawingLimit {
 public:
  explicit DrawingLimit(IDispatch* object);
  ~DrawingLimit();
  DrawingLimit(const DrawingLimit&) = delete;
  DrawingLimit& operator=(const DrawingLimit&) = delete;

 private:
  friend class QueueWatch;
  static inline DrawingLimit* innermost_ = nullptr;

  IDispatch* const object_;
  DrawingLimit* const outer_ = innermost_;
  int looks_ = 0;
};

/// Sees drawings look at the message queue, as long as it lives.
class QueueWatch {
 private:
  static DWORD WINAPI Look(UINT flags);

  const ImportHook<&__imp_GetQueueStatus> hook_{Look};
};

}  // namespace monkey
