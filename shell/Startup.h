#pragma once
// The order in which the process makes and ends its single objects. The
// platform's entry (Main_win.cpp) runs its own steps (window class, window,
// COM, accelerators, message loop) around these calls, so that the model's
// part of the order is one piece of portable code that tests can run. Step
// numbers are those of the list at the head of Main_win.cpp.

#include "foundation/MString.h"
#include "shell/WSettings.h"
#include <cstdint>

// The steps of shutdown, in the order in which they run behind the message
// loop. A start-up that fails goes to the step that undoes what it made.
enum WShutdownStep : int32_t {
    ShutdownAccelerators = 1, // accelerator table and background picture
    ShutdownView = 2,
    ShutdownRecording = 3,
    ShutdownSketch = 4,  // the ring with its snapshots, then the sketch
    ShutdownElement = 5, // then COM is ended
    ShutdownSettings = 6,
    ShutdownToolWindows = 7, // the Point and Element tool windows
    ShutdownSurface = 8,     // the Mode palette, then the drawing surface
};

// Start-up steps 2 and 3: the settings with their defaults, the main
// window's place among them, then the settings file if there is one. False
// when there is no settings object.
bool StartSettings();

// Start-up steps 9 to 12: the model's hooks filled by the shell, then the element object with the
// table's self-check, the sketch with its ring, the recorder and the view, in this order. The save
// dialog's choices are reset with the sketch, whatever the settings file said. An object that
// exists already is kept (its creation says so in a message). Returns 0 when all exist afterwards,
// otherwise the shutdown step that undoes what was made.
int32_t CreateModelObjects();

// Shutdown from the step `from` (ShutdownView to ShutdownElement) through the
// element: view, recorder, sketch, element, each only if it exists. COM is
// not the model's; the entry ends it after this.
void DestroyModelObjects(int32_t from);

// Start-up step 16: the drawing mode with no current record, and menu and
// title refreshed to show it.
void EnterStartMode();

// Start-up step 17 for the first command-line argument: a sketch file is
// opened after one frame has been drawn, so that the surface exists and the
// view knows its viewport when the load fits the view to the sketch. Any
// other argument does nothing.
void OpenStartFile(const MString& argument);

// The main window, at the given place on the screen, was asked to close.
// False when the user chose to stay (the question about unsaved changes);
// true once the window may go, with the window places and the settings
// saved first.
bool PrepareToClose(const WRect& mainWindow);

// Start-up step 17: whether the first command-line argument names a sketch to
// open at start. Only the extensions EPS and QO count, in any case; anything
// else is ignored without a word.
bool IsStartFile(const MString& argument);
