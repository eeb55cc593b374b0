// The freehand recorder: sampling, closing, thinning, the polyline form with
// its grid, the handles and the rolls. Unless a test says otherwise the view
// is 800 by 600 pixels at zoom 1 in the front view, so the client pixel
// (400 + x, 300 - y) is the world point (x, y, -1): screen z 0 lies one zoom
// unit in front of the pivot, towards the viewer.

#include "sketch/WRecording.h"

#include "foundation/MString.h"
#include "foundation/Platform.h"
#include "shell/WSettings.h"
#include "sketch/WSketch.h"
#include "view/WView.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <string>
#include <vector>

namespace {

struct XY {
    float x, y;
};

MPoint2 Screen(float x, float y) {
    return MPoint2{400 + x, 300 - y};
}

void ExpectPoint(const MPoint3& p, float x, float y, float z, float tolerance = 1e-4f) {
    EXPECT_NEAR(p.x, x, tolerance);
    EXPECT_NEAR(p.y, y, tolerance);
    EXPECT_NEAR(p.z, z, tolerance);
}

struct RecordingTest : ::testing::Test {
    WSettings settings;
    WRecording recording;
    WSettings* oldSettings = nullptr;

    void SetUp() override {
        oldSettings = TheSettings;
        TheSettings = &settings;
        MessageScript script;
        TheMessageScript = &script;
        CreateSketch();
        CreateView();
        TheMessageScript = nullptr;
        TheView->SetViewport(800, 600);
        TheView->Zoom = 1;
        TheView->Update();
    }
    void TearDown() override {
        DestroyView();
        DestroySketch();
        TheSettings = oldSettings;
    }

    // One stroke through world points (x, y) at zoom 1, without finishing.
    void Stroke(const std::vector<XY>& points) {
        recording.Clear();
        for (const XY& p : points)
            recording.AddSample(Screen(p.x, p.y));
    }
    const WSketchPoint& At(int32_t i) { return recording.Points[i]; }
};

} // namespace

// ---- Straight strokes and handles

TEST_F(RecordingTest, StraightStrokeLeavesTwoSamplesAndOneCurve) {
    // Six samples 20 pixels apart along x; every inner one goes straight on
    // (dot 1 > 0.9) and is thinned away. e = (100, 0, 0), 0.3 e = (30, 0, 0).
    Stroke({{0, 0}, {20, 0}, {40, 0}, {60, 0}, {80, 0}, {100, 0}});
    EXPECT_EQ(recording.PointCount, 6);
    recording.Finish(false);
    ASSERT_EQ(recording.PointCount, 2);
    EXPECT_EQ(At(0).Kind, KindMove);
    EXPECT_EQ(At(1).Kind, KindCurve);
    ExpectPoint(At(0).Position, 0, 0, -1);
    ExpectPoint(At(0).HandleIn, -30, 0, -1);
    ExpectPoint(At(0).HandleOut, 30, 0, -1);
    EXPECT_EQ(At(0).Smooth, 0);
    ExpectPoint(At(1).Position, 100, 0, -1);
    ExpectPoint(At(1).HandleIn, 70, 0, -1);
    ExpectPoint(At(1).HandleOut, 130, 0, -1);
    EXPECT_EQ(At(1).Smooth, 0);
}

TEST_F(RecordingTest, LongStraightStrokeHasHandlesAtThreeTenths) {
    // From (0, 0) to (300, 400) in 25 steps of (12, 16): length 500, so the
    // handles stand 150 along it, at (90, 120) and (210, 280).
    std::vector<XY> points;
    for (int i = 0; i <= 25; i++)
        points.push_back({12.0f * i, 16.0f * i});
    Stroke(points);
    recording.Finish(false);
    ASSERT_EQ(recording.PointCount, 2);
    ExpectPoint(At(0).HandleOut, 90, 120, -1, 1e-3f);
    ExpectPoint(At(1).HandleIn, 210, 280, -1, 1e-3f);
    ExpectPoint(At(1).Position, 300, 400, -1);
}

TEST_F(RecordingTest, SmoothPointGetsOppositeHandlesAlongTheMeanDirection) {
    // (0, 0), (100, 0), (200, 50). At the middle v = (1, 0) with lv 100 and
    // u = (100, 50) / 111.8034 = (0.894427, 0.447214) with lu 111.8034; the
    // dot 0.894 stays below 0.9 (kept) and above 0.05 (smooth). The mean
    // (1.894427, 0.447214) / 1.946503 = (0.973249, 0.229753):
    //   HandleIn  = (100, 0) - mean * 100 * 0.3     = (70.80253, -6.89259)
    //   HandleOut = (100, 0) + mean * 111.8034 * 0.3 = (132.64376, 7.70615)
    // The ends: e = (100, 0) at the start, (100, 50) at the end.
    Stroke({{0, 0}, {100, 0}, {200, 50}});
    recording.Finish(false);
    ASSERT_EQ(recording.PointCount, 3);
    EXPECT_EQ(At(1).Smooth, 1);
    EXPECT_EQ(At(1).Kind, KindCurve);
    ExpectPoint(At(1).HandleIn, 70.80253f, -6.89259f, -1, 1e-3f);
    ExpectPoint(At(1).HandleOut, 132.64376f, 7.70615f, -1, 1e-3f);
    ExpectPoint(At(0).HandleIn, -30, 0, -1);
    ExpectPoint(At(0).HandleOut, 30, 0, -1);
    EXPECT_EQ(At(0).Smooth, 0);
    ExpectPoint(At(2).HandleIn, 170, 35, -1, 1e-3f);
    ExpectPoint(At(2).HandleOut, 230, 65, -1, 1e-3f);
    EXPECT_EQ(At(2).Smooth, 0);
    EXPECT_EQ(At(2).Kind, KindCurve);
}

TEST_F(RecordingTest, CornerKeepsTheChordDirections) {
    // (0, 0), (100, 0), (105, 100): u = (5, 100) / 100.1249, dot with (1, 0)
    // is 0.04994, not above 0.05: a corner. HandleIn = (100, 0) - 0.3 (100, 0)
    // = (70, 0), HandleOut = (100, 0) + 0.3 (5, 100) = (101.5, 30).
    Stroke({{0, 0}, {100, 0}, {105, 100}});
    recording.Finish(false);
    ASSERT_EQ(recording.PointCount, 3);
    EXPECT_EQ(At(1).Smooth, 0);
    ExpectPoint(At(1).HandleIn, 70, 0, -1, 1e-3f);
    ExpectPoint(At(1).HandleOut, 101.5f, 30, -1, 1e-3f);
    // (106, 100): the dot 6 / 100.1798 = 0.0599 is above 0.05: smooth.
    Stroke({{0, 0}, {100, 0}, {106, 100}});
    recording.Finish(false);
    ASSERT_EQ(recording.PointCount, 3);
    EXPECT_EQ(At(1).Smooth, 1);
}

// ---- Thinning

TEST_F(RecordingTest, ThinningLimitOfTheCurveForm) {
    // (0, 0), (100, 0), (200, 40): dot (1, 0) . (100, 40) / 107.7033 = 0.9285
    // is above 0.9, so the middle goes.
    Stroke({{0, 0}, {100, 0}, {200, 40}});
    recording.Finish(false);
    ASSERT_EQ(recording.PointCount, 2);
    ExpectPoint(At(1).Position, 200, 40, -1);
}

TEST_F(RecordingTest, ThinningMeasuresBetweenThinnedNeighbours) {
    // (0, 0), (100, 0), (200, 30), (300, 100).
    // i 1: (1, 0) . (100, 30) / 104.403 = 0.9578 > 0.9: (100, 0) goes.
    // i 1 again, now (200, 30) between (0, 0) and (300, 100):
    //   (200, 30) / 202.237 = (0.98893, 0.14834), (100, 70) / 122.066 =
    //   (0.81923, 0.57346); dot 0.8952, not above 0.9: it stays. Measured
    //   between the raw neighbours (100, 0) and (300, 100) the dot would be
    //   0.9495 and it would go.
    Stroke({{0, 0}, {100, 0}, {200, 30}, {300, 100}});
    recording.Finish(false);
    ASSERT_EQ(recording.PointCount, 3);
    ExpectPoint(At(0).Position, 0, 0, -1);
    ExpectPoint(At(1).Position, 200, 30, -1);
    ExpectPoint(At(2).Position, 300, 100, -1);
}

TEST_F(RecordingTest, ThinningLimitOfThePolylineForm) {
    // (0, 0), (100, 0), (200, 150): dot 100 / 180.278 = 0.5547 > 0.5, the
    // middle goes with Ctrl; without Ctrl 0.5547 < 0.9 keeps it.
    Stroke({{0, 0}, {100, 0}, {200, 150}});
    recording.Finish(true);
    EXPECT_EQ(recording.PointCount, 2);
    Stroke({{0, 0}, {100, 0}, {200, 150}});
    recording.Finish(false);
    EXPECT_EQ(recording.PointCount, 3);
    // (200, 175): dot 100 / 201.556 = 0.4961, kept even with Ctrl.
    Stroke({{0, 0}, {100, 0}, {200, 175}});
    recording.Finish(true);
    EXPECT_EQ(recording.PointCount, 3);
}

TEST_F(RecordingTest, CtrlGivesLinesAndFewerPoints) {
    // (0, 0), (100, 0), (200, 50), (300, 150).
    // Curve form: i 1 dot 0.8944 stays; i 2: (0.89443, 0.44721) .
    // (0.70711, 0.70711) = 0.9487 > 0.9 goes; three records remain.
    // Polyline form: i 1 dot 0.8944 > 0.5 goes; then (200, 50) between
    // (0, 0) and (300, 150): (0.97014, 0.24254) . (0.70711, 0.70711) = 0.8575
    // > 0.5 goes; two records remain, a line.
    std::vector<XY> stroke = {{0, 0}, {100, 0}, {200, 50}, {300, 150}};
    Stroke(stroke);
    recording.Finish(false);
    ASSERT_EQ(recording.PointCount, 3);
    EXPECT_EQ(At(1).Kind, KindCurve);
    EXPECT_EQ(At(2).Kind, KindCurve);

    WRecording fresh;
    fresh.Clear();
    for (const XY& p : stroke)
        fresh.AddSample(Screen(p.x, p.y));
    fresh.Finish(true);
    ASSERT_EQ(fresh.PointCount, 2);
    EXPECT_EQ(fresh.Points[0].Kind, KindMove);
    EXPECT_EQ(fresh.Points[1].Kind, KindLine);
    ExpectPoint(fresh.Points[1].Position, 300, 150, -1);
    // The handles are not made in the polyline form: a fresh array's stay 0.
    ExpectPoint(fresh.Points[0].HandleOut, 0, 0, 0, 0);
    ExpectPoint(fresh.Points[1].HandleIn, 0, 0, 0, 0);
    ExpectPoint(fresh.Points[1].Roll, 0, 0, -1, 0);
}

// ---- The grid of the polyline form

TEST_F(RecordingTest, GridSnapWithCtrlKeepsSamplesThatMeet) {
    // Grid 20. Samples (0, 0), (92, 0), (96, 9.9), (0, 40): the turns are
    // corners for the 0.5 limit (dots 0.375 and -0.017 ...), so all four stay.
    // Snapped: 92 / 20 = 4.6 -> 100, 96 / 20 = 4.8 -> 100, 9.9 / 20 = 0.495
    // -> 0: two samples at (100, 0) that stay apart as a segment of length 0.
    // z -1 / 20 = -0.05 snaps to 0.
    settings.UseGrid = true;
    settings.GridSize = 20;
    Stroke({{0, 0}, {92, 0}, {96, 9.9f}, {0, 40}});
    recording.Finish(true);
    ASSERT_EQ(recording.PointCount, 4);
    ExpectPoint(At(0).Position, 0, 0, 0, 0);
    ExpectPoint(At(1).Position, 100, 0, 0, 0);
    ExpectPoint(At(2).Position, 100, 0, 0, 0);
    ExpectPoint(At(3).Position, 0, 40, 0, 0);
    EXPECT_EQ(At(0).Kind, KindMove);
    EXPECT_EQ(At(1).Kind, KindLine);
    EXPECT_EQ(At(2).Kind, KindLine);
    EXPECT_EQ(At(3).Kind, KindLine);

    // Appended, the curve keeps its segment of length 0 until the next
    // clean-up removes the second of the two records.
    TheSketch->AppendPoints(recording.Points.Data, recording.PointCount);
    ASSERT_EQ(TheSketch->PointCount, 4);
    ExpectPoint(TheSketch->Points[1].Position, 100, 0, 0, 0);
    ExpectPoint(TheSketch->Points[2].Position, 100, 0, 0, 0);
    TheSketch->CleanUp();
    ASSERT_EQ(TheSketch->PointCount, 3);
    ExpectPoint(TheSketch->Points[1].Position, 100, 0, 0, 0);
    ExpectPoint(TheSketch->Points[2].Position, 0, 40, 0, 0);
}

TEST_F(RecordingTest, GridIsNotAppliedWithoutCtrl) {
    settings.UseGrid = true;
    settings.GridSize = 20;
    Stroke({{0, 0}, {92, 0}, {96, 9.9f}, {0, 40}});
    recording.Finish(false);
    ASSERT_EQ(recording.PointCount, 4);
    ExpectPoint(At(1).Position, 92, 0, -1);
    ExpectPoint(At(2).Position, 96, 9.9f, -1);
}

TEST_F(RecordingTest, GridNeedsUseGridAndASizeOfOne) {
    settings.UseGrid = false;
    settings.GridSize = 20;
    Stroke({{0, 0}, {92, 0}, {96, 9.9f}, {0, 40}});
    recording.Finish(true);
    ExpectPoint(At(1).Position, 92, 0, -1);
    settings.UseGrid = true;
    settings.GridSize = 0;
    Stroke({{0, 0}, {92, 0}, {96, 9.9f}, {0, 40}});
    recording.Finish(true);
    ExpectPoint(At(1).Position, 92, 0, -1);
    // A grid of 1, the smallest that counts, snaps 9.9 to 10; the other
    // coordinates are whole numbers already.
    settings.GridSize = 1;
    Stroke({{0, 0}, {92, 0}, {96, 9.9f}, {0, 40}});
    recording.Finish(true);
    ASSERT_EQ(recording.PointCount, 4);
    ExpectPoint(At(1).Position, 92, 0, -1, 0);
    ExpectPoint(At(2).Position, 96, 10, -1, 0);
}

// ---- Closing

TEST_F(RecordingTest, StrokeThatComesBackCloses) {
    // (0, 0), (100, 0), (100, 100), (0, 100), (0, 50), then (3, 4), which is
    // 5 pixels from the start, within PointSize 8: the mean of (0, 0, -1)
    // and (3, 4, -1), (1.5, 2, -1), goes into the first and the last record,
    // which was (0, 50).
    Stroke({{0, 0}, {100, 0}, {100, 100}, {0, 100}, {0, 50}, {3, 4}});
    EXPECT_EQ(recording.Closed, 1);
    ASSERT_EQ(recording.PointCount, 5);
    ExpectPoint(At(0).Position, 1.5f, 2, -1);
    ExpectPoint(At(4).Position, 1.5f, 2, -1);

    // Finish: every turn is a corner (dots 0.0356, -0.0203, 0, -0.0153).
    // At 0 the previous sample is 3, (0, 100): u = (98.5, -2), v = (1.5, -98):
    //   HandleIn = (1.5, 2) - 0.3 (1.5, -98) = (1.05, 31.4),
    //   HandleOut = (1.5, 2) + 0.3 (98.5, -2) = (31.05, 1.4).
    // At 1: HandleIn (100, 0) - 0.3 (98.5, -2) = (70.45, 0.6), HandleOut (100, 30).
    // At 2: HandleIn (100, 70), HandleOut (70, 100).
    // At 3: HandleIn (30, 100), HandleOut (0, 100) + 0.3 (1.5, -98) = (0.45, 70.6).
    // The last record is a copy of the first with its own Kind.
    recording.Finish(false);
    ASSERT_EQ(recording.PointCount, 5);
    ExpectPoint(At(0).HandleIn, 1.05f, 31.4f, -1, 1e-3f);
    ExpectPoint(At(0).HandleOut, 31.05f, 1.4f, -1, 1e-3f);
    EXPECT_EQ(At(0).Smooth, 0);
    ExpectPoint(At(1).HandleIn, 70.45f, 0.6f, -1, 1e-3f);
    ExpectPoint(At(1).HandleOut, 100, 30, -1, 1e-3f);
    ExpectPoint(At(2).HandleIn, 100, 70, -1, 1e-3f);
    ExpectPoint(At(2).HandleOut, 70, 100, -1, 1e-3f);
    ExpectPoint(At(3).HandleIn, 30, 100, -1, 1e-3f);
    ExpectPoint(At(3).HandleOut, 0.45f, 70.6f, -1, 1e-3f);
    EXPECT_EQ(At(4).Kind, KindCurve);
    EXPECT_EQ(At(0).Kind, KindMove);
    WSketchPoint copy = At(0);
    copy.Kind = KindCurve;
    EXPECT_EQ(0, std::memcmp(&copy, &At(4), sizeof copy));

    // Appended, the curve is closed by the twin rule.
    TheSketch->AppendPoints(recording.Points.Data, recording.PointCount);
    EXPECT_EQ(TheSketch->FindTwin(0), 4);
    EXPECT_EQ(TheSketch->FindTwin(4), 0);
}

TEST_F(RecordingTest, SmoothStartOfAClosedStroke) {
    // (0, 0), (100, 0), (100, 100), (-100, 100), (-100, -10), (-20, -3), then
    // (2, 0), 2 pixels from the start: the stroke closes at the mean (1, 0),
    // which replaces both the start and the last sample (-20, -3). Records:
    // (1, 0), (100, 0), (100, 100), (-100, 100), (-100, -10), (1, 0); the
    // turns at 1 to 4 are corners (dots 0, 0, 0, -0.0985).
    // At 0 the previous sample is n - 2 = 4, (-100, -10): v = (101, 10) with
    // lv 101.49384, u = (99, 0) with lu 99; dot 0.99513 > 0.05: smooth. The
    // mean of (0.995135, 0.098528) and (1, 0) is (0.998783, 0.049324):
    //   HandleIn  = (1, 0) - mean * 101.49384 * 0.3 = (-29.41109, -1.50183)
    //   HandleOut = (1, 0) + mean * 99 * 0.3        = (30.66385, 1.46493)
    // and the last record is its copy.
    Stroke({{0, 0}, {100, 0}, {100, 100}, {-100, 100}, {-100, -10}, {-20, -3}, {2, 0}});
    ASSERT_EQ(recording.Closed, 1);
    ASSERT_EQ(recording.PointCount, 6);
    ExpectPoint(At(4).Position, -100, -10, -1);
    recording.Finish(false);
    ASSERT_EQ(recording.PointCount, 6);
    EXPECT_EQ(At(0).Smooth, 1);
    ExpectPoint(At(0).Position, 1, 0, -1);
    ExpectPoint(At(0).HandleIn, -29.41109f, -1.50183f, -1, 1e-3f);
    ExpectPoint(At(0).HandleOut, 30.66385f, 1.46493f, -1, 1e-3f);
    EXPECT_EQ(At(4).Smooth, 0);
    EXPECT_EQ(At(5).Smooth, 1);
    ExpectPoint(At(5).HandleIn, -29.41109f, -1.50183f, -1, 1e-3f);
    EXPECT_EQ(At(5).Kind, KindCurve);
}

TEST_F(RecordingTest, ClosingNeedsTwoSamples) {
    // PointSize 20. The second sample (15, 0) lies within 20 pixels of the
    // start, but with one sample there is no closing test: it is appended.
    // The third, (12, 0), is 12 pixels from the start with two samples: it
    // closes, at the mean (6, 0), although it lies only 3 from the last.
    settings.PointSize = 20;
    Stroke({{0, 0}, {15, 0}});
    EXPECT_EQ(recording.Closed, 0);
    EXPECT_EQ(recording.PointCount, 2);
    recording.AddSample(Screen(12, 0));
    EXPECT_EQ(recording.Closed, 1);
    EXPECT_EQ(recording.PointCount, 2);
    ExpectPoint(At(0).Position, 6, 0, -1);
    ExpectPoint(At(1).Position, 6, 0, -1);
}

TEST_F(RecordingTest, ClosingDistanceIsAtMostPointSize) {
    // 8 pixels from the start closes; 9 does not.
    Stroke({{0, 0}, {50, 0}, {50, 50}, {0, 8}});
    EXPECT_EQ(recording.Closed, 1);
    EXPECT_EQ(recording.PointCount, 3);
    Stroke({{0, 0}, {50, 0}, {50, 50}, {0, 9}});
    EXPECT_EQ(recording.Closed, 0);
    EXPECT_EQ(recording.PointCount, 4);
}

TEST_F(RecordingTest, AfterAClosingTheStrokeGoesOn) {
    // Closed at (1.5, 2); a move out to (0, -30), 32 pixels from the last
    // sample, is added behind it while Closed stays set.
    Stroke({{0, 0}, {100, 0}, {100, 100}, {0, 100}, {0, 50}, {3, 4}});
    ASSERT_EQ(recording.Closed, 1);
    recording.AddSample(Screen(0, -30));
    EXPECT_EQ(recording.Closed, 1);
    ASSERT_EQ(recording.PointCount, 6);
    ExpectPoint(At(5).Position, 0, -30, -1);
    EXPECT_EQ(At(5).Kind, KindCurve);
}

TEST_F(RecordingTest, ClosedPolylineGetsNoClosingTreatment) {
    // The same closed square with Ctrl: corners stay (dots near 0 < 0.5),
    // every record but the first is a line, and the first and last keep the
    // common position they got when the stroke closed.
    Stroke({{0, 0}, {100, 0}, {100, 100}, {0, 100}, {0, 50}, {3, 4}});
    recording.Finish(true);
    ASSERT_EQ(recording.PointCount, 5);
    EXPECT_EQ(At(0).Kind, KindMove);
    for (int i = 1; i < 5; i++)
        EXPECT_EQ(At(i).Kind, KindLine);
    ExpectPoint(At(4).Position, 1.5f, 2, -1);
    TheSketch->AppendPoints(recording.Points.Data, recording.PointCount);
    EXPECT_EQ(TheSketch->FindTwin(0), 4);
}

// ---- Spacing

TEST_F(RecordingTest, AtZoomTwoSamplesLieTwentyUnitsApart) {
    // One pixel is 2 units: a sample 9 pixels on (18 units, 9 after the
    // division by the zoom) is dropped, one 10 pixels on (20 units) is kept.
    TheView->Zoom = 2;
    TheView->Update();
    recording.Clear();
    for (int x = 0; x <= 60; x++)
        recording.AddSample(MPoint2{400.0f + float(x), 300});
    ASSERT_EQ(recording.PointCount, 7);
    for (int i = 0; i < 7; i++)
        EXPECT_EQ(At(i).Position.x, 20.0f * float(i));
}

TEST_F(RecordingTest, AtZoomPointOneSamplesLieOneUnitApart) {
    // One pixel is 0.1 unit: samples every pixel from 0 to 60 keep one every
    // 10 pixels or, where rounding puts the tenth just below 1 unit, every
    // 11; every kept pair lies at least 1 unit (within rounding) apart.
    TheView->Zoom = 0.1f;
    TheView->Update();
    recording.Clear();
    for (int x = 0; x <= 60; x++)
        recording.AddSample(MPoint2{400.0f + float(x), 300});
    ASSERT_GE(recording.PointCount, 6);
    ASSERT_LE(recording.PointCount, 7);
    for (int i = 1; i < recording.PointCount; i++) {
        float d = At(i).Position.x - At(i - 1).Position.x;
        EXPECT_GE(d, 1.0f - 1e-5f);
        EXPECT_LE(d, 1.1f + 1e-5f);
    }
    // 9 pixels (0.9 units) after the last kept sample is always dropped.
    int32_t n = recording.PointCount;
    MPoint3 last = Transform(TheView->WorldToScreen, At(n - 1).Position);
    recording.AddSample(MPoint2{last.x + 9, 300});
    EXPECT_EQ(recording.PointCount, n);
}

// ---- Rolls

TEST_F(RecordingTest, RollIsTheViewDirectionWhenDrawn) {
    // Front view: (0, 0, -1) through the identity.
    Stroke({{0, 0}, {100, 0}});
    recording.Finish(false);
    ExpectPoint(At(0).Roll, 0, 0, -1, 0);
    ExpectPoint(At(1).Roll, 0, 0, -1, 0);
    TheSketch->AppendPoints(recording.Points.Data, recording.PointCount);

    // Orbit by yaw 0.3 between strokes: the inverse rotation has the rows
    // (c, 0, s), (0, 1, 0), (-s, 0, c), so (0, 0, -1) becomes
    // (sin 0.3, 0, -cos 0.3) = (0.295520, 0, -0.955336).
    TheView->Orbit(0.3f, 0, 0);
    recording.Clear();
    recording.AddSample(MPoint2{400, 300});
    recording.AddSample(MPoint2{500, 300});
    recording.Finish(false);
    TheSketch->AppendPoints(recording.Points.Data, recording.PointCount);
    ASSERT_EQ(TheSketch->PointCount, 4);
    ExpectPoint(TheSketch->Points[0].Roll, 0, 0, -1, 0);
    ExpectPoint(TheSketch->Points[1].Roll, 0, 0, -1, 0);
    ExpectPoint(TheSketch->Points[2].Roll, 0.295520f, 0, -0.955336f, 1e-5f);
    ExpectPoint(TheSketch->Points[3].Roll, 0.295520f, 0, -0.955336f, 1e-5f);

    // The right view: the viewer stands at +x, so the roll is (1, 0, 0).
    TheView->SetStandardView(ViewRight);
    recording.Clear();
    recording.AddSample(MPoint2{400, 300});
    ExpectPoint(At(0).Roll, 1, 0, 0, 1e-6f);
}

// ---- Lone samples and missing objects

TEST_F(RecordingTest, ClickWithoutMovingLeavesOneSampleAlone) {
    recording.Clear();
    recording.AddSample(Screen(10, 20));
    ASSERT_EQ(recording.PointCount, 1);
    WSketchPoint before = At(0);
    recording.Finish(false);
    recording.Finish(true);
    EXPECT_EQ(recording.PointCount, 1);
    EXPECT_EQ(0, std::memcmp(&before, &At(0), sizeof before));
    EXPECT_EQ(At(0).Kind, KindMove);
    ExpectPoint(At(0).Position, 10, 20, -1);
}

TEST_F(RecordingTest, SamplesCloserThanTenPixelsAreDropped) {
    Stroke({{0, 0}, {9, 0}, {6, 6}, {10, 0}});
    EXPECT_EQ(recording.PointCount, 2);
    ExpectPoint(At(1).Position, 10, 0, -1);
}

TEST_F(RecordingTest, NothingWithoutAView) {
    WView* view = TheView;
    TheView = nullptr;
    recording.Clear();
    recording.AddSample(Screen(0, 0));
    EXPECT_EQ(recording.PointCount, 0);
    TheView = view;
    Stroke({{0, 0}, {20, 0}, {40, 0}});
    TheView = nullptr;
    recording.Finish(false);
    EXPECT_EQ(recording.PointCount, 3); // not thinned
    TheView = view;
}

TEST_F(RecordingTest, ClearKeepsTheArray) {
    Stroke({{0, 0}, {100, 0}, {100, 100}, {0, 100}, {0, 50}, {3, 4}});
    int32_t capacity = recording.Points.Count;
    EXPECT_GE(capacity, 1000);
    recording.Clear();
    EXPECT_EQ(recording.PointCount, 0);
    EXPECT_EQ(recording.Closed, 0);
    EXPECT_EQ(recording.Points.Count, capacity);
}

TEST_F(RecordingTest, FinishWithoutArgumentReadsCtrlAtTheRelease) {
    // No key is down in a test run: the stroke takes the curve form.
    Stroke({{0, 0}, {100, 0}, {200, 50}});
    recording.Finish();
    ASSERT_EQ(recording.PointCount, 3);
    EXPECT_EQ(At(1).Kind, KindCurve);
    EXPECT_EQ(At(1).Smooth, 1);
}

// ---- The single object

TEST(RecordingSingleTest, CreationIsSingle) {
    ASSERT_EQ(TheRecording, nullptr);
    MString texts[4];
    MessageIcon icons[4];
    MessageScript script;
    script.Texts = texts;
    script.Icons = icons;
    script.Capacity = 4;
    TheMessageScript = &script;
    StartDebugCapture();
    WRecording* first = CreateRecording();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(TheRecording, first);
    EXPECT_EQ(first->PointCount, 0);
    EXPECT_EQ(first->Closed, 0);
    first->PointCount = 0;
    WRecording* second = CreateRecording();
    EXPECT_EQ(second, first);
    EXPECT_EQ(script.Count, 1);
    EXPECT_EQ(std::u16string(texts[0].Chars()), u"There can only be 1 WRecording object");
    EXPECT_EQ(icons[0], IconError);
    DestroyRecording();
    EXPECT_EQ(TheRecording, nullptr);
    MString debug = StopDebugCapture();
    TheMessageScript = nullptr;
    EXPECT_EQ(std::u16string(debug.Chars()), u"WRecording created\nWRecording destroyed\n");
}
