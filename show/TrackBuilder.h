#pragma once
// The ride of a roller coaster, road or bob show: the sketch sampled into a
// dense polyline, its length and ground, the pillars under it, the trees
// beside it, and the small EPS files that show pillars and trees as strokes.

#include "foundation/MString.h"
#include "foundation/MVector.h"
#include "sketch/WSketch.h"

#include <cstdint>

// One tree of a show.
struct WTreeSpot {
    float X = 0, Y = 0, Z = 0; // the foot; Y is the ground
    float Height = 0;          // from the ground to the top of the crown
};

// What the track builder gives back for one template.
struct WShowInfo {
    float Length = 0;         // of the sampled track, in sketch units
    float Ground = 0;         // height of the ground
    int32_t TreeCount = 0;    // entries of Trees in use
    MVector<WTreeSpot> Trees; // Count is the capacity
};

// Samples TheSketch with TheSettings' Smooth and MaxLinesPerCurve, and
// unless all four paths are empty finds the ground, places the pillars,
// scatters the trees (adding a WTreeSpot for each when TreeType is above 0)
// and writes the four files, each only when its path is set and it has
// something to hold. Draws from MRandom. Sets Length; true when it is above
// 0. A sketch without points gives false and changes nothing.
bool BuildTrack(WShowInfo& info, MString structurePath, MString foundationPath, MString trunksPath,
                MString leavesPath);

// The samples of the records: Position, Roll and Kind (KindMove at the start
// of a curve, KindLine otherwise) of each, the handles left at zero. Count is
// the number filled in; samples.Count may be larger.
int32_t SampleTrack(const WSketchPoint* records, int32_t count, int32_t maxLinesPerCurve,
                    MVector<WSketchPoint>& samples);
// One pass of the three-point box filter over positions and rolls.
void SmoothTrack(WSketchPoint* samples, int32_t count);

// How the clearance tests of pillars and trees find the track segments near
// a pole. Both give the same answers; the search through every segment is
// kept so that tests can show it.
enum TrackSearch { TrackSearchGrid, TrackSearchAll };
extern TrackSearch TheTrackSearch;
