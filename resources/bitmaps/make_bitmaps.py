#!/usr/bin/env python3
"""Draws the pictures of the dialogs into the folder of this script.

usage: make_bitmaps.py          writes every picture
       make_bitmaps.py --check  writes nothing; exits 1 when a picture differs from what would be drawn

Sketches have the proportions of the box that shows them: 138 x 246 pixels in the registration dialog,
120 x 189 on the paper page. Labels run upwards, out of the printer."""
import os
import sys

from raster import Picture, palette, true_colour

BACK, LINER, LINER_EDGE = (232, 240, 248), (248, 232, 200), (200, 176, 128)
LABEL, INK, SOFT = (255, 255, 255), (48, 56, 64), (152, 160, 168)
RED, TINT, BLUE, BLUE_TINT = (216, 24, 24), (255, 208, 208), (24, 88, 176), (224, 240, 255)
STEEL, DARK = (136, 144, 152), (40, 48, 56)


class Strip:
    """A liner with labels on it; the middle label is the one that is measured."""

    def __init__(self, width, height, label_top, label_height, gap, eye_marks=False):
        self.p = Picture(width, height, BACK)
        self.left, self.right = width * 0.24, width * 0.76
        self.edge = (width * 0.13, width * 0.87)
        self.top, self.bottom, self.gap = label_top, label_top + label_height, gap
        self.p.rect(self.edge[0], 0, self.edge[1], height, LINER)
        self.p.rect(self.edge[0], 0, self.edge[0] + 1, height, LINER_EDGE)
        self.p.rect(self.edge[1] - 1, 0, self.edge[1], height, LINER_EDGE)
        pitch = label_height + gap
        for k in (-2, -1, 0, 1, 2):
            self.label(label_top + k * pitch, label_height, k == 0, eye_marks)

    def label(self, top, height, measured, eye_marks):
        if eye_marks:
            for a, b in ((self.edge[0], self.left), (self.right, self.edge[1])):
                self.p.rect(a, top, b, top + 12, DARK)
        self.p.rect(self.left, top, self.right, top + height, LABEL)
        self.p.frame(self.left, top, self.right, top + height, INK if measured else SOFT)

    def printable(self, margin_x, margin_y):
        self.area = (self.left + margin_x, self.top + margin_y, self.right - margin_x,
                     self.bottom - margin_y)
        left, top, right, bottom = self.area
        self.p.rect(left, top, right, bottom, BLUE_TINT)
        for a, b in (((left, top), (right, top)), ((left, bottom), (right, bottom)),
                     ((left, top), (left, bottom)), ((right, top), (right, bottom))):
            self.p.dashes(*a, *b, BLUE, 1.5)
        return self.area

    def across(self, x1, x2, y, guides_from):
        """A measure from side to side at height y, with guide lines up from it."""
        for x in (x1, x2):
            self.p.line(x, guides_from, x, y + 6, RED)
        self.p.arrow(x1, y, x2, y, RED, 3, 10, both=True)

    def down(self, y1, y2, x, guides_from):
        for y in (y1, y2):
            self.p.line(guides_from, y, x + 6, y, RED)
        self.p.arrow(x, y1, x, y2, RED, 3, 10, both=True)

    def between_across(self, x1, x2, y, reach=16):
        """A measure too narrow for its own arrow: two arrows point at it from outside."""
        self.p.arrow(x1 - reach, y, x1, y, RED, 3, 8)
        self.p.arrow(x2 + reach, y, x2, y, RED, 3, 8)

    def between_down(self, y1, y2, x, reach=18):
        self.p.arrow(x, y1 - reach, x, y1, RED, 3, 8)
        self.p.arrow(x, y2 + reach, x, y2, RED, 3, 8)


def registration_strip(eye_marks=False):
    return Strip(138, 246, 62, 122, 22, eye_marks)


def sketch_width():
    s = registration_strip()
    s.p.rect(s.left + 1, s.top + 1, s.right - 1, s.bottom - 1, TINT)
    s.across(s.left, s.right, (s.top + s.bottom) / 2, s.top)
    return s.p


def sketch_length():
    s = registration_strip()
    s.p.rect(s.left + 1, s.top + 1, s.right - 1, s.bottom - 1, TINT)
    s.down(s.top, s.bottom, (s.left + s.right) / 2, s.left)
    return s.p


def sketch_printable_left():
    s = registration_strip()
    left, top, _, bottom = s.printable(16, 18)
    s.p.rect(s.left + 1, s.top + 1, left - 1, s.bottom - 1, TINT)
    s.between_across(s.left, left, (top + bottom) / 2, 24)
    return s.p


def sketch_printable_top():
    s = registration_strip()
    _, top, _, _ = s.printable(16, 20)
    s.p.rect(s.left + 1, s.top + 1, s.right - 1, top - 1, TINT)
    s.between_down(s.top, top, (s.left + s.right) / 2, 26)
    return s.p


def sketch_printable_width():
    s = registration_strip()
    left, top, right, bottom = s.printable(10, 18)
    s.across(left, right, (top + bottom) / 2, top)
    return s.p


def sketch_printable_height():
    s = registration_strip()
    left, top, right, bottom = s.printable(10, 18)
    s.down(top, bottom, (left + right) / 2, left)
    return s.p


def sketch_gap():
    s = registration_strip()
    s.p.rect(s.edge[0] + 1, s.bottom, s.edge[1] - 1, s.bottom + s.gap, TINT)
    for y in (s.bottom, s.bottom + s.gap):
        s.p.line(s.left - 8, y, s.right + 8, y, RED)
    s.between_down(s.bottom, s.bottom + s.gap, (s.left + s.right) / 2, 30)
    return s.p


def sketch_eye_mark():
    s = registration_strip(eye_marks=True)
    x = s.edge[1] + 4
    for y in (s.top, s.top + 12):
        s.p.line(s.right, y, s.p.width - 2, y, RED)
    s.p.frame(s.edge[0] - 2, s.top - 2, s.left, s.top + 14, RED, 2)
    s.p.frame(s.right, s.top - 2, s.edge[1] + 2, s.top + 14, RED, 2)
    s.between_down(s.top - 2, s.top + 14, x, 24)
    return s.p


def page_strip(label_top=70, label_height=84, gap=20, eye_marks=False):
    return Strip(120, 189, label_top, label_height, gap, eye_marks)


def sketch_base_points():
    s = page_strip(52, 112)
    x, y = s.left + 18, s.top + 26
    s.p.rect(x, y, s.right - 4, s.bottom - 8, BLUE_TINT)
    s.p.dashes(x, y, s.p.width, y, RED, 1.5, 3, 2)
    s.p.dashes(x, y, x, s.p.height, RED, 1.5, 3, 2)
    s.p.circle(x, y, 4.5, RED)
    s.p.circle(x, y, 2, LABEL)
    s.p.arrow(x + 30, y - 17, x + 30, y + 17, RED, 3, 8, both=True)
    s.p.arrow(x - 17, y + 40, x + 17, y + 40, RED, 3, 8, both=True)
    return s.p


def printer_edge(s, y):
    """The tear bar and the print head on both sides of the strip, its edge at height y."""
    for left, right in ((0, s.edge[0] - 2), (s.edge[1] + 2, s.p.width)):
        s.p.rect(left, y, right, y + 40, STEEL)
        s.p.frame(left, y, right, y + 40, DARK)
        s.p.rect(left, y, right, y + 5, DARK)


def sketch_feed_offsets():
    s = page_strip(100, 80, 22)
    y = s.top - s.gap / 2
    printer_edge(s, y)
    s.p.dashes(0, y, s.p.width, y, RED, 2, 5, 3)
    s.p.arrow(60, y - 30, 60, y + 30, RED, 3.5, 10, both=True)
    return s.p


def sensor(s, x, y):
    """A sensor that looks at the strip at height y, with its beam."""
    s.p.polygon([(x + 9, y), (x + 17, y - 4), (x + 17, y + 4)], (255, 240, 128))
    s.p.rect(x, y - 9, x + 12, y + 9, BLUE)
    s.p.frame(x, y - 9, x + 12, y + 9, DARK)
    s.p.circle(x + 11, y, 2.5, (255, 240, 128))


def sketch_pitch_eye_mark():
    s = page_strip(78, 80, 22, eye_marks=True)
    s.p.frame(s.edge[0] - 1, s.top - 2, s.left, s.top + 14, RED, 2)
    sensor(s, 1, s.top + 6)
    s.p.dashes(0, s.top, s.p.width, s.top, RED, 2, 5, 3)
    s.p.arrow(66, s.top - 28, 66, s.top + 28, RED, 3.5, 10, both=True)
    return s.p


def sketch_pitch():
    s = page_strip(98, 80, 24)
    y = s.top - s.gap
    s.p.rect(s.edge[0] + 1, y, s.edge[1] - 1, s.top, TINT)
    sensor(s, 1, y + s.gap / 2)
    s.p.dashes(0, y, s.p.width, y, RED, 2, 5, 3)
    s.p.arrow(66, y - 28, 66, y + 28, RED, 3.5, 10, both=True)
    return s.p


def upright():
    """The letter that shows how the print stands on the label, with a base line under it."""
    p = Picture(96, 96, LABEL)
    p.frame(0, 0, 96, 96, SOFT, 2)
    p.polygon([(48, 12), (78, 72), (65, 72), (48, 36), (31, 72), (18, 72)], BLUE)
    p.rect(35, 50, 61, 58, BLUE)
    p.rect(14, 79, 82, 85, RED)
    return p


def feed_direction():
    p = Picture(24, 102, BACK)
    p.rect(3, 0, 21, 102, LINER)
    p.rect(3, 0, 4, 102, LINER_EDGE)
    p.rect(20, 0, 21, 102, LINER_EDGE)
    p.polygon([(12, 8), (22, 30), (16, 30), (16, 94), (8, 94), (8, 30), (2, 30)], BLUE)
    return p


LETTERS = {  # strokes on a grid four wide and six high
    "Q": [[(0, 1.2), (1.2, 0), (2.8, 0), (4, 1.2), (4, 4.8), (2.8, 6), (1.2, 6), (0, 4.8), (0, 1.2)],
          [(2.5, 4.5), (4.3, 6.4)]],
    "M": [[(0, 6), (0, 0), (2, 3.6), (4, 0), (4, 6)]],
    "6": [[(3.8, 0.8), (2.8, 0), (1.2, 0), (0, 1.5), (0, 4.8), (1.2, 6), (2.8, 6), (4, 4.9), (4, 3.9),
           (2.8, 2.8), (1.2, 2.8), (0, 3.9)]],
    "1": [[(0.6, 1.3), (2, 0), (2, 6)], [(0.6, 6), (3.4, 6)]],
    "0": [[(0, 1.5), (1.2, 0), (2.8, 0), (4, 1.5), (4, 4.5), (2.8, 6), (1.2, 6), (0, 4.5), (0, 1.5)]],
    "r": [[(0.5, 2), (0.5, 6)], [(0.5, 3.4), (1.7, 2.1), (3.2, 2.1)]],
}


def write(p, text, x, y, scale, colour, thick):
    for letter in text:
        p.strokes(LETTERS[letter], x, y, scale, colour, thick)
        x += 5.6 * scale


def bars(p, x, y, height, scale, pattern):
    for i, width in enumerate(pattern):
        if i % 2 == 0:
            p.rect(x, y, x + int(width) * scale, y + height, INK)
        x += int(width) * scale


def product():
    p = Picture(420, 200, (255, 255, 255))
    for y in range(200):
        shade = 255 - y * 40 // 200
        p.rect(0, y, 420, y + 1, (shade - 12, shade - 4, 255 - y * 16 // 200))
    p.polygon([(60, 184), (300, 184), (330, 192), (40, 192)], (190, 200, 214))  # shadow
    p.polygon([(76, 76), (100, 52), (262, 52), (284, 76)], (104, 116, 130))  # lid
    p.polygon([(100, 52), (262, 52), (258, 48), (104, 48)], (140, 152, 166))
    p.rect(68, 76, 292, 184, (70, 80, 92))  # body
    p.rect(68, 76, 292, 82, (92, 104, 118))
    p.rect(84, 96, 276, 116, DARK)  # the slot that the labels leave
    p.rect(84, 112, 276, 116, (120, 132, 146))
    p.polygon([(122, 106), (238, 106), (246, 178), (114, 178)], LINER)
    p.polygon([(132, 110), (228, 110), (233, 170), (127, 170)], LABEL)
    bars(p, 142, 118, 30, 2, "211213112211321121123")
    for y, right in ((153, 216), (160, 198)):
        p.rect(142, y, right, y + 3, SOFT)
    p.circle(266, 134, 6, (64, 200, 96))
    p.circle(266, 154, 6, (232, 168, 40))
    p.circle(102, 144, 11, (140, 152, 166))
    p.circle(102, 144, 8, (92, 104, 118))
    write(p, "QM610r", 144, 57, 2.2, (240, 244, 248), 2.4)
    for i, (x, y) in enumerate(((304, 66), (314, 92), (324, 118))):  # finished labels
        p.rect(x + 2, y + 3, x + 62, y + 47, (178, 190, 206))
        p.rect(x, y, x + 60, y + 44, LABEL)
        p.frame(x, y, x + 60, y + 44, SOFT)
        bars(p, x + 6, y + 6, 18, 1, "21121311221132112112131")
        p.rect(x + 6, y + 29, x + 48 - i * 8, y + 32, SOFT)
        p.rect(x + 6, y + 36, x + 38, y + 39, SOFT)
    return p


PICTURES = {
    "sketch_width": sketch_width, "sketch_length": sketch_length,
    "sketch_printable_left": sketch_printable_left, "sketch_printable_top": sketch_printable_top,
    "sketch_printable_width": sketch_printable_width,
    "sketch_printable_height": sketch_printable_height, "sketch_gap": sketch_gap,
    "sketch_eye_mark": sketch_eye_mark, "sketch_base_points": sketch_base_points,
    "sketch_feed_offsets": sketch_feed_offsets, "sketch_pitch_eye_mark": sketch_pitch_eye_mark,
    "sketch_pitch": sketch_pitch, "portrait": upright, "landscape": lambda: upright().turned(1),
    "portrait_rotated": lambda: upright().turned(2), "landscape_rotated": lambda: upright().turned(3),
    "feed_direction": feed_direction, "background": lambda: Picture(24, 24, BACK),
}


def main():
    folder, different = os.path.dirname(os.path.abspath(__file__)), 0
    files = {name: (draw, palette) for name, draw in PICTURES.items()} | {"product": (product, true_colour)}
    for name, (draw, form) in files.items():
        path, data = os.path.join(folder, name + ".bmp"), form(draw())
        if sys.argv[1:] == ["--check"]:
            with open(path, "rb") as f:
                if f.read() != data:
                    print(f"{name}.bmp is not what the script draws")
                    different = 1
        else:
            with open(path, "wb") as f:
                f.write(data)
    return different


if __name__ == "__main__":
    sys.exit(main())
