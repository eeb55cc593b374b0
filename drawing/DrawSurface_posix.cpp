// The native surface draws nothing: it writes each operation as a line into
// Recording, so that tests can state exactly what a frame drew.

#include "drawing/MDrawSurface.h"
#include "shell/Shell.h"
#include "shell/Window.h"

// Only the main window exists here; its client size is the one the window
// layer holds.
void MDrawSurface::CreateForWindow(void* window) {
    int32_t width = 0, height = 0;
    if (window && window == TheMainWindow) MainClientSize(width, height);
    Left = 0;
    Top = 0;
    Right = width;
    Bottom = height;
    Scale = 1;
    Valid = width > 0 && height > 0;
    Recording =
        Recording + "CreateForWindow " + IntegerText(width) + " " + IntegerText(height) + "\n";
}

void MDrawSurface::Release() {
    Valid = false;
    Recording = Recording + "Release\n";
}

bool MDrawSurface::Begin() {
    if (!Valid) return false;
    Recording = Recording + "Begin\n";
    return true;
}

void MDrawSurface::End() {
    if (!Valid) return;
    Recording = Recording + "End\n";
}

void MDrawSurface::Clear(MColour colour) {
    if (!Valid) return;
    Recording = Recording + "Clear " + IntegerText(colour.b) + " " + IntegerText(colour.g) + " " +
                IntegerText(colour.r) + " " + IntegerText(colour.a) + "\n";
}
