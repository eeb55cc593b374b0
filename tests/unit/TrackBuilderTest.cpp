// The track builder: sampling, smoothing, ground, pillars, trees and the four
// track files, byte for byte for a fixed seed.

#include "ElementTestSupport.h"
#include "ScratchFolder.h"
#include "TrackTestSupport.h"

#include "show/TrackBuilder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

class TrackBuilder : public ::testing::Test {
  protected:
    WSettings Settings;
    WSettings* SavedSettings = nullptr;
    fs::path Folder;

    void SetUp() override {
        if (TheSketch) DestroySketch();
        ASSERT_NE(CreateSketch(), nullptr);
        SavedSettings = TheSettings;
        TheSettings = &Settings;
        Settings.Smooth = 0;
        Settings.MaxLinesPerCurve = 100;
        Settings.TreeType = 5;
        Folder = scratch::Fresh(::testing::UnitTest::GetInstance()->current_test_info()->name());
    }
    void TearDown() override {
        TheSettings = SavedSettings;
        TheTrackSearch = TrackSearchGrid;
        DestroySketch();
        scratch::Remove(Folder);
    }

    MString PathOf(const char* name) { return scratch::Text(Folder / name); }
    bool Build(WShowInfo& info) {
        return BuildTrack(info, PathOf("s.eps"), PathOf("f.eps"), PathOf("t.eps"), PathOf("l.eps"));
    }
    std::string Read(const char* name) { return scratch::ReadBytes(Folder / name); }
    bool Exists(const char* name) { return fs::exists(Folder / name); }
};

std::vector<WSketchPoint> Sample(const std::vector<WSketchPoint>& records, int32_t maxLines) {
    MVector<WSketchPoint> samples;
    int32_t count = SampleTrack(records.data(), int32_t(records.size()), maxLines, samples);
    std::vector<WSketchPoint> out;
    for (int32_t i = 0; i < count; i++)
        out.push_back(samples[i]);
    return out;
}

// Steps the generator as many draws on from seed.
uint32_t After(uint32_t seed, int32_t draws) {
    MRandomSeed = seed;
    for (int32_t i = 0; i < draws; i++)
        MRandomInt(2);
    return MRandomSeed;
}

} // namespace

// ---- Sampling

TEST(TrackSampling, LineGivesOneSamplePerTwoUnits) {
    WSketchPoint a = Record(0, 0, 0, KindMove), b = Record(10, 0, 0, KindLine);
    a.Roll = P3(0, 1, 0);
    b.Roll = P3(1, 1, 0);
    std::vector<WSketchPoint> s = Sample({a, b}, 100);
    ASSERT_EQ(s.size(), 6u);
    EXPECT_EQ(s[0].Kind, KindMove);
    for (int k = 1; k <= 5; k++) {
        float t = float(k) / 5.0f;
        EXPECT_EQ(s[size_t(k)].Kind, KindLine);
        EXPECT_EQ(s[size_t(k)].Position.x, t * 10.0f) << k;
        // Equal ends are taken as they are.
        EXPECT_EQ(s[size_t(k)].Position.y, 0.0f);
        EXPECT_EQ(s[size_t(k)].Roll.y, 1.0f);
        EXPECT_EQ(s[size_t(k)].Roll.x, t * 1.0f) << k;
        EXPECT_TRUE(SameBits(s[size_t(k)].HandleIn, P3(0, 0, 0)));
    }
}

TEST(TrackSampling, ShortAndZeroLinesGiveOneSample) {
    std::vector<WSketchPoint> s =
        Sample({Record(0, 0, 0, KindMove), Record(1.5f, 0, 0, KindLine)}, 100);
    ASSERT_EQ(s.size(), 2u);
    EXPECT_EQ(s[1].Position.x, 1.5f);
    s = Sample({Record(3, 3, 3, KindMove), Record(3, 3, 3, KindLine)}, 100);
    ASSERT_EQ(s.size(), 2u);
    EXPECT_TRUE(SameBits(s[1].Position, P3(3, 3, 3)));
}

TEST(TrackSampling, MaxLinesLimitsLinesAndCurvesAndZeroGivesNone) {
    std::vector<WSketchPoint> line = {Record(0, 0, 0, KindMove), Record(100, 0, 0, KindLine)};
    EXPECT_EQ(Sample(line, 100).size(), 51u);
    EXPECT_EQ(Sample(line, 7).size(), 8u);
    EXPECT_EQ(Sample(line, 0).size(), 1u);
    EXPECT_EQ(Sample(line, -3).size(), 1u);
    // A curve of length 100: 50 steps, limited to 20, or to 3 below the 8.
    WSketchPoint a = Record(0, 0, 0, KindMove), b = Record(0, 0, 0, KindCurve);
    a.HandleOut = P3(0, 50, 0);
    b.HandleIn = P3(0, 50, 0);
    EXPECT_EQ(Sample({a, b}, 20).size(), 21u);
    EXPECT_EQ(Sample({a, b}, 3).size(), 4u);
    EXPECT_EQ(Sample({a, b}, 0).size(), 1u);
}

TEST(TrackSampling, ShortCurveGetsEightSamplesOnItsBezier) {
    WSketchPoint a = Record(0, 0, 0, KindMove), b = Record(6, 0, 0, KindCurve);
    a.HandleOut = P3(0, 3, 0);
    b.HandleIn = P3(6, 3, 0);
    std::vector<WSketchPoint> s = Sample({a, b}, 100);
    ASSERT_EQ(s.size(), 9u);
    MPoint3 controls[4] = {a.Position, a.HandleOut, b.HandleIn, b.Position};
    for (int k = 1; k <= 8; k++) {
        float t = float(k) / 8.0f;
        EXPECT_TRUE(SameBits(s[size_t(k)].Position, BezierPoint(controls, 0, 3, t))) << k;
    }
}

TEST(TrackSampling, NearlyStraightCurveIsSampledAsALine) {
    // Handles 0.9 from their ends, under 0.1 of the chord 10: a line of 5 steps.
    WSketchPoint a = Record(0, 0, 0, KindMove), b = Record(10, 0, 0, KindCurve);
    a.HandleOut = P3(0.9f, 0, 0);
    b.HandleIn = P3(9.1f, 0, 0);
    std::vector<WSketchPoint> s = Sample({a, b}, 100);
    ASSERT_EQ(s.size(), 6u);
    EXPECT_EQ(s[1].Position.x, 0.2f * 10.0f);
    // One handle at 0.1 of the chord is no longer near: eight curve steps.
    a.HandleOut = P3(1, 0, 0);
    EXPECT_EQ(Sample({a, b}, 100).size(), 9u);
}

TEST(TrackSampling, EveryMoveStartsACurve) {
    std::vector<WSketchPoint> s = Sample({Record(0, 0, 0, KindMove), Record(4, 0, 0, KindLine),
                                          Record(0, 9, 0, KindMove), Record(0, 13, 0, KindLine)},
                                         100);
    ASSERT_EQ(s.size(), 6u);
    EXPECT_EQ(s[3].Kind, KindMove);
    EXPECT_TRUE(SameBits(s[3].Position, P3(0, 9, 0)));
}

// ---- Smoothing

TEST(TrackSmoothing, OpenCurveKeepsItsEndsAndAveragesItsMiddle) {
    std::vector<WSketchPoint> s = {Record(0, 0, 0, KindMove), Record(3, 3, 0, KindLine),
                                   Record(6, 0, 0, KindLine), Record(9, 6, 0, KindLine)};
    SmoothTrack(s.data(), 4);
    EXPECT_TRUE(SameBits(s[0].Position, P3(0, 0, 0)));
    EXPECT_TRUE(SameBits(s[1].Position, P3(3, 1, 0)));
    EXPECT_TRUE(SameBits(s[2].Position, P3(6, 3, 0)));
    EXPECT_TRUE(SameBits(s[3].Position, P3(9, 6, 0)));
}

TEST(TrackSmoothing, ClosedCurveHasNoSeam) {
    std::vector<WSketchPoint> s = {Record(0, 0, 0, KindMove), Record(6, 0, 0, KindLine),
                                   Record(6, 6, 0, KindLine), Record(0, 0, 0, KindLine)};
    SmoothTrack(s.data(), 4);
    // (6,6) + (0,0) + (6,0) over 3 at both ends; the last is not averaged
    // as a line, being the last sample.
    EXPECT_TRUE(SameBits(s[0].Position, P3(4, 2, 0)));
    EXPECT_TRUE(SameBits(s[3].Position, P3(4, 2, 0)));
    EXPECT_TRUE(SameBits(s[1].Position, P3(4, 2, 0)));
}

TEST_F(TrackBuilder, SmoothZeroKeepsTheExactSamples) {
    // A bend: smoothing cuts its corner and shortens the track.
    Fill(*TheSketch,
         {Record(0, 0, 0, KindMove), Record(20, 0, 0, KindLine), Record(20, 0, 20, KindLine)});
    std::vector<WSketchPoint> records = Records(*TheSketch);
    MVector<WSketchPoint> samples;
    int32_t count = SampleTrack(records.data(), 3, 100, samples);
    WShowInfo info;
    ASSERT_TRUE(BuildTrack(info, MString(), MString(), MString(), MString()));
    EXPECT_EQ(info.Length, PathLength(samples.Data, count));
    EXPECT_EQ(info.Length, 40);
    Settings.Smooth = 5;
    ASSERT_TRUE(BuildTrack(info, MString(), MString(), MString(), MString()));
    for (int32_t pass = 0; pass < 5; pass++)
        SmoothTrack(samples.Data, count);
    EXPECT_EQ(info.Length, PathLength(samples.Data, count));
    EXPECT_LT(info.Length, 40);
}

// ---- Results

TEST_F(TrackBuilder, NoPointsGivesFalseAndChangesNothing) {
    WShowInfo info;
    info.Length = 7;
    info.Ground = 3;
    EXPECT_FALSE(Build(info));
    EXPECT_EQ(info.Length, 7);
    EXPECT_EQ(info.Ground, 3);
    EXPECT_FALSE(Exists("s.eps"));
}

TEST_F(TrackBuilder, PointsOfNoLengthGiveFalse) {
    Fill(*TheSketch, {Record(5, 5, 5, KindMove), Record(5, 5, 5, KindLine)});
    WShowInfo info;
    info.Length = 7;
    EXPECT_FALSE(BuildTrack(info, MString(), MString(), MString(), MString()));
    EXPECT_EQ(info.Length, 0);
}

TEST_F(TrackBuilder, WithoutPathsOnlyTheLengthIsFound) {
    FillStraightRide(*TheSketch);
    WShowInfo info;
    info.Ground = 77;
    MRandomSeed = 5;
    ASSERT_TRUE(BuildTrack(info, MString(), MString(), MString(), MString()));
    EXPECT_EQ(info.Length, 40);
    EXPECT_EQ(info.Ground, 77);
    EXPECT_EQ(info.TreeCount, 0);
    EXPECT_EQ(MRandomSeed, 5u);
}

TEST_F(TrackBuilder, GroundIgnoresTheLastSample) {
    // Down from y 10 to y -30: the lowest sample counted is the one before
    // the last, at y -28.
    Fill(*TheSketch, {Record(0, 10, 0, KindMove), Record(0, -30, 0, KindLine)});
    WShowInfo info;
    ASSERT_TRUE(Build(info));
    EXPECT_EQ(info.Ground, -28.0f - 5.0f - 0.5f);
}

TEST_F(TrackBuilder, StraightRideFilesByteForByte) {
    FillStraightRide(*TheSketch);
    const uint32_t seed = 12345;
    std::vector<ExpectedTree> trees = RideTrees(seed, 4.5f);
    uint32_t seedAfter = MRandomSeed;
    ASSERT_FALSE(trees.empty());

    WShowInfo info;
    MRandomSeed = seed;
    ASSERT_TRUE(Build(info));
    EXPECT_EQ(MRandomSeed, seedAfter);
    EXPECT_EQ(info.Length, 40);
    EXPECT_EQ(info.Ground, 4.5f);

    EXPECT_EQ(Read("s.eps"),
              TrackFile(PoleLines(2, 5, 0, 2, 10, 0) + PoleLines(24, 5, 0, 24, 10, 0)));
    EXPECT_EQ(Read("f.eps"),
              TrackFile(PoleLines(2, 4.5f, 0, 2, 5.5f, 0) + PoleLines(24, 4.5f, 0, 24, 5.5f, 0)));
    std::string trunks, leaves;
    for (const ExpectedTree& t : trees) {
        trunks += PoleLines(t.X, 4.5f, t.Z, t.X, t.Base, t.Z);
        leaves += PoleLines(t.X, t.Base, t.Z, t.X, t.Top, t.Z);
    }
    EXPECT_EQ(Read("t.eps"), TrackFile(trunks));
    EXPECT_EQ(Read("l.eps"), TrackFile(leaves));

    ASSERT_EQ(info.TreeCount, int32_t(trees.size()));
    for (size_t k = 0; k < trees.size(); k++) {
        const WTreeSpot& spot = info.Trees[int32_t(k)];
        EXPECT_EQ(spot.X, trees[k].X);
        EXPECT_EQ(spot.Y, 4.5f);
        EXPECT_EQ(spot.Z, trees[k].Z);
        EXPECT_EQ(spot.Height, trees[k].Top - 4.5f);
    }
}

TEST_F(TrackBuilder, AbstractTreesAreDrawnButGiveNoSpots) {
    FillStraightRide(*TheSketch);
    Settings.TreeType = 0;
    WShowInfo info;
    MRandomSeed = 12345;
    ASSERT_TRUE(Build(info));
    EXPECT_EQ(info.TreeCount, 0);
    EXPECT_TRUE(Exists("t.eps"));
    EXPECT_TRUE(Exists("l.eps"));
}

TEST_F(TrackBuilder, EveryTryTooNearGivesOneTreeInTheCorner) {
    // A seed whose first three tries all fall within 20 of the track.
    uint32_t seed = 0;
    for (uint32_t candidate = 1; candidate < 100000; candidate++) {
        MRandomSeed = candidate;
        bool allNear = true;
        for (int t = 0; t < RideTries - 1 && allNear; t++) {
            MRandomInt(10000);
            MRandomInt(10000);
            float z = MRandomRange(RideZ0, RideZ1);
            float x = MRandomRange(RideX0, RideX1);
            allNear = DistanceToRide(x, z) < 19;
        }
        if (allNear) {
            seed = candidate;
            break;
        }
    }
    ASSERT_NE(seed, 0u);
    std::vector<ExpectedTree> trees = RideTrees(seed, 4.5f);
    ASSERT_EQ(trees.size(), 1u);

    FillStraightRide(*TheSketch);
    WShowInfo info;
    MRandomSeed = seed;
    ASSERT_TRUE(Build(info));
    ASSERT_EQ(info.TreeCount, 1);
    EXPECT_EQ(info.Trees[0].X, -40.0f);
    EXPECT_EQ(info.Trees[0].Z, -40.0f);
    // Four draws for every try, the refused ones included.
    EXPECT_EQ(MRandomSeed, After(seed, 4 * RideTries));
    EXPECT_EQ(Read("t.eps"), TrackFile(PoleLines(-40, 4.5f, -40, -40, trees[0].Base, -40)));
}

TEST_F(TrackBuilder, TrackOnItsBackHasNoPillarsAndNoStructureFiles) {
    FillStraightRide(*TheSketch);
    TheSketch->Points[0].Roll = TheSketch->Points[1].Roll = P3(0, 0, 1);
    WShowInfo info;
    MRandomSeed = 99;
    ASSERT_TRUE(Build(info));
    EXPECT_FALSE(Exists("s.eps"));
    EXPECT_FALSE(Exists("f.eps"));
    EXPECT_TRUE(Exists("t.eps"));
}

TEST_F(TrackBuilder, SmallSketchHasNoTriesAndNoTreeFiles) {
    // Extent 10 by 0: half 5 and 10, grown by 20: 50 by 40 is 2000 square
    // units, exactly one try; at 9 wide it is under one.
    Fill(*TheSketch, {Record(0, 10, 0, KindMove), Record(9, 10, 0, KindLine)});
    for (int32_t i = 0; i < 2; i++)
        TheSketch->Points[i].Roll = P3(0, 0, -1);
    WShowInfo info;
    MRandomSeed = 3;
    ASSERT_TRUE(Build(info));
    EXPECT_FALSE(Exists("t.eps"));
    EXPECT_FALSE(Exists("l.eps"));
    EXPECT_EQ(info.TreeCount, 0);
    EXPECT_EQ(MRandomSeed, 3u);
}

// ---- A loop from the element generator

class TrackOfElements : public ElementTest {};

TEST_F(TrackOfElements, NoPillarStandsUnderTheInvertedHalfOfALoop) {
    WSettings settings;
    WSettings* saved = TheSettings;
    TheSettings = &settings;
    settings.Smooth = 0;
    settings.MaxLinesPerCurve = 100;
    Add(ElementStraightLine, 60);
    Add(ElementCircularLoop, 30, 0, 0);
    Add(ElementStraightLine, 60);
    fs::path folder = scratch::Fresh("loop-pillars");
    WShowInfo info;
    MRandomSeed = 1;
    ASSERT_TRUE(BuildTrack(info, scratch::Text(folder / "s.eps"), MString(), MString(), MString()));
    TheSettings = saved;

    // Every pillar's top is a sample on the lower half of the loop or on
    // the straights: none above the loop's centre at y 30, where the
    // track stands upright, let alone on the top half up to y 60.
    std::string text = scratch::ReadBytes(folder / "s.eps");
    int32_t pillars = 0;
    float highest = -1e9f;
    for (size_t at = text.find(" lineto"); at != std::string::npos;
         at = text.find(" lineto", at + 1)) {
        size_t start = text.rfind('\n', at) + 1;
        float x = 0, y = 0, z = 0;
        ASSERT_EQ(std::sscanf(text.c_str() + start, "%f %f %f", &x, &y, &z), 3);
        if (y > highest) highest = y;
        pillars++;
    }
    EXPECT_GT(pillars, 5);
    EXPECT_LT(highest, 31.0f);
    scratch::Remove(folder);
}

// ---- The grid search gives the files of the full search

TEST_F(TrackOfElements, GridAndFullSearchWriteTheSameFiles) {
    // A coaster of many elements, with a loop, turns and hills.
    WSettings settings;
    WSettings* saved = TheSettings;
    TheSettings = &settings;
    settings.Smooth = 20;
    settings.MaxLinesPerCurve = 100;
    settings.TreeType = 3;
    Add(ElementLiftHill, 80, 40);
    Add(ElementDive, 80, 45);
    Add(ElementCircularLoop, 25, 8, 0);
    Add(ElementTurn, 180, 40, 5, 20);
    Add(ElementHill, 60, 20);
    Add(ElementTurn, -270, 30, -10, 10);
    Add(ElementStraightLine, 120);
    ASSERT_GT(Count(), 10);

    fs::path folder = scratch::Fresh("grid-and-full");
    const char* names[4] = {"s.eps", "f.eps", "t.eps", "l.eps"};
    std::string files[2][4];
    int32_t counts[2];
    for (int method = 0; method < 2; method++) {
        TheTrackSearch = method == 0 ? TrackSearchGrid : TrackSearchAll;
        WShowInfo info;
        MRandomSeed = 777;
        ASSERT_TRUE(BuildTrack(info, scratch::Text(folder / names[0]),
                               scratch::Text(folder / names[1]), scratch::Text(folder / names[2]),
                               scratch::Text(folder / names[3])));
        counts[method] = info.TreeCount;
        for (int k = 0; k < 4; k++) {
            files[method][k] = scratch::ReadBytes(folder / names[k]);
            fs::remove(folder / names[k]);
        }
    }
    TheTrackSearch = TrackSearchGrid;
    TheSettings = saved;
    scratch::Remove(folder);
    EXPECT_GT(counts[0], 0);
    EXPECT_EQ(counts[0], counts[1]);
    for (int k = 0; k < 4; k++) {
        EXPECT_FALSE(files[0][k].empty()) << k;
        EXPECT_EQ(files[0][k], files[1][k]) << k;
    }
}
