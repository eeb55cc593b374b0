// The view's decorations: the world grid with its plane, spacing, extent,
// centre, widths and fading; the axes symbol; the view label of each standard
// view; the mode and help texts.

#include "view/Scene.h"

#include "shell/Shell.h"
#include "view/WView.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace {

// A view of 640 by 480 around the origin, at a zoom, in a rotation.
WView ViewAt(float zoom, int32_t standardView = ViewFront) {
    WView view;
    view.Zoom = zoom;
    view.ViewportWidth = 640;
    view.ViewportHeight = 480;
    view.SetStandardView(standardView);
    return view;
}

WSettings Defaults() {
    WSettings settings;
    settings.SetDefaults();
    return settings;
}

} // namespace

// ---- Axes and labels

TEST(SceneAxes, FrontViewSeesZEndOn) {
    WScreenAxes axes = ScreenAxes(ViewAt(1).Rotation);
    EXPECT_EQ(axes.Length[0], 1.0f);
    EXPECT_EQ(axes.Length[1], 1.0f);
    EXPECT_EQ(axes.Length[2], 0.0f);
    EXPECT_EQ(axes.Axis[2].z, 1.0f);
}

TEST(SceneAxes, EachStandardViewHasItsLabel) {
    for (int32_t v = 0; v < StandardViewCount; v++) {
        const char16_t* label = ViewLabel(ScreenAxes(ViewAt(1, v).Rotation));
        ASSERT_NE(label, nullptr) << "view " << v;
        EXPECT_EQ(std::u16string(label), std::u16string(StandardViews[v].Label)) << "view " << v;
    }
    EXPECT_EQ(std::u16string(StandardViews[ViewTop].Label), u"Top view");
}

TEST(SceneAxes, ALabelHoldsNearAStandardViewAndNotHalfWay) {
    WView view = ViewAt(1);
    view.SetRotation(YawPitchRoll(0.2f, 0.1f, 0)); // x and y still above 0.95 on the screen
    EXPECT_EQ(std::u16string(ViewLabel(ScreenAxes(view.Rotation))), u"Front view");
    view.SetRotation(YawPitchRoll(0.7853982f, 0, 0));
    EXPECT_EQ(ViewLabel(ScreenAxes(view.Rotation)), nullptr);
    view.SetRotation(YawPitchRoll(0, 0.7853982f, 0));
    EXPECT_EQ(ViewLabel(ScreenAxes(view.Rotation)), nullptr);
}

TEST(SceneTexts, HelpTextOfEachMode) {
    EXPECT_EQ(std::u16string(HelpText(ModeDraw)),
              u"Use your mouse to sketch\nPress E to edit your sketch");
    EXPECT_EQ(std::u16string(HelpText(ModeEditSketch)),
              u"Click and drag the control points with your mouse\nRight click to delete a point\n"
              u"Press D to go back to drawing");
    EXPECT_EQ(std::u16string(HelpText(ModeEditRoll)),
              u"Rotate with your mouse, by holding down <Ctrl>\nPress <F1> to <F6> for standard "
              u"views\nPress <F11> for the options dialog");
    EXPECT_EQ(HelpText(3), nullptr);
}

// ---- Grid plan

TEST(SceneGrid, PlaneIsTheOneSeenSquarely) {
    WSettings settings = Defaults();
    EXPECT_EQ(PlanGrid(ViewAt(1, ViewFront), settings).Plane, GridPlaneZ);
    EXPECT_EQ(PlanGrid(ViewAt(1, ViewBack), settings).Plane, GridPlaneZ);
    EXPECT_EQ(PlanGrid(ViewAt(1, ViewTop), settings).Plane, GridPlaneY);
    EXPECT_EQ(PlanGrid(ViewAt(1, ViewBottom), settings).Plane, GridPlaneY);
    EXPECT_EQ(PlanGrid(ViewAt(1, ViewRight), settings).Plane, GridPlaneX);
    EXPECT_EQ(PlanGrid(ViewAt(1, ViewLeft), settings).Plane, GridPlaneX);
    WGridPlan top = PlanGrid(ViewAt(1, ViewTop), settings);
    EXPECT_EQ(top.First, 0);
    EXPECT_EQ(top.Second, 2);
    WGridPlan right = PlanGrid(ViewAt(1, ViewRight), settings);
    EXPECT_EQ(right.First, 1);
    EXPECT_EQ(right.Second, 2);
}

TEST(SceneGrid, SpacingAndExtentFollowTheZoom) {
    struct Case {
        float Zoom;
        int32_t Spacing, Extent;
    };
    const Case cases[] = {{0.2f, 10, 120},      {1, 10, 640},          {1.5625f, 10, 1000},
                          {1.6f, 100, 1000},    {15.625f, 100, 10000}, {16, 1000, 10000},
                          {156.2f, 1000, 99000}};
    WSettings settings = Defaults();
    for (const Case& c : cases) {
        WGridPlan plan = PlanGrid(ViewAt(c.Zoom), settings);
        EXPECT_TRUE(plan.Visible) << c.Zoom;
        EXPECT_EQ(plan.Spacing, c.Spacing) << c.Zoom;
        EXPECT_EQ(plan.Extent, c.Extent) << c.Zoom;
    }
    WView tall = ViewAt(1);
    tall.ViewportWidth = 300;
    tall.ViewportHeight = 700;
    EXPECT_EQ(PlanGrid(tall, settings).Extent, 700) << "the larger side counts";
}

TEST(SceneGrid, ExtentOfOneHundredThousandTurnsTheGridOff) {
    WSettings settings = Defaults();
    WView view = ViewAt(156.25f); // 640 * 156.25 = 100000
    EXPECT_FALSE(PlanGrid(view, settings).Visible);
    view.Zoom = 156.2f;
    EXPECT_TRUE(PlanGrid(view, settings).Visible);
}

TEST(SceneGrid, CentreIsThePivotRoundedTowardsZero) {
    WSettings settings = Defaults();
    WView view = ViewAt(1);
    view.Pivot = MPoint3{123.4f, -56.7f, 999};
    WGridPlan plan = PlanGrid(view, settings);
    EXPECT_EQ(plan.CentreFirst, 120);
    EXPECT_EQ(plan.CentreSecond, -50);
    view.Zoom = 1.6f;
    plan = PlanGrid(view, settings);
    EXPECT_EQ(plan.CentreFirst, 100);
    EXPECT_EQ(plan.CentreSecond, 0);
    WView top = ViewAt(1, ViewTop);
    top.Pivot = MPoint3{37, 99, -251};
    plan = PlanGrid(top, settings);
    EXPECT_EQ(plan.CentreFirst, 30);
    EXPECT_EQ(plan.CentreSecond, -250);
}

TEST(SceneGrid, ColourFadesTowardsTheBackgroundAsThePlaneTilts) {
    WSettings settings = Defaults();
    WView view = ViewAt(1);
    MColour square = PlanGrid(view, settings).Colour;
    EXPECT_EQ(square.r, 229);
    EXPECT_EQ(square.a, 255);
    view.SetRotation(YawPitchRoll(0.2f, 0, 0)); // z seen 0.199 long: factor 0.397
    WGridPlan tilted = PlanGrid(view, settings);
    EXPECT_EQ(tilted.Plane, GridPlaneZ);
    EXPECT_EQ(tilted.Colour.b, 239);
    EXPECT_EQ(tilted.Colour.g, 239);
    EXPECT_EQ(tilted.Colour.r, 239);
    view.SetRotation(YawPitchRoll(1.2f, 0, 0)); // x now the shortest, 0.362: factor 0.725
    WGridPlan turned = PlanGrid(view, settings);
    EXPECT_EQ(turned.Plane, GridPlaneX);
    EXPECT_EQ(turned.Colour.r, 247);
    view.SetRotation(YawPitchRoll(0.7853982f, 0, 0)); // half way: gone
    EXPECT_EQ(PlanGrid(view, settings).Colour.r, 255);
    settings.ColourGrid = MColour{0, 100, 200, 255};
    settings.ColourBackground = MColour{255, 0, 100, 255};
    view.SetRotation(YawPitchRoll(0.2f, 0, 0));
    MColour blended = PlanGrid(view, settings).Colour;
    EXPECT_EQ(blended.b, 101); // each channel on its own: 0 + 255 * 0.397
    EXPECT_EQ(blended.g, 60);
    EXPECT_EQ(blended.r, 160);
}

TEST(SceneGrid, BlendAndLineWidth) {
    MColour c = BlendColour(MColour{0, 100, 200, 255}, MColour{255, 0, 100, 255}, 0.5f);
    EXPECT_EQ(c.b, 127);
    EXPECT_EQ(c.g, 50);
    EXPECT_EQ(c.r, 150);
    EXPECT_EQ(c.a, 255);
    EXPECT_EQ(GridLineWidth(0), 3.0f);
    EXPECT_EQ(GridLineWidth(100), 2.0f);
    EXPECT_EQ(GridLineWidth(-200), 2.0f);
    EXPECT_EQ(GridLineWidth(1000), 2.0f);
    EXPECT_EQ(GridLineWidth(10), 1.0f);
    EXPECT_EQ(GridLineWidth(-50), 1.0f);
}

#if !defined(_WIN32)

#include "SceneTestSupport.h"

using namespace scenetest;

// ---- Grid lines

TEST_F(SceneWorld, NoGridLinesOnceTheExtentReachesOneHundredThousand) {
    TheView->Zoom = 156.25f;
    TheView->Update();
    DrawWorldGrid(Surface, *TheView, *TheSettings);
    EXPECT_EQ(Surface.OperationCount, 0);
    TheView->Zoom = 156.2f;
    TheView->Update();
    DrawWorldGrid(Surface, *TheView, *TheSettings);
    EXPECT_EQ(Drawn(Surface).size(), 2u * 199u)
        << "from -99000 to 99000 in steps of 1000, each way";
}

TEST_F(SceneWorld, GridLinesRunAcrossTheWholeGridInBothDirections) {
    TheView->Zoom = 0.05f; // E = 32: spacing 10, lines from -30 to 30
    TheView->Update();
    DrawWorldGrid(Surface, *TheView, *TheSettings);
    std::vector<MDrawOperation> expected;
    for (int a = -30; a <= 30; a += 10)
        expected.push_back(Line(320 + 20.0f * a, 840, 320 + 20.0f * a, -360, a == 0 ? 3 : 1, Grid));
    for (int b = -30; b <= 30; b += 10)
        expected.push_back(Line(-280, 240 - 20.0f * b, 920, 240 - 20.0f * b, b == 0 ? 3 : 1, Grid));
    EXPECT_TRUE(SameOps(Drawn(Surface), expected));
}

TEST_F(SceneWorld, GridLinesOnMultiplesOfOneHundredAreWider) {
    TheView->Zoom = 0.5f; // E = 320, spacing 10
    TheView->Pivot = MPoint3{-4, 7, 0};
    TheView->Update();
    DrawWorldGrid(Surface, *TheView, *TheSettings);
    std::vector<MDrawOperation> drawn = Drawn(Surface);
    ASSERT_EQ(drawn.size(), 2u * 65u);
    // The centre is (0, 0): the first direction's lines stand at x = -320 + 10 i.
    EXPECT_EQ(drawn[0].Width, 1.0f);  // x = -320
    EXPECT_EQ(drawn[2].Width, 2.0f);  // x = -300
    EXPECT_EQ(drawn[32].Width, 3.0f); // x = 0
    EXPECT_EQ(drawn[42].Width, 2.0f); // x = 100
    EXPECT_EQ(drawn[43].Width, 1.0f);
    EXPECT_TRUE(Same(drawn[32], Line(Screen({0, -320, 0}), Screen({0, 320, 0}), 3, Grid)));
}

TEST_F(SceneWorld, InTheTopViewTheGridLiesInThePlaneYZero) {
    TheView->Zoom = 0.05f;
    TheView->SetStandardView(ViewTop);
    DrawWorldGrid(Surface, *TheView, *TheSettings);
    std::vector<MDrawOperation> expected;
    for (int a = -30; a <= 30; a += 10)
        expected.push_back(
            Line(Screen({float(a), 0, -30}), Screen({float(a), 0, 30}), a == 0 ? 3 : 1, Grid));
    for (int b = -30; b <= 30; b += 10)
        expected.push_back(
            Line(Screen({-30, 0, float(b)}), Screen({30, 0, float(b)}), b == 0 ? 3 : 1, Grid));
    EXPECT_TRUE(SameOps(Drawn(Surface), expected));
    EXPECT_NEAR(expected[0].Y1 - expected[0].Y2, 1200, 1e-2) << "seen square on from above";
}

TEST_F(SceneWorld, InTheFrontViewTheGridLiesInThePlaneZZero) {
    TheView->Zoom = 0.05f;
    TheView->Pivot = MPoint3{0, 0, 77};
    TheView->Update();
    DrawWorldGrid(Surface, *TheView, *TheSettings);
    std::vector<MDrawOperation> drawn = Drawn(Surface);
    ASSERT_EQ(drawn.size(), 14u);
    EXPECT_TRUE(Same(drawn[0], Line(Screen({-30, -30, 0}), Screen({-30, 30, 0}), 1, Grid)));
    EXPECT_TRUE(Same(drawn[13], Line(Screen({-30, 30, 0}), Screen({30, 30, 0}), 1, Grid)));
}

// ---- Axes symbol and texts

TEST_F(SceneWorld, FrontViewDecorationsExactly) {
    DrawDecorations(Surface, *TheView, *TheSettings, ModeDraw);
    const float cx = 51.2f, cy = 428.8f, s = 3.2f;
    std::vector<MDrawOperation> expected = {
        // x: a line to the right, a cross beyond it
        Line(cx, cy, 76.8f, cy, 2, Info), Line(83.2f - s, cy - s, 83.2f + s, cy + s, 2, Info),
        Line(83.2f - s, cy + s, 83.2f + s, cy - s, 2, Info),
        // y: a line upwards, a fork beyond it
        Line(cx, cy, cx, 403.2f, 2, Info), Line(cx, 396.8f, cx - s, 396.8f - s, 2, Info),
        Line(cx, 396.8f, cx + s, 396.8f - s, 2, Info), Line(cx, 396.8f, cx, 396.8f + s, 2, Info),
        // z: seen end-on, no length; its Z on the centre
        Line(cx, cy, cx, cy, 2, Info), Line(cx - s, cy - s, cx + s, cy - s, 2, Info),
        Line(cx + s, cy - s, cx - s, cy + s, 2, Info),
        Line(cx - s, cy + s, cx + s, cy + s, 2, Info), Circle(cx, cy, 12, false, 2, Info),
        Text(51, 445, 640, 480, u"Front view", 20, Info),
        Text(12, 12, 640, 480, u"DRAW FREEHAND", 40, Info),
        Text(12, 57, 640, 480, u"Use your mouse to sketch\nPress E to edit your sketch", 20, Info)};
    EXPECT_TRUE(SameOps(Drawn(Surface), expected));
}

TEST_F(SceneWorld, LabelOfEachStandardViewIsDrawnAboveTheBottom) {
    for (int32_t v = 0; v < StandardViewCount; v++) {
        TheView->SetStandardView(v);
        Surface.OperationCount = 0;
        DrawDecorations(Surface, *TheView, *TheSettings, ModeEditRoll);
        std::vector<MDrawOperation> drawn = Drawn(Surface);
        ASSERT_EQ(drawn.size(), 15u) << v;
        EXPECT_TRUE(Same(drawn[12], Text(51, 445, 640, 480, StandardViews[v].Label, 20, Info)))
            << v;
        EXPECT_TRUE(Same(drawn[13], Text(12, 12, 640, 480, u"EDIT ROLL", 40, Info))) << v;
    }
    TheView->SetRotation(YawPitchRoll(0.7853982f, 0.5f, 0));
    Surface.OperationCount = 0;
    DrawDecorations(Surface, *TheView, *TheSettings, ModeEditRoll);
    EXPECT_EQ(Drawn(Surface).size(), 14u) << "between views there is no label";
}

TEST_F(SceneWorld, AxesSymbolFollowsTheRotation) {
    TheView->SetStandardView(ViewTop);
    DrawDecorations(Surface, *TheView, *TheSettings, ModeDraw);
    std::vector<MDrawOperation> drawn = Drawn(Surface);
    // Seen from above, y is end-on and z points up the screen.
    EXPECT_TRUE(Same(drawn[0], Line(51.2f, 428.8f, 76.8f, 428.8f, 2, Info)));
    EXPECT_TRUE(Same(drawn[3], Line(51.2f, 428.8f, 51.2f, 428.8f, 2, Info)));
    EXPECT_TRUE(Same(drawn[7], Line(51.2f, 428.8f, 51.2f, 403.2f, 2, Info)));
}

TEST_F(SceneWorld, ModeAndHelpTextsOfEachMode) {
    struct Case {
        int32_t Mode;
        const char16_t* Name;
    } cases[] = {{ModeDraw, u"DRAW FREEHAND"},
                 {ModeEditSketch, u"EDIT SKETCH"},
                 {ModeEditRoll, u"EDIT ROLL"}};
    for (const Case& c : cases) {
        Surface.OperationCount = 0;
        DrawDecorations(Surface, *TheView, *TheSettings, c.Mode);
        std::vector<MDrawOperation> drawn = Drawn(Surface);
        ASSERT_EQ(drawn.size(), 15u);
        EXPECT_TRUE(Same(drawn[13], Text(12, 12, 640, 480, c.Name, 40, Info)));
        EXPECT_TRUE(Same(drawn[14], Text(12, 57, 640, 480, HelpText(c.Mode), 20, Info)));
    }
    Surface.OperationCount = 0;
    DrawDecorations(Surface, *TheView, *TheSettings, 7);
    std::vector<MDrawOperation> unknown = Drawn(Surface);
    ASSERT_EQ(unknown.size(), 14u) << "no help for an unknown mode";
    EXPECT_TRUE(Same(unknown[13], Text(12, 12, 640, 480, u"UNKNOWN MODE", 40, Info)));
    TheSettings->ShowHelpTexts = false;
    Surface.OperationCount = 0;
    DrawDecorations(Surface, *TheView, *TheSettings, ModeDraw);
    EXPECT_EQ(Drawn(Surface).size(), 14u);
}

TEST_F(SceneWorld, DecorationsScaleWithTheWindowsWidthAndTakeTheInfoColour) {
    TheView->SetViewport(1000, 500);
    TheSettings->ColourInfo = MColour{1, 2, 3, 255};
    DrawDecorations(Surface, *TheView, *TheSettings, ModeDraw);
    std::vector<MDrawOperation> drawn = Drawn(Surface);
    MColour info{1, 2, 3, 255};
    EXPECT_TRUE(Same(drawn[0], Line(80, 420, 120, 420, 2, info))); // r = 40, centre (80, 420)
    EXPECT_TRUE(Same(drawn[11], Circle(80, 420, 20, false, 2, info)));
    EXPECT_TRUE(Same(drawn[12], Text(80, 465, 1000, 500, u"Front view", 20, info)));
    EXPECT_TRUE(Same(drawn[13], Text(20, 20, 1000, 500, u"DRAW FREEHAND", 40, info)));
}

#endif
