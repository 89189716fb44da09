#include "platform/automation/variant.h"

#include "frame/errors.h"
#include "platform/automation/translate.h"

namespace zepkit10 {
namespace {

// A by-reference Variant may lead to another one, but a chain of more than a few is a loop.
constexpr int kMaxNesting = 4;

}  // namespace

const VARIANT* Follow(const VARIANT* value) noexcept {
  for (int depth = 0; value && value->vt == (VT_BYREF | VT_VARIANT); ++depth) {
    if (depth == kMaxNesting) return nullptr;
    value = value->pvarVal;
  }
  if (value && (value->vt & VT_BYREF) && !value->byref) return nullptr;
  return value;
}

Variant CopyOf(const VARIANT& value) {
  const VARIANT* followed = Follow(&value);
  if (!followed) RaiseRuntimeError(ZepVbErrors3To98::zepVbErrTypeMismatch);
  Variant copy;
  const HRESULT hr = VariantCopyInd(copy.Out(), const_cast<VARIANT*>(followed));
  if (FAILED(hr)) RaiseValueRefusal(hr);
  return copy;
}

std::int32_t ConvertToLong(const VARIANT& value) {
  const VARIANT* followed = Follow(&value);
  if (!followed) RaiseRuntimeError(ZepVbErrors3To98::zepVbErrTypeMismatch);
  Variant number;
  const HRESULT hr = VariantChangeTypeEx(number.Out(), const_cast<VARIANT*>(followed),
                                         LOCALE_USER_DEFAULT, 0, VT_I4);
  if (FAILED(hr)) RaiseValueRefusal(hr);
  return number.get().lVal;
}

std::optional<std::int32_t> IntegerOf(const VARIANT& value) noexcept {
  const VARIANT* followed = Follow(&value);
  if (!followed) return {};
  switch (followed->vt) {
    case VT_I2:
      return followed->iVal;
    case VT_I4:
    case VT_INT:  // what C++ makes of an int
      return followed->lVal;
    case VT_BYREF | VT_I2:
      return *followed->piVal;
    case VT_BYREF | VT_I4:
    case VT_BYREF | VT_INT:
      return *followed->plVal;
    default:
      return {};
  }
}

std::optional<std::u16string_view> TextOf(const VARIANT& value) noexcept {
  const VARIANT* followed = Follow(&value);
  if (!followed) return {};
  if (followed->vt == VT_BSTR) return ViewOf(followed->bstrVal);
  if (followed->vt == (VT_BYREF | VT_BSTR)) return ViewOf(*followed->pbstrVal);
  return {};
}

std::optional<std::u16string> ConvertToText(const VARIANT& value) {
  if (const auto text = TextOf(value)) return std::u16string(*text);
  const VARIANT* followed = Follow(&value);
  Variant text;
  if (!followed) return {};
  const HRESULT hr = VariantChangeTypeEx(text.Out(), const_cast<VARIANT*>(followed),
                                         LOCALE_USER_DEFAULT, VARIANT_ALPHABOOL, VT_BSTR);
  if (hr == E_OUTOFMEMORY) throw std::bad_alloc();
  if (FAILED(hr)) return {};
  return std::u16string(ViewOf(text.get().bstrVal));
}

}  // namespace zepkit10
