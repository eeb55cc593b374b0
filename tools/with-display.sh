#!/usr/bin/env bash
# Runs a command with an X display: the one in DISPLAY if set, otherwise a
# private Xvfb (1280x1024x24 unless QUILLMERE_SCREEN says otherwise) on a
# display number the server picks itself, ended again with the command.
# The command's exit code is passed on.
set -uo pipefail
if [ -n "${DISPLAY:-}" ]; then exec "$@"; fi

screen=${QUILLMERE_SCREEN:-1280x1024x24}
numberfile=$(mktemp)
Xvfb -displayfd 3 -screen 0 "$screen" -nolisten tcp 3>"$numberfile" >/dev/null 2>&1 &
xvfb=$!
cleanup() {
  kill "$xvfb" 2>/dev/null && wait "$xvfb" 2>/dev/null
  rm -f "$numberfile"
}
trap cleanup EXIT
trap 'exit 143' TERM INT

for _ in $(seq 200); do
  [ -s "$numberfile" ] && break
  kill -0 "$xvfb" 2>/dev/null || { echo "with-display: Xvfb did not start" >&2; exit 1; }
  sleep 0.05
done
[ -s "$numberfile" ] || { echo "with-display: Xvfb gave no display number" >&2; exit 1; }
DISPLAY=:$(head -n 1 "$numberfile")
export DISPLAY
"$@"
