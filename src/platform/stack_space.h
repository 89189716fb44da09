#pragma once

#include <windows.h>

#include <cstddef>
#include <cstdint>

#include "frame/errors.h"

namespace zepkit10 {

/// What a call may need of the stack before it reaches client code, generously.
inline constexpr std::size_t kStackReserve = 64 * 1024;

/// The lowest address of the calling thread's stack, from the thread's environment block: the
/// function that tells it came with a later Windows.
inline std::uintptr_t StackBottom() {
  std::uintptr_t bottom;
#ifdef _WIN64
  asm volatile("movq %%gs:0x1478, %0" : "=r"(bottom));
#else
  asm volatile("movl %%fs:0xE0C, %0" : "=r"(bottom));
#endif
  return bottom;
}

/// Raises error 28 where the stack is nearly used up, as by a handler that calls again, without
/// end, what it handles.
inline void RequireStackSpace() {
  const char here = 0;
  if (reinterpret_cast<std::uintptr_t>(&here) - StackBottom() < kStackReserve) {
    RaiseRuntimeError(ZepVbErrors3To98::zepVbErrOutOfStackSpace);
  }
}

}  // namespace zepkit10
