// The canvas of the Spaghetti dialog: the flat mask, its outlines and the
// strings seen from the front, each string drawn about as thick as it will be
// in the show, and a progress bar while a run goes on.

#include "spaghetti/WSpaghetti.h"

#include "drawing/MDrawSurface.h"
#include "drawing/MPicture.h"
#include "eps/WTracer.h"
#include "spaghetti/SpaghettiCanvas.h"

namespace {

// A picture pixel on the canvas, truncated to whole pixels.
MPoint2 OnCanvas(const WSpaghetti& s, float x, float y) {
    MPoint2 p;
    p.x = float(int32_t(x * s.Zoom + float(s.PictureRect.left)));
    p.y = float(int32_t(y * s.Zoom + float(s.PictureRect.top)));
    return p;
}

// Every outline as lines of width 2; a closed outline gets its closing line.
void DrawOutlines(MDrawSurface& surface, const WSpaghetti& s, MColour colour) {
    const WTracer* tracer = s.Tracer;
    if (!tracer) return;
    for (int32_t i = 0; i < tracer->OutlineCount && i < tracer->Outlines.Count; i++) {
        const WTraceOutline* outline = tracer->Outlines[i];
        if (!outline || outline->PointCount < 1) continue;
        int32_t count = outline->PointCount;
        for (int32_t k = 0; k < count; k++) {
            if (k + 1 == count && !outline->Closed) break;
            const WTracePoint& a = outline->Points[k];
            const WTracePoint& b = outline->Points[(k + 1) % count];
            surface.DrawLine(OnCanvas(s, float(a.x), float(a.y)),
                             OnCanvas(s, float(b.x), float(b.y)), 2, colour);
        }
    }
}

} // namespace

void DrawSpaghettiCanvas(MDrawSurface& surface, const WSpaghetti& s, float progress) {
    const WSettings& colours = SettingsOrDefaults();
    surface.Clear(colours.ColourBackground);
    MDrawRect canvas = AsDrawRect(s.CanvasRect);
    if (!s.Picture) {
        surface.DrawText(canvas, Narrow("Click here to load a picture"), MString(), 0,
                         colours.ColourInfo, AlignCentre, AlignCentre, false);
        return;
    }
    MDrawRect captionRect = canvas;
    captionRect.left += 16;
    captionRect.top += 16;
    MString caption = SpaghettiFileName(s.PathBitmap);
    if (s.CurveCount > 0) caption = caption + "\n" + IntegerText(s.CurveCount) + " curves";
    surface.DrawText(captionRect, caption, MString(), 0, colours.ColourInfo, AlignNear, AlignNear,
                     false);
    surface.DrawPicture(*s.Picture, AsDrawRect(s.PictureRect), true);
    DrawOutlines(surface, s, colours.ColourInfo);

    // Strings show as straight lines from the front; their width follows the
    // radius in canvas pixels, kept between 1 and 10.
    float width = s.Radius / (s.UnitsPerPixel / s.Zoom);
    if (width < 1) width = 1;
    if (width > 10) width = 10;
    for (int32_t i = 0; i < s.CurveCount; i++) {
        const WStringCurve& curve = s.Curves[i];
        if (curve.Points.Count < 4) continue;
        surface.DrawLine(OnCanvas(s, curve.Points[0].x, curve.Points[0].y),
                         OnCanvas(s, curve.Points[3].x, curve.Points[3].y), width,
                         colours.ColourSketch);
    }

    if (progress > 0 && progress < 1) {
        MPoint2 from, to;
        from.x = canvas.left + 16;
        from.y = canvas.bottom - 16;
        to.x = from.x + progress * (canvas.right - 16 - from.x);
        to.y = from.y;
        surface.DrawLine(from, to, 3, colours.ColourBezier);
    }
}

void DrawCanvas(WSpaghetti& spaghetti, void* dc, float progress) {
    void* own = nullptr;
    if (!dc) {
        if (!spaghetti.Dialog) return;
        own = AcquireWindowDc(spaghetti.Dialog);
        dc = own;
        if (!dc) return;
    }
    MDrawSurface surface;
    surface.CreateForDc(dc, spaghetti.CanvasRect);
    if (surface.Begin()) {
        DrawSpaghettiCanvas(surface, spaghetti, progress);
        surface.End();
    }
    surface.Release();
    if (own) ReleaseWindowDc(spaghetti.Dialog, own);
}
