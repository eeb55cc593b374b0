#!/usr/bin/env bash
# A new user draws one stroke and chooses File > Save as... from the
# keyboard. The save dialog comes first: with the defaults ("Solid" and
# "Roll" off) only "Handwritten text" of the templates can be ticked, so the
# keyboard's tab order skips the greyed ones. The user tabs to it, ticks it
# with the space bar and presses Return for OK. Then the file prompt asks for
# the name. The EPS file is written with the dialog's choices (Centre and
# Normalize size on, 100 lines per curve), the title takes the file's name,
# and at the close the settings file remembers the ticked template.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
e2e_begin "$@"

saved=$OUT/dialog.eps
rm -f "$saved"

start_quillmere
wait_for_main_window 60
expect_title "Quillmere - Untitled (0 points) [DRAW FREEHAND]"
draw_stroke 200 300 250 300 300 300 350 300 400 300
expect_title "Quillmere - Untitled * (2 points) [DRAW FREEHAND]"

# File > Save as...: the fourth item of the File menu.
xdotool key --window "$WID" alt+f 2>/dev/null
sleep 0.5
for _ in 1 2 3; do
  xdotool key --window "$WID" Down 2>/dev/null
  sleep 0.3
done
xdotool key --window "$WID" Return 2>/dev/null
wait_for_dialog "Quillmere - Save sketch" 30
shot 1-save-dialog

# The focus starts on "Solid"; then "Roll", "Centre", "Normalize size", "Max
# lines per curve", and the first template that is enabled.
press_in_dialog Tab Tab Tab Tab Tab space
shot 2-handwritten-ticked
press_in_dialog Return
wait_for_dialog_gone 20

wait_for_dialog "Save sketch" 30
shot 3-prompt
press_in_dialog
type_text "$(windows_path "$OUT")\\dialog.eps"
press_in_dialog Return
wait_for_dialog_gone 20
expect_title "Quillmere - dialog.eps (2 points) [DRAW FREEHAND]"
[ -f "$saved" ] || fail "no file $saved after Save as..."
tr -d '\r' <"$saved" | grep -qx '%%Cinderlane Centre Y' || fail "the file does not ask for centring"
tr -d '\r' <"$saved" | grep -qx '%%Cinderlane Scale Y' || fail "the file does not ask for scaling"
tr -d '\r' <"$saved" | grep -qx '%%Cinderlane MaxLinesPerCurve 100' || fail "the file has not 100 lines per curve"
[ "$(tr -d '\r' <"$saved" | grep -c ' lineto$')" -eq 1 ] || fail "the file does not hold the stroke's line"

close_with_alt_f4
expect_exit_code 0 30
settings_text | grep -q '^Template	1	Y$' || fail "the ticked template was not kept: $(settings_text | grep '^Template')"
[ "$(settings_text | grep -c '^Template	[0-9]	Y$')" -eq 1 ] || fail "more than one template ticked: $(settings_text | grep '^Template')"
echo "PASS ($E2E_NAME)"
