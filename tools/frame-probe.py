#!/usr/bin/env python3
"""Watches a rectangle of the X screen for the frames of the program.

Reads the pixels straight from the X server (XGetImage through ctypes), a few
milliseconds a look, so that the time a frame appears can be told to within
a few milliseconds rather than the tenths of a second of a screenshot tool.
Times are printed as seconds since the epoch, to be set against the time at
which a script acted (date +%s.%N).

  frame-probe.py X Y W H dark-count
      the number of dark pixels (every channel below 64) in the rectangle
  frame-probe.py X Y W H wait-dark COUNT TIMEOUT
      waits until COUNT or more pixels are dark; prints the time and count
  frame-probe.py X Y W H save FILE
      keeps the rectangle's pixels in FILE
  frame-probe.py X Y W H wait-change FILE TIMEOUT
      waits until the rectangle differs from FILE, then until two looks
      20 ms apart agree (the frames have come to rest); prints the time of
      the first difference, the time of rest and the changed pixel count
Exit code 1 when the timeout passes first, 2 on a display problem.
"""
import ctypes
import ctypes.util
import sys
import time


class XImage(ctypes.Structure):
    _fields_ = [
        ("width", ctypes.c_int),
        ("height", ctypes.c_int),
        ("xoffset", ctypes.c_int),
        ("format", ctypes.c_int),
        ("data", ctypes.c_void_p),
        ("byte_order", ctypes.c_int),
        ("bitmap_unit", ctypes.c_int),
        ("bitmap_bit_order", ctypes.c_int),
        ("bitmap_pad", ctypes.c_int),
        ("depth", ctypes.c_int),
        ("bytes_per_line", ctypes.c_int),
        ("bits_per_pixel", ctypes.c_int),
    ]


ZPixmap = 2
AllPlanes = ctypes.c_ulong(0xFFFFFFFF)

x11 = ctypes.CDLL(ctypes.util.find_library("X11") or "libX11.so.6")
x11.XOpenDisplay.restype = ctypes.c_void_p
x11.XOpenDisplay.argtypes = [ctypes.c_char_p]
x11.XDefaultRootWindow.restype = ctypes.c_ulong
x11.XDefaultRootWindow.argtypes = [ctypes.c_void_p]
x11.XGetImage.restype = ctypes.POINTER(XImage)
x11.XGetImage.argtypes = [ctypes.c_void_p, ctypes.c_ulong, ctypes.c_int, ctypes.c_int,
                          ctypes.c_uint, ctypes.c_uint, ctypes.c_ulong, ctypes.c_int]
x11.XDestroyImage.argtypes = [ctypes.POINTER(XImage)]


def grab(display, root, x, y, w, h):
    """The rectangle as bytes of 4 per pixel (blue, green, red, pad)."""
    image = x11.XGetImage(display, root, x, y, w, h, AllPlanes, ZPixmap)
    if not image:
        sys.exit("frame-probe: XGetImage failed")
    try:
        img = image.contents
        if img.bits_per_pixel != 32:
            sys.exit("frame-probe: a screen of 32 bits per pixel is needed")
        raw = ctypes.string_at(img.data, img.bytes_per_line * img.height)
        if img.bytes_per_line != 4 * w:
            raw = b"".join(raw[r * img.bytes_per_line:r * img.bytes_per_line + 4 * w]
                           for r in range(img.height))
        return raw
    finally:
        x11.XDestroyImage(image)


# A byte of 1 for a dark channel and 0 otherwise; a pixel is dark when its
# three colour channels are, whatever its pad byte.
_DARK = bytes(1 if b < 64 else 0 for b in range(256))


def dark_count(pixels):
    words = memoryview(pixels.translate(_DARK)).cast("I").tolist()
    # The aligned words whose three colour bytes are all dark.
    return words.count(0x01010101) + words.count(0x00010101)


def changed_pixels(a, b):
    if len(a) != len(b):
        return max(len(a), len(b)) // 4
    wa = memoryview(a).cast("I").tolist()
    wb = memoryview(b).cast("I").tolist()
    return sum(1 for p, q in zip(wa, wb) if (p ^ q) & 0x00FFFFFF)


def main():
    if len(sys.argv) < 6:
        sys.exit(__doc__)
    x, y, w, h = (int(v) for v in sys.argv[1:5])
    command, args = sys.argv[5], sys.argv[6:]
    display = x11.XOpenDisplay(None)
    if not display:
        print("frame-probe: no display", file=sys.stderr)
        return 2
    root = x11.XDefaultRootWindow(display)

    def look():
        return grab(display, root, x, y, w, h)

    if command == "dark-count":
        print(dark_count(look()))
        return 0
    if command == "save":
        with open(args[0], "wb") as out:
            out.write(look())
        return 0
    if command == "wait-dark":
        want, until = int(args[0]), time.time() + float(args[1])
        count = 0
        while time.time() <= until:
            seen = time.time()
            count = dark_count(look())
            if count >= want:
                print("%.3f %d" % (seen, count))
                return 0
            time.sleep(0.005)
        print("frame-probe: %d dark pixels after %s s, wanted %d" % (count, args[1], want),
              file=sys.stderr)
        return 1
    if command == "wait-change":
        before = open(args[0], "rb").read()
        until = time.time() + float(args[1])
        first = None
        previous = None
        while time.time() <= until:
            seen = time.time()
            now = look()
            if first is None:
                if now != before:
                    first = seen
                    previous = now
            elif now == previous:
                print("%.3f %.3f %d" % (first, seen, changed_pixels(before, now)))
                return 0
            else:
                previous = now
            time.sleep(0.02 if first is not None else 0.003)
        print("frame-probe: the rectangle %s within %s s" %
              ("did not come to rest" if first else "did not change", args[1]), file=sys.stderr)
        return 1
    sys.exit(__doc__)


if __name__ == "__main__":
    sys.exit(main())
