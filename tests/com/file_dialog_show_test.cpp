// File dialogs on the screen, with a driver in the place of the user.
#include "com/both_bindings.h"
#include "com/dialog_driver.h"
#include "com/temporary_folder.h"
#include "com/zep_error.h"

namespace {

using client::Object;
using client::Value;

using Values = std::vector<Value>;

std::wstring CurrentDirectory() {
  wchar_t path[MAX_PATH];
  GetCurrentDirectoryW(MAX_PATH, path);
  return path;
}

/// Dialogs may change the current directory of the program.
class DirectoryKeeper {
 public:
  ~DirectoryKeeper() { SetCurrentDirectoryW(directory_.c_str()); }

 private:
  const std::wstring directory_ = CurrentDirectory();
};

class FileDialogShowTest : public BothBindings {
 protected:
  FileDialogShowTest() {
    EXPECT_OK(dialog_.Let(L"InitDir", {folder_.path()}));
    EXPECT_OK(dialog_.Let(L"Filter", {L"All|*.*|Texts|*.txt|Logs|*.log"}));
    EXPECT_OK(dialog_.Let(L"FilterIndex", {1}));
    EXPECT_OK(dialog_.Let(L"CreatePrompt", {false}));
  }

  client::Outcome Open() { return dialog_.Call(L"ShowOpen"); }
  client::Outcome Save() { return dialog_.Call(L"ShowSave"); }
  void Choose(const std::wstring& name) { user_.Type(name).Press(IDOK); }
  Values Names() { return dialog_.GetObject(L"FileNames").Values(); }
  /// As dialogs name it: without the backslash at its end.
  std::wstring FolderName() const { return folder_.path().substr(0, folder_.path().size() - 1); }

  TemporaryFolder folder_;
  DirectoryKeeper directory_;
  DialogDriver user_;
  Object dialog_ = Create(CLSID_FileDialog);
};

TEST_P(FileDialogShowTest, OpensOneFile) {
  const std::wstring path = folder_.File(L"a.txt");
  Choose(L"a.txt");
  EXPECT_OK(Open());
  EXPECT_EQ(dialog_.Get(L"Cancel"), false);
  EXPECT_EQ(dialog_.Get(L"FileName"), path);
  EXPECT_EQ(dialog_.Get(L"FileTitle"), L"a.txt");
  EXPECT_EQ(Names(), (Values{path}));
  EXPECT_EQ(dialog_.Get(L"ReadOnly"), false);
  EXPECT_EQ(dialog_.Get(L"FilterIndex"), 1);
}

TEST_P(FileDialogShowTest, OpensNamesOfAllCharacters) {
  const std::wstring name = L"\x00E4 \x4E2D\xD83D\xDE00;'&.txt";
  const std::wstring path = folder_.File(name);
  Choose(name);
  EXPECT_OK(Open());
  EXPECT_EQ(dialog_.Get(L"FileName"), path);
  EXPECT_EQ(dialog_.Get(L"FileTitle"), name);
}

TEST_P(FileDialogShowTest, OpensSeveralFiles) {
  folder_.File(L"a.txt");
  folder_.File(L"b c.txt");
  EXPECT_OK(dialog_.Let(L"Multiselect", {true}));
  EXPECT_OK(dialog_.Let(L"FileTitle", {L"old"}));
  Choose(L"\"a.txt\" \"b c.txt\"");
  EXPECT_OK(Open());
  EXPECT_EQ(Names(), (Values{FolderName(), L"a.txt", L"b c.txt"}));
  EXPECT_EQ(dialog_.Get(L"FileName"), FolderName() + std::wstring(L"\0a.txt\0b c.txt", 14));
  EXPECT_EQ(dialog_.Get(L"FileTitle"), L"") << "there are several";
}

TEST_P(FileDialogShowTest, OneOfSeveralIsAFullPath) {
  const std::wstring path = folder_.File(L"a.txt");
  EXPECT_OK(dialog_.Let(L"Multiselect", {true}));
  Choose(L"a.txt");
  EXPECT_OK(Open());
  EXPECT_EQ(Names(), (Values{path}));
  EXPECT_EQ(dialog_.Get(L"FileTitle"), L"a.txt");
}

TEST_P(FileDialogShowTest, CancelRaisesAnError) {
  for (const wchar_t* method : {L"ShowOpen", L"ShowSave"}) {
    user_.Type(L"a.txt").Press(IDCANCEL);
    EXPECT_ZEP_ERROR(dialog_.Call(method), zepErrCdlCancel, L"FileDialog");
    EXPECT_EQ(dialog_.Get(L"Cancel"), true);
  }
}

TEST_P(FileDialogShowTest, CancelIsSilentWithoutCancelError) {
  EXPECT_OK(dialog_.Let(L"CancelError", {false}));
  for (const wchar_t* method : {L"ShowOpen", L"ShowSave"}) {
    user_.Press(IDCANCEL);
    EXPECT_OK(dialog_.Call(method));
    EXPECT_EQ(dialog_.Get(L"Cancel"), true);
  }
}

TEST_P(FileDialogShowTest, AChoiceTakesCancelBack) {
  folder_.File(L"a.txt");
  user_.Press(IDCANCEL);
  EXPECT_ZEP_ERROR(Open(), zepErrCdlCancel, L"FileDialog");
  Choose(L"a.txt");
  EXPECT_OK(Open());
  EXPECT_EQ(dialog_.Get(L"Cancel"), false);
}

TEST_P(FileDialogShowTest, ACancelLeavesTheLastChoice) {
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

TEST_P(FileDialogShowTest, TheReadOnlyBoxIsReadOnly) {
  folder_.File(L"a.txt");
  user_.TickReadOnly(true);
  Choose(L"a.txt");
  EXPECT_OK(Open());
  EXPECT_EQ(dialog_.Get(L"ReadOnly"), true);
  user_.Do([](HWND dialog) {
    EXPECT_EQ(BST_CHECKED, SendMessageW(DialogDriver::ReadOnlyBox(dialog), BM_GETCHECK, 0, 0))
        << "as it was left";
  });
  user_.TickReadOnly(false);
  Choose(L"a.txt");
  EXPECT_OK(Open());
  EXPECT_EQ(dialog_.Get(L"ReadOnly"), false);
}

TEST_P(FileDialogShowTest, HideReadOnlyHidesTheBox) {
  user_.Do([](HWND dialog) { EXPECT_NE(nullptr, DialogDriver::ReadOnlyBox(dialog)); });
  user_.Press(IDCANCEL);
  EXPECT_FALSE(Open().ok());
  EXPECT_OK(dialog_.Let(L"HideReadOnly", {true}));
  user_.Do([](HWND dialog) { EXPECT_EQ(nullptr, DialogDriver::ReadOnlyBox(dialog)); });
  user_.Press(IDCANCEL);
  EXPECT_FALSE(Open().ok());
  EXPECT_EQ(dialog_.Get(L"HideReadOnly"), true);
}

TEST_P(FileDialogShowTest, TheDialogShowsItsProperties) {
  EXPECT_OK(dialog_.Let(L"DialogTitle", {L"Choose one"}));
  EXPECT_OK(dialog_.Let(L"FileName", {L"start.txt"}));
  EXPECT_OK(dialog_.Let(L"FilterIndex", {2}));
  EXPECT_OK(dialog_.Let(L"HelpButton", {true}));
  user_.Do([](HWND dialog) {
    EXPECT_EQ(L"Choose one", DialogDriver::TextOf(dialog));
    EXPECT_EQ(L"start.txt", DialogDriver::NameIn(dialog));
    EXPECT_EQ(L"All\nTexts\nLogs\n", DialogDriver::FiltersOf(dialog));
    EXPECT_EQ(2, DialogDriver::ChosenFilterOf(dialog));
    EXPECT_NE(nullptr, DialogDriver::HelpButton(dialog));
  });
  user_.Press(IDCANCEL);
  EXPECT_FALSE(Open().ok());
  EXPECT_OK(dialog_.Let(L"DialogTitle", {L""}));
  EXPECT_OK(dialog_.Let(L"HelpButton", {false}));
  user_.Do([](HWND dialog) {
    EXPECT_NE(L"", DialogDriver::TextOf(dialog)) << "the system's own";
    EXPECT_EQ(nullptr, DialogDriver::HelpButton(dialog));
  });
  user_.Press(IDCANCEL);
  EXPECT_FALSE(Open().ok());
}

TEST_P(FileDialogShowTest, TheDefaultFiltersAreShown) {
  const Object other = Create(CLSID_FileDialog);
  EXPECT_OK(other.Let(L"CancelError", {false}));
  user_.Do([](HWND dialog) {
    EXPECT_EQ(
        L"Alle Dateien (*.*)\nTextdateien (*.txt)\nProtokolldateien (*.log)\n"
        L"Initialisierungsdateien (*.ini)\nDOS Batchdateien (*.bat)\n",
        DialogDriver::FiltersOf(dialog));
    EXPECT_EQ(2, DialogDriver::ChosenFilterOf(dialog)) << "the text files";
  });
  user_.Press(IDCANCEL);
  EXPECT_OK(other.Call(L"ShowOpen"));
}

TEST_P(FileDialogShowTest, TheChosenFilterIsFilterIndex) {
  folder_.File(L"a.log");
  user_.ChooseFilter(3);
  Choose(L"a.log");
  EXPECT_OK(Open());
  EXPECT_EQ(dialog_.Get(L"FilterIndex"), 3);
}

TEST_P(FileDialogShowTest, AnyFilterAndIndexCanBeShown) {
  folder_.File(L"a.txt");
  for (const wchar_t* filter : {L"", L"All|*.*"}) {
    EXPECT_OK(dialog_.Let(L"Filter", {filter}));
    for (const int index : {0, -1, 9, 32767, -32768}) {
      EXPECT_OK(dialog_.Let(L"FilterIndex", {index}));
      Choose(L"a.txt");
      EXPECT_OK(Open());
      EXPECT_EQ(dialog_.Get(L"FileTitle"), L"a.txt");
    }
  }
}

TEST_P(FileDialogShowTest, OpensWhatDoesNotExistUnlessItMust) {
  Choose(L"new.txt");
  EXPECT_OK(Open());
  EXPECT_EQ(dialog_.Get(L"FileName"), folder_ / L"new.txt");
  EXPECT_OK(dialog_.Let(L"FileMustExist", {true}));
  EXPECT_OK(dialog_.Let(L"FileName", {L""}));
  Choose(L"new.txt");
  user_.Answer(IDOK).Press(IDCANCEL);
  EXPECT_ZEP_ERROR(Open(), zepErrCdlCancel, L"FileDialog");
  EXPECT_EQ(dialog_.Get(L"FileName"), L"");
}

TEST_P(FileDialogShowTest, PathMustExistKeepsToExistingFolders) {
  Choose(L"missing\\a.txt");
  user_.Answer(IDOK).Press(IDCANCEL);
  EXPECT_ZEP_ERROR(Open(), zepErrCdlCancel, L"FileDialog");
}

TEST_P(FileDialogShowTest, SavesUnderANewName) {
  Choose(L"new.txt");
  EXPECT_OK(Save());
  EXPECT_EQ(dialog_.Get(L"Cancel"), false);
  EXPECT_EQ(dialog_.Get(L"FileName"), folder_ / L"new.txt");
  EXPECT_EQ(dialog_.Get(L"FileTitle"), L"new.txt");
  EXPECT_EQ(Names(), (Values{folder_ / L"new.txt"}));
  EXPECT_FALSE(folder_.Has(L"new.txt")) << "naming a file does not make it";
}

TEST_P(FileDialogShowTest, OverwritePromptAsks) {
  const std::wstring path = folder_.File(L"old.txt", "content");
  Choose(L"old.txt");
  user_.Answer(IDNO);
  Choose(L"old.txt");
  user_.Answer(IDYES);
  EXPECT_OK(Save());
  EXPECT_EQ(dialog_.Get(L"FileName"), path);
  EXPECT_EQ(folder_.Read(L"old.txt"), "content");
}

TEST_P(FileDialogShowTest, ARefusedPromptLeadsBackToTheDialog) {
  folder_.File(L"old.txt");
  Choose(L"old.txt");
  user_.Answer(IDNO).Press(IDCANCEL);
  EXPECT_ZEP_ERROR(Save(), zepErrCdlCancel, L"FileDialog");
  EXPECT_EQ(dialog_.Get(L"FileName"), L"");
}

TEST_P(FileDialogShowTest, WithoutOverwritePromptNobodyAsks) {
  const std::wstring path = folder_.File(L"old.txt");
  EXPECT_OK(dialog_.Let(L"OverwritePrompt", {false}));
  Choose(L"old.txt");
  EXPECT_OK(Save());
  EXPECT_EQ(dialog_.Get(L"FileName"), path);
}

TEST_P(FileDialogShowTest, DefaultExtIsAddedToANameWithout) {
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

TEST_P(FileDialogShowTest, AnotherExtensionIsDifferent) {
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

TEST_P(FileDialogShowTest, WithoutDefaultNoExtensionIsDifferent) {
  Choose(L"a.log");
  EXPECT_OK(Open());
  EXPECT_EQ(dialog_.Get(L"ExtensionDifferent"), false);
}

TEST_P(FileDialogShowTest, AnyOfSeveralMayHaveAnotherExtension) {
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

TEST_P(FileDialogShowTest, ShowSaveHidesTheReadOnlyBoxForItsTime) {
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

TEST_P(FileDialogShowTest, PropertiesStayBetweenShowings) {
  folder_.File(L"a.txt");
  Choose(L"a.txt");
  EXPECT_OK(Open());
  user_.Do([](HWND dialog) {
    EXPECT_EQ(L"a.txt",
              DialogDriver::NameIn(dialog).substr(DialogDriver::NameIn(dialog).size() - 5));
  });
  user_.Press(IDCANCEL);
  EXPECT_FALSE(Open().ok());
  EXPECT_EQ(dialog_.Get(L"Filter"), L"All|*.*|Texts|*.txt|Logs|*.log");
  EXPECT_EQ(dialog_.Get(L"InitDir"), folder_.path());
  EXPECT_EQ(dialog_.Get(L"MaxFileSize"), 256);
}

TEST_P(FileDialogShowTest, AChoiceThatDoesNotFitIsACancel) {
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

TEST_P(FileDialogShowTest, ASelectionThatDoesNotFitIsACancel) {
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

TEST_P(FileDialogShowTest, ANameToStartWithMustFit) {
  const std::wstring name(255, L'x');
  EXPECT_OK(dialog_.Let(L"FileName", {name + L"x"}));
  EXPECT_ZEP_ERROR(Open(), zepErrCdlCancel, L"FileDialog");  // no dialog comes up
  EXPECT_EQ(dialog_.Get(L"FileName"), name + L"x");
  EXPECT_OK(dialog_.Let(L"FileName", {name}));
  user_.Press(IDCANCEL);
  EXPECT_ZEP_ERROR(Open(), zepErrCdlCancel, L"FileDialog");
}

TEST_P(FileDialogShowTest, NoChangeDirKeepsTheCurrentDirectory) {
  folder_.File(L"a.txt");
  const std::wstring before = CurrentDirectory();
  EXPECT_OK(dialog_.Let(L"NoChangeDir", {true}));
  Choose(L"a.txt");
  EXPECT_OK(Open());
  EXPECT_EQ(before, CurrentDirectory());
}

TEST_P(FileDialogShowTest, PropertiesMayChangeWhileTheDialogIsUp) {
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

TEST_P(FileDialogShowTest, ASecondDialogOfTheSameObjectIsACancel) {
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

TEST_P(FileDialogShowTest, AnObjectMayLoseItsLastClientMeanwhile) {
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

RUN_IN_BOTH_BINDINGS(FileDialogShowTest);

}  // namespace
