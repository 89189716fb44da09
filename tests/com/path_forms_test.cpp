// Every form of path means to every member what it means to the platform.
#include <windows.h>

#include "com/both_roots.h"
#include "com/directory_keeper.h"
#include "com/temporary_folder.h"

namespace {

using client::Object;
using client::Outcome;

class PathFormsTest : public BothRoots {
 protected:
  void SetUp() override {
    folder_.Directory(L"inner");
    folder_.File(L"a.txt", "content");
    folder_.File(L"a.ini", "[one]\r\nkey=value\r\n");
    SetCurrentDirectoryW(folder_.path().c_str());
  }
  /// The forms that name a thing of the folder, whether or not the platform knows them.
  std::vector<std::wstring> FormsOf(const std::wstring& name) const {
    return {folder_ / name,
            L"\\\\?\\" + folder_ / name,
            L"\\\\.\\" + folder_ / name,
            name,
            L".\\" + name,
            L"inner\\..\\" + name,
            L"nowhere\\..\\" + name,
            L".\\.\\inner\\.\\..\\" + name,
            name + L".",
            name + L" ",
            name + L". . ",
            name + L"::$DATA",
            name + L":stream",
            name + L"\\",
            name + L"\\.",
            L" " + name,
            folder_.path() + L"\\\\" + name,
            L"\\\\?\\" + folder_ / L"inner\\..\\" + name,
            folder_.path().substr(0, 2) + name,
            L"\\\\localhost\\nowhere\\" + name};
  }
  static std::vector<std::wstring> Devices() {
    return {L"NUL", L"nul.txt", L"inner\\NUL", L"\\\\.\\NUL", L"COM9", L"LPT1", L"CON.", L"PIPE\\"};
  }
  std::vector<std::wstring> EveryForm(const std::wstring& name) const {
    auto forms = FormsOf(name);
    for (const std::wstring& each : Devices()) forms.push_back(each);
    return forms;
  }

  static DWORD Attributes(const std::wstring& path) { return GetFileAttributesW(path.c_str()); }
  static bool IsDirectory(const std::wstring& path) {
    const DWORD found = Attributes(path);
    return found != INVALID_FILE_ATTRIBUTES && (found & FILE_ATTRIBUTE_DIRECTORY);
  }
  /// Whether the platform opens a path as a file that has a length.
  static bool Opens(const std::wstring& path) {
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                    OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    LARGE_INTEGER length;
    const bool opens = file != INVALID_HANDLE_VALUE && GetFileSizeEx(file, &length);
    if (file != INVALID_HANDLE_VALUE) CloseHandle(file);
    return opens;
  }
  static std::string Narrow(const std::wstring& text) { return {text.begin(), text.end()}; }

  const TemporaryFolder folder_;
  const DirectoryKeeper directory_;
};

TEST_P(PathFormsTest, FilesAndDirectoriesAreWhatThePlatformSays) {
  for (const wchar_t* name : {L"a.txt", L"inner", L"missing"}) {
    for (const std::wstring& path : EveryForm(name)) {
      SCOPED_TRACE(Narrow(path));
      const bool directory = IsDirectory(path);
      EXPECT_EQ(root_.Call(L"IsValidDir", {path}), directory);
      EXPECT_EQ(root_.Call(L"IsValidFile", {path}),
                !directory && Attributes(path) != INVALID_FILE_ATTRIBUTES);
    }
  }
}

TEST_P(PathFormsTest, DocumentsOpenWhatThePlatformOpens) {
  const Object document(component::Create<IDispatch>(CLSID_DocHand).Get(), root_.binding());
  int opened = 0;
  for (const std::wstring& path : EveryForm(L"a.txt")) {
    SCOPED_TRACE(Narrow(path));
    const Outcome outcome = document.Call(L"OpenFile", {path, true});
    EXPECT_EQ(Opens(path), outcome.ok()) << outcome;
    if (outcome.ok()) ++opened;
    EXPECT_EQ(document.Get(L"Opened"), outcome.ok());
    if (outcome.ok()) {
      EXPECT_OK(document.Call(L"CloseFile"));
    }
  }
  EXPECT_LE(8, opened);
}

TEST_P(PathFormsTest, DocumentsAreWrittenWhereThePlatformWrites) {
  const Object document(component::Create<IDispatch>(CLSID_DocHand).Get(), root_.binding());
  EXPECT_OK(document.GetObject(L"Content").Let(L"DataString", {L"saved"}));
  for (const std::wstring& path : FormsOf(L"b.txt")) {
    SCOPED_TRACE(Narrow(path));
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_NEW,
                                    FILE_FLAG_DELETE_ON_CLOSE, nullptr);
    const bool writable = file != INVALID_HANDLE_VALUE;
    if (writable) CloseHandle(file);
    EXPECT_EQ(writable, document.Call(L"SaveAs", {path}).ok());
    if (writable) {
      EXPECT_OK(document.Call(L"CloseFile"));
      EXPECT_TRUE(Opens(path));
      EXPECT_TRUE(DeleteFileW(path.c_str()));
    }
  }
}

TEST_P(PathFormsTest, DirectoriesAreMadeWhereThePlatformMakesThem) {
  for (const std::wstring& path : FormsOf(L"made")) {
    SCOPED_TRACE(Narrow(path));
    const Outcome outcome = root_.Call(L"MakeDir", {path});
    EXPECT_EQ(outcome, IsDirectory(path));
    RemoveDirectoryW(path.c_str());
    RemoveDirectoryW((folder_ / L"made").c_str());
  }
}

TEST_P(PathFormsTest, NothingIsCutOffAtANul) {
  const std::wstring nul(1, L'\0');
  const std::wstring path = folder_ / L"a.txt" + nul + L".bak", ini = folder_ / L"a.ini" + nul;
  const Object document(component::Create<IDispatch>(CLSID_DocHand).Get(), root_.binding());
  EXPECT_EQ(52, document.Call(L"OpenFile", {path, true}).number);
  EXPECT_EQ(52, document.Call(L"SaveAs", {path}).number);
  EXPECT_EQ(root_.Call(L"IsValidFile", {path}), false);
  EXPECT_EQ(root_.Call(L"IsValidDir", {folder_ / L"inner" + nul}), false);
  EXPECT_EQ(root_.Call(L"MakeDir", {folder_ / L"made" + nul + L"\\x"}), false);
  EXPECT_FALSE(folder_.Has(L"made"));
  EXPECT_FALSE(root_.Get(L"IniEntry", {ini, L"one", L"key"}).ok());
  EXPECT_OK(root_.Let(L"IniEntry", {ini, L"one", L"key", L"other"}));  // refused, unreported
  EXPECT_FALSE(root_.Let(L"LogFile", {path}).ok() && root_.Call(L"LogText", {L"x"}).ok());
  EXPECT_EQ("content", folder_.Read(L"a.txt"));
  EXPECT_EQ("[one]\r\nkey=value\r\n", folder_.Read(L"a.ini"));
}

RUN_WITH_BOTH_ROOTS(PathFormsTest);

}  // namespace
