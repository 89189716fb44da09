#include "monkey/chart_limits.h"

#include <wrl/client.h>

#include "Zepkit10.h"
#include "monkey/listener.h"

namespace monkey {
namespace {

constexpr float kLarge = 200, kSmall = 40;  // pixels
constexpr int kPointsOfDrawing = 50;

}  // namespace

void LimitChart(IDispatch* object) {
  Microsoft::WRL::ComPtr<_Chart> chart;
  if (FAILED(object->QueryInterface(IID_PPV_ARGS(&chart)))) return;
  float width = 0, height = 0;
  if (FAILED(chart->get_PictureWidth(&width)) || FAILED(chart->get_PictureHeight(&height))) return;
  if (width > kLarge) chart->put_PictureWidth(kSmall);
  if (height > kLarge) chart->put_PictureHeight(kSmall);
}

void LimitDrawing(IDispatch* object, const Class& its_class,
                  std::vector<Population::Connection>& connections) {
  if (its_class.iid != __uuidof(_Chart)) return;
  LimitChart(object);
  Listener::Connect(
      object, its_class,
      [points = 0](Listener& listener, DISPID event, DISPPARAMS&) mutable {
        constexpr DISPID kNewPoint = 2;
        if (event == kNewPoint && ++points % kPointsOfDrawing == 0) {
          static_cast<_Chart*>(listener.Source())->AbortDraw();
        }
        return S_OK;
      },
      connections);
}

}  // namespace monkey
