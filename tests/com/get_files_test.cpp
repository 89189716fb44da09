// GetFiles: what it lists, in which order, and where it puts it.
#include <algorithm>
#include <functional>
#include <utility>

#include "com/both_roots.h"
#include "com/import_hook.h"
#include "com/temporary_folder.h"

DECLARE_IMPORT(FindFirstFileExW, 24);

namespace {

using client::Binding;
using client::Outcome;
using client::Value;
using Texts = std::vector<std::wstring>;

/// A client's variable for an array of strings.
class TextVariable {
 public:
  TextVariable() = default;
  explicit TextVariable(SAFEARRAY* array) : array_(array) {}
  ~TextVariable() { SafeArrayDestroy(array_); }
  TextVariable(const TextVariable&) = delete;
  TextVariable& operator=(const TextVariable&) = delete;

  Value Reference() {
    VARIANT reference;
    reference.vt = VT_BYREF | VT_ARRAY | VT_BSTR;
    reference.pparray = &array_;
    return Value(reference);
  }

  SAFEARRAY* array() const { return array_; }
  SAFEARRAY** address() { return &array_; }

  /// What GetFiles put there: an array of strings from 0.
  Texts Read() const {
    Texts texts;
    if (!array_) return texts;
    VARTYPE type = VT_EMPTY;
    EXPECT_EQ(S_OK, SafeArrayGetVartype(array_, &type));
    EXPECT_EQ(VT_BSTR, type);
    EXPECT_EQ(1, array_->cDims);
    EXPECT_EQ(0, array_->rgsabound[0].lLbound);
    for (ULONG i = 0; i < array_->rgsabound[0].cElements; ++i) {
      BSTR text = static_cast<BSTR*>(array_->pvData)[i];
      texts.emplace_back(text, SysStringLen(text));
    }
    return texts;
  }

 private:
  SAFEARRAY* array_ = nullptr;
};

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

class GetFilesTest : public BothRoots {
 protected:
  Outcome Call(const std::wstring& path, const std::wstring& spec, const Value& files,
               bool recursive) const {
    return root_.Call(L"GetFiles", {path, spec, files, recursive});
  }

  /// Lists into a new variable; the result must be the number of files.
  Texts List(const std::wstring& path, const std::wstring& spec, bool recursive = false) const {
    TextVariable files;
    const Outcome outcome = Call(path, spec, files.Reference(), recursive);
    const Texts texts = files.Read();
    EXPECT_EQ(outcome, static_cast<int>(texts.size()));
    return texts;
  }

  Texts In(std::wstring_view directory, const Texts& names) const {
    Texts paths;
    for (const std::wstring& name : names) {
      paths.push_back((folder_ / directory).append(name));
    }
    return paths;
  }

  /// What a listing of a tree means, step by step.
  void ListStepByStep(const std::wstring& directory, const std::wstring& spec, Texts* all) const {
    const Texts files = List(directory, spec);
    all->insert(all->end(), files.begin(), files.end());
    for (short i = 1;; ++i) {
      const Outcome name = root_.Call(L"GetSubDir", {directory, i});
      if (!name.ok() || name == L"") return;
      ListStepByStep(directory + name.value.raw().bstrVal + L"\\", spec, all);
    }
  }

  TemporaryFolder folder_;
};

Texts Sorted(Texts texts) {
  std::sort(texts.begin(), texts.end());
  return texts;
}

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

TEST_P(GetFilesTest, NothingFoundLeavesTheArrayAlone) {
  folder_.Directory(L"empty");
  TextVariable files(SafeArrayCreateVector(VT_BSTR, 5, 2)), none;
  static_cast<BSTR*>(files.array()->pvData)[0] = SysAllocString(L"kept");
  SAFEARRAY* before = files.array();
  for (const bool recursive : {false, true}) {
    for (const wchar_t* spec : {L"*", L"*.*", L"*.txt"}) {
      EXPECT_EQ(Call(folder_.path(), spec, files.Reference(), recursive), 0);
      EXPECT_EQ(Call(folder_.path(), spec, none.Reference(), recursive), 0);
    }
  }
  EXPECT_EQ(files.array(), before);
  EXPECT_EQ(5, before->rgsabound[0].lLbound);
  EXPECT_EQ(std::wstring(L"kept"), static_cast<BSTR*>(before->pvData)[0]);
  EXPECT_EQ(none.array(), nullptr);
}

TEST_P(GetFilesTest, ReplacesWhateverArrayThereWas) {
  folder_.File(L"a.txt");
  TextVariable longer(SafeArrayCreateVector(VT_BSTR, -3, 50));
  static_cast<BSTR*>(longer.array()->pvData)[0] = SysAllocString(L"old");
  SAFEARRAYBOUND bounds[] = {{2, 1}, {3, 1}};
  TextVariable matrix(SafeArrayCreate(VT_BSTR, 2, bounds));
  TextVariable empty(SafeArrayCreateVector(VT_BSTR, 0, 0));
  for (TextVariable* files : {&longer, &matrix, &empty}) {
    EXPECT_EQ(Call(folder_.path(), L"*", files->Reference(), false), 1);
    EXPECT_EQ(files->Read(), In(L"", {L"a.txt"}));
  }
}

TEST_P(GetFilesTest, EveryCallStartsFromNothing) {
  folder_.File(L"a.txt");
  folder_.File(L"b.txt");
  TextVariable files;
  EXPECT_EQ(Call(folder_.path(), L"*", files.Reference(), true), 2);
  EXPECT_EQ(Call(folder_ / L"missing", L"*", files.Reference(), true), -1);
  EXPECT_EQ(Call(folder_.path(), L"b.*", files.Reference(), true), 1);
  EXPECT_EQ(files.Read(), In(L"", {L"b.txt"}));
}

TEST_P(GetFilesTest, LockedAndFixedArraysAreRefused) {
  folder_.File(L"a.txt");
  TextVariable files(SafeArrayCreateVector(VT_BSTR, 1, 2));
  SAFEARRAY* before = files.array();
  const auto expect_refusal = [&] {
    const Outcome refused = Call(folder_.path(), L"*", files.Reference(), false);
    if (root_.binding() == Binding::kVtable) {
      EXPECT_ERROR(refused, 10, std::wstring(L"Zepkit10.") + RootName(),
                   L"This array is fixed or temporarily locked");
    } else {
      EXPECT_EQ(DISP_E_ARRAYISLOCKED, refused.result);  // hosts say 10
    }
    EXPECT_EQ(before, files.array());
    EXPECT_EQ(1, before->rgsabound[0].lLbound);
    EXPECT_EQ(nullptr, static_cast<BSTR*>(before->pvData)[0]);
  };
  SafeArrayLock(before);
  expect_refusal();
  SafeArrayUnlock(before);
  for (const USHORT feature : {FADF_FIXEDSIZE, FADF_STATIC, FADF_AUTO, FADF_EMBEDDED}) {
    before->fFeatures |= feature;
    expect_refusal();
    before->fFeatures &= static_cast<USHORT>(~feature);
  }
  EXPECT_EQ(Call(folder_.path(), L"*", files.Reference(), false), 1);
}

TEST_P(GetFilesTest, NothingFoundAsksNothingOfTheArray) {
  if (root_.binding() == Binding::kDispatch) return;  // refused before the member is called
  TextVariable files(SafeArrayCreateVector(VT_BSTR, 1, 2));
  SafeArrayLock(files.array());
  files.array()->fFeatures |= FADF_FIXEDSIZE;
  EXPECT_EQ(Call(folder_.path(), L"*", files.Reference(), true), 0);
  EXPECT_EQ(Call(folder_ / L"missing", L"*", files.Reference(), true), -1);
  files.array()->fFeatures &= static_cast<USHORT>(~FADF_FIXEDSIZE);
  SafeArrayUnlock(files.array());
}

TEST_P(GetFilesTest, FillsTheVariableOfAScript) {
  if (root_.binding() == Binding::kVtable) return;  // only late-bound clients have one
  folder_.File(L"a.txt");
  folder_.File(L"b.txt");
  Value files;
  EXPECT_EQ(Call(folder_.path(), L"*", files.Reference(), false), 2);
  for (const wchar_t* spec : {L"*", L"b.*"}) {  // the second time it is an array
    const Outcome count = Call(folder_.path(), spec, files.Reference(), false);
    ASSERT_EQ(VT_ARRAY | VT_VARIANT, files.type());
    EXPECT_EQ(count, static_cast<int>(files.raw().parray->rgsabound[0].cElements));
    EXPECT_EQ(0, files.raw().parray->rgsabound[0].lLbound);
  }
  EXPECT_EQ(*static_cast<VARIANT*>(files.raw().parray->pvData)->bstrVal, folder_.path()[0]);
  EXPECT_EQ(Value(*static_cast<VARIANT*>(files.raw().parray->pvData)), folder_ / L"b.txt");
}

TEST_P(GetFilesTest, NothingFoundLeavesTheVariableOfAScriptAlone) {
  if (root_.binding() == Binding::kVtable) return;  // only late-bound clients have one
  Value files;
  EXPECT_EQ(Call(folder_.path(), L"*", files.Reference(), false), 0);
  EXPECT_EQ(Call(folder_ / L"nowhere", L"*", files.Reference(), false), -1);
  EXPECT_EQ(VT_EMPTY, files.type());
}

TEST_P(GetFilesTest, AnArrayOfAnotherTypeIsRefused) {
  folder_.File(L"a.txt");
  Microsoft::WRL::ComPtr<_Library> library;
  if (FAILED(root_.get()->QueryInterface(IID_PPV_ARGS(&library)))) return;
  TextVariable numbers(SafeArrayCreateVector(VT_I4, 0, 1));
  SAFEARRAY* before = numbers.array();
  long count = 5;
  EXPECT_EQ(static_cast<HRESULT>(0x800A000D),
            library->GetFiles(Value(folder_.path()).raw().bstrVal, nullptr, numbers.address(),
                              VARIANT_FALSE, &count));
  EXPECT_EQ(0, count);
  EXPECT_EQ(before, numbers.array());
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
  if (root_.binding() == Binding::kVtable || RootName() != std::wstring_view(L"Global")) return;
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
