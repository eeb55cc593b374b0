#pragma once
// The one document: curves of lines and cubic Bezier segments in space, kept
// as a flat array of point records, with a roll vector at every point.

#include "foundation/MVector.h"
#include "view/Geometry.h"
#include <cstdint>

enum : uint8_t { KindMove = 0, KindLine = 1, KindCurve = 2 };

struct WSketchPoint {
    MPoint3 Position;
    MPoint3 HandleIn;        // absolute; second control of the segment arriving here
    MPoint3 HandleOut;       // absolute; first control of the segment leaving here
    MPoint3 Roll;            // world direction of the cross-section; zero means none given
    uint8_t Smooth = 1;      // handles kept on opposite sides of Position
    uint8_t Kind = KindMove; // what lies between the previous record and this one
};

struct WUndoRing;

struct WSketch {
    int32_t PointCount = 0;       // records in use
    MVector<WSketchPoint> Points; // Count is the capacity
    int32_t Current = -1;         // selected record, or -1
    int32_t CurrentPart = 0;      // 0 Position, 1 HandleIn, 2 HandleOut, 3 roll tip
    uint8_t Modified = 0;         // differs from what was last saved or loaded
    WUndoRing* Undo = nullptr;    // owned
    int32_t GhostCount = 0;       // records of the ghost, 0 for none
    MVector<WSketchPoint> Ghost;  // frozen copy of Points, only drawn

    WSketch();
    ~WSketch();
    WSketch(const WSketch&) = delete;
    WSketch& operator=(const WSketch&) = delete;

    int32_t FindTwin(int32_t index) const;
    int32_t CurveStart(int32_t index) const;
    int32_t CurveEnd(int32_t index) const;
    void SetPoint(int32_t index, const WSketchPoint& record);
    void JoinCurves(int32_t end, int32_t start);
    void AppendPoints(const WSketchPoint* records, int32_t count);
    void AddLinePoint(const MPoint3& position, const MPoint3& roll);
    void GetBounds(float bounds[6]) const; // min x, max x, min y, max y, min z, max z
    bool IsFlat() const;
    void Commit();

    // Operations on the whole sketch (SketchOperations.cpp).
    bool CleanUp(); // false if nothing worth saving is left; does not commit
    void TransformAll(bool centre, bool normalize);
    void Scale(double factor); // about the world origin
    void FlipHorizontal();
    void FlipVertical();
    void MakeFlat(); // asks first

    // Point editing in the two edit modes (sketch/PointEditing.h); mouse
    // positions are client pixels of TheView.
    bool HitTest(const MPoint2& mouse, bool preferLater); // true on a hit
    // True when a handle of a curve was picked: pointer (if given) gets its
    // client position, where the caller puts the mouse pointer.
    bool HitCurve(const MPoint2& mouse, MPoint2* pointer = nullptr);
    void InsertPoint(const MPoint2& mouse);
    void DragCurrent(const MPoint3& delta); // a world vector; no Commit
    void DeleteCurrent();
    void DeleteSegment();
    void ToggleSmooth();
    bool SnapCurrentToGrid(); // the button release's snap; no Commit
    bool MakeCircle();
    bool MakeArc();
};

// The one sketch of the process, set by its creation and cleared at its end.
extern WSketch* TheSketch;
// Creates the sketch with its ring of 100 snapshots holding the empty sketch.
// A second call shows "There can only be 1 WSketch object" and keeps the first.
WSketch* CreateSketch();
void DestroySketch();

void AlignHandles(WSketchPoint& record, int32_t part);
float PathLength(const WSketchPoint* records, int32_t count);
MMatrix MakePointFrame(const WSketchPoint& record, bool useHandleOut, bool road);
MPoint3 BezierPoint(const MPoint3* controls, int32_t first, int32_t degree, float t);
int32_t CurveSteps(const MPoint3 controls[4]);
float MeasureCubic(const MPoint3 controls[4]); // four chords
