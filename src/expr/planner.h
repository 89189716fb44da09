#pragma once

#include <cstdint>
#include <memory>

#include "expr/plan.h"

namespace zepkit10 {

class Evaluable;

/// Plans an evaluable's term, and those that its variables stand for. Null for a term that cannot
/// be planned: one with a variable that is not there yet, with a chain of variables that leads back
/// to itself or is long, with a node of no kind, or too large for the memory. `nesting` tells how
/// many plans are being made around this one, and `now` the meaning that they are made in.
std::unique_ptr<const Plan> MakePlan(Evaluable& root, int nesting, std::uint64_t now) noexcept;

}  // namespace zepkit10
