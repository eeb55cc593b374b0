// Dragging the selected point, handle or roll tip, with the closing and
// joining of curve ends it may cause; the deletions behind Delete and the
// right button; the Smooth toggle; and the grid snap at the button release.

#include "sketch/PointEditing.h"

#include "foundation/Settings.h"
#include "sketch/ModelHooks.h"
#include "view/WView.h"

namespace {

// What a twin takes over: everything but its own Kind.
void CopyToTwin(const WSketchPoint& from, WSketchPoint& to) {
    to.Position = from.Position;
    to.HandleIn = from.HandleIn;
    to.HandleOut = from.HandleOut;
    to.Roll = from.Roll;
    to.Smooth = from.Smooth;
}

void RemoveRecord(WSketch& sketch, int32_t index) {
    for (int32_t i = index; i + 1 < sketch.PointCount; i++)
        sketch.Points[i] = sketch.Points[i + 1];
    sketch.PointCount--;
}

bool ValidCurrent(const WSketch& sketch) {
    return sketch.Points.Data && sketch.Current >= 0 && sketch.Current < sketch.PointCount;
}

// Screen distance between two records, for the reach of a curve end.
bool WithinReach(const WSketch& sketch, int32_t a, int32_t b, float reach) {
    MPoint2 d = ScreenPoint(sketch.Points[a].Position) - ScreenPoint(sketch.Points[b].Position);
    return Length2(d) <= reach;
}

} // namespace

// ---- Drag

// Moves the selected part by a world vector. A twin follows at once. A free
// curve end that comes within PointSize pixels of the other end of its own
// curve closes the curve; otherwise a curve's last record reaching another
// curve's start, or its first record reaching another curve's end, joins the
// two. Closing and joining deselect, so that the rest of the drag pans.
// There is no Commit: the button release commits, making a drag one undo
// step. Whichever way the move ends, the Point tool window shows the result.
void WSketch::DragCurrent(const MPoint3& delta) {
    if (!ValidCurrent(*this) || CurrentPart < 0 || CurrentPart > 3) return;
    struct ReloadPointWindow {
        ~ReloadPointWindow() { AskShowSelection(); }
    } reload;
    int32_t index = Current;
    // Found before the move, which parts the two positions.
    int32_t twin = FindTwin(index);
    WSketchPoint& record = Points[index];
    switch (CurrentPart) {
    case 0:
        record.Position = record.Position + delta;
        record.HandleIn = record.HandleIn + delta;
        record.HandleOut = record.HandleOut + delta;
        break;
    case 1:
        record.HandleIn = record.HandleIn + delta;
        if (record.Smooth) AlignHandles(record, 2);
        break;
    case 2:
        record.HandleOut = record.HandleOut + delta;
        if (record.Smooth) AlignHandles(record, 1);
        break;
    default: {
        MPoint3 roll = (RollTip(record) - record.Position) + delta;
        if (Length3(roll) > 0) Normalize3(roll);
        record.Roll = roll;
        break;
    }
    }

    if (twin >= 0) {
        CopyToTwin(record, Points[twin]);
        return;
    }
    if (!TheView || !TheSettings) return;
    float reach = float(TheSettings->PointSize);
    int32_t start = CurveStart(index);
    int32_t end = CurveEnd(index);
    if (start < 0 || (index != start && index != end)) return;

    // A curve of one record is both ends at once and always closes, which
    // here only deselects it.
    if (WithinReach(*this, start, end, reach)) {
        MPoint3 mean = (Points[start].Position + Points[end].Position) * 0.5;
        Points[start].Position = mean;
        Points[end].Position = mean;
        Points[start].HandleIn = Points[end].HandleIn;
        Points[end].HandleOut = Points[start].HandleOut;
        // The new twins must hold one point: the first record's roll and
        // Smooth win, as they do in the clean-up.
        Points[end].Roll = Points[start].Roll;
        Points[end].Smooth = Points[start].Smooth;
        Current = -1;
        return;
    }

    // After one join the record is no longer a curve end (or, joined onto
    // another end, no longer there), so no later candidate can join; the
    // walk stops at the first join that happened.
    if (index == end) {
        for (int32_t j = 0; j < PointCount; j++) {
            if (Points[j].Kind != KindMove || !WithinReach(*this, index, j, reach)) continue;
            Current = -1;
            int32_t count = PointCount;
            JoinCurves(index, j);
            if (PointCount != count) break;
        }
    } else {
        for (int32_t j = 0; j < PointCount; j++) {
            bool endsCurve = j == PointCount - 1 || Points[j + 1].Kind == KindMove;
            if (!endsCurve || !WithinReach(*this, j, index, reach)) continue;
            Current = -1;
            int32_t count = PointCount;
            JoinCurves(j, index);
            if (PointCount != count) break;
        }
    }
}

// ---- Deletion

// Part 0 removes the point; the next record's segment then bridges the gap,
// and a curve's first record hands its KindMove on, with a closed curve's
// last record following the new first so that the curve stays closed. A
// handle straightens its segment; a roll tip deletes nothing. The clean-up
// always runs, so a deletion also tidies what it leaves behind.
void WSketch::DeleteCurrent() {
    if (!ValidCurrent(*this)) return;
    int32_t index = Current;
    switch (CurrentPart) {
    case 0:
        if (Points[index].Kind == KindMove && index + 1 < PointCount &&
            Points[index + 1].Kind != KindMove) {
            int32_t twin = FindTwin(index);
            Points[index + 1].Kind = KindMove;
            if (twin >= 0) CopyToTwin(Points[index + 1], Points[twin]);
        }
        RemoveRecord(*this, index);
        break;
    case 1:
        if (Points[index].Kind == KindCurve) Points[index].Kind = KindLine;
        break;
    case 2:
        if (index + 1 < PointCount && Points[index + 1].Kind == KindCurve)
            Points[index + 1].Kind = KindLine;
        break;
    default:
        break;
    }
    CleanUp();
    Current = -1;
    Commit();
}

// Removes the segment that arrives at the selected record. On a closed curve
// the cut opens it, and the curve is put back together as one open curve
// that begins at the cut. The first record of an open curve has no segment
// to lose, and nothing happens at all.
void WSketch::DeleteSegment() {
    if (!ValidCurrent(*this)) return;
    int32_t index = Current;
    int32_t start = CurveStart(index);
    int32_t end = CurveEnd(index);
    if (index == end) {
        RemoveRecord(*this, index);
    } else if (index == start) {
        int32_t twin = FindTwin(index);
        if (twin < 0) return;
        RemoveRecord(*this, twin);
    } else {
        bool closed = start >= 0 && FindTwin(start) == end;
        Points[index].Kind = KindMove;
        if (closed) JoinCurves(end, start);
    }
    CleanUp();
    Current = -1;
    Commit();
}

// ---- Smooth

// Clearing keeps the handles where they are; setting averages the two handle
// vectors, so that neither side wins.
void WSketch::ToggleSmooth() {
    if (!ValidCurrent(*this)) return;
    int32_t twin = FindTwin(Current);
    WSketchPoint& record = Points[Current];
    if (record.Smooth)
        record.Smooth = 0;
    else
        AlignHandles(record, -1);
    if (twin >= 0) CopyToTwin(record, Points[twin]);
    Commit();
}

// ---- Grid snap at the release

// With the grid on, a selected point (not a handle or roll tip) snaps in all
// three axes to the nearest multiple of GridSize, ties to the even multiple;
// its handles keep their offsets, its twin follows and the clean-up runs.
// True when it snapped. There is no Commit: the release commits in all cases.
bool WSketch::SnapCurrentToGrid() {
    if (!TheSettings || !TheSettings->UseGrid || TheSettings->GridSize <= 0) return false;
    if (!ValidCurrent(*this) || CurrentPart != 0) return false;
    int32_t twin = FindTwin(Current);
    WSketchPoint& record = Points[Current];
    MPoint3 snapped = SnapToGrid(record.Position, TheSettings->GridSize);
    record.HandleIn = snapped + (record.HandleIn - record.Position);
    record.HandleOut = snapped + (record.HandleOut - record.Position);
    record.Position = snapped;
    if (twin >= 0) {
        WSketchPoint& other = Points[twin];
        other.Position = record.Position;
        other.HandleIn = record.HandleIn;
        other.HandleOut = record.HandleOut;
        other.Roll = record.Roll;
    }
    CleanUp();
    return true;
}
