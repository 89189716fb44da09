#include "expr/number_format.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <iterator>
#include <limits>

#include "expr/shortest_decimal.h"

namespace zepkit10 {
namespace {

bool IsDigit(char16_t c) { return c >= u'0' && c <= u'9'; }

/// How many digits before the decimal separator, leading zeros not counted, a double can have.
constexpr std::size_t kMostDigits = std::numeric_limits<double>::max_exponent10 + 1;

/// The number that digits and a point stand for; nothing if it is too large for a double. Too small
/// a number is 0.
std::optional<double> Convert(std::string_view digits) {
  double number = 0;
  const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  if (result.ec != std::errc::result_out_of_range) return number;
  const std::size_t first = digits.find_first_not_of('0');
  return digits[first] == '.' ? std::optional(0.0) : std::nullopt;
}

/// The text without its group separators and with a point.
std::string Plain(std::u16string_view text, const NumberFormat& format) {
  std::string plain;
  plain.reserve(text.size());
  for (const char16_t c : text) {
    if (IsDigit(c)) {
      plain += static_cast<char>(c);
    } else if (c == format.decimal) {
      plain += '.';
    }
  }
  return plain;
}

/// Whether a whole number of at least as many digits as a double can have is larger than any.
bool IsTooLarge(std::u16string_view text, std::size_t significant, const NumberFormat& format) {
  return significant > kMostDigits || !Convert(Plain(text, format));
}

struct Digits {
  std::u16string digits;
  int point;  // how many of them stand before the decimal separator; may lie outside of them
};

Digits ShortestDigits(double number) {
  const Decimal decimal = ShortestDecimal(number);
  char16_t text[std::numeric_limits<std::uint64_t>::digits10 + 1];
  char16_t* first = std::end(text);
  for (std::uint64_t rest = decimal.digits; rest > 0; rest /= 10) {
    *--first = static_cast<char16_t>(u'0' + rest % 10);
  }
  const auto count = static_cast<int>(std::end(text) - first);
  return {{first, std::end(text)}, count + decimal.exponent};
}

/// A number of so few digits that they and the power of ten are doubles: their quotient is rounded
/// correctly. Nothing for any other text.
std::optional<double> ConvertShort(std::u16string_view text, char16_t decimal) {
  constexpr double kPowersOfTen[] = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                     1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14, 1e15};
  if (text.size() > std::size(kPowersOfTen)) return {};
  std::uint64_t digits = 0;
  std::size_t count = 0, point = text.size();
  for (const char16_t c : text) {
    if (IsDigit(c)) {
      digits = 10 * digits + (c - u'0');
      ++count;
    } else if (c == decimal && point == text.size()) {
      point = count;
    } else {
      return {};
    }
  }
  if (count == 0 || count == std::size(kPowersOfTen)) return {};
  const std::size_t decimals = count - std::min(count, point);
  const auto number = static_cast<double>(digits);
  return decimals == 0 ? number : number / kPowersOfTen[decimals];
}

}  // namespace

// The platform takes digits with at most one decimal separator and any number of group separators,
// but none in front.
std::size_t NumberLength(std::u16string_view text, const NumberFormat& format) {
  const auto separates = [](char16_t c) { return c == u',' || c == u'.'; };
  bool has_digit = false, has_decimal = false;
  std::size_t significant = 0;  // digits before the decimal separator
  std::size_t length = 0;
  for (; length < text.size(); ++length) {
    const char16_t c = text[length];
    if (IsDigit(c)) {
      if (!has_decimal && (c != u'0' || significant > 0)) ++significant;
      if (!has_decimal && significant >= kMostDigits &&
          IsTooLarge(text.substr(0, length + 1), significant, format)) {
        break;
      }
      has_digit = true;
    } else if (separates(c) && c == format.decimal && !has_decimal) {
      has_decimal = true;
    } else if (!separates(c) || c != format.group || length == 0) {
      break;
    }
  }
  return has_digit ? length : 0;
}

std::optional<double> TextToNumber(std::u16string_view text, const NumberFormat& format) {
  if (const auto number = ConvertShort(text, format.decimal)) return number;
  const std::string plain = Plain(text, format);
  const auto points = std::count(plain.begin(), plain.end(), '.');
  const bool has_digit = plain.size() > static_cast<std::size_t>(points);
  if (plain.size() == text.size() && points <= 1 && has_digit) return Convert(plain);
  const auto number = format.convert(text);
  return number && std::isfinite(*number) ? number : std::nullopt;
}

std::u16string NumberToText(double number, const NumberFormat& format) {
  if (number == 0) return u"0";
  const auto [digits, point] = ShortestDigits(std::fabs(number));
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
