#include "about/text_pane.h"

#include <gtest/gtest.h>

#include <limits>

namespace zepkit10 {
namespace {

TEST(TextPaneTest, RowsFollowEachOther) {
  const TextPane pane({2, 20}, {3, 10}, 5);
  EXPECT_EQ(75, pane.ContentHeight());
  EXPECT_EQ(5u, pane.Rows());
  EXPECT_EQ(0, pane.TopOf(0));
  EXPECT_EQ(20, pane.TopOf(1));
  EXPECT_EQ(45, pane.TopOf(2));
  EXPECT_EQ(55, pane.TopOf(3));
  EXPECT_EQ(75, pane.TopOf(5));
  EXPECT_TRUE(pane.IsHeading(1));
  EXPECT_FALSE(pane.IsHeading(2));
}

TEST(TextPaneTest, NoGapWithoutABlock) {
  EXPECT_EQ(40, TextPane({2, 20}, {0, 10}, 5).ContentHeight());
  EXPECT_EQ(30, TextPane({0, 20}, {3, 10}, 5).ContentHeight());
  EXPECT_EQ(0, TextPane({0, 20}, {0, 10}, 5).ContentHeight());
}

TEST(TextPaneTest, FindsTheRowAtAHeight) {
  const TextPane pane({2, 20}, {3, 10}, 5);
  EXPECT_EQ(0u, pane.RowAt(0));
  EXPECT_EQ(0u, pane.RowAt(19));
  EXPECT_EQ(1u, pane.RowAt(39));
  EXPECT_EQ(2u, pane.RowAt(40));  // in the gap
  EXPECT_EQ(2u, pane.RowAt(54));
  EXPECT_EQ(4u, pane.RowAt(74));
  EXPECT_EQ(5u, pane.RowAt(75));
  EXPECT_EQ(5u, pane.RowAt(1000));
  EXPECT_EQ(0u, TextPane().RowAt(0));
}

TEST(TextPaneTest, ScrollsWithinTheContent) {
  TextPane pane({0, 1}, {10, 10}, 0);
  pane.SetPageHeight(30);
  EXPECT_EQ(70, pane.MaxPosition());
  EXPECT_FALSE(pane.ScrollTo(-5));
  EXPECT_TRUE(pane.ScrollTo(25));
  EXPECT_EQ(25, pane.Position());
  EXPECT_FALSE(pane.ScrollTo(25));
  EXPECT_TRUE(pane.ScrollTo(std::numeric_limits<std::int64_t>::max()));
  EXPECT_EQ(70, pane.Position());
}

TEST(TextPaneTest, AHigherPageScrollsBack) {
  TextPane pane({0, 1}, {10, 10}, 0);
  pane.SetPageHeight(30);
  pane.ScrollTo(70);
  pane.SetPageHeight(60);
  EXPECT_EQ(40, pane.Position());
  pane.SetPageHeight(200);
  EXPECT_EQ(0, pane.Position());
  EXPECT_EQ(0, pane.MaxPosition());
}

TEST(TextPaneTest, MoreThanAScrollBarTakes) {
  constexpr int kMax = std::numeric_limits<int>::max();
  TextPane pane({0, 1}, {1'000'000'000, 20}, 0);
  EXPECT_EQ(kMax, pane.ContentHeight());
  pane.SetPageHeight(100);
  pane.ScrollTo(kMax);
  EXPECT_EQ(kMax - 100, pane.Position());
  EXPECT_EQ(20 * std::int64_t{1'000'000'000}, pane.TopOf(1'000'000'000));
}

TEST(TextPaneTest, ScrollsLikeAPaneOfTheSameContent) {
  TextPane before({0, 1}, {10, 10}, 0), after({0, 1}, {10, 25}, 0);
  before.SetPageHeight(30);
  after.SetPageHeight(60);
  for (const auto& [position, like] : {std::pair(40, 100), {0, 0}, {41, 102}, {70, 175}}) {
    before.ScrollTo(position);
    after.ScrollLike(before);
    EXPECT_EQ(like, after.Position());
  }
  after.ScrollLike(TextPane());
  EXPECT_EQ(175, after.Position());
  after.SetPageHeight(250);
  after.ScrollLike(before);
  EXPECT_EQ(0, after.Position());
}

TEST(TextPaneTest, ScrollsLikeTheHighestPane) {
  constexpr int kMax = std::numeric_limits<int>::max();
  TextPane before({0, 1}, {1, kMax}, 0), after({0, 1}, {1, kMax}, 0);
  before.ScrollTo(kMax);
  after.ScrollLike(before);
  EXPECT_EQ(kMax, after.Position());
}

}  // namespace
}  // namespace zepkit10
