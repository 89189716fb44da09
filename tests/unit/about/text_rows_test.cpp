#include "about/text_rows.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace zepkit10 {
namespace {

using namespace std::string_view_literals;

/// Rows of ten characters, each of one pixel.
TextFit FitTen(std::u16string_view text) {
  const std::size_t length = std::min<std::size_t>(text.size(), 10);
  return {length, static_cast<int>(length)};
}

std::vector<std::u16string> RowsOf(std::u16string_view text) {
  std::vector<std::u16string> rows;
  for (const auto& [begin, length] : WrapText(text, FitTen).rows) {
    rows.emplace_back(text.substr(begin, length));
  }
  return rows;
}

using Rows = std::vector<std::u16string>;

TEST(ShownTextTest, LinesEndWithLineFeeds) {
  EXPECT_EQ(u"a\nb\nc\n\nd", ShownText(u"a\r\nb\nc\r\rd"));
  EXPECT_EQ(u"a\n\nb", ShownText(u"a\n\rb"));
}

TEST(ShownTextTest, ControlCharactersAreSpaces) {
  EXPECT_EQ(u"a b c d", ShownText(u"a\0b\x01"
                                  u"c\x9F"
                                  u"d"sv));
  EXPECT_EQ(u"a    b", ShownText(u"a\tb"));
  EXPECT_EQ(u"äß\xA0€\xD83D\xDE00", ShownText(u"äß\xA0€\xD83D\xDE00"));
}

TEST(ShownTitleTest, IsOneLine) {
  EXPECT_EQ(u"a b c", ShownTitle(u"a\r\nb\nc"));
  EXPECT_EQ(u"a b", ShownTitle(u"a\0b"sv));
  EXPECT_EQ(u"", ShownTitle(u""));
}

TEST(WrapTextTest, TextThatFitsIsOneRow) {
  EXPECT_EQ(Rows{u"0123456789"}, RowsOf(u"0123456789"));
  EXPECT_EQ(Rows{u""}, RowsOf(u""));
}

TEST(WrapTextTest, LineFeedsEndRows) {
  EXPECT_EQ((Rows{u"a", u"", u"b", u""}), RowsOf(u"a\n\nb\n"));
}

TEST(WrapTextTest, LongLinesBreakAtTheLastSpaceThatFits) {
  EXPECT_EQ((Rows{u"one two", u"three four", u"five"}), RowsOf(u"one two three four five"));
}

TEST(WrapTextTest, ASpaceBehindWhatFitsDoesNotBeginARow) {
  EXPECT_EQ((Rows{u"0123456789", u"a"}), RowsOf(u"0123456789 a"));
}

TEST(WrapTextTest, LongWordsBreakAnywhere) {
  EXPECT_EQ((Rows{u"0123456789", u"abcdefghij", u"k"}), RowsOf(u"0123456789abcdefghijk"));
  EXPECT_EQ((Rows{u" 012345678", u"9a"}), RowsOf(u" 0123456789a"));
}

TEST(WrapTextTest, SurrogatePairsStayTogether) {
  EXPECT_EQ((Rows{u"012345678",
                  u"\xD83D\xDE00"
                  u"a"}),
            RowsOf(u"012345678\xD83D\xDE00"
                   u"a"));
}

TEST(WrapTextTest, OnlyTrailingSurrogatesAreKeptInTheRow) {
  for (const char16_t c : {u'\xD7FF', u'\xE000', u'\xFFFD'}) {
    const std::u16string text = u"0123456789" + std::u16string(1, c);
    EXPECT_EQ((Rows{u"0123456789", std::u16string(1, c)}), RowsOf(text));
  }
}

TEST(WrapTextTest, ARowHoldsOneCharacterAtLeast) {
  const auto rows = WrapText(
                        u"a\xD83D\xDE00"
                        u"b",
                        [](std::u16string_view) {
                          return TextFit{0, 0};
                        })
                        .rows;
  EXPECT_EQ((std::vector<TextRow>{{0, 1}, {1, 2}, {3, 1}}), rows);
}

TEST(WrapTextTest, TellsTheWidestRow) {
  EXPECT_EQ(5, WrapText(u"abc\nabcde\nab", FitTen).width);
  EXPECT_EQ(10, WrapText(u"abcdefghijklm", FitTen).width);
}

TEST(WrapTextTest, OnlySpaces) {
  const std::u16string text(25, u' ');
  std::size_t length = 0;
  for (const TextRow& row : WrapText(text, FitTen).rows) {
    EXPECT_LE(row.length, 10u);
    length += row.length;
  }
  EXPECT_LE(length, text.size());
}

TEST(WrapTextTest, MeasuresNoMoreOfALongLineThanARowShows) {
  const std::u16string text(1'000'000, u'x');
  std::size_t longest = 0;
  const auto rows = WrapText(text, [&](std::u16string_view line) {
                      longest = std::max(longest, line.size());
                      return FitTen(line);
                    }).rows;
  EXPECT_EQ(100'000u, rows.size());
  EXPECT_LE(longest, 1024u);
}

TEST(WrapTextTest, ARowOfTheMostUnitsBreaksLikeAnyOther) {
  const std::u16string most(1024, u'x'), pair = u"\xD83D\xDE00";
  const auto rows_of = [](std::u16string_view text) {
    return WrapText(text, [](std::u16string_view line) { return TextFit{line.size(), 1}; }).rows;
  };
  EXPECT_EQ((std::vector<TextRow>{{0, 1024}, {1025, 1}}), rows_of(u"a " + most.substr(2) + u" b"));
  EXPECT_EQ((std::vector<TextRow>{{0, 1023}, {1023, 3}}), rows_of(most.substr(1) + pair + u"a"));
}

TEST(WrapTextTest, AWideEnoughRowStillEnds) {
  const std::u16string text(5000, u'x');
  const auto rows = WrapText(text, [](std::u16string_view line) {
                      return TextFit{line.size(), 1};
                    }).rows;
  std::size_t end = 0;
  for (const TextRow& row : rows) {
    EXPECT_EQ(end, row.begin);
    end = row.begin + row.length;
  }
  EXPECT_EQ(text.size(), end);
}

}  // namespace
}  // namespace zepkit10
