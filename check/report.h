#pragma once

#include <string_view>

namespace zepcheck {

/// What was found, as text on standard output, and how many faults were among it.
class Report {
 public:
  void Heading(std::wstring_view text);
  void Fact(std::wstring_view name, std::wstring_view text);
  /// A sentence about what is wrong, and one that tells what to do about it.
  void Fault(std::wstring_view sentence, std::wstring_view advice);
  /// The last line.
  void Conclude();

  int Faults() const { return faults_; }

 private:
  int faults_ = 0;
};

}  // namespace zepcheck
