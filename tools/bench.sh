#!/usr/bin/env bash
# Builds the benchmarks (release build of the native core) and prints one
# line per figure: the load and save of a large traced sketch (potrace's
# trace of a 2048 x 2048 page of 30 lines of text, made now by
# bench/make_text_page.sh) in milliseconds and MB/s, its frames in the edit
# mode on the recording surface, and the geometry operations of a frame.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$here"
export CMAKE_CXX_COMPILER_LAUNCHER=${CMAKE_CXX_COMPILER_LAUNCHER:-ccache}
build=$here/build/bench
cmake -S . -B "$build" -G Ninja -DCMAKE_BUILD_TYPE=Release >/dev/null
cmake --build "$build" -j "${BUILD_JOBS:-2}" --target SketchBench GeometryBench >/dev/null
cmake --build "$build" -j "${BUILD_JOBS:-2}" --target FrameBench >/dev/null

data=$build/data
[ -f "$data/text-page.eps" ] || bench/make_text_page.sh "$data"
scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
"$build/SketchBench" "$data/text-page.eps" "$scratch"
"$build/GeometryBench"
# Each sketch's frames in a process of their own, so that the first frame
# is the first of a process.
"$build/FrameBench"
"$build/FrameBench" "$data/text-page.eps"
