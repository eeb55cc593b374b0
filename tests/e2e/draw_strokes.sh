#!/usr/bin/env bash
# A new user draws freehand. The path below turns by 30 degrees at each of
# its five inner corners, with 50 pixels between samples: without Ctrl every
# corner stays (a turn above 25.8 degrees), so the stroke adds 7 points; the
# same path with Ctrl held gives a polyline that keeps only turns above 60
# degrees between its thinned neighbours, 3 points. A straight stroke adds 2,
# a click without moving adds 1 lone point. The title counts each. The
# polyline is drawn 400 pixels to the right of the curve, so that the ink of
# each of its samples shows on its own.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
e2e_begin "$@"

# Window pixels of the bent path (x y pairs), well inside the drawing area.
bent=(100 500 150 500 193 475 218 432 218 382 193 338 150 313)
bent_right=(500 500 550 500 593 475 618 432 618 382 593 338 550 313)
straight=(500 200 550 200 600 200 650 200 700 200)

start_quillmere
wait_for_main_window 60
expect_title "Quillmere - Untitled (0 points) [DRAW FREEHAND]"

draw_stroke "${bent[@]}"
expect_title "Quillmere - Untitled * (7 points) [DRAW FREEHAND]"
shot 1-curve-stroke

ctrl_draw_stroke "${bent_right[@]}"
expect_title "Quillmere - Untitled * (10 points) [DRAW FREEHAND]"
shot 2-polyline-stroke
after_curve=7
after_polyline=$(($(title_point_count) - after_curve))
[ "$after_polyline" -lt "$after_curve" ] || fail "the polyline has $after_polyline points, the curve $after_curve"

draw_stroke "${straight[@]}"
expect_title "Quillmere - Untitled * (12 points) [DRAW FREEHAND]"

# A click: one sample, appended as it is.
point_at 400 650
xdotool mousedown 1
pause_step
xdotool mouseup 1
pause_step
expect_title "Quillmere - Untitled * (13 points) [DRAW FREEHAND]"
shot 3-straight-and-click

close_discarding_changes
echo "PASS ($E2E_NAME)"
