// The element generator: the start point, the frame and the join, the steps
// of an addition (commits, view fit, mode), the number rules, and the plain
// elements "Straight line", "Lift hill", "Pre-drop", "Dive", "Hill", "Turn",
// "Road straight" and "Road bend"; then a ride of all 17 elements in a row.
//
// Expected values are worked out from the element formulas in the test
// itself: products with the double factors 0.2, 0.3, 0.5, 0.01 and 4/3 are
// taken in double and rounded once, everything else in floats. Each case also
// states its figures as worked on paper, checked to a small tolerance.

#include "ElementTestSupport.h"

#include "shell/Window.h"

#include <limits>
#include <vector>

namespace {

const float Degree = 0.017453292f;

class ElementGenerator : public ElementTest {};

// A sketch of exactly these records, committed, as the saved state.
void Start(const std::vector<WSketchPoint>& records) {
    Fill(*TheSketch, records);
    TheSketch->Commit();
    TheSketch->Modified = 0;
}

WSketchPoint Heading(const MPoint3& position, const MPoint3& forward, const MPoint3& roll,
                     uint8_t kind) {
    WSketchPoint r;
    r.Position = position;
    r.HandleIn = position - forward;
    r.HandleOut = position + forward;
    r.Roll = roll;
    r.Smooth = 1;
    r.Kind = kind;
    return r;
}

// One point of a bend, from its rules: built for a right turn, mirrored for a
// left one; the last point leaves level.
struct BendPoint {
    MPoint3 P, In, Out, R;
};
std::vector<BendPoint> ExpectedBend(float A, float R, float third, float T, bool road,
                                    MPoint3& start) {
    float a = A * Degree;
    float angle = std::fabs(a);
    float E = angle * R;
    float s = T * Degree;
    float D = road ? float(double(E * third) * 0.01) : third;
    int n = int(std::ceil(double(angle) / 1.5707963705062866));
    if (n < 1) n = 1;
    if (s != 0 && n % 2 == 1) n++;
    float l = Handle43(R, std::tan(angle / float(n) / 4));
    float v = l * D / E;
    std::vector<BendPoint> points;
    for (int i = 1; i <= n; i++) {
        float t = float(i) / float(n);
        float theta = t * angle;
        float st = std::sin(theta), ct = std::cos(theta);
        BendPoint b;
        b.P = MPoint3{R - ct * R, t * D, st * R};
        b.In = MPoint3{b.P.x - st * l, b.P.y - v, b.P.z - ct * l};
        b.Out = MPoint3{b.P.x + st * l, b.P.y + (i == n ? 0.0f : v), b.P.z + ct * l};
        float rho = float(double(std::sin(t * 6.2831855f - 1.5707964f) + 1) * (double(s) * 0.5));
        if (a >= 0) {
            b.R = MPoint3{ct * std::cos(rho), -std::sin(rho), -(st * std::cos(rho))};
        } else {
            b.P.x = -b.P.x;
            b.In.x = -b.In.x;
            b.Out.x = -b.Out.x;
            b.R = MPoint3{ct * std::cos(rho), std::sin(rho), st * std::cos(rho)};
        }
        points.push_back(b);
    }
    if (road) {
        MPoint3 u = Normalized(MPoint3{0, D, E});
        start = MPoint3{u.x * l, u.y * l, u.z * l};
    } else {
        start = MPoint3{0, 0, l};
    }
    return points;
}

} // namespace

// ---- The start point and the steps

TEST_F(ElementGenerator, FailingElementOnEmptySketchLeavesTheStartPoint) {
    Add(ElementStraightLine, 0);
    ASSERT_EQ(Count(), 1);
    EXPECT_TRUE(StartPointWith(MPoint3{0, 0, 10})); // HandleOut (10, 0, 0) as made
    EXPECT_EQ(TheSketch->Modified, 1);              // the start point was committed
    EXPECT_EQ(TheSketch->Undo->Depth, 2);
    EXPECT_EQ(TheMode, ModeDraw); // the operation ended before the mode change
    // The same for every element's failing parameters.
    for (uint32_t id : {ElementLiftHill, ElementTurn, ElementTopHat, ElementRoadBend}) {
        Add(id, -1, -1, -1, -1);
        EXPECT_EQ(Count(), 1);
    }
}

TEST_F(ElementGenerator, IdsAbove16AddOnlyTheStartPoint) {
    Add(17, 30, 30, 30, 30);
    Add(1000, 30, 30, 30, 30);
    ASSERT_EQ(Count(), 1);
    EXPECT_TRUE(StartPointWith(MPoint3{0, 0, 10}));
}

TEST_F(ElementGenerator, StraightLineOf30OnEmptySketch) {
    Add(ElementStraightLine, 30);
    ASSERT_EQ(Count(), 2);
    EXPECT_TRUE(SameVector(Pt(0).Position, P3(0, 0, 0)));
    EXPECT_TRUE(SameVector(Pt(0).HandleIn, P3(-10, 0, 0)));
    EXPECT_TRUE(SameVector(Pt(0).HandleOut, P3(9, 0, 0)));
    EXPECT_TRUE(SameVector(Pt(0).Roll, P3(0, 0, -1)));
    EXPECT_EQ(Pt(0).Smooth, 0);
    EXPECT_EQ(Pt(0).Kind, KindMove);
    EXPECT_TRUE(SameVector(Pt(1).Position, P3(30, 0, 0)));
    EXPECT_TRUE(SameVector(Pt(1).HandleIn, P3(21, 0, 0)));
    EXPECT_TRUE(SameVector(Pt(1).HandleOut, P3(39, 0, 0)));
    EXPECT_TRUE(SameVector(Pt(1).Roll, P3(0, 0, -1)));
    EXPECT_EQ(Pt(1).Smooth, 1);
    EXPECT_EQ(Pt(1).Kind, KindCurve);
    EXPECT_TRUE(CheckInvariants(*TheSketch));
}

TEST_F(ElementGenerator, CommitsForStartPointJoinAndNewPoints) {
    EXPECT_EQ(TheSketch->Undo->Depth, 1);
    Add(ElementStraightLine, 30);
    // The start point, the rewritten handle of the last point, the new points.
    EXPECT_EQ(TheSketch->Undo->Depth, 4);
    EXPECT_EQ(TheSketch->Modified, 1);
    Add(ElementStraightLine, 20);
    EXPECT_EQ(TheSketch->Undo->Depth, 6);
    ASSERT_EQ(Count(), 3);
    // One undo goes back to the join alone: the new point is gone, the
    // handle it asked for stays.
    UndoSketch();
    ASSERT_EQ(Count(), 2);
    EXPECT_TRUE(SameVector(Pt(1).HandleOut, P3(36, 0, 0))); // 30 + 0.3 * 20
    UndoSketch();
    ASSERT_EQ(Count(), 2);
    EXPECT_TRUE(SameVector(Pt(1).HandleOut, P3(39, 0, 0)));
}

TEST_F(ElementGenerator, DrawingModeGivesWayToSketchEditing) {
    RefreshTitle();
    Add(ElementStraightLine, 30);
    EXPECT_EQ(TheMode, ModeEditSketch);
    EXPECT_EQ(Text(MainWindowText()), u"Quillmere - Untitled * (2 points) [EDIT SKETCH]");
    EXPECT_TRUE(AppliedMenuState().EditSketch);
    EXPECT_FALSE(AppliedMenuState().DrawFreehand);
    // Another editing mode is left alone.
    TheMode = ModeEditRoll;
    Add(ElementStraightLine, 30);
    EXPECT_EQ(TheMode, ModeEditRoll);
}

TEST_F(ElementGenerator, ViewIsFittedToTheWholeSketch) {
    ASSERT_NE(CreateView(), nullptr);
    TheView->SetViewport(800, 600);
    Add(ElementStraightLine, 30);
    // The drawn path runs from (0, 0, 0) to (30, 0, 0).
    EXPECT_TRUE(SameVector(TheView->Pivot, P3(15, 0, 0)));
    Add(ElementStraightLine, 30);
    EXPECT_TRUE(SameVector(TheView->Pivot, P3(30, 0, 0)));
    // A failing element ends before the fit.
    TheView->Pivot = P3(1, 2, 3);
    TheView->Update();
    Add(ElementStraightLine, -30);
    EXPECT_TRUE(SameVector(TheView->Pivot, P3(1, 2, 3)));
}

TEST_F(ElementGenerator, WorksWithoutAView) {
    ASSERT_EQ(TheView, nullptr);
    Add(ElementHill, 200, 50);
    EXPECT_EQ(Count(), 3);
}

TEST_F(ElementGenerator, LastPointKindMoveBecomesKindLine) {
    // A second curve of one record, as a "Move" of a track file leaves it:
    // the join's SetPoint on the last record turns its KindMove into a line.
    Start({Heading(P3(0, 0, 0), P3(10, 0, 0), P3(0, 0, -1), KindMove),
           Heading(P3(30, 0, 0), P3(10, 0, 0), P3(0, 0, -1), KindLine),
           Heading(P3(100, 0, 0), P3(10, 0, 0), P3(0, 0, -1), KindMove)});
    Add(ElementStraightLine, 30);
    ASSERT_EQ(Count(), 4);
    EXPECT_EQ(Pt(2).Kind, KindLine);
    EXPECT_TRUE(SameVector(Pt(3).Position, P3(130, 0, 0)));
    EXPECT_TRUE(CheckInvariants(*TheSketch));
}

TEST_F(ElementGenerator, FrameTranslatesAPieceHeadingAlongZ) {
    // Heading +Z with the roll +X: the frame is the identity turned by
    // nothing and moved to (1, 2, 3), so local points only move.
    Start({Heading(P3(1, 2, 3), P3(0, 0, 5), P3(1, 0, 0), KindMove)});
    Add(ElementLiftHill, 13, 7);
    // h = 0.2 * 13 in double, 2.6000000000000001, rounded once: 2.5999999.
    float h = float(13 * 0.2);
    EXPECT_NE(h, 13.0f * 0.2f); // the float product would round twice
    ASSERT_EQ(Count(), 2);
    EXPECT_TRUE(SameVector(Pt(0).HandleOut, P3(1, 2, 3 + h)));
    EXPECT_TRUE(SameVector(Pt(1).Position, P3(1, 9, 16)));
    // The frame adds the translation to the local coordinate.
    EXPECT_TRUE(SameVector(Pt(1).HandleIn, P3(1, 9, (13 - h) + 3)));
    EXPECT_TRUE(SameVector(Pt(1).HandleOut, P3(1, 9, (13 + h) + 3)));
    EXPECT_TRUE(SameVector(Pt(1).Roll, P3(1, 0, 0)));
    EXPECT_TRUE(NearVector(Pt(1).HandleOut, P3(1, 9, 18.6f), 1e-5));
}

TEST_F(ElementGenerator, FrameTurnsAPieceHeadingBack) {
    // Heading -Z with the roll -X: X = (-1, 0, 0), Y = (0, 1, 0),
    // Z = (0, 0, -1), so a local (x, y, z) lands on (5 - x, y, 5 - z).
    Start({Heading(P3(5, 0, 5), P3(0, 0, -2), P3(-1, 0, 0), KindMove)});
    Add(ElementStraightLine, 11);
    float h = float(11 * 0.3); // 3.3000000000000003 rounded once: 3.3
    EXPECT_NE(h, 11.0f * 0.3f);
    ASSERT_EQ(Count(), 2);
    EXPECT_TRUE(SameVector(Pt(0).HandleOut, P3(5, 0, 5 - h)));
    EXPECT_TRUE(SameVector(Pt(1).Position, P3(5, 0, -6)));
    EXPECT_TRUE(SameVector(Pt(1).HandleIn, P3(5, 0, 5 - (11 - h))));
    EXPECT_TRUE(SameVector(Pt(1).HandleOut, P3(5, 0, 5 - (11 + h))));
    EXPECT_TRUE(SameVector(Pt(1).Roll, P3(-1, 0, 0)));
}

TEST_F(ElementGenerator, ZeroLengthHandleOutCollapsesThePiece) {
    WSketchPoint last = Heading(P3(5, 5, 5), P3(0, 0, 0), P3(0, 1, 0), KindMove);
    last.HandleIn = P3(0, 5, 5);
    Start({last});
    Add(ElementCircularLoop, 30, 10, 1);
    ASSERT_EQ(Count(), 5);
    EXPECT_TRUE(SameVector(Pt(0).HandleOut, P3(5, 5, 5)));
    for (int32_t i = 1; i < 5; i++) {
        SCOPED_TRACE(i);
        EXPECT_TRUE(SameVector(Pt(i).Position, P3(5, 5, 5)));
        EXPECT_TRUE(SameVector(Pt(i).HandleIn, P3(5, 5, 5)));
        EXPECT_TRUE(SameVector(Pt(i).HandleOut, P3(5, 5, 5)));
        EXPECT_TRUE(SameVector(Pt(i).Roll, P3(0, 0, 0)));
    }
}

TEST_F(ElementGenerator, ListThatCannotGrowAddsNothing) {
    // A bend of 10^30 degrees would need more points than any list holds.
    Add(ElementTurn, 1e30f, 30, 0, 0);
    EXPECT_EQ(Count(), 1);
    // A NaN angle gives no count at all.
    Add(ElementTurn, std::numeric_limits<float>::quiet_NaN(), 30, 0, 0);
    EXPECT_EQ(Count(), 1);
}

// ---- Straight pieces, hills and dives

TEST_F(ElementGenerator, StraightLine) {
    // Default L 30: P (0, 0, 30), h (0, 0, 9), r (1, 0, 0); S (0, 0, 9).
    Add(ElementStraightLine, 30);
    ASSERT_EQ(Count(), 2);
    EXPECT_TRUE(StartPointWith(P3(0, 0, 9)));
    EXPECT_TRUE(Local(1, P3(0, 0, 30), P3(0, 0, 9), P3(1, 0, 0)));

    // L 12.5: h = 0.3 * 12.5 = 3.75, exact.
    Add(ElementStraightLine, 12.5f, 99, 99, 99); // unused parameters change nothing
    ASSERT_EQ(Count(), 3);
    EXPECT_TRUE(SameVector(Pt(1).HandleOut, P3(33.75f, 0, 0)));
    EXPECT_TRUE(SameVector(Pt(2).Position, P3(42.5f, 0, 0)));
    EXPECT_TRUE(SameVector(Pt(2).HandleIn, P3(38.75f, 0, 0)));
    EXPECT_TRUE(SameVector(Pt(2).HandleOut, P3(46.25f, 0, 0)));

    // L must be above 0.
    Add(ElementStraightLine, 0);
    Add(ElementStraightLine, -30);
    EXPECT_EQ(Count(), 3);
}

TEST_F(ElementGenerator, LiftHill) {
    // Default (200, 100): P (0, 100, 200), h (0, 0, 0.2 * 200 = 40); S (0, 0, 40).
    Add(ElementLiftHill, 200, 100);
    ASSERT_EQ(Count(), 2);
    EXPECT_TRUE(StartPointWith(P3(0, 0, 40)));
    EXPECT_TRUE(Local(1, P3(0, 100, 200), P3(0, 0, 40), P3(1, 0, 0)));
    // L and H must both be above 0.
    for (float L : {0.0f, -10.0f})
        for (float H : {0.0f, -5.0f, 10.0f})
            Add(ElementLiftHill, L, H);
    Add(ElementLiftHill, 10, 0);
    Add(ElementLiftHill, 10, -5);
    EXPECT_EQ(Count(), 2);
}

TEST_F(ElementGenerator, LiftHillOtherParameters) {
    // (6.5, 0.25): h = 0.2 * 6.5 in double, rounded once (1.3).
    Add(ElementLiftHill, 6.5f, 0.25f);
    float h = float(6.5 * 0.2);
    EXPECT_NE(h, 6.5f * 0.2f);
    EXPECT_NEAR(h, 1.3, 1e-6);
    ASSERT_EQ(Count(), 2);
    EXPECT_TRUE(StartPointWith(P3(0, 0, h)));
    EXPECT_TRUE(Local(1, P3(0, 0.25f, 6.5f), P3(0, 0, h), P3(1, 0, 0)));
}

TEST_F(ElementGenerator, PreDropHasShortStartAndLongEndHandle) {
    // Default (20, 10): P (0, -10, 20), h (0, 0, 20); S (0, 0, 0.2 * 20 = 4).
    Add(ElementPreDrop, 20, 10);
    ASSERT_EQ(Count(), 2);
    EXPECT_TRUE(StartPointWith(P3(0, 0, 4)));
    EXPECT_TRUE(Local(1, P3(0, -10, 20), P3(0, 0, 20), P3(1, 0, 0)));
    Add(ElementPreDrop, 20, 0);
    Add(ElementPreDrop, 0, 10);
    Add(ElementPreDrop, 20, -10);
    EXPECT_EQ(Count(), 2);
    // (4.5, 2.5) from the end of the first: S = 0.2 * 4.5 rounded once (0.9).
    float s = float(4.5 * 0.2);
    EXPECT_NE(s, 4.5f * 0.2f);
    Add(ElementPreDrop, 4.5f, 2.5f);
    ASSERT_EQ(Count(), 3);
    EXPECT_TRUE(SameVector(Pt(1).HandleOut, P3(20 + s, -10, 0)));
    EXPECT_TRUE(SameVector(Pt(2).Position, P3(24.5f, -12.5f, 0)));
    EXPECT_TRUE(SameVector(Pt(2).HandleIn, P3(20, -12.5f, 0)));
    EXPECT_TRUE(SameVector(Pt(2).HandleOut, P3(29, -12.5f, 0)));
    EXPECT_TRUE(SameVector(Pt(2).Roll, P3(0, 0, -1)));
}

TEST_F(ElementGenerator, DiveIsThePreDropWithOtherDefaults) {
    // Default (200, 100): P (0, -100, 200), h (0, 0, 200); S (0, 0, 40).
    Add(ElementDive, 200, 100);
    ASSERT_EQ(Count(), 2);
    EXPECT_TRUE(StartPointWith(P3(0, 0, 40)));
    EXPECT_TRUE(Local(1, P3(0, -100, 200), P3(0, 0, 200), P3(1, 0, 0)));
    // (9, 3): S = 0.2 * 9 rounded once (1.8).
    Add(ElementDive, 9, 3);
    float s = float(9 * 0.2);
    EXPECT_NE(s, 9.0f * 0.2f);
    ASSERT_EQ(Count(), 3);
    // The frame of record 1 is the one of the empty sketch moved to (200, -100, 0).
    EXPECT_TRUE(SameVector(Pt(1).HandleOut, P3(200 + s, -100, 0)));
    EXPECT_TRUE(SameVector(Pt(2).Position, P3(209, -103, 0)));
    EXPECT_TRUE(SameVector(Pt(2).HandleIn, P3(200, -103, 0)));
    EXPECT_TRUE(SameVector(Pt(2).HandleOut, P3(218, -103, 0)));
    Add(ElementDive, 200, 0);
    Add(ElementDive, -1, 100);
    EXPECT_EQ(Count(), 3);
}

TEST_F(ElementGenerator, Hill) {
    // Default (200, 50): first P (0, 50, 100), h (0, 0, 40); second
    // P (0, 0, 200), h (0, 0, 60); S (0, 0, 60).
    Add(ElementHill, 200, 50);
    ASSERT_EQ(Count(), 3);
    EXPECT_TRUE(StartPointWith(P3(0, 0, 60)));
    EXPECT_TRUE(Local(1, P3(0, 50, 100), P3(0, 0, 40), P3(1, 0, 0)));
    EXPECT_TRUE(Local(2, P3(0, 0, 200), P3(0, 0, 60), P3(1, 0, 0)));
}

TEST_F(ElementGenerator, HillOfHeightZeroOrNegativeAddsTwoPoints) {
    Add(ElementHill, 200, 0);
    ASSERT_EQ(Count(), 3);
    EXPECT_TRUE(Local(1, P3(0, 0, 100), P3(0, 0, 40), P3(1, 0, 0)));
    EXPECT_TRUE(Local(2, P3(0, 0, 200), P3(0, 0, 60), P3(1, 0, 0)));
}

TEST_F(ElementGenerator, HillNegativeHeightAndFailure) {
    // (15, -30): h1 = 0.2 * 15 = 3, h2 = 0.3 * 15 rounded once (4.5), middle 7.5.
    Add(ElementHill, 15, -30);
    float h2 = float(15 * 0.3);
    ASSERT_EQ(Count(), 3);
    EXPECT_TRUE(StartPointWith(P3(0, 0, h2)));
    EXPECT_TRUE(Local(1, P3(0, -30, 7.5f), P3(0, 0, float(15 * 0.2)), P3(1, 0, 0)));
    EXPECT_TRUE(Local(2, P3(0, 0, 15), P3(0, 0, h2), P3(1, 0, 0)));
    Add(ElementHill, 0, 50);
    EXPECT_EQ(Count(), 3);
}

// ---- Turn

TEST_F(ElementGenerator, TurnDefaultsGiveTwoPoints) {
    // (90, 30, 0, 20): a = 90 * 0.017453292 = 1.5707964, one quarter circle,
    // but the slant of 20 degrees asks for an even count: n = 2, each step
    // pi/4. l = 30 * 4/3 * tan(pi/16) = 7.95649. D = 0, so v = 0.
    // Point 1 (t 1/2, theta pi/4): P (30 - 21.2132, 0, 21.2132) = (8.7868,
    // 0, 21.2132); h (5.62609, 0, 5.62609); bank rho = (sin(pi - pi/2) + 1)
    // * 0.174533 = 0.349066, the full slant: r = (cos(pi/4) cos(rho),
    // -sin(rho), -sin(pi/4) cos(rho)) = (0.664463, -0.342020, -0.664463).
    // Point 2 (theta pi/2): P (30, 0, 30), h (7.95649, 0, 0), rho 0:
    // r (0, 0, -1). S (0, 0, 7.95649).
    Add(ElementTurn, 90, 30, 0, 20);
    ASSERT_EQ(Count(), 3);
    MPoint3 s;
    std::vector<BendPoint> want = ExpectedBend(90, 30, 0, 20, false, s);
    ASSERT_EQ(want.size(), size_t(2));
    EXPECT_TRUE(StartPointWith(s));
    for (int i = 0; i < 2; i++)
        EXPECT_TRUE(Local(1 + i, want[i].P, want[i].In, want[i].Out, want[i].R));
    EXPECT_NEAR(s.z, 7.95649, 1e-4);
    EXPECT_TRUE(NearVector(want[0].P, P3(8.7868f, 0, 21.2132f), 1e-4));
    EXPECT_TRUE(NearVector(want[0].Out - want[0].P, P3(5.62609f, 0, 5.62609f), 1e-4));
    EXPECT_TRUE(NearVector(want[0].R, P3(0.664463f, -0.342020f, -0.664463f), 1e-5));
    EXPECT_TRUE(NearVector(want[1].P, P3(30, 0, 30), 1e-4));
    EXPECT_TRUE(NearVector(want[1].R, P3(0, 0, -1), 1e-6));
    // In the world the turn to the right bends from +X towards -Z.
    EXPECT_TRUE(NearVector(Pt(2).Position, P3(30, 0, -30), 1e-4));
}

TEST_F(ElementGenerator, TurnPointCounts) {
    struct Case {
        float A, T;
        int32_t n;
    };
    // Quarter circles at most; a slant asks for an even count, at least 2.
    const Case cases[] = {{90, 20, 2},  {90, 0, 1},   {180, 0, 2}, {181, 0, 3},
                          {181, 20, 4}, {45, 0, 1},   {45, -5, 2}, {400, 0, 5},
                          {400, 10, 6}, {-181, 0, 3}, {720, 0, 8}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.A);
        SCOPED_TRACE(c.T);
        TheSketch->PointCount = 0;
        Add(ElementTurn, c.A, 30, 0, c.T);
        EXPECT_EQ(Count(), 1 + c.n);
    }
}

TEST_F(ElementGenerator, TurnToTheLeftWithHeightAndNegativeSlant) {
    // (-90, 30, 15, -10): mirrored; n = 2 because of the slant. E = |a| R =
    // 47.1239, v = l D / E = 7.95649 * 15 / 47.1239 = 2.53263.
    // Point 1: P (-8.7868, 7.5, 21.2132), HandleIn (-3.16071, 4.96737,
    // 15.5871); rho = s = -0.174533: r (cos(pi/4) cos(rho), sin(rho),
    // sin(pi/4) cos(rho)) = (0.696364, -0.173648, 0.696364).
    // Point 2: P (-30, 15, 30), HandleOut level, r (0, 0, 1).
    Add(ElementTurn, -90, 30, 15, -10);
    ASSERT_EQ(Count(), 3);
    MPoint3 s;
    std::vector<BendPoint> want = ExpectedBend(-90, 30, 15, -10, false, s);
    ASSERT_EQ(want.size(), size_t(2));
    EXPECT_TRUE(StartPointWith(s)); // (0, 0, l): no vertical part
    for (int i = 0; i < 2; i++)
        EXPECT_TRUE(Local(1 + i, want[i].P, want[i].In, want[i].Out, want[i].R));
    EXPECT_TRUE(NearVector(want[0].P, P3(-8.7868f, 7.5f, 21.2132f), 1e-4));
    EXPECT_TRUE(NearVector(want[0].In, P3(-3.16071f, 4.96737f, 15.5871f), 1e-4));
    EXPECT_TRUE(NearVector(want[0].R, P3(0.696364f, -0.173648f, 0.696364f), 1e-5));
    EXPECT_TRUE(NearVector(want[1].P, P3(-30, 15, 30), 1e-4));
    EXPECT_TRUE(NearVector(want[1].R, P3(0, 0, 1), 1e-6));
    // The bend leaves level.
    EXPECT_EQ(want[1].Out.y, 15.0f);
    EXPECT_NEAR(double(want[1].In.y), 15 - 2.53263, 1e-4);
    EXPECT_EQ(s.y, 0.0f);
}

TEST_F(ElementGenerator, TurnRoundsTheArcHandleOnce) {
    // (90, 11, 0, 20): l = 11 * 4/3 * tan(pi/16) = 2.91738, the whole
    // product in double and rounded once; rounding 11 * 4/3 first would give
    // a different float.
    float tangent = std::tan(1.5707964f / 2 / 4);
    float l = Handle43(11, tangent);
    EXPECT_NE(l, float(11 * 1.3333333333333333) * tangent);
    EXPECT_NEAR(l, 2.91738, 1e-5);
    Add(ElementTurn, 90, 11, 0, 20);
    ASSERT_EQ(Count(), 3);
    MPoint3 s;
    std::vector<BendPoint> want = ExpectedBend(90, 11, 0, 20, false, s);
    EXPECT_EQ(s.z, l);
    EXPECT_TRUE(StartPointWith(s));
    for (int i = 0; i < 2; i++)
        EXPECT_TRUE(Local(1 + i, want[i].P, want[i].In, want[i].Out, want[i].R));
}

TEST_F(ElementGenerator, TurnOfMoreThanAFullCircleSpirals) {
    // 400 degrees, radius 10, rising 40, no slant: five steps of 80 degrees.
    Add(ElementTurn, 400, 10, 40, 0);
    ASSERT_EQ(Count(), 6);
    MPoint3 s;
    std::vector<BendPoint> want = ExpectedBend(400, 10, 40, 0, false, s);
    ASSERT_EQ(want.size(), size_t(5));
    EXPECT_TRUE(StartPointWith(s));
    for (int i = 0; i < 5; i++)
        EXPECT_TRUE(Local(1 + i, want[i].P, want[i].In, want[i].Out, want[i].R));
    // The end: theta = 400 degrees = 40 degrees past a full turn, 40 up.
    EXPECT_TRUE(NearVector(want[4].P, P3(10 - 7.66044f, 40, 6.42788f), 1e-3));
    EXPECT_TRUE(NearVector(want[4].R, P3(0.766044f, 0, -0.642788f), 1e-5));
}

TEST_F(ElementGenerator, TurnWithRadiusZeroOrNegativeOrNoAngleAddsNothing) {
    Add(ElementTurn, 90, 0, 0, 20);
    Add(ElementTurn, 90, -30, 0, 20);
    Add(ElementTurn, 0, 30, 0, 20);
    Add(ElementTurn, 0, 30, 0, 0);
    EXPECT_EQ(Count(), 1);
}

// ---- Road pieces

TEST_F(ElementGenerator, RoadStraight) {
    // Default (30, 20): rise = (30 * 20) * 0.01 = 6. h is (0, 6, 30) scaled
    // to 0.3 * 30 = 9: (0, 6, 30) / 30.5941 * 9 = (0, 1.76505, 8.82523).
    // r = Side(h) = (30 / 30.5941, 0, 0) = (0.980581, 0, 0). S = h.
    Add(ElementRoadStraight, 30, 20);
    ASSERT_EQ(Count(), 2);
    MPoint3 u = Normalized(P3(0, 6, 30));
    MPoint3 h{u.x * 9, u.y * 9, u.z * 9};
    EXPECT_TRUE(NearVector(h, P3(0, 1.76505f, 8.82523f), 1e-5));
    MPoint3 r = LevelRoll(h);
    EXPECT_TRUE(NearVector(r, P3(0.980581f, 0, 0), 1e-6));
    EXPECT_TRUE(StartPointWith(h));
    EXPECT_TRUE(Local(1, P3(0, 6, 30), h, r));
}

TEST_F(ElementGenerator, RoadStraightDescendingAndFailing) {
    // (10, -0.75): rise = (10 * -0.75) * 0.01 in double, rounded once:
    // -0.075. l = 0.3 * 10 = 3. h = (0, -0.0224994, 2.99992).
    Add(ElementRoadStraight, 10, -0.75f);
    float rise = float(double(10.0f * -0.75f) * 0.01);
    EXPECT_NE(rise, 10.0f * -0.75f * 0.01f);
    float l = float(10 * 0.3);
    MPoint3 u = Normalized(P3(0, rise, 10));
    MPoint3 h{u.x * l, u.y * l, u.z * l};
    EXPECT_TRUE(NearVector(h, P3(0, -0.0224994f, 2.99992f), 1e-5));
    ASSERT_EQ(Count(), 2);
    EXPECT_TRUE(StartPointWith(h));
    EXPECT_TRUE(Local(1, P3(0, rise, 10), h, LevelRoll(h)));
    Add(ElementRoadStraight, 0, 20);
    Add(ElementRoadStraight, -30, 20);
    EXPECT_EQ(Count(), 2);
}

TEST_F(ElementGenerator, RoadBend) {
    // Default (90, 30, 20, 20): E = 47.1239, D = (E * 20) * 0.01 = 9.42478,
    // n = 2 (slant), l = 7.95649, v = l D / E = 1.59130.
    // Point 1: P (8.7868, 4.71239, 21.2132), h (5.62609, 1.59130, 5.62609).
    // Point 2: P (30, 9.42478, 30), HandleOut level.
    // S = (0, D, E) scaled to l = (0, 1.56040, 7.80199).
    Add(ElementRoadBend, 90, 30, 20, 20);
    ASSERT_EQ(Count(), 3);
    MPoint3 s;
    std::vector<BendPoint> want = ExpectedBend(90, 30, 20, 20, true, s);
    ASSERT_EQ(want.size(), size_t(2));
    EXPECT_TRUE(StartPointWith(s));
    for (int i = 0; i < 2; i++)
        EXPECT_TRUE(Local(1 + i, want[i].P, want[i].In, want[i].Out, want[i].R));
    EXPECT_TRUE(NearVector(s, P3(0, 1.56040f, 7.80199f), 1e-4));
    EXPECT_TRUE(NearVector(want[0].P, P3(8.7868f, 4.71239f, 21.2132f), 1e-4));
    EXPECT_TRUE(NearVector(want[0].Out - want[0].P, P3(5.62609f, 1.59130f, 5.62609f), 1e-4));
    EXPECT_TRUE(NearVector(want[1].P, P3(30, 9.42478f, 30), 1e-4));
    EXPECT_EQ(want[1].Out.y, want[1].P.y);
}

TEST_F(ElementGenerator, RoadBendToTheLeftDescendingAndFailing) {
    // (-45, 50, -10, 0): one step, mirrored. E = 39.2699, D = -3.92699,
    // l = 50 * 4/3 * tan(pi/16) = 13.2608. The end: P (-14.6447, -3.92699,
    // 35.3553), r (0.707107, 0, 0.707107). S = (0, -1.31950, 13.1950).
    Add(ElementRoadBend, -45, 50, -10, 0);
    ASSERT_EQ(Count(), 2);
    MPoint3 s;
    std::vector<BendPoint> want = ExpectedBend(-45, 50, -10, 0, true, s);
    ASSERT_EQ(want.size(), size_t(1));
    EXPECT_TRUE(StartPointWith(s));
    EXPECT_TRUE(Local(1, want[0].P, want[0].In, want[0].Out, want[0].R));
    EXPECT_TRUE(NearVector(want[0].P, P3(-14.6447f, -3.92699f, 35.3553f), 1e-4));
    EXPECT_TRUE(NearVector(want[0].R, P3(0.707107f, 0, 0.707107f), 1e-5));
    EXPECT_TRUE(NearVector(s, P3(0, -1.31950f, 13.1950f), 1e-4));
    Add(ElementRoadBend, 90, 0, 20, 20);
    Add(ElementRoadBend, 0, 30, 20, 20);
    EXPECT_EQ(Count(), 2);
}

TEST_F(ElementGenerator, RoadPiecesIgnorePitchAndBankOfTheLastPoint) {
    // The last point climbs at 45 degrees heading +X and is banked. A road
    // frame drops the climb and the bank: it is the frame of level track
    // heading +X, moved to (2, 3, 4).
    const MPoint3 at{2, 3, 4};
    Start({Heading(at, P3(10, 10, 0), P3(0, 0.5f, -1), KindMove)});
    Add(ElementRoadStraight, 30, 20);
    ASSERT_EQ(Count(), 2);
    MPoint3 u = Normalized(P3(0, 6, 30));
    MPoint3 h{u.x * 9, u.y * 9, u.z * 9};
    EXPECT_TRUE(SameVector(Pt(0).HandleOut, at + ToWorld(h)));
    EXPECT_TRUE(SameVector(Pt(1).Position, P3(32, 9, 4))); // 30 ahead, 6 up: the slope of 20 %
    EXPECT_TRUE(SameVector(Pt(1).HandleIn, at + ToWorld(P3(0, 6, 30) - h)));
    EXPECT_TRUE(SameVector(Pt(1).HandleOut, at + ToWorld(P3(0, 6, 30) + h)));
    EXPECT_TRUE(SameVector(Pt(1).Roll, ToWorld(LevelRoll(h))));

    // Each road piece from the climbing, banked point and from a level one
    // gives the same records.
    for (uint32_t id : {ElementRoadStraight, ElementRoadBend}) {
        SCOPED_TRACE(id);
        const WElementRow& row = WElementTable[id];
        Start({Heading(at, P3(10, 10, 0), P3(0, 0.5f, -1), KindMove)});
        Add(id, row.Default[0], row.Default[1], row.Default[2], row.Default[3]);
        std::vector<WSketchPoint> climbing = Records(*TheSketch);
        Start({Heading(at, P3(10, 0, 0), P3(0, 0, -1), KindMove)});
        Add(id, row.Default[0], row.Default[1], row.Default[2], row.Default[3]);
        std::vector<WSketchPoint> level = Records(*TheSketch);
        ASSERT_EQ(climbing.size(), level.size());
        EXPECT_TRUE(SameBits(climbing[0].HandleOut, level[0].HandleOut));
        for (size_t i = 1; i < level.size(); i++)
            EXPECT_TRUE(SameRecordBits(climbing[i], level[i])) << i;
    }

    // A plain element follows the climb instead.
    Start({Heading(at, P3(10, 10, 0), P3(0, 0.5f, -1), KindMove)});
    Add(ElementStraightLine, 30);
    EXPECT_TRUE(NearVector(Pt(1).Position, P3(2 + 21.2132f, 3 + 21.2132f, 4), 1e-4));
}

// ---- A ride of all 17 elements

TEST_F(ElementGenerator, RideOfAllSeventeenElementsJoinsSmoothly) {
    // Default parameters give 1, 1, 1, 1, 2, 2, 1, 2, 4, 2, 5, 4, 6, 4, 4,
    // 1, 2 points: 43, and the start point.
    const int32_t added[17] = {1, 1, 1, 1, 2, 2, 1, 2, 4, 2, 5, 4, 6, 4, 4, 1, 2};
    int32_t total = 1;
    for (uint32_t id = 0; id < 17; id++) {
        SCOPED_TRACE(id);
        const WElementRow& row = WElementTable[id];
        int32_t last = Count() - 1;
        MPoint3 before = last >= 0 ? Pt(last).HandleOut - Pt(last).Position : P3(1, 0, 0);
        TheElement->Add(id, row.Default[0], row.Default[1], row.Default[2], row.Default[3]);
        if (last < 0) last = 0; // the start point was made for the first element
        total += added[id];
        ASSERT_EQ(Count(), total);
        // The new first handle continues the direction the last point was
        // heading. A road piece keeps the horizontal direction and sets its
        // own slope.
        MPoint3 after = Pt(last).HandleOut - Pt(last).Position;
        if (id == ElementRoadStraight || id == ElementRoadBend) {
            before.y = 0;
            after.y = 0;
        }
        MPoint3 a = Normalized(before), b = Normalized(after);
        MPoint3 cross = Cross3(a, b);
        EXPECT_LT(Length3(cross), 1e-4f);
        EXPECT_GT(a.x * b.x + a.y * b.y + a.z * b.z, 0.99f);
        EXPECT_EQ(Pt(last + 1).Kind, KindCurve);
    }
    EXPECT_EQ(Count(), 44);
    for (int32_t i = 0; i < Count(); i++) {
        const WSketchPoint& p = Pt(i);
        for (float v :
             {p.Position.x, p.Position.y, p.Position.z, p.HandleIn.x, p.HandleIn.y, p.HandleIn.z,
              p.HandleOut.x, p.HandleOut.y, p.HandleOut.z, p.Roll.x, p.Roll.y, p.Roll.z})
            EXPECT_TRUE(std::isfinite(v)) << i;
    }
    EXPECT_TRUE(CheckInvariants(*TheSketch));
    EXPECT_EQ(TheMode, ModeEditSketch);
}
