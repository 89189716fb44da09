#pragma once

#include <xmmintrin.h>

#include <cstdint>

namespace zepkit10 {

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
