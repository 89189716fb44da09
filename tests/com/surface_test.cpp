#include "platform/surface.h"

#include <windows.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <string>

#include "frame/errors.h"

namespace zepkit10 {
namespace {

constexpr Colour kWhite = 0xFFFFFF, kRed = 0xFF0000;
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

/// A surface whose units are its pixels, counted from the lower left corner.
class SurfaceTest : public testing::Test {
 protected:
  SurfaceTest() {
    surface_.Resize(11, 7);
    surface_.Clear();
    surface_.SetScale(0, 6, 10, 0);
  }
  /// Rows of the surface: a hash for what is not white.
  std::string Picture() const {
    std::string picture;
    const auto pixels = surface_.Pixels();
    for (std::size_t i = 0; i < pixels.size(); ++i) {
      picture += pixels[i] == kWhite ? '.' : '#';
      if (i % 11 == 10) picture += '\n';
    }
    return picture;
  }
  static std::size_t Coloured(const Surface& surface) {
    std::size_t count = 0;
    for (const Colour pixel : surface.Pixels()) count += pixel != kWhite;
    return count;
  }
  Surface surface_;
};

TEST_F(SurfaceTest, PointsAreCountedInTheUsersUnits) {
  surface_.Point(0, 0, kRed);
  surface_.Point(10, 6, kRed);
  surface_.Point(3.4, 4.6, kRed);
  EXPECT_EQ(
      "..........#\n"
      "...#.......\n"
      "...........\n"
      "...........\n"
      "...........\n"
      "...........\n"
      "#..........\n",
      Picture());
  EXPECT_EQ(kRed, surface_.Pixels()[10]);
}

TEST_F(SurfaceTest, WhatLiesOutsideIsNotDrawn) {
  for (const double outside : {-1.0, 11.0, 1e300, -1e300, kNan, kInfinity, -kInfinity}) {
    surface_.Point(outside, 1, kRed);
    surface_.Point(1, outside, kRed);
    surface_.LineAlongX(0, 10, outside, kRed);
    surface_.LineAlongY(outside, 0, 6, kRed);
  }
  surface_.LineAlongX(-5, -1, 3, kRed);
  surface_.LineAlongX(11, 1e300, 3, kRed);
  surface_.LineAlongY(3, 7, 1e300, kRed);
  surface_.LineAlongX(kNan, 5, 3, kRed);
  EXPECT_EQ(0u, Coloured(surface_));
}

TEST_F(SurfaceTest, LinesHaveBothTheirEnds) {
  surface_.LineAlongX(2, 5, 1, kRed);
  surface_.LineAlongX(9, 7, 5, kRed);  // in any direction
  surface_.LineAlongY(0, 2, 4, kRed);
  EXPECT_EQ(
      "...........\n"
      ".......###.\n"
      "#..........\n"
      "#..........\n"
      "#..........\n"
      "..####.....\n"
      "...........\n",
      Picture());
}

TEST_F(SurfaceTest, LinesAreCutAtTheEdges) {
  surface_.LineAlongX(-1e30, 1e30, 3, kRed);
  surface_.LineAlongY(5, 100, -100, kRed);
  EXPECT_EQ(
      ".....#.....\n"
      ".....#.....\n"
      ".....#.....\n"
      "###########\n"
      ".....#.....\n"
      ".....#.....\n"
      ".....#.....\n",
      Picture());
}

TEST_F(SurfaceTest, ResizingKeepsWhatFitsAndIsWhiteBeyond) {
  surface_.LineAlongX(0, 10, 6, kRed);
  surface_.Resize(13, 3);
  const auto pixels = surface_.Pixels();
  ASSERT_EQ(39u, pixels.size());
  for (std::size_t i = 0; i < pixels.size(); ++i) EXPECT_EQ(i < 11 ? kRed : kWhite, pixels[i]) << i;
  surface_.Point(10, 0, kRed);  // the units go on from edge to edge
  EXPECT_EQ(kRed, surface_.Pixels()[38]);
}

TEST_F(SurfaceTest, SizesOutsideRaise5) {
  for (const double size : {0.0, -1.0, 0.5, 16385.0, 1e300, kNan, kInfinity, -kInfinity}) {
    for (const auto& [width, height] : {std::pair(size, 5.0), std::pair(5.0, size)}) {
      try {
        surface_.Resize(width, height);
        ADD_FAILURE() << size;
      } catch (const Failure& failure) {
        EXPECT_EQ(5, failure.number);
      }
    }
  }
  EXPECT_EQ(11, surface_.Width());
  EXPECT_EQ(7, surface_.Height());
}

TEST_F(SurfaceTest, TheGreatestSizeCostsNothingUntilItIsDrawn) {
  Surface surface;
  surface.Resize(16384, 16384);
  EXPECT_EQ(16384, surface.Width());
  EXPECT_EQ(16384, surface.Height());
}

TEST_F(SurfaceTest, TextFillsNoMoreThanItsLine) {
  Surface surface;
  surface.Clear();
  surface.SetScale(1, 1, 1, 1);  // units are nothing to it
  const int height = Surface::TextLineHeight();
  EXPECT_GE(height, 8);
  EXPECT_LE(height, 32);
  surface.TextLine(3, u"text", kRed);
  const auto pixels = surface.Pixels();
  std::size_t inside = 0;
  for (int row = 3 * height; row < 4 * height; ++row) {
    for (int column = 0; column < 100; ++column) {
      inside += pixels[static_cast<std::size_t>(row * 480 + column)] != kWhite;
    }
  }
  EXPECT_GT(inside, 0u);
  EXPECT_EQ(inside, Coloured(surface));
  EXPECT_GT(std::count(pixels.begin(), pixels.end(), kRed), 0);
}

TEST_F(SurfaceTest, TextLeavesWhatIsUnderIt) {
  Surface surface;
  surface.Clear();
  surface.SetScale(0, 319, 479, 0);
  surface.LineAlongX(0, 479, 318, 0x123456);
  surface.TextLine(0, u"    ", kRed);
  EXPECT_EQ(480u, Coloured(surface));
}

TEST_F(SurfaceTest, TextIsCutAtEveryEdge) {
  surface_.TextLine(0, std::u16string(1000000, u'x'), kRed);
  surface_.TextLine(0, u"", kRed);
  const auto before = surface_.Pixels();
  surface_.TextLine(1, u"text", kRed);
  surface_.TextLine(15, u"text", kRed);
  EXPECT_EQ(before, surface_.Pixels());
}

TEST_F(SurfaceTest, HoldsNoHandles) {
  const DWORD before = GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS);
  for (int i = 0; i < 100; ++i) surface_.TextLine(0, u"text", kRed);
  EXPECT_EQ(before, GetGuiResources(GetCurrentProcess(), GR_GDIOBJECTS));
}

}  // namespace
}  // namespace zepkit10
