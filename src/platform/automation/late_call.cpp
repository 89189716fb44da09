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
  const HRESULT failed = info.scode != 0 ? info.scode : ToHresult(info.wCode);
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

ComPtr<IEnumVARIANT> EnumeratorOf(IDispatch& collection) {
  DISPPARAMS none{};
  Variant made;
  ComPtr<IEnumVARIANT> enumerator;
  const HRESULT hr = collection.Invoke(DISPID_NEWENUM, IID_NULL, LOCALE_USER_DEFAULT,
                                       DISPATCH_METHOD | DISPATCH_PROPERTYGET, &none, made.Out(),
                                       nullptr, nullptr);
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

std::vector<Variant> ItemByItem(IDispatch& collection) {
  constexpr LCID kLocale = LOCALE_USER_DEFAULT;
  constexpr WORD kRead = DISPATCH_METHOD | DISPATCH_PROPERTYGET;
  OLECHAR count_name[] = L"Count", item_name[] = L"Item";
  OLECHAR* names[] = {count_name, item_name};
  DISPID count_id = DISPID_UNKNOWN, item_id = DISPID_UNKNOWN;
  if (FAILED(collection.GetIDsOfNames(IID_NULL, &names[0], 1, kLocale, &count_id)) ||
      FAILED(collection.GetIDsOfNames(IID_NULL, &names[1], 1, kLocale, &item_id))) {
    RaiseRuntimeError(ZepVbErrors298To746::zepVbErrObjectNotACollection);
  }
  Variant count = CallMember(collection, count_id, kRead, kLocale);
  const HRESULT hr = VariantChangeType(count.Out(), count.Out(), 0, VT_I4);
  if (FAILED(hr)) RaiseRefusal(hr);
  std::vector<Variant> items;
  for (std::int32_t i = 1; i <= count.get().lVal; ++i) {
    const Variant index(i);
    items.push_back(CallMember(collection, item_id, kRead, kLocale, {&index.get(), 1}));
  }
  return items;
}

}  // namespace

DISPID FindMember(IDispatch& object, std::u16string_view name, LCID locale) {
  const std::u16string terminated(name);
  wchar_t* text = MutableText(terminated);
  DISPID found = DISPID_UNKNOWN;
  HRESULT hr = object.GetIDsOfNames(IID_NULL, &text, 1, locale, &found);
  if (hr == E_NOTIMPL) hr = FindExtended(object, name, &found);
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
