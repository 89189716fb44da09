#pragma once

#include <gtest/gtest.h>
#include <xmmintrin.h>

/// What a host may have set of the processor's floating-point environment.
struct FloatSettings {
  unsigned mxcsr;
  unsigned short x87;

  static FloatSettings Current() {
    FloatSettings current{_mm_getcsr() & ~0x3Fu, 0};
    asm volatile("fnstcw %0" : "=m"(current.x87));
    return current;
  }
  void Apply() const {
    asm volatile("fnclex");
    asm volatile("fldcw %0" : : "m"(x87));
    _mm_setcsr(mxcsr);
  }
  friend bool operator==(const FloatSettings&, const FloatSettings&) = default;
};

inline constexpr unsigned kTrapAllRoundUp = 0x4000;  // MXCSR: no exception masked, round up
inline constexpr unsigned kTrapFaults = 0x1900;  // as Pascal programs do: all but the harmless ones
// No exception masked, round up, 64-bit precision.
inline constexpr unsigned short kX87TrapAll = 0x0B40;

/// Runs a call as a host would that traps floating-point faults, and demands the host's settings
/// back.
template <class Call>
auto InTrappingHost(Call call, unsigned mxcsr = kTrapAllRoundUp) {
  const FloatSettings mine = FloatSettings::Current(), host{mxcsr, kX87TrapAll};
  host.Apply();
  auto result = call();
  const FloatSettings after = FloatSettings::Current();
  mine.Apply();
  EXPECT_TRUE(after == host);
  return result;
}
