#!/usr/bin/env bash
# A user opens a text file with Quillmere (as from Explorer's "Open with").
# Only sketch files are opened at start: the program opens empty, as a new
# sketch, and shows no message at all. It then closes normally.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
e2e_begin "$@"

notes=$OUT/notes.txt
printf 'Shopping list\r\nquills\r\n' >"$notes"
windows_path="Z:${notes//\//\\}"

start_quillmere "$windows_path"
wait_for_main_window 60
sleep 3 # time for a message box to appear, if one were shown

title=$(xdotool getwindowname "$WID")
[ "$title" = "Quillmere - Untitled (0 points) [DRAW FREEHAND]" ] || fail "title is \"$title\""
count=$(program_windows | wc -l)
[ "$count" -eq 1 ] || fail "$count windows named Quillmere; a message box would be the second"
others=$(xdotool search --onlyvisible --name '.' 2>/dev/null | grep -vx "$WID" |
  grep -vxF -f <(tool_windows; echo none) | wc -l)
[ "$others" -eq 0 ] || fail "$others other top-level windows are visible"
grep -q '^Quillmere: ' "$QLOG" && fail "a message was shown: $(grep '^Quillmere: ' "$QLOG")"
screenshot "$OUT/screenshot.png"

close_with_alt_f4
expect_exit_code 0 30
echo "PASS ($E2E_NAME)"
