#include "doc/dialog_text.h"

#include <gtest/gtest.h>

namespace zepkit10 {
namespace {

using namespace std::string_view_literals;

bool SameAscii(std::u16string_view left, std::u16string_view right) {
  const auto fold = [](std::u16string_view text) {
    std::u16string folded(text);
    for (char16_t& c : folded) {
      if (c >= u'A' && c <= u'Z') c = static_cast<char16_t>(c + 32);
    }
    return folded;
  };
  return fold(left) == fold(right);
}

bool Differs(std::u16string_view choice, std::u16string_view default_extension) {
  return HasOtherExtension(choice, default_extension, SameAscii);
}

TEST(DialogTextTest, FiltersComeInPairs) {
  EXPECT_TRUE(IsFilterList(u""));
  EXPECT_TRUE(IsFilterList(u"a|*.a"));
  EXPECT_TRUE(IsFilterList(u"a|*.a|b|*.b;*.c"));
  EXPECT_FALSE(IsFilterList(u"a"));
  EXPECT_FALSE(IsFilterList(u"a|*.a|b"));
}

TEST(DialogTextTest, FiltersHaveNoEmptyPart) {
  for (const auto filter : {u"|"sv, u"|*.a"sv, u"a|"sv, u"a|*.a|"sv, u"|a|*.a"sv, u"a||b|*.b"sv,
                            u"a|*.a||*.b"sv, u"|||"sv, u"a|||"sv}) {
    EXPECT_FALSE(IsFilterList(filter));
  }
}

TEST(DialogTextTest, FiltersHoldNoNul) {
  EXPECT_FALSE(IsFilterList(u"\0"sv));
  EXPECT_FALSE(IsFilterList(u"a|*.a\0"sv));
  EXPECT_FALSE(IsFilterList(u"a\0b|*.a"sv));
}

TEST(DialogTextTest, TheSystemsListEndsWithTwoNuls) {
  EXPECT_EQ(SystemFilter(u"a|*.a"), u"a\0*.a\0\0"sv);
  EXPECT_EQ(SystemFilter(u"a|*.a|b|*.b;*.c"), u"a\0*.a\0b\0*.b;*.c\0\0"sv);
  EXPECT_EQ(SystemFilter(u""), u"\0\0"sv);
}

TEST(DialogTextTest, AChoiceOfOneEndsAtTheFirstNul) {
  EXPECT_EQ(ChoiceIn(u"C:\\a.txt\0\0\0"sv, false), u"C:\\a.txt");
  EXPECT_EQ(ChoiceIn(u"C:\\a\0b\0\0"sv, false), u"C:\\a");
  EXPECT_EQ(ChoiceIn(u"C:\\a", false), u"C:\\a") << "nothing ends it";
  EXPECT_EQ(ChoiceIn(u"\0"sv, false), u"");
  EXPECT_EQ(ChoiceIn(u"", false), u"");
}

TEST(DialogTextTest, AChoiceOfSeveralEndsAtTwoNuls) {
  EXPECT_EQ(ChoiceIn(u"C:\\d\0a\0b\0\0c\0\0"sv, true), u"C:\\d\0a\0b"sv);
  EXPECT_EQ(ChoiceIn(u"C:\\a.txt\0\0"sv, true), u"C:\\a.txt");
  EXPECT_EQ(ChoiceIn(u"C:\\d\0a"sv, true), u"C:\\d\0a"sv) << "nothing ends it";
  EXPECT_EQ(ChoiceIn(u"\0\0"sv, true), u"");
  EXPECT_EQ(ChoiceIn(u"", true), u"");
}

TEST(DialogTextTest, TheTitleIsTheNameWithoutItsFolder) {
  EXPECT_EQ(FileTitleOf(u"C:\\d\\a.b.txt"), u"a.b.txt");
  EXPECT_EQ(FileTitleOf(u"\\\\server\\share\\a"), u"a");
  EXPECT_EQ(FileTitleOf(u"C:/d/a.txt"), u"a.txt");
  EXPECT_EQ(FileTitleOf(u"C:a.txt"), u"a.txt");
  EXPECT_EQ(FileTitleOf(u"a"), u"a");
  EXPECT_EQ(FileTitleOf(u"C:\\d\\"), u"");
  EXPECT_EQ(FileTitleOf(u""), u"");
  EXPECT_EQ(FileTitleOf(u"C:\\d\0a\0b"sv), u"") << "several files have none";
}

TEST(DialogTextTest, AnExtensionDiffersFromTheDefault) {
  EXPECT_TRUE(Differs(u"C:\\a.log", u"txt"));
  EXPECT_TRUE(Differs(u"C:\\a.txt.log", u"txt"));
  EXPECT_TRUE(Differs(u"C:\\a.txtx", u"txt"));
  EXPECT_TRUE(Differs(u".log", u"txt"));
  EXPECT_FALSE(Differs(u"C:\\a.txt", u"txt"));
  EXPECT_FALSE(Differs(u"C:\\a.TXT", u"tXt"));
  EXPECT_FALSE(Differs(u"C:\\a.log.txt", u"txt"));
  EXPECT_FALSE(Differs(u"C:\\a.txt", u".txt")) << "the period may stand before it";
}

TEST(DialogTextTest, WithoutExtensionOrDefaultNoneDiffers) {
  EXPECT_FALSE(Differs(u"C:\\a", u"txt"));
  EXPECT_FALSE(Differs(u"C:\\a.", u"txt"));
  EXPECT_FALSE(Differs(u"C:\\d.log\\a", u"txt")) << "that is the folder's";
  EXPECT_FALSE(Differs(u"C:\\a.log", u""));
  EXPECT_FALSE(Differs(u"C:\\a.log", u"."));
  EXPECT_FALSE(Differs(u"", u"txt"));
}

TEST(DialogTextTest, AnyOfSeveralExtensionsMayDiffer) {
  EXPECT_TRUE(Differs(u"C:\\d\0a.txt\0b.log"sv, u"txt"));
  EXPECT_TRUE(Differs(u"C:\\d\0a.log\0b.txt"sv, u"txt"));
  EXPECT_FALSE(Differs(u"C:\\d\0a.txt\0b.TXT\0c"sv, u"txt"));
  EXPECT_FALSE(Differs(u"C:\\d.log\0a.txt"sv, u"txt")) << "that is the folder's";
}

}  // namespace
}  // namespace zepkit10
