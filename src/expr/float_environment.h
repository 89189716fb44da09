#pragma once

#include <xmmintrin.h>

#include <bit>
#include <cstdint>

namespace zepkit10 {

/// True but for infinities and NaN. Looks at the bits alone, so that it traps in no environment.
constexpr bool IsFinite(double number) {
  constexpr std::uint64_t kExponent = 0x7ff0'0000'0000'0000;
  return (std::bit_cast<std::uint64_t>(number) & kExponent) != kExponent;
}

/// The processor's default floating-point environment for the length of a scope: no trapped
/// exceptions, round to nearest, full precision. Some hosts run with others, and would be thrown
/// out of an evaluation, or get other results from it.
class DefaultFloatEnvironment {
 public:
  DefaultFloatEnvironment() {
    asm volatile("fnstcw %0" : "=m"(x87_));
    if ((mxcsr_ & ~kMxcsrFlags) != kMxcsrDefault) _mm_setcsr(kMxcsrDefault);
    if (x87_ != kX87Default) Load(kX87Default);
  }
  ~DefaultFloatEnvironment() {
    if ((mxcsr_ & ~kMxcsrFlags) != kMxcsrDefault) {
      _mm_setcsr(mxcsr_);
    }
    if (x87_ != kX87Default) {
      asm volatile("fnclex");  // what was masked here must not trap there
      Load(x87_);
    }
  }
  DefaultFloatEnvironment(const DefaultFloatEnvironment&) = delete;
  DefaultFloatEnvironment& operator=(const DefaultFloatEnvironment&) = delete;

 private:
  static constexpr std::uint32_t kMxcsrFlags = 0x3f;
  static constexpr std::uint32_t kMxcsrDefault = 0x1f80;
  static constexpr std::uint16_t kX87Default = 0x037f;

  static void Load(std::uint16_t control) { asm volatile("fldcw %0" : : "m"(control)); }

  const std::uint32_t mxcsr_ = _mm_getcsr();
  std::uint16_t x87_;
};

}  // namespace zepkit10
