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
