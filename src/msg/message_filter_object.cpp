#include "msg/message_filter_object.h"

#include "frame/errors.h"
#include "platform/automation/translate.h"
#include "platform/automation/type_name.h"

namespace zepkit10 {
namespace {

using Microsoft::WRL::ComPtr;

bool IsObject(const VARIANT& value) { return value.vt == VT_DISPATCH || value.vt == VT_UNKNOWN; }

/// What tells objects apart; null of no object.
ComPtr<IUnknown> IdentityOf(const VARIANT& value) {
  ComPtr<IUnknown> identity;
  if (IsObject(value) && value.punkVal) value.punkVal->QueryInterface(IID_PPV_ARGS(&identity));
  return identity;
}

[[noreturn]] void RaiseTypeMismatch() { RaiseRuntimeError(ZepVbErrors3To98::zepVbErrTypeMismatch); }

/// True where the platform finds the values unequal. Null is not unequal to anything.
bool AreUnequal(const VARIANT& left, const VARIANT& right) {
  if ((left.vt | right.vt) & VT_ARRAY) RaiseTypeMismatch();
  // Without a locale texts are compared code unit by code unit.
  constexpr LCID kBinary = 0;
  const HRESULT hr = VarCmp(const_cast<VARIANT*>(&left), const_cast<VARIANT*>(&right), kBinary, 0);
  if (FAILED(hr)) RaiseValueRefusal(hr);
  return hr == VARCMP_LT || hr == VARCMP_GT;
}

std::optional<DATE> DateOf(const VARIANT& argument) {
  if (!IsGiven(argument)) return {};
  const Variant value = CopyOf(argument);
  Variant date;
  const HRESULT hr = VariantChangeTypeEx(date.Out(), const_cast<VARIANT*>(&value.get()),
                                         LOCALE_USER_DEFAULT, 0, VT_DATE);
  if (hr == E_OUTOFMEMORY) RaiseRefusal(hr);
  if (FAILED(hr)) RaiseTypeMismatch();
  return date.get().date;
}

}  // namespace

MessageFilter::Criterion::Criterion(const VARIANT& argument)
    : value_(CopyOf(argument)),
      type_name_(TypeNameOf(value_.get())),
      identity_(IdentityOf(value_.get())) {}

bool MessageFilter::Criterion::Matches(const VARIANT& value) const {
  if (TypeNameOf(value) != type_name_) return false;
  if (IsObject(value_.get())) return IsObject(value) && IdentityOf(value).Get() == identity_.Get();
  return !AreUnequal(value_.get(), value);
}

std::optional<MessageFilter::Criterion> MessageFilter::CriterionOf(const VARIANT& argument) {
  if (!IsGiven(argument)) return {};
  return Criterion(argument);
}

MessageFilter::MessageFilter(const VARIANT& message, const VARIANT& source,
                             const VARIANT& destination, const VARIANT& parameters,
                             const VARIANT& time)
    : has_parameters_(IsGiven(parameters)) {
  if (!IsGiven(message) && !IsGiven(source) && !IsGiven(destination) && !has_parameters_ &&
      !IsGiven(time)) {
    RaiseInCalledClass(ZepErrors::zepErrBadCall);
  }
  EnsureParametersAreArray(parameters);
  message_ = CriterionOf(message);
  source_ = CriterionOf(source);
  destination_ = CriterionOf(destination);
  time_ = DateOf(time);
}

bool MessageFilter::Matches(const MessageRecord& record) const {
  if (message_ && !message_->Matches(record.message.get())) return false;
  if (source_ && !source_->Matches(record.source.get())) return false;
  if (destination_ && !destination_->Matches(record.destination.get())) return false;
  if (has_parameters_) RaiseTypeMismatch();
  return !time_ || *time_ == record.time;
}

}  // namespace zepkit10
