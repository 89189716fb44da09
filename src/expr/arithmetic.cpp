#include "expr/arithmetic.h"

#include <cmath>

#include "frame/errors.h"

namespace zepkit10 {
namespace {

using enum ZepMathOperation;
using enum ZepVbErrors3To98;

ZepVbErrors3To98 FaultOf(ZepMathOperation operation, double left, double right, double result) {
  if (operation == zepMODivi && right == 0) return zepVbErrDivisionByZero;
  // Infinite like an overflow, but not for the size of the operands.
  const bool is_pole = operation == zepMOLog || (operation == zepMORaise && left == 0);
  return is_pole || std::isnan(result) ? zepVbErrBadCall : zepVbErrOverflow;
}

}  // namespace

void RaiseFault(ZepMathOperation operation, double left, double right, double result) {
  RaiseRuntimeError(FaultOf(operation, left, right, result), u"Expression");
}

}  // namespace zepkit10
