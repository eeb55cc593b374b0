#!/usr/bin/env bash
# A new user draws two strokes, switches to editing with "e", drags the first
# point of the first stroke up, undoes and redoes, saves with Ctrl+S (the
# sketch has no name yet, so the file prompt asks for one), closes, and opens
# the file again from the command line.
#
# The first stroke is straight and horizontal, 200 pixels long: it keeps its
# two ends, and its first point lies where the button went down. Dragging
# that point 100 pixels up makes the chord rise by half its width, which the
# saved file shows. The second stroke is the bent path of draw_strokes.sh
# (7 points). The file is written with Centre and Scale "Y", so opening it
# centres the sketch and scales it to 200 units: saved again, the file holds
# the same points moved and scaled so.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
e2e_begin "$@"

first=(200 300 250 300 300 300 350 300 400 300)
second=(550 600 600 600 643 575 668 532 668 482 643 438 600 413)
saved=$OUT/journey.eps
rm -f "$saved"

# The strokes and clicks are read from the screen: no tool window stands
# over the drawing area.
settings_without_tool_windows
start_quillmere
wait_for_main_window 60
expect_title "Quillmere - Untitled (0 points) [DRAW FREEHAND]"

draw_stroke "${first[@]}"
expect_title "Quillmere - Untitled * (2 points) [DRAW FREEHAND]"
draw_stroke "${second[@]}"
expect_title "Quillmere - Untitled * (9 points) [DRAW FREEHAND]"
shot 1-two-strokes

press e
expect_title "Quillmere - Untitled * (9 points) [EDIT SKETCH]"

# The drag: down on the first point, up by 100 pixels in steps, release.
stroke 200 300 200 275 200 250 200 225 200 200
expect_title "Quillmere - Untitled * (9 points) [EDIT SKETCH]"
shot 2-dragged

# Undo the drag, undo the second stroke, and redo both.
press ctrl+z
expect_title "Quillmere - Untitled * (9 points) [EDIT SKETCH]"
press ctrl+z
expect_title "Quillmere - Untitled * (2 points) [EDIT SKETCH]"
shot 3-undone
press ctrl+y
expect_title "Quillmere - Untitled * (9 points) [EDIT SKETCH]"
press ctrl+y
expect_title "Quillmere - Untitled * (9 points) [EDIT SKETCH]"

# Save: the prompt asks for a name. The prompt forces its default extension
# "EPS" on the answer; the writer forces "eps" on the same path, which is the
# name the sketch keeps.
press ctrl+s
wait_for_dialog "Save sketch" 20
shot 4-save-prompt
prompt_path=$(windows_path "$OUT")\\journey.eps
press_in_dialog
type_text "$prompt_path"
press_in_dialog Return
wait_for_dialog_gone 20
expect_title "Quillmere - journey.eps (9 points) [EDIT SKETCH]"
[ -f "$saved" ] || fail "no file $saved after the save"
cp "$saved" "$OUT/first-save.eps"
shot 5-saved

eps_points "$saved" >"$OUT/first-points.txt"
[ "$(wc -l <"$OUT/first-points.txt")" -eq 9 ] || fail "the file holds $(wc -l <"$OUT/first-points.txt") points, the title said 9"
# The dragged chord rises by half its width: the drag and its redo arrived.
python3 - "$OUT/first-points.txt" <<'PYTHON' || fail "the first stroke in the file is not the dragged one"
import sys
rows = [line.split() for line in open(sys.argv[1])]
assert rows[0][0] == "moveto" and rows[2][0] == "moveto", [r[0] for r in rows]
(x0, y0), (x1, y1) = [(float(r[1]), float(r[2])) for r in rows[:2]]
rise = (y0 - y1) / (x1 - x0)
print("rise of the dragged chord:", rise)
assert abs(rise - 0.5) < 0.02, rise
PYTHON

close_with_alt_f4
expect_exit_code 0 30

# Open it again: the name and the count come back, and nothing is changed.
start_quillmere "$(windows_path "$saved")"
wait_for_main_window 60
expect_title "Quillmere - journey.eps (9 points) [EDIT SKETCH]"
shot 6-reopened

# Save again: the sketch has a name now, so no prompt appears.
touch -d '2000-01-01' "$saved"
press ctrl+s
expect_title "Quillmere - journey.eps (9 points) [EDIT SKETCH]"
for _ in $(seq 100); do
  [ "$saved" -nt "$OUT/first-save.eps" ] && break
  sleep 0.1
done
[ "$saved" -nt "$OUT/first-save.eps" ] || fail "Ctrl+S did not write $saved again"
xdotool search --onlyvisible --name '^Save sketch$' >/dev/null 2>&1 && fail "the save asked for a name although the sketch has one"
sleep 0.5
cp "$saved" "$OUT/second-save.eps"

close_with_alt_f4
expect_exit_code 0 30

# The two saves: the same header, the same path line forms, and the points
# of the second are those of the first centred and scaled to 200 units.
python3 - "$OUT/first-save.eps" "$OUT/second-save.eps" <<'PYTHON' || fail "the file saved again does not match the first save"
import sys
def lines(path):
    data = open(path, "rb").read()
    assert data.endswith(b"%%EOF\r\n"), path
    return data.decode("latin-1").split("\r\n")
first, second = lines(sys.argv[1]), lines(sys.argv[2])
assert len(first) == len(second), (len(first), len(second))
for a, b in zip(first, second):
    if a.startswith("%%BoundingBox:"):
        continue
    if a.endswith(("moveto", "lineto", "curveto")):
        assert a.split()[-1] == b.split()[-1] and len(a.split()) == len(b.split()), (a, b)
    else:
        assert a == b, (a, b)
for comment in ("%%Cinderlane Centre Y", "%%Cinderlane Scale Y"):
    assert comment in first, comment
box = [float(v) for v in next(l for l in first if l.startswith("%%BoundingBox:")).split()[1:]]
# The box is the sketch's extent widened by 10; the sketch is flat.
cx, cy = (box[0] + box[2]) / 2, (box[1] + box[3]) / 2
factor = 200 / max(box[2] - box[0] - 20, box[3] - box[1] - 20)
def numbers(line):
    return [float(v) for v in line.split()[:-1]]
worst = 0
for a, b in zip(first, second):
    if not a.endswith(("moveto", "lineto", "curveto")):
        continue
    na, nb = numbers(a), numbers(b)
    # The 2D form holds x y pairs only; the 3D forms hold x y z triples, then
    # perhaps a roll, which the move and the scale leave alone.
    operator = a.split()[-1]
    if len(na) == (6 if operator == "curveto" else 2):
        step, count = 2, len(na)
    else:
        step, count = 3, (9 if operator == "curveto" else 3)
    for i in range(0, count, step):
        want = ((na[i] - cx) * factor, (na[i + 1] - cy) * factor)
        worst = max(worst, abs(want[0] - nb[i]), abs(want[1] - nb[i + 1]))
print("largest difference from the centred and scaled first save:", worst)
assert worst < 0.01, worst
PYTHON
echo "PASS ($E2E_NAME)"
