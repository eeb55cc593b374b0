#!/usr/bin/env python3
"""Writes resources/Quillmere.ico: a blue tile with one white Bezier stroke and
its two end points, at 16, 32 and 48 pixels, as 32-bit images with alpha.

Run from anywhere: tools/make-icon.py [output path]. Uses nothing but the
standard library, so the icon can be made again on any machine."""

import struct
import sys
from pathlib import Path

SIZES = (16, 32, 48)
SUB = 4  # subsamples per pixel side, for smooth edges

TILE = (0x8a, 0x5d, 0x2b)    # blue, green, red
STROKE = (0xff, 0xff, 0xff)
POINT = (0x30, 0x9a, 0xf2)


def bezier(p0, p1, p2, p3, steps=64):
    points = []
    for i in range(steps + 1):
        t = i / steps
        u = 1 - t
        x = u * u * u * p0[0] + 3 * u * u * t * p1[0] + 3 * u * t * t * p2[0] + t * t * t * p3[0]
        y = u * u * u * p0[1] + 3 * u * u * t * p1[1] + 3 * u * t * t * p2[1] + t * t * t * p3[1]
        points.append((x, y))
    return points


# The stroke in unit coordinates (0..1, y down): an S from lower left to upper right.
CURVE = bezier((0.22, 0.78), (0.20, 0.30), (0.80, 0.70), (0.78, 0.22))
ENDS = (CURVE[0], CURVE[-1])


def segment_distance(px, py, a, b):
    ax, ay = a
    bx, by = b
    dx, dy = bx - ax, by - ay
    length2 = dx * dx + dy * dy
    t = 0.0 if length2 == 0 else max(0.0, min(1.0, ((px - ax) * dx + (py - ay) * dy) / length2))
    qx, qy = ax + t * dx - px, ay + t * dy - py
    return (qx * qx + qy * qy) ** 0.5


def inside_tile(x, y, radius=0.2, margin=0.03):
    lo, hi = margin, 1 - margin
    if x < lo or x > hi or y < lo or y > hi:
        return False
    cx = min(max(x, lo + radius), hi - radius)
    cy = min(max(y, lo + radius), hi - radius)
    return (x - cx) ** 2 + (y - cy) ** 2 <= radius * radius


def sample(x, y, size):
    """Colour (b, g, r) and coverage 0 or 1 of one subsample."""
    if not inside_tile(x, y):
        return None
    half_width = max(0.07, 1.2 / size)
    dot = max(0.09, 1.6 / size)
    for e in ENDS:
        if (x - e[0]) ** 2 + (y - e[1]) ** 2 <= dot * dot:
            return POINT
    for a, b in zip(CURVE, CURVE[1:]):
        if segment_distance(x, y, a, b) <= half_width:
            return STROKE
    return TILE


def render(size):
    """Rows top to bottom of (b, g, r, a) pixels."""
    rows = []
    for py in range(size):
        row = []
        for px in range(size):
            total = [0, 0, 0]
            covered = 0
            for sy in range(SUB):
                for sx in range(SUB):
                    colour = sample((px + (sx + 0.5) / SUB) / size, (py + (sy + 0.5) / SUB) / size, size)
                    if colour:
                        covered += 1
                        for c in range(3):
                            total[c] += colour[c]
            if covered:
                row.append(tuple(round(t / covered) for t in total) + (round(255 * covered / (SUB * SUB)),))
            else:
                row.append((0, 0, 0, 0))
        rows.append(row)
    return rows


def dib(size):
    """One icon image: BITMAPINFOHEADER, bottom-up BGRA pixels, empty AND mask."""
    rows = render(size)
    pixels = b"".join(bytes(p) for row in reversed(rows) for p in row)
    mask_row = ((size + 31) // 32) * 4
    mask = bytes(mask_row * size)
    header = struct.pack("<IiiHHIIiiII", 40, size, size * 2, 1, 32, 0, len(pixels) + len(mask), 0, 0, 0, 0)
    return header + pixels + mask


def main():
    out = Path(sys.argv[1]) if len(sys.argv) > 1 else Path(__file__).resolve().parent.parent / "resources" / "Quillmere.ico"
    images = [dib(s) for s in SIZES]
    data = struct.pack("<HHH", 0, 1, len(images))
    offset = 6 + 16 * len(images)
    for size, image in zip(SIZES, images):
        data += struct.pack("<BBBBHHII", size % 256, size % 256, 0, 0, 1, 32, len(image), offset)
        offset += len(image)
    data += b"".join(images)
    out.write_bytes(data)
    print(out)


if __name__ == "__main__":
    main()
