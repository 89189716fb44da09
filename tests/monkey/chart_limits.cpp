#include "monkey/chart_limits.h"

#include <wrl/client.h>

#include "Zepkit10.h"

namespace monkey {
namespace {

constexpr float kLarge = 200, kSmall = 40;  // pixels
constexpr int kMostLooks = 3;               // of one drawing, a hundred samples apart

}  // namespace

void LimitChart(IDispatch* object) {
  Microsoft::WRL::ComPtr<_Chart> chart;
  if (FAILED(object->QueryInterface(IID_PPV_ARGS(&chart)))) return;
  float width = 0, height = 0;
  if (FAILED(chart->get_PictureWidth(&width)) || FAILED(chart->get_PictureHeight(&height))) return;
  if (width > kLarge) chart->put_PictureWidth(kSmall);
  if (height > kLarge) chart->put_PictureHeight(kSmall);
}

DrawingLimit::DrawingLimit(IDispatch* object) : object_(object) { innermost_ = this; }

DrawingLimit::~DrawingLimit() { innermost_ = outer_; }

DWORD WINAPI QueueWatch::Look(UINT flags) {
  for (DrawingLimit* each = DrawingLimit::innermost_; each; each = each->outer_) {
    Microsoft::WRL::ComPtr<_Chart> chart;
    if (++each->looks_ < kMostLooks) continue;
    if (SUCCEEDED(each->object_->QueryInterface(IID_PPV_ARGS(&chart)))) chart->AbortDraw();
  }
  return ImportHook<&__imp_GetQueueStatus>::kSystem(flags);
}

}  // namespace monkey
