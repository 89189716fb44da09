#pragma once

#include <windows.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <vector>

/// A bitmap to draw on, white at first.
class Canvas {
 public:
  Canvas(int width, int height) : size_(static_cast<std::size_t>(width * height)) {
    BITMAPINFO format{};
    format.bmiHeader = {sizeof format.bmiHeader, width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
    void* room = nullptr;
    bitmap_ = CreateDIBSection(nullptr, &format, DIB_RGB_COLORS, &room, nullptr, 0);
    EXPECT_NE(nullptr, bitmap_);
    pixels_ = static_cast<std::uint32_t*>(room);
    std::fill_n(pixels_, size_, 0xFFFFFFu);
    before_ = SelectObject(context_, bitmap_);
  }
  ~Canvas() {
    SelectObject(context_, before_);
    DeleteObject(bitmap_);
    DeleteDC(context_);
  }
  Canvas(const Canvas&) = delete;
  Canvas& operator=(const Canvas&) = delete;

  HDC context() const { return context_; }

  /// 0x00RRGGBB, rows from top to bottom.
  std::vector<std::uint32_t> Pixels() const {
    GdiFlush();
    std::vector<std::uint32_t> pixels(pixels_, pixels_ + size_);
    for (auto& pixel : pixels) pixel &= 0xFFFFFF;
    return pixels;
  }

 private:
  const std::size_t size_;
  const HDC context_ = CreateCompatibleDC(nullptr);
  HBITMAP bitmap_ = nullptr;
  HGDIOBJ before_ = nullptr;
  std::uint32_t* pixels_ = nullptr;
};
