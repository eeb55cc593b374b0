#pragma once
// The process as every layer may see it: the program's name, its module and
// main window (opaque), the file of the open sketch, and the flag that keeps
// the program's own pointer moves from being taken for the user's.

#include "foundation/MString.h"
#include <cstdint>

extern const char16_t* const TheProgramName; // "Quillmere": class name, box titles, title start
extern void* TheInstance;                    // module handle of the process (opaque)
extern void* TheMainWindow;                  // the main window (opaque), null without one
extern MString TheFileName;                  // full path of the open sketch, empty for none
extern bool TheMouseEnabled;                 // off while the program itself moves the pointer

// The main window's client area in pixels; 0 by 0 when minimised. Without a
// real window it is the size last given to SetMainClientSize (tests).
void MainClientSize(int32_t& width, int32_t& height);
void SetMainClientSize(int32_t width, int32_t height);
