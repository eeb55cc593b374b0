#pragma once
// Point editing: what lies under the cursor, dragging a point, a handle or a
// roll tip, closing and joining curve ends, inserting and deleting points and
// segments, the Smooth toggle, the grid snap at the release, and the circle
// and arc helpers. The operations are members of WSketch (declared there);
// they live in Picking.cpp (hit tests and insertion), PointEditing.cpp (drag,
// deletions, Smooth, snap) and CircleArc.cpp. All of them read TheView for
// screen positions and TheSettings for PointSize, PenSize and the grid; an
// operation that needs one of them and finds it missing does nothing.

#include "sketch/WSketch.h"

// The roll tip a user drags: Position plus 20 times the X axis of the point's
// frame, the frame built from the two handles.
MPoint3 RollTip(const WSketchPoint& record);

// x and y of a world point through TheView's WorldToScreen: client pixels,
// y downward. TheView must exist.
MPoint2 ScreenPoint(const MPoint3& world);
