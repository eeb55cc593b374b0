// Operations on the whole sketch: clean-up, centre and normalise, scale,
// flips and making the sketch flat.

#include "SketchTestSupport.h"

#include "foundation/Platform.h"
#include "sketch/WUndoRing.h"

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

namespace {

WSketchPoint Rec(uint8_t kind, MPoint3 position, MPoint3 in, MPoint3 out, MPoint3 roll,
                 uint8_t smooth = 1) {
    WSketchPoint r;
    r.Position = position;
    r.HandleIn = in;
    r.HandleOut = out;
    r.Roll = roll;
    r.Smooth = smooth;
    r.Kind = kind;
    return r;
}

// A point of a straight run along x: handles one unit behind and ahead.
WSketchPoint AlongX(uint8_t kind, float x, MPoint3 roll) {
    return Rec(kind, P3(x, 0, 0), P3(x - 1, 0, 0), P3(x + 1, 0, 0), roll);
}

// A scripted message box: records texts, icons and buttons, answers in order.
struct Script {
    MString Texts[4];
    MessageIcon Icons[4] = {};
    MessageButtons Buttons[4] = {};
    MessageAnswer Answers[4] = {};
    MessageScript Data;
    explicit Script(MessageAnswer answer) {
        Answers[0] = answer;
        Data.Texts = Texts;
        Data.Icons = Icons;
        Data.Buttons = Buttons;
        Data.Capacity = 4;
        Data.Answers = Answers;
        Data.AnswerCount = 1;
        TheMessageScript = &Data;
    }
    ~Script() { TheMessageScript = nullptr; }
};

class SketchOperations : public ::testing::Test {
  protected:
    void SetUp() override {
        if (TheSketch) DestroySketch();
        ASSERT_NE(CreateSketch(), nullptr);
    }
    void TearDown() override {
        TheMessageScript = nullptr;
        DestroySketch();
    }
    // Fills the sketch and makes that the saved, unmodified state, so that
    // only a real change by the operation under test sets Modified.
    WSketch& Load(const std::vector<WSketchPoint>& records) {
        WSketch& s = *TheSketch;
        Fill(s, records);
        s.Commit();
        s.Modified = 0;
        return s;
    }
};

// ---- Clean-up

TEST_F(SketchOperations, CleanUpOfOneRecordEmptiesTheSketch) {
    WSketch& s = Load({Record(4, 5, 6, KindMove)});
    EXPECT_FALSE(s.CleanUp());
    EXPECT_EQ(s.PointCount, 0);
    EXPECT_EQ(s.Modified, 0); // the clean-up does not commit
}

TEST_F(SketchOperations, CleanUpOfAnEmptySketchFails) {
    WSketch& s = *TheSketch;
    EXPECT_FALSE(s.CleanUp());
    EXPECT_EQ(s.PointCount, 0);
}

TEST_F(SketchOperations, CleanUpOfASegmentOfNoLengthLeavesNothing) {
    WSketch& s = Load({Record(1, 1, 1, KindMove), Record(1, 1, 1, KindLine)});
    EXPECT_FALSE(s.CleanUp());
    EXPECT_EQ(s.PointCount, 0);
}

TEST_F(SketchOperations, CleanUpRepairsTheKindsAtBothEnds) {
    WSketch& s = Load({AlongX(KindLine, 0, P3(0, 0, 1)),
                       Rec(KindLine, P3(10, 0, 0), P3(9, 0, 0), P3(10, 1, 0), P3(0, 0, 1)),
                       Rec(KindMove, P3(10, 10, 0), P3(10, 9, 0), P3(10, 11, 0), P3(0, 0, 1))});
    EXPECT_TRUE(s.CleanUp());
    ASSERT_EQ(s.PointCount, 3);
    EXPECT_EQ(s.Points[0].Kind, KindMove);
    EXPECT_EQ(s.Points[1].Kind, KindLine);
    EXPECT_EQ(s.Points[2].Kind, KindLine);
}

TEST_F(SketchOperations, TwoMovesInARowLoseTheFirst) {
    WSketch& s =
        Load({Record(0, 0, 0, KindMove), Record(5, 5, 0, KindMove), Record(10, 5, 0, KindLine)});
    StartDebugCapture();
    EXPECT_TRUE(s.CleanUp());
    EXPECT_EQ(Text(StopDebugCapture()), u"Curve deleted with no points\n");
    ASSERT_EQ(s.PointCount, 2);
    EXPECT_TRUE(SameBits(s.Points[0].Position, P3(5, 5, 0)));
    EXPECT_EQ(s.Points[0].Kind, KindMove);
    EXPECT_TRUE(SameBits(s.Points[1].Position, P3(10, 5, 0)));
    EXPECT_EQ(s.Current, -1);
}

TEST_F(SketchOperations, ThreeMovesInARowLoseTheFirstTwo) {
    WSketch& s = Load({Record(0, 0, 0, KindMove), Record(1, 0, 0, KindMove),
                       Record(2, 0, 0, KindMove), Record(2, 7, 0, KindLine)});
    StartDebugCapture();
    EXPECT_TRUE(s.CleanUp());
    EXPECT_EQ(Text(StopDebugCapture()),
              u"Curve deleted with no points\nCurve deleted with no points\n");
    ASSERT_EQ(s.PointCount, 2);
    EXPECT_TRUE(SameBits(s.Points[0].Position, P3(2, 0, 0)));
}

TEST_F(SketchOperations, StraightCurveBecomesALineAndKeepsItsHandles) {
    WSketch& s = Load({Rec(KindMove, P3(0, 0, 0), P3(-5, 0, 0), P3(10, 0, 0), P3(0, 0, 1)),
                       Rec(KindCurve, P3(30, 0, 0), P3(20, 0, 0), P3(40, 0, 0), P3(0, 0, 1))});
    StartDebugCapture();
    EXPECT_TRUE(s.CleanUp());
    EXPECT_EQ(Text(StopDebugCapture()), u"1 unnecessary curves changed into lines\n");
    ASSERT_EQ(s.PointCount, 2);
    EXPECT_EQ(s.Points[1].Kind, KindLine);
    EXPECT_TRUE(SameBits(s.Points[0].HandleOut, P3(10, 0, 0)));
    EXPECT_TRUE(SameBits(s.Points[1].HandleIn, P3(20, 0, 0)));
}

TEST_F(SketchOperations, CurveWithOneHandleOffItsChordStaysACurve) {
    WSketch& s = Load({Rec(KindMove, P3(0, 0, 0), P3(-5, 0, 0), P3(10, 0, 0), P3(0, 0, 1)),
                       Rec(KindCurve, P3(30, 0, 0), P3(20, 1, 0), P3(40, 0, 0), P3(0, 0, 1))});
    StartDebugCapture();
    EXPECT_TRUE(s.CleanUp());
    EXPECT_EQ(Text(StopDebugCapture()), u"");
    EXPECT_EQ(s.Points[1].Kind, KindCurve);
}

TEST_F(SketchOperations, ThreePointsOnALineWithEqualRollsBecomeTwo) {
    WSketch& s = Load({AlongX(KindMove, 0, P3(0, 0, 1)), AlongX(KindLine, 10, P3(0, 0, 1)),
                       AlongX(KindLine, 20, P3(0, 0, 1))});
    StartDebugCapture();
    EXPECT_TRUE(s.CleanUp());
    EXPECT_EQ(Text(StopDebugCapture()), u"1 unnecessary points deleted!\n");
    ASSERT_EQ(s.PointCount, 2);
    EXPECT_TRUE(SameBits(s.Points[0].Position, P3(0, 0, 0)));
    EXPECT_TRUE(SameBits(s.Points[1].Position, P3(20, 0, 0)));
    EXPECT_EQ(s.Points[1].Kind, KindLine);
}

TEST_F(SketchOperations, FourPointsOnALineWithEqualRollsBecomeTwo) {
    WSketch& s = Load({AlongX(KindMove, 0, P3(0, 0, 1)), AlongX(KindLine, 10, P3(0, 0, 1)),
                       AlongX(KindLine, 20, P3(0, 0, 1)), AlongX(KindLine, 35, P3(0, 0, 1))});
    StartDebugCapture();
    EXPECT_TRUE(s.CleanUp());
    EXPECT_EQ(Text(StopDebugCapture()), u"2 unnecessary points deleted!\n");
    ASSERT_EQ(s.PointCount, 2);
    EXPECT_TRUE(SameBits(s.Points[1].Position, P3(35, 0, 0)));
}

TEST_F(SketchOperations, ThreePointsOnALineWithDifferentRollsAllStay) {
    WSketch& s = Load({AlongX(KindMove, 0, P3(0, 0, 1)), AlongX(KindLine, 10, P3(0, 1, 0)),
                       AlongX(KindLine, 20, P3(0, 0, 1))});
    StartDebugCapture();
    EXPECT_TRUE(s.CleanUp());
    EXPECT_EQ(Text(StopDebugCapture()), u"");
    ASSERT_EQ(s.PointCount, 3);
    EXPECT_TRUE(SameBits(s.Points[1].Roll, P3(0, 1, 0)));
    EXPECT_TRUE(SameBits(s.Points[2].Roll, P3(0, 0, 1)));
}

TEST_F(SketchOperations, RollsArePerpendicularToThePathAfterCleanUp) {
    // One roll leans into the path, the other lies exactly along it.
    WSketch& s = Load({AlongX(KindMove, 0, P3(1, 1, 0)), AlongX(KindLine, 10, P3(3, 0, 0))});
    EXPECT_TRUE(s.CleanUp());
    ASSERT_EQ(s.PointCount, 2);
    const MPoint3& leaning = s.Points[0].Roll;
    EXPECT_EQ(leaning.x, 0.0f);
    EXPECT_FLOAT_EQ(leaning.y, 1.0f);
    EXPECT_EQ(leaning.z, 0.0f);
    // Along the path the frame has no X axis: the roll becomes zero, and the
    // next clean-up gives it the stand-by of a level tangent.
    EXPECT_EQ(s.Points[1].Roll.x, 0.0f);
    EXPECT_EQ(s.Points[1].Roll.y, 0.0f);
    EXPECT_EQ(s.Points[1].Roll.z, 0.0f);
    EXPECT_TRUE(s.CleanUp());
    EXPECT_EQ(s.Points[1].Roll.x, 0.0f);
    EXPECT_EQ(s.Points[1].Roll.y, 0.0f);
    EXPECT_EQ(s.Points[1].Roll.z, 1.0f);
}

TEST_F(SketchOperations, RollsOfASpaceCurveAreUnitAndPerpendicularAfterCleanUp) {
    WSketch& s =
        Load({Rec(KindMove, P3(0, 0, 0), P3(-3, -4, -12), P3(3, 4, 12), P3(1, 2, 3)),
              Rec(KindCurve, P3(40, 10, -5), P3(30, 20, 5), P3(50, 0, -15), P3(0, 0, 0)),
              Rec(KindCurve, P3(60, 60, 60), P3(55, 40, 70), P3(65, 80, 50), P3(-2, 7, 1))});
    EXPECT_TRUE(s.CleanUp());
    ASSERT_EQ(s.PointCount, 3);
    for (int32_t i = 0; i < 3; i++) {
        const WSketchPoint& p = s.Points[i];
        MPoint3 in = p.Position - p.HandleIn, out = p.HandleOut - p.Position;
        Normalize3(in);
        Normalize3(out);
        MPoint3 tangent = in + out;
        Normalize3(tangent);
        EXPECT_NEAR(Dot3(p.Roll, tangent), 0.0f, 1e-6f) << i;
        EXPECT_NEAR(Length3(p.Roll), 1.0f, 1e-6f) << i;
    }
}

TEST_F(SketchOperations, CleanUpMakesTwinsEqualWithTheFirstWinning) {
    WSketch& s = Load({Rec(KindMove, P3(0, 0, 0), P3(-5, 5, 0), P3(5, -5, 0), P3(0, 0, 1), 1),
                       Rec(KindLine, P3(20, 0, 0), P3(15, 0, 0), P3(25, 0, 0), P3(0, 0, 1)),
                       Rec(KindLine, P3(20, 20, 0), P3(20, 15, 0), P3(20, 25, 0), P3(0, 0, 1)),
                       Rec(KindLine, P3(0, 0, 0), P3(1, 1, 0), P3(9, 9, 9), P3(0, 1, 0), 0)});
    EXPECT_TRUE(s.CleanUp());
    ASSERT_EQ(s.PointCount, 4);
    const WSketchPoint &first = s.Points[0], &last = s.Points[3];
    EXPECT_TRUE(SameBits(last.HandleIn, P3(-5, 5, 0)));
    EXPECT_TRUE(SameBits(last.HandleOut, P3(5, -5, 0)));
    EXPECT_TRUE(SameBits(last.Roll, first.Roll));
    EXPECT_EQ(last.Smooth, 1);
    EXPECT_EQ(first.Kind, KindMove);
    EXPECT_EQ(last.Kind, KindLine);
    EXPECT_TRUE(CheckInvariants(s));
}

TEST_F(SketchOperations, ZeroSegmentsAreRemovedWithTheirHandles) {
    WSketch& s = Load({Rec(KindMove, P3(0, 0, 0), P3(0, -1, 0), P3(0, 1, 0), P3(0, 0, 1)),
                       Rec(KindCurve, P3(0.00001f, 0, 0), P3(-3, 3, 0), P3(3, 3, 0), P3(0, 0, 1)),
                       Rec(KindLine, P3(0, 10, 0), P3(0, 9, 0), P3(0, 11, 0), P3(0, 0, 1))});
    EXPECT_TRUE(s.CleanUp());
    ASSERT_EQ(s.PointCount, 2);
    EXPECT_TRUE(SameBits(s.Points[0].Position, P3(0, 0, 0)));
    EXPECT_TRUE(SameBits(s.Points[0].HandleOut, P3(0, 1, 0)));
    EXPECT_TRUE(SameBits(s.Points[1].Position, P3(0, 10, 0)));
    EXPECT_TRUE(SameBits(s.Points[1].HandleIn, P3(0, 9, 0)));
}

// The steps run in their order: twins are made equal (step 3) before
// segments of no length go (step 7). A closed curve whose end repeats the
// point before it loses that end, and the point before, now the end, keeps
// the handles it had: the twins meet again, unequal, until an edit through
// SetPoint or the next clean-up makes them equal.
TEST_F(SketchOperations, AZeroSegmentAtTheEndOfAClosedCurveGoesAfterTheTwinsWereMatched) {
    WSketch& s = Load({Rec(KindMove, P3(0, 0, 0), P3(-1, 1, 0), P3(1, -1, 0), P3(0, 0, 1)),
                       Rec(KindLine, P3(10, 0, 0), P3(9, 2, 0), P3(11, -2, 0), P3(0, 0, 1)),
                       Rec(KindLine, P3(10, 10, 0), P3(9, 13, 0), P3(11, 7, 0), P3(0, 0, 1)),
                       Rec(KindLine, P3(0, 0, 0), P3(-1, 4, 0), P3(1, -4, 0), P3(0, 0, 1)),
                       Rec(KindLine, P3(0, 0, 0), P3(-1, 5, 0), P3(1, -5, 0), P3(0, 0, 1))});
    EXPECT_TRUE(s.CleanUp());
    ASSERT_EQ(s.PointCount, 4);
    EXPECT_EQ(s.FindTwin(0), 3);
    EXPECT_TRUE(SameBits(s.Points[0].HandleIn, P3(-1, 1, 0)));
    EXPECT_TRUE(SameBits(s.Points[3].HandleIn, P3(-1, 4, 0)));
    EXPECT_TRUE(SameBits(s.Points[3].HandleOut, P3(1, -4, 0)));
    EXPECT_TRUE(s.CleanUp());
    EXPECT_TRUE(SameBits(s.Points[3].HandleIn, P3(-1, 1, 0)));
    EXPECT_TRUE(CheckInvariants(s));
}

// Likewise a last curve of a point and a segment of no length: the segment
// goes in step 7, after the lone KindMove at the end was looked for in step
// 4, so the sketch ends in a curve of one record.
TEST_F(SketchOperations, AZeroSegmentOfTheLastCurveLeavesItsMoveAtTheEnd) {
    WSketch& s = Load({Record(0, 0, 0, KindMove), Record(10, 0, 0, KindLine),
                       Record(50, 50, 0, KindMove), Record(50, 50, 0, KindLine)});
    EXPECT_TRUE(s.CleanUp());
    ASSERT_EQ(s.PointCount, 3);
    EXPECT_EQ(s.Points[2].Kind, KindMove);
    EXPECT_TRUE(SameBits(s.Points[2].Position, P3(50, 50, 0)));
    // The next clean-up finds it in step 1 and makes it a line from (10, 0).
    EXPECT_TRUE(s.CleanUp());
    ASSERT_EQ(s.PointCount, 3);
    EXPECT_EQ(s.Points[2].Kind, KindLine);
}

TEST_F(SketchOperations, TwoIdenticalClosedCurvesEndAsOne) {
    std::vector<WSketchPoint> triangle = {Record(0, 0, 0, KindMove), Record(30, 0, 0, KindLine),
                                          Record(0, 30, 0, KindLine), Record(0, 0, 0, KindLine)};
    std::vector<WSketchPoint> twice = triangle;
    twice.insert(twice.end(), triangle.begin(), triangle.end());
    WSketch& s = Load(twice);
    StartDebugCapture();
    EXPECT_TRUE(s.CleanUp());
    EXPECT_EQ(Text(StopDebugCapture()), u"Duplicate curve with 4 points deleted\n");
    ASSERT_EQ(s.PointCount, 4);
    for (int32_t i = 0; i < 4; i++) {
        EXPECT_TRUE(SameBits(s.Points[i].Position, triangle[size_t(i)].Position)) << i;
        EXPECT_EQ(s.Points[i].Kind, triangle[size_t(i)].Kind) << i;
    }
    EXPECT_EQ(s.FindTwin(0), 3);
    EXPECT_TRUE(CheckInvariants(s));
}

TEST_F(SketchOperations, ALongerLaterCurveLosesOnlyTheRepeatedHead) {
    WSketch& s =
        Load({Record(0, 0, 0, KindMove), Record(10, 0, 0, KindLine), Record(0, 0, 0, KindMove),
              Record(10, 0, 0, KindLine), Record(10, 10, 0, KindLine)});
    StartDebugCapture();
    EXPECT_TRUE(s.CleanUp());
    EXPECT_EQ(Text(StopDebugCapture()), u"Duplicate curve with 2 points deleted\n");
    ASSERT_EQ(s.PointCount, 3);
    EXPECT_TRUE(SameBits(s.Points[2].Position, P3(10, 10, 0)));
    EXPECT_EQ(s.Points[2].Kind, KindLine);
}

TEST_F(SketchOperations, ALaterShorterCurveIsNoDuplicateOfALongerOne) {
    WSketch& s =
        Load({Record(0, 0, 0, KindMove), Record(10, 0, 0, KindLine), Record(10, 10, 0, KindLine),
              Record(0, 0, 0, KindMove), Record(10, 0, 0, KindLine)});
    StartDebugCapture();
    EXPECT_TRUE(s.CleanUp());
    EXPECT_EQ(Text(StopDebugCapture()), u"");
    EXPECT_EQ(s.PointCount, 5);
}

TEST_F(SketchOperations, CleanUpReportsPointsBeforeCurves) {
    WSketch& s = Load({AlongX(KindMove, 0, P3(0, 0, 1)), AlongX(KindLine, 10, P3(0, 0, 1)),
                       AlongX(KindLine, 20, P3(0, 0, 1)),
                       Rec(KindCurve, P3(40, 0, 0), P3(30, 0, 0), P3(50, 0, 0), P3(0, 0, 1))});
    StartDebugCapture();
    EXPECT_TRUE(s.CleanUp());
    // The straightened curve makes a run of three lines whose middle point
    // goes as well.
    EXPECT_EQ(Text(StopDebugCapture()),
              u"2 unnecessary points deleted!\n1 unnecessary curves changed into lines\n");
    ASSERT_EQ(s.PointCount, 2);
    EXPECT_TRUE(SameBits(s.Points[1].Position, P3(40, 0, 0)));
}

// ---- Centre and normalise

TEST_F(SketchOperations, CentreOfAFlatSketchAtDepthFiveMovesItToZero) {
    WSketch& s = Load({Record(0, 0, 5, KindMove), Record(10, 20, 5, KindLine)});
    ASSERT_TRUE(s.IsFlat());
    s.TransformAll(true, false);
    EXPECT_TRUE(SameBits(s.Points[0].Position, P3(-5, -10, 0)));
    EXPECT_TRUE(SameBits(s.Points[1].Position, P3(5, 10, 0)));
    EXPECT_TRUE(SameBits(s.Points[1].HandleIn, P3(5, 10, 0)));
    EXPECT_TRUE(SameBits(s.Points[1].HandleOut, P3(5, 10, 0)));
    EXPECT_TRUE(SameBits(s.Points[1].Roll, P3(0, 0, 1)));
    EXPECT_TRUE(s.IsFlat());
    EXPECT_EQ(s.Modified, 1);
}

TEST_F(SketchOperations, NormalizeOfASinglePointDoesNothing) {
    WSketch& s = Load({Record(3, 4, 5, KindMove)});
    WSketchPoint before = s.Points[0];
    int32_t depth = s.Undo->Depth;
    s.TransformAll(false, true);
    EXPECT_TRUE(SameRecordBits(s.Points[0], before));
    EXPECT_EQ(s.Modified, 0);
    EXPECT_EQ(s.Undo->Depth, depth);
}

TEST_F(SketchOperations, NormalizeScalesTheLargestExtentTo200AboutTheOrigin) {
    WSketch& s = Load({Record(10, 0, 0, KindMove), Record(60, 20, 0, KindLine)});
    s.TransformAll(false, true);
    EXPECT_TRUE(SameBits(s.Points[0].Position, P3(40, 0, 0)));
    EXPECT_TRUE(SameBits(s.Points[1].Position, P3(240, 80, 0)));
    EXPECT_TRUE(SameBits(s.Points[1].HandleOut, P3(240, 80, 0)));
    EXPECT_EQ(s.Modified, 1);
}

TEST_F(SketchOperations, NormalizeCountsDepthToo) {
    WSketch& s = Load({Record(0, 0, 0, KindMove), Record(1, 1, 100, KindLine)});
    s.TransformAll(false, true);
    EXPECT_TRUE(SameBits(s.Points[1].Position, P3(2, 2, 200)));
}

TEST_F(SketchOperations, CentreAndNormalizeScaleBehindTheMove) {
    WSketch& s = Load({Record(10, 0, 0, KindMove), Record(60, 20, 0, KindLine)});
    s.TransformAll(true, true);
    EXPECT_EQ(s.Points[0].Position.x, -100.0f);
    EXPECT_EQ(s.Points[0].Position.y, -40.0f);
    EXPECT_EQ(s.Points[0].Position.z, 0.0f);
    EXPECT_EQ(s.Points[1].Position.x, 100.0f);
    EXPECT_EQ(s.Points[1].Position.y, 40.0f);
    EXPECT_EQ(s.Points[1].Position.z, 0.0f);
}

TEST_F(SketchOperations, CentreMovesASketchEvenByLessThanTheIdentityTolerance) {
    // The bounds' centre at (0.00005, 0, 0): a translation that passes the
    // identity test of a matrix, and still it is applied.
    WSketch& s = Load({Record(0, 0, 0, KindMove), Record(0.0001f, 0, 0, KindLine)});
    s.TransformAll(true, false);
    float half = 0.0001f * 0.5f;
    EXPECT_TRUE(SameBits(s.Points[0].Position, P3(-half, 0, 0)));
    EXPECT_TRUE(SameBits(s.Points[1].Position, P3(half, 0, 0)));
    EXPECT_TRUE(SameBits(s.Points[1].HandleIn, P3(half, 0, 0)));
    EXPECT_EQ(s.Modified, 1);
}

TEST_F(SketchOperations, NormalizeScalesEvenByAFactorCloseToOne) {
    // An extent of 200 + 1/128: the factor 200 / e differs from 1 by less
    // than the identity tolerance, and the largest extent still becomes 200.
    WSketch& s = Load({Record(0, 0, 0, KindMove), Record(200.0078125f, 10, 0, KindLine)});
    s.TransformAll(false, true);
    float factor = 200.0f / 200.0078125f;
    EXPECT_TRUE(SameBits(s.Points[1].Position, P3(200.0078125f * factor, 10 * factor, 0)));
    EXPECT_NE(s.Points[1].Position.x, 200.0078125f);
    EXPECT_FLOAT_EQ(s.Points[1].Position.x, 200.0f);
    EXPECT_EQ(s.Modified, 1);
}

TEST_F(SketchOperations, TransformAllWithoutFlagsDoesNothing) {
    WSketch& s = Load({Record(10, 0, 0, KindMove), Record(60, 20, 0, KindLine)});
    s.TransformAll(false, false);
    EXPECT_TRUE(SameBits(s.Points[1].Position, P3(60, 20, 0)));
    EXPECT_EQ(s.Modified, 0);
}

// ---- Scale

TEST_F(SketchOperations, ScaleMultipliesInDoubleAndRoundsOnce) {
    WSketch& s = Load({Rec(KindMove, P3(10, -10, 10), P3(10, 0, 0), P3(0, 0, -10), P3(0, 1, 0)),
                       Record(20, 0, 0, KindLine)});
    s.Scale(1.1);
    // 10 * 1.1 is 11 once rounded; with the float 1.1 it would be 11.0000002.
    EXPECT_TRUE(SameBits(s.Points[0].Position, P3(11, -11, 11)));
    EXPECT_TRUE(SameBits(s.Points[0].HandleIn, P3(11, 0, 0)));
    EXPECT_TRUE(SameBits(s.Points[0].HandleOut, P3(0, 0, -11)));
    EXPECT_TRUE(SameBits(s.Points[0].Roll, P3(0, 1, 0)));
    EXPECT_TRUE(SameBits(s.Points[1].Position, P3(22, 0, 0)));
    EXPECT_EQ(s.Modified, 1);
    s.Scale(0.9);
    EXPECT_TRUE(SameBits(s.Points[1].Position, P3(19.8f, 0, 0)));
}

TEST_F(SketchOperations, OperationsOnAnEmptySketchDoNothing) {
    WSketch& s = *TheSketch;
    int32_t depth = s.Undo->Depth;
    s.Scale(1.1);
    s.FlipHorizontal();
    s.FlipVertical();
    s.TransformAll(true, true);
    EXPECT_EQ(s.PointCount, 0);
    EXPECT_EQ(s.Modified, 0);
    EXPECT_EQ(s.Undo->Depth, depth);
}

// ---- Flips

TEST_F(SketchOperations, FlipHorizontalInvertsXOfAllFourVectors) {
    WSketch& s = Load({Rec(KindMove, P3(1, 2, 3), P3(-4, 5, 6), P3(0, 8, 9), P3(0.5f, 0.5f, 0)),
                       Record(7, 7, 7, KindLine)});
    s.FlipHorizontal();
    const WSketchPoint& p = s.Points[0];
    EXPECT_TRUE(SameBits(p.Position, P3(-1, 2, 3)));
    EXPECT_TRUE(SameBits(p.HandleIn, P3(4, 5, 6)));
    EXPECT_TRUE(SameBits(p.HandleOut, P3(-0.0f, 8, 9)));
    EXPECT_TRUE(SameBits(p.Roll, P3(-0.5f, 0.5f, 0)));
    EXPECT_EQ(s.Modified, 1);
}

TEST_F(SketchOperations, FlipVerticalInvertsYOfAllFourVectors) {
    WSketch& s = Load({Rec(KindMove, P3(1, 2, 3), P3(4, -5, 6), P3(7, 0, 9), P3(0.5f, 0.5f, 0)),
                       Record(7, 7, 7, KindLine)});
    s.FlipVertical();
    const WSketchPoint& p = s.Points[0];
    EXPECT_TRUE(SameBits(p.Position, P3(1, -2, 3)));
    EXPECT_TRUE(SameBits(p.HandleIn, P3(4, 5, 6)));
    EXPECT_TRUE(SameBits(p.HandleOut, P3(7, -0.0f, 9)));
    EXPECT_TRUE(SameBits(p.Roll, P3(0.5f, -0.5f, 0)));
}

TEST_F(SketchOperations, FlipTwiceGivesBackTheSameBits) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    std::vector<WSketchPoint> records = {
        Rec(KindMove, P3(1.1f, -0.0f, 3), P3(0, 5.5f, nan), P3(nan, 1e-30f, 9), P3(0.3f, 0, 1)),
        Rec(KindCurve, P3(-7.25f, 7, 7), P3(1, 2, 3), P3(4, 5, 6), P3(0, 0, 0))};
    WSketch& s = Load(records);
    s.FlipHorizontal();
    EXPECT_FALSE(SameRecordBits(s.Points[0], records[0]));
    s.FlipHorizontal();
    s.FlipVertical();
    s.FlipVertical();
    for (int32_t i = 0; i < 2; i++)
        EXPECT_TRUE(SameRecordBits(s.Points[i], records[size_t(i)]));
}

// ---- Make flat

TEST_F(SketchOperations, MakeFlatOfAFlatSketchOnlySaysSo) {
    WSketch& s = Load({Record(0, 0, 2, KindMove), Record(10, 0, 2, KindLine)});
    Script script(AnswerYes);
    s.MakeFlat();
    ASSERT_EQ(script.Data.Count, 1);
    EXPECT_EQ(Text(script.Texts[0]), u"The sketch is already 2D!");
    EXPECT_EQ(script.Icons[0], IconInformation);
    EXPECT_EQ(script.Buttons[0], ButtonsOk);
    EXPECT_TRUE(SameBits(s.Points[0].Position, P3(0, 0, 2)));
    EXPECT_EQ(s.Modified, 0);
}

std::vector<WSketchPoint> Bent() {
    return {Rec(KindMove, P3(0, 0, 3), P3(-1, 0, 3), P3(1, 0, -4), P3(0, 1, 0)),
            Rec(KindLine, P3(10, 0, 7), P3(9, 0, 7), P3(10, 1, 7), P3(0, 0, 1)),
            Rec(KindCurve, P3(10, 10, -2), P3(12, 8, 1), P3(10, 11, -2), P3(1, 0, 0))};
}

TEST_F(SketchOperations, MakeFlatAnsweredNoOrCancelLeavesAll) {
    for (MessageAnswer answer : {AnswerNo, AnswerCancel}) {
        std::vector<WSketchPoint> records = Bent();
        WSketch& s = Load(records);
        Script script(answer);
        s.MakeFlat();
        ASSERT_EQ(script.Data.Count, 1);
        EXPECT_EQ(Text(script.Texts[0]), u"Are you sure you want to make your sketch 2D?");
        EXPECT_EQ(script.Icons[0], IconQuestion);
        EXPECT_EQ(script.Buttons[0], ButtonsYesNoCancel);
        ASSERT_EQ(s.PointCount, 3);
        for (int32_t i = 0; i < 3; i++)
            EXPECT_TRUE(SameRecordBits(s.Points[i], records[size_t(i)])) << i;
        EXPECT_EQ(s.Modified, 0);
    }
}

TEST_F(SketchOperations, MakeFlatAnsweredYesDropsDepthAndCleansUp) {
    WSketch& s = Load(Bent());
    Script script(AnswerYes);
    s.MakeFlat();
    ASSERT_EQ(script.Data.Count, 1);
    EXPECT_EQ(Text(script.Texts[0]), u"Are you sure you want to make your sketch 2D?");
    ASSERT_EQ(s.PointCount, 3);
    for (int32_t i = 0; i < 3; i++) {
        const WSketchPoint& p = s.Points[i];
        EXPECT_EQ(p.Position.z, 0.0f) << i;
        EXPECT_EQ(p.HandleIn.z, 0.0f) << i;
        EXPECT_EQ(p.HandleOut.z, 0.0f) << i;
        // (0, 0, 1) through the frame of a level tangent stays upright.
        EXPECT_EQ(p.Roll.x, 0.0f) << i;
        EXPECT_EQ(p.Roll.y, 0.0f) << i;
        EXPECT_FLOAT_EQ(p.Roll.z, 1.0f) << i;
    }
    EXPECT_TRUE(SameBits(s.Points[2].Position, P3(10, 10, 0)));
    EXPECT_TRUE(s.IsFlat());
    EXPECT_EQ(s.Modified, 1);
}

TEST_F(SketchOperations, MakeFlatAnsweredYesCleansUpWhatFlatteningMadeStraight) {
    // Seen from above the three points lie on one line; only their depth
    // bent the path.
    WSketch& s = Load({Rec(KindMove, P3(0, 0, 0), P3(-1, 0, 0), P3(1, 0, 0), P3(0, 0, 1)),
                       Rec(KindLine, P3(10, 0, 50), P3(9, 0, 50), P3(11, 0, 50), P3(0, 0, 1)),
                       Rec(KindLine, P3(20, 0, 0), P3(19, 0, 0), P3(21, 0, 0), P3(0, 0, 1))});
    Script script(AnswerYes);
    s.MakeFlat();
    ASSERT_EQ(s.PointCount, 2);
    EXPECT_TRUE(SameBits(s.Points[1].Position, P3(20, 0, 0)));
}

} // namespace

// Many curves, some drawn again further on (whole, or as the head of a longer
// curve, one of them right at the end): exactly the repeats go, in order.
TEST_F(SketchOperations, RepeatsAmongManyCurvesAreFoundWhereverTheyStand) {
    // Curve c: a zigzag of four records, no three in line, unlike every other.
    auto curve = [](int32_t c) {
        float x = float(c % 40) * 50, y = float(c / 40) * 50;
        return std::vector<WSketchPoint>{
            Record(x, y, 0, KindMove), Record(x + 10, y + 3, 0, KindLine),
            Record(x + 20, y, 0, KindLine), Record(x + 30, y + 4, 0, KindLine)};
    };
    std::vector<WSketchPoint> records, expected;
    auto append = [](std::vector<WSketchPoint>& to, const std::vector<WSketchPoint>& what) {
        to.insert(to.end(), what.begin(), what.end());
    };
    int32_t repeats = 0;
    for (int32_t c = 0; c < 400; c++) {
        append(records, curve(c));
        append(expected, curve(c));
        if (c % 50 == 49) { // a repeat of an earlier curve
            append(records, curve(c / 3));
            repeats++;
        }
        if (c == 120) { // a longer curve whose head repeats curve 7
            std::vector<WSketchPoint> longer = curve(7);
            longer.push_back(Record(1000, 1000, 0, KindLine));
            append(records, longer);
            expected.push_back(Record(1000, 1000, 0, KindLine));
            repeats++;
        }
    }
    append(records, curve(399)); // the very last curve repeats the one before
    repeats++;
    WSketch& s = Load(records);
    StartDebugCapture();
    EXPECT_TRUE(s.CleanUp());
    std::u16string report;
    for (int32_t i = 0; i < repeats; i++)
        report += u"Duplicate curve with 4 points deleted\n";
    EXPECT_EQ(Text(StopDebugCapture()), report);
    ASSERT_EQ(s.PointCount, int32_t(expected.size()));
    for (int32_t i = 0; i < s.PointCount; i++) {
        EXPECT_TRUE(SameBits(s.Points[i].Position, expected[size_t(i)].Position)) << i;
        EXPECT_EQ(s.Points[i].Kind, expected[size_t(i)].Kind) << i;
    }
}

// ---- The clean-up against a plain one

namespace {

// The clean-up as it reads step by step: each removal moves the records
// behind it down at once, and the search for repeated curves tries every
// later curve start. Kept here to show that the clean-up of the program,
// which closes up the array once per step and looks only at curve starts
// near each other, leaves the very same records and writes the same lines.
bool PlainCleanUp(WSketch& s) {
    auto remove = [&](int32_t index, int32_t count) {
        for (int32_t i = index; i + count < s.PointCount; i++)
            s.Points[i] = s.Points[i + count];
        s.PointCount -= count;
    };
    auto curveLength = [&](int32_t start) {
        int32_t n = 1;
        while (start + n < s.PointCount && s.Points[start + n].Kind != KindMove)
            n++;
        return n;
    };
    const int32_t oldCount = s.PointCount;
    if (!s.Points.Data) s.PointCount = 0;
    WSketchPoint* p = s.Points.Data;
    if (s.PointCount > 0) p[0].Kind = KindMove;
    if (s.PointCount >= 2 && p[s.PointCount - 1].Kind == KindMove)
        p[s.PointCount - 1].Kind = KindLine;
    for (int32_t i = 0; i < s.PointCount; i++) {
        MMatrix frame = MakePointFrame(p[i], false, false);
        frame.M[3][0] = frame.M[3][1] = frame.M[3][2] = 0;
        p[i].Roll = Transform(frame, MPoint3{1, 0, 0});
    }
    for (int32_t i = 0; i < s.PointCount; i++) {
        int32_t twin = s.FindTwin(i);
        if (twin < 0) continue;
        p[twin].Position = p[i].Position;
        p[twin].HandleIn = p[i].HandleIn;
        p[twin].HandleOut = p[i].HandleOut;
        p[twin].Roll = p[i].Roll;
        p[twin].Smooth = p[i].Smooth;
    }
    if (s.PointCount > 0 && p[s.PointCount - 1].Kind == KindMove) s.PointCount--;
    for (int32_t i = 0; i + 1 < s.PointCount; i++) {
        while (i + 1 < s.PointCount && p[i].Kind == KindMove && p[i + 1].Kind == KindMove) {
            remove(i, 1);
            DebugOutput(u"Curve deleted with no points\n");
        }
    }
    int32_t straightened = 0;
    for (int32_t i = 1; i < s.PointCount; i++) {
        if (p[i].Kind != KindCurve) continue;
        if (IsNearZero(DistanceToLine3(p[i - 1].Position, p[i].Position, p[i - 1].HandleOut)) &&
            IsNearZero(DistanceToLine3(p[i - 1].Position, p[i].Position, p[i].HandleIn))) {
            p[i].Kind = KindLine;
            straightened++;
        }
    }
    for (int32_t i = 1; i < s.PointCount;) {
        if ((p[i].Kind == KindLine || p[i].Kind == KindCurve) &&
            Coincide(p[i].Position, p[i - 1].Position))
            remove(i, 1);
        else
            i++;
    }
    int32_t removed = 0;
    if (s.PointCount >= 3) {
        for (int32_t i = 1; i + 1 < s.PointCount;) {
            if (p[i].Kind == KindLine && p[i + 1].Kind == KindLine &&
                IsNearZero(DistanceToLine3(p[i - 1].Position, p[i + 1].Position, p[i].Position)) &&
                Coincide(p[i].Roll, p[i + 1].Roll)) {
                remove(i, 1);
                removed++;
                if (i > 1) i--;
            } else {
                i++;
            }
        }
    }
    for (int32_t i = 0; i < s.PointCount; i++) {
        if (p[i].Kind != KindMove) continue;
        bool again = true;
        while (again) {
            again = false;
            int32_t count = curveLength(i);
            for (int32_t j = i + count; j < s.PointCount; j++) {
                if (p[j].Kind != KindMove || j + count > s.PointCount) continue;
                bool same = true;
                for (int32_t k = 0; k < count && same; k++)
                    same = p[i + k].Kind == p[j + k].Kind &&
                           Coincide(p[i + k].Position, p[j + k].Position);
                if (!same) continue;
                remove(j, count);
                DebugOutput(MString(u"Duplicate curve with ") + IntegerText(count) +
                            " points deleted\n");
                again = true;
                break;
            }
        }
    }
    if (removed > 0) DebugOutput(IntegerText(removed) + " unnecessary points deleted!\n");
    if (straightened > 0)
        DebugOutput(IntegerText(straightened) + " unnecessary curves changed into lines\n");
    if (s.PointCount != oldCount) s.Current = -1;
    if (s.PointCount > 1) return true;
    s.PointCount = 0;
    s.Current = -1;
    return false;
}

// Sketches that give every step of the clean-up work: positions on a coarse
// grid (so that points repeat, line up and close curves), runs of moves,
// curves drawn again whole or as the head of a longer one, odd values.
std::vector<WSketchPoint> Untidy(std::mt19937& random, int32_t count) {
    std::vector<WSketchPoint> records;
    auto grid = [&](int32_t cells) { return float(int32_t(random() % uint32_t(cells)) * 5); };
    while (int32_t(records.size()) < count) {
        uint32_t what = random() % 10;
        if (what == 0 && records.size() > 4) {
            // An earlier curve again, perhaps with more behind it.
            size_t start = random() % records.size();
            while (start > 0 && records[start].Kind != KindMove)
                start--;
            size_t end = start + 1;
            while (end < records.size() && records[end].Kind != KindMove)
                end++;
            for (size_t k = start; k < end; k++)
                records.push_back(records[k]);
            continue;
        }
        uint8_t kind = what < 2 ? KindMove : what < 6 ? KindLine : KindCurve;
        WSketchPoint r = Record(grid(6), grid(6), what == 9 ? grid(3) : 0, kind);
        if (kind == KindCurve) {
            r.HandleIn = P3(r.Position.x - grid(3), r.Position.y, r.Position.z + grid(2));
            r.HandleOut = P3(r.Position.x + grid(3), r.Position.y, r.Position.z);
        }
        uint32_t roll = random() % 6;
        r.Roll = roll == 0 ? P3(0, 0, 0) : roll == 1 ? P3(1, 0, 0) : P3(0, 0, 1);
        if (random() % 200 == 0) r.Position.x = std::numeric_limits<float>::quiet_NaN();
        if (random() % 300 == 0) r.Position.y = std::numeric_limits<float>::infinity();
        r.Smooth = uint8_t(random() % 2);
        records.push_back(r);
    }
    return records;
}

} // namespace

TEST_F(SketchOperations, CleanUpLeavesWhatThePlainCleanUpLeaves) {
    std::mt19937 random(4242u);
    for (int32_t round = 0; round < 400; round++) {
        int32_t count = round < 300 ? 2 + round % 40 : 3000;
        std::vector<WSketchPoint> records = Untidy(random, count);

        Fill(*TheSketch, records);
        TheSketch->Current = 0;
        StartDebugCapture();
        bool plain = PlainCleanUp(*TheSketch);
        std::u16string plainLines = Text(StopDebugCapture());
        std::vector<WSketchPoint> expected = Records(*TheSketch);
        int32_t expectedCurrent = TheSketch->Current;

        Fill(*TheSketch, records);
        TheSketch->Current = 0;
        StartDebugCapture();
        bool fast = TheSketch->CleanUp();
        std::u16string lines = Text(StopDebugCapture());

        ASSERT_EQ(fast, plain) << "round " << round;
        ASSERT_EQ(lines, plainLines) << "round " << round;
        ASSERT_EQ(TheSketch->Current, expectedCurrent) << "round " << round;
        ASSERT_EQ(TheSketch->PointCount, int32_t(expected.size())) << "round " << round;
        for (size_t i = 0; i < expected.size(); i++)
            ASSERT_TRUE(SameRecordBits(TheSketch->Points[int32_t(i)], expected[i]))
                << "round " << round << " record " << i;
    }
}
