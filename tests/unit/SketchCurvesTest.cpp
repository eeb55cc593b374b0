// Bezier evaluation, measured length, step counts, bounds, path length and
// the flatness test of the sketch.

#include "SketchTestSupport.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

const float NaN = std::numeric_limits<float>::quiet_NaN();

// The arch (0,0) (0,4) (4,4) (4,0) in the xy plane.
const MPoint3 Arch[4] = {{0, 0, 0}, {0, 4, 0}, {4, 4, 0}, {4, 0, 0}};

// A straight cubic along x from 0 to length, handles on the ends.
void StraightCubic(float length, MPoint3 controls[4]) {
    controls[0] = P3(0, 0, 0);
    controls[1] = P3(0, 0, 0);
    controls[2] = P3(length, 0, 0);
    controls[3] = P3(length, 0, 0);
}

} // namespace

// ---- BezierPoint

// At t = 1/2: the first level gives (0,2) (2,4) (4,2), the second (1,3)
// (3,3), the third (2,3).
TEST(SketchBezierPoint, HalfwayOnTheArch) {
    EXPECT_TRUE(SameBits(BezierPoint(Arch, 0, 3, 0.5f), P3(2, 3, 0)));
}

// At t = 1/4, s = 3/4: levels (0,1) (1,4) (4,3); (0.25,1.75) (1.75,3.75);
// (0.625, 2.25). All are dyadic, so the float result is exact.
TEST(SketchBezierPoint, QuarterOnTheArch) {
    EXPECT_TRUE(SameBits(BezierPoint(Arch, 0, 3, 0.25f), P3(0.625f, 2.25f, 0)));
    EXPECT_TRUE(SameBits(BezierPoint(Arch, 0, 3, 0.75f), P3(3.375f, 2.25f, 0)));
}

TEST(SketchBezierPoint, EndsAreTheControlsThemselves) {
    const MPoint3 c[4] = {{1.1f, 2.2f, 3.3f}, {9, 9, 9}, {-9, 7, 1}, {0.7f, -0.3f, 5.9f}};
    EXPECT_TRUE(SameBits(BezierPoint(c, 0, 3, 0), c[0]));
    EXPECT_TRUE(SameBits(BezierPoint(c, 0, 3, -2), c[0]));
    EXPECT_TRUE(SameBits(BezierPoint(c, 0, 3, 1), c[3]));
    EXPECT_TRUE(SameBits(BezierPoint(c, 0, 3, 7), c[3]));
}

// Degree 1 is s * a + t * b in floats; degree 2 from first = 1 uses the last
// three controls: at t = 1/2 (0,4) (4,4) (4,0) give (2,4) (4,2), then (3,3).
TEST(SketchBezierPoint, LowerDegreesAndAnOffset) {
    EXPECT_TRUE(SameBits(BezierPoint(Arch, 1, 1, 0.25f), P3(1, 4, 0)));
    EXPECT_TRUE(SameBits(BezierPoint(Arch, 1, 2, 0.5f), P3(3, 3, 0)));
    EXPECT_TRUE(SameBits(BezierPoint(Arch, 0, 2, 0.5f), P3(1, 3, 0)));
}

TEST(SketchBezierPoint, NoControlsGiveTheOrigin) {
    EXPECT_TRUE(SameBits(BezierPoint(nullptr, 0, 3, 0.5f), P3(0, 0, 0)));
}

// ---- Measuring and steps

// Chord points of the arch: t = 0 (0,0), t = 1/4 (0.625,2.25), t = 1/2
// (2,3), t = 3/4 (3.375,2.25), t = 1 (4,0). Chords: sqrt(0.625^2 + 2.25^2) twice and sqrt(1.375^2 +
// 0.75^2) twice, 2 * (2.33519 + 1.56624) = 7.80286.
TEST(SketchMeasure, FourChordsOfTheArch) {
    double expected =
        2 * (std::sqrt(0.625 * 0.625 + 2.25 * 2.25) + std::sqrt(1.375 * 1.375 + 0.75 * 0.75));
    EXPECT_NEAR(MeasureCubic(Arch), expected, 1e-5);
    // The sampled curve is longer than its four chords.
    float sampled = 0;
    MPoint3 previous = Arch[0];
    for (int k = 1; k <= 1000; k++) {
        MPoint3 next = BezierPoint(Arch, 0, 3, float(k) / 1000.0f);
        sampled += Length3(next - previous);
        previous = next;
    }
    EXPECT_GT(sampled, MeasureCubic(Arch) + 0.01f);
}

TEST(SketchMeasure, StraightCubicMeasuresItsLength) {
    MPoint3 c[4];
    StraightCubic(100, c);
    EXPECT_EQ(MeasureCubic(c), 100.0f);
}

// ceil(L / 4) * 8, at least 2 and at most 1000.
TEST(SketchCurveSteps, HandWorkedCounts) {
    MPoint3 c[4];
    StraightCubic(0, c);
    EXPECT_EQ(CurveSteps(c), 2); // ceil(0) * 8 = 0, raised to 2
    StraightCubic(4, c);
    EXPECT_EQ(CurveSteps(c), 8); // ceil(1) * 8
    StraightCubic(4.5f, c);
    EXPECT_EQ(CurveSteps(c), 16); // ceil(1.125) * 8
    StraightCubic(100, c);
    EXPECT_EQ(CurveSteps(c), 200); // ceil(25) * 8
    StraightCubic(100.5f, c);
    EXPECT_EQ(CurveSteps(c), 208); // ceil(25.125) * 8
    StraightCubic(499, c);
    EXPECT_EQ(CurveSteps(c), 1000); // ceil(124.75) * 8 = 1000 exactly
    StraightCubic(500.5f, c);
    EXPECT_EQ(CurveSteps(c), 1000); // 126 * 8 = 1008, capped
    StraightCubic(1e7f, c);
    EXPECT_EQ(CurveSteps(c), 1000);
    EXPECT_EQ(CurveSteps(Arch), 16); // 7.80286 / 4 = 1.95, ceil 2
}

// Steps depend on world units only, so a segment far from the origin has the
// same count as the same segment at the origin.
TEST(SketchCurveSteps, ShiftDoesNotChangeTheCount) {
    MPoint3 shifted[4];
    for (int k = 0; k < 4; k++)
        shifted[k] = Arch[k] + P3(1000, -500, 250);
    EXPECT_EQ(CurveSteps(shifted), CurveSteps(Arch));
}

TEST(SketchCurveSteps, NaNGivesTheLeast) {
    MPoint3 c[4];
    StraightCubic(10, c);
    c[1].x = NaN;
    EXPECT_EQ(CurveSteps(c), 2);
}

// ---- GetBounds

TEST(SketchBounds, EmptySketchIsAllZero) {
    WSketch s;
    float b[6] = {9, 9, 9, 9, 9, 9};
    s.GetBounds(b);
    for (float v : b)
        EXPECT_EQ(v, 0.0f);
}

TEST(SketchBounds, LinesAndMovesAddTheirPositions) {
    WSketch s;
    Fill(s, {Record(1, 2, 3, KindMove), Record(-4, 5, 3, KindLine), Record(7, -8, 9, KindMove),
             Record(0, 0, -6, KindLine)});
    s.Points[1].HandleOut = P3(-100, 100, 100); // handles of lines do not count either
    float b[6];
    s.GetBounds(b);
    EXPECT_EQ(b[0], -4);
    EXPECT_EQ(b[1], 7);
    EXPECT_EQ(b[2], -8);
    EXPECT_EQ(b[3], 5);
    EXPECT_EQ(b[4], -6);
    EXPECT_EQ(b[5], 9);
}

// Handles far out in y and z: the arch of height 100 reaches 75 at t = 1/2
// (3/4 of the handle height), and z = 300 s t (s - t) stays within about
// 28.9 although the handles stand at +-100. 75 is sampled exactly since the
// count of steps is a multiple of 8.
TEST(SketchBounds, HandlesStickingOutAreNotIncluded) {
    WSketch s;
    WSketchPoint a = Record(0, 0, 0, KindMove);
    a.HandleOut = P3(0, 100, 100);
    WSketchPoint b = Record(10, 0, 0, KindCurve);
    b.HandleIn = P3(10, 100, -100);
    Fill(s, {a, b});
    float bounds[6];
    s.GetBounds(bounds);
    EXPECT_EQ(bounds[0], 0);
    EXPECT_EQ(bounds[1], 10);
    EXPECT_EQ(bounds[2], 0);
    EXPECT_NEAR(bounds[3], 75, 1e-3);
    EXPECT_LT(bounds[3], 80);
    EXPECT_NEAR(bounds[5], 28.87, 0.1);
    EXPECT_NEAR(bounds[4], -28.87, 0.1);
    EXPECT_LT(bounds[5], 100);
}

// The bounds use exactly the sample points t = k / steps of BezierPoint.
TEST(SketchBounds, CurveSamplesAreTheDrawnPoints) {
    WSketch s;
    WSketchPoint a = Record(0, 0, 0, KindMove);
    a.HandleOut = P3(-3, 7, 0);
    WSketchPoint b = Record(10, 0, 0, KindCurve);
    b.HandleIn = P3(13, 7, 0);
    Fill(s, {a, b});
    MPoint3 c[4] = {a.Position, a.HandleOut, b.HandleIn, b.Position};
    int32_t steps = CurveSteps(c);
    float minX = 0, maxX = 0, maxY = 0;
    for (int32_t k = 1; k <= steps; k++) {
        MPoint3 p = BezierPoint(c, 0, 3, float(k) / float(steps));
        if (p.x < minX) minX = p.x;
        if (p.x > maxX) maxX = p.x;
        if (p.y > maxY) maxY = p.y;
    }
    float bounds[6];
    s.GetBounds(bounds);
    EXPECT_EQ(bounds[0], minX);
    EXPECT_EQ(bounds[1], maxX);
    EXPECT_EQ(bounds[3], maxY);
    // The curve swings out beyond both of its ends, though not to its handles.
    EXPECT_LT(minX, 0);
    EXPECT_GT(minX, -3);
    EXPECT_GT(maxX, 10);
    EXPECT_LT(maxX, 13);
}

// ---- PathLength

TEST(SketchPathLength, NothingMeasuresZero) {
    WSketchPoint one = Record(1, 1, 1, KindMove);
    EXPECT_EQ(PathLength(nullptr, 3), 0);
    EXPECT_EQ(PathLength(&one, 0), 0);
    EXPECT_EQ(PathLength(&one, -1), 0);
    EXPECT_EQ(PathLength(&one, 1), 0);
}

// 3-4-5 and then 12 along z; a KindMove jump adds nothing.
TEST(SketchPathLength, LinesAndMoves) {
    std::vector<WSketchPoint> r = {Record(0, 0, 0, KindMove), Record(3, 4, 0, KindLine),
                                   Record(3, 4, 12, KindLine), Record(100, 100, 100, KindMove),
                                   Record(100, 100, 101, KindLine)};
    EXPECT_EQ(PathLength(r.data(), 5), 18.0f);
    EXPECT_EQ(PathLength(r.data(), 2), 5.0f);
}

// A curve adds its four chords: the arch measures 7.80286.
TEST(SketchPathLength, CurveAddsItsMeasuredLength) {
    WSketchPoint a = Record(0, 0, 0, KindMove);
    a.HandleOut = P3(0, 4, 0);
    WSketchPoint b = Record(4, 0, 0, KindCurve);
    b.HandleIn = P3(4, 4, 0);
    std::vector<WSketchPoint> r = {a, b, Record(4, -6, 0, KindLine)};
    EXPECT_EQ(PathLength(r.data(), 3), MeasureCubic(Arch) + 6.0f);
    EXPECT_NEAR(PathLength(r.data(), 2), 7.80286, 1e-4);
}

// ---- IsFlat

TEST(SketchIsFlat, EmptyIsNotFlat) {
    WSketch s;
    EXPECT_FALSE(s.IsFlat());
}

TEST(SketchIsFlat, EqualZAndRollAlongZ) {
    WSketch s;
    Fill(s, {Record(0, 0, 2.5f, KindMove), Record(7, 1, 2.5f, KindLine)});
    EXPECT_TRUE(s.IsFlat());
    s.Points[1].Roll = P3(0, 0, -40); // the z of Roll is not looked at
    EXPECT_TRUE(s.IsFlat());
    s.Points[1].Roll.z = NaN;
    EXPECT_TRUE(s.IsFlat());
    s.Points[1].Roll = P3(-0.0f, 0, 1); // minus zero is zero
    EXPECT_TRUE(s.IsFlat());
}

// The compare is exact: the next float above 2.5 is already different, though
// it would pass as equal anywhere else in the system.
TEST(SketchIsFlat, ExactCompares) {
    const float above = std::nextafter(2.5f, 10.0f);
    for (int field = 0; field < 5; field++) {
        WSketch s;
        Fill(s, {Record(0, 0, 2.5f, KindMove), Record(7, 1, 2.5f, KindLine)});
        WSketchPoint& p = s.Points[1];
        switch (field) {
        case 0:
            p.Position.z = above;
            break;
        case 1:
            p.HandleIn.z = above;
            break;
        case 2:
            p.HandleOut.z = above;
            break;
        case 3:
            p.Roll.x = 1e-30f;
            break;
        case 4:
            p.Roll.y = -1e-30f;
            break;
        }
        EXPECT_FALSE(s.IsFlat()) << "field " << field;
    }
}

TEST(SketchIsFlat, NaNCountsAsDifferent) {
    WSketch s;
    Fill(s, {Record(0, 0, NaN, KindMove), Record(7, 1, NaN, KindLine)});
    EXPECT_FALSE(s.IsFlat()); // even against itself
    WSketch t;
    Fill(t, {Record(0, 0, 1, KindMove), Record(7, 1, 1, KindLine)});
    t.Points[1].HandleIn.z = NaN;
    EXPECT_FALSE(t.IsFlat());
    t.Points[1].HandleIn.z = 1;
    t.Points[0].Roll.x = NaN;
    EXPECT_FALSE(t.IsFlat());
}

// ---- Bounds of large sketches against every curve sampled

namespace {

// Every curve sampled, as the bounds are defined.
void SampledBounds(const WSketch& sketch, float bounds[6]) {
    const MPoint3& p0 = sketch.Points[0].Position;
    float start[6] = {p0.x, p0.x, p0.y, p0.y, p0.z, p0.z};
    for (int32_t k = 0; k < 6; k++)
        bounds[k] = start[k];
    auto add = [&](const MPoint3& p) {
        bounds[0] = std::min(bounds[0], p.x), bounds[1] = std::max(bounds[1], p.x);
        bounds[2] = std::min(bounds[2], p.y), bounds[3] = std::max(bounds[3], p.y);
        bounds[4] = std::min(bounds[4], p.z), bounds[5] = std::max(bounds[5], p.z);
    };
    for (int32_t i = 0; i < sketch.PointCount; i++) {
        const WSketchPoint& p = sketch.Points[i];
        if (p.Kind != KindCurve || i == 0) {
            add(p.Position);
            continue;
        }
        MPoint3 c[4] = {sketch.Points[i - 1].Position, sketch.Points[i - 1].HandleOut, p.HandleIn,
                        p.Position};
        int32_t steps = CurveSteps(c);
        for (int32_t k = 1; k <= steps; k++)
            add(BezierPoint(c, 0, 3, float(k) / float(steps)));
    }
}

// Curves of random controls around random places, some far out, some flat,
// in the scale given.
void FillRandomCurves(WSketch& sketch, uint32_t seed, int32_t count, float scale, bool flat) {
    std::vector<WSketchPoint> records;
    auto next = [&seed] {
        seed = seed * 1664525u + 1013904223u;
        return float(seed >> 8) / float(1 << 24) - 0.5f;
    };
    for (int32_t i = 0; i < count; i++) {
        uint8_t kind = i % 17 == 0 ? KindMove : (i % 5 == 0 ? KindLine : KindCurve);
        float cx = next() * scale, cy = next() * scale, cz = flat ? 0 : next() * scale;
        WSketchPoint p = Record(cx, cy, cz, kind);
        float reach = scale * (i % 97 == 0 ? 2.0f : 0.05f);
        p.HandleIn =
            MPoint3{cx + next() * reach, cy + next() * reach, flat ? 0 : cz + next() * reach};
        p.HandleOut =
            MPoint3{cx + next() * reach, cy + next() * reach, flat ? 0 : cz - next() * reach};
        records.push_back(p);
    }
    Fill(sketch, records);
}

} // namespace

TEST(SketchCurves, BoundsOfLargeSketchesAreThoseOfEverySampleBitForBit) {
    const float scales[] = {1.0f, 200.0f, 2048.0f, 1e6f, 3e-3f};
    uint32_t seed = 7;
    for (float scale : scales) {
        for (int flat = 0; flat < 2; flat++) {
            WSketch sketch;
            FillRandomCurves(sketch, seed++, 5000, scale, flat != 0);
            float fast[6], sampled[6];
            sketch.GetBounds(fast);
            SampledBounds(sketch, sampled);
            for (int32_t k = 0; k < 6; k++)
                EXPECT_EQ(fast[k], sampled[k]) << "scale " << scale << " bound " << k;
        }
    }
}
