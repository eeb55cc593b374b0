#!/usr/bin/env bash
# A user opens Tools > Spaghetti..., clicks on the canvas and picks a picture
# in the prompt (a red block on a transparent ground, made by ImageMagick),
# presses GENERATE (Enter, the default button), and saves with
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
shot 1-empty-tool

# A click on the canvas asks for a picture.
xdotool mousemove --window "$TOOL" 100 100 click 1 || fail "click on the canvas failed"
pause_step
wait_for_dialog "Select picture" 20
press_in_dialog
type_text "$(windows_path "$picture")"
press_in_dialog Return
wait_for_dialog_gone 20
shot 2-picture

# Three strings (the keyboard is in the first field, its text selected),
# then GENERATE: Enter goes to the default button. Escape is polled at every
# attempt of a run, and under Wine each poll asks the server, so a small run
# keeps the journey short.
DLG=$TOOL
press_in_dialog 3 Return
sleep 8
shot 3-generated

# Save as...: the last control, one Shift+Tab back from the first field,
# pressed with the space bar.
press_in_dialog shift+Tab space
wait_for_dialog "Save sketch" 60
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
assert tags[1] == "%%QuillmereSpaghettiTool Strings 3", tags[1]
curves = [l for l in lines if l.endswith(" curveto")]
moves = [l for l in lines if l.endswith(" moveto")]
print("curves:", len(curves), "strings:", len(moves))
assert 0 < len(curves) <= 60, len(curves)
assert 0 < len(moves) <= 3, len(moves)
for l in curves:
    assert len(l.split()) == 13, l
assert lines[-3:] == ["grestore", "%%EOF", ""], lines[-3:]
show = open(show_path, "rb").read().decode("latin-1")
assert show.startswith("Cinderlane Show 4 7\r\n"), show[:40]
assert ('FNA\t"' + eps_windows + '"') in show, "the show names the EPS"
assert ('MPA\t"' + picture + '"') in show, "the show names the picture"
PYTHON

# The tool's Save as... names the sketch, and the main window's title shows
# the name at once. The program is ended by the journey's clean-up with the
# tool still open.
expect_title "Quillmere - strings.EPS (0 points) [DRAW FREEHAND]"
echo "spaghetti journey passed"
