#pragma once

namespace zepkit10 {

/// Pixels on the window's client area.
struct Box {
  int left = 0;
  int top = 0;
  int width = 0;
  int height = 0;

  int Right() const { return left + width; }
  int Bottom() const { return top + height; }
  friend bool operator==(const Box&, const Box&) = default;
};

struct Extent {
  int width = 0;
  int height = 0;

  friend bool operator==(const Extent&, const Extent&) = default;
};

/// A length for 96 dots per inch in the pixels of a screen.
constexpr int Scaled(int length, int dpi) { return (length * dpi + 48) / 96; }

/// What an about window has to make room for, in pixels of a screen.
struct AboutSizes {
  int dpi = 96;
  Extent icon;
  Extent text;  // all rows of it
  Extent button_text;
  Extent moving_text;
  int scroll_bar_width = 0;
  Extent screen;  // the largest client area that fits
};

/// Where everything is: above, the icon with the text beside it; below, a footer with the frame of
/// the moving text and the button.
struct AboutLayout {
  Extent client;
  Box icon;
  Box text;
  Box scroll_bar;  // without width where the text needs none
  Box footer;
  Box frame;
  Box button;
};

/// The width that texts may take before they have to be broken.
int MaxTextWidth(int dpi, int icon_width, int scroll_bar_width, int screen_width);

AboutLayout LayOut(const AboutSizes& sizes);

/// The size of a picture reduced to fit into a square; never enlarged, never less than a pixel.
Extent FitInto(Extent picture, int square);

}  // namespace zepkit10
