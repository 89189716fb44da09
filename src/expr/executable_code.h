#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

namespace zepkit10 {

/// The code of a function that takes nothing and returns a number: NaN where the thread's
/// floating-point environment is not the default one. It must be called there if it has a frame.
struct MachineCode {
  static constexpr std::size_t kEntry = 64;  // where it is entered, on a boundary of so many bytes
  static constexpr std::size_t kNoValue = 48;  // the way out that returns NaN, in front of a frame
  static constexpr std::uint8_t kFrameBytes = 0x48;  // of stack, taken by a first instruction of 4

  std::vector<std::uint8_t> bytes;
  bool has_frame = false;
};

/// Machine code in memory of its own, near the code of this library, which can be run and no more
/// be written.
class ExecutableCode {
 public:
  ExecutableCode() = default;
  /// Empty where there are no bytes or the system allows no more code.
  explicit ExecutableCode(const MachineCode& code) noexcept;
  ~ExecutableCode();
  ExecutableCode(ExecutableCode&& other) noexcept
      : function_(std::exchange(other.function_, nullptr)), runs_anywhere_(other.runs_anywhere_) {}
  ExecutableCode& operator=(ExecutableCode&& other) noexcept {
    std::swap(function_, other.function_);
    std::swap(runs_anywhere_, other.runs_anywhere_);
    return *this;
  }

  explicit operator bool() const { return function_; }
  double Run() const { return function_(); }
  /// Whether it may be run in any floating-point environment. Where faults are trapped, one that
  /// occurs makes the result NaN.
  bool RunsAnywhere() const { return runs_anywhere_; }
  const void* Address() const { return reinterpret_cast<const void*>(function_); }

 private:
  double (*function_)() = nullptr;
  bool runs_anywhere_ = false;
};

}  // namespace zepkit10
