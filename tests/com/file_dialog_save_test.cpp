// Names to save under are chosen, and extensions are compared with the default.
#include "com/file_dialog_fixture.h"
#include "com/zep_error.h"

namespace {

using client::Object;
using client::Value;

using Values = std::vector<Value>;

using FileDialogSaveTest = ShownFileDialog;

TEST_P(FileDialogSaveTest, SavesUnderANewName) {
  Choose(L"new.txt");
  EXPECT_OK(Save());
  EXPECT_EQ(dialog_.Get(L"Cancel"), false);
  EXPECT_EQ(dialog_.Get(L"FileName"), folder_ / L"new.txt");
  EXPECT_EQ(dialog_.Get(L"FileTitle"), L"new.txt");
  EXPECT_EQ(Names(), (Values{folder_ / L"new.txt"}));
  EXPECT_FALSE(folder_.Has(L"new.txt")) << "naming a file does not make it";
}

TEST_P(FileDialogSaveTest, OverwritePromptAsks) {
  const std::wstring path = folder_.File(L"old.txt", "content");
  Choose(L"old.txt");
  user_.Answer(IDNO);
  Choose(L"old.txt");
  user_.Answer(IDYES);
  EXPECT_OK(Save());
  EXPECT_EQ(dialog_.Get(L"FileName"), path);
  EXPECT_EQ(folder_.Read(L"old.txt"), "content");
}

TEST_P(FileDialogSaveTest, ARefusedPromptLeadsBackToTheDialog) {
  folder_.File(L"old.txt");
  Choose(L"old.txt");
  user_.Answer(IDNO).Press(IDCANCEL);
  EXPECT_ZEP_ERROR(Save(), zepErrCdlCancel, L"FileDialog");
  EXPECT_EQ(dialog_.Get(L"FileName"), L"");
}

TEST_P(FileDialogSaveTest, WithoutOverwritePromptNobodyAsks) {
  const std::wstring path = folder_.File(L"old.txt");
  EXPECT_OK(dialog_.Let(L"OverwritePrompt", {false}));
  Choose(L"old.txt");
  EXPECT_OK(Save());
  EXPECT_EQ(dialog_.Get(L"FileName"), path);
}

TEST_P(FileDialogSaveTest, DefaultExtIsAddedToANameWithout) {
  EXPECT_OK(dialog_.Let(L"DefaultExt", {L"abc"}));
  Choose(L"new");
  EXPECT_OK(Save());
  EXPECT_EQ(dialog_.Get(L"FileName"), folder_ / L"new.abc");
  EXPECT_EQ(dialog_.Get(L"FileTitle"), L"new.abc");
  EXPECT_EQ(dialog_.Get(L"ExtensionDifferent"), false);
  EXPECT_OK(dialog_.Let(L"DefaultExt", {L""}));
  EXPECT_OK(dialog_.Let(L"FileName", {L""}));
  Choose(L"other");
  EXPECT_OK(Save());
  EXPECT_EQ(dialog_.Get(L"FileTitle"), L"other");
}

TEST_P(FileDialogSaveTest, AnotherExtensionIsDifferent) {
  EXPECT_OK(dialog_.Let(L"DefaultExt", {L"txt"}));
  const std::pair<const wchar_t*, bool> choices[] = {
      {L"a.log", true}, {L"a.txt", false}, {L"a.txt.log", true}, {L"a.TXT", false}};
  for (const wchar_t* method : {L"ShowOpen", L"ShowSave"}) {
    for (const auto& [name, different] : choices) {
      Choose(name);
      EXPECT_OK(dialog_.Call(method));
      EXPECT_EQ(dialog_.Get(L"ExtensionDifferent"), different) << name;
    }
  }
}

TEST_P(FileDialogSaveTest, WithoutDefaultNoExtensionIsDifferent) {
  Choose(L"a.log");
  EXPECT_OK(Open());
  EXPECT_EQ(dialog_.Get(L"ExtensionDifferent"), false);
}

TEST_P(FileDialogSaveTest, AnyOfSeveralMayHaveAnotherExtension) {
  for (const wchar_t* name : {L"a.txt", L"b.txt", L"c.log"}) folder_.File(name);
  EXPECT_OK(dialog_.Let(L"DefaultExt", {L"txt"}));
  EXPECT_OK(dialog_.Let(L"Multiselect", {true}));
  Choose(L"\"a.txt\" \"c.log\"");
  EXPECT_OK(Open());
  EXPECT_EQ(dialog_.Get(L"ExtensionDifferent"), true);
  EXPECT_OK(dialog_.Let(L"FileName", {L""}));
  Choose(L"\"a.txt\" \"b.txt\"");
  EXPECT_OK(Open());
  EXPECT_EQ(dialog_.Get(L"ExtensionDifferent"), false);
}

TEST_P(FileDialogSaveTest, ShowSaveHidesTheReadOnlyBoxForItsTime) {
  for (const bool hidden : {false, true}) {
    for (const bool no_return : {false, true}) {
      EXPECT_OK(dialog_.Let(L"HideReadOnly", {hidden}));
      EXPECT_OK(dialog_.Let(L"NoReadOnlyReturn", {no_return}));
      for (const int button : {IDOK, IDCANCEL}) {
        user_.Do([this](HWND dialog) {
          EXPECT_EQ(nullptr, DialogDriver::ReadOnlyBox(dialog));
          EXPECT_EQ(dialog_.Get(L"HideReadOnly"), true);
          EXPECT_EQ(dialog_.Get(L"NoReadOnlyReturn"), true);
        });
        user_.Type(L"new.txt").Press(button);
        EXPECT_EQ(Save().ok(), button == IDOK);
        EXPECT_EQ(dialog_.Get(L"HideReadOnly"), hidden);
        EXPECT_EQ(dialog_.Get(L"NoReadOnlyReturn"), no_return);
      }
    }
  }
}

RUN_IN_BOTH_BINDINGS(FileDialogSaveTest);

}  // namespace
