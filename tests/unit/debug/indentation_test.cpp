#include "debug/indentation.h"

#include <gtest/gtest.h>

#include "frame/errors.h"

namespace zepkit10 {
namespace {

class IndentationTest : public testing::Test {
 protected:
  /// Prints a text and returns its line.
  std::u16string Print(std::u16string_view text, bool omit_line_end = false) {
    const Indentation::Line line = indentation_.Compose(text, omit_line_end);
    indentation_.Commit(line);
    return line.text;
  }

  /// Opens levels, with lines that nobody looks at.
  void Deepen(int levels) {
    for (int i = 0; i < levels; ++i) indentation_.Commit({{}, Change::kDeeper, false});
  }

  std::u16string Spaces(int level) {
    return std::u16string(2 * static_cast<std::size_t>(level), u' ');
  }

  using Change = Indentation::LevelChange;
  Indentation indentation_;
};

TEST_F(IndentationTest, StartsAtLevel0) { EXPECT_EQ(Print(u"a"), u"a\r\n"); }

TEST_F(IndentationTest, PlusAndMinusEncloseABlock) {
  EXPECT_EQ(Print(u"+ a"), u"+ a\r\n");
  EXPECT_EQ(Print(u"b"), u"  b\r\n");
  EXPECT_EQ(Print(u"- c"), u"- c\r\n");
  EXPECT_EQ(Print(u"d"), u"d\r\n");
}

TEST_F(IndentationTest, BlocksNest) {
  EXPECT_EQ(Print(u"+ a"), u"+ a\r\n");
  EXPECT_EQ(Print(u"+ b"), u"  + b\r\n");
  EXPECT_EQ(Print(u"c"), u"    c\r\n");
  EXPECT_EQ(Print(u"- d"), u"  - d\r\n");
  EXPECT_EQ(Print(u"e"), u"  e\r\n");
  EXPECT_EQ(Print(u"- f"), u"- f\r\n");
}

TEST_F(IndentationTest, MinusStopsAtLevel0) {
  EXPECT_EQ(Print(u"- a"), u"- a\r\n");
  EXPECT_EQ(Print(u"- b"), u"- b\r\n");
  EXPECT_EQ(Print(u"+ c"), u"+ c\r\n");
  EXPECT_EQ(Print(u"d"), u"  d\r\n");
}

TEST_F(IndentationTest, TildeAndTwoDashesStandAtLevel0Alone) {
  Deepen(2);
  EXPECT_EQ(Print(u"~ a"), u"~ a\r\n");
  EXPECT_EQ(Print(u"b"), u"    b\r\n");
  EXPECT_EQ(Print(u"-- c"), u"-- c\r\n");
  EXPECT_EQ(Print(u"--"), u"--\r\n");
  EXPECT_EQ(Print(u"d"), u"    d\r\n");
}

TEST_F(IndentationTest, TwoPlusesRaiseLevel0Only) {
  EXPECT_EQ(Print(u"++ a"), u"++ a\r\n");
  EXPECT_EQ(Print(u"b"), u"  b\r\n");
  EXPECT_EQ(Print(u"++ c"), u"++ c\r\n");
  EXPECT_EQ(Print(u"d"), u"  d\r\n");
  Deepen(1);
  EXPECT_EQ(Print(u"++"), u"++\r\n");
  EXPECT_EQ(Print(u"e"), u"    e\r\n");
}

TEST_F(IndentationTest, OtherBeginningsAreText) {
  Deepen(1);
  for (const char16_t* text : {u"", u"+", u"-", u"~", u" ", u"+a", u"-a", u"~a", u"~~", u" +",
                               u"+-", u"-+", u" - a", u"+\t", u"\u2212 a"}) {
    EXPECT_EQ(Print(text), u"  " + std::u16string(text) + u"\r\n");
    EXPECT_EQ(Print(u"a"), u"  a\r\n");
  }
}

TEST_F(IndentationTest, MarksAloneCount) {
  EXPECT_EQ(Print(u"+ "), u"+ \r\n");
  EXPECT_EQ(Print(u"~ "), u"~ \r\n");
  EXPECT_EQ(Print(u"a"), u"  a\r\n");
  EXPECT_EQ(Print(u"- "), u"- \r\n");
}

TEST_F(IndentationTest, TextMayHoldAnything) {
  Deepen(1);
  const std::u16string text(u"a\0b\r\nc\xD800", 7);
  EXPECT_EQ(Print(text), u"  " + text + u"\r\n");
  const std::u16string mark(u"+\0", 2);
  EXPECT_EQ(Print(mark), u"  " + mark + u"\r\n");
  EXPECT_EQ(Print(u"a"), u"  a\r\n");
}

TEST_F(IndentationTest, ALineLeftOpenIsContinuedWithoutIndentation) {
  Deepen(1);
  EXPECT_EQ(Print(u"x", true), u"  x");
  EXPECT_EQ(Print(u"y"), u"y\r\n");
  EXPECT_EQ(Print(u"z"), u"  z\r\n");
  EXPECT_EQ(Print(u"", true), u"  ");
  EXPECT_EQ(Print(u"a", true), u"a");
  EXPECT_EQ(Print(u"b", true), u"b");
  EXPECT_EQ(Print(u""), u"\r\n");
  EXPECT_EQ(Print(u""), u"  \r\n");
}

TEST_F(IndentationTest, MarksCountInTheMiddleOfALine) {
  EXPECT_EQ(Print(u"a", true), u"a");
  EXPECT_EQ(Print(u"+ b", true), u"+ b");
  EXPECT_EQ(Print(u"+ c"), u"+ c\r\n");
  EXPECT_EQ(Print(u"d", true), u"    d");
  EXPECT_EQ(Print(u"- e"), u"- e\r\n");
  EXPECT_EQ(Print(u"f"), u"  f\r\n");
}

TEST_F(IndentationTest, NothingIsLeftBehindByALineThatIsNotCommitted) {
  EXPECT_EQ(indentation_.Compose(u"+ a", true).text, u"+ a");
  EXPECT_EQ(indentation_.Compose(u"++a", true).text, u"++a");
  EXPECT_EQ(Print(u"b"), u"b\r\n");
  EXPECT_EQ(Print(u"c", true), u"c");
  EXPECT_EQ(indentation_.Compose(u"d", false).text, u"d\r\n");
  EXPECT_EQ(Print(u"e"), u"e\r\n");
}

TEST_F(IndentationTest, MinusCountsBeforeItsLineIsCommitted) {
  Deepen(2);
  EXPECT_EQ(indentation_.Compose(u"- a", false).text, u"  - a\r\n");
  EXPECT_EQ(Print(u"b"), u"  b\r\n");
}

TEST_F(IndentationTest, LinesWithinALineKeepTheirLevels) {
  const auto outer = indentation_.Compose(u"+ outer", true);
  EXPECT_EQ(Print(u"+ inner"), u"+ inner\r\n");
  EXPECT_EQ(Print(u"inner"), u"  inner\r\n");
  indentation_.Commit(outer);
  EXPECT_EQ(Print(u"a"), u"a\r\n");
  EXPECT_EQ(Print(u"b"), u"    b\r\n");
}

TEST_F(IndentationTest, TwoPlusesAroundOtherLines) {
  auto outer = indentation_.Compose(u"++ outer", false);
  Deepen(2);
  indentation_.Commit(outer);
  EXPECT_EQ(Print(u"a"), u"    a\r\n");
  EXPECT_EQ(Print(u"- a"), u"  - a\r\n");
  outer = indentation_.Compose(u"++ outer", false);
  EXPECT_EQ(Print(u"- a"), u"- a\r\n");
  indentation_.Commit(outer);
  EXPECT_EQ(Print(u"b"), u"b\r\n");
}

TEST_F(IndentationTest, TheDeepestLevelIs32767) {
  constexpr int kDeepest = 32767;
  Deepen(kDeepest);
  EXPECT_EQ(Print(u"a"), Spaces(kDeepest) + u"a\r\n");
  const auto line = indentation_.Compose(u"+ b", true);
  EXPECT_EQ(line.text, Spaces(kDeepest) + u"+ b");
  try {
    indentation_.Commit(line);
    ADD_FAILURE() << "no error";
  } catch (const Failure& failure) {
    EXPECT_EQ(failure, (Failure{6, {}, {}}));
  }
  EXPECT_EQ(Print(u"c"), Spaces(kDeepest) + u"c\r\n");
  EXPECT_EQ(Print(u"- d"), Spaces(kDeepest - 1) + u"- d\r\n");
  EXPECT_EQ(Print(u"+ e"), Spaces(kDeepest - 1) + u"+ e\r\n");
  EXPECT_EQ(Print(u"f"), Spaces(kDeepest) + u"f\r\n");
}

}  // namespace
}  // namespace zepkit10
