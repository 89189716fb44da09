#include <windows.h>

#include <algorithm>
#include <atomic>
#include <new>

#include "expr/executable_code.h"

extern "C" IMAGE_DOS_HEADER __ImageBase;

namespace zepkit10 {

#ifdef _WIN64

namespace {

constexpr std::size_t kPageSize = 4096;
constexpr long kMostPages = 4000;  // each takes 64 KB of the process's addresses

std::atomic<long> page_count = 0;

std::uintptr_t LibraryAddress() { return reinterpret_cast<std::uintptr_t>(&__ImageBase); }

/// The system knows places by their distance from the library's begin.
DWORD DistanceOf(const void* place) {
  return static_cast<DWORD>(reinterpret_cast<std::uintptr_t>(place) - LibraryAddress());
}

EXCEPTION_DISPOSITION OnTrap(EXCEPTION_RECORD* exception, void*, CONTEXT* context, void*);

/// A page of code, and what the system has to know of it: see "x64 exception handling" in the
/// documentation of the platform's calling convention.
struct Page {
  explicit Page(const MachineCode& made) : description(Describe(made.has_frame)) {
    std::copy(made.bytes.begin(), made.bytes.end(), code);
  }

  static Page* Of(void* place) {
    return reinterpret_cast<Page*>(reinterpret_cast<std::uintptr_t>(place) & ~(kPageSize - 1));
  }
  double (*Function())() { return reinterpret_cast<double (*)()>(code + MachineCode::kEntry); }
  RUNTIME_FUNCTION Describe(bool has_frame) const {
    const void* unwind = has_frame ? static_cast<const void*>(&frame) : &handler;
    return {DistanceOf(code + MachineCode::kEntry), DistanceOf(this + 1), {DistanceOf(unwind)}};
  }
  /// Lets the code be run, and no more be written.
  bool Seal() {
    DWORD before = 0;
    return VirtualProtect(this, kPageSize, PAGE_EXECUTE_READ, &before) &&
           FlushInstructionCache(GetCurrentProcess(), this, kPageSize) &&
           RtlAddFunctionTable(&description, 1, LibraryAddress());
  }

  // Version 1; the frame is taken by the first instruction, whose bytes are 4.
  const struct {
    std::uint8_t version = 1, first_bytes = 4, entries = 1, frame_register = 0;
    std::uint8_t behind = 4, small_frame = (MachineCode::kFrameBytes / 8 - 1) << 4 | 2, none[2]{};
  } frame;
  // Version 1 with a handler; no instruction needs to be undone.
  const struct {
    std::uint8_t version = UNW_FLAG_EHANDLER << 3 | 1, none[3]{};
    DWORD handler = DistanceOf(reinterpret_cast<const void*>(OnTrap));
  } handler;
  RUNTIME_FUNCTION description;
  alignas(64) std::uint8_t code[kPageSize - 64];
};
static_assert(sizeof(Page) == kPageSize);

/// Where floating-point faults are trapped, code goes on at its way out.
EXCEPTION_DISPOSITION OnTrap(EXCEPTION_RECORD* exception, void*, CONTEXT* context, void*) {
  const DWORD code = exception->ExceptionCode;
  const bool is_trap = (code >= STATUS_FLOAT_DENORMAL_OPERAND && code <= STATUS_FLOAT_UNDERFLOW) ||
                       code == STATUS_FLOAT_MULTIPLE_FAULTS || code == STATUS_FLOAT_MULTIPLE_TRAPS;
  if (!is_trap) return ExceptionContinueSearch;
  Page* page = Page::Of(reinterpret_cast<void*>(context->Rip));
  context->Rip = reinterpret_cast<DWORD64>(page->code + MachineCode::kNoValue);
  return ExceptionContinueExecution;
}

/// Behind the library and near it, for calls of what is near are quicker; null without room.
void* NewMemory() {
  constexpr std::uintptr_t kGranularity = 0x10000, kFar = 0x4000'0000;
  static std::atomic<std::uintptr_t> last = 0;
  std::uintptr_t place = last;
  if (place - LibraryAddress() > kFar) place = LibraryAddress();
  MEMORY_BASIC_INFORMATION region;
  while (place - LibraryAddress() <= kFar &&
         VirtualQuery(reinterpret_cast<void*>(place), &region, sizeof region)) {
    last = place;
    void* memory = nullptr;
    if (region.State == MEM_FREE) {
      memory = VirtualAlloc(reinterpret_cast<void*>(place), kPageSize, MEM_RESERVE | MEM_COMMIT,
                            PAGE_READWRITE);
    }
    if (memory) return memory;
    const auto end = reinterpret_cast<std::uintptr_t>(region.BaseAddress) + region.RegionSize;
    // Another thread may have been quicker in a free region.
    place = region.State == MEM_FREE ? place + kGranularity
                                     : (end + kGranularity - 1) / kGranularity * kGranularity;
  }
  last = 0;
  return nullptr;
}

void Free(void* page) {
  if (page) VirtualFree(page, 0, MEM_RELEASE);
  --page_count;
}

}  // namespace

ExecutableCode::ExecutableCode(const MachineCode& code) noexcept : runs_anywhere_(!code.has_frame) {
  if (code.bytes.empty() || code.bytes.size() > sizeof Page::code) return;
  void* memory = ++page_count <= kMostPages ? NewMemory() : nullptr;
  Page* page = memory ? new (memory) Page(code) : nullptr;
  if (page && page->Seal()) {
    function_ = page->Function();
  } else {
    Free(memory);
  }
}

ExecutableCode::~ExecutableCode() {
  if (!function_) return;
  Page* page = Page::Of(reinterpret_cast<void*>(function_));
  RtlDeleteFunctionTable(&page->description);
  Free(page);
}

#else  // no code is made for other processors

ExecutableCode::ExecutableCode(const MachineCode&) noexcept {}

ExecutableCode::~ExecutableCode() = default;

#endif

}  // namespace zepkit10
