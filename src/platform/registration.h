#pragma once

#include <windows.h>

#include <span>

namespace zepkit10 {

class ClassObject;

/// Whom the component is registered for. All users of the machine is for administrators only.
enum class Users { kAll, kCurrent };

/// Writes the keys of every class (CLSID, the ProgIDs "Zepkit10.<Class>" and
/// "Zepkit10.<Class>.<major version>", apartment threading) and of the type library. The component
/// is never marked safe for scripting.
HRESULT Register(std::span<ClassObject> classes, Users users) noexcept;

/// Removes every key that `Register` wrote for these users; keys that are not there are no fault.
/// What both bitnesses share (ProgIDs, type library, interfaces) stays for a component of the other
/// bitness that is registered for the same users.
HRESULT Unregister(std::span<ClassObject> classes, Users users) noexcept;

}  // namespace zepkit10
