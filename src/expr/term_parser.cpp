#include <cstdint>
#include <optional>
#include <vector>

#include "expr/float_environment.h"
#include "expr/operations.h"
#include "expr/term.h"
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
    tokens_.reserve(text.size());
    levels_.reserve(kUsual);
    operators_.reserve(kUsual);
    nodes_.reserve(text.size() + 1);
    sizes_.reserve(text.size() + 1);
  }

  std::vector<Term::Node> Parse() {
    Enter(0, static_cast<Position>(tokenizer_.text().size()), {});
    while (!levels_.empty()) TakeOperand();
    return InOrderOfText();
  }

 private:
  using Position = Tokenizer::Position;

  /// What becomes of a value: up to one value dash and one function around it.
  struct Wrapping {
    bool dashes = false;
    ZepMathOperation function = zepMONumber;  // zepMONumber: none
  };
  struct Level {
    std::uint32_t first, next;  // of its tokens in tokens_
    std::uint32_t operators;    // how many operators were open before
    Wrapping wrapping;          // of the level's value
  };

  void Enter(Position begin, Position end, Wrapping wrapping);
  void TakeOperand();
  void TakeToken(const Token& token, Wrapping wrapping);
  void Finish(Term::Node leaf, Wrapping wrapping);
  void Wrap(Wrapping wrapping);
  void Join(ZepMathPriority at_least, std::size_t floor);
  void Push(Term::Node node, std::uint32_t size) {
    nodes_.push_back(node);
    sizes_.push_back(size);
  }
  std::vector<Term::Node> InOrderOfText();

  const NumberFormat& numbers_;
  const Tokenizer tokenizer_;
  std::vector<Token> tokens_;  // of the levels being parsed
  std::vector<Level> levels_;
  std::vector<ZepMathOperation> operators_;  // waiting for their right operand
  std::vector<Term::Node> nodes_;            // each behind its left and then its right operand
  std::vector<std::uint32_t> sizes_;         // how many nodes each of them is with its operands
};

void Parser::Enter(Position begin, Position end, Wrapping wrapping) {
  const std::u16string_view text = tokenizer_.text();
  for (;;) {
    while (begin < end && text[begin] == u' ') ++begin;
    while (begin < end && text[end - 1] == u' ') --end;
    if (begin == end || text[begin] != u'(') break;
    const Position close = tokenizer_.Closing(begin, end);
    if (close == end) Raise(ZepErrors::zepErrBadParam);
    if (close + 1 != end) break;
    ++begin, --end;
  }
  const auto first = static_cast<std::uint32_t>(tokens_.size());
  levels_.push_back({first, first, static_cast<std::uint32_t>(operators_.size()), wrapping});
  Position position = begin;
  try {
    while (position < end) {
      tokenizer_.Read(position, end, tokens_.emplace_back());
      position = tokens_.back().end();
    }
  } catch (const Failure&) {
    Raise(position == begin ? ZepErrors::zepErrBadPropValue : ZepErrors::zepErrBadCall);
  }
}

// Takes one operand of the innermost level; the operator behind it, given or understood, is taken
// when the operand's value is there.
void Parser::TakeOperand() {
  Level& level = levels_.back();
  const std::uint32_t first = level.next;
  std::uint32_t last = first;
  while (last < tokens_.size() && !IsBinary(tokens_[last].operation) &&
         (last == first || !ImpliesMultiplication(tokens_[last - 1], tokens_[last]))) {
    ++last;
  }
  level.next = last;
  if (first == last) return Finish({}, {});
  const bool function = IsFunction(tokens_[first].operation);
  const Wrapping wrapping{false, function ? tokens_[first].operation : zepMONumber};
  const std::uint32_t operand = function ? first + 1 : first;
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
  Push(leaf, 1);
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
    if (operation != zepMONumber) Push({operation, 0, 0}, sizes_.back() + 1);
  }
}

/// Joins values by the open operators of the level, from the last back, that have at least a
/// priority.
void Parser::Join(ZepMathPriority at_least, std::size_t floor) {
  while (operators_.size() > floor && *PriorityOf(operators_.back()) >= at_least) {
    const std::uint32_t right = sizes_.back();
    const std::uint32_t left = sizes_[sizes_.size() - 1 - right];
    Push({operators_.back(), 0, 0}, left + right + 1);
    operators_.pop_back();
  }
}

/// Each node before its operands. From the last node back, the size of each operand gives way to
/// the place where its nodes go.
std::vector<Term::Node> Parser::InOrderOfText() {
  std::vector<Term::Node> ordered(nodes_.size());
  sizes_.back() = 0;
  for (std::size_t i = nodes_.size(); i-- > 0;) {
    const std::uint32_t place = sizes_[i];
    ordered[place] = nodes_[i];
    const int operands = OperandCount(nodes_[i].operation);
    if (operands == 1) sizes_[i - 1] = place + 1;
    if (operands < 2) continue;
    const std::size_t right = i - 1, left = right - sizes_[right];
    sizes_[right] = place + 1 + sizes_[left];
    sizes_[left] = place + 1;
  }
  return ordered;
}

}  // namespace

Term ParseTerm(std::u16string_view text, const NumberFormat& numbers) {
  const DefaultFloatEnvironment environment;  // numbers are rounded in it
  return Term(Parser(text, numbers).Parse());
}

}  // namespace zepkit10
