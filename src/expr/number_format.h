#pragma once

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace zepkit10 {

/// How the user writes numbers.
struct NumberFormat {
  char16_t decimal = u'.';
  char16_t group = u',';
  /// The platform's own conversion of a number's text; nothing where it refuses. Asked only for
  /// texts with group separators.
  std::function<std::optional<double>(std::u16string_view)> convert;
};

/// The length of the number at the start of a text of digits, commas and points: the longest part
/// that the platform would convert; 0 where there is none.
std::size_t NumberLength(std::u16string_view text, const NumberFormat& format);

/// The number that a text stands for. Digits with at most one decimal separator are rounded
/// correctly; everything else is left to the platform.
std::optional<double> TextToNumber(std::u16string_view text, const NumberFormat& format);

/// The shortest text of a finite number that reads back to the same number: the user's decimal
/// separator, no grouping, never an exponent.
std::u16string NumberToText(double number, const NumberFormat& format);

}  // namespace zepkit10
