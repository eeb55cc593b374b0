#!/usr/bin/env bash
# A user opens Help > About Quillmere from the keyboard. The About window is
# 680 by 420 pixels inside and shows the name and version on white; a click
# anywhere in it ends it, and the program goes on.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
e2e_begin "$@"

start_quillmere
wait_for_main_window 60
expect_title "Quillmere - Untitled (0 points) [DRAW FREEHAND]"

# Help > About Quillmere: the last item of the Help menu.
xdotool key --window "$WID" alt+h 2>/dev/null
sleep 0.5
xdotool key --window "$WID" Up 2>/dev/null
sleep 0.3
xdotool key --window "$WID" Return 2>/dev/null
wait_for_dialog "Quillmere - About" 30
# Without a window manager the dialog's X window is its client area alone.
eval "$(xdotool getwindowgeometry --shell "$DLG")"
echo "About window: $WIDTH x $HEIGHT"
[ "$WIDTH" -eq 680 ] && [ "$HEIGHT" -eq 420 ] || fail "the About window is $WIDTH x $HEIGHT"
# White around, and the dark headline right-aligned at the top: between
# x 300 and 660, y 75 and 135 there is ink of 64, 64, 64.
main=$WID
WID=$DLG
# The first drawing makes its drawing and text factories, which takes a
# while on a busy machine.
wait_for_colour 10 10 255,255,255 60 "the white of the About window"
wait_for_colour 20 415 255,255,255 30 "the white of the About window's bottom"
shot 1-about
check_pixels 1-about <<'PYTHON'
check(like(pixel(10, 10), (255, 255, 255)), "no white at the top left: %s" % (pixel(10, 10),))
check(like(pixel(300, 300), (255, 255, 255)), "no white in the middle: %s" % (pixel(300, 300),))
ink = [(x, y) for y in range(75, 135, 2) for x in range(300, 660, 2) if max(pixel(x, y)) < 128]
check(len(ink) > 20, "no headline: %d dark pixels" % len(ink))
check(all(x > 330 for x, _ in ink), "ink left of the right-aligned headline")
PYTHON
WID=$main
xdotool mousemove --window "$DLG" 100 200 click 1
wait_for_dialog_gone 20
activate_main_window
expect_title "Quillmere - Untitled (0 points) [DRAW FREEHAND]"
close_with_alt_f4
expect_exit_code 0 30
echo "PASS ($E2E_NAME)"
