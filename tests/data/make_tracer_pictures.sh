#!/bin/sh
# Draws the pictures of the tracer tests with ImageMagick, without
# antialiasing, so that each shape covers whole pixels. Rectangles cover the
# pixels from the first to the second corner, both included.
#   logo.png         60 x 40, transparent; an opaque square 10..29 with a
#                    transparent hole 15..24, and an opaque block 40..54 by
#                    5..34
#   transparent.png  40 x 40, every pixel transparent
#   one.png          1 x 1, opaque, with an alpha channel
#   small32.png      32 x 32, transparent, a 2 x 2 opaque block at 4..5
#   large33.png      33 x 33, the same block
#   wide2049.png     2049 x 40, transparent, an opaque block 100..1999 by 5..34
#   text.png         480 x 200, transparent; three lines of DejaVu Sans text
#                    (holes, dots, thin strokes), a large glyph of DejaVu
#                    Sans Bold, and the same text again turned by 17 degrees
#   noalpha.png      40 x 40 without alpha: a black disc of radius 10 about
#                    (20, 20) on white
# Usage: make_tracer_pictures.sh [OUTPUT_FOLDER] (default tests/data/tracer)
set -eu
here=$(cd "$(dirname "$0")" && pwd)
out=${1:-$here/tracer}
mkdir -p "$out"
rgba="-strip -define png:exclude-chunks=date,time -define png:color-type=6"
convert -size 60x40 xc:none +antialias -fill white \
    -draw 'rectangle 10,10 29,29' -draw 'rectangle 40,5 54,34' \
    $rgba "$out/logo-base.png"
# The hole: clear the pixels 15..24 again.
convert "$out/logo-base.png" -region 10x10+15+15 -alpha transparent +region \
    $rgba "$out/logo.png"
rm "$out/logo-base.png"
convert -size 40x40 xc:none $rgba "$out/transparent.png"
convert -size 1x1 xc:red -alpha set $rgba "$out/one.png"
convert -size 32x32 xc:none +antialias -fill blue -draw 'rectangle 4,4 5,5' $rgba \
    "$out/small32.png"
convert -size 33x33 xc:none +antialias -fill blue -draw 'rectangle 4,4 5,5' $rgba \
    "$out/large33.png"
convert -size 2049x40 xc:none +antialias -fill black -draw 'rectangle 100,5 1999,34' $rgba \
    "$out/wide2049.png"
convert -size 40x40 xc:white +antialias -fill black -draw 'circle 20,20 20,10' \
    -strip -define png:exclude-chunks=date,time -define png:color-type=2 "$out/noalpha.png"
convert -size 480x200 xc:none +antialias -fill black -font DejaVu-Sans -pointsize 14 \
    -annotate +4+16 'Pack my box with five dozen liquor jugs, 0123456789 & @' \
    -annotate +4+34 'The quick brown fox jumps over the lazy dog; (a|b) {c} [d] #8' \
    -pointsize 9 -annotate +4+48 'small type: ijklmnop .,:;!? 1/2 @@@ ggg' \
    -font DejaVu-Sans-Bold -pointsize 120 -annotate +4+170 'Q&8' \
    \( -size 220x40 xc:none -font DejaVu-Sans -pointsize 16 -annotate +2+16 'turned text: abcdefgh' \
    -annotate +2+36 'ijklmnopqrstuvwxyz 0123' -background none -rotate 17 \) -geometry +290+60 -composite \
    $rgba "$out/text.png"
