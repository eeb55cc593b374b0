#pragma once
// The editor's mode: drawing strokes, editing points and handles, or editing
// the rolls. The mode decides what a click picks and what a frame shows.

#include "foundation/MString.h"

enum WMode { ModeDraw = 0, ModeEditSketch = 1, ModeEditRoll = 2 };

extern WMode TheMode;

// The mode as the title and the screen name it: "DRAW FREEHAND", ...
MString ModeText(int mode);
