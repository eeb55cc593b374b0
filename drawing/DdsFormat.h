#pragma once
// The numbers of the DDS container shared by its reader and writer: the file
// mark, the header's flags, the legacy pixel format flags and the DXGI
// formats that the program reads or writes.

#include <cstdint>

enum : uint32_t {
    DdsMagic = 0x20534444, // "DDS "
    DdsHeaderSize = 124,
    DdsPixelFormatSize = 32,
    DdsDx10HeaderSize = 20,

    // Header flags
    DdsFlagCaps = 0x1,
    DdsFlagHeight = 0x2,
    DdsFlagWidth = 0x4,
    DdsFlagPitch = 0x8,
    DdsFlagPixelFormat = 0x1000,
    DdsFlagMipMapCount = 0x20000,
    DdsFlagLinearSize = 0x80000,
    DdsFlagDepth = 0x800000,

    // caps and caps2
    DdsCapsTexture = 0x1000,
    DdsCaps2CubeMap = 0x200,
    DdsCaps2Volume = 0x200000,

    // Pixel format flags
    DdsPixelAlphaPixels = 0x1,
    DdsPixelFourCC = 0x4,
    DdsPixelRgb = 0x40,

    // The DX10 header's resource dimensions and flags
    DdsDimension1D = 2,
    DdsDimension2D = 3,
    DdsDimension3D = 4,
    DdsMiscTextureCube = 0x4,
};

// Four characters as the little-endian number the file holds.
constexpr uint32_t DdsFourCC(char a, char b, char c, char d) {
    return uint32_t(uint8_t(a)) | (uint32_t(uint8_t(b)) << 8) | (uint32_t(uint8_t(c)) << 16) |
           (uint32_t(uint8_t(d)) << 24);
}

// DXGI formats, by their numbers.
enum DxgiFormat : uint32_t {
    DxgiUnknown = 0,
    DxgiR16G16B16A16Float = 10,
    DxgiR16G16B16A16Unorm = 11,
    DxgiR16G16B16A16Uint = 12,
    DxgiR8G8B8A8Unorm = 28,
    DxgiR8G8B8A8Uint = 30,
    DxgiBc1Unorm = 71,
    DxgiBc2Unorm = 74,
    DxgiBc3Unorm = 77,
    DxgiBc4Unorm = 80,
    DxgiBc5Unorm = 83,
    DxgiB8G8R8A8Unorm = 87,
    DxgiB8G8R8X8Unorm = 88,
    DxgiBc7Unorm = 98,
};

// The old Direct3D format numbers that stand in the FourCC field.
enum : uint32_t {
    D3dFormatA16B16G16R16 = 36,
    D3dFormatA16B16G16R16F = 113,
};
