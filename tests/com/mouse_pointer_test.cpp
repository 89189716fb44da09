// Positions of the mouse pointer, read, edited and written back.
#include "com/both_roots.h"
#include "com/foreign.h"
#include "com/import_hook.h"
#include "com/value_array.h"

DECLARE_IMPORT(GetCursorPos, 4);
DECLARE_IMPORT(SetCursorPos, 8);

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

bool system_accepts = true;
DWORD system_error = 0;
std::vector<std::pair<int, int>> moves;
BOOL WINAPI TellPosition(POINT* position) {
  *position = {77, 88};  // also where it fails
  SetLastError(system_error);
  return system_accepts;
}
BOOL WINAPI KeepMove(int x, int y) { return moves.push_back({x, y}), system_accepts; }

class MousePointerSystemTest : public BothRoots {
 protected:
  void SetUp() override {
    if (!component::IsLinked()) GTEST_SKIP() << "only the linked component's calls are replaced";
  }
  ~MousePointerSystemTest() override {
    system_accepts = true;
    system_error = 0;
    moves.clear();
  }

  Object New() const { return root_.GetObject(L"ZepMousePointer"); }

 private:
  const ImportHook<&__imp_GetCursorPos> get_{TellPosition};
  const ImportHook<&__imp_SetCursorPos> set_{KeepMove};
};

TEST_P(MousePointerSystemTest, GetPosTellsTheSystemsError) {
  const Object pointer = New();
  ExpectHolds(pointer, 77, 88, false);
  EXPECT_OK(pointer.Let(L"PosX", {5}));
  system_accepts = false;
  for (const DWORD error : {5u, 1459u, 0u, 2147483647u}) {
    system_error = error;
    EXPECT_ERROR(pointer.Call(L"GetPos"), zepErrUnexpected, L"Zepkit10.MousePointer",
                 L"API-Error '" + std::to_wstring(error) + L"'");
    ExpectHolds(pointer, 5, 88, true);
  }
}

TEST_P(MousePointerSystemTest, NoObjectStartsWithoutAPosition) {
  system_accepts = false;
  system_error = 5;
  EXPECT_ERROR(root_.Get(L"ZepMousePointer"), zepErrUnexpected, L"Zepkit10.MousePointer",
               L"API-Error '5'");
  void* created = &created;
  EXPECT_EQ(static_cast<HRESULT>(zepErrUnexpected),
            component::CreateInstance(CLSID_MousePointer, IID_IDispatch, &created));
  EXPECT_EQ(nullptr, created);
}

TEST_P(MousePointerSystemTest, ARefusedMoveIsNotReported) {
  const Object pointer = New();
  EXPECT_OK(pointer.Let(L"PosX", {5}));
  system_accepts = false;
  EXPECT_OK(pointer.Call(L"SetPos"));
  ExpectHolds(pointer, 5, 88, false);
  EXPECT_EQ((std::vector{std::pair(5, 88)}), moves);
}

TEST_P(MousePointerSystemTest, AnyPositionIsPassedOn) {
  const Object pointer = New();
  EXPECT_OK(pointer.Call(L"SetPos", {INT_MIN, INT_MAX}));
  EXPECT_OK(pointer.Call(L"SetPos", {true, -2.0}));
  EXPECT_EQ((std::vector{std::pair(INT_MIN, INT_MAX), std::pair(-1, -2)}), moves);
}

TEST_P(MousePointerSystemTest, NothingMovesUnlessBothConvert) {
  const Object pointer = New();
  EXPECT_ZEP_ERROR(pointer.Call(L"SetPos", {1, L"x"}), zepErrBadParam, L"MousePointer");
  EXPECT_ZEP_ERROR(pointer.Call(L"SetPos", {L"x", 1}), zepErrBadParam, L"MousePointer");
  EXPECT_TRUE(moves.empty());
}

RUN_WITH_BOTH_ROOTS(MousePointerTest);
RUN_WITH_BOTH_ROOTS(MousePointerSystemTest);

}  // namespace
