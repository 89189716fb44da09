#pragma once

#include <string>

namespace monkey {

/// What a process holds.
struct Resources {
  long objects = 0;  // of the component
  long kernel_handles = 0;
  long gdi_objects = 0;
  long platform_blocks = 0;  // texts, arrays and the like, of the platform's task allocator
  long blocks = 0;           // of operator new

  static Resources Now();

  friend bool operator==(const Resources&, const Resources&) = default;
};

/// What there is more of, "0 objects, 1 kernel handle …" with every kind named.
std::string Growth(const Resources& before, const Resources& after);

/// From now on no single block of memory may be larger than this, of the platform's task allocator
/// or of operator new.
void LimitBlocks(std::size_t bytes);

}  // namespace monkey
