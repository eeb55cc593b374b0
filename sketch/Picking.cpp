// What lies under the cursor in the edit modes: points, handles and roll tips
// by their screen distance, the path itself for a click between points, and
// the place on the path where a new point goes in.

#include "sketch/PointEditing.h"

#include "foundation/Settings.h"
#include "foundation/WMode.h"
#include "view/WView.h"

#include <new>

namespace {

float Squared(const MPoint2& p) {
    return p.x * p.x + p.y * p.y;
}

// The four controls of the segment that arrives at record index.
void SegmentControls(const WSketch& sketch, int32_t index, MPoint3 controls[4]) {
    controls[0] = sketch.Points[index - 1].Position;
    controls[1] = sketch.Points[index - 1].HandleOut;
    controls[2] = sketch.Points[index].HandleIn;
    controls[3] = sketch.Points[index].Position;
}

MPoint3 PartPosition(const WSketchPoint& record, int32_t part) {
    switch (part) {
    case 0:
        return record.Position;
    case 1:
        return record.HandleIn;
    case 2:
        return record.HandleOut;
    default:
        return RollTip(record);
    }
}

// ---- Curve hit

// A click on a Bezier segment picks the handle whose end of the segment the
// click lies nearer to, and gives that handle's screen position, where the
// pointer goes so that the rest of the drag moves it from where it is. The
// hit radius is the square root of PointSize: a curve is thin on purpose, so
// that a click beside it pans.
bool HitBezier(WSketch& sketch, int32_t index, const MPoint2& mouse, float size, MPoint2& pointer) {
    MPoint3 controls[4];
    SegmentControls(sketch, index, controls);
    int32_t steps = CurveSteps(controls);
    MPoint2 previous = ScreenPoint(controls[0]);
    bool hit = false;
    for (int32_t k = 1; k <= steps && !hit; k++) {
        MPoint2 next = ScreenPoint(BezierPoint(controls, 0, 3, float(k) / float(steps)));
        MPoint2 closest = ClosestOnSegment2(previous, next, mouse);
        if (size > Squared(closest - mouse)) hit = true;
        previous = next;
    }
    if (!hit) return false;

    sketch.Current = index;
    sketch.CurrentPart = 0;
    // The nearest control decides; on a tie the earlier one.
    int32_t nearest = 0;
    float nearestDistance = 0;
    for (int32_t c = 0; c < 4; c++) {
        float d = Length2(ScreenPoint(controls[c]) - mouse);
        if (c == 0 || d < nearestDistance) {
            nearest = c;
            nearestDistance = d;
        }
    }
    MPoint3 handle;
    if (nearest < 2) {
        sketch.Current = index - 1;
        sketch.CurrentPart = 2;
        handle = sketch.Points[index - 1].HandleOut;
    } else {
        sketch.Current = index;
        sketch.CurrentPart = 1;
        handle = sketch.Points[index].HandleIn;
    }
    pointer = ScreenPoint(handle);
    return true;
}

// A click near a straight segment, within its half nearer to one end, bends
// it: both handles go onto the line at the click's fraction from that end,
// so the path looks the same, and the handle at the click is selected. The
// line becomes a curve of two corners, and its twins follow, so a closed
// curve stays one point at its seam.
bool HitLine(WSketch& sketch, int32_t index, const MPoint2& mouse, float size) {
    WSketchPoint& from = sketch.Points[index - 1];
    WSketchPoint& to = sketch.Points[index];
    MPoint2 a = ScreenPoint(from.Position);
    MPoint2 b = ScreenPoint(to.Position);
    float length = Length2(b - a);
    if (!(length > 0)) return false;
    float ta = Length2(mouse - a) / length;
    float tb = Length2(mouse - b) / length;
    float fraction;
    int32_t select, part;
    if (ta < 0.5f) {
        MPoint2 on = a + (b - a) * ta;
        if (!(Length2(on - mouse) < size)) return false;
        fraction = ta;
        select = index - 1;
        part = 2;
    } else if (tb < 0.5f) {
        MPoint2 on = b + (a - b) * tb;
        if (!(Length2(on - mouse) < size)) return false;
        fraction = tb;
        select = index;
        part = 1;
    } else {
        return false;
    }

    int32_t fromTwin = sketch.FindTwin(index - 1);
    int32_t toTwin = sketch.FindTwin(index);
    to.Kind = KindCurve;
    from.Smooth = 0;
    to.Smooth = 0;
    to.HandleIn = to.Position + (from.Position - to.Position) * fraction;
    from.HandleOut = from.Position + (to.Position - from.Position) * fraction;
    if (fromTwin >= 0) {
        sketch.Points[fromTwin].HandleOut = from.HandleOut;
        sketch.Points[fromTwin].Smooth = 0;
    }
    if (toTwin >= 0) {
        sketch.Points[toTwin].HandleIn = to.HandleIn;
        sketch.Points[toTwin].Smooth = 0;
    }
    sketch.Current = select;
    sketch.CurrentPart = part;
    sketch.Commit();
    return true;
}

// ---- Insertion

// The world point under the screen point c of the piece A to B. The fraction
// is the mean of what the distances from both ends say, which stays right
// when the piece is foreshortened and c sits a little off it.
MPoint3 WorldOnPiece(const MPoint3& a, const MPoint3& b, const MPoint2& sa, const MPoint2& sb,
                     const MPoint2& c) {
    float length = Length2(sb - sa);
    float fromA = Length2(c - sa);
    if (IsNearZero(fromA) || IsNearZero(length)) return a;
    float fromB = Length2(c - sb);
    if (IsNearZero(fromB)) return b;
    float ra = fromA / length;
    float rb = fromB / length;
    float k = float(double((1 - rb) + ra) * 0.5);
    return a + (b - a) * k;
}

struct InsertPlace {
    bool Found = false;
    float Distance = 0; // squared screen distance of the place from the mouse
    int32_t Index = 0;  // the record at the segment's end
    float U = 0;        // fraction of the segment before the place
    MPoint3 Position, HandleIn, HandleOut;
};

void ConsiderLine(const WSketch& sketch, int32_t index, const MPoint2& mouse, InsertPlace& best) {
    const MPoint3& a = sketch.Points[index - 1].Position;
    const MPoint3& b = sketch.Points[index].Position;
    float length = Length3(b - a);
    if (IsNearZero(length)) return;
    MPoint2 sa = ScreenPoint(a), sb = ScreenPoint(b);
    MPoint2 c = ClosestOnSegment2(sa, sb, mouse);
    float distance = Squared(c - mouse);
    if (best.Found && !(distance < best.Distance)) return;
    MPoint3 w = WorldOnPiece(a, b, sa, sb, c);
    best.Found = true;
    best.Distance = distance;
    best.Index = index;
    best.U = Length3(w - a) / length;
    best.Position = w;
    best.HandleIn = w + (a - w) * 0.3;
    best.HandleOut = w + (b - w) * 0.3;
}

// A curve is searched as the chain of straight pieces it is drawn with. The
// new handles point along the piece, at 0.3 of the arc length measured on
// each side: an estimate, so the path moves a little.
void ConsiderCurve(const WSketch& sketch, int32_t index, const MPoint2& mouse, InsertPlace& best) {
    MPoint3 controls[4];
    SegmentControls(sketch, index, controls);
    float total = MeasureCubic(controls);
    if (IsNearZero(total)) return;
    int32_t steps = CurveSteps(controls);
    MPoint3 a = controls[0];
    MPoint2 sa = ScreenPoint(a);
    float before = 0;
    for (int32_t k = 1; k <= steps; k++) {
        MPoint3 b = BezierPoint(controls, 0, 3, float(k) / float(steps));
        MPoint2 sb = ScreenPoint(b);
        MPoint2 c = ClosestOnSegment2(sa, sb, mouse);
        float distance = Squared(c - mouse);
        if (!best.Found || distance < best.Distance) {
            MPoint3 w = WorldOnPiece(a, b, sa, sb, c);
            float u = (before + Length3(w - a)) / total;
            MPoint3 in = a - w;
            MPoint3 out = b - w;
            Normalize3(in);
            Normalize3(out);
            best.Found = true;
            best.Distance = distance;
            best.Index = index;
            best.U = u;
            best.Position = w;
            best.HandleIn = w + in * (double(u * total) * 0.3);
            best.HandleOut = w + out * (double((1 - u) * total) * 0.3);
        }
        before += Length3(b - a);
        a = b;
        sa = sb;
    }
}

// Raises the capacity by the larger of 1000 and what is missing. A failure
// leaves the array as it was, so the insertion ends with nothing changed.
bool MakeRoom(MVector<WSketchPoint>& points, int32_t needed) {
    if (needed <= points.Count) return true;
    int32_t missing = needed - points.Count;
    MVector<WSketchPoint> bigger;
    if (!bigger.SetCount(points.Count + (missing > 1000 ? missing : 1000))) return false;
    for (int32_t i = 0; i < points.Count; i++)
        bigger[i] = points[i];
    WSketchPoint* data = points.Data;
    points.Data = bigger.Data;
    points.Count = bigger.Count;
    bigger.Data = data; // the old block goes with bigger
    bigger.Count = 0;
    return true;
}

} // namespace

// ---- Shared helpers

MPoint3 RollTip(const WSketchPoint& record) {
    MMatrix frame = MakePointFrame(record, false, false);
    frame.M[3][0] = frame.M[3][1] = frame.M[3][2] = 0;
    return Transform(frame, MPoint3{1, 0, 0}) * 20.0 + record.Position;
}

MPoint2 ScreenPoint(const MPoint3& world) {
    MPoint3 s = Transform(TheView->WorldToScreen, world);
    return MPoint2{s.x, s.y};
}

// ---- The members

// Handles and roll tips count only on the record selected before, so a click
// first selects a point and only then its handles; Shift (preferLater) lets
// the later of two records at the same place win, which reaches the last
// record of a closed curve and the lower of two stacked curve ends.
bool WSketch::HitTest(const MPoint2& mouse, bool preferLater) {
    int32_t old = Current;
    Current = -1;
    if (!Points.Data || !TheView || !TheSettings) return false;
    float size = float(TheSettings->PointSize);
    float best = -1;
    for (int32_t i = 0; i < PointCount; i++) {
        for (int32_t part = 0; part <= 3; part++) {
            if (part != 0 && i != old) continue;
            if (TheMode == ModeEditSketch && part == 3) continue;
            if (TheMode == ModeEditRoll && (part == 1 || part == 2)) continue;
            float d = Length2(ScreenPoint(PartPosition(Points[i], part)) - mouse);
            if (!(d <= size)) continue;
            if (best < 0 || best > d || (preferLater && best >= d)) {
                Current = i;
                CurrentPart = part;
                best = d;
            }
        }
    }
    return Current >= 0;
}

// The first segment hit, in the order of the records, takes the click.
bool WSketch::HitCurve(const MPoint2& mouse, MPoint2* pointer) {
    Current = -1;
    if (PointCount < 2 || !Points.Data || !TheView || !TheSettings) return false;
    float size = float(TheSettings->PointSize);
    for (int32_t i = 1; i < PointCount; i++) {
        if (Points[i].Kind == KindCurve) {
            MPoint2 handle;
            if (HitBezier(*this, i, mouse, size, handle)) {
                if (pointer) *pointer = handle;
                return true;
            }
        } else if (Points[i].Kind == KindLine) {
            if (HitLine(*this, i, mouse, size)) return false;
        }
    }
    return false;
}

// The new point goes on the segment nearest to the mouse (the earlier on a
// tie) when it lies within 4 PenSize of squared screen distance. The handles
// of the segment's ends are shortened to the part of the segment they now
// serve, which keeps a line straight and a curve close to what it was. The
// new record takes the place, and the roll, of the segment's end record.
void WSketch::InsertPoint(const MPoint2& mouse) {
    if (PointCount < 2 || !Points.Data || !TheView || !TheSettings) return;
    InsertPlace best;
    for (int32_t i = 1; i < PointCount; i++) {
        if (Points[i].Kind == KindLine)
            ConsiderLine(*this, i, mouse, best);
        else if (Points[i].Kind == KindCurve)
            ConsiderCurve(*this, i, mouse, best);
    }
    if (!best.Found || !(best.Distance <= 4.0f * float(TheSettings->PenSize))) return;
    if (!MakeRoom(Points, PointCount + 1)) return;

    int32_t index = best.Index;
    int32_t startTwin = FindTwin(index - 1);
    int32_t endTwin = FindTwin(index);
    WSketchPoint& start = Points[index - 1];
    WSketchPoint& end = Points[index];
    start.HandleOut = start.Position + (start.HandleOut - start.Position) * best.U;
    end.HandleIn = end.Position + (end.HandleIn - end.Position) * (1 - best.U);
    // The ends of a closed curve are one point: the seam keeps both handles.
    if (startTwin >= 0) Points[startTwin].HandleOut = start.HandleOut;
    if (endTwin >= 0) Points[endTwin].HandleIn = end.HandleIn;

    for (int32_t i = PointCount; i > index; i--)
        Points[i] = Points[i - 1];
    WSketchPoint& added = Points[index]; // still the displaced record, whose Roll stays
    added.Position = best.Position;
    added.HandleIn = best.HandleIn;
    added.HandleOut = best.HandleOut;
    added.Smooth = 1;
    added.Kind = KindCurve;
    PointCount++;
    Current = -1;
    Commit();
}
