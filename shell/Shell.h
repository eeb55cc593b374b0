#pragma once
// The application shell's process-wide state and the refresh calls that the
// rest of the system makes after an edit.

#include "foundation/MString.h"
#include "view/Geometry.h"

enum WMode { ModeDraw = 0, ModeEditSketch = 1, ModeEditRoll = 2 };

extern const char16_t* const TheProgramName; // "Quillmere": class name, box titles, title start
extern void* TheInstance;                    // module handle of the process (opaque)
extern void* TheMainWindow;                  // the main window (opaque), null without one
extern WMode TheMode;
extern MString TheFileName; // full path of the open sketch, empty for none
extern bool TheLeftDown, TheRightDown;
extern MPoint2 TheLastMouse;
extern bool TheMouseEnabled;

// The mode as the title and the screen name it: "DRAW FREEHAND", ...
MString ModeText(int mode);
// Quillmere - <file or Untitled>[ *] (<n> points) [<MODE>]
MString TitleText();
void RefreshTitle(); // sets the main window's text when it differs
void RefreshMenu();  // checks and enables the menu items
