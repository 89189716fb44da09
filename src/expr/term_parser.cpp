#include <algorithm>
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

/// Moves each node from behind its operands to the place before them. From the last node back, what
/// has operands waits until they have their places; so nodes never go to places not yet read.
void PutBeforeOperands(std::vector<Term::Node>& nodes) {
  struct Waiting {
    std::int8_t operation, operands;  // short, because there may be many
  };
  std::vector<Waiting> waiting;
  auto place = nodes.rbegin();
  for (auto node = nodes.crbegin(); node != nodes.crend(); ++node) {
    if (const int operands = OperandCount(node->operation); operands > 0) {
      waiting.push_back(
          {static_cast<std::int8_t>(node->operation), static_cast<std::int8_t>(operands)});
      continue;
    }
    *place++ = *node;
    for (; !waiting.empty() && --waiting.back().operands == 0; waiting.pop_back()) {
      *place++ = {static_cast<ZepMathOperation>(waiting.back().operation), 0, 0};
    }
  }
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
    levels_.reserve(kUsual);
    operators_.reserve(kUsual);
    constexpr std::size_t kUsualNodes = 1 << 20;  // not what a long text of brackets would take
    nodes_.reserve(std::min(text.size() + 1, kUsualNodes));
  }

  std::vector<Term::Node> Parse() {
    Enter(0, static_cast<Position>(tokenizer_.text().size()));
    while (!levels_.empty()) TakeOperand();
    PutBeforeOperands(nodes_);
    if (nodes_.size() < nodes_.capacity() / 2) nodes_.shrink_to_fit();
    return std::move(nodes_);
  }

 private:
  using Position = Tokenizer::Position;

  struct Level {
    Position begin, end;
    Position position;        // of what is not yet read
    std::uint32_t operators;  // how many were open before
  };

  void Enter(Position begin, Position end);
  void TakeOperand();
  void TakeToken(const Token& token);
  bool LacksOperand() const;
  bool EndsBehind(const Token& token) const;
  bool ReadToken(Level& level, Token& token) const;
  void Finish(const Term::Node& leaf);
  void Join(ZepMathPriority at_least, std::size_t floor);
  [[noreturn]] void Fail(ZepErrors number);

  const NumberFormat& numbers_;
  const Tokenizer tokenizer_;
  std::vector<Level> levels_;
  std::vector<ZepMathOperation> operators_;  // waiting for their operand, their right one if two
  std::vector<Term::Node> nodes_;            // each behind its left and then its right operand
};

void Parser::Enter(Position begin, Position end) {
  const std::u16string_view text = tokenizer_.text();
  for (;;) {
    while (begin < end && text[begin] == u' ') ++begin;
    while (begin < end && text[end - 1] == u' ') --end;
    if (begin == end || text[begin] != u'(') break;
    const Position close = tokenizer_.Closing(begin, end);
    if (close == end) Fail(ZepErrors::zepErrBadParam);
    if (close + 1 != end) break;
    ++begin, --end;
  }
  levels_.push_back({begin, end, begin, static_cast<std::uint32_t>(operators_.size())});
}

// Takes one operand of the innermost level; the operator behind it, given or understood, is taken
// when the operand's value is there.
void Parser::TakeOperand() {
  Token token;
  if (LacksOperand()) return Finish({});
  if (!ReadToken(levels_.back(), token)) Fail(ZepErrors::zepErrBadCall);
  if (IsFunction(token.operation)) {
    operators_.push_back(token.operation);
    if (LacksOperand()) return Finish({});
    if (!ReadToken(levels_.back(), token)) Fail(ZepErrors::zepErrBadCall);
  }
  if (!EndsBehind(token)) Fail(ZepErrors::zepErrExtractTerm);
  TakeToken(token);
}

void Parser::TakeToken(const Token& token) {
  const std::u16string_view text = tokenizer_.text().substr(token.begin, token.length);
  if (token.operation == zepMOParO || token.operation == zepMOAmount) {
    if (token.operation == zepMOAmount) operators_.push_back(zepMOAmount);
    Enter(token.begin + 1, token.end() - 1);
  } else if (token.operation == zepMOGetVar) {
    Finish({zepMOGetVar, text[0], 0});
  } else {
    const auto number =
        token.operation == zepMONumber ? TextToNumber(text, numbers_) : std::optional<double>();
    if (!number) Fail(ZepErrors::zepErrExtractTerm);
    Finish({zepMONumber, 0, *number});
  }
}

/// Whether the innermost level has an operator next, or nothing.
bool Parser::LacksOperand() const {
  const Level& level = levels_.back();
  return level.position == level.end || OperatorOf(tokenizer_.text()[level.position]);
}

/// Whether nothing more belongs to an operand whose last token was read.
bool Parser::EndsBehind(const Token& token) const {
  if (LacksOperand()) return true;
  Level behind = levels_.back();
  Token next;
  return ReadToken(behind, next) && ImpliesMultiplication(token, next);
}

/// False where there is no token.
bool Parser::ReadToken(Level& level, Token& token) const {
  try {
    tokenizer_.Read(level.position, level.end, token);
  } catch (const Failure&) {
    return false;
  }
  level.position = token.end();
  return true;
}

void Parser::Finish(const Term::Node& leaf) {
  nodes_.push_back(leaf);
  // The value may complete its level, and that the one around it.
  while (!levels_.empty()) {
    Level& level = levels_.back();
    if (level.position < level.end) {
      const auto given = OperatorOf(tokenizer_.text()[level.position]);
      if (given) ++level.position;
      const ZepMathOperation operation = given.value_or(zepMOMulti);
      Join(*PriorityOf(operation), level.operators);
      operators_.push_back(operation);
      return;
    }
    Join(ZepMathPriority::zepMPLowest, level.operators);
    levels_.pop_back();
  }
}

/// Applies the open operators of the level, from the last back: functions and value dashes, which
/// have their operand now, and what has at least a priority.
void Parser::Join(ZepMathPriority at_least, std::size_t floor) {
  while (operators_.size() > floor) {
    const ZepMathOperation operation = operators_.back();
    if (IsBinary(operation) && *PriorityOf(operation) < at_least) break;
    nodes_.push_back({operation, 0, 0});
    operators_.pop_back();
  }
}

/// Raises what is met first if each level is cut into tokens before the levels in it are parsed:
/// what follows may hold a token that is none.
void Parser::Fail(ZepErrors number) {
  for (Level& level : levels_) {
    for (Token token; level.position < level.end;) {
      if (ReadToken(level, token)) continue;
      const bool first = level.position == level.begin;
      Raise(first ? ZepErrors::zepErrBadPropValue : ZepErrors::zepErrBadCall);
    }
  }
  Raise(number);
}

}  // namespace

Term ParseTerm(std::u16string_view text, const NumberFormat& numbers) {
  const DefaultFloatEnvironment environment;  // numbers are rounded in it
  return Term(Parser(text, numbers).Parse());
}

}  // namespace zepkit10
