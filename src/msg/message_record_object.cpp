#include "msg/message_record_object.h"

#include "frame/errors.h"
#include "platform/automation/array_conversion.h"
#include "platform/automation/translate.h"

namespace zepkit10 {
namespace {

/// The current local time in whole seconds, as hosts' `Now` tells it.
DATE Now() {
  SYSTEMTIME local;
  GetLocalTime(&local);
  local.wMilliseconds = 0;
  DATE now = 0;
  SystemTimeToVariantTime(&local, &now);
  return now;
}

bool IsNothingToPost(const VARIANT& message) {
  return message.vt == VT_NULL || message.vt == VT_EMPTY ||
         (message.vt == VT_BSTR && SysStringLen(message.bstrVal) == 0);
}

Variant CopyOrNull(const VARIANT& argument) {
  if (IsGiven(argument)) return CopyOf(argument);
  Variant null;
  null.Out()->vt = VT_NULL;
  return null;
}

bool HasElements(const SAFEARRAY* array) {
  if (!array || !array->pvData) return false;
  for (USHORT i = 0; i < array->cDims; ++i) {
    if (array->rgsabound[i].cElements == 0) return false;
  }
  return true;
}

SafeArray ParametersOf(const VARIANT& argument) {
  if (!IsGiven(argument)) return {};
  const VARIANT& array = *Follow(&argument);
  return CopyOfParameters(array.vt & VT_BYREF ? *array.pparray : array.parray);
}

}  // namespace

bool IsGiven(const VARIANT& argument) {
  const VARIANT* followed = Follow(&argument);
  return !followed || !IsMissing(followed);
}

void EnsureParametersAreArray(const VARIANT& parameters) {
  const VARIANT* followed = Follow(&parameters);
  if (!IsGiven(parameters) || (followed && followed->vt & VT_ARRAY)) return;
  RaiseInCalledClass(ZepErrors::zepErrBadCall);
}

std::shared_ptr<MessageRecord> MakeMessageRecord(const VARIANT& message, const VARIANT& source,
                                                 const VARIANT& destination,
                                                 const VARIANT& parameters) {
  auto record = std::make_shared<MessageRecord>();
  record->message = CopyOf(message);
  if (IsNothingToPost(record->message.get())) RaiseInCalledClass(ZepErrors::zepErrBadCall);
  EnsureParametersAreArray(parameters);
  record->source = CopyOrNull(source);
  record->destination = CopyOrNull(destination);
  record->parameters = ParametersOf(parameters);
  record->time = Now();
  return record;
}

SafeArray CopyOfParameters(SAFEARRAY* parameters) {
  if (!HasElements(parameters)) return {};
  SAFEARRAY* copy = nullptr;
  const HRESULT hr = ConvertArray(parameters, VT_VARIANT, LOCALE_USER_DEFAULT, &copy);
  if (FAILED(hr)) RaiseRefusal(hr);
  return SafeArray(copy);
}

}  // namespace zepkit10
