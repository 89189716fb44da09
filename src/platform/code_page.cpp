#include "platform/code_page.h"

#include <windows.h>

#include "platform/automation/string.h"

namespace zepkit10 {
namespace {

bool HasOnlySingleBytes(unsigned code_page) {
  CPINFO info;
  return GetCPInfo(code_page, &info) && info.MaxCharSize == 1;
}

char ByteOf(char16_t unit, unsigned code_page) {
  char bytes[8];
  const auto wide = static_cast<wchar_t>(unit);
  const int size =
      WideCharToMultiByte(code_page, 0, &wide, 1, bytes, sizeof bytes, nullptr, nullptr);
  return size == 1 ? bytes[0] : '?';
}

char16_t UnitOf(char byte, unsigned code_page) {
  wchar_t units[4];
  const int size = MultiByteToWideChar(code_page, MB_ERR_INVALID_CHARS, &byte, 1, units, 4);
  return size == 1 ? static_cast<char16_t>(units[0]) : u'?';
}

}  // namespace

std::string BytesOf(std::u16string_view text, unsigned code_page) {
  std::string bytes(text.size(), '\0');
  const int count = static_cast<int>(text.size());
  // At once where that cannot mix up positions: a pair of surrogates may become one character.
  if (HasOnlySingleBytes(code_page) &&
      WideCharToMultiByte(code_page, 0, reinterpret_cast<const wchar_t*>(text.data()), count,
                          bytes.data(), count, nullptr, nullptr) == count) {
    return bytes;
  }
  for (std::size_t i = 0; i < text.size(); ++i) bytes[i] = ByteOf(text[i], code_page);
  return bytes;
}

std::u16string TextOfBytes(std::string_view bytes, unsigned code_page) {
  std::u16string text(bytes.size(), u'\0');
  const int count = static_cast<int>(bytes.size());
  if (HasOnlySingleBytes(code_page) &&
      MultiByteToWideChar(code_page, 0, bytes.data(), count,
                          reinterpret_cast<wchar_t*>(text.data()), count) == count) {
    return text;
  }
  for (std::size_t i = 0; i < bytes.size(); ++i) text[i] = UnitOf(bytes[i], code_page);
  return text;
}

void ConvertAnsiToOem(std::string& bytes) {
  CharToOemBuffA(bytes.data(), bytes.data(), static_cast<DWORD>(bytes.size()));
}

void ConvertOemToAnsi(std::string& bytes) {
  OemToCharBuffA(bytes.data(), bytes.data(), static_cast<DWORD>(bytes.size()));
}

}  // namespace zepkit10
