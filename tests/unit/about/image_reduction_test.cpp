#include "about/image_reduction.h"

#include <gtest/gtest.h>

namespace zepkit10 {
namespace {

constexpr std::uint32_t kRed = 0xFFFF0000, kBlue = 0xFF0000FF, kNothing = 0;

TEST(ImageReductionTest, OneColourStaysOneColour) {
  const SquareImage image{7, std::vector<std::uint32_t>(49, 0x80102030)};
  for (const int width : {1, 2, 3, 5, 6, 7}) {
    EXPECT_EQ(std::vector<std::uint32_t>(static_cast<std::size_t>(width * width), 0x80102030),
              Reduce(image, width).pixels)
        << width;
  }
}

TEST(ImageReductionTest, PixelsAreMeans) {
  EXPECT_EQ(std::vector<std::uint32_t>{0xFF800080},
            Reduce({2, {kRed, kBlue, kBlue, kRed}}, 1).pixels);
}

TEST(ImageReductionTest, WhatIsTransparentHasNoColour) {
  EXPECT_EQ(std::vector<std::uint32_t>{0x80FF0000},
            Reduce({2, {kRed, 0x0000FF00, kNothing, kRed}}, 1).pixels);
  EXPECT_EQ(std::vector<std::uint32_t>{kNothing},
            Reduce({2, std::vector<std::uint32_t>(4, 0x00FFFFFF)}, 1).pixels);
}

TEST(ImageReductionTest, PartsOfPixelsCountByTheirArea) {
  // Each of the four gets one and a half pixels a side.
  const SquareImage image{3, {kRed, kBlue, kBlue, kRed, kBlue, kBlue, kRed, kBlue, kBlue}};
  const std::vector<std::uint32_t> expected = {0xFFAA0055, kBlue, 0xFFAA0055, kBlue};
  EXPECT_EQ(expected, Reduce(image, 2).pixels);
}

TEST(ImageReductionTest, TheSameWidthIsTheSameImage) {
  const SquareImage image{2, {kRed, kBlue, 0x40123456, kRed}};
  EXPECT_EQ(image.pixels, Reduce(image, 2).pixels);
}

}  // namespace
}  // namespace zepkit10
