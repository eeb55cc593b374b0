// What a frame shows of the sketch: path, ribbon, point marks, handles, roll
// tip, ghost, running stroke and background picture, in their order, colours
// and sizes, read from the recording surface. The grid and the decorations
// are in SceneGridTest.cpp.

#if !defined(_WIN32)

#include "SceneTestSupport.h"

#include "drawing/MPicture.h"

#include <cmath>

using namespace scenetest;

namespace {

const MPoint3 Roll_Y{0, 1, 0};
const MPoint3 Roll_X{1, 0, 0};

// The CurveSteps lines of a cubic, as the model evaluates it.
void AddCurveLines(std::vector<MDrawOperation>& ops, const WView& view, const MPoint3 c[4],
                   float width, MColour colour) {
    int32_t steps = CurveSteps(c);
    MPoint3 previous = view.ToScreen(c[0]);
    for (int32_t k = 1; k <= steps; k++) {
        MPoint3 next = view.ToScreen(BezierPoint(c, 0, 3, float(k) / float(steps)));
        ops.push_back(Line(previous.x, previous.y, next.x, next.y, width, colour));
        previous = next;
    }
}

int32_t CountKind(const std::vector<MDrawOperation>& ops, int32_t kind) {
    int32_t n = 0;
    for (const MDrawOperation& op : ops)
        if (op.Kind == kind) n++;
    return n;
}

// A straight open curve of two lines: right 100, then up 50.
std::vector<WSketchPoint> TwoLines() {
    return {Point(KindMove, {0, 0, 0}, {-30, 0, 0}, {30, 0, 0}),
            Point(KindLine, {100, 0, 0}, {70, 0, 0}, {100, 15, 0}),
            Point(KindLine, {100, 50, 0}, {100, 35, 0}, {100, 65, 0})};
}

// One cubic from (0, 0) to (100, 0) bulging up to y 30; its four chords
// measure about 125, so it is drawn as 256 lines.
std::vector<WSketchPoint> OneCurve() {
    return {Point(KindMove, {0, 0, 0}, {0, -40, 0}, {0, 40, 0}, Roll_X),
            Point(KindCurve, {100, 0, 0}, {100, 40, 0}, {100, -40, 0}, Roll_X)};
}

// A closed curve of two cubics whose ends are twins.
std::vector<WSketchPoint> ClosedCurve() {
    return {Point(KindMove, {0, 0, 0}, {0, -30, 0}, {0, 30, 0}),
            Point(KindCurve, {100, 100, 0}, {60, 100, 0}, {140, 100, 0}),
            Point(KindCurve, {0, 0, 0}, {0, -30, 0}, {0, 30, 0})};
}

} // namespace

// ---- Path

TEST_F(SceneWorld, LinesInTheDrawingModeArePathOnly) {
    SetSketch(TwoLines(), 1);
    EXPECT_TRUE(SameOps(DrawnSketch(ModeDraw), {Line(320, 240, 420, 240, 2, Sketch),
                                                Line(420, 240, 420, 190, 2, Sketch)}));
}

TEST_F(SceneWorld, LinesInEditSketchShowTheArrivingSegmentAndTheSelectedMarkInBezierColour) {
    SetSketch(TwoLines(), 1);
    EXPECT_TRUE(
        SameOps(DrawnSketch(ModeEditSketch),
                {Line(320, 240, 420, 240, 2, Bezier), Line(420, 240, 420, 190, 2, Sketch),
                 Circle(320, 240, 12, false, 2, SketchHalf), Rectangle(412, 232, 428, 248, Bezier),
                 Rectangle(412, 182, 428, 198, SketchHalf)}))
        << "a line record has no handles to show";
}

TEST_F(SceneWorld, PenAndPointSizesComeFromTheSettings) {
    TheSettings->PenSize = 5;
    TheSettings->PointSize = 3;
    SetSketch(TwoLines(), -1);
    EXPECT_TRUE(SameOps(DrawnSketch(ModeEditSketch),
                        {Line(320, 240, 420, 240, 5, Sketch), Line(420, 240, 420, 190, 5, Sketch),
                         Circle(320, 240, 4, false, 5, SketchHalf), // 3 * 1.6 truncated
                         Rectangle(417, 237, 423, 243, SketchHalf),
                         Rectangle(417, 187, 423, 193, SketchHalf)}));
}

TEST_F(SceneWorld, CurveIsDrawnAsCurveStepsLinesOnTheBezier) {
    SetSketch(OneCurve(), -1);
    std::vector<MDrawOperation> drawn = DrawnSketch(ModeDraw);
    ASSERT_EQ(drawn.size(), 256u);
    EXPECT_TRUE(Same(drawn[127], Line(drawn[127].X1, drawn[127].Y1, 370, 210, 2, Sketch)))
        << "the middle of the curve, t = 0.5, is (50, 30)";
    EXPECT_TRUE(Same(drawn[0], Line(320, 240, drawn[0].X2, drawn[0].Y2, 2, Sketch)));
    EXPECT_TRUE(Same(drawn[255], Line(drawn[255].X1, drawn[255].Y1, 420, 240, 2, Sketch)));
    std::vector<MDrawOperation> expected;
    MPoint3 c[4] = {{0, 0, 0}, {0, 40, 0}, {100, 40, 0}, {100, 0, 0}};
    AddCurveLines(expected, *TheView, c, 2, Sketch);
    EXPECT_TRUE(SameOps(drawn, expected));
}

TEST_F(SceneWorld, SelectedCurveEndShowsItsHandleInAsATurnedSquare) {
    SetSketch(OneCurve(), 1);
    std::vector<MDrawOperation> expected;
    MPoint3 c[4] = {{0, 0, 0}, {0, 40, 0}, {100, 40, 0}, {100, 0, 0}};
    AddCurveLines(expected, *TheView, c, 2, Bezier);
    expected.push_back(Circle(320, 240, 12, false, 2, SketchHalf));
    expected.push_back(Circle(420, 240, 8, true, 2, Bezier));
    // The handle-in at (100, 40) lies straight above: the line stops 8
    // pixels short of it, and a corner of the square points along it.
    expected.push_back(Line(420, 240, 420, 208, 2, Bezier));
    expected.push_back(Square(420, 200, 8, 3.1415927f, false, 2, Bezier));
    EXPECT_TRUE(SameOps(DrawnSketch(ModeEditSketch), expected));
}

TEST_F(SceneWorld, SelectedCurveStartShowsItsHandleOutTurnedFromHandleToPoint) {
    SetSketch(OneCurve(), 0);
    std::vector<MDrawOperation> expected;
    MPoint3 c[4] = {{0, 0, 0}, {0, 40, 0}, {100, 40, 0}, {100, 0, 0}};
    AddCurveLines(expected, *TheView, c, 2, Sketch);
    expected.push_back(Circle(320, 240, 12, false, 2, Bezier));
    expected.push_back(Circle(420, 240, 8, true, 2, SketchHalf));
    expected.push_back(Line(320, 240, 320, 208, 2, Bezier));
    expected.push_back(
        Square(320, 200, 8, 0, false, 2, Bezier)); // atan2 of (0, 40), handle to point
    EXPECT_TRUE(SameOps(DrawnSketch(ModeEditSketch), expected));
}

TEST_F(SceneWorld, ClosedCurveShowsTheTwinsMarksOnTopOfEachOtherAndRoundHandles) {
    SetSketch(ClosedCurve(), 0);
    std::vector<MDrawOperation> expected;
    MPoint3 first[4] = {{0, 0, 0}, {0, 30, 0}, {60, 100, 0}, {100, 100, 0}};
    MPoint3 second[4] = {{100, 100, 0}, {140, 100, 0}, {0, -30, 0}, {0, 0, 0}};
    AddCurveLines(expected, *TheView, first, 2, Sketch);
    AddCurveLines(expected, *TheView, second, 2, Sketch);
    // The open circle of the first record, then the mark of its twin.
    expected.push_back(Circle(320, 240, 12, false, 2, Bezier));
    expected.push_back(Circle(420, 140, 8, true, 2, SketchHalf));
    expected.push_back(Circle(320, 240, 8, true, 2, SketchHalf));
    // The first record shows the handle-in of the closing segment through its
    // twin; smooth with both shown, the handles are circles.
    expected.push_back(Line(320, 240, 320, 262, 2, Bezier));
    expected.push_back(Circle(320, 270, 8, false, 2, Bezier));
    expected.push_back(Line(320, 240, 320, 218, 2, Bezier));
    expected.push_back(Circle(320, 210, 8, false, 2, Bezier));
    EXPECT_TRUE(SameOps(DrawnSketch(ModeEditSketch), expected));
}

TEST_F(SceneWorld, ClosedCurvesLastRecordShowsOnlyItsHandleInAsASquare) {
    SetSketch(ClosedCurve(), 2);
    std::vector<MDrawOperation> drawn = DrawnSketch(ModeEditSketch);
    ASSERT_GE(drawn.size(), 5u);
    std::vector<MDrawOperation> tail(drawn.end() - 5, drawn.end());
    EXPECT_TRUE(SameOps(
        tail, {Circle(320, 240, 12, false, 2, SketchHalf), Circle(420, 140, 8, true, 2, SketchHalf),
               Circle(320, 240, 8, true, 2, Bezier), Line(320, 240, 320, 262, 2, Bezier),
               Square(320, 270, 8, 0, false, 2, Bezier)}));
    // The segment arriving at the selected record is the closing one.
    EXPECT_EQ(drawn[0].Colour.b, Sketch.b);
    EXPECT_EQ(drawn[drawn.size() - 6].Colour.b, Bezier.b);
}

TEST_F(SceneWorld, UnsmoothPointShowsBothHandlesAsSquares) {
    std::vector<WSketchPoint> records = ClosedCurve();
    records[0].Smooth = 0;
    records[2].Smooth = 0;
    SetSketch(records, 0);
    std::vector<MDrawOperation> drawn = DrawnSketch(ModeEditSketch);
    std::vector<MDrawOperation> tail(drawn.end() - 4, drawn.end());
    EXPECT_TRUE(SameOps(
        tail, {Line(320, 240, 320, 262, 2, Bezier), Square(320, 270, 8, 0, false, 2, Bezier),
               Line(320, 240, 320, 218, 2, Bezier), Square(320, 210, 8, 0, false, 2, Bezier)}));
}

TEST_F(SceneWorld, HandleOnTopOfItsPointHasNoLine) {
    std::vector<WSketchPoint> records = OneCurve();
    records[1].HandleIn = records[1].Position;
    SetSketch(records, 1);
    std::vector<MDrawOperation> drawn = DrawnSketch(ModeEditSketch);
    EXPECT_TRUE(SameOps(std::vector<MDrawOperation>(drawn.end() - 1, drawn.end()),
                        {Square(420, 240, 8, 0, false, 2, Bezier)}));
    EXPECT_EQ(drawn[drawn.size() - 2].Kind, DrawCircleKind) << "the mark, and no line after it";
}

// ---- Roll ribbon and roll tip

TEST_F(SceneWorld, EditRollDrawsALineAsTwoRailsWithTiesEveryFourUnits) {
    std::vector<WSketchPoint> records = {Point(KindMove, {0, 0, 0}, {-30, 0, 0}, {30, 0, 0}),
                                         Point(KindLine, {100, 0, 0}, {70, 0, 0}, {130, 0, 0})};
    SetSketch(records, 1);
    std::vector<MDrawOperation> expected = {Line(320, 236, 420, 236, 2, Sketch),
                                            Line(320, 244, 420, 244, 2, Sketch)};
    for (int k = 1; k <= 25; k++)
        expected.push_back(Line(320 + 4.0f * k, 236, 320 + 4.0f * k, 244, 2, Sketch));
    expected.push_back(Circle(320, 240, 12, false, 2, SketchHalf));
    expected.push_back(Rectangle(412, 232, 428, 248, Roll));
    // The roll tip 20 units along the frame's X axis, which is the roll here.
    expected.push_back(Line(420, 240, 420, 228, 2, Roll));
    expected.push_back(Circle(420, 220, 8, false, 2, Roll));
    EXPECT_TRUE(SameOps(DrawnSketch(ModeEditRoll), expected));
}

TEST_F(SceneWorld, EditRollDrawsACurveBetweenRailsWithATieEveryEighthStep) {
    SetSketch(OneCurve(), -1);
    MPoint3 c[4] = {{0, 0, 0}, {0, 40, 0}, {100, 40, 0}, {100, 0, 0}};
    std::vector<MDrawOperation> expected;
    // The frames of both records have X = (1, 0, 0): the second curve lies 4
    // units to the right, so the rails are the curve moved by -4 and +4 in x.
    MPoint2 plus = Screen({4, 0, 0}), minus = Screen({-4, 0, 0});
    for (int32_t k = 1; k <= 256; k++) {
        MPoint3 p = BezierPoint(c, 0, 3, float(k) / 256.0f);
        MPoint2 nextPlus = Screen(p + MPoint3{4, 0, 0});
        MPoint2 nextMinus = Screen(p - MPoint3{4, 0, 0});
        expected.push_back(Line(plus, nextPlus, 2, Sketch));
        expected.push_back(Line(minus, nextMinus, 2, Sketch));
        if (k % 8 == 0) expected.push_back(Line(nextPlus, nextMinus, 2, Sketch));
        plus = nextPlus;
        minus = nextMinus;
    }
    expected.push_back(Circle(320, 240, 12, false, 2, SketchHalf));
    expected.push_back(Circle(420, 240, 8, true, 2, SketchHalf));
    std::vector<MDrawOperation> drawn = DrawnSketch(ModeEditRoll);
    EXPECT_EQ(CountKind(drawn, DrawLineKind), 512 + 32);
    EXPECT_TRUE(SameOps(drawn, expected));
}

TEST_F(SceneWorld, RollAlongTheTangentGivesNoRollTip) {
    std::vector<WSketchPoint> records = {
        Point(KindMove, {0, 0, 0}, {-30, 0, 0}, {30, 0, 0}),
        Point(KindLine, {100, 0, 0}, {70, 0, 0}, {130, 0, 0}, Roll_X)};
    SetSketch(records, 1);
    std::vector<MDrawOperation> drawn = DrawnSketch(ModeEditRoll);
    ASSERT_FALSE(drawn.empty());
    EXPECT_TRUE(Same(drawn.back(), Rectangle(412, 232, 428, 248, Roll)))
        << "the frame's X axis is zero, the tip lies on the point: neither line nor circle";
}

TEST_F(SceneWorld, MarksAndHandlesNeedAValidCurrent) {
    SetSketch(OneCurve(), 7);
    std::vector<MDrawOperation> drawn = DrawnSketch(ModeEditSketch);
    ASSERT_EQ(drawn.size(), 258u);
    EXPECT_TRUE(Same(drawn[256], Circle(320, 240, 12, false, 2, SketchHalf)));
    EXPECT_TRUE(Same(drawn[257], Circle(420, 240, 8, true, 2, SketchHalf)));
}

// ---- Edge cases of the whole frame

TEST_F(SceneWorld, OnePointSketchShowsOnlyDecorationsUntilThereAreTwo) {
    TheMode = ModeEditSketch;
    DrawScene(Surface, FrameScene());
    std::vector<MDrawOperation> empty = Drawn(Surface);
    SetSketch({Point(KindMove, {10, 10, 0}, {0, 0, 0}, {20, 20, 0})}, 0);
    Surface.OperationCount = 0;
    DrawScene(Surface, FrameScene());
    EXPECT_TRUE(SameOps(Drawn(Surface), empty)) << "no mark for a lone point";
    SetSketch({Point(KindMove, {10, 10, 0}, {0, 0, 0}, {20, 20, 0}),
               Point(KindLine, {20, 10, 0}, {0, 0, 0}, {20, 20, 0})},
              0);
    Surface.OperationCount = 0;
    DrawScene(Surface, FrameScene());
    std::vector<MDrawOperation> two = Drawn(Surface);
    ASSERT_EQ(two.size(), empty.size() + 3);
    EXPECT_TRUE(Same(two[two.size() - 2], Circle(330, 230, 12, false, 2, Bezier)));
}

TEST_F(SceneWorld, DrawingModeShowsNoMarksOrHandlesButTheGhostStays) {
    SetSketch(ClosedCurve(), 0);
    std::vector<WSketchPoint> ghost = TwoLines();
    SetRecords(TheSketch->Ghost, TheSketch->GhostCount, ghost);
    TheMode = ModeDraw;
    DrawScene(Surface, FrameScene());
    std::vector<MDrawOperation> drawn = Drawn(Surface);
    EXPECT_EQ(CountKind(drawn, DrawRectangleKind), 0);
    EXPECT_EQ(CountKind(drawn, DrawSquareKind), 0);
    EXPECT_EQ(CountKind(drawn, DrawCircleKind), 1) << "the axes symbol's circle alone";
    int32_t ghostLines = 0;
    for (const MDrawOperation& op : drawn)
        if (op.Colour.g == 255 && op.Colour.a == 128 && op.Width == 4) ghostLines++;
    EXPECT_EQ(ghostLines, 2);
}

TEST_F(SceneWorld, GhostIsDrawnLikeThePathInGhostColourAtTwicePenSize) {
    std::vector<WSketchPoint> ghost = TwoLines();
    ghost.push_back(Point(KindCurve, {0, 0, 0}, {0, 30, 0}, {0, 0, 0}));
    SetRecords(TheSketch->Ghost, TheSketch->GhostCount, ghost);
    TheSettings->PenSize = 3;
    Surface.OperationCount = 0;
    DrawGhost(Surface, *TheView, *TheSettings, TheSketch->Ghost.Data, TheSketch->GhostCount);
    std::vector<MDrawOperation> expected = {Line(320, 240, 420, 240, 6, GhostHalf),
                                            Line(420, 240, 420, 190, 6, GhostHalf)};
    MPoint3 c[4] = {{100, 50, 0}, {100, 65, 0}, {0, 30, 0}, {0, 0, 0}};
    AddCurveLines(expected, *TheView, c, 6, GhostHalf);
    EXPECT_TRUE(SameOps(Drawn(Surface), expected));
    // Ribbon mode draws the path as a ribbon, the ghost still as lines.
    TheMode = ModeEditRoll;
    Surface.OperationCount = 0;
    DrawScene(Surface, FrameScene());
    std::vector<MDrawOperation> frame = Drawn(Surface);
    int32_t ghostLines = 0;
    for (const MDrawOperation& op : frame)
        if (op.Colour.g == 255 && op.Colour.r == 0 && op.Colour.a == 128) ghostLines++;
    EXPECT_EQ(ghostLines, int32_t(expected.size()));
}

TEST_F(SceneWorld, RunningStrokeJoinsTheSamplesAndCirclesTheClosingArea) {
    WRecording& recording = *TheRecording;
    SetRecords(recording.Points, recording.PointCount,
               {Point(KindMove, {0, 0, 0}, {}, {}), Point(KindLine, {50, 0, 0}, {}, {}),
                Point(KindLine, {50, 50, 0}, {}, {})});
    Surface.OperationCount = 0;
    DrawRunningStroke(Surface, *TheView, *TheSettings, recording.Points.Data, recording.PointCount);
    EXPECT_TRUE(SameOps(Drawn(Surface),
                        {Line(320, 240, 370, 240, 2, Sketch), Line(370, 240, 370, 190, 2, Sketch),
                         Circle(320, 240, 12, false, 2, SketchHalf)}));
    recording.PointCount = 1;
    Surface.OperationCount = 0;
    DrawRunningStroke(Surface, *TheView, *TheSettings, recording.Points.Data, recording.PointCount);
    EXPECT_EQ(Surface.OperationCount, 0);
}

// ---- Background picture

class SceneBackground : public SceneWorld {
  protected:
    void SetUp() override {
        SceneWorld::SetUp();
        MPicture picture;
        picture.Allocate(64, 48, PictureBgra8);
        TheBackground = MakeSurfaceBitmap(picture);
        TheBackgroundZoom = 1;
        TheBackgroundPivot = MPoint3{0, 0, 0};
    }
    void TearDown() override {
        ReleaseSurfaceBitmap(TheBackground);
        TheBackground = nullptr;
        SceneWorld::TearDown();
    }
    std::u16string Background(const WView& view) {
        Surface.OperationCount = 0;
        DrawBackgroundPicture(Surface, view, FrameScene().Background);
        return std::u16string(RecordingText(Surface).Chars());
    }
};

TEST_F(SceneBackground, AtItsOwnZoomAndPivotThePictureFillsTheWindow) {
    EXPECT_EQ(Background(*TheView), u"Bitmap 0 0 640 480 source 64 48\n");
}

TEST_F(SceneBackground, ThePictureStaysGluedToTheWorldWhenPannedAndZoomed) {
    TheView->Zoom = 2;
    TheView->Pivot = MPoint3{10, 20, 0};
    TheView->Update();
    // Half the size, around (320 - 5, 240 + 10).
    EXPECT_EQ(Background(*TheView), u"Bitmap 155 130 475 370 source 64 48\n");
}

TEST_F(SceneBackground, WithoutAZoomAboveZeroThePictureFillsTheClientArea) {
    TheBackgroundZoom = 5;
    TheBackgroundPivot = MPoint3{100, 100, 0};
    WView view = *TheView;
    view.Zoom = 0;
    EXPECT_EQ(Background(view), u"Bitmap 0 0 640 480 source 64 48\n");
}

TEST_F(SceneBackground, VanishesOnTheFirstOrbitAndComesBackOnlyWithinTheIdentityTolerance) {
    TheView->Orbit(0.01f, 0, 0);
    EXPECT_EQ(Background(*TheView), u"");
    TheView->Orbit(-0.01f, 0, 0);
    EXPECT_EQ(Background(*TheView), u"") << "orbiting back does not give the identity flag";
    TheView->SetStandardView(ViewFront);
    EXPECT_EQ(Background(*TheView), u"Bitmap 0 0 640 480 source 64 48\n");
    TheView->SetRotation(YawPitchRoll(0.00001f, 0, 0)); // within 2^-14 of the identity
    EXPECT_EQ(Background(*TheView), u"Bitmap 0 0 640 480 source 64 48\n");
    TheView->SetRotation(YawPitchRoll(0.001f, 0, 0));
    EXPECT_EQ(Background(*TheView), u"");
    for (int32_t v = ViewBack; v < StandardViewCount; v++) {
        TheView->SetStandardView(v);
        EXPECT_EQ(Background(*TheView), u"") << "standard view " << v;
    }
}

// ---- The order of a frame

TEST_F(SceneBackground, FrameDrawsItsPartsInOrder) {
    SetSketch(ClosedCurve(), 0);
    SetRecords(TheSketch->Ghost, TheSketch->GhostCount, TwoLines());
    SetRecords(TheRecording->Points, TheRecording->PointCount,
               {Point(KindMove, {0, 0, 0}, {}, {}), Point(KindLine, {50, 0, 0}, {}, {})});
    TheMode = ModeEditSketch;
    std::vector<MDrawOperation> expected;
    auto part = [&](auto draw) {
        Surface.OperationCount = 0;
        draw();
        std::vector<MDrawOperation> ops = Drawn(Surface);
        EXPECT_FALSE(ops.empty());
        expected.insert(expected.end(), ops.begin(), ops.end());
    };
    part([&] { DrawBackgroundPicture(Surface, *TheView, FrameScene().Background); });
    part([&] { DrawWorldGrid(Surface, *TheView, *TheSettings); });
    part([&] { DrawDecorations(Surface, *TheView, *TheSettings, ModeEditSketch); });
    part([&] {
        DrawGhost(Surface, *TheView, *TheSettings, TheSketch->Ghost.Data, TheSketch->GhostCount);
    });
    part([&] { DrawSketch(Surface, *TheView, *TheSettings, *TheSketch, ModeEditSketch); });
    part([&] {
        DrawRunningStroke(Surface, *TheView, *TheSettings, TheRecording->Points.Data,
                          TheRecording->PointCount);
    });
    Surface.OperationCount = 0;
    DrawScene(Surface, FrameScene());
    EXPECT_TRUE(SameOps(Drawn(Surface), expected));
    EXPECT_EQ(Drawn(Surface).front().Kind, DrawBitmapKind);
}

TEST_F(SceneWorld, NothingIsDrawnWithoutSettingsOrView) {
    SetSketch(TwoLines(), 0);
    DestroySettings();
    DrawScene(Surface, FrameScene());
    EXPECT_EQ(Surface.OperationCount, 0);
    CreateSettings();
    WView* view = TheView;
    TheView = nullptr;
    DrawScene(Surface, FrameScene());
    EXPECT_EQ(Surface.OperationCount, 0);
    TheView = view;
}

// ---- Each mode in each standard view

namespace {

// The scene's rules restated plainly, for a sketch in any view: the path or
// the ribbon, the marks, the handles and the roll tip.
std::vector<MDrawOperation> ExpectedSketch(const WView& view, const WSketch& sketch, int32_t mode) {
    std::vector<MDrawOperation> ops;
    const WSketchPoint* r = sketch.Points.Data;
    int32_t n = sketch.PointCount, current = sketch.Current;
    auto screen = [&](MPoint3 p) {
        MPoint3 s = view.ToScreen(p);
        return MPoint2{s.x, s.y};
    };
    auto frameX = [](const WSketchPoint& p) {
        MMatrix m = MakePointFrame(p, false, false);
        return MPoint3{m.M[0][0], m.M[0][1], m.M[0][2]};
    };
    for (int32_t i = 1; i < n; i++) {
        MPoint3 c[4] = {r[i - 1].Position, r[i - 1].HandleOut, r[i].HandleIn, r[i].Position};
        if (mode == ModeEditRoll) {
            if (r[i].Kind == KindLine) {
                MPoint3 a = frameX(r[i - 1]) * 4.0, b = frameX(r[i]) * 4.0;
                MPoint3 ap = c[0] + a, am = c[0] - a, bp = c[3] + b, bm = c[3] - b;
                ops.push_back(Line(screen(ap), screen(bp), 2, Sketch));
                ops.push_back(Line(screen(am), screen(bm), 2, Sketch));
                int32_t ties = int32_t(std::ceil(Length3(bp - ap) * 0.25));
                for (int32_t k = 1; k <= ties; k++) {
                    double t = float(k) / float(ties);
                    ops.push_back(
                        Line(screen(ap + (bp - ap) * t), screen(am + (bm - am) * t), 2, Sketch));
                }
            } else if (r[i].Kind == KindCurve) {
                MPoint3 a = frameX(r[i - 1]) * 4.0, b = frameX(r[i]) * 4.0;
                MPoint3 s[4] = {c[0] + a, c[1] + a, c[2] + b, c[3] + b};
                int32_t steps = CurveSteps(c);
                MPoint2 lastPlus, lastMinus;
                for (int32_t k = 0; k <= steps; k++) {
                    float t = float(k) / float(steps);
                    MPoint3 p = BezierPoint(c, 0, 3, t);
                    MPoint3 u = BezierPoint(s, 0, 3, t) - p;
                    Normalize3(u);
                    MPoint2 plus = screen(p + u * 4.0), minus = screen(p - u * 4.0);
                    if (k > 0) {
                        ops.push_back(Line(lastPlus, plus, 2, Sketch));
                        ops.push_back(Line(lastMinus, minus, 2, Sketch));
                        if (k % 8 == 0) ops.push_back(Line(plus, minus, 2, Sketch));
                    }
                    lastPlus = plus, lastMinus = minus;
                }
            }
            continue;
        }
        MColour colour = mode == ModeEditSketch && i == current ? Bezier : Sketch;
        if (r[i].Kind == KindLine) ops.push_back(Line(screen(c[0]), screen(c[3]), 2, colour));
        if (r[i].Kind == KindCurve) AddCurveLines(ops, view, c, 2, colour);
    }
    if (mode == ModeDraw) return ops;
    for (int32_t i = 0; i < n; i++) {
        MColour colour = i == current ? (mode == ModeEditSketch ? Bezier : Roll) : SketchHalf;
        MPoint2 p = screen(r[i].Position);
        if (r[i].Kind == KindMove) ops.push_back(Circle(p.x, p.y, 12, false, 2, colour));
        if (r[i].Kind == KindLine)
            ops.push_back(Rectangle(p.x - 8, p.y - 8, p.x + 8, p.y + 8, colour));
        if (r[i].Kind == KindCurve) ops.push_back(Circle(p.x, p.y, 8, true, 2, colour));
    }
    if (current < 0 || current >= n) return ops;
    MPoint2 p = screen(r[current].Position);
    if (mode == ModeEditSketch) {
        int32_t twin = sketch.FindTwin(current);
        bool in = r[current].Kind == KindCurve || (twin >= 0 && r[twin].Kind == KindCurve);
        bool out = current + 1 < n && r[current + 1].Kind == KindCurve;
        auto handle = [&](MPoint2 a, float angle) {
            MPoint2 d = a - p;
            float length = std::sqrt(d.x * d.x + d.y * d.y);
            if (length > 0)
                ops.push_back(
                    Line(p, MPoint2{a.x - d.x / length * 8, a.y - d.y / length * 8}, 2, Bezier));
            if (r[current].Smooth && in && out)
                ops.push_back(Circle(a.x, a.y, 8, false, 2, Bezier));
            else
                ops.push_back(Square(a.x, a.y, 8, angle, false, 2, Bezier));
        };
        if (in) {
            MPoint2 a = screen(r[current].HandleIn);
            handle(a, std::atan2(a.x - p.x, a.y - p.y));
        }
        if (out) {
            MPoint2 a = screen(r[current].HandleOut);
            handle(a, std::atan2(p.x - a.x, p.y - a.y));
        }
    } else {
        MPoint2 tip = screen(r[current].Position + frameX(r[current]) * 20.0);
        MPoint2 d = tip - p;
        float length = std::sqrt(d.x * d.x + d.y * d.y);
        if (length > 0) {
            ops.push_back(
                Line(p, MPoint2{tip.x - d.x / length * 8, tip.y - d.y / length * 8}, 2, Roll));
            ops.push_back(Circle(tip.x, tip.y, 8, false, 2, Roll));
        }
    }
    return ops;
}

struct ModeViewCase {
    int32_t View, Mode, Current;
};

class SceneModesAndViews : public SceneWorld, public ::testing::WithParamInterface<ModeViewCase> {};

} // namespace

TEST_P(SceneModesAndViews, SketchOfLinesCurvesAndAClosedCurveIsDrawnAsStated) {
    const ModeViewCase& c = GetParam();
    // An open curve of a line and a rising curve, then a closed curve whose
    // ends are twins, in three dimensions so that every view sees something.
    SetSketch({Point(KindMove, {0, 0, 0}, {-20, 0, 0}, {20, 0, 0}),
               Point(KindLine, {100, 0, 0}, {80, 0, 0}, {100, 30, 10}),
               Point(KindCurve, {100, 100, 50}, {90, 70, 40}, {110, 130, 60}, MPoint3{0, 0, 1}),
               Point(KindMove, {-50, -50, -50}, {-50, -80, -50}, {-50, -20, -40}),
               Point(KindLine, {-50, 50, -50}, {-50, 20, -50}, {-50, 80, -60}),
               Point(KindCurve, {-50, -50, -50}, {-50, -80, -50}, {-50, -20, -40})},
              c.Current);
    ASSERT_EQ(TheSketch->FindTwin(3), 5);
    TheView->SetStandardView(c.View);
    std::vector<MDrawOperation> expected = ExpectedSketch(*TheView, *TheSketch, c.Mode);
    EXPECT_TRUE(SameOps(DrawnSketch(c.Mode), expected));
}

static std::vector<ModeViewCase> AllModesAndViews() {
    std::vector<ModeViewCase> cases;
    for (int32_t view = 0; view < StandardViewCount; view++)
        for (int32_t mode : {ModeDraw, ModeEditSketch, ModeEditRoll})
            for (int32_t current : {-1, 1, 2, 3, 5})
                cases.push_back({view, mode, current});
    return cases;
}

static std::string CaseName(const ::testing::TestParamInfo<ModeViewCase>& info) {
    static const char* views[] = {"Front", "Back", "Right", "Left", "Top", "Bottom"};
    static const char* modes[] = {"Draw", "EditSketch", "EditRoll"};
    std::string current =
        info.param.Current < 0 ? std::string("None") : std::to_string(info.param.Current);
    return std::string(views[info.param.View]) + modes[info.param.Mode] + "Current" + current;
}

INSTANTIATE_TEST_SUITE_P(EachModeAndView, SceneModesAndViews,
                         ::testing::ValuesIn(AllModesAndViews()), CaseName);

#endif
