#pragma once

#include <string_view>
#include <vector>

#include "chart/coordinates.h"
#include "chart/palette.h"

namespace zepkit10 {

/// A white bitmap in memory to draw on, with a coordinate system of the user's. It needs neither
/// display nor window, and holds no handle of the system. What lies outside is not drawn.
class Surface {
 public:
  /// 480 by 320 pixels.
  Surface();

  int Width() const { return x_.Pixels(); }
  int Height() const { return y_.Pixels(); }
  /// Changes the size in pixels; what fits stays. Error 5 for a size outside 1 to 16384, error 7
  /// where there is no memory for it; nothing has changed then.
  void Resize(double width, double height);

  /// Makes everything white.
  void Clear();

  /// Puts (left, top) on the first pixel and (right, bottom) on the last.
  void SetScale(double left, double top, double right, double bottom);
  const Axis& X() const { return x_; }
  const Axis& Y() const { return y_; }

  void Point(double x, double y, Colour colour) {
    const auto column = x_.ToVisiblePixel(x);
    const auto row = y_.ToVisiblePixel(y);
    if (column && row) At(*column, *row) = colour;
  }
  /// A line along the x direction, and one along the y direction.
  void LineAlongX(double from, double to, double y, Colour colour);
  void LineAlongY(double x, double from, double to, Colour colour);

  /// Writes text into a line of the height of text, counted from 0 at the top, from the left border
  /// on.
  void TextLine(int line, std::u16string_view text, Colour colour);
  /// The height of a line of text in pixels.
  static int TextLineHeight();

  /// Rows from top to bottom.
  std::vector<Colour> Pixels() const;

 private:
  Colour& At(int column, int row) {
    return pixels_[static_cast<std::size_t>(row) * static_cast<std::size_t>(Width()) +
                   static_cast<std::size_t>(column)];
  }

  std::vector<Colour> pixels_;  // empty until something is drawn: all white
  Axis x_;
  Axis y_;
};

}  // namespace zepkit10
