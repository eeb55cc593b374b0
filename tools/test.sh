#!/usr/bin/env bash
# Builds everything and runs every test: the portable core natively, the same
# unit tests and the Windows-side tests under Wine, and the user journeys that
# drive Quillmere.exe in Xvfb, and every fuzz target for a few seconds. Ends
# with one summary line.
set -uo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$here"
"$here/tools/setup.sh" || exit 1

jobs=$(nproc 2>/dev/null || echo 2)
passed=0
failed=0
status=0

run_suite() { # preset
  local preset=$1 log="$here/build/ctest-$1.log"
  echo "== $preset: configure and build"
  cmake --preset "$preset" >/dev/null || { status=1; failed=$((failed + 1)); return; }
  cmake --build --preset "$preset" -j "$jobs" || { status=1; failed=$((failed + 1)); return; }
  echo "== $preset: tests"
  # Each test process keeps its scratch files in a folder named after its
  # process id, so the native tests, each a process of its own, run at once.
  ctest --preset "$preset" -j "$jobs" 2>&1 | tee "$log"
  [ "${PIPESTATUS[0]}" -eq 0 ] || status=1
  local line total fails
  line=$(grep -E 'tests passed, [0-9]+ tests? failed out of [0-9]+' "$log" | tail -n 1)
  total=$(sed -E 's/.*out of ([0-9]+).*/\1/' <<<"$line")
  fails=$(sed -E 's/.*passed, ([0-9]+) tests? failed.*/\1/' <<<"$line")
  if [ -z "$line" ]; then status=1; failed=$((failed + 1)); return; fi
  passed=$((passed + total - fails))
  failed=$((failed + fails))
}

mkdir -p build
echo "== format"
if tools/check-format.sh; then passed=$((passed + 1)); else failed=$((failed + 1)); status=1; fi
echo "== layers"
if tools/check-layers.sh; then passed=$((passed + 1)); else failed=$((failed + 1)); status=1; fi
run_suite native
run_suite windows

# Every fuzz target for a few seconds, each counted as a test.
echo "== fuzz: smoke"
fuzzlog="$here/build/fuzz-smoke.log"
FUZZ_JOBS=2 tools/fuzz.sh "${FUZZ_SMOKE_SECONDS:-3}" 2>&1 | tee "$fuzzlog"
fuzzstatus=${PIPESTATUS[0]}
fuzzed=$(grep -c '^fuzz .*no finding$' "$fuzzlog")
fuzzfailed=$(grep -c '^fuzz .*FAILED' "$fuzzlog")
passed=$((passed + fuzzed))
failed=$((failed + fuzzfailed))
if [ "$fuzzstatus" -ne 0 ]; then
    status=1
    [ "$fuzzfailed" -eq 0 ] && failed=$((failed + 1))
fi

echo
echo "Summary: $passed passed, $failed failed"
[ "$failed" -eq 0 ] && [ "$status" -eq 0 ]
