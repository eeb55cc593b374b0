#!/bin/sh
# Makes the benchmarks' large sketch: a 2048 x 2048 page of 30 lines of text,
# drawn by ImageMagick in a Debian font without antialiasing, traced by
# potrace into an EPS file. Made at benchmark time, never kept in the
# repository.
# Usage: make_text_page.sh OUTPUT_FOLDER   (writes text-page.pbm, text-page.eps)
set -eu
out=$1
mkdir -p "$out"
font=/usr/share/fonts/truetype/dejavu/DejaVuSans.ttf
[ -f "$font" ] || font=$(fc-match -f '%{file}' 'DejaVu Sans')
text=""
for line in $(seq 1 30); do
    text="${text}Line $line: Pack my box with five dozen liquor jugs, quickly
"
done
convert -size 2048x2048 xc:white +antialias -font "$font" -pointsize 60 -fill black \
    -annotate +40+60 "$text" -type bilevel "$out/text-page.pbm"
potrace -e -c -q -o "$out/text-page.eps" "$out/text-page.pbm"
