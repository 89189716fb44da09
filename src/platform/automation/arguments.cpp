#include "platform/automation/arguments.h"

#include "expr/float_environment.h"
#include "platform/automation/array_conversion.h"
#include "platform/automation/typed_value.h"
#include "platform/automation/variant.h"

namespace zepkit10 {
namespace {

bool IsObjectType(VARTYPE type) { return type == VT_DISPATCH || type == VT_UNKNOWN; }

/// A literal as clients write it into a Variant: the narrowest of Integer and Long.
void SetLiteral(LONG number, VARIANT* literal) {
  literal->lVal = number;
  literal->vt = VT_I4;
  if (number != static_cast<SHORT>(number)) return;
  literal->iVal = static_cast<SHORT>(number);
  literal->vt = VT_I2;
}

bool EndsInArray(const Member& member) {
  return !member.parameters.empty() && (member.parameters.back().flags & kParameterArray);
}

/// Converts to an array type; nothing at all becomes an array without elements.
HRESULT ConvertToArray(const VARIANT& from, VARTYPE type, LCID locale, VARIANT* to) {
  SAFEARRAY* source = nullptr;
  if (from.vt & VT_ARRAY) {
    source = (from.vt & VT_BYREF) ? *from.pparray : from.parray;
  } else if (from.vt != VT_EMPTY) {
    return DISP_E_TYPEMISMATCH;
  }
  const HRESULT hr = ConvertArray(source, type & VT_TYPEMASK, locale, &to->parray);
  if (SUCCEEDED(hr)) to->vt = type;
  return hr;
}

/// True where an array may not be replaced or given another size.
bool IsFixed(const VARIANT& value) {
  if (!(value.vt & VT_ARRAY)) return false;
  const SAFEARRAY* array = (value.vt & VT_BYREF) ? *value.pparray : value.parray;
  constexpr USHORT kFixed = FADF_AUTO | FADF_STATIC | FADF_EMBEDDED | FADF_FIXEDSIZE;
  return array && (array->cLocks > 0 || (array->fFeatures & kFixed));
}

HRESULT Convert(const VARIANT& from, VARTYPE type, LCID locale, VARIANT* to) {
  if (from.vt == VT_I2 && type == VT_I4) {  // a script's literal; the platform takes much longer
    to->lVal = from.iVal;
    to->vt = VT_I4;
    return S_OK;
  }
  const DefaultFloatEnvironment environment;
  if (type & VT_ARRAY) return ConvertToArray(from, type, locale, to);
  return VariantChangeTypeEx(to, const_cast<VARIANT*>(&from), locale, 0, type);
}

/// Replaces the value of a client's typed variable by another one, converted.
HRESULT Store(const VARIANT& value, LCID locale, VARTYPE type, void* variable) {
  if (SizeOfValue(type) == 0) return DISP_E_TYPEMISMATCH;
  Variant converted;
  const HRESULT hr = Convert(value, type, locale, converted.Out());
  if (FAILED(hr)) return hr;
  VARIANT old = ReadValue(type, variable);
  if (IsFixed(old)) return DISP_E_ARRAYISLOCKED;
  // An object that goes with the old value may look at the variable.
  WriteValue(converted.Detach(), type, variable);
  return VariantClear(&old);
}

/// Replaces the value of a client's Variant. Script hosts only know arrays of Variants.
HRESULT Replace(VARIANT* value, LCID locale, VARIANT* variable) {
  Variant replacement;
  if (value->vt & VT_ARRAY) {
    const HRESULT hr = ConvertToArray(*value, VT_ARRAY | VT_VARIANT, locale, replacement.Out());
    if (FAILED(hr)) return hr;
  } else {
    *replacement.Out() = *value;
    value->vt = VT_EMPTY;
  }
  if (IsFixed(*variable)) return DISP_E_ARRAYISLOCKED;  // Wine's VariantClear would lose it
  // An object that goes with the old value may look at the variable.
  VARIANT old = *variable;
  *variable = replacement.get();
  const HRESULT hr = VariantClear(&old);
  if (SUCCEEDED(hr)) {
    replacement.Detach();
  } else {
    *variable = old;
  }
  return hr;
}

}  // namespace

BoundArguments::~BoundArguments() {
  for (std::size_t i = 0; i < bound_; ++i) {
    if (slots_[i].own.vt != VT_EMPTY) VariantClear(&slots_[i].own);
  }
}

HRESULT BoundArguments::Bind(const DISPPARAMS& given, UINT* fault) noexcept {
  HRESULT hr = Assign(given, fault);
  if (FAILED(hr)) return hr;
  const std::size_t count = member_.parameters.size();
  for (std::size_t i = 0; i < count; ++i) {
    slots_[i].written_back = false;
    slots_[i].own.vt = VT_EMPTY;
    bound_ = i + 1;
    const bool array = member_.parameters[i].flags & kParameterArray;
    hr = array ? BindParameterArray(given, fault) : BindParameter(i);
    if (FAILED(hr)) {
      if (slots_[i].given) *fault = slots_[i].position;
      return hr;
    }
  }
  return S_OK;
}

HRESULT BoundArguments::Assign(const DISPPARAMS& given, UINT* fault) noexcept {
  const bool array = EndsInArray(member_);
  const std::size_t fixed = member_.parameters.size() - (array ? 1 : 0);
  const UINT positional = given.cArgs - given.cNamedArgs;
  if (array && given.cNamedArgs > 0) return DISP_E_NONAMEDARGS;
  if (given.cArgs > fixed && !array) return DISP_E_BADPARAMCOUNT;
  for (std::size_t i = 0; i < member_.parameters.size(); ++i) slots_[i].given = nullptr;
  for (UINT i = 0; i < positional && i < fixed; ++i) {
    slots_[i].position = given.cArgs - 1 - i;
    slots_[i].given = &given.rgvarg[slots_[i].position];
  }
  return given.cNamedArgs > 0 ? AssignNamed(given, fault) : S_OK;
}

HRESULT BoundArguments::AssignNamed(const DISPPARAMS& given, UINT* fault) noexcept {
  const auto count = static_cast<DISPID>(member_.parameters.size());
  for (UINT position = 0; position < given.cNamedArgs; ++position) {
    DISPID id = given.rgdispidNamedArgs[position];
    if (id == DISPID_PROPERTYPUT && member_.Assigns()) id = count - 1;
    if (id < 0 || id >= count || slots_[id].given) {
      *fault = position;
      return DISP_E_PARAMNOTFOUND;
    }
    slots_[id].position = position;
    slots_[id].given = &given.rgvarg[position];
  }
  return S_OK;
}

HRESULT BoundArguments::BindParameter(std::size_t index) noexcept {
  const Parameter& parameter = member_.parameters[index];
  VARIANT* given = slots_[index].given;
  const bool by_reference = parameter.flags & kByReference;
  if (given && given->vt == parameter.bound_type) {
    Value(index) = *given;
    return S_OK;
  }
  const VARIANT* followed = Follow(given);
  if (given && !followed) return DISP_E_TYPEMISMATCH;
  if (IsMissing(followed)) return BindMissing(index);
  if (parameter.type == VT_VARIANT) {
    return by_reference ? BindVariantReference(index) : BindVariant(index);
  }
  return by_reference ? BindReference(index) : BindConverted(index);
}

HRESULT BoundArguments::BindMissing(std::size_t index) noexcept {
  const Parameter& parameter = member_.parameters[index];
  if (!(parameter.flags & kOptional)) {
    return slots_[index].given ? DISP_E_PARAMNOTOPTIONAL : DISP_E_BADPARAMCOUNT;
  }
  VARIANT& own = slots_[index].own;
  own.byref = nullptr;
  if (parameter.type == VT_VARIANT && !(parameter.flags & kHasDefault)) {
    own.vt = VT_ERROR;
    own.scode = DISP_E_PARAMNOTFOUND;
  } else if (parameter.default_value.text) {
    own.bstrVal = SysAllocString(parameter.default_value.text);
    if (!own.bstrVal) return E_OUTOFMEMORY;
    own.vt = VT_BSTR;
  } else if (parameter.type == VT_BSTR) {
    own.vt = VT_BSTR;
  } else {
    SetLiteral(parameter.default_value.number, &own);
    if (parameter.type != VT_VARIANT) Convert(own, parameter.type, locale_, &own);
  }
  return UseOwn(index);
}

HRESULT BoundArguments::BindVariant(std::size_t index) noexcept {
  Slot& slot = slots_[index];
  const VARIANT* followed = Follow(slot.given);
  if (followed->vt == VT_VARIANT) return DISP_E_BADVARTYPE;
  // A variable of the client may change while the member runs, the member's value may not. Only
  // arrays, which may be large, are left where they are.
  const bool by_value = followed == slot.given && !(followed->vt & VT_BYREF);
  if (by_value || (followed->vt & VT_ARRAY)) {
    Value(index) = *followed;
    return S_OK;
  }
  const HRESULT hr = VariantCopyInd(&slot.own, const_cast<VARIANT*>(followed));
  return FAILED(hr) ? hr : UseOwn(index);
}

HRESULT BoundArguments::BindVariantReference(std::size_t index) noexcept {
  Slot& slot = slots_[index];
  if (slot.given->vt == (VT_BYREF | VT_VARIANT)) {
    return UseLocation(index, const_cast<VARIANT*>(Follow(slot.given)));
  }
  // A member may replace the value: never the one that the client still owns.
  const HRESULT hr = VariantCopy(&slot.own, slot.given);
  return FAILED(hr) ? hr : UseOwn(index);
}

HRESULT BoundArguments::BindReference(std::size_t index) noexcept {
  const Parameter& parameter = member_.parameters[index];
  Slot& slot = slots_[index];
  auto* followed = const_cast<VARIANT*>(Follow(slot.given));
  const bool by_reference = slot.given->vt & VT_BYREF;
  const bool changed = by_reference && (parameter.flags & kWrittenBack);
  if (changed && IsFixed(*followed)) return DISP_E_ARRAYISLOCKED;
  // An object may have to be asked for the wanted interface, and what came by value stays
  // unchanged.
  if (!parameter.iid && (by_reference || !(parameter.flags & kWrittenBack))) {
    if (followed->vt == (VT_BYREF | parameter.type)) return UseLocation(index, followed->byref);
    if (followed->vt == parameter.type) return UseLocation(index, &followed->byref);
  }
  const HRESULT hr = BindConverted(index);
  slot.written_back = SUCCEEDED(hr) && changed;
  return hr;
}

HRESULT BoundArguments::BindConverted(std::size_t index) noexcept {
  const Parameter& parameter = member_.parameters[index];
  const VARIANT& from = *Follow(slots_[index].given);
  if (parameter.iid) return BindObject(index, from);
  const HRESULT hr = Convert(from, parameter.type, locale_, &slots_[index].own);
  return FAILED(hr) ? hr : UseOwn(index);
}

HRESULT BoundArguments::BindObject(std::size_t index, const VARIANT& from) noexcept {
  // Null is how clients without a typed Nothing say it.
  if (!IsObjectType(from.vt & ~VT_BYREF) && from.vt != VT_NULL) return DISP_E_TYPEMISMATCH;
  IUnknown* object = from.vt == VT_NULL     ? nullptr
                     : (from.vt & VT_BYREF) ? *from.ppunkVal
                                            : from.punkVal;
  void* wanted = nullptr;
  if (object && FAILED(object->QueryInterface(*member_.parameters[index].iid, &wanted))) {
    return DISP_E_TYPEMISMATCH;
  }
  slots_[index].own.vt = member_.parameters[index].type;
  slots_[index].own.punkVal = static_cast<IUnknown*>(wanted);
  return UseOwn(index);
}

HRESULT BoundArguments::BindParameterArray(const DISPPARAMS& given, UINT* fault) noexcept {
  const std::size_t index = member_.parameters.size() - 1;
  const ULONG count = given.cArgs > index ? given.cArgs - static_cast<ULONG>(index) : 0;
  VARIANT& own = slots_[index].own;
  own.parray = SafeArrayCreateVector(VT_VARIANT, 0, count);
  if (!own.parray) return E_OUTOFMEMORY;
  own.vt = VT_ARRAY | VT_VARIANT;
  auto* elements = static_cast<VARIANT*>(own.parray->pvData);
  for (ULONG i = 0; i < count; ++i) {
    *fault = count - 1 - i;
    const HRESULT hr = VariantCopy(&elements[i], &given.rgvarg[*fault]);
    if (FAILED(hr)) return hr;
  }
  return UseOwn(index);
}

HRESULT BoundArguments::UseOwn(std::size_t index) noexcept {
  const Parameter& parameter = member_.parameters[index];
  VARIANT& own = slots_[index].own;
  if (parameter.flags & kByReference) {
    void* value = &own.byref;  // where every other type has its place
    return UseLocation(index, parameter.type == VT_VARIANT ? &own : value);
  }
  Value(index) = own;
  return S_OK;
}

HRESULT BoundArguments::UseLocation(std::size_t index, void* location) noexcept {
  Value(index).byref = location;
  return S_OK;
}

HRESULT BoundArguments::WriteBack(UINT* fault) noexcept {
  for (std::size_t i = 0; i < bound_; ++i) {
    Slot& slot = slots_[i];
    if (!slot.written_back) continue;
    auto* variable = const_cast<VARIANT*>(Follow(slot.given));
    HRESULT hr = DISP_E_TYPEMISMATCH;
    // No array was made for a variable without a value.
    const bool nothing_yet = variable && variable->vt == VT_EMPTY;
    if (nothing_yet && (slot.own.vt & VT_ARRAY) && !slot.own.parray) continue;
    if (variable && (variable->vt & VT_BYREF)) {
      hr = Store(slot.own, locale_, variable->vt & ~VT_BYREF, variable->byref);
    } else if (variable) {
      hr = Replace(&slot.own, locale_, variable);
    }
    if (FAILED(hr)) {
      *fault = slot.position;
      return hr;
    }
  }
  return S_OK;
}

}  // namespace zepkit10
