// DocHand: the pointer during a transfer.
#include "com/doc_hand_fixture.h"
#include "com/import_hook.h"

DECLARE_IMPORT(SetCursor, 4);

namespace {

using CursorHook = ImportHook<&__imp_SetCursor>;

int pointers_set = 0;
HCURSOR WINAPI CountingSet(HCURSOR pointer) {
  ++pointers_set;
  return CursorHook::kSystem(pointer);
}

class DocHandHourglassTest : public WithDocument {
 protected:
  DocHandHourglassTest() : before_(SetCursor(cross_)) { folder_.File(L"a.txt", Pattern(3000)); }
  ~DocHandHourglassTest() override { SetCursor(before_); }

  const HCURSOR cross_ = LoadCursorW(nullptr, IDC_CROSS), wait_ = LoadCursorW(nullptr, IDC_WAIT);
  const HCURSOR before_;
};

TEST_P(DocHandHourglassTest, IsShownFromTheFirstReportToTheEnd) {
  std::vector<DISPID> waiting;
  Listen([&](const Event& event) {
    if (GetCursor() == wait_) waiting.push_back(event.id);
    return S_OK;
  });
  EXPECT_OK(Open(path_));
  EXPECT_EQ((std::vector<DISPID>{5, 5, 5, 1, 5, 7}), waiting);
  EXPECT_EQ(cross_, GetCursor());
  waiting.clear();
  EXPECT_OK(Save());
  EXPECT_EQ((std::vector<DISPID>{6, 6, 6, 1, 6, 8}), waiting);
  EXPECT_EQ(cross_, GetCursor());
}

TEST_P(DocHandHourglassTest, IsNotShownWhereATransferIsRefused) {
  if (!component::IsLinked()) GTEST_SKIP() << "nothing can be hooked in a DLL";
  const CursorHook hook(CountingSet);
  pointers_set = 0;
  EXPECT_ZEP_ERROR(Update(), zepErrBadCallContext, L"DocHand");
  EXPECT_ZEP_ERROR(Save(), zepErrBadCallContext, L"DocHand");
  EXPECT_ZEP_ERROR(Open(folder_ / L"missing", true), zepErrOpenFile, L"DocHand");
  EXPECT_ZEP_ERROR(Save(), zepErrReadOnly, L"DocHand");
  EXPECT_EQ(0, pointers_set);
  EXPECT_OK(Open(path_));
  EXPECT_EQ(2, pointers_set);
}

TEST_P(DocHandHourglassTest, StaysWhereAHandlerTransfersToo) {
  bool nested = false, waiting = false;
  Listen([&](const Event& event) {
    if (event == PartlyRead(3000, 1024, 34.1333333f) && !std::exchange(nested, true)) {
      EXPECT_OK(Update());
      waiting = GetCursor() == wait_;
    }
    return S_OK;
  });
  EXPECT_OK(Open(path_));
  EXPECT_TRUE(nested);
  EXPECT_TRUE(waiting);
  EXPECT_EQ(cross_, GetCursor());
}

RUN_IN_BOTH_BINDINGS(DocHandHourglassTest);

}  // namespace
