#include "com/messages_fixture.h"
#include "com/sink.h"

namespace {

using client::Event;
using client::Object;
using client::Sink;
using client::Value;
using Events = std::vector<Event>;

class MessagesEventTest : public WithBoard {
 protected:
  Microsoft::WRL::ComPtr<Sink> Listen(Sink::Handler handler = {}) const {
    return Sink::Connect(board_.get(), DIID___Messages, std::move(handler));
  }

  static Event Posted(int index) { return {1, {index}}; }
};

TEST_P(MessagesEventTest, EveryPostingIsToldToEveryListener) {
  const auto first = Listen(), second = Listen();
  EXPECT_OK(board_.Call(L"Add", {L"a"}));
  EXPECT_OK(board_.Call(L"Remove", {0}));
  EXPECT_OK(board_.Call(L"Add", {L"b"}));
  EXPECT_EQ((Events{Posted(0), Posted(1)}), first->events());
  EXPECT_EQ((Events{Posted(0), Posted(1)}), second->events());
}

TEST_P(MessagesEventTest, WhatIsRefusedOrCopiedIsNotTold) {
  EXPECT_OK(board_.Call(L"Add", {L"a"}));
  const auto sink = Listen();
  EXPECT_ZEP_ERROR(board_.Call(L"Add", {L""}), zepErrBadCall, L"Messages");
  EXPECT_ZEP_ERROR(board_.Call(L"Add", {1, 2, 3, 4}), zepErrBadCall, L"Messages");
  EXPECT_EQ(board_.GetObject(L"Messages", {L"a"}).Get(L"Count"), 1);
  EXPECT_EQ(board_.CallObject(L"GetMessages", {L"a"}).Get(L"Count"), 1);
  EXPECT_EQ(Events{}, sink->events());
}

TEST_P(MessagesEventTest, AHandlerCanReadTheMessage) {
  const auto sink = Listen([&](const Event& event) {
    EXPECT_EQ(board_.Get(L"LastIndex"), event.arguments[0]);
    const Object message = board_.GetObject(L"Item", {event.arguments[0]});
    EXPECT_EQ(message.Get(L"Message"), L"text");
    EXPECT_EQ(message.Get(L"Source"), 7);
    return S_OK;
  });
  EXPECT_OK(board_.Call(L"Add", {L"text", 7}));
  EXPECT_EQ(Events{Posted(0)}, sink->events());
}

TEST_P(MessagesEventTest, HandlersThatPostForEverAreStopped) {
  client::Outcome innermost;
  const auto sink = Listen([&](const Event&) {
    const auto outcome = board_.Call(L"Add", {L"again"});
    if (!outcome.ok()) innermost = outcome;
    return S_OK;
  });
  EXPECT_OK(board_.Call(L"Add", {L"first"}));
  EXPECT_ERROR(innermost, 28, L"Zepkit10.Messages", L"Out of stack space");
  EXPECT_EQ(board_.Get(L"Count"), 64);
  sink->Disconnect();
  EXPECT_OK(board_.Call(L"Add", {L"afterwards"}));
}

TEST_P(MessagesEventTest, AHandlerMayRemoveTheMessage) {
  const auto sink = Listen([&](const Event& event) {
    EXPECT_OK(board_.Call(L"Remove", {event.arguments[0]}));
    return S_OK;
  });
  EXPECT_OK(board_.Call(L"Add", {L"a"}));
  EXPECT_OK(board_.Call(L"Add", {L"b"}));
  EXPECT_EQ((Events{Posted(0), Posted(1)}), sink->events());
  EXPECT_EQ(board_.Get(L"Count"), 0);
}

TEST_P(MessagesEventTest, AHandlerMayPostAnother) {
  const auto sink = Listen([&](const Event& event) {
    if (event == Posted(0)) EXPECT_OK(board_.Call(L"Add", {L"answer"}));
    return S_OK;
  });
  EXPECT_OK(board_.Call(L"Add", {L"question"}));
  EXPECT_EQ((Events{Posted(0), Posted(1)}), sink->events());
  EXPECT_EQ(board_.GetObject(L"First").Get(L"Message"), L"question");
  EXPECT_EQ(board_.GetObject(L"Last").Get(L"Message"), L"answer");
}

TEST_P(MessagesEventTest, AHandlerMayTakeEverythingOut) {
  const auto sink = Listen([&](const Event&) {
    EXPECT_EQ(board_.CallObject(L"GetMessages", {L"a"}).Get(L"Count"), 1);
    return S_OK;
  });
  EXPECT_OK(board_.Call(L"Add", {L"a"}));
  EXPECT_EQ(board_.Get(L"Count"), 0);
}

TEST_P(MessagesEventTest, AHandlerMayReleaseTheBoard) {
  const auto sink = Listen([&](const Event&) {
    board_.Reset();
    return S_OK;
  });
  // Nothing else holds the board during the call.
  IDispatch* board = board_.get();
  Value text = L"a";
  DISPPARAMS arguments{&text.raw(), nullptr, 1, 0};
  EXPECT_EQ(S_OK, board->Invoke(1, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &arguments,
                                nullptr, nullptr, nullptr));
  EXPECT_EQ(Events{Posted(0)}, sink->events());
}

TEST_P(MessagesEventTest, AHandlerMayStopListening) {
  Microsoft::WRL::ComPtr<Sink> sink;
  sink = Listen([&](const Event&) { return sink->Disconnect(); });
  const auto other = Listen();
  EXPECT_OK(board_.Call(L"Add", {L"a"}));
  EXPECT_OK(board_.Call(L"Add", {L"b"}));
  EXPECT_EQ(Events{Posted(0)}, sink->events());
  EXPECT_EQ((Events{Posted(0), Posted(1)}), other->events());
}

TEST_P(MessagesEventTest, AFailingHandlerDisturbsNothing) {
  const auto failing = Listen([](const Event&) { return E_FAIL; });
  const auto other = Listen();
  EXPECT_OK(board_.Call(L"Add", {L"a"}));
  EXPECT_EQ(board_.Get(L"Count"), 1);
  EXPECT_EQ(Events{Posted(0)}, other->events());
}

TEST_P(MessagesEventTest, TheGlobalBoardTellsToo) {
  const Object global = Create(CLSID_Global);
  board_ = global.GetObject(L"GlobalMessages");
  const auto sink = Listen();
  EXPECT_OK(global.GetObject(L"Zep").GetObject(L"GlobalMessages").Call(L"Add", {L"a"}));
  ASSERT_EQ(1u, sink->events().size());
  EXPECT_EQ(Posted(board_.Get(L"LastIndex").value.raw().lVal), sink->events()[0]);
}

RUN_IN_BOTH_BINDINGS(MessagesEventTest);

}  // namespace
