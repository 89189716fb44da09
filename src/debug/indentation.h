#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace zepkit10 {

/// The indentation of trace output.
class Indentation {
 public:
  /// The text to print, and what it says of the next one.
  std::u16string Line(std::u16string_view text, bool omit_line_end);

 private:
  std::int16_t level_ = 0;
  bool line_is_open_ = false;
};

}  // namespace zepkit10
