#!/usr/bin/env bash
# A new user draws a stroke and closes the window. The program asks whether
# to save the changed sketch, in a box of its own titled "Quillmere". Cancel
# (Escape) keeps the program and the sketch as they were; closing again and
# answering No ends the program with exit code 0, and no sketch file is
# written anywhere (only the settings file, as at every close).
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
e2e_begin "$@"

question=$'Quillmere: The sketch has changed.\r\n\r\nDo you want to save the changes ? \n'
marker=$OUT/started
touch "$marker"
sleep 1 # file times of a second's grain

start_quillmere
wait_for_main_window 60
expect_title "Quillmere - Untitled (0 points) [DRAW FREEHAND]"
draw_stroke 300 300 350 300 400 300 450 300
changed="Quillmere - Untitled * (2 points) [DRAW FREEHAND]"
expect_title "$changed"

# First close: the question, answered with Cancel.
close_with_alt_f4
wait_for_dialog Quillmere 20
eval "$(xdotool getwindowgeometry --shell "$DLG")"
box_w=$WIDTH box_h=$HEIGHT
window_geometry
echo "question box ${box_w}x${box_h}, main window ${WIN_W}x${WIN_H}"
[ "$box_w" -lt "$WIN_W" ] && [ "$box_h" -lt "$WIN_H" ] || fail "the box is not smaller than the main window"
shot 1-question
python3 - "$QLOG" "$question" <<'PYTHON' || fail "the question's text is not the expected one"
import sys
log = open(sys.argv[1], "rb").read().decode("utf-8")
assert log.count(sys.argv[2]) == 1, log
PYTHON
press_in_dialog Escape
wait_for_dialog_gone 20
sleep 1
kill -0 "$QPID" 2>/dev/null || fail "the program ended after Cancel"
expect_title "$changed"
[ "$(program_windows | wc -l)" -eq 1 ] || fail "more than the main window is open after Cancel"
shot 2-after-cancel
activate_main_window
expect_title "$changed"

# Second close: the question again, answered with No.
close_with_alt_f4
wait_for_dialog Quillmere 20
shot 3-question-again
press_in_dialog n
expect_exit_code 0 30
[ -z "$(program_windows)" ] || fail "a window is left after the end"
python3 - "$QLOG" "$question" <<'PYTHON' || fail "the question was not asked exactly twice"
import sys
log = open(sys.argv[1], "rb").read().decode("utf-8")
assert log.count(sys.argv[2]) == 2, log.count(sys.argv[2])
PYTHON

# Nothing but the settings file was written since the start, in the user's
# folders or the journey's own. (A Wine prefix made on this first start
# writes its system files meanwhile; they are not the program's.)
written=$(find "$E2E_PREFIX/drive_c/users" "$OUT" -type f -newer "$marker" \
  ! -name program.log ! -name '*.png' ! -name '*.reg' ! -name 'Quillmere.txt' 2>/dev/null)
[ -z "$written" ] || fail "files were written: $written"
settings_file >/dev/null || fail "the close did not save the settings"
echo "PASS ($E2E_NAME)"
