// The palette without a window system: it is an in-memory dialog, which
// ModePalette.cpp handles itself; the face is the light gray of a default
// desktop.

#include "dialogs/ModePalette.h"

bool PlatformPaletteClient(void*, WRect&) {
    return false;
}
void* PlatformPaletteDc(void*) {
    return nullptr;
}
void PlatformReleasePaletteDc(void*, void*) {}
MColour PlatformButtonFace() {
    return MColour{240, 240, 240, 255};
}
void PlatformMakePaletteTooltips(WDialog_Mode&) {}
float PaletteCursorRow(void*, float y) {
    return y;
}
intptr_t PlatformPaletteMessage(void*, uint32_t, uintptr_t, intptr_t, bool& handled) {
    handled = false;
    return 0;
}
