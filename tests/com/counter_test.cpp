#include <limits>

#include "com/both_bindings.h"
#include "com/sink.h"

namespace {

using client::Event;
using client::Object;
using client::Sink;

constexpr int kMax = std::numeric_limits<int>::max();
constexpr int kMin = std::numeric_limits<int>::min();

class CounterTest : public BothBindings {
 protected:
  Object counter_ = Create(CLSID_Counter);
};

TEST_P(CounterTest, StartsAtZero) { EXPECT_EQ(counter_.Get(L"Value"), 0); }

TEST_P(CounterTest, CountsByOneUnlessTold) {
  EXPECT_OK(counter_.Call(L"Increment"));
  EXPECT_EQ(counter_.Get(L"Value"), 1);
  EXPECT_OK(counter_.Call(L"Increment", {-3}));
  EXPECT_EQ(counter_.Get(L"Value"), -2);
  EXPECT_OK(counter_.Call(L"Decrement"));
  EXPECT_EQ(counter_.Get(L"Value"), -3);
  EXPECT_OK(counter_.Call(L"Decrement", {-7}));
  EXPECT_EQ(counter_.Get(L"Value"), 4);
}

TEST_P(CounterTest, CountsFromZeroInEitherDirection) {
  EXPECT_OK(counter_.Call(L"Increment", {-3}));
  EXPECT_EQ(counter_.Get(L"Value"), -3);
  const Object other = Create(CLSID_Counter);
  EXPECT_OK(other.Call(L"Decrement"));
  EXPECT_EQ(other.Get(L"Value"), -1);
}

TEST_P(CounterTest, AStepOfNothingIsAnAssignmentToo) {
  EXPECT_OK(counter_.Let(L"Value", {5}));
  const auto sink = Sink::Connect(counter_.get(), DIID___Counter);
  EXPECT_OK(counter_.Call(L"Increment", {0}));
  EXPECT_OK(counter_.Call(L"Decrement", {0}));
  const std::vector<Event> expected{{1, {5, 5}}, {1, {5, 5}}};
  EXPECT_EQ(expected, sink->events());
}

TEST_P(CounterTest, RaisesValueChangedWithNewAndOldValue) {
  const auto sink = Sink::Connect(counter_.get(), DIID___Counter);
  EXPECT_OK(counter_.Call(L"Increment"));
  EXPECT_OK(counter_.Call(L"Decrement", {5}));
  EXPECT_OK(counter_.Let(L"Value", {5}));
  EXPECT_OK(counter_.Let(L"Value", {5}));
  const std::vector<Event> expected{{1, {1, 0}}, {1, {-4, 1}}, {1, {5, -4}}, {1, {5, 5}}};
  EXPECT_EQ(expected, sink->events());
}

TEST_P(CounterTest, OverflowKeepsTheValueAndRaisesNoEvent) {
  EXPECT_OK(counter_.Let(L"Value", {kMax}));
  const auto sink = Sink::Connect(counter_.get(), DIID___Counter);
  EXPECT_ERROR(counter_.Call(L"Increment"), 6, L"Zepkit10.Counter", L"Overflow");
  EXPECT_ERROR(counter_.Call(L"Decrement", {-1}), 6, L"Zepkit10.Counter", L"Overflow");
  EXPECT_EQ(counter_.Get(L"Value"), kMax);
  EXPECT_EQ(0u, sink->events().size());
  EXPECT_OK(counter_.Let(L"Value", {kMin}));
  EXPECT_ERROR(counter_.Call(L"Decrement"), 6, L"Zepkit10.Counter", L"Overflow");
  EXPECT_ERROR(counter_.Call(L"Increment", {-1}), 6, L"Zepkit10.Counter", L"Overflow");
  EXPECT_EQ(counter_.Get(L"Value"), kMin);
  const std::vector<Event> only_the_assignment{{1, {kMin, kMax}}};
  EXPECT_EQ(only_the_assignment, sink->events());
}

TEST_P(CounterTest, TheLeastNumberIsCountedWithToo) {
  EXPECT_ERROR(counter_.Call(L"Decrement", {kMin}), 6, L"Zepkit10.Counter", L"Overflow");
  EXPECT_EQ(counter_.Get(L"Value"), 0);
  EXPECT_OK(counter_.Call(L"Increment", {kMin}));
  EXPECT_EQ(counter_.Get(L"Value"), kMin);
  EXPECT_OK(counter_.Call(L"Decrement", {kMin}));
  EXPECT_EQ(counter_.Get(L"Value"), 0);
  EXPECT_OK(counter_.Call(L"Decrement"));
  EXPECT_OK(counter_.Call(L"Decrement", {kMin}));
  EXPECT_EQ(counter_.Get(L"Value"), kMax);
}

TEST_P(CounterTest, AHandlerMayAssignTheValueAgain) {
  const auto sink = Sink::Connect(counter_.get(), DIID___Counter, [&](const Event& event) {
    if (event.arguments[0] == client::Value(1)) EXPECT_OK(counter_.Call(L"Increment", {4}));
    return S_OK;
  });
  EXPECT_OK(counter_.Call(L"Increment"));
  const std::vector<Event> expected{{1, {1, 0}}, {1, {5, 1}}};
  EXPECT_EQ(expected, sink->events());
  EXPECT_EQ(counter_.Get(L"Value"), 5);
}

TEST_P(CounterTest, AHandlerThatCountsWithoutEndRunsOutOfStackSpace) {
  int depth = 0;
  client::Outcome innermost;
  const auto sink = Sink::Connect(counter_.get(), DIID___Counter, [&](const Event&) {
    ++depth;
    const client::Outcome outcome = counter_.Call(L"Increment");
    if (!outcome.ok()) innermost = outcome;
    return S_OK;
  });
  EXPECT_OK(counter_.Call(L"Increment"));
  EXPECT_ERROR(innermost, 28, L"Zepkit10.Counter", L"Out of stack space");
  EXPECT_LT(50, depth);
  EXPECT_EQ(counter_.Get(L"Value"), depth);
}

TEST_P(CounterTest, ValueIsStoredBeforeItsListenersHear) {
  std::vector<client::Outcome> heard;
  const auto sink = Sink::Connect(counter_.get(), DIID___Counter, [&](const Event&) {
    heard.push_back(counter_.Get(L"Value"));
    return S_OK;
  });
  EXPECT_OK(counter_.Call(L"Increment", {3}));
  ASSERT_EQ(1u, heard.size());
  EXPECT_EQ(heard[0], 3);
}

TEST_P(CounterTest, ValueIsTheDefaultMember) {
  EXPECT_OK(counter_.Let(L"Value", {7}));
  VARIANT value;
  VariantInit(&value);
  DISPPARAMS none{};
  EXPECT_EQ(S_OK, counter_.get()->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT,
                                         DISPATCH_PROPERTYGET, &none, &value, nullptr, nullptr));
  EXPECT_EQ(client::Value(7), client::Value(value));
  DISPID put = DISPID_PROPERTYPUT;
  DISPPARAMS one{&value, &put, 1, 1};
  value.lVal = 8;
  EXPECT_EQ(S_OK, counter_.get()->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT,
                                         DISPATCH_PROPERTYPUT, &one, nullptr, nullptr, nullptr));
  EXPECT_EQ(counter_.Get(L"Value"), 8);
}

RUN_IN_BOTH_BINDINGS(CounterTest);

}  // namespace
