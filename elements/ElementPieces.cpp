// What every element's local geometry shares: the growing list of local
// points, the arc handle, the roll of level track, and the dispatch by id.

#include "elements/ElementPieces.h"

#include "elements/ElementTable.h"

#include <cstdint>

// The largest list the array's signed count can hold, with room left for the
// sketch to add it to its own records.
static const int64_t MaxLocalPoints = INT32_MAX - 1000;

bool ReserveLocal(WLocalPiece& piece, int64_t count) {
    if (piece.Failed) return false;
    if (count <= piece.Points.Count) return true;
    if (count > MaxLocalPoints || !piece.Points.Grow(int32_t(count), 1000)) {
        piece.Failed = true;
        piece.Count = 0;
        return false;
    }
    return true;
}

void AddLocal(WLocalPiece& piece, const MPoint3& position, const MPoint3& handleIn,
              const MPoint3& handleOut, const MPoint3& roll) {
    if (!ReserveLocal(piece, int64_t(piece.Count) + 1)) return;
    WSketchPoint& point = piece.Points[piece.Count];
    point.Position = position;
    point.HandleIn = handleIn;
    point.HandleOut = handleOut;
    point.Roll = roll;
    piece.Count++;
}

void AddLocal(WLocalPiece& piece, const MPoint3& position, const MPoint3& h, const MPoint3& roll) {
    AddLocal(piece, position, position - h, position + h, roll);
}

// The double 4/3 is the nearest double to it, 1.3333333333333333; the whole
// product stays in double until it is stored.
float ArcHandle(float radius, float tangent) {
    return float(double(radius) * (4.0 / 3.0) * double(tangent));
}

MPoint3 Side(MPoint3 h) {
    Normalize3(h);
    return MPoint3{h.z, 0, -h.x};
}

MPoint3 Unit(MPoint3 v) {
    Normalize3(v);
    return v;
}

void BuildElement(uint32_t id, const float p[4], WLocalPiece& piece) {
    switch (id) {
    case ElementStraightLine:
        BuildStraight(p, piece);
        break;
    case ElementLiftHill:
        BuildLiftHill(p, piece);
        break;
    case ElementPreDrop:
    case ElementDive:
        BuildDive(p, piece);
        break;
    case ElementHill:
        BuildHill(p, piece);
        break;
    case ElementTurn:
        BuildBend(p, false, piece);
        break;
    case ElementImmelmannTurn:
        BuildHalfOrFullLoop(p, false, piece);
        break;
    case ElementCircularLoop:
        BuildHalfOrFullLoop(p, true, piece);
        break;
    case ElementClothoidLoop:
        BuildClothoidLoop(p, piece);
        break;
    case ElementDiveLoop:
        BuildDiveLoop(p, piece);
        break;
    case ElementTopHat:
        BuildTopHat(p, piece);
        break;
    case ElementCorkscrew:
        BuildCorkscrew(p, piece);
        break;
    case ElementCobraRoll:
        BuildCobraRoll(p, piece);
        break;
    case ElementBatwing:
        BuildBatwing(p, piece);
        break;
    case ElementHammerheadTurn:
        BuildHammerhead(p, piece);
        break;
    case ElementRoadStraight:
        BuildRoadStraight(p, piece);
        break;
    case ElementRoadBend:
        BuildBend(p, true, piece);
        break;
    default:
        break;
    }
    if (piece.Failed) piece.Count = 0;
}
