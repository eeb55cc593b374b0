// The sketch object: its lifetime, curves and twins, the edits that keep a
// closed curve closed, and Commit, which ends every edit.

#include "sketch/WSketch.h"

#include "foundation/MString.h"
#include "foundation/Platform.h"
#include "sketch/ModelHooks.h"
#include "sketch/WUndoRing.h"

WSketch* TheSketch = nullptr;

// ---- Lifetime

WSketch::WSketch() {
    DebugOutput(u"WSketch created\n");
}

// The ring goes first: it holds copies of the points and is of no use
// without the sketch it served.
WSketch::~WSketch() {
    delete Undo;
    Undo = nullptr;
    DebugOutput(u"WSketch destroyed\n");
}

WSketch* CreateSketch() {
    if (TheSketch) {
        ShowMessage(MString(u"There can only be 1 WSketch object"), IconError);
        return TheSketch;
    }
    WSketch* sketch = new (std::nothrow) WSketch;
    if (!sketch) return nullptr;
    // A missing ring only means no undo and no Modified flag; start-up goes on.
    sketch->Undo = new (std::nothrow) WUndoRing;
    if (sketch->Undo) sketch->Undo->Push(*sketch);
    sketch->Current = -1;
    sketch->Modified = 0;
    TheSketch = sketch;
    return sketch;
}

void DestroySketch() {
    WSketch* sketch = TheSketch;
    TheSketch = nullptr;
    delete sketch;
}

// ---- Curves and twins

// Walks back to the KindMove record that opens the curve; -1 for an index out
// of range or an array whose first record is not KindMove.
int32_t WSketch::CurveStart(int32_t index) const {
    if (!Points.Data || index < 0 || index >= PointCount) return -1;
    for (int32_t i = index; i >= 0; i--)
        if (Points[i].Kind == KindMove) return i;
    return -1;
}

// The record before the next KindMove, or the last record of the array.
int32_t WSketch::CurveEnd(int32_t index) const {
    if (!Points.Data || index < 0 || index >= PointCount) return -1;
    int32_t i = index;
    while (i + 1 < PointCount && Points[i + 1].Kind != KindMove)
        i++;
    return i;
}

// Only the two ends of a curve can be twins, and only when they are different
// records at coinciding positions. Nothing is cached: closedness is read from
// the positions on every call, so that no edit can leave a stale flag behind.
int32_t WSketch::FindTwin(int32_t index) const {
    if (!Points.Data || index < 0 || index >= PointCount) return -1;
    int32_t last = PointCount - 1;
    int32_t other;
    if (Points[index].Kind == KindMove) {
        if (index == last) return -1;
        other = CurveEnd(index);
        if (other == index) return -1;
    } else {
        if (index != last && Points[index + 1].Kind != KindMove) return -1;
        if (index == 0) return -1;
        other = CurveStart(index);
        if (other < 0 || other == index) return -1;
    }
    return Coincide(Points[index].Position, Points[other].Position) ? other : -1;
}

// ---- Handles

// part 1 turns HandleIn to the far side of HandleOut, part 2 the reverse, each
// keeping the moving handle's own length. Any other part averages the two
// sides, so that neither handle wins.
void AlignHandles(WSketchPoint& record, int32_t part) {
    if (part == 1 || part == 2) {
        MPoint3& moving = part == 1 ? record.HandleIn : record.HandleOut;
        const MPoint3& other = part == 1 ? record.HandleOut : record.HandleIn;
        float keep = Length3(moving - record.Position);
        MPoint3 away = record.Position - other;
        float length = Length3(away);
        if (length > 0) {
            moving = MPoint3{record.Position.x + away.x * keep / length,
                             record.Position.y + away.y * keep / length,
                             record.Position.z + away.z * keep / length};
        }
    } else {
        MPoint3 a = record.Position - record.HandleIn;
        MPoint3 b = record.HandleOut - record.Position;
        MPoint3 mean = (a + b) * 0.5;
        record.HandleIn = record.Position - mean;
        record.HandleOut = record.Position + mean;
    }
    record.Smooth = 1;
}

// ---- Growth

// Raises the capacity to exactly capacity records, keeping the old records.
// Unlike MVector::SetCount a failure leaves the array as it was, so that an
// edit that finds no room ends with the sketch unchanged.
static bool GrowPoints(MVector<WSketchPoint>& points, int32_t capacity) {
    if (capacity <= points.Count) return true;
    MVector<WSketchPoint> bigger;
    if (!bigger.SetCount(capacity)) return false;
    for (int32_t i = 0; i < points.Count; i++)
        bigger[i] = points[i];
    WSketchPoint* data = points.Data;
    points.Data = bigger.Data;
    points.Count = bigger.Count;
    bigger.Data = data; // the old block is freed with bigger
    bigger.Count = 0;
    return true;
}

// ---- Edits

// The only way for outside code to replace a record. Twins, the start and the
// end are found before the record changes, because the change itself (a new
// position, a new KindMove) can hide them.
void WSketch::SetPoint(int32_t index, const WSketchPoint& record) {
    if (!Points.Data || index < 0 || index >= PointCount) return;
    WSketchPoint stored = record;
    // Record 0 opens the first curve whatever it is given; a KindMove at the
    // end of the array would open an empty curve. The first rule wins, so a
    // one-record sketch keeps its KindMove.
    if (index == 0)
        stored.Kind = KindMove;
    else if (index == PointCount - 1 && stored.Kind == KindMove)
        stored.Kind = KindLine;

    int32_t twin = FindTwin(index);
    int32_t start = CurveStart(index);
    int32_t end = CurveEnd(index);
    int32_t startTwin = start >= 0 ? FindTwin(start) : -1;

    uint8_t oldKind = Points[index].Kind;
    uint8_t oldSmooth = Points[index].Smooth;
    Points[index] = stored;
    WSketchPoint& point = Points[index];
    if (!oldSmooth && point.Smooth) AlignHandles(point, 1);

    if (twin >= 0) {
        WSketchPoint& other = Points[twin];
        other.Position = point.Position;
        other.HandleIn = point.HandleIn;
        other.HandleOut = point.HandleOut;
        other.Roll = point.Roll;
        other.Smooth = point.Smooth;
    }

    // A new KindMove inside a closed curve cuts it open at this point: the
    // part before the cut is moved behind the old end, so the one open curve
    // begins here and ends just before here.
    if (point.Kind != oldKind && point.Kind == KindMove && start >= 0 && startTwin == end) {
        JoinCurves(end, start);
        Current = -1;
    }
    Commit();
}

// Appends the curve that begins at start behind the record end, dropping the
// curve's first record, which stands at the seam where end already is. The
// callers commit. A pair that is not a curve's end and another curve's start
// is left alone.
void WSketch::JoinCurves(int32_t end, int32_t start) {
    if (!Points.Data || end < 0 || end >= PointCount || start < 0 || start >= PointCount) return;
    if (end != PointCount - 1 && Points[end + 1].Kind != KindMove) return;
    if (Points[start].Kind != KindMove) return;
    if (CurveStart(end) == start) return; // one curve cannot be moved behind itself
    int32_t last = CurveEnd(start);
    int32_t count = last - start + 1;
    if (count < 2) return;

    MPoint3 mean = (Points[end].Position + Points[start].Position) * 0.5;
    Points[end].Position = mean;

    MVector<WSketchPoint> moved;
    if (!moved.SetCount(count)) return;
    for (int32_t i = 0; i < count; i++)
        moved[i] = Points[start + i];

    // Close the gap the curve leaves; the array shrinks by one in the end,
    // so no growth is needed.
    for (int32_t i = start; i + count < PointCount; i++)
        Points[i] = Points[i + count];
    PointCount -= count;
    if (start < end) end -= count;

    int32_t insert = count - 1;
    for (int32_t i = PointCount - 1; i > end; i--)
        Points[i + insert] = Points[i];
    for (int32_t i = 0; i < insert; i++)
        Points[end + 1 + i] = moved[1 + i];
    PointCount += insert;
    Current = -1;
}

// Records go in as given, so their Kinds must already be right. The capacity
// rises by exactly count whatever the fill level: strokes and traces come in
// one piece and this keeps the array no bigger than their sum.
void WSketch::AppendPoints(const WSketchPoint* records, int32_t count) {
    if (!records || count < 1) return;
    if (!GrowPoints(Points, Points.Count + count)) return;
    for (int32_t i = 0; i < count; i++)
        Points[PointCount + i] = records[i];
    PointCount += count;
    Current = -1;
    Commit();
}

// A straight segment drawn as a cubic: the handles lie on the segment at
// three tenths from each end. There is no Commit; the loader commits once
// for the whole file.
void WSketch::AddLinePoint(const MPoint3& position, const MPoint3& roll) {
    if (PointCount < 1 || !Points.Data) return;
    MPoint3 d = position - Points[PointCount - 1].Position;
    if (IsNearZero(d.x) && IsNearZero(d.y) && IsNearZero(d.z)) return;
    if (PointCount + 1 > Points.Count && !GrowPoints(Points, Points.Count + 1000)) return;
    // Smooth is not written: the new record keeps what its array element held.
    WSketchPoint& point = Points[PointCount];
    point.Position = position;
    point.HandleIn = position - d * 0.3;
    point.HandleOut = position + d * 0.3;
    point.Roll = roll;
    point.Kind = KindLine;
    Points[PointCount - 1].HandleOut = position - d * 0.7;
    PointCount++;
    Current = -1;
}

// The ring decides whether the edit changed anything; only then is the
// sketch dirty, the menu and title refreshed and the Point tool window, if
// open, loaded anew.
void WSketch::Commit() {
    if (!Undo) return;
    if (!Undo->Push(*this)) return;
    Modified = 1;
    AskShowMenuState();
    AskShowTitle();
    AskShowSelection();
}
