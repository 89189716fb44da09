#pragma once

#include <string_view>

namespace zepkit10 {

/// Appends one line to a text file in the ANSI code page, which is created if it is missing: the
/// current date and time as the user's text, ": " and the text; an empty text appends an empty
/// line. Either the whole line is written or nothing. `zepErrBadCallContext` for an empty file name
/// or a missing directory, otherwise the runtime's error.
void AppendToLog(std::u16string_view path, std::u16string_view text);

}  // namespace zepkit10
