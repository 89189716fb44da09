#include "com/client.h"

#include "com/every_member/call_table.h"
#include "com/fault_plan.h"
#include "com/type_library_reader.h"
#include "faults/failing_memory.h"

namespace client {
namespace {

using Microsoft::WRL::ComPtr;

std::string Narrow(std::wstring_view text) {
  std::string narrow;
  for (const wchar_t c : text) narrow += c < 128 ? static_cast<char>(c) : '?';
  return narrow;
}

/// The IUnknown of an object value, by which objects are compared; null for everything else.
ComPtr<IUnknown> IdentityOf(const VARIANT& value) {
  ComPtr<IUnknown> identity;
  if ((value.vt == VT_DISPATCH || value.vt == VT_UNKNOWN) && value.punkVal) {
    value.punkVal->QueryInterface(IID_PPV_ARGS(&identity));
  }
  return identity;
}

std::wstring Take(BSTR text) {
  std::wstring taken(text ? text : L"", SysStringLen(text));
  SysFreeString(text);
  return taken;
}

template <class Call>
HRESULT CallInside(Call&& call) {
  const faults::InsideCall inside;
  return call();
}

std::string DescriptionOf(IDispatch* object, const wchar_t* member, WORD flags) {
  ComPtr<ITypeInfo> type;
  if (FAILED(object->GetTypeInfo(0, LOCALE_USER_DEFAULT, &type))) return Narrow(member);
  return zepkit10::DocumentationOf(*type.Get()).name + "." + Narrow(member) +
         call_table::KindName(flags);
}

}  // namespace

Value Value::Missing() {
  Value missing;
  missing.value_.vt = VT_ERROR;
  missing.value_.scode = DISP_E_PARAMNOTFOUND;
  return missing;
}

Value Value::Null() {
  Value null;
  null.value_.vt = VT_NULL;
  return null;
}

bool operator==(const Value& left, const Value& right) {
  const VARIANT& a = left.value_;
  const VARIANT& b = right.value_;
  if (a.vt != b.vt) return false;
  switch (a.vt) {
    case VT_EMPTY:
    case VT_NULL:
      return true;
    case VT_BSTR:
      return std::wstring_view(a.bstrVal, SysStringLen(a.bstrVal)) ==
             std::wstring_view(b.bstrVal, SysStringLen(b.bstrVal));
    case VT_R8:
      return a.dblVal == b.dblVal;
    case VT_R4:
      return a.fltVal == b.fltVal;
    case VT_I1:
    case VT_UI1:
      return a.bVal == b.bVal;
    case VT_BOOL:
    case VT_I2:
    case VT_UI2:
      return a.iVal == b.iVal;
    case VT_I8:
    case VT_UI8:
    case VT_CY:
      return a.llVal == b.llVal;
    case VT_DATE:
      return a.date == b.date;
    case VT_DECIMAL:
      return VarDecCmp(const_cast<DECIMAL*>(&a.decVal), const_cast<DECIMAL*>(&b.decVal)) ==
             VARCMP_EQ;
    case VT_DISPATCH:
    case VT_UNKNOWN:
      // ComPtr has no comparison of its own here: it would compare whether there is an object.
      return IdentityOf(a).Get() == IdentityOf(b).Get();
    default:
      return a.lVal == b.lVal;
  }
}

std::ostream& operator<<(std::ostream& out, const Value& value) {
  const VARIANT& raw = value.value_;
  out << "(type " << raw.vt << ") ";
  switch (raw.vt) {
    case VT_BSTR:
      return out << '"' << Narrow({raw.bstrVal, SysStringLen(raw.bstrVal)}) << '"';
    case VT_R8:
      return out << raw.dblVal;
    case VT_R4:
      return out << raw.fltVal;
    case VT_BOOL:
    case VT_I2:
      return out << raw.iVal;
    case VT_DISPATCH:
      return out << static_cast<void*>(raw.pdispVal);
    default:
      return out << raw.lVal;
  }
}

std::ostream& operator<<(std::ostream& out, const Outcome& outcome) {
  if (outcome.ok()) return out << outcome.value;
  return out << "error " << outcome.number << " (0x" << std::hex << outcome.result << std::dec
             << ") " << Narrow(outcome.source) << ": " << Narrow(outcome.description);
}

// Runtime errors travel as 0x800A0000 + number.
long NumberOf(HRESULT failure) {
  return (failure & 0xFFFF0000) == 0x800A0000 ? failure & 0xFFFF : failure;
}

void ReadErrorInfo(Outcome& outcome) {
  outcome.number = NumberOf(outcome.result);
  ComPtr<IErrorInfo> info;
  if (GetErrorInfo(0, &info) != S_OK) return;
  BSTR source = nullptr, description = nullptr;
  info->GetSource(&source);
  info->GetDescription(&description);
  outcome.source = Take(source);
  outcome.description = Take(description);
}

Object Object::With(const Outcome& outcome) const {
  if (!outcome.ok() || outcome.value.type() != VT_DISPATCH) return {};
  return Object(outcome.value.raw().pdispVal, binding_);
}

Object Object::GetObject(const wchar_t* name, Arguments arguments) const {
  return With(Get(name, arguments));
}

Object Object::CallObject(const wchar_t* name, Arguments arguments) const {
  return With(Call(name, arguments));
}

std::vector<Value> Object::Values() const {
  std::vector<Value> values;
  Outcome entry = Get(L"NewEnum");
  if (!entry.ok()) entry = Call(L"NewEnum");
  ComPtr<IEnumVARIANT> enumerator;
  if (!entry.ok() || FAILED(entry.value.raw().punkVal->QueryInterface(IID_PPV_ARGS(&enumerator)))) {
    return values;
  }
  Value value;
  const auto next = [&] { return enumerator->Next(1, &value.raw(), nullptr); };
  while (failing_memory::Perform("Next", next) == S_OK) {
    values.push_back(std::exchange(value, Value()));
  }
  return values;
}

std::vector<Object> Object::Items() const {
  std::vector<Object> items;
  for (const Value& value : Values()) items.emplace_back(value.raw().pdispVal, binding_);
  return items;
}

Outcome Object::Invoke(const wchar_t* name, WORD flags, std::span<const Value> arguments) const {
  return failing_memory::Perform({[&] { return InvokeOnce(name, flags, arguments); }, object_.Get(),
                                  [&] { return DescriptionOf(object_.Get(), name, flags); }});
}

Outcome Object::InvokeOnce(const wchar_t* name, WORD flags,
                           std::span<const Value> arguments) const {
  Outcome outcome;
  ComPtr<ITypeInfo> type;
  DISPID id = DISPID_UNKNOWN;
  auto* member = const_cast<wchar_t*>(name);
  std::vector<VARIANT> reversed;
  for (auto value = arguments.rbegin(); value != arguments.rend(); ++value) {
    reversed.push_back(value->raw());
  }
  DISPID assigned = DISPID_PROPERTYPUT;
  const bool assigns = flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF);
  DISPPARAMS parameters{reversed.data(), assigns ? &assigned : nullptr,
                        static_cast<UINT>(reversed.size()), assigns ? 1u : 0u};
  EXCEPINFO exception{};
  UINT position = 0;
  VARIANT* result = assigns ? nullptr : &outcome.value.raw();
  outcome.result = CallInside(
      [&] { return object_->GetIDsOfNames(IID_NULL, &member, 1, LOCALE_USER_DEFAULT, &id); });
  if (FAILED(outcome.result)) return outcome;
  outcome.result = CallInside([&] {
    if (binding_ == Binding::kDispatch) {
      return object_->Invoke(id, IID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, result,
                             &exception, &position);
    }
    const HRESULT hr = object_->GetTypeInfo(0, LOCALE_USER_DEFAULT, &type);
    if (FAILED(hr)) return hr;
    return type->Invoke(object_.Get(), id, flags, &parameters, result, &exception, &position);
  });
  const bool raised = outcome.result == DISP_E_EXCEPTION;
  outcome.number = NumberOf(raised ? exception.scode : outcome.result);
  if (outcome.ok()) outcome.number = 0;
  outcome.source = Take(exception.bstrSource);
  outcome.description = Take(exception.bstrDescription);
  SysFreeString(exception.bstrHelpFile);
  return outcome;
}

}  // namespace client
