#pragma once
// The background picture: a bitmap that the frame draws behind the sketch
// in the front view, glued to the world at the zoom and pivot it was loaded
// with.

#include "view/Geometry.h"

struct MPicture;

extern void* TheBackground;        // platform bitmap of the picture, or null
extern float TheBackgroundZoom;    // the view's Zoom when it was loaded
extern MPoint3 TheBackgroundPivot; // the view's Pivot when it was loaded

// "Load background picture...": the present picture goes first, so that a
// cancelled prompt removes it. A chosen picture that loads and is usable
// becomes TheBackground. Zoom and pivot are taken from the view in any case.
void LoadBackgroundPicture();
// Drops TheBackground, if any (the command and the shutdown).
void ReleaseBackground();

// The platform half: a bitmap that the drawing surface can draw (a WIC
// bitmap on Windows, a copy of the picture's size elsewhere), or null; and
// its release.
void* MakeBackgroundBitmap(const MPicture& picture);
void ReleaseBackgroundBitmap(void* bitmap);
