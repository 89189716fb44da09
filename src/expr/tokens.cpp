#include "expr/tokens.h"

#include <limits>
#include <new>
#include <vector>

#include "expr/operations.h"
#include "frame/errors.h"

namespace zepkit10 {
namespace {

using enum ZepMathOperation;

constexpr Tokenizer::Position kNone = std::numeric_limits<Tokenizer::Position>::max();

[[noreturn]] void Raise(ZepErrors number) { RaiseZepError(number, u"Expression"); }

constexpr char16_t UpperCase(char16_t c) { return c & ~u'\x20'; }
constexpr bool IsLetter(char16_t c) { return UpperCase(c) >= u'A' && UpperCase(c) <= u'Z'; }

/// Three letters as one number, without their case.
constexpr std::uint64_t FunctionKey(const char16_t* name) {
  return std::uint64_t{UpperCase(name[0])} << 32 | std::uint64_t{UpperCase(name[1])} << 16 |
         UpperCase(name[2]);
}

/// The function whose name stands there, or `zepMOGetVar` for a letter that is a variable.
ZepMathOperation FunctionOrVariable(std::u16string_view rest) {
  if (rest.size() < 3) return zepMOGetVar;
  switch (FunctionKey(rest.data())) {
    case FunctionKey(u"SQR"):
      return zepMOSqr;
    case FunctionKey(u"EXP"):
      return zepMOExp;
    case FunctionKey(u"LOG"):
      return zepMOLog;
    case FunctionKey(u"SIN"):
      return zepMOSin;
    case FunctionKey(u"COS"):
      return zepMOCos;
    case FunctionKey(u"TAN"):
      return zepMOTan;
    case FunctionKey(u"ATN"):
      return zepMOAtn;
    default:
      return zepMOGetVar;
  }
}

}  // namespace

Tokenizer::Tokenizer(std::u16string_view text, const NumberFormat& numbers)
    : text_(text), numbers_(numbers) {
  if (text.size() >= kNone) throw std::bad_alloc();
  closing_ = std::make_unique_for_overwrite<Position[]>(text.size());
  FindClosings();
}

/// For each bracket and dash, where its group closes. A dash closes at the next one of its own
/// bracket depth, unless that depth is left before.
void Tokenizer::FindClosings() {
  struct Level {
    Position bracket, last_dash;
  };
  std::vector<Level> open{{kNone, kNone}};  // the whole text first
  const auto length = static_cast<Position>(text_.size());
  for (Position i = 0; i < length; ++i) {
    const char16_t c = text_[i];
    if (c == u'(') {
      closing_[i] = kNone;
      open.push_back({i, kNone});
    } else if (c == u')') {
      if (open.size() == 1) {
        open.back().last_dash = kNone;
        continue;
      }
      closing_[open.back().bracket] = i;
      open.pop_back();
    } else if (c == u'|') {
      closing_[i] = kNone;
      if (open.back().last_dash != kNone) closing_[open.back().last_dash] = i;
      open.back().last_dash = i;
    }
  }
}

void Tokenizer::Read(Position begin, Position end, Token& token) const {
  if (begin >= end) Raise(ZepErrors::zepErrBadParam);
  const std::u16string_view rest(text_.data() + begin, end - begin);
  token.begin = begin;
  token.length = 1;
  if (const auto operation = OperatorOf(rest[0])) {
    token.operation = *operation;
    return;
  }
  switch (rest[0]) {
    case u')':
      token.operation = zepMOParC;
      return;
    case u'(':
      token.operation = zepMOParO;
      token.length = Closing(begin, end) + 1 - begin;
      if (token.end() > end) Raise(ZepErrors::zepErrBadParam);
      return;
    case u'|':
      token.operation = zepMOAmount;
      token.length = Closing(begin, end) + 1 - begin;
      if (token.end() > end) RaiseOpenDash(begin, end);
      return;
    default:
      break;
  }
  if (IsLetter(rest[0])) {
    token.operation = FunctionOrVariable(rest);
    if (token.operation != zepMOGetVar) token.length = 3;
    return;
  }
  token.operation = zepMONumber;
  token.length = static_cast<Position>(NumberLength(rest, numbers_));
  if (token.length == 0) Raise(ZepErrors::zepErrBadParam);
}

void Tokenizer::RaiseOpenDash(Position begin, Position end) const {
  long depth = 0;
  for (Position i = begin + 1; i < end; ++i) {
    if (text_[i] == u'(') ++depth;
    if (text_[i] == u')' && --depth < 0) break;
  }
  Raise(depth == 0 ? ZepErrors::zepErrBadValueDashes : ZepErrors::zepErrBadBrackets);
}

}  // namespace zepkit10
