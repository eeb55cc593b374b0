// A dialog's device context for drawing its canvas from inside a run.

#include "spaghetti/SpaghettiCanvas.h"

#include <windows.h>

void* AcquireWindowDc(void* window) {
    return GetDC(static_cast<HWND>(window));
}

void ReleaseWindowDc(void* window, void* dc) {
    ReleaseDC(static_cast<HWND>(window), static_cast<HDC>(dc));
}
