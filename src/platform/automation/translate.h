#pragma once

#include <windows.h>

#include <cstdint>

namespace zepkit10 {

struct ClassDescription;

/// Turns the exception being handled into an HRESULT and the thread's IErrorInfo: number, source
/// and description of a `Failure`; error 7 for exhausted memory. Call it inside a catch block.
HRESULT TranslateException(const ClassDescription& called) noexcept;

/// Refuses a call before it starts: no stale error text stays behind.
HRESULT Refuse(HRESULT result) noexcept;

/// How a number travels in an HRESULT: runtime errors as 0x800A0000 + number.
constexpr HRESULT ToHresult(long number) {
  return number > 0 ? static_cast<HRESULT>(0x800A0000L + number) : static_cast<HRESULT>(number);
}

/// The number of an error as clients know it: runtime errors, and those that hosts make of the
/// platform's own (13 for a type mismatch, 438 for an unknown member …), are positive.
std::int32_t FromHresult(HRESULT failed) noexcept;

/// Raises what a function of the platform reports.
[[noreturn]] void RaiseRefusal(HRESULT refused);
/// The same of what the platform refuses to do with a value: a type that no value has is a type
/// mismatch, whatever the platform says of it.
[[noreturn]] void RaiseValueRefusal(HRESULT refused);

}  // namespace zepkit10
