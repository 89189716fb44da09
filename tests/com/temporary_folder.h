#pragma once

#include <string>
#include <string_view>
#include <vector>

/// A folder of a test's own, which goes with everything in it. Names may be of any length and of
/// any characters; they are taken below the folder.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  /// With a backslash at its end.
  const std::wstring& path() const { return path_; }
  std::wstring operator/(std::wstring_view name) const { return path_ + std::wstring(name); }

  /// Creates a file or a directory whose parents exist, and returns its path.
  std::wstring File(std::wstring_view name, std::string_view bytes = {}) const;
  std::wstring Directory(std::wstring_view name) const;
  /// Creates a directory below a directory, a number of times; returns the last one's path.
  std::wstring Nest(std::wstring_view name, int depth) const;
  /// Creates a directory that leads to another, named from where it stands; false where the system
  /// has no such thing.
  bool Link(std::wstring_view name, const std::wstring& target);

  void SetAttributes(std::wstring_view name, unsigned long attributes) const;
  bool Has(std::wstring_view name) const;
  std::string Read(std::wstring_view name) const;
  void Remove(std::wstring_view name) const;

 private:
  std::wstring path_;
  std::vector<std::wstring> links_;
};
