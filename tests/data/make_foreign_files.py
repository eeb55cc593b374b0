#!/usr/bin/python3
"""Makes the corpus of foreign and broken files that users drop on the
editor, kept in tests/data/foreign with this script:

  EPS written by Ghostscript's EPS output device from PostScript and from
  PDF, by cairo (Debian's python3-cairo) and by potrace at several settings;
  pictures in PNG, JPEG, GIF, TIFF, BMP, TGA and DDS made by ImageMagick;
  track files with garbage lines, huge numbers, NaN and infinity as
  parameters, and very long lines; settings files in each of the four
  encodings of the text stream.

Usage: make_foreign_files.py [OUTPUT_FOLDER]

Only whole files are kept. The tests cut each EPS, picture and settings file
at ten places and flip bytes in it themselves, by the fixed rules that
BrokenCopies in tests/unit/ForeignFilesSupport.h states, so that the
repository holds each file once: the cut at place k of 10 keeps the first
k * size / 11 bytes; the flipped copy inverts every byte at an offset
size * j / 13 for j = 1 to 12. Needs gs, potrace and ImageMagick's convert
(the real one at /usr/bin/convert).
"""
import os
import subprocess
import sys
import tempfile

import cairo

HERE = os.path.dirname(os.path.abspath(__file__))
OUT = sys.argv[1] if len(sys.argv) > 1 else os.path.join(HERE, "foreign")
CONVERT = "/usr/bin/convert"


def run(*args):
    subprocess.run(args, check=True)


def write(name, data):
    with open(os.path.join(OUT, name), "wb") as f:
        f.write(data)


# ---- EPS by Ghostscript, from PostScript and from PDF. Pages uncompressed,
# so that the path operators stand in the text where a reader can find them.
PAGE = b"""%!PS
newpath 100 100 moveto 200 100 lineto 200 180 lineto 150 220 100 180 100 100 curveto
closepath fill
newpath 300 100 moveto 380 150 lineto 300 200 lineto 2 setlinewidth stroke
showpage
"""


def ghostscript(work):
    source = os.path.join(work, "page.ps")
    pdf = os.path.join(work, "page.pdf")
    with open(source, "wb") as f:
        f.write(PAGE)
    gs = ["gs", "-q", "-dSAFER", "-dBATCH", "-dNOPAUSE"]
    eps = ["-sDEVICE=eps2write", "-dCompressPages=false", "-dCompressFonts=false"]
    run(*gs, *eps, "-sOutputFile=" + os.path.join(OUT, "gs-from-ps.eps"), source)
    run(*gs, "-sDEVICE=pdfwrite", "-sOutputFile=" + pdf, source)
    run(*gs, *eps, "-sOutputFile=" + os.path.join(OUT, "gs-from-pdf.eps"), pdf)


# ---- EPS by cairo: a filled outline with a hole, a stroked open curve.
def cairo_eps():
    surface = cairo.PSSurface(os.path.join(OUT, "cairo.eps"), 300, 200)
    surface.set_eps(True)
    context = cairo.Context(surface)
    context.move_to(20, 20)
    context.line_to(140, 20)
    context.curve_to(160, 60, 160, 120, 140, 160)
    context.line_to(20, 160)
    context.close_path()
    context.move_to(60, 60)
    context.line_to(60, 120)
    context.line_to(100, 120)
    context.close_path()
    context.set_fill_rule(cairo.FILL_RULE_EVEN_ODD)
    context.fill()
    context.move_to(180, 40)
    context.curve_to(220, 10, 260, 90, 280, 60)
    context.set_line_width(3)
    context.stroke()
    surface.finish()


# ---- EPS by potrace at several settings, from a drawn bitmap.
POTRACE = {
    "potrace-default.eps": ["-c"],
    "potrace-corners.eps": ["-c", "-a", "0"],
    "potrace-round.eps": ["-c", "-a", "1.3", "-O", "1"],
    "potrace-unoptimised.eps": ["-c", "-n", "-t", "0"],
    "potrace-coarse.eps": ["-c", "-u", "1", "-t", "20"],
    # potrace's own default compresses the page: nothing in it can be read.
    "potrace-compressed.eps": [],
}


def potrace(work):
    bitmap = os.path.join(work, "shapes.bmp")
    run(CONVERT, "-size", "120x90", "xc:white", "+antialias", "-fill", "black",
        "-draw", "circle 40,45 40,15", "-draw", "rectangle 75,10 110,80",
        "-fill", "white", "-draw", "circle 40,45 40,30", "-type", "bilevel", bitmap)
    for name, options in POTRACE.items():
        run("potrace", "-e", "-q", *options, "-o", os.path.join(OUT, name), bitmap)


# ---- Pictures by ImageMagick: 16 by 12 pixels of a gradient with a shape.
PICTURES = {
    "picture.png": [],
    "picture.jpg": ["-quality", "90"],
    "picture.gif": [],
    "picture.tif": ["-compress", "none"],
    "picture.bmp": [],
    "picture.tga": ["-compress", "none"],
    "picture.dds": ["-define", "dds:compression=dxt5", "-define", "dds:mipmaps=0"],
}


def pictures():
    for name, options in PICTURES.items():
        run(CONVERT, "-size", "16x12", "gradient:red-blue", "-fill", "yellow",
            "-draw", "circle 8,6 8,2", "-strip", *options, os.path.join(OUT, name))


# ---- Track files. Each is described where the test checks it.
LONG = "Element \"Straight line\" " + " ".join(["12"] * 20000)
TRACKS = {
    # Lines that are no commands, binary junk and an unknown element among
    # good lines: the unknown one gives its message, the rest is skipped.
    "garbage.qo": "Quillmere 1\r\n\x01\x02\x7f junk\r\nMove 0 0 0 0\r\nhello world\r\n"
                  "Element \"Straight line\" 50 0 0 0\r\nElement \"Nowhere\" 1 2 3 4\r\n\r\n"
                  "Closed\r\nElement\r\nElement \"Straight line\" 25\r\n",
    # Numbers far beyond a float and far beyond an integer.
    "huge.qo": "Quillmere 1\r\nMove 1e30 -1e30 99999999999999999999 1e300\r\n"
               "Element \"Straight line\" 1e38 0 0 0\r\nElement \"Turn\" 1e300 1e300 1e300 1e300\r\n",
    # NaN as every parameter: it counts as 0.
    "nan.qo": "Quillmere 1\r\nMove nan NaN -nan nan\r\nElement \"Straight line\" nan nan nan nan\r\n"
              "Element \"Circular loop\" NAN nan nan nan\r\nElement \"Straight line\" 40 0 0 0\r\n",
    # Infinity in every place a number stands.
    "infinity.qo": "Quillmere 1\r\nMove inf -inf infinity 0\r\nElement \"Straight line\" inf 0 0 0\r\n"
                   "Move 0 0 0 inf\r\nElement \"Turn\" 30 inf -inf 0\r\n"
                   "Element \"Circular loop\" inf inf inf inf\r\n",
    # A first line of 100,000 characters, then a good track with a line of
    # 20,000 numbers.
    "long-lines.qo": "Quillmere " + "x" * 100000 + "\r\nMove 0 0 0 0\r\n" + LONG + "\r\n"
                     "Element \"Straight line\" 30 0 0 0\r\n",
    # The first word is not the program's name.
    "wrong-first-line.qo": "Quillmeer 1\r\nMove 0 0 0 0\r\nElement \"Straight line\" 50 0 0 0\r\n",
}


def tracks():
    for name, text in TRACKS.items():
        write(name, text.encode("latin-1"))


# ---- Settings files in the four encodings, made from the defaults file.
def settings():
    with open(os.path.join(HERE, "settings", "default_posix.txt"), "rb") as f:
        text = f.read()[2:].decode("utf-16-le")
    # A non-ASCII folder, so that the encodings differ in more than width.
    text = text.replace("/tmp/quillmere-golden/Documents", "/tmp/Dokumente-\u00e9t\u00e9-\u20ac")
    write("settings-8bit.txt", text.encode("latin-1", "replace"))
    write("settings-utf16le.txt", b"\xff\xfe" + text.encode("utf-16-le"))
    write("settings-utf16be.txt", b"\xfe\xff" + text.encode("utf-16-be"))
    write("settings-utf8.txt", b"\xef\xbb\xbf" + text.encode("utf-8"))


def main():
    os.makedirs(OUT, exist_ok=True)
    with tempfile.TemporaryDirectory() as work:
        ghostscript(work)
        cairo_eps()
        potrace(work)
        pictures()
        tracks()
        settings()
    print("foreign files made in " + OUT)


main()
