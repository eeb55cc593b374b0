#!/bin/sh
# Draws bitmaps with ImageMagick and traces them with potrace, for the sketch
# loader's tests. Drawing is done without antialiasing, so that each shape
# covers whole pixels and its outline lies on pixel edges:
#   circle.bmp   a filled circle of radius 60 about (100, 100)
#   ring.bmp     a ring: radius 70 filled, radius 35 cleared again
#   letters.bmp  an "L" and a "T", each of two rectangles; the rectangles
#                cover the pixels from the first to the second corner,
#                both included
# Usage: make_potrace_eps.sh OUTPUT_FOLDER
set -eu
out=$1
mkdir -p "$out"
convert -size 200x200 xc:white +antialias -fill black -draw 'circle 100,100 100,40' \
    -type bilevel "$out/circle.bmp"
convert -size 200x200 xc:white +antialias -fill black -draw 'circle 100,100 100,30' \
    -fill white -draw 'circle 100,100 100,65' -type bilevel "$out/ring.bmp"
convert -size 200x200 xc:white +antialias -fill black \
    -draw 'rectangle 20,20 40,180' -draw 'rectangle 20,160 90,180' \
    -draw 'rectangle 110,20 190,40' -draw 'rectangle 140,40 160,180' \
    -type bilevel "$out/letters.bmp"
for name in circle ring letters; do
    potrace -c -q -o "$out/$name.eps" "$out/$name.bmp"
done
