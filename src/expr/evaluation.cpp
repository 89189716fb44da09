#include "expr/evaluation.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <vector>

#include "expr/arithmetic.h"
#include "expr/near_stack.h"
#include "expr/planner.h"
#include "frame/errors.h"

namespace zepkit10 {
namespace {

using enum ZepMathOperation;

constexpr std::size_t kNearOperands = 64;
constexpr std::size_t kNearTerms = 8;

/// Operands that wait for their operation. Room is made once for a whole term.
class OperandStack {
 public:
  /// Makes room for `more` operands on the `top` of the stack, which moves with it.
  void Reserve(std::size_t more, double*& top) {
    const std::size_t used = static_cast<std::size_t>(top - base_);
    if (used + more <= capacity_) return;
    std::vector<double> larger(std::max(used + more, 2 * capacity_));
    std::copy(base_, top, larger.begin());
    far_.swap(larger);
    base_ = far_.data();
    capacity_ = far_.size();
    top = base_ + used;
  }

  double* base() { return base_; }

 private:
  double near_[kNearOperands];
  std::vector<double> far_;
  double* base_ = near_;
  std::size_t capacity_ = kNearOperands;
};

}  // namespace

/// One evaluation: the terms being evaluated, the innermost last, and their operands.
class Evaluation {
 public:
  ~Evaluation() {
    while (!frames_.Empty()) frames_.Pop().evaluated->in_progress_ = false;
  }

  double Run(Evaluable& root);

 private:
  struct Frame {
    Evaluable* evaluated;
    const Term::Node* first;
    const Term::Node* next;  // behind the node to visit next
  };

  void Enter(Evaluable& evaluated) {
    if (evaluated.in_progress_) {
      RaiseRuntimeError(ZepVbErrors3To98::zepVbErrOutOfStackSpace, u"Expression");
    }
    const Term& term = evaluated.Term();
    operands_.Reserve(term.StackDepth(), top_);
    const Term::Node* first = term.Nodes().data();
    frames_.Push({&evaluated, first, first + term.Nodes().size()});
    evaluated.in_progress_ = true;
  }

  bool Continue();

  OperandStack operands_;
  double* top_ = operands_.base();
  double value_ = 0;  // the last operand, which is not on the stack
  NearStack<Frame, kNearTerms> frames_;
};

double Evaluation::Run(Evaluable& root) {
  Enter(root);
  for (;;) {
    if (!Continue()) continue;
    frames_.Pop().evaluated->in_progress_ = false;
    if (frames_.Empty()) return value_;
  }
}

/// Goes on with the innermost term. False if it first needs the value of another one, entered here.
/// Each result is looked at when it is there: a fault must be raised before the variables left of
/// it are asked for.
bool Evaluation::Continue() {
  Frame& frame = frames_.Top();
  const Term::Node* const first = frame.first;
  const Term::Node* node = frame.next;
  double* top = top_;
  double value = value_;
  while (node != first) {
    --node;
    double left = value, right = 0;
    switch (node->operation) {
      case zepMONumber:
        *top++ = value;
        value = node->number;
        continue;
      case zepMOGetVar: {
        Evaluable& variable = frame.evaluated->VariableNamed(node->name);
        if (const double* number = variable.Term().Constant()) {
          *top++ = value;
          value = *number;
          continue;
        }
        frame.next = node;
        top_ = top;
        value_ = value;
        Enter(variable);
        return false;
      }
      case zepMOAmount:
        value = std::fabs(left);
        break;
      case zepMOAdd:
        value = left + (right = *--top);
        break;
      case zepMOSub:
        value = left - (right = *--top);
        break;
      case zepMOMulti:
        value = left * (right = *--top);
        break;
      case zepMODivi:
        value = left / (right = *--top);
        break;
      case zepMORaise:
        value = Power(left, right = *--top);
        break;
      case zepMOSqr:
        value = std::sqrt(left);
        break;
      case zepMOExp:
        value = std::exp(left);
        break;
      case zepMOLog:
        value = std::log(left);
        break;
      case zepMOSin:
        value = std::sin(left);
        break;
      case zepMOCos:
        value = std::cos(left);
        break;
      case zepMOTan:
        value = std::tan(left);
        break;
      case zepMOAtn:
        value = std::atan(left);
        break;
      default:
        RaiseZepError(ZepErrors::zepErrUnexpected, u"Expression");
    }
    if (!std::isfinite(value)) [[unlikely]]
      RaiseFault(node->operation, left, right, value);
  }
  top_ = top;
  value_ = value;
  return true;
}

const Plan* Evaluable::PlanFor(int nesting, std::uint64_t now) {
  if (planned_in_ != now) {
    // Set first: a variable that leads back here finds that there is no plan.
    planned_in_ = now;
    plan_ = nullptr;
    plan_ = MakePlan(*this, nesting, now);
  }
  return plan_.get();
}

double Evaluable::EvaluateInOrder() {
  if (const double* number = Term().Constant()) return *number;
  const DefaultFloatEnvironment environment;
  try {
    Evaluation evaluation;  // not Evaluation(), which would clear its stacks first
    return evaluation.Run(*this);
  } catch (Failure& failure) {
    // Looking a variable up can make it, and fail with an error of the runtime.
    if (failure.number > 0) failure.source = u"Zepkit10.Expression";
    throw;
  } catch (const std::bad_alloc&) {
    RaiseRuntimeError(ZepVbErrors3To98::zepVbErrOutOfMemory, u"Expression");
  }
}

}  // namespace zepkit10
