# Shared by the user journeys: a display, Quillmere.exe under Wine, its main
# window found with xdotool, screenshots, and a tidy end. Sourced, not run.
#
#   e2e_begin "$@"            first argument: Quillmere.exe (default: build/windows)
#   start_quillmere [args]    starts the program in the background (QPID, QLOG)
#   wait_for_main_window      sets WID to the visible main window, or fails
#   close_with_alt_f4         the user's keyboard close
#   close_with_file_exit      File > Exit from the keyboard (Alt+F, Up, Return)
#   expect_exit_code 0        waits for the end and checks its exit code
#   settings_text             the settings file as UTF-8 text
#
# Without DISPLAY a private Xvfb of 1280x1024x24 is started and ended again.
# Every journey is a new user: the settings file of the prefix is removed
# before the program starts.

set -uo pipefail
E2E_ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
WINE_RUN=$E2E_ROOT/tools/wine-run.sh
E2E_PREFIX=${QUILLMERE_WINEPREFIX:-$E2E_ROOT/build/wineprefix}
E2E_NAME=$(basename "${BASH_SOURCE[1]:-e2e}" .sh)
E2E_XVFB=""
QPID=""

fail() {
  echo "FAIL ($E2E_NAME): $*" >&2
  if [ -n "${QLOG:-}" ] && [ -f "$QLOG" ]; then
    echo "---- program output" >&2
    cat "$QLOG" >&2
  fi
  exit 1
}

e2e_cleanup() {
  if [ -n "$QPID" ] && kill -0 "$QPID" 2>/dev/null; then
    kill "$QPID" 2>/dev/null
    wait "$QPID" 2>/dev/null
  fi
  if [ -n "$E2E_XVFB" ]; then
    # Wine's helper processes hold the display until their server ends.
    WINEPREFIX=$E2E_PREFIX timeout 20 wineserver -w 2>/dev/null
    kill "$E2E_XVFB" 2>/dev/null
    wait "$E2E_XVFB" 2>/dev/null
  fi
}

e2e_begin() {
  EXE=${1:-$E2E_ROOT/build/windows/Quillmere.exe}
  [ -f "$EXE" ] || fail "no program at $EXE"
  OUT=${QUILLMERE_OUTPUT:-$E2E_ROOT/build/e2e}/$E2E_NAME
  rm -rf "$OUT"
  mkdir -p "$OUT"
  QLOG=$OUT/program.log
  trap e2e_cleanup EXIT
  trap 'exit 143' TERM INT
  if [ -z "${DISPLAY:-}" ]; then
    local numberfile=$OUT/display-number
    Xvfb -displayfd 3 -screen 0 1280x1024x24 -nolisten tcp 3>"$numberfile" >/dev/null 2>&1 &
    E2E_XVFB=$!
    for _ in $(seq 200); do
      [ -s "$numberfile" ] && break
      kill -0 "$E2E_XVFB" 2>/dev/null || fail "Xvfb did not start"
      sleep 0.05
    done
    [ -s "$numberfile" ] || fail "Xvfb gave no display number"
    export DISPLAY=:$(head -n 1 "$numberfile")
  fi
  read -r SCREEN_W SCREEN_H < <(xdotool getdisplaygeometry) || fail "no display geometry"
  # The prefix keeps its screen layout while its server lives: let a server of
  # an earlier run (perhaps on another display) end first.
  WINEPREFIX=$E2E_PREFIX timeout 60 wineserver -w 2>/dev/null || true
  rm -rf "$E2E_PREFIX"/drive_c/users/*/AppData/Roaming/Brambleworks/Quillmere
}

settings_text() {
  local file
  file=$(ls "$E2E_PREFIX"/drive_c/users/*/AppData/Roaming/Brambleworks/Quillmere/Quillmere.txt 2>/dev/null | head -n 1)
  [ -n "$file" ] || return 1
  iconv -f UTF-16 -t UTF-8 "$file" | tr -d '\r'
}

start_quillmere() {
  "$WINE_RUN" "$EXE" "$@" >"$QLOG" 2>&1 &
  QPID=$!
}

# Visible top-level windows whose title starts with the program's name.
program_windows() {
  xdotool search --onlyvisible --name '^Quillmere' 2>/dev/null
}

wait_for_main_window() {
  local timeout=${1:-60} waited=0
  WID=""
  while [ "$waited" -lt $((timeout * 10)) ]; do
    WID=$(program_windows | head -n 1)
    [ -n "$WID" ] && return 0
    kill -0 "$QPID" 2>/dev/null || fail "the program ended before its window appeared"
    sleep 0.1
    waited=$((waited + 1))
  done
  fail "no main window within $timeout s"
}

# Sets WIN_X WIN_Y WIN_W WIN_H of the X window of WID (there is no window
# manager: the X window is the Windows window without caption and borders).
window_geometry() {
  eval "$(xdotool getwindowgeometry --shell "$WID")"
  WIN_X=$X WIN_Y=$Y WIN_W=$WIDTH WIN_H=$HEIGHT
}

screenshot() { # file
  import -window root "$1" || fail "screenshot failed"
}

# The smallest channel value (0 to 1) in a rectangle of a picture.
darkest_in() { # file w h x y
  /usr/bin/convert "$1" -crop "${2}x${3}+${4}+${5}" +repage -format '%[fx:minima]' info:
}

close_with_alt_f4() {
  xdotool key --window "$WID" alt+F4 2>/dev/null
}

close_with_file_exit() {
  xdotool key --window "$WID" alt+f 2>/dev/null
  sleep 0.5
  xdotool key --window "$WID" Up 2>/dev/null
  sleep 0.3
  xdotool key --window "$WID" Return 2>/dev/null
}

expect_exit_code() { # code [timeout]
  local want=$1 timeout=${2:-30} waited=0
  while kill -0 "$QPID" 2>/dev/null; do
    [ "$waited" -ge $((timeout * 10)) ] && fail "the program did not end within $timeout s"
    sleep 0.1
    waited=$((waited + 1))
  done
  wait "$QPID"
  local code=$?
  QPID=""
  [ "$code" -eq "$want" ] || fail "exit code $code, expected $want"
}
