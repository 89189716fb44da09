#include "platform/automation/object_core.h"

#include "platform/automation/event_source.h"

namespace zepkit10 {
namespace {

// Answered by our own objects only: leads from any of their interfaces to the ObjectCore.
// {5E0C9B1B-7F43-4E0C-9C7D-61B31F2AD1A4}
constexpr IID kImplementation = {
    0x5e0c9b1b, 0x7f43, 0x4e0c, {0x9c, 0x7d, 0x61, 0xb3, 0x1f, 0x2a, 0xd1, 0xa4}};

// While an object is being destroyed, references taken and given back by its destructor must not
// destroy it again.
constexpr long kDestroying = 1L << 30;

}  // namespace

ObjectCore::ObjectCore(const ClassDescription& description, IDispatch* dispatch,
                       EventSource* events) noexcept
    : class_(description), dispatch_(dispatch), events_(events) {
  CountLiveObject(+1);
}

ObjectCore::~ObjectCore() { CountLiveObject(-1); }

void ObjectCore::Destroy() noexcept {
  internal_ = kDestroying;
  delete this;
}

ObjectCore* ObjectCore::Behind(IUnknown* object) noexcept {
  void* core = nullptr;
  if (!object || FAILED(object->QueryInterface(kImplementation, &core))) return nullptr;
  auto* found = static_cast<ObjectCore*>(core);
  found->Release();
  return found;
}

HRESULT ObjectCore::QueryInterface(REFIID iid, void** result) noexcept {
  if (!result) return E_POINTER;
  *result = nullptr;
  if (iid == IID_IUnknown || iid == IID_IDispatch || iid == *class_.default_interface) {
    *result = dispatch_;
  } else if (iid == IID_ISupportErrorInfo) {
    *result = static_cast<ISupportErrorInfo*>(this);
  } else if (class_.clsid && (iid == IID_IProvideClassInfo || iid == IID_IProvideClassInfo2)) {
    *result = static_cast<IProvideClassInfo2*>(this);
  } else if (iid == IID_IConnectionPointContainer && events_) {
    *result = static_cast<IConnectionPointContainer*>(events_);
  } else if (iid == kImplementation) {
    *result = this;
  } else {
    return E_NOINTERFACE;
  }
  AddRef();
  return S_OK;
}

/// Clients hold the object no longer.
void ObjectCore::EndUse() noexcept {
  // Destroyed first: a DLL that is no longer in use may be unloaded at any moment.
  DestroyIfUnused();
  ReleaseModuleUse();
}

HRESULT ObjectCore::InterfaceSupportsErrorInfo(REFIID iid) noexcept {
  return iid == *class_.default_interface || iid == IID_IDispatch ? S_OK : S_FALSE;
}

HRESULT ObjectCore::GetClassInfo(ITypeInfo** result) noexcept {
  if (!result) return E_POINTER;
  *result = nullptr;
  return LoadOwnTypeInfo(*class_.clsid, result);
}

HRESULT ObjectCore::GetGUID(DWORD kind, GUID* result) noexcept {
  if (!result) return E_POINTER;
  *result = GUID_NULL;
  if (kind != GUIDKIND_DEFAULT_SOURCE_DISP_IID) return E_INVALIDARG;
  if (!class_.events) return E_UNEXPECTED;
  *result = *class_.events;
  return S_OK;
}

}  // namespace zepkit10
