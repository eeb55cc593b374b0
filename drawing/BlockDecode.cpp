// Block decoders for the compressed DDS formats. The BC1 to BC5 palettes are
// worked out in 32-bit floats: colour ends expanded as c / 31 and c / 63,
// channel ends as v / 255, the middle entries interpolated between them, and
// every channel stored as the nearest byte of value * 255. Integer palettes
// that truncate the thirds, fifths and sevenths come out one level lower in
// many pixels. BC7 follows the format's own integer rules exactly.

#include "drawing/BlockDecode.h"

#include <cmath>
#include <cstring>

namespace {

// The nearest byte of a value from 0 to 1, ties to even.
uint8_t UnitToByte(float value) {
    if (!(value > 0.0f)) return 0;
    if (value >= 1.0f) return 255;
    return uint8_t(std::nearbyint(value * 255.0f));
}

float Lerp(float a, float b, float t) {
    return a + (b - a) * t;
}

} // namespace

// ---- BC1 colour blocks, shared by BC1, BC2 and BC3

void DecodeBc1Block(const uint8_t* block, uint8_t* rgba, bool allowThreeColour) {
    uint32_t first = uint32_t(block[0] | (block[1] << 8));
    uint32_t second = uint32_t(block[2] | (block[3] << 8));
    float ends[2][3] = {
        {float(first >> 11) / 31.0f, float((first >> 5) & 63) / 63.0f, float(first & 31) / 31.0f},
        {float(second >> 11) / 31.0f, float((second >> 5) & 63) / 63.0f,
         float(second & 31) / 31.0f}};
    uint8_t palette[4][4];
    for (int32_t c = 0; c < 3; c++) {
        palette[0][c] = UnitToByte(ends[0][c]);
        palette[1][c] = UnitToByte(ends[1][c]);
    }
    palette[0][3] = palette[1][3] = 255;
    if (!allowThreeColour || first > second) {
        for (int32_t c = 0; c < 3; c++) {
            palette[2][c] = UnitToByte(Lerp(ends[0][c], ends[1][c], 1.0f / 3.0f));
            palette[3][c] = UnitToByte(Lerp(ends[0][c], ends[1][c], 2.0f / 3.0f));
        }
        palette[2][3] = palette[3][3] = 255;
    } else {
        for (int32_t c = 0; c < 3; c++)
            palette[2][c] = UnitToByte(Lerp(ends[0][c], ends[1][c], 0.5f));
        palette[2][3] = 255;
        std::memset(palette[3], 0, 4);
    }
    uint32_t indices = uint32_t(block[4]) | (uint32_t(block[5]) << 8) | (uint32_t(block[6]) << 16) |
                       (uint32_t(block[7]) << 24);
    for (int32_t i = 0; i < 16; i++)
        std::memcpy(rgba + i * 4, palette[(indices >> (2 * i)) & 3], 4);
}

// ---- Interpolated channels: BC3 alpha, BC4 and BC5

void DecodeChannelBlock(const uint8_t* block, uint8_t* out, int32_t stride) {
    float first = float(block[0]) / 255.0f, second = float(block[1]) / 255.0f;
    float values[8];
    values[0] = first;
    values[1] = second;
    if (block[0] > block[1]) {
        for (int32_t i = 1; i < 7; i++)
            values[i + 1] = (first * float(7 - i) + second * float(i)) / 7.0f;
    } else {
        for (int32_t i = 1; i < 5; i++)
            values[i + 1] = (first * float(5 - i) + second * float(i)) / 5.0f;
        values[6] = 0.0f;
        values[7] = 1.0f;
    }
    uint8_t bytes[8];
    for (int32_t i = 0; i < 8; i++)
        bytes[i] = UnitToByte(values[i]);
    uint64_t indices = 0;
    for (int32_t i = 0; i < 6; i++)
        indices |= uint64_t(block[2 + i]) << (8 * i);
    for (int32_t i = 0; i < 16; i++)
        out[i * stride] = bytes[(indices >> (3 * i)) & 7];
}

// The explicit alphas of BC2 are n / 15, which is n * 17 as a byte.
void DecodeBc2Block(const uint8_t* block, uint8_t* rgba) {
    DecodeBc1Block(block + 8, rgba, false);
    for (int32_t i = 0; i < 16; i++) {
        uint32_t nibble = (block[i / 2] >> (4 * (i & 1))) & 15;
        rgba[i * 4 + 3] = UnitToByte(float(nibble) / 15.0f);
    }
}

void DecodeBc3Block(const uint8_t* block, uint8_t* rgba) {
    DecodeBc1Block(block + 8, rgba, false);
    DecodeChannelBlock(block, rgba + 3, 4);
}

// BC4 is a gray picture: its one channel goes to red, green and blue alike.
void DecodeBc4Block(const uint8_t* block, uint8_t* rgba) {
    DecodeChannelBlock(block, rgba, 4);
    for (int32_t i = 0; i < 16; i++) {
        rgba[i * 4 + 1] = rgba[i * 4 + 2] = rgba[i * 4];
        rgba[i * 4 + 3] = 255;
    }
}

void DecodeBc5Block(const uint8_t* block, uint8_t* rgba) {
    for (int32_t i = 0; i < 16; i++) {
        rgba[i * 4 + 2] = 0;
        rgba[i * 4 + 3] = 255;
    }
    DecodeChannelBlock(block, rgba, 4);
    DecodeChannelBlock(block + 8, rgba + 1, 4);
}

// ---- BC7

namespace {

struct Bc7Mode {
    int32_t Subsets;
    int32_t PartitionBits;
    int32_t RotationBits;
    int32_t SelectionBits;
    int32_t ColourBits;
    int32_t AlphaBits;
    int32_t EndpointPBits; // one p-bit per endpoint
    int32_t SharedPBits;   // one p-bit per subset
    int32_t IndexBits;
    int32_t SecondIndexBits;
};

const Bc7Mode Bc7Modes[8] = {
    {3, 4, 0, 0, 4, 0, 1, 0, 3, 0}, {2, 6, 0, 0, 6, 0, 0, 1, 3, 0}, {3, 6, 0, 0, 5, 0, 0, 0, 2, 0},
    {2, 6, 0, 0, 7, 0, 1, 0, 2, 0}, {1, 0, 2, 1, 5, 6, 0, 0, 2, 3}, {1, 0, 2, 0, 7, 8, 0, 0, 2, 2},
    {1, 0, 0, 0, 7, 7, 1, 0, 4, 0}, {2, 6, 0, 0, 5, 5, 1, 0, 2, 0},
};

// The subset of each of the 16 pixels, two bits per pixel from the lowest,
// for the 64 partitions of two and of three subsets.
const uint32_t Partitions2[64] = {
    0x50505050, 0x40404040, 0x54545454, 0x54505040, 0x50404000, 0x55545450, 0x55545040, 0x54504000,
    0x50400000, 0x55555450, 0x55544000, 0x54400000, 0x55555440, 0x55550000, 0x55555500, 0x55000000,
    0x55150100, 0x00004054, 0x15010000, 0x00405054, 0x00004050, 0x15050100, 0x05010000, 0x40505054,
    0x00404050, 0x05010100, 0x14141414, 0x05141450, 0x01155440, 0x00555500, 0x15014054, 0x05414150,
    0x44444444, 0x55005500, 0x11441144, 0x05055050, 0x05500550, 0x11114444, 0x41144114, 0x44111144,
    0x15055054, 0x01055040, 0x05041050, 0x05455150, 0x14414114, 0x50050550, 0x41411414, 0x00141400,
    0x00041504, 0x00105410, 0x10541000, 0x04150400, 0x50410514, 0x41051450, 0x05415014, 0x14054150,
    0x41050514, 0x41505014, 0x40011554, 0x54150140, 0x50505500, 0x00555050, 0x15151010, 0x54540404,
};
const uint32_t Partitions3[64] = {
    0xaa685050, 0x6a5a5040, 0x5a5a4200, 0x5450a0a8, 0xa5a50000, 0xa0a05050, 0x5555a0a0, 0x5a5a5050,
    0xaa550000, 0xaa555500, 0xaaaa5500, 0x90909090, 0x94949494, 0xa4a4a4a4, 0xa9a59450, 0x2a0a4250,
    0xa5945040, 0x0a425054, 0xa5a5a500, 0x55a0a0a0, 0xa8a85454, 0x6a6a4040, 0xa4a45000, 0x1a1a0500,
    0x0050a4a4, 0xaaa59090, 0x14696914, 0x69691400, 0xa08585a0, 0xaa821414, 0x50a4a450, 0x6a5a0200,
    0xa9a58000, 0x5090a0a8, 0xa8a09050, 0x24242424, 0x00aa5500, 0x24924924, 0x24499224, 0x50a50a50,
    0x500aa550, 0xaaaa4444, 0x66660000, 0xa5a0a5a0, 0x50a050a0, 0x69286928, 0x44aaaa44, 0x66666600,
    0xaa444444, 0x54a854a8, 0x95809580, 0x96969600, 0xa85454a8, 0x80959580, 0xaa141414, 0x96960000,
    0xaaaa1414, 0xa05050a0, 0xa0a5a5a0, 0x96000000, 0x40804080, 0xa9a8a9a8, 0xaaaaaa44, 0x2a4a5254,
};

// The pixel whose index is stored one bit short, for the second subset of
// two, and the second and third subsets of three.
const uint8_t Anchor2[64] = {
    15, 15, 15, 15, 15, 15, 15, 15, 15, 15, 15, 15, 15, 15, 15, 15, 15, 2,  8, 2,  2, 8,
    8,  15, 2,  8,  2,  2,  8,  8,  2,  2,  15, 15, 6,  8,  2,  8,  15, 15, 2, 8,  2, 2,
    2,  15, 15, 6,  6,  2,  6,  8,  15, 15, 2,  2,  15, 15, 15, 15, 15, 2,  2, 15,
};
const uint8_t Anchor3Second[64] = {
    3,  3,  15, 15, 8, 3,  15, 15, 8,  8,  6, 6,  6, 5,  3, 3,  3,  3,  8,  15, 3,  3,
    6,  10, 5,  8,  8, 6,  8,  5,  15, 15, 8, 15, 3, 5,  6, 10, 8,  15, 15, 3,  15, 5,
    15, 15, 15, 15, 3, 15, 5,  5,  5,  8,  5, 10, 5, 10, 8, 13, 15, 12, 3,  3,
};
const uint8_t Anchor3Third[64] = {
    15, 8, 8, 3,  15, 15, 3,  8,  15, 15, 15, 15, 15, 15, 15, 8,  15, 8,  15, 3,  15, 8,
    15, 8, 3, 15, 6,  10, 15, 15, 10, 8,  15, 3,  15, 10, 10, 8,  9,  10, 6,  15, 8,  15,
    3,  6, 6, 8,  15, 3,  15, 15, 15, 15, 15, 15, 15, 15, 15, 15, 3,  15, 15, 8,
};

const uint8_t Weights2[4] = {0, 21, 43, 64};
const uint8_t Weights3[8] = {0, 9, 18, 27, 37, 46, 55, 64};
const uint8_t Weights4[16] = {0, 4, 9, 13, 17, 21, 26, 30, 34, 38, 43, 47, 51, 55, 60, 64};

// The block's 128 bits, read from the lowest bit of the first byte up.
struct BitReader {
    const uint8_t* Bytes;
    int32_t At = 0;

    uint32_t Read(int32_t count) {
        uint32_t value = 0;
        for (int32_t i = 0; i < count; i++, At++)
            value |= uint32_t((Bytes[At >> 3] >> (At & 7)) & 1) << i;
        return value;
    }
};

const uint8_t* WeightsFor(int32_t bits) {
    return bits == 2 ? Weights2 : bits == 3 ? Weights3 : Weights4;
}

uint8_t Interpolate(uint32_t a, uint32_t b, uint32_t weight) {
    return uint8_t(((64 - weight) * a + weight * b + 32) >> 6);
}

// A value of bits bits as 8 bits, its top bits repeated below it.
uint8_t Unquantise(uint32_t value, int32_t bits) {
    if (bits >= 8) return uint8_t(value);
    value <<= (8 - bits);
    return uint8_t(value | (value >> bits));
}

int32_t SubsetOf(const Bc7Mode& mode, uint32_t partition, int32_t pixel) {
    if (mode.Subsets == 2) return int32_t((Partitions2[partition] >> (2 * pixel)) & 3);
    if (mode.Subsets == 3) return int32_t((Partitions3[partition] >> (2 * pixel)) & 3);
    return 0;
}

bool IsAnchor(const Bc7Mode& mode, uint32_t partition, int32_t pixel) {
    if (pixel == 0) return true;
    if (mode.Subsets == 2) return pixel == Anchor2[partition];
    if (mode.Subsets == 3)
        return pixel == Anchor3Second[partition] || pixel == Anchor3Third[partition];
    return false;
}

} // namespace

void DecodeBc7Block(const uint8_t* block, uint8_t* rgba) {
    int32_t modeNumber = 0;
    while (modeNumber < 8 && !(block[0] & (1 << modeNumber)))
        modeNumber++;
    if (modeNumber == 8) {
        std::memset(rgba, 0, 64);
        return;
    }
    const Bc7Mode& mode = Bc7Modes[modeNumber];
    BitReader bits{block};
    bits.Read(modeNumber + 1);
    uint32_t partition = bits.Read(mode.PartitionBits);
    uint32_t rotation = bits.Read(mode.RotationBits);
    uint32_t selection = bits.Read(mode.SelectionBits);

    // ---- Endpoints: all reds (endpoint 0 and 1 of each subset), then greens,
    // blues and alphas; then the p-bits.
    int32_t endpoints = mode.Subsets * 2;
    uint32_t colour[6][4];
    for (int32_t c = 0; c < 3; c++)
        for (int32_t e = 0; e < endpoints; e++)
            colour[e][c] = bits.Read(mode.ColourBits);
    for (int32_t e = 0; e < endpoints; e++)
        colour[e][3] = mode.AlphaBits ? bits.Read(mode.AlphaBits) : 255;
    int32_t colourBits = mode.ColourBits, alphaBits = mode.AlphaBits;
    if (mode.EndpointPBits || mode.SharedPBits) {
        uint32_t pbits[6];
        if (mode.EndpointPBits) {
            for (int32_t e = 0; e < endpoints; e++)
                pbits[e] = bits.Read(1);
        } else {
            for (int32_t s = 0; s < mode.Subsets; s++)
                pbits[2 * s] = pbits[2 * s + 1] = bits.Read(1);
        }
        for (int32_t e = 0; e < endpoints; e++)
            for (int32_t c = 0; c < 4; c++)
                if (c < 3 || mode.AlphaBits) colour[e][c] = (colour[e][c] << 1) | pbits[e];
        colourBits++;
        if (alphaBits) alphaBits++;
    }
    for (int32_t e = 0; e < endpoints; e++) {
        for (int32_t c = 0; c < 3; c++)
            colour[e][c] = Unquantise(colour[e][c], colourBits);
        if (alphaBits) colour[e][3] = Unquantise(colour[e][3], alphaBits);
    }

    // ---- Indices: the anchor pixel of each subset has one bit less.
    uint32_t primary[16], secondary[16] = {};
    for (int32_t i = 0; i < 16; i++)
        primary[i] = bits.Read(mode.IndexBits - (IsAnchor(mode, partition, i) ? 1 : 0));
    if (mode.SecondIndexBits)
        for (int32_t i = 0; i < 16; i++)
            secondary[i] = bits.Read(mode.SecondIndexBits - (i == 0 ? 1 : 0));

    // ---- Pixels
    for (int32_t i = 0; i < 16; i++) {
        int32_t subset = SubsetOf(mode, partition, i);
        const uint32_t* a = colour[2 * subset];
        const uint32_t* b = colour[2 * subset + 1];
        uint32_t colourIndex = primary[i], alphaIndex = primary[i];
        int32_t colourIndexBits = mode.IndexBits, alphaIndexBits = mode.IndexBits;
        if (mode.SecondIndexBits) {
            if (selection) {
                colourIndex = secondary[i];
                colourIndexBits = mode.SecondIndexBits;
            } else {
                alphaIndex = secondary[i];
                alphaIndexBits = mode.SecondIndexBits;
            }
        }
        uint8_t* pixel = rgba + i * 4;
        const uint8_t* colourWeights = WeightsFor(colourIndexBits);
        for (int32_t c = 0; c < 3; c++)
            pixel[c] = Interpolate(a[c], b[c], colourWeights[colourIndex]);
        pixel[3] = Interpolate(a[3], b[3], WeightsFor(alphaIndexBits)[alphaIndex]);
        if (rotation) {
            uint8_t keep = pixel[3];
            pixel[3] = pixel[rotation - 1];
            pixel[rotation - 1] = keep;
        }
    }
}
