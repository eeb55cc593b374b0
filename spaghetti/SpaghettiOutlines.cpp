// The tracer's side of the Spaghetti tool. The tracer reads the picture file
// again by itself, not the mask, with the same 2048 limit; its solid test is
// alpha of 128 or more while the mask's is above 128, an asymmetry of one
// alpha step that the tool keeps.

#include "spaghetti/SpaghettiOutlines.h"

#include "drawing/MPicture.h"
#include "eps/WTracer.h"
#include "spaghetti/WSpaghetti.h"

// The outline's integer corners are taken as pixel coordinates of the mask
// as they stand, with no correction for the tracer's border.
void TraceShapePoints(WSpaghetti& spaghetti, const MString& path) {
    WTracer* tracer = new WTracer;
    tracer->Detail = 3;
    spaghetti.Tracer = tracer;
    if (!tracer->Load(path)) return;
    tracer->Trace();
    for (int32_t i = 0; i < tracer->OutlineCount && i < tracer->Outlines.Count; i++) {
        const WTraceOutline* outline = tracer->Outlines[i];
        if (!outline) continue;
        int32_t count = outline->PointCount;
        int32_t segments = outline->Closed ? count : count - 1;
        for (int32_t k = 0; k < segments; k++) {
            const WTracePoint& a = outline->Points[k];
            const WTracePoint& b = outline->Points[(k + 1) % count];
            MPoint2 start, end;
            start.x = float(a.x);
            start.y = float(a.y);
            end.x = float(b.x);
            end.y = float(b.y);
            spaghetti.SampleSegment(start, end);
        }
    }
}

void FreeTracer(WTracer* tracer) {
    delete tracer;
}
