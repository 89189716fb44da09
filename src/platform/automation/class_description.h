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

inline constexpr std::uint32_t kNoType = 0x10000;  // that of no value

struct Parameter {
  const wchar_t* name;
  VARTYPE type;  // without VT_BYREF
  std::uint8_t flags;
  const IID* iid;  // the interface of an object parameter, otherwise null
  DefaultValue default_value;
  // The type of an argument that is passed as it stands; kNoType where none is.
  std::uint32_t bound_type =
      (flags & kByReference) || iid || type == VT_VARIANT ? kNoType : std::uint32_t{type};
};

/// Calls one vtable slot with bound arguments, last first as clients pass them: values of the types
/// of the parameters, and for parameters by reference pointers to such values. `result` is that
/// slot's result, uninitialised.
using Thunk = HRESULT (*)(IDispatch* object, const VARIANT* arguments, VARIANT* result);

struct Member {
  const wchar_t* name;
  DISPID id;
  WORD kind;       // an INVOKEKIND
  VARTYPE result;  // VT_EMPTY where there is none
  std::span<const Parameter> parameters;
  Thunk call;

  bool Assigns() const { return kind & (INVOKE_PROPERTYPUT | INVOKE_PROPERTYPUTREF); }
};

/// The lowest DISPID that a member may have.
inline constexpr DISPID kFirstId = DISPID_NEWENUM;

/// What the type library says of a class, as far as calls need it. Made by the generator.
struct ClassDescription {
  const char16_t* name;
  const CLSID* clsid;  // null where the type library describes the interface only
  const IID* default_interface;
  const IID* events;  // null where the class has none
  std::span<const Member>
      members;  // in the order of `CompareNames`; those of a name stand together
  // Of the first member with each DISPID from kFirstId on; of any for a DISPID without members.
  std::span<const std::uint8_t> positions;

  /// The member with a DISPID that is of one of the kinds; null where there is none.
  const Member* Find(DISPID id, WORD kinds) const {
    const std::size_t index = static_cast<ULONG>(id) - static_cast<ULONG>(kFirstId);
    if (index >= positions.size()) return nullptr;
    const Member* member = members.data() + positions[index];
    while (member->id == id) {
      if (member->kind & kinds) [[likely]]
        return member;
      if (++member == members.data() + members.size()) break;
    }
    return nullptr;
  }
};

/// The most parameters that a member may have.
inline constexpr std::size_t kMaxParameters = 16;

}  // namespace zepkit10
