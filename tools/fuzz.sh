#!/usr/bin/env bash
# Builds every fuzz target (preset "fuzz": clang, libFuzzer, AddressSanitizer,
# UndefinedBehaviorSanitizer) and runs each for the given number of seconds
# (default 60), at the lowest priority, FUZZ_JOBS targets at a time (default
# 1). FUZZ_TARGETS limits the run to the targets it names. Fails when a
# target reports a finding or does not run; the input that failed is kept
# under build/fuzz/findings/. Prints one line per target with its executions.
#
# A target names its seed files and options in comment lines of its source:
#   // Seeds: tests/data/potrace/*.eps tests/data/cairo/*.eps
#   // Seed prefix: \000           (printf text put before each seed)
#   // Dictionary: fuzz/settings.dict
#   // Max length: 4096
# The corpus of a target grows under build/fuzz/corpus/NAME from run to run.
set -uo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$here"
seconds=${1:-60}
jobs=${FUZZ_JOBS:-1}
case $seconds in '' | *[!0-9]*)
    echo "usage: tools/fuzz.sh [seconds]" >&2
    exit 2
    ;;
esac

# FUZZ_PROGRAMS names a folder of targets built before (a copy, so that a
# long run is not disturbed by later builds); without it they are built now.
build=${FUZZ_PROGRAMS:-$here/build/fuzz}
if [ -z "${FUZZ_PROGRAMS:-}" ]; then
    export CMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER:-ccache}
    cmake --preset fuzz >/dev/null || exit 1
    cmake --build --preset fuzz -j "${BUILD_JOBS:-2}" >/dev/null || {
        echo "fuzz: the build failed" >&2
        exit 1
    }
fi
mkdir -p "$build/findings" "$build/logs"

# The value of a "// Key: value" line of a target's source, or nothing.
option() { # source key
    sed -n "s|^// $2: ||p" "$1" | head -n 1
}

# Fills the corpus of a target with its seeds, once per seed.
seed() { # name source corpus
    local pattern prefix file
    pattern=$(option "$2" Seeds)
    prefix=$(option "$2" "Seed prefix")
    mkdir -p "$3"
    for file in $pattern; do
        [ -f "$file" ] || continue
        local target="$3/seed-$(basename "$file")"
        [ -f "$target" ] && continue
        {
            # shellcheck disable=SC2059
            [ -n "$prefix" ] && printf "$prefix"
            cat "$file"
        } >"$target"
    done
}

# Runs one target; its log ends with libFuzzer's final statistics.
run() { # name
    local name=$1 source=fuzz/$1.cpp corpus=$build/corpus/$1 log=$build/logs/$1.log
    local args=(-max_total_time="$seconds" -print_final_stats=1 -close_fd_mask=2
        -artifact_prefix="$build/findings/$name-" -timeout=30 -rss_limit_mb=2048)
    local dict length
    dict=$(option "$source" Dictionary)
    length=$(option "$source" "Max length")
    [ -n "$dict" ] && args+=(-dict="$here/$dict")
    [ -n "$length" ] && args+=(-max_len="$length")
    seed "$name" "$source" "$corpus"
    nice -n 19 "$build/$name" "${args[@]}" "$corpus" >"$log" 2>&1
    local status=$?
    local executions
    executions=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -n 1)
    if [ "$status" -eq 0 ] && [ -n "$executions" ]; then
        echo "fuzz $name: ${executions} executions in ${seconds} s, no finding"
        return 0
    fi
    echo "fuzz $name: FAILED (exit $status), see $log" >&2
    grep -E '^(==[0-9]+==ERROR|SUMMARY|.*runtime error)' "$log" | head -n 5 >&2
    return 1
}

targets=()
for source in fuzz/*.cpp; do
    name=$(basename "$source" .cpp)
    if [ -n "${FUZZ_TARGETS:-}" ] && ! grep -qw "$name" <<<"$FUZZ_TARGETS"; then continue; fi
    targets+=("$name")
done

failed=0
running=()
for name in "${targets[@]}"; do
    run "$name" &
    running+=($!)
    if [ ${#running[@]} -ge "$jobs" ]; then
        wait "${running[0]}" || failed=$((failed + 1))
        running=("${running[@]:1}")
    fi
done
for pid in "${running[@]}"; do
    wait "$pid" || failed=$((failed + 1))
done

echo "fuzz: ${#targets[@]} targets, $failed failed"
[ "$failed" -eq 0 ]
