// The loops and inversions: "Immelmann turn", "Circular loop", "Clothoid
// loop", "Dive loop", "Top hat", "Corkscrew", "Cobra roll", "Batwing" and
// "Hammerhead turn", each added to an empty sketch and compared point by
// point with its local geometry (see ElementTestSupport.h for the frame of
// the empty sketch: local (x, y, z) is world (z, y, -x)).
//
// tan(pi/8) is tan of the float 0.3926991, 0.41421357; tan(pi/4) of the
// float 0.7853982 rounds to exactly 1. Arc handles R * 4/3 * tan are formed
// in double and rounded once (Handle43). Radii such as 6.5 and 12.5 are
// chosen where that single rounding gives another float than rounding
// R * 4/3 first.

#include "ElementTestSupport.h"

#include <vector>

namespace {

const float Degree = 0.017453292f;
const float Pi = 3.1415927f;

class LoopElements : public ElementTest {
  protected:
    // All positions and handles of the new records lie in the local plane
    // x = 0, which is the world plane z = 0 on the empty sketch.
    bool InLocalPlaneX0() const {
        for (int32_t i = 1; i < Count(); i++)
            if (Pt(i).Position.z != 0 || Pt(i).HandleIn.z != 0 || Pt(i).HandleOut.z != 0)
                return false;
        return true;
    }
};

float Tan8() {
    return std::tan(0.3926991f);
}
float Tan4() {
    return std::tan(0.7853982f);
}
MPoint3 Neg(const MPoint3& v) {
    return MPoint3{-v.x, -v.y, -v.z};
}

} // namespace

TEST(LoopElementsNumbers, TangentsOfTheSinglePrecisionAngles) {
    EXPECT_EQ(Tan4(), 1.0f);
    EXPECT_NEAR(Tan8(), 0.41421357, 1e-7);
    // The single rounding of R * 4/3 * tan matters for these radii.
    EXPECT_NE(Handle43(6.5f, Tan8()), float(6.5 * 1.3333333333333333) * Tan8());
    EXPECT_NE(Handle43(12.5f, Tan8()), float(12.5 * 1.3333333333333333) * Tan8());
}

// ---- "Immelmann turn"

TEST_F(LoopElements, ImmelmannTurnDefaults) {
    // (30, 10, 0): no twist, half circles: l = 30 * 4/3 * 1 = 40.
    // q = sqrt((30 * 6.2831855)^2 + 10^2) = 188.7606, w = 40 * 10 / q = 2.11909.
    // One point, the top: P (5, 60, 0), h (w, 0, -40), r (1, 0, 0): the rider
    // stays inverted, travelling along -Z. S (0, 0, 40).
    Add(ElementImmelmannTurn, 30, 10, 0);
    ASSERT_EQ(Count(), 2);
    float l = Handle43(30, Tan4());
    float q = std::sqrt((30 * 6.2831855f) * (30 * 6.2831855f) + 10.0f * 10.0f);
    float w = l * 10 / q;
    EXPECT_EQ(l, 40.0f);
    EXPECT_NEAR(w, 2.11909, 1e-5);
    EXPECT_TRUE(StartPointWith(P3(0, 0, 40)));
    EXPECT_TRUE(Local(1, P3(5, 60, 0), P3(w, 0, -40), P3(1, 0, 0)));
}

TEST_F(LoopElements, ImmelmannTurnWithTwistAndNegativeWidth) {
    // (12.5, -8, 1): quarter circles: l = 12.5 * 4/3 * tan(pi/8) = 6.90356.
    // q = sqrt(78.5398^2 + 64) = 78.9465, w = l * -8 / q = -0.699571.
    // Rising: P (-2, 12.5, 12.5), h (w, l, 0), r (0, 0, 1). Top: P (-4, 25, 0),
    // h (w, 0, -l), r (-1, 0, 0): the twist has turned the rider upright.
    Add(ElementImmelmannTurn, 12.5f, -8, 1);
    ASSERT_EQ(Count(), 3);
    float l = Handle43(12.5f, Tan8());
    float q = std::sqrt((12.5f * 6.2831855f) * (12.5f * 6.2831855f) + 64.0f);
    float w = l * -8 / q;
    EXPECT_NEAR(l, 6.90356, 1e-5);
    EXPECT_NEAR(w, -0.699571, 1e-5);
    EXPECT_TRUE(StartPointWith(P3(0, 0, l)));
    EXPECT_TRUE(Local(1, P3(-2, 12.5f, 12.5f), P3(w, l, 0), P3(0, 0, 1)));
    EXPECT_TRUE(Local(2, P3(-4, 25, 0), P3(w, 0, -l), P3(-1, 0, 0)));
}

TEST_F(LoopElements, ImmelmannTurnTwistIsReadOnlyBySign) {
    // A negative twist turns the rising roll the other way.
    Add(ElementImmelmannTurn, 12.5f, -8, -3);
    ASSERT_EQ(Count(), 3);
    float l = Handle43(12.5f, Tan8());
    float q = std::sqrt((12.5f * 6.2831855f) * (12.5f * 6.2831855f) + 64.0f);
    float w = l * -8 / q;
    EXPECT_TRUE(Local(1, P3(-2, 12.5f, 12.5f), P3(w, l, 0), P3(0, 0, -1)));
    EXPECT_TRUE(Local(2, P3(-4, 25, 0), P3(w, 0, -l), P3(-1, 0, 0)));
    std::vector<WSketchPoint> minusThree = Records(*TheSketch);
    TheSketch->PointCount = 0;
    Add(ElementImmelmannTurn, 12.5f, -8, -0.25f);
    std::vector<WSketchPoint> minusQuarter = Records(*TheSketch);
    ASSERT_EQ(minusThree.size(), minusQuarter.size());
    for (size_t i = 0; i < minusThree.size(); i++)
        EXPECT_TRUE(SameRecordBits(minusThree[i], minusQuarter[i])) << i;
}

TEST_F(LoopElements, ImmelmannTurnWidthZeroAndFailure) {
    Add(ElementImmelmannTurn, 30, 0, 1);
    ASSERT_EQ(Count(), 3);
    EXPECT_TRUE(InLocalPlaneX0());
    TheSketch->PointCount = 0;
    Add(ElementImmelmannTurn, 30, 0, 0);
    ASSERT_EQ(Count(), 2);
    EXPECT_TRUE(InLocalPlaneX0());
    Add(ElementImmelmannTurn, 0, 10, 0);
    Add(ElementImmelmannTurn, -30, 10, 1);
    EXPECT_EQ(Count(), 2);
}

// ---- "Circular loop"

TEST_F(LoopElements, CircularLoopDefaultsHaveTwoPoints) {
    // (30, 10, 0): l = 40, w = 2.11909 as for the Immelmann turn.
    // Top P (5, 60, 0), h (w, 0, -40), r (1, 0, 0); end P (10, 0, 0),
    // h (0, 0, 40), r Side(h) = (1, 0, 0). S (0, 0, 40). The handles along
    // the loop's own plane have the length 40.
    Add(ElementCircularLoop, 30, 10, 0);
    ASSERT_EQ(Count(), 3);
    float l = Handle43(30, Tan4());
    float q = std::sqrt((30 * 6.2831855f) * (30 * 6.2831855f) + 10.0f * 10.0f);
    float w = l * 10 / q;
    EXPECT_TRUE(StartPointWith(P3(0, 0, 40)));
    EXPECT_TRUE(Local(1, P3(5, 60, 0), P3(w, 0, -40), P3(1, 0, 0)));
    EXPECT_TRUE(Local(2, P3(10, 0, 0), P3(0, 0, 40), LevelRoll(P3(0, 0, 40))));
    EXPECT_TRUE(SameVector(LevelRoll(P3(0, 0, 40)), P3(1, 0, 0)));
    EXPECT_EQ(Length3(Pt(2).HandleOut - Pt(2).Position), 40.0f);
    EXPECT_EQ(Length3(Pt(0).HandleOut - Pt(0).Position), 40.0f);
    EXPECT_EQ(Pt(1).HandleOut.y - Pt(1).Position.y, 0.0f);
    EXPECT_EQ(Pt(1).HandleOut.x - Pt(1).Position.x, -40.0f);
}

TEST_F(LoopElements, CircularLoopDefaultsWithTwistOneHaveFourPoints) {
    // (30, 10, 1): quarter circles, l = 30 * 4/3 * tan(pi/8) = 16.5685;
    // q = 188.7606 as without twist, w = 16.5685 * 10 / q = 0.877754.
    // Rising (2.5, 30, 30) h (w, l, 0) r (0, 0, 1); top (5, 60, 0)
    // h (w, 0, -l) r (-1, 0, 0); falling (7.5, 30, -30) h (w, -l, 0)
    // r (0, 0, 1); end (10, 0, 0) h (0, 0, l) r (1, 0, 0). S (0, 0, l).
    Add(ElementCircularLoop, 30, 10, 1);
    ASSERT_EQ(Count(), 5);
    float l = Handle43(30, Tan8());
    float q = std::sqrt((30 * 6.2831855f) * (30 * 6.2831855f) + 10.0f * 10.0f);
    float w = l * 10 / q;
    EXPECT_NEAR(l, 16.5685, 1e-4);
    EXPECT_NEAR(w, 0.877754, 1e-5);
    EXPECT_TRUE(StartPointWith(P3(0, 0, l)));
    EXPECT_TRUE(Local(1, P3(2.5f, 30, 30), P3(w, l, 0), P3(0, 0, 1)));
    EXPECT_TRUE(Local(2, P3(5, 60, 0), P3(w, 0, -l), P3(-1, 0, 0)));
    EXPECT_TRUE(Local(3, P3(7.5f, 30, -30), P3(w, -l, 0), P3(0, 0, 1)));
    EXPECT_TRUE(Local(4, P3(10, 0, 0), P3(0, 0, l), P3(1, 0, 0)));
}

TEST_F(LoopElements, CircularLoopWithTwistHasFourPoints) {
    // (6.5, 3, 1): l = 6.5 * 4/3 * tan(pi/8) = 3.58985,
    // q = sqrt(40.8407^2 + 9) = 40.9507, w = l * 3 / q = 0.262988.
    // Rising (0.75, 6.5, 6.5) h (w, l, 0) r (0, 0, 1); top (1.5, 13, 0)
    // h (w, 0, -l) r (-1, 0, 0); falling (2.25, 6.5, -6.5) h (w, -l, 0)
    // r (0, 0, 1); end (3, 0, 0) h (0, 0, l) r (1, 0, 0). S (0, 0, l).
    Add(ElementCircularLoop, 6.5f, 3, 1);
    ASSERT_EQ(Count(), 5);
    float l = Handle43(6.5f, Tan8());
    float q = std::sqrt((6.5f * 6.2831855f) * (6.5f * 6.2831855f) + 9.0f);
    float w = l * 3 / q;
    EXPECT_NEAR(l, 3.58985, 1e-5);
    EXPECT_NEAR(w, 0.262988, 1e-5);
    EXPECT_TRUE(StartPointWith(P3(0, 0, l)));
    EXPECT_TRUE(Local(1, P3(0.75f, 6.5f, 6.5f), P3(w, l, 0), P3(0, 0, 1)));
    EXPECT_TRUE(Local(2, P3(1.5f, 13, 0), P3(w, 0, -l), P3(-1, 0, 0)));
    EXPECT_TRUE(Local(3, P3(2.25f, 6.5f, -6.5f), P3(w, -l, 0), P3(0, 0, 1)));
    EXPECT_TRUE(Local(4, P3(3, 0, 0), P3(0, 0, l), LevelRoll(P3(0, 0, l))));
}

TEST_F(LoopElements, CircularLoopNegativeTwistAndWidth) {
    // (30, -20, -1): quarter circles; the rolls at the sides point along -Z.
    Add(ElementCircularLoop, 30, -20, -1);
    ASSERT_EQ(Count(), 5);
    float l = Handle43(30, Tan8());
    float q = std::sqrt((30 * 6.2831855f) * (30 * 6.2831855f) + 400.0f);
    float w = l * -20 / q;
    EXPECT_TRUE(Local(1, P3(-5, 30, 30), P3(w, l, 0), P3(0, 0, -1)));
    EXPECT_TRUE(Local(2, P3(-10, 60, 0), P3(w, 0, -l), P3(-1, 0, 0)));
    EXPECT_TRUE(Local(3, P3(-15, 30, -30), P3(w, -l, 0), P3(0, 0, -1)));
    EXPECT_TRUE(Local(4, P3(-20, 0, 0), P3(0, 0, l), LevelRoll(P3(0, 0, l))));
}

TEST_F(LoopElements, CircularLoopWidthZeroStaysInPlaneAndFailure) {
    Add(ElementCircularLoop, 30, 0, 1);
    ASSERT_EQ(Count(), 5);
    EXPECT_TRUE(InLocalPlaneX0());
    TheSketch->PointCount = 0;
    Add(ElementCircularLoop, 30, 0, 0);
    ASSERT_EQ(Count(), 3);
    EXPECT_TRUE(InLocalPlaneX0());
    Add(ElementCircularLoop, 0, 10, 0);
    Add(ElementCircularLoop, -1, 10, 0);
    EXPECT_EQ(Count(), 3);
}

// ---- "Clothoid loop"

TEST_F(LoopElements, ClothoidLoopDefaults) {
    // (40, 20, 10, 0): a = 40 * 4/3 * tan(pi/8) = 22.0914, b = 11.0457.
    // c = 20 pi + 40 pi = 188.496; wa = a * 10 / c = 1.17198, wb = 0.585992.
    // e1 = (40 pi) * 0.5 = 62.8319, e2 = 20 pi = 62.8319; z2 = 40 - 40 = 0.
    // Rising (e1 W / c = 3.33333, 40, 40); top ((e2 / 2 + e1) W / c = 5, 60,
    // 20); falling ((e1 + e2) W / c = 6.66667, 40, 0); end (10, 0, 40),
    // 2 (R1 - R2) = 40 further along Z. All rolls (1, 0, 0). S (0, 0, a).
    Add(ElementClothoidLoop, 40, 20, 10, 0);
    ASSERT_EQ(Count(), 5);
    float a = Handle43(40, Tan8()), b = Handle43(20, Tan8());
    float c = 20 * Pi + 40 * Pi;
    float wa = a * 10 / c, wb = b * 10 / c;
    double e1 = double(40) * double(Pi) * 0.5, e2 = double(20) * double(Pi);
    MPoint3 rising{float(e1 * 10 / c), 40, 40};
    MPoint3 top{float((e2 * 0.5 + e1) * 10 / c), 60, 20};
    MPoint3 falling{float((e1 + e2) * 10 / c), 40, 0};
    MPoint3 end{10, 0, 40};
    EXPECT_NEAR(a, 22.0914, 1e-4);
    EXPECT_NEAR(wa, 1.17198, 1e-5);
    EXPECT_NEAR(wb, 0.585992, 1e-5);
    EXPECT_TRUE(NearVector(rising, P3(3.33333f, 40, 40), 1e-5));
    EXPECT_TRUE(NearVector(top, P3(5, 60, 20), 1e-5));
    EXPECT_TRUE(NearVector(falling, P3(6.66667f, 40, 0), 1e-5));
    const MPoint3 level{1, 0, 0};
    EXPECT_TRUE(StartPointWith(P3(0, 0, a)));
    EXPECT_TRUE(Local(1, rising, rising - P3(wa, a, 0), rising + P3(wb, b, 0), level));
    EXPECT_TRUE(Local(2, top, top - P3(wb, 0, -b), top + P3(wb, 0, -b), level));
    EXPECT_TRUE(Local(3, falling, falling - P3(wb, -b, 0), falling + P3(wa, -a, 0), level));
    EXPECT_TRUE(Local(4, end, P3(0, 0, a), level));
}

TEST_F(LoopElements, ClothoidLoopWithEqualRadiiIsACircleEndingAtZ0) {
    // (25, 25, 6, 1): a = b = 25 * 4/3 * tan(pi/8) = 13.8071; z2 = -25 and the
    // end at z2 + R1 = 0. Twisted: rolls (0, 0, 1) at the sides, (-1, 0, 0)
    // at the top.
    Add(ElementClothoidLoop, 25, 25, 6, 1);
    ASSERT_EQ(Count(), 5);
    float a = Handle43(25, Tan8());
    float c = 25 * Pi + 25 * Pi;
    float wa = a * 6 / c;
    double e1 = double(25) * double(Pi) * 0.5, e2 = double(25) * double(Pi);
    MPoint3 rising{float(e1 * 6 / c), 25, 25};
    MPoint3 top{float((e2 * 0.5 + e1) * 6 / c), 50, 0};
    MPoint3 falling{float((e1 + e2) * 6 / c), 25, -25};
    EXPECT_NEAR(a, 13.8071, 1e-4);
    EXPECT_TRUE(NearVector(rising, P3(1.5f, 25, 25), 1e-5));
    EXPECT_TRUE(NearVector(top, P3(3, 50, 0), 1e-5));
    EXPECT_TRUE(NearVector(falling, P3(4.5f, 25, -25), 1e-5));
    EXPECT_TRUE(Local(1, rising, rising - P3(wa, a, 0), rising + P3(wa, a, 0), P3(0, 0, 1)));
    EXPECT_TRUE(Local(2, top, top - P3(wa, 0, -a), top + P3(wa, 0, -a), P3(-1, 0, 0)));
    EXPECT_TRUE(Local(3, falling, falling - P3(wa, -a, 0), falling + P3(wa, -a, 0), P3(0, 0, 1)));
    EXPECT_TRUE(Local(4, P3(6, 0, 0), P3(0, 0, a), P3(1, 0, 0)));
    // Ends where it started along Z, shifted sideways by the width.
    EXPECT_EQ(Pt(4).Position.x, 0.0f);
    EXPECT_EQ(Pt(4).Position.z, -6.0f);
}

TEST_F(LoopElements, ClothoidLoopNegativeWidthAndTwist) {
    // (12.5, 6.5, -4, -1): a = 6.90356, b = 3.58985, c = 59.6903,
    // wa = -0.462626, wb = -0.240565; x -1.31579, -2, -2.68421; z2 = -0.5,
    // end z = 12. Side rolls (0, 0, -1).
    Add(ElementClothoidLoop, 12.5f, 6.5f, -4, -1);
    ASSERT_EQ(Count(), 5);
    float a = Handle43(12.5f, Tan8()), b = Handle43(6.5f, Tan8());
    float c = 6.5f * Pi + 12.5f * Pi;
    float wa = a * -4 / c, wb = b * -4 / c;
    double e1 = double(12.5f) * double(Pi) * 0.5, e2 = double(6.5f) * double(Pi);
    float z2 = 12.5f - 2 * 6.5f;
    MPoint3 rising{float(e1 * -4 / c), 12.5f, 12.5f};
    MPoint3 top{float((e2 * 0.5 + e1) * -4 / c), 19, 6};
    MPoint3 falling{float((e1 + e2) * -4 / c), 12.5f, z2};
    EXPECT_NEAR(wa, -0.462626, 1e-5);
    EXPECT_NEAR(wb, -0.240565, 1e-5);
    EXPECT_TRUE(NearVector(rising, P3(-1.31579f, 12.5f, 12.5f), 1e-5));
    EXPECT_TRUE(NearVector(top, P3(-2, 19, 6), 1e-5));
    EXPECT_TRUE(NearVector(falling, P3(-2.68421f, 12.5f, -0.5f), 1e-5));
    EXPECT_TRUE(StartPointWith(P3(0, 0, a)));
    EXPECT_TRUE(Local(1, rising, rising - P3(wa, a, 0), rising + P3(wb, b, 0), P3(0, 0, -1)));
    EXPECT_TRUE(Local(2, top, top - P3(wb, 0, -b), top + P3(wb, 0, -b), P3(-1, 0, 0)));
    EXPECT_TRUE(Local(3, falling, falling - P3(wb, -b, 0), falling + P3(wa, -a, 0), P3(0, 0, -1)));
    EXPECT_TRUE(Local(4, P3(-4, 0, z2 + 12.5f), P3(0, 0, a), P3(1, 0, 0)));
}

TEST_F(LoopElements, ClothoidLoopKeepsQuarterLengthsInDouble) {
    // (1, 1.5, 1, 0): a top radius above the bottom one is accepted too.
    // e2 = 1.5 pi is kept in double; rounding it to a float first would move
    // the top and the falling point sideways by one unit in the last place.
    // c = 1.5 pi + pi = 7.85398; x: 0.5 pi, 1.25 pi and 2 pi over c: 0.2, 0.5, 0.8.
    Add(ElementClothoidLoop, 1, 1.5f, 1, 0);
    ASSERT_EQ(Count(), 5);
    float a = Handle43(1, Tan8()), b = Handle43(1.5f, Tan8());
    float c = 1.5f * Pi + 1 * Pi;
    float wa = a * 1 / c, wb = b * 1 / c;
    double e1 = double(1) * double(Pi) * 0.5, e2 = double(1.5f) * double(Pi);
    MPoint3 rising{float(e1 * 1 / c), 1, 1};
    MPoint3 top{float((e2 * 0.5 + e1) * 1 / c), 2.5f, -0.5f};
    MPoint3 falling{float((e1 + e2) * 1 / c), 1, -2};
    EXPECT_NE(top.x, float((double(1.5f * Pi) * 0.5 + e1) * 1 / c));
    EXPECT_NE(falling.x, float((e1 + double(1.5f * Pi)) * 1 / c));
    EXPECT_TRUE(NearVector(rising, P3(0.2f, 1, 1), 1e-6));
    EXPECT_TRUE(NearVector(top, P3(0.5f, 2.5f, -0.5f), 1e-6));
    EXPECT_TRUE(NearVector(falling, P3(0.8f, 1, -2), 1e-6));
    const MPoint3 level{1, 0, 0};
    EXPECT_TRUE(Local(1, rising, rising - P3(wa, a, 0), rising + P3(wb, b, 0), level));
    EXPECT_TRUE(Local(2, top, top - P3(wb, 0, -b), top + P3(wb, 0, -b), level));
    EXPECT_TRUE(Local(3, falling, falling - P3(wb, -b, 0), falling + P3(wa, -a, 0), level));
    EXPECT_TRUE(Local(4, P3(1, 0, -1), P3(0, 0, a), level));
}

TEST_F(LoopElements, ClothoidLoopFormsTheFirstQuarterLengthInDoubleToo) {
    // (2.5, 1, 2, 0): e1 = 2.5 pi * 0.5 with 2.5 pi in double. The float
    // product 2.5 * pi rounds up, and the rising point would come out at
    // 0.714285731 instead of 0.714285672, the top at exactly 1 instead of
    // 0.99999994. The falling point's x does not change here.
    Add(ElementClothoidLoop, 2.5f, 1, 2, 0);
    ASSERT_EQ(Count(), 5);
    float a = Handle43(2.5f, Tan8()), b = Handle43(1, Tan8());
    float c = 1 * Pi + 2.5f * Pi;
    float wa = a * 2 / c, wb = b * 2 / c;
    double e1 = double(2.5f) * double(Pi) * 0.5, e2 = double(1) * double(Pi);
    MPoint3 rising{float(e1 * 2 / c), 2.5f, 2.5f};
    MPoint3 top{float((e2 * 0.5 + e1) * 2 / c), 3.5f, 1.5f};
    MPoint3 falling{float((e1 + e2) * 2 / c), 2.5f, 0.5f};
    EXPECT_EQ(rising.x, 0.714285672f);
    EXPECT_EQ(top.x, 0.99999994f);
    EXPECT_NE(rising.x, float(double(2.5f * Pi) * 0.5 * 2 / c));
    const MPoint3 level{1, 0, 0};
    EXPECT_TRUE(Local(1, rising, rising - P3(wa, a, 0), rising + P3(wb, b, 0), level));
    EXPECT_TRUE(Local(2, top, top - P3(wb, 0, -b), top + P3(wb, 0, -b), level));
    EXPECT_TRUE(Local(3, falling, falling - P3(wb, -b, 0), falling + P3(wa, -a, 0), level));
    EXPECT_TRUE(Local(4, P3(2, 0, 3), P3(0, 0, a), level));
}

TEST_F(LoopElements, ClothoidLoopFailure) {
    Add(ElementClothoidLoop, 0, 20, 10, 0);
    Add(ElementClothoidLoop, 40, 0, 10, 0);
    Add(ElementClothoidLoop, -40, 20, 10, 0);
    Add(ElementClothoidLoop, 40, -20, 10, 1);
    EXPECT_EQ(Count(), 1);
}

// ---- "Dive loop"

TEST_F(LoopElements, DiveLoopDefaults) {
    // (-90, 30, -20): a = -1.5707964, l = 30 * 4/3 * 1 = 40.
    // b = (a + pi) * 0.5 + pi = 3.92699 (5 pi / 4): sin b = cos b = -0.707107.
    // Apex P = (sin(b) 60, -10 + 60, cos(b) 60) = (-42.4264, 50, -42.4264),
    // h = (-cos(b) 40, 0, sin(b) 40) = (28.2843, 0, -28.2843); r = the unit
    // of P, turned round as a < 0: (0.543215, -0.640184, 0.543214).
    // End P (0, -20, 0), h = (sin(a) 40, 0, cos(a) 40) = (-40, 0, 0),
    // r = Side(h) = (cos a, 0, -sin a) = (0, 0, 1). S (0, 0, 40).
    Add(ElementDiveLoop, -90, 30, -20);
    ASSERT_EQ(Count(), 3);
    float a = -90 * Degree;
    float l = Handle43(30, Tan4());
    float b = float(double(a + Pi) * 0.5 + double(Pi));
    float sb = std::sin(b), cb = std::cos(b);
    MPoint3 apex{sb * 60, float(-20 * 0.5 + 60.0), cb * 60};
    MPoint3 apexHandle{-cb * l, 0, sb * l};
    MPoint3 endHandle{std::sin(a) * l, 0, std::cos(a) * l};
    EXPECT_NEAR(b, 3.92699, 1e-5);
    EXPECT_TRUE(NearVector(apex, P3(-42.4264f, 50, -42.4264f), 1e-4));
    EXPECT_TRUE(NearVector(apexHandle, P3(28.2843f, 0, -28.2843f), 1e-4));
    EXPECT_TRUE(NearVector(Neg(Normalized(apex)), P3(0.543215f, -0.640184f, 0.543214f), 1e-5));
    EXPECT_TRUE(NearVector(LevelRoll(endHandle), P3(0, 0, 1), 1e-6));
    EXPECT_TRUE(StartPointWith(P3(0, 0, 40)));
    EXPECT_TRUE(Local(1, apex, apexHandle, Neg(Normalized(apex))));
    EXPECT_TRUE(Local(2, P3(0, -20, 0), endHandle, LevelRoll(endHandle)));
}

TEST_F(LoopElements, DiveLoopPositiveAngle) {
    // (45, 12.5, 10): a = 0.785398, l = 16.6667, b = 5.10509.
    // Apex (-23.0970, 30, 9.56709), h (-6.37806, 0, -15.3980), r the unit of
    // P (-0.591453, 0.768221, 0.244988). End (0, 10, 0), h (11.7851, 0, 11.7851).
    Add(ElementDiveLoop, 45, 12.5f, 10);
    ASSERT_EQ(Count(), 3);
    float a = 45 * Degree;
    float l = Handle43(12.5f, Tan4());
    float b = float(double(a + Pi) * 0.5 + double(Pi));
    float sb = std::sin(b), cb = std::cos(b);
    MPoint3 apex{sb * 25, float(10 * 0.5 + 25.0), cb * 25};
    MPoint3 apexHandle{-cb * l, 0, sb * l};
    MPoint3 endHandle{std::sin(a) * l, 0, std::cos(a) * l};
    EXPECT_TRUE(NearVector(apex, P3(-23.0970f, 30, 9.56709f), 1e-4));
    EXPECT_TRUE(NearVector(apexHandle, P3(-6.37806f, 0, -15.3980f), 1e-4));
    EXPECT_TRUE(NearVector(Normalized(apex), P3(-0.591453f, 0.768221f, 0.244988f), 1e-5));
    EXPECT_TRUE(NearVector(endHandle, P3(11.7851f, 0, 11.7851f), 1e-4));
    EXPECT_TRUE(StartPointWith(P3(0, 0, l)));
    EXPECT_TRUE(Local(1, apex, apexHandle, Normalized(apex)));
    EXPECT_TRUE(Local(2, P3(0, 10, 0), endHandle, LevelRoll(endHandle)));
}

TEST_F(LoopElements, DiveLoopWithHeightZeroEndsOnTheStartPoint) {
    Add(ElementDiveLoop, -90, 30, 0);
    ASSERT_EQ(Count(), 3);
    EXPECT_TRUE(SameVector(Pt(2).Position, Pt(0).Position));
}

TEST_F(LoopElements, DiveLoopWithAngleZeroOrNoRadiusAddsNothing) {
    Add(ElementDiveLoop, 0, 30, -20);
    Add(ElementDiveLoop, -90, 0, -20);
    Add(ElementDiveLoop, 90, -30, -20);
    EXPECT_EQ(Count(), 1);
}

// ---- "Top hat"

TEST_F(LoopElements, TopHatDefaults) {
    // (40, 10, 50): a = 40 * 4/3 * tan(pi/8) = 22.0914, b = 10 * 4/3 * 1 =
    // 13.3333; z1 = 40 + 20 + 40 = 100. Points (0, 40, 40) h (0, a, 0);
    // (0, 90, 40) h (0, b, 0); (0, 90, 60) h (0, -b, 0); (0, 40, 60)
    // h (0, -a, 0); (0, 0, 100) h (0, 0, a); all r (1, 0, 0). S (0, 0, a).
    Add(ElementTopHat, 40, 10, 50);
    ASSERT_EQ(Count(), 6);
    float a = Handle43(40, Tan8()), b = Handle43(10, Tan4());
    EXPECT_NEAR(a, 22.0914, 1e-4);
    EXPECT_NEAR(b, 13.3333, 1e-4);
    const MPoint3 level{1, 0, 0};
    EXPECT_TRUE(StartPointWith(P3(0, 0, a)));
    EXPECT_TRUE(Local(1, P3(0, 40, 40), P3(0, a, 0), level));
    EXPECT_TRUE(Local(2, P3(0, 90, 40), P3(0, b, 0), level));
    EXPECT_TRUE(Local(3, P3(0, 90, 60), P3(0, -b, 0), level));
    EXPECT_TRUE(Local(4, P3(0, 40, 60), P3(0, -a, 0), level));
    EXPECT_TRUE(Local(5, P3(0, 0, 100), P3(0, 0, a), level));
    EXPECT_TRUE(InLocalPlaneX0());
}

TEST_F(LoopElements, TopHatOtherRadii) {
    // (12.5, 6.5, 3): a = 6.90356, b = 8.66667; the descent at z = 25.5,
    // the end at z1 = 38.
    Add(ElementTopHat, 12.5f, 6.5f, 3);
    ASSERT_EQ(Count(), 6);
    float a = Handle43(12.5f, Tan8()), b = Handle43(6.5f, Tan4());
    EXPECT_NEAR(b, 8.66667, 1e-5);
    const MPoint3 level{1, 0, 0};
    EXPECT_TRUE(StartPointWith(P3(0, 0, a)));
    EXPECT_TRUE(Local(1, P3(0, 12.5f, 12.5f), P3(0, a, 0), level));
    EXPECT_TRUE(Local(2, P3(0, 15.5f, 12.5f), P3(0, b, 0), level));
    EXPECT_TRUE(Local(3, P3(0, 15.5f, 25.5f), P3(0, -b, 0), level));
    EXPECT_TRUE(Local(4, P3(0, 12.5f, 25.5f), P3(0, -a, 0), level));
    EXPECT_TRUE(Local(5, P3(0, 0, 38), P3(0, 0, a), level));
}

TEST_F(LoopElements, TopHatNeedsPositiveHeightUnlikeAHill) {
    Add(ElementTopHat, 40, 10, 0);
    Add(ElementTopHat, 40, 10, -50);
    Add(ElementTopHat, 0, 10, 50);
    Add(ElementTopHat, 40, -10, 50);
    EXPECT_EQ(Count(), 1);
    Add(ElementHill, 200, 0); // a hill of height 0 is a hill
    EXPECT_EQ(Count(), 3);
}

// ---- "Corkscrew"

TEST_F(LoopElements, CorkscrewDefaults) {
    // (200, 10, 1): b = 10 * 4/3 * tan(pi/8) = 5.52285,
    // u = b * 200 / (2 * 10 * pi) = 1104.57 / 62.8319 = 17.5798.
    // (0, 10, 50) h (b, 0, u) r (0, -1, 0); (10, 0, 100) h (0, -b, u)
    // r (-1, 0, 0); (0, -10, 150) h (-b, 0, u) r (0, 1, 0); (0, 0, 200)
    // h (0, 0, u) r (1, 0, 0). S (0, 0, u).
    Add(ElementCorkscrew, 200, 10, 1);
    ASSERT_EQ(Count(), 5);
    float b = Handle43(10, Tan8());
    float u = b * 200 / (2 * 10 * Pi);
    EXPECT_NEAR(b, 5.52285, 1e-5);
    EXPECT_NEAR(u, 17.5798, 1e-3);
    EXPECT_TRUE(StartPointWith(P3(0, 0, u)));
    EXPECT_TRUE(Local(1, P3(0, 10, 50), P3(b, 0, u), P3(0, -1, 0)));
    EXPECT_TRUE(Local(2, P3(10, 0, 100), P3(0, -b, u), P3(-1, 0, 0)));
    EXPECT_TRUE(Local(3, P3(0, -10, 150), P3(-b, 0, u), P3(0, 1, 0)));
    EXPECT_TRUE(Local(4, P3(0, 0, 200), P3(0, 0, u), P3(1, 0, 0)));
}

TEST_F(LoopElements, CorkscrewCounterClockwise) {
    // (100, 6.5, -1): b = 3.58985, u = b * 100 / (13 pi) = 8.78988.
    Add(ElementCorkscrew, 100, 6.5f, -1);
    ASSERT_EQ(Count(), 5);
    float b = Handle43(6.5f, Tan8());
    float u = b * 100 / (2 * 6.5f * Pi);
    EXPECT_NEAR(u, 8.78988, 1e-4);
    EXPECT_TRUE(StartPointWith(P3(0, 0, u)));
    EXPECT_TRUE(Local(1, P3(0, 6.5f, 25), P3(-b, 0, u), P3(0, 1, 0)));
    EXPECT_TRUE(Local(2, P3(-6.5f, 0, 50), P3(0, -b, u), P3(-1, 0, 0)));
    EXPECT_TRUE(Local(3, P3(0, -6.5f, 75), P3(b, 0, u), P3(0, -1, 0)));
    EXPECT_TRUE(Local(4, P3(0, 0, 100), P3(0, 0, u), P3(1, 0, 0)));
}

TEST_F(LoopElements, CorkscrewWithRadiusZeroLiesOnTheAxis) {
    Add(ElementCorkscrew, 200, 0, 1);
    ASSERT_EQ(Count(), 5);
    EXPECT_TRUE(StartPointWith(P3(0, 0, 1)));
    EXPECT_TRUE(Local(1, P3(0, 0, 50), P3(0, 0, 1), P3(0, -1, 0)));
    EXPECT_TRUE(Local(2, P3(0, 0, 100), P3(0, 0, 1), P3(-1, 0, 0)));
    EXPECT_TRUE(Local(3, P3(0, 0, 150), P3(0, 0, 1), P3(0, 1, 0)));
    EXPECT_TRUE(Local(4, P3(0, 0, 200), P3(0, 0, 1), P3(1, 0, 0)));
    // A negative radius also gives b = 0 and u = 1; the points keep R.
    TheSketch->PointCount = 0;
    Add(ElementCorkscrew, 40, -3, -2);
    ASSERT_EQ(Count(), 5);
    EXPECT_TRUE(Local(1, P3(0, -3, 10), P3(0, 0, 1), P3(0, 1, 0)));
    EXPECT_TRUE(Local(2, P3(3, 0, 20), P3(0, 0, 1), P3(-1, 0, 0)));
    EXPECT_TRUE(Local(3, P3(0, 3, 30), P3(0, 0, 1), P3(0, -1, 0)));
    EXPECT_TRUE(Local(4, P3(0, 0, 40), P3(0, 0, 1), P3(1, 0, 0)));
}

TEST_F(LoopElements, CorkscrewTwistZeroAddsNothingAndOnlyItsSignCounts) {
    Add(ElementCorkscrew, 200, 10, 0);
    Add(ElementCorkscrew, 0, 10, 1);
    Add(ElementCorkscrew, -200, 10, 1);
    EXPECT_EQ(Count(), 1);
    Add(ElementCorkscrew, 200, 10, 1);
    std::vector<WSketchPoint> one = Records(*TheSketch);
    TheSketch->PointCount = 0;
    Add(ElementCorkscrew, 200, 10, 5);
    std::vector<WSketchPoint> five = Records(*TheSketch);
    ASSERT_EQ(one.size(), size_t(5));
    ASSERT_EQ(one.size(), five.size());
    for (size_t i = 0; i < one.size(); i++)
        EXPECT_TRUE(SameRecordBits(one[i], five[i])) << i;
}

// ---- "Cobra roll"

TEST_F(LoopElements, CobraRollDefaults) {
    // (30, 270, 60): a = 4.71239, a1 = 1.5708, a2 = 3.14159.
    // l = 30 * 4/3 * tan(a1 / 4) = 16.5685; m = 16.5685 (W > 0); c = 30.
    // 1: P (0, 30, 30), h (0, 16.5685, 0); 2: P (0, 60, 0), h (0, 0, -16.5685);
    // 3: P (30, 30, -30), h (16.5685, 0, 0); 4: P (60, 60, 0), h (0, 0, 16.5685);
    // 5: P (60, 30, 30), h (0, -16.5685, 0); 6: P (60, 0, 0), h (0, 0, -16.5685),
    // r (-1, 0, 0). The rolls of 1 to 5 point from the point to the centre
    // (30, 30, 0), since W > 0: (0.707107, 0, -0.707107),
    // (0.707107, -0.707107, 0), (0, 0, 1), (-0.707107, -0.707107, 0),
    // (-0.707107, 0, -0.707107). S (0, 0, l).
    Add(ElementCobraRoll, 30, 270, 60);
    ASSERT_EQ(Count(), 7);
    float a = 270 * Degree;
    float a1 = a / 3, a2 = (a + a) / 3;
    float l = Handle43(30, std::tan(std::fabs(a1) / 4));
    float m = Handle43(30, Tan8());
    float c = 30;
    float s1 = std::sin(a1), c1 = std::cos(a1), s2 = std::sin(a2), c2 = std::cos(a2);
    MPoint3 P[5] = {{0, 30 - c1 * 30, s1 * 30},
                    {0, 30 - c2 * 30, s2 * 30},
                    {c, 30 - std::cos(a) * 30, std::sin(a) * 30},
                    {60, 30 - c2 * 30, s2 * 30},
                    {60, 30 - c1 * 30, s1 * 30}};
    MPoint3 h[5] = {{0, s1 * l, c1 * l},
                    {0, s2 * l, c2 * l},
                    {m, 0, 0},
                    {0, -(s2 * l), -(c2 * l)},
                    {0, -(s1 * l), -(c1 * l)}};
    const MPoint3 paperP[5] = {{0, 30, 30}, {0, 60, 0}, {30, 30, -30}, {60, 60, 0}, {60, 30, 30}};
    const MPoint3 paperR[5] = {{0.707107f, 0, -0.707107f},
                               {0.707107f, -0.707107f, 0},
                               {0, 0, 1},
                               {-0.707107f, -0.707107f, 0},
                               {-0.707107f, 0, -0.707107f}};
    EXPECT_NEAR(l, 16.5685, 1e-4);
    EXPECT_EQ(m, l);
    EXPECT_TRUE(StartPointWith(P3(0, 0, l)));
    for (int k = 0; k < 5; k++) {
        SCOPED_TRACE(k);
        MPoint3 roll = Neg(Normalized(P[k] - P3(c, 30, 0)));
        EXPECT_TRUE(NearVector(P[k], paperP[k], 1e-4));
        EXPECT_TRUE(NearVector(roll, paperR[k], 1e-5));
        EXPECT_TRUE(Local(1 + k, P[k], h[k], roll));
    }
    EXPECT_TRUE(Local(6, P3(60, 0, 0), P3(0, 0, -l), P3(-1, 0, 0)));
}

TEST_F(LoopElements, CobraRollToTheLeftWithNegativeAngle) {
    // (12.5, -120, -20): a = -2.0944, a1 = -0.698132, a2 = -1.39626;
    // l = 12.5 * 4/3 * tan(0.174533) = 2.93878; m = -6.90356 (W < 0); c = -10.
    // 1: P (0, 2.92444, -8.03485); 3: P (-10, 18.75, -10.8253). Rolls from
    // the centre (-10, 12.5, 0) out to the point, as W < 0:
    // 1 (0.624695, -0.598180, -0.501933); 3 (0, 0.5, -0.866025).
    Add(ElementCobraRoll, 12.5f, -120, -20);
    ASSERT_EQ(Count(), 7);
    float a = -120 * Degree;
    float a1 = a / 3, a2 = (a + a) / 3;
    float l = Handle43(12.5f, std::tan(std::fabs(a1) / 4));
    float m = -Handle43(12.5f, Tan8());
    float c = -10;
    float s1 = std::sin(a1), c1 = std::cos(a1), s2 = std::sin(a2), c2 = std::cos(a2);
    const float R = 12.5f;
    MPoint3 P[5] = {{0, R - c1 * R, s1 * R},
                    {0, R - c2 * R, s2 * R},
                    {c, R - std::cos(a) * R, std::sin(a) * R},
                    {-20, R - c2 * R, s2 * R},
                    {-20, R - c1 * R, s1 * R}};
    MPoint3 h[5] = {{0, s1 * l, c1 * l},
                    {0, s2 * l, c2 * l},
                    {m, 0, 0},
                    {0, -(s2 * l), -(c2 * l)},
                    {0, -(s1 * l), -(c1 * l)}};
    EXPECT_NEAR(l, 2.93878, 1e-5);
    EXPECT_NEAR(m, -6.90356, 1e-5);
    EXPECT_TRUE(NearVector(P[0], P3(0, 2.92444f, -8.03485f), 1e-4));
    EXPECT_TRUE(NearVector(P[2], P3(-10, 18.75f, -10.8253f), 1e-4));
    EXPECT_TRUE(
        NearVector(Normalized(P[0] - P3(c, R, 0)), P3(0.624695f, -0.598180f, -0.501933f), 1e-5));
    EXPECT_TRUE(NearVector(Normalized(P[2] - P3(c, R, 0)), P3(0, 0.5f, -0.866025f), 1e-5));
    EXPECT_TRUE(StartPointWith(P3(0, 0, l)));
    for (int k = 0; k < 5; k++) {
        SCOPED_TRACE(k);
        EXPECT_TRUE(Local(1 + k, P[k], h[k], Normalized(P[k] - P3(c, R, 0))));
    }
    EXPECT_TRUE(Local(6, P3(-20, 0, 0), P3(0, 0, -l), P3(-1, 0, 0)));
}

TEST_F(LoopElements, CobraRollStepAbovePiUsesTheRadius) {
    // (10, 600, 5): a1 = 200 degrees, above pi: l = R = 10.
    Add(ElementCobraRoll, 10, 600, 5);
    ASSERT_EQ(Count(), 7);
    EXPECT_TRUE(StartPointWith(P3(0, 0, 10)));
    EXPECT_TRUE(Local(6, P3(5, 0, 0), P3(0, 0, -10), P3(-1, 0, 0)));
}

TEST_F(LoopElements, CobraRollStepOfExactlyPiStillUsesTheTangent) {
    // 540 * 0.017453292 in floats is 9.424778, whose third is the float pi
    // 3.1415927 itself: not above pi, so l = 10 * 4/3 * tan(pi/4) = 13.3333.
    // At 541 degrees the step is above pi and l is the radius, 10.
    float a1 = 540 * Degree / 3;
    EXPECT_EQ(a1, Pi);
    Add(ElementCobraRoll, 10, 540, 5);
    ASSERT_EQ(Count(), 7);
    float l = Handle43(10, Tan4());
    EXPECT_NEAR(l, 13.3333, 1e-4);
    EXPECT_TRUE(StartPointWith(P3(0, 0, l)));
    EXPECT_TRUE(Local(6, P3(5, 0, 0), P3(0, 0, -l), P3(-1, 0, 0)));
    TheSketch->PointCount = 0;
    Add(ElementCobraRoll, 10, 541, 5);
    ASSERT_EQ(Count(), 7);
    EXPECT_TRUE(StartPointWith(P3(0, 0, 10)));
    EXPECT_TRUE(Local(6, P3(5, 0, 0), P3(0, 0, -10), P3(-1, 0, 0)));
}

TEST_F(LoopElements, CobraRollFailure) {
    Add(ElementCobraRoll, 0, 270, 60);
    Add(ElementCobraRoll, -30, 270, 60);
    Add(ElementCobraRoll, 30, 0, 60);
    Add(ElementCobraRoll, 30, 270, 0);
    EXPECT_EQ(Count(), 1);
}

// ---- "Batwing"

TEST_F(LoopElements, BatwingDefaults) {
    // (30, 20, -20): l = 40, Y = -10 + 60 = 50.
    // 1: P (-60, 50, 60), h (-40, 0, -40), r unit of P =
    //    (-0.609208, 0.507673, 0.609208);
    // 2: P (10, -20, 0), h (80, 0, 0), r (0, 0, -1);
    // 3: P (80, 50, 60), h (-40, 0, 40), r unit of (60, 50, 60);
    // 4: P (20, 0, 0), h (0, 0, -40), r (-1, 0, 0). S (0, 0, 40).
    Add(ElementBatwing, 30, 20, -20);
    ASSERT_EQ(Count(), 5);
    float l = Handle43(30, Tan4());
    float Y = float(-20 * 0.5 + 60.0);
    EXPECT_EQ(l, 40.0f);
    EXPECT_EQ(Y, 50.0f);
    EXPECT_TRUE(
        NearVector(Normalized(P3(-60, 50, 60)), P3(-0.609208f, 0.507673f, 0.609208f), 1e-5));
    EXPECT_TRUE(StartPointWith(P3(0, 0, 40)));
    EXPECT_TRUE(Local(1, P3(-60, 50, 60), P3(-40, 0, -40), Normalized(P3(-60, 50, 60))));
    EXPECT_TRUE(Local(2, P3(10, -20, 0), P3(80, 0, 0), P3(0, 0, -1)));
    EXPECT_TRUE(Local(3, P3(80, 50, 60), P3(-40, 0, 40), Normalized(P3(60, 50, 60))));
    EXPECT_TRUE(Local(4, P3(20, 0, 0), P3(0, 0, -40), P3(-1, 0, 0)));
}

TEST_F(LoopElements, BatwingNegativeWidthPositiveHeight) {
    // (12.5, -15, 8): l = 16.6667, Y = 4 + 25 = 29.
    // 1: P (25, 29, 25), h (l, 0, -l), r unit of -P = (-0.546718, -0.634192, -0.546718);
    // 2: P (-7.5, 8, 0), h (-2 l, 0, 0), r (0, 0, 1);
    // 3: P (-15 - 25, 29, 25), h (l, 0, l), r unit of (25, -29, -25);
    // 4: P (-15, 0, 0), h (0, 0, -l), r (-1, 0, 0).
    Add(ElementBatwing, 12.5f, -15, 8);
    ASSERT_EQ(Count(), 5);
    float l = Handle43(12.5f, Tan4());
    EXPECT_NEAR(l, 16.6667, 1e-4);
    EXPECT_TRUE(
        NearVector(Normalized(P3(-25, -29, -25)), P3(-0.546718f, -0.634192f, -0.546718f), 1e-5));
    EXPECT_TRUE(StartPointWith(P3(0, 0, l)));
    EXPECT_TRUE(Local(1, P3(25, 29, 25), P3(l, 0, -l), Normalized(P3(-25, -29, -25))));
    EXPECT_TRUE(Local(2, P3(-7.5f, 8, 0), P3(-2 * l, 0, 0), P3(0, 0, 1)));
    EXPECT_TRUE(Local(3, P3(-40, 29, 25), P3(l, 0, l), Normalized(P3(25, -29, -25))));
    EXPECT_TRUE(Local(4, P3(-15, 0, 0), P3(0, 0, -l), P3(-1, 0, 0)));
}

TEST_F(LoopElements, BatwingWidthZeroAddsNothing) {
    Add(ElementBatwing, 30, 0, -20);
    Add(ElementBatwing, 0, 20, -20);
    Add(ElementBatwing, -30, 20, -20);
    EXPECT_EQ(Count(), 1);
}

// ---- "Hammerhead turn"

namespace {

// The bend of the climb onto the circle of radius k, written out:
// phi = z / k, y = k - cos(phi) k, z = sin(phi) k.
MPoint3 OnCircle(const MPoint3& v, float k) {
    float phi = v.z / k;
    return MPoint3{v.x, k - std::cos(phi) * k, std::sin(phi) * k};
}
MPoint3 TurnRoll(const MPoint3& r, float phi) {
    return MPoint3{r.x, r.y * std::cos(phi) + r.z * std::sin(phi),
                   r.z * std::cos(phi) - r.y * std::sin(phi)};
}

} // namespace

TEST_F(LoopElements, HammerheadTurnDefaults) {
    // (100, 30, 20, 45): m = 16.5685, n = 4 m = 66.2742, c = 10.
    // Flat: 1 (-20, 0, 100) h (0, 0, m) r unit (1, -1, 0); 2 (10, 0, 130)
    // h (m, 0, 0) r (0, -1, -1); 3 (40, 0, 100) h (0, 0, -m) r unit
    // (-1, -1, 0); 4 (20, 0, 0) h (0, 0, -n) r Side = (-1, 0, 0).
    // Bent by 45 degrees: d = 0.785398, k = 130 / d = 165.521.
    // 1: phi = 100 / k = 0.604152 -> P (-20, 29.2999, 94.0267), roll
    //    (0.707107, -0.581937, 0.401682); 2: phi = d -> P (10, 48.4800,
    //    117.041), roll (0, -1.41421, 0); 3 like 1 at x = 40.
    Add(ElementHammerheadTurn, 100, 30, 20, 45);
    ASSERT_EQ(Count(), 5);
    float m = Handle43(30, Tan8());
    float n = 4 * m;
    float k = (100 + 30) / (45 * Degree);
    EXPECT_NEAR(n, 66.2742, 1e-4);
    EXPECT_NEAR(k, 165.521, 1e-3);
    const MPoint3 flatP[3] = {{-20, 0, 100}, {10, 0, 130}, {40, 0, 100}};
    const MPoint3 flatH[3] = {{0, 0, m}, {m, 0, 0}, {0, 0, -m}};
    const MPoint3 flatR[3] = {Normalized(P3(1, -1, 0)), P3(0, -1, -1), Normalized(P3(-1, -1, 0))};
    const MPoint3 paperP[3] = {
        {-20, 29.2999f, 94.0267f}, {10, 48.4800f, 117.041f}, {40, 29.2999f, 94.0267f}};
    const MPoint3 paperR[3] = {
        {0.707107f, -0.581937f, 0.401682f}, {0, -1.41421f, 0}, {-0.707107f, -0.581937f, 0.401682f}};
    EXPECT_TRUE(StartPointWith(P3(0, 0, n)));
    for (int i = 0; i < 3; i++) {
        SCOPED_TRACE(i);
        float phi = flatP[i].z / k;
        MPoint3 P = OnCircle(flatP[i], k);
        MPoint3 in = OnCircle(flatP[i] - flatH[i], k);
        MPoint3 out = OnCircle(flatP[i] + flatH[i], k);
        MPoint3 roll = TurnRoll(flatR[i], phi);
        EXPECT_TRUE(NearVector(P, paperP[i], 1e-3));
        EXPECT_TRUE(NearVector(roll, paperR[i], 1e-5));
        EXPECT_TRUE(Local(1 + i, P, in, out, roll));
    }
    // The way back is not bent and stays on the ground.
    EXPECT_TRUE(Local(4, P3(20, 0, 0), P3(0, 0, -n), LevelRoll(P3(0, 0, -n))));
    EXPECT_TRUE(NearVector(LevelRoll(P3(0, 0, -n)), P3(-1, 0, 0), 0));
}

TEST_F(LoopElements, HammerheadTurnFlatWithAngleZero) {
    Add(ElementHammerheadTurn, 100, 30, 20, 0);
    ASSERT_EQ(Count(), 5);
    float m = Handle43(30, Tan8());
    float n = 4 * m;
    EXPECT_TRUE(Local(1, P3(-20, 0, 100), P3(0, 0, m), Normalized(P3(1, -1, 0))));
    EXPECT_TRUE(Local(2, P3(10, 0, 130), P3(m, 0, 0), P3(0, -1, -1)));
    EXPECT_TRUE(Local(3, P3(40, 0, 100), P3(0, 0, -m), Normalized(P3(-1, -1, 0))));
    EXPECT_TRUE(Local(4, P3(20, 0, 0), P3(0, 0, -n), LevelRoll(P3(0, 0, -n))));
    // Flat in the plane y = 0.
    for (int32_t i = 0; i < Count(); i++) {
        EXPECT_EQ(Pt(i).Position.y, 0.0f);
        EXPECT_EQ(Pt(i).HandleIn.y, 0.0f);
        EXPECT_EQ(Pt(i).HandleOut.y, 0.0f);
    }
}

TEST_F(LoopElements, HammerheadTurnToTheLeft) {
    // (100, 30, -20, 0): mirrored in x; the rolls of the first three become
    // (1, 1, 0), (0, 1, 1), (-1, 1, 0), not normalised.
    Add(ElementHammerheadTurn, 100, 30, -20, 0);
    ASSERT_EQ(Count(), 5);
    float m = Handle43(30, Tan8());
    float n = 4 * m;
    EXPECT_TRUE(Local(1, P3(20, 0, 100), P3(0, 0, m), P3(1, 1, 0)));
    EXPECT_TRUE(
        Local(2, P3(-10, 0, 130), P3(-(10 - m), 0, 130), P3(-(10 + m), 0, 130), P3(0, 1, 1)));
    EXPECT_TRUE(Local(3, P3(-40, 0, 100), P3(0, 0, -m), P3(-1, 1, 0)));
    EXPECT_TRUE(Local(4, P3(-20, 0, 0), P3(0, 0, -n), LevelRoll(P3(0, 0, -n))));
}

TEST_F(LoopElements, HammerheadTurnLeftAndDownward) {
    // (60, 12.5, -8, -30): m = 6.90356, c = 4; d = -0.523599,
    // k = 72.5 / d = -138.465. Mirrored first, then bent: the climb leans
    // down. 1: flat (-(4 - 12.5), 0, 60) = (8.5, 0, 60), phi = 60 / k.
    Add(ElementHammerheadTurn, 60, 12.5f, -8, -30);
    ASSERT_EQ(Count(), 5);
    float m = Handle43(12.5f, Tan8());
    float n = 4 * m;
    float k = (60 + 12.5f) / (-30 * Degree);
    EXPECT_NEAR(k, -138.465, 1e-3);
    // Positions and handles mirrored in x before the bend.
    const MPoint3 flatP[3] = {{8.5f, 0, 60}, {-4, 0, 72.5f}, {-16.5f, 0, 60}};
    const MPoint3 flatIn[3] = {{8.5f, 0, 60 - m}, {-4 - -m, 0, 72.5f}, {-16.5f, 0, 60 + m}};
    const MPoint3 flatOut[3] = {{8.5f, 0, 60 + m}, {-4 + -m, 0, 72.5f}, {-16.5f, 0, 60 - m}};
    const MPoint3 flatR[3] = {{1, 1, 0}, {0, 1, 1}, {-1, 1, 0}};
    for (int i = 0; i < 3; i++) {
        SCOPED_TRACE(i);
        float phi = flatP[i].z / k;
        EXPECT_TRUE(Local(1 + i, OnCircle(flatP[i], k), OnCircle(flatIn[i], k),
                          OnCircle(flatOut[i], k), TurnRoll(flatR[i], phi)));
        EXPECT_LT(Pt(1 + i).Position.y, 0.0f); // below the start
    }
    EXPECT_TRUE(Local(4, P3(-8, 0, 0), P3(0, 0, -n), LevelRoll(P3(0, 0, -n))));
}

TEST_F(LoopElements, HammerheadTurnWithWidthZeroAddsNothing) {
    Add(ElementHammerheadTurn, 100, 30, 0, 45);
    Add(ElementHammerheadTurn, 100, 0, 20, 45);
    Add(ElementHammerheadTurn, 0, 30, 20, 45);
    Add(ElementHammerheadTurn, -100, 30, 20, 45);
    EXPECT_EQ(Count(), 1);
}
