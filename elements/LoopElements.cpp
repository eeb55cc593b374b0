// The elements that leave the plane of travel or turn the track over. Each is
// a small fixed number of Bezier points. In the local frame a level track has
// the roll (1, 0, 0); a loop without twist keeps it all the way round, so the
// rider is upside down at the top, and a twisted one turns it step by step.
// Roll vectors that are not normalised stay so: the frame of a point
// normalises what it reads.

#include "elements/ElementPieces.h"

#include <cmath>

// ---- "Immelmann turn" and "Circular loop"

// p: radius, width (the sideways shift over the loop, any sign), twist (read
// only as zero, positive or negative). Without twist the arcs are half
// circles between the points; a twist adds a point on each side, where the
// roll stands along Z, and the arcs become quarter circles.
void BuildHalfOrFullLoop(const float p[4], bool full, WLocalPiece& piece) {
    float R = p[0], W = p[1], T = p[2];
    if (!(R > 0)) return;
    float l = ArcHandle(R, std::tan(T == 0 ? QuarterPi : EighthPi));
    float around = R * TwoPi;
    float q = std::sqrt(around * around + W * W); // helix length
    float w = l * W / q;                          // sideways handle part
    float g = T > 0 ? 1.0f : -1.0f;
    if (T != 0) AddLocal(piece, MPoint3{Times(W, 0.25), R, R}, MPoint3{w, l, 0}, MPoint3{0, 0, g});
    // Without a twist the rider is inverted at the top; with one the roll
    // has turned over and the rider is upright.
    AddLocal(piece, MPoint3{Times(W, 0.5), 2 * R, 0}, MPoint3{w, 0, -l},
             MPoint3{T == 0 ? 1.0f : -1.0f, 0, 0});
    if (full) {
        if (T != 0)
            AddLocal(piece, MPoint3{Times(W, 0.75), R, -R}, MPoint3{w, -l, 0}, MPoint3{0, 0, g});
        MPoint3 h{0, 0, l};
        AddLocal(piece, MPoint3{W, 0, 0}, h, Side(h));
    }
    piece.Start = MPoint3{0, 0, l};
}

// ---- "Clothoid loop"

// p: lower radius R1, upper radius R2, width, twist. The lower arcs have
// radius R1, the top arc R2, so the handle lengths change at the rising and
// the falling point. The sideways shift follows the path length: a point's x
// is its length along the loop times W / c. The loop ends 2 (R1 - R2)
// further along Z than it starts.
void BuildClothoidLoop(const float p[4], WLocalPiece& piece) {
    float R1 = p[0], R2 = p[1], W = p[2], T = p[3];
    if (!(R1 > 0) || !(R2 > 0)) return;
    float tangent = std::tan(EighthPi);
    float a = ArcHandle(R1, tangent);
    float b = ArcHandle(R2, tangent);
    float c = R2 * Pi + R1 * Pi; // path length
    float wa = a * W / c, wb = b * W / c;
    // Both quarter lengths are formed in double precision from the float
    // radius and pi, and so are the products that place the points sideways.
    double e1 = double(R1) * double(Pi) * 0.5;
    double e2 = double(R2) * double(Pi);
    float z2 = R1 - 2 * R2;
    float g = T > 0 ? 1.0f : -1.0f;
    MPoint3 sideRoll = T == 0 ? MPoint3{1, 0, 0} : MPoint3{0, 0, g};

    MPoint3 rising{float(e1 * W / c), R1, R1};
    AddLocal(piece, rising, rising - MPoint3{wa, a, 0}, rising + MPoint3{wb, b, 0}, sideRoll);
    MPoint3 top{float((e2 * 0.5 + e1) * W / c), R1 + R2, R1 - R2};
    AddLocal(piece, top, top - MPoint3{wb, 0, -b}, top + MPoint3{wb, 0, -b},
             MPoint3{T == 0 ? 1.0f : -1.0f, 0, 0});
    MPoint3 falling{float((e1 + e2) * W / c), R1, z2};
    AddLocal(piece, falling, falling - MPoint3{wb, -b, 0}, falling + MPoint3{wa, -a, 0}, sideRoll);
    MPoint3 end{W, 0, z2 + R1};
    AddLocal(piece, end, MPoint3{0, 0, a}, MPoint3{1, 0, 0});
    piece.Start = MPoint3{0, 0, a};
}

// ---- "Dive loop"

// p: angle in degrees, radius, height (any sign). Half a loop up to an apex,
// then back down above (or below) the start, turned by the angle.
void BuildDiveLoop(const float p[4], WLocalPiece& piece) {
    float A = p[0], R = p[1], H = p[2];
    if (A == 0 || !(R > 0)) return;
    float a = A * DegreeFactor;
    float l = ArcHandle(R, std::tan(QuarterPi));
    float b = float(double(a + Pi) * 0.5 + double(Pi)); // the apex heading
    float sb = std::sin(b), cb = std::cos(b);
    float across = 2 * R;
    MPoint3 apex{sb * across, float(double(H) * 0.5 + double(across)), cb * across};
    // The apex roll points away from the start, seen from the local origin,
    // and towards it for a turn to the left.
    MPoint3 roll = Unit(apex);
    if (a < 0) roll = MPoint3{-roll.x, -roll.y, -roll.z};
    AddLocal(piece, apex, MPoint3{-cb * l, 0, sb * l}, roll);
    MPoint3 h{std::sin(a) * l, 0, std::cos(a) * l};
    AddLocal(piece, MPoint3{0, H, 0}, h, Side(h));
    piece.Start = MPoint3{0, 0, l};
}

// ---- "Top hat"

// p: bottom radius, top radius, height; all must be positive, unlike a hill's
// height. A vertical climb, a half circle over the top whose handles stand
// upright, a vertical drop; the quarter circles at the bottom have the
// smaller handles. All in the plane x = 0.
void BuildTopHat(const float p[4], WLocalPiece& piece) {
    float R1 = p[0], R2 = p[1], H = p[2];
    if (!(R1 > 0) || !(R2 > 0) || !(H > 0)) return;
    float a = ArcHandle(R1, std::tan(EighthPi));
    float b = ArcHandle(R2, std::tan(QuarterPi));
    float zDescent = R1 + 2 * R2;
    float z1 = zDescent + R1;
    const MPoint3 level{1, 0, 0};
    AddLocal(piece, MPoint3{0, R1, R1}, MPoint3{0, a, 0}, level);
    AddLocal(piece, MPoint3{0, R1 + H, R1}, MPoint3{0, b, 0}, level);
    AddLocal(piece, MPoint3{0, R1 + H, zDescent}, MPoint3{0, -b, 0}, level);
    AddLocal(piece, MPoint3{0, R1, zDescent}, MPoint3{0, -a, 0}, level);
    AddLocal(piece, MPoint3{0, 0, z1}, MPoint3{0, 0, a}, level);
    piece.Start = MPoint3{0, 0, a};
}

// ---- "Corkscrew"

// p: length, radius, twist (only its sign counts). A full barrel roll around
// the axis through the start. A radius of 0 or below puts the points on the
// axis with handles of length 1 along it.
void BuildCorkscrew(const float p[4], WLocalPiece& piece) {
    float L = p[0], R = p[1], T = p[2];
    if (!(L > 0) || T == 0) return;
    float b = 0, u = 1;
    if (R > 0) {
        b = ArcHandle(R, std::tan(EighthPi));
        u = b * L / (2 * R * Pi);
    }
    if (T > 0) {
        AddLocal(piece, MPoint3{0, R, Times(L, 0.25)}, MPoint3{b, 0, u}, MPoint3{0, -1, 0});
        AddLocal(piece, MPoint3{R, 0, Times(L, 0.5)}, MPoint3{0, -b, u}, MPoint3{-1, 0, 0});
        AddLocal(piece, MPoint3{0, -R, Times(L, 0.75)}, MPoint3{-b, 0, u}, MPoint3{0, 1, 0});
    } else {
        AddLocal(piece, MPoint3{0, R, Times(L, 0.25)}, MPoint3{-b, 0, u}, MPoint3{0, 1, 0});
        AddLocal(piece, MPoint3{-R, 0, Times(L, 0.5)}, MPoint3{0, -b, u}, MPoint3{-1, 0, 0});
        AddLocal(piece, MPoint3{0, -R, Times(L, 0.75)}, MPoint3{b, 0, u}, MPoint3{0, -1, 0});
    }
    AddLocal(piece, MPoint3{0, 0, L}, MPoint3{0, 0, u}, MPoint3{1, 0, 0});
    piece.Start = MPoint3{0, 0, u};
}

// ---- "Cobra roll"

// p: radius, angle in degrees, width (negative turns left). Up a part of a
// loop at x = 0 in two steps, across by a sideways half turn, and back down
// the same part of a loop at x = W, ending at (W, 0, 0) heading along -Z.
void BuildCobraRoll(const float p[4], WLocalPiece& piece) {
    float R = p[0], A = p[1], W = p[2];
    if (!(R > 0) || A == 0 || W == 0) return;
    float a = A * DegreeFactor;
    float a1 = a / 3;
    float a2 = (a + a) / 3;
    float step = std::fabs(a1);
    float l = step > Pi ? R : ArcHandle(R, std::tan(step / 4));
    float m = ArcHandle(R, std::tan(EighthPi)); // crossing handle
    if (W < 0) m = -m;
    float c = Times(W, 0.5); // half width
    float s1 = std::sin(a1), c1 = std::cos(a1);
    float s2 = std::sin(a2), c2 = std::cos(a2);
    float s = std::sin(a), co = std::cos(a);

    const MPoint3 positions[5] = {{0, R - c1 * R, s1 * R},
                                  {0, R - c2 * R, s2 * R},
                                  {c, R - co * R, s * R},
                                  {W, R - c2 * R, s2 * R},
                                  {W, R - c1 * R, s1 * R}};
    const MPoint3 handles[5] = {{0, s1 * l, c1 * l},
                                {0, s2 * l, c2 * l},
                                {m, 0, 0},
                                {0, -(s2 * l), -(c2 * l)},
                                {0, -(s1 * l), -(c1 * l)}};
    // The rolls point from the centre of the turn, (c, R, 0), out to the
    // point, and inwards for a positive width.
    const MPoint3 centre{c, R, 0};
    for (int32_t k = 0; k < 5; k++) {
        MPoint3 roll = Unit(positions[k] - centre);
        if (W > 0) roll = MPoint3{-roll.x, -roll.y, -roll.z};
        AddLocal(piece, positions[k], handles[k], roll);
    }
    AddLocal(piece, MPoint3{W, 0, 0}, MPoint3{0, 0, -l}, MPoint3{-1, 0, 0});
    piece.Start = MPoint3{0, 0, l};
}

// ---- "Batwing"

// p: radius, width (negative turns right and ends up left), height (any
// sign). Out to one wing, back through the middle sideways, out to the other
// wing, and down to (W, 0, 0) heading along -Z.
void BuildBatwing(const float p[4], WLocalPiece& piece) {
    float R = p[0], W = p[1], H = p[2];
    if (!(R > 0) || W == 0) return;
    float l = ArcHandle(R, std::tan(QuarterPi));
    float across = 2 * R;
    float Y = float(double(H) * 0.5 + double(across));
    float middle = Times(W, 0.5);
    if (W > 0) {
        MPoint3 first{-across, Y, across};
        AddLocal(piece, first, MPoint3{-l, 0, -l}, Unit(first));
        AddLocal(piece, MPoint3{middle, H, 0}, MPoint3{2 * l, 0, 0}, MPoint3{0, 0, -1});
        AddLocal(piece, MPoint3{across + W, Y, across}, MPoint3{-l, 0, l},
                 Unit(MPoint3{across, Y, across}));
    } else {
        MPoint3 first{across, Y, across};
        AddLocal(piece, first, MPoint3{l, 0, -l}, Unit(MPoint3{-first.x, -first.y, -first.z}));
        AddLocal(piece, MPoint3{middle, H, 0}, MPoint3{-2 * l, 0, 0}, MPoint3{0, 0, 1});
        AddLocal(piece, MPoint3{W - across, Y, across}, MPoint3{l, 0, l},
                 Unit(MPoint3{across, -Y, -across}));
    }
    AddLocal(piece, MPoint3{W, 0, 0}, MPoint3{0, 0, -l}, MPoint3{-1, 0, 0});
    piece.Start = MPoint3{0, 0, l};
}

// ---- "Hammerhead turn"

// The point y, z turned onto the circle of radius k that leans the climb:
// phi = z / k, y = k - cos(phi) k, z = sin(phi) k; x stays.
static MPoint3 BendUp(const MPoint3& v, float k) {
    float phi = v.z / k;
    return MPoint3{v.x, k - std::cos(phi) * k, std::sin(phi) * k};
}

// p: length, radius, width (negative turns left), angle in degrees. A run of
// length L, a flat half turn of radius R banked on its side, and a long
// straight back to (W, 0, 0) heading along -Z. Built for a positive width and
// mirrored; a non-zero angle bends the run and the turn upwards so that the
// climb leans by that angle, while the way back stays on the ground.
void BuildHammerhead(const float p[4], WLocalPiece& piece) {
    float L = p[0], R = p[1], W = p[2], A = p[3];
    if (!(R > 0) || W == 0 || !(L > 0)) return;
    float w = std::fabs(W);
    float m = ArcHandle(R, std::tan(EighthPi));
    float n = 4 * m; // the long end handle
    float c = Times(w, 0.5);

    WSketchPoint points[4];
    const MPoint3 positions[4] = {{c - R, 0, L}, {c, 0, L + R}, {c + R, 0, L}, {w, 0, 0}};
    const MPoint3 handles[4] = {{0, 0, m}, {m, 0, 0}, {0, 0, -m}, {0, 0, -n}};
    for (int32_t k = 0; k < 4; k++) {
        points[k].Position = positions[k];
        points[k].HandleIn = positions[k] - handles[k];
        points[k].HandleOut = positions[k] + handles[k];
    }
    points[0].Roll = Unit(MPoint3{1, -1, 0});
    points[1].Roll = MPoint3{0, -1, -1};
    points[2].Roll = Unit(MPoint3{-1, -1, 0});
    points[3].Roll = Side(handles[3]);

    if (W < 0) {
        for (WSketchPoint& point : points) {
            point.Position.x = -point.Position.x;
            point.HandleIn.x = -point.HandleIn.x;
            point.HandleOut.x = -point.HandleOut.x;
        }
        points[0].Roll = MPoint3{1, 1, 0};
        points[1].Roll = MPoint3{0, 1, 1};
        points[2].Roll = MPoint3{-1, 1, 0};
    }

    if (A != 0) {
        float d = A * DegreeFactor;
        float k = (L + R) / d;
        for (int32_t i = 0; i < 3; i++) {
            WSketchPoint& point = points[i];
            // The roll turns with the phi of the position, taken before the bend.
            float phi = point.Position.z / k;
            float cp = std::cos(phi), sp = std::sin(phi);
            MPoint3 r = point.Roll;
            point.Roll = MPoint3{r.x, r.y * cp + r.z * sp, r.z * cp - r.y * sp};
            point.Position = BendUp(point.Position, k);
            point.HandleIn = BendUp(point.HandleIn, k);
            point.HandleOut = BendUp(point.HandleOut, k);
        }
    }

    for (const WSketchPoint& point : points)
        AddLocal(piece, point.Position, point.HandleIn, point.HandleOut, point.Roll);
    piece.Start = MPoint3{0, 0, n};
}
