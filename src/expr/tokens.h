#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "enums.h"
#include "expr/number_format.h"

namespace zepkit10 {

/// A piece of a term. An opening bracket and a value dash span their whole group.
struct Token {
  ZepMathOperation operation;
  std::size_t begin;
  std::size_t length;

  std::size_t end() const { return begin + length; }
};

/// Cuts a term into tokens. Where each bracket and value dash closes is found once for the whole
/// text, so that tokens of any part of it are had in time proportional to their own length.
class Tokenizer {
 public:
  Tokenizer(std::u16string_view text, const NumberFormat& numbers);

  /// The token that begins at `begin` in a text that ends at `end`. A piece that cannot be
  /// delimited raises `zepErrBadParam`, `zepErrBadBrackets` or `zepErrBadValueDashes`.
  Token At(std::size_t begin, std::size_t end) const;

  /// Where the bracket opened at `open` closes, or `end` if it does not before.
  std::size_t Closing(std::size_t open, std::size_t end) const;

  std::u16string_view text() const { return text_; }

 private:
  [[noreturn]] void RaiseOpenDash(std::size_t begin, std::size_t end) const;

  std::u16string_view text_;
  const NumberFormat& numbers_;
  std::vector<std::size_t> closing_;  // of each bracket and dash; kNone for anything else
};

}  // namespace zepkit10
