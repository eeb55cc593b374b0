#!/usr/bin/env bash
# Quillmere.exe is linked statically: every DLL it imports is one that Windows
# itself provides, so the program runs without any file beside it.
set -uo pipefail
exe=${1:?usage: system_dlls_only.sh Quillmere.exe}
system='^(kernel32|user32|gdi32|ole32|oleaut32|shell32|comdlg32|comctl32|advapi32|msvcrt|winmm|d2d1|dwrite|windowscodecs|version|uuid|shlwapi)\.dll$'
dlls=$(x86_64-w64-mingw32-objdump -p "$exe" | sed -n 's/^[[:space:]]*DLL Name: //p')
[ -n "$dlls" ] || { echo "FAIL: no imports read from $exe"; exit 1; }
status=0
while read -r dll; do
  if grep -qiE "$system" <<<"$dll"; then echo "system: $dll"; else echo "FAIL: not a system DLL: $dll"; status=1; fi
done <<<"$dlls"
exit $status
