#include "expr/arithmetic.h"

#include <cmath>

#include "frame/errors.h"

namespace zepkit10 {
namespace {

using enum ZepMathOperation;
using enum ZepVbErrors3To98;

double Apply(ZepMathOperation operation, double left, double right) {
  switch (operation) {
    case zepMOAmount: return std::fabs(left);
    case zepMOAdd: return left + right;
    case zepMOSub: return left - right;
    case zepMOMulti: return left * right;
    case zepMODivi: return left / right;
    case zepMORaise: return std::pow(left, right);
    case zepMOSqr: return std::sqrt(left);
    case zepMOExp: return std::exp(left);
    case zepMOLog: return std::log(left);
    case zepMOSin: return std::sin(left);
    case zepMOCos: return std::cos(left);
    case zepMOTan: return std::tan(left);
    case zepMOAtn: return std::atan(left);
    default: RaiseZepError(ZepErrors::zepErrUnexpected, u"Expression");
  }
}

/// Why an operation on finite operands has no finite result.
ZepVbErrors3To98 FaultOf(ZepMathOperation operation, double left, double right, double result) {
  if (operation == zepMODivi && right == 0) return zepVbErrDivisionByZero;
  if (operation == zepMORaise && left == 0) return zepVbErrDivisionByZero;  // 0^-1 is 1/0
  if (operation == zepMOLog || std::isnan(result)) return zepVbErrBadCall;
  return zepVbErrOverflow;
}

}  // namespace

double Calculate(ZepMathOperation operation, double left, double right) {
  const double result = Apply(operation, left, right);
  if (!std::isfinite(result)) {
    RaiseRuntimeError(FaultOf(operation, left, right, result), u"Expression");
  }
  return result;
}

}  // namespace zepkit10
