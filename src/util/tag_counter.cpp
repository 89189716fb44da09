#include "util/tag_counter.h"

#include <limits>

#include "frame/errors.h"

namespace zepkit10 {
namespace {

std::u16string DecimalText(std::int64_t number) {
  const std::string digits = std::to_string(number);
  return {digits.begin(), digits.end()};
}

}  // namespace

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
