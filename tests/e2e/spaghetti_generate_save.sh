#!/usr/bin/env bash
# A user opens Tools > Spaghetti..., clicks on the canvas and picks a picture
# in the prompt (a red block on a transparent ground, made by ImageMagick),
# presses GENERATE, and saves with
# "Save as...": the project EPS and its show are written side by side, and
# the message lists both. The EPS holds the tag lines with the picture's path
# and the curves; the show names the EPS and the picture.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
e2e_begin "$@"

picture=$OUT/spaghetti-block.png
rm -f "$OUT/strings.EPS" "$OUT/strings.CND" "$picture"
convert -size 240x160 xc:none -fill red -draw "rectangle 30,30 209,129" "PNG32:$picture" ||
  fail "ImageMagick could not make the picture"

start_quillmere
wait_for_main_window 60
expect_title "Quillmere - Untitled (0 points) [DRAW FREEHAND]"

# Tools > Spaghetti... from the keyboard: the menu, then its first entry.
press alt+t Return
wait_for_dialog "Quillmere - Spaghetti tool" 20
TOOL=$DLG
eval "$(xdotool getwindowgeometry --shell "$TOOL")"
TOOL_W=$WIDTH
TOOL_H=$HEIGHT
echo "Spaghetti dialog: ${TOOL_W}x${TOOL_H}"
shot 1-empty-tool

# A dialog-unit position of the template as a pixel of the dialog window.
du_x() { echo $(($1 * TOOL_W / 655)); }
du_y() { echo $(($1 * TOOL_H / 395)); }

# A click on the canvas asks for a picture.
xdotool mousemove --window "$TOOL" 100 100 click 1 || fail "click on the canvas failed"
pause_step
wait_for_dialog "Select picture" 20
press_in_dialog
type_text "$(windows_path "$picture")"
press_in_dialog Return
wait_for_dialog_gone 20
shot 2-picture

# GENERATE: the button at 460, 310 (188 by 24 dialog units).
xdotool mousemove --window "$TOOL" "$(du_x 554)" "$(du_y 322)" click 1 || fail "click on GENERATE failed"
sleep 3
shot 3-generated

# Save as...: the button at 558, 342 (90 by 16 dialog units).
xdotool mousemove --window "$TOOL" "$(du_x 603)" "$(du_y 350)" click 1 || fail "click on Save as... failed"
pause_step
wait_for_dialog "Save sketch" 20
press_in_dialog
type_text "$(windows_path "$OUT")\\strings.eps"
press_in_dialog Return
wait_for_dialog_gone 20

# The report of both files, a box with the program's name as its title.
wait_for_dialog "Quillmere" 20
shot 4-saved-message
press_in_dialog Return
wait_for_dialog_gone 20

eps=$OUT/strings.EPS
show=$OUT/strings.CND
[ -f "$eps" ] || fail "no project file $eps"
[ -f "$show" ] || fail "no show file $show"

python3 - "$eps" "$show" "$(windows_path "$picture")" "$(windows_path "$eps")" <<'PYTHON' || fail "the saved files are not what the tool writes"
import sys
eps_path, show_path, picture, eps_windows = sys.argv[1:5]
data = open(eps_path, "rb").read()
assert b"\n" not in data.replace(b"\r\n", b""), "every line ends in CR LF"
lines = data.decode("latin-1").split("\r\n")
assert lines[0] == "%!PS-Adobe-3.0 EPSF-3.0", lines[0]
assert lines[1] == "%%Creator: Brambleworks Spaghetti Generator", lines[1]
tags = [l for l in lines if l.startswith("%%QuillmereSpaghettiTool ")]
assert len(tags) == 17, len(tags)
assert tags[0] == '%%QuillmereSpaghettiTool PathBitmap "' + picture + '"', tags[0]
assert tags[1] == "%%QuillmereSpaghettiTool Strings 20", tags[1]
curves = [l for l in lines if l.endswith(" curveto")]
moves = [l for l in lines if l.endswith(" moveto")]
print("curves:", len(curves), "strings:", len(moves))
assert 0 < len(curves) <= 400, len(curves)
assert 0 < len(moves) <= 20, len(moves)
for l in curves:
    assert len(l.split()) == 13, l
assert lines[-3:] == ["grestore", "%%EOF", ""], lines[-3:]
show = open(show_path, "rb").read().decode("latin-1")
assert show.startswith("Cinderlane Show 4 7\r\n"), show[:40]
assert ('FNA\t"' + eps_windows + '"') in show, "the show names the EPS"
assert ('MPA\t"' + picture + '"') in show, "the show names the picture"
PYTHON

# The tool's Save as... names the sketch: the title shows it once the
# dialog is closed.
DLG=$TOOL
press_in_dialog alt+F4
wait_for_dialog_gone 20
expect_title "Quillmere - strings.EPS (0 points) [DRAW FREEHAND]"
close_with_alt_f4
expect_exit_code 0 60
echo "spaghetti journey passed"
