// GetFiles: what it lists, and in which order.
#include <algorithm>
#include <functional>
#include <utility>

#include "com/get_files_fixture.h"
#include "com/import_hook.h"

DECLARE_IMPORT(FindFirstFileExW, 24);

namespace {

using client::Outcome;

/// Counts the listings that the linked component starts, and may do something before each.
class ListingCount {
 public:
  ~ListingCount() { before_ = nullptr; }

  int Take() { return std::exchange(count_, 0); }
  void Before(std::function<void(std::wstring_view)> action) { before_ = std::move(action); }

 private:
  using Hook = ImportHook<&__imp_FindFirstFileExW>;

  static HANDLE WINAPI Count(LPCWSTR name, FINDEX_INFO_LEVELS level, void* entry,
                             FINDEX_SEARCH_OPS operation, void* filter, DWORD flags) {
    ++count_;
    if (before_) before_(name);
    return Hook::kSystem(name, level, entry, operation, filter, flags);
  }

  static inline int count_ = 0;
  static inline std::function<void(std::wstring_view)> before_;
  const Hook hook_{Count};
};

class GetFilesTest : public WithListing {};

TEST_P(GetFilesTest, ListsADirectoryOrATree) {
  folder_.File(L"a.txt");
  folder_.File(L"a.doc");
  folder_.Directory(L"sub");
  folder_.File(L"sub\\b.txt");
  EXPECT_EQ(List(folder_.path(), L"*.txt", true), In(L"", {L"a.txt", L"sub\\b.txt"}));
  EXPECT_EQ(List(folder_.path(), L"*.txt", false), In(L"", {L"a.txt"}));
}

TEST_P(GetFilesTest, TheBackslashAtTheEndMayBeMissing) {
  folder_.Directory(L"sub");
  folder_.File(L"sub\\a.txt");
  EXPECT_EQ(List(folder_ / L"sub", L"*"), In(L"sub\\", {L"a.txt"}));
  EXPECT_EQ(List(folder_ / L"sub\\", L"*"), In(L"sub\\", {L"a.txt"}));
}

TEST_P(GetFilesTest, KeepsTheOrderOfTheSystemFilesFirst) {
  for (const wchar_t* name : {L"m", L"a", L"z", L"a\\x", L"a\\b", L"a\\b\\c", L"m\\q"}) {
    folder_.Directory(name);
    for (const wchar_t* file : {L"\\9.txt", L"\\0.txt", L"\\n.doc", L"\\k.txt"}) {
      folder_.File(name + std::wstring(file));
    }
  }
  folder_.File(L"top.txt");
  folder_.File(L"zz.txt");
  for (const wchar_t* spec : {L"*.txt", L"*.*", L"*", L"?.doc", L"none"}) {
    Texts expected;
    ListStepByStep(folder_.path(), spec, &expected);
    EXPECT_EQ(List(folder_.path(), spec, true), expected) << spec;
  }
}

TEST_P(GetFilesTest, ListsNormalFilesOnly) {
  folder_.Directory(L"directory.txt");
  for (const wchar_t* name :
       {L"plain.txt", L"archive.txt", L"read.txt", L"hidden.txt", L"system.txt", L"both.txt"}) {
    folder_.File(name);
  }
  folder_.SetAttributes(L"archive.txt", FILE_ATTRIBUTE_ARCHIVE);
  folder_.SetAttributes(L"read.txt", FILE_ATTRIBUTE_READONLY);
  folder_.SetAttributes(L"hidden.txt", FILE_ATTRIBUTE_HIDDEN);
  folder_.SetAttributes(L"system.txt", FILE_ATTRIBUTE_SYSTEM);
  folder_.SetAttributes(L"both.txt", FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
  for (const wchar_t* spec : {L"*.txt", L"*"}) {
    EXPECT_EQ(Sorted(List(folder_.path(), spec, true)),
              In(L"", {L"archive.txt", L"plain.txt", L"read.txt"}));
  }
}

TEST_P(GetFilesTest, EntersHiddenDirectories) {
  folder_.Directory(L"sub");
  folder_.File(L"sub\\a.txt");
  folder_.SetAttributes(L"sub", FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM);
  EXPECT_EQ(List(folder_.path(), L"*.txt", true), In(L"sub\\", {L"a.txt"}));
}

TEST_P(GetFilesTest, PatternsAreTheSystems) {
  for (const wchar_t* name : {L"a.txt", L"bb.txt", L"c.doc", L"plain"}) folder_.File(name);
  const auto names = [&](const wchar_t* spec) { return Sorted(List(folder_.path(), spec)); };
  EXPECT_EQ(names(L"*"), In(L"", {L"a.txt", L"bb.txt", L"c.doc", L"plain"}));
  EXPECT_EQ(names(L"*.*"), In(L"", {L"a.txt", L"bb.txt", L"c.doc", L"plain"}));
  EXPECT_EQ(names(L""), In(L"", {L"a.txt", L"bb.txt", L"c.doc", L"plain"}));
  EXPECT_EQ(names(L"?.txt"), In(L"", {L"a.txt"}));
  EXPECT_EQ(names(L"BB.TXT"), In(L"", {L"bb.txt"}));
  EXPECT_EQ(names(L"plain"), In(L"", {L"plain"}));
  EXPECT_EQ(names(L"*.none"), Texts{});
  EXPECT_EQ(names(L"."), Texts{});
}

// Without subdirectories a tree holds what the system finds in its one directory.
TEST_P(GetFilesTest, PatternsMeanTheSameInATree) {
  for (const wchar_t* name : {L"a",
                              L"ab",
                              L"a.b",
                              L"a.txt",
                              L"x.TXT",
                              L"b.htm",
                              L"page.html",
                              L"a.b.c",
                              L"readme",
                              L".hidden",
                              L"..x",
                              L"long file name.text",
                              L"\u00e4.\u00e4",
                              L"\u00c4.\u00c4\u00c4",
                              L"a b.c d",
                              L"[1].txt",
                              L"a~1.txt",
                              L"+x.y",
                              L"abcdefghi",
                              L"abcdefghi.t",
                              L"\u0131.I",
                              L"i.\u0131",
                              L"\u017f.s",
                              L"s.\u017f",
                              L"x.\u00df",
                              L"\xd83d\xde00.\xd83d\xde00"}) {
    folder_.File(name);
  }
  const std::wstring longest = L"*" + std::wstring(254, L'x'), too_long = longest + L"xx";
  for (const std::wstring& spec : {std::wstring(L"*.txt"),
                                   std::wstring(L"*.TXT"),
                                   std::wstring(L"*.htm"),
                                   std::wstring(L"*html"),
                                   std::wstring(L"*.tex"),
                                   std::wstring(L"*b"),
                                   std::wstring(L"*.c d"),
                                   std::wstring(L"* d"),
                                   std::wstring(L"*.\u00e4"),
                                   std::wstring(L"*\u00c4"),
                                   std::wstring(L"*.i"),
                                   std::wstring(L"*.\u0131"),
                                   std::wstring(L"*.S"),
                                   std::wstring(L"*.\u017f"),
                                   std::wstring(L"*ss"),
                                   std::wstring(L"*\xde00"),
                                   std::wstring(L"*]"),
                                   std::wstring(L"*].txt"),
                                   std::wstring(L"*~1.txt"),
                                   std::wstring(L"*0"),
                                   std::wstring(L"*..x"),
                                   std::wstring(L"*.txt."),
                                   std::wstring(L"*.txt "),
                                   std::wstring(L"*."),
                                   std::wstring(L"*.."),
                                   std::wstring(L"**"),
                                   std::wstring(L"*.t?t"),
                                   std::wstring(L"*.*t"),
                                   std::wstring(L"**.txt"),
                                   std::wstring(L"*?"),
                                   std::wstring(L"a*"),
                                   std::wstring(L"*.<"),
                                   std::wstring(L"*|"),
                                   std::wstring(L"*>"),
                                   std::wstring(L"*\""),
                                   std::wstring(L"*:x"),
                                   std::wstring(L"*\x1"),
                                   std::wstring(L"*\\a"),
                                   std::wstring(L"*/a"),
                                   std::wstring(L"?"),
                                   std::wstring(L"a"),
                                   longest,
                                   too_long}) {
    TextVariable alone, tree;
    const Outcome expected = Call(folder_.path(), spec, alone.Reference(), false);
    EXPECT_EQ(Call(folder_.path(), spec, tree.Reference(), true), expected.value);
    EXPECT_EQ(tree.Read(), alone.Read());
  }
}

TEST_P(GetFilesTest, NamesFollowTheDirectoryWhateverThePatternSays) {
  folder_.Directory(L"sub");
  folder_.File(L"sub\\b.txt");
  EXPECT_EQ(List(folder_.path(), L"sub\\*.txt"), In(L"", {L"b.txt"}));
}

TEST_P(GetFilesTest, NoPathIsTheRootOfTheDrive) {
  EXPECT_EQ(List(L"", L"*"), List(L"\\", L"*"));
  EXPECT_EQ(Call(L"", L"*.zepkit10", TextVariable().Reference(), false), 0);
}

TEST_P(GetFilesTest, SubdirectoriesNeedNotMatch) {
  folder_.Nest(L"deep", 3);
  folder_.File(L"deep\\deep\\deep\\a.txt");
  EXPECT_EQ(List(folder_.path(), L"*.txt", true), In(L"deep\\deep\\deep\\", {L"a.txt"}));
  EXPECT_EQ(List(folder_.path(), L"*.txt", false), Texts{});
}

TEST_P(GetFilesTest, WhatCannotBeListedGivesMinusOne) {
  folder_.File(L"a.txt");
  folder_.Directory(L"sub");
  folder_.File(L"sub\\a.txt");
  TextVariable files(SafeArrayCreateVector(VT_BSTR, 1, 2));
  SAFEARRAY* before = files.array();
  const std::wstring with_nul = folder_.path() + std::wstring(L"\0", 1);
  for (const bool recursive : {false, true}) {
    EXPECT_EQ(Call(folder_ / L"missing", L"*", files.Reference(), recursive), -1);
    EXPECT_EQ(Call(folder_ / L"missing\\more", L"*.txt", files.Reference(), recursive), -1);
    EXPECT_EQ(Call(folder_ / L"a.txt", L"*", files.Reference(), recursive), -1);
    EXPECT_EQ(Call(folder_.path(), L"missing\\*.txt", files.Reference(), recursive), -1);
    EXPECT_EQ(Call(with_nul, L"*", files.Reference(), recursive), -1);
    EXPECT_EQ(Call(folder_.path(), std::wstring(L"*\0.txt", 6), files.Reference(), recursive), -1);
  }
  EXPECT_EQ(files.array(), before);
  EXPECT_EQ(2u, before->rgsabound[0].cElements);
}

TEST_P(GetFilesTest, ListsAnyName) {
  const std::wstring snowman = L"\u2603 \u4e2d\u6587 \xd83d\xde00";
  folder_.Directory(snowman);
  folder_.File(snowman + L"\\" + snowman + L".txt");
  EXPECT_EQ(List(folder_.path(), L"*.txt", true), In(snowman + L"\\", {snowman + L".txt"}));
  EXPECT_EQ(List(folder_ / snowman, snowman + L".*"), In(snowman + L"\\", {snowman + L".txt"}));
}

TEST_P(GetFilesTest, ListsLongPaths) {
  const std::wstring last = folder_.Nest(std::wstring(100, L'd'), 6);
  const std::wstring below = last.substr(folder_.path().size()) + L"\\";
  const std::wstring name = std::wstring(200, L'f') + L".txt";
  folder_.File(below + name);
  folder_.File(below + L"other.doc");
  EXPECT_EQ(List(folder_.path(), L"*.txt", true), In(below, {name}));
  EXPECT_EQ(List(last, L"*.txt"), In(below, {name}));
  EXPECT_EQ(List(last, L"*.txt "), In(below, {name}));
  EXPECT_EQ(List(last, L"other.doc."), In(below, {L"other.doc"}));
  EXPECT_EQ(List(last + L"\\..\\" + std::wstring(100, L'd'), L"*.doc").size(), 1u);
  EXPECT_EQ(List(L"\\\\?\\" + last, L"*.doc"), Texts{L"\\\\?\\" + last + L"\\other.doc"});
}

TEST_P(GetFilesTest, ListsDeepTrees) {
  // This takes its time, and one way to call it will do.
  if (root_.binding() == client::Binding::kVtable || RootName() != std::wstring_view(L"Global"))
    return;
  const std::wstring last = folder_.Nest(L"deep", 300);
  const std::wstring below = last.substr(folder_.path().size()) + L"\\";
  folder_.File(below + L"bottom.txt");
  folder_.File(L"top.txt");
  EXPECT_EQ(List(folder_.path(), L"*.txt", true), In(L"", {L"top.txt", below + L"bottom.txt"}));
}

TEST_P(GetFilesTest, TakesRelativePaths) {
  folder_.Directory(L"sub");
  folder_.File(L"sub\\a.txt");
  wchar_t old[MAX_PATH];
  GetCurrentDirectoryW(MAX_PATH, old);
  SetCurrentDirectoryW(folder_.path().c_str());
  EXPECT_EQ(List(L"sub", L"*"), Texts{L"sub\\a.txt"});
  EXPECT_EQ(List(L".", L"*", true), Texts{L".\\sub\\a.txt"});
  SetCurrentDirectoryW(old);
}

TEST_P(GetFilesTest, EntersLinksOnceAndNoLoops) {
  folder_.Directory(L"a");
  folder_.Directory(L"b");
  folder_.File(L"a\\1.txt");
  folder_.File(L"b\\2.txt");
  if (!folder_.Link(L"a\\self", L".")) GTEST_SKIP() << "no links here";
  ASSERT_TRUE(folder_.Link(L"a\\up", L".."));
  EXPECT_EQ(Sorted(List(folder_.path(), L"*.txt", true)), In(L"", {L"a\\1.txt", L"b\\2.txt"}));
  ASSERT_TRUE(folder_.Link(L"a\\to_b", L"..\\b"));
  ASSERT_TRUE(folder_.Link(L"b\\to_a", L"..\\a"));
  ASSERT_TRUE(folder_.Link(L"to_b", L"b"));
  const Texts files = List(folder_.path(), L"*.txt", true);
  EXPECT_EQ(1, std::count(files.begin(), files.end(), folder_ / L"a\\1.txt"));
  EXPECT_EQ(1, std::count(files.begin(), files.end(), folder_ / L"b\\2.txt"));
  EXPECT_EQ(1, std::count(files.begin(), files.end(), folder_ / L"a\\to_b\\2.txt"));
  EXPECT_EQ(0, std::count(files.begin(), files.end(), folder_ / L"to_b\\2.txt"));
}

TEST_P(GetFilesTest, ReadsNoFolderAgain) {
  if (!component::IsLinked()) return;
  constexpr int kFolders = 40;
  for (int i = 0; i < kFolders; ++i) {
    const std::wstring name = L"folder" + std::to_wstring(i);
    folder_.Directory(name);
    for (const wchar_t* file : {L"\\a.txt", L"\\b.txt", L"\\c.doc"}) folder_.File(name + file);
  }
  ListingCount listings;
  EXPECT_EQ(List(folder_.path(), L"*.*", true).size(), 3u * kFolders);
  EXPECT_EQ(kFolders + 1, listings.Take());
  EXPECT_EQ(List(folder_.path(), L"*.txt", true).size(), 2u * kFolders);
  EXPECT_EQ(kFolders + 1, listings.Take());
  EXPECT_EQ(List(folder_.path(), L"", true).size(), 3u * kFolders);
  EXPECT_EQ(kFolders + 1, listings.Take());
  // Of other patterns only the system knows what matches them: one listing for the files, and one
  // for the subdirectories.
  EXPECT_EQ(List(folder_.path(), L"?.txt", true).size(), 2u * kFolders);
  EXPECT_EQ(2 * (kFolders + 1), listings.Take());
  EXPECT_EQ(List(folder_.path(), L"*.txt", false).size(), 0u);
  EXPECT_EQ(1, listings.Take());
  EXPECT_EQ(Call(folder_ / L"missing", L"*.txt", TextVariable().Reference(), true), -1);
  EXPECT_EQ(1, listings.Take());
}

TEST_P(GetFilesTest, ChangesMeanwhileRaiseNothing) {
  if (!component::IsLinked()) return;
  for (const wchar_t* spec : {L"*", L"*.txt", L"?.txt"}) {
    for (const wchar_t* name : {L"a", L"b", L"c"}) {
      folder_.Directory(name);
      folder_.File(name + std::wstring(L"\\1.txt"));
    }
    ListingCount listings;
    bool removed = false;
    listings.Before([&](std::wstring_view name) {
      if (name.find(L"\\b\\") == name.npos || std::exchange(removed, true)) return;
      folder_.Remove(L"b");
    });
    EXPECT_EQ(Sorted(List(folder_.path(), spec, true)), In(L"", {L"a\\1.txt", L"c\\1.txt"}));
    EXPECT_TRUE(removed);
    for (const wchar_t* name : {L"a", L"c"}) folder_.Remove(name);
  }
}

RUN_WITH_BOTH_ROOTS(GetFilesTest);

}  // namespace
