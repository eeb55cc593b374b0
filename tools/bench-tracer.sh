#!/bin/sh
# Benchmark of the built-in tracer against Debian's potrace: draws a 2048 x
# 2048 logo of three large glyphs and a 2048 x 2048 page of 30 lines of text
# with ImageMagick, each as PNGs of 32 bits and of 1 bit a pixel with the
# shape in their alpha and as black on white BMPs of 1 and 24 bits a pixel,
# and prints the processor times and the ratios (ours / potrace; the goal is
# at most 1.0) of build/native/TracerBench on them: the one-bit files against
# each other and the full-colour files against each other.
#
#   tools/bench-tracer.sh [BUILD_FOLDER]
set -eu
root=$(cd "$(dirname "$0")/.." && pwd)
build=${1:-$root/build/native}
[ -x "$build/TracerBench" ] || cmake --build "$build" --target TracerBench
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
rgba="-define png:color-type=6"

convert -size 2048x2048 xc:none +antialias -fill black -font DejaVu-Sans-Bold \
    -pointsize 1000 -gravity center -annotate +0+0 'QmR' $rgba "$work/logo.png"

line="The quick brown fox jumps over the lazy dog, 0123456789 & more"
text=""
i=1
while [ $i -le 30 ]; do
    text="$text$line
"
    i=$((i + 1))
done
convert -size 2048x2048 xc:none +antialias -fill black -font DejaVu-Sans \
    -pointsize 52 -interline-spacing 12 -gravity northwest -annotate +20+10 "$text" \
    $rgba "$work/page.png"

for name in logo page; do
    convert "$work/$name.png" -define png:color-type=3 -define png:bit-depth=1 \
        "PNG8:$work/$name-1.png"
    convert "$work/$name.png" -background white -alpha remove -alpha off -type bilevel \
        "$work/$name.bmp"
    convert "$work/$name.png" -background white -alpha remove -alpha off -type truecolor \
        "BMP3:$work/$name-24.bmp"
done
convert -size 1x1 xc:black -alpha set $rgba "$work/tiny.png"
convert -size 1x1 xc:black -type bilevel "$work/tiny.bmp"
"$build/TracerBench" --start "$work/tiny.png" "$work/tiny.bmp" \
    logo "$work/logo.png" "$work/logo-1.png" "$work/logo.bmp" "$work/logo-24.bmp" \
    page "$work/page.png" "$work/page-1.png" "$work/page.bmp" "$work/page-24.bmp" 2>/dev/null
