#pragma once

#include <windows.h>

/// How many GDI objects the process has.
inline int GdiObjects() {
  const DWORD known = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
  if (known > 0) return static_cast<int>(known);
    // Wine does not count, but has the system's table of handles where the process can read it.
#ifdef _WIN64
  const auto* process = reinterpret_cast<const char*>(__readgsqword(0x60));
  constexpr int kTable = 0xF8, kEntry = 24, kType = 14;
#else
  const auto* process = reinterpret_cast<const char*>(__readfsdword(0x30));
  constexpr int kTable = 0x94, kEntry = 16, kType = 10;
#endif
  constexpr int kEntries = 0x4000;
  const char* table = *reinterpret_cast<const char* const*>(process + kTable);
  int count = 0;
  for (int i = 0; table && i < kEntries; ++i) count += table[i * kEntry + kType] != 0;
  return count;
}
