#include "about/about_layout.h"

#include <algorithm>
#include <cstdint>

namespace zepkit10 {
namespace {

// For 96 dots per inch.
constexpr int kMargin = 24;
constexpr int kGap = 18;
constexpr int kFooterMargin = 12;
constexpr int kMaxTextWidth = 460;
constexpr int kMinClientWidth = 340;
constexpr int kMinTextWidth = 60;
constexpr Extent kButtonPadding = {24, 10};
constexpr Extent kMinButton = {88, 26};

/// From the left edge of the window to the text.
int TextLeft(int dpi, int icon_width) {
  return Scaled(kMargin, dpi) + (icon_width > 0 ? icon_width + Scaled(kGap, dpi) : 0);
}

void PlaceFooter(const AboutSizes& sizes, AboutLayout& layout) {
  const int margin = Scaled(kFooterMargin, sizes.dpi);
  Box& button = layout.button;
  button.width = std::max(Scaled(kMinButton.width, sizes.dpi),
                          sizes.button_text.width + Scaled(kButtonPadding.width, sizes.dpi));
  button.height = std::max(Scaled(kMinButton.height, sizes.dpi),
                           sizes.button_text.height + Scaled(kButtonPadding.height, sizes.dpi));
  layout.footer.height = button.height + 2 * margin;
  layout.footer.width = layout.client.width;
  button.left = layout.client.width - margin - button.width;
  layout.frame.left = Scaled(kMargin, sizes.dpi);
  layout.frame.width = std::max(button.left - margin - layout.frame.left, 0);
  layout.frame.height = sizes.moving_text.height;
}

void MoveFooterTo(int top, AboutLayout& layout) {
  layout.footer.top = top;
  layout.button.top = top + (layout.footer.height - layout.button.height) / 2;
  layout.frame.top = top + (layout.footer.height - layout.frame.height) / 2;
  layout.client.height = layout.footer.Bottom();
}

}  // namespace

int MaxTextWidth(int dpi, int icon_width, int scroll_bar_width, int screen_width) {
  const int around = TextLeft(dpi, icon_width) + Scaled(kMargin, dpi) + scroll_bar_width;
  return std::clamp(screen_width - around, Scaled(kMinTextWidth, dpi), Scaled(kMaxTextWidth, dpi));
}

AboutLayout LayOut(const AboutSizes& sizes) {
  const int margin = Scaled(kMargin, sizes.dpi);
  AboutLayout layout;
  layout.icon = {margin, margin, sizes.icon.width, sizes.icon.height};
  layout.text.left = TextLeft(sizes.dpi, sizes.icon.width);
  layout.client.width =
      std::max(Scaled(kMinClientWidth, sizes.dpi), layout.text.left + sizes.text.width + margin);
  PlaceFooter(sizes, layout);

  const int room = std::max(sizes.screen.height - layout.footer.height - 2 * margin, margin);
  layout.text.height = std::min(sizes.text.height, room);
  if (layout.text.height < sizes.text.height) {
    // The bar stands at the edge of the window, which grows by it.
    layout.client.width += sizes.scroll_bar_width;
    PlaceFooter(sizes, layout);
  }
  const int height = std::max(layout.text.height, std::min(sizes.icon.height, room));
  layout.text.top = margin + (height - layout.text.height) / 2;
  layout.text.width = layout.client.width - layout.text.left - margin;
  MoveFooterTo(height + 2 * margin, layout);
  if (layout.text.height < sizes.text.height) {
    layout.text.width -= sizes.scroll_bar_width;
    layout.scroll_bar = {layout.client.width - sizes.scroll_bar_width, 0, sizes.scroll_bar_width,
                         layout.footer.top};
  }
  return layout;
}

Extent FitInto(Extent picture, int square) {
  const int longer = std::max({picture.width, picture.height, 1});
  if (longer <= square) return {std::max(picture.width, 1), std::max(picture.height, 1)};
  const auto reduce = [&](int side) {
    return std::max(static_cast<int>(std::int64_t{side} * square / longer), 1);
  };
  return {reduce(picture.width), reduce(picture.height)};
}

}  // namespace zepkit10
