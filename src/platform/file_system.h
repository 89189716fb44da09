#pragma once

#include <windows.h>

#include <string>
#include <string_view>

namespace zepkit10 {

/// The name under which the system's functions take a path: a long one is made absolute and gets
/// the prefix that lifts their limit of 260 characters. `room` is how many characters the caller
/// will append. A path with a NUL inside becomes a name that the system refuses.
std::u16string SystemName(std::u16string_view path, std::size_t room = 0);

/// False as well where the attributes of the path cannot be read.
bool IsDirectory(std::u16string_view path);
bool IsFile(std::u16string_view path);

/// Creates one directory; false where it cannot or something of that name exists.
bool MakeDirectory(std::u16string_view path);

/// The entries of a directory that match a pattern of the system's, in the system's order. All of
/// them are taken from one opening of the directory.
class DirectoryListing {
 public:
  /// `directory` ends in a backslash. An empty pattern stands for every entry.
  DirectoryListing(std::u16string_view directory, std::u16string_view pattern);
  ~DirectoryListing();
  DirectoryListing(const DirectoryListing&) = delete;
  DirectoryListing& operator=(const DirectoryListing&) = delete;

  /// False where the directory does not exist or cannot be read, or where the pattern is no name.
  /// That nothing matches is no failure.
  bool Started() const { return started_; }
  /// Moves on to the first or next entry; false after the last one.
  bool Next();

  std::u16string_view Name() const;
  /// Whether the name or the short name ends in a text, as the system compares names.
  bool NameEndsIn(std::u16string_view ending) const;
  /// A directory below this one: "." and ".." are none.
  bool IsSubdirectory() const;
  /// Neither a directory nor hidden nor of the system; read-only files are normal ones.
  bool IsNormalFile() const;
  /// A link to another place, or another entry that is not simply itself.
  bool IsReparsePoint() const;

 private:
  bool Has(DWORD attributes) const { return (entry_.dwFileAttributes & attributes) != 0; }

  HANDLE search_ = INVALID_HANDLE_VALUE;
  bool started_ = false;
  bool at_first_ = false;  // `entry_` holds the first entry, which `Next` is still to give
  WIN32_FIND_DATAW entry_;
};

}  // namespace zepkit10
