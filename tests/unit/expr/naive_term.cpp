#include "unit/expr/naive_term.h"

#include <cmath>
#include <optional>
#include <vector>

#include "frame/errors.h"

namespace zepkit10::naive {
namespace {

using enum ZepErrors;
using enum ZepMathOperation;
using enum ZepVbErrors3To98;

[[noreturn]] void Raise(ZepErrors number) { RaiseZepError(number, u"Expression"); }
[[noreturn]] void Raise(ZepVbErrors3To98 number) { RaiseRuntimeError(number, u"Expression"); }

const std::u16string kOperators = u"|+-*/^";
const std::u16string kFunctions[] = {u"SQR", u"EXP", u"LOG", u"SIN", u"COS", u"TAN", u"ATN"};
const std::u16string kDigits = u"0123456789,.";

bool IsLetter(char16_t c) { return (c >= u'A' && c <= u'Z') || (c >= u'a' && c <= u'z'); }

std::u16string UpperCase(std::u16string_view text) {
  std::u16string upper;
  for (const char16_t c : text) upper += c >= u'a' && c <= u'z' ? c - u'a' + u'A' : c;
  return upper;
}

std::u16string GroupAt(std::u16string_view text) {
  int depth = 1;
  for (std::size_t i = 1; i < text.size(); ++i) {
    if (text[i] == u'(') ++depth;
    if (text[i] == u')') --depth;
    if (depth == 0) return std::u16string(text.substr(0, i + 1));
  }
  Raise(zepErrBadParam);
}

std::u16string DashesAt(std::u16string_view text) {
  int depth = 0;
  for (std::size_t i = 1; i < text.size(); ++i) {
    if (text[i] == u'(') ++depth;
    if (text[i] == u')') --depth;
    if (depth < 0) Raise(zepErrBadBrackets);
    if (text[i] == u'|' && depth == 0) return std::u16string(text.substr(0, i + 1));
  }
  Raise(depth == 0 ? zepErrBadValueDashes : zepErrBadBrackets);
}

/// The longest part that converts.
std::u16string NumberAt(std::u16string_view text, const NumberFormat& numbers) {
  const std::size_t run = std::min(text.find_first_not_of(kDigits), text.size());
  for (std::size_t length = run; length > 0; --length) {
    if (numbers.convert(text.substr(0, length))) return std::u16string(text.substr(0, length));
  }
  Raise(zepErrBadParam);
}

/// The operation of a whole token.
ZepMathOperation OperationOf(const std::u16string& token) {
  if (const auto i = kOperators.find(token[0]); i != kOperators.npos) return ZepMathOperation(i);
  for (int i = 0; i < 7; ++i) {
    if (UpperCase(token) == kFunctions[i]) return ZepMathOperation(6 + i);
  }
  if (token[0] == u'(') return zepMOParO;
  if (token[0] == u')') return zepMOParC;
  return IsLetter(token[0]) ? zepMOGetVar : zepMONumber;
}

int PriorityOf(const std::u16string& token) {
  const int priorities[] = {0, 1, 1, 2, 2, 3, 4, 4, 4, 4, 4, 4, 4, 5, 5, 5, 5};
  return priorities[static_cast<int>(OperationOf(token))];
}

std::u16string Trimmed(std::u16string term) {
  for (;;) {
    while (!term.empty() && term.front() == u' ') term.erase(0, 1);
    while (!term.empty() && term.back() == u' ') term.pop_back();
    if (term.empty() || term[0] != u'(' || GroupAt(term).size() != term.size()) return term;
    term = term.substr(1, term.size() - 2);
  }
}

std::vector<std::u16string> TokensOf(std::u16string_view term, const NumberFormat& numbers) {
  std::vector<std::u16string> tokens;
  for (std::size_t position = 0; position < term.size(); position += tokens.back().size()) {
    std::u16string token;
    try {
      token = TokenAt(term.substr(position), numbers);
    } catch (const Failure&) {
      Raise(tokens.empty() ? zepErrBadPropValue : zepErrBadCall);
    }
    tokens.push_back(token);
  }
  return tokens;
}

std::vector<std::u16string> WithImpliedSigns(const std::vector<std::u16string>& tokens) {
  std::vector<std::u16string> signed_tokens;
  for (std::size_t i = 0; i < tokens.size(); ++i) {
    if (i > 0) {
      const auto& a = tokens[i - 1];
      const auto& b = tokens[i];
      const bool numbers = OperationOf(a) == zepMONumber && OperationOf(b) == zepMONumber;
      if (PriorityOf(a) == 5 && PriorityOf(b) >= 4 && !numbers && a[0] != u'(' && b[0] != u')') {
        signed_tokens.push_back(u"*");
      }
    }
    signed_tokens.push_back(tokens[i]);
  }
  return signed_tokens;
}

/// Where to split: at the last token of the lowest priority.
std::size_t RootOf(const std::vector<std::u16string>& tokens) {
  if (tokens.size() == 1) return 0;
  for (int priority = 0; priority <= 5; ++priority) {
    for (std::size_t i = tokens.size(); i-- > 0;) {
      const bool blanked = tokens[i][0] == u'|';
      if (!blanked && PriorityOf(tokens[i]) == priority) return i;
    }
  }
  Raise(zepErrExtractTerm);
}

std::u16string Joined(const std::vector<std::u16string>& tokens, std::size_t from, std::size_t to) {
  std::u16string text;
  for (std::size_t i = from; i < to; ++i) text += tokens[i];
  return text;
}

}  // namespace

std::u16string TokenAt(std::u16string_view text, const NumberFormat& numbers) {
  if (text.empty()) Raise(zepErrBadParam);
  if (text[0] == u'|') return DashesAt(text);
  if (kOperators.find(text[0]) != kOperators.npos) return std::u16string(text.substr(0, 1));
  for (const auto& function : kFunctions) {
    if (UpperCase(text.substr(0, 3)) == function) return std::u16string(text.substr(0, 3));
  }
  if (text[0] == u'(') return GroupAt(text);
  if (text[0] == u')' || IsLetter(text[0])) return std::u16string(text.substr(0, 1));
  return NumberAt(text, numbers);
}

std::unique_ptr<Term> Parse(std::u16string_view text, const NumberFormat& numbers) {
  auto term = std::make_unique<Term>();
  const std::u16string trimmed = Trimmed(std::u16string(text));
  if (trimmed.empty()) return term;
  const auto tokens = WithImpliedSigns(TokensOf(trimmed, numbers));
  const std::size_t root = RootOf(tokens);
  const std::u16string& token = tokens[root];
  term->operation = OperationOf(token);
  const int priority = PriorityOf(token);
  const bool whole = tokens.size() == 1;
  if (priority == 5) {
    if (!whole || token[0] == u'(' || token[0] == u')') Raise(zepErrExtractTerm);
    if (term->operation == zepMOGetVar) {
      term->name = token;
    } else {
      const auto number = numbers.convert(token);
      if (!number) Raise(zepErrExtractTerm);
      term->number = *number;
    }
  } else if (priority == 4) {
    if (root != 0) Raise(zepErrExtractTerm);
    term->left = Parse(Joined(tokens, 1, tokens.size()), numbers);
  } else if (priority == 0) {
    term->left = Parse(token.substr(1, token.size() - 2), numbers);
  } else {
    term->left = Parse(Joined(tokens, 0, root), numbers);
    term->right = Parse(Joined(tokens, root + 1, tokens.size()), numbers);
  }
  return term;
}

std::u16string Text(const Term& term, const NumberFormat& numbers) {
  const auto code = static_cast<std::size_t>(term.operation);
  if (term.operation == zepMONumber) return NumberToText(term.number, numbers);
  if (term.operation == zepMOGetVar) return term.name;
  if (term.operation == zepMOAmount) return u"|" + Text(*term.left, numbers) + u"|";
  if (code >= 6) return kFunctions[code - 6] + Text(*term.left, numbers);
  return Text(*term.left, numbers) + kOperators[code] + Text(*term.right, numbers);
}

double Value(const Term& term, const Lookup& lookup) {
  if (term.operation == zepMONumber) return term.number;
  if (term.operation == zepMOGetVar) return lookup(term.name[0]);
  const double right = term.right ? Value(*term.right, lookup) : 0;
  const double left = Value(*term.left, lookup);
  double result = 0;
  switch (term.operation) {
    case zepMOAmount:
      result = std::fabs(left);
      break;
    case zepMOAdd:
      result = left + right;
      break;
    case zepMOSub:
      result = left - right;
      break;
    case zepMOMulti:
      result = left * right;
      break;
    case zepMODivi:
      if (right == 0) Raise(zepVbErrDivisionByZero);
      result = left / right;
      break;
    case zepMORaise:
      if (left == 0 && right < 0) Raise(zepVbErrDivisionByZero);
      if (left < 0 && right != std::floor(right)) Raise(zepVbErrBadCall);
      result = right == 2 ? left * left : std::pow(left, right);
      break;
    case zepMOSqr:
      if (left < 0) Raise(zepVbErrBadCall);
      result = std::sqrt(left);
      break;
    case zepMOLog:
      if (left <= 0) Raise(zepVbErrBadCall);
      result = std::log(left);
      break;
    case zepMOExp:
      result = std::exp(left);
      break;
    case zepMOSin:
      result = std::sin(left);
      break;
    case zepMOCos:
      result = std::cos(left);
      break;
    case zepMOTan:
      result = std::tan(left);
      break;
    case zepMOAtn:
      result = std::atan(left);
      break;
    default:
      Raise(zepErrUnexpected);
  }
  if (std::isinf(result)) Raise(zepVbErrOverflow);
  return result;
}

}  // namespace zepkit10::naive
