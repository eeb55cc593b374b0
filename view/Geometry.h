#pragma once
// Points and matrices of the system: 32-bit floats, row vectors, matrices
// applied on the right, translation in the fourth row.

#include <cstdint>

struct MPoint2 {
    float x = 0, y = 0;
};

struct MPoint3 {
    float x = 0, y = 0, z = 0;
};

struct MMatrix {
    float M[4][4] = {{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}}; // [row][column]
    bool Identity = true; // the matrix is the identity and may be skipped
};

// A float counts as zero when its biased exponent is 112 or lower (below 2^-14).
bool IsNearZero(float x);
// All three differences pass IsNearZero.
bool Coincide(const MPoint3& a, const MPoint3& b);

// Componentwise arithmetic in 32-bit floats. The factor of a scaling is taken
// as a double and each product rounded once to 32 bits, which for a float
// factor is exactly the float product.
MPoint3 operator+(const MPoint3& a, const MPoint3& b);
MPoint3 operator-(const MPoint3& a, const MPoint3& b);
MPoint3 operator*(const MPoint3& a, double f);
MPoint2 operator+(const MPoint2& a, const MPoint2& b);
MPoint2 operator-(const MPoint2& a, const MPoint2& b);
MPoint2 operator*(const MPoint2& a, double f);
MPoint3 Cross3(const MPoint3& a, const MPoint3& b);
float Length3(const MPoint3& p);
float Length2(const MPoint2& p);

void Normalize2(MPoint2& p);
void Normalize3(MPoint3& p);
float Dot3(const MPoint3& a, const MPoint3& b);
MPoint3 SnapToGrid(const MPoint3& p, int32_t size);
bool IntersectLines2(const MPoint2& a, const MPoint2& b, const MPoint2& c, const MPoint2& d,
                     MPoint2& crossing);
float DistanceToLine2Squared(const MPoint2& a, const MPoint2& b, const MPoint2& p);
float DistanceToLine3(const MPoint3& a, const MPoint3& b, const MPoint3& p);
MPoint2 ClosestOnSegment2(const MPoint2& a, const MPoint2& b, const MPoint2& p);
float DistanceSegments3(const MPoint3& a, const MPoint3& b, const MPoint3& c, const MPoint3& d);
MPoint3 Transform(const MMatrix& m, const MPoint3& p);
MMatrix Multiply(const MMatrix& a, const MMatrix& b);
void Invert(MMatrix& m);
void Orthonormalize(MMatrix& m);
MMatrix YawPitchRoll(float yaw, float pitch, float roll);
void UpdateIdentity(MMatrix& m);
