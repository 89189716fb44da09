#include "platform/text_bytes.h"

#include <windows.h>

#include <algorithm>
#include <numeric>

#include "frame/errors.h"

namespace zepkit10 {
namespace {

using enum ZepStringType;

const CodePage& Ansi() {
  static const std::unique_ptr<const CodePage> page = ReadCodePage(CP_ACP);
  return *page;
}

/// The OEM code page is reached through the ANSI code page.
std::unique_ptr<CodePage> MakeOem() {
  constexpr DWORD kByteValues = 0x100;
  std::array<char, kByteValues> bytes, to_oem, to_ansi;
  std::iota(bytes.begin(), bytes.end(), '\0');
  CharToOemBuffA(bytes.data(), to_oem.data(), kByteValues);
  OemToCharBuffA(bytes.data(), to_ansi.data(), kByteValues);
  auto page = std::make_unique<CodePage>(Ansi());
  for (std::uint8_t& byte : page->to_byte) byte = static_cast<std::uint8_t>(to_oem[byte]);
  for (std::size_t value = 0; value < kByteValues; ++value) {
    page->to_unit[value] = Ansi().to_unit[static_cast<std::uint8_t>(to_ansi[value])];
  }
  return page;
}

const CodePage& Oem() {
  static const std::unique_ptr<const CodePage> page = MakeOem();
  return *page;
}

const CodePage& PageOf(ZepStringType type) { return type == zepSTAscii ? Oem() : Ansi(); }

Bstr DecodeUtf16(std::span<const std::uint8_t> bytes) {
  constexpr char16_t kNegative = 0x8000;
  const std::size_t count = bytes.size() / 2;
  Bstr text(count);
  char16_t* unit = text.data();
  char16_t all = 0;
  for (std::size_t i = 0; i < count; ++i) {
    unit[i] = static_cast<char16_t>(bytes[2 * i] | bytes[2 * i + 1] << 8);
    all |= unit[i];
  }
  if (all & kNegative) RaiseRuntimeError(ZepVbErrors3To98::zepVbErrOverflow);
  return text;
}

}  // namespace

std::unique_ptr<CodePage> ReadCodePage(unsigned code_page) {
  auto page = std::make_unique<CodePage>();
  for (std::size_t unit = 0; unit < page->to_byte.size(); ++unit) {
    const auto wide = static_cast<wchar_t>(unit);
    char bytes[8];
    const int size =
        WideCharToMultiByte(code_page, 0, &wide, 1, bytes, sizeof bytes, nullptr, nullptr);
    page->to_byte[unit] = static_cast<std::uint8_t>(size == 1 ? bytes[0] : '?');
  }
  for (std::size_t value = 0; value < page->to_unit.size(); ++value) {
    const auto byte = static_cast<char>(value);
    wchar_t wide[4];
    const int size = MultiByteToWideChar(code_page, MB_ERR_INVALID_CHARS, &byte, 1, wide, 4);
    page->to_unit[value] = size == 1 ? wide[0] : u'?';
  }
  return page;
}

bool IsUtf16(ZepStringType type) {
  if (type != zepSTAscii && type != zepSTAnsi && type != zepSTUnicode) {
    RaiseInCalledClass(ZepErrors::zepErrBadCall);
  }
  return type == zepSTUnicode;
}

std::size_t EncodedSize(std::u16string_view text, ZepStringType type) {
  return IsUtf16(type) ? 2 * text.size() : text.size();
}

void Encode(std::u16string_view text, ZepStringType type, std::uint8_t* bytes) {
  if (IsUtf16(type)) {
    for (const char16_t unit : text) {
      *bytes++ = static_cast<std::uint8_t>(unit);
      *bytes++ = static_cast<std::uint8_t>(unit >> 8);
    }
  } else {
    const auto& to_byte = PageOf(type).to_byte;
    std::transform(text.begin(), text.end(), bytes, [&](char16_t unit) { return to_byte[unit]; });
  }
}

Bstr Decode(std::span<const std::uint8_t> bytes, ZepStringType type) {
  if (IsUtf16(type)) return DecodeUtf16(bytes);
  const auto& to_unit = PageOf(type).to_unit;
  Bstr text(bytes.size());
  std::transform(bytes.begin(), bytes.end(), text.data(),
                 [&](std::uint8_t byte) { return to_unit[byte]; });
  return text;
}

}  // namespace zepkit10
