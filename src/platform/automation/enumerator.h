#pragma once

#include <windows.h>
#include <oaidl.h>
#include <wrl/client.h>

#include <algorithm>
#include <memory>
#include <vector>

#include "platform/automation/module.h"
#include "platform/automation/variant.h"

namespace zepkit10 {

/// An OLE enumerator over a snapshot: later changes of the collection do not disturb it. Clones
/// share the snapshot. Traits say what a snapshot holds and how one element is handed out:
///     using Interface = IEnumVARIANT; using Element = VARIANT; using Item = …;
///     static HRESULT Copy(const Item& from, Element* to); static void Clear(Element*);
template <class Traits>
class Enumerator final : public Traits::Interface {
 public:
  using Interface = typename Traits::Interface;
  using Element = typename Traits::Element;
  using Snapshot = std::shared_ptr<const std::vector<typename Traits::Item>>;

  static Microsoft::WRL::ComPtr<Interface> Create(Snapshot items, std::size_t position = 0) {
    return new Enumerator(std::move(items), position);
  }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
    if (!result) return E_POINTER;
    const bool known = iid == IID_IUnknown || iid == __uuidof(Interface);
    *result = known ? static_cast<Interface*>(this) : nullptr;
    if (!known) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(++references_); }
  ULONG STDMETHODCALLTYPE Release() override {
    const long left = --references_;
    if (left == 0) delete this;
    return static_cast<ULONG>(left);
  }

  HRESULT STDMETHODCALLTYPE Next(ULONG count, Element* elements, ULONG* fetched) override {
    if (fetched) *fetched = 0;
    if (!elements || (!fetched && count != 1)) return E_POINTER;
    ULONG done = 0;
    for (; done < count && position_ < items_->size(); ++done, ++position_) {
      const HRESULT hr = Traits::Copy((*items_)[position_], &elements[done]);
      if (FAILED(hr)) {
        while (done > 0) Traits::Clear(&elements[--done]), --position_;
        return hr;
      }
    }
    if (fetched) *fetched = done;
    return done == count ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Skip(ULONG count) override {
    const std::size_t left = items_->size() - position_;
    position_ += std::min<std::size_t>(count, left);
    return count <= left ? S_OK : S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE Reset() override {
    position_ = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE Clone(Interface** result) override {
    if (!result) return E_POINTER;
    *result = nullptr;
    try {
      *result = Create(items_, position_).Detach();
      return S_OK;
    } catch (...) {
      return E_OUTOFMEMORY;
    }
  }

 private:
  Enumerator(Snapshot items, std::size_t position) : items_(std::move(items)), position_(position) {
    CountLiveObject(+1);
    AddModuleUse();
  }
  ~Enumerator() {
    CountLiveObject(-1);
    ReleaseModuleUse();
  }

  const Snapshot items_;
  std::size_t position_;
  long references_ = 0;
};

/// An enumerator of values.
struct VariantEnumeratorTraits {
  using Interface = IEnumVARIANT;
  using Element = VARIANT;
  using Item = Variant;
  static HRESULT Copy(const Item& from, VARIANT* to) {
    VariantInit(to);
    return VariantCopy(to, const_cast<VARIANT*>(&from.get()));
  }
  static void Clear(VARIANT* element) { VariantClear(element); }
};

}  // namespace zepkit10
