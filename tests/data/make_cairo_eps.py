#!/usr/bin/python3
"""Writes EPS files with cairo (Debian's python3-cairo) for the sketch loader's
tests, each beside a text file of the path it is expected to load as.

Usage: make_cairo_eps.py OUTPUT_FOLDER

For every NAME the script writes NAME.eps and NAME.txt. The text file has one
record per line, read with the tokens of the system's text stream:

    solid Y|N            whether the file fills its paths
    M x y                a move: a new curve starts at (x, y)
    L x y                a line to (x, y)
    C x1 y1 x2 y2 x y    a Bezier curve with its two controls and its end

The coordinates are the ones the loader is to find before it centres and
scales the sketch (no Cinderlane comments here, so it does both). Cairo writes
the page flipped ("1 0 0 -1 0 H cm"), and the reader takes that concat for the
identity, so a path comes back in cairo's device coordinates, y down, as
context.user_to_device gives them. Fills under any transformation are written
in device coordinates too. A stroke under a transformation is the exception:
cairo writes it inside a concat of its own, which the reader takes in place
of the page's, so that path comes back mirrored in y; nested.txt says so.
"""

import os
import sys

import cairo


class Recorder:
    """Draws on a cairo context and notes each point as the reader will see it."""

    def __init__(self, context, mirror=False):
        self.context = context
        self.mirror = mirror
        self.records = []

    def device(self, x, y):
        dx, dy = self.context.user_to_device(x, y)
        # Cairo prints at most three decimals; so does the expected list.
        dx, dy = round(dx, 3), round(dy, 3)
        return (dx, -dy) if self.mirror else (dx, dy)

    def move(self, x, y):
        self.context.move_to(x, y)
        self.records.append(("M",) + self.device(x, y))

    def line(self, x, y):
        self.context.line_to(x, y)
        self.records.append(("L",) + self.device(x, y))

    def curve(self, x1, y1, x2, y2, x, y):
        self.context.curve_to(x1, y1, x2, y2, x, y)
        self.records.append(("C",) + self.device(x1, y1) + self.device(x2, y2) + self.device(x, y))


def number(value):
    text = ("%.3f" % value).rstrip("0").rstrip(".")
    return "0" if text in ("-0", "") else text


def write_expected(path, solid, records):
    with open(path, "w", newline="\n") as out:
        out.write("solid %s\n" % ("Y" if solid else "N"))
        for record in records:
            out.write(record[0] + " " + " ".join(number(v) for v in record[1:]) + "\n")


def surface(folder, name, width, height):
    s = cairo.PSSurface(os.path.join(folder, name + ".eps"), width, height)
    s.set_eps(True)
    return s


def open_path(folder):
    """An open path of lines and curves, stroked."""
    s = surface(folder, "open", 200, 200)
    c = cairo.Context(s)
    r = Recorder(c)
    r.move(10, 20)
    r.line(100, 30)
    r.curve(120, 40, 150, 80, 160, 150)
    r.line(120, 170)
    r.curve(90, 180, 60, 120, 30, 160)
    c.set_line_width(2)
    c.stroke()
    s.finish()
    write_expected(os.path.join(folder, "open.txt"), False, r.records)


def hole(folder):
    """A closed filled outline with a hole running the other way round. Both
    end in a curve back onto their start: a last line back onto the start
    cairo would leave to its closepath, which the reader does not follow."""
    s = surface(folder, "hole", 200, 200)
    c = cairo.Context(s)
    r = Recorder(c)
    r.move(20, 20)
    r.line(180, 25)
    r.curve(190, 80, 195, 120, 175, 180)
    r.line(30, 170)
    r.curve(10, 120, 15, 60, 20, 20)
    c.close_path()
    r.move(70, 70)
    r.line(80, 130)
    r.line(130, 125)
    r.line(125, 75)
    r.curve(110, 60, 90, 80, 70, 70)
    c.close_path()
    c.fill()
    s.finish()
    write_expected(os.path.join(folder, "hole.txt"), True, r.records)


def transformed(folder):
    """Filled paths under a scale and a flip: a non-uniform scale with y
    flipped behind a translation, and a uniform scale with x flipped. Cairo
    fills in device coordinates."""
    s = surface(folder, "transformed", 300, 300)
    c = cairo.Context(s)
    r = Recorder(c)
    c.save()
    c.translate(10, 290)
    c.scale(3, -2)
    r.move(5, 10)
    r.line(30, 40)
    r.curve(40, 50, 60, 20, 70, 5)
    r.curve(50, -5, 20, 15, 5, 10)
    c.close_path()
    c.fill()
    c.restore()
    c.save()
    c.translate(290, 20)
    c.scale(-0.5, 0.5)
    r.move(10, 10)
    r.line(160, 30)
    r.curve(180, 140, 90, 170, 100, 210)
    r.curve(40, 150, 30, 90, 10, 10)
    c.close_path()
    c.fill()
    c.restore()
    s.finish()
    write_expected(os.path.join(folder, "transformed.txt"), True, r.records)


def nested(folder):
    """Strokes, first plain and then under a scale with a flip. Cairo strokes
    a transformed path inside a concat of its own ("q a 0 0 d 0 0 cm ... S
    Q"), with the path in the coordinates of that concat. The reader's matrix
    replaces rather than multiplies and negates d in cairo files, so such a
    path comes back as the device points mirrored in y. Nothing follows the
    last of them, whose concat would otherwise go on acting."""
    s = surface(folder, "nested", 300, 300)
    c = cairo.Context(s)
    r = Recorder(c)
    r.move(20, 30)
    r.line(120, 40)
    r.curve(150, 60, 170, 90, 140, 120)
    c.set_line_width(2)
    c.stroke()
    r.mirror = True
    c.save()
    c.scale(2, -1)
    r.move(5, -10)
    r.line(30, -40)
    r.curve(40, -60, 60, -70, 80, -20)
    c.set_line_width(2)
    c.stroke()
    c.restore()
    c.save()
    c.translate(20, 280)
    c.scale(1.5, -1.5)
    r.move(10, 10)
    r.line(60, 30)
    r.curve(80, 40, 90, 70, 100, 110)
    c.set_line_width(1)
    c.stroke()
    c.restore()
    s.finish()
    write_expected(os.path.join(folder, "nested.txt"), False, r.records)


def long_paths(folder):
    """Paths long enough that cairo wraps its lines, in the middle of an
    operator's operands as well as between operators."""
    s = surface(folder, "long", 400, 400)
    c = cairo.Context(s)
    r = Recorder(c)
    # A zigzag, so that no three points in a row lie on one line and the
    # loader's clean-up keeps every one of them.
    r.move(10, 20)
    for i in range(1, 120):
        r.line(10 + i * 3.125, 20 + (i % 2) * 22.5 + i * 0.125)
    for i in range(40):
        x = 380 - i * 8.5
        y = 100 + i * 6.25
        r.curve(x + 2, y + 11.5, x - 3.5, y + 12.25, x - 8.5, y + 6.25)
    c.stroke()
    for k in range(3):
        r.move(20 + k * 100, 350)
        for i in range(1, 60):
            r.line(20 + k * 100 + (i % 2) * 40 + i * 0.25, 350 + i * 0.75)
    c.stroke()
    s.finish()
    write_expected(os.path.join(folder, "long.txt"), False, r.records)


def main():
    if len(sys.argv) != 2:
        sys.exit("usage: make_cairo_eps.py OUTPUT_FOLDER")
    folder = sys.argv[1]
    os.makedirs(folder, exist_ok=True)
    open_path(folder)
    hole(folder)
    transformed(folder)
    nested(folder)
    long_paths(folder)


if __name__ == "__main__":
    main()
