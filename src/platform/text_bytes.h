#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "enums.h"

/// Text as bytes in one of three encodings: one byte a character of the system's OEM or ANSI code
/// page, or two bytes a UTF-16 code unit, low byte first. What a code page lacks becomes what the
/// system makes of it, normally a question mark. An unknown encoding raises `zepErrBadCall`.
namespace zepkit10 {

/// How many bytes a text becomes.
std::size_t EncodedSize(std::u16string_view text, ZepStringType type);

/// Writes `EncodedSize` bytes.
void Encode(std::u16string_view text, ZepStringType type, std::uint8_t* bytes);

/// The text of bytes. Of UTF-16 an odd last byte is dropped, and a code unit from U+8000 upward
/// raises error 6: character codes are 16-bit signed numbers.
std::u16string Decode(std::span<const std::uint8_t> bytes, ZepStringType type);

}  // namespace zepkit10
