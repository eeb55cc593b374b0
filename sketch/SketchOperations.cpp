// Operations on the whole sketch: the clean-up that every deletion and every
// save relies on, centring and normalising, scaling, flipping and making the
// sketch flat. All but the clean-up end in Commit, so the undo ring decides
// whether anything changed.

#include "sketch/WSketch.h"

#include "foundation/MString.h"
#include "foundation/Platform.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

namespace {

// ---- Curves drawn twice

// The search for repeated curves, done in the order a plain search does it:
// for each curve start i in turn, the later curve starts j are tried in
// order; when the records of the curve at i repeat at j, as many records are
// removed at j, and the search for i begins again, as the curve before j
// has taken over what remained of j's curve (and i's own curve has, when
// that was i's). Records are only marked as removed, in a list of the live
// records, and the array is closed up once at the end.
//
// Only a curve start whose position coincides with that of i can repeat it,
// and coinciding x coordinates lie in the same or neighbouring cells of
// 2^-14: the starts are sorted by cell once, so that each i tries only the
// few starts near its own position instead of every later one.
void RemoveDuplicateCurves(WSketch& sketch) {
    const int32_t n = sketch.PointCount;
    const WSketchPoint* points = sketch.Points.Data;
    if (n < 2 || !points) return;

    // The live records as a list in array order; -1 ends it.
    std::vector<int32_t> next(static_cast<size_t>(n)), previous(static_cast<size_t>(n));
    for (int32_t k = 0; k < n; k++) {
        next[size_t(k)] = k + 1 < n ? k + 1 : -1;
        previous[size_t(k)] = k - 1;
    }
    std::vector<uint8_t> removed(static_cast<size_t>(n), 0);

    // Curve starts with a finite x, by cell and then by index. A start with
    // an x that is no number or infinite coincides with nothing.
    struct Start {
        double Cell;
        int32_t Index;
    };
    std::vector<Start> starts;
    auto cellOf = [](float x) { return std::floor(double(x) * 16384.0); };
    for (int32_t k = 0; k < n; k++)
        if (points[k].Kind == KindMove && std::isfinite(points[k].Position.x))
            starts.push_back(Start{cellOf(points[k].Position.x), k});
    std::sort(starts.begin(), starts.end(), [](const Start& a, const Start& b) {
        return a.Cell < b.Cell || (a.Cell == b.Cell && a.Index < b.Index);
    });

    // Live records from i up to the next curve start.
    auto curveLength = [&](int32_t i) {
        int32_t count = 1;
        for (int32_t k = next[size_t(i)]; k >= 0 && points[k].Kind != KindMove; k = next[size_t(k)])
            count++;
        return count;
    };
    // The count live records from j repeat those from i in kind and position.
    auto repeats = [&](int32_t i, int32_t j, int32_t count) {
        for (int32_t c = 0; c < count; c++) {
            if (j < 0) return false;
            const WSketchPoint& a = points[i];
            const WSketchPoint& b = points[j];
            if (a.Kind != b.Kind || !Coincide(a.Position, b.Position)) return false;
            i = next[size_t(i)];
            j = next[size_t(j)];
        }
        return true;
    };

    std::vector<int32_t> candidates;
    for (int32_t i = 0; i >= 0; i = next[size_t(i)]) {
        if (points[i].Kind != KindMove || !std::isfinite(points[i].Position.x)) continue;
        double cell = cellOf(points[i].Position.x);
        candidates.clear();
        auto first =
            std::lower_bound(starts.begin(), starts.end(), cell - 1,
                             [](const Start& start, double value) { return start.Cell < value; });
        for (auto at = first; at != starts.end() && at->Cell <= cell + 1; ++at)
            if (at->Index > i && Coincide(points[at->Index].Position, points[i].Position))
                candidates.push_back(at->Index);
        if (candidates.empty()) continue;
        std::sort(candidates.begin(), candidates.end());

        bool again = true;
        while (again) {
            again = false;
            int32_t count = curveLength(i);
            for (int32_t j : candidates) {
                if (removed[size_t(j)] || !repeats(i, j, count)) continue;
                // Unlink count live records from j on.
                int32_t before = previous[size_t(j)], k = j;
                for (int32_t c = 0; c < count; c++) {
                    removed[size_t(k)] = 1;
                    k = next[size_t(k)];
                }
                next[size_t(before)] = k;
                if (k >= 0) previous[size_t(k)] = before;
                DebugOutput(MString(u"Duplicate curve with ") + IntegerText(count) +
                            " points deleted\n");
                again = true;
                break;
            }
        }
    }

    int32_t kept = 0;
    for (int32_t k = 0; k < n; k++)
        if (!removed[size_t(k)]) sketch.Points[kept++] = sketch.Points[k];
    sketch.PointCount = kept;
}

// The twin's copy of everything but its own Kind.
void CopyToTwin(const WSketchPoint& from, WSketchPoint& to) {
    to.Position = from.Position;
    to.HandleIn = from.HandleIn;
    to.HandleOut = from.HandleOut;
    to.Roll = from.Roll;
    to.Smooth = from.Smooth;
}

// A flip inverts the sign bit itself, so that flipping twice gives back the
// very same bits, zeros and NaNs included.
void InvertSign(float& value) {
    uint32_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    bits ^= 0x80000000u;
    std::memcpy(&value, &bits, sizeof bits);
}

} // namespace

// ---- Clean-up

// Repairs the kinds, gives every point a roll at right angles to its path,
// makes twins equal and removes what draws nothing: empty curves, segments of
// no length, the middle points of straight runs and curves drawn twice. Bent
// curves whose handles lie on their chord become lines. Reports go to the
// debug output only. True when more than one record is left; otherwise the
// sketch is emptied.
bool WSketch::CleanUp() {
    const int32_t oldCount = PointCount;
    if (!Points.Data) PointCount = 0;

    // Kinds at the two ends of the array.
    if (PointCount > 0) Points[0].Kind = KindMove;
    if (PointCount >= 2 && Points[PointCount - 1].Kind == KindMove)
        Points[PointCount - 1].Kind = KindLine;

    // Rolls from the frames: the frame's X axis is the roll made perpendicular
    // to the tangent, or the stand-by where none was given.
    for (int32_t i = 0; i < PointCount; i++) {
        MMatrix frame = MakePointFrame(Points[i], false, false);
        frame.M[3][0] = frame.M[3][1] = frame.M[3][2] = 0;
        Points[i].Roll = Transform(frame, MPoint3{1, 0, 0});
    }

    // Twins: the first record of a closed curve wins, because it is met first
    // and the last record then copies back what it has just received.
    for (int32_t i = 0; i < PointCount; i++) {
        int32_t twin = FindTwin(i);
        if (twin >= 0) CopyToTwin(Points[i], Points[twin]);
    }

    // A lone KindMove at the end: a sketch of one record.
    if (PointCount > 0 && Points[PointCount - 1].Kind == KindMove) PointCount--;

    // Empty curves: a KindMove that another KindMove follows. The records are
    // kept by moving them down once, in place of removing each one by
    // itself, which moved the whole tail at every removal.
    int32_t kept = 0;
    for (int32_t i = 0; i < PointCount; i++) {
        if (i + 1 < PointCount && Points[i].Kind == KindMove && Points[i + 1].Kind == KindMove) {
            DebugOutput(u"Curve deleted with no points\n");
            continue;
        }
        Points[kept++] = Points[i];
    }
    PointCount = kept;

    // Straight curves: both handles on the line through the two positions.
    int32_t curvesStraightened = 0;
    for (int32_t i = 1; i < PointCount; i++) {
        if (Points[i].Kind != KindCurve) continue;
        const MPoint3& a = Points[i - 1].Position;
        const MPoint3& b = Points[i].Position;
        if (IsNearZero(DistanceToLine3(a, b, Points[i - 1].HandleOut)) &&
            IsNearZero(DistanceToLine3(a, b, Points[i].HandleIn))) {
            Points[i].Kind = KindLine;
            curvesStraightened++;
        }
    }

    // Segments of no length; the removed record's handles go with it. Each
    // record is measured against the last one kept before it.
    if (PointCount > 0) {
        kept = 1;
        for (int32_t i = 1; i < PointCount; i++) {
            uint8_t kind = Points[i].Kind;
            if ((kind == KindLine || kind == KindCurve) &&
                Coincide(Points[i].Position, Points[kept - 1].Position))
                continue;
            Points[kept++] = Points[i];
        }
        PointCount = kept;
    }

    // Middle points of straight runs. A change of roll along a straight track
    // is kept, so only a point whose roll equals the next one's goes.
    // The records kept so far stand in 0 .. kept - 1, the last of them the
    // middle of the triple; the next record is read at next. After a
    // removal the triple before is looked at again, as the middle point's
    // neighbours have changed; with only the first record left before it,
    // the next record becomes the middle.
    int32_t pointsRemoved = 0;
    if (PointCount >= 3) {
        kept = 2;
        for (int32_t next = 2; next < PointCount;) {
            const WSketchPoint& middle = Points[kept - 1];
            const WSketchPoint& after = Points[next];
            if (middle.Kind == KindLine && after.Kind == KindLine &&
                IsNearZero(
                    DistanceToLine3(Points[kept - 2].Position, after.Position, middle.Position)) &&
                Coincide(middle.Roll, after.Roll)) {
                pointsRemoved++;
                kept--;
                if (kept >= 2) continue;
            }
            Points[kept++] = Points[next++];
        }
        PointCount = kept;
    }

    RemoveDuplicateCurves(*this);

    if (pointsRemoved > 0)
        DebugOutput(IntegerText(pointsRemoved) + " unnecessary points deleted!\n");
    if (curvesStraightened > 0)
        DebugOutput(IntegerText(curvesStraightened) + " unnecessary curves changed into lines\n");

    if (PointCount != oldCount) Current = -1;
    if (PointCount > 1) return true;
    PointCount = 0;
    Current = -1;
    return false;
}

// ---- Centre, normalise, scale

// Moves the centre of the bounds to the origin and/or scales the sketch so
// that its largest extent is 200 units, the scaling applied after the move.
// Rolls are directions and stay. A sketch of one point has no extent, so
// normalising leaves it alone.
void WSketch::TransformAll(bool centre, bool normalize) {
    if (PointCount < 1 || !Points.Data || (!centre && !normalize)) return;
    float bounds[6];
    GetBounds(bounds);

    // The translation, then the scaling behind it: rows 0 to 2 carry the
    // scale, row 3 the translation already scaled.
    MMatrix matrix;
    if (centre) {
        for (int32_t axis = 0; axis < 3; axis++)
            matrix.M[3][axis] = (bounds[2 * axis] + bounds[2 * axis + 1]) * -0.5f;
    }
    if (normalize) {
        float extent = 0;
        for (int32_t axis = 0; axis < 3; axis++) {
            float e = bounds[2 * axis + 1] - bounds[2 * axis];
            if (e > extent) extent = e;
        }
        if (extent > 0) {
            float factor = 200.0f / extent;
            for (int32_t axis = 0; axis < 3; axis++) {
                matrix.M[axis][axis] = factor;
                matrix.M[3][axis] *= factor;
            }
        }
    }
    // Applied whatever it is: a move or a scale too small for the identity
    // test must still give the stated coordinates.
    matrix.Identity = false;

    for (int32_t i = 0; i < PointCount; i++) {
        WSketchPoint& p = Points[i];
        p.Position = Transform(matrix, p.Position);
        p.HandleIn = Transform(matrix, p.HandleIn);
        p.HandleOut = Transform(matrix, p.HandleOut);
    }
    Commit();
}

// The factor is a double (the keys use 1.1 and 0.9): each coordinate is
// multiplied in double and rounded once.
void WSketch::Scale(double factor) {
    if (PointCount < 1 || !Points.Data) return;
    for (int32_t i = 0; i < PointCount; i++) {
        WSketchPoint& p = Points[i];
        p.Position = p.Position * factor;
        p.HandleIn = p.HandleIn * factor;
        p.HandleOut = p.HandleOut * factor;
    }
    Commit();
}

// ---- Flips about the world's axes, not about the sketch's centre

void WSketch::FlipHorizontal() {
    if (PointCount < 1 || !Points.Data) return;
    for (int32_t i = 0; i < PointCount; i++) {
        WSketchPoint& p = Points[i];
        InvertSign(p.Position.x);
        InvertSign(p.HandleIn.x);
        InvertSign(p.HandleOut.x);
        InvertSign(p.Roll.x);
    }
    Commit();
}

void WSketch::FlipVertical() {
    if (PointCount < 1 || !Points.Data) return;
    for (int32_t i = 0; i < PointCount; i++) {
        WSketchPoint& p = Points[i];
        InvertSign(p.Position.y);
        InvertSign(p.HandleIn.y);
        InvertSign(p.HandleOut.y);
        InvertSign(p.Roll.y);
    }
    Commit();
}

// ---- Make flat

// Asks first, since the depth is lost for good (undo aside). A sketch that is
// already flat only gets a note.
void WSketch::MakeFlat() {
    if (IsFlat()) {
        ShowMessage(MString(u"The sketch is already 2D!"), IconInformation);
        return;
    }
    MessageAnswer answer = ShowMessage(MString(u"Are you sure you want to make your sketch 2D?"),
                                       IconQuestion, ButtonsYesNoCancel);
    if (answer != AnswerYes) return;
    if (PointCount < 1 || !Points.Data) return;
    for (int32_t i = 0; i < PointCount; i++) {
        WSketchPoint& p = Points[i];
        p.Position.z = 0;
        p.HandleIn.z = 0;
        p.HandleOut.z = 0;
        p.Roll = MPoint3{0, 0, 1};
    }
    CleanUp();
    Commit();
}
