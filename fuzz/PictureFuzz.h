#pragma once
// What the picture decoding targets share: the input's first bytes are made
// the mark of one format, so that every input reaches that format's decoder,
// and a decoded picture is read back whole.

#include "drawing/MPicture.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

inline int FuzzPictureDecoder(const uint8_t* data, size_t size, const char* mark, size_t length) {
    if (size > (1u << 20)) return 0;
    std::vector<uint8_t> bytes(data, data + size);
    if (bytes.size() < length) bytes.resize(length);
    std::memcpy(bytes.data(), mark, length);
    MPicture picture;
    if (!DecodePictureMemory(picture, bytes.data(), bytes.size())) {
        if (picture.Pixels) __builtin_trap();
        return 0;
    }
    if (!picture.IsUsable()) __builtin_trap();
    uint32_t sum = 0;
    for (int32_t y = 0; y < picture.Height; y++)
        for (uint32_t x = 0; x < picture.Width; x++) {
            MColour c = ReadPixel(picture.PixelAddress(int32_t(x), y), picture.Format);
            sum += c.b + c.g + c.r + c.a;
        }
    picture.HasTransparency();
    volatile uint32_t sink = sum;
    (void)sink;
    return 0;
}
