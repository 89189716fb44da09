#include "platform/own_icon.h"

#include <vector>

#include "about/image_reduction.h"
#include "platform/automation/module.h"
#include "platform/resource_ids.h"

namespace zepkit10 {
namespace {

constexpr int kLargest = 256;

HICON Load(int width) {
  return static_cast<HICON>(LoadImageW(ThisModule(), MAKEINTRESOURCEW(ZEPKIT10_ICON), IMAGE_ICON,
                                       width, width, LR_DEFAULTCOLOR));
}

BITMAPINFO FormatOf(int width) {
  BITMAPINFO format{};
  format.bmiHeader.biSize = sizeof format.bmiHeader;
  format.bmiHeader.biWidth = width;
  format.bmiHeader.biHeight = -width;
  format.bmiHeader.biPlanes = 1;
  format.bmiHeader.biBitCount = 32;
  format.bmiHeader.biCompression = BI_RGB;
  return format;
}

/// The icon in its largest width; without pixels where the system refuses them.
SquareImage LargestImage() {
  SquareImage image{kLargest, std::vector<std::uint32_t>(kLargest * kLargest)};
  const HICON icon = Load(kLargest);
  ICONINFO parts{};
  const bool known = icon && GetIconInfo(icon, &parts);
  if (icon) DestroyIcon(icon);
  if (!known) return {};
  BITMAPINFO format = FormatOf(kLargest);
  const HDC screen = GetDC(nullptr);
  const int rows =
      GetDIBits(screen, parts.hbmColor, 0, kLargest, image.pixels.data(), &format, DIB_RGB_COLORS);
  ReleaseDC(nullptr, screen);
  DeleteObject(parts.hbmColor);
  DeleteObject(parts.hbmMask);
  if (rows != kLargest) image.pixels.clear();
  return image;
}

/// A set bit for each pixel that is rather transparent, in rows of whole words.
std::vector<BYTE> MaskOf(const SquareImage& image) {
  const auto width = static_cast<std::size_t>(image.width);
  const std::size_t row_size = (width + 15) / 16 * 2;
  std::vector<BYTE> mask(row_size * width);
  for (std::size_t i = 0; i < image.pixels.size(); ++i) {
    if (image.pixels[i] >> 31) continue;
    const std::size_t column = i % width;
    mask[i / width * row_size + column / 8] |= static_cast<BYTE>(0x80 >> column % 8);
  }
  return mask;
}

HICON MakeIcon(const SquareImage& image) {
  const std::vector<BYTE> mask = MaskOf(image);
  const BITMAPINFO format = FormatOf(image.width);
  void* room = nullptr;
  ICONINFO parts{};
  parts.fIcon = TRUE;
  parts.hbmColor = CreateDIBSection(nullptr, &format, DIB_RGB_COLORS, &room, nullptr, 0);
  if (!parts.hbmColor) return nullptr;
  CopyMemory(room, image.pixels.data(), image.pixels.size() * sizeof image.pixels[0]);
  parts.hbmMask = CreateBitmap(image.width, image.width, 1, 1, mask.data());
  const HICON icon = parts.hbmMask ? CreateIconIndirect(&parts) : nullptr;
  if (parts.hbmMask) DeleteObject(parts.hbmMask);
  DeleteObject(parts.hbmColor);
  return icon;
}

}  // namespace

// The system reduces a larger image by leaving pixels out.
HICON LoadOwnIcon(int width) {
  for (const int drawn : {16, 32, 48, kLargest}) {
    if (width == drawn) return Load(width);
  }
  const SquareImage largest = width < kLargest ? LargestImage() : SquareImage{};
  if (largest.pixels.empty()) return Load(width);
  return MakeIcon(Reduce(largest, width));
}

}  // namespace zepkit10
