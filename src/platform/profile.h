#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace zepkit10 {

/// Entries of initialisation files, through the system's ANSI functions. An empty file name stands
/// for the system's own file; one without a directory for a file in the system's directory.

/// Nothing where the file has no such entry. The system cuts values after 255 characters.
std::optional<std::u16string> ReadProfileEntry(std::u16string_view file,
                                               std::u16string_view section,
                                               std::u16string_view key);

/// Creates the file where it is missing. A write that the system refuses is not reported.
void WriteProfileEntry(std::u16string_view file, std::u16string_view section,
                       std::u16string_view key, std::u16string_view value);

}  // namespace zepkit10
