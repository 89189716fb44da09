#include "expr/term.h"

#include <algorithm>

#include "expr/operations.h"

namespace zepkit10 {
using enum ZepMathOperation;

Term::Term(std::vector<Node> nodes)
    : nodes_(std::move(nodes)),
      has_nodes_(true),
      is_constant_(nodes_.front().operation == zepMONumber),
      constant_(nodes_.front().number) {
  std::size_t depth = 0;
  for (auto node = nodes_.crbegin(); node != nodes_.crend(); ++node) {
    depth = depth + 1 - static_cast<std::size_t>(OperandCount(node->operation));
    stack_depth_ = std::max(stack_depth_, depth);
  }
}

void Term::BecomeNumber() noexcept {
  nodes_ = {};
  is_constant_ = true;
}

void Term::MakeNodes() const {
  const bool negative = constant_ < 0;
  stack_depth_ = negative ? 2 : 1;
  if (negative) {
    nodes_ = {{zepMOSub, 0, 0}, {zepMONumber, 0, 0}, {zepMONumber, 0, -constant_}};
  } else {
    nodes_ = {{zepMONumber, 0, constant_}};
  }
  has_nodes_ = true;
}

}  // namespace zepkit10
