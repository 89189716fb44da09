#pragma once

#include <windows.h>
#include <oaidl.h>

#include "platform/automation/class_description.h"

namespace zepkit10 {

/// True where a client's arguments are a `Thunk`'s, as in most calls: all are there, unnamed but
/// for the value of an assignment, and have the types of their parameters.
inline bool AreBound(const DISPPARAMS& given, const Member& member) noexcept {
  if (given.cArgs != member.parameters.size()) return false;
  if (given.cNamedArgs > 0) {
    if (given.cNamedArgs > 1 || !member.Assigns() || !given.rgdispidNamedArgs) return false;
    if (*given.rgdispidNamedArgs != DISPID_PROPERTYPUT) return false;
  }
  if (given.cArgs > 0 && !given.rgvarg) return false;
  const Parameter* parameter = member.parameters.data();
  for (const VARIANT* argument = given.rgvarg + given.cArgs; argument != given.rgvarg;) {
    if ((--argument)->vt != (parameter++)->bound_type) return false;
  }
  return true;
}

/// The arguments of one call, bound to a member's parameters. An argument that already has its
/// parameter's type is used where it stands; any other is converted into a value of the call's own,
/// which goes back into the client's variable after a successful call if it came by reference.
class BoundArguments {
 public:
  BoundArguments(const Member& member, LCID locale) : member_(member), locale_(locale) {}
  ~BoundArguments();
  BoundArguments(const BoundArguments&) = delete;
  BoundArguments& operator=(const BoundArguments&) = delete;

  /// Binds all arguments. On failure `fault` is the position in `given.rgvarg` that is to blame.
  HRESULT Bind(const DISPPARAMS& given, UINT* fault) noexcept;

  /// The bound values as a `Thunk` takes them.
  const VARIANT* Values() const { return values_; }

  /// Puts converted by-reference arguments back to where they came from.
  HRESULT WriteBack(UINT* fault) noexcept;

 private:
  struct Slot {
    VARIANT* given;     // null where nothing was passed
    UINT position;      // of `given` in the client's arguments
    bool written_back;  // `own` goes back to `given`
    VARIANT own;        // the converted value
  };

  HRESULT Assign(const DISPPARAMS& given, UINT* fault) noexcept;
  HRESULT AssignNamed(const DISPPARAMS& given, UINT* fault) noexcept;
  HRESULT BindParameter(std::size_t index) noexcept;
  HRESULT BindMissing(std::size_t index) noexcept;
  HRESULT BindVariant(std::size_t index) noexcept;
  HRESULT BindVariantReference(std::size_t index) noexcept;
  HRESULT BindReference(std::size_t index) noexcept;
  HRESULT BindConverted(std::size_t index) noexcept;
  HRESULT BindObject(std::size_t index, const VARIANT& from) noexcept;
  HRESULT BindParameterArray(const DISPPARAMS& given, UINT* fault) noexcept;
  HRESULT UseOwn(std::size_t index) noexcept;
  HRESULT UseLocation(std::size_t index, void* location) noexcept;
  VARIANT& Value(std::size_t index) { return values_[member_.parameters.size() - 1 - index]; }

  const Member& member_;
  const LCID locale_;
  std::size_t bound_ = 0;           // slots below hold something to release
  VARIANT values_[kMaxParameters];  // last first; owns nothing
  Slot slots_[kMaxParameters];
};

}  // namespace zepkit10
