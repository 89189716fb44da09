#include "chart/coordinates.h"

#include <gtest/gtest.h>

#include <limits>

namespace zepkit10 {
namespace {

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();

TEST(CoordinatesTest, BoundsLieOnTheOutermostPixels) {
  for (const auto& [first, last] :
       {std::pair(-1.0, 1.0), std::pair(3.0, -7.5), std::pair(1e6, 1e6 + 1),
        std::pair(-1e-300, 1e-300), std::pair(-1e300, 1e300)}) {
    for (const int pixels : {2, 3, 480, 16384}) {
      const Axis axis(first, last, pixels);
      EXPECT_EQ(0, axis.ToVisiblePixel(first)) << first << " " << last << " " << pixels;
      EXPECT_EQ(pixels - 1, axis.ToVisiblePixel(last)) << first << " " << last << " " << pixels;
    }
  }
}

TEST(CoordinatesTest, PixelsAreRoundedAndCountedAlongTheAxis) {
  const Axis axis(0, 10, 11);
  EXPECT_EQ(3, axis.ToPixel(3.4));
  EXPECT_EQ(4, axis.ToPixel(3.6));
  EXPECT_EQ(-2, axis.ToPixel(-2));
  EXPECT_EQ(12, axis.ToPixel(12));
  EXPECT_EQ(3, axis.ToUnits(3));
  const Axis inverted(10, 0, 11);
  EXPECT_EQ(7, inverted.ToPixel(3.4));
  EXPECT_EQ(-2, inverted.ToPixel(12));
  EXPECT_EQ(-3, inverted.ToUnits(3));
}

TEST(CoordinatesTest, OnlyPixelsOnTheSurfaceAreVisible) {
  const Axis axis(0, 10, 11);
  EXPECT_EQ(0, axis.ToVisiblePixel(-0.4));
  EXPECT_EQ(std::nullopt, axis.ToVisiblePixel(-0.6));
  EXPECT_EQ(10, axis.ToVisiblePixel(10.4));
  EXPECT_EQ(std::nullopt, axis.ToVisiblePixel(10.6));
  EXPECT_EQ(std::nullopt, axis.ToVisiblePixel(1e300));
  EXPECT_EQ(std::nullopt, axis.ToVisiblePixel(-1e300));
}

TEST(CoordinatesTest, WhatHasNoPlaceHasNoPixel) {
  const Axis axis(-1, 1, 480);
  for (const double position : {kInfinity, -kInfinity, kNan}) {
    EXPECT_EQ(std::nullopt, axis.ToPixel(position));
    EXPECT_EQ(std::nullopt, axis.ToVisiblePixel(position));
  }
}

TEST(CoordinatesTest, AnAxisWithoutExtentShowsNothing) {
  for (const Axis& axis : {Axis(2, 2, 480), Axis(0, 0, 480), Axis(kNan, 1, 480), Axis(0, kNan, 480),
                           Axis(-kInfinity, 0, 480), Axis(kInfinity, kInfinity, 480)}) {
    for (const double position : {-1.0, 0.0, 2.0, 1e300}) {
      EXPECT_EQ(std::nullopt, axis.ToVisiblePixel(position)) << axis.First() << " " << axis.Last();
    }
  }
}

TEST(CoordinatesTest, ASurfaceOfOnePixelShowsItsFirstBound) {
  const Axis axis(-1, 1, 1);
  EXPECT_EQ(0, axis.ToVisiblePixel(-1));
  EXPECT_EQ(std::nullopt, axis.ToVisiblePixel(1));
}

}  // namespace
}  // namespace zepkit10
