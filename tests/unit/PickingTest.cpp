// What a click selects in the edit modes: points, handles and roll tips by
// their distance from the mouse, and the curve hit that takes a click on the
// path, bends a line or picks a handle and puts the pointer on it.

#include "PointEditingTestSupport.h"

#include <cmath>

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
