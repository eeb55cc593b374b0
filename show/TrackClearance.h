#pragma once
// The clearance tests of the track builder: is a pole nearer than a limit to
// a segment between consecutive samples, or to a pole already placed. The
// answer is that of DistanceSegments3 over every segment; a grid of cells in
// x and z only skips segments that are certainly too far away to matter.

#include "foundation/MVector.h"
#include "sketch/WSketch.h"

#include <cstdint>

// A pole of a pillar or tree: a segment, foot first.
struct WPole {
    MPoint3 A, B;
};

// The segments of the samples, with their grid.
struct WTrackClearance {
    const WSketchPoint* Samples = nullptr; // not owned
    int32_t Count = 0;                     // samples; segments are one fewer
    bool UseGrid = false;
    float X0 = 0, Z0 = 0; // the grid's corner at the lowest x and z
    float Cell = 1;       // side of a cell
    int32_t Columns = 0, Rows = 0;
    MVector<int32_t> CellStart; // Columns * Rows + 1 offsets into Items
    MVector<int32_t> Items;     // segment numbers, cell by cell
    MVector<int32_t> Always;    // segments every query tests (long or not finite)
    int32_t AlwaysCount = 0;
    MVector<uint32_t> Seen; // per segment: the query that last tested it
    uint32_t Query = 0;
};

// Prepares the tests for the samples, which must stay in place meanwhile.
// Without the grid (or when it cannot be had) every query tests every segment.
void StartClearance(WTrackClearance& clearance, const WSketchPoint* samples, int32_t count,
                    bool useGrid);
// True when the pole a to b lies nearer than limit to a segment from sample q
// to q + 1, leaving out the q from skipFirst to skipLast.
bool NearTrack(WTrackClearance& clearance, const MPoint3& a, const MPoint3& b, float limit,
               int32_t skipFirst, int32_t skipLast);
// True when the pole a to b lies nearer than limit to one of the poles.
bool NearPoles(const WPole* poles, int32_t count, const MPoint3& a, const MPoint3& b, float limit);
