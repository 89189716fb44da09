#include "platform/file_tree.h"

#include <windows.h>

#include <algorithm>
#include <cstdint>
#include <set>
#include <utility>

#include "platform/automation/string.h"
#include "platform/file_handle.h"
#include "platform/file_system.h"

namespace zepkit10 {
namespace {

/// What makes a directory the same one under any path: its volume and its number there.
using Identity = std::pair<std::uint64_t, std::uint64_t>;

std::optional<Identity> IdentityOf(std::u16string_view directory) {
  constexpr DWORD kShareAll = FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE;
  const FileHandle opened =
      OwnFile(CreateFileW(WideText(SystemName(directory)), 0, kShareAll, nullptr, OPEN_EXISTING,
                          FILE_FLAG_BACKUP_SEMANTICS, nullptr));
  BY_HANDLE_FILE_INFORMATION information;
  if (!opened || !GetFileInformationByHandle(opened.get(), &information)) return {};
  const auto high = std::uint64_t{information.nFileIndexHigh} << 32;
  return Identity(information.dwVolumeSerialNumber, high | information.nFileIndexLow);
}

/// What stands behind the star of a pattern such as "*.txt"; nothing for a pattern that the system
/// may read in another way, or refuse.
std::optional<std::u16string_view> EndingIn(std::u16string_view pattern) {
  constexpr std::size_t kLongestName = 255;
  if (pattern.size() < 2 || pattern.size() > kLongestName || pattern[0] != u'*') return {};
  const std::u16string_view ending = pattern.substr(1);
  const bool special = std::any_of(ending.begin(), ending.end(), [](char16_t c) {
    return c < u' ' || std::u16string_view(u"*?<>\"|\\/:").find(c) != std::u16string_view::npos;
  });
  if (special || ending.ends_with(u'.') || ending.ends_with(u' ')) return {};
  return ending;
}

/// One listing of a tree. A stack of its own takes it to any depth.
class Walk {
 public:
  Walk(std::u16string_view pattern, bool recursive) : pattern_(pattern), recursive_(recursive) {}

  bool Run(std::u16string_view root) {
    root_length_ = root.size();
    if (!Visit(root)) return false;
    while (!pending_.empty()) {
      const Directory next = std::move(pending_.back());
      pending_.pop_back();
      if (!next.is_link || MayEnter(next.path)) Visit(next.path);
    }
    return true;
  }

  std::vector<std::u16string> TakeFiles() { return std::move(files_); }

 private:
  struct Directory {
    std::u16string path;  // ends in a backslash
    bool is_link;
  };

  bool Visit(std::u16string_view directory) {
    if (!recursive_) return List(directory, pattern_, u"", false);
    if (matches_all_ || ending_) return List(directory, u"*", ending_.value_or(u""), true);
    // Only the system knows which names match, and it leaves out the subdirectories that do not.
    if (!List(directory, pattern_, u"", false)) return false;
    List(directory, u"*", {}, true);
    return true;
  }

  /// Without an `ending` no files are taken.
  bool List(std::u16string_view directory, std::u16string_view pattern,
            std::optional<std::u16string_view> ending, bool subdirectories) {
    DirectoryListing listing(directory, pattern);
    const auto first = static_cast<std::ptrdiff_t>(pending_.size());
    while (listing.Next()) {
      std::u16string path(directory);
      path.append(listing.Name());
      if (ending && listing.IsNormalFile()) {
        if (listing.NameEndsIn(*ending)) files_.push_back(std::move(path));
      } else if (subdirectories && listing.IsSubdirectory()) {
        pending_.push_back({path.append(1, u'\\'), listing.IsReparsePoint()});
      }
    }
    std::reverse(pending_.begin() + first, pending_.end());  // the first is taken first
    return listing.Started();
  }

  /// Decides about a link; looks at directories only, so that a tree without links opens none.
  bool MayEnter(std::u16string_view link) {
    const std::optional<Identity> target = IdentityOf(link);
    if (!target) return false;
    for (std::size_t end = root_length_; end < link.size();) {
      if (IdentityOf(link.substr(0, end)) == target) return false;
      end = link.find(u'\\', end) + 1;
    }
    return entered_.insert(*target).second;
  }

  const std::u16string_view pattern_;
  const bool recursive_;
  const bool matches_all_ = pattern_.empty() || pattern_ == u"*" || pattern_ == u"*.*";
  const std::optional<std::u16string_view> ending_ = EndingIn(pattern_);
  std::size_t root_length_ = 0;
  std::vector<std::u16string> files_;
  std::vector<Directory> pending_;
  std::set<Identity> entered_;
};

}  // namespace

std::optional<std::vector<std::u16string>> FilesIn(std::u16string_view directory,
                                                   std::u16string_view pattern, bool recursive) {
  Walk walk(pattern, recursive);
  if (!walk.Run(directory)) return {};
  return walk.TakeFiles();
}

}  // namespace zepkit10
