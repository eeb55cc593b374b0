#!/usr/bin/env bash
# A user opens a large sketch and works with it: the program must stay
# usable. The sketch is made now, in the system's own EPS dialect with
# "Centre N" and "Scale N" so that the load keeps every coordinate: 60
# rings of 24 curves each, every ring followed by a zigzag of 16 lines, 2,460
# points in all (curves, lines and moves, so that every kind of point mark is
# drawn). Opened from the command line, the title names it with its point
# count, and the frame shows it: the journey waits for its black pixels.
# Ctrl with the right button turns the view, the wheel zooms; each shows on
# the screen. Ctrl+S writes the file again with the same points, unchanged
# by the view, and Alt+F4 then ends the program without a question. The
# times of each step are printed; only the behaviour is checked.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
e2e_begin "$@"
probe=$E2E_ROOT/tools/frame-probe.py

sketch=$OUT/large.eps
python3 - "$sketch" "$OUT/expected-points.txt" <<'PYTHON'
import math, sys
path, expected = sys.argv[1], sys.argv[2]
lines = ["%!PS-Adobe-3.0 EPSF-3.0", "%%Creator: Brambleworks Quillmere",
         "%%Cinderlane Centre N", "%%Cinderlane Scale N",
         "%%Cinderlane MaxLinesPerCurve 100", "%%LanguageLevel: 2",
         "%%BoundingBox: -300 -200 300 200", "%%Pages: 1", "%%EndComments",
         "%Page: 1 1", "gsave", "1 1 scale"]
points = []
def add(op, *numbers):
    lines.append(" ".join("%d" % v if v == int(v) else "%g" % v for v in numbers) + " " + op)
    points.append((op, numbers[-2], numbers[-1]))
k = 0.5522847
for ring in range(60):
    cx, cy, r = -270 + (ring % 10) * 60, -150 + (ring // 10) * 60, 20 + ring % 3 * 2
    steps = 24
    def at(i, radius=r):
        a = 2 * math.pi * i / steps
        return cx + radius * math.cos(a), cy + radius * math.sin(a)
    x0, y0 = at(0)
    add("moveto", round(x0, 2), round(y0, 2))
    h = 4 / 3 * math.tan(math.pi / (2 * steps)) * r
    for i in range(1, steps + 1):
        a0, a1 = 2 * math.pi * (i - 1) / steps, 2 * math.pi * i / steps
        p0, p1 = at(i - 1), at(i)
        c0 = (p0[0] - h * math.sin(a0), p0[1] + h * math.cos(a0))
        c1 = (p1[0] + h * math.sin(a1), p1[1] - h * math.cos(a1))
        add("curveto", *[round(v, 2) for v in (c0 + c1 + p1)])
    for i in range(16):
        add("lineto", round(cx - 20 + i * 2.5, 2), round(cy + (5 if i % 2 else -5), 2))
lines += ["0 setgray", "2 setlinewidth stroke", "grestore", "%%EOF"]
open(path, "wb").write(("\r\n".join(lines) + "\r\n").encode("latin-1"))
with open(expected, "w") as out:
    for op, x, y in points:
        out.write("%s %s %s 0\n" % (op, x, y))
print("made %s: %d points" % (path, len(points)))
PYTHON
[ "$(wc -l <"$OUT/expected-points.txt")" -eq 2460 ] || fail "the sketch was not made as planned"

# The frame is read from the screen: no tool window over the drawing area.
settings_without_tool_windows
now() { date +%s.%N; }
ms() { awk -v a="$1" -v b="$2" 'BEGIN { printf "%d", (b - a) * 1000 + 0.5 }'; }

started=$(now)
start_quillmere "$(windows_path "$sketch")"
wait_for_main_window 120
expect_title "Quillmere - large.eps (2460 points) [EDIT SKETCH]" 120
titled=$(now)
echo "time: title after start $(ms "$started" "$titled") ms"

# The frame: many black pixels in the client area, below the menu bar.
window_geometry
area=("$WIN_X" $((WIN_Y + 40)) "$WIN_W" $((WIN_H - 40)))
read -r framed dark < <(python3 "$probe" "${area[@]}" wait-dark 3000 120) ||
  fail "the frame did not show the sketch within 120 s"
echo "time: frame with the sketch $(ms "$titled" "$framed") ms after the title ($dark black pixels)"
shot 1-opened

# Ctrl and the right button at an empty place of the view turn it about the
# line of sight; the screen must follow.
corner=($((WIN_W - 40)) $((WIN_H - 40)))
xdotool mousemove --window "$WID" "${corner[@]}"
pause_step
xdotool keydown ctrl
pause_step
xdotool mousedown 3
pause_step
python3 "$probe" "${area[@]}" save "$OUT/before-orbit.raw"
moved=$(now)
xdotool mousemove --window "$WID" "${corner[0]}" $((corner[1] - 60))
read -r changed rested count < <(python3 "$probe" "${area[@]}" wait-change "$OUT/before-orbit.raw" 120)
orbited=$?
xdotool mouseup 3
xdotool keyup ctrl
pause_step
[ "$orbited" -eq 0 ] || fail "the orbit did not reach the screen within 120 s"
echo "time: orbit frame $(ms "$moved" "$changed") ms, at rest after $(ms "$moved" "$rested") ms ($count pixels changed)"
shot 2-orbited

python3 "$probe" "${area[@]}" save "$OUT/before-zoom.raw"
turned=$(now)
xdotool click 5
read -r changed rested count < <(python3 "$probe" "${area[@]}" wait-change "$OUT/before-zoom.raw" 120) ||
  fail "the zoom did not reach the screen within 120 s"
echo "time: zoom frame $(ms "$turned" "$changed") ms, at rest after $(ms "$turned" "$rested") ms ($count pixels changed)"
shot 3-zoomed
expect_title "Quillmere - large.eps (2460 points) [EDIT SKETCH]" 5

# Ctrl+S: the file is replaced in one step (a new inode) once complete.
inode=$(stat -c %i "$sketch")
press_at=$(now)
press ctrl+s
until [ "$(stat -c %i "$sketch" 2>/dev/null)" != "$inode" ]; do
  awk -v a="$press_at" -v b="$(now)" 'BEGIN { exit !(b - a > 60) }' && fail "no new file 60 s after Ctrl+S"
  sleep 0.01
done
echo "time: Ctrl+S until the file was complete $(ms "$press_at" "$(now)") ms (with the pauses of the key)"
expect_title "Quillmere - large.eps (2460 points) [EDIT SKETCH]" 10
eps_points "$sketch" >"$OUT/saved-points.txt"
python3 - "$OUT/expected-points.txt" "$OUT/saved-points.txt" <<'PYTHON' || fail "the saved file does not hold the sketch that was opened"
import sys
want = [l.split() for l in open(sys.argv[1])]
got = [l.split() for l in open(sys.argv[2])]
assert len(got) == len(want), "%d points saved, %d expected" % (len(got), len(want))
for i, (w, g) in enumerate(zip(want, got)):
    assert w[0] == g[0], "point %d: %s saved, %s expected" % (i, g[0], w[0])
    for a, b in zip(w[1:], g[1:]):
        assert abs(float(a) - float(b)) < 1e-3, "point %d: %s saved, %s expected" % (i, g, w)
print("the saved file holds the %d points that were opened" % len(got))
PYTHON
grep -q '^%%Cinderlane Centre N' "$sketch" || fail "the saved file lost its Centre request"

closed_at=$(now)
close_with_alt_f4
expect_exit_code 0 60
echo "time: Alt+F4 until the program ended $(ms "$closed_at" "$(now)") ms"
[ "$(program_windows | wc -l)" -eq 0 ] || fail "a window is left open"
echo "PASS ($E2E_NAME)"
