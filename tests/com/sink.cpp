#include "com/sink.h"

#include "com/fault_plan.h"
#include "faults/failing_memory.h"

namespace client {

using Microsoft::WRL::ComPtr;

std::ostream& operator<<(std::ostream& out, const Event& event) {
  out << "event " << event.id << " [";
  for (const Value& argument : event.arguments) out << argument << ", ";
  return out << "]";
}

ComPtr<Sink> Sink::Connect(IUnknown* source, REFIID events, Handler handler) {
  ComPtr<Sink> sink = new Sink(events, std::move(handler));
  ComPtr<IConnectionPointContainer> container;
  ComPtr<IConnectionPoint> point;
  if (FAILED(source->QueryInterface(IID_PPV_ARGS(&container))) ||
      FAILED(container->FindConnectionPoint(events, &point)) ||
      FAILED(failing_memory::Perform("Advise",
                                     [&] { return point->Advise(sink.Get(), &sink->cookie_); }))) {
    return nullptr;
  }
  sink->point_ = point.Get();
  return sink;
}

HRESULT Sink::Disconnect() { return point_->Unadvise(cookie_); }

HRESULT Sink::QueryInterface(REFIID iid, void** result) {
  const bool known = iid == IID_IUnknown || iid == IID_IDispatch || iid == interface_;
  *result = known ? this : nullptr;
  if (!known) return E_NOINTERFACE;
  AddRef();
  return S_OK;
}

ULONG Sink::Release() {
  const ULONG left = --references_;
  if (left == 0) delete this;
  return left;
}

HRESULT Sink::Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters, VARIANT*, EXCEPINFO*,
                     UINT*) {
  const faults::OutsideCall outside;
  if (failing_memory::HasLeftTest()) return S_OK;
  const ComPtr<Sink> keeper(this);
  Event event{id, {}};
  for (UINT i = parameters->cArgs; i-- > 0;)
    event.arguments.emplace_back(Value(parameters->rgvarg[i]));
  events_.push_back(event);
  return handler_ ? handler_(event) : S_OK;
}

}  // namespace client
