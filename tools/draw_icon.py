#!/usr/bin/env python3
"""Draws the library's icon, a wrench in front of a function chart, into an .ico file.

    draw_icon.py FILE.ico

The shapes are distance functions on a square from (0, 0) to (1, 1), y downwards: negative inside, and far
enough exact that a pixel's coverage follows from the distance of its centre. Small sizes have heavier
strokes of their own instead of being reduced pictures.
"""
import math
import pathlib
import struct
import sys
import zlib

SIZES = (16, 32, 48, 256)
PNG_FROM = 256  # smaller images are bitmaps, which every reader of icons knows

TILE_TOP, TILE_BOTTOM = (0x3F, 0x8F, 0xEF), (0x16, 0x4B, 0xA6)
CHART = (0xFF, 0xFF, 0xFF)
WRENCH_TOP, WRENCH_BOTTOM = (0xFF, 0xD0, 0x5A), (0xF7, 0x9A, 0x1E)


# ---- shapes ----------------------------------------------------------------------------------------

def rounded_box(x, y, left, top, right, bottom, radius):
    dx = abs(x - (left + right) / 2) - (right - left) / 2 + radius
    dy = abs(y - (top + bottom) / 2) - (bottom - top) / 2 + radius
    return math.hypot(max(dx, 0), max(dy, 0)) + min(max(dx, dy), 0) - radius


def segment(x, y, a, b):
    """Distance from a line from a to b without width."""
    bx, by = b[0] - a[0], b[1] - a[1]
    along = max(0, min(1, ((x - a[0]) * bx + (y - a[1]) * by) / (bx * bx + by * by)))
    return math.hypot(x - a[0] - along * bx, y - a[1] - along * by)


def wrench(x, y, heavy):
    """A wrench on the diagonal, its open jaw at the upper right."""
    jaw, end = (0.69, 0.345), (0.375, 0.66)
    handle = segment(x, y, jaw, end) - 0.068 - 0.022 * heavy
    head = math.hypot(x - jaw[0], y - jaw[1]) - 0.185 - 0.015 * heavy
    foot = math.hypot(x - end[0], y - end[1]) - 0.105 - 0.015 * heavy
    # Seen along the handle: `out` points from the jaw's centre to its opening.
    out, across = ((x - jaw[0]) - (y - jaw[1])) / math.sqrt(2), ((x - jaw[0]) + (y - jaw[1])) / math.sqrt(2)
    notch = max(abs(across) - 0.068 - 0.012 * heavy, -0.035 - out)
    hole = math.hypot(x - end[0], y - end[1]) - 0.042
    body = max(min(head, handle, foot), -notch)
    return body if heavy else max(body, -hole)


def curve(heavy):
    """The points of the chart's curve."""
    steps = 8 if heavy else 24
    return [(0.2 + 0.66 * i / steps, 0.47 - 0.2 * math.sin(2.15 * math.pi * i / steps + 0.2)) for i in range(steps + 1)]


# ---- painting --------------------------------------------------------------------------------------

def mix(low, high, share):
    return tuple(a + (b - a) * share for a, b in zip(low, high))


class Painter:
    def __init__(self, size):
        self.size = size
        self.heavy = 1 if size <= 16 else 0.4 if size <= 32 else 0
        self.line = (0.052, 0.042, 0.030)[0 if size <= 16 else 1 if size <= 32 else 2]
        self.curve = curve(self.heavy)

    def coverage(self, distance):
        return max(0.0, min(1.0, 0.5 - distance * self.size))

    def chart(self, x, y):
        axes = min(segment(x, y, (0.155, 0.16), (0.155, 0.835)), segment(x, y, (0.155, 0.835), (0.845, 0.835)))
        lines = min(segment(x, y, a, b) for a, b in zip(self.curve, self.curve[1:]))
        return min(axes - self.line * 0.8, lines - self.line)

    def pixel(self, column, row):
        """Red, green, blue and alpha from 0 to 255."""
        x, y = (column + 0.5) / self.size, (row + 0.5) / self.size
        alpha = self.coverage(rounded_box(x, y, 0, 0, 1, 1, 0.2))
        if not alpha:
            return 0, 0, 0, 0
        colour = mix(TILE_TOP, TILE_BOTTOM, y)
        body = wrench(x, y, self.heavy)
        # A gap round the wrench sets it off against the chart.
        behind = self.coverage(0.04 - body)
        colour = mix(colour, CHART, self.coverage(self.chart(x, y)) * behind)
        colour = mix(colour, mix(WRENCH_TOP, WRENCH_BOTTOM, y), self.coverage(body))
        return *(round(part) for part in colour), round(alpha * 255)

    def rows(self):
        return [[self.pixel(column, row) for column in range(self.size)] for row in range(self.size)]


# ---- files -----------------------------------------------------------------------------------------

def png(rows):
    def chunk(kind, content):
        return (struct.pack('>I', len(content)) + kind + content +
                struct.pack('>I', zlib.crc32(kind + content)))
    header = struct.pack('>IIBBBBB', len(rows[0]), len(rows), 8, 6, 0, 0, 0)
    lines = b''.join(b'\0' + bytes(part for pixel in row for part in pixel) for row in rows)
    return (b'\x89PNG\r\n\x1a\n' + chunk(b'IHDR', header) + chunk(b'IDAT', zlib.compress(lines, 9)) +
            chunk(b'IEND', b''))


def bitmap(rows):
    """Colours with alpha from the bottom up, and below them the mask for whoever ignores alpha."""
    width, height = len(rows[0]), len(rows)
    header = struct.pack('<IiiHHIIiiII', 40, width, 2 * height, 1, 32, 0, 0, 0, 0, 0, 0)
    colours = b''.join(bytes((b, g, r, a)) for row in reversed(rows) for r, g, b, a in row)
    mask = b''
    for row in reversed(rows):
        bits = ''.join('0' if alpha >= 128 else '1' for *_, alpha in row)
        bits = bits.ljust((width + 31) // 32 * 32, '0')
        mask += int(bits, 2).to_bytes(len(bits) // 8, 'big')
    return header + colours + mask


def icon(sizes=SIZES):
    images = []
    for size in sizes:
        rows = Painter(size).rows()
        images.append(png(rows) if size >= PNG_FROM else bitmap(rows))
    entries, offset = b'', 6 + 16 * len(images)
    for size, image in zip(sizes, images):
        entries += struct.pack('<BBBBHHII', size % 256, size % 256, 0, 0, 1, 32, len(image), offset)
        offset += len(image)
    return struct.pack('<HHH', 0, 1, len(images)) + entries + b''.join(images)


def main():
    path, = map(pathlib.Path, sys.argv[1:])
    path.write_bytes(icon())


if __name__ == '__main__':
    main()
