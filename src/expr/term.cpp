#include "expr/term.h"

#include <algorithm>

#include "expr/operations.h"

namespace zepkit10 {
using enum ZepMathOperation;

Term::Term(std::vector<Node> nodes)
    : nodes_(std::move(nodes)),
      is_constant_(nodes_.front().operation == zepMONumber),
      constant_(nodes_.front().number) {
  std::size_t depth = 0;
  for (auto node = nodes_.crbegin(); node != nodes_.crend(); ++node) {
    depth = depth + 1 - static_cast<std::size_t>(OperandCount(node->operation));
    stack_depth_ = std::max(stack_depth_, depth);
  }
}

void Term::BecomeNumber(double number) {
  const bool negative = std::bit_cast<std::uint64_t>(number) > kSign;
  nodes_.assign(negative ? 3 : 1, Node{});
  if (negative) nodes_[0] = {zepMOSub, 0, 0};
  stack_depth_ = negative ? 2 : 1;
  is_constant_ = true;
  SetNumber(number);
}

}  // namespace zepkit10
