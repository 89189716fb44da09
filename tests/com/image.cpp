#include "com/image.h"

#include <algorithm>

Image::Image(IUnknown* source) {
  Microsoft::WRL::ComPtr<IPicture> picture;
  OLE_HANDLE handle = 0;
  if (!source || FAILED(source->QueryInterface(IID_PPV_ARGS(&picture)))) {
    ADD_FAILURE() << "no picture";
    return;
  }
  EXPECT_EQ(S_OK, picture->get_Handle(&handle));
  const auto bitmap = reinterpret_cast<HBITMAP>(static_cast<UINT_PTR>(handle));
  BITMAP size{};
  EXPECT_EQ(static_cast<int>(sizeof size), GetObjectW(bitmap, sizeof size, &size));
  BITMAPINFO format{};
  format.bmiHeader = {
      sizeof format.bmiHeader, size.bmWidth, -size.bmHeight, 1, 32, BI_RGB, 0, 0, 0, 0, 0};
  pixels.resize(static_cast<std::size_t>(size.bmWidth) * static_cast<std::size_t>(size.bmHeight));
  const HDC context = CreateCompatibleDC(nullptr);
  EXPECT_EQ(size.bmHeight, GetDIBits(context, bitmap, 0, static_cast<UINT>(size.bmHeight),
                                     pixels.data(), &format, DIB_RGB_COLORS));
  DeleteDC(context);
  for (auto& pixel : pixels) pixel &= 0xFFFFFF;
  width = size.bmWidth;
  height = size.bmHeight;
}

int Image::Count(std::uint32_t colour, int from_row, int to_row) const {
  const auto end = pixels.begin() + std::ptrdiff_t{width} * std::min(to_row, height);
  return static_cast<int>(
      std::count(pixels.begin() + std::ptrdiff_t{width} * from_row, end, colour));
}
