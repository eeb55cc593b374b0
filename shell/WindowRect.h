#pragma once
// Where the main window opens when nothing else is known.

#include "shell/WSettings.h"
#include <cstdint>

// Width and height are each 0.8 of the screen's, truncated, and the window is
// centred on the screen (halves truncated too).
WRect DefaultWindowRect(int32_t screenWidth, int32_t screenHeight);
