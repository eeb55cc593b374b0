// The plain elements: straight pieces, hills and dives, the turn and the two
// road pieces. Local frame: +Z ahead, +Y up, +X to the right.

#include "elements/ElementPieces.h"

#include <cmath>

// ---- Straight pieces, hills and dives

void BuildStraight(const float p[4], WLocalPiece& piece) {
    float L = p[0];
    if (!(L > 0)) return;
    float h = Times(L, 0.3);
    AddLocal(piece, MPoint3{0, 0, L}, MPoint3{0, 0, h}, MPoint3{1, 0, 0});
    piece.Start = MPoint3{0, 0, h};
}

void BuildLiftHill(const float p[4], WLocalPiece& piece) {
    float L = p[0], H = p[1];
    if (!(L > 0) || !(H > 0)) return;
    float h = Times(L, 0.2);
    AddLocal(piece, MPoint3{0, H, L}, MPoint3{0, 0, h}, MPoint3{1, 0, 0});
    piece.Start = MPoint3{0, 0, h};
}

// "Pre-drop" and "Dive" differ only in their defaults. The start handle is
// much shorter than the end point's handle of length L: the drop leaves the
// last point almost at once and comes in long and flat.
void BuildDive(const float p[4], WLocalPiece& piece) {
    float L = p[0], H = p[1];
    if (!(L > 0) || !(H > 0)) return;
    AddLocal(piece, MPoint3{0, -H, L}, MPoint3{0, 0, L}, MPoint3{1, 0, 0});
    piece.Start = MPoint3{0, 0, Times(L, 0.2)};
}

// A hill's height may be 0 or negative; only the length is tested.
void BuildHill(const float p[4], WLocalPiece& piece) {
    float L = p[0], H = p[1];
    if (!(L > 0)) return;
    AddLocal(piece, MPoint3{0, H, Times(L, 0.5)}, MPoint3{0, 0, Times(L, 0.2)}, MPoint3{1, 0, 0});
    float h = Times(L, 0.3);
    AddLocal(piece, MPoint3{0, 0, L}, MPoint3{0, 0, h}, MPoint3{1, 0, 0});
    piece.Start = MPoint3{0, 0, h};
}

// ---- Road pieces

// The slope is a percentage of the length, and it is the slope drawn: the
// frame of a road piece has already dropped the climb of the last point.
void BuildRoadStraight(const float p[4], WLocalPiece& piece) {
    float L = p[0], G = p[1];
    if (!(L > 0)) return;
    float rise = float(double(L * G) * 0.01);
    MPoint3 h = Unit(MPoint3{0, rise, L}) * double(Times(L, 0.3));
    AddLocal(piece, MPoint3{0, rise, L}, h, Side(h));
    piece.Start = h;
}

// ---- The bend: "Turn" and "Road bend"

// p: angle in degrees (negative turns left), radius, then the height of a
// "Turn" or the slope percentage of a "Road bend", then the slant in degrees.
// The bend is built for a right turn and mirrored for a left one. Quarter
// circles at most per point; with a slant the count is even, so that a point
// falls on the middle of the bend, where the bank is greatest.
void BuildBend(const float p[4], bool road, WLocalPiece& piece) {
    float A = p[0], R = p[1], T = p[3];
    float a = A * DegreeFactor;
    float angle = std::fabs(a);
    float E = angle * R; // arc length
    float s = T * DegreeFactor;
    float D = road ? float(double(E * p[2]) * 0.01) : p[2]; // total rise

    // The count comes first; the test below does not change it. A NaN angle
    // gives no count at all and ends like a list that cannot grow.
    double count = std::ceil(double(angle) / 1.5707963705062866);
    if (count < 1) count = 1;
    if (!(R > 0) || A == 0) return;
    if (!(count <= double(INT32_MAX))) {
        piece.Failed = true;
        return;
    }
    int64_t n = int64_t(count);
    if (s != 0 && n % 2 == 1) n++;
    if (!ReserveLocal(piece, n)) return;

    // The count keeps each step at a quarter circle or less, so the arc
    // handle's tangent never meets a step above pi.
    float e = angle / float(n);
    float l = ArcHandle(R, std::tan(e / 4));
    float v = l * D / E; // vertical handle part
    bool left = a < 0;
    for (int64_t i = 1; i <= n; i++) {
        float t = float(i) / float(n);
        float theta = t * angle;
        float st = std::sin(theta), ct = std::cos(theta);
        MPoint3 position{R - ct * R, t * D, st * R};
        MPoint3 handleIn = position - MPoint3{st * l, v, ct * l};
        // The bend leaves level: the last point has no vertical handle part.
        MPoint3 handleOut = position + MPoint3{st * l, i == n ? 0.0f : v, ct * l};
        // The bank: 0 at both ends of the bend and s at its middle.
        float rho = float(double(std::sin(t * TwoPi - HalfPi) + 1) * (double(s) * 0.5));
        float sr = std::sin(rho), cr = std::cos(rho);
        MPoint3 roll{ct * cr, -sr, -(st * cr)};
        if (left) {
            position.x = -position.x;
            handleIn.x = -handleIn.x;
            handleOut.x = -handleOut.x;
            roll = MPoint3{ct * cr, sr, st * cr};
        }
        AddLocal(piece, position, handleIn, handleOut, roll);
    }
    piece.Start = road ? Unit(MPoint3{0, D, E}) * double(l) : MPoint3{0, 0, l};
}
