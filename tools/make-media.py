#!/usr/bin/env python3
"""Makes the files that ship beside Quillmere.exe in media/: the show
templates, the tree models, the textures, the About picture and the sample
ride and handwritten word. Everything is drawn here from code, so running the
script again gives the same bytes.

Usage: tools/make-media.py [media folder]   (default: media/ of the repository)

The traced sample logo and the sample pictures are made by
tools/make-samples.sh, which needs ImageMagick and potrace.
"""
import math
import os
import struct
import sys
import zlib

ROOT = os.path.dirname(os.path.dirname(os.path.abspath(__file__)))
MEDIA = sys.argv[1] if len(sys.argv) > 1 else os.path.join(ROOT, "media")


def write(path, data):
    os.makedirs(os.path.dirname(path), exist_ok=True)
    if isinstance(data, str):
        data = data.encode("ascii")
    with open(path, "wb") as f:
        f.write(data)


# ---- Pictures: a plain PNG writer (8-bit RGBA, no filter choice, fixed zlib
# level) so the files do not depend on any image library's version.

def png(width, height, pixel):
    """pixel(x, y) gives (r, g, b, a) in 0..255."""
    rows = bytearray()
    for y in range(height):
        rows.append(0)
        for x in range(width):
            r, g, b, a = pixel(x, y)
            rows += bytes((clamp(r), clamp(g), clamp(b), clamp(a)))

    def chunk(kind, body):
        return (struct.pack(">I", len(body)) + kind + body +
                struct.pack(">I", zlib.crc32(kind + body) & 0xFFFFFFFF))

    head = struct.pack(">IIBBBBB", width, height, 8, 6, 0, 0, 0)
    return (b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", head) +
            chunk(b"IDAT", zlib.compress(bytes(rows), 9)) + chunk(b"IEND", b""))


def clamp(v):
    return max(0, min(255, int(round(v))))


def noise(x, y, seed):
    """A repeatable hash noise in 0..1."""
    n = (x * 374761393 + y * 668265263 + seed * 2246822519) & 0xFFFFFFFF
    n = ((n ^ (n >> 13)) * 1274126177) & 0xFFFFFFFF
    return ((n ^ (n >> 16)) & 0xFFFF) / 65535.0


def smooth_noise(x, y, cell, seed):
    """Value noise over a grid of cells, tiling every 256 pixels."""
    gx, gy = x / cell, y / cell
    x0, y0 = int(math.floor(gx)), int(math.floor(gy))
    fx, fy = gx - x0, gy - y0
    period = max(1, 256 // cell)

    def at(i, j):
        return noise(i % period, j % period, seed)

    sx, sy = fx * fx * (3 - 2 * fx), fy * fy * (3 - 2 * fy)
    top = at(x0, y0) * (1 - sx) + at(x0 + 1, y0) * sx
    bottom = at(x0, y0 + 1) * (1 - sx) + at(x0 + 1, y0 + 1) * sx
    return top * (1 - sy) + bottom * sy


def mix(c1, c2, t):
    return tuple(a + (b - a) * t for a, b in zip(c1, c2))


def normal_map(height):
    """A normal map from a height function h(x, y) in 0..1."""
    def pixel(x, y):
        dx = (height(x + 1, y) - height(x - 1, y)) * 4
        dy = (height(x, y + 1) - height(x, y - 1)) * 4
        length = math.sqrt(dx * dx + dy * dy + 1)
        return (128 - 127 * dx / length, 128 - 127 * dy / length, 128 + 127 / length, 255)
    return pixel


SIZE = 256


def texture_pixels():
    """Each texture of the shows: a tiling 256 x 256 picture."""
    tex = {}

    def road(x, y):
        grain = smooth_noise(x, y, 4, 1) * 0.25 + noise(x, y, 2) * 0.1
        c = mix((70, 70, 74), (110, 110, 116), grain)
        if 120 <= x < 136 and (y % 128) < 64:  # dashed centre line
            c = (235, 235, 225)
        if x < 10 or x >= 246:  # edge lines
            c = (240, 240, 240)
        return c + (255,)
    tex["Road.png"] = road

    def tunnel(x, y):
        brick_h, brick_w = 32, 64
        row = y // brick_h
        shift = (brick_w // 2) * (row % 2)
        mortar = (y % brick_h) < 3 or ((x + shift) % brick_w) < 3
        base = mix((120, 60, 45), (160, 85, 60), noise((x + shift) // brick_w, row, 3))
        c = (150, 145, 135) if mortar else mix(base, (90, 50, 40), smooth_noise(x, y, 8, 4) * 0.4)
        return c + (255,)
    tex["Tunnel.png"] = tunnel

    def bob(x, y):
        ice = smooth_noise(x, y, 16, 5) * 0.6 + smooth_noise(x, y, 4, 6) * 0.2
        return mix((200, 225, 245), (245, 250, 255), ice) + (255,)
    tex["Bob.png"] = bob

    def bamboo(x, y):
        node = (y % 128) < 6
        stripe = 0.5 + 0.5 * math.sin(x / 256 * 2 * math.pi * 6)
        c = mix((150, 170, 70), (200, 210, 110), stripe * 0.6 + smooth_noise(x, y, 8, 7) * 0.4)
        return (mix(c, (100, 110, 40), 0.7) if node else c) + (255,)
    tex["Bamboo.png"] = bamboo

    def danger(x, y):
        band = ((x + y) // 32) % 2
        return ((250, 200, 20) if band == 0 else (25, 25, 25)) + (255,)
    tex["Danger.png"] = danger

    def rope_height(x, y):
        return 0.5 + 0.5 * math.sin(((x + y) % 64) / 64 * 2 * math.pi)

    def rope(x, y):
        h = rope_height(x, y)
        return mix((120, 90, 50), (215, 185, 130), h * 0.8 + noise(x, y, 8) * 0.2) + (255,)
    tex["Rope.png"] = rope
    tex["Rope_Normalmap.png"] = normal_map(rope_height)

    def knitting(x, y):
        cx, cy = x % 32, y % 32
        v = abs((cx - 16) - (cy - 16) * (1 if cx < 16 else -1)) / 16
        return mix((180, 30, 50), (230, 80, 90), 1 - min(1, v)) + (255,)
    tex["Knitting.png"] = knitting

    def mummy(x, y):
        band = math.sin((y + 0.3 * x) / 256 * 2 * math.pi * 8)
        c = mix((200, 190, 160), (235, 228, 205), 0.5 + 0.5 * band)
        return mix(c, (150, 140, 110), smooth_noise(x, y, 16, 9) * 0.3) + (255,)
    tex["Mummy.png"] = mummy

    def scale_height(x, y):
        cx, cy = (x % 32) - 16, (y % 32) - 8
        return max(0.0, 1 - math.sqrt(cx * cx + cy * cy) / 18)

    def snake(x, y):
        h = scale_height(x, y)
        return mix((40, 80, 30), (120, 170, 60), h) + (255,)
    tex["Snake.png"] = snake
    tex["Snake_Normalmap.png"] = normal_map(scale_height)

    def stem(x, y):
        vein = 0.5 + 0.5 * math.sin(x / 256 * 2 * math.pi * 10)
        return mix((60, 120, 40), (110, 170, 70), vein * 0.7 + noise(x, y, 10) * 0.3) + (255,)
    tex["Stem.png"] = stem

    def stripes(x, y):
        return ((255, 255, 255) if (y // 16) % 2 == 0 else (220, 30, 40)) + (255,)
    tex["Stripes.png"] = stripes

    def wood_height(x, y):
        return 0.5 + 0.5 * math.sin((x + 12 * smooth_noise(x, y, 32, 11)) / 256 * 2 * math.pi * 12)

    def wood(x, y):
        return mix((120, 75, 35), (185, 130, 75), wood_height(x, y)) + (255,)
    tex["Wood.png"] = wood
    tex["Wood_Normalmap.png"] = normal_map(wood_height)
    return tex


def leaf(x, y):
    """A falling leaf on transparency, 128 x 128."""
    u, v = (x - 64) / 56, (y - 64) / 60
    inside = u * u + v * v * (1.6 - 0.6 * v) < 1 and abs(u) < 1
    if not inside:
        return (0, 0, 0, 0)
    vein = abs(u) < 0.05 or abs(abs(u) - (v + 1) * 0.3) < 0.04
    c = (190, 110, 30) if vein else mix((210, 120, 20), (170, 60, 20), (v + 1) / 2)
    return c + (255,)


def about(x, y):
    """The About picture, 680 x 420: a ribbon along the left on white; the
    program writes its name, version and credit over the white right side."""
    c = (255, 255, 255)
    for k in range(3):
        centre = 110 + 50 * math.sin(y / 420 * 2 * math.pi + k * 0.9) + k * 40
        d = abs(x - centre)
        if d < 14:
            shade = 1 - d / 14
            c = mix(c, [(70, 120, 200), (240, 150, 40), (90, 180, 110)][k], 0.35 + 0.5 * shade)
    # The right side, where the name, version and credit stand, stays white.
    if x >= 280:
        return (255, 255, 255, 255)
    fade = min(1.0, y / 420) * (1 - x / 280)
    return mix(c, (240, 244, 250), fade * 0.5) + (255,)


# ---- Tree models: low-polygon Wavefront OBJ files, 200 units tall, the foot
# of the trunk at the origin, y up.

class Mesh:
    def __init__(self):
        self.vertices = []
        self.faces = []
        self.groups = []

    def group(self, name):
        self.groups.append((name, len(self.faces)))

    def add(self, v):
        self.vertices.append(v)
        return len(self.vertices)

    def ring(self, y, radius, sides, phase=0.0):
        return [self.add((radius * math.cos(2 * math.pi * (i + phase) / sides), y,
                          radius * math.sin(2 * math.pi * (i + phase) / sides)))
                for i in range(sides)]

    def band(self, lower, upper):
        n = len(lower)
        for i in range(n):
            j = (i + 1) % n
            self.faces.append((lower[i], lower[j], upper[j], upper[i]))

    def cap(self, ring, y, up):
        centre = self.add((0.0, y, 0.0))
        n = len(ring)
        for i in range(n):
            j = (i + 1) % n
            self.faces.append((ring[i], centre, ring[j]) if up else (ring[j], centre, ring[i]))

    def text(self, name):
        lines = ["# Quillmere tree model: %s, 200 units tall, y up" % name]
        for v in self.vertices:
            lines.append("v %.4f %.4f %.4f" % v)
        groups = self.groups + [(None, len(self.faces))]
        for (gname, start), (_, end) in zip(groups, groups[1:]):
            lines.append("g " + gname)
            for f in self.faces[start:end]:
                lines.append("f " + " ".join(str(i) for i in f))
        return "\n".join(lines) + "\n"


def trunk(mesh, height, radius, sides=6):
    mesh.group("trunk")
    bottom = mesh.ring(0.0, radius, sides)
    top = mesh.ring(height, radius * 0.7, sides)
    mesh.band(bottom, top)
    mesh.cap(bottom, 0.0, False)


def cone(mesh, base_y, top_y, radius, sides=8):
    ring = mesh.ring(base_y, radius, sides)
    tip = mesh.add((0.0, top_y, 0.0))
    for i in range(sides):
        mesh.faces.append((ring[i], ring[(i + 1) % sides], tip))
    mesh.cap(ring, base_y, False)


def blob(mesh, centre_y, radius_x, radius_y, sides=8, rings=4):
    """A rounded crown: a sphere of few faces, squashed to its radii."""
    bottom = mesh.add((0.0, centre_y - radius_y, 0.0))
    top = mesh.add((0.0, centre_y + radius_y, 0.0))
    rows = []
    for r in range(1, rings):
        a = math.pi * r / rings - math.pi / 2
        rows.append(mesh.ring(centre_y + radius_y * math.sin(a), radius_x * math.cos(a), sides,
                              0.5 * (r % 2)))
    for i in range(sides):
        mesh.faces.append((rows[0][(i + 1) % sides], rows[0][i], bottom))
        mesh.faces.append((rows[-1][i], rows[-1][(i + 1) % sides], top))
    for lower, upper in zip(rows, rows[1:]):
        mesh.band(lower, upper)


def tree(name):
    m = Mesh()
    if name in ("Fir", "Spruce"):
        trunk(m, 40, 8)
        m.group("crown")
        tiers = 4 if name == "Fir" else 5
        for k in range(tiers):
            base = 30 + k * (150 / tiers)
            cone(m, base, min(200.0, base + 70), 55 * (1 - k / (tiers + 1)))
    elif name == "Juniper":
        trunk(m, 30, 7)
        m.group("crown")
        blob(m, 110, 35, 90)
    elif name == "Palm":
        trunk(m, 170, 6)
        m.group("crown")
        centre = m.add((0.0, 175.0, 0.0))
        for k in range(7):
            a = 2 * math.pi * k / 7
            tip = m.add((90 * math.cos(a), 140.0, 90 * math.sin(a)))
            side = m.add((45 * math.cos(a + 0.25), 200.0, 45 * math.sin(a + 0.25)))
            m.faces.append((centre, side, tip))
    else:  # broad-leaved: Beech, Elm, Oak
        shape = {"Beech": (80, 70, 125), "Elm": (65, 80, 120), "Oak": (90, 65, 135)}[name]
        radius_x, radius_y, centre_y = shape
        trunk(m, centre_y - radius_y + 20, 10)
        m.group("crown")
        blob(m, centre_y, radius_x, radius_y)
    return m.text(name)


TREES = ["Beech", "Elm", "Fir", "Juniper", "Oak", "Palm", "Spruce"]


# ---- Show templates: shows with markers where the saved sketch goes.

def head(length):
    return ["Cinderlane Show 4 7", "LEN\t" + length, "SIZ\t1920\t1080", "PAR\t1", "BGC\t-1 -1 -1", ""]


def camera(pos, rot, fov="1.047198", keys=()):
    lines = ["LAY\tCamera", "TP1\t0", "TP2\t0", "TP3\t0", "PHY\t0", "VIS\tY", "KEY\t0",
             "POS\t" + pos, "ROT\t" + rot, "FOV\t" + fov, "SIZ\t300", "DRC\t0\t0\t0", "TAR\t0",
             "BRI\t1", "GAM\t1", "KLE\t1\t1\t1", "COL\t1", "FOR\t0\t0", "FOC\t0\t0\t0", "GWI\t1",
             "GWR\t50", "GCO\t1\t1\t1", "FAS\t0", "FAC\t0\t0\t0", "ACA\t1", "PUD\t0", "PAL\t0"]
    for time, values in keys:
        lines += ["KEY\t" + time] + values
    return lines + [""]


def light(shadow_plane="-25"):
    return ["LAY\tLight", "TP1\t1", "TP2\t0", "TP3\t3", "PHY\t0", "VIS\tY", "KEY\t0",
            "POS\t-200 200 -200", "DIR\t-200 200 -700", "COL\t1\t1\t1", "COS\t0\t0\t0", "INT\t1",
            "BEA\t0", "BER\t500", "BEC\t0.5\t0.5\t0.5", "SHA\t0.2", "SSO\t1\t1", "SMQ\t0.5\t0.5",
            "SPP\t" + shadow_plane, "FLS\t100", "FLC\t1\t1\t1", "PAL\t0", ""]


def container(name, pos="0\t0\t0", keys=()):
    lines = ["LAY\tContainer", "PHY\t0", "VIS\tY", "NAM\t\"%s\"" % name, "KEY\t0", "POS\t" + pos,
             "ROT\t0\t0\t0", "ROC\t0\t0\t0", "SCA\t1\t1\t1", "ALP\t0", "JOI\t0", "PAR\t0"]
    for time, values in keys:
        lines += ["KEY\t" + time] + values
    return lines + [""]


def sketch(name, path, parent, kind="0", radius="2", texture="", visible="Y", colour="1\t1\t1",
           start="0 0", tail="N", smooth="0", keys=(), effect="PBR.cfx"):
    lines = ["LAY\tSketch", "TP1\t" + kind, "TP2\t10", "TP3\t0", "PHY\t0", "VIS\t" + visible,
             "NAM\t\"%s\"" % name, "MPA\t" + (texture or "\"\""), "MPB\t\"\"",
             "FXP\t\"%s\"" % effect, "FNA\t" + path + "\t19\t1\t0\tN\t0\t" + tail,
             "KEY\t0", "POS\t0\t0\t0", "ROT\t0\t0\t0", "SCA\t1\t1\t1",
             "PFS\t%s %s" % (radius, radius), "RAD\t1\t1\t0", "PRO\t1.570796",
             "COL\t" + colour, "COS\t0\t0\t0", "SPE\t0.3", "ALP\t0", "OFF\t0\t0\t0",
             "SHE\t0\t0\t0", "STA\t" + start, "TRA\t0", "TEP\t0\t0", "TES\t-1\t1",
             "SMO\t" + smooth, "SLE\t0", "GRA\t0", "FRI\t1", "MSP\t1\t1", "ESP\t0", "BIA\t0",
             "PAL\t" + str(parent), "EF0\t-1 -1", "EF1\t1", "EF2\t1", "EF3\t0\t0\t0", "EF4\t1",
             "EF5\t0.5", "EF6\t0.5", "EF7\t-1"]
    for time, values in keys:
        lines += ["KEY\t" + time] + values
    return lines + [""]


def ground(parent, texture, y="[SPP]"):
    return ["LAY\tMedia", "TP1\t0", "TP2\t2", "TP3\t0", "PHY\t0", "VIS\tY",
            "NAM\t\"Ground\"", "MPA\t" + texture, "KEY\t0", "POS\t0\t" + y + "\t0",
            "ROT\t0\t1.570796\t0", "ROC\t0\t0\t0", "SCA\t20\t20\t1", "COL\t1\t1\t1",
            "COS\t0\t0\t0", "SPE\t0", "ALP\t0", "BEV\t1\t1\t0", "TRE\t0\t0", "ORE\t1\t1\t1",
            "FLE\t0.25\t1\t0", "FRA\t1\t1", "FPS\t10", "RAD\t0.2", "STA\t12\t30\t0",
            "DEC\t0\t0\t0", "DES\t50", "XPL\t0\t0", "MAX\t0\t0", "VOL\t1", "MOS\t1", "BIA\t-1",
            "PAL\t" + str(parent), ""]


def ride(kind, first_person):
    """A coaster, road or bob ride: camera, light, the world container (3),
    the ground and the track with its structure, foundation and trees."""
    track = {"Rollercoaster": dict(kind="3", radius="3", texture="", colour="0.8\t0.1\t0.1"),
             "Road": dict(kind="1", radius="12", texture="[TRO]", colour="1\t1\t1"),
             "Bob": dict(kind="0", radius="8", texture="[TBO]", colour="1\t1\t1")}[kind]
    ground_texture = "[TRO]" if kind == "Road" else "\"\""
    if first_person:
        # The camera rides along the path: its sketch layer carries one V per
        # stretch of track, so the ride takes as long as the show.
        cam = camera("0\t0\t0", "0\t0\t0", keys=(("[LEN]", ["POS\t0\t0\t0"]),))
        rider = sketch("Ride path", "[EPS]", 3, visible="N", start="0 0", tail="[VVV]",
                       smooth="[SMO]", keys=(("[LEN]", ["STA\t1 1"]),))
    else:
        cam = camera("0\t150\t-600", "0\t0.25\t0")
        rider = sketch("Cart", "[EPS]", 3, kind="3", radius="5", visible="Y", start="0 0.02",
                       tail="[VVV]", smooth="[SMO]", keys=(("[LEN]", ["STA\t0.98 1"]),))
    world_keys = () if first_person else (("[LEN]", ["ROT\t6.283185\t0\t0"]),)
    lines = head("[LEN]") + cam + light("[SPP]") + container("World", keys=world_keys)
    lines += ground(3, ground_texture)
    lines += sketch("Track", "[EPS]", 3, kind=track["kind"], radius=track["radius"],
                    texture=track["texture"], colour=track["colour"], smooth="[SMO]")
    lines += sketch("Structure", "[EP2]", 3, kind="0", radius="1.5", colour="0.6\t0.6\t0.6")
    lines += sketch("Foundation", "[EP3]", 3, kind="3", radius="4", colour="0.5\t0.5\t0.5")
    lines += sketch("Trunks", "[EP4]", 3, kind="0", radius="2", colour="0.4\t0.25\t0.1",
                    visible="[VI4]")
    lines += sketch("Leaves", "[EP5]", 3, kind="0", radius="10", colour="0.2\t0.5\t0.15",
                    visible="[VI5]")
    lines += rider
    return lines


def spinning_logo(solid):
    lines = head("10000") + camera("0\t0\t-500", "0\t0\t0") + light()
    lines += container("Logo", keys=(("10000", ["ROT\t6.283185\t0\t0"]),))
    lines += sketch("Logo", "[EPS]", 3, kind="2" if solid else "0", radius="3",
                    colour="0.9\t0.7\t0.2")
    return lines


def handwritten():
    lines = head("[LEN]") + camera("0\t0\t-500", "0\t0\t0") + light()
    lines += container("Text")
    lines += sketch("Handwriting", "[EPS]", 3, kind="0", radius="2", colour="0.1\t0.2\t0.6",
                    start="0 0", smooth="[SMO]", keys=(("[LEN]", ["STA\t1 0"]),))
    return lines


def tunnel():
    lines = head("30000") + camera("0\t0\t0", "0\t0\t0", keys=(("30000", ["POS\t0\t0\t0"]),))
    lines += light() + container("Tunnel")
    lines += sketch("Tunnel", "[EPS]", 3, kind="0", radius="40", texture="[TTU]",
                    colour="1\t1\t1")
    lines += sketch("Ride path", "[EPS]", 3, visible="N", keys=(("30000", ["STA\t1 1"]),))
    return lines


TEMPLATES = {
    "SpinningLogo.cnd": spinning_logo(False),
    "SpinningLogoSolid.cnd": spinning_logo(True),
    "HandwrittenText.cnd": handwritten(),
    "Rollercoaster1stPerson.cnd": ride("Rollercoaster", True),
    "Rollercoaster3rdPerson.cnd": ride("Rollercoaster", False),
    "Road1stPerson.cnd": ride("Road", True),
    "Road3rdPerson.cnd": ride("Road", False),
    "Bob1stPerson.cnd": ride("Bob", True),
    "Bob3rdPerson.cnd": ride("Bob", False),
    "Tunnel.cnd": tunnel(),
}


def show_text(lines):
    while lines and lines[-1] == "":
        lines = lines[:-1]
    return "\r\n".join(lines) + "\r\n"


# ---- Samples: a ride of many elements and a handwritten word.

RIDE = """Quillmere track 1
Move 0 0 0 0
Element "Straight line" 60
Element "Lift hill" 160 90
Element "Pre-drop" 40 -10
Element Dive 120 -70
Element Hill 90 30
Element Turn 180 60 0 20
Element "Circular loop" 40 10 0
Element Hill 80 -10
Element Corkscrew 120 12 1
Element "Top hat" 30 20 60
Element "Cobra roll" 40 30 60
Element "Straight line" 40
Element Turn 180 60 0 20
Element "Straight line" 60
"""


def handwritten_eps():
    """The word "Hello" as one stroke of cubic segments, in the 2D form of
    the EPS dialect (two numbers per point)."""
    strokes = [
        # h
        [(0, 0), (10, 60), (20, 120), (30, 150), (38, 160), (30, 110), (22, 60), (15, 20),
         (8, 0), (20, 40), (40, 60), (55, 50), (60, 35), (58, 15), (60, 0)],
        # e
        [(60, 0), (70, 10), (90, 25), (95, 40), (97, 55), (75, 55), (72, 35), (70, 15),
         (85, 0), (100, 0)],
        # l
        [(100, 0), (120, 60), (140, 120), (142, 150), (140, 165), (125, 140), (122, 90),
         (120, 30), (130, 0), (140, 0)],
        # l
        [(140, 0), (160, 60), (180, 120), (182, 150), (180, 165), (165, 140), (162, 90),
         (160, 30), (170, 0), (180, 0)],
        # o
        [(180, 0), (200, 0), (215, 20), (215, 45), (212, 60), (195, 60), (188, 45), (185, 20),
         (200, 0), (230, 40)],
    ]
    points = []
    for stroke in strokes:
        points += stroke if not points else stroke[1:]
    lines = ["%!PS-Adobe-3.0 EPSF-3.0", "%%Creator: Brambleworks Quillmere",
             "%%Cinderlane Centre Y", "%%Cinderlane Scale Y", "%%LanguageLevel: 2",
             "%%BoundingBox: -10 -10 250 180", "%%Pages: 1", "%%EndComments", "%Page: 1 1",
             "gsave", "1 1 scale"]
    lines.append("%d %d moveto" % points[0])
    # Catmull-Rom through the points, written as cubic segments.
    for i in range(len(points) - 1):
        p0 = points[max(0, i - 1)]
        p1, p2 = points[i], points[i + 1]
        p3 = points[min(len(points) - 1, i + 2)]
        c1 = (p1[0] + (p2[0] - p0[0]) / 6, p1[1] + (p2[1] - p0[1]) / 6)
        c2 = (p2[0] - (p3[0] - p1[0]) / 6, p2[1] - (p3[1] - p1[1]) / 6)
        lines.append("%s %s %s %s %s %s curveto" % tuple(
            fmt(v) for v in (c1[0], c1[1], c2[0], c2[1], p2[0], p2[1])))
    lines += ["0 setgray", "2 setlinewidth stroke", "grestore", "%%EOF"]
    return "\r\n".join(lines) + "\r\n"


def fmt(v):
    text = ("%.6f" % v).rstrip("0").rstrip(".")
    return "0" if text in ("-0", "") else text


def main():
    for name, lines in TEMPLATES.items():
        write(os.path.join(MEDIA, "Templates", name), show_text(lines))
    for name in TREES:
        write(os.path.join(MEDIA, "Models", name + ".obj"), tree(name))
    for name, pixel in texture_pixels().items():
        write(os.path.join(MEDIA, "Textures", name), png(SIZE, SIZE, pixel))
    write(os.path.join(MEDIA, "Textures", "Leaf.png"), png(128, 128, leaf))
    write(os.path.join(MEDIA, "skins", "About.png"), png(680, 420, about))
    write(os.path.join(MEDIA, "Samples", "Ride.qo"), RIDE.replace("\n", "\r\n"))
    write(os.path.join(MEDIA, "Samples", "Hello.eps"), handwritten_eps())


if __name__ == "__main__":
    main()
