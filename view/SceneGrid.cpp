// The view's decorations: the world grid in the plane seen most squarely,
// the axes symbol, the label of a standard view, the mode text and the help
// text.

#include "view/Scene.h"

#include "drawing/MDrawSurface.h"
#include "foundation/WMode.h"
#include "view/WView.h"

#include <cmath>

static const char16_t* const DecorationFont = u"Segoe UI Light";

// ---- Axes and labels

WScreenAxes ScreenAxes(const MMatrix& rotation) {
    static const MPoint3 units[3] = {{1, 0, 0}, {0, 1, 0}, {0, 0, 1}};
    WScreenAxes axes;
    for (int32_t k = 0; k < 3; k++) {
        axes.Axis[k] = Transform(rotation, units[k]);
        Normalize3(axes.Axis[k]);
        axes.Length[k] = Length2(MPoint2{axes.Axis[k].x, axes.Axis[k].y});
    }
    return axes;
}

// The first match wins: near a standard view the end-on axis has a tiny
// projection of any direction, so the tests that do not look at it come first.
const char16_t* ViewLabel(const WScreenAxes& axes) {
    const MPoint3& x = axes.Axis[0];
    const MPoint3& y = axes.Axis[1];
    const MPoint3& z = axes.Axis[2];
    if (x.x > 0.95f && y.y > 0.95f) return u"Front view";
    if (x.x < -0.95f && y.y > 0.95f) return u"Back view";
    if (z.x > 0.95f && y.y > 0.95f) return u"Right view";
    if (z.x < -0.95f && y.y > 0.95f) return u"Left view";
    if (x.x > 0.95f && z.y > 0.95f) return u"Top view";
    if (x.x > 0.95f && z.y < -0.95f) return u"Bottom view";
    return nullptr;
}

const char16_t* HelpText(int32_t mode) {
    switch (mode) {
    case ModeDraw:
        return u"Use your mouse to sketch\nPress E to edit your sketch";
    case ModeEditSketch:
        return u"Click and drag the control points with your mouse\nRight click to delete a "
               u"point\nPress D to go back to drawing";
    case ModeEditRoll:
        return u"Rotate with your mouse, by holding down <Ctrl>\nPress <F1> to <F6> for standard "
               u"views\nPress <F11> for the options dialog";
    default:
        return nullptr;
    }
}

// ---- Grid

MColour BlendColour(MColour a, MColour b, float factor) {
    auto channel = [factor](uint8_t from, uint8_t to) {
        return uint8_t(float(from) + (float(to) - float(from)) * factor);
    };
    return MColour{channel(a.b, b.b), channel(a.g, b.g), channel(a.r, b.r), channel(a.a, b.a)};
}

float GridLineWidth(int32_t coordinate) {
    if (coordinate == 0) return 3;
    if (coordinate % 100 == 0) return 2;
    return 1;
}

// A pivot coordinate rounded towards zero to a multiple of the spacing,
// kept inside a range where the line coordinates cannot overflow.
static int32_t GridCentre(float coordinate, int32_t spacing) {
    double centre = std::trunc(double(coordinate / float(spacing))) * spacing;
    if (!(centre > -1e9)) return centre < 0 ? -1000000000 : 0;
    if (centre > 1e9) return 1000000000;
    return int32_t(centre);
}

static float AxisValue(const MPoint3& p, int32_t axis) {
    return axis == 0 ? p.x : axis == 1 ? p.y : p.z;
}

WGridPlan PlanGrid(const WView& view, const WSettings& settings) {
    WGridPlan plan;
    WScreenAxes axes = ScreenAxes(view.Rotation);
    float lx = axes.Length[0], ly = axes.Length[1], lz = axes.Length[2];
    if (lz < lx && lz < ly) {
        plan.Plane = GridPlaneZ, plan.First = 0, plan.Second = 1;
    } else if (ly < lx && ly < lz) {
        plan.Plane = GridPlaneY, plan.First = 0, plan.Second = 2;
    } else {
        plan.Plane = GridPlaneX, plan.First = 1, plan.Second = 2;
    }
    float shortest = lx < ly ? lx : ly;
    if (lz < shortest) shortest = lz;
    // Full strength seen square on; gone once the plane tilts so far that
    // the shortest axis reaches half its length.
    float factor = 2 * shortest;
    if (factor > 1) factor = 1;
    plan.Colour = BlendColour(settings.ColourGrid, settings.ColourBackground, factor);

    float larger =
        view.ViewportWidth > view.ViewportHeight ? view.ViewportWidth : view.ViewportHeight;
    float extent = larger * view.Zoom;
    // So far out that the lines would merge: no grid at all.
    if (!(extent < 100000)) return plan;
    int32_t e = int32_t(extent);
    plan.Spacing = e < 1001 ? 10 : e < 10001 ? 100 : 1000;
    plan.Extent = e / plan.Spacing * plan.Spacing;
    plan.CentreFirst = GridCentre(AxisValue(view.Pivot, plan.First), plan.Spacing);
    plan.CentreSecond = GridCentre(AxisValue(view.Pivot, plan.Second), plan.Spacing);
    plan.Visible = true;
    return plan;
}

// A world point of the grid's plane from its two in-plane coordinates.
static MPoint3 PlanePoint(const WGridPlan& plan, int32_t first, int32_t second) {
    float values[3] = {0, 0, 0};
    values[plan.First] = float(first);
    values[plan.Second] = float(second);
    return MPoint3{values[0], values[1], values[2]};
}

static MPoint2 OnScreen(const WView& view, const MPoint3& world) {
    MPoint3 screen = view.ToScreen(world);
    return MPoint2{screen.x, screen.y};
}

// First the lines at each value of the first coordinate, then those at each
// value of the second; each line spans the whole grid.
void DrawWorldGrid(MDrawSurface& surface, const WView& view, const WSettings& settings) {
    WGridPlan plan = PlanGrid(view, settings);
    if (!plan.Visible) return;
    int32_t e = plan.Extent;
    for (int32_t i = -e; i <= e; i += plan.Spacing) {
        int32_t a = plan.CentreFirst + i;
        surface.DrawLine(OnScreen(view, PlanePoint(plan, a, plan.CentreSecond - e)),
                         OnScreen(view, PlanePoint(plan, a, plan.CentreSecond + e)),
                         GridLineWidth(a), plan.Colour);
    }
    for (int32_t i = -e; i <= e; i += plan.Spacing) {
        int32_t b = plan.CentreSecond + i;
        surface.DrawLine(OnScreen(view, PlanePoint(plan, plan.CentreFirst - e, b)),
                         OnScreen(view, PlanePoint(plan, plan.CentreFirst + e, b)),
                         GridLineWidth(b), plan.Colour);
    }
}

// ---- Axes symbol and texts

// The letter of an axis as strokes around its centre c, reaching s from it:
// x a cross of two diagonals, y a fork of three strokes, z the three strokes
// of a Z.
static void DrawAxisLetter(MDrawSurface& surface, int32_t axis, MPoint2 c, float s,
                           MColour colour) {
    MPoint2 upperLeft{c.x - s, c.y - s}, upperRight{c.x + s, c.y - s};
    MPoint2 lowerLeft{c.x - s, c.y + s}, lowerRight{c.x + s, c.y + s};
    if (axis == 0) {
        surface.DrawLine(upperLeft, lowerRight, 2, colour);
        surface.DrawLine(lowerLeft, upperRight, 2, colour);
    } else if (axis == 1) {
        surface.DrawLine(c, upperLeft, 2, colour);
        surface.DrawLine(c, upperRight, 2, colour);
        surface.DrawLine(c, MPoint2{c.x, c.y + s}, 2, colour);
    } else {
        surface.DrawLine(upperLeft, upperRight, 2, colour);
        surface.DrawLine(upperRight, lowerLeft, 2, colour);
        surface.DrawLine(lowerLeft, lowerRight, 2, colour);
    }
}

void DrawDecorations(MDrawSurface& surface, const WView& view, const WSettings& settings,
                     int32_t mode) {
    float width = view.ViewportWidth, height = view.ViewportHeight;
    MColour info = settings.ColourInfo;
    WScreenAxes axes = ScreenAxes(view.Rotation);

    float r = float(double(width) * 0.04);
    float letterDistance = float(double(width) * 0.05);
    float letterSize = float(double(width) * 0.005);
    MPoint2 centre{2 * r, height - 2 * r};
    for (int32_t k = 0; k < 3; k++) {
        // Screen y runs down, the view's y up.
        MPoint2 direction{axes.Axis[k].x, -axes.Axis[k].y};
        surface.DrawLine(centre, centre + direction * r, 2, info);
        DrawAxisLetter(surface, k, centre + direction * letterDistance, letterSize, info);
    }
    surface.DrawCircle(centre, int32_t(r / 2), info, false, 2, true);

    MString font(DecorationFont);
    if (const char16_t* label = ViewLabel(axes))
        surface.DrawText(MDrawRect{2 * r, height - 35, width, height}, MString(label), font, 20,
                         info, AlignNear, AlignNear, false);
    float margin = float(double(width) * 0.02);
    surface.DrawText(MDrawRect{margin, margin, width, height}, ModeText(mode), font, 40, info,
                     AlignNear, AlignNear, false);
    const char16_t* help = HelpText(mode);
    if (settings.ShowHelpTexts && help)
        surface.DrawText(MDrawRect{margin, margin + 45, width, height}, MString(help), font, 20,
                         info, AlignNear, AlignNear, false);
}
