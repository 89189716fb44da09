#include "doc/title.h"

#include <gtest/gtest.h>

#include "frame/errors.h"

namespace zepkit10 {
namespace {

using namespace std::string_view_literals;

TEST(TitleTest, IsWhatStandsBehindTheLastBackslash) {
  EXPECT_EQ(TitleOf(u"C:\\Data\\a.txt"), u"a.txt");
  EXPECT_EQ(TitleOf(u"\\\\server\\share\\a"), u"a");
  EXPECT_EQ(TitleOf(u"\\a.txt"), u"a.txt");
  EXPECT_EQ(TitleOf(u"a.txt"), u"a.txt");
  EXPECT_EQ(TitleOf(u"C:a.txt"), u"C:a.txt");
  EXPECT_EQ(TitleOf(u"C:/Data/a.txt"), u"C:/Data/a.txt");
  EXPECT_EQ(TitleOf(u"\u4e2d\\\xD83D\xDE00"), u"\xD83D\xDE00");
}

TEST(TitleTest, IsEmptyBehindABackslashAtTheEnd) {
  EXPECT_EQ(TitleOf(u"C:\\Data\\"), u"");
  EXPECT_EQ(TitleOf(u"\\"), u"");
}

TEST(TitleTest, LosesOneQuoteAtTheEnd) {
  EXPECT_EQ(TitleOf(u"\"C:\\Data\\a.txt\""), u"a.txt");
  EXPECT_EQ(TitleOf(u"\"a.txt\""), u"\"a.txt");
  EXPECT_EQ(TitleOf(u"a\"\""), u"a\"");
  EXPECT_EQ(TitleOf(u"a\"b"), u"a\"b");
  EXPECT_EQ(TitleOf(u"\""), u"");
  EXPECT_EQ(TitleOf(u"a\\\""), u"");
  EXPECT_EQ(TitleOf(u"a\"\\"), u"");
}

TEST(TitleTest, AnEmptyPathHasNone) {
  try {
    TitleOf(u"");
    ADD_FAILURE();
  } catch (const Failure& failure) {
    EXPECT_EQ(static_cast<ZepErrors>(failure.number), ZepErrors::zepErrIndexOutOfRange);
    EXPECT_EQ(failure.source, u"Zepkit10.List");
  }
}

TEST(TitleTest, FolderAndNameMakeThePath) {
  for (const auto& [folder, name] : {std::pair{u"C:\\Data\\"sv, u"a.txt"sv},
                                     {u"\\"sv, u"a"sv},
                                     {u""sv, u"a.txt"sv},
                                     {u"C:\\Data\\"sv, u""sv},
                                     {u""sv, u""sv},
                                     {u"a\\"sv, u"b\""sv}}) {
    const std::u16string path = std::u16string(folder).append(name);
    EXPECT_EQ(FolderOf(path), folder);
    EXPECT_EQ(NameOf(path), name);
  }
}

TEST(TitleTest, UntitledDocumentsAreNumbered) {
  TagCounter numbers(1);
  EXPECT_EQ(UntitledTitle(numbers), u"Unbenannt1");
  EXPECT_EQ(UntitledTitle(numbers), u"Unbenannt2");
}

TEST(TitleTest, NumbersOfUntitledDocumentsOverflow) {
  TagCounter numbers(2147483647);
  EXPECT_EQ(UntitledTitle(numbers), u"Unbenannt2147483647");
  for (int i = 0; i < 2; ++i) {
    try {
      UntitledTitle(numbers);
      ADD_FAILURE();
    } catch (const Failure& failure) {
      EXPECT_EQ(failure, (Failure{6, u"", u""}));
    }
  }
}

}  // namespace
}  // namespace zepkit10
