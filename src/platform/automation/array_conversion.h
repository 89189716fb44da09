#pragma once

#include <windows.h>
#include <oaidl.h>

namespace zepkit10 {

/// A new array of the same bounds whose elements are `source`'s, converted by the platform. A null
/// source gives a null result. `to` may be VT_VARIANT, in which case each element keeps its type.
HRESULT ConvertArray(SAFEARRAY* source, VARTYPE to, LCID locale, SAFEARRAY** result) noexcept;

}  // namespace zepkit10
