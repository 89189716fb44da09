#include "monkey/listener.h"

#include <utility>

namespace monkey {
namespace {

using Microsoft::WRL::ComPtr;

long live = 0;

ComPtr<IConnectionPoint> PointOf(IDispatch* source, const IID& events) {
  ComPtr<IConnectionPointContainer> container;
  ComPtr<IConnectionPoint> point;
  if (SUCCEEDED(source->QueryInterface(IID_PPV_ARGS(&container)))) {
    container->FindConnectionPoint(events, &point);
  }
  return point;
}

}  // namespace

Listener::Listener(IDispatch* source, const Class& its_class, Handler handler)
    : source_(source), source_class_(its_class), handler_(std::move(handler)) {
  ++live;
}

Listener::~Listener() { --live; }

long Listener::Live() { return live; }

void Listener::Connect(IDispatch* source, const Class& its_class, Handler handler,
                       std::vector<Population::Connection>& connections) {
  const ComPtr<IConnectionPoint> point = PointOf(source, its_class.events_iid);
  if (!point) return;
  auto* listener = new Listener(source, its_class, std::move(handler));
  if (SUCCEEDED(point->Advise(listener, &listener->cookie_))) {
    connections.push_back({point, listener->cookie_});
  }
  listener->Release();
}

void Listener::Disconnect() {
  if (const auto point = PointOf(source_, source_class_.events_iid)) point->Unadvise(cookie_);
}

HRESULT Listener::QueryInterface(REFIID iid, void** result) {
  const bool known = iid == IID_IUnknown || iid == IID_IDispatch || iid == source_class_.events_iid;
  *result = known ? this : nullptr;
  if (known) ++references_;
  return known ? S_OK : E_NOINTERFACE;
}

ULONG Listener::Release() {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

}  // namespace monkey
