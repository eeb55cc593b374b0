// The mouse gestures of the drawing mode: a press starts a stroke, moves add
// samples, the release finishes it and appends one new curve to the sketch.
// The view is 800 by 600 pixels at zoom 1, so the client pixel
// (400 + x, 300 - y) is the world point (x, y, -1).
//
// The mouse gestures of the edit modes, row by row of their table, the right
// button's one-click delete, the grid snap at the release, the wheel in every
// mode and the file drop. Each gesture goes through the handlers with a
// position and the modifier keys, as the window procedure calls them.

#include "ShellTestSupport.h"

#include "elements/WElement.h"
#include "foundation/MString.h"
#include "foundation/Platform.h"
#include "shell/Input.h"
#include "shell/Shell.h"
#include "shell/WSettings.h"
#include "sketch/PointEditing.h"
#include "sketch/WRecording.h"
#include "sketch/WSketch.h"
#include "view/WView.h"

#include <cmath>
#include <gtest/gtest.h>
#include <string>

namespace drawing {

namespace {

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

} // namespace drawing

namespace gestures {

namespace {

class InputGesturesTest : public ShellFixture {
  protected:
    WKeys none, control, shift, alt;

    void SetUp() override {
        ShellFixture::SetUp();
        control.Control = true;
        shift.Shift = true;
        alt.Alt = true;
        TheMode = ModeEditSketch;
        RefreshTitle();
    }
    // The view's rotation, exactly.
    static bool SameMatrix(const MMatrix& a, const MMatrix& b) {
        for (int r = 0; r < 4; r++)
            for (int c = 0; c < 4; c++)
                if (a.M[r][c] != b.M[r][c]) return false;
        return true;
    }
    // A camera like TheView, turned as an orbit or roll should turn it.
    MMatrix Turned(float yaw, float pitch, float roll) {
        WView copy;
        copy.SetRotation(TheView->Rotation);
        copy.Orbit(yaw, pitch, roll);
        return copy.Rotation;
    }
};

} // namespace

// ---- Left button down

TEST_F(InputGesturesTest, PressSelectsThePointAndStartsTheGesture) {
    Load(OpenCorner());
    OnLeftButtonDown(Screen(103, 2), none);
    EXPECT_EQ(S().Current, 1);
    EXPECT_EQ(S().CurrentPart, 0);
    EXPECT_TRUE(TheLeftDown);
    EXPECT_EQ(TheLastMouse.x, 503.0f);
    EXPECT_EQ(TheLastMouse.y, 298.0f);
    EXPECT_EQ(Steps(), 0);
    EXPECT_EQ(Title(), u"Quillmere - Untitled (3 points) [EDIT SKETCH]");
}

TEST_F(InputGesturesTest, ShiftPrefersTheLaterOfTwoRecordsOnTheSamePlace) {
    Load(ClosedSquare());
    OnLeftButtonDown(Screen(0, 0), none);
    OnLeftButtonUp(Screen(0, 0), none);
    EXPECT_EQ(S().Current, 0);
    OnLeftButtonDown(Screen(0, 0), shift);
    OnLeftButtonUp(Screen(0, 0), shift);
    EXPECT_EQ(S().Current, 4);
}

TEST_F(InputGesturesTest, PressOnTheLineBetweenPointsFallsToTheCurveHit) {
    Load(OpenCorner());
    OnLeftButtonDown(Screen(25, 0), none);
    // The line became a curve and the handle near the press is selected.
    EXPECT_EQ(S().Points[1].Kind, KindCurve);
    EXPECT_EQ(S().Current, 0);
    EXPECT_EQ(S().CurrentPart, 2);
    ExpectPoint(S().Points[0].HandleOut, 25, 0, 0);
    EXPECT_TRUE(TheLeftDown);
    EXPECT_EQ(Title(), u"Quillmere - Untitled * (3 points) [EDIT SKETCH]");
}

TEST_F(InputGesturesTest, AltInsertsAPointAtThePathAndSelectsIt) {
    Load(OpenCorner());
    OnLeftButtonDown(Screen(50, 1), alt);
    ASSERT_EQ(S().PointCount, 4);
    ExpectPoint(S().Points[1].Position, 50, 0, 0, 1e-3f);
    EXPECT_EQ(S().Current, 1);
    EXPECT_EQ(S().CurrentPart, 0);
    EXPECT_EQ(Title(), u"Quillmere - Untitled * (4 points) [EDIT SKETCH]");
}

TEST_F(InputGesturesTest, PressInTheDrawingModeNeitherSelectsNorSetsLeftDown) {
    Load(OpenCorner());
    TheMode = ModeDraw;
    OnLeftButtonDown(Screen(100, 0), none);
    EXPECT_EQ(S().Current, -1);
    EXPECT_FALSE(TheLeftDown);
    EXPECT_EQ(TheRecording->PointCount, 1);
}

// ---- Move: left down, Ctrl up

TEST_F(InputGesturesTest, DragMovesTheSelectedPointAndCommitsOnceAtTheRelease) {
    Load(OpenCorner());
    OnLeftButtonDown(Screen(100, 0), none);
    OnMouseMove(Screen(104, -3), none);
    OnMouseMove(Screen(110, -5), none);
    ExpectPoint(S().Points[1].Position, 110, -5, 0, 0);
    ExpectPoint(S().Points[1].HandleIn, 110, -5, 0, 0);
    EXPECT_EQ(Steps(), 0) << "no Commit during the drag";
    EXPECT_EQ(Title(), u"Quillmere - Untitled (3 points) [EDIT SKETCH]");
    OnLeftButtonUp(Screen(110, -5), none);
    EXPECT_FALSE(TheLeftDown);
    EXPECT_EQ(Steps(), 1) << "the drag is one undo step";
    EXPECT_EQ(Title(), u"Quillmere - Untitled * (3 points) [EDIT SKETCH]");
    UndoSketch();
    ExpectPoint(S().Points[1].Position, 100, 0, 0, 0);
}

TEST_F(InputGesturesTest, DragGoesThroughTheInverseRotationAtTheZoom) {
    Load(OpenCorner());
    TheView->Zoom = 2;
    TheView->SetStandardView(ViewRight);
    TheView->Pivot = P3(100, 100, 0);
    TheView->Update();
    OnLeftButtonDown(MPoint2{400, 300}, none); // the point lies at the centre
    ASSERT_EQ(S().Current, 2);
    OnMouseMove(MPoint2{410, 296}, none);
    MPoint3 d = Transform(TheView->InverseRotation, P3(10, 4, 0)) * 2.0;
    ExpectPoint(S().Points[2].Position, 100 + d.x, 100 + d.y, d.z, 1e-4f);
    EXPECT_NEAR(d.y, 8, 1e-5f) << "screen up is world up in a side view";
    EXPECT_NEAR(std::fabs(d.z), 20, 1e-4f) << "screen across is world depth";
}

TEST_F(InputGesturesTest, DragWithNothingSelectedPansTheView) {
    Load(OpenCorner());
    OnLeftButtonDown(Screen(-200, 200), none);
    ASSERT_EQ(S().Current, -1);
    OnMouseMove(Screen(-190, 196), none);
    ExpectPoint(TheView->Pivot, -10, 4, 0, 0);
    // The world under the cursor moved with it.
    MPoint3 screen = TheView->ToScreen(P3(100, 0, 0));
    EXPECT_NEAR(screen.x, 510, 1e-3f);
    EXPECT_NEAR(screen.y, 304, 1e-3f);
    OnLeftButtonUp(Screen(-190, 196), none);
    EXPECT_EQ(Steps(), 0);
    EXPECT_EQ(Title(), u"Quillmere - Untitled (3 points) [EDIT SKETCH]");
}

TEST_F(InputGesturesTest, ClosingTheCurveDeselectsAndTheRestOfTheDragPans) {
    Load(OpenCorner());
    OnLeftButtonDown(Screen(100, 100), none);
    ASSERT_EQ(S().Current, 2);
    OnMouseMove(Screen(2, 2), none); // within reach of the start
    EXPECT_EQ(S().Current, -1);
    EXPECT_EQ(S().FindTwin(0), 2);
    OnMouseMove(Screen(12, 2), none);
    ExpectPoint(TheView->Pivot, -10, 0, 0, 0);
    OnLeftButtonUp(Screen(12, 2), none);
    EXPECT_EQ(Steps(), 1);
}

// ---- Move: left down, Ctrl down

TEST_F(InputGesturesTest, CtrlDragOrbitsTheView) {
    Load(OpenCorner());
    OnLeftButtonDown(Screen(-200, 200), none);
    MMatrix want = Turned(float(20 * 0.005), float(10 * 0.005), 0);
    OnMouseMove(Screen(-180, 190), control);
    EXPECT_TRUE(SameMatrix(TheView->Rotation, want));
    EXPECT_EQ(S().Current, -1);
    ExpectPoint(TheView->Pivot, 0, 0, 0, 0);
}

TEST_F(InputGesturesTest, CtrlDragOrbitsEvenWithAPointSelected) {
    Load(OpenCorner());
    OnLeftButtonDown(Screen(100, 0), none);
    ASSERT_EQ(S().Current, 1);
    MMatrix want = Turned(float(-6 * 0.005), float(4 * 0.005), 0);
    OnMouseMove(Screen(94, -4), control);
    EXPECT_TRUE(SameMatrix(TheView->Rotation, want));
    ExpectPoint(S().Points[1].Position, 100, 0, 0, 0);
}

// ---- Move: right down

TEST_F(InputGesturesTest, CtrlWithTheRightButtonRollsTheView) {
    Load(OpenCorner());
    OnMouseMove(Screen(-200, 200), none);
    OnRightButtonDown(Screen(-200, 200), control);
    MMatrix want = Turned(0, 0, float(-8 * 0.005));
    OnMouseMove(Screen(-190, 192), control); // dx 10, dy 8: only dy rolls
    EXPECT_TRUE(SameMatrix(TheView->Rotation, want));
    EXPECT_EQ(S().PointCount, 3);
}

TEST_F(InputGesturesTest, RightButtonWithoutCtrlMovesNothing) {
    Load(OpenCorner());
    OnRightButtonDown(Screen(-200, 200), none);
    OnMouseMove(Screen(-150, 150), none);
    EXPECT_TRUE(SameMatrix(TheView->Rotation, MMatrix()));
    ExpectPoint(TheView->Pivot, 0, 0, 0, 0);
    EXPECT_EQ(TheLastMouse.x, 250.0f);
}

TEST_F(InputGesturesTest, CtrlWithBothButtonsIsTheLeftButtonsOrbit) {
    Load(OpenCorner());
    OnLeftButtonDown(Screen(-200, 200), none);
    OnRightButtonDown(Screen(-200, 200), control);
    MMatrix want = Turned(float(10 * 0.005), float(8 * 0.005), 0);
    OnMouseMove(Screen(-190, 192), control);
    EXPECT_TRUE(SameMatrix(TheView->Rotation, want));
}

TEST_F(InputGesturesTest, MovesWithoutButtonsOnlyFollowTheMouse) {
    Load(OpenCorner());
    OnMouseMove(Screen(100, 0), control);
    OnMouseMove(Screen(50, 50), none);
    EXPECT_TRUE(SameMatrix(TheView->Rotation, MMatrix()));
    ExpectPoint(TheView->Pivot, 0, 0, 0, 0);
    EXPECT_EQ(TheLastMouse.x, 450.0f);
    EXPECT_EQ(TheLastMouse.y, 250.0f);
}

// A gesture starts from where the mouse last was, so there is no jump: after
// moves with no button, a press and one move pan by that move alone.
TEST_F(InputGesturesTest, LastMouseFollowsEveryMoveSoAGestureStartsWithoutAJump) {
    Load(OpenCorner());
    OnMouseMove(Screen(-300, 250), none);
    OnMouseMove(Screen(-250, 200), none);
    TheLeftDown = true; // a press that reached the window elsewhere
    OnMouseMove(Screen(-245, 200), none);
    ExpectPoint(TheView->Pivot, -5, 0, 0, 0);
    TheMode = ModeEditRoll;
    TheLeftDown = false;
    OnMouseMove(Screen(0, 0), none);
    EXPECT_EQ(TheLastMouse.x, 400.0f) << "the roll mode follows too";
    TheMode = ModeDraw;
    OnMouseMove(Screen(50, 50), none);
    EXPECT_EQ(TheLastMouse.x, 400.0f) << "not the drawing mode";
}

// A press on a Bezier segment puts the pointer on the handle it picked. On
// Windows the move that the pointer jump causes reaches the window later, as
// an ordinary mouse move with the mouse enabled again: it must not drag the
// handle away from under the pointer, and the user's own moves then carry
// the handle with the pointer, pixel for pixel.
TEST_F(InputGesturesTest, HandlePickedOnACurveFollowsThePointerWithoutAJump) {
    // One straight Bezier segment along x, its handles at x 30 and x 70.
    std::vector<WSketchPoint> records = {Record(0, 0, 0, KindMove), Record(100, 0, 0, KindCurve)};
    records[0].HandleOut = P3(30, 0, 0);
    records[1].HandleIn = P3(70, 0, 0);
    records[0].Smooth = records[1].Smooth = 0;
    Load(records);
    int32_t warps = TheLastCursorMove.Count;
    OnLeftButtonDown(Screen(45, -2), none);
    ASSERT_EQ(S().Current, 0);
    ASSERT_EQ(S().CurrentPart, 2);
    ASSERT_EQ(TheLastCursorMove.Count, warps + 1);
    EXPECT_EQ(TheLastCursorMove.X, 430.0f);
    EXPECT_EQ(TheLastCursorMove.Y, 300.0f);
    EXPECT_FALSE(TheLastCursorMove.MouseEnabled) << "the jump is no mouse move of the user's";
    EXPECT_TRUE(TheMouseEnabled);
    EXPECT_EQ(TheLastMouse.x, 430.0f) << "the drag is measured from where the pointer now is";
    EXPECT_EQ(TheLastMouse.y, 300.0f);
    // The move of the jump itself, read at the handle.
    OnMouseMove(Screen(30, 0), none);
    ExpectPoint(S().Points[0].HandleOut, 30, 0, 0, 0);
    // The user's drag: the handle stays under the pointer.
    OnMouseMove(Screen(35, 4), none);
    ExpectPoint(S().Points[0].HandleOut, 35, 4, 0, 0);
    OnMouseMove(Screen(40, 10), none);
    ExpectPoint(S().Points[0].HandleOut, 40, 10, 0, 0);
    ExpectPoint(S().Points[0].Position, 0, 0, 0, 0);
    OnLeftButtonUp(Screen(40, 10), none);
    EXPECT_EQ(Steps(), 1);

    // Where the jump's move never arrives, the first move of the user's own
    // is measured from the handle too.
    Load(records);
    OnLeftButtonDown(Screen(60, -2), none); // nearer x 70: record 1's HandleIn
    ASSERT_EQ(S().Current, 1);
    ASSERT_EQ(S().CurrentPart, 1);
    OnMouseMove(Screen(72, -5), none);
    ExpectPoint(S().Points[1].HandleIn, 72, -5, 0, 0);
}

TEST_F(InputGesturesTest, DisabledMouseIgnoresMoves) {
    Load(OpenCorner());
    OnLeftButtonDown(Screen(100, 0), none);
    TheMouseEnabled = false;
    OnMouseMove(Screen(150, 0), none);
    EXPECT_EQ(TheLastMouse.x, 500.0f);
    ExpectPoint(S().Points[1].Position, 100, 0, 0, 0);
    TheMouseEnabled = true;
}

// ---- The table of moves, row by row, in both edit modes

// Each row of the table through the handlers, with what the sketch, the
// selection, the view and the title are after the press, the move and the
// release. Only a drag of a selected point changes the sketch, and only its
// release marks the title.
TEST_F(InputGesturesTest, EachRowOfTheMoveTableInBothEditModes) {
    struct State {
        std::vector<WSketchPoint> Records;
        int32_t Current;
        MMatrix Rotation;
        MPoint3 Pivot;
        float Zoom;
        std::u16string Title;
    };
    auto now = [&]() {
        return State{Records(S()),   S().Current,   TheView->Rotation,
                     TheView->Pivot, TheView->Zoom, Title()};
    };
    auto expectState = [&](const State& want, const char* row, const char* when) {
        ASSERT_EQ(S().PointCount, int32_t(want.Records.size())) << row << when;
        for (size_t i = 0; i < want.Records.size(); i++)
            EXPECT_TRUE(SameRecordBits(S().Points[int32_t(i)], want.Records[i]))
                << row << when << " record " << i;
        EXPECT_EQ(S().Current, want.Current) << row << when;
        EXPECT_TRUE(SameMatrix(TheView->Rotation, want.Rotation)) << row << when;
        EXPECT_TRUE(SameBits(TheView->Pivot, want.Pivot)) << row << when;
        EXPECT_EQ(TheView->Zoom, want.Zoom) << row << when;
        EXPECT_EQ(Title(), want.Title) << row << when;
    };
    for (WMode mode : {ModeEditSketch, ModeEditRoll}) {
        const std::u16string label = mode == ModeEditSketch ? u"EDIT SKETCH" : u"EDIT ROLL";
        const std::u16string clean = u"Quillmere - Untitled (3 points) [" + label + u"]";
        const std::u16string changed = u"Quillmere - Untitled * (3 points) [" + label + u"]";
        auto fresh = [&]() {
            TheView->Reset();
            TheView->SetViewport(800, 600);
            TheView->Zoom = 1;
            TheView->Update();
            TheMode = mode;
            Load(OpenCorner());
            TheLeftDown = TheRightDown = false;
            OnMouseMove(Screen(-300, 250), none); // where the pointer was before
        };

        // Left down, Ctrl up, on a point: the point moves by the pixels.
        fresh();
        State want = now();
        OnLeftButtonDown(Screen(100, 0), none);
        want.Current = 1;
        expectState(want, "drag", " after the press");
        OnMouseMove(Screen(110, -5), none);
        want.Records[1].Position = P3(110, -5, 0);
        want.Records[1].HandleIn = P3(110, -5, 0);
        want.Records[1].HandleOut = P3(110, -5, 0);
        expectState(want, "drag", " after the move");
        OnLeftButtonUp(Screen(110, -5), none);
        want.Title = changed;
        expectState(want, "drag", " after the release");
        EXPECT_EQ(Steps(), 1);

        // Left down, Ctrl up, on nothing: the view pans with the pointer.
        fresh();
        want = now();
        OnLeftButtonDown(Screen(-200, 200), none);
        expectState(want, "pan", " after the press");
        OnMouseMove(Screen(-190, 196), none);
        want.Pivot = P3(-10, 4, 0);
        expectState(want, "pan", " after the move");
        OnLeftButtonUp(Screen(-190, 196), none);
        expectState(want, "pan", " after the release");
        EXPECT_EQ(Steps(), 0);

        // Left down, Ctrl down: the orbit, here with a point selected.
        fresh();
        want = now();
        OnLeftButtonDown(Screen(100, 0), control);
        want.Current = 1;
        expectState(want, "orbit", " after the press");
        want.Rotation = Turned(float(-6 * 0.005), float(4 * 0.005), 0);
        OnMouseMove(Screen(94, -4), control);
        expectState(want, "orbit", " after the move");
        OnLeftButtonUp(Screen(94, -4), control);
        expectState(want, "orbit", " after the release");
        EXPECT_EQ(Steps(), 0);

        // Right down with Ctrl, left up: the roll about the view axis, by dy
        // alone. The press on nothing deletes nothing.
        fresh();
        OnMouseMove(Screen(-200, 200), control); // the right press leaves TheLastMouse alone
        want = now();
        OnRightButtonDown(Screen(-200, 200), control);
        expectState(want, "roll", " after the press");
        want.Rotation = Turned(0, 0, float(-8 * 0.005));
        OnMouseMove(Screen(-190, 192), control);
        expectState(want, "roll", " after the move");
        OnRightButtonUp(Screen(-190, 192), control);
        expectState(want, "roll", " after the release");

        // Right down without Ctrl: nothing.
        fresh();
        want = now();
        OnRightButtonDown(Screen(-200, 200), none);
        OnMouseMove(Screen(-150, 150), none);
        expectState(want, "right without Ctrl", " after the move");
        OnRightButtonUp(Screen(-150, 150), none);
        EXPECT_EQ(TheLastMouse.x, 250.0f);

        // No button, with and without Ctrl: nothing but the pointer's place.
        fresh();
        want = now();
        OnMouseMove(Screen(100, 0), control);
        OnMouseMove(Screen(50, 50), none);
        expectState(want, "no button", " after the moves");
        EXPECT_EQ(TheLastMouse.x, 450.0f);
        EXPECT_EQ(TheLastMouse.y, 250.0f);
    }
}

// ---- Left button up: the grid

TEST_F(InputGesturesTest, ReleaseSnapsTheDraggedPointToTheGrid) {
    std::vector<WSketchPoint> records = OpenCorner();
    records[1].HandleIn = P3(97, 1, 0);
    records[1].HandleOut = P3(103, -1, 0);
    records[1].Smooth = 0;
    Load(records);
    settings.UseGrid = true;
    OnLeftButtonDown(Screen(100, 0), none);
    OnMouseMove(Screen(107, -4), none);
    OnLeftButtonUp(Screen(107, -4), none);
    ExpectPoint(S().Points[1].Position, 110, 0, 0, 0);
    ExpectPoint(S().Points[1].HandleIn, 107, 1, 0, 0);
    ExpectPoint(S().Points[1].HandleOut, 113, -1, 0, 0);
    EXPECT_EQ(Steps(), 1);
}

TEST_F(InputGesturesTest, NoSnapWithoutTheGridOrForAHandle) {
    Load(OpenCorner());
    OnLeftButtonDown(Screen(100, 0), none);
    OnMouseMove(Screen(107, -4), none);
    OnLeftButtonUp(Screen(107, -4), none);
    ExpectPoint(S().Points[1].Position, 107, -4, 0, 0);
    settings.UseGrid = true;
    settings.GridSize = 0;
    OnLeftButtonDown(Screen(107, -4), none);
    OnLeftButtonUp(Screen(107, -4), none);
    ExpectPoint(S().Points[1].Position, 107, -4, 0, 0);
    settings.GridSize = 10;
    Select(1, 1);
    OnLeftButtonUp(Screen(107, -4), none);
    ExpectPoint(S().Points[1].Position, 107, -4, 0, 0);
    Select(1, 0);
    OnLeftButtonUp(Screen(107, -4), none);
    ExpectPoint(S().Points[1].Position, 110, 0, 0, 0);
}

// ---- Right button

TEST_F(InputGesturesTest, RightClickDeletesThePointUnderTheCursor) {
    Load(OpenCorner());
    OnRightButtonDown(Screen(101, 1), none);
    EXPECT_TRUE(TheRightDown);
    ASSERT_EQ(S().PointCount, 2);
    ExpectPoint(S().Points[1].Position, 100, 100, 0, 0);
    EXPECT_EQ(S().Current, -1);
    EXPECT_EQ(Title(), u"Quillmere - Untitled * (2 points) [EDIT SKETCH]");
    OnRightButtonUp(Screen(101, 1), none);
    EXPECT_FALSE(TheRightDown);
}

// The curve hit comes before the deletion: a right click beside a straight
// segment bends it and then deletes the handle it picked, which makes the
// segment a line again, its handles left where the bend put them.
TEST_F(InputGesturesTest, RightClickOnAStraightSegmentLeavesALineWithNewHandles) {
    Load(OpenCorner());
    OnRightButtonDown(Screen(24, -7), none);
    ASSERT_EQ(S().PointCount, 3);
    EXPECT_EQ(S().Points[1].Kind, KindLine);
    ExpectPoint(S().Points[0].HandleOut, 25, 0, 0, 0);
    ExpectPoint(S().Points[1].HandleIn, 75, 0, 0, 0);
    ExpectPoint(S().Points[0].Position, 0, 0, 0, 0);
    ExpectPoint(S().Points[1].Position, 100, 0, 0, 0);
    EXPECT_EQ(S().Points[0].Smooth, 0);
    EXPECT_EQ(S().Points[1].Smooth, 0);
    EXPECT_EQ(S().Current, -1);
    EXPECT_EQ(Steps(), 2) << "the bend and the deletion";
    EXPECT_EQ(Title(), u"Quillmere - Untitled * (3 points) [EDIT SKETCH]");
    UndoSketch();
    EXPECT_EQ(S().Points[1].Kind, KindCurve) << "one undo step back is the bent line";
}

TEST_F(InputGesturesTest, CtrlRightClickDeletesTheSegment) {
    Load(ClosedSquare());
    // Into record 2 of the closed square: the curve is cut there and joined
    // again, an open curve that begins at (100, 100).
    OnRightButtonDown(Screen(100, 100), control);
    ASSERT_EQ(S().PointCount, 4);
    ExpectPoint(S().Points[0].Position, 100, 100, 0, 0);
    ExpectPoint(S().Points[3].Position, 100, 0, 0, 0);
    EXPECT_EQ(Title(), u"Quillmere - Untitled * (4 points) [EDIT SKETCH]");
}

TEST_F(InputGesturesTest, RightClickOnNothingDeletesNothing) {
    Load(OpenCorner());
    OnRightButtonDown(Screen(-200, 200), none);
    EXPECT_EQ(S().PointCount, 3);
    EXPECT_EQ(Steps(), 0);
}

TEST_F(InputGesturesTest, RightButtonInTheDrawingModeOnlySetsItsFlag) {
    Load(OpenCorner());
    TheMode = ModeDraw;
    OnRightButtonDown(Screen(100, 0), control);
    EXPECT_TRUE(TheRightDown);
    EXPECT_EQ(S().PointCount, 3);
    OnRightButtonUp(Screen(100, 0), none);
    EXPECT_FALSE(TheRightDown);
}

// ---- Wheel

TEST_F(InputGesturesTest, OneNotchOfTheWheelIsAFactorOf088) {
    OnMouseWheel(120);
    EXPECT_EQ(TheView->Zoom, float(1.0 * (1 - 120 * 0.001)));
    EXPECT_NEAR(TheView->Zoom, 0.88f, 1e-7f);
    OnMouseWheel(-120);
    EXPECT_EQ(TheView->Zoom, float(double(float(0.88)) * (1 - (-120) * 0.001)));
    TheMode = ModeDraw;
    TheView->Zoom = 1;
    OnMouseWheel(-240);
    EXPECT_EQ(TheView->Zoom, float(1 - (-240) * 0.001)) << "the wheel works in every mode";
}

TEST_F(InputGesturesTest, WheelCannotTakeTheZoomBelowItsLimit) {
    for (int i = 0; i < 200; i++)
        OnMouseWheel(960);
    EXPECT_EQ(TheView->Zoom, 0.001f);
    OnMouseWheel(1200); // a factor below zero
    EXPECT_EQ(TheView->Zoom, 0.001f);
    for (int i = 0; i < 200; i++)
        OnMouseWheel(-1200);
    EXPECT_EQ(TheView->Zoom, 1000.0f);
}

// ---- File drop

TEST_F(InputGesturesTest, DropOfAPictureDoesNothingAndShowsNothing) {
    Load(OpenCorner());
    Change();
    OnFileDropped(WriteFile("picture.png", "\x89PNG"));
    EXPECT_EQ(Messages.Count, 0);
    EXPECT_EQ(Prompts.Count, 0);
    EXPECT_EQ(S().PointCount, 3);
    EXPECT_EQ(Title(), u"Quillmere - Untitled * (3 points) [EDIT SKETCH]");
}

TEST_F(InputGesturesTest, DroppedSketchOpensInTheEditMode) {
    TheMode = ModeDraw;
    MString path = WriteFile("Dropped.Eps", ThreePointEps());
    OnFileDropped(path);
    EXPECT_EQ(S().PointCount, 3);
    EXPECT_EQ(Text(TheFileName), Text(path));
    EXPECT_EQ(TheMode, ModeEditSketch);
    EXPECT_EQ(Title(), u"Quillmere - Dropped.Eps (3 points) [EDIT SKETCH]");
}

TEST_F(InputGesturesTest, DroppedTrackFileOpensWithoutAName) {
    MessageScript quiet;
    TheMessageScript = &quiet;
    CreateElement();
    TheMessageScript = &Messages;
    TheFileName = PathOf("earlier.eps");
    MString path = WriteFile("ride.qo", "Quillmere 1\r\nMove 0 0 0 0\r\n"
                                        "Element \"Straight line\" 100 0 0 0\r\n");
    OnFileDropped(path);
    EXPECT_EQ(Messages.Count, 0);
    EXPECT_GE(S().PointCount, 2);
    EXPECT_TRUE(TheFileName.IsEmpty()) << "a track file stays nameless, so Save asks";
    EXPECT_EQ(Title(), u"Quillmere - Untitled (" + Text(IntegerText(S().PointCount)) +
                           u" points) [EDIT SKETCH]");
    DestroyElement();
}

TEST_F(InputGesturesTest, OnlyTheFirst260CharactersOfADroppedPathCount) {
    // 256 characters and ".eps" make 260: opened (and failing, as no such
    // file exists). One more and the extension is cut off: ignored.
    std::u16string stem(256, u'a');
    OnFileDropped(MString((stem + u".eps").c_str()));
    ASSERT_EQ(Messages.Count, 1);
    EXPECT_EQ(LastMessage().rfind(u"Could not open:", 0), 0u);
    EXPECT_EQ(Title(), u"Quillmere - Untitled (0 points) [EDIT SKETCH]");
    std::u16string longer(257, u'a');
    OnFileDropped(MString((longer + u".eps").c_str()));
    EXPECT_EQ(Messages.Count, 1);
    // A path of 261 characters whose first 260 end in ".eps" is opened under
    // those 260.
    OnFileDropped(MString((stem + u".epsx").c_str()));
    ASSERT_EQ(Messages.Count, 2);
    EXPECT_EQ(LastMessage(), u"Could not open:\n\n\"" + stem + u".eps\"");
}

} // namespace gestures
