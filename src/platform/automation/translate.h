#pragma once

#include <windows.h>

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

}  // namespace zepkit10
