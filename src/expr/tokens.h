#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

#include "enums.h"
#include "expr/number_format.h"

namespace zepkit10 {

/// A piece of a term. An opening bracket and a value dash span their whole group.
struct Token {
  ZepMathOperation operation;
  std::uint32_t begin;
  std::uint32_t length;

  std::uint32_t end() const { return begin + length; }
};

/// The operation that joins two operands where this character stands between them.
constexpr std::optional<ZepMathOperation> OperatorOf(char16_t c) {
  using enum ZepMathOperation;
  switch (c) {
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

/// Cuts a term into tokens. Where each bracket and value dash closes is found once for the whole
/// text, so that tokens of any part of it are had in time proportional to their own length.
class Tokenizer {
 public:
  using Position = std::uint32_t;

  /// Runs out of memory for a text with more characters than positions.
  Tokenizer(std::u16string_view text, const NumberFormat& numbers);

  /// Reads the token that begins at `begin` in a text that ends at `end`. A piece that cannot be
  /// delimited raises `zepErrBadParam`, `zepErrBadBrackets` or `zepErrBadValueDashes`.
  void Read(Position begin, Position end, Token& token) const;

  /// Where the bracket or value dash at `open` closes, or `end` if it does not before.
  Position Closing(Position open, Position end) const {
    return closing_[open] < end ? closing_[open] : end;
  }

  std::u16string_view text() const { return text_; }

 private:
  void FindClosings();
  [[noreturn]] void RaiseOpenDash(Position begin, Position end) const;

  std::u16string_view text_;
  const NumberFormat& numbers_;
  std::unique_ptr<Position[]> closing_;  // of each bracket and dash; not set for anything else
};

}  // namespace zepkit10
