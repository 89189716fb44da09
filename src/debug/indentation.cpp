#include "debug/indentation.h"

namespace zepkit10 {

std::u16string Indentation::Line(std::u16string_view text, bool omit_line_end) {
  line_is_open_ = omit_line_end;
  return std::u16string(text);
}

}  // namespace zepkit10
