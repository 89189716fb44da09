#pragma once

#include <optional>
#include <set>
#include <vector>

#include "chart/coordinates.h"

namespace zepkit10::naive {

/// The pixels of an axis that tick marks at some positions set.
std::set<int> VisiblePixels(const std::vector<float>& ticks, const Axis& axis);

/// The pixels that the loop "from 0 to `end` with step `step`" sets as it stands, up to a number of
/// rounds; nothing where these are not enough.
std::optional<std::set<int>> TickPixels(float end, float step, const Axis& axis, int rounds);

}  // namespace zepkit10::naive
