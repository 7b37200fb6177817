"""A small picture to draw on: polygons, lines, arrows and circles with smooth edges, written as a BMP."""
import math
import struct

SMOOTH = 4  # samples a pixel, either way


class Picture:
    """Coordinates are pixels from the top left corner and may be fractions."""

    def __init__(self, width, height, colour):
        self.width, self.height = width, height
        self.row_bytes = width * SMOOTH * 3
        self.rows = [bytearray(bytes(colour) * (width * SMOOTH)) for _ in range(height * SMOOTH)]

    def _span(self, row, left, right, colour):
        left, right = max(0, left), min(self.width * SMOOTH, right)
        if left < right and 0 <= row < len(self.rows):
            self.rows[row][left * 3:right * 3] = bytes(colour) * (right - left)

    def polygon(self, points, colour):
        points = [(x * SMOOTH, y * SMOOTH) for x, y in points]
        top = max(0, math.floor(min(y for _, y in points)))
        bottom = min(len(self.rows), math.ceil(max(y for _, y in points)))
        edges = list(zip(points, points[1:] + points[:1]))
        for row in range(top, bottom):
            y, crossings = row + 0.5, []
            for (x1, y1), (x2, y2) in edges:
                if (y1 <= y) != (y2 <= y):
                    crossings.append(x1 + (y - y1) * (x2 - x1) / (y2 - y1))
            crossings.sort()
            for left, right in zip(crossings[::2], crossings[1::2]):
                self._span(row, math.floor(left + 0.5), math.floor(right + 0.5), colour)

    def rect(self, left, top, right, bottom, colour):
        self.polygon([(left, top), (right, top), (right, bottom), (left, bottom)], colour)

    def frame(self, left, top, right, bottom, colour, thick=1):
        self.rect(left, top, right, top + thick, colour)
        self.rect(left, bottom - thick, right, bottom, colour)
        self.rect(left, top, left + thick, bottom, colour)
        self.rect(right - thick, top, right, bottom, colour)

    def circle(self, x, y, radius, colour):
        steps = 64
        self.polygon([(x + radius * math.cos(2 * math.pi * i / steps),
                       y + radius * math.sin(2 * math.pi * i / steps)) for i in range(steps)], colour)

    def line(self, x1, y1, x2, y2, colour, thick=1):
        length = math.hypot(x2 - x1, y2 - y1) or 1
        dx, dy = (x2 - x1) / length * thick / 2, (y2 - y1) / length * thick / 2
        self.polygon([(x1 - dy, y1 + dx), (x2 - dy, y2 + dx), (x2 + dy, y2 - dx), (x1 + dy, y1 - dx)],
                     colour)

    def dashes(self, x1, y1, x2, y2, colour, thick=1, on=4, off=3):
        length = math.hypot(x2 - x1, y2 - y1)
        at = 0
        while at < length:
            end = min(length, at + on)
            self.line(x1 + (x2 - x1) * at / length, y1 + (y2 - y1) * at / length,
                      x1 + (x2 - x1) * end / length, y1 + (y2 - y1) * end / length, colour, thick)
            at = end + off

    def head(self, x1, y1, x2, y2, colour, size):
        """The head of an arrow that comes from the first point and ends at the second."""
        length = math.hypot(x2 - x1, y2 - y1) or 1
        dx, dy = (x2 - x1) / length * size, (y2 - y1) / length * size
        self.polygon([(x2, y2), (x2 - dx - dy * 0.6, y2 - dy + dx * 0.6),
                      (x2 - dx + dy * 0.6, y2 - dy - dx * 0.6)], colour)

    def arrow(self, x1, y1, x2, y2, colour, thick=2, size=8, both=False):
        length = math.hypot(x2 - x1, y2 - y1) or 1
        dx, dy = (x2 - x1) / length * size * 0.7, (y2 - y1) / length * size * 0.7
        start = (x1 + dx, y1 + dy) if both else (x1, y1)
        self.line(*start, x2 - dx, y2 - dy, colour, thick)
        self.head(x1, y1, x2, y2, colour, size)
        if both:
            self.head(x2, y2, x1, y1, colour, size)

    def strokes(self, paths, x, y, scale, colour, thick):
        """Lines through points of a small grid, as letters are made of."""
        for path in paths:
            points = [(x + px * scale, y + py * scale) for px, py in path]
            for a, b in zip(points, points[1:]):
                self.line(*a, *b, colour, thick)
            for point in points:
                self.circle(*point, thick / 2, colour)

    def pixels(self):
        """Rows of (red, green, blue) from the top, each the mean of its samples."""
        area, width = SMOOTH * SMOOTH, self.width
        for row in range(0, len(self.rows), SMOOTH):
            group = self.rows[row:row + SMOOTH]
            if all(r == group[0] for r in group) and group[0] == group[0][:3] * (width * SMOOTH):
                yield [tuple(group[0][:3])] * width
                continue
            sums = [0] * (width * 3)
            for samples in group:
                for channel in range(3):
                    for s in range(SMOOTH):
                        part = samples[s * 3 + channel::SMOOTH * 3]
                        sums[channel::3] = [a + b for a, b in zip(sums[channel::3], part)]
            means = [(v + area // 2) // area for v in sums]
            yield list(zip(means[0::3], means[1::3], means[2::3]))

    def turned(self, quarters):
        """The square picture turned clockwise by quarter turns."""
        assert self.width == self.height
        result = Picture(self.width, self.height, (0, 0, 0))
        grid = [[bytes(r[i:i + 3]) for i in range(0, self.row_bytes, 3)] for r in self.rows]
        for _ in range(quarters):
            grid = [list(r) for r in zip(*grid[::-1])]
        result.rows = [bytearray(b"".join(r)) for r in grid]
        return result


def true_colour(picture):
    """A BMP of 24 bits a pixel."""
    pad = b"\0" * (-picture.width * 3 % 4)
    rows = [b"".join(bytes((b, g, r)) for r, g, b in row) + pad for row in picture.pixels()]
    return _file(picture, 24, b"", rows)


def palette(picture):
    """A BMP of 8 bits a pixel; colours are brought to steps of 8 so that 256 suffice."""
    def step(v):
        return min(255, (v + 4) // 8 * 8)
    grid = [[(step(r), step(g), step(b)) for r, g, b in row] for row in picture.pixels()]
    colours = sorted({c for row in grid for c in row})
    assert len(colours) <= 256, f"{len(colours)} colours"
    index = {c: i for i, c in enumerate(colours)}
    table = b"".join(bytes((b, g, r, 0)) for r, g, b in colours)
    pad = b"\0" * (-picture.width % 4)
    return _file(picture, 8, table, [bytes(index[c] for c in row) + pad for row in grid])


def _file(picture, bits, table, rows):
    data = b"".join(reversed(rows))
    offset = 14 + 40 + len(table)
    return (struct.pack("<2sIHHI", b"BM", offset + len(data), 0, 0, offset)
            + struct.pack("<IiiHHIIiiII", 40, picture.width, picture.height, 1, bits, 0, len(data),
                          3780, 3780, len(table) // 4, 0) + table + data)
