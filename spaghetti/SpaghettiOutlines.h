#pragma once
// Where the Spaghetti tool meets the bitmap tracer: the outlines traced with
// detail 3 and sampled into shape points.

#include "foundation/MString.h"

struct WSpaghetti;
struct WTracer;

// Traces the picture file at path (read again, not the mask) into a new
// tracer owned by spaghetti, and samples every outline into shape points.
// A picture the tracer cannot load gives no shape points.
void TraceShapePoints(WSpaghetti& spaghetti, const MString& path);
void FreeTracer(WTracer* tracer);
