#!/bin/sh
# Renders the 2D EPS files of a known flat sketch with Ghostscript and checks
# the raster against the sketch: the inked area must match the sketch's
# bounds (placed by the file's bounding box, which is the bounds widened by
# 10 units) within TOLERANCE pixels, the solid file must be filled inside and
# the stroked one must not. At 72 dpi one sketch unit is one pixel. Only the
# 2D form is given to Ghostscript: the 3D forms are not PostScript.
#
# Usage: render_eps.sh <write_sample_eps program> <work folder>
set -eu

tool=$1
work=$2
rm -rf "$work"
mkdir -p "$work"

"$tool" "$work"
for kind in stroked solid; do
    gs -q -dNOPAUSE -dBATCH -dSAFER -dEPSCrop -sDEVICE=pgmraw -r72 \
        -o "$work/$kind.pgm" "$work/$kind.eps"
done

python3 - "$work" <<'PYTHON'
import sys

TOLERANCE = 2    # pixels, for every edge of the inked area
HALF_STROKE = 1  # "2 setlinewidth": the stroke reaches one unit beyond the path
MARGIN = 10      # the bounding box lies 10 units outside the bounds

work = sys.argv[1]
failures = []


def check(condition, message):
    print(("ok   " if condition else "FAIL ") + message)
    if not condition:
        failures.append(message)


def read_pgm(path):
    """Width, height and rows of grey bytes of a binary PGM file."""
    data = open(path, "rb").read()
    fields, pos = [], 0
    while len(fields) < 4:
        while data[pos:pos + 1].isspace():
            pos += 1
        if data[pos:pos + 1] == b"#":
            pos = data.index(b"\n", pos) + 1
            continue
        end = pos
        while not data[end:end + 1].isspace():
            end += 1
        fields.append(data[pos:end])
        pos = end
    pos += 1  # the single blank after the maximum value
    if fields[0] != b"P5" or int(fields[3]) > 255:
        raise SystemExit(path + ": not an 8-bit binary PGM")
    width, height = int(fields[1]), int(fields[2])
    pixels = data[pos:pos + width * height]
    rows = [pixels[r * width:(r + 1) * width] for r in range(height)]
    return width, height, rows


min_x, max_x, min_y, max_y = (float(v) for v in open(work + "/bounds.txt").read().split())
left, top = min_x - MARGIN, max_y + MARGIN  # the page's origin in sketch units
print("sketch bounds x %g..%g y %g..%g" % (min_x, max_x, min_y, max_y))


def pixel_column(x):
    return x - left


def pixel_row(y):
    return top - y


for kind, widen in (("stroked", HALF_STROKE), ("solid", 0)):
    width, height, rows = read_pgm("%s/%s.pgm" % (work, kind))
    check(abs(width - (max_x - min_x + 2 * MARGIN)) <= 1,
          "%s: width %d is the bounding box's" % (kind, width))
    check(abs(height - (max_y - min_y + 2 * MARGIN)) <= 1,
          "%s: height %d is the bounding box's" % (kind, height))

    inked = [(c, r) for r in range(height) for c in range(width) if rows[r][c] < 128]
    check(len(inked) > 0, "%s: something is drawn" % kind)
    if not inked:
        continue
    columns = [c for c, _ in inked]
    lines = [r for _, r in inked]
    # Pixel edges of the inked area: the last inked pixel ends one further.
    found = (min(columns), max(columns) + 1, min(lines), max(lines) + 1)
    expected = (pixel_column(min_x) - widen, pixel_column(max_x) + widen,
                pixel_row(max_y) - widen, pixel_row(min_y) + widen)
    for name, f, e in zip(("left", "right", "top", "bottom"), found, expected):
        check(abs(f - e) <= TOLERANCE,
              "%s: %s edge of the ink at %d, expected %.2f +- %d" % (kind, name, f, e, TOLERANCE))

    # The inside: a block around the middle of the rectangle part.
    mid_c, mid_r = int(pixel_column((min_x + max_x) / 2)), int(pixel_row((min_y + max_y) / 2))
    block = [rows[r][c] for r in range(mid_r - 5, mid_r + 6) for c in range(mid_c - 5, mid_c + 6)]
    if kind == "solid":
        check(all(v < 128 for v in block), "solid: the inside is filled")
    else:
        check(all(v >= 128 for v in block), "stroked: the inside is not filled")
    # Outside the shape, in the margin, nothing is drawn.
    corner = [rows[r][c] for r in range(0, 5) for c in range(0, 5)]
    check(all(v >= 128 for v in corner), "%s: the margin is blank" % kind)

if failures:
    print("%d check(s) failed" % len(failures))
    sys.exit(1)
print("all checks passed")
PYTHON
