#!/usr/bin/env bash
# The built batch program on real inputs: a track file, a potrace EPS, a
# picture through the built-in tracer and through Debian's potrace behind a
# link named potrace.exe, several inputs into a folder, --help, and the
# failures with their messages on standard error and a non-zero exit.
# Usage: batch_program.sh QUILLMERE-BATCH WORK-FOLDER
set -uo pipefail
batch=$1
work=$2
source_dir=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
rm -rf "$work"
mkdir -p "$work/out" "$work/bin"
failures=0
fail() {
  echo "FAIL: $*"
  failures=$((failures + 1))
}
# run EXPECTED-EXIT ARGS...: runs the program, keeping stderr in $work/err.
run() {
  local expected=$1
  shift
  "$batch" "$@" 2>"$work/err" >"$work/stdout"
  local got=$?
  [ "$got" -eq "$expected" ] || fail "exit $got, not $expected: $*: $(cat "$work/err")"
}
expect_error() { # the text must be on standard error
  grep -qF -- "$1" "$work/err" || fail "no \"$1\" on stderr: $(cat "$work/err")"
}
shows="$source_dir/tests/data/shows"

printf '%s\r\n' 'Quillmere track' 'Move 0 0 0 90' 'Element "Straight line" 100' \
  'Element Turn 180 50 20 0' 'Element Hill 80 30' >"$work/ride.qo"

# --help: every option with its default.
run 0 --help
for option in --save --out-dir --trace --solid --roll --centre --normalize --max-lines \
  --template --trees --smooth --seed --program-folder --help; do
  grep -q -- "$option" "$work/stdout" || fail "--help does not list $option"
done
grep -qF '"Max lines per curve" [as opened; 100]' "$work/stdout" || fail "--help: max lines default"

# A ride with a road show: the EPS with roll, the show and the track files.
run 0 open "$work/ride.qo" --save "$work/out/ride.eps" --template "Road 1st person" \
  --trees Fir --seed 7 --program-folder "$shows"
for file in ride.eps ride_Road1stPerson.cnd ride_Structure.eps; do
  [ -s "$work/out/$file" ] || fail "no $file"
done
grep -q '^%%Cinderlane Centre N' "$work/out/ride.eps" || fail "a ride keeps its place"
# The same seed gives the same bytes.
mkdir -p "$work/again"
run 0 open "$work/ride.qo" --save "$work/again/ride.eps" --template "Road 1st person" \
  --trees Fir --seed 7 --program-folder "$shows"
cmp -s "$work/out/ride.eps" "$work/again/ride.eps" || fail "the same input gave other bytes"

# A potrace EPS, solid, with the spinning logo; Ghostscript must read it.
run 0 open "$source_dir/tests/data/potrace/letters.eps" --save "$work/out/letters.eps" --solid \
  --template "Spinning logo" --seed 7 --program-folder "$shows"
[ -s "$work/out/letters_SpinningLogo.cnd" ] || fail "no spinning logo show"
grep -q '^fill' "$work/out/letters.eps" || fail "letters not solid"
if command -v gs >/dev/null; then
  gs -q -dSAFER -dBATCH -dNOPAUSE -sDEVICE=nullpage "$work/out/letters.eps" ||
    fail "Ghostscript cannot read letters.eps"
fi

# Pictures: the built-in tracer and potrace through a link named potrace.exe.
run 0 open "$source_dir/tests/data/tracer/logo.png" --trace internal --save "$work/out/logo.eps"
grep -q '^fill' "$work/out/logo.eps" || fail "a trace is solid"
ln -s "$(command -v potrace)" "$work/bin/potrace.exe"
run 0 open "$source_dir/tests/data/tracer/logo.png" --trace "$work/bin/potrace.exe" \
  --save "$work/out/potrace-logo.eps"
[ "$(grep -c moveto "$work/out/potrace-logo.eps")" -eq 3 ] || fail "potrace: not 3 outlines"

# Several inputs into a folder, one set each.
run 0 open "$work/ride.qo" "$source_dir/tests/data/potrace/circle.eps" --out-dir "$work/set"
[ -s "$work/set/ride.eps" ] && [ -s "$work/set/circle.eps" ] || fail "--out-dir sets"

# Failures: the window's message on stderr and a non-zero exit.
run 1 open "$work/missing.qo" --save "$work/out/m.eps"
expect_error "Could not open:"
expect_error "\"$work/missing.qo\""
run 1 open "$source_dir/tests/data/tracer/logo.png" --trace /usr/bin/potrace --save "$work/out/u.eps"
expect_error "Unknown external tracer"
run 1 open "$source_dir/tests/data/tracer/transparent.png" --trace internal --save "$work/out/t.eps"
expect_error "The sketch is empty"
run 1 open "$work/ride.qo" --solid --save "$work/out/s.eps"
expect_error "Your sketch can't be saved as solid because it's not 2D"
run 1 open "$work/ride.qo" --no-roll --template Tunnel --save "$work/out/n.eps"
expect_error '"Tunnel" is greyed out: a show that follows a track needs one curve with roll ("Roll").'
run 2 open "$work/ride.qo"
expect_error "Give --save or --out-dir"
run 2 open "$work/ride.qo" --save x.eps --template Loop
expect_error 'Unknown template "Loop"'
for file in m.eps u.eps t.eps s.eps n.eps; do
  [ -e "$work/out/$file" ] && fail "$file written after a failure"
done

if [ "$failures" -ne 0 ]; then
  echo "$failures failure(s)"
  exit 1
fi
echo "batch program: all passed"
