// Positions of the mouse pointer, read, edited and written back.
#include "com/both_roots.h"
#include "com/foreign.h"
#include "com/meddler.h"
#include "com/value_array.h"

namespace {

using client::Object;
using client::Value;

POINT PointerPosition() {
  POINT position{-1, -1};
  EXPECT_TRUE(GetCursorPos(&position));
  return position;
}

/// A pointer that either root hands out, or that a client makes.
class MousePointerTest : public BothRoots {
 protected:
  MousePointerTest() { SetCursorPos(40, 30); }
  ~MousePointerTest() override { SetCursorPos(before_.x, before_.y); }

  Object New() const { return root_.GetObject(L"ZepMousePointer"); }

 private:
  const POINT before_ = PointerPosition();
};

void ExpectHolds(const Object& pointer, int x, int y, bool changed) {
  EXPECT_EQ(pointer.Get(L"PosX"), x);
  EXPECT_EQ(pointer.Get(L"PosY"), y);
  EXPECT_EQ(pointer.Get(L"Changed"), changed);
}

void ExpectPointerAt(LONG x, LONG y) {
  EXPECT_EQ(x, PointerPosition().x);
  EXPECT_EQ(y, PointerPosition().y);
}

TEST_P(MousePointerTest, StartsWhereThePointerIs) {
  ExpectHolds(New(), 40, 30, false);
  SetCursorPos(41, 32);
  ExpectHolds(New(), 41, 32, false);
  const Object created(component::Create<IDispatch>(CLSID_MousePointer).Get(), root_.binding());
  ExpectHolds(created, 41, 32, false);
}

TEST_P(MousePointerTest, EveryReadIsANewObject) {
  const Object first = New(), second = New();
  EXPECT_NE(first.get(), second.get());
  EXPECT_OK(first.Let(L"PosX", {7}));
  ExpectHolds(first, 7, 30, true);
  ExpectHolds(second, 40, 30, false);
}

TEST_P(MousePointerTest, EditingLeavesThePointer) {
  for (const int value : {5, 40, -1, 0, INT_MAX, INT_MIN}) {
    const Object x = New(), y = New();
    EXPECT_OK(x.Let(L"PosX", {value}));
    ExpectHolds(x, value, 30, true);
    EXPECT_OK(y.Let(L"PosY", {value}));
    ExpectHolds(y, 40, value, true);
    ExpectPointerAt(40, 30);
  }
}

TEST_P(MousePointerTest, GetPosReadsAnew) {
  const Object pointer = New();
  EXPECT_OK(pointer.Let(L"PosX", {5}));
  EXPECT_OK(pointer.Let(L"PosY", {6}));
  SetCursorPos(50, 60);
  ExpectHolds(pointer, 5, 6, true);
  EXPECT_OK(pointer.Call(L"GetPos"));
  ExpectHolds(pointer, 50, 60, false);
}

TEST_P(MousePointerTest, ChangedMayBeAssigned) {
  const Object pointer = New();
  for (const bool changed : {true, false}) {
    EXPECT_OK(pointer.Let(L"Changed", {changed}));
    ExpectHolds(pointer, 40, 30, changed);
  }
}

TEST_P(MousePointerTest, SetPosMovesToTheStoredPosition) {
  const Object pointer = New();
  EXPECT_OK(pointer.Let(L"PosX", {5}));
  EXPECT_OK(pointer.Let(L"PosY", {6}));
  EXPECT_OK(pointer.Call(L"SetPos"));
  ExpectPointerAt(5, 6);
  ExpectHolds(pointer, 5, 6, false);
}

TEST_P(MousePointerTest, SetPosTakesTheStoredForWhatIsMissing) {
  const Object pointer = New();
  EXPECT_OK(pointer.Call(L"SetPos", {12}));
  ExpectPointerAt(12, 30);
  EXPECT_OK(pointer.Call(L"SetPos", {Value::Missing(), 13}));
  ExpectPointerAt(40, 13);
  EXPECT_OK(pointer.Call(L"SetPos", {14, Value::Missing()}));
  ExpectPointerAt(14, 30);
  EXPECT_OK(pointer.Call(L"SetPos", {Value::Missing(), Value::Missing()}));
  ExpectPointerAt(40, 30);
}

TEST_P(MousePointerTest, WhatIsMissingMayComeByReference) {
  const Object pointer = New();
  Value missing = Value::Missing();
  EXPECT_OK(pointer.Call(L"SetPos", {missing.Reference(), 13}));
  ExpectPointerAt(40, 13);
  EXPECT_OK(pointer.Call(L"SetPos", {14, missing.Reference()}));
  ExpectPointerAt(14, 30);
}

TEST_P(MousePointerTest, SetPosLeavesTheStoredPosition) {
  const Object pointer = New();
  EXPECT_OK(pointer.Let(L"PosX", {5}));
  EXPECT_OK(pointer.Call(L"SetPos", {7, 8}));
  ExpectPointerAt(7, 8);
  ExpectHolds(pointer, 5, 30, false);
}

TEST_P(MousePointerTest, SetPosConvertsAsThePlatformDoes) {
  const Object pointer = New();
  const Object counter(component::Create<IDispatch>(CLSID_Counter).Get(), root_.binding());
  EXPECT_OK(counter.Let(L"Value", {17}));
  Value referenced(L"18"), referenced_number(19);
  const std::pair<Value, LONG> numbers[] = {{L"12", 12},
                                            {L" 13 ", 13},
                                            {L"&H10", 16},
                                            {L"14.5", 14},
                                            {15.5, 16},
                                            {short{11}, 11},
                                            {2.5f, 2},
                                            {false, 0},
                                            {Value(), 0},
                                            {value_array::Decimal(L"22.4"), 22},
                                            {value_array::Int64(23), 23},
                                            {value_array::TenThousandths(245000), 24},
                                            {counter, 17},
                                            {referenced.Reference(), 18},
                                            {referenced_number.Reference(), 19}};
  for (const auto& [value, number] : numbers) {
    EXPECT_OK(pointer.Call(L"SetPos", {value, 20}));
    ExpectPointerAt(number, 20);
    EXPECT_OK(pointer.Call(L"SetPos", {21, value}));
    ExpectPointerAt(21, number);
  }
}

TEST_P(MousePointerTest, SetPosRefusesWhatIsNoNumber) {
  const Object pointer = New();
  EXPECT_OK(pointer.Let(L"PosX", {5}));
  foreign::Object<IDispatch> object;
  Value referenced(L"abc");
  for (const Value& value :
       {Value(L"abc"), Value(L""), Value(L"1 2"), Value(L"3000000000"), Value(2147483648.0),
        Value(-1e300), Value::Null(), Value::Nothing(), Value(&object), value_array::Error(E_FAIL),
        value_array::Make(VT_I4, 0, {1}), referenced.Reference()}) {
    EXPECT_ZEP_ERROR(pointer.Call(L"SetPos", {value}), zepErrBadParam, L"MousePointer");
    EXPECT_ZEP_ERROR(pointer.Call(L"SetPos", {value, 9}), zepErrBadParam, L"MousePointer");
    EXPECT_ZEP_ERROR(pointer.Call(L"SetPos", {9, value}), zepErrBadParam, L"MousePointer");
    ExpectHolds(pointer, 5, 30, true);
    ExpectPointerAt(40, 30);  // not even by the argument that is a number
  }
}

TEST_P(MousePointerTest, SetPosRefusesReferencesToNothing) {
  Microsoft::WRL::ComPtr<_MousePointer> pointer;
  ASSERT_EQ(S_OK, New().get()->QueryInterface(IID_PPV_ARGS(&pointer)));
  VARIANT loop, nowhere, no_number;
  loop.vt = nowhere.vt = VT_BYREF | VT_VARIANT;
  loop.pvarVal = &loop;
  nowhere.pvarVal = nullptr;
  no_number.vt = VT_BYREF | VT_I4;
  no_number.plVal = nullptr;
  for (const VARIANT& value : {loop, nowhere, no_number}) {
    EXPECT_EQ(zepErrBadParam, pointer->SetPos(value, Value(9).raw()));
    EXPECT_EQ(zepErrBadParam, pointer->SetPos(Value(9).raw(), value));
    ExpectPointerAt(40, 30);
  }
}

TEST_P(MousePointerTest, AnObjectMayEditThePositionMeanwhile) {
  const Object pointer = New();
  Meddler meddler([&] {
    EXPECT_OK(pointer.Let(L"PosX", {5}));
    EXPECT_OK(pointer.Let(L"PosY", {6}));
  });
  EXPECT_OK(pointer.Call(L"SetPos", {Value(&meddler)}));
  ExpectPointerAt(7, 6);
  ExpectHolds(pointer, 5, 6, false);
}

TEST_P(MousePointerTest, AnObjectMayMoveThePointerMeanwhile) {
  const Object pointer = New();
  Meddler meddler([&] { EXPECT_OK(pointer.Call(L"SetPos", {1, 2})); });
  EXPECT_OK(pointer.Call(L"SetPos", {Value::Missing(), Value(&meddler)}));
  ExpectPointerAt(40, 7);
  ExpectHolds(pointer, 40, 30, false);
}

TEST_P(MousePointerTest, AnObjectMayDropThePointerMeanwhile) {
  Microsoft::WRL::ComPtr<_MousePointer> pointer;
  ASSERT_EQ(S_OK, New().get()->QueryInterface(IID_PPV_ARGS(&pointer)));
  EXPECT_EQ(S_OK, pointer->put_PosX(5));
  Meddler meddler([&] { pointer.Reset(); });
  EXPECT_EQ(S_OK, pointer->SetPos(Value::Missing().raw(), Value(&meddler).raw()));
  ExpectPointerAt(5, 7);
}

RUN_WITH_BOTH_ROOTS(MousePointerTest);

}  // namespace
