#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <span>
#include <string_view>

#include "enums.h"
#include "platform/automation/string.h"

/// Text as bytes in one of three encodings: one byte a character of the system's OEM or ANSI code
/// page, or two bytes a UTF-16 code unit, low byte first. What a code page lacks becomes what the
/// system makes of it, normally a question mark. An unknown encoding raises `zepErrBadCall`.
namespace zepkit10 {

/// What each UTF-16 unit and each byte becomes. Every one is converted for itself, so that it stays
/// one byte or unit also where the code page has characters of two.
struct CodePage {
  std::array<std::uint8_t, 0x10000> to_byte;
  std::array<char16_t, 0x100> to_unit;
};

std::unique_ptr<CodePage> ReadCodePage(unsigned code_page);

/// True for UTF-16, false for the code pages.
bool IsUtf16(ZepStringType type);

/// How many bytes a text becomes.
std::size_t EncodedSize(std::u16string_view text, ZepStringType type);

/// Writes `EncodedSize` bytes.
void Encode(std::u16string_view text, ZepStringType type, std::uint8_t* bytes);

/// The text of bytes. Of UTF-16 an odd last byte is dropped, and a code unit from U+8000 upward
/// raises error 6: character codes are 16-bit signed numbers.
Bstr Decode(std::span<const std::uint8_t> bytes, ZepStringType type);

}  // namespace zepkit10
