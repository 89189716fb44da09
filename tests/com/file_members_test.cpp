// The members of both roots that test and make directories.
#include "com/both_roots.h"
#include "com/temporary_folder.h"

namespace {

using client::Outcome;
using client::Value;

class FileMembersTest : public BothRoots {
 protected:
  Outcome SubDir(const std::wstring& path, int index) const {
    return root_.Call(L"GetSubDir", {path, static_cast<short>(index)});
  }
  Outcome IsDir(const std::wstring& path) const { return root_.Call(L"IsValidDir", {path}); }
  Outcome IsFile(const std::wstring& path) const { return root_.Call(L"IsValidFile", {path}); }
  Outcome Make(const std::wstring& path) const { return root_.Call(L"MakeDir", {path}); }

  TemporaryFolder folder_;
};

std::wstring WithNul(const std::wstring& path) { return path + std::wstring(L"\0x", 2); }

TEST_P(FileMembersTest, GetSubDirNamesEverySubdirectoryOnce) {
  folder_.File(L"file");
  folder_.File(L"zfile");
  for (const wchar_t* name : {L"b", L"a", L"c.d"}) folder_.Directory(name);
  std::vector<std::wstring> names, expected;
  for (int i = 1; i <= 3; ++i) {
    const Outcome name = SubDir(folder_.path(), i);
    ASSERT_EQ(VT_BSTR, name.value.type());
    names.emplace_back(name.value.raw().bstrVal);
  }
  WIN32_FIND_DATAW entry;  // the system's order
  HANDLE search = FindFirstFileW((folder_ / L"*").c_str(), &entry);
  do {
    if ((entry.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) && entry.cFileName[0] != L'.') {
      expected.emplace_back(entry.cFileName);
    }
  } while (FindNextFileW(search, &entry));
  FindClose(search);
  EXPECT_EQ(expected, names);
}

TEST_P(FileMembersTest, GetSubDirOutsideTheNumberOfSubdirectoriesIsEmpty) {
  folder_.Directory(L"only");
  EXPECT_EQ(SubDir(folder_.path(), 1), L"only");
  for (const int index : {0, -1, -32768, 2, 32767}) {
    EXPECT_EQ(SubDir(folder_.path(), index), L"") << index;
  }
  EXPECT_EQ(SubDir(folder_ / L"only", 1), L"");
}

TEST_P(FileMembersTest, GetSubDirTakesPathsWithAndWithoutBackslash) {
  folder_.Nest(L"d", 2);
  EXPECT_EQ(SubDir(folder_ / L"d", 1), L"d");
  EXPECT_EQ(SubDir(folder_ / L"d\\", 1), L"d");
}

TEST_P(FileMembersTest, GetSubDirOfNoPathIsOfTheRoot) {
  const Outcome first = SubDir(L"\\", 1);
  EXPECT_EQ(SubDir(L"", 1), first.value);
  EXPECT_NE(first.value, Value(L""));
}

TEST_P(FileMembersTest, GetSubDirCountsHiddenDirectories) {
  folder_.Directory(L"hidden");
  folder_.SetAttributes(L"hidden", FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
  EXPECT_EQ(SubDir(folder_.path(), 1), L"hidden");
}

TEST_P(FileMembersTest, GetSubDirOfWhatCannotBeListedIsEmpty) {
  folder_.File(L"file");
  folder_.Directory(L"d");
  EXPECT_EQ(SubDir(folder_ / L"missing", 1), L"");
  EXPECT_EQ(SubDir(folder_ / L"file", 1), L"");
  EXPECT_EQ(SubDir(folder_ / L"a|b<>", 1), L"");
  EXPECT_EQ(SubDir(WithNul(folder_.path()), 1), L"");
}

TEST_P(FileMembersTest, IsValidDirAndIsValidFileTellThemApart) {
  const std::wstring file = folder_.File(L"file.txt"), directory = folder_.Directory(L"d");
  EXPECT_EQ(IsFile(file), true);
  EXPECT_EQ(IsDir(file), false);
  EXPECT_EQ(IsDir(directory), true);
  EXPECT_EQ(IsDir(directory + L"\\"), true);
  EXPECT_EQ(IsFile(directory), false);
  EXPECT_EQ(IsFile(directory + L"\\"), false);
  EXPECT_EQ(IsDir(folder_.path().substr(0, 3)), true);  // a drive's root
}

TEST_P(FileMembersTest, AttributesOfOtherKindsDoNotMatter) {
  constexpr DWORD kAll = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM | FILE_ATTRIBUTE_READONLY;
  const std::wstring file = folder_.File(L"file"), directory = folder_.Directory(L"d");
  folder_.SetAttributes(L"file", kAll);
  folder_.SetAttributes(L"d", kAll);
  EXPECT_EQ(IsFile(file), true);
  EXPECT_EQ(IsDir(directory), true);
}

TEST_P(FileMembersTest, WhatDoesNotExistIsNeither) {
  folder_.File(L"file");
  for (const std::wstring& path :
       {folder_ / L"missing", folder_ / L"missing\\more", folder_ / L"file\\below", folder_ / L"*",
        folder_ / L"fil?", folder_ / L"a|b", std::wstring(), WithNul(folder_.path()),
        WithNul(folder_ / L"file"), std::wstring(40000, L'x'), std::wstring(L"Q:\\x")}) {
    EXPECT_EQ(IsDir(path), false);
    EXPECT_EQ(IsFile(path), false);
  }
}

TEST_P(FileMembersTest, MakeDirMakesEveryMissingParent) {
  const std::wstring path = folder_ / L"a\\b\\c";
  EXPECT_EQ(Make(path), true);
  for (const wchar_t* made : {L"a", L"a\\b", L"a\\b\\c"}) EXPECT_EQ(IsDir(folder_ / made), true);
  EXPECT_EQ(Make(path), true);  // it exists
  EXPECT_EQ(Make(path + L"\\"), true);
  EXPECT_EQ(Make(folder_ / L"a\\\\b\\\\d"), true);
  EXPECT_EQ(IsDir(folder_ / L"a\\b\\d"), true);
}

TEST_P(FileMembersTest, MakeDirStopsAtTheFirstFailure) {
  folder_.File(L"file");
  EXPECT_EQ(Make(folder_ / L"file"), false);
  EXPECT_EQ(Make(folder_ / L"file\\below"), false);
  EXPECT_EQ(Make(folder_ / L"made\\a|b\\more"), false);
  EXPECT_EQ(IsDir(folder_ / L"made"), true);  // what was made so far stays
  EXPECT_EQ(SubDir(folder_ / L"made", 1), L"");
}

TEST_P(FileMembersTest, MakeDirRefusesWhatIsNoPath) {
  EXPECT_EQ(Make(L""), false);
  EXPECT_EQ(Make(L"Q:"), false);
  EXPECT_EQ(Make(L"Q:\\x"), false);
  EXPECT_EQ(Make(WithNul(folder_ / L"d")), false);
  EXPECT_EQ(Make(WithNul(folder_ / L"d") + L"\\e"), false);
  EXPECT_EQ(folder_.Has(L"d"), false);
}

TEST_P(FileMembersTest, MakeDirStartsBelowTheRoot) {
  const std::wstring below = folder_.path().substr(2);  // without the drive
  wchar_t old[MAX_PATH];
  GetCurrentDirectoryW(MAX_PATH, old);
  SetCurrentDirectoryW(folder_.path().c_str());
  EXPECT_EQ(Make(below + L"rooted\\a"), true);
  EXPECT_EQ(Make(L"relative\\b"), true);
  EXPECT_EQ(Make(L"\\"), true);
  SetCurrentDirectoryW(old);
  EXPECT_EQ(Make(L"\\\\?\\" + folder_.path() + L"verbatim\\c"), true);
  for (const wchar_t* made : {L"rooted\\a", L"relative\\b", L"verbatim\\c"}) {
    EXPECT_EQ(IsDir(folder_ / made), true) << made;
  }
  EXPECT_EQ(Make(folder_.path().substr(0, 3)), true);
  EXPECT_EQ(Make(L"\\\\nohost.invalid\\share"), false);
  EXPECT_EQ(Make(L"\\\\nohost.invalid\\share\\d"), false);
  EXPECT_EQ(Make(L"\\\\?\\UNC\\nohost.invalid\\share\\d"), false);
}

TEST_P(FileMembersTest, TakeLongPathsAndAnyName) {
  std::wstring path = folder_ / L"\u2603 \u4e2d\u6587 \xd83d\xde00";
  for (int i = 0; i < 8; ++i) path.append(L"\\").append(100, L'd');
  EXPECT_EQ(Make(path), true);
  EXPECT_EQ(IsDir(path), true);
  EXPECT_EQ(IsDir(path + L"\\.."), true);
  EXPECT_EQ(IsFile(path), false);
  const std::wstring file = path + L"\\\u4e2d.txt";
  folder_.File(file.substr(folder_.path().size()));
  EXPECT_EQ(IsFile(file), true);
  EXPECT_EQ(IsFile(L"\\\\?\\" + file), true);
  EXPECT_EQ(IsDir(file), false);
  EXPECT_EQ(SubDir(folder_.path(), 1), L"\u2603 \u4e2d\u6587 \xd83d\xde00");
  EXPECT_EQ(SubDir(path + L"\\..", 1), std::wstring(100, L'd'));
  EXPECT_EQ(Make(path), true);
}

TEST_P(FileMembersTest, MakeDirGoesDeep) {
  // This takes its time, and one way to call it will do.
  if (root_.binding() == client::Binding::kVtable) return;
  if (RootName() != std::wstring_view(L"Global")) return;
  std::wstring path = folder_.path();
  for (int i = 0; i < 300; ++i) path += L"deep\\";
  EXPECT_EQ(Make(path), true);
  EXPECT_EQ(IsDir(path), true);
}

RUN_WITH_BOTH_ROOTS(FileMembersTest);

}  // namespace
