#pragma once

#include <windows.h>
#include <oaidl.h>

#include <string>

namespace zepkit10 {

/// The name of a value's type as hosts show it: "Integer", "Long", "String" …, the element's name
/// with "()" for an array. An object gives the name of its class, or "Object" where it does not
/// tell; no object at all is "Nothing". What comes by reference counts as the value it refers to,
/// and as "Empty" where it refers to nothing. Foreign objects are asked and may call back.
std::u16string TypeNameOf(const VARIANT& value);

}  // namespace zepkit10
