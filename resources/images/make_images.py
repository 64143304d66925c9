#!/usr/bin/env python3
"""Draws the program's four small images as PNG files with nothing but the
standard library: the window icon, the title bar logo (a lark on a blue badge)
and the two grey arrows of the combo boxes and scroll bars.

The window icon is also drawn as the desktop's icon set: an SVG from the same
shapes, and PNGs at the sizes the hicolor theme asks for.

Usage: make_images.py OUTPUT_DIR
       make_images.py --icons OUTPUT_DIR   (OUTPUT_DIR/app_logo.svg, app_logo_NxN.png)
"""
import math
import os
import struct
import sys
import zlib

SUPERSAMPLE = 4  # samples per pixel side, for smooth edges

BLUE = (0x02, 0xA1, 0xDD)  # the skins' highlight colour
WHITE = (0xFF, 0xFF, 0xFF)
PALE = (0xBF, 0xE8, 0xF7)
ARROW = (0x99, 0x99, 0x99)  # reads on the dark and on the light combo box


# Shapes are predicates over the unit square, y running downwards.
# Each also carries its SVG element in unit coordinates, so both renderings agree.
def circle(cx, cy, r):
    inside = lambda x, y: (x - cx) ** 2 + (y - cy) ** 2 <= r * r
    inside.svg = f'<circle cx="{cx}" cy="{cy}" r="{r}"'
    return inside


def ellipse(cx, cy, rx, ry, degrees):
    c, s = math.cos(math.radians(degrees)), math.sin(math.radians(degrees))

    def inside(x, y):
        u, v = (x - cx) * c + (y - cy) * s, -(x - cx) * s + (y - cy) * c
        return (u / rx) ** 2 + (v / ry) ** 2 <= 1

    inside.svg = (f'<ellipse cx="{cx}" cy="{cy}" rx="{rx}" ry="{ry}" '
                  f'transform="rotate({degrees} {cx} {cy})"')
    return inside


def polygon(*points):
    def inside(x, y):  # even-odd rule
        hit = False
        for (x1, y1), (x2, y2) in zip(points, points[1:] + points[:1]):
            if (y1 > y) != (y2 > y) and x < x1 + (y - y1) * (x2 - x1) / (y2 - y1):
                hit = not hit
        return hit

    inside.svg = '<polygon points="%s"' % " ".join(f"{x},{y}" for x, y in points)
    return inside


def render(size, layers):
    """layers: (colour, shape) pairs painted in order, later ones on top.
    Returns rows of RGBA pixels; coverage gives the alpha."""
    width, height = size
    n = SUPERSAMPLE
    rows = []
    for py in range(height):
        row = []
        for px in range(width):
            acc = [0, 0, 0, 0]
            for sy in range(n):
                for sx in range(n):
                    x = (px + (sx + 0.5) / n) / width
                    y = (py + (sy + 0.5) / n) / height
                    colour = None
                    for layer_colour, shape in layers:
                        if shape(x, y):
                            colour = layer_colour
                    if colour:
                        acc = [a + c for a, c in zip(acc, colour + (1,))]
            hits = acc[3]
            if hits:
                row.append(tuple(round(c / hits) for c in acc[:3]) + (round(255 * hits / (n * n)),))
            else:
                row.append((0, 0, 0, 0))
        rows.append(row)
    return rows


def write_png(path, rows):
    height, width = len(rows), len(rows[0])
    raw = b"".join(b"\0" + bytes(c for px in row for c in px) for row in rows)

    def chunk(kind, data):
        return (struct.pack(">I", len(data)) + kind + data
                + struct.pack(">I", zlib.crc32(kind + data)))

    header = struct.pack(">IIBBBBB", width, height, 8, 6, 0, 0, 0)  # 8 bit RGBA
    with open(path, "wb") as f:
        f.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header)
                + chunk(b"IDAT", zlib.compress(raw, 9)) + chunk(b"IEND", b""))


def lark(badge_layers):
    """A crested lark facing right, white on the badge."""
    return badge_layers + [
        (WHITE, polygon((0.30, 0.58), (0.10, 0.70), (0.14, 0.78), (0.36, 0.68))),  # tail
        (WHITE, ellipse(0.47, 0.56, 0.22, 0.14, -20)),                              # body
        (WHITE, circle(0.65, 0.40, 0.10)),                                         # head
        (WHITE, polygon((0.59, 0.33), (0.55, 0.19), (0.68, 0.31))),                 # crest
        (WHITE, polygon((0.73, 0.36), (0.87, 0.41), (0.73, 0.45))),                 # beak
        (PALE, ellipse(0.44, 0.56, 0.13, 0.06, -25)),                               # wing
        (BLUE, circle(0.67, 0.38, 0.025)),                                         # eye
    ]


IMAGES = {
    "app_logo.png": ((64, 64), lark([(BLUE, circle(0.5, 0.5, 0.48))])),
    # on the title bar the badge gets a white rim, as the light bar is blue too
    "logo_title.png": ((20, 20), lark([(WHITE, circle(0.5, 0.5, 0.5)),
                                       (BLUE, circle(0.5, 0.5, 0.43))])),
    "arrow-down.png": ((10, 10), [(ARROW, polygon((0.1, 0.3), (0.9, 0.3), (0.5, 0.75)))]),
    "arrow-up.png": ((10, 10), [(ARROW, polygon((0.1, 0.7), (0.9, 0.7), (0.5, 0.25)))]),
}


def write_svg(path, layers, size=256):
    body = "".join('  %s fill="#%02x%02x%02x"/>\n' % ((shape.svg,) + colour)
                   for colour, shape in layers)
    with open(path, "w") as f:
        f.write(f'<svg xmlns="http://www.w3.org/2000/svg" width="{size}" height="{size}" '
                f'viewBox="0 0 1 1">\n{body}</svg>\n')


ICON_SIZES = (48, 64, 128, 256)


def icons(out_dir):
    os.makedirs(out_dir, exist_ok=True)
    layers = IMAGES["app_logo.png"][1]
    write_svg(os.path.join(out_dir, "app_logo.svg"), layers)
    for n in ICON_SIZES:
        write_png(os.path.join(out_dir, f"app_logo_{n}x{n}.png"), render((n, n), layers))


def main(out_dir):
    os.makedirs(out_dir, exist_ok=True)
    for name, (size, layers) in IMAGES.items():
        write_png(os.path.join(out_dir, name), render(size, layers))


if __name__ == "__main__":
    if len(sys.argv) == 3 and sys.argv[1] == "--icons":
        icons(sys.argv[2])
    elif len(sys.argv) == 2:
        main(sys.argv[1])
    else:
        sys.exit(__doc__)
