#!/usr/bin/env bash
# Builds Quillmere.exe (the program alone, not the tests) and starts it under
# Wine. With a display it leaves the program to the user and returns when
# they close it. Without one it starts a private Xvfb, waits until the first
# frame shows (the grid, the axes symbol and the mode text, read from the
# screen's pixels), saves a screenshot as build/windows/screenshot.png,
# prints its path and ends the program the way a user does (Alt+F4), with
# Wine's server stopped as a last resort; it fails if the frame never shows.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$here"
if [ -x "$here/tools/setup.sh" ]; then "$here/tools/setup.sh"; fi

cmake --preset windows
cmake --build --preset windows --target Quillmere

exe=$here/build/windows/Quillmere.exe
shot=$here/build/windows/screenshot.png
prefix=${QUILLMERE_WINEPREFIX:-$here/build/wineprefix}
xvfb=""
program=""

cleanup() {
  if [ -n "$program" ] && kill -0 "$program" 2>/dev/null; then
    kill "$program" 2>/dev/null || true
    WINEPREFIX=$prefix wineserver -k 2>/dev/null || true
  fi
  if [ -n "$xvfb" ]; then
    WINEPREFIX=$prefix timeout 20 wineserver -w 2>/dev/null || true
    kill "$xvfb" 2>/dev/null || true
  fi
}
trap cleanup EXIT

if [ -n "${DISPLAY:-}" ]; then
  # The user's own session: the program is theirs until they close it.
  exec "$here/tools/wine-run.sh" "$exe"
fi

if [ -z "${DISPLAY:-}" ]; then
  numberfile=$(mktemp)
  Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$numberfile" >/dev/null 2>&1 &
  xvfb=$!
  for _ in $(seq 200); do [ -s "$numberfile" ] && break; sleep 0.05; done
  [ -s "$numberfile" ] || { echo "Xvfb did not start" >&2; exit 1; }
  export DISPLAY=:$(head -n 1 "$numberfile")
  rm -f "$numberfile"
fi

"$here/tools/wine-run.sh" "$exe" &
program=$!

window=""
for _ in $(seq 900); do
  window=$(xdotool search --onlyvisible --name '^Quillmere' 2>/dev/null | head -n 1) || true
  [ -n "$window" ] && break
  kill -0 "$program" 2>/dev/null || { echo "Quillmere ended before its window appeared" >&2; exit 1; }
  sleep 0.1
done
[ -n "$window" ] || { echo "no Quillmere window within 90 s" >&2; exit 1; }
echo "Window: $(xdotool getwindowname "$window")"

# The first frame of a new user's view, in the window's pixels: the grid's
# lines (229, 229, 229), and in the information grey (128, 128, 128) the axes
# symbol in the lower left corner and the mode text in the upper left.
frame_shows() { # screenshot
  eval "$(xdotool getwindowgeometry --shell "$window")"
  python3 - "$1" "$X" "$Y" "$WIDTH" "$HEIGHT" <<'PYTHON'
import subprocess, sys
shot, wx, wy, ww, wh = sys.argv[1], *map(int, sys.argv[2:])
ppm = subprocess.run(["/usr/bin/convert", shot, "-depth", "8", "ppm:-"],
                     stdout=subprocess.PIPE, check=True).stdout
fields, at = [], 0
while len(fields) < 4:
    while ppm[at:at + 1].isspace():
        at += 1
    end = at
    while not ppm[end:end + 1].isspace():
        end += 1
    fields.append(ppm[at:end])
    at = end
width, height, rgb = int(fields[1]), int(fields[2]), ppm[at + 1:]

def count(colour, left, top, right, bottom):
    n = 0
    for y in range(max(wy + top, 0), min(wy + bottom, height)):
        for x in range(max(wx + left, 0), min(wx + right, width)):
            i = 3 * (y * width + x)
            if all(abs(rgb[i + k] - colour[k]) <= 8 for k in range(3)):
                n += 1
    return n

grid = count((229, 229, 229), 0, 0, ww, wh)
axes = count((128, 128, 128), 0, wh * 3 // 4, ww // 4, wh)
text = count((128, 128, 128), 0, 0, ww // 2, wh // 4)
print("grid %d, axes %d, text %d pixels" % (grid, axes, text))
sys.exit(0 if grid >= 500 and axes >= 20 and text >= 20 else 1)
PYTHON
}

rm -f "$shot"
shown=""
for _ in $(seq 120); do
  import -window root "$shot" 2>/dev/null || true
  if [ -s "$shot" ] && frame_shows "$shot" >"$shot.txt" 2>&1; then
    shown=yes
    break
  fi
  kill -0 "$program" 2>/dev/null || { echo "Quillmere ended before its frame showed" >&2; exit 1; }
  sleep 0.5
done
if [ -z "$shown" ]; then
  echo "the first frame did not show within 60 s: $(cat "$shot.txt" 2>/dev/null)" >&2
  exit 1
fi
echo "Frame: $(cat "$shot.txt")"
echo "$shot"

xdotool key --window "$window" alt+F4 2>/dev/null || true
for _ in $(seq 200); do kill -0 "$program" 2>/dev/null || break; sleep 0.1; done
if kill -0 "$program" 2>/dev/null; then
  echo "Quillmere did not end by itself; stopping Wine" >&2
else
  wait "$program" || echo "Quillmere ended with exit code $?" >&2
  program=""
fi
