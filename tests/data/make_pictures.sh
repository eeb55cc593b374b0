#!/usr/bin/env bash
# Makes the pictures of the picture tests with ImageMagick and libsquish, and
# beside each one the pixels the maker itself decodes from it, as raw red,
# green, blue, alpha bytes ("NAME.rgba", 8 bits a channel, or "NAME.rgba16",
# 16 bits a channel, low byte first). The tests load every picture with the
# program's loaders and compare with these.
#
#   tests/data/make_pictures.sh [OUTPUT_FOLDER]
#
# The output folder defaults to tests/data/pictures, where the results are
# kept in the repository (the Windows tests under Wine cannot run this
# script). ImageMagick must be the real one of Debian's imagemagick package.
set -euo pipefail
here=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
out=${1:-$here/pictures}
convert=/usr/bin/convert
"$convert" -version | grep -q ImageMagick || { echo "needs ImageMagick's convert" >&2; exit 1; }
mkdir -p "$out"
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$out"

# No dates or other chunks that change from run to run.
strip=(-strip -define png:exclude-chunks=date,time)

# The common subject: 23 by 17 pixels of the built-in rose (odd sizes, so
# that DDS blocks hang over the edges), and an alpha ramp from opaque at the
# left to fully transparent at the right.
rose=(rose: -crop 23x17+20+10 +repage)
"$convert" "${rose[@]}" "$work/rose.png"
"$convert" -size 17x23 gradient:white-black -rotate 90 "$work/ramp.png"
"$convert" "$work/rose.png" "$work/ramp.png" -alpha off -compose CopyOpacity -composite \
  "$work/rose-alpha.png"

reference8() { "$convert" "$1" -depth 8 "rgba:$2"; }
reference16() { "$convert" "$1" -depth 16 -endian LSB "rgba:$2"; }

# ---- PNG: gray of 8 and 16 bits, RGB, RGBA of 8 and 16 bits.
"$convert" "$work/rose.png" -colorspace Gray "${strip[@]}" \
  -define png:color-type=0 -define png:bit-depth=8 gray8.png
"$convert" -size 23x17 gradient:black-white -colorspace Gray "${strip[@]}" \
  -define png:color-type=0 -define png:bit-depth=16 gray16.png
"$convert" "$work/rose.png" "${strip[@]}" -define png:color-type=2 rgb.png
"$convert" "$work/rose-alpha.png" "${strip[@]}" -define png:color-type=6 -depth 8 rgba.png
"$convert" "$work/rose-alpha.png" -depth 16 -evaluate multiply 0.99 "${strip[@]}" \
  -define png:color-type=6 -define png:bit-depth=16 rgba16.png
# A palette with a transparent entry, and gray with alpha: both come out as
# 8-bit BGRA.
"$convert" "$work/rose-alpha.png" -channel A -threshold 50% +channel -colors 32 "${strip[@]}" \
  PNG8:palette.png
"$convert" "$work/rose-alpha.png" -colorspace Gray "${strip[@]}" -define png:color-type=4 \
  -define png:bit-depth=8 gray-alpha.png
reference8 palette.png palette.png.rgba
reference8 gray-alpha.png gray-alpha.png.rgba
reference8 gray8.png gray8.png.rgba
reference16 gray16.png gray16.png.rgba16
reference8 rgb.png rgb.png.rgba
reference8 rgba.png rgba.png.rgba
reference16 rgba16.png rgba16.png.rgba16

# ---- JPEG, BMP (24-bit and palette), TIFF
"$convert" "$work/rose.png" -strip -quality 92 photo.jpg
reference8 photo.jpg photo.jpg.rgba
"$convert" "$work/rose.png" BMP3:picture.bmp
"$convert" "$work/rose.png" -colors 16 -type Palette BMP3:palette.bmp
reference8 picture.bmp picture.bmp.rgba
reference8 palette.bmp palette.bmp.rgba
"$convert" "$work/rose.png" -strip -compress none picture.tif
reference8 picture.tif picture.tif.rgba

# ---- GIF: three frames, each with a delay of 0; the first holds the rose
# with its right part transparent.
"$convert" "$work/rose-alpha.png" -channel A -threshold 50% +channel "$work/rose-cut.png"
"$convert" -delay 0 -dispose None "$work/rose-cut.png" \
  \( -size 23x17 xc:lime \) \( -size 23x17 xc:blue \) -loop 0 anim.gif
reference8 'anim.gif[0]' anim.gif.rgba
# Two frames with a delay of 7 hundredths; the first is 10 by 6 pixels at
# (3, 2) of a 30 by 20 screen and asks to be disposed to the background.
"$convert" -delay 7 -dispose Background \( "$work/rose.png" -crop 10x6+4+4 \) \
  -set page 30x20+3+2 \( -size 30x20 xc:navy -set page 30x20+0+0 \) -loop 0 anim-offset.gif
reference8 'anim-offset.gif[0]' anim-offset.gif.rgba

# ---- TGA: 24 and 32 bits with the origin at the lower and at the upper
# left, and an 8-bit palette picture of 24-bit entries.
"$convert" "$work/rose.png" -compress none tga24-bottom.tga
"$convert" "$work/rose.png" -orient TopLeft -compress none tga24-top.tga
"$convert" "$work/rose-alpha.png" -compress none tga32-bottom.tga
"$convert" "$work/rose-alpha.png" -orient TopLeft -compress none tga32-top.tga
"$convert" "$work/rose.png" -colors 16 -type Palette -compress none tga-palette.tga
# ImageMagick writes the rows top first whatever origin it states, and its
# reader keeps the stated origin as an orientation to apply; -auto-orient
# applies it, which gives the rows as the format's origin bit orders them.
for name in tga24-bottom tga24-top tga32-bottom tga32-top tga-palette; do
  "$convert" $name.tga -auto-orient -depth 8 rgba:$name.tga.rgba
done

# ---- DDS by ImageMagick: DXT1 (BC1), DXT1 with mip levels, DXT5 (BC3), and
# uncompressed 32-bit BGRA.
dds=(-define dds:mipmaps=0)
"$convert" "$work/rose.png" "${dds[@]}" -define dds:compression=dxt1 dxt1.dds
# Mip levels are made for sides that are powers of two only.
"$convert" rose: -crop 32x16+10+10 +repage -define dds:mipmaps=3 -define dds:compression=dxt1 \
  dxt1-mips.dds
"$convert" "$work/rose-alpha.png" "${dds[@]}" -define dds:compression=dxt5 dxt5.dds
"$convert" "$work/rose-alpha.png" "${dds[@]}" -define dds:compression=none bgra.dds
for name in dxt1 dxt1-mips dxt5 bgra; do
  reference8 $name.dds $name.dds.rgba
done

# ---- DDS by libsquish: BC2, BC4 and BC5, with libsquish's own decoding.
squish=$work/make_squish_dds
g++ -std=c++17 -O2 -o "$squish" "$here/../tools/make_squish_dds.cpp" -lsquish
"$convert" "$work/rose-alpha.png" -depth 8 "rgba:$work/rose-alpha.rgba"
for mode in bc2 bc4 bc5; do
  "$squish" $mode 23 17 "$work/rose-alpha.rgba" $mode.dds $mode.dds.rgba
done
echo "pictures made in $out"
