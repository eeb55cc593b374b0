// The camera: its lifetime, the matrices between world and client pixels,
// the zoom limits, the standard views, the orbit and the fit to the sketch.

#include "view/WView.h"

#include "foundation/MString.h"
#include "foundation/Platform.h"
#include "sketch/WSketch.h"

#include <new>

WView* TheView = nullptr;

const WStandardView StandardViews[StandardViewCount] = {
    {0.0f, 0.0f, u"Front view"},       {3.1415927f, 0.0f, u"Back view"},
    {1.5707964f, 0.0f, u"Right view"}, {-1.5707964f, 0.0f, u"Left view"},
    {0.0f, -1.5707964f, u"Top view"},  {0.0f, 1.5707964f, u"Bottom view"},
};

// ---- Lifetime

WView* CreateView() {
    if (TheView) {
        ShowMessage(MString(u"There can only be 1 WView object"), IconError);
        return TheView;
    }
    WView* view = new (std::nothrow) WView;
    if (!view) return nullptr;
    DebugOutput(u"WView created\n");
    view->Reset();
    TheView = view;
    return view;
}

void DestroyView() {
    WView* view = TheView;
    if (!view) return;
    TheView = nullptr;
    delete view;
    DebugOutput(u"WView destroyed\n");
}

// ---- Matrices

void WView::Reset() {
    Pivot = MPoint3{0, 0, 0};
    Zoom = 0.2f;
    Rotation = YawPitchRoll(0, 0, 0);
    InverseRotation = Rotation;
    Invert(InverseRotation);
    Update();
}

// World to screen is: translate by -Pivot, rotate, scale by 1/Zoom with y
// flipped (pixels count downward), move the origin to the client centre and
// the pivot's depth to a z of 1. The reciprocal is taken in double and
// rounded once, so that every factor of the scale is the same float.
void WView::Update() {
    MMatrix toPivot;
    toPivot.M[3][0] = -Pivot.x;
    toPivot.M[3][1] = -Pivot.y;
    toPivot.M[3][2] = -Pivot.z;
    // Only an exact zero translation may be skipped: a pivot of 0.00001 still moves.
    toPivot.Identity = Pivot.x == 0 && Pivot.y == 0 && Pivot.z == 0;

    float scale = (float)(1.0 / (double)Zoom);
    float flipped = (float)(-1.0 / (double)Zoom);
    MMatrix scaling;
    scaling.M[0][0] = scale;
    scaling.M[1][1] = flipped;
    scaling.M[2][2] = scale;
    scaling.Identity = false;

    MMatrix toClient;
    toClient.M[3][0] = ViewportWidth * 0.5f;
    toClient.M[3][1] = ViewportHeight * 0.5f;
    toClient.M[3][2] = 1;
    toClient.Identity = false;

    WorldToScreen = Multiply(Multiply(Multiply(toPivot, Rotation), scaling), toClient);
    ScreenToWorld = WorldToScreen;
    Invert(ScreenToWorld);
}

void WView::SetViewport(float width, float height) {
    ViewportWidth = width;
    ViewportHeight = height;
    Update();
}

// A limit at the low end that is reached exactly stays: 0.001 times any
// factor below 1 comes back as 0.001.
float LimitZoom(double zoom) {
    if (zoom < 0.001) return 0.001f;
    if (zoom > 1000.0) return 1000.0f;
    return (float)zoom;
}

void WView::ZoomBy(double factor) {
    Zoom = LimitZoom((double)Zoom * factor);
    Update();
}

// ---- Rotation

void WView::SetRotation(const MMatrix& rotation) {
    Rotation = rotation;
    InverseRotation = Rotation;
    Invert(InverseRotation);
    Update();
}

void WView::SetStandardView(int32_t view) {
    if (view < 0 || view >= StandardViewCount) return;
    SetRotation(YawPitchRoll(StandardViews[view].Yaw, StandardViews[view].Pitch, 0));
}

// The view is never kept as angles: each small turn multiplies the matrix
// and Orthonormalize rebuilds it, so a long orbit stays a rotation.
void WView::Orbit(float yaw, float pitch, float roll) {
    MMatrix turned = Multiply(Rotation, YawPitchRoll(yaw, pitch, roll));
    Orthonormalize(turned);
    SetRotation(turned);
}

// ---- Fit

void WView::FitToSketch() {
    if (ViewportWidth <= 0 || ViewportHeight <= 0) return;
    WSketch* sketch = TheSketch;
    if (!sketch) return;
    float bounds[6];
    sketch->GetBounds(bounds);
    // A single place (one point, or none) has no size to fit.
    if (!(bounds[1] - bounds[0] > 0) && !(bounds[3] - bounds[2] > 0) &&
        !(bounds[5] - bounds[4] > 0))
        return;

    Pivot = MPoint3{(bounds[0] + bounds[1]) * 0.5f, (bounds[2] + bounds[3]) * 0.5f,
                    (bounds[4] + bounds[5]) * 0.5f};
    Zoom = 1;
    Update();

    // Only the positions count, not the handles or the sampled curves: the
    // fit is meant to be quick and rough.
    float minX = 0, maxX = 0, minY = 0, maxY = 0;
    for (int32_t i = 0; i < sketch->PointCount; i++) {
        MPoint3 s = Transform(WorldToScreen, sketch->Points[i].Position);
        if (i == 0 || s.x < minX) minX = s.x;
        if (i == 0 || s.x > maxX) maxX = s.x;
        if (i == 0 || s.y < minY) minY = s.y;
        if (i == 0 || s.y > maxY) maxY = s.y;
    }
    float rx = (maxX - minX) / ViewportWidth;
    float ry = (maxY - minY) / ViewportHeight;
    float r = rx > ry ? rx : ry;
    // A sketch seen end-on (all points on one line along the view axis)
    // has no extent on the screen and gets the default zoom.
    if (r > 0)
        Zoom = LimitZoom((double)r * 1.5);
    else
        Zoom = 0.2f;
    Update();
}

void ShowStandardView(int32_t view) {
    WView* camera = TheView;
    if (!camera || view < 0 || view >= StandardViewCount) return;
    WSketch* sketch = TheSketch;
    bool hasCurrent = sketch && sketch->Current >= 0 && sketch->Current < sketch->PointCount;
    if (hasCurrent) camera->Pivot = sketch->Points[sketch->Current].Position;
    camera->SetStandardView(view);
    if (!hasCurrent) camera->FitToSketch();
}

// ---- Points

MPoint3 WView::ToScreen(const MPoint3& world) const {
    return Transform(WorldToScreen, world);
}

MPoint3 WView::ToWorld(const MPoint2& screen) const {
    return Transform(ScreenToWorld, MPoint3{screen.x, screen.y, 0});
}
