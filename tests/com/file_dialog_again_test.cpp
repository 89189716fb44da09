// File dialogs that are shown again, with the last choice as the name to start with.
#include "com/file_dialog_fixture.h"
#include "com/memory_limit.h"
#include "com/zep_error.h"

namespace {

using client::Value;

using Values = std::vector<Value>;

using FileDialogAgainTest = ShownFileDialog;

TEST_P(FileDialogAgainTest, AfterSeveralFilesOneOrOthersMayBeChosen) {
  for (const wchar_t* name : {L"a.txt", L"b.txt", L"c.txt"}) folder_.File(name);
  EXPECT_OK(dialog_.Let(L"Multiselect", {true}));
  Choose(L"\"a.txt\" \"b.txt\"");
  EXPECT_OK(Open());
  EXPECT_EQ(Names(), (Values{FolderName(), L"a.txt", L"b.txt"}));
  // The system takes their folder for a name in the folder above, and starts there.
  Choose(folder_ / L"c.txt");
  EXPECT_OK(Open());
  EXPECT_EQ(Names(), (Values{folder_ / L"c.txt"}));
  EXPECT_EQ(dialog_.Get(L"FileTitle"), L"c.txt");
  Choose(L"\"a.txt\" \"b.txt\"");
  EXPECT_OK(Open());
  user_.Press(IDCANCEL);
  EXPECT_ZEP_ERROR(Open(), zepErrCdlCancel, L"FileDialog");
  EXPECT_EQ(Names(), (Values{FolderName(), L"a.txt", L"b.txt"}));
  Choose(folder_ / L"new.txt");
  EXPECT_OK(Save());
  EXPECT_EQ(Names(), (Values{folder_ / L"new.txt"}));
}

TEST_P(FileDialogAgainTest, OfALongerNameNothingStays) {
  const std::wstring longer = folder_ / std::wstring(60, L'x') + L".txt";
  for (const bool several : {false, true}) {
    EXPECT_OK(dialog_.Let(L"Multiselect", {several}));
    for (const wchar_t* method : {L"ShowOpen", L"ShowSave"}) {
      for (const std::wstring& name :
           {longer, FolderName() + L'\0' + std::wstring(60, L'x') + L'\0' + L"y"}) {
        EXPECT_OK(dialog_.Let(L"FileName", {name}));
        Choose(folder_ / L"a.txt");
        EXPECT_OK(dialog_.Call(method));
        EXPECT_EQ(dialog_.Get(L"FileName"), folder_ / L"a.txt");
        EXPECT_EQ(dialog_.Get(L"FileTitle"), L"a.txt");
      }
    }
  }
}

TEST_P(FileDialogAgainTest, TheCurrentDirectoryFollowsUnlessNoChangeDir) {
  folder_.File(L"a.txt");
  Choose(L"a.txt");
  EXPECT_OK(Open());
  EXPECT_EQ(FolderName(), CurrentDirectory());
}

TEST_P(FileDialogAgainTest, ReadOnlyOutlastsSaving) {
  EXPECT_OK(dialog_.Let(L"ReadOnly", {true}));
  user_.Press(IDCANCEL);
  EXPECT_ZEP_ERROR(Save(), zepErrCdlCancel, L"FileDialog");
  EXPECT_EQ(dialog_.Get(L"ReadOnly"), true);
}

TEST_P(FileDialogAgainTest, WithoutMemoryADialogIsCancelled) {
  if (!component::IsLinked()) GTEST_SKIP() << "only the linked component's memory is limited";
  for (const wchar_t* method : {L"ShowOpen", L"ShowSave"}) {
    EXPECT_OK(dialog_.Let(L"FileName", {L"a"}));
    {
      const MemoryLimit limit(100000);
      EXPECT_ZEP_ERROR(dialog_.Call(method), zepErrCdlCancel, L"FileDialog");
    }
    EXPECT_EQ(dialog_.Get(L"Cancel"), true);
    EXPECT_EQ(dialog_.Get(L"FileName"), L"a");
    EXPECT_EQ(dialog_.Get(L"HideReadOnly"), false);
    EXPECT_EQ(dialog_.Get(L"NoReadOnlyReturn"), false);
    Choose(L"new.txt");
    EXPECT_OK(dialog_.Call(method));
    EXPECT_EQ(dialog_.Get(L"Cancel"), false);
  }
}

RUN_IN_BOTH_BINDINGS(FileDialogAgainTest);

}  // namespace
