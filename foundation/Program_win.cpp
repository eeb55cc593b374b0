// The main window's client size on Win32. Until the window exists (and in
// the unit tests, which run without one) the size given last is kept, as the
// native build does.

#include "foundation/Program.h"

#include <windows.h>

static int32_t ClientWidth = 0, ClientHeight = 0;

void MainClientSize(int32_t& width, int32_t& height) {
    HWND window = static_cast<HWND>(TheMainWindow);
    if (!window) {
        width = ClientWidth;
        height = ClientHeight;
        return;
    }
    RECT client = {};
    if (!GetClientRect(window, &client)) client = RECT{};
    width = client.right - client.left;
    height = client.bottom - client.top;
}

void SetMainClientSize(int32_t width, int32_t height) {
    ClientWidth = width;
    ClientHeight = height;
}
