// The two geometric helpers behind the key "o": a closed curve of four
// points becomes a circle, and otherwise the segment into the selected point
// becomes a circular arc between its two tangents.

#include "sketch/PointEditing.h"

#include <cmath>

namespace {

// The handle distance of a quarter circle of radius 1 is 4/3 tan(pi / 8).
const double EighthTurn = 0.3926991;
const float HalfTurn = 3.1415927f;

} // namespace

// Needs the curve of Current to be closed with five records (four points and
// the twin of the first) at one exact z. The circle has the mean centre and
// the mean distance of the four points as radius, starts at the top and runs
// clockwise in the plane of x and y. Rolls stay; all points become smooth.
bool WSketch::MakeCircle() {
    if (!Points.Data || Current < 0 || Current >= PointCount) return false;
    int32_t start = CurveStart(Current);
    int32_t end = CurveEnd(Current);
    if (start < 0 || end - start + 1 != 5 || FindTwin(start) != end) return false;
    float z = Points[start].Position.z;
    for (int32_t i = start; i <= end; i++)
        if (!(Points[i].Position.z == z)) return false;

    MPoint3 sum = Points[start].Position + Points[start + 1].Position + Points[start + 2].Position +
                  Points[start + 3].Position;
    MPoint3 c = sum * 0.25;
    float distances = 0;
    for (int32_t i = 0; i < 4; i++)
        distances += Length3(Points[start + i].Position - c);
    float r = float(double(distances) * 0.25);
    if (!(r > 0)) return false;
    float k = float(std::tan(EighthTurn) * double(r) * 4.0 / 3.0);

    // Position, then the offsets of HandleIn and HandleOut, along the
    // clockwise tangent of each point.
    const MPoint3 positions[4] = {
        {c.x, c.y + r, c.z}, {c.x + r, c.y, c.z}, {c.x, c.y - r, c.z}, {c.x - r, c.y, c.z}};
    const float in[4][2] = {{-k, 0}, {0, k}, {k, 0}, {0, -k}};
    for (int32_t i = 0; i < 4; i++) {
        WSketchPoint& p = Points[start + i];
        const MPoint3& q = positions[i];
        p.Position = q;
        p.HandleIn = MPoint3{q.x + in[i][0], q.y + in[i][1], q.z};
        p.HandleOut = MPoint3{q.x - in[i][0], q.y - in[i][1], q.z};
        p.Smooth = 1;
        p.Kind = i == 0 ? KindMove : KindCurve;
    }
    Points[end] = Points[start];
    Points[end].Kind = KindCurve;
    Commit();
    return true;
}

// Turns the segment into Current into an arc in the plane of x and y that
// leaves the previous point along its outgoing handle and arrives along the
// incoming one. Opposite tangents give a half circle over the chord; parallel
// ones with no crossing of the normals give false. Both handles are written
// with SetPoint, so the twins follow and each write commits on its own.
bool WSketch::MakeArc() {
    if (!Points.Data || Current < 0 || Current >= PointCount) return false;
    int32_t index = Current;
    if (index < 1) return false;
    const WSketchPoint& previous = Points[index - 1];
    const WSketchPoint& point = Points[index];
    if (point.Kind == KindMove) return false;
    if (!(point.Position.z == previous.Position.z)) return false;

    MPoint2 p1{previous.Position.x, previous.Position.y};
    MPoint2 p2{point.Position.x, point.Position.y};
    MPoint2 t1{previous.HandleOut.x - p1.x, previous.HandleOut.y - p1.y};
    MPoint2 t2{p2.x - point.HandleIn.x, p2.y - point.HandleIn.y};
    Normalize2(t1);
    Normalize2(t2);

    float angle, chords;
    if (IsNearZero(t1.x + t2.x) && IsNearZero(t1.y + t2.y)) {
        angle = HalfTurn;
        chords = Length2(p2 - p1);
    } else {
        MPoint2 crossing;
        MPoint2 n1{-t1.y, t1.x};
        MPoint2 n2{-t2.y, t2.x};
        if (!IntersectLines2(p1, p1 + n1, p2, p2 + n2, crossing)) return false;
        chords = Length2(p1 - crossing) + Length2(p2 - crossing);
        float dot = t1.x * t2.x + t1.y * t2.y;
        if (IsNearZero(dot)) dot = 0;
        // Unit vectors may give a dot a rounding beyond 1, where the arc
        // cosine has no value.
        if (dot > 1) dot = 1;
        if (dot < -1) dot = -1;
        angle = std::acos(dot);
    }
    float radius = chords * 0.5f;
    if (angle < 0) angle = -angle;
    float h;
    if (!(angle > HalfTurn))
        h = float(double(radius) * 4.0 / 3.0 * std::tan(double(angle) / 4.0));
    else
        h = radius;

    WSketchPoint before = Points[index - 1];
    before.HandleOut.x = before.Position.x + t1.x * h;
    before.HandleOut.y = before.Position.y + t1.y * h;
    SetPoint(index - 1, before);
    // Read again: the previous record may be this one's twin.
    WSketchPoint after = Points[index];
    after.HandleIn.x = after.Position.x - t2.x * h;
    after.HandleIn.y = after.Position.y - t2.y * h;
    after.Kind = KindCurve;
    SetPoint(index, after);
    Commit();
    return true;
}
