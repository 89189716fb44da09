#include "about/about_layout.h"

#include <gtest/gtest.h>

namespace zepkit10 {
namespace {

AboutSizes Small(int dpi = 96) {
  AboutSizes sizes;
  sizes.dpi = dpi;
  sizes.icon = {Scaled(48, dpi), Scaled(48, dpi)};
  sizes.text = {Scaled(200, dpi), Scaled(80, dpi)};
  sizes.button_text = {Scaled(20, dpi), Scaled(15, dpi)};
  sizes.moving_text = {Scaled(90, dpi), Scaled(15, dpi)};
  sizes.scroll_bar_width = Scaled(17, dpi);
  sizes.screen = {Scaled(800, dpi), Scaled(560, dpi)};
  return sizes;
}

bool Contains(const Extent& client, const Box& box) {
  return box.left >= 0 && box.top >= 0 && box.Right() <= client.width &&
         box.Bottom() <= client.height;
}

bool Overlap(const Box& a, const Box& b) {
  return a.left < b.Right() && b.left < a.Right() && a.top < b.Bottom() && b.top < a.Bottom();
}

/// Nothing lies outside the window or over anything else.
void ExpectSound(const AboutLayout& layout) {
  const Box boxes[] = {layout.icon, layout.text, layout.scroll_bar, layout.frame, layout.button};
  for (std::size_t i = 0; i < std::size(boxes); ++i) {
    EXPECT_TRUE(Contains(layout.client, boxes[i])) << i;
    for (std::size_t j = 0; j < i; ++j) EXPECT_FALSE(Overlap(boxes[i], boxes[j])) << i << " " << j;
  }
  EXPECT_EQ(layout.client.height, layout.footer.Bottom());
  EXPECT_EQ(layout.client.width, layout.footer.width);
  EXPECT_LE(layout.text.Bottom(), layout.footer.top);
  EXPECT_GE(layout.button.top, layout.footer.top);
  EXPECT_GE(layout.frame.top, layout.footer.top);
}

TEST(AboutLayoutTest, TextStandsBesideTheIcon) {
  const AboutLayout layout = LayOut(Small());
  ExpectSound(layout);
  EXPECT_GT(layout.text.left, layout.icon.Right());
  EXPECT_GE(layout.text.width, 200);
  EXPECT_EQ(80, layout.text.height);
  EXPECT_EQ(0, layout.scroll_bar.width);
  EXPECT_GT(layout.frame.width, 90);
}

TEST(AboutLayoutTest, EverythingHasItsPlace) {
  const AboutLayout layout = LayOut(Small());
  EXPECT_EQ((Extent{340, 178}), layout.client);
  EXPECT_EQ((Box{24, 24, 48, 48}), layout.icon);
  EXPECT_EQ((Box{90, 24, 226, 80}), layout.text);
  EXPECT_EQ(Box(), layout.scroll_bar);
  EXPECT_EQ((Box{0, 128, 340, 50}), layout.footer);
  EXPECT_EQ((Box{24, 145, 204, 15}), layout.frame);
  EXPECT_EQ((Box{240, 140, 88, 26}), layout.button);
}

TEST(AboutLayoutTest, EverythingHasItsPlaceWithALargeButtonAndNoIcon) {
  AboutSizes sizes = Small();
  sizes.icon = {};
  sizes.text = {400, 1000};
  sizes.button_text = {100, 30};
  const AboutLayout layout = LayOut(sizes);
  EXPECT_EQ((Extent{465, 560}), layout.client);
  EXPECT_EQ((Box{24, 24, 400, 448}), layout.text);
  EXPECT_EQ((Box{448, 0, 17, 496}), layout.scroll_bar);
  EXPECT_EQ((Box{0, 496, 465, 64}), layout.footer);
  EXPECT_EQ((Box{24, 520, 293, 15}), layout.frame);
  EXPECT_EQ((Box{329, 508, 124, 40}), layout.button);
}

TEST(AboutLayoutTest, GrowsWithTheText) {
  AboutSizes sizes = Small();
  sizes.text = {400, 300};
  const AboutLayout layout = LayOut(sizes);
  ExpectSound(layout);
  EXPECT_EQ(400, layout.text.width);
  EXPECT_EQ(300, layout.text.height);
}

TEST(AboutLayoutTest, LowTextStandsAtTheMiddleOfTheIcon) {
  AboutSizes sizes = Small();
  sizes.text.height = 20;
  const AboutLayout layout = LayOut(sizes);
  EXPECT_EQ(layout.icon.top + 14, layout.text.top);
}

TEST(AboutLayoutTest, TextThatOutgrowsTheScreenScrolls) {
  AboutSizes sizes = Small();
  sizes.text = {460, 1'000'000};
  const AboutLayout layout = LayOut(sizes);
  ExpectSound(layout);
  EXPECT_EQ(sizes.screen.height, layout.client.height);
  EXPECT_EQ(460, layout.text.width);
  EXPECT_EQ(17, layout.scroll_bar.width);
  EXPECT_EQ(layout.client.width, layout.scroll_bar.Right());
  EXPECT_EQ(layout.footer.top, layout.scroll_bar.height);
}

TEST(AboutLayoutTest, ScalesWithTheScreen) {
  const AboutLayout single = LayOut(Small(96));
  for (const int factor : {2, 3}) {
    const AboutLayout scaled = LayOut(Small(96 * factor));
    ExpectSound(scaled);
    EXPECT_EQ(single.client.width * factor, scaled.client.width);
    EXPECT_EQ(single.client.height * factor, scaled.client.height);
    EXPECT_EQ(single.text.left * factor, scaled.text.left);
    EXPECT_EQ(single.button.height * factor, scaled.button.height);
  }
}

TEST(AboutLayoutTest, WithoutTexts) {
  AboutSizes sizes = Small();
  sizes.text = {};
  const AboutLayout layout = LayOut(sizes);
  ExpectSound(layout);
  EXPECT_EQ(0, layout.text.height);
}

TEST(AboutLayoutTest, ManySizesAreSound) {
  for (const int dpi : {96, 120, 144, 168, 192, 288}) {
    for (const int text : {0, 10, 100, 600, 5000}) {
      for (const int icon : {1, 16, 128}) {
        AboutSizes sizes = Small(dpi);
        sizes.icon = {Scaled(icon, dpi), Scaled(icon, dpi)};
        sizes.text.height = Scaled(text, dpi);
        const AboutLayout layout = LayOut(sizes);
        ExpectSound(layout);
        EXPECT_LE(layout.client.height, sizes.screen.height);
      }
    }
  }
}

TEST(MaxTextWidthTest, IsThatOfTheScreenAtMost) {
  EXPECT_EQ(460, MaxTextWidth(96, 48, 17, 1920));
  EXPECT_EQ(920, MaxTextWidth(192, 96, 34, 3840));
  EXPECT_EQ(189, MaxTextWidth(96, 48, 17, 320));
  EXPECT_EQ(255, MaxTextWidth(96, 0, 17, 320));
  AboutSizes sizes = Small();
  sizes.screen = {400, 300};
  sizes.text = {MaxTextWidth(96, 48, 17, 400), 5000};
  EXPECT_LE(LayOut(sizes).client.width, 400);
  EXPECT_EQ(60, MaxTextWidth(96, 128, 17, 10));
}

TEST(FitIntoTest, ReducesOnly) {
  EXPECT_EQ((Extent{32, 32}), FitInto({32, 32}, 128));
  EXPECT_EQ((Extent{128, 64}), FitInto({1000, 500}, 128));
  EXPECT_EQ((Extent{1, 128}), FitInto({1, 100'000}, 128));
  EXPECT_EQ((Extent{1, 1}), FitInto({0, -5}, 128));
}

}  // namespace
}  // namespace zepkit10
