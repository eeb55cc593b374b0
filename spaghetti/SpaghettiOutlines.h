#pragma once
// Where the Spaghetti tool meets the bitmap tracer: the outlines traced with
// detail 3 and sampled into shape points, and drawn on the canvas.

#include "foundation/MString.h"

struct MDrawSurface;
struct MColour;
struct WSpaghetti;
struct WTracer;

// Traces the picture file at path (read again, not the mask) into a new
// tracer owned by spaghetti, and samples every outline into shape points.
// A picture the tracer cannot load gives no shape points.
void TraceShapePoints(WSpaghetti& spaghetti, const MString& path);
void FreeTracer(WTracer* tracer);
// Every outline as lines of width 2, mapped onto the canvas by Zoom and
// PictureRect; a closed outline gets its closing line.
void DrawOutlines(MDrawSurface& surface, const WSpaghetti& spaghetti, const MColour& colour);
