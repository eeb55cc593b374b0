// One frame's scene in its order, and the background picture that lies flat
// on the world in the front view.

#include "view/Scene.h"

#include "drawing/MDrawSurface.h"
#include "sketch/WRecording.h"
#include "sketch/WSketch.h"
#include "view/WView.h"

#include <cmath>

void DrawScene(MDrawSurface& surface, const WSceneContent& content) {
    const WView* view = content.View;
    const WSettings* settings = content.Settings;
    if (!view || !settings) return;
    DrawBackgroundPicture(surface, *view, content.Background);
    DrawWorldGrid(surface, *view, *settings);
    DrawDecorations(surface, *view, *settings, content.Mode);
    if (const WSketch* sketch = content.Sketch) {
        if (sketch->GhostCount >= 1)
            DrawGhost(surface, *view, *settings, sketch->Ghost.Data, sketch->GhostCount);
        DrawSketch(surface, *view, *settings, *sketch, content.Mode);
    }
    if (const WRecording* recording = content.Recording)
        DrawRunningStroke(surface, *view, *settings, recording->Points.Data, recording->PointCount);
}

// The picture was loaded to fill the window at the background's Zoom around
// its Pivot; scaling its rectangle by the zoom ratio and moving it by
// the pivot's change keeps it fixed to the sketch while the user pans and
// zooms. A turned view has no flat picture to show, so only the exact front
// view (the Identity flag) draws it.
void DrawBackgroundPicture(MDrawSurface& surface, const WView& view,
                           const WSceneBackground& background) {
    if (!background.Bitmap || !view.Rotation.Identity) return;
    float width = view.ViewportWidth, height = view.ViewportHeight;
    MDrawRect rectangle{0, 0, width, height};
    if (view.Zoom > 0) {
        float k = background.Zoom / view.Zoom;
        float halfWidth = width / 2 * k;
        float halfHeight = height / 2 * k;
        // Whole pixels; std::trunc rather than a cast to int, which a far
        // pivot could overflow.
        float cx = std::trunc(width / 2 + (background.Pivot.x - view.Pivot.x) / view.Zoom);
        float cy = std::trunc(height / 2 - (background.Pivot.y - view.Pivot.y) / view.Zoom);
        rectangle = MDrawRect{cx - halfWidth, cy - halfHeight, cx + halfWidth, cy + halfHeight};
    }
    surface.DrawSource(background.Bitmap, rectangle, true, false);
}
