// The sketch on the screen: the ghost, the path as lines or as the roll
// ribbon, the point marks, the handles and roll tip of the selected point,
// and the stroke being drawn.

#include "view/Scene.h"

#include "drawing/MDrawSurface.h"
#include "foundation/WMode.h"
#include "sketch/WSketch.h"
#include "view/WView.h"

#include <cmath>

// The x and y of view.ToScreen(world), worked here so that the frame's inner
// loops need no call: the same products and sums in the same order, so the
// same bits.
static inline MPoint2 OnScreen(const WView& view, const MPoint3& world) {
    const MMatrix& m = view.WorldToScreen;
    if (m.Identity) return MPoint2{world.x, world.y};
    const float(*M)[4] = m.M;
    return MPoint2{world.x * M[0][0] + world.y * M[1][0] + world.z * M[2][0] + M[3][0],
                   world.x * M[0][1] + world.y * M[1][1] + world.z * M[2][1] + M[3][1]};
}

// BezierPoint(controls, 0, 3, t) without its recursion: the rows of de
// Casteljau's scheme blend the same values in the same order, so the point
// is the same to the bit.
static inline MPoint3 CubicPoint(const MPoint3 controls[4], float t) {
    if (t <= 0) return controls[0];
    if (t >= 1) return controls[3];
    float s = 1 - t;
    auto blend = [s, t](const MPoint3& a, const MPoint3& b) {
        return MPoint3{s * a.x + t * b.x, s * a.y + t * b.y, s * a.z + t * b.z};
    };
    MPoint3 a = blend(controls[0], controls[1]);
    MPoint3 b = blend(controls[1], controls[2]);
    MPoint3 c = blend(controls[2], controls[3]);
    return blend(blend(a, b), blend(b, c));
}

static MColour WithAlpha(MColour colour, uint8_t alpha) {
    colour.a = alpha;
    return colour;
}

// The four controls of the segment that arrives at records[index].
static void SegmentControls(const WSketchPoint* records, int32_t index, MPoint3 controls[4]) {
    controls[0] = records[index - 1].Position;
    controls[1] = records[index - 1].HandleOut;
    controls[2] = records[index].HandleIn;
    controls[3] = records[index].Position;
}

// The X axis of a record's frame: the direction its roll gives the ribbon.
static MPoint3 FrameX(const WSketchPoint& record) {
    MMatrix frame = MakePointFrame(record, false, false);
    return MPoint3{frame.M[0][0], frame.M[0][1], frame.M[0][2]};
}

// CurveSteps(controls) worked with CubicPoint: the chords of the length
// measure run through the same points (the blend of the two quadratics is
// the cubic's last row), summed in the same order, and the count follows
// the same rule of eight steps per started four units.
static int32_t SegmentSteps(const MPoint3 controls[4]) {
    static const float quarters[5] = {0.0f, 0.25f, 0.5f, 0.75f, 1.0f};
    float length = 0;
    MPoint3 previous = controls[0];
    for (int32_t k = 1; k < 5; k++) {
        MPoint3 next = CubicPoint(controls, quarters[k]);
        length += Length3(next - previous);
        previous = next;
    }
    float quarter = float(double(length) * 0.25);
    double steps = std::ceil(double(quarter)) * 8;
    if (!(steps >= 2)) return 2;
    if (steps > 1000) return 1000;
    return int32_t(steps);
}

// ---- Path as lines

// The segment that arrives at records[index], as one line or as CurveSteps
// lines on the Bezier; a KindMove record has none.
static void DrawSegment(MDrawSurface& surface, const WView& view, const WSketchPoint* records,
                        int32_t index, float width, MColour colour) {
    const WSketchPoint& record = records[index];
    if (record.Kind == KindLine) {
        surface.DrawLine(OnScreen(view, records[index - 1].Position),
                         OnScreen(view, record.Position), width, colour);
    } else if (record.Kind == KindCurve) {
        MPoint3 controls[4];
        SegmentControls(records, index, controls);
        int32_t steps = SegmentSteps(controls);
        MPoint2 previous = OnScreen(view, controls[0]);
        for (int32_t k = 1; k <= steps; k++) {
            MPoint2 next = OnScreen(view, CubicPoint(controls, float(k) / float(steps)));
            surface.DrawLine(previous, next, width, colour);
            previous = next;
        }
    }
}

void DrawGhost(MDrawSurface& surface, const WView& view, const WSettings& settings,
               const WSketchPoint* records, int32_t count) {
    if (!records || count < 1) return;
    MColour colour = WithAlpha(settings.ColourGhost, 128);
    float width = float(2 * settings.PenSize);
    for (int32_t i = 1; i < count; i++)
        DrawSegment(surface, view, records, i, width, colour);
}

// ---- Path as the roll ribbon

static const double RibbonHalfWidth = 4;

static void DrawRibbonLine(MDrawSurface& surface, const WView& view, const WSketchPoint& from,
                           const WSketchPoint& to, float width, MColour colour) {
    MPoint3 fromX = FrameX(from), toX = FrameX(to);
    MPoint3 fromPlus = from.Position + fromX * RibbonHalfWidth;
    MPoint3 fromMinus = from.Position - fromX * RibbonHalfWidth;
    MPoint3 toPlus = to.Position + toX * RibbonHalfWidth;
    MPoint3 toMinus = to.Position - toX * RibbonHalfWidth;
    surface.DrawLine(OnScreen(view, fromPlus), OnScreen(view, toPlus), width, colour);
    surface.DrawLine(OnScreen(view, fromMinus), OnScreen(view, toMinus), width, colour);
    // One tie for each started four units of the rail, the last at the
    // segment's end; held to the sampling limit of a curve.
    double ties = std::ceil(double(Length3(toPlus - fromPlus)) * 0.25);
    if (!(ties <= 1000)) ties = 1000;
    int32_t n = int32_t(ties);
    for (int32_t k = 1; k <= n; k++) {
        double t = double(float(k) / float(n));
        MPoint3 plus = fromPlus + (toPlus - fromPlus) * t;
        MPoint3 minus = fromMinus + (toMinus - fromMinus) * t;
        surface.DrawLine(OnScreen(view, plus), OnScreen(view, minus), width, colour);
    }
}

// A second Bezier beside the path, its controls shifted by the frames of
// their own records, gives at each step the side on which the ribbon lies;
// the rails keep the half width from the path itself.
static void DrawRibbonCurve(MDrawSurface& surface, const WView& view, const WSketchPoint* records,
                            int32_t index, float width, MColour colour) {
    MPoint3 controls[4];
    SegmentControls(records, index, controls);
    MPoint3 fromShift = FrameX(records[index - 1]) * RibbonHalfWidth;
    MPoint3 toShift = FrameX(records[index]) * RibbonHalfWidth;
    MPoint3 beside[4] = {controls[0] + fromShift, controls[1] + fromShift, controls[2] + toShift,
                         controls[3] + toShift};
    int32_t steps = SegmentSteps(controls);
    MPoint2 previousPlus, previousMinus;
    for (int32_t k = 0; k <= steps; k++) {
        float t = float(k) / float(steps);
        MPoint3 p = CubicPoint(controls, t);
        MPoint3 side = CubicPoint(beside, t) - p;
        Normalize3(side);
        MPoint2 plus = OnScreen(view, p + side * RibbonHalfWidth);
        MPoint2 minus = OnScreen(view, p - side * RibbonHalfWidth);
        if (k > 0) {
            surface.DrawLine(previousPlus, plus, width, colour);
            surface.DrawLine(previousMinus, minus, width, colour);
            if (k % 8 == 0) surface.DrawLine(plus, minus, width, colour);
        }
        previousPlus = plus;
        previousMinus = minus;
    }
}

// ---- Marks, handles and roll tip

static void DrawPointMarks(MDrawSurface& surface, const WView& view, const WSettings& settings,
                           const WSketch& sketch, int32_t mode) {
    MColour selected = mode == ModeEditSketch ? settings.ColourBezier : settings.ColourRoll;
    MColour other = WithAlpha(settings.ColourSketch, 128);
    float pointSize = float(settings.PointSize);
    for (int32_t i = 0; i < sketch.PointCount; i++) {
        const WSketchPoint& record = sketch.Points[i];
        MColour colour = i == sketch.Current ? selected : other;
        MPoint2 p = OnScreen(view, record.Position);
        if (record.Kind == KindMove) {
            surface.DrawCircle(p, int32_t(double(settings.PointSize) * 1.6), colour, false,
                               float(settings.PenSize), true);
        } else if (record.Kind == KindLine) {
            surface.DrawRectangle(
                MDrawRect{p.x - pointSize, p.y - pointSize, p.x + pointSize, p.y + pointSize},
                colour);
        } else if (record.Kind == KindCurve) {
            surface.DrawCircle(p, settings.PointSize, colour, true, 2, true);
        }
    }
}

// The line from the point towards a mark at target, ending pointSize short of
// it at the mark's edge. False when the target lies on the point: there is no
// direction, and no line.
static bool DrawLineToMark(MDrawSurface& surface, MPoint2 point, MPoint2 target, float pointSize,
                           float width, MColour colour) {
    MPoint2 direction = target - point;
    if (IsNearZero(direction.x) && IsNearZero(direction.y)) return false;
    Normalize2(direction);
    surface.DrawLine(point, target - direction * double(pointSize), width, colour);
    return true;
}

// One handle: its line, then its mark. A square is turned so that a corner
// points along the handle's direction (angle atan2(dx, dy)).
static void DrawHandle(MDrawSurface& surface, const WSettings& settings, MPoint2 point,
                       MPoint2 handle, bool round, float angle) {
    MColour colour = settings.ColourBezier;
    float pen = float(settings.PenSize);
    DrawLineToMark(surface, point, handle, float(settings.PointSize), pen, colour);
    if (round)
        surface.DrawCircle(handle, settings.PointSize, colour, false, pen, true);
    else
        surface.DrawSquare(handle, settings.PointSize, colour, false, pen, angle, true);
}

static void DrawHandles(MDrawSurface& surface, const WView& view, const WSettings& settings,
                        const WSketch& sketch) {
    int32_t current = sketch.Current;
    const WSketchPoint& record = sketch.Points[current];
    int32_t twin = sketch.FindTwin(current);
    // A closed curve's first record shows the handle-in of the segment that
    // closes the curve at its twin.
    bool showIn = record.Kind == KindCurve || (twin >= 0 && sketch.Points[twin].Kind == KindCurve);
    bool showOut = current + 1 < sketch.PointCount && sketch.Points[current + 1].Kind == KindCurve;
    bool round = record.Smooth && showIn && showOut;
    MPoint2 p = OnScreen(view, record.Position);
    if (showIn) {
        MPoint2 a = OnScreen(view, record.HandleIn);
        DrawHandle(surface, settings, p, a, round, std::atan2(a.x - p.x, a.y - p.y));
    }
    if (showOut) {
        MPoint2 a = OnScreen(view, record.HandleOut);
        DrawHandle(surface, settings, p, a, round, std::atan2(p.x - a.x, p.y - a.y));
    }
}

static void DrawRollTip(MDrawSurface& surface, const WView& view, const WSettings& settings,
                        const WSketchPoint& record) {
    MPoint2 p = OnScreen(view, record.Position);
    MPoint2 tip = OnScreen(view, record.Position + FrameX(record) * 20.0);
    MColour colour = settings.ColourRoll;
    float pen = float(settings.PenSize);
    if (!DrawLineToMark(surface, p, tip, float(settings.PointSize), pen, colour)) return;
    surface.DrawCircle(tip, settings.PointSize, colour, false, pen, true);
}

// ---- The sketch

void DrawSketch(MDrawSurface& surface, const WView& view, const WSettings& settings,
                const WSketch& sketch, int32_t mode) {
    const WSketchPoint* records = sketch.Points.Data;
    int32_t count = sketch.PointCount;
    // A lone point is not drawn at all, mark included, until there are two.
    if (!records || count < 2) return;
    float pen = float(settings.PenSize);
    for (int32_t i = 1; i < count; i++) {
        if (mode == ModeEditRoll) {
            if (records[i].Kind == KindLine)
                DrawRibbonLine(surface, view, records[i - 1], records[i], pen,
                               settings.ColourSketch);
            else if (records[i].Kind == KindCurve)
                DrawRibbonCurve(surface, view, records, i, pen, settings.ColourSketch);
            continue;
        }
        bool arrivesAtCurrent = mode == ModeEditSketch && i == sketch.Current;
        DrawSegment(surface, view, records, i, pen,
                    arrivesAtCurrent ? settings.ColourBezier : settings.ColourSketch);
    }
    if (mode != ModeEditSketch && mode != ModeEditRoll) return;
    DrawPointMarks(surface, view, settings, sketch, mode);
    bool hasCurrent = sketch.Current >= 0 && sketch.Current < count;
    if (!hasCurrent) return;
    if (mode == ModeEditSketch) DrawHandles(surface, view, settings, sketch);
    if (mode == ModeEditRoll) DrawRollTip(surface, view, settings, records[sketch.Current]);
}

void DrawRunningStroke(MDrawSurface& surface, const WView& view, const WSettings& settings,
                       const WSketchPoint* samples, int32_t count) {
    if (!samples || count < 2) return;
    for (int32_t i = 1; i < count; i++)
        surface.DrawLine(OnScreen(view, samples[i - 1].Position),
                         OnScreen(view, samples[i].Position), float(settings.PenSize),
                         settings.ColourSketch);
    // The area in which coming back closes the stroke.
    surface.DrawCircle(OnScreen(view, samples[0].Position),
                       int32_t(double(settings.PointSize) * 1.6),
                       WithAlpha(settings.ColourSketch, 128), false, 2, true);
}
