# Shared by the user journeys: a display, Quillmere.exe under Wine, its main
# window found with xdotool, the user's mouse and keys, screenshots, and a
# tidy end. Sourced, not run.
#
#   e2e_begin "$@"            first argument: Quillmere.exe (default: build/windows)
#   start_quillmere [args]    starts the program in the background (QPID, QLOG)
#   wait_for_main_window      sets WID to the visible main window, or fails
#   expect_title TEXT [s]     waits until the main window's title is TEXT
#   title_point_count         the "(n points)" of the present title
#   stroke X Y X Y ...        a left-button stroke through window pixels
#   ctrl_stroke X Y ...       the same stroke with Ctrl held
#   draw_stroke X Y ...       a freehand stroke that waits for each sample's ink
#   ctrl_draw_stroke X Y ...  the same with Ctrl held (a polyline)
#   press KEYS...             keys to the main window (xdotool key names)
#   wait_for_dialog NAME [s]  sets DLG to a second top-level window of that title
#   activate_main_window      a click on the menu bar, after a message box
#   close_with_alt_f4         the user's keyboard close
#   close_with_file_exit      File > Exit from the keyboard (Alt+F, Up, Return)
#   expect_exit_code 0        waits for the end and checks its exit code
#   settings_file             the settings file's path in the prefix
#   settings_text             the settings file as UTF-8 text
#   settings_set KEY VALUES   rewrites one record, keeping UTF-16 LE and its mark
#   windows_path FILE         the path as the program sees it
#   shot NAME                 a screenshot NAME.png in the journey's folder,
#                             once the frames have caught up
#   expect_screen_change A B WHAT  shot B once the screen differs from shot A
#   wait_for_colour X Y R,G,B [s] [what]  waits until the frame shows that
#                             colour at window pixel (X, Y)
#   check_pixels NAME [FILE...] <<'PYTHON' ...  python checks of the pixels
#                             of screenshot NAME (helpers below)
#
# Window pixels are those of the main window's X window. Without a window
# manager Wine gives that window no caption or borders: its origin is the
# top left corner of the menu bar, and the client area begins below the bar.
# The program reads the cursor itself, so a gesture only needs the same
# pixels on the screen, not client coordinates.
#
# Without DISPLAY a private Xvfb of 1280x1024x24 is started and ended again.
# Every journey is a new user: the settings file of the prefix is removed
# before the program starts. The Wine prefix lies beside the program, so that
# every build folder has its own (QUILLMERE_WINEPREFIX chooses another).

set -uo pipefail
E2E_ROOT=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
WINE_RUN=$E2E_ROOT/tools/wine-run.sh
E2E_PREFIX=""
E2E_NAME=$(basename "${BASH_SOURCE[1]:-e2e}" .sh)
E2E_XVFB=""
QPID=""
WID=""
# Pause after each step of a gesture: the program reads the cursor when it
# handles a message, so the pointer must rest until the message is handled.
# A frame under Wine's Direct2D takes long on a busy machine, and a message
# waits for the frame in progress: 0.15 s proved too short with the build
# running beside the journeys.
E2E_STEP=${QUILLMERE_E2E_STEP:-0.5}

fail() {
  echo "FAIL ($E2E_NAME): $*" >&2
  if [ -n "${OUT:-}" ] && [ -d "$OUT" ] && [ -n "${DISPLAY:-}" ]; then
    import -window root "$OUT/failure.png" 2>/dev/null && echo "screenshot at failure: $OUT/failure.png" >&2
  fi
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
  if [ -n "$E2E_PREFIX" ]; then
    # A program left behind (a journey that failed with a box open) would
    # keep the prefix's server alive; end the server of this prefix only.
    WINEPREFIX=$E2E_PREFIX timeout 20 wineserver -w 2>/dev/null || WINEPREFIX=$E2E_PREFIX wineserver -k 2>/dev/null
  fi
  if [ -n "$E2E_XVFB" ]; then
    kill "$E2E_XVFB" 2>/dev/null
    wait "$E2E_XVFB" 2>/dev/null
  fi
}

e2e_begin() {
  EXE=${1:-$E2E_ROOT/build/windows/Quillmere.exe}
  [ -f "$EXE" ] || fail "no program at $EXE"
  EXE=$(cd "$(dirname "$EXE")" && pwd)/$(basename "$EXE")
  E2E_PREFIX=${QUILLMERE_WINEPREFIX:-$(dirname "$EXE")/wineprefix}
  export QUILLMERE_WINEPREFIX=$E2E_PREFIX
  OUT=${QUILLMERE_OUTPUT:-$(dirname "$EXE")/e2e}/$E2E_NAME
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

# ---- The settings file

settings_file() {
  local file
  file=$(ls "$E2E_PREFIX"/drive_c/users/*/AppData/Roaming/Brambleworks/Quillmere/Quillmere.txt 2>/dev/null | head -n 1)
  [ -n "$file" ] || return 1
  echo "$file"
}

settings_text() {
  local file
  file=$(settings_file) || return 1
  iconv -f UTF-16 -t UTF-8 "$file" | tr -d '\r'
}

# Replaces the values of the record KEY by VALUES (tab-separated as written),
# leaving every other byte of the file as it is.
settings_set() { # key values...
  local file
  file=$(settings_file) || fail "no settings file to change"
  python3 - "$file" "$@" <<'PYTHON' || fail "could not set $1 in $file"
import sys
path, key, values = sys.argv[1], sys.argv[2], sys.argv[3:]
data = open(path, "rb").read()
if not data.startswith(b"\xff\xfe"):
    sys.exit("no UTF-16 LE mark")
lines = data[2:].decode("utf-16-le").split("\r\n")
hits = [i for i, line in enumerate(lines) if line.split("\t")[0] == key]
if len(hits) != 1:
    sys.exit("%d records of %s" % (len(hits), key))
lines[hits[0]] = "\t".join([key] + values)
open(path, "wb").write(b"\xff\xfe" + "\r\n".join(lines).encode("utf-16-le"))
PYTHON
}

# ---- The program and its windows

start_quillmere() {
  "$WINE_RUN" "$EXE" "$@" >>"$QLOG" 2>&1 &
  QPID=$!
}

# A file's path as the program takes it on its command line.
windows_path() { # file
  local path
  path=$("$WINE_RUN" winepath -w "$1" 2>/dev/null | tr -d '\r') || fail "winepath failed for $1"
  [ -n "$path" ] || fail "winepath gave nothing for $1"
  echo "$path"
}

# The tool windows stand beside the main window from the first start: the
# Point and Element windows, titled "Quillmere - Point" and "Quillmere -
# Element", and the Mode palette, which has no title.
tool_windows() {
  xdotool search --onlyvisible --name '^Quillmere - (Point|Element)$' 2>/dev/null
}

# The X window of the Point or Element tool window (TW), by its title.
wait_for_tool_window() { # Point|Element [timeout s]
  local timeout=${2:-20} waited=0
  TW=""
  while [ "$waited" -lt $((timeout * 10)) ]; do
    TW=$(xdotool search --onlyvisible --name "^Quillmere - $1\$" 2>/dev/null | head -n 1)
    [ -n "$TW" ] && return 0
    sleep 0.1
    waited=$((waited + 1))
  done
  fail "no tool window \"Quillmere - $1\" within $timeout s"
}

# The Mode palette (PALETTE): the visible window without a title around a
# client area of 64 by 192 pixels. Wine draws the tool windows' frames
# itself; the palette tells their size: FRAME_LEFT and FRAME_TOP are the
# pixels from a tool window's X window to its client area.
wait_for_palette() { # [timeout s]
  local timeout=${1:-20} waited=0 w width height
  PALETTE=""
  while [ "$waited" -lt $((timeout * 10)) ]; do
    for w in $(xdotool search --onlyvisible --name '^$' 2>/dev/null); do
      eval "$(xdotool getwindowgeometry --shell "$w" 2>/dev/null | grep -E '^(WIDTH|HEIGHT)=')"
      width=${WIDTH:-0} height=${HEIGHT:-0}
      if [ "$width" -ge 64 ] && [ "$width" -le 80 ] && [ "$height" -ge 192 ] && [ "$height" -le 240 ]; then
        PALETTE=$w
        FRAME_LEFT=$(((width - 64) / 2))
        FRAME_TOP=$((height - 192 - FRAME_LEFT))
        return 0
      fi
    done
    sleep 0.2
    waited=$((waited + 2))
  done
  fail "no Mode palette within $timeout s"
}

# Whether any palette is visible.
palette_shown() {
  local w
  for w in $(xdotool search --onlyvisible --name '^$' 2>/dev/null); do
    eval "$(xdotool getwindowgeometry --shell "$w" 2>/dev/null | grep -E '^(WIDTH|HEIGHT)=')"
    [ "${WIDTH:-0}" -ge 64 ] && [ "${WIDTH:-0}" -le 80 ] && [ "${HEIGHT:-0}" -ge 192 ] &&
      [ "${HEIGHT:-0}" -le 240 ] && return 0
  done
  return 1
}

# For a journey about the drawing area alone: a first start writes the
# settings file, which is then told that the three tool windows are closed,
# so that the next start shows none of them.
settings_without_tool_windows() {
  start_quillmere
  wait_for_main_window 60
  close_with_alt_f4
  expect_exit_code 0 30
  settings_set ShowWindow_Point N
  settings_set ShowWindow_Element N
  settings_set ShowWindow_Mode N
}

# A left click at client pixels of a tool window (after wait_for_palette).
click_in() { # window x y
  xdotool mousemove --window "$1" $(($2 + FRAME_LEFT)) $(($3 + FRAME_TOP)) || fail "mousemove failed"
  pause_step
  xdotool click 1 || fail "click failed"
  pause_step
}

# Visible top-level windows whose title starts with the program's name: the
# main window and message boxes, not the tool windows.
program_windows() {
  xdotool search --onlyvisible --name '^Quillmere' 2>/dev/null |
    grep -vxF -f <(tool_windows; echo none)
}

# The main window is found by the shape of its title, "Quillmere - <file>
# (<n> points) [<MODE>]", which no other window of the program has.
wait_for_main_window() {
  local timeout=${1:-60} waited=0
  WID=""
  while [ "$waited" -lt $((timeout * 10)) ]; do
    WID=$(xdotool search --onlyvisible --name '^Quillmere - .* points\) \[' 2>/dev/null | head -n 1)
    if [ -n "$WID" ]; then
      # The tool windows open just after the main window and leave it
      # without the mouse and keyboard; once they stand, a click on the
      # main window's menu bar gives both back.
      for _ in $(seq 50); do
        [ -n "$(tool_windows)" ] && break
        sleep 0.1
      done
      sleep 0.5
      activate_main_window
      return 0
    fi
    kill -0 "$QPID" 2>/dev/null || fail "the program ended before its window appeared"
    sleep 0.1
    waited=$((waited + 1))
  done
  fail "no main window within $timeout s"
}

main_title() {
  xdotool getwindowname "$WID" 2>/dev/null
}

# The title is set after each edit while the program handles the message, so
# a check waits for it a little instead of reading it once.
expect_title() { # text [timeout s]
  local want=$1 timeout=${2:-15} waited=0 title=""
  while [ "$waited" -le $((timeout * 10)) ]; do
    title=$(main_title)
    [ "$title" = "$want" ] && { echo "title: $title"; return 0; }
    sleep 0.1
    waited=$((waited + 1))
  done
  fail "title is \"$title\", expected \"$want\""
}

# The point count of the present title.
title_point_count() {
  main_title | sed -n 's/.* (\([0-9]*\) points) \[.*/\1/p'
}

# A second top-level window with exactly this title (a message box or a
# file prompt): the main window's own title is longer.
wait_for_dialog() { # title [timeout s]
  local name=$1 timeout=${2:-20} waited=0
  DLG=""
  while [ "$waited" -lt $((timeout * 10)) ]; do
    DLG=$(xdotool search --onlyvisible --name "^${name}\$" 2>/dev/null | grep -vx "$WID" | head -n 1)
    [ -n "$DLG" ] && return 0
    kill -0 "$QPID" 2>/dev/null || fail "the program ended while a window \"$name\" was awaited"
    sleep 0.1
    waited=$((waited + 1))
  done
  fail "no window \"$name\" within $timeout s"
}

wait_for_dialog_gone() { # [timeout s]
  local timeout=${1:-20} waited=0
  while xdotool getwindowname "$DLG" >/dev/null 2>&1 &&
    xdotool search --onlyvisible --name '.' 2>/dev/null | grep -qx "$DLG"; do
    [ "$waited" -ge $((timeout * 10)) ] && fail "window $DLG still open after $timeout s"
    sleep 0.1
    waited=$((waited + 1))
  done
}

# Sets WIN_X WIN_Y WIN_W WIN_H of the X window of WID (there is no window
# manager: the X window is the Windows window without caption and borders).
window_geometry() {
  eval "$(xdotool getwindowgeometry --shell "$WID")"
  WIN_X=$X WIN_Y=$Y WIN_W=$WIDTH WIN_H=$HEIGHT
}

# ---- The user's mouse and keys

pause_step() { sleep "$E2E_STEP"; }

# The pointer to window pixels of the main window.
point_at() { # x y
  xdotool mousemove --window "$WID" "$1" "$2" || fail "mousemove failed"
  pause_step
}

# Left button down at the first pair, moves through the others, up at the
# last. In the drawing mode each pair is one sample of the program's
# recorder; in the edit modes only the sum of the moves counts.
stroke() { # x y x y ...
  [ $# -ge 2 ] || fail "stroke needs a point"
  local x=$1 y=$2
  point_at "$1" "$2"
  shift 2
  xdotool mousedown 1 || fail "mousedown failed"
  pause_step
  while [ $# -ge 2 ]; do
    point_at "$1" "$2"
    [ -n "${E2E_INK:-}" ] && wait_for_ink "$x" "$y" "$1" "$2"
    x=$1 y=$2
    shift 2
  done
  xdotool mouseup 1 || fail "mouseup failed"
  pause_step
}

# A freehand stroke whose samples must all arrive. The program takes the
# cursor where it is when it handles a move, so a move handled late (a long
# frame on a busy machine) would take the next position and lose a sample.
# The frame draws the running stroke: the pointer waits at each sample until
# the ink of the segment to it shows, up to 3 s. The ink is the sketch colour
# of a new user (black), darker than the grid, the axes and the help text.
# A frame that shows no ink at all ends the waiting for the whole journey:
# the strokes then go by the pauses alone.
draw_stroke() { # x y x y ...
  window_geometry
  E2E_INK=1 stroke "$@"
}

E2E_NO_INK=""

# Returns when the middle of the segment between two window pixels is inked,
# or after 3 s without a failure: the count in the title judges the stroke.
wait_for_ink() { # x0 y0 x1 y1
  [ -n "$E2E_NO_INK" ] && return 0
  local mx=$((WIN_X + ($1 + $3) / 2 - 2)) my=$((WIN_Y + ($2 + $4) / 2 - 2)) darkest
  local until=$((SECONDS + 3))
  while [ "$SECONDS" -le "$until" ]; do
    darkest=$(import -window root -crop "5x5+${mx}+${my}" +repage -format '%[fx:minima]' info: 2>/dev/null)
    awk -v d="${darkest:-1}" 'BEGIN { exit !(d < 0.3) }' && return 0
    sleep 0.1
  done
  echo "no ink between ($1, $2) and ($3, $4) after 3 s: strokes go by pauses alone from here" >&2
  E2E_NO_INK=1
  return 0
}

# The program reads Ctrl from the key state when the button goes up.
ctrl_stroke() { # x y x y ...
  xdotool keydown ctrl
  pause_step
  stroke "$@"
  xdotool keyup ctrl
  pause_step
}

ctrl_draw_stroke() { # x y x y ...
  xdotool keydown ctrl
  pause_step
  draw_stroke "$@"
  xdotool keyup ctrl
  pause_step
}

# Keys go where the pointer is (there is no window manager to give focus), so
# the pointer rests on the main window first, in the lower left corner where
# no gesture of the journeys acts and no tool window stands (the Point and
# Element windows stand at the right, the Mode palette higher up at the left).
press() { # key names, one after the other
  window_geometry
  xdotool mousemove --window "$WID" 20 $((WIN_H - 20))
  pause_step
  local key
  for key in "$@"; do
    xdotool key "$key" || fail "key $key failed"
    pause_step
  done
}

# The mouse wheel at a window pixel: button 4 turns it away from the user
# (zoom in), 5 towards.
wheel() { # x y button count
  point_at "$1" "$2"
  local i
  for i in $(seq "$4"); do
    xdotool click "$3"
    pause_step
  done
}

# Types text into the window that has the keyboard (a dialog's field).
type_text() { # text
  xdotool type --delay 30 -- "$1" || fail "typing failed"
  pause_step
}

# A screenshot for a person to look at, taken once the frames have caught up
# with the last message: two shots 0.5 s apart alike, or after 5 s.
shot() { # name
  local until=$((SECONDS + 5))
  import -window root "$OUT/$1.png" || fail "screenshot failed"
  while [ "$SECONDS" -le "$until" ]; do
    sleep 0.5
    import -window root "$OUT/$1-next.png" || fail "screenshot failed"
    [ "$(changed_pixels "$1" "$1-next")" = "0" ] && break
    mv "$OUT/$1-next.png" "$OUT/$1.png"
  done
  rm -f "$OUT/$1-next.png"
  echo "screenshot: $OUT/$1.png"
}

# Pixels that differ between two screenshots of the journey, beyond 10 % of
# the channel range.
changed_pixels() { # name-a name-b
  compare -metric AE -fuzz 10% "$OUT/$1.png" "$OUT/$2.png" null: 2>&1 | cut -d' ' -f1
}

# Takes the screenshot AFTER once the screen differs from the screenshot
# BEFORE in more than 1000 pixels and has come to rest (two shots alike):
# a view gesture reached the program and its frames show the result. The
# frames lag behind the messages on a busy machine, so this waits up to 15 s.
expect_screen_change() { # name-before name-after what
  local until=$((SECONDS + 15)) count=0
  shot "$2" >/dev/null
  while [ "$SECONDS" -le "$until" ]; do
    sleep 0.3
    import -window root "$OUT/$2-next.png" || fail "screenshot failed"
    count=$(changed_pixels "$1" "$2")
    if awk -v n="${count:-0}" 'BEGIN { exit !(n + 0 > 1000) }' &&
      [ "$(changed_pixels "$2" "$2-next")" = "0" ]; then
      rm -f "$OUT/$2-next.png"
      echo "$3: $count pixels changed, see $OUT/$2.png"
      return 0
    fi
    mv "$OUT/$2-next.png" "$OUT/$2.png"
  done
  fail "$3 left the screen as it was ($2.png against $1.png: $count pixels changed)"
}

screenshot() { # file
  import -window root "$1" || fail "screenshot failed"
}

# ---- What a frame shows

# Waits until a pixel of the colour R,G,B (each channel within 8) shows
# within 2 pixels of the window pixel (X, Y), up to the timeout (15 s): a
# check of a screenshot then sees the frame that followed the last message,
# not one drawn before it.
wait_for_colour() { # x y r,g,b [timeout s] [what]
  window_geometry
  local left=$((WIN_X + $1 - 2)) top=$((WIN_Y + $2 - 2)) want=$3
  local until=$((SECONDS + ${4:-15})) what=${5:-"the colour $3 at ($1, $2)"}
  while [ "$SECONDS" -le "$until" ]; do
    import -window root -crop "5x5+${left}+${top}" +repage -depth 8 txt:- 2>/dev/null |
      sed -n 's/^[0-9]*,[0-9]*: *(\([0-9]*\),\([0-9]*\),\([0-9]*\).*/\1 \2 \3/p' |
      awk -v want="$want" 'BEGIN { split(want, w, ",") }
        { d = 0; for (i = 1; i <= 3; i++) { e = $i - w[i]; if (e < 0) e = -e; if (e > d) d = e }
          if (d <= 8) found = 1 }
        END { exit !found }' && return 0
    sleep 0.2
  done
  fail "no $what within ${4:-15} s"
}

# Runs the python3 checks given on standard input against the screenshot
# NAME.png of the journey; any failed check fails the journey. The FILEs
# (python code that the journey's checks share) run first, in the same
# namespace. The checks see:
#   pixel(x, y)          the (r, g, b) of a window pixel, None off the screen
#   like(c, want, tol)   every channel of c within tol (8) of want
#   near(x, y, want, rx, ry, tol)  a pixel like want within rx (2) columns
#                        and ry (rx) rows of (x, y)
#   pixels_of(name)      the pixel function of another screenshot
#   check(ok, text)      counts a check; a false ok fails with the text
#   WIN_X WIN_Y WIN_W WIN_H  the main window (window_geometry), SHOT the path
# Positions are window pixels, as for the gestures. A fraction means the
# pixel that holds the point: Direct2D puts whole coordinates on the corners
# between pixels.
check_pixels() { # name [file...]
  window_geometry
  E2E_WIN="$WIN_X $WIN_Y $WIN_W $WIN_H" python3 -c "$(cat <<'PYTHON'
import math, os, subprocess, sys
SHOT = sys.argv[1]
WIN_X, WIN_Y, WIN_W, WIN_H = (int(v) for v in os.environ["E2E_WIN"].split())

def _load(path):
    ppm = subprocess.run(["/usr/bin/convert", path, "-depth", "8", "ppm:-"],
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
    assert fields[0] == b"P6" and fields[3] == b"255", fields
    width, height, rgb = int(fields[1]), int(fields[2]), ppm[at + 1:]

    def pixel(x, y):
        x, y = WIN_X + math.floor(x), WIN_Y + math.floor(y)
        if not (0 <= x < width and 0 <= y < height):
            return None
        i = 3 * (y * width + x)
        return tuple(rgb[i:i + 3])
    return pixel

def pixels_of(name):
    return _load(os.path.join(os.path.dirname(SHOT), name + ".png"))

pixel = _load(SHOT)

def like(c, want, tol=8):
    return c is not None and all(abs(a - b) <= tol for a, b in zip(c, want))

def near(x, y, want, rx=2, ry=None, tol=8):
    ry = rx if ry is None else ry
    return any(like(pixel(x + dx, y + dy), want, tol)
               for dy in range(-ry, ry + 1) for dx in range(-rx, rx + 1))

_failures, _count = [], 0

def check(ok, text):
    global _count
    _count += 1
    if not ok:
        _failures.append(text)

for _file in sys.argv[2:]:
    exec(compile(open(_file).read(), _file, "exec"))
exec(compile(sys.stdin.read(), "checks of " + os.path.basename(SHOT), "exec"))
for text in _failures:
    print("  " + text, file=sys.stderr)
print("%s: %d of %d pixel checks passed" % (os.path.basename(SHOT), _count - len(_failures), _count))
sys.exit(1 if _failures else 0)
PYTHON
)" "$OUT/$1.png" "${@:2}" || fail "the screenshot $OUT/$1.png does not show what it should"
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
  # The prefix's server outlives the program by a moment; the next start
  # must not meet it half ended.
  WINEPREFIX=$E2E_PREFIX timeout 30 wineserver -w 2>/dev/null || true
}

# ---- EPS files of the system

# The path lines of an EPS file as "operator x y z" with the position of each
# point (z 0 in the 2D form), one line each.
eps_points() { # file
  python3 - "$1" <<'PYTHON'
import sys
for line in open(sys.argv[1], "rb").read().decode("latin-1").split("\r\n"):
    words = line.split()
    if not words or words[-1] not in ("moveto", "lineto", "curveto"):
        continue
    numbers = words[:-1]
    operator = words[-1]
    if operator == "curveto":
        # 2D: ax ay bx by x y; 3D: ax ay az bx by bz x y z [rx ry rz]
        position = numbers[4:6] + ["0"] if len(numbers) == 6 else numbers[6:9]
    else:
        position = numbers[0:2] + ["0"] if len(numbers) == 2 else numbers[0:3]
    print(operator, *position)
PYTHON
}

# ---- Message boxes

# A key to the window DLG: the pointer rests on it first, since keys go to
# the window under the pointer.
press_in_dialog() { # key names
  xdotool mousemove --window "$DLG" 5 5
  pause_step
  local key
  for key in "$@"; do
    xdotool key "$key" || fail "key $key failed"
    pause_step
  done
}

# Back to the main window after a message box: Wine without a window manager
# activates no window when a box without owner closes, so the keyboard
# reaches nothing until the user clicks the main window. The click goes to
# the empty end of the menu bar, where it changes nothing.
activate_main_window() {
  window_geometry
  xdotool mousemove --window "$WID" $((WIN_W - 60)) 8 click 1 || fail "click on the menu bar failed"
  pause_step
}

# The user closes a changed sketch and answers the save question with No:
# the box titled with the program's name must appear, and the program ends.
close_discarding_changes() {
  close_with_alt_f4
  wait_for_dialog Quillmere 20
  shot close-question
  press_in_dialog n
  expect_exit_code 0 30
}
