#pragma once
// A rectangle of whole pixels: window places, picture crops, device areas.

#include <cstdint>

struct WRect {
    int32_t left = 0, top = 0, right = 0, bottom = 0; // screen pixels
};
