"""The library's icon: a well-formed file with an image for every size."""
import struct
import unittest

import draw_icon


def images(content):
    """(width, height, bits, image) of each entry."""
    reserved, kind, count = struct.unpack_from('<HHH', content)
    assert (reserved, kind) == (0, 1)
    for i in range(count):
        width, height, _, _, _, bits, size, offset = struct.unpack_from('<BBBBHHII', content, 6 + 16 * i)
        yield width or 256, height or 256, bits, content[offset:offset + size]


class DrawIconTest(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.content = draw_icon.icon()
        cls.images = list(images(cls.content))

    def test_has_every_size_in_full_colour(self):
        self.assertEqual([(size, size, 32) for size in (16, 32, 48, 256)], [image[:3] for image in self.images])

    def test_fills_the_file(self):
        self.assertEqual(len(self.content), 6 + 16 * 4 + sum(len(image[3]) for image in self.images))

    def test_small_images_are_bitmaps_with_a_mask(self):
        for width, height, _, image in self.images[:3]:
            self.assertEqual((40, width, 2 * height, 1, 32), struct.unpack_from('<IiiHH', image))
            mask_row = (width + 31) // 32 * 4
            self.assertEqual(40 + width * height * 4 + mask_row * height, len(image))

    def test_masks_cover_what_is_transparent(self):
        width, height, _, image = self.images[1]
        mask = image[40 + width * height * 4:]
        self.assertEqual(1, mask[0] >> 7)  # a corner
        self.assertEqual(0, mask[height // 2 * 4 + 2] >> 7)  # the middle

    def test_the_large_image_is_a_png(self):
        image = self.images[3][3]
        self.assertEqual(b'\x89PNG\r\n\x1a\n', image[:8])
        self.assertEqual((256, 256, 8, 6), struct.unpack_from('>IIBB', image, 16))

    def test_shows_tile_chart_and_wrench(self):
        painter = draw_icon.Painter(48)
        self.assertEqual((0, 0, 0, 0), painter.pixel(0, 0))
        axis, jaw, tile = painter.pixel(7, 20), painter.pixel(30, 18), painter.pixel(40, 35)
        self.assertEqual((255, 255, 255, 255), axis)
        self.assertGreater(jaw[0], jaw[2])  # amber
        self.assertGreater(tile[2], tile[0])  # blue

    def test_draws_the_same_each_time(self):
        self.assertEqual(draw_icon.icon((16, 32)), draw_icon.icon((16, 32)))


if __name__ == '__main__':
    unittest.main()
