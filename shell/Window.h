#pragma once
// The main window as the portable shell sees it. Window_win.cpp talks to the
// real window; Window_posix.cpp keeps the same state in memory for tests.

#include "foundation/MString.h"
#include "foundation/Program.h"

// What the menu shows: checks and enabled states of the items that change.
struct WMenuState {
    bool DrawFreehand = false, EditSketch = false, EditRoll = false;     // checked by mode
    bool Grid = false;                                                   // checked by UseGrid
    bool PointWindow = false, ElementWindow = false, ModeWindow = false; // open
    bool UndoEnabled = false, RedoEnabled = false;
};

MString MainWindowText(); // without a real window, the text last set
void SetMainWindowText(const MString& text);
void ApplyMenuState(const WMenuState& state);
WMenuState AppliedMenuState(); // what the menu shows now
