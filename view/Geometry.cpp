#include "view/Geometry.h"

#include <cmath>
#include <cstring>

// ---- The zero test

// The test looks at the exponent field only, so it costs no compare of
// magnitudes and treats both signs alike. Infinity and NaN carry the largest
// exponent and never pass.
bool IsNearZero(float x) {
    uint32_t bits;
    std::memcpy(&bits, &x, sizeof bits);
    return (bits & 0x7f800000u) <= 0x38000000u;
}

bool Coincide(const MPoint3& a, const MPoint3& b) {
    return IsNearZero(a.x - b.x) && IsNearZero(a.y - b.y) && IsNearZero(a.z - b.z);
}

// Coincidence in the plane: both axes pass the zero test.
static bool Coincide2(const MPoint2& a, const MPoint2& b) {
    return IsNearZero(a.x - b.x) && IsNearZero(a.y - b.y);
}

// ---- Componentwise arithmetic

MPoint3 operator+(const MPoint3& a, const MPoint3& b) {
    return MPoint3{a.x + b.x, a.y + b.y, a.z + b.z};
}

MPoint3 operator-(const MPoint3& a, const MPoint3& b) {
    return MPoint3{a.x - b.x, a.y - b.y, a.z - b.z};
}

// Double-precision factors such as 0.3 or 4/3 must round once, not twice
// (first to a float factor, then the product), so the product is taken in
// double. A float factor gives exactly the float product this way, since the
// double product of two floats is exact.
MPoint3 operator*(const MPoint3& a, double f) {
    return MPoint3{float(double(a.x) * f), float(double(a.y) * f), float(double(a.z) * f)};
}

MPoint2 operator+(const MPoint2& a, const MPoint2& b) {
    return MPoint2{a.x + b.x, a.y + b.y};
}

MPoint2 operator-(const MPoint2& a, const MPoint2& b) {
    return MPoint2{a.x - b.x, a.y - b.y};
}

MPoint2 operator*(const MPoint2& a, double f) {
    return MPoint2{float(double(a.x) * f), float(double(a.y) * f)};
}

MPoint3 Cross3(const MPoint3& a, const MPoint3& b) {
    return MPoint3{a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

float Length3(const MPoint3& p) {
    return std::sqrt(p.x * p.x + p.y * p.y + p.z * p.z);
}

float Length2(const MPoint2& p) {
    return std::sqrt(p.x * p.x + p.y * p.y);
}

// ---- Vectors

// A vector of squared length exactly 1 keeps its bits, so normalising twice
// never drifts; one of squared length 0 stays zero instead of dividing by zero.
void Normalize2(MPoint2& p) {
    float squared = p.x * p.x + p.y * p.y;
    if (squared == 0 || squared == 1) return;
    float length = std::sqrt(squared);
    p.x /= length;
    p.y /= length;
}

void Normalize3(MPoint3& p) {
    float squared = p.x * p.x + p.y * p.y + p.z * p.z;
    if (squared == 0 || squared == 1) return;
    float length = std::sqrt(squared);
    p.x /= length;
    p.y /= length;
    p.z /= length;
}

// A near-zero result is returned as exactly 0 so that callers may compare the
// sign of a dot product without seeing rounding noise of perpendicular vectors.
float Dot3(const MPoint3& a, const MPoint3& b) {
    float dot = a.x * b.x + a.y * b.y + a.z * b.z;
    return IsNearZero(dot) ? 0.0f : dot;
}

// The quotient, its rounding and the product are taken in double, where they
// are exact for every float and grid size, so the only rounding is the final
// one to 32 bits. std::nearbyint rounds ties to the even integer under the
// default rounding mode, which the program never changes.
static float SnapCoordinate(float v, int32_t size) {
    return float(std::nearbyint(double(v) / double(size)) * double(size));
}

MPoint3 SnapToGrid(const MPoint3& p, int32_t size) {
    if (size <= 0) return p;
    return MPoint3{SnapCoordinate(p.x, size), SnapCoordinate(p.y, size), SnapCoordinate(p.z, size)};
}

// ---- Lines and segments

// crossing is written only when the lines do cross.
bool IntersectLines2(const MPoint2& a, const MPoint2& b, const MPoint2& c, const MPoint2& d,
                     MPoint2& crossing) {
    MPoint2 r = b - a;
    MPoint2 s = d - c;
    float determinant = r.x * s.y - r.y * s.x;
    if (IsNearZero(determinant)) return false;
    MPoint2 q = c - a;
    float t = (q.x * s.y - q.y * s.x) / determinant;
    crossing = MPoint2{a.x + r.x * t, a.y + r.y * t};
    return true;
}

float DistanceToLine2Squared(const MPoint2& a, const MPoint2& b, const MPoint2& p) {
    MPoint2 v = p - a;
    if (Coincide2(a, b)) return v.x * v.x + v.y * v.y;
    MPoint2 u = b - a;
    float cross = u.x * v.y - u.y * v.x;
    return cross * cross / (u.x * u.x + u.y * u.y);
}

// The distance is measured along the unit normal n of the line that lies in
// the plane of the line and p; every step that meets a near-zero vector gives
// 0, so a point on the line or a line of no length never divides by zero.
float DistanceToLine3(const MPoint3& a, const MPoint3& b, const MPoint3& p) {
    MPoint3 zero;
    MPoint3 u = b - a;
    MPoint3 v = p - a;
    if (Coincide(u, zero) || Coincide(v, zero)) return 0;
    MPoint3 c = Cross3(u, v);
    if (Coincide(c, zero)) return 0;
    MPoint3 n = Cross3(c, u);
    Normalize3(n);
    if (Coincide(n, zero)) return 0;
    float distance = Dot3(n, p) - Dot3(n, a);
    return IsNearZero(distance) ? 0.0f : distance;
}

MPoint2 ClosestOnSegment2(const MPoint2& a, const MPoint2& b, const MPoint2& p) {
    if (Coincide2(p, a)) return a;
    if (Coincide2(p, b)) return b;
    if (Coincide2(a, b)) return a;
    MPoint2 u = b - a;
    MPoint2 v = p - a;
    float t = v.x * u.x + v.y * u.y;
    if (IsNearZero(t)) t = 0;
    if (t <= 0) return a;
    float l = u.x * u.x + u.y * u.y;
    if (IsNearZero(l)) l = 0;
    if (t >= l) return b;
    return MPoint2{a.x + u.x * t / l, a.y + u.y * t / l};
}

static float Clamp01(float v) {
    return v < 0 ? 0.0f : (v > 1 ? 1.0f : v);
}

// The closest points are a + (b - a) s and c + (d - c) t with s and t in
// [0, 1]. The unclamped s of the two lines is clamped first, t follows from
// it, and when t has to be clamped s is found again from the clamped t. A
// segment whose ends coincide is taken as the point a or c. Parallel segments
// start from s = 0; the re-clamping then still finds the true distance, as any
// start in [0, 1] does for them, which also keeps the rounding noise of nearly
// parallel floats harmless.
float DistanceSegments3(const MPoint3& a, const MPoint3& b, const MPoint3& c, const MPoint3& d) {
    MPoint3 d1 = b - a;
    MPoint3 d2 = d - c;
    MPoint3 r = a - c;
    bool point1 = Coincide(a, b);
    bool point2 = Coincide(c, d);
    float ll1 = d1.x * d1.x + d1.y * d1.y + d1.z * d1.z;
    float ll2 = d2.x * d2.x + d2.y * d2.y + d2.z * d2.z;
    float f = d2.x * r.x + d2.y * r.y + d2.z * r.z;
    float s = 0, t = 0;
    if (point1 && point2) {
        // Both are points: s = t = 0.
    } else if (point1) {
        t = Clamp01(f / ll2);
    } else {
        float e = d1.x * r.x + d1.y * r.y + d1.z * r.z;
        if (point2) {
            s = Clamp01(-e / ll1);
        } else {
            float m = d1.x * d2.x + d1.y * d2.y + d1.z * d2.z;
            float denominator = ll1 * ll2 - m * m;
            // The denominator is never negative but by rounding; 0 or below
            // means parallel lines.
            if (denominator > 0) s = Clamp01((m * f - e * ll2) / denominator);
            t = (m * s + f) / ll2;
            if (t < 0) {
                t = 0;
                s = Clamp01(-e / ll1);
            } else if (t > 1) {
                t = 1;
                s = Clamp01((m - e) / ll1);
            }
        }
    }
    MPoint3 p1{a.x + d1.x * s, a.y + d1.y * s, a.z + d1.z * s};
    MPoint3 p2{c.x + d2.x * t, c.y + d2.y * t, c.z + d2.z * t};
    return Length3(p1 - p2);
}

// ---- Matrices

MPoint3 Transform(const MMatrix& m, const MPoint3& p) {
    if (m.Identity) return p;
    const float(*M)[4] = m.M;
    return MPoint3{p.x * M[0][0] + p.y * M[1][0] + p.z * M[2][0] + M[3][0],
                   p.x * M[0][1] + p.y * M[1][1] + p.z * M[2][1] + M[3][1],
                   p.x * M[0][2] + p.y * M[1][2] + p.z * M[2][2] + M[3][2]};
}

// The product of general matrices leaves Identity false even when it happens
// to come out as the identity; a caller that wants the flag runs
// UpdateIdentity.
MMatrix Multiply(const MMatrix& a, const MMatrix& b) {
    if (a.Identity && b.Identity) return MMatrix();
    if (a.Identity) return b;
    if (b.Identity) return a;
    MMatrix r;
    for (int i = 0; i < 4; i++)
        for (int j = 0; j < 4; j++)
            r.M[i][j] = a.M[i][0] * b.M[0][j] + a.M[i][1] * b.M[1][j] + a.M[i][2] * b.M[2][j] +
                        a.M[i][3] * b.M[3][j];
    r.Identity = false;
    return r;
}

// The inverse by cofactors, built from the twelve 2 by 2 minors of the upper
// and lower row pairs. Only a determinant of exactly 0 is refused; a nearly
// singular matrix is inverted as it stands.
void Invert(MMatrix& m) {
    if (m.Identity) return;
    const float(*a)[4] = m.M;
    float s0 = a[0][0] * a[1][1] - a[1][0] * a[0][1];
    float s1 = a[0][0] * a[1][2] - a[1][0] * a[0][2];
    float s2 = a[0][0] * a[1][3] - a[1][0] * a[0][3];
    float s3 = a[0][1] * a[1][2] - a[1][1] * a[0][2];
    float s4 = a[0][1] * a[1][3] - a[1][1] * a[0][3];
    float s5 = a[0][2] * a[1][3] - a[1][2] * a[0][3];
    float c5 = a[2][2] * a[3][3] - a[3][2] * a[2][3];
    float c4 = a[2][1] * a[3][3] - a[3][1] * a[2][3];
    float c3 = a[2][1] * a[3][2] - a[3][1] * a[2][2];
    float c2 = a[2][0] * a[3][3] - a[3][0] * a[2][3];
    float c1 = a[2][0] * a[3][2] - a[3][0] * a[2][2];
    float c0 = a[2][0] * a[3][1] - a[3][0] * a[2][1];
    float determinant = s0 * c5 - s1 * c4 + s2 * c3 + s3 * c2 - s4 * c1 + s5 * c0;
    if (determinant == 0) return;
    float b[4][4];
    b[0][0] = (a[1][1] * c5 - a[1][2] * c4 + a[1][3] * c3) / determinant;
    b[0][1] = (-a[0][1] * c5 + a[0][2] * c4 - a[0][3] * c3) / determinant;
    b[0][2] = (a[3][1] * s5 - a[3][2] * s4 + a[3][3] * s3) / determinant;
    b[0][3] = (-a[2][1] * s5 + a[2][2] * s4 - a[2][3] * s3) / determinant;
    b[1][0] = (-a[1][0] * c5 + a[1][2] * c2 - a[1][3] * c1) / determinant;
    b[1][1] = (a[0][0] * c5 - a[0][2] * c2 + a[0][3] * c1) / determinant;
    b[1][2] = (-a[3][0] * s5 + a[3][2] * s2 - a[3][3] * s1) / determinant;
    b[1][3] = (a[2][0] * s5 - a[2][2] * s2 + a[2][3] * s1) / determinant;
    b[2][0] = (a[1][0] * c4 - a[1][1] * c2 + a[1][3] * c0) / determinant;
    b[2][1] = (-a[0][0] * c4 + a[0][1] * c2 - a[0][3] * c0) / determinant;
    b[2][2] = (a[3][0] * s4 - a[3][1] * s2 + a[3][3] * s0) / determinant;
    b[2][3] = (-a[2][0] * s4 + a[2][1] * s2 - a[2][3] * s0) / determinant;
    b[3][0] = (-a[1][0] * c3 + a[1][1] * c1 - a[1][2] * c0) / determinant;
    b[3][1] = (a[0][0] * c3 - a[0][1] * c1 + a[0][2] * c0) / determinant;
    b[3][2] = (-a[3][0] * s3 + a[3][1] * s1 - a[3][2] * s0) / determinant;
    b[3][3] = (a[2][0] * s3 - a[2][1] * s1 + a[2][2] * s0) / determinant;
    std::memcpy(m.M, b, sizeof b);
    UpdateIdentity(m);
}

// Only the lengths of the first two columns are restored; the second is not
// turned square to the first, so what angle drift they have stays, and the
// third column follows from them. The translation row and Identity are left.
void Orthonormalize(MMatrix& m) {
    MPoint3 x{m.M[0][0], m.M[1][0], m.M[2][0]};
    MPoint3 y{m.M[0][1], m.M[1][1], m.M[2][1]};
    Normalize3(x);
    Normalize3(y);
    MPoint3 z = Cross3(x, y);
    m.M[0][0] = x.x, m.M[1][0] = x.y, m.M[2][0] = x.z;
    m.M[0][1] = y.x, m.M[1][1] = y.y, m.M[2][1] = y.z;
    m.M[0][2] = z.x, m.M[1][2] = z.y, m.M[2][2] = z.z;
    m.M[0][3] = 0, m.M[1][3] = 0, m.M[2][3] = 0, m.M[3][3] = 1;
}

MMatrix YawPitchRoll(float yaw, float pitch, float roll) {
    float s1 = std::sin(yaw), c1 = std::cos(yaw);
    float s2 = std::sin(pitch), c2 = std::cos(pitch);
    float s3 = std::sin(roll), c3 = std::cos(roll);
    MMatrix m;
    m.M[0][0] = s2 * s1 * s3 + c3 * c1;
    m.M[0][1] = s3 * c2;
    m.M[0][2] = s2 * c1 * s3 - c3 * s1;
    m.M[1][0] = s2 * s1 * c3 - s3 * c1;
    m.M[1][1] = c3 * c2;
    m.M[1][2] = s2 * c1 * c3 + s3 * s1;
    m.M[2][0] = c2 * s1;
    m.M[2][1] = -s2;
    m.M[2][2] = c2 * c1;
    UpdateIdentity(m);
    return m;
}

void UpdateIdentity(MMatrix& m) {
    bool identity = true;
    for (int i = 0; i < 4; i++)
        for (int j = 0; j < 4; j++)
            if (!IsNearZero(m.M[i][j] - (i == j ? 1.0f : 0.0f))) identity = false;
    m.Identity = identity;
}
