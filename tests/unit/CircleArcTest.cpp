// The key "o": a closed curve of four points becomes a circle; otherwise the
// segment into the selected point becomes a circular arc.

#include "PointEditingTestSupport.h"

#include <cmath>

namespace {

using PointEditingCircleArc = PointEditingFixture;

// A closed triangle (0, 0), (100, 0), (50, 80) whose first segment leaves
// straight up and arrives straight down: the tangents are opposite.
std::vector<WSketchPoint> OppositeTangents() {
    std::vector<WSketchPoint> r = {
        Handles(Record(0, 0, 0, KindMove), P3(0, 0, 0), P3(0, 10, 5)),
        Handles(Record(100, 0, 0, KindLine), P3(100, 10, 0), P3(100, 0, 0)),
        Record(50, 80, 0, KindLine), Handles(Record(0, 0, 0, KindLine), P3(0, 0, 0), P3(0, 10, 5))};
    return r;
}

// A closed curve of six records whose segment into record 1 leaves (0, 100)
// along +x and arrives at (100, 0) along -y: a quarter turn about the origin.
std::vector<WSketchPoint> QuarterTurnHexagon() {
    return {Handles(Record(0, 100, 0, KindMove), P3(0, 100, 0), P3(10, 100, 0)),
            Handles(Record(100, 0, 0, KindLine), P3(100, 10, 0), P3(100, 0, 0)),
            Record(50, -80, 0, KindLine),
            Record(-50, -80, 0, KindLine),
            Record(-100, 0, 0, KindLine),
            Handles(Record(0, 100, 0, KindLine), P3(0, 100, 0), P3(10, 100, 0))};
}

} // namespace

// ---- MakeCircle

TEST_F(PointEditingCircleArc, SquareBecomesTheCircleThroughItsCorners) {
    // The square at z 7: centre (50, 50, 7), radius the corner distance
    // sqrt(5000) = 70.710678; k = tan(0.3926991) * r * 4/3 = 39.052433.
    std::vector<WSketchPoint> records = ClosedSquare(7);
    records[0].Roll = P3(1, 0, 0);
    records[2].Roll = P3(0, 1, 0);
    records[4].Roll = P3(1, 0, 0);
    Load(records);
    Select(2, 0);
    EXPECT_TRUE(S().MakeCircle());
    const float r = 70.710678f, k = 39.052433f, hi = 120.710678f, lo = -20.710678f;
    const WSketchPoint* p = S().Points.Data;
    ExpectPoint(p[0].Position, 50, hi, 7);
    ExpectPoint(p[1].Position, hi, 50, 7);
    ExpectPoint(p[2].Position, 50, lo, 7);
    ExpectPoint(p[3].Position, lo, 50, 7);
    // Clockwise tangents: right at the top, down at the right, and so on.
    ExpectPoint(p[0].HandleIn, 50 - k, hi, 7);
    ExpectPoint(p[0].HandleOut, 50 + k, hi, 7);
    ExpectPoint(p[1].HandleIn, hi, 50 + k, 7);
    ExpectPoint(p[1].HandleOut, hi, 50 - k, 7);
    ExpectPoint(p[2].HandleIn, 50 + k, lo, 7);
    ExpectPoint(p[2].HandleOut, 50 - k, lo, 7);
    ExpectPoint(p[3].HandleIn, lo, 50 - k, 7);
    ExpectPoint(p[3].HandleOut, lo, 50 + k, 7);
    EXPECT_EQ(p[0].Kind, KindMove);
    for (int32_t i = 1; i < 5; i++)
        EXPECT_EQ(p[i].Kind, KindCurve);
    for (int32_t i = 0; i < 5; i++)
        EXPECT_EQ(p[i].Smooth, 1);
    EXPECT_TRUE(SameBits(p[4].Position, p[0].Position));
    EXPECT_TRUE(SameBits(p[4].HandleIn, p[0].HandleIn));
    EXPECT_TRUE(SameBits(p[4].HandleOut, p[0].HandleOut));
    ExpectExact(p[2].Roll, 0, 1, 0); // rolls stay
    EXPECT_EQ(S().Current, 2);
    EXPECT_EQ(Steps(), 1);
    EXPECT_TRUE(CheckInvariants(S()));

    // The middle of each quarter lies on the circle within the 0.03 % of the
    // cubic's approximation.
    for (int32_t i = 1; i < 5; i++) {
        MPoint3 controls[4] = {p[i - 1].Position, p[i - 1].HandleOut, p[i].HandleIn, p[i].Position};
        MPoint3 middle = BezierPoint(controls, 0, 3, 0.5f);
        float distance = Length3(middle - P3(50, 50, 7));
        EXPECT_NEAR(distance, r, r * 0.0003f);
    }
}

TEST_F(PointEditingCircleArc, FourRecordsGiveFalseAndTheArcIsTriedInstead) {
    // The key's order: MakeCircle, then MakeArc when it gave false.
    Load(OppositeTangents());
    Select(1, 0);
    std::vector<WSketchPoint> before = Records(S());
    EXPECT_FALSE(S().MakeCircle());
    for (int32_t i = 0; i < 4; i++)
        EXPECT_TRUE(SameRecordBits(S().Points[i], before[size_t(i)]));
    EXPECT_EQ(Steps(), 0);
    // Opposite tangents (0, 1) and (0, -1): a half circle over the chord of
    // 100, R = 50, h = 50 * 4/3 * tan(3.1415927 / 4) = 66.666672.
    EXPECT_TRUE(S().MakeArc());
    ExpectPoint(S().Points[0].HandleOut, 0, 66.666672f, 5); // z of the handle kept
    ExpectPoint(S().Points[1].HandleIn, 100, 66.666672f, 0);
    EXPECT_EQ(S().Points[1].Kind, KindCurve);
    ExpectPoint(S().Points[3].HandleOut, 0, 66.666672f, 5); // the twin follows
    // Each handle is written with SetPoint, which commits on its own.
    EXPECT_EQ(Steps(), 2);
    EXPECT_TRUE(CheckInvariants(S()));
}

TEST_F(PointEditingCircleArc, SixRecordsGiveFalseAndTheArcIsTriedInstead) {
    Load(QuarterTurnHexagon());
    Select(1, 0);
    EXPECT_FALSE(S().MakeCircle());
    EXPECT_EQ(Steps(), 0);
    // t1 = (1, 0), t2 = (0, -1): the normals x = 0 and y = 0 cross at the
    // origin, R2 = 100 + 100, R = 100, the angle acos(0) = 1.5707964, and
    // h = 100 * 4/3 * tan(1.5707964 / 4) = 55.228477.
    EXPECT_TRUE(S().MakeArc());
    ExpectPoint(S().Points[0].HandleOut, 55.228477f, 100, 0);
    ExpectPoint(S().Points[1].HandleIn, 100, 55.228477f, 0);
    EXPECT_EQ(S().Points[1].Kind, KindCurve);
    EXPECT_EQ(Steps(), 2);
    EXPECT_TRUE(CheckInvariants(S()));
    // The arc's middle lies on the circle of radius 100 about the origin.
    MPoint3 controls[4] = {S().Points[0].Position, S().Points[0].HandleOut, S().Points[1].HandleIn,
                           S().Points[1].Position};
    EXPECT_NEAR(Length3(BezierPoint(controls, 0, 3, 0.5f)), 100, 0.03f);
}

TEST_F(PointEditingCircleArc, CircleNeedsAClosedCurveOfFiveAtOneExactZ) {
    // Open: the last record is not on the first.
    std::vector<WSketchPoint> open = ClosedSquare();
    open[4].Position = P3(0, 1, 0);
    Load(open);
    Select(0, 0);
    EXPECT_FALSE(S().MakeCircle());

    // One z differs by a little: compared exactly.
    std::vector<WSketchPoint> tilted = ClosedSquare(7);
    tilted[2].Position.z = 7.00001f;
    Load(tilted);
    Select(0, 0);
    EXPECT_FALSE(S().MakeCircle());

    // Four points at one place have no radius.
    Load({Record(5, 5, 0, KindMove), Record(5, 5, 0, KindLine), Record(5, 5, 0, KindLine),
          Record(5, 5, 0, KindLine), Record(5, 5, 0, KindLine)});
    Select(0, 0);
    EXPECT_FALSE(S().MakeCircle());

    // Nothing selected.
    Load(ClosedSquare());
    EXPECT_FALSE(S().MakeCircle());
    EXPECT_EQ(Steps(), 0);
}

TEST_F(PointEditingCircleArc, ArcNeedsASegmentIntoCurrentAtOneExactZ) {
    std::vector<WSketchPoint> records = QuarterTurnHexagon();
    Load(records);
    Select(0, 0); // no record before it
    EXPECT_FALSE(S().MakeArc());
    records[1].Position.z = 0.5f;
    Load(records);
    Select(1, 0);
    EXPECT_FALSE(S().MakeArc());
    // A curve's first record has no segment into it.
    Load({Record(0, 0, 0, KindMove), Record(100, 0, 0, KindLine), Record(0, 50, 0, KindMove),
          Record(100, 50, 0, KindLine)});
    Select(2, 0);
    EXPECT_FALSE(S().MakeArc());
    EXPECT_EQ(Steps(), 0);
}

TEST_F(PointEditingCircleArc, ParallelTangentsGiveNoArc) {
    // Both tangents along +x: the normals are parallel and do not cross.
    Load({Handles(Record(0, 0, 0, KindMove), P3(0, 0, 0), P3(10, 0, 0)),
          Handles(Record(100, 50, 0, KindLine), P3(90, 50, 0), P3(100, 50, 0))});
    Select(1, 0);
    std::vector<WSketchPoint> before = Records(S());
    EXPECT_FALSE(S().MakeArc());
    for (int32_t i = 0; i < 2; i++)
        EXPECT_TRUE(SameRecordBits(S().Points[i], before[size_t(i)]));
    EXPECT_EQ(Steps(), 0);
}
