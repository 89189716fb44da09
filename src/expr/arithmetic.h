#pragma once

#include "enums.h"

namespace zepkit10 {

/// The result of one operation on finite operands; `right` only counts for binary operations. Raises
/// error 11 for a division by zero, 6 for an overflow, 5 for any other invalid operation.
double Calculate(ZepMathOperation operation, double left, double right);

}  // namespace zepkit10
