#pragma once

#include <cmath>
#include <limits>

#include "expr/arithmetic.h"
#include "expr/instruction.h"

// The functions of plans. None loses a value that is not finite: where the mathematical one would
// make a finite number of it, as a division by it does, these make NaN.

namespace zepkit10 {

inline constexpr double kNoValue = std::numeric_limits<double>::quiet_NaN();

inline double PlannedPower(double left, double right) {
  return std::isfinite(left) && std::isfinite(right) ? Power(left, right) : kNoValue;
}

using PlannedFunction = double (*)(double);

/// A function by its code, null for a code that is none.
constexpr PlannedFunction PlannedFunctionOf(ZepMathOperation function) {
  using enum ZepMathOperation;
  switch (function) {
    case zepMOAmount:
      return [](double value) { return std::fabs(value); };
    case zepMOSqr:
      return [](double value) { return std::sqrt(value); };
    case zepMOExp:
      return [](double value) { return std::isfinite(value) ? std::exp(value) : kNoValue; };
    case zepMOLog:
      return [](double value) { return std::log(value); };
    case zepMOSin:
      return [](double value) { return std::sin(value); };
    case zepMOCos:
      return [](double value) { return std::cos(value); };
    case zepMOTan:
      return [](double value) { return std::tan(value); };
    case zepMOAtn:
      return [](double value) { return std::isfinite(value) ? std::atan(value) : kNoValue; };
    default:
      return nullptr;
  }
}

}  // namespace zepkit10
