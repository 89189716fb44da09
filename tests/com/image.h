#pragma once

#include <windows.h>
#include <gtest/gtest.h>
#include <ocidl.h>
#include <wrl/client.h>

#include <cstdint>
#include <vector>

/// The pixels of a picture as a client gets at them: through the bitmap handle it hands out.
struct Image {
  int width = 0;
  int height = 0;
  std::vector<std::uint32_t> pixels;  // 0x00RRGGBB, rows from top to bottom

  Image() = default;
  explicit Image(IUnknown* source);

  std::uint32_t At(int column, int row) const {
    return pixels.at(static_cast<std::size_t>(row * width + column));
  }
  int Count(std::uint32_t colour, int from_row = 0, int to_row = 1 << 20) const;
  friend bool operator==(const Image&, const Image&) = default;
};
