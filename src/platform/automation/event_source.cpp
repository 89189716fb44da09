#include "platform/automation/event_source.h"

#include <olectl.h>

#include <algorithm>

#include "platform/automation/enumerator.h"
#include "platform/automation/object_core.h"

namespace zepkit10 {
namespace {

using Microsoft::WRL::ComPtr;

struct ConnectionTraits {
  using Interface = IEnumConnections;
  using Element = CONNECTDATA;
  struct Item {
    DWORD cookie;
    ComPtr<IDispatch> target;
  };
  static HRESULT Copy(const Item& from, CONNECTDATA* to) {
    *to = {from.target.Get(), from.cookie};
    to->pUnk->AddRef();
    return S_OK;
  }
  static void Clear(CONNECTDATA* element) { element->pUnk->Release(); }
};

struct ConnectionPointTraits {
  using Interface = IEnumConnectionPoints;
  using Element = IConnectionPoint*;
  using Item = ComPtr<IConnectionPoint>;
  static HRESULT Copy(const Item& from, IConnectionPoint** to) { return from.CopyTo(to); }
  static void Clear(IConnectionPoint** element) { (*element)->Release(); }
};

}  // namespace

HRESULT EventSource::QueryInterface(REFIID iid, void** result) {
  return owner_.QueryInterface(iid, result);
}

ULONG EventSource::AddRef() { return owner_.AddRef(); }
ULONG EventSource::Release() { return owner_.Release(); }

HRESULT EventSource::EnumConnectionPoints(IEnumConnectionPoints** result) {
  if (!result) return E_POINTER;
  *result = nullptr;
  try {
    auto points = std::make_shared<std::vector<ComPtr<IConnectionPoint>>>();
    points->emplace_back(&point_);
    *result = Enumerator<ConnectionPointTraits>::Create(std::move(points)).Detach();
    return S_OK;
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

HRESULT EventSource::FindConnectionPoint(REFIID iid, IConnectionPoint** result) {
  if (!result) return E_POINTER;
  *result = nullptr;
  if (iid != *owner_.Description().events) return CONNECT_E_NOCONNECTION;
  point_.AddRef();
  *result = &point_;
  return S_OK;
}

HRESULT EventSource::Point::QueryInterface(REFIID iid, void** result) {
  if (!result) return E_POINTER;
  const bool known = iid == IID_IUnknown || iid == IID_IConnectionPoint;
  *result = known ? static_cast<IConnectionPoint*>(this) : nullptr;
  if (!known) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

HRESULT EventSource::Point::GetConnectionInterface(IID* result) {
  if (!result) return E_POINTER;
  *result = *source_.owner_.Description().events;
  return S_OK;
}

HRESULT EventSource::Point::GetConnectionPointContainer(IConnectionPointContainer** result) {
  if (!result) return E_POINTER;
  source_.AddRef();
  *result = &source_;
  return S_OK;
}

HRESULT EventSource::Point::Advise(IUnknown* sink, DWORD* cookie) {
  if (cookie) *cookie = 0;
  if (!sink || !cookie) return E_POINTER;
  ComPtr<IDispatch> target;
  const IID& events = *source_.owner_.Description().events;
  if (FAILED(sink->QueryInterface(events, reinterpret_cast<void**>(target.GetAddressOf()))) &&
      FAILED(sink->QueryInterface(IID_PPV_ARGS(&target)))) {
    return CONNECT_E_CANNOTCONNECT;
  }
  if (!target) return CONNECT_E_CANNOTCONNECT;
  try {
    auto changed = Make<Sinks>(source_.sinks_->items);
    changed->items.push_back({++source_.last_cookie_, target});
    source_.sinks_ = std::move(changed);
    *cookie = source_.last_cookie_;
    return S_OK;
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

HRESULT EventSource::Point::Unadvise(DWORD cookie) {
  const auto has_cookie = [cookie](const Sink& sink) { return sink.cookie == cookie; };
  std::vector<Sink>& sinks = source_.sinks_->items;
  const auto found = std::find_if(sinks.begin(), sinks.end(), has_cookie);
  if (found == sinks.end()) return CONNECT_E_NOCONNECTION;
  // Released last: the sink's end may call back.
  const ComPtr<IDispatch> target = found->target;
  if (source_.sinks_->users == 1) {
    sinks.erase(found);
    return S_OK;
  }
  try {
    auto changed = Make<Sinks>(sinks);
    std::erase_if(changed->items, has_cookie);
    source_.sinks_ = std::move(changed);
    return S_OK;
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

HRESULT EventSource::Point::EnumConnections(IEnumConnections** result) {
  if (!result) return E_POINTER;
  *result = nullptr;
  try {
    auto items = std::make_shared<std::vector<ConnectionTraits::Item>>();
    for (const Sink& sink : source_.sinks_->items) items->push_back({sink.cookie, sink.target});
    *result = Enumerator<ConnectionTraits>::Create(std::move(items)).Detach();
    return S_OK;
  } catch (...) {
    return E_OUTOFMEMORY;
  }
}

void EventSource::Fire(DISPID event, VARIANT* arguments, UINT count) const noexcept {
  const Ref<Sinks> snapshot = sinks_;
  DISPPARAMS parameters{arguments, nullptr, count, 0};
  for (const Sink& sink : snapshot->items) {
    sink.target->Invoke(event, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters, nullptr,
                        nullptr, nullptr);
  }
}

}  // namespace zepkit10
