// The mouse gestures of the drawing mode: a press starts a stroke, moves add
// samples, the release finishes it and appends one new curve to the sketch.
// The view is 800 by 600 pixels at zoom 1, so the client pixel
// (400 + x, 300 - y) is the world point (x, y, -1).

#include "shell/Input.h"

#include "foundation/MString.h"
#include "foundation/Platform.h"
#include "shell/Shell.h"
#include "shell/WSettings.h"
#include "sketch/WRecording.h"
#include "sketch/WSketch.h"
#include "view/WView.h"

#include <gtest/gtest.h>

#include <string>

namespace {

MPoint2 Screen(float x, float y) {
    return MPoint2{400 + x, 300 - y};
}

void ExpectPoint(const MPoint3& p, float x, float y, float z, float tolerance = 1e-4f) {
    EXPECT_NEAR(p.x, x, tolerance);
    EXPECT_NEAR(p.y, y, tolerance);
    EXPECT_NEAR(p.z, z, tolerance);
}

struct InputTest : ::testing::Test {
    WSettings settings;
    WSettings* oldSettings = nullptr;
    WKeys none;
    WKeys control;

    void SetUp() override {
        oldSettings = TheSettings;
        TheSettings = &settings;
        MessageScript script;
        TheMessageScript = &script;
        CreateSketch();
        CreateRecording();
        CreateView();
        TheMessageScript = nullptr;
        TheView->SetViewport(800, 600);
        TheView->Zoom = 1;
        TheView->Update();
        TheMode = ModeDraw;
        TheMouseEnabled = true;
        TheLeftDown = false;
        TheFileName = MString();
        control.Control = true;
    }
    void TearDown() override {
        DestroyView();
        DestroyRecording();
        DestroySketch();
        TheSettings = oldSettings;
        TheMode = ModeDraw;
        TheMouseEnabled = true;
        TheLeftDown = false;
    }
};

} // namespace

TEST_F(InputTest, StrokeBecomesOneCurveOfTheSketch) {
    // Press at (0, 0), move along x to (100, 0) in steps of 25, release: the
    // straight stroke thins to two records with handles at 0.3 of 100.
    OnLeftButtonDown(Screen(0, 0), none);
    EXPECT_EQ(TheRecording->PointCount, 1);
    for (int x = 25; x <= 100; x += 25)
        OnMouseMove(Screen(float(x), 0), none);
    EXPECT_EQ(TheRecording->PointCount, 5);
    OnLeftButtonUp(Screen(100, 0), none);
    ASSERT_EQ(TheSketch->PointCount, 2);
    EXPECT_EQ(TheSketch->Points[0].Kind, KindMove);
    EXPECT_EQ(TheSketch->Points[1].Kind, KindCurve);
    ExpectPoint(TheSketch->Points[0].Position, 0, 0, -1);
    ExpectPoint(TheSketch->Points[0].HandleOut, 30, 0, -1);
    ExpectPoint(TheSketch->Points[1].HandleIn, 70, 0, -1);
    ExpectPoint(TheSketch->Points[1].Position, 100, 0, -1);
    // The recorder is emptied for the next stroke.
    EXPECT_EQ(TheRecording->PointCount, 0);
    EXPECT_EQ(TheRecording->Closed, 0);
    EXPECT_EQ(TheSketch->Modified, 1);
}

TEST_F(InputTest, PressEmptiesTheRecorderAndDoesNotSetLeftDown) {
    TheRecording->Clear();
    TheRecording->AddSample(Screen(0, 0));
    TheRecording->AddSample(Screen(50, 0));
    TheRecording->AddSample(Screen(50, 50));
    TheRecording->Closed = 1;
    OnLeftButtonDown(Screen(-30, 40), none);
    EXPECT_EQ(TheRecording->PointCount, 1);
    EXPECT_EQ(TheRecording->Closed, 0);
    ExpectPoint(TheRecording->Points[0].Position, -30, 40, -1);
    EXPECT_EQ(TheRecording->Points[0].Kind, KindMove);
    EXPECT_FALSE(TheLeftDown);
}

TEST_F(InputTest, MovesAddNothingWithoutARunningStroke) {
    OnMouseMove(Screen(0, 0), none);
    OnMouseMove(Screen(50, 0), none);
    EXPECT_EQ(TheRecording->PointCount, 0);
    OnLeftButtonUp(Screen(50, 0), none);
    EXPECT_EQ(TheSketch->PointCount, 0);
}

TEST_F(InputTest, MovesAreIgnoredWhileTheMouseIsDisabled) {
    OnLeftButtonDown(Screen(0, 0), none);
    TheMouseEnabled = false;
    OnMouseMove(Screen(50, 0), none);
    EXPECT_EQ(TheRecording->PointCount, 1);
    TheMouseEnabled = true;
    OnMouseMove(Screen(50, 0), none);
    EXPECT_EQ(TheRecording->PointCount, 2);
}

TEST_F(InputTest, CtrlAtTheReleaseGivesAPolyline) {
    // (0, 0), (100, 0), (200, 50), (300, 150) with Ctrl: both inner samples
    // turn by less than 60 degrees (dots 0.894 and 0.858 > 0.5) and go; one
    // line remains.
    OnLeftButtonDown(Screen(0, 0), none);
    OnMouseMove(Screen(100, 0), none);
    OnMouseMove(Screen(200, 50), none);
    OnMouseMove(Screen(300, 150), none);
    OnLeftButtonUp(Screen(300, 150), control);
    ASSERT_EQ(TheSketch->PointCount, 2);
    EXPECT_EQ(TheSketch->Points[0].Kind, KindMove);
    EXPECT_EQ(TheSketch->Points[1].Kind, KindLine);
    ExpectPoint(TheSketch->Points[1].Position, 300, 150, -1);
}

TEST_F(InputTest, ClickWithoutMovingAppendsOneLoneMoveRecord) {
    OnLeftButtonDown(Screen(10, 20), none);
    OnLeftButtonUp(Screen(10, 20), none);
    ASSERT_EQ(TheSketch->PointCount, 1);
    EXPECT_EQ(TheSketch->Points[0].Kind, KindMove);
    ExpectPoint(TheSketch->Points[0].Position, 10, 20, -1);
    EXPECT_EQ(TheRecording->PointCount, 0);
    // The title counts it.
    EXPECT_EQ(std::u16string(TitleText().Chars()),
              u"Quillmere - Untitled * (1 points) [DRAW FREEHAND]");
}

TEST_F(InputTest, EachStrokeIsANewCurve) {
    OnLeftButtonDown(Screen(0, 0), none);
    OnMouseMove(Screen(100, 0), none);
    OnLeftButtonUp(Screen(100, 0), none);
    OnLeftButtonDown(Screen(0, 100), none);
    OnMouseMove(Screen(100, 100), none);
    OnLeftButtonUp(Screen(100, 100), none);
    ASSERT_EQ(TheSketch->PointCount, 4);
    EXPECT_EQ(TheSketch->Points[2].Kind, KindMove);
    EXPECT_EQ(TheSketch->Points[3].Kind, KindCurve);
    EXPECT_EQ(TheSketch->CurveStart(3), 2);
}

TEST_F(InputTest, StrokeBackToItsStartIsAClosedCurve) {
    OnLeftButtonDown(Screen(0, 0), none);
    OnMouseMove(Screen(100, 0), none);
    OnMouseMove(Screen(100, 100), none);
    OnMouseMove(Screen(0, 100), none);
    OnMouseMove(Screen(0, 50), none);
    OnMouseMove(Screen(3, 4), none); // within 8 pixels of the start
    OnLeftButtonUp(Screen(3, 4), none);
    ASSERT_EQ(TheSketch->PointCount, 5);
    EXPECT_EQ(TheSketch->FindTwin(0), 4);
    ExpectPoint(TheSketch->Points[4].Position, 1.5f, 2, -1);
}

TEST_F(InputTest, EditModesRecordNothing) {
    TheMode = ModeEditSketch;
    OnLeftButtonDown(Screen(0, 0), none);
    OnMouseMove(Screen(100, 0), none);
    EXPECT_EQ(TheRecording->PointCount, 0);
    TheLeftDown = true;
    OnLeftButtonUp(Screen(100, 0), none);
    EXPECT_FALSE(TheLeftDown);
    EXPECT_EQ(TheSketch->PointCount, 0);
}

TEST_F(InputTest, ReleaseClearsLeftDownInTheDrawingMode) {
    TheLeftDown = true;
    OnLeftButtonUp(Screen(0, 0), none);
    EXPECT_FALSE(TheLeftDown);
}
