#include "util/tag_counter.h"

#include <limits>

#include "frame/errors.h"
#include "util/decimal_text.h"

namespace zepkit10 {

std::u16string TagCounter::Next() {
  std::int64_t tag = next_.load(std::memory_order_relaxed);
  do {
    if (tag > std::numeric_limits<std::int32_t>::max()) {
      RaiseRuntimeError(ZepVbErrors3To98::zepVbErrOverflow);
    }
  } while (!next_.compare_exchange_weak(tag, tag + 1, std::memory_order_relaxed));
  return DecimalText(tag);
}

}  // namespace zepkit10
