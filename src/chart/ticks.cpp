#include "chart/ticks.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace zepkit10 {
namespace {

/// A counter in single precision that starts at 0 and goes up by a positive step. Between two
/// powers of two each step adds the same rounded amount, so that many steps can be taken at once.
class Counter {
 public:
  explicit Counter(float step) : step_(step) {}

  float Value() const { return value_; }

  /// One step. False where the counter no longer moves.
  bool Step() {
    const float before = std::exchange(value_, value_ + step_);
    return value_ > before;
  }

  /// Steps as long as the counter moves and stays at or below `target`.
  void AdvanceWithin(double target) {
    for (float next = value_ + step_; next > value_ && next <= target; next = value_ + step_) {
      const float before = std::exchange(value_, next);
      // Half a place is rounded to even: only after a step between the same powers of two does it
      // always go the same way.
      if (before == 0 || std::ilogb(before) != std::ilogb(value_)) continue;
      const double start = value_;
      const double amount = static_cast<double>(value_ + step_) - start;
      const double binade_end = std::ldexp(1.0, std::ilogb(value_) + 1);
      const double steps = std::floor((std::min(target, binade_end) - start) / amount) - 1;
      if (steps > 1 && std::isfinite(steps)) value_ = static_cast<float>(start + steps * amount);
    }
  }

 private:
  const float step_;
  float value_ = 0;
};

}  // namespace

std::vector<float> PlanTicks(float end, float step, const Axis& axis) {
  // Loops downwards are those upwards, mirrored.
  const float sign = step < 0 ? -1.0f : 1.0f;
  const double last = sign * end;
  if (last < 0 || std::isnan(end)) return {};
  const double bounds[] = {sign * axis.First(), sign * axis.Last()};
  const double visible_from = std::min(bounds[0], bounds[1]) - std::fabs(axis.ToUnits(1));
  const double visible_to =
      std::min(last, std::max(bounds[0], bounds[1]) + std::fabs(axis.ToUnits(1)));
  if (!axis.ToPixel(0)) return {};

  std::vector<float> ticks;
  Counter counter(std::fabs(step));
  if (visible_from > 0) counter.AdvanceWithin(visible_from);
  std::optional<int> painted;
  while (counter.Value() <= visible_to) {
    const float position = sign * counter.Value();
    if (const auto pixel = axis.ToVisiblePixel(position); pixel && pixel != painted) {
      painted = pixel;
      ticks.push_back(position);
    }
    // Within half a pixel lies no pixel but this one and that of the last step.
    const double half = counter.Value() + std::fabs(axis.ToUnits(0.5));
    if (!counter.Step()) break;
    counter.AdvanceWithin(std::min(half, visible_to));
  }
  return ticks;
}

}  // namespace zepkit10
