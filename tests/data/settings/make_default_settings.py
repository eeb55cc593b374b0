#!/usr/bin/env python3
"""Writes the expected bytes of a settings file holding only defaults.

The files are built here from the table of keys and defaults, not by the
program, so that the unit test compares the program's writer with an
independent account of the format: UTF-16 little endian with its mark, one
record a line, key and values separated by tabs, CR LF at each end, booleans
as Y and N, a value with a blank in double quotes, an empty string as "".

The test pins what depends on the machine: a screen of 1920 by 1080 pixels
(virtual screen the same), and the program and documents folders below.
"""
import os

HERE = os.path.dirname(os.path.abspath(__file__))

BUILDS = {
    # name: (separator, program folder, documents folder of the user)
    "default_posix.txt": ("/", "/opt/Brambleworks Quillmere", "/tmp/quillmere-golden/Documents"),
    "default_win.txt": ("\\", "C:\\Program Files\\Quillmere", "C:\\quillmere-golden\\Documents"),
}


def text_field(value):
    if value == "":
        return '""'
    if " " in value or "\t" in value:
        return '"' + value + '"'
    return value


def records(sep, program, documents):
    # The main window: 0.8 of 1920 by 1080, truncated, centred.
    width, height = int(1920 * 0.8), int(1080 * 0.8)
    left, top = (1920 - width) // 2, (1080 - height) // 2
    info_left = left + int(width * 0.8)
    info_top = top + int(height * 0.05)
    element_top = info_top + int(height * 0.5)
    mode_top = top + int(height * 0.4)
    yes, no = "Y", "N"
    rows = [
        ["WindowRect", top, left + width, top + height, left],  # top, right, bottom, left
        ["WindowRect_Info", info_top, 0, 0, info_left],
        ["WindowRect_Element", element_top, 0, 0, info_left],
        ["WindowRect_Mode", mode_top, 0, 0, left],
        ["ShowWindow_Point", yes],
        ["ShowWindow_Element", yes],
        ["ShowWindow_Mode", yes],
        ["SaveSolid", no],
        ["SaveRoll", no],
        ["MaxLinesPerCurve", 100],
        ["FolderOpenSketch", text_field(program + sep + "Media" + sep + "Sketches")],
        ["FolderSaveSketch", text_field(documents + sep + "Brambleworks" + sep + "Quillmere")],
        ["FolderSelectPicture", text_field(program + sep + "Media" + sep + "Pictures")],
        ["FolderSelectExecutable", text_field("")],
        ["ColourBackground", 255, 255, 255],
        ["ColourGrid", 229, 229, 229],
        ["ColourInfo", 128, 128, 128],
        ["ColourSketch", 0, 0, 0],
        ["ColourBezier", 107, 157, 227],
        ["ColourRoll", 75, 222, 189],
        ["ColourGhost", 0, 255, 0],
        ["PenSize", 2],
        ["PointSize", 8],
        ["GridSize", 10],
        ["UseGrid", no],
        ["DisplaySize", 100],
        ["ShowHelpTexts", yes],
        ["ExternalTracer", text_field("")],
    ]
    rows += [["Template", index, no] for index in range(9)]
    rows += [["Smooth", 200], ["TreeType", 5]]
    return rows


def main():
    for name, (sep, program, documents) in BUILDS.items():
        text = "".join("\t".join(str(v) for v in row) + "\r\n" for row in records(sep, program, documents))
        with open(os.path.join(HERE, name), "wb") as out:
            out.write(b"\xff\xfe" + text.encode("utf-16-le"))


if __name__ == "__main__":
    main()
