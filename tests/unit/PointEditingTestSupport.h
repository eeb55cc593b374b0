#pragma once
// The fixture of the point-editing tests: the one sketch with its ring, the
// one view and settings of their defaults (PointSize 8, PenSize 2, GridSize
// 10, grid off), in the EDIT SKETCH mode. The view is 800 by 600 pixels at
// zoom 1 in the front view with the pivot at the origin, so the world point
// (x, y, z) lies on the client pixel (400 + x, 300 - y).

#include "SketchTestSupport.h"

#include "foundation/Platform.h"
#include "shell/Shell.h"
#include "shell/WSettings.h"
#include "sketch/PointEditing.h"
#include "sketch/WUndoRing.h"
#include "view/WView.h"

inline MPoint2 Screen(float x, float y) {
    return MPoint2{400 + x, 300 - y};
}

// A record with the given handles, roll (0, 0, 1), smooth.
inline WSketchPoint Handles(WSketchPoint record, MPoint3 in, MPoint3 out) {
    record.HandleIn = in;
    record.HandleOut = out;
    return record;
}

inline void ExpectPoint(const MPoint3& p, float x, float y, float z, float tolerance = 1e-4f) {
    EXPECT_NEAR(p.x, x, tolerance);
    EXPECT_NEAR(p.y, y, tolerance);
    EXPECT_NEAR(p.z, z, tolerance);
}

inline void ExpectExact(const MPoint3& p, float x, float y, float z) {
    EXPECT_EQ(p.x, x);
    EXPECT_EQ(p.y, y);
    EXPECT_EQ(p.z, z);
}

class PointEditingFixture : public ::testing::Test {
  protected:
    WSettings settings;
    WSettings* oldSettings = nullptr;
    int32_t depth = 0; // the ring's depth right after Load

    void SetUp() override {
        oldSettings = TheSettings;
        TheSettings = &settings;
        MessageScript script;
        TheMessageScript = &script;
        if (TheSketch) DestroySketch();
        if (TheView) DestroyView();
        CreateSketch();
        CreateView();
        TheMessageScript = nullptr;
        TheView->SetViewport(800, 600);
        TheView->Zoom = 1;
        TheView->Update();
        TheMode = ModeEditSketch;
        TheMouseEnabled = true;
    }
    void TearDown() override {
        DestroyView();
        DestroySketch();
        TheSettings = oldSettings;
        TheMode = ModeDraw;
        TheMouseEnabled = true;
    }

    WSketch& S() { return *TheSketch; }

    // The records become the sketch and its present undo state, with
    // nothing selected.
    void Load(const std::vector<WSketchPoint>& records, int32_t capacity = 0) {
        Fill(*TheSketch, records, capacity);
        TheSketch->Current = -1;
        TheSketch->CurrentPart = 0;
        TheSketch->Commit();
        depth = TheSketch->Undo->Depth;
    }
    // Undo steps stored since Load.
    int32_t Steps() const { return TheSketch->Undo->Depth - depth; }
    void Select(int32_t index, int32_t part) {
        TheSketch->Current = index;
        TheSketch->CurrentPart = part;
    }
};

// A closed square of side 100 at the origin: records 0 and 4 are twins.
inline std::vector<WSketchPoint> ClosedSquare(float z = 0) {
    return {Record(0, 0, z, KindMove), Record(100, 0, z, KindLine), Record(100, 100, z, KindLine),
            Record(0, 100, z, KindLine), Record(0, 0, z, KindLine)};
}
