#!/usr/bin/env bash
# Makes both packages from a windows build folder with CPack and checks what
# a user gets: the ZIP and the installer each hold Quillmere.exe and every
# file of media/ in its folder, the installer brings its uninstaller, and the
# version is 5.2.0.0.
# Usage: check_package.sh BUILD_FOLDER OUTPUT_FOLDER
set -euo pipefail
build=$1
out=$2
source_dir=$(cd "$(dirname "${BASH_SOURCE[0]}")/../.." && pwd)
fail() { echo "FAIL: $*" >&2; exit 1; }

rm -rf "$out"
mkdir -p "$out"
(cd "$out" && cpack --config "$build/CPackConfig.cmake" -B "$out" >"$out/cpack.log" 2>&1) ||
  { cat "$out/cpack.log" >&2; fail "cpack failed"; }
zip=$out/Quillmere-5.2.0.0.zip
installer=$out/Quillmere-5.2.0.0.exe
[ -f "$zip" ] || fail "no $zip"
[ -f "$installer" ] || fail "no $installer"

expected=$(cd "$source_dir" && find media -type f | LC_ALL=C sort)
[ -n "$expected" ] || fail "media/ is empty"

# The ZIP unpacks into one folder with the program and media/ beside it.
unpacked=$out/unpacked
mkdir -p "$unpacked"
(cd "$unpacked" && unzip -q "$zip")
top=$unpacked/Quillmere-5.2.0.0
[ -f "$top/Quillmere.exe" ] || fail "the ZIP has no Quillmere-5.2.0.0/Quillmere.exe"
cmp -s "$top/Quillmere.exe" "$build/Quillmere.exe" || fail "the ZIP's Quillmere.exe is not the one built"
got=$(cd "$top" && find media -type f | LC_ALL=C sort)
[ "$got" = "$expected" ] || fail "the ZIP's media/ differs: $(diff <(echo "$expected") <(echo "$got") | head -5)"
while IFS= read -r file; do
  cmp -s "$source_dir/$file" "$top/$file" || fail "the ZIP's $file differs from the repository's"
done <<<"$expected"

# The installer: the program, media/ and the uninstaller, listed by 7-Zip.
listing=$(7z l -slt "$installer" | sed -n 's/^Path = //p' | tr '\\' '/')
grep -qx 'Quillmere.exe' <<<"$listing" || fail "the installer has no Quillmere.exe"
grep -qx 'Uninstall.exe' <<<"$listing" || fail "the installer has no uninstaller"
while IFS= read -r file; do
  grep -qxF "$file" <<<"$listing" || fail "the installer lacks $file"
done <<<"$expected"
# The installer's script, as CPack wrote it for makensis: a start menu entry
# for the program and one for the uninstaller, which it writes and removes.
script=$(find "$out/_CPack_Packages" -name project.nsi | head -n 1)
[ -n "$script" ] || fail "no installer script"
grep -qF 'CreateShortCut "$SMPROGRAMS\$STARTMENU_FOLDER\Quillmere.lnk" "$INSTDIR\.\Quillmere.exe"' "$script" ||
  fail "no start menu entry for Quillmere.exe"
grep -qF 'WriteUninstaller "$INSTDIR\Uninstall.exe"' "$script" || fail "no uninstaller"
grep -qF 'Quillmere 5.2.0.0' "$script" || fail "the installer does not name version 5.2.0.0"

echo "package: ZIP and installer hold Quillmere.exe and $(wc -l <<<"$expected") media files"
