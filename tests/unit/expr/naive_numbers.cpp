#include "unit/expr/naive_numbers.h"

#include <cmath>
#include <cstdlib>

namespace zepkit10::naive {
namespace {

NumberFormat Format(char16_t decimal, char16_t group) {
  const auto convert = [=](std::u16string_view text) -> std::optional<double> {
    if (text.empty() || text[0] == group) return {};
    std::string plain;
    int points = 0, digits = 0;
    for (const char16_t c : text) {
      if (c == group) continue;
      points += c == decimal;
      digits += c >= u'0' && c <= u'9';
      plain += c == decimal ? '.' : static_cast<char>(c);
    }
    if (points > 1 || digits == 0) return {};
    const double number = std::strtod(plain.c_str(), nullptr);
    return std::isfinite(number) ? std::optional(number) : std::nullopt;
  };
  return {decimal, group, convert};
}

}  // namespace

const NumberFormat& EnglishNumbers() {
  static const NumberFormat format = Format(u'.', u',');
  return format;
}

const NumberFormat& GermanNumbers() {
  static const NumberFormat format = Format(u',', u'.');
  return format;
}

}  // namespace zepkit10::naive
