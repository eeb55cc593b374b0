// Operations on the whole sketch: the clean-up that every deletion and every
// save relies on, centring and normalising, scaling, flipping and making the
// sketch flat. All but the clean-up end in Commit, so the undo ring decides
// whether anything changed.

#include "sketch/WSketch.h"

#include "foundation/MString.h"
#include "foundation/Platform.h"

#include <cstring>

namespace {

// Removes count records at index; the capacity stays.
void RemoveRecords(WSketch& sketch, int32_t index, int32_t count) {
    for (int32_t i = index; i + count < sketch.PointCount; i++)
        sketch.Points[i] = sketch.Points[i + count];
    sketch.PointCount -= count;
}

// The records of the curve that begins at start, up to the next KindMove.
int32_t CurveLength(const WSketch& sketch, int32_t start) {
    int32_t n = 1;
    while (start + n < sketch.PointCount && sketch.Points[start + n].Kind != KindMove)
        n++;
    return n;
}

// True when the count records from j repeat those from i in kind and
// position, so the curve at i is drawn a second time at j.
bool RecordsRepeat(const WSketch& sketch, int32_t i, int32_t j, int32_t count) {
    if (j + count > sketch.PointCount) return false;
    for (int32_t k = 0; k < count; k++) {
        const WSketchPoint& a = sketch.Points[i + k];
        const WSketchPoint& b = sketch.Points[j + k];
        if (a.Kind != b.Kind || !Coincide(a.Position, b.Position)) return false;
    }
    return true;
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

    // Empty curves.
    for (int32_t i = 0; i + 1 < PointCount; i++) {
        while (i + 1 < PointCount && Points[i].Kind == KindMove && Points[i + 1].Kind == KindMove) {
            RemoveRecords(*this, i, 1);
            DebugOutput(u"Curve deleted with no points\n");
        }
    }

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

    // Segments of no length; the removed record's handles go with it.
    for (int32_t i = 1; i < PointCount;) {
        uint8_t kind = Points[i].Kind;
        if ((kind == KindLine || kind == KindCurve) &&
            Coincide(Points[i].Position, Points[i - 1].Position))
            RemoveRecords(*this, i, 1);
        else
            i++;
    }

    // Middle points of straight runs. A change of roll along a straight track
    // is kept, so only a point whose roll equals the next one's goes.
    int32_t pointsRemoved = 0;
    if (PointCount >= 3) {
        for (int32_t i = 1; i + 1 < PointCount;) {
            const WSketchPoint& middle = Points[i];
            const WSketchPoint& next = Points[i + 1];
            if (middle.Kind == KindLine && next.Kind == KindLine &&
                IsNearZero(
                    DistanceToLine3(Points[i - 1].Position, next.Position, middle.Position)) &&
                Coincide(middle.Roll, next.Roll)) {
                RemoveRecords(*this, i, 1);
                pointsRemoved++;
                if (i > 1) i--; // the triple before may now be straight too
            } else {
                i++;
            }
        }
    }

    // Curves drawn twice. Only the head of a longer later curve that repeats
    // an earlier one is removed; its remainder stays with the kinds it had.
    // NextMove[k] is the first KindMove at k or after, so that the search
    // visits only the starts of curves; it is made again after a removal.
    MVector<int32_t> nextMove;
    auto findMoves = [&] {
        if (!nextMove.SetCount(PointCount + 1)) return;
        nextMove[PointCount] = PointCount;
        for (int32_t k = PointCount - 1; k >= 0; k--)
            nextMove[k] = Points[k].Kind == KindMove ? k : nextMove[k + 1];
    };
    findMoves();
    auto following = [&](int32_t k) {
        if (k >= PointCount) return k;
        return nextMove.Count == PointCount + 1 ? nextMove[k] : k;
    };
    for (int32_t i = 0; i < PointCount; i++) {
        if (Points[i].Kind != KindMove) continue;
        bool again = true;
        while (again) {
            again = false;
            int32_t count = CurveLength(*this, i);
            for (int32_t j = following(i + count); j < PointCount; j = following(j + 1)) {
                if (Points[j].Kind != KindMove || !RecordsRepeat(*this, i, j, count)) continue;
                RemoveRecords(*this, j, count);
                findMoves();
                DebugOutput(MString(u"Duplicate curve with ") + IntegerText(count) +
                            " points deleted\n");
                again = true;
                break;
            }
        }
    }

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
