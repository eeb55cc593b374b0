#pragma once
// The platform half of MDrawSurface, defined in DrawSurface_win.cpp and
// DrawSurface_posix.cpp. DrawSurface.cpp has already checked Valid, applied
// the transform and put the brush in place; these receive device pixels and
// draw with the surface's current brush, stroke style and text format.

#include "drawing/MDrawSurface.h"

// Releases the old brush and makes one for colour; on failure Brush is null.
bool PlatformNewBrush(MDrawSurface& surface, MColour colour);
// Makes the stroke style of lines: round caps, flat dash cap, miter join with
// limit 10, solid.
bool PlatformNewStrokeStyle(MDrawSurface& surface);
// Releases the old text format and makes one from the Font fields, with the
// normal stretch and the empty locale; on failure TextFormat is null.
bool PlatformNewTextFormat(MDrawSurface& surface);

void PlatformLine(MDrawSurface& surface, MPoint2 from, MPoint2 to, float width);
// A closed path of the four corners, filled with the winding rule.
void PlatformRectangle(MDrawSurface& surface, int32_t left, int32_t top, int32_t right,
                       int32_t bottom);
// Filled, or stroked with the width and no stroke style.
void PlatformCircle(MDrawSurface& surface, MPoint2 centre, float radius, bool filled, float width);
void PlatformSquare(MDrawSurface& surface, MPoint2 centre, float radius, float startAngle,
                    bool filled, float width);
// A layout of the text in the box's width and height, drawn at its top left.
void PlatformText(MDrawSurface& surface, int32_t left, int32_t top, int32_t right, int32_t bottom,
                  const MString& text, bool clip);
// A bitmap made from source for this drawing, drawn into destination with
// opacity 1 and linear interpolation, and released.
void PlatformBitmap(MDrawSurface& surface, void* source, const MDrawRect& destination);

// Windows build: true (the default) gathers lines, rectangles and squares
// into batches; false hands each shape to Direct2D on its own, which the
// tests compare with the batches pixel for pixel.
extern bool TheDrawBatching;

// Raises TheSurfaceCount once for a surface made by either creation.
void CountSurface(MDrawSurface& surface);
