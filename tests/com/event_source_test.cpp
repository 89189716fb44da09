// Connecting to events, and what handlers may do while they are raised.
#include <ocidl.h>
#include <olectl.h>

#include <memory>

#include "com/probe/probe_test.h"
#include "com/sink.h"

namespace {

using client::Event;
using client::Sink;
using client::Value;
using Microsoft::WRL::ComPtr;

class EventSourceTest : public probe::ProbeTest {
 protected:
  ComPtr<Sink> Connect(Sink::Handler handler = {}) {
    return Sink::Connect(object(), DIID___Probe, std::move(handler));
  }
  ComPtr<IConnectionPoint> Point() {
    ComPtr<IConnectionPointContainer> container;
    ComPtr<IConnectionPoint> point;
    EXPECT_EQ(S_OK, probe_.As(&container));
    EXPECT_EQ(S_OK, container->FindConnectionPoint(DIID___Probe, &point));
    return point;
  }
};

/// An object that offers the interfaces it is told to, and nothing behind them.
class Stub final : public IUnknown {
 public:
  explicit Stub(const IID& offered) : offered_(offered) {}
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
    *result = iid == IID_IUnknown || iid == offered_ ? this : nullptr;
    if (*result) ++references_;
    return *result ? S_OK : E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
  ULONG STDMETHODCALLTYPE Release() override { return --references_; }
  ULONG references() const { return references_; }

 private:
  const IID offered_;
  ULONG references_ = 0;
};

TEST_F(EventSourceTest, ArgumentsArriveInOrderAndType) {
  const auto sink = Connect();
  EXPECT_EQ(S_OK, vtable()->RaiseIdle());
  Value text(std::wstring_view(L"a\0b", 3));
  EXPECT_EQ(S_OK, vtable()->RaiseChanged(text.raw().bstrVal, 0.5, -3));
  EXPECT_EQ(S_OK, vtable()->RaiseScalars(nullptr));
  const std::vector<Event> expected{
      {1, {}},
      {2, {text, 0.5, -3}},
      {4, {static_cast<short>(-7), 0.5f, 2, object(), Value::Nothing()}}};
  EXPECT_EQ(expected, sink->events());
  EXPECT_EQ(S_OK, sink->Disconnect());  // it holds its source in what it heard
}

TEST_F(EventSourceTest, AFlagByReferenceComesBack) {
  VARIANT_BOOL cancelled = VARIANT_TRUE;
  EXPECT_EQ(S_OK, vtable()->RaiseBefore(VARIANT_TRUE, &cancelled));
  EXPECT_EQ(VARIANT_FALSE, cancelled) << "nobody listens";

  std::vector<Value> seen;
  const auto set = [&seen](VARIANT_BOOL to) {
    return [&seen, to](const Event& event) {
      VARIANT cancel = event.arguments[1].raw();
      EXPECT_EQ(VT_BYREF | VT_BOOL, cancel.vt);
      seen.push_back(*cancel.pboolVal != VARIANT_FALSE);
      *cancel.pboolVal = to;
      return S_OK;
    };
  };
  const auto first = Connect(set(VARIANT_TRUE)), second = Connect();
  EXPECT_EQ(S_OK, vtable()->RaiseBefore(VARIANT_TRUE, &cancelled));
  EXPECT_EQ(VARIANT_TRUE, cancelled);
  EXPECT_EQ(Value(true), first->events()[0].arguments[0]);
  const auto third = Connect(set(VARIANT_FALSE));
  EXPECT_EQ(S_OK, vtable()->RaiseBefore(VARIANT_FALSE, &cancelled));
  EXPECT_EQ(VARIANT_FALSE, cancelled) << "the last handler decides";
  EXPECT_EQ((std::vector<Value>{false, false, true}), seen);
}

TEST_F(EventSourceTest, SinksHearInTheOrderOfTheirConnection) {
  std::vector<int> heard;
  const auto first = Connect([&](const Event&) { return heard.push_back(1), S_OK; });
  const auto second = Connect([&](const Event&) { return heard.push_back(2), S_OK; });
  EXPECT_EQ(S_OK, vtable()->RaiseIdle());
  EXPECT_EQ((std::vector<int>{1, 2}), heard);
}

TEST_F(EventSourceTest, ASinkMayConnectTwice) {
  const auto sink = Connect();
  DWORD cookie = 0;
  EXPECT_EQ(S_OK, Point()->Advise(sink.Get(), &cookie));
  EXPECT_EQ(S_OK, vtable()->RaiseIdle());
  EXPECT_EQ(2u, sink->events().size());
  EXPECT_EQ(S_OK, Point()->Unadvise(cookie));
  EXPECT_EQ(S_OK, vtable()->RaiseIdle());
  EXPECT_EQ(3u, sink->events().size());
}

TEST_F(EventSourceTest, AFailingSinkDisturbsNobody) {
  const auto failing = Connect([](const Event&) { return E_FAIL; });
  const auto other = Connect();
  EXPECT_EQ(S_OK, vtable()->RaiseIdle());
  EXPECT_EQ(1u, other->events().size());
}

TEST_F(EventSourceTest, WhoConnectsDuringAnEventHearsTheNext) {
  std::vector<ComPtr<Sink>> late;
  const auto sink = Connect([&](const Event&) {
    late.push_back(Connect());
    return S_OK;
  });
  EXPECT_EQ(S_OK, vtable()->RaiseIdle());
  ASSERT_EQ(1u, late.size());
  EXPECT_EQ(0u, late[0]->events().size());
  EXPECT_EQ(S_OK, sink->Disconnect());
  EXPECT_EQ(S_OK, vtable()->RaiseIdle());
  EXPECT_EQ(1u, late[0]->events().size());
}

TEST_F(EventSourceTest, SinksMayDisconnectThemselvesAndOthersDuringAnEvent) {
  ComPtr<Sink> first, second;
  first = Connect([&](const Event&) {
    EXPECT_EQ(S_OK, first->Disconnect());
    EXPECT_EQ(S_OK, second->Disconnect());
    return S_OK;
  });
  second = Connect();
  EXPECT_EQ(S_OK, vtable()->RaiseIdle());
  EXPECT_EQ(1u, first->events().size());
  EXPECT_EQ(1u, second->events().size()) << "the event that was being raised still arrives";
  EXPECT_EQ(S_OK, vtable()->RaiseIdle());
  EXPECT_EQ(1u, first->events().size());
  EXPECT_EQ(1u, second->events().size());
}

TEST_F(EventSourceTest, HandlersMayRaiseEvents) {
  int depth = 0;
  const auto sink =
      Connect([&](const Event&) { return ++depth < 20 ? vtable()->RaiseIdle() : S_OK; });
  EXPECT_EQ(S_OK, vtable()->RaiseIdle());
  EXPECT_EQ(20u, sink->events().size());
}

TEST_F(EventSourceTest, AHandlerMayDropTheLastReference) {
  ::_Probe* raw = vtable();
  const auto first = Connect([&](const Event&) {
    probe_.Reset();
    return S_OK;
  });
  const auto second = Connect();
  VARIANT_BOOL cancelled = VARIANT_TRUE;
  EXPECT_EQ(S_OK, raw->RaiseBefore(VARIANT_TRUE, &cancelled));
  EXPECT_EQ(1u, first->events().size());
  EXPECT_EQ(1u, second->events().size());
}

TEST_F(EventSourceTest, AHandlerMayDropTheLastReferenceOfALateBoundCall) {
  IDispatch* raw = object();
  const auto sink = Connect([&](const Event&) {
    probe_.Reset();
    return S_OK;
  });
  DISPPARAMS none{};
  EXPECT_EQ(S_OK, raw->Invoke(83, IID_NULL, 0, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr));
  EXPECT_EQ(1u, sink->events().size());
}

// A value is the member's own, even if it was passed as a variable that a handler changes.
TEST_F(EventSourceTest, AHandlerCannotChangeTheArgumentsOfTheCall) {
  Value variable(L"before"), inner(probe::ByReference(variable));
  const auto sink = Connect([&](const Event&) { return variable = Value(L"after"), S_OK; });
  for (const VARIANT& argument : {probe::ByReference(variable), probe::ByReference(inner),
                                  probe::ByReference(VT_BSTR, &variable.raw().bstrVal)}) {
    variable = Value(L"before");
    EXPECT_EQ(Value(L"before"), Call(L"RaiseAndEcho", {argument}).value);
    EXPECT_EQ(Value(L"after"), variable);
  }
}

// A sink that holds its source: unadvising lets go of both.
TEST_F(EventSourceTest, UnadviseMayEndTheSource) {
  struct Owner final : IDispatch {
    ComPtr<IUnknown> source;
    ULONG references = 0;
    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** result) override {
      *result = iid == IID_IUnknown || iid == IID_IDispatch ? this : nullptr;
      if (*result) AddRef();
      return *result ? S_OK : E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references; }
    ULONG STDMETHODCALLTYPE Release() override {
      const ULONG left = --references;
      if (left == 0) source.Reset();
      return left;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
      return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) override {
      return S_OK;
    }
  };
  Owner owner;
  owner.source = probe_.Get();
  IConnectionPoint* point = Point().Get();
  DWORD cookie = 0;
  EXPECT_EQ(S_OK, point->Advise(&owner, &cookie));
  probe_.Reset();
  EXPECT_EQ(S_OK, point->Unadvise(cookie));
  EXPECT_EQ(nullptr, owner.source.Get());
}

TEST_F(EventSourceTest, TheSourceLetsGoOfItsSinksInTheEnd) {
  Stub stub(DIID___Probe);
  DWORD cookie = 0;
  EXPECT_EQ(S_OK, Point()->Advise(&stub, &cookie));
  EXPECT_EQ(1u, stub.references());
  probe_.Reset();
  EXPECT_EQ(0u, stub.references());
}

TEST_F(EventSourceTest, OnlySinksAreConnected) {
  DWORD cookie = 5;
  EXPECT_EQ(E_POINTER, Point()->Advise(nullptr, &cookie));
  EXPECT_EQ(0u, cookie);
  Stub stub(IID_IEnumVARIANT);
  cookie = 5;
  EXPECT_EQ(CONNECT_E_CANNOTCONNECT, Point()->Advise(&stub, &cookie));
  EXPECT_EQ(0u, cookie);
  EXPECT_EQ(0u, stub.references());
  const auto sink = Connect();
  EXPECT_EQ(E_POINTER, Point()->Advise(sink.Get(), nullptr));
  EXPECT_EQ(S_OK, vtable()->RaiseIdle());
  EXPECT_EQ(1u, sink->events().size());
}

TEST_F(EventSourceTest, CookiesAreUsedOnce) {
  const auto sink = Connect();
  DWORD cookie = 0;
  EXPECT_EQ(S_OK, Point()->Advise(sink.Get(), &cookie));
  EXPECT_NE(0u, cookie);
  EXPECT_EQ(S_OK, Point()->Unadvise(cookie));
  EXPECT_EQ(CONNECT_E_NOCONNECTION, Point()->Unadvise(cookie));
  EXPECT_EQ(CONNECT_E_NOCONNECTION, Point()->Unadvise(0));
  EXPECT_EQ(CONNECT_E_NOCONNECTION, Point()->Unadvise(4711));
}

TEST_F(EventSourceTest, ThePointHasAnIdentityOfItsOwn) {
  const auto point = Point();
  ComPtr<IUnknown> point_identity, object_identity;
  EXPECT_EQ(S_OK, point.As(&point_identity));
  EXPECT_EQ(S_OK, probe_.As(&object_identity));
  EXPECT_NE(point_identity.Get(), object_identity.Get());
  ComPtr<IDispatch> dispatch;
  EXPECT_EQ(E_NOINTERFACE, point.As(&dispatch));
  EXPECT_EQ(E_POINTER, point->QueryInterface(IID_IUnknown, nullptr));
  IID events = GUID_NULL;
  EXPECT_EQ(S_OK, point->GetConnectionInterface(&events));
  EXPECT_EQ(DIID___Probe, events);
  EXPECT_EQ(E_POINTER, point->GetConnectionInterface(nullptr));
  ComPtr<IConnectionPointContainer> container;
  EXPECT_EQ(S_OK, point->GetConnectionPointContainer(&container));
  ComPtr<IUnknown> back;
  EXPECT_EQ(S_OK, container.As(&back));
  EXPECT_EQ(object_identity.Get(), back.Get());
  EXPECT_EQ(E_POINTER, point->GetConnectionPointContainer(nullptr));
}

TEST_F(EventSourceTest, OnlyItsOwnEventsHaveAPoint) {
  ComPtr<IConnectionPointContainer> container;
  EXPECT_EQ(S_OK, probe_.As(&container));
  for (const IID& foreign : {IID_NULL, IID_IDispatch, IID__Probe, IID_IPropertyNotifySink}) {
    IConnectionPoint* point = Point().Get();
    EXPECT_EQ(CONNECT_E_NOCONNECTION, container->FindConnectionPoint(foreign, &point));
    EXPECT_EQ(nullptr, point);
  }
  EXPECT_EQ(E_POINTER, container->FindConnectionPoint(DIID___Probe, nullptr));
  // A class without events offers no points at all.
  ComPtr<::_ProbeList> list;
  EXPECT_EQ(S_OK, vtable()->get_List(&list));
  EXPECT_EQ(E_NOINTERFACE, list.As(&container));
}

// The point keeps its object alive.
TEST_F(EventSourceTest, ThePointOutlivesTheClientsOtherReferences) {
  auto point = Point();
  probe_.Reset();
  ComPtr<IConnectionPointContainer> container;
  EXPECT_EQ(S_OK, point->GetConnectionPointContainer(&container));
}

}  // namespace
