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
    // Every byte of the block is read, a row at a time through a copy that
    // the address sanitizer checks, so that a block shorter than its pitch
    // and height say shows; the per-pixel reading, slow under the
    // sanitizers, goes over the first and last pixel of each row only, so
    // that a legal picture of millions of pixels is not taken for a hang.
    uint32_t sum = 0;
    std::vector<uint8_t> row(picture.Pitch);
    for (int32_t y = 0; y < picture.Height; y++) {
        std::memcpy(row.data(), picture.Pixels + uint64_t(y) * picture.Pitch, row.size());
        sum += row[0] + row[row.size() - 1];
        for (uint32_t x : {0u, picture.Width - 1}) {
            MColour c = ReadPixel(picture.PixelAddress(int32_t(x), y), picture.Format);
            sum += c.b + c.g + c.r + c.a;
        }
    }
    picture.HasTransparency();
    volatile uint32_t sink = sum;
    (void)sink;
    return 0;
}
