#pragma once

#include <vector>

#include "chart/coordinates.h"

namespace zepkit10 {

/// Where the counting loop "from 0 to `end` with step `step`", counted in single precision, sets
/// tick marks on an axis: at most one for each visible pixel, found in time proportional to the
/// visible pixels. A loop with a negative step runs while its counter is not below the end, any
/// other while it is not above; a counter that no longer moves ends its loop.
std::vector<float> PlanTicks(float end, float step, const Axis& axis);

}  // namespace zepkit10
