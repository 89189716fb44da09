#include "chart/palette.h"

#include <gtest/gtest.h>

#include "frame/errors.h"

namespace zepkit10 {
namespace {

constexpr Colour Rgb(Colour red, Colour green, Colour blue) {
  return red << 16 | green << 8 | blue;
}

TEST(PaletteTest, HasTheSixteenClassicColours) {
  constexpr Colour kColours[] = {
      Rgb(0, 0, 0),       Rgb(0, 0, 128),   Rgb(0, 128, 0),   Rgb(0, 128, 128),
      Rgb(128, 0, 0),     Rgb(128, 0, 128), Rgb(128, 128, 0), Rgb(192, 192, 192),
      Rgb(128, 128, 128), Rgb(0, 0, 255),   Rgb(0, 255, 0),   Rgb(0, 255, 255),
      Rgb(255, 0, 0),     Rgb(255, 0, 255), Rgb(255, 255, 0), Rgb(255, 255, 255)};
  for (int index = 0; index < 16; ++index)
    EXPECT_EQ(kColours[index], PaletteColour(index)) << index;
}

TEST(PaletteTest, AnyOtherColourRaises5) {
  for (const int index : {16, 17, -1, 1 << 30}) {
    try {
      PaletteColour(index);
      ADD_FAILURE() << index;
    } catch (const Failure& failure) {
      EXPECT_EQ(5, failure.number) << index;
    }
  }
}

}  // namespace
}  // namespace zepkit10
