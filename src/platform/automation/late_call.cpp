#include "platform/automation/late_call.h"

#include <dispex.h>
#include <wrl/client.h>

#include "frame/errors.h"
#include "platform/automation/translate.h"

namespace zepkit10 {
namespace {

using Microsoft::WRL::ComPtr;

/// What an object told about a failure; the texts are freed.
struct Exception {
  EXCEPINFO info{};
  Exception() = default;
  Exception(const Exception&) = delete;
  Exception& operator=(const Exception&) = delete;
  ~Exception() {
    SysFreeString(info.bstrSource);
    SysFreeString(info.bstrDescription);
    SysFreeString(info.bstrHelpFile);
  }
};

[[noreturn]] void RaiseException(EXCEPINFO& info) {
  if (info.pfnDeferredFillIn) info.pfnDeferredFillIn(&info);
  HRESULT failed = info.scode != 0 ? info.scode : ToHresult(info.wCode);
  if (failed == S_OK) failed = DISP_E_EXCEPTION;  // a failure that tells no number
  throw Failure{FromHresult(failed), std::u16string(ViewOf(info.bstrSource)),
                std::u16string(ViewOf(info.bstrDescription))};
}

/// The interface that script engines call each other's objects through; null where there is none.
/// Objects of a script may implement it in full and IDispatch in part.
ComPtr<IDispatchEx> ExtendedOf(IDispatch& object) {
  ComPtr<IDispatchEx> extended;
  object.QueryInterface(IID_PPV_ARGS(&extended));
  return extended;
}

HRESULT FindExtended(IDispatch& object, std::u16string_view name, DISPID* found) {
  const ComPtr<IDispatchEx> extended = ExtendedOf(object);
  if (!extended) return E_NOTIMPL;
  const Variant text(name);
  return extended->GetDispID(text.get().bstrVal, fdexNameCaseInsensitive, found);
}

HRESULT Invoke(IDispatch& object, DISPID member, WORD flags, LCID locale, DISPPARAMS& parameters,
               VARIANT* result, EXCEPINFO& exception) {
  if (const ComPtr<IDispatchEx> extended = ExtendedOf(object)) {
    return extended->InvokeEx(member, locale, flags, &parameters, result, &exception, nullptr);
  }
  UINT argument = 0;
  return object.Invoke(member, IID_NULL, locale, flags, &parameters, result, &exception, &argument);
}

HRESULT LookUp(IDispatch& object, std::u16string_view name, LCID locale, DISPID* found) {
  *found = DISPID_UNKNOWN;
  if (name.find(u'\0') != name.npos) return DISP_E_UNKNOWNNAME;  // would be looked up in part
  const std::u16string terminated(name);
  wchar_t* text = MutableText(terminated);
  const HRESULT hr = object.GetIDsOfNames(IID_NULL, &text, 1, locale, found);
  return hr == E_NOTIMPL ? FindExtended(object, name, found) : hr;
}

ComPtr<IEnumVARIANT> EnumeratorOf(IDispatch& collection) {
  DISPPARAMS none{};
  Variant made;
  Exception ignored;
  ComPtr<IEnumVARIANT> enumerator;
  const HRESULT hr = Invoke(collection, DISPID_NEWENUM, DISPATCH_METHOD | DISPATCH_PROPERTYGET,
                            LOCALE_USER_DEFAULT, none, made.Out(), ignored.info);
  const bool object = made.get().vt == VT_UNKNOWN || made.get().vt == VT_DISPATCH;
  if (SUCCEEDED(hr) && object && made.get().punkVal) {
    made.get().punkVal->QueryInterface(IID_PPV_ARGS(&enumerator));
  }
  return enumerator;
}

std::vector<Variant> Enumerate(IEnumVARIANT& enumerator) {
  std::vector<Variant> items;
  while (true) {
    Variant item;
    ULONG fetched = 0;
    const HRESULT hr = enumerator.Next(1, item.Out(), &fetched);
    if (FAILED(hr)) RaiseRefusal(hr);
    if (hr != S_OK) return items;
    items.push_back(std::move(item));
  }
}

std::int32_t CountOf(IDispatch& collection, DISPID member) {
  Variant count;
  try {
    count = CallMember(collection, member, DISPATCH_PROPERTYGET, LOCALE_USER_DEFAULT);
  } catch (const Failure& failure) {
    if (failure.number != FromHresult(DISP_E_MEMBERNOTFOUND)) throw;
    // Not asked for as either at once: engines take that for a call where the value is no function.
    count = CallMember(collection, member, DISPATCH_METHOD, LOCALE_USER_DEFAULT);
  }
  return ConvertToLong(count.get());
}

std::vector<Variant> ItemByItem(IDispatch& collection) {
  constexpr LCID kLocale = LOCALE_USER_DEFAULT;
  DISPID count_id, item_id;
  if (FAILED(LookUp(collection, u"Count", kLocale, &count_id)) ||
      FAILED(LookUp(collection, u"Item", kLocale, &item_id))) {
    RaiseRuntimeError(ZepVbErrors298To746::zepVbErrObjectNotACollection);
  }
  const std::int32_t count = CountOf(collection, count_id);
  std::vector<Variant> items;
  for (std::int64_t i = 1; i <= count; ++i) {
    const Variant index(static_cast<std::int32_t>(i));
    items.push_back(CallMember(collection, item_id, DISPATCH_METHOD | DISPATCH_PROPERTYGET, kLocale,
                               {&index.get(), 1}));
  }
  return items;
}

}  // namespace

DISPID FindMember(IDispatch& object, std::u16string_view name, LCID locale) {
  DISPID found = DISPID_UNKNOWN;
  const HRESULT hr = LookUp(object, name, locale, &found);
  if (FAILED(hr)) RaiseRefusal(hr);
  return found;
}

Variant CallMember(IDispatch& object, DISPID member, WORD flags, LCID locale,
                   std::span<const VARIANT> arguments) {
  // Automation passes arguments last first. The values stay the caller's.
  std::vector<VARIANT> reversed(arguments.rbegin(), arguments.rend());
  DISPID put = DISPID_PROPERTYPUT;
  const bool assigns = flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF);
  DISPPARAMS parameters{reversed.data(), assigns ? &put : nullptr,
                        static_cast<UINT>(reversed.size()), assigns ? 1u : 0u};
  Variant result;
  Exception exception;
  const HRESULT hr = Invoke(object, member, flags, locale, parameters,
                            assigns ? nullptr : result.Out(), exception.info);
  if (hr == DISP_E_EXCEPTION) RaiseException(exception.info);
  if (FAILED(hr)) RaiseRefusal(hr);
  return result;
}

std::vector<Variant> ItemsOf(IDispatch& collection) {
  const ComPtr<IEnumVARIANT> enumerator = EnumeratorOf(collection);
  return enumerator ? Enumerate(*enumerator.Get()) : ItemByItem(collection);
}

}  // namespace zepkit10
