#!/usr/bin/env bash
# quillmere-batch.exe under Wine: a ride saved with a road show gives the
# EPS file, the show and the track files, and a file that does not open exits
# 1 with the window's message on standard error.
# Usage: batch_program_wine.sh QUILLMERE-BATCH.EXE WORK-FOLDER
set -uo pipefail
exe=$1
work=$2
here=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
rm -rf "$work"
mkdir -p "$work/out"
printf '%s\r\n' 'Quillmere track' 'Move 0 0 0 90' 'Element "Straight line" 100' \
  'Element Turn 180 50 20 0' 'Element Hill 80 30' >"$work/ride.qo"
win() { echo "Z:${1//\//\\}"; }
failures=0
"$here/tools/wine-run.sh" "$exe" open "$(win "$work/ride.qo")" --save "$(win "$work/out/ride.eps")" \
  --template "Road 1st person" --seed 5 --program-folder "$(win "$here/tests/data/shows")" \
  2>"$work/err"
code=$?
[ "$code" -eq 0 ] || { echo "FAIL: exit $code: $(cat "$work/err")"; failures=$((failures + 1)); }
for file in ride.eps ride_Road1stPerson.cnd ride_Structure.eps; do
  [ -s "$work/out/$file" ] || { echo "FAIL: no $file"; failures=$((failures + 1)); }
done
# A ride is saved where it is.
grep -q $'^%%Cinderlane Centre N\r$' "$work/out/ride.eps" ||
  { echo "FAIL: a ride keeps its place"; failures=$((failures + 1)); }
"$here/tools/wine-run.sh" "$exe" open "$(win "$work/missing.qo")" --save "$(win "$work/out/m.eps")" \
  2>"$work/err"
code=$?
[ "$code" -eq 1 ] || { echo "FAIL: missing file: exit $code"; failures=$((failures + 1)); }
grep -q "Could not open:" "$work/err" ||
  { echo "FAIL: no message: $(cat "$work/err")"; failures=$((failures + 1)); }
[ "$failures" -eq 0 ] || exit 1
echo "batch program under Wine: all passed"
