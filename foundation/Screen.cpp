// The screen as the settings see it when they place windows.

#include "foundation/Platform.h"

const MScreenMetrics* TheScreenOverride = nullptr;

MScreenArea ScreenSize() {
    if (TheScreenOverride) return TheScreenOverride->Primary;
    return PlatformScreenMetrics().Primary;
}

MScreenArea VirtualScreen() {
    if (TheScreenOverride) return TheScreenOverride->Virtual;
    return PlatformScreenMetrics().Virtual;
}
