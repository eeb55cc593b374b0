// A new point on the path: on a line it keeps the shape exactly, on a curve
// it estimates the new handles from the arc lengths on either side.

#include "PointEditingTestSupport.h"

#include <cmath>

namespace {

using PointEditingInsert = PointEditingFixture;

// A line from (0, 0) to (100, 0) with its handles at 0.3 from each end, as
// a loaded line has them; the end's roll is (0, 1, 0).
std::vector<WSketchPoint> HandledLine() {
    WSketchPoint end = Handles(Record(100, 0, 0, KindLine), P3(70, 0, 0), P3(100, 0, 0));
    end.Roll = P3(0, 1, 0);
    return {Handles(Record(0, 0, 0, KindMove), P3(0, 0, 0), P3(30, 0, 0)), end};
}

// The arch with the controls (0, 0), (0, 40), (100, 40), (100, 0).
std::vector<WSketchPoint> Arch() {
    return {Handles(Record(0, 0, 0, KindMove), P3(0, 0, 0), P3(0, 40, 0)),
            Handles(Record(100, 0, 0, KindCurve), P3(100, 40, 0), P3(100, 0, 0))};
}

void Controls(const WSketch& s, int32_t index, MPoint3 controls[4]) {
    controls[0] = s.Points[index - 1].Position;
    controls[1] = s.Points[index - 1].HandleOut;
    controls[2] = s.Points[index].HandleIn;
    controls[3] = s.Points[index].Position;
}

} // namespace

TEST_F(PointEditingInsert, PointOnALineKeepsThePathStraight) {
    // The click (25, -2) is 2 pixels from the line: c = (25, 0), D = 4, at
    // most 4 PenSize = 8. The distances 25 and 75 of 100 give the fraction
    // ((1 - 0.75) + 0.25) / 2 = 0.25, so w = (25, 0, 0) and u = 0.25.
    // New handles: 25 - 0.3 * 25 = 17.5 and 25 + 0.3 * 75 = 47.5. The start's
    // HandleOut shrinks to 0.25 of (30, 0, 0), the end's HandleIn to 0.75 of
    // (-30, 0, 0): 7.5 and 77.5.
    Load(HandledLine());
    S().Current = 1;
    S().InsertPoint(Screen(25, -2));
    ASSERT_EQ(S().PointCount, 3);
    const WSketchPoint& added = S().Points[1];
    ExpectExact(added.Position, 25, 0, 0);
    ExpectExact(added.HandleIn, 17.5f, 0, 0);
    ExpectExact(added.HandleOut, 47.5f, 0, 0);
    EXPECT_EQ(added.Kind, KindCurve);
    EXPECT_EQ(added.Smooth, 1);
    ExpectExact(added.Roll, 0, 1, 0); // the roll of the record it displaced
    ExpectExact(S().Points[0].HandleOut, 7.5f, 0, 0);
    ExpectExact(S().Points[2].HandleIn, 77.5f, 0, 0);
    ExpectExact(S().Points[2].Position, 100, 0, 0);
    EXPECT_EQ(S().Points[2].Kind, KindLine);
    EXPECT_EQ(S().Current, -1);
    EXPECT_EQ(Steps(), 1);
    EXPECT_EQ(S().Points.Count, 1002); // grown by 1000 from a full array of 2
    EXPECT_TRUE(CheckInvariants(S()));

    // The new curve segment is drawn on the old line.
    MPoint3 controls[4];
    Controls(S(), 1, controls);
    int32_t steps = CurveSteps(controls);
    for (int32_t k = 0; k <= steps; k++) {
        MPoint3 p = BezierPoint(controls, 0, 3, float(k) / float(steps));
        EXPECT_EQ(p.y, 0.0f);
        EXPECT_GE(p.x, 0.0f);
        EXPECT_LE(p.x, 25.0f);
    }
}

TEST_F(PointEditingInsert, OnlyWithinFourPenSizesOfSquaredDistance) {
    Load(HandledLine());
    S().InsertPoint(Screen(25, -3)); // D = 9 > 8
    EXPECT_EQ(S().PointCount, 2);
    EXPECT_EQ(Steps(), 0);
    settings.PenSize = 1;
    S().InsertPoint(Screen(25, -2)); // D = 4, at most 4
    EXPECT_EQ(S().PointCount, 3);
    EXPECT_EQ(Steps(), 1);
}

TEST_F(PointEditingInsert, EarlierSegmentWinsATie) {
    // Lines at y 0 and y 4; the click at (25, 2) lies 2 pixels from both.
    std::vector<WSketchPoint> records = HandledLine();
    records.push_back(Handles(Record(0, 4, 0, KindMove), P3(0, 4, 0), P3(30, 4, 0)));
    records.push_back(Handles(Record(100, 4, 0, KindLine), P3(70, 4, 0), P3(100, 4, 0)));
    Load(records);
    S().InsertPoint(Screen(25, 2));
    ASSERT_EQ(S().PointCount, 5);
    ExpectExact(S().Points[1].Position, 25, 0, 0);
    ExpectExact(S().Points[3].Position, 0, 4, 0);
    ExpectExact(S().Points[3].HandleOut, 30, 4, 0);
    ExpectExact(S().Points[4].HandleIn, 70, 4, 0);
}

TEST_F(PointEditingInsert, PointOnACurveChangesItOnlySlightly) {
    // The arch measures T = 2 (sqrt(750.390625) + sqrt(1237.890625)) = 125.154
    // by its four chords and is sampled in ceil(T / 4) * 8 = 256 pieces; the
    // sampled arch is symmetric and 128.792 long. The click (50.3, 30) lies
    // on piece 129, which runs from the top (50, 30) = B(0.5) to
    // (50.586, 29.998): 0.3 from its start and 0.286 from its end of 0.586,
    // so k = ((1 - 0.488) + 0.512) / 2 = 0.512 and w = (50.3, 29.99906).
    // The length before w is 128.792 / 2 + 0.3 = 64.696, u = 64.696 / T =
    // 0.51693. HandleIn lies 0.3 * 64.696 = 19.409 back along the piece,
    // HandleOut 0.3 * (T - 64.696) = 18.137 ahead; the start's HandleOut is
    // u * (0, 40) and the end's HandleIn (100, 0) + (1 - u) * (0, 40).
    Load(Arch());
    S().InsertPoint(Screen(50.3f, 30));
    ASSERT_EQ(S().PointCount, 3);
    const WSketchPoint& added = S().Points[1];
    ExpectPoint(added.Position, 50.3f, 29.99906f, 0, 1e-4f);
    ExpectPoint(added.HandleIn, 30.8913f, 30.0597f, 0, 2e-3f);
    ExpectPoint(added.HandleOut, 68.4373f, 29.9424f, 0, 2e-3f);
    ExpectPoint(S().Points[0].HandleOut, 0, 20.6773f, 0, 2e-3f);
    ExpectPoint(S().Points[2].HandleIn, 100, 19.3227f, 0, 2e-3f);
    EXPECT_EQ(added.Kind, KindCurve);
    EXPECT_EQ(S().Points[2].Kind, KindCurve);
    EXPECT_EQ(Steps(), 1);
    EXPECT_TRUE(CheckInvariants(S()));

    // The two new segments stay within about 1.4 units of the old arch.
    MPoint3 old[4] = {P3(0, 0, 0), P3(0, 40, 0), P3(100, 40, 0), P3(100, 0, 0)};
    std::vector<MPoint3> dense;
    for (int32_t k = 0; k <= 4000; k++)
        dense.push_back(BezierPoint(old, 0, 3, float(k) / 4000));
    float worst = 0;
    for (int32_t segment = 1; segment <= 2; segment++) {
        MPoint3 controls[4];
        Controls(S(), segment, controls);
        for (int32_t k = 0; k <= 100; k++) {
            MPoint3 p = BezierPoint(controls, 0, 3, float(k) / 100);
            float nearest = 1e9f;
            for (const MPoint3& q : dense)
                nearest = std::fmin(nearest, Length3(p - q));
            worst = std::fmax(worst, nearest);
        }
    }
    EXPECT_GT(worst, 1.0f);
    EXPECT_LT(worst, 1.6f);
}

TEST_F(PointEditingInsert, ClickOnASamplePointTakesTheEarlierPiece) {
    // The top (50, 30) ends piece 128 and starts piece 129, both at a squared
    // distance of 0. The earlier piece wins, so w is the end of its piece:
    // HandleIn points back along piece 128, 0.3 * 64.396 = 19.319 long, and
    // the vector to the piece's end is zero, so HandleOut stays on w.
    Load(Arch());
    S().InsertPoint(Screen(50, 30));
    ASSERT_EQ(S().PointCount, 3);
    const WSketchPoint& added = S().Points[1];
    ExpectExact(added.Position, 50, 30, 0);
    ExpectPoint(added.HandleIn, 30.6813f, 29.9396f, 0, 2e-3f);
    ExpectExact(added.HandleOut, 50, 30, 0);
    ExpectPoint(S().Points[0].HandleOut, 0, 20.5814f, 0, 2e-3f); // u = 0.51453
}

TEST_F(PointEditingInsert, SeamOfAClosedCurveKeepsItsTwinsEqual) {
    // The square's last segment (0, 100) to (0, 0) arrives with HandleIn
    // (0, 30) at the seam. The click (-2, 50) gives w = (0, 50, 0), u = 0.5:
    // the seam's HandleIn becomes (0, 15, 0) on both twins.
    std::vector<WSketchPoint> records = ClosedSquare();
    records[0].HandleIn = P3(0, 30, 0);
    records[4].HandleIn = P3(0, 30, 0);
    Load(records);
    S().InsertPoint(Screen(-2, 50));
    ASSERT_EQ(S().PointCount, 6);
    ExpectExact(S().Points[4].Position, 0, 50, 0);
    ExpectExact(S().Points[5].HandleIn, 0, 15, 0);
    ExpectExact(S().Points[0].HandleIn, 0, 15, 0);
    EXPECT_EQ(S().FindTwin(0), 5);
    EXPECT_TRUE(CheckInvariants(S()));
}

TEST_F(PointEditingInsert, NeedsTwoRecords) {
    Load({Record(0, 0, 0, KindMove)});
    S().InsertPoint(Screen(0, 0));
    EXPECT_EQ(S().PointCount, 1);
    EXPECT_EQ(Steps(), 0);
}
