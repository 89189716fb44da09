#include "chart/ticks.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>

#include "unit/chart/naive_ticks.h"

namespace zepkit10 {
namespace {

using naive::VisiblePixels;

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNan = std::numeric_limits<float>::quiet_NaN();

void ExpectAsPlain(float end, float step, const Axis& axis, int rounds = 20000) {
  const auto plain = naive::TickPixels(end, step, axis, rounds);
  const std::vector<float> ticks = PlanTicks(end, step, axis);
  EXPECT_LE(ticks.size(), static_cast<std::size_t>(axis.Pixels()));
  if (!plain) return;
  EXPECT_EQ(*plain, VisiblePixels(ticks, axis))
      << "end " << end << " step " << step << " axis " << axis.First() << ".." << axis.Last()
      << " in " << axis.Pixels();
}

TEST(TicksTest, CountFromZeroToTheEnd) {
  const Axis axis(-10, 10, 480);
  EXPECT_EQ((std::vector<float>{0, 3, 6, 9}), PlanTicks(10, 3, axis));
  EXPECT_EQ((std::vector<float>{0, -5, -10}), PlanTicks(-10, -5, axis));
  EXPECT_EQ((std::vector<float>{0}), PlanTicks(0, 1, axis));
  EXPECT_EQ((std::vector<float>{0}), PlanTicks(0, -1, axis));
}

TEST(TicksTest, AnEndOnTheOtherSideHasNone) {
  const Axis axis(-10, 10, 480);
  EXPECT_TRUE(PlanTicks(-10, 3, axis).empty());
  EXPECT_TRUE(PlanTicks(10, -3, axis).empty());
  EXPECT_TRUE(PlanTicks(-10, 0, axis).empty());
}

TEST(TicksTest, AnAxisAsideOfZeroShowsOnlyItsOwn) {
  const Axis axis(100, 110, 480);
  EXPECT_EQ((std::vector<float>{102, 105, 108}), PlanTicks(110, 3, axis));
  EXPECT_TRUE(PlanTicks(100, -3, axis).empty());
  EXPECT_EQ((std::vector<float>{-102, -105, -108}), PlanTicks(-110, -3, Axis(-110, -100, 480)));
}

TEST(TicksTest, AreThoseOfThePlainLoop) {
  std::mt19937 random(4711);
  const auto uniform = [&](double from, double to) {
    return std::uniform_real_distribution<double>(from, to)(random);
  };
  for (int i = 0; i < 2000; ++i) {
    const double scale = std::pow(10, uniform(-6, 6));
    const double first = uniform(-2, 1) * scale, last = first + uniform(-2, 2) * scale;
    const int pixels = static_cast<int>(uniform(1, 700));
    const Axis axis(first, last, pixels);
    const auto step = static_cast<float>(uniform(-1, 1) * std::pow(10, uniform(-4, 0)) * scale);
    for (const double end : {first, last, uniform(-3, 3) * scale}) {
      ExpectAsPlain(static_cast<float>(end), step, axis);
      if (HasFailure()) return;
    }
  }
}

TEST(TicksTest, AreThoseOfThePlainLoopWhereTheCounterRoundsHard) {
  std::mt19937 random(815);
  for (int i = 0; i < 300; ++i) {
    // Steps of one or two last places at the far end, ties included.
    const float far = std::ldexp(1.0f + static_cast<float>(random() % 1000) / 1000, 10);
    const float place = std::ldexp(1.0f, 10 - 23);
    const float step = place * static_cast<float>(random() % 4096 * 2 + 1) / 2 + place * 256;
    const Axis axis(far - static_cast<float>(random() % 200), far,
                    1 + static_cast<int>(random() % 400));
    ExpectAsPlain(far, step, axis, 100000);
    if (HasFailure()) return;
  }
}

TEST(TicksTest, ExtremeStepsEnd) {
  const float steps[] = {0.0f,   -0.0f,     1e-45f,     -1e-45f, 1e-38f, 1e-30f, 1e-10f,
                         -1e-9f, 1e-8f,     1e-7f,      -1e-6f,  1e38f,  3e38f,  -3e38f,
                         kNan,   kInfinity, -kInfinity, 1.0f,    0.1f};
  const Axis axes[] = {Axis(-1, 1, 480),
                       Axis(1, -1, 480),
                       Axis(0, 0, 480),
                       Axis(5, 5, 480),
                       Axis(1e7, 1e7 + 1e-3, 480),
                       Axis(1e30, 2e30, 16384),
                       Axis(-3e38, 3e38, 480),
                       Axis(-1e300, 1e300, 480),
                       Axis(1e-40, 2e-40, 480),
                       Axis(-1e-44, 1e-44, 9),
                       Axis(kNan, 1, 480),
                       Axis(0, kNan, 480),
                       Axis(-kInfinity, kInfinity, 480),
                       Axis(0, 1e-320, 480),
                       Axis(-1, 1, 1),
                       Axis(0, 16777216, 16384),
                       Axis(-5, 5, 16384)};
  for (const Axis& axis : axes) {
    for (const float step : steps) {
      for (const float end : {static_cast<float>(axis.First()), static_cast<float>(axis.Last()),
                              1.0f, -1.0f, 0.0f, kNan, kInfinity, -kInfinity, 3e38f}) {
        ExpectAsPlain(end, step, axis);
      }
    }
  }
}

TEST(TicksTest, StepsFarBelowAPixelCostNoMoreThanThePixels) {
  const Axis axis(-1, 1, 480);
  const std::vector<float> ticks = PlanTicks(1, 1e-7f, axis);
  EXPECT_EQ(240u, VisiblePixels(ticks, axis).size());
  EXPECT_EQ(240u, ticks.size());
}

}  // namespace
}  // namespace zepkit10
