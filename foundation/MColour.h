#pragma once
// A colour as the system keeps it everywhere: settings, pictures and the
// drawing surface.

#include <cstdint>

struct MColour {
    uint8_t b = 0, g = 0, r = 0, a = 255; // stored blue, green, red, alpha
};
