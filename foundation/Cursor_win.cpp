// The mouse pointer on the Windows desktop.

#include "foundation/Platform.h"

#include "foundation/Program.h"

#include <windows.h>

#include <cmath>

// The position is a client pixel of the main window, rounded to the nearest
// whole pixel. Without a main window there is no client area to aim at.
void PlatformSetCursorClientPosition(float x, float y) {
    HWND window = static_cast<HWND>(TheMainWindow);
    if (!window) return;
    POINT point;
    point.x = std::lround(x);
    point.y = std::lround(y);
    if (!ClientToScreen(window, &point)) return;
    SetCursorPos(point.x, point.y);
}
