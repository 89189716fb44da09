#pragma once

#include <windows.h>
#include <oaidl.h>

#include <cstdint>
#include <span>

namespace zepkit10 {

/// The value of an omitted argument; text stands for strings, number for everything else.
struct DefaultValue {
  LONG number = 0;
  const wchar_t* text = nullptr;
};

enum ParameterFlags : std::uint8_t {
  kOptional = 1,
  kByReference = 2,
  kParameterArray = 4,
  kHasDefault = 8,
  kWrittenBack = 16,  // by reference, and the member may change it
};

struct Parameter {
  const wchar_t* name;
  VARTYPE type;  // without VT_BYREF
  std::uint8_t flags;
  const IID* iid;  // the interface of an object parameter, otherwise null
  DefaultValue default_value;
};

/// Calls one vtable slot with bound arguments. `result` is that slot's result, uninitialised.
using Thunk = HRESULT (*)(IDispatch* object, VARIANT* const* arguments, VARIANT* result);

struct Member {
  const wchar_t* name;
  DISPID id;
  WORD kind;       // an INVOKEKIND
  VARTYPE result;  // VT_EMPTY where there is none
  std::span<const Parameter> parameters;
  Thunk call;
};

/// What the type library says of a class, as far as calls need it. Made by the generator.
struct ClassDescription {
  const char16_t* name;
  const CLSID* clsid;  // null where the type library describes the interface only
  const IID* default_interface;
  const IID* events;  // null where the class has none
  std::span<const Member> members;
};

/// The most parameters that a member may have.
inline constexpr std::size_t kMaxParameters = 16;

}  // namespace zepkit10
