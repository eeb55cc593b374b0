// One frame's scene in its order, and the background picture that lies flat
// on the world in the front view.

#include "view/Scene.h"

#include "drawing/MDrawSurface.h"
#include "shell/Background.h"
#include "shell/Shell.h"
#include "sketch/WRecording.h"
#include "sketch/WSketch.h"
#include "view/WView.h"

#include <cmath>

void DrawScene(MDrawSurface& surface) {
    const WView* view = TheView;
    const WSettings* settings = TheSettings;
    if (!view || !settings) return;
    DrawBackgroundPicture(surface, *view);
    DrawWorldGrid(surface, *view, *settings);
    DrawDecorations(surface, *view, *settings, TheMode);
    if (const WSketch* sketch = TheSketch) {
        if (sketch->GhostCount >= 1)
            DrawGhost(surface, *view, *settings, sketch->Ghost.Data, sketch->GhostCount);
        DrawSketch(surface, *view, *settings, *sketch, TheMode);
    }
    if (const WRecording* recording = TheRecording)
        DrawRunningStroke(surface, *view, *settings, recording->Points.Data, recording->PointCount);
}

// The picture was loaded to fill the window at TheBackgroundZoom around
// TheBackgroundPivot; scaling its rectangle by the zoom ratio and moving it by
// the pivot's change keeps it fixed to the sketch while the user pans and
// zooms. A turned view has no flat picture to show, so only the exact front
// view (the Identity flag) draws it.
void DrawBackgroundPicture(MDrawSurface& surface, const WView& view) {
    if (!TheBackground || !view.Rotation.Identity) return;
    float width = view.ViewportWidth, height = view.ViewportHeight;
    MDrawRect rectangle{0, 0, width, height};
    if (view.Zoom > 0) {
        float k = TheBackgroundZoom / view.Zoom;
        float halfWidth = width / 2 * k;
        float halfHeight = height / 2 * k;
        // Whole pixels; std::trunc rather than a cast to int, which a far
        // pivot could overflow.
        float cx = std::trunc(width / 2 + (TheBackgroundPivot.x - view.Pivot.x) / view.Zoom);
        float cy = std::trunc(height / 2 - (TheBackgroundPivot.y - view.Pivot.y) / view.Zoom);
        rectangle = MDrawRect{cx - halfWidth, cy - halfHeight, cx + halfWidth, cy + halfHeight};
    }
    surface.DrawSource(TheBackground, rectangle, true, false);
}
