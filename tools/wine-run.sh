#!/usr/bin/env bash
# Runs a Windows program under Wine with a prefix of its own, made on first use
# beside the build (or where QUILLMERE_WINEPREFIX says), with the Tahoma font
# registered so that DirectWrite finds a last-resort font. Without a DISPLAY
# the program gets a private Xvfb for the time of its run (with-display.sh).
# The program's exit code is passed on.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
prefix=${QUILLMERE_WINEPREFIX:-$here/build/wineprefix}
if [ -z "${DISPLAY:-}" ]; then
  # Wine's helper processes keep the display until the prefix's server ends,
  # so the private display is not ended under them.
  export QUILLMERE_WINEPREFIX=$prefix
  exec "$here/tools/with-display.sh" bash -c \
    '"$0" "$@"; code=$?; WINEPREFIX=$QUILLMERE_WINEPREFIX timeout 30 wineserver -w 2>/dev/null; exit $code' \
    "${BASH_SOURCE[0]}" "$@"
fi
export WINEPREFIX=$prefix WINEDEBUG=${WINEDEBUG:--all} WINEDLLOVERRIDES=${WINEDLLOVERRIDES:-mscoree,mshtml=}
if [ ! -f "$prefix/.quillmere-ready" ]; then
  mkdir -p "$prefix"
  (
    flock 9
    if [ ! -f "$prefix/.quillmere-ready" ]; then
      wineboot -i >/dev/null 2>&1 || true
      wineserver -w || true
      mkdir -p "$prefix/drive_c/windows/Fonts"
      cp /usr/share/wine/fonts/tahoma.ttf "$prefix/drive_c/windows/Fonts/" 2>/dev/null || true
      wine reg add 'HKLM\Software\Microsoft\Windows NT\CurrentVersion\Fonts' /v 'Tahoma (TrueType)' /t REG_SZ /d tahoma.ttf /f >/dev/null 2>&1 || true
      wineserver -w || true
      touch "$prefix/.quillmere-ready"
    fi
  ) 9>"$prefix.lock"
fi
exec wine "$@"
