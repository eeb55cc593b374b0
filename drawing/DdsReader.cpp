// The DDS reader. It takes a simple 2D image only (depth at most 1, array
// size 1) and of it the first mip level; block-compressed BC1 to BC5 and BC7
// are decompressed to R8G8B8A8 first. The DXGI format that results decides
// the picture's format; every other DDS fails the load.
//
// The header is judged the way the common Direct3D loaders judge it, so that
// a file they refuse (a cube map, a missing mip level, an unknown pixel
// format) is refused here too.

#include "drawing/BlockDecode.h"
#include "drawing/DdsFormat.h"
#include "drawing/MPicture.h"
#include "foundation/MFile.h"

#include <cstring>

namespace {

enum { MaxDdsSize = 16384 }; // the largest 2D texture side Direct3D 11 knows

uint32_t Load32(const uint8_t* at) {
    return uint32_t(at[0]) | (uint32_t(at[1]) << 8) | (uint32_t(at[2]) << 16) |
           (uint32_t(at[3]) << 24);
}

// How the stored pixels become the DXGI format: most are taken as they are,
// two legacy layouts are widened or given opaque alpha on the way.
enum DdsConversion { ConvertNone, ConvertNoAlpha, ConvertExpand888 };

struct DdsLayout {
    uint32_t Format = DxgiUnknown;
    DdsConversion Conversion = ConvertNone;
};

// ---- The legacy pixel format: a FourCC, or RGB bit masks.
DdsLayout LegacyLayout(const uint8_t* pixelFormat) {
    uint32_t flags = Load32(pixelFormat + 4);
    uint32_t fourCC = Load32(pixelFormat + 8);
    uint32_t bitCount = Load32(pixelFormat + 12);
    uint32_t red = Load32(pixelFormat + 16), green = Load32(pixelFormat + 20);
    uint32_t blue = Load32(pixelFormat + 24), alpha = Load32(pixelFormat + 28);
    DdsLayout layout;
    if (flags & DdsPixelFourCC) {
        static const struct {
            uint32_t FourCC;
            uint32_t Format;
        } Table[] = {
            {DdsFourCC('D', 'X', 'T', '1'), DxgiBc1Unorm},
            {DdsFourCC('D', 'X', 'T', '2'), DxgiBc2Unorm},
            {DdsFourCC('D', 'X', 'T', '3'), DxgiBc2Unorm},
            {DdsFourCC('D', 'X', 'T', '4'), DxgiBc3Unorm},
            {DdsFourCC('D', 'X', 'T', '5'), DxgiBc3Unorm},
            {DdsFourCC('A', 'T', 'I', '1'), DxgiBc4Unorm},
            {DdsFourCC('B', 'C', '4', 'U'), DxgiBc4Unorm},
            {DdsFourCC('A', 'T', 'I', '2'), DxgiBc5Unorm},
            {DdsFourCC('B', 'C', '5', 'U'), DxgiBc5Unorm},
            {D3dFormatA16B16G16R16, DxgiR16G16B16A16Unorm},
            {D3dFormatA16B16G16R16F, DxgiR16G16B16A16Float},
        };
        for (const auto& row : Table)
            if (row.FourCC == fourCC) layout.Format = row.Format;
        return layout;
    }
    if (!(flags & DdsPixelRgb)) return layout;
    if (bitCount == 32) {
        if (red == 0xff && green == 0xff00 && blue == 0xff0000 && alpha == 0xff000000) {
            layout.Format = DxgiR8G8B8A8Unorm;
        } else if (red == 0xff0000 && green == 0xff00 && blue == 0xff && alpha == 0xff000000) {
            layout.Format = DxgiB8G8R8A8Unorm;
        } else if (red == 0xff0000 && green == 0xff00 && blue == 0xff && alpha == 0) {
            layout.Format = DxgiB8G8R8X8Unorm;
        } else if (red == 0xff && green == 0xff00 && blue == 0xff0000 && alpha == 0) {
            layout.Format = DxgiR8G8B8A8Unorm;
            layout.Conversion = ConvertNoAlpha;
        }
    } else if (bitCount == 24 && red == 0xff0000 && green == 0xff00 && blue == 0xff) {
        layout.Format = DxgiB8G8R8A8Unorm;
        layout.Conversion = ConvertExpand888;
    }
    return layout;
}

bool IsBlockCompressed(uint32_t format) {
    return format == DxgiBc1Unorm || format == DxgiBc2Unorm || format == DxgiBc3Unorm ||
           format == DxgiBc4Unorm || format == DxgiBc5Unorm || format == DxgiBc7Unorm;
}

// Bytes of one block (compressed formats) or one stored pixel; 0 for a format
// the reader does not take.
uint32_t UnitBytes(const DdsLayout& layout) {
    switch (layout.Format) {
    case DxgiBc1Unorm:
    case DxgiBc4Unorm:
        return 8;
    case DxgiBc2Unorm:
    case DxgiBc3Unorm:
    case DxgiBc5Unorm:
    case DxgiBc7Unorm:
        return 16;
    case DxgiR16G16B16A16Float:
    case DxgiR16G16B16A16Unorm:
    case DxgiR16G16B16A16Uint:
        return 8;
    case DxgiR8G8B8A8Unorm:
    case DxgiR8G8B8A8Uint:
    case DxgiB8G8R8A8Unorm:
    case DxgiB8G8R8X8Unorm:
        return layout.Conversion == ConvertExpand888 ? 3 : 4;
    default:
        return 0;
    }
}

uint64_t LevelSize(const DdsLayout& layout, uint32_t width, uint32_t height) {
    uint64_t unit = UnitBytes(layout);
    if (IsBlockCompressed(layout.Format)) {
        uint64_t across = (uint64_t(width) + 3) / 4;
        uint64_t down = (uint64_t(height) + 3) / 4;
        return across * down * unit;
    }
    return uint64_t(width) * height * unit;
}

// ---- Decompression of the first level into R8G8B8A8.
void Decompress(uint32_t format, const uint8_t* data, uint32_t width, uint32_t height,
                uint8_t* rgba) {
    uint32_t blockBytes = format == DxgiBc1Unorm || format == DxgiBc4Unorm ? 8 : 16;
    uint8_t block[64];
    for (uint32_t by = 0; by < height; by += 4) {
        for (uint32_t bx = 0; bx < width; bx += 4, data += blockBytes) {
            switch (format) {
            case DxgiBc1Unorm:
                DecodeBc1Block(data, block);
                break;
            case DxgiBc2Unorm:
                DecodeBc2Block(data, block);
                break;
            case DxgiBc3Unorm:
                DecodeBc3Block(data, block);
                break;
            case DxgiBc4Unorm:
                DecodeBc4Block(data, block);
                break;
            case DxgiBc5Unorm:
                DecodeBc5Block(data, block);
                break;
            default:
                DecodeBc7Block(data, block);
                break;
            }
            // Blocks hang over the right and lower edges of odd sizes.
            for (uint32_t y = 0; y < 4 && by + y < height; y++)
                for (uint32_t x = 0; x < 4 && bx + x < width; x++)
                    std::memcpy(rgba + ((by + y) * uint64_t(width) + bx + x) * 4,
                                block + (y * 4 + x) * 4, 4);
        }
    }
}

} // namespace

bool ReadDds(MPicture& picture, const uint8_t* bytes, int32_t size) {
    picture.Free();
    if (!bytes || size < int32_t(4 + DdsHeaderSize)) return false;
    if (Load32(bytes) != DdsMagic) return false;
    const uint8_t* header = bytes + 4;
    if (Load32(header) != DdsHeaderSize || Load32(header + 72) != DdsPixelFormatSize) return false;

    // ---- Header
    uint32_t flags = Load32(header + 4);
    uint32_t height = Load32(header + 8);
    uint32_t width = Load32(header + 12);
    uint32_t depth = Load32(header + 20);
    uint32_t mipCount = Load32(header + 24);
    uint32_t caps2 = Load32(header + 108);
    const uint8_t* pixelFormat = header + 72;
    int64_t offset = 4 + DdsHeaderSize;

    DdsLayout layout;
    uint32_t arraySize = 1;
    bool isVolume = false;
    if ((Load32(pixelFormat + 4) & DdsPixelFourCC) &&
        Load32(pixelFormat + 8) == DdsFourCC('D', 'X', '1', '0')) {
        if (size < offset + DdsDx10HeaderSize) return false;
        const uint8_t* extension = bytes + offset;
        offset += DdsDx10HeaderSize;
        layout.Format = Load32(extension);
        uint32_t dimension = Load32(extension + 4);
        uint32_t misc = Load32(extension + 8);
        arraySize = Load32(extension + 12);
        if (arraySize == 0) return false;
        if (dimension == DdsDimension1D) {
            if ((flags & DdsFlagHeight) && height != 1) return false;
            height = 1;
            depth = 1;
        } else if (dimension == DdsDimension2D) {
            if (misc & DdsMiscTextureCube) arraySize *= 6;
            depth = 1;
        } else if (dimension == DdsDimension3D) {
            if (!(flags & DdsFlagDepth)) return false;
            isVolume = true;
        } else {
            return false;
        }
    } else {
        layout = LegacyLayout(pixelFormat);
        if (flags & DdsFlagDepth) {
            isVolume = true;
        } else {
            if (caps2 & DdsCaps2CubeMap) arraySize = 6;
            depth = 1;
        }
    }
    if (isVolume && depth > 1) return false;
    if (arraySize != 1) return false;
    if (UnitBytes(layout) == 0) return false;
    if (width < 1 || height < 1 || width > MaxDdsSize || height > MaxDdsSize) return false;

    // ---- The whole mip chain must be in the file, though only its first
    // level is used.
    uint32_t levels = 1;
    for (uint32_t side = width > height ? width : height; side > 1; side >>= 1)
        levels++;
    if (mipCount == 0) mipCount = 1;
    if (mipCount > levels) return false;
    uint64_t needed = 0;
    for (uint32_t level = 0, w = width, h = height; level < mipCount; level++) {
        needed += LevelSize(layout, w, h);
        w = w > 1 ? w >> 1 : 1;
        h = h > 1 ? h >> 1 : 1;
    }
    if (uint64_t(size - offset) < needed) return false;
    const uint8_t* data = bytes + offset;

    // ---- Pixels by the resulting format
    int32_t format =
        layout.Format == DxgiR16G16B16A16Float ? PictureRgbaHalf
        : layout.Format == DxgiR16G16B16A16Unorm || layout.Format == DxgiR16G16B16A16Uint
            ? PictureRgba16
            : PictureBgra8;
    if (!picture.Allocate(int32_t(width), int32_t(height), format)) return false;
    uint64_t pixels = uint64_t(width) * height;
    if (format != PictureBgra8) {
        std::memcpy(picture.Pixels, data, size_t(pixels * 8));
        return true;
    }
    uint8_t* out = picture.Pixels;
    bool swapRedBlue = false, opaque = false;
    if (IsBlockCompressed(layout.Format)) {
        Decompress(layout.Format, data, width, height, out);
        swapRedBlue = true;
    } else if (layout.Conversion == ConvertExpand888) {
        for (uint64_t i = 0; i < pixels; i++) {
            std::memcpy(out + i * 4, data + i * 3, 3);
            out[i * 4 + 3] = 255;
        }
    } else {
        std::memcpy(out, data, size_t(pixels * 4));
        swapRedBlue = layout.Format == DxgiR8G8B8A8Unorm || layout.Format == DxgiR8G8B8A8Uint;
        opaque = layout.Format == DxgiB8G8R8X8Unorm || layout.Conversion == ConvertNoAlpha;
    }
    for (uint64_t i = 0; i < pixels; i++, out += 4) {
        if (swapRedBlue) {
            uint8_t red = out[0];
            out[0] = out[2];
            out[2] = red;
        }
        if (opaque) out[3] = 255;
    }
    return true;
}

bool LoadDds(MPicture& picture, const MString& path) {
    picture.Free();
    MFile file;
    if (!file.Open(path, false, true) || !file.InMemory) return false;
    return ReadDds(picture, file.Memory.Data, file.Memory.Count);
}
