#pragma once

#include <windows.h>
#include <oaidl.h>

namespace zepkit10 {

/// How many bytes a typed variable or an array's element takes; 0 for a type that neither has, and
/// for records, which tell their size themselves.
ULONG SizeOfValue(VARTYPE type) noexcept;

/// The value that a typed variable holds; who owns it does not change.
VARIANT ReadValue(VARTYPE type, const void* variable) noexcept;

/// Writes the content of a value of a type over what a variable of that type holds.
void WriteValue(const VARIANT& value, VARTYPE type, void* variable) noexcept;

}  // namespace zepkit10
