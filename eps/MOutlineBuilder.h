#pragma once
// The general outline builder of the small-picture trace: directed edges
// (inside on the left) are added square by square, shared sides cancel, and
// Build links what is left into loops, repairing small gaps and straight
// runs, and checks the result.

#include "foundation/MVector.h"
#include "view/Geometry.h"

#include <cstdint>

struct MOutlineEdge {
    MPoint2 Normal;        // unit, to the right of Start -> End
    MPoint2 Start, End;    // corners
    MPoint2 NormalAtStart; // the joint normal with the previous edge, or Normal
    MPoint2 NormalAtEnd;   // the same with the next edge
    MPoint2 CornerAtStart; // the corner's offset direction, scaled by 1 / cos
    MPoint2 CornerAtEnd;
    int32_t Prev = -1, Next = -1; // edge indices, -1 while open
};

struct MOutlineLoop {
    int32_t FirstEdge = 0;
    float MinX = 0, MaxX = 0, MinY = 0, MaxY = 0;
};

struct MOutlineBuilder {
    int32_t LoopCount = 0;
    MVector<MOutlineLoop> Loops; // growth step 10
    int32_t EdgeCount = 0;
    MVector<MOutlineEdge> Edges;    // growth step 100
    float Bounds[4] = {0, 0, 0, 0}; // minimum x, maximum x, minimum y, maximum y

    MOutlineBuilder();
    // Virtual so that a builder that widens its outlines can derive from it.
    virtual ~MOutlineBuilder();

    // The four edges of a square, inside on the left. False when out of memory.
    bool AddSquare(float left, float right, float top, float bottom);
    // One edge from a to b: the reverse edge, if present, is deleted instead
    // (the side between two cells disappears), and a copy is not added twice.
    bool AddEdge(MPoint2 a, MPoint2 b);
    // Links, repairs and checks the edges and collects the loops. False (with
    // a line on the debug output) when no valid outline results. growth, a
    // widening of the outline, is not supported: pass 0.
    bool Build(float growth);

    // ---- The steps of Build, public for tests.
    void RemoveMarkedEdges(); // every edge with Prev -1 goes
    bool LinkEdges();
    bool CollectLoops();
    int32_t CheckEdges() const; // 0, or the code of the first fault
};
