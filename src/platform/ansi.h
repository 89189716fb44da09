#pragma once

#include <string>
#include <string_view>

namespace zepkit10 {

/// Text in the ANSI code page. A character that it lacks becomes one that looks alike or else the
/// code page's default, a question mark.
std::string AnsiOf(std::u16string_view text);

/// The same for a name of a file: a character that the code page lacks becomes a question mark,
/// which no name contains, so that no other file is meant.
std::string AnsiNameOf(std::u16string_view name);

std::u16string TextOfAnsi(std::string_view ansi);

}  // namespace zepkit10
