#pragma once

#include <windows.h>
#include <oaidl.h>
#include <ocidl.h>
#include <wrl/client.h>

#include <functional>
#include <vector>

#include "com/client.h"

namespace client {

/// One event as a sink heard it.
struct Event {
  DISPID id;
  std::vector<Value> arguments;  // in the order of the event's parameters

  friend bool operator==(const Event&, const Event&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Event& event);
};

/// A sink on an object's default event interface that keeps what it hears and, if wanted, reacts to
/// it. It lives as long as its connections and the pointer returned by `Connect`.
class Sink final : public IDispatch {
 public:
  using Handler = std::function<HRESULT(const Event&)>;

  /// Connects a new sink. Null if the object has no such events.
  static Microsoft::WRL::ComPtr<Sink> Connect(IUnknown* source, REFIID events,
                                              Handler handler = {});

  const std::vector<Event>& events() const { return events_; }
  HRESULT Disconnect();

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override;
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID iid, LCID locale, WORD flags,
                                   DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                                   UINT* argument) override;

 private:
  Sink(REFIID events, Handler handler) : interface_(events), handler_(std::move(handler)) {}

  const IID interface_;
  const Handler handler_;
  std::vector<Event> events_;
  // Weak: the connection point keeps the sink, not the other way round.
  IConnectionPoint* point_ = nullptr;
  DWORD cookie_ = 0;
  ULONG references_ = 0;
};

}  // namespace client
