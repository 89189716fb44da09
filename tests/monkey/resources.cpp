#include "monkey/resources.h"

#include <windows.h>

#include <cstdint>
#include <cstdlib>
#include <new>

#include "com/allocation_spy.h"
#include "com/gdi_objects.h"
#include "platform/automation/module.h"

namespace {

/// Wine does not count them: they are looked for one by one, as far as there may be some.
long CountedHandles() {
  constexpr std::uintptr_t kStep = 4;
  constexpr int kLargestGap = 256;
  long count = 0;
  int gap = 0;
  for (std::uintptr_t value = kStep; gap < kLargestGap; value += kStep) {
    DWORD flags = 0;
    const bool exists = GetHandleInformation(reinterpret_cast<HANDLE>(value), &flags);
    count += exists;
    gap = exists ? 0 : gap + 1;
  }
  return count;
}

long KernelHandles() {
  DWORD handles = 0;
  const bool known = GetProcessHandleCount(GetCurrentProcess(), &handles) && handles > 0;
  return known ? static_cast<long>(handles) : CountedHandles();
}

std::size_t block_limit = SIZE_MAX;
long live_blocks = 0;

}  // namespace

// One thread allocates.
void* operator new(std::size_t size) {
  void* block = size > block_limit ? nullptr : std::malloc(size ? size : 1);
  if (!block) throw std::bad_alloc();
  ++live_blocks;
  return block;
}
void operator delete(void* block) noexcept {
  if (block) --live_blocks;
  std::free(block);
}
void operator delete(void* block, std::size_t) noexcept { operator delete(block); }

namespace monkey {

Resources Resources::Now() {
  return {zepkit10::LiveObjects(), KernelHandles(), GdiObjects(),
          static_cast<long>(allocation_spy::CountSince(0)), live_blocks};
}

std::string Growth(const Resources& before, const Resources& after) {
  const auto more = [](long from, long to, const char* what) {
    return std::to_string(to - from) + " " + what;
  };
  return more(before.objects, after.objects, "objects, ") +
         more(before.kernel_handles, after.kernel_handles, "kernel handles, ") +
         more(before.gdi_objects, after.gdi_objects, "GDI objects, ") +
         more(before.platform_blocks, after.platform_blocks, "platform blocks, ") +
         more(before.blocks, after.blocks, "blocks");
}

void LimitBlocks(std::size_t bytes) {
  block_limit = bytes;
  allocation_spy::Limit(bytes);
}

}  // namespace monkey
