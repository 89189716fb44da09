#include "util/delimited_list.h"

#include <gtest/gtest.h>

#include <random>

#include "unit/util/naive_list.h"

namespace zepkit10 {
namespace {

using Items = std::vector<std::u16string>;

constexpr ListFormat kSpaces{u" ", u"", u""};
constexpr ListFormat kQuoted{u" ", u"\"", u"\""};
constexpr ListFormat kBracketed{u" ", u"(", u")"};

Items Split(std::u16string_view text, const ListFormat& format) {
  Items items;
  for (ListReader reader(text, format); reader.Next();) items.emplace_back(reader.Item());
  return items;
}

std::u16string Join(const Items& items, const ListFormat& format) {
  ListWriter writer(format);
  for (const auto& item : items) writer.Append(item);
  return writer.Take();
}

TEST(DelimitedListTest, DelimitersSplit) {
  EXPECT_EQ(Split(u"a b c", kSpaces), (Items{u"a", u"b", u"c"}));
  EXPECT_EQ(Split(u"abc", kSpaces), (Items{u"abc"}));
  EXPECT_EQ(Split(u"", kSpaces), Items{});
}

TEST(DelimitedListTest, EmptyItemsCount) {
  EXPECT_EQ(Split(u"a  b", kSpaces), (Items{u"a", u"", u"b"}));
  EXPECT_EQ(Split(u"a ", kSpaces), (Items{u"a", u""}));
  EXPECT_EQ(Split(u" a", kSpaces), (Items{u"", u"a"}));
  EXPECT_EQ(Split(u" ", kSpaces), (Items{u"", u""}));
  EXPECT_EQ(Split(u"  ", kSpaces), (Items{u"", u"", u""}));
}

TEST(DelimitedListTest, EqualQuotesToggle) {
  EXPECT_EQ(Split(u"x \"a b\" y", kQuoted), (Items{u"x", u"a b", u"y"}));
  EXPECT_EQ(Split(u"ab\"c d\"e", kQuoted), (Items{u"abc de"}));
  EXPECT_EQ(Split(u"\"a b", kQuoted), (Items{u"a b"}));
  EXPECT_EQ(Split(u"\"a\"\" b", kQuoted), (Items{u"a b"}));
  EXPECT_EQ(Split(u"a \"\" b", kQuoted), (Items{u"a", u"", u"b"}));
}

TEST(DelimitedListTest, AnEmptyQuotedItemAtTheEndIsNone) {
  EXPECT_EQ(Split(u"a \"\"", kQuoted), (Items{u"a"}));
  EXPECT_EQ(Split(u"\"\"", kQuoted), Items{});
  EXPECT_EQ(Split(u"\"\" ", kQuoted), (Items{u"", u""}));
}

TEST(DelimitedListTest, DifferentQuotesNest) {
  EXPECT_EQ(Split(u"a (b c) d", kBracketed), (Items{u"a", u"b c", u"d"}));
  EXPECT_EQ(Split(u"((x y))", kBracketed), (Items{u"x y"}));
  EXPECT_EQ(Split(u"((x y) z) w", kBracketed), (Items{u"x y z", u"w"}));
}

TEST(DelimitedListTest, ANegativeDepthStillSplits) {
  EXPECT_EQ(Split(u")a b", kBracketed), (Items{u"a", u"b"}));
  EXPECT_EQ(Split(u")(a b", kBracketed), (Items{u"a", u"b"}));
  EXPECT_EQ(Split(u")((a b", kBracketed), (Items{u"a b"}));
}

TEST(DelimitedListTest, OfALongQuoteOnlyTheFirstCharacterIsDropped) {
  EXPECT_EQ(Split(u"<<a b>>", {u" ", u"<<", u">>"}), (Items{u"<a b>"}));
  EXPECT_EQ(Split(u"''a b''", {u" ", u"''", u"''"}), (Items{u"'a b'"}));
  EXPECT_EQ(Split(u"'''a b", {u" ", u"''", u"''"}), (Items{u"'a", u"b"}));
}

TEST(DelimitedListTest, LongDelimitersAreMatchedFirst) {
  EXPECT_EQ(Split(u"a--b-c", {u"--", u"", u""}), (Items{u"a", u"b-c"}));
  EXPECT_EQ(Split(u"a---b", {u"--", u"", u""}), (Items{u"a", u"-b"}));
  EXPECT_EQ(Split(u"a'--b'", {u"'--", u"'", u"'"}), (Items{u"a", u"b"}));
  EXPECT_EQ(Split(u"'a--b'--c", {u"--", u"'", u"'"}), (Items{u"a--b", u"c"}));
}

TEST(DelimitedListTest, ComparesExactly) {
  EXPECT_EQ(Split(u"aXbxc", {u"x", u"", u""}), (Items{u"aXb", u"c"}));
  EXPECT_EQ(Split(std::u16string_view(u"a\0b c", 5), {std::u16string_view(u"\0", 1), u"", u""}),
            (Items{u"a", u"b c"}));
  EXPECT_EQ(Split(u"Qa b", {u" ", u"q", u"q"}), (Items{u"Qa", u"b"}));
  EXPECT_EQ(Split(u"qa bQ c", {u" ", u"q", u"Q"}), (Items{u"a b", u"c"}));
  EXPECT_EQ(Join({u"aXb", u"axb"}, {u"x", u"(", u")"}), u"aXbx(axb)");
}

// Nothing equals the empty text everywhere: every character is a quote then.
TEST(DelimitedListTest, OneEmptyQuoteMakesEveryCharacterAQuote) {
  EXPECT_EQ(Split(u"a b", {u" ", u"", u")"}), (Items{u" "}));
  EXPECT_EQ(Split(u"a b", {u" ", u"(", u""}), (Items{u""}));
  EXPECT_EQ(Split(u"((a b", {u" ", u"(", u""}), (Items{u" "}));
}

TEST(DelimitedListTest, AnEmptyDelimiterMakesTheWholeTextOneItem) {
  EXPECT_EQ(Split(u"a \"b\"", {u"", u"\"", u"\""}), (Items{u"a \"b\""}));
  EXPECT_EQ(Split(u"", {u"", u"\"", u"\""}), Items{});
}

TEST(DelimitedListTest, JoiningQuotesWhatNeedsIt) {
  EXPECT_EQ(Join({u"a", u"", u"b"}, {u",", u"\"", u"\""}), u"a,\"\",b");
  EXPECT_EQ(Split(u"a,\"\",b", {u",", u"\"", u"\""}), (Items{u"a", u"", u"b"}));
  EXPECT_EQ(Join({u"a b", u"c"}, kBracketed), u"(a b) c");
  EXPECT_EQ(Join({u"x--y", u"x-y"}, {u"--", u"<", u">"}), u"<x--y>--x-y");
  EXPECT_EQ(Join({}, kQuoted), u"");
  EXPECT_EQ(Join({u""}, kQuoted), u"\"\"");
  EXPECT_EQ(Join({u"", u""}, kSpaces), u" ");
}

TEST(DelimitedListTest, AnEmptyDelimiterStandsInEveryItem) {
  EXPECT_EQ(Join({u"a", u"b"}, {u"", u"(", u")"}), u"(a)(b)");
}

TEST(DelimitedListTest, AgreesWithTheNaiveWay) {
  std::mt19937 random(7);
  const auto any = [&](std::size_t longest) {
    std::u16string text(random() % (longest + 1), u' ');
    for (char16_t& c : text) c = u"ab ,('\")"[random() % 8];
    return text;
  };
  for (int i = 0; i < 20000; ++i) {
    const std::u16string delimiter = any(2), begin = any(2), end = random() % 2 ? begin : any(2);
    const std::u16string text = any(20);
    ASSERT_EQ(naive::Difference(text, {delimiter, begin, end}), "") << "run " << i;
  }
}

}  // namespace
}  // namespace zepkit10
