#pragma once

#include <windows.h>
#include <oaidl.h>

#include <string>
#include <vector>

/// What the type library says of everything that can be called, without naming any of it.
namespace monkey {

inline constexpr int kNoClass = -1;

struct Parameter {
  VARTYPE type = VT_EMPTY;  // VT_DISPATCH for every object; of the elements where it is an array
  bool is_array = false;
  bool by_reference = false;
  bool is_result = false;
  bool is_optional = false;
  bool is_platforms = false;   // an object of an interface that another type library describes
  int class_index = kNoClass;  // that an object must be of; a position in `ReadClasses`
};

struct Member {
  std::string name;
  DISPID id;
  WORD kind;     // an INVOKEKIND
  ULONG offset;  // in bytes from the start of the vtable
  std::vector<Parameter> parameters;
  bool takes_more = false;  // the last parameter stands for any number of arguments
};

struct Event {
  DISPID id;
  std::vector<VARTYPE> types;  // VT_BYREF marks pointers
};

/// A dual interface, with what its class adds to it.
struct Class {
  std::string name;
  IID iid;
  CLSID clsid = GUID_NULL;     // GUID_NULL where no client can create one
  IID events_iid = GUID_NULL;  // GUID_NULL where there are no events
  std::vector<Member> members;
  std::vector<Event> events;
};

/// Every class of the type library in a file. Throws std::runtime_error where the platform refuses
/// to tell.
std::vector<Class> ReadClasses(const std::wstring& path);

/// "Counter.Value (let)"
std::string NameOf(const Class& described, const Member& member);

}  // namespace monkey
