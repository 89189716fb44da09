#pragma once

#include <windows.h>

#include <type_traits>

/// Declares where the program keeps the address of a function of the system, which takes so many
/// bytes of arguments in a 32-bit program.
#ifdef _WIN64
#define DECLARE_IMPORT(function, argument_bytes) extern "C" decltype(&function) __imp_##function
#else
#define DECLARE_IMPORT(function, argument_bytes) \
  extern "C" decltype(&function) __imp_##function asm("__imp__" #function "@" #argument_bytes)
#endif

/// Stands in for a function of the system wherever the test program, and the component where it is
/// linked into it, calls that function; as long as this lives.
template <auto* slot>
class ImportHook {
 public:
  using Function = std::remove_pointer_t<decltype(slot)>;

  explicit ImportHook(Function replacement) { Put(replacement); }
  ~ImportHook() { Put(kSystem); }
  ImportHook(const ImportHook&) = delete;
  ImportHook& operator=(const ImportHook&) = delete;

  static inline const Function kSystem = *slot;

 private:
  static void Put(Function function) {
    DWORD protection = 0;
    VirtualProtect(slot, sizeof *slot, PAGE_READWRITE, &protection);
    *slot = function;
    VirtualProtect(slot, sizeof *slot, protection, &protection);
  }
};
