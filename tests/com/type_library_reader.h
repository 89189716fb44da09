#pragma once

#include <windows.h>
#include <oaidl.h>
#include <wrl/client.h>

#include <functional>
#include <memory>
#include <string>

namespace zepkit10 {

// Type descriptions with owners, and names as UTF-8. Every function throws std::runtime_error where
// the platform refuses the call. A description must not outlive the type that it came from.

using TypeAttributes = std::unique_ptr<TYPEATTR, std::function<void(TYPEATTR*)>>;
using FunctionDescription = std::unique_ptr<FUNCDESC, std::function<void(FUNCDESC*)>>;
using VariableDescription = std::unique_ptr<VARDESC, std::function<void(VARDESC*)>>;

struct Documentation {
  std::string name;
  std::string help;
  DWORD help_context = 0;  // of a type or member: its number in the help file
  std::string help_file;   // of a library
};

void Check(HRESULT result, const char* call);

std::string Utf8(const OLECHAR* text, UINT length);

/// Frees the text, which may be null.
std::string TakeUtf8(BSTR text);

TypeAttributes AttributesOf(ITypeInfo& type);
FunctionDescription FunctionAt(ITypeInfo& type, UINT position);
VariableDescription VariableAt(ITypeInfo& type, UINT position);

Documentation DocumentationOf(ITypeLib& library);
Documentation DocumentationOf(ITypeInfo& type, MEMBERID member = MEMBERID_NIL);

/// The base interface at position 0, a class's interfaces in their order.
Microsoft::WRL::ComPtr<ITypeInfo> Implemented(ITypeInfo& type, UINT position);

/// The vtable half of a dual interface, which has its slots and only its own members; any other
/// type itself.
Microsoft::WRL::ComPtr<ITypeInfo> VtableHalf(ITypeInfo& type);

/// "_Counter", or "stdole.IDispatch" for a type of another library than the referrer's.
std::string QualifiedName(ITypeInfo& referrer, ITypeInfo& referenced);

/// The type as an interface description writes it: "SAFEARRAY(long)*", "_VarSet**".
std::string TypeName(ITypeInfo& referrer, const TYPEDESC& type);

}  // namespace zepkit10
