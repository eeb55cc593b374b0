#!/usr/bin/env bash
# Builds Quillmere for Windows and starts it under Wine: in a private Xvfb
# when there is no DISPLAY. Waits for the main window, saves a screenshot as
# build/windows/screenshot.png, prints its path and ends the program the way
# a user does (Alt+F4), with Wine's server stopped as a last resort.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$here"
if [ -x "$here/tools/setup.sh" ]; then "$here/tools/setup.sh"; fi

cmake --preset windows
cmake --build --preset windows

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
sleep 1 # a few frames
rm -f "$shot"
import -window root "$shot"
echo "$shot"

xdotool key --window "$window" alt+F4 2>/dev/null || true
for _ in $(seq 200); do kill -0 "$program" 2>/dev/null || break; sleep 0.1; done
if kill -0 "$program" 2>/dev/null; then
  echo "Quillmere did not end by itself; stopping Wine" >&2
else
  wait "$program" || echo "Quillmere ended with exit code $?" >&2
  program=""
fi
