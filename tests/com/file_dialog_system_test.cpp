// What file dialogs tell the system and take from its answers, with the system's dialogs replaced.
#include <functional>

#include "com/both_bindings.h"
#include "com/import_hook.h"
#include "com/zep_error.h"
#include "platform/file_dialogs.h"

DECLARE_IMPORT(WinHelpW, 16);

namespace {

using client::Object;
using client::Value;

/// What the dialogs do while a test runs.
std::function<bool(OPENFILENAMEW&)> answer_open, answer_save;
BOOL WINAPI Open(OPENFILENAMEW* dialog) { return answer_open(*dialog); }
BOOL WINAPI Save(OPENFILENAMEW* dialog) { return answer_save(*dialog); }

struct Help {
  HWND window;
  std::wstring file;
  UINT command;
  ULONG_PTR data;
};
std::vector<Help> helps;
BOOL WINAPI KeepHelp(HWND window, LPCWSTR file, UINT command, ULONG_PTR data) {
  helps.push_back({window, file ? file : L"(null)", command, data});
  return TRUE;
}

std::wstring Text(const wchar_t* text) { return text ? text : L"(null)"; }

class FileDialogSystemTest : public BothBindings {
 protected:
  void SetUp() override {
    if (!component::IsLinked()) GTEST_SKIP() << "only the linked component's calls are replaced";
  }
  ~FileDialogSystemTest() override {
    answer_open = answer_save = nullptr;
    helps.clear();
  }

  /// Shows the dialog for opening, which answers like this.
  client::Outcome ShowOpen(std::function<bool(OPENFILENAMEW&)> answer) {
    answer_open = std::move(answer);
    return dialog_.Call(L"ShowOpen");
  }

  Object dialog_ = Create(CLSID_FileDialog);

 private:
  const ImportHook<&zepkit10::show_open_dialog> open_{Open};
  const ImportHook<&zepkit10::show_save_dialog> save_{Save};
  const ImportHook<&__imp_WinHelpW> help_{KeepHelp};
};

TEST_P(FileDialogSystemTest, TheDefaultsAreTold) {
  EXPECT_OK(ShowOpen([](OPENFILENAMEW& told) {
    EXPECT_EQ(sizeof told, told.lStructSize);
    EXPECT_EQ(0x282802u, told.Flags);
    EXPECT_EQ(2u, told.nFilterIndex);
    EXPECT_EQ(256u, told.nMaxFile);
    EXPECT_EQ(L"", Text(told.lpstrFile));
    EXPECT_EQ(nullptr, told.lpstrInitialDir);
    EXPECT_EQ(nullptr, told.lpstrTitle);
    EXPECT_EQ(nullptr, told.lpstrDefExt);
    EXPECT_EQ(nullptr, told.lpfnHook);
    const wchar_t filter[] =
        L"Alle Dateien (*.*)\0*.*\0Textdateien (*.txt)\0*.txt\0Protokolldateien (*.log)\0*.log\0"
        L"Initialisierungsdateien (*.ini)\0*.ini\0DOS Batchdateien (*.bat)\0*.bat\0";
    EXPECT_EQ(0, memcmp(filter, told.lpstrFilter, sizeof filter));
    return true;
  }));
}

TEST_P(FileDialogSystemTest, PropertiesAreTold) {
  for (const wchar_t* name : {L"FileName", L"InitDir", L"DialogTitle", L"DefaultExt"}) {
    EXPECT_OK(dialog_.Let(name, {name}));
  }
  EXPECT_OK(dialog_.Let(L"MaxFileSize", {32767}));
  EXPECT_OK(dialog_.Let(L"FilterIndex", {32767}));
  EXPECT_OK(ShowOpen([](OPENFILENAMEW& told) {
    EXPECT_EQ(L"FileName", Text(told.lpstrFile));
    EXPECT_EQ(L"InitDir", Text(told.lpstrInitialDir));
    EXPECT_EQ(L"DialogTitle", Text(told.lpstrTitle));
    EXPECT_EQ(L"DefaultExt", Text(told.lpstrDefExt));
    EXPECT_EQ(32767u, told.nMaxFile);
    EXPECT_EQ(32767u, told.nFilterIndex);
    return true;
  }));
  EXPECT_OK(dialog_.Let(L"Filter", {L""}));
  EXPECT_OK(dialog_.Let(L"FilterIndex", {-1}));
  EXPECT_OK(ShowOpen([](OPENFILENAMEW& told) {
    EXPECT_EQ(nullptr, told.lpstrFilter);
    EXPECT_EQ(0u, told.nFilterIndex);
    return true;
  }));
}

TEST_P(FileDialogSystemTest, EachFlagIsTold) {
  const std::pair<const wchar_t*, DWORD> flags[] = {{L"ReadOnly", 0x1},
                                                    {L"OverwritePrompt", 0x2},
                                                    {L"HideReadOnly", 0x4},
                                                    {L"NoChangeDir", 0x8},
                                                    {L"NoValidate", 0x100},
                                                    {L"Multiselect", 0x200},
                                                    {L"PathMustExist", 0x800},
                                                    {L"FileMustExist", 0x1000},
                                                    {L"CreatePrompt", 0x2000},
                                                    {L"ShareAware", 0x4000},
                                                    {L"NoReadOnlyReturn", 0x8000},
                                                    {L"NoLongNames", 0x40000},
                                                    {L"NoDereferenceLinks", 0x100000},
                                                    {L"LongNames", 0x200000}};
  DWORD told = 0;
  const auto tell = [&told](OPENFILENAMEW& dialog) { return told = dialog.Flags, true; };
  for (const auto& [name, bit] : flags) EXPECT_OK(dialog_.Let(name, {false}));
  for (const auto& [name, bit] : flags) {
    EXPECT_OK(dialog_.Let(name, {true}));
    EXPECT_OK(ShowOpen(tell));
    EXPECT_EQ(0x80000 | bit, told) << name;
    EXPECT_OK(dialog_.Let(name, {false}));
  }
  EXPECT_OK(dialog_.Let(L"HelpButton", {true}));
  EXPECT_OK(ShowOpen(tell));
  EXPECT_EQ(0x80010u | OFN_ENABLEHOOK, told);
}

TEST_P(FileDialogSystemTest, SavingNeverOffersOrReturnsReadOnlyFiles) {
  DWORD told = 0;
  answer_save = [&told](OPENFILENAMEW& dialog) { return told = dialog.Flags, true; };
  EXPECT_OK(dialog_.Call(L"ShowSave"));
  EXPECT_EQ(0x28A806u, told);
  EXPECT_EQ(dialog_.Get(L"HideReadOnly"), false);
  EXPECT_EQ(dialog_.Get(L"NoReadOnlyReturn"), false);
  answer_save = [](OPENFILENAMEW&) -> bool { return false; };
  EXPECT_ZEP_ERROR(dialog_.Call(L"ShowSave"), zepErrCdlCancel, L"FileDialog");
  EXPECT_EQ(dialog_.Get(L"HideReadOnly"), false);
  EXPECT_EQ(dialog_.Get(L"NoReadOnlyReturn"), false);
}

TEST_P(FileDialogSystemTest, AFailureIsACancelAndChangesNothing) {
  EXPECT_OK(dialog_.Let(L"FileName", {L"a"}));
  EXPECT_OK(dialog_.Let(L"FileTitle", {L"b"}));
  const auto fail = [](OPENFILENAMEW& dialog) {
    wcscpy(dialog.lpstrFile, L"\x0123");  // the room that would have been needed
    dialog.nFilterIndex = 7;
    dialog.Flags |= OFN_READONLY | OFN_EXTENSIONDIFFERENT;
    return false;
  };
  EXPECT_ZEP_ERROR(ShowOpen(fail), zepErrCdlCancel, L"FileDialog");
  EXPECT_EQ(dialog_.Get(L"Cancel"), true);
  EXPECT_OK(dialog_.Let(L"CancelError", {false}));
  EXPECT_OK(ShowOpen(fail));
  EXPECT_EQ(dialog_.Get(L"Cancel"), true);
  EXPECT_EQ(dialog_.Get(L"FileName"), L"a");
  EXPECT_EQ(dialog_.Get(L"FileTitle"), L"b");
  EXPECT_EQ(dialog_.Get(L"FilterIndex"), 2);
  EXPECT_EQ(dialog_.Get(L"ReadOnly"), false);
  EXPECT_EQ(dialog_.Get(L"ExtensionDifferent"), false);
}

TEST_P(FileDialogSystemTest, OfTheFlagsTheBoxAloneIsTaken) {
  EXPECT_OK(ShowOpen([](OPENFILENAMEW& dialog) {
    wcscpy(dialog.lpstrFile, L"C:\\d\\a.log");
    dialog.Flags = OFN_READONLY | OFN_EXTENSIONDIFFERENT | OFN_SHAREAWARE;
    return true;
  }));
  EXPECT_EQ(dialog_.Get(L"ReadOnly"), true);
  EXPECT_EQ(dialog_.Get(L"ExtensionDifferent"), false) << "there is no default";
  EXPECT_EQ(dialog_.Get(L"ShareAware"), false);
  EXPECT_EQ(dialog_.Get(L"OverwritePrompt"), true);
  EXPECT_OK(dialog_.Let(L"DefaultExt", {L"txt"}));
  EXPECT_OK(ShowOpen([](OPENFILENAMEW&) { return true; }));  // the same name again
  EXPECT_EQ(dialog_.Get(L"ReadOnly"), true);
  EXPECT_EQ(dialog_.Get(L"ExtensionDifferent"), true);
  EXPECT_OK(ShowOpen([](OPENFILENAMEW& dialog) {
    EXPECT_EQ(0u, dialog.Flags & OFN_EXTENSIONDIFFERENT) << "not an earlier answer";
    wcscpy(dialog.lpstrFile, L"C:\\d\\a.txt");
    dialog.Flags = 0;
    return true;
  }));
  EXPECT_EQ(dialog_.Get(L"ReadOnly"), false);
  EXPECT_EQ(dialog_.Get(L"ExtensionDifferent"), false);
}

TEST_P(FileDialogSystemTest, ExtensionsAreComparedAsTheFileSystemDoes) {
  EXPECT_OK(dialog_.Let(L"DefaultExt", {L"\x00E4\x03C9"}));
  EXPECT_OK(ShowOpen([](OPENFILENAMEW& dialog) {
    wcscpy(dialog.lpstrFile, L"C:\\a.\x00C4\x03A9");
    return true;
  }));
  EXPECT_EQ(dialog_.Get(L"ExtensionDifferent"), false);
}

TEST_P(FileDialogSystemTest, FilterIndexStaysWithin16Bits) {
  for (const auto& [answered, index] : {std::pair(32767u, 32767), {32768u, 32767}, {0u, 0}}) {
    EXPECT_OK(ShowOpen([answered = answered](OPENFILENAMEW& dialog) {
      dialog.nFilterIndex = answered;
      return true;
    }));
    EXPECT_EQ(dialog_.Get(L"FilterIndex"), index);
  }
}

TEST_P(FileDialogSystemTest, LongPathsFitIntoLargeBuffers) {
  const std::wstring path = L"C:\\" + std::wstring(32763, L'x');
  EXPECT_OK(dialog_.Let(L"MaxFileSize", {32767}));
  EXPECT_OK(ShowOpen([&](OPENFILENAMEW& dialog) {
    wcscpy(dialog.lpstrFile, path.c_str());
    return true;
  }));
  EXPECT_EQ(dialog_.Get(L"FileName"), path);
  EXPECT_OK(ShowOpen([&](OPENFILENAMEW& dialog) { return path == dialog.lpstrFile; }));
}

TEST_P(FileDialogSystemTest, AChoiceWithoutItsEndIsACancel) {
  for (const bool several : {false, true}) {
    EXPECT_OK(dialog_.Let(L"Multiselect", {several}));
    EXPECT_ZEP_ERROR(ShowOpen([](OPENFILENAMEW& dialog) {
                       std::fill_n(dialog.lpstrFile, dialog.nMaxFile, L'x');
                       return true;
                     }),
                     zepErrCdlCancel, L"FileDialog");
    EXPECT_EQ(dialog_.Get(L"FileName"), L"");
  }
}

TEST_P(FileDialogSystemTest, TheDialogBelongsToTheActiveWindow) {
  HWND window = CreateWindowExW(0, L"STATIC", L"", WS_POPUP | WS_VISIBLE, 0, 0, 10, 10, nullptr,
                                nullptr, nullptr, nullptr);
  ASSERT_NE(nullptr, window);
  SetActiveWindow(window);
  EXPECT_OK(ShowOpen([window](OPENFILENAMEW& dialog) { return dialog.hwndOwner == window; }));
  DestroyWindow(window);
  EXPECT_OK(ShowOpen([](OPENFILENAMEW& dialog) { return dialog.hwndOwner == GetActiveWindow(); }));
}

/// What a dialog tells its hook of.
void Notify(OPENFILENAMEW& dialog, UINT code) {
  OFNOTIFYW notification{{nullptr, 0, code}, &dialog, nullptr};
  HWND window = GetDesktopWindow();  // any
  EXPECT_EQ(0u, dialog.lpfnHook(window, WM_NOTIFY, 0, reinterpret_cast<LPARAM>(&notification)));
}

TEST_P(FileDialogSystemTest, TheHelpButtonCallsTheHelpEngine) {
  EXPECT_OK(dialog_.Let(L"HelpButton", {true}));
  EXPECT_OK(dialog_.Let(L"HelpFile", {L"C:\\a.hlp"}));
  EXPECT_OK(dialog_.Let(L"HelpKey", {L"key"}));
  EXPECT_OK(dialog_.Let(L"HelpContext", {77}));
  for (const int command : {1, 2, 3, 4, 5, 8, 9}) {
    EXPECT_OK(dialog_.Let(L"HelpCommand", {command}));
    EXPECT_OK(ShowOpen([](OPENFILENAMEW& dialog) { return Notify(dialog, CDN_HELP), true; }));
    ASSERT_EQ(1u, helps.size());
    EXPECT_EQ(L"C:\\a.hlp", helps[0].file);
    EXPECT_EQ(static_cast<UINT>(command), helps[0].command);
    EXPECT_EQ(77u, helps[0].data);
    helps.clear();
  }
}

TEST_P(FileDialogSystemTest, HelpCommandsForKeysGetTheKey) {
  EXPECT_OK(dialog_.Let(L"HelpButton", {true}));
  EXPECT_OK(dialog_.Let(L"HelpKey", {L"key"}));
  answer_save = [this](OPENFILENAMEW& dialog) {
    EXPECT_OK(dialog_.Let(L"HelpKey", {L"another"}));  // too late for this dialog
    Notify(dialog, CDN_HELP);
    EXPECT_EQ(L"key", Text(reinterpret_cast<const wchar_t*>(helps.at(0).data)));
    EXPECT_OK(dialog_.Let(L"HelpKey", {L"key"}));
    return true;
  };
  for (const int command : {257, 258, 261}) {
    EXPECT_OK(dialog_.Let(L"HelpCommand", {command}));
    EXPECT_OK(dialog_.Call(L"ShowSave"));
    ASSERT_EQ(1u, helps.size());
    EXPECT_EQ(L"(null)", helps[0].file);
    EXPECT_EQ(static_cast<UINT>(command), helps[0].command);
    helps.clear();
  }
}

TEST_P(FileDialogSystemTest, OtherMessagesOfTheDialogPassBy) {
  EXPECT_OK(dialog_.Let(L"HelpButton", {true}));
  EXPECT_OK(ShowOpen([](OPENFILENAMEW& dialog) {
    Notify(dialog, CDN_INITDONE);
    Notify(dialog, CDN_FILEOK);
    EXPECT_EQ(0u, dialog.lpfnHook(nullptr, WM_INITDIALOG, 0, reinterpret_cast<LPARAM>(&dialog)));
    EXPECT_EQ(0u, dialog.lpfnHook(nullptr, WM_COMMAND, IDOK, 0));
    return true;
  }));
  EXPECT_TRUE(helps.empty());
}

RUN_IN_BOTH_BINDINGS(FileDialogSystemTest);

}  // namespace
