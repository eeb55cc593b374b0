#!/usr/bin/env bash
# A new user opens Options with F11. The dialog shows the settings: the pen
# size field holds 2 and has the focus with its text selected, so typing 5
# replaces it. Return is OK. The dialog closes, and at the program's close the
# settings file holds the new pen size; the display size stays 100.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
e2e_begin "$@"

start_quillmere
wait_for_main_window 60
expect_title "Quillmere - Untitled (0 points) [DRAW FREEHAND]"

xdotool key --window "$WID" F11 2>/dev/null
wait_for_dialog "Quillmere - Options" 30
# The swatch of "Curve" (black by default) stands right beside its label, a
# square as high as the label: at 96 dots per inch the label ends at x 360
# and spans y 96 to 112 of the dialog.
main=$WID
WID=$DLG
wait_for_colour 368 104 0,0,0 60 "the black swatch of the curve colour"
wait_for_colour 368 62 229,229,229 10 "the swatch of the grid colour"
WID=$main
shot 1-options
press_in_dialog
type_text 5
shot 2-pen-size-typed
press_in_dialog Return
wait_for_dialog_gone 20
expect_title "Quillmere - Untitled (0 points) [DRAW FREEHAND]"

activate_main_window
close_with_alt_f4
expect_exit_code 0 30
[ "$(settings_text | grep '^PenSize	')" = "PenSize	5" ] || fail "the pen size is $(settings_text | grep '^PenSize')"
[ "$(settings_text | grep '^DisplaySize	')" = "DisplaySize	100" ] || fail "the display size is $(settings_text | grep '^DisplaySize')"
echo "PASS ($E2E_NAME)"
