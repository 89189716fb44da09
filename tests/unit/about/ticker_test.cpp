#include "about/ticker.h"

#include <gtest/gtest.h>

namespace zepkit10 {
namespace {

TEST(TickerTest, StartsWhereAllOfTheTextShows) { EXPECT_EQ(0, Ticker(100, 30).Position()); }

TEST(TickerTest, MovesToTheLeft) {
  Ticker ticker(100, 30);
  ticker.Step(2);
  ticker.Step(3);
  EXPECT_EQ(-5, ticker.Position());
}

TEST(TickerTest, ComesInFromTheRightOnceItHasLeft) {
  Ticker ticker(100, 30);
  ticker.Step(29);
  EXPECT_EQ(-29, ticker.Position());
  ticker.Step(1);
  EXPECT_EQ(100, ticker.Position());
  ticker.Step(129);
  EXPECT_EQ(-29, ticker.Position());
  ticker.Step(5);
  EXPECT_EQ(100, ticker.Position());
}

TEST(TickerTest, NothingToMoveStaysInRange) {
  Ticker ticker;
  ticker.Step(1);
  EXPECT_EQ(0, ticker.Position());
}

}  // namespace
}  // namespace zepkit10
