#include "com/messages_fixture.h"
#include "com/text_array.h"

namespace {

using client::Object;
using client::Outcome;
using client::Value;
using namespace message_values;

constexpr const wchar_t* kAwaitTerm = L"Description for err #-2147220480 not found";

class MessageTest : public WithBoard {
 protected:
  /// A message just posted with these arguments.
  Object Post(std::initializer_list<Value> arguments) const {
    EXPECT_OK(board_.Call(L"Add", arguments));
    return board_.GetObject(L"Last");
  }

  Object PostParameters(const Value& parameters) const {
    return Post({L"message", Value::Missing(), Value::Missing(), parameters});
  }

  static void ExpectDeleted(const Object& message, int index) {
    EXPECT_EQ(message.Get(L"Deleted"), true);
    EXPECT_EQ(message.Get(L"Index"), index);
    for (const wchar_t* member :
         {L"Destination", L"Message", L"Parameters", L"Parent", L"Source", L"Time"}) {
      EXPECT_ERROR(message.Get(member), zepErrAwaitTerm, L"Zepkit10.Message", kAwaitTerm);
    }
    EXPECT_ERROR(message.Call(L"Delete"), zepErrAwaitTerm, L"Zepkit10.Message", kAwaitTerm);
  }
};

double Now() {
  SYSTEMTIME local;
  GetLocalTime(&local);
  local.wMilliseconds = 0;
  double now = 0;
  SystemTimeToVariantTime(&local, &now);
  return now;
}

TEST_P(MessageTest, TellsWhatWasPosted) {
  Post({L"first"});
  const Object message = Post({L"text", L"source", 7, Array(0, {1, L"two"})});
  EXPECT_EQ(message.Get(L"Index"), 1);
  EXPECT_EQ(message.Get(L"Message"), L"text");
  EXPECT_EQ(message.Get(L"Source"), L"source");
  EXPECT_EQ(message.Get(L"Destination"), 7);
  EXPECT_EQ(Elements(message.Get(L"Parameters").value), (std::vector<Value>{1, L"two"}));
  EXPECT_EQ(message.Get(L"Parent"), board_);
  EXPECT_EQ(message.Get(L"Deleted"), false);
}

TEST_P(MessageTest, WhatWasLeftOutIsNullOrWithoutElements) {
  const Object message = Post({L"text"});
  EXPECT_EQ(message.Get(L"Source"), Value::Null());
  EXPECT_EQ(message.Get(L"Destination"), Value::Null());
  const auto parameters = message.Get(L"Parameters");
  ASSERT_EQ(VT_ARRAY | VT_VARIANT, parameters.value.type());
  EXPECT_EQ(nullptr, parameters.value.raw().parray);
}

TEST_P(MessageTest, TheTimeIsThatOfThePosting) {
  const double before = Now();
  const Object message = Post({L"text"});
  const double after = Now();
  const auto time = message.Get(L"Time");
  ASSERT_EQ(VT_DATE, time.value.type());
  EXPECT_LE(before, time.value.raw().date);
  EXPECT_GE(after, time.value.raw().date);
}

TEST_P(MessageTest, TwoReadsGiveTwoObjects) {
  const Object message = Post({L"text"});
  const Object again = board_.GetObject(L"Item", {0});
  EXPECT_NE(message.get(), again.get());
  EXPECT_EQ(again.Get(L"Message"), L"text");
  EXPECT_EQ(again.Get(L"Time"), message.Get(L"Time").value);
  EXPECT_OK(again.Call(L"Delete"));
  ExpectDeleted(message, 0);
  ExpectDeleted(again, 0);
}

TEST_P(MessageTest, ObjectsAreReferences) {
  const Object counter = Create(CLSID_Counter);
  const Object message = Post({counter, counter, counter, Array(0, {counter})});
  EXPECT_OK(counter.Let(L"Value", {5}));
  for (const wchar_t* member : {L"Message", L"Source", L"Destination"}) {
    EXPECT_EQ(message.Get(member), counter);
    EXPECT_EQ(message.GetObject(member).Get(L"Value"), 5);
  }
  EXPECT_EQ(Elements(message.Get(L"Parameters").value), (std::vector<Value>{counter}));
}

TEST_P(MessageTest, ParametersOfAnyTypeBecomeVariants) {
  Value texts = text_array::Make(-2, {L"a", std::wstring(L"b\0c", 3)});
  for (const Value& given : {texts, texts.Reference()}) {
    const Object message = PostParameters(given);
    const auto parameters = message.Get(L"Parameters");
    EXPECT_EQ(Elements(parameters.value), (std::vector<Value>{L"a", std::wstring(L"b\0c", 3)}));
    LONG lower = 0;
    EXPECT_EQ(S_OK, SafeArrayGetLBound(parameters.value.raw().parray, 1, &lower));
    EXPECT_EQ(-2, lower);
  }
}

TEST_P(MessageTest, ParametersMayComeByReferenceToAnArray) {
  Value numbers = Array(1, {1, 2});
  VARIANT reference;
  reference.vt = VT_BYREF | VT_ARRAY | VT_VARIANT;
  reference.pparray = &numbers.raw().parray;
  const Object message = PostParameters(Value(reference));
  static_cast<VARIANT*>(numbers.raw().parray->pvData)[0].lVal = 9;
  EXPECT_EQ(Elements(message.Get(L"Parameters").value), (std::vector<Value>{1, 2}));
}

TEST_P(MessageTest, ParametersMayHaveMoreDimensions) {
  SAFEARRAYBOUND bounds[] = {{2, 0}, {3, 5}};
  VARIANT value;
  value.vt = VT_ARRAY | VT_I2;
  value.parray = SafeArrayCreate(VT_I2, 2, bounds);
  for (short i = 0; i < 6; ++i) static_cast<short*>(value.parray->pvData)[i] = i;
  const Object message = PostParameters(Value(value));
  VariantClear(&value);
  const auto parameters = message.Get(L"Parameters");
  SAFEARRAY* array = parameters.value.raw().parray;
  ASSERT_EQ(2u, SafeArrayGetDim(array));
  LONG place[] = {1, 7};
  Value element;
  EXPECT_EQ(S_OK, SafeArrayGetElement(array, place, &element.raw()));
  EXPECT_EQ(Value(static_cast<short>(5)), element);
}

TEST_P(MessageTest, ParametersWithoutElementsAreNull) {
  VARIANT none;
  none.vt = VT_ARRAY | VT_VARIANT;
  none.parray = nullptr;
  SAFEARRAY* unallocated = nullptr;
  SafeArrayAllocDescriptorEx(VT_I4, 1, &unallocated);
  unallocated->rgsabound[0] = {3, 0};
  VARIANT described;
  described.vt = VT_BYREF | VT_ARRAY | VT_I4;
  described.pparray = &unallocated;
  for (const Value& given : {Value(none), Array(0, {}), Array(5, {}), Value(described)}) {
    const auto parameters = PostParameters(given).Get(L"Parameters");
    EXPECT_OK(parameters);
    ASSERT_EQ(VT_ARRAY | VT_VARIANT, parameters.value.type());
    EXPECT_EQ(nullptr, parameters.value.raw().parray);
  }
  SafeArrayDestroyDescriptor(unallocated);
}

TEST_P(MessageTest, ParametersAreHandedOutAsCopies) {
  const Object message = PostParameters(Array(0, {1, L"two"}));
  const auto changed = message.Get(L"Parameters");
  static_cast<VARIANT*>(changed.value.raw().parray->pvData)[0].lVal = 99;
  EXPECT_EQ(Elements(message.Get(L"Parameters").value), (std::vector<Value>{1, L"two"}));
}

TEST_P(MessageTest, DeleteRemovesItFromTheBoard) {
  const Object first = Post({L"a"}), second = Post({L"b"});
  EXPECT_OK(first.Call(L"Delete"));
  EXPECT_EQ(IndexesOf(board_), (Indexes{1}));
  ExpectDeleted(first, 0);
  EXPECT_EQ(second.Get(L"Message"), L"b");
}

TEST_P(MessageTest, WhatTheBoardRemovesIsDeleted) {
  const Object by_index = Post({L"a"}), by_position = Post({L"b"}), taken = Post({L"c"});
  EXPECT_OK(board_.Call(L"Remove", {0}));
  ExpectDeleted(by_index, 0);
  EXPECT_OK(board_.Call(L"Remove", {1, false}));
  ExpectDeleted(by_position, 1);
  EXPECT_OK(board_.Call(L"GetMessages", {L"c"}));
  ExpectDeleted(taken, 2);
}

TEST_P(MessageTest, DeleteLetsGoOfTheValues) {
  Listener value;
  const Object message = Post({Value(&value), Value(&value), Value(&value)});
  EXPECT_EQ(4u, value.references);
  value.when_released = [&] {
    ExpectDeleted(message, 0);
    EXPECT_EQ(board_.Get(L"Count"), 0);
  };
  EXPECT_OK(message.Call(L"Delete"));
  EXPECT_EQ(1u, value.references);
}

TEST_P(MessageTest, AMessageObjectKeepsItsValuesUntilItGoes) {
  Listener value;
  Object message = Post({Value(&value)});
  EXPECT_OK(board_.Call(L"Remove", {0}));
  EXPECT_EQ(2u, value.references);
  message.Reset();
  EXPECT_EQ(1u, value.references);
}

TEST_P(MessageTest, AMessageKeepsItsBoard) {
  const Object first = Post({L"a"}), second = Post({L"b"});
  board_.Reset();
  EXPECT_EQ(first.GetObject(L"Parent").Get(L"Count"), 2);
  EXPECT_OK(second.Call(L"Delete"));
  EXPECT_EQ(first.GetObject(L"Parent").Get(L"Count"), 1);
  EXPECT_EQ(first.Get(L"Message"), L"a");
}

TEST_P(MessageTest, AMessageThatTheBoardRemovedKeepsItsBoard) {
  Listener value;
  Object message = Post({L"a"});
  EXPECT_OK(board_.Call(L"Add", {Value(&value)}));
  EXPECT_OK(board_.Call(L"Remove", {0}));
  board_.Reset();
  EXPECT_EQ(message.Get(L"Deleted"), true);
  EXPECT_EQ(2u, value.references);
  message.Reset();
  EXPECT_EQ(1u, value.references);
}

TEST_P(MessageTest, IsReadOnly) {
  const Object message = Post({L"a"});
  for (const wchar_t* member :
       {L"Deleted", L"Destination", L"Index", L"Message", L"Parameters", L"Source", L"Time"}) {
    EXPECT_FALSE(message.Let(member, {1}).ok()) << member;
  }
  EXPECT_FALSE(message.Set(L"Parent", {board_}).ok());
  EXPECT_EQ(message.Get(L"Message"), L"a");
}

TEST_P(MessageTest, ADeletedMessageLetsItsBoardGo) {
  Listener value;
  const Object message = Post({L"a"});
  EXPECT_OK(board_.Call(L"Add", {Value(&value)}));
  board_.Reset();
  EXPECT_EQ(2u, value.references);
  EXPECT_OK(message.Call(L"Delete"));
  EXPECT_EQ(1u, value.references);
  ExpectDeleted(message, 0);
}

TEST_P(MessageTest, NullPointersOfVtableClients) {
  Microsoft::WRL::ComPtr<_Message> message;
  ASSERT_EQ(S_OK, Post({L"a"}).get()->QueryInterface(IID_PPV_ARGS(&message)));
  EXPECT_EQ(E_POINTER, message->get_Deleted(nullptr));
  EXPECT_EQ(E_POINTER, message->get_Destination(nullptr));
  EXPECT_EQ(E_POINTER, message->get_Index(nullptr));
  EXPECT_EQ(E_POINTER, message->get_Message(nullptr));
  EXPECT_EQ(E_POINTER, message->get_Parameters(nullptr));
  EXPECT_EQ(E_POINTER, message->get_Parent(nullptr));
  EXPECT_EQ(E_POINTER, message->get_Source(nullptr));
  EXPECT_EQ(E_POINTER, message->get_Time(nullptr));
}

RUN_IN_BOTH_BINDINGS(MessageTest);

}  // namespace
