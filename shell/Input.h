#pragma once
// The mouse gestures of the main window and the file drop, as calls that the
// window procedure makes with the cursor and the modifier keys it read at the
// head of the message. The behaviour lives here so that it is the same in
// every build.

#include "foundation/MString.h"
#include "view/Geometry.h"

#include <cstdint>

// The modifier keys as the window procedure read them for this message.
struct WKeys {
    bool Control = false, Shift = false, Alt = false;
};

// Drawing: the recorder is emptied and the position is the first sample of
// a stroke; TheLeftDown is not set. Edit modes: Alt inserts a point at the
// path first; then the hit test with Shift as its tie-break, and the curve
// hit when that found nothing; TheLastMouse takes the position (or, when
// the curve hit moved the pointer onto a handle, the handle's) and
// TheLeftDown is set.
void OnLeftButtonDown(const MPoint2& position, const WKeys& keys);
// Drawing: the stroke is finished (Ctrl chooses the polyline), appended to
// the sketch as one new curve and the recorder emptied. Edit modes: the grid
// snap of a selected point, then Commit, so that a drag is one undo step.
// TheLeftDown is cleared in every mode.
void OnLeftButtonUp(const MPoint2& position, const WKeys& keys);
// Edit modes: the hit test without tie-break, then the curve hit, and the
// deletion of what was hit (the segment with Ctrl). TheRightDown is set in
// every mode.
void OnRightButtonDown(const MPoint2& position, const WKeys& keys);
void OnRightButtonUp(const MPoint2& position, const WKeys& keys); // clears TheRightDown
// Nothing while TheMouseEnabled is false. Drawing: a sample while a stroke
// runs. Edit modes: TheLastMouse follows every move; by the buttons and Ctrl
// the move drags the selection or pans, orbits, or rolls the view.
void OnMouseMove(const MPoint2& position, const WKeys& keys);
// The wheel, in every mode: the zoom value times (1 - delta * 0.001), with
// delta signed and 120 a notch.
void OnMouseWheel(int32_t delta);

enum { MaxDroppedPathLength = 260 }; // characters of a dropped file's path
// The first of the files dropped on the window, whole as the system gave it.
// Only its first 260 characters count; an EPS or QO file is opened after the
// question about unsaved changes, anything else is ignored in silence.
void OnFileDropped(const MString& path);
