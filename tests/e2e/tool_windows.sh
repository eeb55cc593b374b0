#!/usr/bin/env bash
# The three tool windows beside the main window, used as a new user would:
# the Mode palette switches the mode with its buttons, a point's X typed into
# the Point window moves that point, and "Add" of the Element window adds the
# element it shows (the lift hill). Closing with all three open writes "Y" for
# each; a settings file that says "N" for all three starts without them.
#
# Wine draws the tool windows' frames itself, which the palette measures for
# all three (click_in). The Point window's X edit lies at dialog units
# (14, 38)-(58, 50), the Element window's "Add" at (113, 199)-(163, 213); with
# Tahoma, Wine's "MS Shell Dlg", a dialog unit is 1.5 pixels wide and about
# 1.6 high.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
e2e_begin "$@"

start_quillmere
wait_for_main_window 60
expect_title "Quillmere - Untitled (0 points) [DRAW FREEHAND]"
wait_for_tool_window Point
POINT_WINDOW=$TW
wait_for_tool_window Element
ELEMENT_WINDOW=$TW
wait_for_palette
shot 1-tool-windows

# ---- The palette: the lowest button edits the roll, the highest draws.
click_in "$PALETTE" 32 170
expect_title "Quillmere - Untitled (0 points) [EDIT ROLL]"
click_in "$PALETTE" 32 10
expect_title "Quillmere - Untitled (0 points) [DRAW FREEHAND]"

# ---- A straight stroke of two points, then the middle button, and a click
# on the stroke's last point selects it. The main window takes the keyboard
# and the mouse back first (a click on its menu bar).
activate_main_window
draw_stroke 300 300 400 300 500 300
expect_title "Quillmere - Untitled * (2 points) [DRAW FREEHAND]"
click_in "$PALETTE" 32 100
expect_title "Quillmere - Untitled * (2 points) [EDIT SKETCH]"
activate_main_window
point_at 500 300
xdotool click 1 || fail "click failed"
pause_step
shot 2-last-point-selected

# ---- The Point window: the last point's X is cleared and typed anew, far
# to the left of the first point.
click_in "$POINT_WINDOW" 54 71
xdotool key End || fail "key End failed"
for _ in $(seq 16); do xdotool key BackSpace; done
pause_step
type_text "-100000"
shot 3-x-typed

# Save, so that the file tells where the point went. A centring or sizing
# of the save would keep the order of the x coordinates.
saved=$OUT/tool-windows.eps
press ctrl+s
wait_for_dialog "Save sketch" 20
press_in_dialog
type_text "$(windows_path "$OUT")\\tool-windows.eps"
press_in_dialog Return
wait_for_dialog_gone 20
expect_title "Quillmere - tool-windows.eps (2 points) [EDIT SKETCH]"
[ -f "$saved" ] || fail "no file $saved after the save"
eps_points "$saved" >"$OUT/points.txt"
python3 - "$OUT/points.txt" <<'PYTHON' || fail "the typed X did not move the last point past the first"
import sys
rows = [line.split() for line in open(sys.argv[1])]
assert len(rows) == 2, rows
x0, x1 = float(rows[0][1]), float(rows[1][1])
y0, y1 = float(rows[0][2]), float(rows[1][2])
print("first point x", x0, "last point x", x1)
assert x1 < x0 and abs(y0 - y1) < 1e-3, rows
PYTHON

# ---- The Element window: "Add" with the lift hill it shows first.
click_in "$ELEMENT_WINDOW" 207 335
for _ in $(seq 150); do
  count=$(title_point_count)
  [ "${count:-0}" -gt 2 ] && break
  sleep 0.1
done
[ "${count:-0}" -gt 2 ] || fail "Add of the Element window added nothing (title: $(main_title))"
echo "points after Add: $count"
shot 4-element-added

# ---- Closing with all three open: each is written as shown. The keyboard
# goes back to the main window first.
activate_main_window
close_with_alt_f4
wait_for_dialog Quillmere 20
press_in_dialog n
expect_exit_code 0 30
settings_text >"$OUT/settings.txt" || fail "no settings file after the close"
for key in ShowWindow_Point ShowWindow_Element ShowWindow_Mode; do
  grep -qx "$key	Y" "$OUT/settings.txt" || fail "$key is not Y after a close with the window open"
done

# ---- All three closed in the settings: the next start shows none.
for key in ShowWindow_Point ShowWindow_Element ShowWindow_Mode; do
  settings_set "$key" N
done
start_quillmere
wait_for_main_window 60
sleep 3 # time for the windows to appear, if they were opened
[ -z "$(tool_windows)" ] || fail "a tool window opened although the settings say N"
palette_shown && fail "the Mode palette opened although the settings say N"
shot 5-no-tool-windows
close_with_alt_f4
expect_exit_code 0 30
settings_text >"$OUT/settings-2.txt"
for key in ShowWindow_Point ShowWindow_Element ShowWindow_Mode; do
  grep -qx "$key	N" "$OUT/settings-2.txt" || fail "$key is not N after a run without the window"
done
echo "PASS ($E2E_NAME)"
