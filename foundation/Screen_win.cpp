// Screen metrics from the window system.

#include "foundation/Platform.h"

#include <windows.h>

MScreenMetrics PlatformScreenMetrics() {
    MScreenMetrics metrics;
    metrics.Primary.Width = GetSystemMetrics(SM_CXSCREEN);
    metrics.Primary.Height = GetSystemMetrics(SM_CYSCREEN);
    metrics.Virtual.Left = GetSystemMetrics(SM_XVIRTUALSCREEN);
    metrics.Virtual.Top = GetSystemMetrics(SM_YVIRTUALSCREEN);
    metrics.Virtual.Width = GetSystemMetrics(SM_CXVIRTUALSCREEN);
    metrics.Virtual.Height = GetSystemMetrics(SM_CYVIRTUALSCREEN);
    return metrics;
}
