#include "util/array_values_object.h"

#include <wrl/client.h>

#include <limits>

#include "frame/errors.h"
#include "platform/automation/translate.h"
#include "platform/automation/typed_value.h"

namespace zepkit10 {
namespace {

using Microsoft::WRL::ComPtr;
using enum ZepVbErrors3To98;

bool IsObjectType(VARTYPE type) { return type == VT_DISPATCH || type == VT_UNKNOWN; }

/// True where elements own nothing and their bytes are all there is to copy.
bool IsPlain(VARTYPE type) {
  return type != VT_VARIANT && type != VT_BSTR && type != VT_RECORD && !IsObjectType(type);
}

ComPtr<IRecordInfo> RecordOf(SAFEARRAY* array) {
  ComPtr<IRecordInfo> record;
  if (array) SafeArrayGetRecordInfo(array, &record);
  return record;
}

/// What an array says of itself where its elements own something.
USHORT FeaturesOf(VARTYPE type) {
  switch (type) {
    case VT_BSTR:
      return FADF_BSTR;
    case VT_VARIANT:
      return FADF_VARIANT;
    case VT_RECORD:
      return FADF_RECORD;
    default:
      return FADF_DISPATCH | FADF_UNKNOWN;
  }
}

/// An array of another type than its value says would make us read beyond the client's memory, or
/// follow numbers as pointers.
const ArrayArgument& Checked(const ArrayArgument& argument) {
  if (IsEmpty(argument.array)) return argument;
  const SAFEARRAY& array = *argument.array;
  const bool size_fits =
      argument.type == VT_RECORD || array.cbElements == SizeOfValue(argument.type);
  const bool kind_fits =
      IsPlain(argument.type) || (array.fFeatures & FeaturesOf(argument.type)) != 0;
  if (!size_fits || !kind_fits) RaiseRuntimeError(zepVbErrTypeMismatch);
  return argument;
}

SafeArray CreateLike(const ArrayArgument& model, LONG lower_bound, ULONG count) {
  const ComPtr<IRecordInfo> record =
      model.type == VT_RECORD ? RecordOf(model.array) : ComPtr<IRecordInfo>();
  if (SizeOfValue(model.type) == 0 && !record) RaiseRuntimeError(zepVbErrTypeMismatch);
  void* detail = record.Get();
  IID iid;
  if (IsObjectType(model.type) && model.array && SUCCEEDED(SafeArrayGetIID(model.array, &iid))) {
    detail = &iid;
  }
  SAFEARRAYBOUND bound{count, lower_bound};
  SafeArray made(SafeArrayCreateEx(model.type, 1, &bound, detail));
  if (!made.get()) throw std::bad_alloc();
  return made;
}

}  // namespace

std::optional<ArrayArgument> ArrayIn(const VARIANT& value) noexcept {
  const VARIANT* followed = Follow(&value);
  if (!followed || !(followed->vt & VT_ARRAY)) return {};
  return ArrayArgument{static_cast<VARTYPE>(followed->vt & VT_TYPEMASK),
                       (followed->vt & VT_BYREF) ? *followed->pparray : followed->parray};
}

std::optional<ArrayBounds> BoundsOf(const SAFEARRAY* array) noexcept {
  if (!array || array->cDims == 0) return {};
  // The descriptor holds the dimensions last first.
  const SAFEARRAYBOUND& first = array->rgsabound[array->cDims - 1];
  if (first.cElements > 0 && !array->pvData) return {};
  return ArrayBounds{first.lLbound, std::int64_t{first.lLbound} + first.cElements - 1};
}

void CheckUpperBound(std::int64_t bound) {
  if (bound > std::numeric_limits<LONG>::max()) RaiseRuntimeError(zepVbErrOverflow);
}

bool IsEmpty(const SAFEARRAY* array) noexcept {
  const auto bounds = BoundsOf(array);
  return !bounds || bounds->upper < bounds->lower;
}

ArrayElements::ArrayElements(const ArrayArgument& argument)
    : argument_(Checked(argument)), access_(argument.array) {}

VARIANT ArrayElements::At(std::int64_t position) const {
  VARIANT element{};
  element.vt = static_cast<VARTYPE>(VT_BYREF | argument_.type);
  if (argument_.type == VT_RECORD) {
    element.pvRecord = Place(position);
    // The array keeps its description alive.
    element.pRecInfo = RecordOf(argument_.array).Get();
  } else {
    element.byref = Place(position);
  }
  return element;
}

ArrayCopy::ArrayCopy(const ArrayArgument& model, std::int64_t lower_bound, std::int64_t count)
    : type_(model.type) {
  CheckUpperBound(lower_bound + count - 1);
  array_ = CreateLike(model, static_cast<LONG>(lower_bound), static_cast<ULONG>(count));
}

void ArrayCopy::Append(const ArrayElements& source, std::int64_t position, std::int64_t count) {
  if (count == 0) return;
  if (source.Type() == type_ && IsPlain(type_)) {
    CopyMemory(NextPlace(), source.Place(position),
               static_cast<std::size_t>(count) * array_.get()->cbElements);
    filled_ += count;
    return;
  }
  for (const std::int64_t end = position + count; position < end; ++position) {
    AppendElement(source.At(position));
    ++filled_;
  }
}

void ArrayCopy::AppendElement(const VARIANT& element) {
  if (type_ == VT_RECORD) return AppendRecord(element);
  // Converting an object calls it: on a copy of our own, which the client cannot take away.
  Variant value = CopyOf(element);
  if (type_ == VT_VARIANT) {
    *reinterpret_cast<VARIANT*>(NextPlace()) = value.Detach();
    return;
  }
  if (value.get().vt != type_) {
    const HRESULT hr = VariantChangeTypeEx(value.Out(), value.Out(), LOCALE_USER_DEFAULT,
                                           VARIANT_ALPHABOOL, type_);
    if (FAILED(hr)) RaiseValueRefusal(hr);
  }
  if (IsObjectType(type_)) Narrow(&value);
  VARIANT owned = value.Detach();
  if (type_ == VT_DECIMAL) {
    owned.decVal.wReserved = 0;  // shares its place with the type
    CopyMemory(NextPlace(), &owned.decVal, sizeof owned.decVal);
  } else {
    CopyMemory(NextPlace(), &owned.byref, array_.get()->cbElements);
  }
}

/// A typed array of objects holds pointers to its own interface, through which clients call.
void ArrayCopy::Narrow(Variant* object) const {
  IID iid;
  IUnknown* const given = object->get().punkVal;
  if (!given || FAILED(SafeArrayGetIID(array_.get(), &iid))) return;
  if (iid == IID_IUnknown || iid == IID_IDispatch) return;
  void* narrowed = nullptr;
  if (FAILED(given->QueryInterface(iid, &narrowed))) RaiseRuntimeError(zepVbErrTypeMismatch);
  object->Out()->punkVal = static_cast<IUnknown*>(narrowed);
  given->Release();
}

void ArrayCopy::AppendRecord(const VARIANT& element) {
  const VARIANT* record = Follow(&element);
  const ComPtr<IRecordInfo> type = RecordOf(array_.get());
  if (!record || (record->vt & ~VT_BYREF) != VT_RECORD || !record->pvRecord ||
      !type->IsMatchingType(record->pRecInfo)) {
    RaiseRuntimeError(zepVbErrTypeMismatch);
  }
  const HRESULT hr = type->RecordCopy(record->pvRecord, NextPlace());
  if (FAILED(hr)) RaiseRefusal(hr);
}

BYTE* ArrayCopy::NextPlace() const {
  return array_.Elements<BYTE>() + static_cast<std::size_t>(filled_) * array_.get()->cbElements;
}

Variant ArrayCopy::Take() {
  Variant value;
  value.Out()->vt = static_cast<VARTYPE>(VT_ARRAY | type_);
  value.Out()->parray = array_.Detach();
  return value;
}

Variant EmptiedCopy(VARTYPE type) {
  Variant value;
  value.Out()->vt = static_cast<VARTYPE>(VT_ARRAY | type);
  value.Out()->parray = nullptr;
  return value;
}

}  // namespace zepkit10
