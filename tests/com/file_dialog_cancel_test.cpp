// File dialogs that end without a file, and what clients do while one is up.
#include "com/file_dialog_fixture.h"
#include "com/zep_error.h"

namespace {

using client::Object;
using client::Value;

using Values = std::vector<Value>;

using FileDialogCancelTest = ShownFileDialog;

TEST_P(FileDialogCancelTest, CancelRaisesAnError) {
  for (const wchar_t* method : {L"ShowOpen", L"ShowSave"}) {
    user_.Type(L"a.txt").Press(IDCANCEL);
    EXPECT_ZEP_ERROR(dialog_.Call(method), zepErrCdlCancel, L"FileDialog");
    EXPECT_EQ(dialog_.Get(L"Cancel"), true);
  }
}

TEST_P(FileDialogCancelTest, CancelIsSilentWithoutCancelError) {
  EXPECT_OK(dialog_.Let(L"CancelError", {false}));
  for (const wchar_t* method : {L"ShowOpen", L"ShowSave"}) {
    user_.Press(IDCANCEL);
    EXPECT_OK(dialog_.Call(method));
    EXPECT_EQ(dialog_.Get(L"Cancel"), true);
  }
}

TEST_P(FileDialogCancelTest, AChoiceTakesCancelBack) {
  folder_.File(L"a.txt");
  user_.Press(IDCANCEL);
  EXPECT_ZEP_ERROR(Open(), zepErrCdlCancel, L"FileDialog");
  Choose(L"a.txt");
  EXPECT_OK(Open());
  EXPECT_EQ(dialog_.Get(L"Cancel"), false);
}

TEST_P(FileDialogCancelTest, ACancelLeavesTheLastChoice) {
  const std::wstring path = folder_.File(L"a.log");
  folder_.File(L"b.txt");
  EXPECT_OK(dialog_.Let(L"DefaultExt", {L"txt"}));
  user_.TickReadOnly(true).ChooseFilter(3);
  Choose(L"a.log");
  EXPECT_OK(Open());
  user_.TickReadOnly(false).ChooseFilter(2).Type(L"b.txt").Press(IDCANCEL);
  EXPECT_ZEP_ERROR(Open(), zepErrCdlCancel, L"FileDialog");
  EXPECT_EQ(dialog_.Get(L"FileName"), path);
  EXPECT_EQ(dialog_.Get(L"FileTitle"), L"a.log");
  EXPECT_EQ(dialog_.Get(L"FilterIndex"), 3);
  EXPECT_EQ(dialog_.Get(L"ReadOnly"), true);
  EXPECT_EQ(dialog_.Get(L"ExtensionDifferent"), true);
}

TEST_P(FileDialogCancelTest, AChoiceThatDoesNotFitIsACancel) {
  const std::wstring path = folder_.File(L"a.txt");
  const int exact = static_cast<int>(path.size()) + 1;
  EXPECT_OK(dialog_.Let(L"MaxFileSize", {exact - 1}));
  Choose(L"a.txt");
  EXPECT_ZEP_ERROR(Open(), zepErrCdlCancel, L"FileDialog");
  EXPECT_EQ(dialog_.Get(L"Cancel"), true);
  EXPECT_EQ(dialog_.Get(L"FileName"), L"");
  EXPECT_OK(dialog_.Let(L"MaxFileSize", {exact + 1}));
  Choose(L"a.txt");
  EXPECT_OK(Open());
  EXPECT_EQ(dialog_.Get(L"FileName"), path);
}

TEST_P(FileDialogCancelTest, ASelectionThatDoesNotFitIsACancel) {
  std::wstring selection;
  Values names{FolderName()};
  for (int i = 0; i < 30; ++i) {
    const std::wstring name = L"file number " + std::to_wstring(100 + i) + L".txt";
    folder_.File(name);
    selection += L"\"" + name + L"\" ";
    names.push_back(name);
  }
  EXPECT_OK(dialog_.Let(L"Multiselect", {true}));
  Choose(selection);
  EXPECT_ZEP_ERROR(Open(), zepErrCdlCancel, L"FileDialog");
  EXPECT_EQ(dialog_.Get(L"FileName"), L"");
  EXPECT_OK(dialog_.Let(L"MaxFileSize", {32767}));
  Choose(selection);
  EXPECT_OK(Open());
  EXPECT_EQ(Names(), names);
}

TEST_P(FileDialogCancelTest, ANameToStartWithMustFit) {
  const std::wstring name(255, L'x');
  EXPECT_OK(dialog_.Let(L"FileName", {name + L"x"}));
  EXPECT_ZEP_ERROR(Open(), zepErrCdlCancel, L"FileDialog");  // no dialog comes up
  EXPECT_EQ(dialog_.Get(L"FileName"), name + L"x");
  EXPECT_OK(dialog_.Let(L"FileName", {name}));
  user_.Press(IDCANCEL);
  EXPECT_ZEP_ERROR(Open(), zepErrCdlCancel, L"FileDialog");
}

TEST_P(FileDialogCancelTest, NoChangeDirKeepsTheCurrentDirectory) {
  folder_.File(L"a.txt");
  const std::wstring before = CurrentDirectory();
  EXPECT_OK(dialog_.Let(L"NoChangeDir", {true}));
  Choose(L"a.txt");
  EXPECT_OK(Open());
  EXPECT_EQ(before, CurrentDirectory());
}

TEST_P(FileDialogCancelTest, PropertiesMayChangeWhileTheDialogIsUp) {
  const std::wstring path = folder_.File(L"a.txt");
  user_.Do([this](HWND) {
    for (const wchar_t* name : {L"FileName", L"DialogTitle", L"InitDir", L"DefaultExt"}) {
      EXPECT_OK(dialog_.Let(name, {std::wstring(10000, L'x')}));
    }
    EXPECT_OK(dialog_.Let(L"Filter", {L"b|*.b"}));
    EXPECT_OK(dialog_.Let(L"MaxFileSize", {1}));
    EXPECT_OK(dialog_.Let(L"ShareAware", {true}));
  });
  Choose(L"a.txt");
  EXPECT_OK(Open());
  EXPECT_EQ(dialog_.Get(L"FileName"), path);
  EXPECT_EQ(dialog_.Get(L"Filter"), L"b|*.b");
  EXPECT_EQ(dialog_.Get(L"ShareAware"), true);
}

TEST_P(FileDialogCancelTest, ASecondDialogOfTheSameObjectIsACancel) {
  const std::wstring path = folder_.File(L"a.txt");
  for (const wchar_t* method : {L"ShowOpen", L"ShowSave"}) {
    user_.Do([this, method](HWND) {
      EXPECT_ZEP_ERROR(dialog_.Call(method), zepErrCdlCancel, L"FileDialog");
      EXPECT_EQ(dialog_.Get(L"Cancel"), true);
    });
    Choose(L"a.txt");
    EXPECT_OK(Open());
    EXPECT_EQ(dialog_.Get(L"Cancel"), false) << "the first one's";
    EXPECT_EQ(dialog_.Get(L"FileName"), path);
    EXPECT_EQ(dialog_.Get(L"HideReadOnly"), false);
  }
}

TEST_P(FileDialogCancelTest, AnObjectMayLoseItsLastClientMeanwhile) {
  user_.Do([this](HWND) { dialog_.Reset(); }).Press(IDCANCEL);
  IDispatch* const object = dialog_.get();
  DISPID id = 0;
  wchar_t name[] = L"ShowOpen";
  wchar_t* names = name;
  EXPECT_EQ(S_OK, object->GetIDsOfNames(IID_NULL, &names, 1, 1033, &id));
  DISPPARAMS none{};
  EXPECT_EQ(DISP_E_EXCEPTION,
            object->Invoke(id, IID_NULL, 1033, DISPATCH_METHOD, &none, nullptr, nullptr, nullptr));
}

RUN_IN_BOTH_BINDINGS(FileDialogCancelTest);

}  // namespace
