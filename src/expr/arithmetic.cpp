#include "expr/arithmetic.h"

#include <cmath>

#include "frame/errors.h"

namespace zepkit10 {
namespace {

using enum ZepMathOperation;
using enum ZepVbErrors3To98;

ZepVbErrors3To98 FaultOf(ZepMathOperation operation, double left, double right, double result) {
  if (operation == zepMODivi && right == 0) return zepVbErrDivisionByZero;
  if (operation == zepMORaise && left == 0) return zepVbErrDivisionByZero;  // 0^-1 is 1/0
  return operation == zepMOLog || std::isnan(result) ? zepVbErrBadCall : zepVbErrOverflow;
}

}  // namespace

void RaiseFault(ZepMathOperation operation, double left, double right, double result) {
  RaiseRuntimeError(FaultOf(operation, left, right, result), u"Expression");
}

}  // namespace zepkit10
