// Evaluation and measurement of the sketch's segments, and the read-only
// queries built on them: bounds, path length and the flatness test.

#include "sketch/WSketch.h"

#include <cmath>

// ---- Evaluation

// de Casteljau by recursion in 32-bit floats. Drawing, sampling, hit testing
// and export all evaluate segments here, so that they see the same points bit
// for bit. t at or beyond the ends gives the end controls exactly.
MPoint3 BezierPoint(const MPoint3* controls, int32_t first, int32_t degree, float t) {
    if (!controls) return MPoint3{};
    if (t <= 0 || degree < 1) return controls[first];
    if (t >= 1) return controls[first + degree];
    float s = 1 - t;
    MPoint3 a = degree == 1 ? controls[first] : BezierPoint(controls, first, degree - 1, t);
    MPoint3 b = degree == 1 ? controls[first + 1] : BezierPoint(controls, first + 1, degree - 1, t);
    return MPoint3{s * a.x + t * b.x, s * a.y + t * b.y, s * a.z + t * b.z};
}

// ---- Measurement

// The point of the cubic at t formed as the blend of its two quadratics; this
// is how the measured length has always been taken, and the lengths (and so
// the step counts) of saved sketches depend on it.
static MPoint3 ChordPoint(const MPoint3 controls[4], float t) {
    if (t <= 0) return controls[0];
    if (t >= 1) return controls[3];
    float s = 1 - t;
    MPoint3 a = BezierPoint(controls, 0, 2, t);
    MPoint3 b = BezierPoint(controls, 1, 2, t);
    return MPoint3{s * a.x + t * b.x, s * a.y + t * b.y, s * a.z + t * b.z};
}

// Four chords through t = 0, 0.25, 0.5, 0.75 and 1: cheap, and close enough to
// pick a step count; it is not the length of the sampled curve.
float MeasureCubic(const MPoint3 controls[4]) {
    static const float quarters[5] = {0.0f, 0.25f, 0.5f, 0.75f, 1.0f};
    float length = 0;
    MPoint3 previous = ChordPoint(controls, quarters[0]);
    for (int32_t k = 1; k < 5; k++) {
        MPoint3 next = ChordPoint(controls, quarters[k]);
        length += Length3(next - previous);
        previous = next;
    }
    return length;
}

// Eight steps per started four world units, so the count follows the size of
// the segment and never the zoom. A length that is no number gives the least.
int32_t CurveSteps(const MPoint3 controls[4]) {
    float quarter = float(double(MeasureCubic(controls)) * 0.25);
    double steps = std::ceil(double(quarter)) * 8;
    if (!(steps >= 2)) return 2;
    if (steps > 1000) return 1000;
    return int32_t(steps);
}

// The four controls of the segment that arrives at records[index].
static void SegmentControls(const WSketchPoint* records, int32_t index, MPoint3 controls[4]) {
    controls[0] = records[index - 1].Position;
    controls[1] = records[index - 1].HandleOut;
    controls[2] = records[index].HandleIn;
    controls[3] = records[index].Position;
}

// A record of a line or curve kind at index 0 has no segment and adds nothing.
float PathLength(const WSketchPoint* records, int32_t count) {
    if (!records || count < 1) return 0;
    float length = 0;
    for (int32_t i = 1; i < count; i++) {
        if (records[i].Kind == KindLine) {
            length += Length3(records[i].Position - records[i - 1].Position);
        } else if (records[i].Kind == KindCurve) {
            MPoint3 controls[4];
            SegmentControls(records, i, controls);
            length += MeasureCubic(controls);
        }
    }
    return length;
}

// ---- Queries

static void AddToBounds(float bounds[6], const MPoint3& p) {
    if (p.x < bounds[0]) bounds[0] = p.x;
    if (p.x > bounds[1]) bounds[1] = p.x;
    if (p.y < bounds[2]) bounds[2] = p.y;
    if (p.y > bounds[3]) bounds[3] = p.y;
    if (p.z < bounds[4]) bounds[4] = p.z;
    if (p.z > bounds[5]) bounds[5] = p.z;
}

// The bounds of the drawn path: a curve counts by the same sample points the
// view draws, and its handles, which may stick far out, do not count.
void WSketch::GetBounds(float bounds[6]) const {
    for (int32_t k = 0; k < 6; k++)
        bounds[k] = 0;
    if (PointCount < 1 || !Points.Data) return;
    const MPoint3& p0 = Points[0].Position;
    bounds[0] = bounds[1] = p0.x;
    bounds[2] = bounds[3] = p0.y;
    bounds[4] = bounds[5] = p0.z;
    // Every position is among the samples (a curve's last sample is its end),
    // so their box lies inside the result. A curve whose four controls lie
    // well inside that box cannot move the result, as each sample lies
    // within its controls up to a few roundings; its sampling is skipped,
    // which leaves the result as it is.
    float inner[6] = {bounds[0], bounds[1], bounds[2], bounds[3], bounds[4], bounds[5]};
    for (int32_t i = 0; i < PointCount; i++)
        AddToBounds(inner, Points[i].Position);
    float margin[3];
    for (int32_t axis = 0; axis < 3; axis++) {
        float low = std::fabs(inner[2 * axis]), high = std::fabs(inner[2 * axis + 1]);
        margin[axis] = 1e-5f * (low > high ? low : high);
    }
    auto wellInside = [&](const MPoint3& p) {
        const float c[3] = {p.x, p.y, p.z};
        for (int32_t axis = 0; axis < 3; axis++)
            if (!(c[axis] >= inner[2 * axis] + margin[axis] &&
                  c[axis] <= inner[2 * axis + 1] - margin[axis]))
                return false;
        return true;
    };
    for (int32_t i = 0; i < PointCount; i++) {
        if (Points[i].Kind != KindCurve || i == 0) {
            AddToBounds(bounds, Points[i].Position);
            continue;
        }
        MPoint3 controls[4];
        SegmentControls(Points.Data, i, controls);
        if (wellInside(controls[0]) && wellInside(controls[1]) && wellInside(controls[2]) &&
            wellInside(controls[3]))
            continue;
        int32_t steps = CurveSteps(controls);
        for (int32_t k = 1; k <= steps; k++)
            AddToBounds(bounds, BezierPoint(controls, 0, 3, float(k) / float(steps)));
    }
}

// Exact compares: a sketch is flat only if every z is the very same float, not
// merely close to it. A NaN anywhere makes the sketch not flat. The z of Roll
// is free: the roll of a flat sketch points along z.
bool WSketch::IsFlat() const {
    if (PointCount < 1 || !Points.Data) return false;
    float z = Points[0].Position.z;
    for (int32_t i = 0; i < PointCount; i++) {
        const WSketchPoint& p = Points[i];
        if (!(p.Position.z == z) || !(p.HandleIn.z == z) || !(p.HandleOut.z == z)) return false;
        if (!(p.Roll.x == 0) || !(p.Roll.y == 0)) return false;
    }
    return true;
}
