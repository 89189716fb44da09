#include "about/image_reduction.h"

#include <algorithm>
#include <cstddef>

namespace zepkit10 {
namespace {

/// A sum of colours, each weighted by its alpha and by the area that counts.
struct Sum {
  double parts[3] = {};
  double alpha = 0;

  void Add(std::uint32_t pixel, double area) {
    const double weight = area * (pixel >> 24);
    for (int i = 0; i < 3; ++i) parts[i] += weight * (pixel >> (8 * i) & 0xFF);
    alpha += weight;
  }

  std::uint32_t Mean(double area) const {
    if (alpha <= 0) return 0;
    std::uint32_t pixel = static_cast<std::uint32_t>(alpha / area + 0.5) << 24;
    for (int i = 0; i < 3; ++i) {
      pixel |= static_cast<std::uint32_t>(parts[i] / alpha + 0.5) << (8 * i);
    }
    return pixel;
  }
};

/// How much of the pixel at a place lies between two bounds.
double Share(int place, double from, double to) {
  return std::min<double>(place + 1, to) - std::max<double>(place, from);
}

std::uint32_t MeanOf(const SquareImage& image, double left, double top, double side) {
  Sum sum;
  const auto end = [&](double bound) { return std::min<double>(bound, image.width); };
  for (int row = static_cast<int>(top); row < end(top + side); ++row) {
    const double height = Share(row, top, top + side);
    for (int column = static_cast<int>(left); column < end(left + side); ++column) {
      sum.Add(image.pixels[static_cast<std::size_t>(row) * image.width + column],
              height * Share(column, left, left + side));
    }
  }
  return sum.Mean(side * side);
}

}  // namespace

SquareImage Reduce(const SquareImage& image, int width) {
  SquareImage reduced{width, {}};
  reduced.pixels.reserve(static_cast<std::size_t>(width) * width);
  const double side = static_cast<double>(image.width) / width;
  for (int row = 0; row < width; ++row) {
    for (int column = 0; column < width; ++column) {
      reduced.pixels.push_back(MeanOf(image, column * side, row * side, side));
    }
  }
  return reduced;
}

}  // namespace zepkit10
