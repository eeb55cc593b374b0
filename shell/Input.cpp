// The mouse gestures of the three modes. Positions are client pixels with y
// downward; the keys are those read at the head of the message, not the
// message's own flags.

#include "shell/Input.h"

#include "foundation/Platform.h"
#include "shell/Shell.h"
#include "shell/SketchFile.h"
#include "shell/ToolWindows.h"
#include "sketch/WRecording.h"
#include "sketch/WSketch.h"
#include "view/WView.h"

// Radians of orbit or roll per pixel of mouse travel.
static const double TurnPerPixel = 0.005;

static bool EditMode() {
    return TheMode == ModeEditSketch || TheMode == ModeEditRoll;
}

// The pointer jump must not reach the drag as a mouse move. Turning the
// mouse off covers a move delivered during the call; on Windows the move
// that SetCursorPos causes arrives later, with the mouse on again, so the
// drag is also measured from the target from now on: that move then changes
// nothing, and the handle stays under the pointer.
static void MovePointerTo(const MPoint2& target) {
    bool enabled = TheMouseEnabled;
    TheMouseEnabled = false;
    SetCursorClientPosition(target.x, target.y);
    TheMouseEnabled = enabled;
    TheLastMouse = target;
}

static bool HasCurrent(const WSketch& sketch) {
    return sketch.Current >= 0 && sketch.Current < sketch.PointCount;
}

// The selection under the cursor: a point, handle or roll tip, and failing
// that a place on the path.
// A handle picked on a curve gets the pointer, so that the rest of the drag
// moves it from where it is.
static void SelectAt(WSketch& sketch, const MPoint2& position, bool preferLater) {
    MPoint2 handle;
    if (!sketch.HitTest(position, preferLater) && sketch.HitCurve(position, &handle))
        MovePointerTo(handle);
    RefreshPointWindow();
}

void OnLeftButtonDown(const MPoint2& position, const WKeys& keys) {
    if (TheMode == ModeDraw) {
        if (!TheRecording) return;
        TheRecording->Clear();
        TheRecording->AddSample(position);
        return;
    }
    if (!EditMode()) return;
    // Taken before the hit tests: a curve hit moves the pointer onto the
    // handle it picked and the drag starts from there instead.
    TheLastMouse = position;
    if (WSketch* sketch = TheSketch) {
        if (keys.Alt) sketch->InsertPoint(position);
        SelectAt(*sketch, position, keys.Shift);
    }
    TheLeftDown = true;
}

void OnLeftButtonUp(const MPoint2& position, const WKeys& keys) {
    (void)position;
    if (TheMode == ModeDraw) {
        // A click without a move leaves one sample, which Finish leaves alone
        // and the sketch takes as a lone KindMove record.
        WRecording* recording = TheRecording;
        if (recording) {
            recording->Finish(keys.Control);
            if (TheSketch) TheSketch->AppendPoints(recording->Points.Data, recording->PointCount);
            recording->Clear();
        }
    } else if (EditMode() && TheSketch) {
        // The drag moved the records without a Commit; this one makes the
        // whole drag, snap included, a single undo step.
        TheSketch->SnapCurrentToGrid();
        TheSketch->Commit();
    }
    TheLeftDown = false;
}

void OnRightButtonDown(const MPoint2& position, const WKeys& keys) {
    if (EditMode()) {
        if (WSketch* sketch = TheSketch) {
            SelectAt(*sketch, position, false);
            if (keys.Control)
                sketch->DeleteSegment();
            else
                sketch->DeleteCurrent();
        }
    }
    TheRightDown = true;
}

void OnRightButtonUp(const MPoint2& position, const WKeys& keys) {
    (void)position;
    (void)keys;
    TheRightDown = false;
}

// The left button's drag: the pixel change as a world vector at the view's
// scale moves the selected part, or, with nothing selected, the world under
// the cursor (the pivot goes the other way).
static void Drag(float dx, float dy) {
    WView* view = TheView;
    WSketch* sketch = TheSketch;
    if (!view) return;
    MPoint3 d = Transform(view->InverseRotation, MPoint3{dx, -dy, 0}) * double(view->Zoom);
    if (sketch && HasCurrent(*sketch)) {
        sketch->DragCurrent(d);
        return;
    }
    view->Pivot = view->Pivot - d;
    view->Update();
}

void OnMouseMove(const MPoint2& position, const WKeys& keys) {
    if (!TheMouseEnabled) return;
    if (TheMode == ModeDraw) {
        if (TheRecording && TheRecording->PointCount > 0) TheRecording->AddSample(position);
        return;
    }
    if (!EditMode()) return;
    // TheLastMouse follows every move, with or without a button, so that a
    // gesture begins where the pointer is and never jumps.
    float dx = position.x - TheLastMouse.x;
    float dy = position.y - TheLastMouse.y;
    TheLastMouse = position;
    // The left button wins over the right: Ctrl with both buttons orbits.
    if (TheLeftDown) {
        if (!keys.Control)
            Drag(dx, dy);
        else if (TheView)
            TheView->Orbit(float(dx * TurnPerPixel), float(dy * TurnPerPixel), 0);
    } else if (TheRightDown && keys.Control && TheView) {
        TheView->Orbit(0, 0, float(-dy * TurnPerPixel));
    }
}

void OnMouseWheel(int32_t delta) {
    if (TheView) TheView->ZoomBy(1.0 - delta * 0.001);
}

void OnFileDropped(const MString& path) {
    MString name = path.Length > MaxDroppedPathLength ? path.Left(MaxDroppedPathLength - 1) : path;
    MString extension = name.FileExtension();
    if (extension != MString(u"EPS") && extension != MString(u"QO")) return;
    if (!AskToSave()) return;
    OpenSketch(name);
}
