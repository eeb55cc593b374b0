#!/usr/bin/env bash
# A user opens a sketch file with Quillmere (as Explorer's "Open with" does:
# the file's path is the one argument). The file is in the system's own EPS
# dialect, in 3D with roll: a move at the origin, a curve up to z 30 whose
# handles lie on its chord, and a line to x 10. The load's clean-up turns the
# straight curve into a line and keeps all three points. The program opens in
# the edit mode with the file's name and its point count in the title, the
# sketch unchanged; it closes without a question.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
e2e_begin "$@"

# A folder with a blank in its name: the path must reach the program whole.
folder="$OUT/my sketches"
mkdir -p "$folder"
sketch=$folder/sample.eps
printf '%s\r\n' \
  '%!PS-Adobe-3.0 EPSF-3.0' \
  '%%Creator: Brambleworks Quillmere' \
  '%%Cinderlane Centre Y' \
  '%%Cinderlane Scale N' \
  '%%Cinderlane MaxLinesPerCurve 100' \
  '%%LanguageLevel: 2' \
  '%%BoundingBox: -10 -10 20 10' \
  '%%Pages: 1' \
  '%%EndComments' \
  '%Page: 1 1' \
  'gsave' \
  '1 1 scale' \
  '0 0 0 0 1 0 moveto' \
  '0 0 10 0 0 20 0 0 30 0 1 0 curveto' \
  '10 0 30 0 1 0 lineto' \
  '0 setgray' \
  '2 setlinewidth stroke' \
  'grestore' \
  '%%EOF' >"$sketch"
cp "$sketch" "$OUT/sample-before.eps"

path=$(windows_path "$sketch")
echo "opening $path"
start_quillmere "$path"
wait_for_main_window 60
expect_title "Quillmere - sample.eps (3 points) [EDIT SKETCH]"
sleep 2 # time for a message box to appear, if one were shown
[ "$(program_windows | wc -l)" -eq 1 ] || fail "a second window named Quillmere is open (a message?)"
grep -q '^Quillmere: ' "$QLOG" && fail "a message was shown: $(grep '^Quillmere: ' "$QLOG")"
shot 1-opened

close_with_alt_f4
expect_exit_code 0 30
cmp -s "$sketch" "$OUT/sample-before.eps" || fail "the file was changed by opening and closing it"
echo "PASS ($E2E_NAME)"
