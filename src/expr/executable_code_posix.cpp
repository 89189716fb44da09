// For the logic on its own, as its tests and benchmarks run it.
#include <dlfcn.h>
#include <signal.h>
#include <sys/mman.h>
#include <ucontext.h>

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

/// Where floating-point faults are trapped, code goes on at its way out.
void OnTrap(int, siginfo_t*, void* context) {
  greg_t& place = static_cast<ucontext_t*>(context)->uc_mcontext.gregs[REG_RIP];
  Dl_info module;
  if (dladdr(reinterpret_cast<void*>(place), &module)) {
    signal(SIGFPE, SIG_DFL);  // of the program, whose fault it is
  } else {
    place = place / kPageSize * kPageSize + MachineCode::kNoValue;
  }
}

bool HandleTraps() {
  struct sigaction action {};
  action.sa_sigaction = OnTrap;
  action.sa_flags = SA_SIGINFO;
  return sigaction(SIGFPE, &action, nullptr) == 0;
}

}  // namespace

ExecutableCode::ExecutableCode(const MachineCode& code) noexcept : runs_anywhere_(!code.has_frame) {
  if (code.bytes.empty() || code.bytes.size() > kPageSize) return;
  static const bool handles_traps = HandleTraps();
  void* page = handles_traps ? NewPage() : nullptr;
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
