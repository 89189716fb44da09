#pragma once

#include <bit>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "enums.h"
#include "expr/number_format.h"

namespace zepkit10 {

/// A parsed term. Default constructed, or parsed from nothing, it is the number 0.
class Term {
 public:
  struct Node {
    ZepMathOperation operation = ZepMathOperation::zepMONumber;
    char16_t name = 0;  // of a variable
    double number = 0;

    friend bool operator==(const Node&, const Node&) = default;
  };

  Term() = default;
  /// From the nodes of a tree, each before its left and then its right operand.
  explicit Term(std::vector<Node> nodes);

  /// Makes the term what its number's text would be parsed to: a negative number is 0 minus its
  /// absolute value. The number is finite. Nothing is calculated, so that nothing can trap.
  void SetNumber(double number) {
    if (!is_constant_) BecomeNumber();
    constexpr std::uint64_t kMinusZero = std::uint64_t{1} << 63;  // whose text is that of 0
    constant_ = std::bit_cast<std::uint64_t>(number) == kMinusZero ? 0 : number;
    has_nodes_ = false;
  }

  /// Each node stands before its left and then its right operand. Read from the end, that is the
  /// order of evaluation: the right operand first, then the left, then what joins them.
  const std::vector<Node>& Nodes() const {
    if (!has_nodes_) MakeNodes();
    return nodes_;
  }

  /// How many operands an evaluation in that order holds at most.
  std::size_t StackDepth() const {
    Nodes();
    return stack_depth_;
  }

  /// The value of a term that is a plain number, null for any other.
  const double* Constant() const { return is_constant_ ? &constant_ : nullptr; }

 private:
  void BecomeNumber() noexcept;
  void MakeNodes() const;

  // Those of a number that was set are made when they are asked for.
  mutable std::vector<Node> nodes_;
  mutable std::size_t stack_depth_ = 0;
  mutable bool has_nodes_ = false;
  bool is_constant_ = true;
  double constant_ = 0;
};

/// Parses a term. Time is linear in its length, and its nesting is limited by memory only. Errors:
/// `zepErrBadPropValue` where the first piece of the term or of a bracket's content cannot be
/// delimited, `zepErrBadCall` where a later one cannot, `zepErrBadParam` for a leading bracket
/// never closed, `zepErrExtractTerm` for operands in a row without an operator and for numbers that
/// do not convert.
Term ParseTerm(std::u16string_view text, const NumberFormat& numbers);

/// The term as text for display: no brackets, function names in upper case, nothing as the number
/// 0. A node of no kind raises `zepErrUnexpected`, here as in its evaluation.
std::u16string TermText(const Term& term, const NumberFormat& numbers);

}  // namespace zepkit10
