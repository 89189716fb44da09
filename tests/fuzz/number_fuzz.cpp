// Numbers and their texts. The first byte chooses the number format, the next eight are a number
// that is written and read again, and four are a tag; the rest is text in Latin-1, of which the
// longest number at the start is looked for by converting every part.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "expr/number_format.h"
#include "frame/errors.h"
#include "fuzz/expect.h"
#include "fuzz/input.h"
#include "unit/expr/naive_numbers.h"
#include "util/tag_counter.h"

namespace {

using namespace zepkit10;

std::u16string Wide(const std::string& text) { return {text.begin(), text.end()}; }

std::u16string Digits(std::u16string_view text) {
  std::u16string digits;
  for (const char16_t c : text) {
    if (c >= u'0' && c <= u'9' && (c != u'0' || !digits.empty())) digits += c;
  }
  while (digits.ends_with(u'0')) digits.pop_back();
  return digits;
}

/// The fewest digits that a rounding of the number needs to be read as the number again.
std::size_t FewestDigits(double number) {
  char text[32];
  for (int digits = 1;; ++digits) {
    std::snprintf(text, sizeof text, "%.*e", digits - 1, number);
    if (std::strtod(text, nullptr) == number) return static_cast<std::size_t>(digits);
  }
}

void CheckWriting(double number, const NumberFormat& format) {
  if (!std::isfinite(number)) return;
  const std::u16string text = NumberToText(number, format);
  const bool negative = text.starts_with(u'-');
  const std::u16string_view amount = std::u16string_view(text).substr(negative);
  Expect(negative == (number < 0), "another sign");
  Expect(TextToNumber(amount, format) == std::fabs(number), "read as another number");
  const auto point = amount.find(format.decimal);
  Expect(amount.find_first_not_of(u"0123456789") == point, "neither digit nor separator");
  Expect(point == amount.npos || (point > 0 && amount.back() != u'0' && point + 1 < amount.size()),
         "zeros at the end");
  Expect(amount[0] != u'0' || amount.size() == 1 || point == 1, "zeros at the start");
  if (point != amount.npos) {
    Expect(amount.find_first_not_of(u"0123456789", point + 1) == amount.npos, "two separators");
  }
  if (number != 0) Expect(Digits(amount).size() <= FewestDigits(number), "not the shortest text");
}

void CheckReading(std::u16string_view text, const NumberFormat& format) {
  constexpr std::size_t kLongest = 700;  // every part is converted
  const std::size_t run = std::min(text.find_first_not_of(u"0123456789,."), text.size());
  if (run > kLongest) return;
  std::size_t length = run;
  while (length > 0 && !format.convert(text.substr(0, length))) --length;
  Expect(NumberLength(text, format) == length, "a number of another length");
  for (const std::size_t part : {length, run, run / 2}) {
    if (part == 0) continue;
    const auto number = TextToNumber(text.substr(0, part), format);
    Expect(number == format.convert(text.substr(0, part)), "another number");
  }
}

void CheckTags(std::int32_t first) {
  TagCounter counter(first);
  for (std::int64_t tag = first; tag < std::int64_t{first} + 3; ++tag) {
    const bool fits = tag <= 2147483647;
    try {
      Expect(counter.Next() == Wide(std::to_string(tag)), "another tag");
      Expect(fits, "a tag too many");
    } catch (const Failure& failure) {
      Expect(!fits && failure.number == 6, "no tag");
    }
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Input input(data, size);
  const auto& format = input.UpTo(1) ? naive::GermanNumbers() : naive::EnglishNumbers();
  CheckWriting(input.Any<double>(), format);
  CheckTags(input.Any<std::int32_t>());
  CheckReading(input.Text(), format);
  return 0;
}
