// What a click selects in the edit modes: points, handles and roll tips by
// their distance from the mouse, and the curve hit that takes a click on the
// path, bends a line or picks a handle and puts the pointer on it.
//
// A new point on the path: on a line it keeps the shape exactly, on a curve
// it estimates the new handles from the arc lengths on either side.

#include "PointEditingTestSupport.h"

#include <cmath>

namespace hits {

namespace {

using PointEditingHit = PointEditingFixture;

// An open curve of one straight Bezier segment along the x axis: the handles
// lie on the path, at x 30 and x 70.
std::vector<WSketchPoint> StraightBezier() {
    return {Handles(Record(0, 0, 0, KindMove), P3(0, 0, 0), P3(30, 0, 0)),
            Handles(Record(100, 0, 0, KindCurve), P3(70, 0, 0), P3(100, 0, 0))};
}

// A point heading along x (handles at x -10 and x 10) with the roll (0, 1, 0):
// its frame has X = (0, 1, 0), so the roll tip is (0, 20, 0), 20 pixels above
// the point on the screen.
std::vector<WSketchPoint> RolledPoint() {
    WSketchPoint first = Handles(Record(0, 0, 0, KindMove), P3(-10, 0, 0), P3(10, 0, 0));
    first.Roll = P3(0, 1, 0);
    return {first, Record(100, 0, 0, KindLine)};
}

} // namespace

// ---- HitTest

TEST_F(PointEditingHit, ClosedCurveGivesTheFirstRecordAndWithShiftTheLastAndBothMove) {
    Load(ClosedSquare());
    // The click lies (3, -4) from the corner at the origin: 5 pixels, within
    // PointSize 8, and the same for its twins 0 and 4.
    MPoint2 click = Screen(3, -4);
    EXPECT_TRUE(S().HitTest(click, false));
    EXPECT_EQ(S().Current, 0);
    EXPECT_EQ(S().CurrentPart, 0);
    EXPECT_TRUE(S().HitTest(click, true));
    EXPECT_EQ(S().Current, 4);
    EXPECT_EQ(S().CurrentPart, 0);

    // A drag of the last record by (10, 5) takes the first along.
    S().DragCurrent(P3(10, 5, 0));
    ExpectExact(S().Points[4].Position, 10, 5, 0);
    ExpectExact(S().Points[0].Position, 10, 5, 0);
    ExpectExact(S().Points[0].HandleIn, 10, 5, 0);
    ExpectExact(S().Points[0].HandleOut, 10, 5, 0);
    EXPECT_EQ(S().Points[0].Kind, KindMove);
    EXPECT_EQ(S().Points[4].Kind, KindLine);
    EXPECT_EQ(S().Current, 4);
    EXPECT_TRUE(CheckInvariants(S()));
    EXPECT_EQ(Steps(), 0); // a drag commits only at the release
}

TEST_F(PointEditingHit, NearestWinsWhateverTheOrderAndShiftOnlyBreaksTies) {
    // Record 0 lies 3 pixels from the click, record 1 lies 5 pixels away.
    Load({Record(0, 0, 0, KindMove), Record(4, 3, 0, KindLine), Record(100, 0, 0, KindLine)});
    MPoint2 click = Screen(0, 3);
    EXPECT_TRUE(S().HitTest(click, true));
    EXPECT_EQ(S().Current, 0);
    // The nearer one later in the array wins without Shift too.
    MPoint2 other = Screen(4, 0); // 4 from record 0, 3 from record 1
    EXPECT_TRUE(S().HitTest(other, false));
    EXPECT_EQ(S().Current, 1);
}

TEST_F(PointEditingHit, ReachIsPointSizeInclusive) {
    Load({Record(0, 0, 0, KindMove), Record(100, 0, 0, KindLine)});
    EXPECT_TRUE(S().HitTest(Screen(8, 0), false)); // exactly 8 pixels
    EXPECT_EQ(S().Current, 0);
    EXPECT_FALSE(S().HitTest(Screen(9, 0), false));
    EXPECT_EQ(S().Current, -1);
    settings.PointSize = 9;
    EXPECT_TRUE(S().HitTest(Screen(9, 0), false));
}

TEST_F(PointEditingHit, HandleCountsOnlyOnThePointSelectedBefore) {
    Load(StraightBezier());
    // The handle at x 30 of record 0, with nothing selected: record 0 lies
    // 30 pixels away and its handle is not looked at.
    MPoint2 onHandle = Screen(30, 0);
    EXPECT_FALSE(S().HitTest(onHandle, false));
    EXPECT_EQ(S().Current, -1);

    // With record 1 selected the handle of record 0 still does not count.
    EXPECT_TRUE(S().HitTest(Screen(100, 0), false));
    EXPECT_EQ(S().Current, 1);
    EXPECT_FALSE(S().HitTest(onHandle, false));

    // Once record 0 is selected, its handle is hit.
    EXPECT_TRUE(S().HitTest(Screen(0, 0), false));
    EXPECT_EQ(S().Current, 0);
    EXPECT_TRUE(S().HitTest(onHandle, false));
    EXPECT_EQ(S().Current, 0);
    EXPECT_EQ(S().CurrentPart, 2);
}

TEST_F(PointEditingHit, HiddenHandleFallsThroughToTheCurveHit) {
    Load(StraightBezier());
    int32_t warps = TheLastCursorMove.Count;
    MPoint2 onHandle = Screen(30, 0);
    // The window procedure's order: the hit test, and the curve hit when it
    // found nothing. The click lies on the path; of the four controls the
    // handle at x 30 is nearest (0 pixels), so record 0's HandleOut is taken.
    ASSERT_FALSE(S().HitTest(onHandle, false));
    MPoint2 pointer;
    ASSERT_TRUE(S().HitCurve(onHandle, &pointer));
    EXPECT_EQ(S().Current, 0);
    EXPECT_EQ(S().CurrentPart, 2);
    EXPECT_EQ(pointer.x, 430.0f);
    EXPECT_EQ(pointer.y, 300.0f);
    EXPECT_EQ(TheLastCursorMove.Count, warps) << "the caller moves the pointer";
    EXPECT_EQ(Steps(), 0); // a curve hit on a Bezier changes nothing
    EXPECT_TRUE(CheckInvariants(S()));
}

TEST_F(PointEditingHit, RollTipTakesTwoClicksInEditRoll) {
    TheMode = ModeEditRoll;
    Load(RolledPoint());
    MPoint2 tip = Screen(0, 20);
    // First click on the tip: the point is 20 pixels away, the tip does not
    // count yet.
    EXPECT_FALSE(S().HitTest(tip, false));
    EXPECT_EQ(S().Current, -1);
    // One click on the point, then one on the tip.
    EXPECT_TRUE(S().HitTest(Screen(0, 0), false));
    EXPECT_EQ(S().Current, 0);
    EXPECT_EQ(S().CurrentPart, 0);
    EXPECT_TRUE(S().HitTest(tip, false));
    EXPECT_EQ(S().Current, 0);
    EXPECT_EQ(S().CurrentPart, 3);

    // Dragging the tip by (0, 0, 20): the tip vector (0, 20, 0) becomes
    // (0, 20, 20), normalised to (0, 20 / sqrt(800), 20 / sqrt(800)).
    S().DragCurrent(P3(0, 0, 20));
    float c = 20.0f / std::sqrt(800.0f);
    EXPECT_EQ(S().Points[0].Roll.x, 0.0f);
    EXPECT_FLOAT_EQ(S().Points[0].Roll.y, c);
    EXPECT_FLOAT_EQ(S().Points[0].Roll.z, c);
    ExpectExact(S().Points[0].Position, 0, 0, 0);
    EXPECT_EQ(S().Current, 0);
    EXPECT_EQ(S().CurrentPart, 3);
}

TEST_F(PointEditingHit, EditRollLeavesHandlesOutAndEditSketchLeavesRollTipsOut) {
    Load(RolledPoint());
    // Record 0 selected; its HandleOut lies at (10, 0), its roll tip at (0, 20).
    TheMode = ModeEditRoll;
    Select(0, 0);
    EXPECT_FALSE(S().HitTest(Screen(10, 0), false)); // 10 pixels from the point
    Select(0, 0);
    EXPECT_TRUE(S().HitTest(Screen(0, 20), false));
    EXPECT_EQ(S().CurrentPart, 3);

    TheMode = ModeEditSketch;
    Select(0, 0);
    EXPECT_TRUE(S().HitTest(Screen(10, 0), false));
    EXPECT_EQ(S().CurrentPart, 2);
    Select(0, 0);
    EXPECT_FALSE(S().HitTest(Screen(0, 20), false));
}

TEST_F(PointEditingHit, RollTipIsTwentyAlongTheFrameAxis) {
    std::vector<WSketchPoint> records = RolledPoint();
    ExpectPoint(RollTip(records[0]), 0, 20, 0, 0);
    // Moved to (5, 6, 7), the tip moves along.
    WSketchPoint moved = records[0];
    moved.Position = P3(5, 6, 7);
    moved.HandleIn = P3(-5, 6, 7);
    moved.HandleOut = P3(15, 6, 7);
    ExpectPoint(RollTip(moved), 5, 26, 7, 0);
}

// ---- HitCurve on a Bezier segment

TEST_F(PointEditingHit, CurveClickNearerTheStartTakesTheStartHandleAndWarps) {
    Load(StraightBezier());
    int32_t warps = TheLastCursorMove.Count;
    // (45, -2): 2 pixels below the path, squared 4 < PointSize 8. The
    // controls lie at x 0, 30, 70, 100; x 30 is nearest (15.1 pixels).
    MPoint2 pointer;
    ASSERT_TRUE(S().HitCurve(Screen(45, -2), &pointer));
    EXPECT_EQ(S().Current, 0);
    EXPECT_EQ(S().CurrentPart, 2);
    EXPECT_EQ(pointer.x, 430.0f);
    EXPECT_EQ(pointer.y, 300.0f);
    EXPECT_EQ(TheLastCursorMove.Count, warps) << "the caller moves the pointer";
}

TEST_F(PointEditingHit, CurveClickNearerTheEndTakesTheEndHandle) {
    Load(StraightBezier());
    int32_t warps = TheLastCursorMove.Count;
    // (60, -2): x 70 is nearest (10.2 pixels), so record 1's HandleIn.
    MPoint2 pointer;
    ASSERT_TRUE(S().HitCurve(Screen(60, -2), &pointer));
    EXPECT_EQ(S().Current, 1);
    EXPECT_EQ(S().CurrentPart, 1);
    EXPECT_EQ(pointer.x, 470.0f);
    EXPECT_EQ(pointer.y, 300.0f);
    EXPECT_EQ(TheLastCursorMove.Count, warps);
}

TEST_F(PointEditingHit, CurveHitRadiusIsTheSquareRootOfPointSize) {
    Load(StraightBezier());
    int32_t warps = TheLastCursorMove.Count;
    // 3 pixels off the path: 9 is not below 8, so no hit, although a point
    // would be hit at that distance.
    EXPECT_FALSE(S().HitCurve(Screen(45, -3)));
    EXPECT_EQ(S().Current, -1);
    settings.PointSize = 10; // 9 < 10
    EXPECT_TRUE(S().HitCurve(Screen(45, -3)));
    EXPECT_EQ(S().Current, 0);
    EXPECT_EQ(TheLastCursorMove.Count, warps);
}

TEST_F(PointEditingHit, CurveHitOnABentSegmentWarpsToTheHandle) {
    // An arch: controls (0, 0), (0, 40), (100, 40), (100, 0). The click at
    // B(0.25) = (15.625, 22.5) lies on the path; of the controls, (0, 40) is
    // nearest (23.5 pixels against 27.4 for (0, 0)).
    Load({Handles(Record(0, 0, 0, KindMove), P3(0, 0, 0), P3(0, 40, 0)),
          Handles(Record(100, 0, 0, KindCurve), P3(100, 40, 0), P3(100, 0, 0))});
    MPoint2 pointer;
    ASSERT_TRUE(S().HitCurve(Screen(15.625f, 22.5f), &pointer));
    EXPECT_EQ(S().Current, 0);
    EXPECT_EQ(S().CurrentPart, 2);
    EXPECT_EQ(pointer.x, 400.0f);
    EXPECT_EQ(pointer.y, 260.0f);
    // And at B(0.75) = (84.375, 22.5) the handle (100, 40) of record 1.
    ASSERT_TRUE(S().HitCurve(Screen(84.375f, 22.5f), &pointer));
    EXPECT_EQ(S().Current, 1);
    EXPECT_EQ(S().CurrentPart, 1);
    EXPECT_EQ(pointer.x, 500.0f);
    EXPECT_EQ(pointer.y, 260.0f);
}

TEST_F(PointEditingHit, FirstSegmentHitInArrayOrderEndsTheWalk) {
    // Two curves on the same straight path: the first takes the click.
    std::vector<WSketchPoint> records = StraightBezier();
    std::vector<WSketchPoint> second = StraightBezier();
    records.insert(records.end(), second.begin(), second.end());
    Load(records);
    S().HitCurve(Screen(60, -1));
    EXPECT_EQ(S().Current, 1);
    EXPECT_EQ(S().CurrentPart, 1);
}

TEST_F(PointEditingHit, CurveHitNeedsTwoRecords) {
    Load({Record(0, 0, 0, KindMove)});
    S().Current = 0;
    S().HitCurve(Screen(0, 0));
    EXPECT_EQ(S().Current, -1);
}

// ---- HitCurve on a straight segment

TEST_F(PointEditingHit, ClickNearALineBendsItAtTheClickFraction) {
    // The line (0, 0) to (100, 0), handles on the points. The click at
    // (24, -7) lies 25 pixels from the start: ta = 25 / 100 = 0.25; the point
    // at 0.25 along the line is (25, 0), 7.07 pixels from the click, below 8.
    Load({Record(0, 0, 0, KindMove), Record(100, 0, 0, KindLine)});
    int32_t warps = TheLastCursorMove.Count;
    EXPECT_FALSE(S().HitCurve(Screen(24, -7))) << "the handle is already at the click";
    EXPECT_EQ(S().Points[1].Kind, KindCurve);
    EXPECT_EQ(S().Points[0].Smooth, 0);
    EXPECT_EQ(S().Points[1].Smooth, 0);
    ExpectExact(S().Points[0].HandleOut, 25, 0, 0); // 0 + 100 * 0.25
    ExpectExact(S().Points[1].HandleIn, 75, 0, 0);  // 100 - 100 * 0.25
    ExpectExact(S().Points[0].HandleIn, 0, 0, 0);
    ExpectExact(S().Points[1].HandleOut, 100, 0, 0);
    EXPECT_EQ(S().Current, 0);
    EXPECT_EQ(S().CurrentPart, 2);
    EXPECT_EQ(Steps(), 1);
    EXPECT_EQ(TheLastCursorMove.Count, warps);
    EXPECT_TRUE(CheckInvariants(S()));
}

TEST_F(PointEditingHit, ClickNearTheLineEndTakesTheFractionFromTheEnd) {
    // (76, 7): 25 pixels from the end, tb = 0.25 (ta is 0.76); the point at
    // 0.25 from the end is (75, 0), 7.07 pixels away.
    Load({Record(0, 0, 0, KindMove), Record(100, 0, 0, KindLine)});
    S().HitCurve(Screen(76, 7));
    EXPECT_EQ(S().Points[1].Kind, KindCurve);
    ExpectExact(S().Points[0].HandleOut, 25, 0, 0);
    ExpectExact(S().Points[1].HandleIn, 75, 0, 0);
    EXPECT_EQ(S().Current, 1);
    EXPECT_EQ(S().CurrentPart, 1);
    EXPECT_EQ(Steps(), 1);
}

TEST_F(PointEditingHit, LineReachIsPointSizeAndTheMiddleBelongsToNeitherHalf) {
    Load({Record(0, 0, 0, KindMove), Record(100, 0, 0, KindLine)});
    // (24, -9): ta = sqrt(657) / 100 = 0.2563, the point (25.63, 0) lies 9.15
    // pixels away: no hit.
    S().HitCurve(Screen(24, -9));
    EXPECT_EQ(S().Current, -1);
    // Exactly on the middle both fractions are 0.5, and neither is below it.
    S().HitCurve(Screen(50, 0));
    EXPECT_EQ(S().Current, -1);
    EXPECT_EQ(S().Points[1].Kind, KindLine);
    EXPECT_EQ(Steps(), 0);
}

TEST_F(PointEditingHit, BentLineOfAClosedCurveKeepsItsTwinsEqual) {
    // The first segment of the closed square, clicked at (24, -7) as above:
    // record 0's HandleOut goes to (25, 0, 0) and its twin, record 4, follows.
    Load(ClosedSquare());
    S().HitCurve(Screen(24, -7));
    EXPECT_EQ(S().Points[1].Kind, KindCurve);
    ExpectExact(S().Points[0].HandleOut, 25, 0, 0);
    ExpectExact(S().Points[4].HandleOut, 25, 0, 0);
    EXPECT_EQ(S().Points[4].Smooth, 0);
    EXPECT_EQ(S().Points[4].Kind, KindLine);
    EXPECT_TRUE(CheckInvariants(S()));
}

TEST_F(PointEditingHit, RightClickOnALineBendsItAndDeletingTheNewHandleStraightensIt) {
    // The right button: the hit test with no tie-break, the curve hit when
    // it fails, then the deletion of what is selected.
    Load({Record(0, 0, 0, KindMove), Record(100, 0, 0, KindLine)});
    MPoint2 click = Screen(24, -7);
    if (!S().HitTest(click, false)) S().HitCurve(click);
    ASSERT_EQ(S().Current, 0);
    ASSERT_EQ(S().CurrentPart, 2);
    EXPECT_EQ(S().Points[1].Kind, KindCurve);
    EXPECT_EQ(Steps(), 1);
    S().DeleteCurrent();
    // A line again, but with the handles where the bend put them.
    ASSERT_EQ(S().PointCount, 2);
    EXPECT_EQ(S().Points[1].Kind, KindLine);
    ExpectExact(S().Points[0].HandleOut, 25, 0, 0);
    ExpectExact(S().Points[1].HandleIn, 75, 0, 0);
    ExpectExact(S().Points[0].Position, 0, 0, 0);
    ExpectExact(S().Points[1].Position, 100, 0, 0);
    EXPECT_EQ(S().Current, -1);
    EXPECT_EQ(Steps(), 2);
    EXPECT_TRUE(CheckInvariants(S()));
}

} // namespace hits

namespace insertion {

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

} // namespace insertion
