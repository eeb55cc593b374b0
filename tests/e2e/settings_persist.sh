#!/usr/bin/env bash
# A new user starts and closes Quillmere: the settings file appears in the
# user's application data folder, as UTF-16 LE text with its mark. The user
# edits the pen size in it by hand (as a text editor would, in the same
# encoding), starts and closes the program again: the file written at that
# exit still holds the edited PenSize, so the value was read at the start and
# kept for the run. A value beyond the limits comes back limited.
source "$(dirname "${BASH_SOURCE[0]}")/lib.sh"
e2e_begin "$@"

untitled="Quillmere - Untitled (0 points) [DRAW FREEHAND]"

# First run: no file yet; the close writes one with the defaults.
settings_file >/dev/null && fail "a new user has a settings file before the first start"
start_quillmere
wait_for_main_window 60
expect_title "$untitled"
shot 1-first-run
close_with_alt_f4
expect_exit_code 0 30

file=$(settings_file) || fail "no settings file after the first close"
case "$file" in
*/drive_c/users/*/AppData/Roaming/Brambleworks/Quillmere/Quillmere.txt) ;;
*) fail "settings file at $file" ;;
esac
echo "settings file: $file"
[ "$(head -c 2 "$file" | od -An -tx1 | tr -d ' ')" = "fffe" ] || fail "the file does not begin with the UTF-16 LE mark"
cp "$file" "$OUT/Quillmere-first.txt"
[ "$(settings_text | grep -c '^PenSize	')" -eq 1 ] || fail "no single PenSize record after the first run"
[ "$(settings_text | grep '^PenSize	')" = "PenSize	2" ] || fail "the default pen size is not 2: $(settings_text | grep '^PenSize')"
# Every record ends in CR LF.
lines=$(iconv -f UTF-16 -t UTF-8 "$file" | grep -c $'\r$')
records=$(settings_text | wc -l)
[ "$lines" -eq "$records" ] || fail "$records records but $lines end in CR LF"

# The user's edit: PenSize 7.
settings_set PenSize 7
[ "$(settings_text | grep '^PenSize	')" = "PenSize	7" ] || fail "the edit did not take"

# Second run: reads the file, and its close writes it anew.
start_quillmere
wait_for_main_window 60
expect_title "$untitled"
shot 2-second-run
close_with_alt_f4
expect_exit_code 0 30
[ "$(settings_text | grep '^PenSize	')" = "PenSize	7" ] || fail "after the second run: $(settings_text | grep '^PenSize')"
[ "$(head -c 2 "$(settings_file)" | od -An -tx1 | tr -d ' ')" = "fffe" ] || fail "the rewritten file lost its mark"
# Apart from the edited value, the file is the one of the first run. The
# tool windows' rectangles are left out: each close writes where the open
# windows stand, and the Point and Element windows are larger than 200 by
# 200 pixels, the palette about 64 by 192 (a rectangle read from the file is
# fitted to at least 200 by 200; the palette then makes itself small again).
tool_rects='^WindowRect_\(Info\|Element\|Mode\)\s'
diff <(iconv -f UTF-16 -t UTF-8 "$OUT/Quillmere-first.txt" | grep -v "$tool_rects" | sed 's/^PenSize\t2\r$/PenSize\t7\r/') \
  <(iconv -f UTF-16 -t UTF-8 "$(settings_file)" | grep -v "$tool_rects") >"$OUT/settings.diff" ||
  fail "the rewritten file differs in more than PenSize, see $OUT/settings.diff"
while IFS=$'\t' read -r key top right bottom left; do
  width=$((right - left)) height=$((bottom - top))
  case "$key" in
  WindowRect_Mode)
    [ "$width" -ge 64 ] && [ "$width" -le 80 ] && [ "$height" -ge 192 ] && [ "$height" -le 240 ] ||
      fail "$key is not the palette's size: $top $right $bottom $left" ;;
  *)
    [ "$width" -ge 200 ] && [ "$height" -ge 200 ] || fail "$key is smaller than 200 by 200: $top $right $bottom $left" ;;
  esac
done < <(settings_text | grep "$tool_rects")

# Third run: a pen size of 99 is limited to 10 at the start.
settings_set PenSize 99
start_quillmere
wait_for_main_window 60
expect_title "$untitled"
close_with_alt_f4
expect_exit_code 0 30
[ "$(settings_text | grep '^PenSize	')" = "PenSize	10" ] || fail "a pen size of 99 was kept as $(settings_text | grep '^PenSize')"
echo "PASS ($E2E_NAME)"
