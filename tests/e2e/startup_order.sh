#!/usr/bin/env bash
# Start-up and shutdown of the real program: its debug lines show the single
# objects made in their fixed order and ended in reverse order after the user
# leaves through File > Exit, worked from the keyboard (Alt+F, Up, Return).
# A new user sees all three tool windows: they open after the accelerators
# and end after the settings, the Mode palette just before the surface.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
e2e_begin "$@"

start_quillmere
wait_for_main_window 60
sleep 1 # a few frames, so that the drawing surface exists
close_with_file_exit
expect_exit_code 0 30

# Each line once, and in this order.
expected=(
  "WSettings created"
  "Main window created"
  "COM initialised"
  "WElement created"
  "WSketch created"
  "WRecording created"
  "WView created"
  "Accelerators created"
  "WDialog_Info created"
  "WDialog_Element created"
  "WDialog_Mode created"
  "MDrawSurface created"
  "Main window destroyed"
  "Accelerators destroyed"
  "WView destroyed"
  "WRecording destroyed"
  "WSketch destroyed"
  "WElement destroyed"
  "COM uninitialised"
  "WSettings destroyed"
  "WDialog_Info destroyed"
  "WDialog_Element destroyed"
  "WDialog_Mode destroyed"
  "MDrawSurface destroyed"
)
tr -d '\r' <"$QLOG" >"$OUT/lines.txt"
previous=0
for line in "${expected[@]}"; do
  found=$(grep -nx -- "$line" "$OUT/lines.txt" | cut -d: -f1)
  [ -n "$found" ] || fail "no line \"$line\""
  [ "$(wc -w <<<"$found")" -eq 1 ] || fail "\"$line\" more than once"
  [ "$found" -gt "$previous" ] || fail "\"$line\" out of order"
  previous=$found
done
# The ring goes with the sketch, just before it.
ring=$(grep -nx "WUndoRing destroyed" "$OUT/lines.txt" | cut -d: -f1)
sketch=$(grep -nx "WSketch destroyed" "$OUT/lines.txt" | cut -d: -f1)
[ -n "$ring" ] && [ "$ring" -lt "$sketch" ] || fail "the ring is not ended before the sketch"
echo "PASS ($E2E_NAME)"
