#include "platform/text_bytes.h"

#include <windows.h>

#include <algorithm>
#include <array>
#include <memory>

#include "frame/errors.h"

namespace zepkit10 {
namespace {

using enum ZepStringType;

constexpr std::size_t kCodeUnits = 0x10000;
constexpr std::size_t kByteValues = 0x100;

/// What each code unit and each byte becomes. Every character is converted for itself, so that it
/// stays one byte also where the code page has characters of two.
struct CodePage {
  std::array<std::uint8_t, kCodeUnits> to_byte;
  std::array<char16_t, kByteValues> to_unit;
};

std::unique_ptr<CodePage> MakeAnsi() {
  auto page = std::make_unique<CodePage>();
  for (std::size_t unit = 0; unit < kCodeUnits; ++unit) {
    const auto wide = static_cast<wchar_t>(unit);
    char bytes[4] = {'?'};
    WideCharToMultiByte(CP_ACP, 0, &wide, 1, bytes, sizeof bytes, nullptr, nullptr);
    page->to_byte[unit] = static_cast<std::uint8_t>(bytes[0]);
  }
  for (std::size_t value = 0; value < kByteValues; ++value) {
    const auto byte = static_cast<char>(value);
    wchar_t wide = L'?';
    MultiByteToWideChar(CP_ACP, 0, &byte, 1, &wide, 1);
    page->to_unit[value] = wide;
  }
  return page;
}

const CodePage& Ansi() {
  static const std::unique_ptr<const CodePage> page = MakeAnsi();
  return *page;
}

/// The OEM code page is reached through the ANSI code page.
std::unique_ptr<CodePage> MakeOem() {
  std::array<char, kByteValues> bytes, to_oem, to_ansi;
  for (std::size_t value = 0; value < kByteValues; ++value) bytes[value] = static_cast<char>(value);
  CharToOemBuffA(bytes.data(), to_oem.data(), kByteValues);
  OemToCharBuffA(bytes.data(), to_ansi.data(), kByteValues);
  auto page = std::make_unique<CodePage>();
  for (std::size_t unit = 0; unit < kCodeUnits; ++unit) {
    page->to_byte[unit] = static_cast<std::uint8_t>(to_oem[Ansi().to_byte[unit]]);
  }
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

bool IsUtf16(ZepStringType type) {
  if (type != zepSTAscii && type != zepSTAnsi && type != zepSTUnicode) {
    RaiseInCalledClass(ZepErrors::zepErrBadCall);
  }
  return type == zepSTUnicode;
}

std::u16string DecodeUtf16(std::span<const std::uint8_t> bytes) {
  constexpr char16_t kNegative = 0x8000;
  std::u16string text(bytes.size() / 2, u'\0');
  char16_t all = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    text[i] = static_cast<char16_t>(bytes[2 * i] | bytes[2 * i + 1] << 8);
    all |= text[i];
  }
  if (all & kNegative) RaiseRuntimeError(ZepVbErrors3To98::zepVbErrOverflow);
  return text;
}

}  // namespace

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

std::u16string Decode(std::span<const std::uint8_t> bytes, ZepStringType type) {
  if (IsUtf16(type)) return DecodeUtf16(bytes);
  const auto& to_unit = PageOf(type).to_unit;
  std::u16string text(bytes.size(), u'\0');
  std::transform(bytes.begin(), bytes.end(), text.begin(),
                 [&](std::uint8_t byte) { return to_unit[byte]; });
  return text;
}

}  // namespace zepkit10
