#pragma once

#include <windows.h>
#include <oaidl.h>
#include <wrl/client.h>

#include <map>
#include <string>
#include <vector>

/// Finds an object of every class in the component's type library without naming any: from the
/// creatable classes through the properties and the Add methods that lead to other objects.
namespace class_walk {

struct Class {
  std::wstring name;
  GUID clsid;
  IID default_interface;
  IID events;  // GUID_NULL where there are none
  bool creatable;
};

/// The component's own.
Microsoft::WRL::ComPtr<ITypeLib> TypeLibrary();

/// Every class of the type library, in its order.
std::vector<Class> Classes();

using Objects = std::map<std::wstring, Microsoft::WRL::ComPtr<IDispatch>>;

/// One object for each class that can be reached, by class name.
Objects FindObjects();

/// A function of an interface as its vtable has it.
struct Slot {
  std::wstring name;
  DISPID id;
  INVOKEKIND kind;
  ULONG offset;                // in bytes from the start of the vtable
  std::vector<VARTYPE> types;  // of the parameters; VT_BYREF marks pointers
  bool has_result;             // the last parameter receives the result
};

/// The functions that a dual interface adds to IDispatch.
std::vector<Slot> SlotsOf(REFIID default_interface);

/// Calls a slot with zeros for its arguments; `result` is passed as the last one where there is
/// one.
HRESULT CallWithZeros(IUnknown* object, const Slot& slot, void* result);

}  // namespace class_walk
