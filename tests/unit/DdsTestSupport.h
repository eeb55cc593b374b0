#pragma once
// DDS files built byte by byte for the tests of the reader, the block
// decoding and the writer: a header from a layout, pixel data, and the
// comparison of decoded pixels and blocks.

#include "drawing/BlockDecode.h"
#include "drawing/MPicture.h"

#include "PictureTestSupport.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

namespace ddstest {

using namespace picturetest;

// ---- Building DDS files

inline void Put32(std::vector<uint8_t>& bytes, size_t at, uint32_t value) {
    for (int i = 0; i < 4; i++)
        bytes[at + i] = uint8_t(value >> (8 * i));
}

inline uint32_t FourCC(const char* text) {
    return uint32_t(uint8_t(text[0])) | (uint32_t(uint8_t(text[1])) << 8) |
           (uint32_t(uint8_t(text[2])) << 16) | (uint32_t(uint8_t(text[3])) << 24);
}

struct DdsLayout {
    uint32_t Width = 4, Height = 4;
    uint32_t Flags = 0x1007; // caps, height, width, pixel format
    uint32_t Depth = 0, MipCount = 0, Caps2 = 0;
    uint32_t PixelFlags = 0x4, FourCC = 0, BitCount = 0;
    uint32_t Masks[4] = {0, 0, 0, 0};
    bool Dx10 = false;
    uint32_t DxgiFormat = 0, Dimension = 3, Misc = 0, ArraySize = 1;
};

inline std::vector<uint8_t> Dds(const DdsLayout& layout, const std::vector<uint8_t>& data) {
    std::vector<uint8_t> bytes(4 + 124, 0);
    std::memcpy(bytes.data(), "DDS ", 4);
    Put32(bytes, 4, 124);
    Put32(bytes, 8, layout.Flags);
    Put32(bytes, 12, layout.Height);
    Put32(bytes, 16, layout.Width);
    Put32(bytes, 24, layout.Depth);
    Put32(bytes, 28, layout.MipCount);
    Put32(bytes, 76, 32);
    Put32(bytes, 80, layout.Dx10 ? 0x4 : layout.PixelFlags);
    Put32(bytes, 84, layout.Dx10 ? FourCC("DX10") : layout.FourCC);
    Put32(bytes, 88, layout.BitCount);
    for (int i = 0; i < 4; i++)
        Put32(bytes, 92 + 4 * i, layout.Masks[i]);
    Put32(bytes, 108, 0x1000);
    Put32(bytes, 112, layout.Caps2);
    if (layout.Dx10) {
        size_t at = bytes.size();
        bytes.resize(at + 20, 0);
        Put32(bytes, at, layout.DxgiFormat);
        Put32(bytes, at + 4, layout.Dimension);
        Put32(bytes, at + 8, layout.Misc);
        Put32(bytes, at + 12, layout.ArraySize);
    }
    bytes.insert(bytes.end(), data.begin(), data.end());
    return bytes;
}

inline DdsLayout Dx10(uint32_t format, uint32_t width = 4, uint32_t height = 4) {
    DdsLayout layout;
    layout.Dx10 = true;
    layout.DxgiFormat = format;
    layout.Width = width;
    layout.Height = height;
    return layout;
}

inline DdsLayout Legacy(uint32_t bits, uint32_t r, uint32_t g, uint32_t b, uint32_t a) {
    DdsLayout layout;
    layout.PixelFlags = 0x40 | (a ? 0x1 : 0);
    layout.BitCount = bits;
    layout.Masks[0] = r, layout.Masks[1] = g, layout.Masks[2] = b, layout.Masks[3] = a;
    return layout;
}

inline DdsLayout Compressed(const char* fourCC, uint32_t width = 4, uint32_t height = 4) {
    DdsLayout layout;
    layout.FourCC = FourCC(fourCC);
    layout.Width = width;
    layout.Height = height;
    return layout;
}

inline std::vector<uint8_t> Counting(size_t count) {
    std::vector<uint8_t> data(count);
    for (size_t i = 0; i < count; i++)
        data[i] = uint8_t(i * 7 + 3);
    return data;
}

inline bool Read(MPicture& picture, const std::vector<uint8_t>& bytes) {
    return ReadDds(picture, bytes.data(), int32_t(bytes.size()));
}

inline void ExpectPixel(const MPicture& picture, int x, int y, int r, int g, int b, int a) {
    MColour c = ReadPixel(picture.PixelAddress(x, y), picture.Format);
    EXPECT_EQ(int(c.r), r) << x << "," << y;
    EXPECT_EQ(int(c.g), g) << x << "," << y;
    EXPECT_EQ(int(c.b), b) << x << "," << y;
    EXPECT_EQ(int(c.a), a) << x << "," << y;
}

// ---- BC7 blocks are written field by field, from the lowest bit up.
struct BlockWriter {
    uint8_t Bytes[16] = {};
    int At = 0;

    void Put(uint32_t value, int bits) {
        ASSERT_LT(value, 1u << bits);
        for (int i = 0; i < bits; i++, At++)
            if ((value >> i) & 1) Bytes[At / 8] |= uint8_t(1 << (At % 8));
    }
};

inline void ExpectBlock(const uint8_t* rgba, const int (&expected)[16][4], const char* what) {
    for (int i = 0; i < 16; i++)
        for (int c = 0; c < 4; c++)
            EXPECT_EQ(int(rgba[i * 4 + c]), expected[i][c]) << what << " pixel " << i << " channel "
                                                            << "RGBA"[c];
}

} // namespace ddstest
