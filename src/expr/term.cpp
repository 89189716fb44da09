#include "expr/term.h"

#include <algorithm>

#include "expr/float_environment.h"
#include "expr/operations.h"
#include "expr/tokens.h"
#include "frame/errors.h"

namespace zepkit10 {
namespace {

using enum ZepMathOperation;

[[noreturn]] void Raise(ZepErrors number) { RaiseZepError(number, u"Expression"); }

/// Between two tokens without an operator a multiplication may be understood.
bool ImpliesMultiplication(const Token& left, const Token& right) {
  const bool value =
      left.operation == zepMOGetVar || left.operation == zepMONumber || left.operation == zepMOParC;
  const bool followed = right.operation == zepMOGetVar || right.operation == zepMONumber ||
                        right.operation == zepMOParO || IsFunction(right.operation);
  const bool numbers = left.operation == zepMONumber && right.operation == zepMONumber;
  return value && followed && !numbers;
}

/// Parses with an explicit stack of levels: a level is the content of a bracket or value-dash
/// group, the whole term first. On each level operators join operands from left to right by
/// priority, which gives the tree that splitting at the rightmost operator of the lowest priority
/// would give.
class Parser {
 public:
  Parser(std::u16string_view text, const NumberFormat& numbers)
      : numbers_(numbers), tokenizer_(text, numbers) {
    constexpr std::size_t kUsual = 16;
    tokens_.reserve(kUsual);
    levels_.reserve(kUsual);
    operators_.reserve(kUsual);
    values_.reserve(kUsual);
    tree_.reserve(text.size() + 1);
  }

  std::vector<Term::Node> Parse() {
    Enter(0, tokenizer_.text().size(), {});
    while (!levels_.empty()) TakeOperand();
    return InOrderOfText();
  }

 private:
  using Index = std::uint32_t;

  struct Tree {
    Term::Node node;
    Index left = 0, right = 0;
  };
  /// What becomes of a value: up to one value dash and one function around it.
  struct Wrapping {
    bool dashes = false;
    ZepMathOperation function = zepMONumber;  // zepMONumber: none
  };
  struct Level {
    std::size_t first, next;  // of its tokens in tokens_
    std::size_t operators;    // how many operators were open before
    Wrapping wrapping;        // of the level's value
  };

  void Enter(std::size_t begin, std::size_t end, Wrapping wrapping);
  void TakeOperand();
  void TakeToken(const Token& token, Wrapping wrapping);
  void Finish(Term::Node leaf, Wrapping wrapping);
  void Wrap(Wrapping wrapping);
  void Join(ZepMathPriority at_least, std::size_t floor);
  void Push(Term::Node node, Index left = 0, Index right = 0);
  std::vector<Term::Node> InOrderOfText() const;

  const NumberFormat& numbers_;
  const Tokenizer tokenizer_;
  std::vector<Token> tokens_;  // of the levels being parsed
  std::vector<Level> levels_;
  std::vector<ZepMathOperation> operators_;  // waiting for their right operand
  std::vector<Index> values_;                // waiting for their operator
  std::vector<Tree> tree_;
};

void Parser::Enter(std::size_t begin, std::size_t end, Wrapping wrapping) {
  const std::u16string_view text = tokenizer_.text();
  for (;;) {
    while (begin < end && text[begin] == u' ') ++begin;
    while (begin < end && text[end - 1] == u' ') --end;
    if (begin == end || text[begin] != u'(') break;
    const std::size_t close = tokenizer_.Closing(begin, end);
    if (close == end) Raise(ZepErrors::zepErrBadParam);
    if (close + 1 != end) break;
    ++begin, --end;
  }
  levels_.push_back({tokens_.size(), tokens_.size(), operators_.size(), wrapping});
  for (std::size_t position = begin; position < end; position = tokens_.back().end()) {
    try {
      tokens_.push_back(tokenizer_.At(position, end));
    } catch (const Failure&) {
      Raise(position == begin ? ZepErrors::zepErrBadPropValue : ZepErrors::zepErrBadCall);
    }
  }
}

// Takes one operand of the innermost level; the operator behind it, given or understood, is taken
// when the operand's value is there.
void Parser::TakeOperand() {
  Level& level = levels_.back();
  const std::size_t first = level.next;
  std::size_t last = first;
  while (last < tokens_.size() && !IsBinary(tokens_[last].operation) &&
         (last == first || !ImpliesMultiplication(tokens_[last - 1], tokens_[last]))) {
    ++last;
  }
  level.next = last;
  if (first == last) return Finish({}, {});
  const bool function = IsFunction(tokens_[first].operation);
  const Wrapping wrapping{false, function ? tokens_[first].operation : zepMONumber};
  const std::size_t operand = function ? first + 1 : first;
  if (operand == last) return Finish({}, wrapping);
  if (last - operand > 1 || IsFunction(tokens_[operand].operation)) {
    Raise(ZepErrors::zepErrExtractTerm);
  }
  TakeToken(tokens_[operand], wrapping);
}

void Parser::TakeToken(const Token& token, Wrapping wrapping) {
  const std::u16string_view text = tokenizer_.text().substr(token.begin, token.length);
  if (token.operation == zepMOParO || token.operation == zepMOAmount) {
    wrapping.dashes = token.operation == zepMOAmount;
    Enter(token.begin + 1, token.end() - 1, wrapping);
  } else if (token.operation == zepMOGetVar) {
    Finish({zepMOGetVar, text[0], 0}, wrapping);
  } else {
    const auto number =
        token.operation == zepMONumber ? TextToNumber(text, numbers_) : std::optional<double>();
    if (!number) Raise(ZepErrors::zepErrExtractTerm);
    Finish({zepMONumber, 0, *number}, wrapping);
  }
}

void Parser::Finish(Term::Node leaf, Wrapping wrapping) {
  Push(leaf);
  Wrap(wrapping);
  // The value may complete its level, and that the one around it.
  for (;;) {
    Level& level = levels_.back();
    if (level.next < tokens_.size()) {
      const Token& behind = tokens_[level.next];
      const bool given = IsBinary(behind.operation);
      const ZepMathOperation operation = given ? behind.operation : zepMOMulti;
      if (given) ++level.next;
      Join(*PriorityOf(operation), level.operators);
      operators_.push_back(operation);
      return;
    }
    Join(ZepMathPriority::zepMPLowest, level.operators);
    const Wrapping around = level.wrapping;
    tokens_.resize(level.first, Token{});
    levels_.pop_back();
    Wrap(around);
    if (levels_.empty()) return;
  }
}

void Parser::Wrap(Wrapping wrapping) {
  for (const auto operation : {wrapping.dashes ? zepMOAmount : zepMONumber, wrapping.function}) {
    if (operation == zepMONumber) continue;
    const Index operand = values_.back();
    values_.pop_back();
    Push({operation, 0, 0}, operand);
  }
}

/// Joins values by the open operators of the level, from the last back, that have at least a
/// priority.
void Parser::Join(ZepMathPriority at_least, std::size_t floor) {
  while (operators_.size() > floor && *PriorityOf(operators_.back()) >= at_least) {
    const Index right = values_.back();
    values_.pop_back();
    const Index left = values_.back();
    values_.pop_back();
    Push({operators_.back(), 0, 0}, left, right);
    operators_.pop_back();
  }
}

void Parser::Push(Term::Node node, Index left, Index right) {
  values_.push_back(static_cast<Index>(tree_.size()));
  tree_.push_back({node, left, right});
}

std::vector<Term::Node> Parser::InOrderOfText() const {
  std::vector<Term::Node> nodes;
  nodes.reserve(tree_.size());
  std::vector<Index> open{values_.back()};
  while (!open.empty()) {
    const Tree& next = tree_[open.back()];
    open.pop_back();
    nodes.push_back(next.node);
    const int operands = OperandCount(next.node.operation);
    if (operands == 2) open.push_back(next.right);
    if (operands > 0) open.push_back(next.left);
  }
  return nodes;
}

}  // namespace

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

Term ParseTerm(std::u16string_view text, const NumberFormat& numbers) {
  const DefaultFloatEnvironment environment;  // numbers are rounded in it
  return Term(Parser(text, numbers).Parse());
}

}  // namespace zepkit10
