#!/bin/sh
# Draws media/skins/Skin.png, the Mode palette's skin: 192 by 64 pixels of
# gray, three white symbols on black, 64 pixels each, from left to right a
# pencil (drawing freehand), an arrow (editing the sketch) and a turning
# arrow round a ribbon (editing the roll). The palette reads the red channel
# as a mask, so soft edges blend into the button colours.
# Usage: tools/make_skin.sh [output] (ImageMagick's convert).
set -eu
out=${1:-$(dirname "$0")/../media/skins/Skin.png}
convert -size 192x64 xc:black -fill white -stroke white \
  -strokewidth 1 -draw "polygon 14,50 18,38 44,12 52,20 26,46" \
  -fill black -stroke black -draw "line 40,16 48,24" \
  -fill white -stroke white -draw "polygon 10,54 14,50 18,54" \
  -draw "polygon 84,10 84,50 94,41 101,55 108,52 101,38 114,38" \
  -fill none -strokewidth 5 -draw "arc 140,14 180,50 200,480" \
  -fill white -strokewidth 1 -draw "polygon 168,6 184,18 166,24" \
  -draw "rectangle 157,24 163,40" \
  -colorspace Gray -depth 8 -define png:color-type=0 -strip "$out"
