#pragma once
// What one frame of the main window shows, in this order behind the clear:
// the background picture, the world grid, the axes symbol with the view
// label, mode text and help text, the ghost, the path, the point marks, the
// handles and roll tip of the selected point, and the running stroke. All
// geometry goes through the view's WorldToScreen; colours and sizes are those
// of the settings. The caller hands over what to draw; nothing is kept
// between frames.

#include "foundation/Settings.h"
#include "view/Geometry.h"
#include <cstdint>

struct MDrawSurface;
struct WView;
struct WSketch;
struct WSketchPoint;
struct WRecording;

// The background picture glued to the world: the bitmap the surface draws,
// and the view's zoom and pivot when it was loaded.
struct WSceneBackground {
    void* Bitmap = nullptr; // platform bitmap, or null for no picture
    float Zoom = 0;
    MPoint3 Pivot;
};

// What one frame shows; each pointer may be null.
struct WSceneContent {
    const WView* View = nullptr;
    const WSettings* Settings = nullptr;
    int32_t Mode = 0; // a WMode
    const WSketch* Sketch = nullptr;
    const WRecording* Recording = nullptr; // the stroke being drawn
    WSceneBackground Background;
};

// The whole scene on a surface whose drawing has begun. Without a view or
// settings nothing is drawn.
void DrawScene(MDrawSurface& surface, const WSceneContent& content);

// ---- The parts, each on its own (Scene.cpp, SceneGrid.cpp, SceneSketch.cpp)

// The background picture, only in the front view (Rotation's Identity flag).
void DrawBackgroundPicture(MDrawSurface& surface, const WView& view,
                           const WSceneBackground& background);
void DrawWorldGrid(MDrawSurface& surface, const WView& view, const WSettings& settings);
// The axes symbol, the view label, the mode text and, if asked, the help text.
void DrawDecorations(MDrawSurface& surface, const WView& view, const WSettings& settings,
                     int32_t mode);
// The ghost: lines and sampled curves, in ColourGhost at alpha 128, twice PenSize wide.
void DrawGhost(MDrawSurface& surface, const WView& view, const WSettings& settings,
               const WSketchPoint* records, int32_t count);
// The path, the point marks, the handles and the roll tip of the sketch in
// a mode; with fewer than 2 records nothing.
void DrawSketch(MDrawSurface& surface, const WView& view, const WSettings& settings,
                const WSketch& sketch, int32_t mode);
// Straight lines through the samples of the stroke being drawn and the circle
// of its closing area, while there are 2 samples or more.
void DrawRunningStroke(MDrawSurface& surface, const WView& view, const WSettings& settings,
                       const WSketchPoint* samples, int32_t count);

// ---- What the decorations are worked out from (SceneGrid.cpp)

// The three world axes through a rotation, normalised as 3D vectors, with
// the lengths of their x and y on the screen: an axis seen end-on is short.
struct WScreenAxes {
    MPoint3 Axis[3]; // x, y and z axis in view directions (y up)
    float Length[3]; // length of (x, y) of each
};
WScreenAxes ScreenAxes(const MMatrix& rotation);

// The label of the standard view the axes show, or null for none.
const char16_t* ViewLabel(const WScreenAxes& axes);
// The help text of a mode; null for a mode that has none.
const char16_t* HelpText(int32_t mode);

enum { GridPlaneX = 0, GridPlaneY = 1, GridPlaneZ = 2 }; // the plane x = 0, y = 0 or z = 0

// The grid of a view, before anything is drawn.
struct WGridPlan {
    bool Visible = false; // false when the extent reaches 100000
    int32_t Plane = GridPlaneZ;
    int32_t First = 0, Second = 0; // world axes (0 x, 1 y, 2 z) of the plane's two coordinates
    int32_t Spacing = 10;          // world units between lines: 10, 100 or 1000
    int32_t Extent = 0;            // E: lines run from -E to +E around the centre
    int32_t CentreFirst = 0,
            CentreSecond = 0; // the pivot's in-plane coordinates, rounded towards zero
    MColour Colour;           // ColourGrid blended towards ColourBackground
};
WGridPlan PlanGrid(const WView& view, const WSettings& settings);
// The width of a grid line at a world coordinate: 3 at 0, 2 at multiples of
// 100, otherwise 1.
float GridLineWidth(int32_t coordinate);
// Each channel of a moved towards b by factor (0 keeps a, 1 gives b).
MColour BlendColour(MColour a, MColour b, float factor);
