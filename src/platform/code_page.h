#pragma once

#include <string>
#include <string_view>

namespace zepkit10 {

/// The code page of the system's ANSI functions, for `BytesOf` and `TextOfBytes`.
inline constexpr unsigned kAnsiCodePage = 0;

/// One byte for each UTF-16 unit. A character that the code page lacks, or has no single byte for,
/// becomes one that looks alike or else a question mark.
std::string BytesOf(std::u16string_view text, unsigned code_page);

/// One UTF-16 unit for each byte; a question mark for a byte that is no character by itself.
std::u16string TextOfBytes(std::string_view bytes, unsigned code_page);

/// Between the code pages of the system's ANSI functions and of its console, byte by byte.
void ConvertAnsiToOem(std::string& bytes);
void ConvertOemToAnsi(std::string& bytes);

}  // namespace zepkit10
