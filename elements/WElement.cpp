// The element object and the operation that appends one element to the path.

#include "elements/WElement.h"

#include "elements/ElementPieces.h"
#include "foundation/MString.h"
#include "foundation/Platform.h"
#include "foundation/WMode.h"
#include "sketch/ModelHooks.h"
#include "view/WView.h"

#include <new>

WElement* TheElement = nullptr;

// ---- Lifetime

WElement::WElement() {
    DebugOutput(u"WElement created\n");
}

WElement::~WElement() {
    DebugOutput(u"WElement destroyed\n");
}

// The self-checks run only after a real creation: a second call has made
// nothing new to check.
WElement* CreateElement() {
    if (TheElement) {
        ShowMessage(MString(u"ERROR: there can only be 1 WElement object"), IconError);
        return TheElement;
    }
    WElement* element = new (std::nothrow) WElement;
    if (!element) return nullptr;
    TheElement = element;
    CheckElementTable(WElementTable, int32_t(ElementTypeCount));
    return element;
}

void DestroyElement() {
    WElement* element = TheElement;
    TheElement = nullptr;
    delete element;
}

// ---- Adding an element

// The normal matrix of a frame: the frame without its translation, inverted
// and transposed. For the orthonormal frames of MakePointFrame it turns a
// roll vector by the frame's rotation; a collapsed frame cannot be inverted
// and turns every roll into zero.
static MMatrix NormalMatrix(const MMatrix& frame) {
    MMatrix normal = frame;
    normal.M[3][0] = 0;
    normal.M[3][1] = 0;
    normal.M[3][2] = 0;
    Invert(normal);
    for (int32_t i = 0; i < 4; i++)
        for (int32_t j = i + 1; j < 4; j++) {
            float swap = normal.M[i][j];
            normal.M[i][j] = normal.M[j][i];
            normal.M[j][i] = swap;
        }
    return normal;
}

// The steps run in a fixed order, and the sketch commits twice for one
// element (the rewritten handle of the last point, then the new points), as
// the undo ring is what decides that an edit happened.
void WElement::Add(uint32_t id, float p1, float p2, float p3, float p4) {
    WSketch* sketch = TheSketch;
    if (!sketch) return;

    // 1. An empty sketch gets a start point, so that the first track runs
    // along +X; this happens whatever the parameters are.
    if (sketch->PointCount == 0) {
        WSketchPoint start;
        start.Position = MPoint3{0, 0, 0};
        start.HandleIn = MPoint3{-10, 0, 0};
        start.HandleOut = MPoint3{10, 0, 0};
        start.Roll = MPoint3{0, 0, -1};
        start.Smooth = 0;
        start.Kind = KindMove;
        sketch->AppendPoints(&start, 1);
    }

    // 2. and 3. The local points; failing parameters end the operation here.
    const float p[4] = {p1, p2, p3, p4};
    WLocalPiece piece;
    BuildElement(id, p, piece);
    if (piece.Count == 0) return;

    // A start point that found no room leaves nothing to join to.
    if (sketch->PointCount > 0) {
        // 4.
        for (int32_t i = 0; i < piece.Count; i++) {
            piece.Points[i].Smooth = 1;
            piece.Points[i].Kind = KindCurve;
        }
        // 5. The road pieces throw the pitch and bank of the last point away.
        int32_t last = sketch->PointCount - 1;
        bool road = id == ElementRoadStraight || id == ElementRoadBend;
        MMatrix frame = MakePointFrame(sketch->Points[last], true, road);
        // 6. The rolls are not normalised after it.
        MMatrix normal = NormalMatrix(frame);
        // 7. The join: the last point's outgoing handle becomes the start
        // handle. SetPoint commits by itself.
        WSketchPoint joined = sketch->Points[last];
        joined.HandleOut = Transform(frame, piece.Start);
        sketch->SetPoint(last, joined);
        // 8.
        for (int32_t i = 0; i < piece.Count; i++) {
            WSketchPoint& point = piece.Points[i];
            point.Position = Transform(frame, point.Position);
            point.HandleIn = Transform(frame, point.HandleIn);
            point.HandleOut = Transform(frame, point.HandleOut);
            point.Roll = Transform(normal, point.Roll);
        }
        // 9. Appended in order, then Commit; a sketch that cannot grow keeps
        // its points, and the view and mode below still follow.
        sketch->AppendPoints(piece.Points.Data, piece.Count);
    }

    // 10.
    if (TheView) TheView->FitToSketch();
    // 11. An element is edited, not drawn over.
    if (TheMode == ModeDraw) {
        TheMode = ModeEditSketch;
        AskShowTitle();
        AskShowMenuState();
        AskShowMode();
    }
    // 12. The local list is released with the piece.
}
