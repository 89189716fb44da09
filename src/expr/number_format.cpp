#include "expr/number_format.h"

#include <charconv>
#include <cmath>

namespace zepkit10 {
namespace {

bool IsDigit(char16_t c) { return c >= u'0' && c <= u'9'; }

/// Digits, at most one decimal separator, at least one digit: what every locale reads the same way.
bool IsSimple(std::u16string_view text, char16_t decimal) {
  std::size_t separators = 0, digits = 0;
  for (const char16_t c : text) {
    if (IsDigit(c)) {
      ++digits;
    } else if (c == decimal) {
      ++separators;
    } else {
      return false;
    }
  }
  return digits > 0 && separators <= 1;
}

}  // namespace

// What the platform takes among digits, commas and points: at most one decimal separator, at least
// one digit, and group separators anywhere but in front.
std::size_t NumberLength(std::u16string_view text, const NumberFormat& format) {
  const bool grouped = format.group == u',' || format.group == u'.';
  std::size_t length = 0;
  bool any_digit = false, any_decimal = false;
  for (; length < text.size(); ++length) {
    const char16_t c = text[length];
    if (IsDigit(c)) {
      any_digit = true;
    } else if (c == format.decimal && !any_decimal) {
      any_decimal = true;
    } else if (c != format.group || !grouped || length == 0) {
      break;
    }
  }
  return any_digit ? length : 0;
}

std::optional<double> TextToNumber(std::u16string_view text, const NumberFormat& format) {
  if (!IsSimple(text, format.decimal)) return format.convert(text);
  std::string narrow;
  narrow.reserve(text.size());
  for (const char16_t c : text) narrow += IsDigit(c) ? static_cast<char>(c) : '.';
  double number = 0;
  const auto [end, error] = std::from_chars(narrow.data(), narrow.data() + narrow.size(), number);
  // Too small for a double is no fault but 0; too large is one.
  if (error == std::errc::result_out_of_range) {
    if (std::string_view(narrow).substr(0, narrow.find('.')).find_first_not_of('0') !=
        std::string_view::npos) {
      return {};
    }
    return 0.0;
  }
  return number;
}

std::u16string NumberToText(double number, const NumberFormat& format) {
  if (number == 0) return u"0";
  char shortest[32];  // d.ddde-308
  const auto made =
      std::to_chars(shortest, std::end(shortest), std::fabs(number), std::chars_format::scientific);
  std::u16string digits;
  const char* c = shortest;
  for (; *c != 'e'; ++c) {
    if (*c != '.') digits += static_cast<char16_t>(*c);
  }
  int exponent = 0;
  c += c[1] == '+' ? 2 : 1;
  std::from_chars(c, made.ptr, exponent);
  const int point = exponent + 1;  // how many digits stand before the decimal separator
  const int count = static_cast<int>(digits.size());
  std::u16string text = number < 0 ? u"-" : u"";
  if (point <= 0) {
    text += u'0';
    text += format.decimal;
    text.append(static_cast<std::size_t>(-point), u'0').append(digits);
  } else if (point >= count) {
    text.append(digits).append(static_cast<std::size_t>(point - count), u'0');
  } else {
    text.append(digits, 0, static_cast<std::size_t>(point)) += format.decimal;
    text.append(digits, static_cast<std::size_t>(point));
  }
  return text;
}

}  // namespace zepkit10
