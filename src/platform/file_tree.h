#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zepkit10 {

/// The full paths of the normal files in a directory that match a pattern of the system's; those of
/// a directory stand before those of its subdirectories, depth first, each in the system's order.
/// Nothing where the listing of `directory`, which ends in a backslash, cannot be started; a
/// subdirectory of which that is true is passed over.
///
/// A subdirectory that is a link is entered as well, but each target only once, and not where it
/// leads back to a directory on the way to itself.
std::optional<std::vector<std::u16string>> FilesIn(std::u16string_view directory,
                                                   std::u16string_view pattern, bool recursive);

}  // namespace zepkit10
