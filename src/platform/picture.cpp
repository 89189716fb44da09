#include "platform/picture.h"

#include <olectl.h>

#include <cstring>
#include <new>
#include <vector>

namespace zepkit10 {
namespace {

using Microsoft::WRL::ComPtr;

/// The surface as the content of a bitmap file: 24 bits for each pixel, rows from the bottom up.
std::vector<BYTE> BitmapFile(const Surface& surface) {
  const std::size_t row_size =
      (static_cast<std::size_t>(surface.Width()) * 3 + 3) & ~std::size_t{3};
  const std::size_t image_size = row_size * static_cast<std::size_t>(surface.Height());
  BITMAPFILEHEADER file{};
  BITMAPINFOHEADER format{};
  file.bfType = 0x4D42;  // "BM"
  file.bfOffBits = sizeof file + sizeof format;
  file.bfSize = static_cast<DWORD>(file.bfOffBits + image_size);
  format.biSize = sizeof format;
  format.biWidth = surface.Width();
  format.biHeight = surface.Height();
  format.biPlanes = 1;
  format.biBitCount = 24;
  format.biSizeImage = static_cast<DWORD>(image_size);
  std::vector<BYTE> content(file.bfOffBits + image_size);
  std::memcpy(content.data(), &file, sizeof file);
  std::memcpy(content.data() + sizeof file, &format, sizeof format);
  const std::vector<Colour> pixels = surface.Pixels();
  auto pixel = pixels.begin();
  for (int row = surface.Height() - 1; row >= 0; --row) {
    BYTE* to = content.data() + file.bfOffBits + static_cast<std::size_t>(row) * row_size;
    for (int column = 0; column < surface.Width(); ++column, ++pixel) {
      *to++ = static_cast<BYTE>(*pixel);
      *to++ = static_cast<BYTE>(*pixel >> 8);
      *to++ = static_cast<BYTE>(*pixel >> 16);
    }
  }
  return content;
}

ComPtr<IStream> StreamOf(const std::vector<BYTE>& content) {
  const HGLOBAL memory = GlobalAlloc(GMEM_MOVEABLE, content.size());
  if (!memory) throw std::bad_alloc();
  std::memcpy(GlobalLock(memory), content.data(), content.size());
  GlobalUnlock(memory);
  ComPtr<IStream> stream;
  if (FAILED(CreateStreamOnHGlobal(memory, TRUE, &stream))) {
    GlobalFree(memory);
    throw std::bad_alloc();
  }
  return stream;
}

}  // namespace

// A picture made from a bitmap handle cannot be saved everywhere; one that was loaded can.
ComPtr<IPictureDisp> MakePicture(const Surface& surface) {
  const std::vector<BYTE> content = BitmapFile(surface);
  ComPtr<IPictureDisp> picture;
  if (FAILED(OleLoadPicture(StreamOf(content).Get(), static_cast<LONG>(content.size()), FALSE,
                            IID_IPictureDisp, reinterpret_cast<void**>(picture.GetAddressOf())))) {
    throw std::bad_alloc();
  }
  return picture;
}

}  // namespace zepkit10
