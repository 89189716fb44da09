// `new` of the test programs.
#include "com/memory_limit.h"

#include <atomic>
#include <cstdint>
#include <cstdlib>
#include <new>

#include "com/fault_plan.h"

namespace {

std::atomic<std::size_t> limit = SIZE_MAX;
std::atomic<long> component_blocks = 0;
faults::Operation allocation(faults::Kind::kMemory, "new");

/// In front of each block, as large as keeps it aligned.
union Header {
  bool of_component;
  char room[16];
};

void* Allocate(std::size_t size) {
  if (size > limit || size > SIZE_MAX - sizeof(Header) || faults::Fails(allocation)) return nullptr;
  auto* header = static_cast<Header*>(std::malloc(sizeof(Header) + size));
  if (!header) return nullptr;
  header->of_component = faults::IsInside();
  if (header->of_component) ++component_blocks;
  return header + 1;
}

}  // namespace

MemoryLimit::MemoryLimit(std::size_t bytes) { limit = bytes; }
MemoryLimit::~MemoryLimit() { limit = SIZE_MAX; }

long faults::ComponentBlocks() noexcept { return component_blocks; }

void* operator new(std::size_t size) {
  void* block = Allocate(size);
  if (!block) throw std::bad_alloc();
  return block;
}
void operator delete(void* block) noexcept {
  if (!block) return;
  Header* header = static_cast<Header*>(block) - 1;
  if (header->of_component) --component_blocks;
  std::free(header);
}
void operator delete(void* block, std::size_t) noexcept { operator delete(block); }
