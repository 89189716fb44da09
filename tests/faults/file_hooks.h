#pragma once

#include <windows.h>

#include <cstddef>
#include <memory>
#include <vector>

namespace faults {

/// How a file operation fails.
struct FileFault {
  DWORD error = ERROR_SUCCESS;  // of the system
  /// A transfer succeeds with fewer bytes than it was asked for, and nothing else fails.
  bool is_short = false;
};

/// Lets the plan fail the file operations of the component, as long as this lives, and counts what
/// they leave open.
class FileHooks {
 public:
  explicit FileHooks(const FileFault& fault);
  ~FileHooks();

  /// Files and searches that the component opened and has not closed.
  static std::size_t OpenHandles();
  /// Closes those that a document is left open with.
  static void CloseHandles();
  /// Which readings gave nothing, counted from 0, since counting began.
  static const std::vector<int>& EmptyReadings();
  static void CountReadings();

 private:
  struct All;
  const std::unique_ptr<All> all_;
};

}  // namespace faults
