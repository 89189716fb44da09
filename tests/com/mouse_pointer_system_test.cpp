// What a mouse pointer asks the system for and takes from its answers, with the system replaced.
#include "com/both_roots.h"
#include "com/import_hook.h"

DECLARE_IMPORT(GetCursorPos, 4);
DECLARE_IMPORT(SetCursorPos, 8);

namespace {

using client::Object;

void ExpectHolds(const Object& pointer, int x, int y, bool changed) {
  EXPECT_EQ(pointer.Get(L"PosX"), x);
  EXPECT_EQ(pointer.Get(L"PosY"), y);
  EXPECT_EQ(pointer.Get(L"Changed"), changed);
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
  for (const int error : {5, 1459, 0, INT_MAX, INT_MIN, -1}) {
    system_error = static_cast<DWORD>(error);
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
  Microsoft::WRL::ComPtr<IErrorInfo> error;
  ASSERT_EQ(S_OK, GetErrorInfo(0, &error));
  BSTR source = nullptr, description = nullptr;
  EXPECT_EQ(S_OK, error->GetSource(&source));
  EXPECT_EQ(S_OK, error->GetDescription(&description));
  EXPECT_STREQ(L"Zepkit10.MousePointer", source);
  EXPECT_STREQ(L"API-Error '5'", description);
  SysFreeString(source);
  SysFreeString(description);
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

RUN_WITH_BOTH_ROOTS(MousePointerSystemTest);

}  // namespace
