#include "doc/content_listener_object.h"

#include "Zepkit10.h"

namespace zepkit10 {
namespace {

using Microsoft::WRL::ComPtr;

// Of the events of ZepVariant.
constexpr DISPID kBeforeROChange = 1, kChange = 2;

/// Every buffer has one.
ComPtr<IConnectionPoint> PointOf(ZepVariant& content) {
  ComPtr<IConnectionPointContainer> container;
  ComPtr<IConnectionPoint> point;
  content.QueryInterface(IID_IConnectionPointContainer,
                         reinterpret_cast<void**>(container.GetAddressOf()));
  container->FindConnectionPoint(DIID___ZepVariant, &point);
  return point;
}

}  // namespace

class ContentConnection::Listener final : public IDispatch {
 public:
  explicit Listener(ContentOwner& owner) : owner_(&owner) {}

  /// The owner is gone, or has another content.
  void Forget() { owner_ = nullptr; }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
    const bool known = iid == IID_IUnknown || iid == IID_IDispatch || iid == DIID___ZepVariant;
    *result = known ? this : nullptr;
    if (!known) return E_NOINTERFACE;
    AddRef();
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override {
    const ULONG left = --references_;
    if (left == 0) delete this;
    return left;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID event, REFIID, LCID, WORD, DISPPARAMS* arguments,
                                   VARIANT*, EXCEPINFO*, UINT*) override {
    ContentOwner* const owner = owner_;
    if (!owner) return S_OK;
    owner->RetainOwner();
    try {
      if (event == kChange) {
        owner->ContentChanged();
      } else if (event == kBeforeROChange) {
        VARIANT_BOOL* flag = arguments->rgvarg[0].pboolVal;
        bool cancel = *flag != VARIANT_FALSE;
        owner->BeforeContentROChange(arguments->rgvarg[1].boolVal != VARIANT_FALSE, cancel);
        *flag = cancel ? VARIANT_TRUE : VARIANT_FALSE;
      }
    } catch (...) {  // an event has nobody to report to
    }
    owner->DropOwner();
    return S_OK;
  }

 private:
  ContentOwner* owner_;
  ULONG references_ = 0;
};

ContentConnection::ContentConnection(ZepVariant& content, ContentOwner& owner)
    : content_(&content), listener_(new Listener(owner)) {
  if (FAILED(PointOf(content)->Advise(listener_.Get(), &cookie_))) throw std::bad_alloc();
}

ContentConnection::~ContentConnection() {
  listener_->Forget();
  PointOf(*content_)->Unadvise(cookie_);
}

}  // namespace zepkit10
