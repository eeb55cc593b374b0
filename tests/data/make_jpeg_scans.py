#!/usr/bin/env python3
"""Writes the progressive JPEG files of the scan limit tests: an ImageMagick
progressive JPEG of 145 x 16 pixels whose height is then declared as 4000,
with its ten scans followed by copies of its first scan, up to 90 scans in
jpeg-scans-90.jpg and 150 in jpeg-scans-150.jpg.

Usage: make_jpeg_scans.py [OUTPUT_FOLDER]   (default tests/data/fuzz)
"""
import os
import struct
import subprocess
import sys
import tempfile

here = os.path.dirname(os.path.abspath(__file__))
out = sys.argv[1] if len(sys.argv) > 1 else os.path.join(here, "fuzz")
os.makedirs(out, exist_ok=True)
with tempfile.TemporaryDirectory() as work:
    source = os.path.join(work, "progressive.jpg")
    subprocess.run(["convert", "-size", "145x16", "gradient:red-blue", "-strip",
                    "-quality", "50", "-interlace", "Plane", source], check=True)
    data = open(source, "rb").read()

# The segments up to the end mark; a scan runs on to the next marker.
segments, at = [], 2
while data[at + 1] != 0xD9:
    mark = data[at + 1]
    length = struct.unpack(">H", data[at + 2:at + 4])[0]
    end = at + 2 + length
    if mark == 0xDA:
        while not (data[end] == 0xFF and data[end + 1] != 0 and not 0xD0 <= data[end + 1] <= 0xD7):
            end += 1
    if mark == 0xC2:
        frame = bytearray(data[at:end])
        frame[5:7] = struct.pack(">H", 4000)
        segments.append((mark, bytes(frame)))
    else:
        segments.append((mark, data[at:end]))
    at = end
scans = [bytes(s) for m, s in segments if m == 0xDA]
assert len(scans) == 10, len(scans)
for count in (90, 150):
    body = b"".join(s for m, s in segments) + scans[0] * (count - len(scans))
    with open(os.path.join(out, "jpeg-scans-%d.jpg" % count), "wb") as f:
        f.write(b"\xff\xd8" + body + b"\xff\xd9")
