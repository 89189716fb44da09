#include <climits>

#include "com/messages_fixture.h"

namespace {

using client::Object;
using client::Value;
using namespace message_values;

constexpr int kOutside[] = {INT_MIN, -1, 3, INT_MAX};

using MessagesTest = WithBoard;

TEST_P(MessagesTest, ANewBoardIsEmpty) {
  EXPECT_EQ(board_.Get(L"Count"), 0);
  EXPECT_EQ(board_.Get(L"LastIndex"), -1);
  for (const int index : {INT_MIN, -1, 0, 1, INT_MAX}) {
    EXPECT_EQ(board_.Call(L"Exists", {index}), false);
  }
  EXPECT_EQ(board_.Values(), std::vector<Value>{});
}

TEST_P(MessagesTest, PostingsAreNumberedFrom0) {
  EXPECT_OK(board_.Call(L"Add", {L"first"}));
  EXPECT_EQ(board_.Get(L"Count"), 1);
  EXPECT_EQ(board_.Get(L"LastIndex"), 0);
  EXPECT_EQ(board_.Call(L"Exists", {0}), true);
  EXPECT_EQ(board_.Call(L"Exists", {1}), false);
  EXPECT_EQ(board_.GetObject(L"Item", {0}).Get(L"Message"), L"first");
  EXPECT_OK(board_.Call(L"Add", {L"second"}));
  EXPECT_EQ(board_.Get(L"LastIndex"), 1);
  EXPECT_EQ(board_.GetObject(L"Item", {1}).Get(L"Index"), 1);
}

TEST_P(MessagesTest, RemovalShiftsPositionsAndKeepsPostingIndexes) {
  for (const wchar_t* text : {L"a", L"b", L"c"}) EXPECT_OK(board_.Call(L"Add", {text}));
  EXPECT_OK(board_.Call(L"Remove", {1}));
  EXPECT_EQ(board_.Get(L"Count"), 2);
  EXPECT_EQ(board_.GetObject(L"Item", {2}).Get(L"Message"), L"c");
  EXPECT_EQ(board_.GetObject(L"Item", {2, false}).Get(L"Message"), L"c");
  EXPECT_EQ(board_.GetObject(L"Item", {2, true}).Get(L"Message"), L"c");
  EXPECT_EQ(board_.GetObject(L"Item", {1, false}).Get(L"Message"), L"a");
  EXPECT_EQ(board_.Call(L"Exists", {1}), false);
  EXPECT_EQ(board_.Get(L"LastIndex"), 2);
  EXPECT_OK(board_.Call(L"Add", {L"d"}));
  EXPECT_EQ(board_.Get(L"LastIndex"), 3);
  EXPECT_EQ(IndexesOf(board_), (Indexes{0, 2, 3}));
}

TEST_P(MessagesTest, AnEmptiedBoardGoesOnCounting) {
  EXPECT_OK(board_.Call(L"Add", {L"a"}));
  EXPECT_OK(board_.Call(L"Remove", {0}));
  EXPECT_EQ(board_.Get(L"Count"), 0);
  EXPECT_EQ(board_.Get(L"LastIndex"), 0);
  EXPECT_OK(board_.Call(L"Add", {L"b"}));
  EXPECT_EQ(board_.Get(L"LastIndex"), 1);
  EXPECT_EQ(board_.GetObject(L"Item", {1, false}).Get(L"Index"), 1);
}

TEST_P(MessagesTest, ValuesOfAnyTypeMayBePosted) {
  const std::wstring odd(L"\0a\0\xD800", 4);
  const std::vector<Value> values{0,
                                  -1,
                                  static_cast<short>(0),
                                  false,
                                  0.0,
                                  1.5f,
                                  L" ",
                                  odd,
                                  Currency(-12345),
                                  Date(45000.25),
                                  OfType(VT_UI1, 200),
                                  OfType(VT_ERROR, E_FAIL),
                                  Value::Nothing(),
                                  board_};
  for (const Value& value : values) EXPECT_OK(board_.Call(L"Add", {value, value, value}));
  const auto messages = board_.Items();
  ASSERT_EQ(values.size(), messages.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    EXPECT_EQ(messages[i].Get(L"Message"), values[i]);
    EXPECT_EQ(messages[i].Get(L"Source"), values[i]);
    EXPECT_EQ(messages[i].Get(L"Destination"), values[i]);
  }
  // The board holds itself until it lets the message go.
  EXPECT_OK(board_.GetObject(L"Last").Call(L"Delete"));
}

TEST_P(MessagesTest, ArraysArePostedAsCopies) {
  Value array = Array(-1, {L"x", 2, Value::Null()});
  EXPECT_OK(board_.Call(L"Add", {array, array.Reference()}));
  static_cast<VARIANT*>(array.raw().parray->pvData)[1].lVal = 3;
  const Object message = board_.GetObject(L"First");
  for (const wchar_t* member : {L"Message", L"Source"}) {
    const auto held = message.Get(member);
    EXPECT_EQ(Elements(held.value), (std::vector<Value>{L"x", 2, Value::Null()}));
    LONG lower = 0;
    SafeArrayGetLBound(held.value.raw().parray, 1, &lower);
    EXPECT_EQ(-1, lower);
  }
}

TEST_P(MessagesTest, WhatComesByReferenceIsCopied) {
  Value text = L"before", number = 1;
  Value inner = number.Reference();
  EXPECT_OK(board_.Call(L"Add", {text.Reference(), inner.Reference(), text.Reference()}));
  text = L"after";
  number = 2;
  const Object message = board_.GetObject(L"First");
  EXPECT_EQ(message.Get(L"Message"), L"before");
  EXPECT_EQ(message.Get(L"Source"), 1);
  EXPECT_EQ(message.Get(L"Destination"), L"before");
}

TEST_P(MessagesTest, NothingToPostIsRefused) {
  Value null_text(L"");
  SysFreeString(std::exchange(null_text.raw().bstrVal, nullptr));
  Value empty, null = Value::Null(), text = L"";
  for (const Value& refused : {empty, null, text, null_text, empty.Reference(), null.Reference(),
                               text.Reference(), null_text.Reference()}) {
    EXPECT_ZEP_ERROR(board_.Call(L"Add", {refused}), zepErrBadCall, L"Messages");
  }
  EXPECT_EQ(board_.Get(L"Count"), 0);
  EXPECT_EQ(board_.Get(L"LastIndex"), -1);
}

TEST_P(MessagesTest, ParamsMustBeAnArray) {
  Value number = 1;
  for (const Value& refused :
       {number, number.Reference(), Value(L"a"), Value(), Value::Null(), Value::Nothing()}) {
    EXPECT_ZEP_ERROR(board_.Call(L"Add", {L"message", Value::Missing(), Value::Missing(), refused}),
                     zepErrBadCall, L"Messages");
  }
  EXPECT_EQ(board_.Get(L"Count"), 0);
  EXPECT_EQ(board_.Get(L"LastIndex"), -1);
}

TEST_P(MessagesTest, ItemsThatAreNotThereRaise) {
  for (const int index : {-1, 0, 1}) {
    EXPECT_ZEP_ERROR(board_.Get(L"Item", {index}), zepErrBadCall, L"Messages");
    EXPECT_ZEP_ERROR(board_.Get(L"Item", {index, false}), zepErrBadCall, L"Messages");
  }
  for (const wchar_t* text : {L"a", L"b", L"c"}) EXPECT_OK(board_.Call(L"Add", {text}));
  for (const int index : kOutside) {
    EXPECT_ZEP_ERROR(board_.Get(L"Item", {index}), zepErrBadCall, L"Messages");
  }
  for (const int position : {INT_MIN, -1, 0, 4, INT_MAX}) {
    EXPECT_ZEP_ERROR(board_.Get(L"Item", {position, false}), zepErrBadCall, L"Messages");
  }
  EXPECT_OK(board_.Call(L"Remove", {1}));
  EXPECT_ZEP_ERROR(board_.Get(L"Item", {1}), zepErrBadCall, L"Messages");
  EXPECT_ZEP_ERROR(board_.Get(L"Item", {3, false}), zepErrBadCall, L"Messages");
}

TEST_P(MessagesTest, ItemIsTheDefaultMember) {
  EXPECT_OK(board_.Call(L"Add", {L"a"}));
  Value index = 0, result;
  DISPPARAMS one{&index.raw(), nullptr, 1, 0};
  EXPECT_EQ(S_OK,
            board_.get()->Invoke(DISPID_VALUE, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_PROPERTYGET,
                                 &one, &result.raw(), nullptr, nullptr));
  EXPECT_EQ(Object(result.raw().pdispVal, GetParam()).Get(L"Message"), L"a");
}

TEST_P(MessagesTest, WithoutPostingIndexAnIndexIsAPostingIndex) {
  const Value none = Value::Missing();
  for (const wchar_t* text : {L"a", L"b", L"c"}) EXPECT_OK(board_.Call(L"Add", {text}));
  EXPECT_EQ(board_.GetObject(L"Item", {1, none}).Get(L"Message"), L"b");
  EXPECT_OK(board_.Call(L"Remove", {1, none}));
  EXPECT_EQ(IndexesOf(board_), (Indexes{0, 2}));
  EXPECT_OK(board_.Call(L"Remove", {0}));
  EXPECT_EQ(IndexesOf(board_), (Indexes{2}));
}

TEST_P(MessagesTest, OnlyTheMessageIsRequired) {
  const Value none = Value::Missing();
  EXPECT_OK(board_.Call(L"Add", {L"a", none, L"destination", none}));
  EXPECT_EQ(board_.GetObject(L"Last").Get(L"Source"), Value::Null());
  EXPECT_EQ(board_.GetObject(L"Last").Get(L"Destination"), L"destination");
  EXPECT_OK(board_.Call(L"Add", {L"a", Value(), Value::Null()}));
  EXPECT_EQ(board_.GetObject(L"Last").Get(L"Source"), Value());
  EXPECT_EQ(board_.GetObject(L"Last").Get(L"Destination"), Value::Null());
  if (GetParam() == client::Binding::kVtable) return;
  EXPECT_FALSE(board_.Call(L"Add").ok());
  EXPECT_EQ(board_.Get(L"Count"), 2);
}

TEST_P(MessagesTest, FirstAndLast) {
  EXPECT_ZEP_ERROR(board_.Get(L"First"), zepErrBadCallContext, L"Messages");
  EXPECT_ZEP_ERROR(board_.Get(L"Last"), zepErrBadCallContext, L"Messages");
  for (const wchar_t* text : {L"a", L"b", L"c"}) EXPECT_OK(board_.Call(L"Add", {text}));
  EXPECT_EQ(board_.GetObject(L"First").Get(L"Message"), L"a");
  EXPECT_EQ(board_.GetObject(L"Last").Get(L"Message"), L"c");
  EXPECT_OK(board_.Call(L"Remove", {0}));
  EXPECT_OK(board_.Call(L"Remove", {2}));
  EXPECT_EQ(board_.GetObject(L"First").Get(L"Index"), 1);
  EXPECT_EQ(board_.GetObject(L"Last").Get(L"Index"), 1);
  EXPECT_OK(board_.Call(L"Remove", {1}));
  EXPECT_ZEP_ERROR(board_.Get(L"First"), zepErrBadCallContext, L"Messages");
  EXPECT_ZEP_ERROR(board_.Get(L"Last"), zepErrBadCallContext, L"Messages");
}

TEST_P(MessagesTest, RemovesByPosition) {
  for (const wchar_t* text : {L"a", L"b", L"c", L"d"}) EXPECT_OK(board_.Call(L"Add", {text}));
  EXPECT_OK(board_.Call(L"Remove", {2, false}));
  EXPECT_EQ(IndexesOf(board_), (Indexes{0, 2, 3}));
  EXPECT_OK(board_.Call(L"Remove", {3, false}));
  EXPECT_EQ(IndexesOf(board_), (Indexes{0, 2}));
  EXPECT_OK(board_.Call(L"Remove", {1, false}));
  EXPECT_OK(board_.Call(L"Remove", {2, true}));
  EXPECT_EQ(board_.Get(L"Count"), 0);
}

TEST_P(MessagesTest, RemovingWhatIsNotThereRaises) {
  for (const int index : {INT_MIN, -1, 0, 1, INT_MAX}) {
    EXPECT_ZEP_ERROR(board_.Call(L"Remove", {index}), zepErrBadCall, L"Messages");
    EXPECT_ZEP_ERROR(board_.Call(L"Remove", {index, false}), zepErrBadCall, L"Messages");
  }
  for (const wchar_t* text : {L"a", L"b", L"c"}) EXPECT_OK(board_.Call(L"Add", {text}));
  for (const int index : kOutside) {
    EXPECT_ERROR(board_.Call(L"Remove", {index}), 5, L"Zepkit10.Messages",
                 L"Invalid procedure call or argument");
  }
  for (const int position : {4, INT_MAX}) {
    EXPECT_ZEP_ERROR(board_.Call(L"Remove", {position, false}), zepErrBadCall, L"Messages");
  }
  for (const int position : {0, -1, INT_MIN}) {
    EXPECT_ERROR(board_.Call(L"Remove", {position, false}), 9, L"Zepkit10.Messages",
                 L"Subscript out of range");
  }
  EXPECT_EQ(IndexesOf(board_), (Indexes{0, 1, 2}));
  EXPECT_OK(board_.Call(L"Remove", {1}));
  EXPECT_ERROR(board_.Call(L"Remove", {1}), 5, L"Zepkit10.Messages",
               L"Invalid procedure call or argument");
}

TEST_P(MessagesTest, ForEachVisitsASnapshotInPostingOrder) {
  for (const wchar_t* text : {L"a", L"b", L"c"}) EXPECT_OK(board_.Call(L"Add", {text}));
  EXPECT_OK(board_.Call(L"Remove", {0}));
  EXPECT_OK(board_.Call(L"Add", {L"d"}));
  Indexes visited;
  for (const Object& message : board_.Items()) {
    visited.push_back(message.Get(L"Index").value.raw().lVal);
    EXPECT_EQ(message.Get(L"Deleted"), false);
    EXPECT_OK(message.Call(L"Delete"));
    EXPECT_OK(board_.Call(L"Add", {L"late"}));
  }
  EXPECT_EQ((Indexes{1, 2, 3}), visited);
  EXPECT_EQ(IndexesOf(board_), (Indexes{4, 5, 6}));
}

TEST_P(MessagesTest, AnEnumeratorMayBeClonedAndOutlivesItsBoard) {
  EXPECT_OK(board_.Call(L"Add", {L"a"}));
  EXPECT_OK(board_.Call(L"Add", {L"b"}));
  const auto entry = board_.Call(L"NewEnum");
  ASSERT_EQ(VT_UNKNOWN, entry.value.type());
  Microsoft::WRL::ComPtr<IEnumVARIANT> visits, clone;
  ASSERT_EQ(S_OK, entry.value.raw().punkVal->QueryInterface(IID_PPV_ARGS(&visits)));
  EXPECT_OK(board_.Call(L"Remove", {0}));
  board_.Reset();
  EXPECT_EQ(S_OK, visits->Clone(&clone));
  Value first, second;
  EXPECT_EQ(S_OK, clone->Next(1, &first.raw(), nullptr));
  EXPECT_EQ(S_OK, clone->Next(1, &second.raw(), nullptr));
  EXPECT_EQ(Object(first.raw().pdispVal, GetParam()).Get(L"Deleted"), true);
  EXPECT_EQ(Object(second.raw().pdispVal, GetParam()).Get(L"Message"), L"b");
  EXPECT_EQ(S_FALSE, clone->Skip(1));
}

TEST_P(MessagesTest, WhatIsRemovedIsLetGo) {
  Listener value;
  EXPECT_OK(board_.Call(L"Add", {Value(&value), Value(&value), Value(&value)}));
  EXPECT_EQ(4u, value.references);
  EXPECT_EQ(board_.GetObject(L"First").Get(L"Message"), Value(&value));
  EXPECT_EQ(4u, value.references);
  // What goes may look at the board and post again.
  value.when_released = [&] {
    EXPECT_EQ(board_.Get(L"Count"), 0);
    EXPECT_OK(board_.Call(L"Add", {L"gone"}));
  };
  EXPECT_OK(board_.Call(L"Remove", {0}));
  EXPECT_EQ(1u, value.references);
  EXPECT_EQ(IndexesOf(board_), (Indexes{1}));
}

TEST_P(MessagesTest, ABoardLetsGoWhatItHeldWhenItEnds) {
  Listener value;
  EXPECT_OK(board_.Call(L"Add", {L"a", Value(&value)}));
  EXPECT_OK(board_.Call(L"Add", {Array(0, {Value(&value)})}));
  EXPECT_EQ(3u, value.references);
  board_.Reset();
  EXPECT_EQ(1u, value.references);
}

TEST_P(MessagesTest, TheGlobalBoardIsOneForAll) {
  const Object global = Create(CLSID_Global);
  const Object board = global.GetObject(L"GlobalMessages");
  EXPECT_EQ(global.Get(L"GlobalMessages"), board);
  EXPECT_EQ(global.GetObject(L"Zep").Get(L"GlobalMessages"), board);
  EXPECT_EQ(Create(CLSID_Global).Get(L"GlobalMessages"), board);
  EXPECT_NE(board_.get(), board.get());
  EXPECT_OK(board.Call(L"Add", {L"for all"}));
  EXPECT_EQ(global.GetObject(L"GlobalMessages").GetObject(L"Last").Get(L"Message"), L"for all");
  EXPECT_EQ(board_.Get(L"Count"), 0);
}

TEST_P(MessagesTest, NullPointersOfVtableClients) {
  Microsoft::WRL::ComPtr<_Messages> board;
  ASSERT_EQ(S_OK, board_.get()->QueryInterface(IID_PPV_ARGS(&board)));
  const Value missing = Value::Missing(), text = L"a";
  EXPECT_EQ(S_OK, board->Add(text.raw(), missing.raw(), missing.raw(), missing.raw()));
  EXPECT_EQ(E_POINTER, board->get_Count(nullptr));
  EXPECT_EQ(E_POINTER, board->Exists(0, nullptr));
  EXPECT_EQ(E_POINTER, board->get_Item(0, VARIANT_TRUE, nullptr));
  EXPECT_EQ(E_POINTER, board->get_First(nullptr));
  EXPECT_EQ(E_POINTER, board->get_Last(nullptr));
  EXPECT_EQ(E_POINTER, board->get_LastIndex(nullptr));
  EXPECT_EQ(E_POINTER, board->NewEnum(nullptr));
  // No board to return: nothing is taken out.
  EXPECT_EQ(E_POINTER, board->GetMessages(text.raw(), missing.raw(), missing.raw(), missing.raw(),
                                          missing.raw(), nullptr));
  EXPECT_EQ(board_.Get(L"Count"), 1);
}

RUN_IN_BOTH_BINDINGS(MessagesTest);

}  // namespace
