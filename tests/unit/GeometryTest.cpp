#include "view/Geometry.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>
#include <cstring>
#include <limits>

namespace {

const float Pi = 3.14159265358979f;

bool SameBits(const MMatrix& a, const MMatrix& b) {
    return std::memcmp(a.M, b.M, sizeof a.M) == 0 && a.Identity == b.Identity;
}

MMatrix Rows(std::initializer_list<std::initializer_list<float>> rows) {
    MMatrix m;
    int i = 0;
    for (auto& row : rows) {
        int j = 0;
        for (float v : row)
            m.M[i][j++] = v;
        i++;
    }
    m.Identity = false;
    return m;
}

void ExpectNearIdentity(const MMatrix& m, float tolerance) {
    for (int i = 0; i < 4; i++)
        for (int j = 0; j < 4; j++)
            EXPECT_NEAR(m.M[i][j], i == j ? 1.0f : 0.0f, tolerance) << "entry " << i << "," << j;
}

// Rows times their transposes: a rotation's rows are unit and perpendicular,
// and the third row is the cross product of the first two (no mirror).
void ExpectRotation(const MMatrix& m, float tolerance) {
    for (int i = 0; i < 3; i++)
        for (int j = 0; j < 3; j++) {
            float dot = m.M[i][0] * m.M[j][0] + m.M[i][1] * m.M[j][1] + m.M[i][2] * m.M[j][2];
            EXPECT_NEAR(dot, i == j ? 1.0f : 0.0f, tolerance) << "rows " << i << "," << j;
        }
    MPoint3 r0{m.M[0][0], m.M[0][1], m.M[0][2]};
    MPoint3 r1{m.M[1][0], m.M[1][1], m.M[1][2]};
    MPoint3 r2 = Cross3(r0, r1);
    EXPECT_NEAR(r2.x, m.M[2][0], tolerance);
    EXPECT_NEAR(r2.y, m.M[2][1], tolerance);
    EXPECT_NEAR(r2.z, m.M[2][2], tolerance);
    for (int i = 0; i < 3; i++) {
        EXPECT_EQ(m.M[i][3], 0.0f);
        EXPECT_EQ(m.M[3][i], 0.0f);
    }
    EXPECT_EQ(m.M[3][3], 1.0f);
}

} // namespace

// ---- IsNearZero and Coincide

TEST(GeometryIsNearZero, ValuesAroundTheLimit) {
    EXPECT_TRUE(IsNearZero(0.00006f));
    EXPECT_FALSE(IsNearZero(0.0001f));
    EXPECT_TRUE(IsNearZero(-0.00006f));
    EXPECT_FALSE(IsNearZero(-0.0001f));
    // 2^-14 itself has the biased exponent 113 and is not zero; the float just
    // below it has exponent 112 and the largest mantissa, and is.
    float limit = std::ldexp(1.0f, -14);
    EXPECT_EQ(limit, 0.00006103515625f);
    EXPECT_FALSE(IsNearZero(limit));
    EXPECT_FALSE(IsNearZero(-limit));
    EXPECT_TRUE(IsNearZero(std::nextafter(limit, 0.0f)));
    EXPECT_TRUE(IsNearZero(-std::nextafter(limit, 0.0f)));
    EXPECT_FALSE(IsNearZero(std::nextafter(limit, 1.0f)));
}

TEST(GeometryIsNearZero, ZerosDenormalsAndSpecials) {
    EXPECT_TRUE(IsNearZero(0.0f));
    EXPECT_TRUE(IsNearZero(-0.0f));
    EXPECT_TRUE(IsNearZero(FLT_MIN));
    EXPECT_TRUE(IsNearZero(std::numeric_limits<float>::denorm_min()));
    EXPECT_TRUE(IsNearZero(-1e-40f));
    EXPECT_FALSE(IsNearZero(1.0f));
    EXPECT_FALSE(IsNearZero(-123456.0f));
    EXPECT_FALSE(IsNearZero(std::numeric_limits<float>::infinity()));
    EXPECT_FALSE(IsNearZero(-std::numeric_limits<float>::infinity()));
    EXPECT_FALSE(IsNearZero(std::numeric_limits<float>::quiet_NaN()));
}

TEST(GeometryCoincide, EveryAxisMustPass) {
    MPoint3 a{10, 20, 30};
    EXPECT_TRUE(Coincide(a, MPoint3{10.00003f, 19.99998f, 30}));
    EXPECT_FALSE(Coincide(a, MPoint3{10.001f, 20, 30}));
    EXPECT_FALSE(Coincide(a, MPoint3{10, 20.001f, 30}));
    EXPECT_FALSE(Coincide(a, MPoint3{10, 20, 29.999f}));
}

// ---- Componentwise arithmetic

TEST(GeometryArithmetic, SumsDifferencesCrossAndLengths) {
    MPoint3 s = MPoint3{1, 2, 3} + MPoint3{0.5f, -4, 10};
    EXPECT_EQ(s.x, 1.5f);
    EXPECT_EQ(s.y, -2.0f);
    EXPECT_EQ(s.z, 13.0f);
    MPoint3 d = MPoint3{1, 2, 3} - MPoint3{0.5f, -4, 10};
    EXPECT_EQ(d.x, 0.5f);
    EXPECT_EQ(d.y, 6.0f);
    EXPECT_EQ(d.z, -7.0f);
    MPoint2 s2 = MPoint2{1, 2} + MPoint2{3, -5};
    EXPECT_EQ(s2.x, 4.0f);
    EXPECT_EQ(s2.y, -3.0f);
    MPoint2 d2 = MPoint2{1, 2} - MPoint2{3, -5};
    EXPECT_EQ(d2.x, -2.0f);
    EXPECT_EQ(d2.y, 7.0f);
    // (1,2,3) x (4,5,6) = (2*6 - 3*5, 3*4 - 1*6, 1*5 - 2*4).
    MPoint3 c = Cross3(MPoint3{1, 2, 3}, MPoint3{4, 5, 6});
    EXPECT_EQ(c.x, -3.0f);
    EXPECT_EQ(c.y, 6.0f);
    EXPECT_EQ(c.z, -3.0f);
    MPoint3 z = Cross3(MPoint3{1, 0, 0}, MPoint3{0, 1, 0});
    EXPECT_EQ(z.x, 0.0f);
    EXPECT_EQ(z.y, 0.0f);
    EXPECT_EQ(z.z, 1.0f);
    EXPECT_EQ(Length3(MPoint3{2, 3, 6}), 7.0f);
    EXPECT_EQ(Length2(MPoint2{3, -4}), 5.0f);
}

TEST(GeometryArithmetic, DoubleFactorRoundsOnce) {
    // 3 * 0.3 in double is 0.8999999999999999, which rounds to the float 0.9f;
    // through the float factor 0.3f the product would be 0.90000004f.
    MPoint3 p = MPoint3{3, 3, 3} * 0.3;
    EXPECT_EQ(p.x, 0.9f);
    EXPECT_NE(p.x, 3.0f * 0.3f);
    EXPECT_EQ(p.z, 0.9f);
    MPoint2 q = MPoint2{3, -3} * 0.3;
    EXPECT_EQ(q.x, 0.9f);
    EXPECT_EQ(q.y, -0.9f);
    // A float factor gives the plain float product.
    float f = 2.7f;
    MPoint3 r = MPoint3{1.1f, -7.3f, 1e30f} * f;
    EXPECT_EQ(r.x, 1.1f * f);
    EXPECT_EQ(r.y, -7.3f * f);
    EXPECT_EQ(r.z, 1e30f * f);
}

// ---- Normalize, Dot3, SnapToGrid

TEST(GeometryNormalize, ZeroVectorIsLeftAlone) {
    MPoint3 p{0, 0, 0};
    Normalize3(p);
    EXPECT_EQ(p.x, 0.0f);
    EXPECT_EQ(p.y, 0.0f);
    EXPECT_EQ(p.z, 0.0f);
    EXPECT_FALSE(std::isnan(p.x));
    MPoint2 q{0, 0};
    Normalize2(q);
    EXPECT_EQ(q.x, 0.0f);
    EXPECT_EQ(q.y, 0.0f);
}

TEST(GeometryNormalize, ScalesToUnitLength) {
    MPoint3 p{3, 0, -4};
    Normalize3(p);
    EXPECT_EQ(p.x, 0.6f);
    EXPECT_EQ(p.y, 0.0f);
    EXPECT_EQ(p.z, -0.8f);
    MPoint3 t{1e-3f, 2e-3f, -2e-3f};
    Normalize3(t);
    EXPECT_NEAR(t.x, 1.0f / 3, 1e-6);
    EXPECT_NEAR(t.y, 2.0f / 3, 1e-6);
    EXPECT_NEAR(t.z, -2.0f / 3, 1e-6);
    MPoint2 q{-5, 12};
    Normalize2(q);
    EXPECT_NEAR(q.x, -5.0f / 13, 1e-7);
    EXPECT_NEAR(q.y, 12.0f / 13, 1e-7);
}

TEST(GeometryNormalize, SquaredLengthOfExactlyOneKeepsItsBits) {
    // In floats the squared length of (0.891985178, 0.452064723) is exactly 1,
    // while its exact length is 1.0000000357: dividing by that would move
    // both coordinates by one unit in the last place. The vector stays.
    float x = 0.891985178f, y = 0.452064723f;
    ASSERT_EQ(x * x + y * y, 1.0f);
    ASSERT_NE(float(x / std::sqrt(double(x) * x + double(y) * y)), x);
    MPoint3 p{x, 0, y};
    Normalize3(p);
    EXPECT_EQ(p.x, x);
    EXPECT_EQ(p.y, 0.0f);
    EXPECT_EQ(p.z, y);
    MPoint2 q{-y, x};
    Normalize2(q);
    EXPECT_EQ(q.x, -y);
    EXPECT_EQ(q.y, x);
}

TEST(GeometryDot3, NearZeroIsExactlyZero) {
    EXPECT_EQ(Dot3(MPoint3{1, 2, 3}, MPoint3{4, 5, 6}), 32.0f);
    float tiny = Dot3(MPoint3{1, 0, 0}, MPoint3{0.00005f, 1, 0});
    EXPECT_EQ(tiny, 0.0f);
    float negative = Dot3(MPoint3{-1, 0, 0}, MPoint3{0.00005f, 1, 0});
    EXPECT_EQ(negative, 0.0f);
    EXPECT_FALSE(std::signbit(negative));
    EXPECT_EQ(Dot3(MPoint3{1, 0, 0}, MPoint3{0.0001f, 1, 0}), 0.0001f);
}

TEST(GeometrySnapToGrid, TiesGoToTheEvenMultiple) {
    MPoint3 a = SnapToGrid(MPoint3{14, 16, 5}, 10);
    EXPECT_EQ(a.x, 10.0f);
    EXPECT_EQ(a.y, 20.0f);
    EXPECT_EQ(a.z, 0.0f);
    MPoint3 b = SnapToGrid(MPoint3{15, 25, 35}, 10);
    EXPECT_EQ(b.x, 20.0f);
    EXPECT_EQ(b.y, 20.0f);
    EXPECT_EQ(b.z, 40.0f);
    MPoint3 c = SnapToGrid(MPoint3{-15, -25, -14.9f}, 10);
    EXPECT_EQ(c.x, -20.0f);
    EXPECT_EQ(c.y, -20.0f);
    EXPECT_EQ(c.z, -10.0f);
    MPoint3 d = SnapToGrid(MPoint3{0.5f, 1.5f, 2.4999998f}, 1);
    EXPECT_EQ(d.x, 0.0f);
    EXPECT_EQ(d.y, 2.0f);
    EXPECT_EQ(d.z, 2.0f);
    MPoint3 e = SnapToGrid(MPoint3{37.5f, 112.5f, 1000.0f}, 25);
    EXPECT_EQ(e.x, 50.0f);  // 1.5 goes to 2
    EXPECT_EQ(e.y, 100.0f); // 4.5 goes to 4
    EXPECT_EQ(e.z, 1000.0f);
}

TEST(GeometrySnapToGrid, SizeOfZeroOrBelowChangesNothing) {
    MPoint3 p{14.3f, -2.7f, 5.5f};
    for (int32_t size : {0, -1, -10}) {
        MPoint3 q = SnapToGrid(p, size);
        EXPECT_EQ(q.x, p.x);
        EXPECT_EQ(q.y, p.y);
        EXPECT_EQ(q.z, p.z);
    }
}

// ---- Lines and segments

TEST(GeometryIntersectLines2, CrossingOfTheLines) {
    MPoint2 x;
    ASSERT_TRUE(IntersectLines2(MPoint2{0, 0}, MPoint2{2, 2}, MPoint2{0, 2}, MPoint2{2, 0}, x));
    EXPECT_EQ(x.x, 1.0f);
    EXPECT_EQ(x.y, 1.0f);
    // The lines, not the segments: the crossing lies beyond both.
    ASSERT_TRUE(IntersectLines2(MPoint2{0, 0}, MPoint2{1, 0}, MPoint2{5, 1}, MPoint2{5, 2}, x));
    EXPECT_EQ(x.x, 5.0f);
    EXPECT_EQ(x.y, 0.0f);
}

TEST(GeometryIntersectLines2, ParallelGivesFalse) {
    MPoint2 x{7, 8};
    EXPECT_FALSE(IntersectLines2(MPoint2{0, 0}, MPoint2{1, 0}, MPoint2{0, 1}, MPoint2{1, 1}, x));
    EXPECT_FALSE(IntersectLines2(MPoint2{0, 0}, MPoint2{1, 1}, MPoint2{2, 2}, MPoint2{3, 3}, x));
    // A determinant of 0.00005 passes the zero test; 0.001 does not.
    EXPECT_FALSE(
        IntersectLines2(MPoint2{0, 0}, MPoint2{1, 0}, MPoint2{0, 1}, MPoint2{1, 1.00005f}, x));
    EXPECT_EQ(x.x, 7.0f);
    EXPECT_EQ(x.y, 8.0f);
    EXPECT_TRUE(
        IntersectLines2(MPoint2{0, 0}, MPoint2{1, 0}, MPoint2{0, 1}, MPoint2{1, 1.001f}, x));
    EXPECT_NEAR(x.x, -1000.0f, 0.1f);
}

TEST(GeometryDistanceToLine2Squared, LineAndCoincidentEnds) {
    EXPECT_EQ(DistanceToLine2Squared(MPoint2{0, 0}, MPoint2{4, 0}, MPoint2{1, 3}), 9.0f);
    // Beyond the end of a to b: still the distance from the line.
    EXPECT_EQ(DistanceToLine2Squared(MPoint2{0, 0}, MPoint2{4, 0}, MPoint2{10, -2}), 4.0f);
    // The line y = x through (1,1); (3,1) lies sqrt(2) from it.
    EXPECT_FLOAT_EQ(DistanceToLine2Squared(MPoint2{1, 1}, MPoint2{2, 2}, MPoint2{3, 1}), 2.0f);
    // a and b coincide: squared distance from a, 3^2 + 4^2.
    EXPECT_EQ(DistanceToLine2Squared(MPoint2{1, 1}, MPoint2{1.00003f, 1}, MPoint2{4, 5}), 25.0f);
}

TEST(GeometryDistanceToLine3, HandWorkedCases) {
    // u = (2,0,0), v = (1,3,4), c = u x v = (0,-8,6), n = c x u = (0,12,16)
    // normalised (0,0.6,0.8); n.p - n.a = 1.8 + 3.2 - 0 = 5.
    EXPECT_NEAR(DistanceToLine3(MPoint3{0, 0, 0}, MPoint3{2, 0, 0}, MPoint3{1, 3, 4}), 5.0f, 1e-5);
    // The line along z through (1,1): p = (4,5,3) is sqrt(3^2 + 4^2) away.
    EXPECT_NEAR(DistanceToLine3(MPoint3{1, 1, 1}, MPoint3{1, 1, 5}, MPoint3{4, 5, 3}), 5.0f, 1e-5);
    // Beyond the ends it is still the line's distance.
    EXPECT_NEAR(DistanceToLine3(MPoint3{0, 0, 0}, MPoint3{1, 1, 0}, MPoint3{10, 10, 2}), 2.0f,
                1e-5);
}

TEST(GeometryDistanceToLine3, ZeroCases) {
    MPoint3 a{1, 1, 1}, b{1, 1, 5};
    EXPECT_EQ(DistanceToLine3(a, b, MPoint3{1, 1, 9}), 0.0f); // on the line
    EXPECT_EQ(DistanceToLine3(a, a, MPoint3{4, 5, 3}), 0.0f); // no line
    EXPECT_EQ(DistanceToLine3(a, MPoint3{1.00003f, 1, 1}, MPoint3{4, 5, 3}), 0.0f);
    EXPECT_EQ(DistanceToLine3(a, b, a), 0.0f); // p at a
    // 0.00001 off the line: u x v = (-0.00004, 0, 0) passes, so exactly 0.
    EXPECT_EQ(DistanceToLine3(a, b, MPoint3{1, 1.00001f, 3}), 0.0f);
}

TEST(GeometryClosestOnSegment2, EndsAndMiddle) {
    MPoint2 a{0, 0}, b{10, 0};
    MPoint2 r = ClosestOnSegment2(a, b, MPoint2{-5, 3});
    EXPECT_EQ(r.x, 0.0f);
    EXPECT_EQ(r.y, 0.0f);
    r = ClosestOnSegment2(a, b, MPoint2{15, -2});
    EXPECT_EQ(r.x, 10.0f);
    EXPECT_EQ(r.y, 0.0f);
    // t = (4,7).(10,0) = 40, l = 100: a + u * 40 / 100 = (4,0).
    r = ClosestOnSegment2(a, b, MPoint2{4, 7});
    EXPECT_EQ(r.x, 4.0f);
    EXPECT_EQ(r.y, 0.0f);
    // A slanted segment: (0,0) to (4,4), p = (0,4) projects to (2,2).
    r = ClosestOnSegment2(MPoint2{0, 0}, MPoint2{4, 4}, MPoint2{0, 4});
    EXPECT_EQ(r.x, 2.0f);
    EXPECT_EQ(r.y, 2.0f);
}

TEST(GeometryClosestOnSegment2, CoincidenceGivesTheEndItself) {
    MPoint2 a{0, 0}, b{10, 0};
    // p coincides with b but projects inside: b exactly, not (9.99997, 0).
    MPoint2 r = ClosestOnSegment2(a, b, MPoint2{9.99997f, 0.00002f});
    EXPECT_EQ(r.x, 10.0f);
    EXPECT_EQ(r.y, 0.0f);
    // The same at a, where t = 0.0003 would not count as 0.
    r = ClosestOnSegment2(a, b, MPoint2{0.00003f, 0.00004f});
    EXPECT_EQ(r.x, 0.0f);
    EXPECT_EQ(r.y, 0.0f);
    // a and b coincide: a.
    r = ClosestOnSegment2(MPoint2{3, 4}, MPoint2{3.00002f, 4}, MPoint2{9, 9});
    EXPECT_EQ(r.x, 3.0f);
    EXPECT_EQ(r.y, 4.0f);
}

TEST(GeometryDistanceSegments3, CrossingAndSkew) {
    // Crossing at the origin.
    EXPECT_EQ(
        DistanceSegments3(MPoint3{-1, 0, 0}, MPoint3{1, 0, 0}, MPoint3{0, -1, 0}, MPoint3{0, 1, 0}),
        0.0f);
    // Skew, perpendicular, 2 apart in z with both closest points inside.
    EXPECT_FLOAT_EQ(
        DistanceSegments3(MPoint3{-1, 0, 0}, MPoint3{1, 0, 0}, MPoint3{0, -1, 2}, MPoint3{0, 1, 2}),
        2.0f);
    // Skew with the lines' closest points outside the first segment: the end
    // (1,0,0) against (3,0,1) gives sqrt(2^2 + 1^2).
    EXPECT_FLOAT_EQ(
        DistanceSegments3(MPoint3{0, 0, 0}, MPoint3{1, 0, 0}, MPoint3{3, -1, 1}, MPoint3{3, 1, 1}),
        std::sqrt(5.0f));
    // A T: the end (2,1,0) of the second segment is 1 from the first's middle.
    EXPECT_FLOAT_EQ(
        DistanceSegments3(MPoint3{0, 0, 0}, MPoint3{4, 0, 0}, MPoint3{2, 1, 0}, MPoint3{2, 5, 0}),
        1.0f);
    // Touching at an end.
    EXPECT_EQ(
        DistanceSegments3(MPoint3{0, 0, 0}, MPoint3{1, 0, 0}, MPoint3{1, 0, 0}, MPoint3{1, 5, 0}),
        0.0f);
    // A general skew pair: the lines x = (s, 0, 0) and (0, t, t) + (0,0,3)
    // come closest where the common normal (0,-1,1)/sqrt2 meets them: the
    // distance is |(0,0,3).(0,-1,1)|/sqrt2 = 3/sqrt2, both points inside.
    EXPECT_NEAR(DistanceSegments3(MPoint3{-5, 0, 0}, MPoint3{5, 0, 0}, MPoint3{0, -5, -2},
                                  MPoint3{0, 5, 8}),
                3.0f / std::sqrt(2.0f), 1e-5);
}

TEST(GeometryDistanceSegments3, Parallel) {
    // Overlapping, 3 apart.
    EXPECT_FLOAT_EQ(
        DistanceSegments3(MPoint3{0, 0, 0}, MPoint3{4, 0, 0}, MPoint3{1, 3, 0}, MPoint3{6, 3, 0}),
        3.0f);
    // Disjoint: gap 2 along x, 1 across: sqrt(5), in either direction.
    EXPECT_FLOAT_EQ(
        DistanceSegments3(MPoint3{0, 0, 0}, MPoint3{1, 0, 0}, MPoint3{3, 1, 0}, MPoint3{5, 1, 0}),
        std::sqrt(5.0f));
    EXPECT_FLOAT_EQ(
        DistanceSegments3(MPoint3{0, 0, 0}, MPoint3{1, 0, 0}, MPoint3{5, 1, 0}, MPoint3{3, 1, 0}),
        std::sqrt(5.0f));
    EXPECT_FLOAT_EQ(
        DistanceSegments3(MPoint3{5, 1, 0}, MPoint3{3, 1, 0}, MPoint3{1, 0, 0}, MPoint3{0, 0, 0}),
        std::sqrt(5.0f));
    // Collinear, 2 apart.
    EXPECT_FLOAT_EQ(
        DistanceSegments3(MPoint3{0, 0, 0}, MPoint3{1, 0, 0}, MPoint3{3, 0, 0}, MPoint3{4, 0, 0}),
        2.0f);
    // Collinear and overlapping.
    EXPECT_EQ(
        DistanceSegments3(MPoint3{0, 0, 0}, MPoint3{2, 0, 0}, MPoint3{1, 0, 0}, MPoint3{4, 0, 0}),
        0.0f);
    // Long parallel diagonal segments, where the floats of the determinant
    // are rounding noise: 1 apart in z.
    EXPECT_NEAR(DistanceSegments3(MPoint3{0.1f, 0.2f, 0.3f}, MPoint3{70.1f, 90.2f, 0.3f},
                                  MPoint3{7.1f, 9.2f, 1.3f}, MPoint3{700.1f, 900.2f, 1.3f}),
                1.0f, 1e-4);
}

TEST(GeometryDistanceSegments3, DegenerateSegments) {
    MPoint3 c{-2, 0, 0}, d{2, 0, 0};
    // The first is a point above the middle of the second.
    EXPECT_FLOAT_EQ(DistanceSegments3(MPoint3{0, 5, 0}, MPoint3{0, 5, 0}, c, d), 5.0f);
    // A point beyond the end (2,0,0): sqrt(2^2 + 3^2).
    EXPECT_FLOAT_EQ(DistanceSegments3(MPoint3{4, 3, 0}, MPoint3{4, 3, 0}, c, d), std::sqrt(13.0f));
    // The second is the point.
    EXPECT_FLOAT_EQ(DistanceSegments3(c, d, MPoint3{0, 0, -7}, MPoint3{0, 0, -7}), 7.0f);
    EXPECT_FLOAT_EQ(DistanceSegments3(c, d, MPoint3{-5, 4, 0}, MPoint3{-5, 4, 0}), 5.0f);
    // Both are points: 3-4-5.
    EXPECT_FLOAT_EQ(
        DistanceSegments3(MPoint3{1, 2, 3}, MPoint3{1, 2, 3}, MPoint3{4, 6, 3}, MPoint3{4, 6, 3}),
        5.0f);
    float r =
        DistanceSegments3(MPoint3{1, 1, 1}, MPoint3{1, 1, 1}, MPoint3{1, 1, 1}, MPoint3{1, 1, 1});
    EXPECT_EQ(r, 0.0f);
}

// ---- Matrices

TEST(GeometryTransform, IdentityFlagSkipsTheMatrix) {
    MMatrix m;
    m.M[3][0] = 100; // the flag is believed, whatever the entries say
    MPoint3 p = Transform(m, MPoint3{1.5f, -2, 3});
    EXPECT_EQ(p.x, 1.5f);
    EXPECT_EQ(p.y, -2.0f);
    EXPECT_EQ(p.z, 3.0f);
}

TEST(GeometryTransform, RowVectorWithTranslation) {
    MMatrix t;
    t.M[3][0] = 10, t.M[3][1] = 20, t.M[3][2] = 30;
    t.Identity = false;
    MPoint3 p = Transform(t, MPoint3{1, 2, 3});
    EXPECT_EQ(p.x, 11.0f);
    EXPECT_EQ(p.y, 22.0f);
    EXPECT_EQ(p.z, 33.0f);
    // Rows: x goes to (0,1,0), y to (-1,0,0), then translation (5,6,7):
    // (1,2,3) gives (0 - 2 + 0 + 5, 1 + 0 + 0 + 6, 0 + 0 + 3 + 7) = (3,7,10).
    // The fourth column is not used.
    MMatrix m = Rows({{0, 1, 0, 9}, {-1, 0, 0, 9}, {0, 0, 1, 9}, {5, 6, 7, 5}});
    p = Transform(m, MPoint3{1, 2, 3});
    EXPECT_EQ(p.x, 3.0f);
    EXPECT_EQ(p.y, 7.0f);
    EXPECT_EQ(p.z, 10.0f);
}

TEST(GeometryMultiply, WithTheIdentityIsExact) {
    MMatrix g = Rows({{0.1f, -0.0f, 1e-30f, 3.3f},
                      {-7.7f, 0.3333333f, 2, -0.0f},
                      {1e20f, 0, -1, 0.5f},
                      {123.456f, -654.321f, 0.7f, 1}});
    MMatrix identity;
    // The -0 entries would become +0 and 1e20 * 0 terms could round through
    // arithmetic; the copy keeps every bit.
    EXPECT_TRUE(SameBits(Multiply(g, identity), g));
    EXPECT_TRUE(SameBits(Multiply(identity, g), g));
    MMatrix both = Multiply(identity, identity);
    EXPECT_TRUE(SameBits(both, MMatrix()));
    EXPECT_TRUE(both.Identity);
    // A flagged identity is skipped even if its entries disagree.
    MMatrix flagged;
    flagged.M[0][1] = 5;
    EXPECT_TRUE(SameBits(Multiply(flagged, g), g));
    EXPECT_TRUE(SameBits(Multiply(g, flagged), g));
}

TEST(GeometryMultiply, RowsTimesColumns) {
    MMatrix a = Rows({{1, 2, 3, 4}, {5, 6, 7, 8}, {9, 10, 11, 12}, {13, 14, 15, 16}});
    MMatrix b = Rows({{1, 0, 0, 0}, {0, 2, 0, 0}, {0, 0, 3, 0}, {1, 1, 1, 1}});
    MMatrix r = Multiply(a, b);
    // Row 0: 1 (1,0,0,0) + 2 (0,2,0,0) + 3 (0,0,3,0) + 4 (1,1,1,1) = (5,8,13,4).
    float expected[4][4] = {{5, 8, 13, 4}, {13, 20, 29, 8}, {21, 32, 45, 12}, {29, 44, 61, 16}};
    for (int i = 0; i < 4; i++)
        for (int j = 0; j < 4; j++)
            EXPECT_EQ(r.M[i][j], expected[i][j]) << i << "," << j;
    EXPECT_FALSE(r.Identity);
    // Applying a then b to a point equals applying their product.
    MMatrix t;
    t.M[3][0] = 1, t.M[3][1] = 2, t.M[3][2] = 3;
    t.Identity = false;
    MMatrix turn = Rows({{0, 1, 0, 0}, {-1, 0, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}});
    MMatrix both = Multiply(t, turn);
    MPoint3 p{4, 5, 6};
    MPoint3 once = Transform(both, p);
    MPoint3 twice = Transform(turn, Transform(t, p));
    EXPECT_EQ(once.x, twice.x);
    EXPECT_EQ(once.y, twice.y);
    EXPECT_EQ(once.z, twice.z);
    EXPECT_EQ(both.M[3][0], -2.0f);
    EXPECT_EQ(both.M[3][1], 1.0f);
    EXPECT_EQ(both.M[3][2], 3.0f);
}

TEST(GeometryInvert, KnownInverses) {
    // Scales 2, 4, 0.5 then translation (1,2,3): the inverse scales by
    // 0.5, 0.25, 2 and translates by -(1 * 0.5, 2 * 0.25, 3 * 2).
    MMatrix m = Rows({{2, 0, 0, 0}, {0, 4, 0, 0}, {0, 0, 0.5f, 0}, {1, 2, 3, 1}});
    Invert(m);
    float expected[4][4] = {{0.5f, 0, 0, 0}, {0, 0.25f, 0, 0}, {0, 0, 2, 0}, {-0.5f, -0.5f, -6, 1}};
    for (int i = 0; i < 4; i++)
        for (int j = 0; j < 4; j++)
            EXPECT_FLOAT_EQ(m.M[i][j], expected[i][j]) << i << "," << j;
    EXPECT_FALSE(m.Identity);
    // The fourth column takes part: row 0 = (2,0,0,1) has the inverse row
    // (0.5,0,0,-0.5), since 2 (0.5,0,0,-0.5) + 1 (0,0,0,1) = (1,0,0,0).
    MMatrix n = Rows({{2, 0, 0, 1}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}});
    Invert(n);
    float expectedN[4][4] = {{0.5f, 0, 0, -0.5f}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0, 0, 0, 1}};
    for (int i = 0; i < 4; i++)
        for (int j = 0; j < 4; j++)
            EXPECT_FLOAT_EQ(n.M[i][j], expectedN[i][j]) << i << "," << j;
}

TEST(GeometryInvert, MultipliesBackToTheIdentity) {
    MMatrix general = Rows({{4, 7, 2, 0.5f}, {3, 6, 1, -1}, {2, 5, 3, 2}, {1, -2, 3, 1}});
    MMatrix inverse = general;
    Invert(inverse);
    ExpectNearIdentity(Multiply(general, inverse), 1e-5f);
    ExpectNearIdentity(Multiply(inverse, general), 1e-5f);
    // A rotation with a translation.
    MMatrix placed = YawPitchRoll(0.3f, -0.5f, 1.2f);
    placed.M[3][0] = 12, placed.M[3][1] = -40, placed.M[3][2] = 7.5f;
    placed.Identity = false;
    inverse = placed;
    Invert(inverse);
    ExpectNearIdentity(Multiply(placed, inverse), 1e-5f);
    MPoint3 p{3, -4, 5};
    MPoint3 back = Transform(inverse, Transform(placed, p));
    EXPECT_NEAR(back.x, 3.0f, 1e-4);
    EXPECT_NEAR(back.y, -4.0f, 1e-4);
    EXPECT_NEAR(back.z, 5.0f, 1e-4);
    // Inverting twice returns the matrix.
    Invert(inverse);
    for (int i = 0; i < 4; i++)
        for (int j = 0; j < 4; j++)
            EXPECT_NEAR(inverse.M[i][j], placed.M[i][j], 1e-4);
}

TEST(GeometryInvert, SingularOrFlaggedIdentityIsUnchanged) {
    // Row 1 is twice row 0: the determinant is exactly 0.
    MMatrix singular = Rows({{1, 2, 3, 0}, {2, 4, 6, 0}, {0, 0, 1, 0}, {5, 6, 7, 1}});
    MMatrix before = singular;
    Invert(singular);
    EXPECT_TRUE(SameBits(singular, before));
    MMatrix zero = Rows({{0, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 0}, {0, 0, 0, 0}});
    before = zero;
    Invert(zero);
    EXPECT_TRUE(SameBits(zero, before));
    // With the flag set nothing is computed, even with other entries.
    MMatrix flagged;
    flagged.M[0][0] = 2;
    before = flagged;
    Invert(flagged);
    EXPECT_TRUE(SameBits(flagged, before));
}

TEST(GeometryInvert, UpdatesTheIdentityFlag) {
    // Unflagged entries of the identity invert to the identity, now flagged.
    MMatrix m;
    m.Identity = false;
    Invert(m);
    EXPECT_TRUE(m.Identity);
    MMatrix t = Rows({{1, 0, 0, 0}, {0, 1, 0, 0}, {0, 0, 1, 0}, {0.00003f, 0, 0, 1}});
    Invert(t);
    EXPECT_TRUE(t.Identity);
    EXPECT_EQ(t.M[3][0], -0.00003f);
}

TEST(GeometryOrthonormalize, RestoresADriftedRotation) {
    MMatrix r = YawPitchRoll(0.4f, -0.3f, 1.1f);
    r.M[3][0] = 5, r.M[3][1] = 6, r.M[3][2] = 7;
    r.Identity = false;
    // Drift: the first column grows, the second shrinks, the third and the
    // fourth column are spoilt.
    MMatrix m = r;
    for (int i = 0; i < 3; i++) {
        m.M[i][0] *= 1.01f;
        m.M[i][1] *= 0.98f;
        m.M[i][2] += 0.1f;
        m.M[i][3] = 0.2f;
    }
    m.M[3][3] = 2;
    Orthonormalize(m);
    for (int i = 0; i < 3; i++)
        for (int j = 0; j < 3; j++)
            EXPECT_NEAR(m.M[i][j], r.M[i][j], 1e-6) << i << "," << j;
    ExpectRotation(Rows({{m.M[0][0], m.M[0][1], m.M[0][2], 0},
                         {m.M[1][0], m.M[1][1], m.M[1][2], 0},
                         {m.M[2][0], m.M[2][1], m.M[2][2], 0},
                         {0, 0, 0, 1}}),
                   1e-6f);
    for (int i = 0; i < 3; i++)
        EXPECT_EQ(m.M[i][3], 0.0f);
    EXPECT_EQ(m.M[3][3], 1.0f);
    EXPECT_EQ(m.M[3][0], 5.0f);
    EXPECT_EQ(m.M[3][1], 6.0f);
    EXPECT_EQ(m.M[3][2], 7.0f);
    EXPECT_FALSE(m.Identity);
}

TEST(GeometryOrthonormalize, AfterManyMultiplications) {
    MMatrix step = YawPitchRoll(0.001f, 0.002f, -0.0015f);
    MMatrix m = step;
    for (int i = 0; i < 20000; i++)
        m = Multiply(m, step);
    auto column = [&m](int j) { return MPoint3{m.M[0][j], m.M[1][j], m.M[2][j]}; };
    // The product has drifted measurably from unit columns.
    float drift = std::fabs(Length3(column(0)) - 1) + std::fabs(Length3(column(1)) - 1) +
                  std::fabs(Length3(column(2)) - 1);
    EXPECT_GT(drift, 1e-5f);
    Orthonormalize(m);
    EXPECT_NEAR(Length3(column(0)), 1.0f, 1e-6);
    EXPECT_NEAR(Length3(column(1)), 1.0f, 1e-6);
    MPoint3 z = Cross3(column(0), column(1));
    EXPECT_EQ(m.M[0][2], z.x);
    EXPECT_EQ(m.M[1][2], z.y);
    EXPECT_EQ(m.M[2][2], z.z);
    // The angle between the first two columns is kept as it was, so the
    // third column is unit only to within the remaining skew.
    EXPECT_NEAR(Length3(column(2)), 1.0f, 1e-3);
    ExpectRotation(m, 1e-3f);
}

TEST(GeometryOrthonormalize, ThirdColumnIsTheCrossOfTheFirstTwo) {
    // The second column is normalised but not turned square to the first:
    // x = (1,0,0), y = (1,1,0)/sqrt2, their cross product (0,0,1/sqrt2).
    MMatrix m = Rows({{3, 1, 9, 0}, {0, 1, 9, 0}, {0, 0, 9, 0}, {1, 2, 3, 1}});
    m.Identity = true; // not touched
    Orthonormalize(m);
    EXPECT_EQ(m.M[0][0], 1.0f);
    EXPECT_EQ(m.M[1][0], 0.0f);
    EXPECT_EQ(m.M[2][0], 0.0f);
    EXPECT_FLOAT_EQ(m.M[0][1], 1 / std::sqrt(2.0f));
    EXPECT_FLOAT_EQ(m.M[1][1], 1 / std::sqrt(2.0f));
    EXPECT_EQ(m.M[2][1], 0.0f);
    EXPECT_EQ(m.M[0][2], 0.0f);
    EXPECT_EQ(m.M[1][2], 0.0f);
    EXPECT_FLOAT_EQ(m.M[2][2], 1 / std::sqrt(2.0f));
    EXPECT_TRUE(m.Identity);
}

TEST(GeometryYawPitchRoll, ZeroAnglesAreTheIdentity) {
    MMatrix m = YawPitchRoll(0, 0, 0);
    EXPECT_TRUE(m.Identity);
    ExpectNearIdentity(m, 0);
}

TEST(GeometryYawPitchRoll, QuarterTurnsOfEachAngle) {
    // Yaw alone (s1 = 1, c1 = 0): rows (c1, 0, -s1), (0, 1, 0), (s1, 0, c1)
    // = (0,0,-1), (0,1,0), (1,0,0): a turn about y, x going to -z.
    MMatrix yaw = YawPitchRoll(Pi / 2, 0, 0);
    EXPECT_FALSE(yaw.Identity);
    float yawRows[3][3] = {{0, 0, -1}, {0, 1, 0}, {1, 0, 0}};
    // Pitch alone (s2 = 1, c2 = 0): rows (1, 0, 0), (0, c2, s2), (0, -s2, c2)
    // = (1,0,0), (0,0,1), (0,-1,0): a turn about x, y going to z.
    MMatrix pitch = YawPitchRoll(0, Pi / 2, 0);
    float pitchRows[3][3] = {{1, 0, 0}, {0, 0, 1}, {0, -1, 0}};
    // Roll alone (s3 = 1, c3 = 0): rows (c3, s3, 0), (-s3, c3, 0), (0, 0, 1)
    // = (0,1,0), (-1,0,0), (0,0,1): a turn about z, x going to y.
    MMatrix roll = YawPitchRoll(0, 0, Pi / 2);
    float rollRows[3][3] = {{0, 1, 0}, {-1, 0, 0}, {0, 0, 1}};
    for (int i = 0; i < 3; i++)
        for (int j = 0; j < 3; j++) {
            EXPECT_NEAR(yaw.M[i][j], yawRows[i][j], 1e-6) << i << "," << j;
            EXPECT_NEAR(pitch.M[i][j], pitchRows[i][j], 1e-6) << i << "," << j;
            EXPECT_NEAR(roll.M[i][j], rollRows[i][j], 1e-6) << i << "," << j;
        }
    MPoint3 x = Transform(yaw, MPoint3{1, 0, 0});
    EXPECT_NEAR(x.z, -1.0f, 1e-6);
}

TEST(GeometryYawPitchRoll, CombinedAnglesByHand) {
    // yaw pi/3: s1 = sqrt3/2, c1 = 1/2; pitch pi/6: s2 = 1/2, c2 = sqrt3/2;
    // roll pi/4: s3 = c3 = sqrt2/2.
    //   M00 = s2 s1 s3 + c3 c1 = sqrt6/8 + sqrt2/4  =  0.6597396
    //   M01 = s3 c2            = sqrt6/4            =  0.6123724
    //   M02 = s2 c1 s3 - c3 s1 = sqrt2/8 - sqrt6/4  = -0.4355958
    //   M10 = s2 s1 c3 - s3 c1 = sqrt6/8 - sqrt2/4  = -0.0473672
    //   M11 = c3 c2            = sqrt6/4            =  0.6123724
    //   M12 = s2 c1 c3 + s3 s1 = sqrt2/8 + sqrt6/4  =  0.7891491
    //   M20 = c2 s1            = 3/4
    //   M21 = -s2              = -1/2
    //   M22 = c2 c1            = sqrt3/4            =  0.4330127
    double r2 = std::sqrt(2.0), r3 = std::sqrt(3.0), r6 = std::sqrt(6.0);
    double expected[3][3] = {{r6 / 8 + r2 / 4, r6 / 4, r2 / 8 - r6 / 4},
                             {r6 / 8 - r2 / 4, r6 / 4, r2 / 8 + r6 / 4},
                             {0.75, -0.5, r3 / 4}};
    MMatrix m = YawPitchRoll(Pi / 3, Pi / 6, Pi / 4);
    for (int i = 0; i < 3; i++)
        for (int j = 0; j < 3; j++)
            EXPECT_NEAR(m.M[i][j], expected[i][j], 1e-6) << i << "," << j;
    EXPECT_NEAR(m.M[0][0], 0.6597396, 1e-6);
    EXPECT_NEAR(m.M[1][2], 0.7891491, 1e-6);
    EXPECT_FALSE(m.Identity);
    ExpectRotation(m, 1e-6f);
}

TEST(GeometryYawPitchRoll, AlwaysOrthonormal) {
    float angles[] = {-3.0f, -1.2f, -0.01f, 0.0f, 0.7f, 2.5f, 6.0f};
    for (float yaw : angles)
        for (float pitch : angles)
            for (float roll : angles)
                ExpectRotation(YawPitchRoll(yaw, pitch, roll), 1e-6f);
}

TEST(GeometryYawPitchRoll, TinyAnglesCountAsIdentity) {
    // sin(0.00005) passes the zero test and cos(0.00005) rounds to 1.
    EXPECT_TRUE(YawPitchRoll(0.00005f, -0.00005f, 0.00005f).Identity);
    EXPECT_FALSE(YawPitchRoll(0.0001f, 0, 0).Identity);
}

TEST(GeometryUpdateIdentity, EachEntryWithinTheZeroTest) {
    MMatrix m;
    m.Identity = false;
    UpdateIdentity(m);
    EXPECT_TRUE(m.Identity);
    m.M[0][0] = 1.00005f;
    m.M[2][1] = -0.00003f;
    m.M[3][2] = 0.00005f;
    UpdateIdentity(m);
    EXPECT_TRUE(m.Identity);
    m.M[3][2] = 0.001f;
    UpdateIdentity(m);
    EXPECT_FALSE(m.Identity);
    m.M[3][2] = 0;
    m.M[3][3] = 0.9999f;
    UpdateIdentity(m);
    EXPECT_FALSE(m.Identity);
    m.M[3][3] = 1;
    m.M[1][3] = 0.0001f; // the fourth column counts too
    UpdateIdentity(m);
    EXPECT_FALSE(m.Identity);
}
