#pragma once
// The mouse gestures of the main window, as calls that the window procedure
// makes with the cursor and the modifier keys it read at the head of the
// message. The behaviour lives here so that it is the same in every build.

#include "view/Geometry.h"

// The modifier keys as the window procedure read them for this message.
struct WKeys {
    bool Control = false, Shift = false, Alt = false;
};

// Drawing: the recorder is emptied and the position is the first sample of
// a stroke. TheLeftDown is not set in the drawing mode.
void OnLeftButtonDown(const MPoint2& position, const WKeys& keys);
// Drawing: the stroke is finished (Ctrl chooses the polyline), appended to
// the sketch as one new curve and the recorder emptied. TheLeftDown is
// cleared in every mode.
void OnLeftButtonUp(const MPoint2& position, const WKeys& keys);
// Nothing while TheMouseEnabled is false. Drawing: a sample while a stroke
// runs.
void OnMouseMove(const MPoint2& position, const WKeys& keys);
