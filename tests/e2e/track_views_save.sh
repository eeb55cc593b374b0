#!/usr/bin/env bash
# A user opens a ride described in a track file from the command line, looks
# at it from the top (F5), orbits it with Ctrl and the left button, zooms with
# the wheel, centres it ("c") and normalises its size ("n"), and saves it.
# A track file stays nameless, so Ctrl+S asks for a name.
#
# The ride: a start heading along +X, a straight of 100, a right turn of 180
# degrees with radius 50 that climbs 20 (two points: one per quarter), and a
# hill of length 80 and height 30 (two points): 6 points. Seen from above it
# spans x 0 to 150 (the turn's middle), more than in any other direction, so
# after centring and normalising its x runs from -100 to 100. The view
# gestures leave the sketch alone; centre and normalise mark it changed. A
# track is saved with its rolls, without the Centre and Scale requests.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
e2e_begin "$@"

track=$OUT/ride.qo
printf '%s\r\n' \
  'Quillmere track' \
  'Move 0 0 0 90' \
  'Element "Straight line" 100' \
  'Element Turn 180 50 20 0' \
  'Element Hill 80 30' >"$track"
saved=$OUT/ride.eps
rm -f "$saved"

start_quillmere "$(windows_path "$track")"
wait_for_main_window 60
untitled="Quillmere - Untitled (6 points) [EDIT SKETCH]"
expect_title "$untitled"
grep -q '^Quillmere: ' "$QLOG" && fail "a message was shown: $(grep '^Quillmere: ' "$QLOG")"
sleep 1 # the first frames
shot 1-opened

press F5
expect_title "$untitled"
expect_screen_change 1-opened 2-top-view "the top view"

# Orbit: Ctrl held, the left button dragged where no part of the ride lies
# (the view is fitted to the ride in the middle of the window).
window_geometry
corner_x=60
corner_y=$((WIN_H - 120))
ctrl_stroke $corner_x $corner_y $((corner_x + 40)) $((corner_y - 20)) $((corner_x + 80)) $((corner_y - 40)) $((corner_x + 120)) $((corner_y - 60))
expect_title "$untitled"
expect_screen_change 2-top-view 3-orbited "the orbit"

# The wheel: two notches in, one out.
wheel $((WIN_W / 2)) $((WIN_H / 2)) 4 2
wheel $((WIN_W / 2)) $((WIN_H / 2)) 5 1
expect_title "$untitled"
expect_screen_change 3-orbited 4-zoomed "the wheel"

press c
expect_title "Quillmere - Untitled * (6 points) [EDIT SKETCH]"
press n
expect_title "Quillmere - Untitled * (6 points) [EDIT SKETCH]"
expect_screen_change 4-zoomed 5-centred-normalised "centre and normalise"

press ctrl+s
wait_for_dialog "Save sketch" 20
shot 6-save-prompt
prompt_path=$(windows_path "$OUT")\\ride.eps
press_in_dialog
type_text "$prompt_path"
press_in_dialog Return
wait_for_dialog_gone 20
expect_title "Quillmere - ride.eps (6 points) [EDIT SKETCH]"
[ -f "$saved" ] || fail "no file $saved after the save"
shot 7-saved

close_with_alt_f4
expect_exit_code 0 30

python3 - "$saved" <<'PYTHON' || fail "the saved ride does not read as expected"
import sys
data = open(sys.argv[1], "rb").read()
assert data.endswith(b"%%EOF\r\n")
lines = data.decode("latin-1").split("\r\n")
for comment in ("%!PS-Adobe-3.0 EPSF-3.0", "%%Creator: Brambleworks Quillmere",
                "%%Cinderlane Centre N", "%%Cinderlane Scale N",
                "%%Cinderlane MaxLinesPerCurve 100"):
    assert comment in lines, comment
path = [l.split() for l in lines if l.endswith(("moveto", "lineto", "curveto"))]
operators = [p[-1] for p in path]
print("path:", " ".join(operators))
assert len(path) == 6, len(path)
assert operators[0] == "moveto" and "moveto" not in operators[1:], operators
# Positions and rolls in 3D: x y z r r r, curves with two handles before.
for p in path:
    assert len(p) == (13 if p[-1] == "curveto" else 7), p
xs = [float(p[6] if p[-1] == "curveto" else p[0]) for p in path]
print("x of the points:", xs)
assert abs(min(xs) + 100) < 0.01 and abs(max(xs) - 100) < 0.01, xs
box = [float(v) for v in next(l for l in lines if l.startswith("%%BoundingBox:")).split()[1:]]
print("box:", box)
assert abs(box[0] + 110) < 0.01 and abs(box[2] - 110) < 0.01, box
PYTHON
echo "PASS ($E2E_NAME)"
