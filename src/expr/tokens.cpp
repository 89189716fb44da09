#include "expr/tokens.h"

#include <optional>

#include "expr/operations.h"
#include "frame/errors.h"

namespace zepkit10 {
namespace {

using enum ZepMathOperation;

constexpr std::size_t kNone = static_cast<std::size_t>(-1);

[[noreturn]] void Raise(ZepErrors number) { RaiseZepError(number, u"Expression"); }

bool IsLetter(char16_t c) { return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z'); }

std::optional<ZepMathOperation> OperatorAt(char16_t c) {
  switch (c) {
    case u'|':
      return zepMOAmount;
    case u'+':
      return zepMOAdd;
    case u'-':
      return zepMOSub;
    case u'*':
      return zepMOMulti;
    case u'/':
      return zepMODivi;
    case u'^':
      return zepMORaise;
    default:
      return {};
  }
}

std::optional<ZepMathOperation> FunctionAt(std::u16string_view rest) {
  if (rest.size() < 3 || !IsLetter(rest[0]) || !IsLetter(rest[1]) || !IsLetter(rest[2])) return {};
  constexpr char16_t kLowerCase = u'\x20';
  const char16_t upper[] = {static_cast<char16_t>(rest[0] & ~kLowerCase),
                            static_cast<char16_t>(rest[1] & ~kLowerCase),
                            static_cast<char16_t>(rest[2] & ~kLowerCase)};
  for (auto code = static_cast<std::int32_t>(zepMOSqr); code <= static_cast<std::int32_t>(zepMOAtn);
       ++code) {
    const auto operation = static_cast<ZepMathOperation>(code);
    if (*TextOf(operation) == std::u16string_view(upper, 3)) return operation;
  }
  return {};
}

/// For each bracket and dash, where its group closes. A dash closes at the next one of its own
/// bracket depth, unless that depth is left before.
std::vector<std::size_t> FindClosings(std::u16string_view text) {
  std::vector<std::size_t> closing(text.size(), kNone);
  std::vector<std::size_t> open;  // brackets
  std::vector<std::size_t> last_dash{
      kNone};  // of each open bracket's content, the whole text first
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == u'(') {
      open.push_back(i);
      last_dash.push_back(kNone);
    } else if (text[i] == u')') {
      if (open.empty()) {
        last_dash.back() = kNone;
        continue;
      }
      closing[open.back()] = i;
      open.pop_back();
      last_dash.pop_back();
    } else if (text[i] == u'|') {
      if (last_dash.back() != kNone) closing[last_dash.back()] = i;
      last_dash.back() = i;
    }
  }
  return closing;
}

}  // namespace

Tokenizer::Tokenizer(std::u16string_view text, const NumberFormat& numbers)
    : text_(text), numbers_(numbers), closing_(FindClosings(text)) {}

std::size_t Tokenizer::Closing(std::size_t open, std::size_t end) const {
  return closing_[open] < end ? closing_[open] : end;
}

Token Tokenizer::At(std::size_t begin, std::size_t end) const {
  const std::u16string_view rest = text_.substr(begin, end - begin);
  if (rest.empty()) Raise(ZepErrors::zepErrBadParam);
  const char16_t c = rest[0];
  if (c == u'|') {
    const std::size_t close = Closing(begin, end);
    if (close == end) RaiseOpenDash(begin, end);
    return {zepMOAmount, begin, close + 1 - begin};
  }
  if (const auto operation = OperatorAt(c)) return {*operation, begin, 1};
  if (const auto function = FunctionAt(rest)) return {*function, begin, 3};
  if (c == u'(') {
    const std::size_t close = Closing(begin, end);
    if (close == end) Raise(ZepErrors::zepErrBadParam);
    return {zepMOParO, begin, close + 1 - begin};
  }
  if (c == u')') return {zepMOParC, begin, 1};
  if (IsLetter(c)) return {zepMOGetVar, begin, 1};
  const std::size_t length = NumberLength(rest, numbers_);
  if (length == 0) Raise(ZepErrors::zepErrBadParam);
  return {zepMONumber, begin, length};
}

void Tokenizer::RaiseOpenDash(std::size_t begin, std::size_t end) const {
  long depth = 0;
  for (std::size_t i = begin + 1; i < end; ++i) {
    if (text_[i] == u'(') ++depth;
    if (text_[i] == u')' && --depth < 0) break;
  }
  Raise(depth == 0 ? ZepErrors::zepErrBadValueDashes : ZepErrors::zepErrBadBrackets);
}

}  // namespace zepkit10
