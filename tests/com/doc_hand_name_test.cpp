// DocHand: names of files, and titles made from them.
#include "com/doc_hand_fixture.h"

namespace {

using DocHandNameTest = WithDocument;

TEST_P(DocHandNameTest, NamesMayBeLong) {
  const std::wstring folder = folder_.Nest(std::wstring(100, L'd'), 3), path = folder + L"\\a.txt";
  ASSERT_GT(path.size(), std::size_t{MAX_PATH});
  EXPECT_OK(Put("text"));
  EXPECT_OK(SaveAs(path));
  EXPECT_EQ(document_.Get(L"FileName"), path);
  EXPECT_EQ(document_.Get(L"FileTitle"), L"a.txt");
  EXPECT_OK(Put("other"));
  EXPECT_OK(Save());
  EXPECT_OK(Close());
  EXPECT_OK(Put(""));
  EXPECT_OK(Open(path, true));
  EXPECT_EQ(Bytes(), "other");
}

TEST_P(DocHandNameTest, NamesMayHaveAllCharacters) {
  const std::wstring name = L"\u4e2d\u6587 \u0416 \u00e4\U0001F600.\u0101";
  folder_.File(name, "text");
  Listen();
  EXPECT_OK(Open(folder_ / name));
  EXPECT_EQ(FileOpen(folder_ / name), Heard().back());
  EXPECT_EQ(document_.Get(L"FileTitle"), name);
  EXPECT_EQ(Bytes(), "text");
  EXPECT_OK(Save());
  EXPECT_EQ(folder_.Read(name), "text");
}

TEST_P(DocHandNameTest, NamesMayBeRelative) {
  wchar_t before[MAX_PATH];
  GetCurrentDirectoryW(MAX_PATH, before);
  SetCurrentDirectoryW(folder_.path().c_str());
  EXPECT_OK(Put("text"));
  EXPECT_OK(SaveAs(L"a.txt"));
  EXPECT_EQ(document_.Get(L"FileName"), L"a.txt");
  EXPECT_EQ(document_.Get(L"FileTitle"), L"a.txt");
  SetCurrentDirectoryW(before);
  EXPECT_EQ(folder_.Read(L"a.txt"), "text");
}

TEST_P(DocHandNameTest, TheTitleEndsBeforeAQuote) {
  for (const auto& [name, title] : {std::pair{LR"(missing\folder\a.txt")", L"a.txt"},
                                    {LR"(missing\"a.txt"")", LR"("a.txt")"},
                                    {LR"(missing\)", L""},
                                    {LR"(missing\")", L""},
                                    {L"missing/a.txt", L"missing/a.txt"}}) {
    const std::wstring path = name == std::wstring(L"missing/a.txt") ? name : folder_ / name;
    EXPECT_ZEP_ERROR(Open(path, true), zepErrOpenFile, L"DocHand");
    EXPECT_EQ(document_.Get(L"FileName"), path);
    EXPECT_EQ(document_.Get(L"FileTitle"), title);
  }
}

TEST_P(DocHandNameTest, NamesHoldNoNul) {
  folder_.File(L"a.txt", "text");
  EXPECT_OK(Open(path_));
  Listen();
  for (const std::wstring& name :
       {path_ + std::wstring(L"\0", 1), path_ + std::wstring(L"\0x", 2), std::wstring(L"\0", 1)}) {
    EXPECT_RUNTIME_ERROR(Open(name), 52, L"Bad file name or number");
    EXPECT_RUNTIME_ERROR(Open(name, true), 52, L"Bad file name or number");
    EXPECT_RUNTIME_ERROR(SaveAs(name), 52, L"Bad file name or number");
  }
  EXPECT_EQ(Events{}, Heard());
  ExpectFlags(false, true, false, false);
  EXPECT_EQ(document_.Get(L"FileName"), path_);
}

/// The list of an empty name has no last part, and what fails there leaves the events frozen.
TEST_P(DocHandNameTest, AnEmptyNameFreezesTheEvents) {
  folder_.File(L"a.txt", Pattern(2048));
  EXPECT_OK(document_.Let(L"Changed", {true}));
  Listen();
  EXPECT_ZEP_ERROR(Open(L""), zepErrIndexOutOfRange, L"List");
  EXPECT_OK(Open(path_));
  EXPECT_EQ(Bytes(), Pattern(2048));
  ExpectFlags(false, true, false, false);
  EXPECT_OK(Put("text"));
  ExpectFlags(false, true, false, true);
  EXPECT_OK(Save());
  ExpectFlags(false, true, false, false);
  EXPECT_OK(SaveAs(folder_ / L"b.txt"));
  EXPECT_OK(Update());
  EXPECT_OK(document_.Let(L"FileTitle", {L"title"}));
  EXPECT_EQ(document_.Get(L"FileTitle"), L"title");
  EXPECT_OK(Close());
  EXPECT_OK(document_.Call(L"NewFile"));
  EXPECT_EQ(Events{}, Heard());
  EXPECT_EQ(folder_.Read(L"a.txt"), "text");
  EXPECT_EQ(folder_.Read(L"b.txt"), "text");
}

RUN_IN_BOTH_BINDINGS(DocHandNameTest);

}  // namespace
