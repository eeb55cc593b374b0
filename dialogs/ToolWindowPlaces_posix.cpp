// Without a window system every tool window is an in-memory dialog, whose
// rectangle ToolWindowPlaces.cpp keeps; no real window ever reaches these.

#include "dialogs/ToolWindowPlaces.h"

bool PlatformToolWindowRect(void*, WRect&) {
    return false;
}
void PlatformSetToolWindowRect(void*, const WRect&) {}
void PlatformShowToolWindowAt(void*, int32_t, int32_t) {}
void PlatformLimitEdits(void*, const int32_t*, int32_t, int32_t) {}
