#pragma once

#include <cstdint>
#include <vector>

namespace zepkit10 {

/// A square image: pixels as 0xAARRGGBB, row by row, colours not multiplied by alpha.
struct SquareImage {
  int width = 0;
  std::vector<std::uint32_t> pixels;
};

/// The image in a smaller width, each pixel the mean of what it covers.
SquareImage Reduce(const SquareImage& image, int width);

}  // namespace zepkit10
