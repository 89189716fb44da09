#pragma once

#include <windows.h>
#include <oaidl.h>

#include <string>

namespace zepkit10 {

/// The name that hosts show for a value's type: "Integer", "Long", "String", "Empty", "Nothing" …,
/// of an object the name of its class or "Object", of an array its elements' name and "()". Of
/// what comes by reference it is the type behind. Asking an object for its class runs its code.
std::u16string TypeNameOf(const VARIANT& value);

}  // namespace zepkit10
