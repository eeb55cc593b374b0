#!/usr/bin/env bash
# Makes the packages a user installs: build/package/Quillmere-5.2.0.0.zip and
# the installer build/package/Quillmere-5.2.0.0-win64.exe, each holding
# Quillmere.exe and media/. Prints the paths of both.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$here"
"$here/tools/setup.sh"
cmake --preset windows >/dev/null
cmake --build --preset windows --target Quillmere -j "$(nproc 2>/dev/null || echo 2)"
mkdir -p build/package
(cd build/package && cpack --config "$here/build/windows/CPackConfig.cmake" -B "$here/build/package" >/dev/null)
ls "$here"/build/package/Quillmere-*.zip "$here"/build/package/Quillmere-*.exe
