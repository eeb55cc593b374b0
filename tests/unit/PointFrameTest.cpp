// The frame of a point: tangent, roll, stand-by rolls and the road flag.

#include "SketchTestSupport.h"

#include <cmath>

namespace {

MPoint3 Row(const MMatrix& m, int i) {
    return P3(m.M[i][0], m.M[i][1], m.M[i][2]);
}

// Exact equality that takes a zero of either sign as zero: a cross product of
// axis vectors gives minus zeros here and there.
bool Same(const MPoint3& a, const MPoint3& b) {
    return a.x == b.x && a.y == b.y && a.z == b.z;
}

::testing::AssertionResult Near(const MPoint3& a, const MPoint3& b, float tolerance = 1e-6f) {
    if (std::fabs(a.x - b.x) <= tolerance && std::fabs(a.y - b.y) <= tolerance &&
        std::fabs(a.z - b.z) <= tolerance)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "(" << a.x << ", " << a.y << ", " << a.z << ") vs ("
                                         << b.x << ", " << b.y << ", " << b.z << ")";
}

// A record at position with its outgoing handle along tangent and the given roll.
WSketchPoint Heading(const MPoint3& position, const MPoint3& tangent, const MPoint3& roll) {
    WSketchPoint r = Record(position.x, position.y, position.z, KindLine);
    r.HandleIn = position - tangent;
    r.HandleOut = position + tangent;
    r.Roll = roll;
    return r;
}

} // namespace

// Heading along z with no roll: z of f is not 0 but y is, so the stand-by is
// (0,1,0). u = (0,0,1) x (0,1,0) = (-1,0,0), X = u x f = (0,1,0).
TEST(PointFrame, ZeroRollAlongZTakesStandByY) {
    WSketchPoint r = Heading(P3(5, 6, 7), P3(0, 0, 3), P3(0, 0, 0));
    for (bool useHandleOut : {true, false}) {
        MMatrix m = MakePointFrame(r, useHandleOut, false);
        EXPECT_TRUE(Same(Row(m, 0), P3(0, 1, 0)));
        EXPECT_TRUE(Same(Row(m, 1), P3(-1, 0, 0)));
        EXPECT_TRUE(Same(Row(m, 2), P3(0, 0, 1)));
        EXPECT_TRUE(Same(Row(m, 3), P3(5, 6, 7)));
        for (int i = 0; i < 3; i++)
            EXPECT_EQ(m.M[i][3], 0.0f);
        EXPECT_EQ(m.M[3][3], 1.0f);
        EXPECT_FALSE(m.Identity);
    }
}

// A roll below the zero limit counts as none given.
TEST(PointFrame, NearZeroRollCountsAsNone) {
    MMatrix m = MakePointFrame(Heading(P3(0, 0, 0), P3(0, 0, -2), P3(1e-5f, 0, 0)), true, false);
    EXPECT_TRUE(Near(Row(m, 0), P3(0, 1, 0)));
    EXPECT_TRUE(Near(Row(m, 2), P3(0, 0, -1)));
}

// z of f is 0: stand-by (0,0,1). f = (1,0,0): u = (0,-1,0), X = (0,0,1).
TEST(PointFrame, FlatTangentTakesStandByZ) {
    MMatrix m = MakePointFrame(Heading(P3(0, 0, 0), P3(2, 0, 0), P3(0, 0, 0)), true, false);
    EXPECT_TRUE(Same(Row(m, 0), P3(0, 0, 1)));
    EXPECT_TRUE(Same(Row(m, 1), P3(0, -1, 0)));
    EXPECT_TRUE(Same(Row(m, 2), P3(1, 0, 0)));
}

// x of f is 0, y and z are not: stand-by (1,0,0). f = (0,0.6,0.8):
// u = f x (1,0,0) = (0,0.8,-0.6), X = u x f = (1,0,0).
TEST(PointFrame, TangentWithoutXTakesStandByX) {
    MMatrix m = MakePointFrame(Heading(P3(0, 0, 0), P3(0, 3, 4), P3(0, 0, 0)), true, false);
    EXPECT_TRUE(Near(Row(m, 0), P3(1, 0, 0)));
    EXPECT_TRUE(Near(Row(m, 1), P3(0, 0.8f, -0.6f)));
    EXPECT_TRUE(Near(Row(m, 2), P3(0, 0.6f, 0.8f)));
}

// A general tangent: stand-by (-y, x, 0). f = (1,2,2)/3 and r = (-2,1,0)/sqrt 5
// are perpendicular already, so X is r itself.
TEST(PointFrame, GeneralTangentTakesStandByInThePlane) {
    MMatrix m = MakePointFrame(Heading(P3(0, 0, 0), P3(1, 2, 2), P3(0, 0, 0)), true, false);
    const float r5 = 1.0f / std::sqrt(5.0f);
    EXPECT_TRUE(Near(Row(m, 0), P3(-2 * r5, r5, 0)));
    EXPECT_TRUE(Near(Row(m, 2), P3(1.0f / 3, 2.0f / 3, 2.0f / 3)));
}

// A given roll is made perpendicular to the tangent: (1,0,1) along z gives X
// (1,0,0), not a stand-by.
TEST(PointFrame, GivenRollIsMadePerpendicular) {
    MMatrix m = MakePointFrame(Heading(P3(0, 0, 0), P3(0, 0, 1), P3(1, 0, 1)), true, false);
    EXPECT_TRUE(Near(Row(m, 0), P3(1, 0, 0)));
    EXPECT_TRUE(Near(Row(m, 1), P3(0, 1, 0)));
    EXPECT_TRUE(Near(Row(m, 2), P3(0, 0, 1)));
    EXPECT_TRUE(m.Identity); // at the origin this frame is the identity
}

// A roll exactly along the tangent is kept: X and Y come out zero, no repair.
TEST(PointFrame, RollAlongTheTangentGivesZeroAxes) {
    MMatrix m = MakePointFrame(Heading(P3(1, 1, 1), P3(0, 0, 4), P3(0, 0, 2)), true, false);
    EXPECT_TRUE(Same(Row(m, 0), P3(0, 0, 0)));
    EXPECT_TRUE(Same(Row(m, 1), P3(0, 0, 0)));
    EXPECT_TRUE(Same(Row(m, 2), P3(0, 0, 1)));
}

// Without useHandleOut the tangent is the sum of the two normalised sides, so
// the lengths of the handles do not weigh: in along z by 10, out along x by 1
// gives f along (1,0,1).
TEST(PointFrame, TangentFromBothHandles) {
    WSketchPoint r = Record(0, 0, 0, KindLine);
    r.HandleIn = P3(0, 0, -10);
    r.HandleOut = P3(1, 0, 0);
    r.Roll = P3(0, 1, 0);
    MMatrix m = MakePointFrame(r, false, false);
    const float h = 1.0f / std::sqrt(2.0f);
    EXPECT_TRUE(Near(Row(m, 2), P3(h, 0, h)));
    EXPECT_TRUE(Near(Row(m, 0), P3(0, 1, 0)));
    MMatrix out = MakePointFrame(r, true, false);
    EXPECT_TRUE(Near(Row(out, 2), P3(1, 0, 0)));
}

// A road loses the climb of its tangent and roll: f (1,1,0) becomes (1,0,0)
// and a roll (0,5,2) becomes (0,0,2), so X is (0,0,1).
TEST(PointFrame, RoadFlattensTangentAndRoll) {
    WSketchPoint r = Heading(P3(0, 0, 0), P3(1, 1, 0), P3(0, 5, 2));
    MMatrix road = MakePointFrame(r, true, true);
    EXPECT_TRUE(Same(Row(road, 2), P3(1, 0, 0)));
    EXPECT_TRUE(Same(Row(road, 0), P3(0, 0, 1)));
    MMatrix free = MakePointFrame(r, true, false);
    const float h = 1.0f / std::sqrt(2.0f);
    EXPECT_TRUE(Near(Row(free, 2), P3(h, h, 0)));
    EXPECT_FALSE(Near(Row(free, 0), P3(0, 0, 1)));
}

// The stand-by is chosen before the road flattens: f = (1,1,0) has z 0, so the
// stand-by is (0,0,1), which the road keeps.
TEST(PointFrame, RoadWithStandBy) {
    MMatrix m = MakePointFrame(Heading(P3(0, 0, 0), P3(1, 1, 0), P3(0, 0, 0)), true, true);
    EXPECT_TRUE(Same(Row(m, 0), P3(0, 0, 1)));
    EXPECT_TRUE(Same(Row(m, 2), P3(1, 0, 0)));
}
