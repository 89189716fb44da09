#include "platform/automation/binder.h"

#include <wrl/client.h>

#include <algorithm>
#include <string_view>

#include "expr/float_environment.h"
#include "platform/automation/arguments.h"
#include "platform/automation/module.h"
#include "platform/automation/object_core.h"
#include "platform/automation/translate.h"
#include "platform/automation/variant.h"

namespace zepkit10 {
namespace {

using Microsoft::WRL::ComPtr;

/// The arguments of one `IDispatch::Invoke`, as they came.
struct Invocation {
  DISPID id;
  REFIID iid;
  LCID locale;
  WORD flags;
  DISPPARAMS* parameters;
  VARIANT* result;
  EXCEPINFO* exception;
  UINT* argument;  // receives the position of an argument that could not be bound
};

constexpr WORD kAssignment = DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF;

wchar_t Fold(wchar_t c) { return c >= L'A' && c <= L'Z' ? static_cast<wchar_t>(c + 32) : c; }

/// Names of members and parameters are ASCII; their letter case does not matter.
int CompareNames(const wchar_t* left, const wchar_t* right) {
  while (*left && Fold(*left) == Fold(*right)) ++left, ++right;
  return Fold(*left) - Fold(*right);
}

bool SameName(const wchar_t* left, const wchar_t* right) { return CompareNames(left, right) == 0; }

bool WellFormed(const DISPPARAMS* given) {
  return given && given->cNamedArgs <= given->cArgs && (given->rgvarg || given->cArgs == 0) &&
         (given->rgdispidNamedArgs || given->cNamedArgs == 0);
}

bool AssignsObject(const DISPPARAMS& given) {
  if (given.cArgs == 0) return false;
  const VARIANT* value = Follow(&given.rgvarg[0]);
  const VARTYPE type = value ? value->vt & ~VT_BYREF : VT_EMPTY;
  return type == VT_DISPATCH || type == VT_UNKNOWN || type == VT_NULL;
}

/// Clients ask for an enumerator by the one flag, by the other or by both, whatever it is declared.
WORD ReadingFlags(const Invocation& call) {
  constexpr WORD kReading = DISPATCH_METHOD | DISPATCH_PROPERTYGET;
  return call.id == DISPID_NEWENUM && (call.flags & kReading) ? kReading : call.flags;
}

/// An object may be assigned with or without Set: clients without that distinction exist, and some
/// ask for both.
const Member* FindCalled(const ClassDescription& description, const Invocation& call) {
  const WORD asked = call.flags & kAssignment;
  if (!asked) return description.Find(call.id, ReadingFlags(call));
  const Member* put =
      (asked & DISPATCH_PROPERTYPUT) ? description.Find(call.id, INVOKE_PROPERTYPUT) : nullptr;
  const bool by_reference = AssignsObject(*call.parameters) && (!put || asked == kAssignment);
  if (by_reference || asked == DISPATCH_PROPERTYPUTREF) {
    if (const Member* putref = description.Find(call.id, INVOKE_PROPERTYPUTREF)) return putref;
  }
  return put;
}

/// Passes on what a member says of its failure.
[[gnu::noinline]] HRESULT Report(HRESULT failure, VARIANT* result, EXCEPINFO* exception) {
  result->vt = VT_EMPTY;
  ComPtr<IErrorInfo> info;
  if (GetErrorInfo(0, &info) != S_OK) return failure;
  if (exception) {
    *exception = {};
    exception->scode = failure;
    info->GetSource(&exception->bstrSource);
    info->GetDescription(&exception->bstrDescription);
  }
  return DISP_E_EXCEPTION;
}

/// Calls the slot of a member. The result may be unwanted; it is empty after a failure.
inline HRESULT CallSlot(ObjectCore& object, const Member& member, const VARIANT* arguments,
                        VARIANT* wanted, EXCEPINFO* exception) {
  VARIANT unwanted;
  VARIANT* result = wanted ? wanted : &unwanted;
  result->vt = member.result;
  const HRESULT hr = member.call(object.Dispatch(), arguments, result);
  if (FAILED(hr)) return Report(hr, result, exception);
  if (!wanted && unwanted.vt != VT_EMPTY) VariantClear(&unwanted);
  return hr;
}

HRESULT CallMember(ObjectCore& object, const Member& member, const Invocation& call) {
  BoundArguments arguments(member, call.locale);
  UINT fault = 0;
  HRESULT hr = arguments.Bind(*call.parameters, &fault);
  if (SUCCEEDED(hr)) {
    hr = CallSlot(object, member, arguments.Values(), call.result, call.exception);
    if (FAILED(hr)) return hr;
    hr = arguments.WriteBack(&fault);
    if (FAILED(hr) && call.result) VariantClear(call.result);
  }
  if (FAILED(hr) && call.argument) *call.argument = fault;
  return hr;
}

HRESULT ElementOf(SAFEARRAY* array, const DISPPARAMS& given, LCID locale, VARIANT* result) {
  constexpr UINT kMaxDimensions = 60;
  LONG indexes[kMaxDimensions];
  const DefaultFloatEnvironment environment;
  if (SafeArrayGetDim(array) != given.cArgs || given.cArgs > kMaxDimensions) {
    return DISP_E_BADPARAMCOUNT;
  }
  for (UINT i = 0; i < given.cArgs; ++i) {
    Variant index;
    const VARIANT* argument = Follow(&given.rgvarg[given.cArgs - 1 - i]);
    if (!argument) return DISP_E_TYPEMISMATCH;
    const HRESULT hr =
        VariantChangeTypeEx(index.Out(), const_cast<VARIANT*>(argument), locale, 0, VT_I4);
    if (FAILED(hr)) return hr;
    indexes[i] = index.get().lVal;
  }
  VARTYPE type = VT_EMPTY;
  HRESULT hr = SafeArrayGetVartype(array, &type);
  if (FAILED(hr) || type == VT_RECORD) return DISP_E_TYPEMISMATCH;
  VARIANT element;
  element.vt = static_cast<VARTYPE>(VT_BYREF | type);
  hr = SafeArrayPtrOfIndex(array, indexes, &element.byref);
  return FAILED(hr) || !result ? hr : VariantCopyInd(result, &element);
}

/// Reads a property with the given arguments, as a step of a longer expression.
HRESULT ReadProperty(ObjectCore& object, const Member& member, const Invocation& call,
                     DISPPARAMS* arguments, VARIANT* held) {
  return CallMember(object, member,
                    {call.id, call.iid, call.locale, DISPATCH_PROPERTYGET, arguments, held,
                     call.exception, call.argument});
}

/// object.Property(arguments) where the property takes none: they are meant for what it holds.
HRESULT ReadThroughProperty(ObjectCore& object, const Member& member, const Invocation& call) {
  DISPPARAMS none{};
  Variant held;
  const HRESULT hr = ReadProperty(object, member, call, &none, held.Out());
  if (FAILED(hr)) return hr;
  const VARIANT& value = held.get();  // never by reference, as the result of one of our members
  if (value.vt & VT_ARRAY) {
    return ElementOf(value.parray, *call.parameters, call.locale, call.result);
  }
  if (value.vt != VT_DISPATCH || !value.pdispVal) return DISP_E_BADPARAMCOUNT;
  return value.pdispVal->Invoke(DISPID_VALUE, call.iid, call.locale, call.flags, call.parameters,
                                call.result, call.exception, call.argument);
}

/// object.Property(arguments) = value where the property has no setter: the value is meant for the
/// default member of the object that it holds, and so are the arguments if the property takes none.
HRESULT AssignThroughProperty(ObjectCore& object, const Invocation& call) {
  const DISPPARAMS& given = *call.parameters;
  const Member* getter = object.Description().Find(call.id, INVOKE_PROPERTYGET);
  const bool plain = (call.flags & DISPATCH_PROPERTYPUT) && given.cNamedArgs == 1 &&
                     given.rgdispidNamedArgs[0] == DISPID_PROPERTYPUT;
  if (!getter || getter->result != VT_DISPATCH || !plain) return DISP_E_MEMBERNOTFOUND;
  const bool passes_on = getter->parameters.empty();
  DISPPARAMS arguments{given.rgvarg + 1, nullptr, passes_on ? 0 : given.cArgs - 1, 0};
  Variant held;
  const HRESULT hr = ReadProperty(object, *getter, call, &arguments, held.Out());
  if (FAILED(hr)) return hr;
  if (!held.get().pdispVal) return DISP_E_MEMBERNOTFOUND;
  DISPPARAMS assigned{given.rgvarg, given.rgdispidNamedArgs, passes_on ? given.cArgs : 1, 1};
  return held.get().pdispVal->Invoke(DISPID_VALUE, call.iid, call.locale, DISPATCH_PROPERTYPUT,
                                     &assigned, call.result, call.exception, call.argument);
}

bool HoldsDefaultMember(const Member& member) {
  return member.kind == INVOKE_PROPERTYGET && member.parameters.empty() &&
         (member.result == VT_DISPATCH || member.result == VT_VARIANT ||
          (member.result & VT_ARRAY));
}

HRESULT Dispatch(ObjectCore& object, const Invocation& call) {
  if (call.iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (!WellFormed(call.parameters)) return E_INVALIDARG;
  const Member* member = FindCalled(object.Description(), call);
  if (!member) {
    return call.flags & kAssignment ? AssignThroughProperty(object, call) : DISP_E_MEMBERNOTFOUND;
  }
  if (call.parameters->cArgs > 0 && HoldsDefaultMember(*member)) {
    return ReadThroughProperty(object, *member, call);
  }
  return CallMember(object, *member, call);
}

[[gnu::noinline]] HRESULT DispatchOrRefuse(ObjectCore& object, DISPID id, REFIID iid, LCID locale,
                                           WORD flags, DISPPARAMS* parameters, VARIANT* result,
                                           EXCEPINFO* exception, UINT* argument) {
  const Keeper keeper(object);
  const Invocation call{id, iid, locale, flags, parameters, result, exception, argument};
  if (call.result) call.result->vt = VT_EMPTY;
  const HRESULT hr = Dispatch(object, call);
  return SUCCEEDED(hr) || hr == DISP_E_EXCEPTION ? hr : Refuse(hr);
}

}  // namespace

HRESULT InvokeMember(ObjectCore& object, DISPID id, REFIID iid, LCID locale, WORD flags,
                     DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                     UINT* argument) noexcept {
  if (iid == IID_NULL && parameters) [[likely]] {
    const WORD assignment = flags & kAssignment;
    const Member* member = object.Description().Find(id, assignment ? assignment : flags);
    if (member && AreBound(*parameters, *member)) [[likely]] {
      return CallSlot(object, *member, parameters->rgvarg, result, exception);
    }
  }
  return DispatchOrRefuse(object, id, iid, locale, flags, parameters, result, exception, argument);
}

HRESULT FindNames(const ClassDescription& description, REFIID iid, LPOLESTR* names, UINT count,
                  DISPID* ids) noexcept {
  if (iid != IID_NULL) return DISP_E_UNKNOWNINTERFACE;
  if (!names || !ids || count == 0) return E_INVALIDARG;
  std::fill_n(ids, count, DISPID_UNKNOWN);
  if (!names[0]) return DISP_E_UNKNOWNNAME;
  const auto before = [](const Member& member, const wchar_t* name) {
    return CompareNames(member.name, name) < 0;
  };
  const auto end = description.members.end();
  auto member = std::lower_bound(description.members.begin(), end, names[0], before);
  for (; member != end && SameName(member->name, names[0]); ++member) {
    ids[0] = member->id;
    for (UINT i = 1; i < count; ++i) {
      for (std::size_t p = 0; p < member->parameters.size(); ++p) {
        if (names[i] && SameName(member->parameters[p].name, names[i]))
          ids[i] = static_cast<DISPID>(p);
      }
    }
  }
  return std::find(ids, ids + count, DISPID_UNKNOWN) == ids + count ? S_OK : DISP_E_UNKNOWNNAME;
}

HRESULT GetInterfaceTypeInfo(const ClassDescription& description, UINT index,
                             ITypeInfo** result) noexcept {
  if (!result) return E_POINTER;
  *result = nullptr;
  if (index != 0) return DISP_E_BADINDEX;
  return LoadOwnTypeInfo(*description.default_interface, result);
}

}  // namespace zepkit10
