// The native build has no window system: the main window's client size is
// whatever a test gave it.

#include "foundation/Program.h"

static int32_t ClientWidth = 0, ClientHeight = 0;

void MainClientSize(int32_t& width, int32_t& height) {
    width = ClientWidth;
    height = ClientHeight;
}

void SetMainClientSize(int32_t width, int32_t height) {
    ClientWidth = width;
    ClientHeight = height;
}
