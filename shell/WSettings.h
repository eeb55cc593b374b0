#pragma once
// The settings object's making and its file: read at start-up, written when
// the main window closes.

#include "foundation/MString.h"
#include "foundation/Settings.h"
#include <cstdint>

WSettings* CreateSettings(); // defaults and default rectangles from the screen size
void DestroySettings();
MString SettingsFileName(); // empty when the user's folder cannot be had

// A window rectangle brought onto the virtual screen: at least 200 by 200,
// at most the virtual screen's size, and inside it.
WRect FitToVirtualScreen(WRect rect);

// The closing main window's part of the settings: its own rectangle, and for
// each tool window its rectangle when it is open (null when closed: it keeps
// the rectangle it wrote when it closed, and counts as not shown). Then the
// settings are saved. Does nothing without TheSettings.
void SaveSettingsAtClose(const WRect& mainWindow, const WRect* pointWindow,
                         const WRect* elementWindow, const WRect* modeWindow);
