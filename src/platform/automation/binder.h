#pragma once

#include <windows.h>
#include <oaidl.h>

#include "platform/automation/class_description.h"

namespace zepkit10 {

class ObjectCore;

/// `IDispatch::Invoke`: finds the member, binds the arguments to its parameters (names, optional
/// arguments, conversion by the platform, parameter arrays, references written back) and calls its
/// vtable slot. Beyond the plain call it does what clients of default members expect: arguments of
/// a property without parameters go to the object or array that the property holds, and an
/// assignment to an object-valued property without a setter goes to that object's default member.
HRESULT InvokeMember(ObjectCore& object, DISPID id, REFIID iid, LCID locale, WORD flags,
                     DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                     UINT* argument) noexcept;

/// The first name is a member's, the others are names of its parameters.
HRESULT FindNames(const ClassDescription& description, REFIID iid, LPOLESTR* names, UINT count,
                  DISPID* ids) noexcept;

HRESULT GetInterfaceTypeInfo(const ClassDescription& description, UINT index,
                             ITypeInfo** result) noexcept;

}  // namespace zepkit10
