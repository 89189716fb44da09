#pragma once

#include <string>

namespace zepcheck {

/// An empty folder among the temporary files, which goes with everything in it.
class TemporaryFolder {
 public:
  TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;
  ~TemporaryFolder();

  /// Empty if the folder could not be made.
  const std::wstring& Path() const { return path_; }

 private:
  std::wstring path_;
};

}  // namespace zepcheck
