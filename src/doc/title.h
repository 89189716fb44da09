#pragma once

#include <string>
#include <string_view>

#include "util/tag_counter.h"

namespace zepkit10 {

/// The title of a document: what stands behind the last backslash of its path, without a double
/// quote at the end. `zepErrIndexOutOfRange`, raised by the list of the path's parts, for an empty
/// path.
std::u16string TitleOf(std::u16string_view path);

/// The folder of a path with its backslash, and the name in it; no backslash, no folder.
std::u16string_view FolderOf(std::u16string_view path);
std::u16string_view NameOf(std::u16string_view path);

/// "Unbenannt" and the next number; error 6 where there is none.
std::u16string UntitledTitle(TagCounter& numbers);

}  // namespace zepkit10
