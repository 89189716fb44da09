// Files are chosen, with a driver in the place of the user.
#include "com/file_dialog_fixture.h"
#include "com/zep_error.h"

namespace {

using client::Object;
using client::Value;

using Values = std::vector<Value>;

using FileDialogOpenTest = ShownFileDialog;

TEST_P(FileDialogOpenTest, OpensOneFile) {
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

TEST_P(FileDialogOpenTest, OpensNamesOfAllCharacters) {
  const std::wstring name = L"\x00E4 \x4E2D\xD83D\xDE00;'&.txt";
  const std::wstring path = folder_.File(name);
  Choose(name);
  EXPECT_OK(Open());
  EXPECT_EQ(dialog_.Get(L"FileName"), path);
  EXPECT_EQ(dialog_.Get(L"FileTitle"), name);
}

TEST_P(FileDialogOpenTest, OpensSeveralFiles) {
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

TEST_P(FileDialogOpenTest, OneOfSeveralIsAFullPath) {
  const std::wstring path = folder_.File(L"a.txt");
  EXPECT_OK(dialog_.Let(L"Multiselect", {true}));
  Choose(L"a.txt");
  EXPECT_OK(Open());
  EXPECT_EQ(Names(), (Values{path}));
  EXPECT_EQ(dialog_.Get(L"FileTitle"), L"a.txt");
}

TEST_P(FileDialogOpenTest, TheReadOnlyBoxIsReadOnly) {
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

TEST_P(FileDialogOpenTest, HideReadOnlyHidesTheBox) {
  user_.Do([](HWND dialog) { EXPECT_NE(nullptr, DialogDriver::ReadOnlyBox(dialog)); });
  user_.Press(IDCANCEL);
  EXPECT_FALSE(Open().ok());
  EXPECT_OK(dialog_.Let(L"HideReadOnly", {true}));
  user_.Do([](HWND dialog) { EXPECT_EQ(nullptr, DialogDriver::ReadOnlyBox(dialog)); });
  user_.Press(IDCANCEL);
  EXPECT_FALSE(Open().ok());
  EXPECT_EQ(dialog_.Get(L"HideReadOnly"), true);
}

TEST_P(FileDialogOpenTest, TheDialogShowsItsProperties) {
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

TEST_P(FileDialogOpenTest, TheDefaultFiltersAreShown) {
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

TEST_P(FileDialogOpenTest, TheChosenFilterIsFilterIndex) {
  folder_.File(L"a.log");
  user_.ChooseFilter(3);
  Choose(L"a.log");
  EXPECT_OK(Open());
  EXPECT_EQ(dialog_.Get(L"FilterIndex"), 3);
}

TEST_P(FileDialogOpenTest, AnyFilterAndIndexCanBeShown) {
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

TEST_P(FileDialogOpenTest, OpensWhatDoesNotExistUnlessItMust) {
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

TEST_P(FileDialogOpenTest, PathMustExistKeepsToExistingFolders) {
  Choose(L"missing\\a.txt");
  user_.Answer(IDOK).Press(IDCANCEL);
  EXPECT_ZEP_ERROR(Open(), zepErrCdlCancel, L"FileDialog");
}

TEST_P(FileDialogOpenTest, PropertiesStayBetweenShowings) {
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

TEST_P(FileDialogOpenTest, CreatePromptAsks) {
  EXPECT_OK(dialog_.Let(L"CreatePrompt", {true}));
  Choose(L"new.txt");
  user_.Answer(IDNO);
  Choose(L"new.txt");
  user_.Answer(IDYES);
  EXPECT_OK(Open());
  EXPECT_EQ(dialog_.Get(L"FileName"), folder_ / L"new.txt");
}

TEST_P(FileDialogOpenTest, TextsOfAnyLengthCanBeShown) {
  EXPECT_OK(dialog_.Let(L"MaxFileSize", {32767}));
  EXPECT_OK(dialog_.Let(L"CancelError", {false}));
  for (const int length : {259, 260, 1000, 30000}) {
    const std::wstring text(static_cast<std::size_t>(length), L'x');
    const std::wstring folders =
        L"C:\\" + text.substr(length / 2) + L"\\" + text.substr(length / 2);
    const std::pair<const wchar_t*, std::wstring> texts[] = {
        {L"FileName", text},   {L"FileName", folders},         {L"InitDir", text},
        {L"InitDir", folders}, {L"DialogTitle", text},         {L"DefaultExt", text},
        {L"HelpFile", text},   {L"Filter", text + L"|" + text}};
    for (const auto& [name, value] : texts) {
      const auto before = dialog_.Get(name).value;
      EXPECT_OK(dialog_.Let(name, {value}));
      user_.Press(IDCANCEL);
      EXPECT_OK(Open());
      EXPECT_EQ(dialog_.Get(name), value);
      EXPECT_OK(dialog_.Let(name, {before}));
    }
  }
}

RUN_IN_BOTH_BINDINGS(FileDialogOpenTest);

}  // namespace
