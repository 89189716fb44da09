#pragma once

#include <windows.h>
#include <oaidl.h>

namespace zepkit10 {

/// How many bytes a typed variable or an array's element takes; 0 for a type that neither has, and
/// for records, which tell their size themselves.
ULONG SizeOfValue(VARTYPE type) noexcept;

}  // namespace zepkit10
