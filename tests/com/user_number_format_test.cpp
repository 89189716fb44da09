// What the term engine takes as a number, against the platform's own conversion.
#include "platform/user_number_format.h"

#include <windows.h>
#include <gtest/gtest.h>
#include <oleauto.h>

#include <string>

namespace {

bool PlatformConverts(const std::u16string& text, double* number) {
  std::wstring copy(text.begin(), text.end());
  return SUCCEEDED(VarR8FromStr(copy.data(), LOCALE_USER_DEFAULT, 0, number));
}

/// The longest part at the start of a text that the platform converts.
std::size_t LongestByPlatform(const std::u16string& text) {
  double number;
  for (std::size_t length = text.size(); length > 0; --length) {
    if (PlatformConverts(text.substr(0, length), &number)) return length;
  }
  return 0;
}

/// Calls `check` with every text of up to seven digits, commas and points.
template <class Check>
void ForEveryNumberText(Check check) {
  std::u16string text;
  for (int count = 1; count <= 3 * 3 * 3 * 3 * 3 * 3 * 3; ++count) {
    for (int length = 1; length <= 7; ++length) {
      text.clear();
      for (int rest = count; static_cast<int>(text.size()) < length; rest /= 3) {
        text += u"1,."[rest % 3];
      }
      check(text);
    }
  }
}

void ExpectThePlatformsNumbers() {
  const zepkit10::NumberFormat& format = zepkit10::UserNumberFormat();
  ForEveryNumberText([&](const std::u16string& text) {
    const std::string shown(text.begin(), text.end());
    const std::size_t length = zepkit10::NumberLength(text, format);
    ASSERT_EQ(LongestByPlatform(text), length) << shown;
    double expected = 0;
    const bool converts = PlatformConverts(text, &expected);
    const auto number = zepkit10::TextToNumber(text, format);
    ASSERT_EQ(converts, number.has_value()) << shown;
    if (number) {
      ASSERT_EQ(expected, *number) << shown;
    }
  });
}

TEST(UserNumberFormatTest, TakesWhatThePlatformTakes) { ExpectThePlatformsNumbers(); }

TEST(UserNumberFormatTest, TakesWhatThePlatformTakesForAGermanUser) { ExpectThePlatformsNumbers(); }

}  // namespace
