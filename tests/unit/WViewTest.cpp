// The camera: its matrices, zoom limits, standard views, orbit and the fit to
// the sketch. Expected numbers are worked by hand in the comments.

#include "view/WView.h"

#include "foundation/MString.h"
#include "foundation/Platform.h"
#include "shell/Input.h"
#include "sketch/WSketch.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace {

void ExpectPoint(const MPoint3& p, float x, float y, float z, float tolerance = 1e-4f) {
    EXPECT_NEAR(p.x, x, tolerance);
    EXPECT_NEAR(p.y, y, tolerance);
    EXPECT_NEAR(p.z, z, tolerance);
}

bool IsIdentityMatrix(const MMatrix& m) {
    for (int i = 0; i < 4; i++)
        for (int j = 0; j < 4; j++)
            if (m.M[i][j] != (i == j ? 1.0f : 0.0f)) return false;
    return m.Identity;
}

WSketchPoint At(float x, float y, float z, uint8_t kind) {
    WSketchPoint r;
    r.Position = MPoint3{x, y, z};
    r.HandleIn = r.Position;
    r.HandleOut = r.Position;
    r.Kind = kind;
    return r;
}

// A view of 800 by 600 pixels after Reset: zoom 0.2, so 5 pixels per unit.
WView MakeView(float width = 800, float height = 600) {
    WView view;
    view.Reset();
    view.SetViewport(width, height);
    return view;
}

// The sketch of a test, made fresh and filled through AppendPoints.
struct ViewSketchTest : ::testing::Test {
    void SetUp() override {
        MessageScript script;
        TheMessageScript = &script; // no box may stop a test run
        CreateSketch();
        TheMessageScript = nullptr;
    }
    void TearDown() override { DestroySketch(); }
    void Append(const std::vector<WSketchPoint>& records) {
        TheSketch->AppendPoints(records.data(), int32_t(records.size()));
    }
};

} // namespace

// ---- Fields and matrices

TEST(ViewTest, NewViewHasFourIdentityMatrices) {
    WView view;
    EXPECT_TRUE(IsIdentityMatrix(view.Rotation));
    EXPECT_TRUE(IsIdentityMatrix(view.InverseRotation));
    EXPECT_TRUE(IsIdentityMatrix(view.WorldToScreen));
    EXPECT_TRUE(IsIdentityMatrix(view.ScreenToWorld));
}

TEST(ViewTest, ResetGivesOriginZoomPointTwoAndFrontView) {
    WView view;
    view.Pivot = MPoint3{4, 5, 6};
    view.Zoom = 7;
    view.Rotation = YawPitchRoll(1, 0.5f, 0.25f);
    view.Reset();
    ExpectPoint(view.Pivot, 0, 0, 0, 0);
    EXPECT_EQ(view.Zoom, 0.2f);
    EXPECT_TRUE(IsIdentityMatrix(view.Rotation));
    EXPECT_TRUE(IsIdentityMatrix(view.InverseRotation));
    // Update ran: the scale of 1 / 0.2 = 5 is in the matrix.
    EXPECT_FALSE(view.WorldToScreen.Identity);
    EXPECT_EQ(view.WorldToScreen.M[0][0], 5.0f);
}

TEST(ViewTest, WorldToScreenScalesFlipsYAndCentres) {
    // 1 / 0.2f = 4.99999992549 in double rounds to 5.0f. The point (10, 20, 0)
    // lands at (400 + 10 * 5, 300 - 20 * 5, 1) = (450, 200, 1).
    WView view = MakeView();
    MPoint3 s = view.ToScreen(MPoint3{10, 20, 0});
    EXPECT_EQ(s.x, 450.0f);
    EXPECT_EQ(s.y, 200.0f);
    EXPECT_EQ(s.z, 1.0f);
    // The rows of the product T R Z S: x by 5, y by -5, z by 5, then the centre.
    EXPECT_EQ(view.WorldToScreen.M[1][1], -5.0f);
    EXPECT_EQ(view.WorldToScreen.M[2][2], 5.0f);
    EXPECT_EQ(view.WorldToScreen.M[3][0], 400.0f);
    EXPECT_EQ(view.WorldToScreen.M[3][1], 300.0f);
    EXPECT_EQ(view.WorldToScreen.M[3][2], 1.0f);
}

TEST(ViewTest, ScreenToWorldIsTheInverse) {
    // Back from (450, 200) at screen z 0: x 10, y 20, and z (0 - 1) / 5 =
    // -0.2, which is Zoom units in front of the pivot.
    WView view = MakeView();
    ExpectPoint(view.ToWorld(MPoint2{450, 200}), 10, 20, -0.2f, 1e-5f);
    // Round trip of an arbitrary point in an orbited view.
    view.Pivot = MPoint3{3, -7, 11};
    view.Update();
    view.Orbit(0.4f, -0.3f, 0.2f);
    MPoint3 world{12.5f, -3.25f, 8};
    ExpectPoint(Transform(view.ScreenToWorld, view.ToScreen(world)), 12.5f, -3.25f, 8, 1e-3f);
}

TEST(ViewTest, PivotMapsToTheCentreWithZOneForAnyRotation) {
    // T takes the pivot to the origin, which no rotation or scale moves, and
    // S puts it at (400, 300, 1).
    WView view = MakeView();
    view.Pivot = MPoint3{3, -7, 11};
    view.Zoom = 0.37f;
    view.Update();
    ExpectPoint(view.ToScreen(view.Pivot), 400, 300, 1, 1e-3f);
    for (int v = 0; v < StandardViewCount; v++) {
        view.SetStandardView(v);
        ExpectPoint(view.ToScreen(view.Pivot), 400, 300, 1, 1e-3f);
    }
    view.Orbit(0.7f, 0.2f, -1.1f);
    ExpectPoint(view.ToScreen(view.Pivot), 400, 300, 1, 1e-3f);
}

TEST(ViewTest, AtZoomTwoTenUnitsAcrossTheScreenAreFivePixels) {
    // 10 units times 1 / 2 pixels per unit = 5 pixels.
    WView view = MakeView();
    view.Zoom = 2;
    view.Update();
    MPoint3 a = view.ToScreen(MPoint3{0, 0, 0});
    MPoint3 b = view.ToScreen(MPoint3{10, 0, 0});
    EXPECT_EQ(b.x - a.x, 5.0f);
    EXPECT_EQ(b.y - a.y, 0.0f);
    MPoint3 c = view.ToScreen(MPoint3{0, 10, 0});
    EXPECT_EQ(c.y - a.y, -5.0f); // y up in the world is up on the screen
    // In the right view world z runs across the screen: 10 units of z are 5 pixels.
    view.SetStandardView(ViewRight);
    a = view.ToScreen(MPoint3{0, 0, 0});
    b = view.ToScreen(MPoint3{0, 0, 10});
    EXPECT_NEAR(b.x - a.x, 5.0f, 1e-4f);
    EXPECT_NEAR(b.y - a.y, 0.0f, 1e-4f);
}

TEST(ViewTest, NothingUpdatesByItself) {
    WView view = MakeView();
    view.Zoom = 1;
    EXPECT_EQ(view.ToScreen(MPoint3{10, 0, 0}).x, 450.0f); // still at zoom 0.2
    view.Update();
    EXPECT_EQ(view.ToScreen(MPoint3{10, 0, 0}).x, 410.0f);
}

TEST(ViewTest, ViewportChangeKeepsZoom) {
    // 800 wide: 400 + 10 * 5 = 450; 1000 wide: 500 + 50 = 550.
    WView view = MakeView();
    view.SetViewport(1000, 600);
    EXPECT_EQ(view.Zoom, 0.2f);
    EXPECT_EQ(view.ToScreen(MPoint3{10, 0, 0}).x, 550.0f);
}

// ---- Zoom limits

TEST(ViewTest, LimitZoomKeepsTheRange) {
    EXPECT_EQ(LimitZoom(0.0005), 0.001f);
    EXPECT_EQ(LimitZoom(-3), 0.001f);
    EXPECT_EQ(LimitZoom(0.001), 0.001f);
    EXPECT_EQ(LimitZoom(0.5), 0.5f);
    EXPECT_EQ(LimitZoom(1000), 1000.0f);
    EXPECT_EQ(LimitZoom(1000.5), 1000.0f);
    EXPECT_EQ(LimitZoom(1e9), 1000.0f);
}

TEST(ViewTest, WheelCannotTakeZoomBelowTheLimit) {
    // One notch of 120 is the factor 1 - 120 * 0.001 = 0.88; from 0.2 the
    // 42nd notch would pass 0.001 (0.2 * 0.88^41 = 0.00106, 0.2 * 0.88^42 =
    // 0.00093), so 0.001 is reached there and stays.
    WView view = MakeView();
    for (int i = 0; i < 200; i++) {
        view.ZoomBy(1 - 120 * 0.001);
        ASSERT_GE(view.Zoom, 0.001f);
    }
    EXPECT_EQ(view.Zoom, 0.001f);
    // A fast turn, 100 notches in one message: the factor is 1 - 12 = -11.
    view.Zoom = 0.5f;
    view.ZoomBy(1 - 12000 * 0.001);
    EXPECT_EQ(view.Zoom, 0.001f);
    // And the zoom in command at the limit: 0.001 * 0.9 comes back as 0.001.
    view.ZoomBy(0.9);
    EXPECT_EQ(view.Zoom, 0.001f);
    // The matrices follow: 1 / 0.001f = 999.99995 in double, 999.99994f.
    EXPECT_EQ(view.WorldToScreen.M[0][0], 999.9999389648438f);
}

TEST(ViewTest, TheWheelMessageCannotTakeZoomBelowTheLimit) {
    // The wheel's own handler, with the signed delta of WM_MOUSEWHEEL: one
    // notch of 120 zooms in by 0.88. The largest delta a message carries,
    // 32767, asks for the factor 1 - 32.767 = -31.767, which ends at 0.001.
    // Turned the other way, -32768 gives the factor 33.768: four such
    // messages take 0.001 past 1000 (0.001 * 33.768^4 = 1300), where it stops.
    MString texts[2];
    MessageScript script;
    script.Texts = texts;
    script.Capacity = 2;
    TheMessageScript = &script;
    ASSERT_EQ(TheView, nullptr);
    ASSERT_NE(CreateView(), nullptr);
    TheMessageScript = nullptr;
    TheView->SetViewport(800, 600);
    OnMouseWheel(120);
    EXPECT_EQ(TheView->Zoom, float(double(0.2f) * 0.88));
    OnMouseWheel(32767);
    EXPECT_EQ(TheView->Zoom, 0.001f);
    for (int i = 0; i < 50; i++)
        OnMouseWheel(120);
    EXPECT_EQ(TheView->Zoom, 0.001f);
    // The matrices were updated with it: 1 / 0.001f rounds to 999.99994f.
    EXPECT_EQ(TheView->WorldToScreen.M[0][0], 999.9999389648438f);
    for (int i = 0; i < 3; i++)
        OnMouseWheel(-32768);
    EXPECT_LT(TheView->Zoom, 1000.0f);
    OnMouseWheel(-32768);
    EXPECT_EQ(TheView->Zoom, 1000.0f);
    DestroyView();
}

TEST(ViewTest, ZoomOutStopsAtOneThousand) {
    WView view = MakeView();
    for (int i = 0; i < 200; i++)
        view.ZoomBy(1.1);
    EXPECT_EQ(view.Zoom, 1000.0f);
    view.ZoomBy(1 - (-120) * 0.001); // the wheel turned back, factor 1.12
    EXPECT_EQ(view.Zoom, 1000.0f);
}

TEST(ViewTest, ZoomFactorIsWorkedInDouble) {
    // 0.13f * 0.88 in double is 0.11439999580383, which rounds once to
    // 0.1143999994f; the float product 0.13f * 0.88f would round to
    // 0.1143999919f. Likewise 0.05f * 0.9 gives 0.0450000018f against the
    // float 0.0449999981f.
    WView view = MakeView();
    view.Zoom = 0.13f;
    view.ZoomBy(0.88);
    EXPECT_EQ(view.Zoom, 0.1143999993801117f);
    view.Zoom = 0.05f;
    view.ZoomBy(0.9);
    EXPECT_EQ(view.Zoom, 0.04500000178813934f);
}

// ---- Standard views

TEST(ViewTest, StandardViewTable) {
    const char16_t* labels[] = {u"Front view", u"Back view", u"Right view",
                                u"Left view",  u"Top view",  u"Bottom view"};
    float yaw[] = {0, 3.1415927f, 1.5707964f, -1.5707964f, 0, 0};
    float pitch[] = {0, 0, 0, 0, -1.5707964f, 1.5707964f};
    for (int v = 0; v < StandardViewCount; v++) {
        EXPECT_EQ(std::u16string(StandardViews[v].Label), std::u16string(labels[v]));
        EXPECT_EQ(StandardViews[v].Yaw, yaw[v]);
        EXPECT_EQ(StandardViews[v].Pitch, pitch[v]);
    }
}

// Each view is checked by where the world axes go (a row vector times the
// rotation), from the table of YawPitchRoll with roll 0:
//   row 1 = (c1, 0, -s1), row 2 = (s2 s1, c2, s2 c1), row 3 = (c2 s1, -s2, c2 c1).
// View z of -1 points out of the screen towards the viewer.
TEST(ViewTest, FrontViewIsTheIdentity) {
    WView view = MakeView();
    view.SetStandardView(ViewBack);
    view.SetStandardView(ViewFront);
    EXPECT_TRUE(IsIdentityMatrix(view.Rotation));
    EXPECT_TRUE(view.InverseRotation.Identity);
}

TEST(ViewTest, BackViewTurnsHalfAround) {
    // yaw pi: s1 = 0, c1 = -1: x goes to -x, z to -z, y stays.
    WView view = MakeView();
    view.SetStandardView(ViewBack);
    ExpectPoint(Transform(view.Rotation, MPoint3{1, 0, 0}), -1, 0, 0, 1e-6f);
    ExpectPoint(Transform(view.Rotation, MPoint3{0, 1, 0}), 0, 1, 0, 1e-6f);
    ExpectPoint(Transform(view.Rotation, MPoint3{0, 0, 1}), 0, 0, -1, 1e-6f);
    EXPECT_FALSE(view.Rotation.Identity);
}

TEST(ViewTest, RightViewLooksFromPlusX) {
    // yaw pi/2: s1 = 1, c1 = 0: x goes to (0, 0, -1), towards the viewer;
    // z goes to (1, 0, 0), to the right of the screen.
    WView view = MakeView();
    view.SetStandardView(ViewRight);
    ExpectPoint(Transform(view.Rotation, MPoint3{1, 0, 0}), 0, 0, -1, 1e-6f);
    ExpectPoint(Transform(view.Rotation, MPoint3{0, 1, 0}), 0, 1, 0, 1e-6f);
    ExpectPoint(Transform(view.Rotation, MPoint3{0, 0, 1}), 1, 0, 0, 1e-6f);
}

TEST(ViewTest, LeftViewLooksFromMinusX) {
    // yaw -pi/2: s1 = -1: x goes to (0, 0, 1), z to (-1, 0, 0).
    WView view = MakeView();
    view.SetStandardView(ViewLeft);
    ExpectPoint(Transform(view.Rotation, MPoint3{1, 0, 0}), 0, 0, 1, 1e-6f);
    ExpectPoint(Transform(view.Rotation, MPoint3{0, 1, 0}), 0, 1, 0, 1e-6f);
    ExpectPoint(Transform(view.Rotation, MPoint3{0, 0, 1}), -1, 0, 0, 1e-6f);
}

TEST(ViewTest, TopViewLooksDown) {
    // pitch -pi/2: s2 = -1, c2 = 0: y goes to (0, 0, -1), towards the
    // viewer above; z goes to (0, 1, 0), up the screen; x stays.
    WView view = MakeView();
    view.SetStandardView(ViewTop);
    ExpectPoint(Transform(view.Rotation, MPoint3{1, 0, 0}), 1, 0, 0, 1e-6f);
    ExpectPoint(Transform(view.Rotation, MPoint3{0, 1, 0}), 0, 0, -1, 1e-6f);
    ExpectPoint(Transform(view.Rotation, MPoint3{0, 0, 1}), 0, 1, 0, 1e-6f);
}

TEST(ViewTest, BottomViewLooksUp) {
    // pitch pi/2: s2 = 1: y goes to (0, 0, 1), z to (0, -1, 0).
    WView view = MakeView();
    view.SetStandardView(ViewBottom);
    ExpectPoint(Transform(view.Rotation, MPoint3{1, 0, 0}), 1, 0, 0, 1e-6f);
    ExpectPoint(Transform(view.Rotation, MPoint3{0, 1, 0}), 0, 0, 1, 1e-6f);
    ExpectPoint(Transform(view.Rotation, MPoint3{0, 0, 1}), 0, -1, 0, 1e-6f);
}

TEST(ViewTest, InverseRotationUndoesEachStandardView) {
    WView view = MakeView();
    for (int v = 0; v < StandardViewCount; v++) {
        view.SetStandardView(v);
        MPoint3 p{1.5f, -2, 3};
        ExpectPoint(Transform(view.InverseRotation, Transform(view.Rotation, p)), 1.5f, -2, 3,
                    1e-5f);
    }
}

TEST(ViewTest, StandardViewOutOfRangeDoesNothing) {
    WView view = MakeView();
    view.SetStandardView(ViewRight);
    MMatrix before = view.Rotation;
    view.SetStandardView(StandardViewCount);
    view.SetStandardView(-1);
    for (int i = 0; i < 4; i++)
        for (int j = 0; j < 4; j++)
            EXPECT_EQ(view.Rotation.M[i][j], before.M[i][j]);
}

// ---- Orbit

TEST(ViewTest, OrbitMultipliesOnTheRight) {
    // From the front view one orbit is YawPitchRoll itself: Multiply with the
    // identity copies it, and Orthonormalize keeps a rotation within rounding.
    WView view = MakeView();
    view.Orbit(0.3f, 0, 0);
    MMatrix expected = YawPitchRoll(0.3f, 0, 0);
    for (int i = 0; i < 4; i++)
        for (int j = 0; j < 4; j++)
            EXPECT_NEAR(view.Rotation.M[i][j], expected.M[i][j], 1e-6f);
    // A second orbit on the right: R(0.3) R(0.2) about the same axis is R(0.5).
    view.Orbit(0.2f, 0, 0);
    expected = YawPitchRoll(0.5f, 0, 0);
    for (int i = 0; i < 4; i++)
        for (int j = 0; j < 4; j++)
            EXPECT_NEAR(view.Rotation.M[i][j], expected.M[i][j], 1e-6f);
    // The order matters: pitch after yaw differs from yaw after pitch, and the
    // view's product must be Rotation times the small turn.
    WView other = MakeView();
    other.SetRotation(YawPitchRoll(0.5f, 0, 0));
    other.Orbit(0, 0.4f, 0);
    MMatrix right = Multiply(YawPitchRoll(0.5f, 0, 0), YawPitchRoll(0, 0.4f, 0));
    for (int i = 0; i < 3; i++)
        for (int j = 0; j < 3; j++)
            EXPECT_NEAR(other.Rotation.M[i][j], right.M[i][j], 1e-6f);
    // The inverse follows the rotation.
    ExpectPoint(Transform(other.InverseRotation, Transform(other.Rotation, MPoint3{1, 2, 3})), 1, 2,
                3, 1e-5f);
}

TEST(ViewTest, ManyOrbitsStayOrthonormal) {
    WView view = MakeView();
    for (int i = 0; i < 20000; i++)
        view.Orbit(0.013f, -0.007f, 0.003f * float(i % 5));
    const float(*m)[4] = view.Rotation.M;
    for (int a = 0; a < 3; a++) {
        float length = std::sqrt(m[0][a] * m[0][a] + m[1][a] * m[1][a] + m[2][a] * m[2][a]);
        EXPECT_NEAR(length, 1.0f, 1e-5f) << "column " << a;
        for (int b = a + 1; b < 3; b++) {
            float dot = m[0][a] * m[0][b] + m[1][a] * m[1][b] + m[2][a] * m[2][b];
            EXPECT_NEAR(dot, 0.0f, 1e-5f) << "columns " << a << " and " << b;
        }
        EXPECT_EQ(m[a][3], 0.0f);
    }
    EXPECT_EQ(m[3][3], 1.0f);
}

// ---- Fit to the sketch

TEST_F(ViewSketchTest, FitCentresAndFillsTwoThirds) {
    // Points (0, 0) and (100, 30): the pivot goes to (50, 15, 0). At zoom 1
    // the extents are 100 by 30 pixels; r = max(100 / 800, 30 / 600) = 0.125
    // and the zoom 0.125 * 1.5 = 0.1875. The end point then lies at
    // 400 + 50 / 0.1875 = 666.67, two thirds of the width apart from the start.
    Append({At(0, 0, 0, KindMove), At(100, 30, 0, KindLine)});
    WView view = MakeView();
    view.FitToSketch();
    ExpectPoint(view.Pivot, 50, 15, 0, 0);
    EXPECT_EQ(view.Zoom, 0.1875f);
    MPoint3 a = view.ToScreen(MPoint3{0, 0, 0});
    MPoint3 b = view.ToScreen(MPoint3{100, 30, 0});
    EXPECT_NEAR(b.x - a.x, 800.0f * 2 / 3, 1e-3f);
    EXPECT_NEAR(a.x, 400 - 800.0f / 3, 1e-3f);
}

TEST_F(ViewSketchTest, FitTakesTheTallerDirection) {
    // (0, 0) to (10, 300): r = max(10 / 800, 300 / 600) = 0.5, zoom 0.75.
    Append({At(0, 0, 0, KindMove), At(10, 300, 0, KindLine)});
    WView view = MakeView();
    view.FitToSketch();
    ExpectPoint(view.Pivot, 5, 150, 0, 0);
    EXPECT_EQ(view.Zoom, 0.75f);
}

TEST_F(ViewSketchTest, FitMeasuresPositionsNotHandles) {
    // A curve from (0, 0) to (100, 0) whose handles stand at y 300. The
    // bounds hold the drawn curve, which peaks at t 0.5 with y 0.75 * 300 =
    // 225, so the pivot is (50, 112.5, 0); the screen extent counts only the
    // two positions: 100 by 0 pixels, r 0.125, zoom 0.1875 (with the sampled
    // curve it would be 225 / 600 * 1.5 = 0.5625).
    WSketchPoint start = At(0, 0, 0, KindMove);
    start.HandleOut = MPoint3{0, 300, 0};
    WSketchPoint end = At(100, 0, 0, KindCurve);
    end.HandleIn = MPoint3{100, 300, 0};
    Append({start, end});
    WView view = MakeView();
    view.FitToSketch();
    ExpectPoint(view.Pivot, 50, 112.5f, 0, 1e-3f);
    EXPECT_EQ(view.Zoom, 0.1875f);
}

TEST_F(ViewSketchTest, FitUsesTheRotationAsItStands) {
    // In the right view world z runs across the screen: (0, 0, 0) to
    // (0, 0, 100) measures 100 pixels across, r 0.125, zoom 0.1875.
    Append({At(0, 0, 0, KindMove), At(0, 0, 100, KindLine)});
    WView view = MakeView();
    view.SetStandardView(ViewRight);
    view.FitToSketch();
    ExpectPoint(view.Pivot, 0, 0, 50, 0);
    EXPECT_NEAR(view.Zoom, 0.1875f, 1e-6f);
}

TEST_F(ViewSketchTest, FitOfALineAlongTheViewAxisGivesZoomPointTwo) {
    // (3, 4, -10) and (3, 4, 30) in the front view: the bounds have a z side
    // of 40, so the pivot moves to (3, 4, 10); both points land on the
    // centre, the extents are 0 and the zoom becomes 0.2.
    Append({At(3, 4, -10, KindMove), At(3, 4, 30, KindLine)});
    WView view = MakeView();
    view.Zoom = 5;
    view.Update();
    view.FitToSketch();
    ExpectPoint(view.Pivot, 3, 4, 10, 0);
    EXPECT_EQ(view.Zoom, 0.2f);
    EXPECT_EQ(view.WorldToScreen.M[0][0], 5.0f); // updated
}

TEST_F(ViewSketchTest, FitOfOnePointOrNothingLeavesTheView) {
    WView view = MakeView();
    view.Pivot = MPoint3{1, 2, 3};
    view.Zoom = 4;
    view.Update();
    view.FitToSketch(); // empty sketch
    ExpectPoint(view.Pivot, 1, 2, 3, 0);
    EXPECT_EQ(view.Zoom, 4.0f);
    Append({At(50, 60, 70, KindMove)});
    view.FitToSketch(); // one point: no side above 0
    ExpectPoint(view.Pivot, 1, 2, 3, 0);
    EXPECT_EQ(view.Zoom, 4.0f);
    // Two records at one place are no bigger.
    Append({At(50, 60, 70, KindMove)});
    view.FitToSketch();
    ExpectPoint(view.Pivot, 1, 2, 3, 0);
    EXPECT_EQ(view.Zoom, 4.0f);
}

TEST_F(ViewSketchTest, FitWithoutViewportDoesNothing) {
    Append({At(0, 0, 0, KindMove), At(100, 30, 0, KindLine)});
    WView view = MakeView(0, 600);
    view.FitToSketch();
    ExpectPoint(view.Pivot, 0, 0, 0, 0);
    EXPECT_EQ(view.Zoom, 0.2f);
    view.SetViewport(800, -1);
    view.FitToSketch();
    EXPECT_EQ(view.Zoom, 0.2f);
}

TEST_F(ViewSketchTest, FitIsLimited) {
    // 1e7 units across 800 pixels: r 12500, 18750 limited to 1000.
    Append({At(0, 0, 0, KindMove), At(1e7f, 0, 0, KindLine)});
    WView view = MakeView();
    view.FitToSketch();
    EXPECT_EQ(view.Zoom, 1000.0f);
    // 0.01 units: r 0.0000125, 0.00001875 limited to 0.001.
    TheSketch->PointCount = 0;
    Append({At(0, 0, 0, KindMove), At(0.01f, 0, 0, KindLine)});
    view.FitToSketch();
    EXPECT_EQ(view.Zoom, 0.001f);
}

TEST_F(ViewSketchTest, StandardViewCommandFocusesTheCurrentPoint) {
    Append({At(0, 0, 0, KindMove), At(100, 30, 0, KindLine)});
    TheView = nullptr;
    MessageScript script;
    TheMessageScript = &script;
    CreateView();
    TheMessageScript = nullptr;
    TheView->SetViewport(800, 600);
    // With a current record the pivot goes there and there is no fit.
    TheSketch->Current = 1;
    TheView->Zoom = 3;
    ShowStandardView(ViewTop);
    ExpectPoint(TheView->Pivot, 100, 30, 0, 0);
    EXPECT_EQ(TheView->Zoom, 3.0f);
    ExpectPoint(Transform(TheView->Rotation, MPoint3{0, 1, 0}), 0, 0, -1, 1e-6f);
    // With none the view is fitted: pivot (50, 15, 0), zoom 0.1875.
    TheSketch->Current = -1;
    ShowStandardView(ViewFront);
    ExpectPoint(TheView->Pivot, 50, 15, 0, 0);
    EXPECT_EQ(TheView->Zoom, 0.1875f);
    EXPECT_TRUE(TheView->Rotation.Identity);
    DestroyView();
}

// ---- The single object

TEST(ViewTest, CreationIsSingle) {
    ASSERT_EQ(TheView, nullptr);
    MString texts[4];
    MessageIcon icons[4];
    MessageScript script;
    script.Texts = texts;
    script.Icons = icons;
    script.Capacity = 4;
    TheMessageScript = &script;
    StartDebugCapture();
    WView* first = CreateView();
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(TheView, first);
    // Created and reset.
    EXPECT_EQ(first->Zoom, 0.2f);
    EXPECT_TRUE(first->Rotation.Identity);
    first->Zoom = 9;
    WView* second = CreateView();
    EXPECT_EQ(second, first);
    EXPECT_EQ(first->Zoom, 9.0f); // the first is kept as it was
    EXPECT_EQ(script.Count, 1);
    EXPECT_EQ(std::u16string(texts[0].Chars()), u"There can only be 1 WView object");
    EXPECT_EQ(icons[0], IconError);
    DestroyView();
    EXPECT_EQ(TheView, nullptr);
    MString debug = StopDebugCapture();
    TheMessageScript = nullptr;
    EXPECT_EQ(std::u16string(debug.Chars()), u"WView created\nWView destroyed\n");
}
