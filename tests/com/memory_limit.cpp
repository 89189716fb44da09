#include "com/memory_limit.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>

namespace {

std::atomic<std::size_t> limit = SIZE_MAX;

}  // namespace

MemoryLimit::MemoryLimit(std::size_t bytes) { limit = bytes; }
MemoryLimit::~MemoryLimit() { limit = SIZE_MAX; }

void* operator new(std::size_t size) {
  void* block = size > limit ? nullptr : std::malloc(size ? size : 1);
  if (!block) throw std::bad_alloc();
  return block;
}
void operator delete(void* block) noexcept { std::free(block); }
void operator delete(void* block, std::size_t) noexcept { std::free(block); }
