#include "expr/evaluation.h"

#include <vector>

#include "expr/arithmetic.h"
#include "expr/float_environment.h"
#include "expr/near_stack.h"
#include "expr/operations.h"
#include "frame/errors.h"

namespace zepkit10 {
namespace {

using enum ZepMathOperation;

constexpr std::size_t kNearOperands = 32;
constexpr std::size_t kNearTerms = 8;

}  // namespace

/// One evaluation: the terms being evaluated, the innermost last, and their operands.
class Evaluation {
 public:
  ~Evaluation() {
    while (!frames_.Empty()) frames_.Pop().evaluated->in_progress_ = false;
  }

  double Run(Evaluable& root) {
    Enter(root);
    while (!frames_.Empty()) Continue();
    return operands_.Pop();
  }

 private:
  struct Frame {
    Evaluable* evaluated;
    std::size_t left;  // nodes still to visit
  };

  void Enter(Evaluable& evaluated) {
    if (evaluated.in_progress_) {
      RaiseRuntimeError(ZepVbErrors3To98::zepVbErrOutOfStackSpace, u"Expression");
    }
    frames_.Push({&evaluated, evaluated.Term().Nodes().size()});
    evaluated.in_progress_ = true;
  }

  /// Goes on with the innermost term until it is done or needs the value of another one.
  void Continue() {
    Frame& frame = frames_.Top();
    const std::vector<Term::Node>& nodes = frame.evaluated->Term().Nodes();
    while (frame.left > 0) {
      const Term::Node& node = nodes[--frame.left];
      if (node.operation == zepMONumber) {
        operands_.Push(node.number);
      } else if (node.operation == zepMOGetVar) {
        Evaluable& variable = frame.evaluated->VariableNamed(node.name);
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
    frame.evaluated->in_progress_ = false;
    frames_.Pop();
  }

  NearStack<Frame, kNearTerms> frames_;
  NearStack<double, kNearOperands> operands_;
};

double Evaluate(Evaluable& root) {
  if (const double* number = root.Term().Constant()) return *number;
  const DefaultFloatEnvironment environment;
  return Evaluation().Run(root);
}

}  // namespace zepkit10
