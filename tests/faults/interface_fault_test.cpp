// What objects offer besides their members, with every single allocation failing: connections of
// sinks, enumerators, type information.
#include <ocidl.h>

#include "com/both_bindings.h"
#include "com/fault_plan.h"
#include "com/sink.h"
#include "faults/allocation_hooks.h"
#include "platform/automation/module.h"

namespace {

using faults::Kind;
using faults::Lasting;
using Microsoft::WRL::ComPtr;

class InterfaceFaultTest : public component::Test {
 protected:
  /// Makes a call until no allocation of it is left that could fail; it says so each time. Returns
  /// how often it failed.
  template <class Call>
  static int FailEach(Call&& call) {
    int failures = 0;
    for (const Lasting lasting : {Lasting::kOnce, Lasting::kFromThenOn}) {
      for (int number = 1;; ++number) {
        const auto [hr, failed] = WithFault(number, lasting, call);
        if (failed == 0) {
          EXPECT_EQ(S_OK, hr);
          break;
        }
        EXPECT_EQ(E_OUTOFMEMORY, hr) << "allocation " << number;
        ++failures;
        if (HasFailure()) return failures;
      }
    }
    return failures;
  }

  template <class Call>
  static std::pair<HRESULT, int> WithFault(int number, Lasting lasting, Call&& call) {
    faults::Begin(Kind::kMemory, number, lasting);
    HRESULT hr = E_UNEXPECTED;
    {
      const faults::InsideCall inside;
      hr = call();
    }
    return {hr, faults::End()};
  }

  static ComPtr<IConnectionPoint> PointOf(IDispatch* counter) {
    ComPtr<IConnectionPointContainer> container;
    ComPtr<IConnectionPoint> point;
    EXPECT_EQ(S_OK, counter->QueryInterface(IID_PPV_ARGS(&container)));
    EXPECT_EQ(S_OK, container->FindConnectionPoint(DIID___Counter, &point));
    return point;
  }

  /// A list with three items, "a", "b" and "c".
  static ComPtr<IEnumVARIANT> EnumeratorOfTexts() {
    const client::Object list(component::Create<IDispatch>(CLSID_List).Get(),
                              client::Binding::kDispatch);
    EXPECT_OK(list.Let(L"ListString", {L"a b c"}));
    const client::Outcome entry = list.Get(L"NewEnum");
    ComPtr<IEnumVARIANT> enumerator;
    EXPECT_EQ(S_OK, entry.value.raw().punkVal->QueryInterface(IID_PPV_ARGS(&enumerator)));
    return enumerator;
  }

  const faults::AllocationHooks hooks_;
};

TEST_F(InterfaceFaultTest, ASinkIsConnectedOrNot) {
  const auto counter = component::Create<IDispatch>(CLSID_Counter);
  const client::Object client(counter.Get(), client::Binding::kDispatch);
  const auto sink = client::Sink::Connect(counter.Get(), DIID___Counter);
  const auto point = PointOf(counter.Get());
  DWORD cookie = 0;
  int connected = 0;
  EXPECT_LT(0, FailEach([&] {
              const HRESULT hr = point->Advise(sink.Get(), &cookie);
              connected += SUCCEEDED(hr);
              EXPECT_EQ(FAILED(hr), cookie == 0);
              return hr;
            }));
  EXPECT_EQ(2, connected);
  EXPECT_OK(client.Let(L"Value", {1}));
  EXPECT_EQ(3u, sink->events().size());
  EXPECT_EQ(S_OK, sink->Disconnect());
}

TEST_F(InterfaceFaultTest, ASinkIsDisconnectedWithoutMemory) {
  const auto counter = component::Create<IDispatch>(CLSID_Counter);
  const client::Object client(counter.Get(), client::Binding::kDispatch);
  const auto sink = client::Sink::Connect(counter.Get(), DIID___Counter);
  const auto [hr, failed] = WithFault(1, Lasting::kFromThenOn, [&] { return sink->Disconnect(); });
  EXPECT_EQ(S_OK, hr);
  EXPECT_EQ(0, failed);
  EXPECT_OK(client.Let(L"Value", {1}));
  EXPECT_TRUE(sink->events().empty());
}

TEST_F(InterfaceFaultTest, ConnectionsAreEnumerated) {
  const auto counter = component::Create<IDispatch>(CLSID_Counter);
  const auto sink = client::Sink::Connect(counter.Get(), DIID___Counter);
  const auto point = PointOf(counter.Get());
  EXPECT_LT(0, FailEach([&] {
              ComPtr<IEnumConnections> connections;
              const HRESULT hr = point->EnumConnections(&connections);
              EXPECT_EQ(FAILED(hr), connections == nullptr);
              return hr;
            }));
  ComPtr<IConnectionPointContainer> container;
  EXPECT_EQ(S_OK, counter.As(&container));
  EXPECT_LT(0, FailEach([&] {
              ComPtr<IEnumConnectionPoints> points;
              const HRESULT hr = container->EnumConnectionPoints(&points);
              EXPECT_EQ(FAILED(hr), points == nullptr);
              return hr;
            }));
}

TEST_F(InterfaceFaultTest, AnEnumeratorStaysWhereItWas) {
  const auto enumerator = EnumeratorOfTexts();
  EXPECT_LT(0, FailEach([&] {
              ComPtr<IEnumVARIANT> clone;
              const HRESULT hr = enumerator->Clone(&clone);
              EXPECT_EQ(FAILED(hr), clone == nullptr);
              return hr;
            }));
  client::Value values[3];
  // Each of the three texts, once and from it on.
  EXPECT_EQ(6, FailEach([&] {
              ULONG fetched = 9;
              VARIANT found[3];
              const HRESULT hr = enumerator->Next(3, found, &fetched);
              EXPECT_EQ(SUCCEEDED(hr) ? 3u : 0u, fetched);
              if (FAILED(hr)) return hr;
              const faults::OutsideCall outside;
              for (int i = 0; i < 3; ++i) {
                values[i] = client::Value(found[i]);
                VariantClear(&found[i]);
              }
              enumerator->Reset();
              return hr;
            }));
  EXPECT_EQ(client::Value(L"a"), values[0]);
  EXPECT_EQ(client::Value(L"c"), values[2]);
}

TEST_F(InterfaceFaultTest, TheTypeLibraryIsLoadedLater) {
  const auto counter = component::Create<IDispatch>(CLSID_Counter);
  EXPECT_EQ(4, FailEach([&] {
              zepkit10::ForgetTypeLibrary();
              ComPtr<ITypeInfo> type;
              const HRESULT hr = counter->GetTypeInfo(0, LOCALE_USER_DEFAULT, &type);
              EXPECT_EQ(FAILED(hr), type == nullptr);
              return hr;
            }));
}

}  // namespace
