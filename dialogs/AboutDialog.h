#pragma once
// About: a picture with the program's name and version.

#include "foundation/MString.h"

struct MDrawSurface;

enum { AboutWidth = 680, AboutHeight = 420 }; // client pixels, whatever the template says

// Runs About modally; a click anywhere, its button or the close box end it.
void RunAbout();
extern void* TheAboutDialog; // the dialog while it is open, else null

// The headline: the program's name, a blank and its version ("5.2").
MString AboutHeadline();
// The picture drawn over the whole client area when it exists as a file.
MString AboutPicturePath();
// Draws the About dialog's client area through a short-lived surface for the
// device context; the surface is the caller's so that tests can read it.
void PaintAbout(void* dialog, void* dc, MDrawSurface& surface);
