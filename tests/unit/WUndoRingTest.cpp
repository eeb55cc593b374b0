// The undo ring: which commits store a state, how deep undo and redo go,
// what a full ring drops, and what the menu and title show meanwhile.

#include "SketchTestSupport.h"

#include "shell/Shell.h"
#include "shell/Window.h"
#include "sketch/WUndoRing.h"

#include <limits>

namespace {

const float NaN = std::numeric_limits<float>::quiet_NaN();

class UndoRing : public ::testing::Test {
  protected:
    void SetUp() override {
        if (TheSketch) DestroySketch();
        InstallModelHooks(); // the shell tells the windows of the model's changes
        TheFileName = MString();
        TheMode = ModeDraw;
        ASSERT_NE(CreateSketch(), nullptr);
        RefreshMenu();
        RefreshTitle();
    }
    void TearDown() override { DestroySketch(); }

    WSketch& S() { return *TheSketch; }
    WUndoRing& Ring() { return *TheSketch->Undo; }

    // Edit k leaves one record at x = k: the first appends it, later ones
    // move it, so every edit is a different state.
    void Edit(int k) {
        if (S().PointCount == 0) {
            WSketchPoint r = Record(float(k), 0, 0, KindMove);
            S().AppendPoints(&r, 1);
        } else {
            WSketchPoint r = S().Points[0];
            r.Position.x = float(k);
            S().SetPoint(0, r);
        }
    }
    float X() { return S().Points[0].Position.x; }
};

} // namespace

TEST(UndoRingCreation, EmptyRingOfHundredSlots) {
    WUndoRing ring;
    EXPECT_EQ(ring.Depth, 0);
    EXPECT_EQ(ring.RedoDepth, 0);
    EXPECT_EQ(ring.Slot, 0);
    ASSERT_EQ(ring.Snapshots.Count, 100);
    for (int32_t i = 0; i < 100; i++) {
        EXPECT_EQ(ring.Snapshots[i].PointCount, 0);
        EXPECT_EQ(ring.Snapshots[i].Points.Count, 0);
    }
    // The first push stores even the empty sketch; the next one finds it equal.
    WSketch s;
    EXPECT_TRUE(ring.Push(s));
    EXPECT_EQ(ring.Depth, 1);
    EXPECT_EQ(ring.Slot, 1);
    EXPECT_FALSE(ring.Push(s));
    EXPECT_EQ(ring.Depth, 1);
}

TEST_F(UndoRing, StartsWithTheEmptySketch) {
    EXPECT_EQ(Ring().Depth, 1);
    EXPECT_EQ(Ring().Slot, 1);
    EXPECT_EQ(Ring().RedoDepth, 0);
    EXPECT_EQ(Ring().Snapshots[1].PointCount, 0);
    EXPECT_FALSE(AppliedMenuState().UndoEnabled);
    EXPECT_FALSE(AppliedMenuState().RedoEnabled);
}

// The empty start state can be reached but not passed; refusals still
// refresh the menu and the title.
TEST_F(UndoRing, UndoAtTheFirstStateIsRefused) {
    SetMainWindowText(MString(u"stale"));
    UndoSketch();
    EXPECT_EQ(Ring().Depth, 1);
    EXPECT_EQ(Ring().Slot, 1);
    EXPECT_EQ(Ring().RedoDepth, 0);
    EXPECT_FALSE(AppliedMenuState().UndoEnabled);
    EXPECT_EQ(Text(MainWindowText()), u"Quillmere - Untitled (0 points) [DRAW FREEHAND]");
    Edit(1);
    UndoSketch();
    EXPECT_EQ(S().PointCount, 0);
    EXPECT_FALSE(AppliedMenuState().UndoEnabled);
    EXPECT_TRUE(AppliedMenuState().RedoEnabled);
    UndoSketch();
    EXPECT_EQ(Ring().Depth, 1);
    EXPECT_EQ(Ring().RedoDepth, 1);
}

TEST_F(UndoRing, RedoWithNothingAheadOnlyRefreshes) {
    Edit(1);
    SetMainWindowText(MString(u"stale"));
    S().Current = 0;
    RedoSketch();
    EXPECT_EQ(Ring().Depth, 2);
    EXPECT_EQ(Ring().RedoDepth, 0);
    EXPECT_EQ(S().Current, 0);
    EXPECT_FALSE(AppliedMenuState().RedoEnabled);
    EXPECT_EQ(Text(MainWindowText()), u"Quillmere - Untitled * (1 points) [DRAW FREEHAND]");
}

TEST_F(UndoRing, AnEditThatChangesNothingAddsNoState) {
    Edit(1);
    S().Modified = 0;
    RefreshTitle();
    S().SetPoint(0, S().Points[0]); // a click on a point without a drag
    S().Commit();
    EXPECT_EQ(Ring().Depth, 2);
    EXPECT_EQ(Ring().Slot, 2);
    EXPECT_EQ(S().Modified, 0);
    EXPECT_EQ(Text(MainWindowText()), u"Quillmere - Untitled (1 points) [DRAW FREEHAND]");
}

// Equal counts of 0 are equal; unequal counts differ without a look at the
// records.
TEST_F(UndoRing, CountsDecideFirst) {
    EXPECT_FALSE(Ring().Push(S()));
    Edit(1);
    Edit(2);
    // Drop the record from the count only: the record left behind in the
    // array is the one of the present state, yet the count differs.
    S().PointCount = 0;
    EXPECT_TRUE(Ring().Push(S()));
    S().PointCount = 1;
    EXPECT_TRUE(Ring().Push(S()));
}

TEST_F(UndoRing, CommitAfterUndoFindingThePresentStateKeepsRedo) {
    Edit(1);
    Edit(2);
    Edit(3);
    UndoSketch();
    EXPECT_EQ(X(), 2);
    S().Commit();
    EXPECT_EQ(Ring().RedoDepth, 1);
    EXPECT_TRUE(AppliedMenuState().RedoEnabled);
    RedoSketch();
    EXPECT_EQ(X(), 3);
}

TEST_F(UndoRing, ARealEditAfterUndoDropsAllRedoStates) {
    for (int k = 1; k <= 5; k++)
        Edit(k);
    UndoSketch();
    UndoSketch();
    UndoSketch();
    EXPECT_EQ(Ring().RedoDepth, 3);
    EXPECT_EQ(X(), 2);
    Edit(42);
    EXPECT_EQ(Ring().RedoDepth, 0);
    EXPECT_EQ(Ring().Depth, 4);
    EXPECT_FALSE(AppliedMenuState().RedoEnabled);
    RedoSketch();
    EXPECT_EQ(X(), 42);
    UndoSketch();
    EXPECT_EQ(X(), 2);
}

// Undo and redo restore the points, clear the selection and refresh the
// title, and leave Modified alone: after undoing everything the sketch still
// counts as changed.
TEST_F(UndoRing, UndoRestoresAndLeavesModified) {
    Edit(1);
    Edit(2);
    S().Current = 0;
    UndoSketch();
    EXPECT_EQ(S().Current, -1);
    EXPECT_EQ(X(), 1);
    UndoSketch();
    EXPECT_EQ(S().PointCount, 0);
    EXPECT_EQ(S().Modified, 1);
    EXPECT_EQ(Text(MainWindowText()), u"Quillmere - Untitled * (0 points) [DRAW FREEHAND]");
    EXPECT_GE(S().Points.Count, 1); // the array does not shrink
    RedoSketch();
    EXPECT_EQ(S().PointCount, 1);
    EXPECT_EQ(X(), 1);
    EXPECT_EQ(Text(MainWindowText()), u"Quillmere - Untitled * (1 points) [DRAW FREEHAND]");
    S().Modified = 0; // as after a save
    UndoSketch();
    EXPECT_EQ(S().Modified, 0);
}

TEST_F(UndoRing, MenuFollowsDepthAndRedoDepth) {
    Edit(1);
    Edit(2);
    EXPECT_TRUE(AppliedMenuState().UndoEnabled);
    EXPECT_FALSE(AppliedMenuState().RedoEnabled);
    UndoSketch();
    EXPECT_TRUE(AppliedMenuState().UndoEnabled);
    EXPECT_TRUE(AppliedMenuState().RedoEnabled);
    UndoSketch();
    EXPECT_FALSE(AppliedMenuState().UndoEnabled);
    EXPECT_TRUE(AppliedMenuState().RedoEnabled);
    RedoSketch();
    RedoSketch();
    EXPECT_TRUE(AppliedMenuState().UndoEnabled);
    EXPECT_FALSE(AppliedMenuState().RedoEnabled);
}

// 101 states (the empty one and 100 edits): the first is overwritten, 99
// undos reach edit 1 and the 100th is refused.
TEST_F(UndoRing, TheHundredAndFirstStateOverwritesTheFirst) {
    for (int k = 1; k <= 100; k++)
        Edit(k);
    EXPECT_EQ(Ring().Depth, 100);
    EXPECT_EQ(Ring().Slot, 1); // slot 1 held the empty sketch
    for (int n = 0; n < 99; n++)
        UndoSketch();
    EXPECT_EQ(Ring().Depth, 1);
    EXPECT_EQ(S().PointCount, 1);
    EXPECT_EQ(X(), 1);
    EXPECT_FALSE(AppliedMenuState().UndoEnabled);
    UndoSketch();
    EXPECT_EQ(S().PointCount, 1);
    EXPECT_EQ(X(), 1);
    EXPECT_EQ(Ring().Depth, 1);
    EXPECT_EQ(Ring().RedoDepth, 99);
}

// 250 different edits after the empty start: the ring holds edits 151 to 250.
// Slots wrap: the present slot is (1 + 250) mod 100 = 51.
TEST_F(UndoRing, TwoHundredFiftyEdits) {
    for (int k = 1; k <= 250; k++) {
        Edit(k);
        ASSERT_EQ(Ring().Depth, k + 1 < 100 ? k + 1 : 100);
        ASSERT_EQ(Ring().Slot, (1 + k) % 100);
    }
    EXPECT_EQ(Ring().Depth, 100);
    EXPECT_EQ(Ring().Slot, 51);
    EXPECT_EQ(Ring().RedoDepth, 0);
    for (int n = 1; n <= 99; n++) {
        UndoSketch();
        ASSERT_EQ(X(), float(250 - n));
        ASSERT_EQ(Ring().Slot, ((51 - n) % 100 + 100) % 100);
    }
    EXPECT_EQ(Ring().Slot, 52);
    EXPECT_EQ(Ring().Depth, 1);
    EXPECT_EQ(Ring().RedoDepth, 99);
    UndoSketch(); // refused at the oldest state kept
    EXPECT_EQ(X(), 151);
    EXPECT_EQ(Ring().Slot, 52);
    for (int n = 1; n <= 99; n++) {
        RedoSketch();
        ASSERT_EQ(X(), float(151 + n));
    }
    EXPECT_EQ(Ring().Slot, 51);
    EXPECT_EQ(Ring().Depth, 100);
    RedoSketch(); // refused at the newest state
    EXPECT_EQ(X(), 250);
    EXPECT_EQ(Ring().RedoDepth, 0);
    EXPECT_TRUE(CheckInvariants(S()));
}

TEST_F(UndoRing, SmoothAloneOrKindAloneIsAChange) {
    std::vector<WSketchPoint> r = {Record(0, 0, 0, KindMove), Record(1, 0, 0, KindLine),
                                   Record(2, 0, 0, KindLine)};
    S().AppendPoints(r.data(), 3);
    int32_t depth = Ring().Depth;
    S().Points[1].Smooth = 0;
    S().Commit();
    EXPECT_EQ(Ring().Depth, depth + 1);
    S().Points[1].Kind = KindCurve;
    S().Commit();
    EXPECT_EQ(Ring().Depth, depth + 2);
    UndoSketch();
    EXPECT_EQ(S().Points[1].Kind, KindLine);
    EXPECT_EQ(S().Points[1].Smooth, 0);
    UndoSketch();
    EXPECT_EQ(S().Points[1].Smooth, 1);
}

// Each of the twelve floats counts on its own.
TEST_F(UndoRing, EveryFloatIsCompared) {
    Edit(1);
    for (int field = 0; field < 12; field++) {
        int32_t depth = Ring().Depth;
        WSketchPoint& p = S().Points[0];
        MPoint3* vectors[4] = {&p.Position, &p.HandleIn, &p.HandleOut, &p.Roll};
        MPoint3& v = *vectors[field / 3];
        float& f = field % 3 == 0 ? v.x : field % 3 == 1 ? v.y : v.z;
        f += 0.5f;
        S().Commit();
        EXPECT_EQ(Ring().Depth, depth + 1) << "field " << field;
    }
}

// A NaN differs from itself, so every Commit stores again.
TEST_F(UndoRing, NaNMakesEveryCommitAChange) {
    Edit(1);
    S().Points[0].HandleOut.y = NaN;
    S().Commit();
    EXPECT_EQ(Ring().Depth, 3);
    S().Commit();
    S().Commit();
    EXPECT_EQ(Ring().Depth, 5);
    S().Modified = 0;
    S().Commit();
    EXPECT_EQ(S().Modified, 1);
    S().Points[0].HandleOut.y = 0;
    S().Points[0].Roll.z = NaN;
    S().Commit();
    S().Commit();
    EXPECT_EQ(Ring().Depth, 8);
}

// A slot grows by the larger of 1000 and what is missing, keeping its old
// capacity otherwise.
TEST_F(UndoRing, SlotsGrowInSteps) {
    Edit(1);
    EXPECT_EQ(Ring().Snapshots[2].Points.Count, 1000);
    std::vector<WSketchPoint> many(1500, Record(5, 5, 5, KindLine));
    S().AppendPoints(many.data(), 1500);
    EXPECT_EQ(Ring().Slot, 3);
    EXPECT_EQ(Ring().Snapshots[3].Points.Count, 1501); // empty slot: what is missing
    EXPECT_EQ(Ring().Snapshots[3].PointCount, 1501);
    // Fill the ring round to slot 2 again, which holds 1000.
    for (int k = 0; k < 99; k++)
        Edit(1000 + k);
    ASSERT_EQ(Ring().Slot, 2);
    EXPECT_EQ(Ring().Snapshots[2].Points.Count, 2000); // 501 missing, grown by 1000
    WSketch& s = S();
    for (int32_t i = 0; i < s.PointCount; i++)
        ASSERT_TRUE(SameRecordBits(Ring().Snapshots[2].Points[i], s.Points[i]));
}
