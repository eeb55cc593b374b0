#!/usr/bin/env bash
# What the frames of a new user show, read from the screen pixel by pixel.
#
# The user draws one stroke of three samples, switches to editing with "e"
# and clicks its middle point, switches to the roll with "r", and looks from
# the top with F5. After each step a screenshot is taken, once the frame
# shows the step (a colour of the step appears where it must), and checked
# against the frame's rules with the colours of a new user: sketch (0,0,0),
# Bezier (107,157,227), roll (75,222,189), grid (229,229,229) on the
# background (255,255,255), pen 2 and point 8 pixels, zoom 0.2 world units
# per pixel. Under Wine, Direct2D draws without antialiasing, so the colours
# are exact; a check allows 8 per channel, and a position 2 pixels (a line
# of width 2 at a whole pixel covers the rows on both sides of it).
#
# The stroke turns by about 82 degrees at its middle sample, so the recorder
# keeps all three samples and makes the middle one smooth (a dot product of
# 0.14, above 0.05): its two handles lie on the mean direction of the two
# chords, at 0.3 of each chord, away from the path. In the front view every
# point lies at z 0 and its roll points at the viewer, so the roll tip and
# both rails of the ribbon lie on the path itself; from the top the ribbon
# is 8 units (40 pixels) wide and the tip stands 20 units (100 pixels) in
# front of the selected point, which the top view puts at the window's
# centre.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
e2e_begin "$@"

# Window pixels of the samples: the first and the last well away from the
# texts in the corners, the middle one off the centre, so that the grid of
# the top view, centred on it, lies elsewhere than that of the front view.
samples=(220 640 400 460 640 640)
export SCENE_SAMPLES="${samples[*]}"

# Code shared by the checks, run in the namespace of check_pixels: the
# colours, the stroke as the recorder finishes it, the path drawn from it,
# and the grid lines found on the screen.
cat >"$OUT/scene.py" <<'PYTHON'
import math, os

SKETCH = (0, 0, 0)
BEZIER = (107, 157, 227)
ROLL = (75, 222, 189)
GRID = (229, 229, 229)
BACKGROUND = (255, 255, 255)
# The marks of the points that are not selected: the sketch colour at half
# alpha, over the background or over the grid.
MARK_GREYS = ((127, 127, 127), (114, 114, 114))
POINT = 8  # PointSize
ZOOM = 0.2  # world units per pixel of a new view
TIP = 20 / ZOOM  # the roll tip's distance from its point, in pixels
RAIL = 4 / ZOOM  # the ribbon's half width, in pixels

def add(a, b): return (a[0] + b[0], a[1] + b[1])
def sub(a, b): return (a[0] - b[0], a[1] - b[1])
def mul(a, k): return (a[0] * k, a[1] * k)
def dot(a, b): return a[0] * b[0] + a[1] * b[1]
def length(a): return math.hypot(a[0], a[1])
def unit(a): return mul(a, 1 / length(a))

# The recorder's finish of an open stroke without Ctrl, in window pixels
# (the view's map from pixels to the world is a uniform scale with y
# flipped, which keeps directions, ratios and dot products): samples that
# turn by too little go, then handles at 0.3 of the chords, on the mean
# direction where the turn is smooth.
def finish(samples):
    points = list(samples)
    i = 1
    while i < len(points) - 1:
        if dot(unit(sub(points[i], points[i - 1])), unit(sub(points[i + 1], points[i]))) > 0.9:
            del points[i]
        else:
            i += 1
    records = [{"p": p, "in": p, "out": p, "smooth": False} for p in points]
    for i in range(1, len(points) - 1):
        u, v = sub(points[i + 1], points[i]), sub(points[i], points[i - 1])
        lu, lv = length(u), length(v)
        u, v = unit(u), unit(v)
        smooth = dot(u, v) > 0.05
        if smooth:
            u = v = unit(add(u, v))
        records[i].update({"in": sub(points[i], mul(v, lv * 0.3)),
                           "out": add(points[i], mul(u, lu * 0.3)), "smooth": smooth})
    for end, e in ((0, sub(points[1], points[0])), (-1, sub(points[-1], points[-2]))):
        p = records[end]["p"]
        records[end].update({"in": sub(p, mul(e, 0.3)), "out": add(p, mul(e, 0.3))})
    return records

_words = [float(v) for v in os.environ["SCENE_SAMPLES"].split()]
SAMPLES = [(_words[i], _words[i + 1]) for i in range(0, len(_words), 2)]
RECORDS = finish(SAMPLES)

def bezier(i, t):
    """The point at t of the segment that arrives at record i."""
    a, b, c, d = RECORDS[i - 1]["p"], RECORDS[i - 1]["out"], RECORDS[i]["in"], RECORDS[i]["p"]
    s = 1 - t
    return (s ** 3 * a[0] + 3 * s * s * t * b[0] + 3 * s * t * t * c[0] + t ** 3 * d[0],
            s ** 3 * a[1] + 3 * s * s * t * b[1] + 3 * s * t * t * c[1] + t ** 3 * d[1])

PATH = [bezier(i, k / 200) for i in range(1, len(RECORDS)) for k in range(201)]

def distance_to_path(x, y):
    return min(math.hypot(x - p[0], y - p[1]) for p in PATH)

def distance_to_segment(x, y, a, b):
    ab = sub(b, a)
    t = max(0.0, min(1.0, dot(sub((x, y), a), ab) / dot(ab, ab)))
    return length(sub((x, y), add(a, mul(ab, t))))

def ring(centre, radius, angles=range(0, 360, 45)):
    return [(centre[0] + radius * math.cos(math.radians(a)),
             centre[1] + radius * math.sin(math.radians(a))) for a in angles]

def grid_lines(vertical, lo, hi, band_lo, band_hi):
    """The grid lines across the band: for vertical lines the columns lo to
    hi whose pixels in the rows band_lo to band_hi are grid-coloured for at
    least 60 %, as [first column, width]; rows the other way round."""
    lines, band = [], range(band_lo, band_hi)
    for k in range(lo, hi):
        hits = sum(1 for j in band if like(pixel(k, j) if vertical else pixel(j, k), GRID))
        if hits >= 0.6 * len(band):
            if lines and lines[-1][0] + lines[-1][1] == k:
                lines[-1][1] += 1
            else:
                lines.append([k, 1])
    return lines

def check_grid(lines, zero, lo, hi, what):
    """The lines 50 pixels (10 units) apart, 3 pixels wide at the zero
    coordinate, 2 wide at each multiple of 100 units, 1 wide elsewhere.
    zero is the zero line's place, or None to find it; returns the place."""
    middles = [first + (width - 1) / 2 for first, width in lines]
    check(len(lines) >= (hi - lo) // 50 - 1, "%s: only %d lines %s" % (what, len(lines), lines))
    steps = [b - a for a, b in zip(middles, middles[1:])]
    check(all(abs(s - 50) <= 1.5 for s in steps),
          "%s: lines not 50 pixels apart: %s" % (what, lines))
    if zero is None:
        thick = [m + 0.5 for m, line in zip(middles, lines) if line[1] == 3]
        check(len(thick) == 1, "%s: %d lines of width 3: %s" % (what, len(thick), lines))
        if len(thick) != 1:
            return None
        zero = thick[0]
    for m, (first, width) in zip(middles, lines):
        units = round((m + 0.5 - zero) / 50) * 10
        want = 3 if units == 0 else 2 if units % 100 == 0 else 1
        if first > lo and first + width < hi:
            check(width == want,
                  "%s: the line at %d units is %d wide, not %d" % (what, units, width, want))
    check(any(abs(m + 0.5 - zero) <= 1.5 for m in middles),
          "%s: no line at zero (%.1f): %s" % (what, zero, lines))
    return zero

def non_background(x0, x1, y0, y1, skip=()):
    """Window pixels of the rectangle that are neither background nor grid,
    outside the rectangles of skip (the texts and the axes symbol)."""
    found = []
    for y in range(int(y0), int(y1)):
        for x in range(int(x0), int(x1)):
            if any(a <= x < b and c <= y < d for a, b, c, d in skip):
                continue
            c = pixel(x, y)
            if not like(c, BACKGROUND, 0) and not like(c, GRID, 0):
                found.append((x, y, c))
    return found

def load_centre():
    with open(os.path.join(os.path.dirname(SHOT), "centre.txt")) as f:
        return tuple(float(v) for v in f.read().split())

def text_boxes(cy):
    """The mode and help texts (top left) and the axes symbol with the view
    label (bottom left), in window pixels, from the client centre's row."""
    top = 2 * cy - WIN_H
    return ((0, 480, top, top + 150), (0, 320, WIN_H - 160, WIN_H))

def label_ink(pixel_of):
    """The pixels of the view label's letters in a screenshot: darker than
    the grid, in the band of the label's line at the bottom left; returns
    (left, right, top, bottom) of them, or None, and the set."""
    ink = {(x, y) for y in range(WIN_H - 50, WIN_H - 4) for x in range(40, 330)
           if max(pixel_of(x, y)) < 217}
    if not ink:
        return None, ink
    xs, ys = [p[0] for p in ink], [p[1] for p in ink]
    return (min(xs), max(xs), min(ys), max(ys)), ink
PYTHON

# The frames are read from the screen: no tool window stands over them.
settings_without_tool_windows
start_quillmere
wait_for_main_window 60
expect_title "Quillmere - Untitled (0 points) [DRAW FREEHAND]"

# ---- 1. A stroke in the draw mode: black along the path, nothing else.
draw_stroke "${samples[@]}"
expect_title "Quillmere - Untitled * (3 points) [DRAW FREEHAND]"
# The running stroke is drawn as straight lines; the finished path curves
# away from them. Its middle on the first segment shows the finished path.
read -r mid_x mid_y < <(python3 -c '
import sys
exec(open(sys.argv[1]).read())
x, y = bezier(1, 0.5)
print(int(x), int(y))' "$OUT/scene.py")
wait_for_colour "$mid_x" "$mid_y" 0,0,0 15 "ink of the finished path at ($mid_x, $mid_y)"
shot 1-drawn
check_pixels 1-drawn "$OUT/scene.py" <<'PYTHON'
check(len(RECORDS) == 3 and RECORDS[1]["smooth"],
      "the stroke should keep 3 samples, the middle smooth")

# The grid of the front view: the plane z = 0, lines 10 units apart both
# ways, its zero lines through the client centre (the view's pivot is the
# origin), at full strength since the plane is seen square on. The columns
# are read between the texts at the top and the axes symbol at the bottom,
# the rows to the right of both.
columns = grid_lines(True, 0, WIN_W, 170, WIN_H - 160)
cx = check_grid(columns, None, 0, WIN_W, "vertical grid lines of the front view")
rows = grid_lines(False, 0, WIN_H, 340, WIN_W - 20)
cy = check_grid(rows, None, 0, WIN_H, "horizontal grid lines of the front view")
if cx is not None and cy is not None:
    check(abs(cx - WIN_W / 2) <= 1,
          "the vertical zero line at %.1f, not at the centre %.1f" % (cx, WIN_W / 2))
    menu = 2 * cy - WIN_H
    check(10 <= menu <= 40,
          "the horizontal zero line at %.1f puts the menu bar at %.1f pixels" % (cy, menu))
    with open(os.path.join(os.path.dirname(SHOT), "centre.txt"), "w") as f:
        f.write("%.1f %.1f\n" % (cx, cy))
else:
    cy = WIN_H / 2

# The path in the sketch colour through the finished records, samples and
# curve alike.
for i in range(1, len(RECORDS)):
    for k in range(9):
        x, y = bezier(i, k / 8)
        check(near(x, y, SKETCH), "no ink of segment %d at t %.3f (%.0f, %.0f)" % (i, k / 8, x, y))
# Nothing but the path: no marks in the draw mode, no handles, no other
# colour. Every pixel that is not background or grid is ink, on the path.
stray = [(x, y, c) for x, y, c in non_background(0, WIN_W, 2 * cy - WIN_H, WIN_H, text_boxes(cy))
         if not like(c, SKETCH) or distance_to_path(x, y) > 3]
check(not stray, "%d pixels off the path or not ink, e.g. %s" % (len(stray), stray[:5]))
PYTHON

# ---- 2. "e" and a click on the middle point: the Bezier colour on the
# point, its handles and the segment that arrives at it.
press e
expect_title "Quillmere - Untitled * (3 points) [EDIT SKETCH]"
point_at "${samples[2]}" "${samples[3]}"
xdotool mousedown 1 || fail "mousedown failed"
pause_step
xdotool mouseup 1 || fail "mouseup failed"
pause_step
wait_for_colour "${samples[2]}" "${samples[3]}" 107,157,227 15 "selected point in the Bezier colour"
shot 2-selected
check_pixels 2-selected "$OUT/scene.py" <<'PYTHON'
cx, cy = load_centre()
p = RECORDS[1]["p"]

# The selected point: a filled circle of radius 8 in the Bezier colour.
for x, y in [p] + ring(p, 5):
    check(like(pixel(x, y), BEZIER),
          "the selected point's mark at (%.0f, %.0f) is %s" % (x, y, pixel(x, y)))
# Its handles: the point is smooth and both handles show, so each is an
# open circle of radius 8 at the handle, with a line from the point that
# stops at the circle.
for name in ("in", "out"):
    a = RECORDS[1][name]
    for x, y in ring(a, POINT):
        check(near(x, y, BEZIER),
              "handle-%s (%.1f, %.1f): no circle at (%.0f, %.0f)" % (name, a[0], a[1], x, y))
    check(not like(pixel(*a), BEZIER),
          "handle-%s (%.1f, %.1f): the circle is filled" % (name, a[0], a[1]))
    for f in (0.3, 0.5, 0.7):
        x, y = add(p, mul(sub(a, p), f))
        check(near(x, y, BEZIER, 1),
              "handle-%s: no line at %.1f of the way (%.0f, %.0f)" % (name, f, x, y))
# The segment that arrives at the selected point is in the Bezier colour,
# the one that leaves it in the sketch colour.
for k in range(1, 8):
    x, y = bezier(1, k / 8)
    check(near(x, y, BEZIER),
          "the arriving segment at t %.3f (%.0f, %.0f) is not blue" % (k / 8, x, y))
for k in range(2, 8):
    x, y = bezier(2, k / 8)
    check(near(x, y, SKETCH),
          "the leaving segment at t %.3f (%.0f, %.0f) is not black" % (k / 8, x, y))
# The other marks at half alpha: an open circle of radius 12.8 at the first
# record (a move), a filled circle of radius 8 at the last (a curve).
first, last = RECORDS[0]["p"], RECORDS[2]["p"]
for x, y in ring(first, POINT * 1.6, (0, 90, 180)):
    check(any(near(x, y, g, 2, 2, 3) for g in MARK_GREYS),
          "no open circle of the first point at (%.0f, %.0f)" % (x, y))
for x, y in ((last[0] + 5, last[1]), (last[0], last[1] + 5), (last[0] + 3, last[1] + 3)):
    c = pixel(x, y)
    check(any(like(c, g, 3) for g in MARK_GREYS),
          "the last point's mark at (%.0f, %.0f) is %s" % (x, y, c))
# Nothing else: every drawn pixel lies on the path, a mark, a handle line
# or a handle circle.
def allowed(x, y):
    if distance_to_path(x, y) <= 3:
        return True
    if math.hypot(x - first[0], y - first[1]) <= POINT * 1.6 + 3:
        return True
    circles = (p, last, RECORDS[1]["in"], RECORDS[1]["out"])
    if any(math.hypot(x - q[0], y - q[1]) <= POINT + 3 for q in circles):
        return True
    return any(distance_to_segment(x, y, p, RECORDS[1][h]) <= 3 for h in ("in", "out"))
drawn = non_background(0, WIN_W, 2 * cy - WIN_H, WIN_H, text_boxes(cy))
stray = [(x, y, c) for x, y, c in drawn if not allowed(x, y)]
check(not stray, "%d pixels drawn where nothing belongs, e.g. %s" % (len(stray), stray[:5]))
PYTHON

# ---- 3. "r": the roll colour on the selected point; in the front view the
# roll tip lies on the point and is not drawn, and the ribbon's rails lie
# on the path.
press r
expect_title "Quillmere - Untitled * (3 points) [EDIT ROLL]"
wait_for_colour "${samples[2]}" "${samples[3]}" 75,222,189 15 "selected point in the roll colour"
shot 3-roll-front
check_pixels 3-roll-front "$OUT/scene.py" <<'PYTHON'
cx, cy = load_centre()
p = RECORDS[1]["p"]
for x, y in [p] + ring(p, 5):
    check(like(pixel(x, y), ROLL),
          "the selected point's mark at (%.0f, %.0f) is %s" % (x, y, pixel(x, y)))
drawn = non_background(0, WIN_W, 2 * cy - WIN_H, WIN_H, text_boxes(cy))
blue = [(x, y) for x, y, c in drawn if like(c, BEZIER, 20)]
check(not blue, "%d pixels in the Bezier colour in the roll mode, e.g. %s" % (len(blue), blue[:5]))
loose = [(x, y) for x, y, c in drawn
         if like(c, ROLL) and math.hypot(x - p[0], y - p[1]) > POINT + 1]
check(not loose,
      "%d pixels of the roll colour away from the selected point, e.g. %s"
        % (len(loose), loose[:5]))
for i in range(1, len(RECORDS)):
    for k in range(2, 7):
        x, y = bezier(i, k / 8)
        check(near(x, y, SKETCH),
              "segment %d at t %.3f (%.0f, %.0f) is not black" % (i, k / 8, x, y))
off = [(x, y) for x, y, c in drawn if distance_to_path(x, y) > 3 and
       min(math.hypot(x - r["p"][0], y - r["p"][1]) for r in RECORDS) > POINT * 1.6 + 3]
check(not off, "%d pixels drawn off the ribbon and the marks, e.g. %s" % (len(off), off[:5]))
PYTHON

# ---- 4. F5: the top view. The label, the grid's plane and the drawing
# change; the selected point moves to the centre with its roll tip below.
read -r cx cy <"$OUT/centre.txt" || fail "no client centre from the front view"
cx=${cx%.*} cy=${cy%.*}
press F5
expect_title "Quillmere - Untitled * (3 points) [EDIT ROLL]"
wait_for_colour "$cx" $((cy + 50)) 75,222,189 15 "roll tip line below the centre in the top view"
shot 4-top-view
changed=$(changed_pixels 3-roll-front 4-top-view)
echo "the top view changed $changed pixels"
awk -v n="${changed:-0}" 'BEGIN { exit !(n + 0 > 1000) }' ||
  fail "the top view left the screen as it was ($changed pixels)"
check_pixels 4-top-view "$OUT/scene.py" <<'PYTHON'
cx, cy = load_centre()
p = RECORDS[1]["p"]
def top(q):
    """Where a point of the flat sketch, in window pixels of the front view,
    lies in the top view: x keeps its offset from the selected point, which
    is the new pivot, and every point has z 0, the pivot's height."""
    return (cx + q[0] - p[0], cy)

# The view label: the front view's label and this one differ in their
# first word and end alike in "view", and "Top" is narrower than "Front".
box, ink = label_ink(pixel)
fbox, front_ink = label_ink(pixels_of("3-roll-front"))
check(box is not None and fbox is not None,
      "a view label is missing: %s in the top view, %s in the front view" % (box, fbox))
if box is not None and fbox is not None:
    check(abs(box[0] - fbox[0]) <= 2, "the labels begin at %d and %d" % (box[0], fbox[0]))
    check(box[1] - box[0] + 8 <= fbox[1] - fbox[0],
          "the top view's label (%s) is not narrower than the front view's (%s)" % (box, fbox))
    # "view": the last 40 columns of the letters, aligned at their right end.
    tail = {(x - box[1], y) for x, y in ink if x > box[1] - 40}
    front_tail = {(x - fbox[1], y) for x, y in front_ink if x > fbox[1] - 40}
    check(len(tail ^ front_tail) <= 4,
          "the labels do not end in the same word: %d pixels differ" % len(tail ^ front_tail))
    check(ink != front_ink, "the label did not change")

# The grid lies in the plane y = 0: lines run both ways, 10 units apart,
# with its zero lines at x = 0 (the front view's centre moved by the pivot's
# offset) and z = 0 (the pivot's height, the centre row). A grid left in
# z = 0 would show edge on, as one line.
columns = grid_lines(True, 0, WIN_W, 170, WIN_H - 160)
check_grid(columns, cx + (cx - p[0]), 0, WIN_W, "vertical grid lines of the top view")
rows = grid_lines(False, 0, WIN_H, 340, WIN_W - 20)
check_grid(rows, cy, 0, WIN_H, "horizontal grid lines of the top view")

# The selected point at the centre, its mark in the roll colour, and its
# roll tip 100 pixels below it: a line in the roll colour that stops at an
# open circle of radius 8.
for x, y in [(cx, cy)] + ring((cx, cy), 5):
    check(near(x, y, ROLL, 1),
          "the selected point's mark at (%.0f, %.0f) is %s" % (x, y, pixel(x, y)))
tip = (cx, cy + TIP)
for x, y in ring(tip, POINT):
    check(near(x, y, ROLL), "no roll tip circle at (%.0f, %.0f)" % (x, y))
check(not near(tip[0], tip[1], ROLL, 1), "the roll tip circle is filled")
for f in (0.3, 0.5, 0.8):
    check(near(cx, cy + TIP * f, ROLL, 2, 0),
          "no roll tip line at (%.0f, %.0f)" % (cx, cy + TIP * f))
# The ribbon: two black rails 40 pixels apart along the path, and ties
# across; the path itself is not drawn between them.
xs = [top(q)[0] for q in PATH]
left, right = int(min(xs)) + 3, int(max(xs)) - 3
for side in (-1, 1):
    inked = [x for x in range(left, right) if near(x, cy + side * RAIL, SKETCH, 0, 2)]
    check(len(inked) >= 0.95 * (right - left),
          "the rail at %+d pixels is black at %d of %d columns"
            % (side * RAIL, len(inked), right - left))
ties, run = 0, False
for x in range(left, right):
    black = all(near(x, cy + dy, SKETCH, 1, 0) for dy in (-10, -5, 5, 10))
    ties, run = ties + (black and not run), black
check(ties >= 10, "only %d ties across the ribbon" % ties)
centre_row = sum(1 for x in range(left, right) if like(pixel(x, cy), SKETCH))
check(centre_row <= 0.5 * (right - left),
      "the path is drawn along the ribbon's middle (%d of %d pixels black)"
        % (centre_row, right - left))
# The curve of the front view is gone: no ink where it lay, away from the
# ribbon.
for i in range(1, len(RECORDS)):
    for k in range(9):
        x, y = bezier(i, k / 8)
        if abs(y - cy) > RAIL + 5:
            check(not near(x, y, SKETCH, 1),
                  "ink of the front view's path still at (%.0f, %.0f)" % (x, y))
# The other marks, flattened onto the centre row.
first, last = top(RECORDS[0]["p"]), top(RECORDS[2]["p"])
check(any(near(first[0] - POINT * 1.6, cy, g, 2, 2, 3) for g in MARK_GREYS),
      "no open circle of the first point at %s" % (first,))
check(any(near(last[0] + 5, cy, g, 1, 1, 3) for g in MARK_GREYS),
      "no mark of the last point at %s" % (last,))
PYTHON

close_discarding_changes
echo "PASS ($E2E_NAME)"
