// Objects used from other apartments than their own, through the platform's proxies, and many
// apartments that work at the same time.
#include <atomic>
#include <thread>
#include <vector>

#include "com/apartment.h"
#include "com/client.h"
#include "com/component.h"
#include "com/sink.h"
#include "com/zep_error.h"

namespace {

using client::Event;
using client::Object;
using client::Sink;
using client::Value;
using Microsoft::WRL::ComPtr;

/// Runs a body on a thread in an apartment of some kind, and serves this thread's apartment
/// meanwhile.
void RunBeside(COINIT kind, const std::function<void()>& body) {
  const HANDLE ended = CreateEventW(nullptr, TRUE, FALSE, nullptr);
  std::thread thread([&] {
    EXPECT_EQ(S_OK, CoInitializeEx(nullptr, kind));
    body();
    CoUninitialize();
    SetEvent(ended);
  });
  while (MsgWaitForMultipleObjects(1, &ended, FALSE, INFINITE, QS_ALLINPUT) != WAIT_OBJECT_0) {
    MSG message;
    while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&message);
  }
  thread.join();
  CloseHandle(ended);
}

/// An object of this thread on its way to another.
class Parcel {
 public:
  explicit Parcel(const Object& object) {
    EXPECT_EQ(S_OK, CoMarshalInterThreadInterfaceInStream(IID_IDispatch, object.get(), &stream_));
  }
  /// For the other thread, once.
  Object Open() const {
    ComPtr<IDispatch> proxy;
    EXPECT_EQ(S_OK, CoGetInterfaceAndReleaseStream(stream_, IID_PPV_ARGS(&proxy)));
    return {proxy.Get(), client::Binding::kDispatch};
  }

 private:
  IStream* stream_ = nullptr;
};

Object Create(REFCLSID clsid) {
  return {component::Create<IDispatch>(clsid).Get(), client::Binding::kDispatch};
}

class OtherApartmentsTest : public component::Test, public testing::WithParamInterface<COINIT> {
 protected:
  static void RunThere(const Object& object, const std::function<void(const Object&)>& body) {
    const Parcel parcel(object);
    RunBeside(GetParam(), [&] { body(parcel.Open()); });
  }
};

TEST_P(OtherApartmentsTest, CallsCross) {
  const Object counter = Create(CLSID_Counter);
  RunThere(counter, [](const Object& there) {
    EXPECT_OK(there.Let(L"Value", {40}));
    EXPECT_OK(there.Call(L"Increment", {2}));
    EXPECT_EQ(there.Get(L"Value"), 42);
  });
  EXPECT_EQ(counter.Get(L"Value"), 42);
}

TEST_P(OtherApartmentsTest, ObjectsHandedOutCross) {
  const Object global = Create(CLSID_Global);
  RunThere(global, [](const Object& there) {
    const Object set = there.GetObject(L"VarSets").CallObject(L"Add", {L"crossing"});
    EXPECT_OK(set.CallObject(L"Add", {L"x"}).Let(L"Value", {2.5}));
    EXPECT_EQ(there.Call(L"Compute", {L"2^10"}), 1024.0);
    std::vector<Value> values;
    for (const Object& each : set.Items()) values.push_back(each.Get(L"Value").value);
    EXPECT_EQ(values, std::vector<Value>{2.5});
  });
  const Object set = global.GetObject(L"VarSets").GetObject(L"Item", {L"crossing"});
  EXPECT_EQ(set.GetObject(L"Item", {L"x"}).Get(L"Value"), 2.5);
  EXPECT_OK(set.Call(L"Delete"));
}

TEST_P(OtherApartmentsTest, ErrorsCross) {
  RunThere(Create(CLSID_Expression), [](const Object& there) {
    EXPECT_ZEP_ERROR(there.Let(L"EString", {L"SINCOSx"}), zepErrExtractTerm, L"Expression");
    EXPECT_OK(there.Let(L"EString", {L"1/0"}));
    EXPECT_ERROR(there.Get(L"Value"), 11, L"Zepkit10.Expression", L"Division by zero");
  });
}

TEST_P(OtherApartmentsTest, EventsCrossAndSoDoTheirAnswers) {
  static constexpr DISPID kBeforeROChange = 1, kChange = 2;
  const Object buffer = Create(CLSID_ZepVariant);
  RunThere(buffer, [](const Object& there) {
    // The proxies on the way to the connection live as long as somebody holds them.
    ComPtr<IConnectionPointContainer> container;
    ComPtr<IConnectionPoint> point;
    ASSERT_EQ(S_OK, there.get()->QueryInterface(IID_PPV_ARGS(&container)));
    ASSERT_EQ(S_OK, container->FindConnectionPoint(DIID___ZepVariant, &point));
    const auto sink = Sink::Connect(there.get(), DIID___ZepVariant, [](const Event& event) {
      if (event.id == kBeforeROChange) *V_BOOLREF(&event.arguments[1].raw()) = VARIANT_TRUE;
      return S_OK;
    });
    ASSERT_TRUE(sink);
    EXPECT_ZEP_ERROR(there.Let(L"ReadOnly", {true}), zepErrCallRefused, L"ZepVariant");
    EXPECT_EQ(there.Get(L"ReadOnly"), false);
    EXPECT_OK(there.Let(L"DataString", {L"abc"}));
    ASSERT_EQ(2u, sink->events().size());
    EXPECT_EQ(kBeforeROChange, sink->events()[0].id);
    EXPECT_EQ(kChange, sink->events()[1].id);
    EXPECT_EQ(S_OK, sink->Disconnect());
  });
  EXPECT_EQ(buffer.Get(L"DataString"), L"abc");
}

TEST_P(OtherApartmentsTest, TheLastReferenceMayGoElsewhere) {
  Object counter = Create(CLSID_Counter);
  const Parcel parcel(counter);
  counter.Reset();
  RunBeside(GetParam(), [&] { EXPECT_OK(parcel.Open().Call(L"Increment")); });
}

INSTANTIATE_TEST_SUITE_P(Apartments, OtherApartmentsTest,
                         testing::Values(COINIT_APARTMENTTHREADED, COINIT_MULTITHREADED),
                         [](const auto& kind) {
                           return kind.param == COINIT_MULTITHREADED ? "Multithreaded" : "Single";
                         });

class ManyApartmentsTest : public component::Test {};

/// Some work of every family that shares something in its apartment.
void Work(int thread) {
  const Object global = Create(CLSID_Global);
  const Object set = global.GetObject(L"VarSets").CallObject(L"Add", {L"set"});
  const Object x = set.CallObject(L"Add", {L"x"});
  const Object expression = Create(CLSID_Expression);
  EXPECT_OK(expression.Set(L"VarSet", {set}));
  EXPECT_OK(expression.Let(L"EString", {L"2*x+1"}));
  const Object board = Create(CLSID_Messages);
  const Object buffer = Create(CLSID_ZepVariant);
  EXPECT_OK(buffer.Let(L"DataString", {L"0123456789"}));
  const Object view = buffer.GetObject(L"Range", {3, 4, true});
  for (int i = 0; i < 200; ++i) {
    const double value = thread * 1000.0 + i;
    EXPECT_OK(x.Let(L"Value", {value}));
    EXPECT_EQ(expression.Get(L"Value"), 2 * value + 1);
    EXPECT_EQ(global.Call(L"Compute", {L"7*6"}), 42.0);
    EXPECT_OK(board.Call(L"Add", {i}));
    EXPECT_OK(view.Let(L"DataString", {std::to_wstring(1000 + i)}));
    EXPECT_EQ(buffer.Get(L"DataString"), L"01" + std::to_wstring(1000 + i) + L"6789");
  }
  EXPECT_EQ(board.Get(L"Count"), 200);
  EXPECT_EQ(global.GetObject(L"VarSets").Get(L"Count"), 1);
  for (int i = 0; i < 200; ++i) EXPECT_OK(board.Call(L"Remove", {1, false}));
}

TEST_F(ManyApartmentsTest, EightWorkForThemselves) {
  std::vector<std::thread> threads;
  for (int i = 0; i < 8; ++i) {
    threads.emplace_back([i] { component::InNewApartment([i] { Work(i); }); });
  }
  for (std::thread& thread : threads) thread.join();
}

}  // namespace
