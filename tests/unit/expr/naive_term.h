#pragma once

#include <functional>
#include <memory>
#include <string>
#include <string_view>

#include "enums.h"
#include "expr/number_format.h"

namespace zepkit10::naive {

/// What a term is, said as plainly as possible: cut at its root, the operands parsed as terms of
/// their own. Recursive and slow; the measure for the parser and the evaluation.
struct Term {
  ZepMathOperation operation = ZepMathOperation::zepMONumber;
  std::unique_ptr<Term> left, right;
  std::u16string name;
  double number = 0;
};

using Lookup = std::function<double(char16_t name)>;

/// The token at the start of a text. Raises what `Transform` raises.
std::u16string TokenAt(std::u16string_view text, const NumberFormat& numbers);

std::unique_ptr<Term> Parse(std::u16string_view text, const NumberFormat& numbers);
std::u16string Text(const Term& term, const NumberFormat& numbers);
double Value(const Term& term, const Lookup& lookup);

}  // namespace zepkit10::naive
