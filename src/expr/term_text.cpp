#include <vector>

#include "expr/float_environment.h"
#include "expr/operations.h"
#include "expr/term.h"
#include "frame/errors.h"

namespace zepkit10 {

// The nodes stand in the order in which their texts begin, but for what goes between or behind
// operands: that waits on a stack until the operands before it are written.
std::u16string TermText(const Term& term, const NumberFormat& numbers) {
  using enum ZepMathOperation;
  const DefaultFloatEnvironment environment;
  std::u16string text;
  struct Pending {
    std::u16string_view infix;  // written when its left operand is complete
    int operands;               // still to come
  };
  std::vector<Pending> pending;
  for (const Term::Node& node : term.Nodes()) {
    const int operands = OperandCount(node.operation);
    if (operands > 0) {
      const std::u16string_view symbol = *TextOf(node.operation);
      if (operands == 1) text += symbol;
      pending.push_back({operands == 2 || node.operation == zepMOAmount ? symbol : u"", operands});
      continue;
    }
    if (node.operation == zepMOGetVar) {
      text += node.name;
    } else if (node.operation == zepMONumber) {
      text += NumberToText(node.number, numbers);
    } else {
      RaiseZepError(ZepErrors::zepErrUnexpected, u"Expression");
    }
    while (!pending.empty()) {
      Pending& last = pending.back();
      if (--last.operands > 0) {
        text += last.infix;
        last.infix = {};
        break;
      }
      text += last.infix;  // a closing value dash
      pending.pop_back();
    }
  }
  return text;
}

}  // namespace zepkit10
