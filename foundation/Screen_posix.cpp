// The native build runs headless: it answers with one monitor of 1920 by 1080
// pixels, which is also the virtual screen.

#include "foundation/Platform.h"

MScreenMetrics PlatformScreenMetrics() {
    MScreenMetrics metrics;
    metrics.Primary.Width = 1920;
    metrics.Primary.Height = 1080;
    metrics.Virtual = metrics.Primary;
    return metrics;
}
