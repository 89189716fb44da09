#include "platform/user_number_format.h"

#include <windows.h>
#include <oleauto.h>

namespace zepkit10 {
namespace {

std::optional<double> ConvertByPlatform(std::u16string_view text) {
  std::wstring copy(text.begin(), text.end());
  double number = 0;
  if (FAILED(VarR8FromStr(copy.data(), LOCALE_USER_DEFAULT, 0, &number))) return {};
  return number;
}

char16_t Separator(LCTYPE which) {
  wchar_t text[8];
  const int length = GetLocaleInfoW(LOCALE_USER_DEFAULT, which, text, std::size(text));
  // A separator of more than one character is none that a term could contain.
  return length == 2 ? static_cast<char16_t>(text[0]) : u'\0';
}

}  // namespace

NumberFormat UserNumberFormat() {
  return {Separator(LOCALE_SDECIMAL), Separator(LOCALE_STHOUSAND), ConvertByPlatform};
}

}  // namespace zepkit10
