#!/usr/bin/env bash
# Makes the sample pictures and the traced sample logo in media/Samples/ with
# ImageMagick and potrace (Debian's packages): a logo on transparency to trace,
# a heart for the Spaghetti tool, and the logo traced into an EPS sketch.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
out=${1:-$here/media/Samples}
mkdir -p "$out"
font=/usr/share/fonts/truetype/dejavu/DejaVuSans-Bold.ttf
png_opts=(-strip -define png:exclude-chunks=date,time)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

# The logo: a ring with the letter Q inside, black on transparency. The shape
# is drawn white on black and becomes the alpha of a black picture.
convert -size 512x512 xc:black -fill white -draw "circle 256,256 256,40" \
  -fill black -draw "circle 256,256 256,80" \
  -font "$font" -pointsize 300 -fill white -gravity center -annotate +0+10 "Q" \
  "$work/mask.png"
convert -size 512x512 xc:black "$work/mask.png" -alpha off -compose CopyOpacity -composite \
  "${png_opts[@]}" "PNG32:$out/Logo.png"

# A heart for the Spaghetti tool.
convert -size 512x512 xc:none -fill "#c02030" \
  -draw "circle 176,190 176,80" -draw "circle 336,190 336,80" \
  -draw "polygon 72,230 256,460 440,230 256,150" "${png_opts[@]}" "PNG32:$out/Heart.png"

# The logo traced by potrace: its EPS loads as a sketch of closed outlines.
convert "$out/Logo.png" -background white -alpha remove -threshold 50% "$work/logo.pbm"
potrace -c -q -o "$out/Logo.eps" "$work/logo.pbm"
