#pragma once

#include <cstddef>

/// While it lives, blocks of more than so many bytes cannot be had from `new` by what is linked
/// into the test program.
class MemoryLimit {
 public:
  explicit MemoryLimit(std::size_t bytes);
  ~MemoryLimit();
  MemoryLimit(const MemoryLimit&) = delete;
  MemoryLimit& operator=(const MemoryLimit&) = delete;
};
