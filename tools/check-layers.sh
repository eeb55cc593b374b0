#!/usr/bin/env bash
# Fails when a file of the program includes a header of a higher layer. The
# layers, lowest first: foundation; drawing, view and sketch; elements, eps,
# show and spaghetti; dialogs and shell. A file may include headers of its
# own layer and of the layers below it. Tests, fuzz targets, benchmarks and
# tools stand outside the layers and may include anything.
set -uo pipefail
cd "$(dirname "${BASH_SOURCE[0]}")/.."

layer() { # folder -> layer number, empty for a folder outside the layers
  case "$1" in
  foundation) echo 0 ;;
  drawing | view | sketch) echo 1 ;;
  elements | eps | show | spaghetti) echo 2 ;;
  dialogs | shell) echo 3 ;;
  esac
}

broken=0
while IFS= read -r file; do
  folder=${file%%/*}
  own=$(layer "$folder")
  [ -n "$own" ] || continue
  while IFS= read -r included; do
    target=$(layer "${included%%/*}")
    [ -n "$target" ] || continue
    if [ "$target" -gt "$own" ]; then
      echo "layer broken: $file includes $included"
      broken=$((broken + 1))
    fi
  done < <(sed -nE 's/^[[:space:]]*#[[:space:]]*include[[:space:]]*"([^"]+)".*/\1/p' "$file")
done < <(git ls-files --cached --others --exclude-standard '*.cpp' '*.h')
if [ "$broken" -ne 0 ]; then
  echo "$broken include(s) reach a higher layer"
  exit 1
fi
echo "layers: every include points down or sideways"
