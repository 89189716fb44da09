#include "unit/chart/naive_ticks.h"

namespace zepkit10::naive {

std::set<int> VisiblePixels(const std::vector<float>& ticks, const Axis& axis) {
  std::set<int> pixels;
  for (const float tick : ticks) {
    if (const auto pixel = axis.ToVisiblePixel(tick)) pixels.insert(*pixel);
  }
  return pixels;
}

std::optional<std::set<int>> TickPixels(float end, float step, const Axis& axis, int rounds) {
  std::vector<float> ticks;
  float counter = 0;
  while (step < 0 ? counter >= end : counter <= end) {
    if (rounds-- == 0) return {};
    ticks.push_back(counter);
    const float next = counter + step;
    if (next == counter) break;
    counter = next;
  }
  return VisiblePixels(ticks, axis);
}

}  // namespace zepkit10::naive
