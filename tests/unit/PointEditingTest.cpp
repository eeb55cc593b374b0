// Dragging, closing and joining curve ends, the deletions, the Smooth toggle
// and the grid snap at the button release.

#include "PointEditingTestSupport.h"

#include <cmath>

namespace {

using PointEditingDrag = PointEditingFixture;
using PointEditingDelete = PointEditingFixture;
using PointEditingSmooth = PointEditingFixture;
using PointEditingSnap = PointEditingFixture;

} // namespace

// ---- Drag

TEST_F(PointEditingDrag, PointMovesWithItsHandles) {
    Load({Handles(Record(0, 0, 0, KindMove), P3(-5, 0, 0), P3(5, 1, 0)),
          Record(100, 0, 0, KindLine)});
    Select(0, 0);
    S().DragCurrent(P3(2, 3, 4));
    ExpectExact(S().Points[0].Position, 2, 3, 4);
    ExpectExact(S().Points[0].HandleIn, -3, 3, 4);
    ExpectExact(S().Points[0].HandleOut, 7, 4, 4);
    EXPECT_EQ(S().Current, 0);
    EXPECT_EQ(Steps(), 0);
}

TEST_F(PointEditingDrag, SmoothHandleSwingsTheOtherAndKeepsItsLength) {
    // Point (50, 0), HandleIn (40, 0), HandleOut (60, 0). HandleIn dragged by
    // (0, -10) to (40, -10): HandleOut keeps its length 10 on the far side,
    // along (10, 10) / sqrt(200), at (50 + 7.0710678, 7.0710678).
    Load({Record(0, 0, 0, KindMove),
          Handles(Record(50, 0, 0, KindLine), P3(40, 0, 0), P3(60, 0, 0)),
          Record(100, 0, 0, KindLine)});
    Select(1, 1);
    S().DragCurrent(P3(0, -10, 0));
    ExpectExact(S().Points[1].HandleIn, 40, -10, 0);
    ExpectPoint(S().Points[1].HandleOut, 57.0710678f, 7.0710678f, 0);
    ExpectExact(S().Points[1].Position, 50, 0, 0);

    // Not smooth: HandleOut stays.
    Load({Record(0, 0, 0, KindMove),
          Handles(Record(50, 0, 0, KindLine), P3(40, 0, 0), P3(60, 0, 0)),
          Record(100, 0, 0, KindLine)});
    S().Points[1].Smooth = 0;
    Select(1, 1);
    S().DragCurrent(P3(0, -10, 0));
    ExpectExact(S().Points[1].HandleOut, 60, 0, 0);
    // HandleOut dragged: HandleIn stays too.
    Select(1, 2);
    S().DragCurrent(P3(0, 5, 0));
    ExpectExact(S().Points[1].HandleOut, 60, 5, 0);
    ExpectExact(S().Points[1].HandleIn, 40, -10, 0);
}

TEST_F(PointEditingDrag, WithoutAValidCurrentNothingMoves) {
    Load(ClosedSquare());
    std::vector<WSketchPoint> before = Records(S());
    S().Current = -1;
    S().DragCurrent(P3(5, 5, 0));
    S().Current = 5;
    S().DragCurrent(P3(5, 5, 0));
    for (int32_t i = 0; i < 5; i++)
        EXPECT_TRUE(SameRecordBits(S().Points[i], before[size_t(i)]));
}

TEST_F(PointEditingDrag, EndDraggedOntoItsStartClosesTheCurveAndDeselects) {
    // Open curve (0, 0), (100, 0), (100, 100), (5, 3). The end is dragged by
    // (-3, -1) to (2, 2), 2.83 pixels from the start: the curve closes at the
    // mean (1, 1). The end's handles moved with it to (3, 9) and (5, 0); the
    // start takes the end's HandleIn, the end the start's HandleOut (3, 0).
    WSketchPoint end = Handles(Record(5, 3, 0, KindLine), P3(6, 10, 0), P3(8, 1, 0));
    end.Roll = P3(0, 1, 0);
    end.Smooth = 0;
    Load({Handles(Record(0, 0, 0, KindMove), P3(-1, -2, 0), P3(3, 0, 0)),
          Record(100, 0, 0, KindLine), Record(100, 100, 0, KindLine), end});
    Select(3, 0);
    S().DragCurrent(P3(-3, -1, 0));
    ExpectExact(S().Points[0].Position, 1, 1, 0);
    ExpectExact(S().Points[3].Position, 1, 1, 0);
    ExpectExact(S().Points[0].HandleIn, 3, 9, 0);
    ExpectExact(S().Points[0].HandleOut, 3, 0, 0);
    ExpectExact(S().Points[3].HandleIn, 3, 9, 0);
    ExpectExact(S().Points[3].HandleOut, 3, 0, 0);
    // The new twins hold one point: the first record's roll and Smooth.
    ExpectExact(S().Points[3].Roll, 0, 0, 1);
    EXPECT_EQ(S().Points[3].Smooth, 1);
    EXPECT_EQ(S().Points[3].Kind, KindLine);
    EXPECT_EQ(S().FindTwin(0), 3);
    EXPECT_EQ(S().Current, -1);
    EXPECT_TRUE(CheckInvariants(S()));

    // The rest of the same drag finds nothing selected: the sketch stays (the
    // window procedure pans instead).
    std::vector<WSketchPoint> closed = Records(S());
    S().DragCurrent(P3(20, 20, 0));
    for (int32_t i = 0; i < 4; i++)
        EXPECT_TRUE(SameRecordBits(S().Points[i], closed[size_t(i)]));
    EXPECT_EQ(Steps(), 0);
}

TEST_F(PointEditingDrag, StartDraggedOntoItsEndClosesToo) {
    Load({Record(0, 0, 0, KindMove), Record(100, 0, 0, KindLine), Record(100, 100, 0, KindLine),
          Record(4, 4, 0, KindLine)});
    Select(0, 0);
    S().DragCurrent(P3(2, 0, 0)); // (2, 0) lies 4.5 pixels from (4, 4)
    ExpectExact(S().Points[0].Position, 3, 2, 0);
    ExpectExact(S().Points[3].Position, 3, 2, 0);
    EXPECT_EQ(S().Current, -1);
    EXPECT_TRUE(CheckInvariants(S()));
}

TEST_F(PointEditingDrag, EndOntoTheEndOfAnotherCurveDoesNothing) {
    // Curve A (0, 0) to (100, 0); curve B (200, 50) to (100, 50). A's end is
    // dragged to (100, 48), 2 pixels from B's end: no join.
    Load({Record(0, 0, 0, KindMove), Record(100, 0, 0, KindLine), Record(200, 50, 0, KindMove),
          Record(100, 50, 0, KindLine)});
    Select(1, 0);
    S().DragCurrent(P3(0, 48, 0));
    ASSERT_EQ(S().PointCount, 4);
    ExpectExact(S().Points[1].Position, 100, 48, 0);
    ExpectExact(S().Points[3].Position, 100, 50, 0);
    EXPECT_EQ(S().Points[2].Kind, KindMove);
    EXPECT_EQ(S().Current, 1);
    // Nor a start onto another curve's start.
    Select(2, 0);
    S().DragCurrent(P3(-198, -48, 0)); // B's start to (2, 2), near A's start
    ASSERT_EQ(S().PointCount, 4);
    EXPECT_EQ(S().Current, 2);
    EXPECT_TRUE(CheckInvariants(S()));
}

TEST_F(PointEditingDrag, EndOntoAnotherCurvesStartJoinsThem) {
    // A (0, 0) to (100, 0); B (100, 50) to (200, 80). A's end goes to
    // (100, 48), 2 pixels from B's start: B is joined on behind A's end, which
    // takes the mean (100, 49); B's first record is dropped.
    Load({Record(0, 0, 0, KindMove), Record(100, 0, 0, KindLine), Record(100, 50, 0, KindMove),
          Record(200, 80, 0, KindLine)});
    Select(1, 0);
    S().DragCurrent(P3(0, 48, 0));
    ASSERT_EQ(S().PointCount, 3);
    ExpectExact(S().Points[0].Position, 0, 0, 0);
    ExpectExact(S().Points[1].Position, 100, 49, 0);
    ExpectExact(S().Points[2].Position, 200, 80, 0);
    EXPECT_EQ(S().Points[2].Kind, KindLine);
    EXPECT_EQ(S().Current, -1);
    EXPECT_EQ(Steps(), 0);
    EXPECT_TRUE(CheckInvariants(S()));
}

TEST_F(PointEditingDrag, WalkGoesOnPastAStartThatCannotJoin) {
    // A (0, 0) to (100, 0); a lone record C at (100, 49); B (100, 50) to
    // (200, 80). A's end goes to (100, 48): C is met first and deselects, but
    // a curve of one record cannot be joined on; B's start, 2 pixels away,
    // is joined: A's end takes the mean (100, 49) and B's second record
    // follows it, leaving C behind.
    Load({Record(0, 0, 0, KindMove), Record(100, 0, 0, KindLine), Record(100, 49, 0, KindMove),
          Record(100, 50, 0, KindMove), Record(200, 80, 0, KindLine)});
    Select(1, 0);
    S().DragCurrent(P3(0, 48, 0));
    ASSERT_EQ(S().PointCount, 4);
    ExpectExact(S().Points[1].Position, 100, 49, 0);
    ExpectExact(S().Points[2].Position, 200, 80, 0);
    EXPECT_EQ(S().Points[2].Kind, KindLine);
    ExpectExact(S().Points[3].Position, 100, 49, 0);
    EXPECT_EQ(S().Points[3].Kind, KindMove);
    EXPECT_EQ(S().Current, -1);
    EXPECT_TRUE(CheckInvariants(S()));
}

TEST_F(PointEditingDrag, StartOntoAnotherCurvesEndJoinsThem) {
    // B's start (100, 50) dragged to (100, 2), 2 pixels from A's end
    // (100, 0): A's end takes the mean (100, 1) and B follows it, without its
    // dragged first record.
    Load({Record(0, 0, 0, KindMove), Record(100, 0, 0, KindLine), Record(100, 50, 0, KindMove),
          Record(200, 80, 0, KindLine)});
    Select(2, 0);
    S().DragCurrent(P3(0, -48, 0));
    ASSERT_EQ(S().PointCount, 3);
    ExpectExact(S().Points[1].Position, 100, 1, 0);
    ExpectExact(S().Points[2].Position, 200, 80, 0);
    EXPECT_EQ(S().Current, -1);
    EXPECT_TRUE(CheckInvariants(S()));
}

TEST_F(PointEditingDrag, JoinWorksWhenTheStartLiesBeforeTheEnd) {
    // B first in the array: B (100, 50) to (200, 80), then A (0, 0) to
    // (100, 0). A's end (record 3) onto B's start.
    Load({Record(100, 50, 0, KindMove), Record(200, 80, 0, KindLine), Record(0, 0, 0, KindMove),
          Record(100, 0, 0, KindLine)});
    Select(3, 0);
    S().DragCurrent(P3(0, 48, 0));
    ASSERT_EQ(S().PointCount, 3);
    ExpectExact(S().Points[0].Position, 0, 0, 0);
    ExpectExact(S().Points[1].Position, 100, 49, 0);
    ExpectExact(S().Points[2].Position, 200, 80, 0);
    EXPECT_EQ(S().Current, -1);
    EXPECT_TRUE(CheckInvariants(S()));
}

TEST_F(PointEditingDrag, SingleRecordCurveIsDeselectedByTheFirstMove) {
    Load({Record(50, 50, 0, KindMove), Record(0, 0, 0, KindMove), Record(100, 0, 0, KindLine)});
    Select(0, 0);
    S().DragCurrent(P3(5, 0, 0));
    ExpectExact(S().Points[0].Position, 55, 50, 0);
    EXPECT_EQ(S().Current, -1);
    ASSERT_EQ(S().PointCount, 3);
    ExpectExact(S().Points[1].Position, 0, 0, 0);
    S().DragCurrent(P3(5, 0, 0)); // the rest of the drag moves nothing
    ExpectExact(S().Points[0].Position, 55, 50, 0);
}

TEST_F(PointEditingDrag, InnerPointNeverClosesOrJoins) {
    // The middle point of (0, 0), (50, 0), (100, 0) dragged next to the start.
    Load({Record(0, 0, 0, KindMove), Record(50, 0, 0, KindLine), Record(100, 0, 0, KindLine)});
    Select(1, 0);
    S().DragCurrent(P3(-49, 0, 0));
    EXPECT_EQ(S().Current, 1);
    ExpectExact(S().Points[1].Position, 1, 0, 0);
    EXPECT_EQ(S().PointCount, 3);
}

// ---- DeleteCurrent

TEST_F(PointEditingDelete, PointAtTheStartOfAClosedCurveKeepsItClosed) {
    // The square's first corner goes: record 1 (100, 0) opens the curve and
    // the last record takes its data, leaving the closed triangle (100, 0),
    // (100, 100), (0, 100), (100, 0).
    Load(ClosedSquare());
    Select(0, 0);
    S().DeleteCurrent();
    ASSERT_EQ(S().PointCount, 4);
    ExpectExact(S().Points[0].Position, 100, 0, 0);
    ExpectExact(S().Points[1].Position, 100, 100, 0);
    ExpectExact(S().Points[2].Position, 0, 100, 0);
    ExpectExact(S().Points[3].Position, 100, 0, 0);
    EXPECT_EQ(S().Points[0].Kind, KindMove);
    EXPECT_EQ(S().Points[3].Kind, KindLine);
    EXPECT_EQ(S().FindTwin(0), 3);
    EXPECT_EQ(S().Current, -1);
    EXPECT_EQ(Steps(), 1);
    EXPECT_TRUE(CheckInvariants(S()));
}

TEST_F(PointEditingDelete, InnerPointIsBridgedByTheNextSegment) {
    Load({Record(0, 0, 0, KindMove), Record(50, 40, 0, KindLine), Record(100, 0, 0, KindLine),
          Record(100, 100, 0, KindLine)});
    Select(1, 0);
    S().DeleteCurrent();
    ASSERT_EQ(S().PointCount, 3);
    ExpectExact(S().Points[1].Position, 100, 0, 0);
    EXPECT_EQ(S().Points[1].Kind, KindLine);
    EXPECT_EQ(S().Current, -1);
    EXPECT_EQ(Steps(), 1);
    EXPECT_TRUE(CheckInvariants(S()));
}

TEST_F(PointEditingDelete, HandleStraightensItsSegment) {
    // A bent segment (handles off the chord) into record 1.
    std::vector<WSketchPoint> records = {
        Handles(Record(0, 0, 0, KindMove), P3(0, 0, 0), P3(30, 40, 0)),
        Handles(Record(100, 0, 0, KindCurve), P3(70, 40, 0), P3(100, 0, 0)),
        Handles(Record(200, 0, 0, KindCurve), P3(170, -40, 0), P3(200, 0, 0))};
    Load(records);
    Select(1, 1); // HandleIn of record 1: its own segment
    S().DeleteCurrent();
    EXPECT_EQ(S().Points[1].Kind, KindLine);
    EXPECT_EQ(S().Points[2].Kind, KindCurve);
    ExpectExact(S().Points[1].HandleIn, 70, 40, 0); // kept, only not drawn
    EXPECT_EQ(S().Current, -1);
    EXPECT_EQ(Steps(), 1);

    Load(records);
    Select(1, 2); // HandleOut of record 1: the next segment
    S().DeleteCurrent();
    EXPECT_EQ(S().Points[1].Kind, KindCurve);
    EXPECT_EQ(S().Points[2].Kind, KindLine);
    EXPECT_EQ(Steps(), 1);
}

TEST_F(PointEditingDelete, RollTipDeletesNothingButStillCleansAndDeselects) {
    // A line along x with its handles on it and the roll (0, 0, 1): the
    // frame's X axis is (0, 0, 1) at both ends, which is what the clean-up
    // stores, so the points stay as they are and the ring stores nothing.
    Load({Handles(Record(0, 0, 0, KindMove), P3(0, 0, 0), P3(30, 0, 0)),
          Handles(Record(100, 0, 0, KindLine), P3(70, 0, 0), P3(100, 0, 0))});
    Select(1, 3);
    S().DeleteCurrent();
    ASSERT_EQ(S().PointCount, 2);
    EXPECT_EQ(S().Points[1].Kind, KindLine);
    EXPECT_EQ(S().Current, -1);
    EXPECT_EQ(Steps(), 0);
}

TEST_F(PointEditingDelete, WithoutAValidCurrentNothingHappens) {
    Load(ClosedSquare());
    S().Current = -1;
    S().DeleteCurrent();
    S().DeleteSegment();
    EXPECT_EQ(S().PointCount, 5);
    EXPECT_EQ(Steps(), 0);
}

// ---- DeleteSegment

TEST_F(PointEditingDelete, SegmentOfATwoRecordCurveLeavesOneRecordWhichTheCleanUpRemoves) {
    // Curve B of two records, then curve A of three. Deleting the segment
    // into B's end leaves B's start as a curve of its own, directly followed
    // by A's KindMove: the clean-up removes it as an empty curve.
    Load({Record(200, 0, 0, KindMove), Record(300, 50, 0, KindLine), Record(0, 0, 0, KindMove),
          Record(100, 0, 0, KindLine), Record(100, 100, 0, KindLine)});
    Select(1, 0);
    S().DeleteSegment();
    ASSERT_EQ(S().PointCount, 3);
    ExpectExact(S().Points[0].Position, 0, 0, 0);
    ExpectExact(S().Points[2].Position, 100, 100, 0);
    EXPECT_EQ(S().Current, -1);
    EXPECT_EQ(Steps(), 1);
    EXPECT_TRUE(CheckInvariants(S()));

    // The sketch of only that curve is emptied: one record is nothing.
    Load({Record(200, 0, 0, KindMove), Record(300, 50, 0, KindLine)});
    Select(1, 0);
    S().DeleteSegment();
    EXPECT_EQ(S().PointCount, 0);
    EXPECT_EQ(S().Current, -1);
    EXPECT_EQ(Steps(), 1);
}

TEST_F(PointEditingDelete, LoneRecordLeftAtTheEndOfTheArrayBecomesALine) {
    // The same deletion with B last: the clean-up first turns a KindMove at
    // the end of the array into KindLine, so B's start stays, joined onto A
    // by a line from (100, 100).
    Load({Record(0, 0, 0, KindMove), Record(100, 0, 0, KindLine), Record(100, 100, 0, KindLine),
          Record(200, 0, 0, KindMove), Record(300, 50, 0, KindLine)});
    Select(4, 0);
    S().DeleteSegment();
    ASSERT_EQ(S().PointCount, 4);
    ExpectExact(S().Points[3].Position, 200, 0, 0);
    EXPECT_EQ(S().Points[3].Kind, KindLine);
    EXPECT_EQ(S().Current, -1);
    EXPECT_TRUE(CheckInvariants(S()));
}

TEST_F(PointEditingDelete, FirstRecordOfAnOpenCurveHasNoSegmentToLose) {
    Load({Record(0, 0, 0, KindMove), Record(100, 0, 0, KindLine), Record(100, 100, 0, KindLine)});
    Select(0, 0);
    S().DeleteSegment();
    EXPECT_EQ(S().PointCount, 3);
    EXPECT_EQ(S().Current, 0); // nothing at all happens
    EXPECT_EQ(Steps(), 0);
}

TEST_F(PointEditingDelete, FirstRecordOfAClosedCurveOpensIt) {
    Load(ClosedSquare());
    Select(0, 0);
    S().DeleteSegment();
    ASSERT_EQ(S().PointCount, 4);
    ExpectExact(S().Points[3].Position, 0, 100, 0);
    EXPECT_EQ(S().FindTwin(0), -1);
    EXPECT_EQ(S().Current, -1);
    EXPECT_EQ(Steps(), 1);
    EXPECT_TRUE(CheckInvariants(S()));
}

TEST_F(PointEditingDelete, InnerSegmentOfAClosedCurveLeavesOneOpenCurveStartingThere) {
    // The square without its segment (100, 0) to (100, 100): one open curve
    // (100, 100), (0, 100), (0, 0), (100, 0).
    Load(ClosedSquare());
    Select(2, 0);
    S().DeleteSegment();
    ASSERT_EQ(S().PointCount, 4);
    ExpectExact(S().Points[0].Position, 100, 100, 0);
    ExpectExact(S().Points[1].Position, 0, 100, 0);
    ExpectExact(S().Points[2].Position, 0, 0, 0);
    ExpectExact(S().Points[3].Position, 100, 0, 0);
    EXPECT_EQ(S().Points[0].Kind, KindMove);
    EXPECT_EQ(S().Points[1].Kind, KindLine);
    EXPECT_EQ(S().Points[2].Kind, KindLine);
    EXPECT_EQ(S().Points[3].Kind, KindLine);
    EXPECT_EQ(S().Current, -1);
    EXPECT_EQ(Steps(), 1);
    EXPECT_TRUE(CheckInvariants(S()));
}

TEST_F(PointEditingDelete, InnerSegmentOfAnOpenCurveCutsItInTwo) {
    Load({Record(0, 0, 0, KindMove), Record(100, 0, 0, KindLine), Record(100, 100, 0, KindLine),
          Record(0, 100, 0, KindLine)});
    Select(2, 0);
    S().DeleteSegment();
    ASSERT_EQ(S().PointCount, 4);
    EXPECT_EQ(S().Points[2].Kind, KindMove);
    EXPECT_EQ(S().CurveEnd(0), 1);
    EXPECT_EQ(S().Current, -1);
    EXPECT_EQ(Steps(), 1);
    EXPECT_TRUE(CheckInvariants(S()));
}

// ---- ToggleSmooth

TEST_F(PointEditingSmooth, SettingAveragesTheHandlesAndClearingKeepsThem) {
    // (50, 50) with HandleIn (40, 50) and HandleOut (50, 70): a = (10, 0),
    // b = (0, 20), their mean (5, 10); HandleIn (45, 40), HandleOut (55, 60).
    WSketchPoint corner = Handles(Record(50, 50, 0, KindLine), P3(40, 50, 0), P3(50, 70, 0));
    corner.Smooth = 0;
    Load({Record(0, 0, 0, KindMove), corner, Record(100, 0, 0, KindLine)});
    Select(1, 0);
    S().ToggleSmooth();
    EXPECT_EQ(S().Points[1].Smooth, 1);
    ExpectExact(S().Points[1].HandleIn, 45, 40, 0);
    ExpectExact(S().Points[1].HandleOut, 55, 60, 0);
    EXPECT_EQ(Steps(), 1);
    S().ToggleSmooth();
    EXPECT_EQ(S().Points[1].Smooth, 0);
    ExpectExact(S().Points[1].HandleIn, 45, 40, 0);
    ExpectExact(S().Points[1].HandleOut, 55, 60, 0);
    EXPECT_EQ(Steps(), 2);
    EXPECT_EQ(S().Current, 1);
}

TEST_F(PointEditingSmooth, TwinFollows) {
    std::vector<WSketchPoint> records = ClosedSquare();
    records[4].HandleIn = P3(0, 10, 0); // arriving from (0, 100)
    records[0] = Handles(records[0], P3(0, 10, 0), P3(10, 0, 0));
    records[4].HandleOut = P3(10, 0, 0);
    Load(records);
    Select(4, 0);
    S().ToggleSmooth(); // smooth to clear
    EXPECT_EQ(S().Points[0].Smooth, 0);
    EXPECT_EQ(S().Points[4].Smooth, 0);
    S().ToggleSmooth(); // and back: a = (0, -10), b = (10, 0), mean (5, -5)
    ExpectExact(S().Points[4].HandleIn, -5, 5, 0);
    ExpectExact(S().Points[4].HandleOut, 5, -5, 0);
    ExpectExact(S().Points[0].HandleIn, -5, 5, 0);
    ExpectExact(S().Points[0].HandleOut, 5, -5, 0);
    EXPECT_EQ(S().Points[0].Kind, KindMove);
    EXPECT_EQ(S().Points[4].Kind, KindLine);
    EXPECT_EQ(Steps(), 2);
    EXPECT_TRUE(CheckInvariants(S()));
}

// ---- Grid snap at the release

TEST_F(PointEditingSnap, PointSnapsInThreeAxesAndKeepsItsHandleOffsets) {
    settings.UseGrid = true;
    settings.GridSize = 10;
    // (14, 16, 5) goes to (10, 20, 0); 5 / 10 = 0.5 goes to the even 0.
    Load({Record(0, 100, 0, KindMove),
          Handles(Record(14, 16, 5, KindLine), P3(10, 16, 5), P3(20, 17, 5)),
          Record(100, 0, 0, KindLine)});
    Select(1, 0);
    EXPECT_TRUE(S().SnapCurrentToGrid());
    ExpectExact(S().Points[1].Position, 10, 20, 0);
    ExpectExact(S().Points[1].HandleIn, 6, 20, 0);
    ExpectExact(S().Points[1].HandleOut, 16, 21, 0);
    EXPECT_EQ(S().Current, 1);
    EXPECT_EQ(Steps(), 0); // the release commits
    S().Commit();
    EXPECT_EQ(Steps(), 1);
}

TEST_F(PointEditingSnap, TiesGoToTheEvenMultipleAndTheTwinFollows) {
    settings.UseGrid = true;
    settings.GridSize = 10;
    // A closed triangle starting at (15, 25, 35): it snaps to (20, 20, 40).
    Load({Record(15, 25, 35, KindMove), Record(100, 0, 0, KindLine), Record(50, 80, 0, KindLine),
          Record(15, 25, 35, KindLine)});
    Select(3, 0);
    EXPECT_TRUE(S().SnapCurrentToGrid());
    ExpectExact(S().Points[3].Position, 20, 20, 40);
    ExpectExact(S().Points[0].Position, 20, 20, 40);
    EXPECT_EQ(S().Points[0].Kind, KindMove);
    EXPECT_EQ(S().Points[3].Kind, KindLine);
    EXPECT_TRUE(CheckInvariants(S()));
}

TEST_F(PointEditingSnap, OnlyAPointWithTheGridOnAndAPositiveSize) {
    std::vector<WSketchPoint> records = {Record(0, 100, 0, KindMove), Record(14, 16, 0, KindLine),
                                         Record(100, 0, 0, KindLine)};
    Load(records);
    settings.UseGrid = false;
    Select(1, 0);
    EXPECT_FALSE(S().SnapCurrentToGrid());
    settings.UseGrid = true;
    settings.GridSize = 0;
    EXPECT_FALSE(S().SnapCurrentToGrid());
    settings.GridSize = -10;
    EXPECT_FALSE(S().SnapCurrentToGrid());
    settings.GridSize = 10;
    Select(1, 1);
    EXPECT_FALSE(S().SnapCurrentToGrid());
    Select(-1, 0);
    EXPECT_FALSE(S().SnapCurrentToGrid());
    for (int32_t i = 0; i < 3; i++)
        EXPECT_TRUE(SameRecordBits(S().Points[i], records[size_t(i)]));
}

TEST_F(PointEditingSnap, CleanUpRunsAfterTheSnap) {
    // (12, 1) snaps to (10, 0), onto the point before it: the segment of no
    // length goes, and with the count changed nothing stays selected.
    settings.UseGrid = true;
    settings.GridSize = 10;
    Load({Record(10, 0, 0, KindMove), Record(12, 1, 0, KindLine), Record(50, 80, 0, KindLine)});
    Select(1, 0);
    EXPECT_TRUE(S().SnapCurrentToGrid());
    ASSERT_EQ(S().PointCount, 2);
    ExpectExact(S().Points[0].Position, 10, 0, 0);
    ExpectExact(S().Points[1].Position, 50, 80, 0);
    EXPECT_EQ(S().Current, -1);
}
