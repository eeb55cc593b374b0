#pragma once
// The local geometry of the elements, shared by the plain pieces
// (PlainElements.cpp) and the loops and inversions (LoopElements.cpp).
//
// Numbers: every stored value is a 32-bit float. The factors 0.2, 0.25, 0.3,
// 0.5, 0.75, 0.01 and 4/3 are doubles: a product that holds one is formed in
// double precision, left to right as written, and rounded once when it is
// stored. The constants of pi and the degree factor are single-precision,
// and sin, cos and tan are the single-precision functions.

#include "sketch/WSketch.h"
#include <cstdint>

const float Pi = 3.1415927f;
const float TwoPi = 6.2831855f;
const float HalfPi = 1.5707964f;
const float QuarterPi = 0.7853982f;
const float EighthPi = 0.3926991f;
const float DegreeFactor = 0.017453292f;

// A piece in local coordinates, before the frame of the last point carries
// it onto the path.
struct WLocalPiece {
    MVector<WSketchPoint> Points; // Count is the capacity; grown by at least 1000
    int32_t Count = 0;            // points built
    MPoint3 Start;                // start handle S, measured from the local origin
    bool Failed = false;          // the list could not grow; BuildElement then empties it
};

// Makes room for count points in one step (at least 1000), so that a bend of
// many turns is not copied over and over. False, and Failed set, when the
// list cannot grow.
bool ReserveLocal(WLocalPiece& piece, int64_t count);
// Appends a point with the given handles and roll. Once the list could not
// grow, nothing more is added and the piece counts as failed: the generator
// treats it like parameters that fail their test.
void AddLocal(WLocalPiece& piece, const MPoint3& position, const MPoint3& handleIn,
              const MPoint3& handleOut, const MPoint3& roll);
// The usual case: HandleIn is P - h and HandleOut is P + h.
void AddLocal(WLocalPiece& piece, const MPoint3& position, const MPoint3& h, const MPoint3& roll);

// The handle length of a circular arc of radius R whose quarter angle has the
// tangent given: R * 4/3 * tangent in double precision, rounded once.
float ArcHandle(float radius, float tangent);

// v * factor in double precision, rounded once.
inline float Times(float v, double factor) {
    return float(double(v) * factor);
}

// The roll of a point on level track with the handle vector h: h normalised
// to n gives (n.z, 0, -n.x), not normalised again, so a handle that climbs
// gives a roll shorter than 1.
MPoint3 Side(MPoint3 h);

// Copy of v scaled to unit length (Normalize3 leaves zero and unit vectors).
MPoint3 Unit(MPoint3 v);

// The builders. Each adds nothing when its parameters fail the element's
// test; p holds p1 to p4 in the order of the row's labels. Each sets Start.
void BuildStraight(const float p[4], WLocalPiece& piece);
void BuildLiftHill(const float p[4], WLocalPiece& piece);
void BuildDive(const float p[4], WLocalPiece& piece); // "Pre-drop" and "Dive"
void BuildHill(const float p[4], WLocalPiece& piece);
void BuildRoadStraight(const float p[4], WLocalPiece& piece);
void BuildBend(const float p[4], bool road, WLocalPiece& piece);           // "Turn", "Road bend"
void BuildHalfOrFullLoop(const float p[4], bool full, WLocalPiece& piece); // Immelmann, Circular
void BuildClothoidLoop(const float p[4], WLocalPiece& piece);
void BuildDiveLoop(const float p[4], WLocalPiece& piece);
void BuildTopHat(const float p[4], WLocalPiece& piece);
void BuildCorkscrew(const float p[4], WLocalPiece& piece);
void BuildCobraRoll(const float p[4], WLocalPiece& piece);
void BuildBatwing(const float p[4], WLocalPiece& piece);
void BuildHammerhead(const float p[4], WLocalPiece& piece);

// Dispatches on the element id; ids above 16 build nothing. A piece whose
// list could not grow comes back with Count 0.
void BuildElement(uint32_t id, const float p[4], WLocalPiece& piece);
