#!/usr/bin/env bash
# A user opens a sketch of one open curve from the command line and chooses
# File > Save as... from the keyboard. The save dialog comes first: with the
# defaults ("Solid" and "Roll" off) only "Handwritten text" of the templates
# can be ticked, so the keyboard's tab order skips the greyed ones. The user
# tabs to it, ticks it with the space bar and presses Return for OK. Then the
# file prompt asks for the name. The EPS file is written with the dialog's
# choices (Centre and Normalize size off, as the opened file asked, and 100
# lines per curve), the title takes the file's name, and at the close the
# settings file remembers the ticked template.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
e2e_begin "$@"

saved=$OUT/dialog.eps
opened=$OUT/corner.eps
rm -f "$saved"
printf '%s\r\n' '%!PS-Adobe-3.0 EPSF-3.0' '%%Creator: Brambleworks Quillmere' \
  '%%Cinderlane Centre N' '%%Cinderlane Scale N' '%%LanguageLevel: 2' \
  '%%BoundingBox: -10 -10 110 60' '%%Pages: 1' '%%EndComments' '%Page: 1 1' 'gsave' \
  '1 1 scale' '0 0 moveto' '100 0 lineto' '100 50 lineto' '0 setgray' '2 setlinewidth stroke' \
  'grestore' '%%EOF' >"$opened"

start_quillmere "$(windows_path "$opened")"
wait_for_main_window 60
expect_title "Quillmere - corner.eps (3 points) [EDIT SKETCH]"

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
expect_title "Quillmere - dialog.eps (3 points) [EDIT SKETCH]"
[ -f "$saved" ] || fail "no file $saved after Save as..."
tr -d '\r' <"$saved" | grep -qx '%%Cinderlane Centre N' || fail "the file asks for centring"
tr -d '\r' <"$saved" | grep -qx '%%Cinderlane Scale N' || fail "the file asks for scaling"
tr -d '\r' <"$saved" | grep -qx '%%Cinderlane MaxLinesPerCurve 100' || fail "the file has not 100 lines per curve"
[ "$(tr -d '\r' <"$saved" | grep -c ' lineto$')" -eq 2 ] || fail "the file does not hold the two lines of the sketch"

activate_main_window
close_with_alt_f4
expect_exit_code 0 30
settings_text | grep -q '^Template	1	Y$' || fail "the ticked template was not kept: $(settings_text | grep '^Template')"
[ "$(settings_text | grep -c '^Template	[0-9]	Y$')" -eq 1 ] || fail "more than one template ticked: $(settings_text | grep '^Template')"
echo "PASS ($E2E_NAME)"
