#!/usr/bin/env bash
# The edit soak: builds the native soak program and runs it for the given
# number of random operations (20,000 when none is given) with the given
# seed (1 by default). A failure names the seed and the operation number;
# the same two arguments replay the run.
#
#   tools/soak.sh [OPERATIONS] [SEED]
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cd "$here"
cmake --preset native >/dev/null
cmake --build --preset native -j 2 --target edit_soak
exec "$here/build/native/edit_soak" "${1:-20000}" "${2:-1}"
