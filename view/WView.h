#pragma once
// The camera: an orthographic orbit view fixed by a rotation, a pivot at the
// window's centre and a zoom value. Its matrices take a world point to client
// pixels and back; everything that draws or picks reads them directly.

#include "view/Geometry.h"
#include <cstdint>

struct WView {
    float ViewportWidth = 0; // client size in pixels
    float ViewportHeight = 0;
    MPoint3 Pivot;           // world point shown at the window's centre
    float Zoom = 0.2f;       // world units per pixel; larger shows more
    MMatrix Rotation;        // world to view
    MMatrix InverseRotation; // view to world
    MMatrix WorldToScreen;   // world to client pixels, y down, z of 1 at the pivot
    MMatrix ScreenToWorld;   // the inverse of WorldToScreen

    // Pivot at the origin, Zoom 0.2, the front view, then Update.
    void Reset();
    // Rebuilds WorldToScreen and ScreenToWorld from the fields. Nothing else
    // calls it: whoever changes a field updates.
    void Update();
    // Sets the client size and updates; Zoom is kept, so a larger window
    // shows more of the world.
    void SetViewport(float width, float height);
    // Zoom becomes zoom * factor, worked in double precision and limited by
    // LimitZoom, then Update. The wheel and the zoom commands go through it.
    void ZoomBy(double factor);
    // Rotation becomes the given matrix, InverseRotation its inverse, Update.
    void SetRotation(const MMatrix& rotation);
    // The rotation of a standard view (an index of StandardViews), then as
    // SetRotation. An index out of range does nothing.
    void SetStandardView(int32_t view);
    // Multiplies Rotation on the right by a small YawPitchRoll and rebuilds it
    // as a rotation, so that rounding cannot pile up over many moves; then the
    // inverse and Update.
    void Orbit(float yaw, float pitch, float roll);
    // Centres the view on TheSketch and zooms so that its points fill two
    // thirds of the window in the larger direction, for the rotation as it
    // stands. An empty viewport, a missing or empty sketch and a sketch of one
    // place leave the view as it is.
    void FitToSketch();

    // A world point in client pixels (y down); z is 1 at the pivot's depth.
    MPoint3 ToScreen(const MPoint3& world) const;
    // A client pixel as a world point in the plane of screen z 0, which lies
    // Zoom world units in front of the pivot; freehand samples lie there.
    MPoint3 ToWorld(const MPoint2& screen) const;
};

// Every zoom value from the wheel, the menu or a fit passes through this:
// at least 0.001, at most 1000, rounded once to 32 bits.
float LimitZoom(double zoom);

enum { ViewFront, ViewBack, ViewRight, ViewLeft, ViewTop, ViewBottom, StandardViewCount };

struct WStandardView {
    float Yaw, Pitch;      // radians; the roll of a standard view is 0
    const char16_t* Label; // the view label the scene shows
};
extern const WStandardView StandardViews[StandardViewCount];

// The standard view commands and the end of a load: the pivot goes to the
// Current record of TheSketch if there is one, the rotation to the standard
// view, and with no current record the view is fitted to the sketch.
void ShowStandardView(int32_t view);

// The one camera of the process, set by its creation and cleared at its end.
extern WView* TheView;
// Creates the view and resets it. A second call shows "There can only be 1
// WView object" and keeps the first. Null only if memory ran out.
WView* CreateView();
void DestroyView();
