#include "platform/picture.h"

#include <olectl.h>

#include "com/component.h"
#include "com/image.h"

namespace zepkit10 {
namespace {

using Microsoft::WRL::ComPtr;

/// A surface whose pixels are all different where it is small enough.
Surface Coloured(int width, int height) {
  Surface surface;
  surface.Resize(width, height);
  surface.Clear();
  surface.SetScale(0, 0, width - 1, height - 1);
  for (int row = 0; row < height; ++row) {
    for (int column = 0; column < width; ++column) {
      surface.Point(column, row, static_cast<Colour>(row * width + column) * 0x010305 & 0xFFFFFF);
    }
  }
  return surface;
}

TEST(PictureTest, ShowsThePixelsOfTheSurface) {
  for (const int width : {2, 3, 4, 5, 101}) {  // rows of a file are filled up to four bytes
    const Surface surface = Coloured(width, 7);
    const Image image(MakePicture(surface).Get());
    EXPECT_EQ(width, image.width);
    EXPECT_EQ(7, image.height);
    EXPECT_EQ(surface.Pixels(), image.pixels);
  }
}

TEST(PictureTest, IsABitmap) {
  ComPtr<IPicture> picture;
  ASSERT_EQ(S_OK, MakePicture(Surface()).As(&picture));
  SHORT type = 0;
  EXPECT_EQ(S_OK, picture->get_Type(&type));
  EXPECT_EQ(PICTYPE_BITMAP, type);
}

TEST(PictureTest, CanBeSavedAndLoadedAgain) {
  const Surface surface = Coloured(31, 17);
  ComPtr<IPicture> picture;
  ASSERT_EQ(S_OK, MakePicture(surface).As(&picture));
  ComPtr<IStream> stream;
  ASSERT_EQ(S_OK, CreateStreamOnHGlobal(nullptr, TRUE, &stream));
  LONG size = 0;
  ASSERT_EQ(S_OK, picture->SaveAsFile(stream.Get(), TRUE, &size));
  EXPECT_GE(size, 54 + 17 * 96);
  ASSERT_EQ(S_OK, stream->Seek({}, STREAM_SEEK_SET, nullptr));
  char start[2] = {};
  ASSERT_EQ(S_OK, stream->Read(start, 2, nullptr));
  EXPECT_EQ("BM", std::string(start, 2));
  ASSERT_EQ(S_OK, stream->Seek({}, STREAM_SEEK_SET, nullptr));
  ComPtr<IPicture> loaded;
  ASSERT_EQ(S_OK, OleLoadPicture(stream.Get(), size, FALSE, IID_IPicture,
                                 reinterpret_cast<void**>(loaded.GetAddressOf())));
  EXPECT_EQ(surface.Pixels(), Image(loaded.Get()).pixels);
}

TEST(PictureTest, HasABitmapOfItsOwn) {
  Surface surface = Coloured(20, 10);
  const auto picture = MakePicture(surface);
  const auto pixels = surface.Pixels();
  surface.Clear();
  EXPECT_EQ(pixels, Image(picture.Get()).pixels);
  EXPECT_EQ(std::vector<Colour>(200, 0xFFFFFF), Image(MakePicture(surface).Get()).pixels);
}

}  // namespace
}  // namespace zepkit10
