// The compiler's runtime never frees its slot of thread storage. A process has about a thousand of
// them, so one that loads and unloads the DLL as often would run out. Code linked into the DLL
// reaches TlsAlloc through the pointer that is defined here instead of the import library's.
#include "platform/thread_slots.h"

#include <windows.h>

#include <algorithm>
#include <iterator>

namespace zepkit10 {
namespace {

// Used before the constructors of the DLL have run: no initialisation at run time.
constinit DWORD slots[16] = {};
constinit LONG used = 0;  // of all slots, also of those beyond the array

DWORD WINAPI AllocateRecorded() {
  const auto allocate = reinterpret_cast<decltype(&TlsAlloc)>(
      reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), "TlsAlloc")));
  const DWORD slot = allocate();
  if (slot != TLS_OUT_OF_INDEXES) {
    const LONG index = InterlockedIncrement(&used) - 1;
    if (index < std::ssize(slots)) slots[index] = slot;
  }
  return slot;
}

}  // namespace

void FreeThreadSlots() noexcept {
  for (LONG i = 0; i < std::min<LONG>(used, std::ssize(slots)); ++i) TlsFree(slots[i]);
}

}  // namespace zepkit10

#ifdef _WIN64
#define IMPORTED_TLS_ALLOC "__imp_TlsAlloc"
#else
#define IMPORTED_TLS_ALLOC "__imp__TlsAlloc@0"
#endif
extern "C" {
extern decltype(&TlsAlloc) const imported_tls_alloc asm(IMPORTED_TLS_ALLOC);
constinit decltype(&TlsAlloc) const imported_tls_alloc = zepkit10::AllocateRecorded;
}
