// The undo ring: the last 100 different states of the points, as full copies.
// Whether an edit happened at all is decided here, by comparing the points
// with the newest state.

#include "sketch/WUndoRing.h"

#include "foundation/Platform.h"
#include "sketch/ModelHooks.h"

static const int32_t RingSize = 100;

WUndoRing::WUndoRing() {
    Snapshots.SetCount(RingSize);
    DebugOutput(u"WUndoRing created\n");
}

WUndoRing::~WUndoRing() {
    DebugOutput(u"WUndoRing destroyed\n");
}

// Exact equality: a NaN differs from everything, itself included, so a
// record holding one makes every Commit a change.
static bool SameFloats(const MPoint3& a, const MPoint3& b) {
    return a.x == b.x && a.y == b.y && a.z == b.z;
}

static bool SameRecord(const WSketchPoint& a, const WSketchPoint& b) {
    return SameFloats(a.Position, b.Position) && SameFloats(a.HandleIn, b.HandleIn) &&
           SameFloats(a.HandleOut, b.HandleOut) && SameFloats(a.Roll, b.Roll) &&
           a.Smooth == b.Smooth && a.Kind == b.Kind;
}

// True when the sketch's points differ from the present state; the sketch is
// then stored as the new present state and the redo states are dropped. A
// slot whose growth failed holds a count without its records; it is then
// taken as different from anything, so the next Commit stores again.
bool WUndoRing::Push(const WSketch& sketch) {
    int32_t count = sketch.PointCount;
    if (Depth > 0) {
        const WSnapshot& present = Snapshots[Slot];
        if (present.PointCount == count) {
            if (count == 0) return false;
            if (present.Points.Count >= count) {
                int32_t i = 0;
                while (i < count && SameRecord(present.Points[i], sketch.Points[i]))
                    i++;
                if (i == count) return false;
            }
        }
    }

    Depth = Depth + 1 < RingSize ? Depth + 1 : RingSize;
    RedoDepth = 0;
    Slot = (Slot + 1) % RingSize;
    WSnapshot& state = Snapshots[Slot];
    state.PointCount = count;
    // Slots only ever grow, so steady editing of a sketch allocates nothing.
    if (!state.Points.Grow(count, 1000)) return true;
    for (int32_t i = 0; i < count; i++)
        state.Points[i] = sketch.Points[i];
    return true;
}

// Copies the state over the sketch's points. The sketch's array has only ever
// grown, so it already holds every state it produced; the growth here only
// guards against a state that never came from it. Modified is left alone:
// undoing everything still leaves a sketch that differs from its file.
static void Restore(WSketch& sketch, const WSnapshot& state) {
    int32_t count = state.PointCount;
    if (count > sketch.Points.Count) sketch.Points.Grow(count, 0);
    if (count > sketch.Points.Count) count = sketch.Points.Count;
    int32_t stored = count < state.Points.Count ? count : state.Points.Count;
    for (int32_t i = 0; i < stored; i++)
        sketch.Points[i] = state.Points[i];
    sketch.PointCount = count;
    sketch.Current = -1;
}

// The first state, the empty sketch of start-up, can be reached but not passed.
void UndoSketch() {
    WSketch* sketch = TheSketch;
    WUndoRing* ring = sketch ? sketch->Undo : nullptr;
    if (ring && ring->Depth >= 2) {
        ring->Depth--;
        ring->RedoDepth++;
        ring->Slot = (ring->Slot + RingSize - 1) % RingSize;
        Restore(*sketch, ring->Snapshots[ring->Slot]);
    }
    AskShowMenuState();
    AskShowTitle();
}

void RedoSketch() {
    WSketch* sketch = TheSketch;
    WUndoRing* ring = sketch ? sketch->Undo : nullptr;
    if (ring && ring->RedoDepth >= 1) {
        ring->Depth++;
        ring->RedoDepth--;
        ring->Slot = (ring->Slot + 1) % RingSize;
        Restore(*sketch, ring->Snapshots[ring->Slot]);
    }
    AskShowMenuState();
    AskShowTitle();
}
