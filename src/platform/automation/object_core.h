#pragma once

#include <windows.h>
#include <oaidl.h>
#include <ocidl.h>

#include "platform/automation/class_description.h"
#include "platform/automation/module.h"

namespace zepkit10 {

class EventSource;

/// The part of an automation object that does not depend on its class: identity, reference counts,
/// class information, error information and the way to late binding and events.
///
/// Two counts keep an object alive. `AddRef`/`Release` count clients and, while above zero, keep
/// the DLL loaded; `Retain`/`Drop` count the library's own references (see `Ref`). Both belong to
/// the object's apartment and are not interlocked.
class ObjectCore : public ISupportErrorInfo, public IProvideClassInfo2 {
 public:
  ObjectCore(const ObjectCore&) = delete;
  ObjectCore& operator=(const ObjectCore&) = delete;

  /// The implementation behind an interface pointer, not counted; null for a foreign object.
  static ObjectCore* Behind(IUnknown* object) noexcept;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) noexcept final;
  ULONG STDMETHODCALLTYPE AddRef() noexcept final {
    if (external_++ == 0) AddModuleUse();
    return static_cast<ULONG>(external_);
  }
  ULONG STDMETHODCALLTYPE Release() noexcept final {
    const long left = --external_;
    if (left == 0) EndUse();
    return static_cast<ULONG>(left);
  }
  HRESULT STDMETHODCALLTYPE InterfaceSupportsErrorInfo(REFIID iid) noexcept final;
  HRESULT STDMETHODCALLTYPE GetClassInfo(ITypeInfo** result) noexcept final;
  HRESULT STDMETHODCALLTYPE GetGUID(DWORD kind, GUID* result) noexcept final;

  void Retain() noexcept { ++internal_; }
  void Drop() noexcept {
    --internal_;
    DestroyIfUnused();
  }

  const ClassDescription& Description() const { return class_; }
  IDispatch* Dispatch() const { return dispatch_; }

 protected:
  ObjectCore(const ClassDescription& description, IDispatch* dispatch,
             EventSource* events = nullptr) noexcept;
  virtual ~ObjectCore();

 private:
  void DestroyIfUnused() noexcept {
    if (external_ == 0 && internal_ == 0) Destroy();
  }
  void Destroy() noexcept;
  void EndUse() noexcept;

  const ClassDescription& class_;
  IDispatch* const dispatch_;
  EventSource* const events_;
  long external_ = 0;
  long internal_ = 0;
};

/// Keeps an object alive for the length of a call: a handler may drop the client's last reference.
class Keeper {
 public:
  explicit Keeper(ObjectCore& object) : object_(object) { object_.AddRef(); }
  ~Keeper() { object_.Release(); }
  Keeper(const Keeper&) = delete;
  Keeper& operator=(const Keeper&) = delete;

 private:
  ObjectCore& object_;
};

}  // namespace zepkit10
