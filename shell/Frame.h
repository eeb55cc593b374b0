#pragma once
// One frame of the main window: drawn whenever no message waits.

#include "view/Scene.h"

struct MDrawSurface;

// The main window's drawing surface, or null before the first frame and
// after a change of the window's size until the next one.
extern MDrawSurface* TheSurface;

// Reads the client size; without width or height nothing happens (the surface
// keeps its old size while the window is minimised). A surface of another
// size is destroyed and a new one made, which also gives the view its
// viewport. A surface that cannot be made ends the frame; the next frame
// tries again. Then the surface is cleared with the background colour and
// the scene drawn.
void DrawFrame();

// The display scale of the DisplaySize setting: 100 / DisplaySize, unless
// DisplaySize is 0 or the quotient is 0, when the surface keeps its scale.
// Nothing without settings.
void ApplyDisplayScale(MDrawSurface& surface);

// What the frame draws now: the shell's view, settings, mode, sketch,
// running stroke and background picture.
WSceneContent FrameScene();

// Destroys TheSurface if there is one (a size change, and the end of the
// program).
void DestroySurface();
