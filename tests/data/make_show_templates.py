#!/usr/bin/env python3
"""Writes the small template shows and tree models that the show tests install
below a program folder: shows/Media/Templates/*.cnd and shows/Media/Models/*.obj.

Every template holds every marker, some of them twice, and three lines that
open a layer ("LAY" and a tab at the start of a line), beside lines that look
alike but do not count ("LAY Model" with a space, "XLAY\t" inside a line).
Ride templates are written in UTF-16 little endian with a mark, the others in
8-bit text, so that reading either encoding is covered. Run it from anywhere;
it writes beside itself.
"""

import os

HERE = os.path.dirname(os.path.abspath(__file__))
ROOT = os.path.join(HERE, "shows", "Media")

TEMPLATES = [
    ("SpinningLogo.cnd", False),
    ("SpinningLogoSolid.cnd", False),
    ("HandwrittenText.cnd", False),
    ("Rollercoaster1stPerson.cnd", True),
    ("Rollercoaster3rdPerson.cnd", True),
    ("Road1stPerson.cnd", True),
    ("Road3rdPerson.cnd", True),
    ("Bob1stPerson.cnd", True),
    ("Bob3rdPerson.cnd", True),
    ("Tunnel.cnd", False),
]

TREES = ["Beech", "Elm", "Fir", "Juniper", "Oak", "Palm", "Spruce"]


def template(name):
    lines = [
        "Cinderlane Show 4 7",
        "LEN\t[LEN]",
        "SIZ\t1920\t1080",
        "PAR\t1",
        "BGC\t-1 -1 -1",
        "",
        "LAY\tCamera",
        "NAM\t\"%s\"" % name,
        "KEY\t0",
        "POS\t0\t[SPP]\t0",
        "PAL\t0",
        "KEY\t[LEN]",
        "",
        "LAY\tSketch",
        "FNA\t[EPS]\t19\t1\t0\tN\t0\tN",
        "MPA\t[TRO]",
        "MPB\t[TTU]",
        "SMO\t[SMO]",
        "TES\t-1\t[VVV]",
        "PAL\t0",
        "",
        "LAY\tSketch",
        "VIS\t[VI4]",
        "FNA\t[EP2] [EP3]",
        "FNA\t[EP4] [EP5] [EPS]",
        "VIS\t[VI5]",
        "MPA\t[TBO] [TRO]",
        "NOTE XLAY\tnot a layer",
        "LAY Model is no layer line either",
        "POS\t0\t[SPP]\t0",
        "PAL\t1",
        "",
    ]
    return "\r\n".join(lines)


def main():
    os.makedirs(os.path.join(ROOT, "Templates"), exist_ok=True)
    os.makedirs(os.path.join(ROOT, "Models"), exist_ok=True)
    for name, ride in TEMPLATES:
        text = template(name)
        path = os.path.join(ROOT, "Templates", name)
        with open(path, "wb") as out:
            if ride:
                out.write(b"\xff\xfe" + text.encode("utf-16-le"))
            else:
                out.write(text.encode("ascii"))
    for tree in TREES:
        path = os.path.join(ROOT, "Models", tree + ".obj")
        with open(path, "w", newline="\n") as out:
            out.write("# %s: a stand-in model for the show tests\n" % tree)
            out.write("v 0 0 0\nv 1 0 0\nv 0 200 0\nf 1 2 3\n")


if __name__ == "__main__":
    main()
