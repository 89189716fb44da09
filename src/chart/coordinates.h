#pragma once

#include <cmath>
#include <optional>

namespace zepkit10 {

/// One direction of a surface's coordinate system: user units from the first to the last pixel.
/// The bounds of the range lie on the outermost pixels. The last unit may lie below the first.
class Axis {
 public:
  /// `pixels` is at least 1.
  Axis(double first, double last, int pixels) : first_(first), last_(last), pixels_(pixels) {}

  double First() const { return first_; }
  double Last() const { return last_; }
  int Pixels() const { return pixels_; }

  /// A distance of some pixels in user units, with the direction's sign.
  double ToUnits(double pixels) const {
    return pixels * (last_ - first_) / (pixels_ > 1 ? pixels_ - 1 : 1);
  }

  /// The pixel, counted from 0, on which a position lies; it may be outside the surface. Nothing
  /// where the axis has no extent or the position no place on it.
  std::optional<double> ToPixel(double position) const {
    // Single precision drops the rounding noise of units and back: halves of a pixel stay halves,
    // and what is symmetric in units is so in pixels.
    const auto pixel = std::nearbyint(static_cast<float>((position - first_) / ToUnits(1)));
    return std::isfinite(pixel) ? std::optional<double>(pixel) : std::nullopt;
  }

  /// The pixel of a position that is on the surface.
  std::optional<int> ToVisiblePixel(double position) const {
    const auto pixel = ToPixel(position);
    if (!pixel || *pixel < 0 || *pixel >= pixels_) return {};
    return static_cast<int>(*pixel);
  }

 private:
  double first_;
  double last_;
  int pixels_;
};

}  // namespace zepkit10
