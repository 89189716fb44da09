#pragma once

#include <windows.h>

#include <span>

namespace zepkit10 {

class ClassObject;

/// Writes the keys of every class (CLSID, ProgID "Zepkit10.<Class>", apartment threading) and of
/// the type library for all users of the machine. The component is never marked safe for scripting.
HRESULT Register(std::span<ClassObject> classes) noexcept;

/// Removes every key that `Register` wrote; keys that are not there are no fault.
HRESULT Unregister(std::span<ClassObject> classes) noexcept;

}  // namespace zepkit10
