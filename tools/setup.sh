#!/usr/bin/env bash
# Installs what the builds and tests need from Debian's packages, once.
set -euo pipefail
packages=(
  cmake ninja-build g++ clang-format libgtest-dev pkg-config libpng-dev libjpeg-dev
  g++-mingw-w64-x86-64-posix mingw-w64-tools
  wine wine64 fonts-wine
  xvfb xauth xdotool imagemagick
  potrace ghostscript python3 python3-cairo libsquish-dev libgif-dev libtiff-dev nsis
  p7zip-full unzip
  clang libclang-rt-14-dev fonts-dejavu-core
)
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q 'install ok installed' || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  echo "Installing: ${missing[*]}"
  sudo=""
  [ "$(id -u)" -eq 0 ] || sudo=sudo
  $sudo apt-get update -qq
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
fi
