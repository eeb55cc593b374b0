#pragma once
// The last 100 different states of the sketch's points, as full copies.

#include "foundation/MVector.h"
#include "sketch/WSketch.h"
#include <cstdint>

struct WSnapshot {
    MVector<WSketchPoint> Points; // capacity only ever grows
    int32_t PointCount = 0;
};

struct WUndoRing {
    int32_t Depth = 0;     // states reachable going back, the present one included; at most 100
    int32_t RedoDepth = 0; // states ahead of the present one
    int32_t Slot = 0;      // index of the present state, 0 to 99
    MVector<WSnapshot> Snapshots; // always 100

    WUndoRing();
    ~WUndoRing();
    WUndoRing(const WUndoRing&) = delete;
    WUndoRing& operator=(const WUndoRing&) = delete;
    bool Push(const WSketch& sketch); // true if the points changed and were stored
};

void UndoSketch(); // the Undo command on TheSketch
void RedoSketch(); // the Redo command on TheSketch
