// The DDS writer: one 2D image with one mip level, in one of three formats
// by the width of the picture's channels. The header is the legacy one (no
// DX10 extension), since all three formats have a legacy description that
// every DDS reader knows.

#include "drawing/DdsFormat.h"
#include "drawing/MPicture.h"
#include "foundation/MFile.h"

#include <cstring>

namespace {

void Store32(uint8_t* at, uint32_t value) {
    at[0] = uint8_t(value);
    at[1] = uint8_t(value >> 8);
    at[2] = uint8_t(value >> 16);
    at[3] = uint8_t(value >> 24);
}

void Store16(uint8_t* at, uint16_t value) {
    at[0] = uint8_t(value);
    at[1] = uint8_t(value >> 8);
}

uint16_t Load16(const uint8_t* at) {
    return uint16_t(at[0] | (at[1] << 8));
}

enum DdsTarget { TargetRgba8, TargetRgba16, TargetRgbaHalf };

DdsTarget TargetOf(int32_t format) {
    switch (format) {
    case PictureGray16:
    case PictureRgb16:
    case PictureRgba16:
        return TargetRgba16;
    case PictureGrayHalf:
    case PictureRgbHalf:
    case PictureRgbaHalf:
        return TargetRgbaHalf;
    default:
        return TargetRgba8;
    }
}

// One pixel of a 16-bit or half float picture as four channels of 16 bits;
// a missing alpha is opaque (65535, or 1.0 as a half), gray fills all three.
void WidePixel(const uint8_t* at, int32_t format, uint16_t opaque, uint16_t* out) {
    switch (format) {
    case PictureGray16:
    case PictureGrayHalf:
        out[0] = out[1] = out[2] = Load16(at);
        out[3] = opaque;
        break;
    case PictureRgb16:
    case PictureRgbHalf:
        for (int32_t c = 0; c < 3; c++)
            out[c] = Load16(at + 2 * c);
        out[3] = opaque;
        break;
    default:
        for (int32_t c = 0; c < 4; c++)
            out[c] = Load16(at + 2 * c);
        break;
    }
}

} // namespace

bool WriteDds(const MPicture& picture, MVector<uint8_t>& bytes, int32_t& size) {
    size = 0;
    if (!picture.IsUsable()) return false;
    DdsTarget target = TargetOf(picture.Format);
    uint32_t pixelBytes = target == TargetRgba8 ? 4 : 8;
    uint64_t rowPitch = uint64_t(picture.Width) * pixelBytes;
    uint64_t total = 4 + DdsHeaderSize + rowPitch * uint64_t(picture.Height);
    if (total > 0x7fffffff || !bytes.SetCount(int32_t(total))) return false;
    uint8_t* file = bytes.Data;
    std::memset(file, 0, 4 + DdsHeaderSize);

    // ---- Header
    Store32(file, DdsMagic);
    uint8_t* header = file + 4;
    Store32(header, DdsHeaderSize);
    Store32(header + 4, DdsFlagCaps | DdsFlagHeight | DdsFlagWidth | DdsFlagPixelFormat |
                            DdsFlagMipMapCount | DdsFlagPitch);
    Store32(header + 8, uint32_t(picture.Height));
    Store32(header + 12, picture.Width);
    Store32(header + 16, uint32_t(rowPitch));
    Store32(header + 20, 1); // depth
    Store32(header + 24, 1); // mip levels
    uint8_t* pixelFormat = header + 72;
    Store32(pixelFormat, DdsPixelFormatSize);
    if (target == TargetRgba8) {
        Store32(pixelFormat + 4, DdsPixelRgb | DdsPixelAlphaPixels);
        Store32(pixelFormat + 12, 32);
        Store32(pixelFormat + 16, 0x000000ff);
        Store32(pixelFormat + 20, 0x0000ff00);
        Store32(pixelFormat + 24, 0x00ff0000);
        Store32(pixelFormat + 28, 0xff000000);
    } else {
        Store32(pixelFormat + 4, DdsPixelFourCC);
        Store32(pixelFormat + 8,
                target == TargetRgba16 ? D3dFormatA16B16G16R16 : D3dFormatA16B16G16R16F);
    }
    Store32(header + 104, DdsCapsTexture);

    // ---- Pixels
    uint8_t* out = file + 4 + DdsHeaderSize;
    int32_t sourceBytes = PictureBytesPerPixel(picture.Format);
    uint16_t opaque = target == TargetRgba16 ? 0xffff : 0x3c00;
    for (int32_t y = 0; y < picture.Height; y++) {
        const uint8_t* at = picture.Pixels + int64_t(y) * picture.Pitch;
        for (uint32_t x = 0; x < picture.Width; x++, at += sourceBytes, out += pixelBytes) {
            if (target == TargetRgba8) {
                // 8-bit pictures are written opaque, alpha channel or not.
                MColour colour = ReadPixel(at, picture.Format);
                out[0] = colour.r;
                out[1] = colour.g;
                out[2] = colour.b;
                out[3] = 255;
            } else {
                uint16_t channels[4];
                WidePixel(at, picture.Format, opaque, channels);
                for (int32_t c = 0; c < 4; c++)
                    Store16(out + 2 * c, channels[c]);
            }
        }
    }
    size = int32_t(total);
    return true;
}

bool SaveDds(const MPicture& picture, const MString& path) {
    MVector<uint8_t> bytes;
    int32_t size = 0;
    if (!WriteDds(picture, bytes, size)) return false;
    MFile file;
    if (!file.Open(path, true, false)) return false;
    return file.Write(bytes.Data, uint32_t(size)) && file.Flush();
}
