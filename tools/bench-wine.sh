#!/usr/bin/env bash
# Times what a user waits for in the real Quillmere.exe under Wine, with the
# benchmarks' large sketch (potrace's trace of a 2048 x 2048 page of 30 lines
# of text, made now by bench/make_text_page.sh), and prints one line per
# figure, so that runs can be compared with each other:
#
#   title after start    the program started with the file until the title
#                        shows its name and point count
#   first frame          from that title until the frame shows the sketch
#   orbit frame          Ctrl and the right button held, one move of the
#                        mouse, until the frame shows the turned view
#   zoom frame           one notch of the wheel until the frame shows it
#   save                 Ctrl+S until the file stands complete on the disk
#   close                Alt+F4 until the program has ended
#
# Frames are seen on the screen by tools/frame-probe.py, which reads the
# pixels from the X server every few milliseconds. A frame time includes the
# frame that was in progress when the message came; it is what the user
# sees. Not a test: nothing here fails on a slow figure.
#
# Usage: tools/bench-wine.sh [Quillmere.exe]   (default: build/windows, built
# when missing). QUILLMERE_BENCH_PAGE=FILE.eps times another sketch.
set -uo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
exe=${1:-$here/build/windows/Quillmere.exe}
if [ ! -f "$exe" ]; then
  (cd "$here" && export CMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER:-ccache} &&
    cmake --preset windows >/dev/null && cmake --build --preset windows -j "${BUILD_JOBS:-2}" \
    --target Quillmere >/dev/null) || { echo "bench-wine: build failed" >&2; exit 1; }
fi
data=$(dirname "$exe")/bench-wine
page=${QUILLMERE_BENCH_PAGE:-$data/text-page.eps}
if [ ! -f "$page" ]; then
  "$here/bench/make_text_page.sh" "$data" || { echo "bench-wine: no text page" >&2; exit 1; }
fi
probe=$here/tools/frame-probe.py

source "$here/tests/e2e/lib.sh"
e2e_begin "$exe"

now() { date +%s.%N; }
# Milliseconds from the first time to the second.
ms() { awk -v a="$1" -v b="$2" 'BEGIN { printf "%d", (b - a) * 1000 + 0.5 }'; }
figure() { printf '%-20s %8s ms   %s\n' "$1" "$2" "$3"; }

# The drawing area alone, without tool windows over it; the sketch is opened
# from a copy, which the save then overwrites.
settings_without_tool_windows
sketch=$OUT/$(basename "$page")
cp "$page" "$sketch"
name=$(basename "$sketch")
path=$(windows_path "$sketch")

started=$(now)
start_quillmere "$path"
title=""
until [ -n "$title" ]; do
  kill -0 "$QPID" 2>/dev/null || fail "the program ended before its title showed the sketch"
  title=$(xdotool search --onlyvisible --name "^Quillmere - ${name//./\\.} \\([0-9]+ points\\)" 2>/dev/null | head -n 1)
  [ -n "$title" ] || sleep 0.02
done
titled=$(now)
WID=$title
points=$(title_point_count)
figure "title after start" "$(ms "$started" "$titled")" "$(main_title)"

# The client area lies below the menu bar; the sketch is black on white, so
# its frame is the first with many black pixels.
window_geometry
area=("$WIN_X" $((WIN_Y + 40)) "$WIN_W" $((WIN_H - 40)))
python3 "$probe" "${area[@]}" wait-dark 2000 600 >"$OUT/first-frame.txt" &
watcher=$!
# The keyboard reaches the window once the user has clicked it (there is
# no window manager to give it the focus): a click on the menu bar's end,
# which waits in the queue while the first frame is drawn.
activate_main_window
wait "$watcher" || fail "no frame of the sketch within 600 s"
read -r framed dark <"$OUT/first-frame.txt"
figure "first frame" "$(ms "$titled" "$framed")" "after the title; $dark black pixels, $points points"

sleep 1

# The program reads the cursor when it handles a message, and handles none
# during a frame: each step of a gesture waits a frame's time, so that the
# step before it has been handled where the pointer then stood.
settle=$(awk -v a="$titled" -v b="$framed" 'BEGIN { printf "%.1f", (b - a) * 1.3 + 1 }')

# Orbit: Ctrl and the right button held at an empty corner, one move.
corner_x=$((WIN_W - 40)) corner_y=$((WIN_H - 40))
xdotool mousemove --window "$WID" "$corner_x" "$corner_y"
sleep "$settle"
xdotool keydown ctrl
xdotool mousedown 3
sleep "$settle"
python3 "$probe" "${area[@]}" save "$OUT/before-orbit.raw"
moved=$(now)
xdotool mousemove --window "$WID" "$corner_x" $((corner_y - 60))
read -r changed rested count < <(python3 "$probe" "${area[@]}" wait-change "$OUT/before-orbit.raw" 600) ||
  fail "the orbit did not reach the screen"
xdotool mouseup 3
xdotool keyup ctrl
figure "orbit frame" "$(ms "$moved" "$changed")" "at rest after $(ms "$moved" "$rested") ms; $count pixels changed"
sleep "$settle"

# Zoom: one notch of the wheel towards the user.
python3 "$probe" "${area[@]}" save "$OUT/before-zoom.raw"
turned=$(now)
xdotool click 5
read -r changed rested count < <(python3 "$probe" "${area[@]}" wait-change "$OUT/before-zoom.raw" 600) ||
  fail "the zoom did not reach the screen"
figure "zoom frame" "$(ms "$turned" "$changed")" "at rest after $(ms "$turned" "$rested") ms; $count pixels changed"
sleep "$settle"

# Save: the file is written beside the target and then moved over it, so a
# new inode means the file stands complete.
before=$(stat -c %i "$sketch")
xdotool mousemove --window "$WID" 20 $((WIN_H - 20))
sleep "$settle"
pressed=$(now)
xdotool key ctrl+s
until [ "$(stat -c %i "$sketch" 2>/dev/null)" != "$before" ] && [ -s "$sketch" ]; do
  kill -0 "$QPID" 2>/dev/null || fail "the program ended during the save"
  awk -v a="$pressed" -v b="$(now)" 'BEGIN { exit !(b - a > 600) }' && fail "no file after 600 s"
  sleep 0.005
done
saved=$(now)
figure "save" "$(ms "$pressed" "$saved")" "$(stat -c %s "$sketch") bytes"
sleep 1

# Close: the sketch is saved, so Alt+F4 asks nothing.
pressed=$(now)
close_with_alt_f4
while kill -0 "$QPID" 2>/dev/null; do
  awk -v a="$pressed" -v b="$(now)" 'BEGIN { exit !(b - a > 600) }' && fail "still running 600 s after Alt+F4"
  sleep 0.005
done
ended=$(now)
figure "close" "$(ms "$pressed" "$ended")" "Alt+F4 until the process ended"
wait "$QPID"
QPID=""
