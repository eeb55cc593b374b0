#pragma once
// The one drawing interface of the system. The Windows build draws with
// Direct2D (DrawSurface_win.cpp); the native build records each operation as
// a line of text (DrawSurface_posix.cpp) so tests can read what was drawn.
// The platform objects are kept as opaque pointers: no Win32 type shows here.

#include "foundation/MString.h"
#include "shell/WSettings.h"
#include <cstdint>

struct MDrawSurface {
    bool Valid = false; // the surface can draw; every operation returns at once when false
    int32_t Left = 0, Top = 0, Right = 0, Bottom = 0; // the surface's rectangle, caller's units
    float Scale = 1;                                  // device pixels per caller's unit
    void* Factory = nullptr;    // Windows build: ID2D1Factory, single-threaded
    void* HwndTarget = nullptr; // Windows build: ID2D1HwndRenderTarget of a window surface
    MString Recording;          // native build: one line per operation, for tests

    int32_t Width() const { return Right - Left; }
    int32_t Height() const { return Bottom - Top; }

    // Binds the surface to the client area of a window (opaque handle). A
    // window without area, or a failure of the platform, leaves Valid false;
    // the surface must be released either way.
    void CreateForWindow(void* window);
    // Drops every platform object. Safe on a surface that never became valid.
    void Release();
    // False when not valid; otherwise drawing has begun with no transform.
    bool Begin();
    // Ends the drawing. Its result is not looked at: a lost device shows as
    // a surface that stays until the window's size changes.
    void End();
    // Fills the whole target with a colour of four bytes.
    void Clear(MColour colour);
};

// A colour byte as a drawing channel from 0 to 1.
inline float ColourChannel(uint8_t byte) {
    return byte * 0.003921569f;
}
