#pragma once
// What the three tool windows share: their places in the settings, their
// opening at start-up and their ending at shutdown, and their rectangles on
// the screen. A tool window is a modeless dialog (dialogs/Dialog.h); where it
// is an in-memory dialog its rectangle is kept here, so that tests follow
// places and flags as on a screen.

#include "shell/WSettings.h"

#include <cstdint>

enum WToolWindow : int32_t { ToolPoint = 0, ToolElement = 1, ToolMode = 2, ToolWindowCount = 3 };

// The settings' rectangle and open flag of a tool window.
WRect& ToolWindowPlace(WSettings& settings, WToolWindow which);
bool& ToolWindowShown(WSettings& settings, WToolWindow which);

// The dialog of a tool window, or null while it is closed.
void* ToolWindowHandle(WToolWindow which);

// The window's rectangle on the screen; false when it cannot be read.
bool ToolWindowRect(void* dialog, WRect& rectangle);
// Moves and sizes the window to a rectangle on the screen.
void SetToolWindowRect(void* dialog, const WRect& rectangle);
// Moves the window's top-left corner to its place in the settings, keeps its
// size, and shows it without taking the keyboard from the main window.
void ShowToolWindowAtPlace(WToolWindow which, void* dialog);
// Ends the dialog of a tool window and forgets its rectangle.
void EndToolWindow(void* dialog);

// Fills rects with the present screen rectangle of each open tool window and
// open with whether it is open. A window whose rectangle cannot be read
// counts as closed.
void OpenToolWindowRects(WRect rects[ToolWindowCount], bool open[ToolWindowCount]);

// The present rectangle of an open tool window goes to its place in the
// settings (its command closes it next).
void StoreToolWindowRect(WToolWindow which);
// The places of the open windows and every window's open flag go to the
// settings; a closed window keeps the rectangle it stored when it closed.
// With alsoOpen, that window counts as open whatever its state (its close
// box is being handled).
void StoreToolWindowPlaces(int32_t alsoOpen = -1);

// Start-up: the windows that the settings name, in the order Point, Element,
// Mode.
void OpenToolWindowsAtStart();
// Shutdown: the Point and then the Element window; then the Mode palette.
void EndToolDialogs();
void EndModePalette();

// A tool window's close box: every window's place and flag are stored with
// this one still open, the settings are saved, and only then is the window
// ended and the menu refreshed.
void CloseToolWindowByBox(WToolWindow which);

// ---- The platform's part, for real windows.
bool PlatformToolWindowRect(void* dialog, WRect& rectangle);
void PlatformSetToolWindowRect(void* dialog, const WRect& rectangle);
void PlatformShowToolWindowAt(void* dialog, int32_t left, int32_t top);
// Edits of a real window take at most this many characters.
void PlatformLimitEdits(void* dialog, const int32_t* ids, int32_t count, int32_t length);
