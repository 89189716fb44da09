#include <gtest/gtest.h>

#include <cmath>

#include "com/every_member/calls.h"
#include "com/value_array.h"

namespace call_table {
namespace {

void ExpectNow(const Value& time) {
  ASSERT_EQ(VT_DATE, time.type());
  SYSTEMTIME local;
  GetLocalTime(&local);
  double now = 0;
  SystemTimeToVariantTime(&local, &now);
  constexpr double kMinutes = 1.0 / 24 / 60;
  EXPECT_LT(std::abs(now - time.raw().date), 10 * kMinutes);
}

void ExpectThreeMessages(const Value& enumerator) {
  int index = 0;
  for (const Value& message : Elements(enumerator)) {
    const client::Object object(message.raw().pdispVal, client::Binding::kDispatch);
    EXPECT_EQ(object.Get(L"Index"), index++);
  }
  EXPECT_EQ(3, index);
}

}  // namespace

Rows CallsOfMessages() {
  return {
      New(L"Messages", L"board"),
      Run(L"board.Add",
          {L"no paper", L"printer", L"operator", value_array::Variants(1, {7, L"A4"})}),
      Run(L"board.Add", {42, L"sensor"}),
      Run(L"board.Add", {43, L"sensor"}),
      Get(L"board.Count").Gives(3),
      Get(L"board.LastIndex").Gives(2),
      Get(L"board.First").GivesA(L"Message", L"first"),
      Get(L"board.Last").GivesA(L"Message", L"last"),
      Get(L"board.Item", {1}).GivesA(L"Message", L"second"),
      Get(L"second.Message").Gives(42),
      Get(L"board.Item", {1, false}).GivesA(L"Message", L"at_position_1"),
      Get(L"at_position_1.Message").Gives(L"no paper"),
      Run(L"board.NewEnum").Satisfies(ExpectThreeMessages),
      Run(L"board.Exists", {0}).Gives(true),
      Run(L"board.Exists", {3}).Gives(false),

      Get(L"first.Index").Gives(0),
      Get(L"first.Message").Gives(L"no paper"),
      Get(L"first.Source").Gives(L"printer"),
      Get(L"first.Destination").Gives(L"operator"),
      Get(L"first.Parameters").Lists({7, L"A4"}),
      Get(L"first.Parent").Gives(The(L"board")),
      Get(L"first.Time").Satisfies(ExpectNow),
      Get(L"first.Deleted").Gives(false),

      Get(L"board.Messages", {Value::Missing(), L"sensor"}).GivesA(L"Messages", L"found"),
      Get(L"found.Count").Gives(2),
      Get(L"board.Count").Gives(3),
      Run(L"board.GetMessages", {42}).GivesA(L"Messages", L"taken"),
      Get(L"taken.Count").Gives(1),
      Get(L"board.Count").Gives(2),
      Run(L"board.Remove", {2}),
      Run(L"first.Delete"),
      Get(L"first.Deleted").Gives(true),
      Get(L"board.Count").Gives(0),
  };
}

}  // namespace call_table
