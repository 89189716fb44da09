// For the logic on its own, as its tests and benchmarks run it. Nothing handles trapped faults
// here: they end the process.
#include <sys/mman.h>

#include <algorithm>
#include <atomic>

#include "expr/executable_code.h"

namespace zepkit10 {
namespace {

constexpr std::size_t kPageSize = 4096;

/// Near this function, where that is free.
void* NewPage() {
  constexpr std::uintptr_t kDistance = 64 << 20;
  static std::atomic<std::uintptr_t> next =
      reinterpret_cast<std::uintptr_t>(NewPage) / kPageSize * kPageSize + kDistance;
  void* page = mmap(reinterpret_cast<void*>(next += kPageSize), kPageSize, PROT_READ | PROT_WRITE,
                    MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  return page == MAP_FAILED ? nullptr : page;
}

}  // namespace

ExecutableCode::ExecutableCode(const MachineCode& code) noexcept : runs_anywhere_(!code.has_frame) {
  if (code.bytes.empty() || code.bytes.size() > kPageSize) return;
  void* page = NewPage();
  if (!page) return;
  std::copy(code.bytes.begin(), code.bytes.end(), static_cast<std::uint8_t*>(page));
  if (mprotect(page, kPageSize, PROT_READ | PROT_EXEC) == 0) {
    function_ = reinterpret_cast<double (*)()>(static_cast<std::byte*>(page) + MachineCode::kEntry);
  } else {
    munmap(page, kPageSize);
  }
}

ExecutableCode::~ExecutableCode() {
  if (!function_) return;
  munmap(reinterpret_cast<std::byte*>(function_) - MachineCode::kEntry, kPageSize);
}

}  // namespace zepkit10
