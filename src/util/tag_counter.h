#pragma once

#include <atomic>
#include <cstdint>
#include <string>

namespace zepkit10 {

/// Tags in decimal: each is given out once, to whatever thread asks.
class TagCounter {
 public:
  constexpr explicit TagCounter(std::int32_t first = 0) : next_(first) {}

  /// Error 6 once 2147483647 has been given out.
  std::u16string Next();

 private:
  std::atomic<std::int64_t> next_;
};

}  // namespace zepkit10
