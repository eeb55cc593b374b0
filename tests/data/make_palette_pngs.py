#!/usr/bin/env python3
"""Writes the palette PNGs of the decoding tests into tests/data/pictures:
ImageMagick pictures of 1, 2, 4 and 8 bits an index, with and without a
transparent entry, one of them interlaced, and a hand-made one whose indices
run past its three palette entries and past its two transparency entries.

Usage: make_palette_pngs.py [OUTPUT_FOLDER]   (default tests/data/pictures)
"""
import os
import struct
import subprocess
import sys
import zlib

here = os.path.dirname(os.path.abspath(__file__))
out = sys.argv[1] if len(sys.argv) > 1 else os.path.join(here, "pictures")
os.makedirs(out, exist_ok=True)
plain = ["-strip", "-define", "png:exclude-chunks=date,time", "-define", "png:color-type=3"]


def convert(arguments, name, extra=()):
    target = os.path.join(out, name)
    if "opaque" not in name:
        target = "PNG8:" + target  # keeps a transparent entry
    subprocess.run(["convert"] + arguments + plain + list(extra) + [target], check=True)


shape = ["-size", "37x23", "xc:none", "+antialias", "-fill", "#c04010", "-draw",
         "rectangle 3,3 20,15", "-fill", "#1080f0", "-draw", "circle 26,12 26,4"]
convert(shape, "palette-1bit.png", ["-colors", "2", "-define", "png:bit-depth=1"])
convert(shape, "palette-2bit.png", ["-define", "png:bit-depth=2"])
convert(shape + ["-fill", "#20f020", "-draw", "line 0,22 36,0"], "palette-4bit.png",
        ["-define", "png:bit-depth=4"])
convert(["-size", "41x29", "plasma:fractal", "-alpha", "set", "-channel", "A", "-fx",
         "i<20?0.5:1", "+channel", "-colors", "200"], "palette-8bit.png",
        ["-define", "png:bit-depth=8"])
convert(["-size", "33x17", "gradient:red-blue", "-colors", "12"], "palette-opaque.png",
        ["-define", "png:bit-depth=4"])
convert(shape, "palette-interlaced.png", ["-interlace", "PNG", "-define", "png:bit-depth=2"])


def chunk(kind, data):
    return (struct.pack(">I", len(data)) + kind + data +
            struct.pack(">I", zlib.crc32(kind + data) & 0xffffffff))


# 8 x 4 pixels of indices 0 to 31: three palette entries, two alphas.
rows = b"".join(b"\0" + bytes((y * 8 + x) for x in range(8)) for y in range(4))
png = (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", struct.pack(">IIBBBBB", 8, 4, 8, 3, 0, 0, 0)) +
       chunk(b"PLTE", bytes([10, 20, 30, 40, 50, 60, 70, 80, 90])) +
       chunk(b"tRNS", bytes([0, 128])) + chunk(b"IDAT", zlib.compress(rows)) +
       chunk(b"IEND", b""))
with open(os.path.join(out, "palette-short.png"), "wb") as f:
    f.write(png)
