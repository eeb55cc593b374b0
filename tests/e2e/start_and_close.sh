#!/usr/bin/env bash
# A new user starts Quillmere, sees a white drawing area (with its grid and
# help texts) in a window of 0.8 of the screen, centred, titled for a new
# sketch in the drawing mode, and closes it with Alt+F4. The program ends
# with exit code 0, and the settings file now holds the window's place for
# the next start.
#
# Closing: Wine's default window procedure turns Alt+F4 into the close
# command even without a window manager, so the user's own key is used here;
# File > Exit from the keyboard is the way of startup_order.sh.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
e2e_begin "$@"

start_quillmere
wait_for_main_window 60
sleep 1 # a few frames

title=$(xdotool getwindowname "$WID")
[ "$title" = "Quillmere - Untitled (0 points) [DRAW FREEHAND]" ] || fail "title is \"$title\""

# The window rectangle is 0.8 of the screen, centred. The X window lacks the
# caption and the borders that Wine leaves to a window manager, so it is a
# little smaller than the Windows window and lies inside the rectangle.
window_geometry
want_w=$((SCREEN_W * 8 / 10))
want_h=$((SCREEN_H * 8 / 10))
want_x=$(((SCREEN_W - want_w) / 2))
want_y=$(((SCREEN_H - want_h) / 2))
frame_w=$((want_w - WIN_W))
frame_h=$((want_h - WIN_H))
[ "$frame_w" -ge 0 ] && [ "$frame_w" -le 16 ] || fail "window width $WIN_W for a screen $SCREEN_W wide (want $want_w less the borders)"
[ "$frame_h" -ge 0 ] && [ "$frame_h" -le 40 ] || fail "window height $WIN_H for a screen $SCREEN_H high (want $want_h less caption and borders)"
left_border=$((WIN_X - want_x))
right_border=$((want_x + want_w - WIN_X - WIN_W))
bottom_border=$((want_y + want_h - WIN_Y - WIN_H))
[ "$left_border" -eq "$right_border" ] && [ "$left_border" -ge 0 ] || fail "window not centred: x $WIN_X width $WIN_W"
[ "$bottom_border" -eq "$left_border" ] || fail "window not centred: y $WIN_Y height $WIN_H"
echo "window ${WIN_W}x${WIN_H}+${WIN_X}+${WIN_Y} on a ${SCREEN_W}x${SCREEN_H} screen (outer ${want_w}x${want_h}+${want_x}+${want_y})"

# The drawing area below the menu bar is white: the frame clears it with the
# background colour, and the grid, the axes and the help texts cover only a
# little of it. The part beside the tool windows is measured: the Mode
# palette stands at the left edge, the Point and Element windows from 0.8 of
# the width on.
shot screenshot
shot=$OUT/screenshot.png
menu_bar=40
left=100
right=$((WIN_W * 3 / 4))
white=$(/usr/bin/convert "$shot" -crop $((right - left))x$((WIN_H - menu_bar - 10))+$((WIN_X + left))+$((WIN_Y + menu_bar)) +repage \
  -fill black +opaque white -format '%[fx:mean]' info:)
awk -v w="$white" 'BEGIN { exit !(w > 0.9) }' || fail "only $white of the drawing area is white, see $shot"

settings_text >/dev/null && fail "a new user has no settings file before the close"
close_with_alt_f4
expect_exit_code 0 30
[ -z "$(program_windows)" ] || fail "a window is left after the end"
# WindowRect is written as top, right, bottom, left.
first=$(settings_text | head -n 1) || fail "no settings file after the close"
want=$(printf 'WindowRect\t%d\t%d\t%d\t%d' "$want_y" $((want_x + want_w)) $((want_y + want_h)) "$want_x")
[ "$first" = "$want" ] || fail "settings begin with \"$first\", expected \"$want\""
echo "PASS ($E2E_NAME)"
