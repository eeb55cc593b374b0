// The string generator: parameters and their cleaning, the shape points of
// an outline, the collision marks, the search for the next point and whole
// runs with a fixed seed.

#include "SpaghettiTestSupport.h"

#include <cmath>

using namespace spaghettitest;

namespace {

class StringGenerator : public SpaghettiFixture {};

// Every run of the tool keeps these, whatever the parameters.
void ExpectRunInvariants(const WSpaghetti& s) {
    ASSERT_TRUE(s.Picture);
    float width = float(s.Picture->Width), height = float(s.Picture->Height);
    float diagonal = std::sqrt(width * width + height * height);
    float low = diagonal * s.CurveLengthMin, high = diagonal * s.CurveLengthMax;
    EXPECT_LE(s.CurveCount, s.Strings * s.CurvesPerString);
    EXPECT_LE(s.CurveCount, 10000);
    int32_t inString = 0;
    for (int32_t i = 0; i < s.CurveCount; i++) {
        const WStringCurve& c = s.Curves[i];
        ASSERT_EQ(c.Points.Count, 4);
        // Seen from the front every curve is straight.
        EXPECT_EQ(c.Points[1].x, c.Points[0].x);
        EXPECT_EQ(c.Points[1].y, c.Points[0].y);
        EXPECT_EQ(c.Points[2].x, c.Points[3].x);
        EXPECT_EQ(c.Points[2].y, c.Points[3].y);
        // Front and back alternate over the whole run.
        float depth = i % 2 == 0 ? s.Depth : -s.Depth;
        EXPECT_EQ(c.Points[0].z, depth) << "curve " << i;
        EXPECT_EQ(c.Points[3].z, depth) << "curve " << i;
        float bulge = c.Points[1].z - c.Points[0].z;
        EXPECT_EQ(c.Points[2].z - c.Points[3].z, bulge);
        if (i % 2 == 0)
            EXPECT_GT(bulge, 0) << "curve " << i;
        else
            EXPECT_LT(bulge, 0) << "curve " << i;
        float dx = c.Points[3].x - c.Points[0].x, dy = c.Points[3].y - c.Points[0].y;
        float length = std::sqrt(dx * dx + dy * dy);
        EXPECT_GT(length, low) << "curve " << i;
        EXPECT_LT(length, high) << "curve " << i;
        EXPECT_EQ(c.Tangent.z, 0);
        if (c.First)
            inString = 0;
        else {
            ASSERT_GT(i, 0);
            // A string goes on where the last curve ended.
            EXPECT_EQ(c.Points[0].x, s.Curves[i - 1].Points[3].x);
            EXPECT_EQ(c.Points[0].y, s.Curves[i - 1].Points[3].y);
        }
        inString++;
        EXPECT_LE(inString, s.CurvesPerString);
    }
    if (s.CurveCount > 0) {
        EXPECT_TRUE(s.Curves[0].First);
    }
}

} // namespace

TEST_F(StringGenerator, ParametersStartAtTheirDefaults) {
    EXPECT_EQ(Tool.Strings, 20);
    EXPECT_EQ(Tool.CurvesPerString, 20);
    EXPECT_EQ(Tool.Radius, 1.0f);
    EXPECT_EQ(Tool.MarginMin, 1.0f);
    EXPECT_EQ(Tool.MarginMax, 2.0f);
    EXPECT_EQ(Tool.CurveLengthMin, 0.05f);
    EXPECT_EQ(Tool.CurveLengthMax, 0.5f);
    EXPECT_EQ(Tool.ShapeJumps, 0);
    EXPECT_EQ(Tool.Depth, 6.0f);
    EXPECT_EQ(Tool.BezierMin, 0.2f);
    EXPECT_EQ(Tool.BezierMax, 0.3f);
    EXPECT_FALSE(Tool.CollisionDetection);
    EXPECT_EQ(Tool.Shape, 2);
    EXPECT_EQ(Tool.Texture, 3);
    EXPECT_EQ(Tool.Particle, 0);
    EXPECT_EQ(Tool.Animation, 0);
    EXPECT_EQ(Tool.Picture, nullptr);
    EXPECT_EQ(Tool.ShapePointCount, 0);
    EXPECT_EQ(Tool.CurveCount, 0);
}

TEST_F(StringGenerator, EmptyFieldsAreCleanedToTheLowestValues) {
    Tool.Strings = Tool.CurvesPerString = Tool.ShapeJumps = 0;
    Tool.Radius = Tool.MarginMin = Tool.MarginMax = Tool.CurveLengthMin = Tool.CurveLengthMax = 0;
    Tool.Depth = Tool.BezierMin = Tool.BezierMax = 0;
    CleanParameters(Tool);
    EXPECT_EQ(Tool.Strings, 1);
    EXPECT_EQ(Tool.CurvesPerString, 1);
    EXPECT_EQ(Tool.Radius, 0.5f);
    EXPECT_EQ(Tool.MarginMin, 0.0f);
    EXPECT_EQ(Tool.MarginMax, 0.0f);
    EXPECT_EQ(Tool.CurveLengthMin, 0.01f);
    EXPECT_EQ(Tool.CurveLengthMax, 0.01f);
    EXPECT_EQ(Tool.ShapeJumps, 0);
    EXPECT_EQ(Tool.Depth, 0.0f);
    EXPECT_EQ(Tool.BezierMin, 0.1f);
    EXPECT_EQ(Tool.BezierMax, 0.1f);
}

TEST_F(StringGenerator, HighValuesAreClampedAndPairsPutInOrder) {
    Tool.Strings = 101;
    Tool.CurvesPerString = 5000;
    Tool.Radius = 7;
    Tool.MarginMin = 5;
    Tool.MarginMax = 2;
    Tool.CurveLengthMin = 3;
    Tool.CurveLengthMax = 0.5f;
    Tool.ShapeJumps = 1000;
    Tool.Depth = -4;
    Tool.BezierMin = 20;
    Tool.BezierMax = 0.05f;
    CleanParameters(Tool);
    EXPECT_EQ(Tool.Strings, 100);
    EXPECT_EQ(Tool.CurvesPerString, 1000);
    EXPECT_EQ(Tool.Radius, 5.0f);
    EXPECT_EQ(Tool.MarginMin, 2.0f);
    EXPECT_EQ(Tool.MarginMax, 5.0f);
    // The swap comes before the clamp: 3 and 0.5 become 0.5 and 1.
    EXPECT_EQ(Tool.CurveLengthMin, 0.5f);
    EXPECT_EQ(Tool.CurveLengthMax, 1.0f);
    EXPECT_EQ(Tool.ShapeJumps, 100);
    EXPECT_EQ(Tool.Depth, 0.0f);
    EXPECT_EQ(Tool.BezierMin, 0.1f);
    EXPECT_EQ(Tool.BezierMax, 10.0f);
}

// ---- Shape points

TEST_F(StringGenerator, OutlineSamplesEveryTwoPixelsFacingOutwards) {
    MakeRectanglePicture(Tool, 40, 30, 10, 10, 30, 20);
    // 20 / 2 + 10 / 2 + 20 / 2 + 10 / 2 samples.
    ASSERT_EQ(Tool.ShapePointCount, 30);
    const WShapePoint& first = Tool.ShapePoints[0];
    EXPECT_EQ(first.X, 10.0f);
    EXPECT_EQ(first.Y, 10.0f);
    EXPECT_EQ(first.AlongX, 1.0f);
    EXPECT_EQ(first.AlongY, 0.0f);
    EXPECT_EQ(first.OutX, 0.0f);
    EXPECT_EQ(first.OutY, -1.0f);
    EXPECT_FALSE(first.Used);
    EXPECT_EQ(Tool.ShapePoints[9].X, 28.0f);
    EXPECT_EQ(Tool.ShapePoints[9].Y, 10.0f);
    // Right side: from (30, 10) down.
    EXPECT_EQ(Tool.ShapePoints[10].X, 30.0f);
    EXPECT_EQ(Tool.ShapePoints[10].Y, 10.0f);
    EXPECT_EQ(Tool.ShapePoints[10].OutX, 1.0f);
    EXPECT_EQ(Tool.ShapePoints[12].Y, 14.0f);
    // Bottom: Out points down, to the transparent side.
    EXPECT_EQ(Tool.ShapePoints[15].OutY, 1.0f);
    EXPECT_EQ(Tool.ShapePoints[15].AlongX, -1.0f);
    // Left: Out points left.
    EXPECT_EQ(Tool.ShapePoints[25].OutX, -1.0f);
    EXPECT_EQ(Tool.ShapePoints[25].AlongY, -1.0f);
}

TEST_F(StringGenerator, AnOutlineTheOtherWayRoundIsTurnedToFaceOutwards) {
    MakeMask(Tool, 40, 30,
             [](int32_t x, int32_t y) { return x >= 10 && x < 30 && y >= 10 && y < 20; });
    // Anticlockwise on the screen: the first probe lands on solid.
    Tool.SampleSegment(P2(10, 20), P2(30, 20));
    ASSERT_EQ(Tool.ShapePointCount, 10);
    EXPECT_EQ(Tool.ShapePoints[0].OutX, 0.0f);
    EXPECT_EQ(Tool.ShapePoints[0].OutY, 1.0f);
    EXPECT_EQ(Tool.ShapePoints[0].AlongX, -1.0f);
    EXPECT_EQ(Tool.ShapePoints[0].X, 10.0f);
}

TEST_F(StringGenerator, SamplesWithSolidOnBothSidesAndEmptySegmentsAreDropped) {
    MakeMask(Tool, 40, 30, [](int32_t, int32_t) { return true; });
    Tool.SampleSegment(P2(10, 10), P2(30, 10));
    EXPECT_EQ(Tool.ShapePointCount, 0);
    Tool.SampleSegment(P2(5, 5), P2(5, 5));
    EXPECT_EQ(Tool.ShapePointCount, 0);
    // At the mask's edge the probe falls outside, which is transparent.
    Tool.SampleSegment(P2(0, 0), P2(0, 6));
    ASSERT_EQ(Tool.ShapePointCount, 3);
    EXPECT_EQ(Tool.ShapePoints[0].OutX, -1.0f);
}

TEST_F(StringGenerator, SlantedSegmentsTakeFractionalPositionsAndUnitVectors) {
    MakeMask(Tool, 40, 40, [](int32_t x, int32_t y) { return y > x; });
    Tool.SampleSegment(P2(0, 0), P2(30, 30));
    // Length 42.43: 22 samples at t = k / 22.
    ASSERT_EQ(Tool.ShapePointCount, 22);
    float t = 1.0f / 22.0f;
    EXPECT_EQ(Tool.ShapePoints[1].X, 0.0f * (1 - t) + 30.0f * t);
    float unit = 30.0f / std::sqrt(1800.0f);
    EXPECT_EQ(Tool.ShapePoints[1].AlongX, unit);
    // Out (along y, -along x) = (0.7, -0.7) points above the line, which is
    // transparent here.
    EXPECT_EQ(Tool.ShapePoints[1].OutX, unit);
    EXPECT_EQ(Tool.ShapePoints[1].OutY, -unit);
}

TEST_F(StringGenerator, MaskAlphaIsZeroOutsideAndOpaqueWhereNothingCanBeRead) {
    MakeRectanglePicture(Tool, 40, 30, 10, 10, 30, 20);
    EXPECT_EQ(Tool.MaskAlpha(-1, 15), 0);
    EXPECT_EQ(Tool.MaskAlpha(40, 15), 0);
    EXPECT_EQ(Tool.MaskAlpha(15, 30), 0);
    EXPECT_EQ(Tool.MaskAlpha(15, 15), 255);
    EXPECT_EQ(Tool.MaskAlpha(5, 5), 0);
    // A picture that lost its block: the accessor gives nothing, read as opaque.
    delete[] Tool.Picture->Pixels;
    Tool.Picture->Pixels = nullptr;
    EXPECT_EQ(Tool.MaskAlpha(5, 5), 255);
}

// ---- Collision marks

TEST_F(StringGenerator, WithoutCollisionDetectionNothingIsMarked) {
    MakeRectanglePicture(Tool, 40, 30, 10, 10, 30, 20);
    Tool.MarkUsed(3);
    for (int32_t i = 0; i < Tool.ShapePointCount; i++)
        EXPECT_FALSE(Tool.ShapePoints[i].Used);
}

TEST_F(StringGenerator, CollisionMarksThePointAndItsNeighboursWithinTheRadius) {
    MakeRectanglePicture(Tool, 40, 250, 10, 10, 30, 240);
    // One unit per pixel: a radius of 4 reaches two samples each way.
    Tool.CollisionDetection = true;
    Tool.Radius = 4;
    Tool.MarkUsed(4); // (18, 10) on the top edge
    for (int32_t i = 0; i < 10; i++)
        EXPECT_EQ(Tool.ShapePoints[i].Used, i >= 2 && i <= 6) << i;
    Tool.MarkUsed(-1);
    Tool.MarkUsed(Tool.ShapePointCount);
}

// ---- The next point

TEST_F(StringGenerator, NextPointCrossesToTheOppositeEdgeWithItsDrawsInOrder) {
    MakeMask(Tool, 40, 250,
             [](int32_t x, int32_t y) { return x >= 10 && x < 30 && y >= 10 && y < 40; });
    // Two shape points: one on the top edge, one on the bottom edge.
    Tool.SampleSegment(P2(20, 10), P2(22, 10));
    Tool.SampleSegment(P2(20, 40), P2(18, 40));
    ASSERT_EQ(Tool.ShapePointCount, 2);
    const WShapePoint& top = Tool.ShapePoints[0];
    MPoint3 current{top.X, top.Y - 1.5f, 0};
    MPoint3 out{top.OutX, top.OutY, 0}, along{top.AlongX, top.AlongY, 0};

    MRandomSeed = 777;
    // The attempts' draws, replayed: the margin, then picks until point 1.
    float margin;
    uint32_t expectedSeed;
    for (;;) {
        margin = MRandomRange(1, 2);
        if (MRandomInt(2) == 1) break;
    }
    expectedSeed = MRandomSeed;
    MRandomSeed = 777;
    WNextPoint next;
    ASSERT_TRUE(Tool.FindNextPoint(current, out, along, 0, MPoint2{}, 5, 100, next));
    EXPECT_EQ(next.Index, 1);
    EXPECT_EQ(MRandomSeed, expectedSeed);
    // Radius 1 over 1 unit per pixel: the margin scale is 1.
    EXPECT_EQ(next.Position.x, 20.0f);
    EXPECT_EQ(next.Position.y, 40.0f + margin * 1.0f);
    EXPECT_EQ(next.Position.z, 0.0f);
    EXPECT_EQ(next.Out.y, 1.0f);
    EXPECT_EQ(next.Along.x, -1.0f);
}

TEST_F(StringGenerator, NextPointFailsOnEachTest) {
    MakeMask(Tool, 40, 250,
             [](int32_t x, int32_t y) { return x >= 10 && x < 30 && y >= 10 && y < 40; });
    Tool.SampleSegment(P2(20, 10), P2(22, 10)); // 0: top, Out up
    Tool.SampleSegment(P2(20, 40), P2(18, 40)); // 1: bottom, Out down
    Tool.SampleSegment(P2(30, 20), P2(30, 22)); // 2: right side, Out right
    MPoint3 current{20, 8, 0};
    MPoint3 up{0, -1, 0}, right{1, 0, 0}, down{0, 1, 0};
    WNextPoint next;
    MRandomSeed = 1;
    // Only a point of the bottom edge can follow the top edge; with lengths
    // that exclude it, nothing does.
    EXPECT_FALSE(Tool.FindNextPoint(current, up, right, 0, MPoint2{}, 40, 100, next));
    EXPECT_FALSE(Tool.FindNextPoint(current, up, right, 0, MPoint2{}, 0, 30, next));
    // Facing the same way as the last edge: the bottom edge faces down.
    EXPECT_FALSE(Tool.FindNextPoint(current, down, right, 0, MPoint2{}, 5, 100, next));
    // A last edge that is vertical is not parallel to the bottom edge; the
    // right side's edge is, and its Out, at right angles to the last one,
    // is not above 0.
    EXPECT_TRUE(Tool.FindNextPoint(current, up, MPoint3{0, 1, 0}, 0, MPoint2{}, 5, 100, next));
    EXPECT_EQ(next.Index, 2);
    // The step must turn back: a last step that went up forbids going down.
    EXPECT_FALSE(Tool.FindNextPoint(current, up, right, 0, MPoint2{0, 1}, 5, 100, next));
    EXPECT_TRUE(Tool.FindNextPoint(current, up, right, 0, MPoint2{0, -1}, 5, 100, next));
    EXPECT_EQ(next.Index, 1);
}

TEST_F(StringGenerator, NextPointFailsAtOnceWhileEscapeIsDown) {
    MakeRectanglePicture(Tool, 40, 30, 10, 10, 30, 20);
    EscapeAt() = 1;
    MRandomSeed = 99;
    WNextPoint next;
    EXPECT_FALSE(Tool.FindNextPoint(MPoint3{20, 8, 0}, MPoint3{0, -1, 0}, MPoint3{1, 0, 0}, 0,
                                    MPoint2{}, 1, 100, next));
    EXPECT_EQ(MRandomSeed, 99u); // not one draw
    EXPECT_EQ(EscapePolls(), 1);
}

TEST_F(StringGenerator, ShortStepsAreTakenWithoutLookingAtThePixels) {
    // Two points 4 pixels apart with nothing solid between them.
    MakeMask(Tool, 40, 250, [](int32_t, int32_t) { return false; });
    Tool.SampleSegment(P2(10, 10), P2(12, 10)); // 0: Out (0, -1)
    Tool.SampleSegment(P2(16, 14), P2(14, 14)); // 1: Out (0, 1)
    ASSERT_EQ(Tool.ShapePointCount, 2);
    // Point 1 lies at (16, 14), 7.2 pixels away: the line is looked at.
    WNextPoint next;
    MRandomSeed = 5;
    EXPECT_FALSE(Tool.FindNextPoint(MPoint3{10, 9, 0}, MPoint3{0, -1, 0}, MPoint3{1, 0, 0}, 0,
                                    MPoint2{}, 0.5f, 100, next));
    Tool.ShapePoints[1].X = 10;
    Tool.ShapePoints[1].Y = 14; // now exactly 4 pixels away
    EXPECT_TRUE(Tool.FindNextPoint(MPoint3{10, 9, 0}, MPoint3{0, -1, 0}, MPoint3{1, 0, 0}, 0,
                                   MPoint2{}, 0.5f, 100, next));
    EXPECT_EQ(next.Index, 1);
    Tool.ShapePoints[1].Y = 14.5f; // 4.5 pixels: three samples, one looked at
    EXPECT_FALSE(Tool.FindNextPoint(MPoint3{10, 9, 0}, MPoint3{0, -1, 0}, MPoint3{1, 0, 0}, 0,
                                    MPoint2{}, 0.5f, 100, next));
}

TEST_F(StringGenerator, ShapeJumpsOfOneHundredCrossHoles) {
    // Two letters with a gap between them.
    MakeMask(Tool, 60, 250, [](int32_t x, int32_t y) {
        return y >= 10 && y < 30 && ((x >= 5 && x < 20) || (x >= 40 && x < 55));
    });
    Tool.SampleSegment(P2(10, 10), P2(12, 10)); // 0: top of the left letter
    Tool.SampleSegment(P2(50, 30), P2(48, 30)); // 1: bottom of the right letter
    WNextPoint next;
    MRandomSeed = 3;
    EXPECT_FALSE(Tool.FindNextPoint(MPoint3{10, 9, 0}, MPoint3{0, -1, 0}, MPoint3{1, 0, 0}, 0,
                                    MPoint2{}, 1, 100, next));
    Tool.ShapeJumps = 100;
    EXPECT_TRUE(Tool.FindNextPoint(MPoint3{10, 9, 0}, MPoint3{0, -1, 0}, MPoint3{1, 0, 0}, 0,
                                   MPoint2{}, 1, 100, next));
    EXPECT_EQ(next.Index, 1);
    // 99 lets a candidate through by a draw below 99 of 10000 now and then.
    Tool.ShapeJumps = 99;
    MRandomSeed = 3;
    EXPECT_TRUE(Tool.FindNextPoint(MPoint3{10, 9, 0}, MPoint3{0, -1, 0}, MPoint3{1, 0, 0}, 0,
                                   MPoint2{}, 1, 100, next));
}

// ---- Runs

TEST_F(StringGenerator, GenerateWithoutAPictureAsksForOne) {
    EXPECT_FALSE(Tool.Generate());
    ASSERT_EQ(Messages.Count, 1);
    EXPECT_EQ(Bytes(MessageTexts[0]), "Click on the canvas to load a picture");
    EXPECT_EQ(MessageIcons[0], IconError);
}

TEST_F(StringGenerator, ARunKeepsEveryInvariant) {
    MakeRectanglePicture(Tool, 200, 120, 20, 20, 180, 100);
    ASSERT_TRUE(Tool.Generate());
    EXPECT_GT(Tool.CurveCount, 100);
    ExpectRunInvariants(Tool);
    // Strings bounce between opposite sides: every curve's ends lie in front
    // of edges that face opposite ways.
    EXPECT_EQ(Redraws().Values.size(), 20u);
    EXPECT_EQ(Redraws().Values.front(), 1.0f / 20.0f);
    EXPECT_EQ(Redraws().Values.back(), 1.0f);
}

TEST_F(StringGenerator, TheSameSeedGivesTheSameCurves) {
    MakeRectanglePicture(Tool, 200, 120, 20, 20, 180, 100);
    ASSERT_TRUE(Tool.Generate());
    std::vector<float> first;
    for (int32_t i = 0; i < Tool.CurveCount; i++)
        for (int32_t k = 0; k < 4; k++)
            first.push_back(Tool.Curves[i].Points[k].x + 3 * Tool.Curves[i].Points[k].z);
    ASSERT_TRUE(Tool.Generate());
    std::vector<float> second;
    for (int32_t i = 0; i < Tool.CurveCount; i++)
        for (int32_t k = 0; k < 4; k++)
            second.push_back(Tool.Curves[i].Points[k].x + 3 * Tool.Curves[i].Points[k].z);
    EXPECT_EQ(first, second);
}

TEST_F(StringGenerator, WithoutCollisionDetectionPointsServeAgainAndAgain) {
    // Few shape points, many curves.
    MakeRectanglePicture(Tool, 60, 40, 10, 10, 50, 30);
    Tool.Strings = 10;
    ASSERT_TRUE(Tool.Generate());
    EXPECT_GT(Tool.CurveCount, Tool.ShapePointCount);
    for (int32_t i = 0; i < Tool.ShapePointCount; i++)
        EXPECT_FALSE(Tool.ShapePoints[i].Used);
    ExpectRunInvariants(Tool);
}

TEST_F(StringGenerator, CollisionWithALargeRadiusRunsOutOfPointsSilently) {
    // One unit a pixel: a radius of 5 pixels uses up five samples at a time.
    MakeRectanglePicture(Tool, 60, 250, 10, 100, 50, 140);
    Tool.CollisionDetection = true;
    Tool.Radius = 5;
    ASSERT_TRUE(Tool.Generate());
    EXPECT_GT(Tool.CurveCount, 0);
    EXPECT_LT(Tool.CurveCount, 20);
    EXPECT_EQ(Messages.Count, 0);
    ExpectRunInvariants(Tool);
    // A new run clears the marks first.
    int32_t used = 0;
    for (int32_t i = 0; i < Tool.ShapePointCount; i++)
        used += Tool.ShapePoints[i].Used;
    EXPECT_GT(used, 0);
}

TEST_F(StringGenerator, DepthZeroKeepsEndsInThePlaneAndBulgesStillAlternate) {
    MakeRectanglePicture(Tool, 200, 120, 20, 20, 180, 100);
    Tool.Depth = 0;
    ASSERT_TRUE(Tool.Generate());
    ASSERT_GT(Tool.CurveCount, 2);
    for (int32_t i = 0; i < Tool.CurveCount; i++) {
        EXPECT_EQ(Tool.Curves[i].Points[0].z, 0.0f);
        EXPECT_EQ(Tool.Curves[i].Points[3].z, 0.0f);
        if (i % 2 == 0)
            EXPECT_GT(Tool.Curves[i].Points[1].z, 0);
        else
            EXPECT_LT(Tool.Curves[i].Points[1].z, 0);
    }
}

TEST_F(StringGenerator, APictureWithoutHolesMakesStringsBounceBetweenItsSides) {
    // The whole picture is solid: its outline is the picture's rectangle.
    MakeRectanglePicture(Tool, 100, 50, 0, 0, 100, 50);
    ASSERT_TRUE(Tool.Generate());
    ExpectRunInvariants(Tool);
    for (int32_t i = 0; i < Tool.CurveCount; i++) {
        const WStringCurve& c = Tool.Curves[i];
        // Each end lies just beyond one side: never inside the picture.
        for (int32_t k : {0, 3}) {
            bool outside =
                c.Points[k].x < 0 || c.Points[k].x > 100 || c.Points[k].y < 0 || c.Points[k].y > 50;
            EXPECT_TRUE(outside) << "curve " << i;
        }
    }
}

TEST_F(StringGenerator, BulgeAndLengthFollowTheDrawsOfTheRun) {
    MakeRectanglePicture(Tool, 200, 120, 20, 20, 180, 100);
    Tool.BezierMin = Tool.BezierMax = 0.25f; // no spread: the bulge is a quarter of the length
    ASSERT_TRUE(Tool.Generate());
    for (int32_t i = 0; i < Tool.CurveCount; i++) {
        const WStringCurve& c = Tool.Curves[i];
        MPoint3 a = c.Points[0], n = c.Points[3];
        a.z = n.z = 0;
        float length = Length3(n - a) * Tool.UnitsPerPixel;
        float bulge = length * 0.25f;
        EXPECT_EQ(c.Points[1].z, c.Points[0].z + (i % 2 == 0 ? bulge : -bulge)) << i;
    }
}

TEST_F(StringGenerator, TheTangentTurnsToFollowThePreviousOne) {
    MakeRectanglePicture(Tool, 200, 120, 20, 20, 180, 100);
    ASSERT_TRUE(Tool.Generate());
    for (int32_t i = 1; i < Tool.CurveCount; i++) {
        if (Tool.Curves[i].First) continue;
        MPoint3 t = Tool.Curves[i].Tangent, before = Tool.Curves[i - 1].Tangent;
        EXPECT_GE(t.x * before.x + t.y * before.y, 0) << i;
    }
}

TEST_F(StringGenerator, EscapeKeepsTheCurvesMadeSoFar) {
    MakeRectanglePicture(Tool, 200, 120, 20, 20, 180, 100);
    // Polls: one per growing round and one per attempt. Escape goes down at
    // poll 2500 and stays down.
    EscapeAt() = 2500;
    ASSERT_TRUE(Tool.Generate());
    EXPECT_GT(Tool.CurveCount, 0);
    EXPECT_LT(Tool.CurveCount, 400);
    ExpectRunInvariants(Tool);
    // The search fails at once; the round that notices the key (at the
    // latest in the next string) ends its string, and no string follows.
    EXPECT_LE(EscapePolls(), 2502);
    EXPECT_LT(Redraws().Values.size(), 20u);
}

TEST_F(StringGenerator, TheRunStopsAtTenThousandCurvesWithinAString) {
    MakeRectanglePicture(Tool, 400, 300, 20, 20, 380, 280);
    Tool.Strings = 100;
    Tool.CurvesPerString = 1000;
    Tool.CurveLengthMin = 0.01f;
    Tool.CurveLengthMax = 1;
    ASSERT_TRUE(Tool.Generate());
    EXPECT_EQ(Tool.CurveCount, 10000);
    EXPECT_EQ(Messages.Count, 0);
    // No progress drawing after the limit.
    EXPECT_LT(Redraws().Values.size(), 100u);
    for (float progress : Redraws().Values)
        EXPECT_LT(progress, 1.0f);
    ExpectRunInvariants(Tool);
}

TEST_F(StringGenerator, FieldsAreReadAndWrittenOnlyWithADialog) {
    static int32_t reads = 0, writes = 0;
    reads = writes = 0;
    TheSpaghettiHooks.ReadFields = [](WSpaghetti& s) {
        reads++;
        s.MarginMin = 5;
        s.MarginMax = 2;
    };
    TheSpaghettiHooks.WriteFields = [](const WSpaghetti& s) {
        writes++;
        EXPECT_EQ(s.MarginMin, 2.0f);
    };
    MakeRectanglePicture(Tool, 200, 120, 20, 20, 180, 100);
    Tool.Strings = 0;
    ASSERT_TRUE(Tool.Generate());
    EXPECT_EQ(reads, 0);
    EXPECT_EQ(writes, 0);
    EXPECT_EQ(Tool.Strings, 1); // cleaned all the same
    int dialog = 0;
    Tool.Dialog = &dialog;
    ASSERT_TRUE(Tool.Generate());
    Tool.Dialog = nullptr;
    EXPECT_EQ(reads, 1);
    EXPECT_EQ(writes, 1);
    EXPECT_EQ(Tool.MarginMax, 5.0f);
}

// ---- Preparing a picture file

TEST_F(StringGenerator, APictureWithoutTransparencyGivesItsRectangleAndAWarning) {
    std::string path = Path("opaque.tga");
    WriteTga(path, 40, 30, [](int32_t, int32_t) { return 255; });
    ASSERT_TRUE(Tool.PreparePicture(Text(path)));
    ASSERT_EQ(Messages.Count, 1);
    EXPECT_EQ(Bytes(MessageTexts[0]), "Warning: this picture has no transparent pixels");
    EXPECT_EQ(MessageIcons[0], IconWarning);
    EXPECT_EQ(Bytes(Tool.PathBitmap), path);
    ASSERT_TRUE(Tool.Picture);
    EXPECT_EQ(Tool.Picture->Width, 40u);
    EXPECT_EQ(Tool.UnitsPerPixel, 250.0f / 30.0f);
    // One outline round the whole picture: 15 + 20 + 15 + 20 samples, each
    // facing out of the picture.
    ASSERT_EQ(Tool.ShapePointCount, 70);
    for (int32_t i = 0; i < Tool.ShapePointCount; i++) {
        const WShapePoint& p = Tool.ShapePoints[i];
        float x = p.X + 2 * p.OutX, y = p.Y + 2 * p.OutY;
        EXPECT_TRUE(x < 0 || x >= 40 || y < 0 || y >= 30) << i;
    }
    // The canvas was drawn without a progress bar.
    ASSERT_EQ(Redraws().Values.size(), 1u);
    EXPECT_EQ(Redraws().Values[0], 0.0f);
    // Strings bounce between its sides; a crossing needs more than the
    // default half diagonal here.
    Tool.CurveLengthMax = 1;
    ASSERT_TRUE(Tool.Generate());
    EXPECT_GT(Tool.CurveCount, 100);
    ExpectRunInvariants(Tool);
    // Nearly all curves cross from a side to the opposite one. The corner
    // samples where an outline meets the mask's right or bottom edge probe
    // outside the mask on either side and keep the Out they were given, so a
    // few strings run along an edge from there.
    int32_t crossing = 0;
    for (int32_t i = 0; i < Tool.CurveCount; i++) {
        const MPoint3& a = Tool.Curves[i].Points[0];
        const MPoint3& b = Tool.Curves[i].Points[3];
        crossing += (a.x < 0 && b.x > 40) || (a.x > 40 && b.x < 0) || (a.y < 0 && b.y > 30) ||
                    (a.y > 30 && b.y < 0);
    }
    EXPECT_GT(crossing * 10, Tool.CurveCount * 9);
}

TEST_F(StringGenerator, TheMaskIsTheFlatSilhouetteAboveAlpha128) {
    std::string path = Path("ramp.tga");
    // A solid block with a column of alpha 128 and one of 129 beside it.
    WriteTga(path, 40, 40, [](int32_t x, int32_t y) -> uint8_t {
        if (y < 10 || y >= 30 || x < 10 || x >= 30) return 0;
        if (x == 10) return 128;
        if (x == 11) return 129;
        return 255;
    });
    ASSERT_TRUE(Tool.PreparePicture(Text(path)));
    EXPECT_EQ(Messages.Count, 0);
    const uint8_t* at128 = Tool.Picture->PixelAddress(10, 15);
    const uint8_t* at129 = Tool.Picture->PixelAddress(11, 15);
    EXPECT_EQ(at128[0] + at128[1] + at128[2] + at128[3], 0);
    EXPECT_EQ(at129[0], Settings.ColourGrid.b);
    EXPECT_EQ(at129[1], Settings.ColourGrid.g);
    EXPECT_EQ(at129[2], Settings.ColourGrid.r);
    EXPECT_EQ(at129[3], Settings.ColourGrid.a);
    EXPECT_EQ(Tool.MaskAlpha(5, 5), 0);
    ASSERT_TRUE(Tool.Tracer);
    EXPECT_GT(Tool.ShapePointCount, 0);
}

TEST_F(StringGenerator, ExactlyTwoThousandAndFortyEightPixelsStay) {
    std::string exact = Path("exact.tga"), larger = Path("larger.tga");
    auto alpha = [](int32_t x, int32_t) -> uint8_t { return x >= 100 && x < 1900 ? 255 : 0; };
    WriteTga(exact, 2048, 8, alpha);
    WriteTga(larger, 2049, 8, alpha);
    ASSERT_TRUE(Tool.PreparePicture(Text(exact)));
    EXPECT_EQ(Tool.Picture->Width, 2048u);
    EXPECT_EQ(Tool.Picture->Height, 8);
    ASSERT_TRUE(Tool.PreparePicture(Text(larger)));
    // 2049 * (2048 / 2049) and 8 * (2048 / 2049), truncated.
    EXPECT_EQ(Tool.Picture->Width, 2048u);
    EXPECT_EQ(Tool.Picture->Height, 7);
    EXPECT_EQ(Tool.UnitsPerPixel, 250.0f / 7.0f);
}

TEST_F(StringGenerator, APictureThatDoesNotLoadLeavesTheToolEmpty) {
    std::string path = Path("not-a-picture.tga");
    WriteFileBytes(path, "this is text");
    EXPECT_FALSE(Tool.PreparePicture(Text(path)));
    EXPECT_EQ(Tool.Picture, nullptr);
    EXPECT_EQ(Tool.Tracer, nullptr);
    EXPECT_EQ(Tool.ShapePointCount, 0);
    EXPECT_EQ(Messages.Count, 0);
    EXPECT_EQ(Bytes(Tool.PathBitmap), path);
    EXPECT_FALSE(Tool.PreparePicture(Text(Path("missing.png"))));
    EXPECT_EQ(Tool.Picture, nullptr);
}

TEST_F(StringGenerator, PicturesOfOnePixel) {
    std::string clear = Path("clear.tga"), solid = Path("solid.tga");
    WriteTga(clear, 1, 1, [](int32_t, int32_t) { return 0; });
    WriteTga(solid, 1, 1, [](int32_t, int32_t) { return 255; });
    EXPECT_FALSE(Tool.PreparePicture(Text(clear)));
    EXPECT_EQ(Tool.Picture, nullptr);
    EXPECT_EQ(Messages.Count, 0);
    // The one opaque pixel is a rectangle of 1 by 1: one sample a side.
    EXPECT_TRUE(Tool.PreparePicture(Text(solid)));
    EXPECT_EQ(Messages.Count, 1);
    EXPECT_EQ(Tool.ShapePointCount, 4);
    EXPECT_TRUE(Tool.Generate());
    ExpectRunInvariants(Tool);
}

TEST_F(StringGenerator, ACancelledPromptChangesNothing) {
    std::string path = Path("first.tga");
    WriteTga(path, 40, 30, [](int32_t x, int32_t) { return x < 20 ? 255 : 0; });
    ASSERT_TRUE(Tool.PreparePicture(Text(path)));
    MPicture* picture = Tool.Picture;
    Answer({});
    EXPECT_FALSE(Tool.PreparePicture(MString()));
    EXPECT_EQ(Prompts.Count, 1);
    EXPECT_EQ(Prompts.Last.Mode, int32_t(PromptSelectPicture));
    EXPECT_EQ(Tool.Picture, picture);
    EXPECT_EQ(Bytes(Tool.PathBitmap), path);
}

TEST_F(StringGenerator, ASecondPictureReplacesTheFirstAndItsStrings) {
    std::string first = Path("first.tga"), second = Path("second.tga");
    WriteTga(first, 40, 30, [](int32_t x, int32_t) { return x < 20 ? 255 : 0; });
    WriteTga(second, 50, 50, [](int32_t x, int32_t y) { return x > 10 && y > 10 ? 255 : 0; });
    ASSERT_TRUE(Tool.PreparePicture(Text(first)));
    ASSERT_TRUE(Tool.Generate());
    EXPECT_GT(Tool.CurveCount, 0);
    Answer({second});
    ASSERT_TRUE(Tool.PreparePicture(MString()));
    EXPECT_EQ(Bytes(Tool.PathBitmap), second);
    EXPECT_EQ(Tool.Picture->Width, 50u);
    EXPECT_EQ(Tool.CurveCount, 0);
    EXPECT_EQ(Tool.Strings, 20); // the parameters stay
}
