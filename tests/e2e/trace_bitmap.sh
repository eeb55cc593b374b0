#!/usr/bin/env bash
# A user traces a logo with the built-in tracer: File > Trace bitmap... from
# the keyboard, the picture typed into the prompt "Select picture". The logo
# (tests/data/tracer/logo.png) is a square ring and a block on a transparent
# ground: three closed outlines. The title then shows the traced points in
# the edit mode, without a name and unchanged; Ctrl+S asks for a name and
# writes the same points as filled paths, since a trace saves solid.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
e2e_begin "$@"

saved=$OUT/traced.eps
rm -f "$saved"

start_quillmere
wait_for_main_window 60
expect_title "Quillmere - Untitled (0 points) [DRAW FREEHAND]"

# File > Trace bitmap...: the fifth item, four steps down from "New".
xdotool key --window "$WID" alt+f 2>/dev/null
sleep 0.5
for step in 1 2 3 4; do
  xdotool key --window "$WID" Down 2>/dev/null
  sleep 0.3
done
xdotool key --window "$WID" Return 2>/dev/null
wait_for_dialog "Select picture" 20
shot 1-select-picture
press_in_dialog
type_text "$(windows_path "$E2E_ROOT/tests/data/tracer/logo.png")"
press_in_dialog Return
wait_for_dialog_gone 20

# The traced sketch in the edit mode: at least the 3 x 4 corners of the
# three outlines and the closing point of each.
waited=0
until main_title | grep -q '^Quillmere - Untitled ([0-9]* points) \[EDIT SKETCH\]$'; do
  [ "$waited" -ge 300 ] && fail "title \"$(main_title)\" after the trace"
  sleep 0.1
  waited=$((waited + 1))
done
count=$(title_point_count)
echo "traced points: $count"
[ "$count" -ge 15 ] || fail "only $count points traced"
shot 2-traced

# Save: no name yet, so the prompt asks for one.
activate_main_window
press ctrl+s
wait_for_dialog "Save sketch" 20
press_in_dialog
type_text "$(windows_path "$OUT")\\traced.eps"
press_in_dialog Return
wait_for_dialog_gone 20
expect_title "Quillmere - traced.eps ($count points) [EDIT SKETCH]"
[ -f "$saved" ] || fail "no file $saved after the save"

eps_points "$saved" >"$OUT/points.txt"
[ "$(wc -l <"$OUT/points.txt")" -eq "$count" ] ||
  fail "the file holds $(wc -l <"$OUT/points.txt") points, the title said $count"
[ "$(grep -c '^moveto' "$OUT/points.txt")" -eq 3 ] || fail "not three outlines in the file"
fills=$(grep -c '^fill' <(tr -d '\r' <"$saved"))
[ "$fills" -eq 3 ] || fail "$fills fills in the file, expected 3"
grep -q 'stroke' "$saved" && fail "the traced sketch was saved stroked"
shot 3-saved

close_with_alt_f4
expect_exit_code 0 30
echo "PASS ($E2E_NAME)"
