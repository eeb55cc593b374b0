// The bitmap tracer on pictures drawn here: the mask, both branches with
// hand-worked outlines, despeckle, simplify, the seed limit, the scale-down,
// and the faster clearing against the straightforward one.

#include "eps/WTracer.h"

#include "WTracerTestSupport.h"
#include "drawing/MPicture.h"

#include <gtest/gtest.h>

#include <vector>

using namespace tracertest;

namespace {

// Loads the picture and traces it with detail 2, as the trace flow does.
void Trace(WTracer& tracer, const MPicture& picture) {
    tracer.Detail = 2;
    ASSERT_TRUE(tracer.LoadPicture(picture));
    EXPECT_TRUE(tracer.Trace());
}

uint8_t Cell(const WTracer& tracer, int x, int y) {
    return tracer.Mask[y * tracer.Width + x];
}

} // namespace

// ---- The mask

TEST(WTracerTest, MaskHasABorderAndTakesAlphaFrom128) {
    MPicture picture;
    picture.Allocate(3, 2, PictureBgra8);
    uint8_t alphas[6] = {0, 127, 128, 255, 1, 200};
    for (int i = 0; i < 6; i++)
        picture.PixelAddress(i % 3, i / 3)[3] = alphas[i];
    WTracer tracer;
    ASSERT_TRUE(tracer.LoadPicture(picture));
    EXPECT_EQ(tracer.Width, 5);
    EXPECT_EQ(tracer.Height, 4);
    EXPECT_FALSE(tracer.AllInside);
    EXPECT_FALSE(tracer.AllOutside);
    const uint8_t expected[20] = {0, 0, 0, 0, 0, //
                                  0, 0, 0, 1, 0, //
                                  0, 1, 0, 1, 0, //
                                  0, 0, 0, 0, 0};
    for (int i = 0; i < 20; i++)
        EXPECT_EQ(tracer.Mask[i], expected[i]) << i;
    EXPECT_EQ(tracer.Visited.Count, 20);
}

TEST(WTracerTest, RowTooShortForItsWidthIsRefused) {
    MPicture picture;
    picture.Allocate(4, 4, PictureBgra8);
    picture.Pitch = 15;
    WTracer tracer;
    EXPECT_FALSE(tracer.LoadPicture(picture));
    picture.Pitch = 16;
    EXPECT_TRUE(tracer.LoadPicture(picture));
}

TEST(WTracerTest, FullyTransparentPictureGivesNoOutlines) {
    MPicture picture;
    picture.Allocate(50, 40, PictureBgra8);
    WTracer tracer;
    Trace(tracer, picture);
    EXPECT_TRUE(tracer.AllOutside);
    EXPECT_EQ(tracer.OutlineCount, 0);
}

TEST(WTracerTest, PictureWithoutAlphaIsItsRectangleWhateverItShows) {
    MPicture picture;
    picture.Allocate(50, 40, PictureBgr8); // all black
    picture.PixelAddress(10, 10)[0] = 255;
    WTracer tracer;
    Trace(tracer, picture);
    EXPECT_TRUE(tracer.AllInside);
    ASSERT_EQ(tracer.OutlineCount, 1);
    EXPECT_EQ(tracer.Outlines[0]->Closed, 1);
    EXPECT_EQ(Points(*tracer.Outlines[0]), (Corners{{0, 0}, {0, 40}, {50, 40}, {50, 0}}));
    EXPECT_EQ(tracer.ExtentX, 52);
    EXPECT_EQ(tracer.ExtentY, 42);
}

TEST(WTracerTest, EveryAlphaOf128OrMoreIsTheRectangle) {
    MPicture picture;
    picture.Allocate(7, 3, PictureBgra8);
    for (int y = 0; y < 3; y++)
        for (int x = 0; x < 7; x++)
            picture.PixelAddress(x, y)[3] = uint8_t(128 + x * 10);
    WTracer tracer;
    Trace(tracer, picture);
    ASSERT_EQ(tracer.OutlineCount, 1);
    EXPECT_EQ(Points(*tracer.Outlines[0]), (Corners{{0, 0}, {0, 3}, {7, 3}, {7, 0}}));
}

TEST(WTracerTest, SixteenBitAlphaCountsByItsHighByte) {
    MPicture picture;
    picture.Allocate(2, 1, PictureRgba16);
    uint8_t* left = picture.PixelAddress(0, 0);
    left[6] = 0xFF, left[7] = 0x7F; // 0x7FFF: high byte 127, outside
    uint8_t* right = picture.PixelAddress(1, 0);
    right[6] = 0x00, right[7] = 0x80; // 0x8000: inside
    WTracer tracer;
    ASSERT_TRUE(tracer.LoadPicture(picture));
    EXPECT_EQ(Cell(tracer, 1, 1), 0);
    EXPECT_EQ(Cell(tracer, 2, 1), 1);
}

// ---- Large branch, hand-worked

// A block of 5 by 3 pixels at (10, 20): the search finds its left side going
// down, so the walk starts at the top left corner and adds the corner below
// it first.
TEST(WTracerTest, BlockInALargePicture) {
    MPicture picture;
    Draw(picture, 40, 40, {{10, 20, 15, 23}});
    WTracer tracer;
    Trace(tracer, picture);
    auto outlines = Present(tracer);
    ASSERT_EQ(outlines.size(), 1u);
    EXPECT_EQ(outlines[0]->Closed, 1);
    EXPECT_EQ(Points(*outlines[0]), (Corners{{10, 21}, {10, 23}, {15, 23}, {15, 20}, {10, 20}}));
    // The last attempt found nothing; its slot is empty.
    EXPECT_EQ(tracer.OutlineCount, 2);
    EXPECT_EQ(tracer.Outlines[1], nullptr);
    // The shape is wiped from the mask.
    for (int32_t i = 0; i < tracer.Mask.Count; i++)
        ASSERT_EQ(tracer.Mask[i], 0) << i;
}

// The outer border first, then the hole, which the wipe of the outer border
// has turned into a shape: same orientation, nothing to tell them apart.
TEST(WTracerTest, RingGivesTheBorderAndTheHole) {
    MPicture picture;
    Draw(picture, 40, 40, {{10, 10, 20, 20}, {13, 13, 17, 17, false}});
    WTracer tracer;
    Trace(tracer, picture);
    auto outlines = Present(tracer);
    ASSERT_EQ(outlines.size(), 2u);
    EXPECT_EQ(Points(*outlines[0]), (Corners{{10, 11}, {10, 20}, {20, 20}, {20, 10}, {10, 10}}));
    EXPECT_EQ(Points(*outlines[1]), (Corners{{13, 14}, {13, 17}, {17, 17}, {17, 13}, {13, 13}}));
    EXPECT_EQ(outlines[1]->Closed, 1);
}

// Two blocks that touch at a corner: the walker turns right at the shared
// corner and goes round the other block, so they come out as one outline
// through that corner twice.
TEST(WTracerTest, BlocksTouchingAtACornerAreOneOutlineInTheLargeBranch) {
    MPicture picture;
    Draw(picture, 40, 40, {{10, 10, 15, 15}, {15, 15, 20, 20}});
    WTracer tracer;
    Trace(tracer, picture);
    auto outlines = Present(tracer);
    ASSERT_EQ(outlines.size(), 1u);
    EXPECT_EQ(Points(*outlines[0]), (Corners{{10, 11},
                                             {10, 15},
                                             {15, 15},
                                             {15, 20},
                                             {20, 20},
                                             {20, 15},
                                             {15, 15},
                                             {15, 10},
                                             {10, 10}}));
}

// The other diagonal: the left block is the lower one.
TEST(WTracerTest, DiagonalPairTheOtherWay) {
    MPicture picture;
    Draw(picture, 40, 40, {{15, 10, 20, 15}, {10, 15, 15, 20}});
    WTracer tracer;
    Trace(tracer, picture);
    auto outlines = Present(tracer);
    ASSERT_EQ(outlines.size(), 1u);
    EXPECT_EQ(Points(*outlines[0]), (Corners{{10, 16},
                                             {10, 20},
                                             {15, 20},
                                             {15, 15},
                                             {20, 15},
                                             {20, 10},
                                             {15, 10},
                                             {15, 15},
                                             {10, 15}}));
}

TEST(WTracerTest, SinglePixelSpeckIsDespeckled) {
    MPicture picture;
    Draw(picture, 40, 40, {{20, 20, 21, 21}, {2, 2, 8, 8}});
    WTracer tracer;
    ASSERT_TRUE(tracer.LoadPicture(picture));
    EXPECT_EQ(Cell(tracer, 21, 21), 1);
    tracer.Despeckle();
    EXPECT_EQ(Cell(tracer, 21, 21), 0);
    EXPECT_EQ(Cell(tracer, 3, 3), 1); // the block's corner has neighbours
    tracer.Trace();
    auto outlines = Present(tracer);
    ASSERT_EQ(outlines.size(), 1u);
    EXPECT_EQ(Turns(*outlines[0]), (Corners{{2, 2}, {2, 8}, {8, 8}, {8, 2}}));
}

// The pass over uniform groups of eight changes nothing: the cell by cell
// pass gives the same mask, on masks of every density.
TEST(WTracerTest, DespeckleEqualsTheCellByCellPass) {
    uint32_t seed = 12345;
    for (int density : {2, 50, 98}) {
        MPicture picture;
        picture.Allocate(101, 37, PictureBgra8);
        for (int y = 0; y < 37; y++)
            for (int x = 0; x < 101; x++) {
                seed = seed * 1103515245u + 12345u;
                bool opaque = int((seed >> 16) % 100) < density || (x > 40 && x < 70);
                picture.PixelAddress(x, y)[3] = opaque ? 255 : 0;
            }
        WTracer tracer;
        ASSERT_TRUE(tracer.LoadPicture(picture));
        std::vector<uint8_t> plain(tracer.Mask.Data, tracer.Mask.Data + tracer.Mask.Count);
        int w = tracer.Width;
        for (int y = 1; y < tracer.Height - 1; y++)
            for (int x = 1; x < w - 1; x++) {
                int set = 0;
                for (int dy = -1; dy <= 1; dy++)
                    for (int dx = -1; dx <= 1; dx++)
                        if (dx || dy) set += plain[(y + dy) * w + x + dx] != 0;
                if (set == 0) plain[y * w + x] = 0;
                if (set == 8) plain[y * w + x] = 1;
            }
        tracer.Despeckle();
        for (int32_t i = 0; i < tracer.Mask.Count; i++)
            ASSERT_EQ(tracer.Mask[i], plain[size_t(i)]) << density << " " << i;
    }
}

TEST(WTracerTest, SingleTransparentPixelInsideIsFilled) {
    MPicture picture;
    Draw(picture, 40, 40, {{5, 5, 30, 30}, {17, 17, 18, 18, false}});
    WTracer tracer;
    ASSERT_TRUE(tracer.LoadPicture(picture));
    EXPECT_EQ(Cell(tracer, 18, 18), 0);
    tracer.Despeckle();
    EXPECT_EQ(Cell(tracer, 18, 18), 1);
    EXPECT_EQ(Cell(tracer, 6, 6), 1);
    EXPECT_EQ(Cell(tracer, 5, 5), 0);
}

// A 2 by 2 block spans 3 by 3 corners, under 11: dropped by the large branch
// only.
TEST(WTracerTest, TinyShapeIsDroppedInTheLargeBranchButKeptInTheSmall) {
    MPicture large, small;
    Draw(large, 40, 40, {{10, 10, 12, 12}, {20, 20, 30, 30}});
    WTracer tracer;
    Trace(tracer, large);
    auto outlines = Present(tracer);
    ASSERT_EQ(outlines.size(), 1u);
    EXPECT_EQ(Turns(*outlines[0]), (Corners{{20, 20}, {20, 30}, {30, 30}, {30, 20}}));

    Draw(small, 20, 20, {{10, 10, 12, 12}});
    WTracer smallTracer;
    Trace(smallTracer, small);
    outlines = Present(smallTracer);
    ASSERT_EQ(outlines.size(), 1u);
    EXPECT_EQ(outlines[0]->Closed, 1);
    EXPECT_EQ(Turns(*outlines[0]), (Corners{{10, 10}, {10, 12}, {12, 12}, {12, 10}}));
}

// A 3 by 4 block spans 4 by 5 corners: 20, kept; a 1 by 4 bar, despeckle
// aside, spans 2 by 5 = 10 and goes.
TEST(WTracerTest, AreaLimitCountsCorners) {
    MPicture picture;
    Draw(picture, 40, 40, {{5, 5, 8, 9}, {20, 5, 21, 9}});
    WTracer tracer;
    Trace(tracer, picture);
    auto outlines = Present(tracer);
    ASSERT_EQ(outlines.size(), 1u);
    EXPECT_EQ(Turns(*outlines[0]), (Corners{{5, 5}, {5, 9}, {8, 9}, {8, 5}}));
}

// ---- Branch choice by size

TEST(WTracerTest, ThirtyTwoPixelsGoTheSmallWayAndThirtyThreeTheLarge) {
    // A 2 by 2 block shows the way: kept by the small branch only.
    MPicture picture;
    Draw(picture, 32, 32, {{10, 10, 12, 12}, {0, 0, 1, 1, false}});
    WTracer tracer;
    Trace(tracer, picture);
    EXPECT_EQ(tracer.Width, 34);
    EXPECT_EQ(Present(tracer).size(), 1u);
    EXPECT_EQ(tracer.ExtentX, 2);

    Draw(picture, 33, 33, {{10, 10, 12, 12}});
    WTracer large;
    Trace(large, picture);
    EXPECT_EQ(large.Width, 35);
    EXPECT_EQ(Present(large).size(), 0u);

    Draw(picture, 32, 1, {{3, 0, 5, 1}});
    WTracer line;
    Trace(line, picture);
    auto outlines = Present(line);
    ASSERT_EQ(outlines.size(), 1u);
    EXPECT_EQ(Turns(*outlines[0]), (Corners{{3, 0}, {3, 1}, {5, 1}, {5, 0}}));

    // 33 on one side is enough for the large way.
    Draw(picture, 33, 5, {{10, 1, 12, 3}});
    WTracer wide;
    Trace(wide, picture);
    EXPECT_EQ(Present(wide).size(), 0u);
}

// The search meets the top row first, at the cell left of (2, 1), going
// down. The walk turns right at corner (1, 1) onto the diagonal neighbour
// and comes round it back to (1, 1), its first point: closed after one cell.
// The seed taken at that first step, cell (2, 1), lies outside this short
// walk, so the fill runs over the whole mask and the wipe turns the border
// ring into a shape: the next outline is the mask's own frame, with corners
// one beyond the picture. The one-cell outline is dropped by its size.
TEST(WTracerTest, EarlyClosedWalkAtADiagonalFloodsTheMask) {
    MPicture picture;
    std::vector<std::string> rows = {".###.", "#.#.."};
    rows.resize(41, ".....");
    Draw(picture, rows);
    WTracer tracer;
    Trace(tracer, picture);
    ASSERT_EQ(tracer.OutlineCount, 3);
    EXPECT_EQ(tracer.Outlines[0], nullptr);
    ASSERT_NE(tracer.Outlines[1], nullptr);
    EXPECT_EQ(tracer.Outlines[1]->Closed, 1);
    EXPECT_EQ(Points(*tracer.Outlines[1]),
              (Corners{{1, 2}, {-1, 2}, {-1, 42}, {6, 42}, {6, -1}, {-1, -1}}));
}

// ---- Small branch, hand-worked

TEST(WTracerTest, SmallBranchKeepsCornerTouchingSquaresApart) {
    MPicture picture;
    Draw(picture, {"......", "..#...", "...#..", "......"});
    WTracer tracer;
    Trace(tracer, picture);
    ASSERT_EQ(tracer.OutlineCount, 2);
    EXPECT_EQ(tracer.Outlines[0]->Closed, 1);
    EXPECT_EQ(tracer.Outlines[1]->Closed, 1);
    EXPECT_EQ(Points(*tracer.Outlines[0]), (Corners{{2, 2}, {3, 2}, {3, 1}, {2, 1}}));
    EXPECT_EQ(Points(*tracer.Outlines[1]), (Corners{{3, 3}, {4, 3}, {4, 2}, {3, 2}}));
    EXPECT_EQ(tracer.ExtentX, 2);
    EXPECT_EQ(tracer.ExtentY, 2);
}

TEST(WTracerTest, SmallRingGivesTwoOutlines) {
    MPicture picture;
    Draw(picture, {"........", //
                   ".######.", //
                   ".######.", //
                   ".##..##.", //
                   ".##..##.", //
                   ".######.", //
                   ".######.", //
                   "........"});
    WTracer tracer;
    Trace(tracer, picture);
    auto outlines = Present(tracer);
    ASSERT_EQ(outlines.size(), 2u);
    std::vector<Corners> turns = {Turns(*outlines[0]), Turns(*outlines[1])};
    if (turns[0][0].first != 1) std::swap(turns[0], turns[1]);
    // The outer border with the inside on the left, the hole the other way.
    EXPECT_EQ(turns[0], (Corners{{1, 1}, {1, 7}, {7, 7}, {7, 1}}));
    EXPECT_EQ(turns[1], (Corners{{3, 3}, {5, 3}, {5, 5}, {3, 5}}));
    EXPECT_EQ(outlines[0]->Closed, 1);
    EXPECT_EQ(outlines[1]->Closed, 1);
}

TEST(WTracerTest, SmallBranchNeitherDespecklesNorSimplifies) {
    MPicture picture;
    Draw(picture, {"#.......", //
                   "........", //
                   "...##...", //
                   "...###..", //
                   "...####.", //
                   "........"});
    WTracer tracer;
    Trace(tracer, picture);
    auto outlines = Present(tracer);
    ASSERT_EQ(outlines.size(), 2u);
    EXPECT_EQ(Turns(*outlines[0]), (Corners{{0, 0}, {0, 1}, {1, 1}, {1, 0}}));
    EXPECT_EQ(Turns(*outlines[1]),
              (Corners{{3, 2}, {3, 5}, {7, 5}, {7, 4}, {6, 4}, {6, 3}, {5, 3}, {5, 2}}));
}

// ---- Simplify

TEST(WTracerTest, SimplifyCutsARunThatStaysWithinTheTolerance) {
    WTracer tracer;
    WTraceOutline outline;
    for (auto p : Corners{{0, 0}, {4, 1}, {8, 0}, {8, 8}, {0, 8}})
        outline.AddPoint(WTracePoint{p.first, p.second});
    ASSERT_EQ(outline.PointCount, 5);
    // The bump's squared distance is 64 / 64 = 1: it reaches a budget of 1.
    EXPECT_FALSE(tracer.Simplify(outline, 2, 1.0f));
    EXPECT_EQ(outline.PointCount, 5);
    EXPECT_TRUE(tracer.Simplify(outline, 2, 2.0f));
    EXPECT_EQ(Points(outline), (Corners{{0, 0}, {8, 0}, {8, 8}, {0, 8}}));
}

TEST(WTracerTest, SimplifyNeverCutsTheFirstPoint) {
    WTracer tracer;
    WTraceOutline outline;
    for (auto p : Corners{{4, 1}, {8, 0}, {8, 8}, {0, 8}, {0, 0}})
        outline.AddPoint(WTracePoint{p.first, p.second});
    EXPECT_FALSE(tracer.Simplify(outline, 2, 2.0f));
    EXPECT_EQ(outline.PointCount, 5);
}

TEST(WTracerTest, LargeBranchSimplifiesAStaircase) {
    // A triangle of 30 rows: its slanted side is a staircase of single steps,
    // which the tolerance of detail 2 straightens.
    std::vector<Box> rows;
    for (int y = 0; y < 30; y++)
        rows.push_back({5, 5 + y, 6 + y, 6 + y});
    MPicture picture;
    Draw(picture, 40, 40, rows);
    WTracer tracer;
    Trace(tracer, picture);
    auto outlines = Present(tracer);
    ASSERT_EQ(outlines.size(), 1u);
    EXPECT_LT(outlines[0]->PointCount, 12);
    EXPECT_EQ(outlines[0]->Points.Count, outlines[0]->PointCount);
    // Every corner stays within the staircase's band.
    for (auto p : Points(*outlines[0])) {
        EXPECT_GE(p.first, 5);
        EXPECT_LE(p.first, 35);
        EXPECT_GE(p.second, 5);
        EXPECT_LE(p.second, 35);
        EXPECT_GE(p.second - p.first, -2) << p.first << "," << p.second;
    }
}

TEST(WTracerTest, AddPointMergesStraightRunsAndRepeatedSteps) {
    WTraceOutline outline;
    for (auto p : Corners{{0, 0}, {1, 0}, {2, 0}, {2, 1}, {3, 2}, {4, 3}, {4, 4}, {4, 5}})
        outline.AddPoint(WTracePoint{p.first, p.second});
    EXPECT_EQ(Points(outline), (Corners{{0, 0}, {2, 0}, {2, 1}, {4, 3}, {4, 5}}));
    EXPECT_EQ(outline.Closed, 0);
    outline.AddPoint(WTracePoint{0, 0});
    EXPECT_EQ(outline.Closed, 1);
    EXPECT_EQ(outline.PointCount, 5);
}

// ---- The seed store

// A chain of 4 by 4 blocks joined by bridges one pixel high: the walk's wall
// cuts the inside into one room of 3 by 3 cells per block, and each room is
// filled only from a seed of its own. Past 2000 seeds the rooms of the far
// blocks stay unfilled and come out as outlines of their own.
TEST(WTracerTest, SeedLimitLeavesTheFarRoomsOfALongOutline) {
    auto chain = [](int blocks) {
        std::vector<Box> boxes;
        for (int i = 0; i < blocks; i++) {
            boxes.push_back({2 + 5 * i, 2, 6 + 5 * i, 6});
            if (i + 1 < blocks) boxes.push_back({6 + 5 * i, 3, 7 + 5 * i, 4});
        }
        return boxes;
    };
    MPicture picture;
    Draw(picture, 2 + 5 * 60 + 4, 9, chain(60));
    WTracer shortChain;
    Trace(shortChain, picture);
    EXPECT_EQ(Present(shortChain).size(), 1u);

    Draw(picture, 2 + 5 * 600 + 4, 9, chain(600));
    WTracer longChain;
    Trace(longChain, picture);
    auto outlines = Present(longChain);
    ASSERT_GT(outlines.size(), 1u);
    // The extra outlines all lie in the far part of the chain.
    for (size_t i = 1; i < outlines.size(); i++)
        EXPECT_GT(outlines[i]->Points[0].x, 1000);
}

// ---- Scale-down

TEST(WTracerTest, PicturesAbove2048AreScaledDown) {
    MPicture picture;
    picture.Allocate(2049, 10, PictureBgra8);
    EXPECT_TRUE(ScaleDownLargePicture(picture));
    EXPECT_EQ(picture.Width, 2048u);
    EXPECT_EQ(picture.Height, 9); // 10 * 2048 / 2049, truncated
    EXPECT_EQ(picture.Format, PictureBgra8);

    picture.Allocate(2048, 2048, PictureBgr8);
    EXPECT_FALSE(ScaleDownLargePicture(picture));
    EXPECT_EQ(picture.Width, 2048u);

    picture.Allocate(100, 4100, PictureGray8);
    EXPECT_TRUE(ScaleDownLargePicture(picture));
    EXPECT_EQ(picture.Width, 49u);
    EXPECT_EQ(picture.Height, 2048);
}

// ---- The faster clearing

TEST(WTracerTest, TouchedClearingGivesTheSameOutlinesAsWholeMaps) {
    std::vector<Box> boxes = {
        {3, 3, 60, 50},         {10, 10, 20, 20, false}, {12, 12, 15, 15},
        {30, 8, 55, 45, false}, {35, 12, 50, 40},        {40, 20, 45, 30, false},
        {62, 5, 70, 9},         {70, 9, 78, 13},         {5, 55, 9, 56}};
    for (int i = 0; i < 40; i++)
        boxes.push_back({5 + (i * 37) % 70, 52 + (i * 13) % 20, 7 + (i * 37) % 70 + i % 5,
                         54 + (i * 13) % 20 + i % 3, i % 4 != 0});
    MPicture picture;
    Draw(picture, 80, 80, boxes);
    WTracer fast, plain;
    plain.Straightforward = true;
    Trace(fast, picture);
    Trace(plain, picture);
    ASSERT_EQ(fast.OutlineCount, plain.OutlineCount);
    int present = 0;
    for (int32_t i = 0; i < fast.OutlineCount; i++) {
        ASSERT_EQ(fast.Outlines[i] == nullptr, plain.Outlines[i] == nullptr) << i;
        if (!fast.Outlines[i]) continue;
        present++;
        EXPECT_EQ(fast.Outlines[i]->Closed, plain.Outlines[i]->Closed);
        EXPECT_EQ(Points(*fast.Outlines[i]), Points(*plain.Outlines[i])) << i;
    }
    EXPECT_GT(present, 5);
    for (int32_t i = 0; i < fast.Mask.Count; i++)
        ASSERT_EQ(fast.Mask[i], plain.Mask[i]) << i;
}

// Text drawn by ImageMagick, straight and turned, with a large glyph: many
// outlines with holes, dots and slanted edges, traced at every detail level
// the faster way and the straightforward way, outline for outline.
TEST(WTracerTest, FasterWayTracesTextAsTheStraightforwardWay) {
    MPicture picture;
    MString path;
    path.AssignNarrow((std::string(TEST_SOURCE_DIR) + "/tests/data/tracer/text.png").c_str(),
                      65001);
    ASSERT_TRUE(picture.Load(path));
    ASSERT_EQ(picture.Width, 480u);
    for (uint32_t detail = 0; detail < 4; detail++) {
        WTracer fast, plain;
        fast.Detail = plain.Detail = detail;
        plain.Straightforward = true;
        ASSERT_TRUE(fast.LoadPicture(picture));
        ASSERT_TRUE(plain.LoadPicture(picture));
        fast.Trace();
        plain.Trace();
        ASSERT_EQ(fast.OutlineCount, plain.OutlineCount) << detail;
        int present = 0;
        for (int32_t i = 0; i < fast.OutlineCount; i++) {
            ASSERT_EQ(fast.Outlines[i] == nullptr, plain.Outlines[i] == nullptr) << i;
            if (!fast.Outlines[i]) continue;
            present++;
            EXPECT_EQ(fast.Outlines[i]->Closed, plain.Outlines[i]->Closed) << i;
            ASSERT_EQ(Points(*fast.Outlines[i]), Points(*plain.Outlines[i])) << detail << " " << i;
        }
        EXPECT_GT(present, 150) << detail;
        for (int32_t i = 0; i < fast.Mask.Count; i++)
            ASSERT_EQ(fast.Mask[i], plain.Mask[i]) << i;
    }
}

// A tracer loaded a second time, with a narrower picture of the same height,
// traces it as a new tracer does: nothing of the first mask's scratch stays.
TEST(WTracerTest, ATracerLoadedAgainTracesAsANewOne) {
    MPicture wide, narrow;
    Draw(wide, 90, 60, {{3, 3, 85, 55}, {10, 10, 80, 50, false}, {20, 20, 30, 30}});
    Draw(narrow, 50, 60, {{5, 5, 45, 50}, {12, 12, 40, 40, false}});
    WTracer reused, fresh;
    Trace(reused, wide);
    Trace(reused, narrow);
    Trace(fresh, narrow);
    ASSERT_EQ(reused.OutlineCount, fresh.OutlineCount);
    for (int32_t i = 0; i < fresh.OutlineCount; i++) {
        ASSERT_EQ(reused.Outlines[i] == nullptr, fresh.Outlines[i] == nullptr) << i;
        if (fresh.Outlines[i]) {
            EXPECT_EQ(Points(*reused.Outlines[i]), Points(*fresh.Outlines[i]));
        }
    }
    EXPECT_EQ(Present(fresh).size(), 2u);
}
