#include "expr/evaluation.h"

#include <utility>
#include <vector>

#include "expr/arithmetic.h"
#include "expr/float_environment.h"
#include "expr/operations.h"
#include "frame/errors.h"

namespace zepkit10 {
namespace {

using enum ZepMathOperation;

/// Operands waiting for their operator. The first ones cost no allocation.
class OperandStack {
 public:
  void Push(double operand) {
    if (count_ < std::size(near_)) {
      near_[count_++] = operand;
    } else {
      far_.push_back(operand);
    }
  }
  double Pop() {
    if (far_.empty()) return near_[--count_];
    const double operand = far_.back();
    far_.pop_back();
    return operand;
  }

 private:
  std::size_t count_ = 0;
  double near_[64];
  std::vector<double> far_;
};

}  // namespace

/// One evaluation: the terms being evaluated, the innermost last, and their operands.
class Evaluation {
 public:
  ~Evaluation() {
    for (const Frame& frame : frames_) frame.evaluated.in_progress_ = false;
  }

  double Run(Evaluable& root) {
    Enter(root);
    while (!frames_.empty()) Continue();
    return operands_.Pop();
  }

 private:
  struct Frame {
    Evaluable& evaluated;
    std::size_t left;  // nodes still to visit
  };

  void Enter(Evaluable& evaluated) {
    if (evaluated.in_progress_) {
      RaiseRuntimeError(ZepVbErrors3To98::zepVbErrOutOfStackSpace, u"Expression");
    }
    frames_.push_back({evaluated, evaluated.Term().Nodes().size()});
    evaluated.in_progress_ = true;
  }

  /// Goes on with the innermost term until it is done or needs the value of another one.
  void Continue() {
    Frame& frame = frames_.back();
    const std::vector<Term::Node>& nodes = frame.evaluated.Term().Nodes();
    while (frame.left > 0) {
      const Term::Node& node = nodes[--frame.left];
      if (node.operation == zepMONumber) {
        operands_.Push(node.number);
      } else if (node.operation == zepMOGetVar) {
        Evaluable& variable = frame.evaluated.VariableNamed(node.name);
        if (const double* number = variable.Term().Constant()) {
          operands_.Push(*number);
        } else {
          return Enter(variable);
        }
      } else {
        const double left = operands_.Pop();
        const double right = IsBinary(node.operation) ? operands_.Pop() : 0;
        operands_.Push(Calculate(node.operation, left, right));
      }
    }
    frame.evaluated.in_progress_ = false;
    frames_.pop_back();
  }

  std::vector<Frame> frames_;
  OperandStack operands_;
};

double Evaluate(Evaluable& root) {
  if (const double* number = root.Term().Constant()) return *number;
  const DefaultFloatEnvironment environment;
  return Evaluation().Run(root);
}

}  // namespace zepkit10
