#!/usr/bin/env bash
# Fails when a C++ file of the repository differs from what clang-format
# makes of it with the root .clang-format.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."
formatter=${CLANG_FORMAT:-clang-format}
drifted=0
while IFS= read -r file; do
  if ! "$formatter" --dry-run --Werror "$file" >/dev/null 2>&1; then
    echo "not formatted: $file"
    drifted=$((drifted + 1))
  fi
done < <(git ls-files '*.cpp' '*.h')
if [ "$drifted" -ne 0 ]; then
  echo "$drifted file(s) differ from clang-format; run: clang-format -i FILE"
  exit 1
fi
echo "format: every file as clang-format makes it"
