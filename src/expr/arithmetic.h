#pragma once

#include <cmath>

#include "enums.h"

namespace zepkit10 {

/// `left` raised to `right`. Squares are rounded correctly, which not every platform's pow does.
inline double Power(double left, double right) {
  return right == 2 ? left * left : std::pow(left, right);
}

/// Raises why an operation on finite operands gave no number: error 11 for a division by zero (0 to
/// a negative power is one), 6 for an overflow, 5 for any other invalid operation (a negative root,
/// a logarithm of what is not positive, a negative base with a fraction as its exponent).
[[noreturn]] void RaiseFault(ZepMathOperation operation, double left, double right, double result);

}  // namespace zepkit10
