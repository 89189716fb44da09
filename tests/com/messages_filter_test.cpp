#include <cmath>

#include "com/messages_fixture.h"

namespace {

using client::Object;
using client::Outcome;
using client::Value;
using namespace message_values;

const Value kNone = Value::Missing();

/// Both members that filter: the property copies, the method takes out.
class MessagesFilterTest : public WithBoard {
 protected:
  using Arguments = std::initializer_list<Value>;

  Outcome Copy(Arguments filter) const { return board_.Get(L"Messages", filter); }
  Outcome Take(Arguments filter) const { return board_.Call(L"GetMessages", filter); }

  /// The posting indexes that match; each way must find the same, and the property leave all here.
  Indexes Matching(Arguments filter) const {
    const Indexes before = IndexesOf(board_);
    const Outcome copied = Copy(filter);
    EXPECT_OK(copied);
    EXPECT_EQ(before, IndexesOf(board_));
    const Indexes found = IndexesOf(board_.With(copied));
    const Outcome all = board_.Call(L"GetMessages", filter);
    EXPECT_OK(all);
    EXPECT_EQ(found, IndexesOf(board_.With(all)));
    Indexes left = before;
    for (const int index : found) std::erase(left, index);
    EXPECT_EQ(left, IndexesOf(board_));
    return found;
  }

  /// Posts messages that have these sources, or none.
  void PostFrom(Arguments sources) const {
    for (const Value& source : sources) EXPECT_OK(board_.Call(L"Add", {L"message", source}));
  }
};

TEST_P(MessagesFilterTest, WithoutArgumentsThereIsNoFilter) {
  EXPECT_ZEP_ERROR(Copy({}), zepErrBadCall, L"Messages");
  EXPECT_ZEP_ERROR(Take({}), zepErrBadCall, L"Messages");
  PostFrom({L"A"});
  EXPECT_ZEP_ERROR(Copy({kNone, kNone, kNone, kNone, kNone}), zepErrBadCall, L"Messages");
  EXPECT_ZEP_ERROR(Take({kNone, kNone, kNone, kNone, kNone}), zepErrBadCall, L"Messages");
  EXPECT_EQ(board_.Get(L"Count"), 1);
}

TEST_P(MessagesFilterTest, TheMethodTakesOutAndThePropertyCopies) {
  PostFrom({L"A", L"B", L"A", kNone});
  const Object copied = board_.GetObject(L"Messages", {kNone, L"A"});
  EXPECT_EQ(IndexesOf(copied), (Indexes{0, 2}));
  EXPECT_EQ(IndexesOf(board_), (Indexes{0, 1, 2, 3}));
  const Object held = board_.GetObject(L"Item", {2});
  const Object taken = board_.CallObject(L"GetMessages", {kNone, L"A"});
  EXPECT_EQ(IndexesOf(taken), (Indexes{0, 2}));
  EXPECT_EQ(IndexesOf(board_), (Indexes{1, 3}));
  EXPECT_EQ(held.Get(L"Deleted"), true);
  EXPECT_EQ(copied.GetObject(L"Item", {2}).Get(L"Deleted"), false);
  EXPECT_EQ(taken.GetObject(L"Item", {2}).Get(L"Deleted"), false);
}

TEST_P(MessagesFilterTest, TheResultIsABoardThatGoesOnCounting) {
  EXPECT_OK(board_.Call(L"Add", {L"a", L"A", 5, Array(1, {7})}));
  PostFrom({L"B", L"C"});
  const Object original = board_.GetObject(L"First");
  const Object found = board_.GetObject(L"Messages", {kNone, L"A"});
  EXPECT_EQ(found.Get(L"LastIndex"), 2);
  const Object message = found.GetObject(L"First");
  EXPECT_EQ(message.Get(L"Index"), 0);
  EXPECT_EQ(message.Get(L"Message"), L"a");
  EXPECT_EQ(message.Get(L"Source"), L"A");
  EXPECT_EQ(message.Get(L"Destination"), 5);
  EXPECT_EQ(Elements(message.Get(L"Parameters").value), (std::vector<Value>{7}));
  EXPECT_EQ(message.Get(L"Time"), original.Get(L"Time").value);
  EXPECT_EQ(message.Get(L"Parent"), found);
  EXPECT_OK(found.Call(L"Add", {L"later"}));
  EXPECT_EQ(IndexesOf(found), (Indexes{0, 3}));
  EXPECT_OK(message.Call(L"Delete"));
  EXPECT_EQ(original.Get(L"Deleted"), false);
  EXPECT_EQ(board_.Get(L"LastIndex"), 2);
  const Object nothing = board_.CallObject(L"GetMessages", {L"no such message"});
  EXPECT_EQ(nothing.Get(L"Count"), 0);
  EXPECT_EQ(nothing.Get(L"LastIndex"), 2);
}

TEST_P(MessagesFilterTest, AnEmptyBoardYieldsAnEmptyOne) {
  const Object found = board_.GetObject(L"Messages", {1});
  EXPECT_EQ(found.Get(L"Count"), 0);
  EXPECT_EQ(found.Get(L"LastIndex"), -1);
}

TEST_P(MessagesFilterTest, EveryCriterionMustHold) {
  const Value sources[] = {L"A", L"B"}, destinations[] = {1, 2};
  for (const wchar_t* text : {L"x", L"y"}) {
    for (const Value& source : sources) {
      for (const Value& destination : destinations) {
        EXPECT_OK(board_.Call(L"Add", {text, source, destination}));
      }
    }
  }
  EXPECT_EQ(IndexesOf(board_.GetObject(L"Messages", {L"y"})), (Indexes{4, 5, 6, 7}));
  EXPECT_EQ(IndexesOf(board_.GetObject(L"Messages", {kNone, kNone, 1})), (Indexes{0, 2, 4, 6}));
  EXPECT_EQ(IndexesOf(board_.GetObject(L"Messages", {L"y", L"A"})), (Indexes{4, 5}));
  EXPECT_EQ(Matching({L"x", L"B", 2}), (Indexes{3}));
  EXPECT_EQ(Matching({L"x", L"B", 3}), (Indexes{}));
}

TEST_P(MessagesFilterTest, TypesMustBeTheSame) {
  PostFrom({static_cast<short>(1), 1, 1.0, 1.0f, L"1", true, Currency(10000), Date(1),
            OfType(VT_UI1, 1), kNone, Value()});
  EXPECT_EQ(Matching({kNone, static_cast<short>(1)}), (Indexes{0}));
  EXPECT_EQ(Matching({kNone, 1}), (Indexes{1}));
  EXPECT_EQ(Matching({kNone, 1.0}), (Indexes{2}));
  EXPECT_EQ(Matching({kNone, 1.0f}), (Indexes{3}));
  EXPECT_EQ(Matching({kNone, L"1"}), (Indexes{4}));
  EXPECT_EQ(Matching({kNone, true}), (Indexes{5}));
  EXPECT_EQ(Matching({kNone, Currency(10000)}), (Indexes{6}));
  EXPECT_EQ(Matching({kNone, Date(1)}), (Indexes{7}));
  EXPECT_EQ(Matching({kNone, OfType(VT_UI1, 1)}), (Indexes{8}));
  EXPECT_EQ(Matching({kNone, Value::Null()}), (Indexes{9}));
  EXPECT_EQ(Matching({kNone, Value()}), (Indexes{10}));
}

TEST_P(MessagesFilterTest, ValuesMustBeEqual) {
  PostFrom({1, 2, -1, 1.5, 1.5000000000000002, Currency(1), Currency(-1), true, false});
  EXPECT_EQ(Matching({kNone, 2}), (Indexes{1}));
  EXPECT_EQ(Matching({kNone, 3}), (Indexes{}));
  EXPECT_EQ(Matching({kNone, 1.5}), (Indexes{3}));
  EXPECT_EQ(Matching({kNone, Currency(1)}), (Indexes{5}));
  EXPECT_EQ(Matching({kNone, false}), (Indexes{8}));
}

TEST_P(MessagesFilterTest, TextsAreComparedCodeUnitByCodeUnit) {
  const std::wstring nul(L"a\0b", 3), other_nul(L"a\0c", 3);
  Value null_text(L"");
  SysFreeString(std::exchange(null_text.raw().bstrVal, nullptr));
  PostFrom({L"a", L"A", L"\xE4", L"a\x308", L"", nul, other_nul, L"a "});
  EXPECT_EQ(Matching({kNone, L"a"}), (Indexes{0}));
  EXPECT_EQ(Matching({kNone, L"\xE4"}), (Indexes{2}));
  EXPECT_EQ(Matching({kNone, null_text}), (Indexes{4}));
  EXPECT_EQ(Matching({kNone, nul}), (Indexes{5}));
  EXPECT_EQ(IndexesOf(board_), (Indexes{1, 3, 6, 7}));
}

TEST_P(MessagesFilterTest, ObjectsAreComparedByIdentity) {
  const Object counter = Create(CLSID_Counter), same = Create(CLSID_Counter);
  Value unknown = counter;
  unknown.raw().vt = VT_UNKNOWN;
  PostFrom({counter, same, Value::Nothing(), board_, 0, kNone, unknown});
  EXPECT_EQ(Matching({kNone, counter}), (Indexes{0, 6}));
  EXPECT_EQ(Matching({kNone, Value::Nothing()}), (Indexes{2}));
  EXPECT_EQ(Matching({kNone, board_}), (Indexes{3}));
  EXPECT_EQ(Matching({kNone, Create(CLSID_Counter)}), (Indexes{}));
  EXPECT_EQ(Matching({kNone, 0}), (Indexes{4}));
}

TEST_P(MessagesFilterTest, CriteriaMayComeByReference) {
  PostFrom({L"A", 1});
  Value text = L"A", number = 1, array = Array(0, {});
  Value inner = number.Reference();
  EXPECT_EQ(Matching({kNone, text.Reference()}), (Indexes{0}));
  EXPECT_EQ(Matching({kNone, inner.Reference()}), (Indexes{1}));
  EXPECT_EQ(board_.GetObject(L"Messages", {kNone, kNone, kNone, array.Reference()}).Get(L"Count"),
            0);
}

TEST_P(MessagesFilterTest, AResultIsFilteredAsAnyBoard) {
  PostFrom({L"A", L"B", L"A"});
  const Object sources = board_.GetObject(L"Messages", {kNone, L"A"});
  EXPECT_OK(sources.Call(L"Add", {L"other", L"A"}));
  const Object others = sources.CallObject(L"GetMessages", {L"other"});
  EXPECT_EQ(IndexesOf(others), (Indexes{3}));
  EXPECT_EQ(IndexesOf(sources), (Indexes{0, 2}));
  EXPECT_EQ(IndexesOf(board_), (Indexes{0, 1, 2}));
  EXPECT_EQ(board_.Get(L"LastIndex"), 2);
}

TEST_P(MessagesFilterTest, AComparedObjectMayReleaseTheBoard) {
  Listener wanted, other;
  PostFrom({Value(&wanted), Value(&other)});
  other.when_compared = [&] { board_.Reset(); };
  // Nothing else holds the board during the call.
  IDispatch* board = board_.get();
  VARIANT arguments[] = {Value(&wanted).raw(), kNone.raw()};
  DISPPARAMS parameters{arguments, nullptr, 2, 0};
  Value result;
  EXPECT_EQ(S_OK, board->Invoke(5, IID_NULL, LOCALE_USER_DEFAULT, DISPATCH_METHOD, &parameters,
                                &result.raw(), nullptr, nullptr));
  ASSERT_EQ(VT_DISPATCH, result.type());
  EXPECT_EQ(IndexesOf(Object(result.raw().pdispVal, GetParam())), (Indexes{0}));
  EXPECT_EQ(1u, other.references);
}

TEST_P(MessagesFilterTest, TimesMustBeExactlyEqual) {
  EXPECT_OK(board_.Call(L"Add", {L"a"}));
  const double time = board_.GetObject(L"First").Get(L"Time").value.raw().date;
  const auto count = [&](const Value& when) {
    return board_.GetObject(L"Messages", {kNone, kNone, kNone, kNone, when}).Get(L"Count");
  };
  EXPECT_EQ(count(Date(time)), 1);
  EXPECT_EQ(count(time), 1);
  EXPECT_EQ(count(Date(time + 1.0 / 86400)), 0);
  EXPECT_EQ(count(Date(time - 1.0 / 86400)), 0);
  EXPECT_EQ(count(Date(std::nextafter(time, 0))), 0);
  EXPECT_EQ(count(0), 0);
  EXPECT_EQ(count(L"2001-02-03"), 0);
  EXPECT_EQ(Matching({L"a", kNone, kNone, kNone, Date(time)}), (Indexes{0}));
}

TEST_P(MessagesFilterTest, WhatIsNoDateRaises13) {
  PostFrom({L"A"});
  for (const Value& time : {Value(L"no date"), Value::Null(), Array(0, {1}), Value::Nothing()}) {
    EXPECT_ERROR(Copy({kNone, kNone, kNone, kNone, time}), 13, L"Zepkit10.Messages",
                 L"Type mismatch");
    EXPECT_ERROR(Take({kNone, L"A", kNone, kNone, time}), 13, L"Zepkit10.Messages",
                 L"Type mismatch");
  }
  EXPECT_EQ(board_.Get(L"Count"), 1);
}

TEST_P(MessagesFilterTest, ParamsMustBeAnArray) {
  Value number = 1;
  for (const Value& params :
       {number, number.Reference(), Value(L"a"), Value(), Value::Null(), Value::Nothing()}) {
    EXPECT_ZEP_ERROR(Copy({kNone, kNone, kNone, params}), zepErrBadCall, L"Messages");
    EXPECT_ZEP_ERROR(Take({L"a", kNone, kNone, params}), zepErrBadCall, L"Messages");
    // Before the time is looked at.
    EXPECT_ZEP_ERROR(Take({L"a", kNone, kNone, params, L"no date"}), zepErrBadCall, L"Messages");
  }
}

TEST_P(MessagesFilterTest, ParamsCannotBeCompared) {
  const Value params = Array(0, {1});
  EXPECT_EQ(board_.GetObject(L"Messages", {kNone, kNone, kNone, params}).Get(L"Count"), 0);
  EXPECT_OK(board_.Call(L"Add", {L"a", L"A", kNone, params}));
  EXPECT_OK(board_.Call(L"Add", {L"b", L"B"}));
  EXPECT_ERROR(Copy({kNone, kNone, kNone, params}), 13, L"Zepkit10.Messages", L"Type mismatch");
  EXPECT_ERROR(Take({L"b", kNone, kNone, params}), 13, L"Zepkit10.Messages", L"Type mismatch");
  // No record gets as far as to its parameters.
  EXPECT_EQ(Matching({L"c", kNone, kNone, params}), (Indexes{}));
  EXPECT_EQ(IndexesOf(board_), (Indexes{0, 1}));
}

TEST_P(MessagesFilterTest, NothingIsLostWhereAComparisonRaises) {
  const Value array = Array(0, {1});
  EXPECT_OK(board_.Call(L"Add", {L"a", L"x"}));
  EXPECT_OK(board_.Call(L"Add", {array, array}));
  EXPECT_ERROR(Take({kNone, array}), 13, L"Zepkit10.Messages", L"Type mismatch");
  EXPECT_ERROR(Copy({array}), 13, L"Zepkit10.Messages", L"Type mismatch");
  EXPECT_EQ(IndexesOf(board_), (Indexes{0, 1}));
}

TEST_P(MessagesFilterTest, AComparedObjectMayChangeTheBoard) {
  Listener wanted, other;
  PostFrom({Value(&wanted), Value(&other), L"A"});
  other.when_compared = [&] {
    EXPECT_OK(board_.Call(L"Remove", {0}));
    EXPECT_OK(board_.Call(L"Remove", {1}));
    EXPECT_OK(board_.Call(L"Add", {L"late", Value(&wanted)}));
  };
  const Object taken = board_.CallObject(L"GetMessages", {kNone, Value(&wanted)});
  EXPECT_EQ(IndexesOf(taken), (Indexes{0}));
  EXPECT_EQ(IndexesOf(board_), (Indexes{2, 3}));
  EXPECT_EQ(taken.Get(L"LastIndex"), 3);
  board_.Reset();  // before what it holds
}

RUN_IN_BOTH_BINDINGS(MessagesFilterTest);

}  // namespace
