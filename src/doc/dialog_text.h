#pragma once

#include <string>
#include <string_view>

/// Texts that go into the system's file dialogs, and what their answers mean.
namespace zepkit10 {

/// Whether a text is a list of filters: descriptions and patterns in turn with "|" between them,
/// none of them empty and none with a NUL in it. The empty text is the list of no filters.
bool IsFilterList(std::u16string_view filter);

/// A list of filters as the system reads it: each part ends with a NUL, and a NUL ends the list.
std::u16string SystemFilter(std::u16string_view filter);

/// What a dialog left in its buffer: the text before the first NUL or, where several files could be
/// chosen, before the first two in a row. The whole buffer if nothing ends it.
std::u16string_view ChoiceIn(std::u16string_view buffer, bool several);

/// The name of the chosen file without its folder; empty for several files, which are a folder and
/// names with NULs between them.
std::u16string_view FileTitleOf(std::u16string_view choice);

/// Whether two texts are the same where letter case does not count.
using SameText = bool(std::u16string_view, std::u16string_view);

/// Whether any of the chosen files has an extension, and another one than the default. The default
/// may begin with its period; without a default there is no other.
bool HasOtherExtension(std::u16string_view choice, std::u16string_view default_extension,
                       SameText& same);

}  // namespace zepkit10
