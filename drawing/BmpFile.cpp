// A small reader and writer of Windows bitmaps, for the native build.

#include "drawing/BmpFile.h"

#include <cstring>

namespace {

uint32_t Load32(const uint8_t* at) {
    return uint32_t(at[0]) | (uint32_t(at[1]) << 8) | (uint32_t(at[2]) << 16) |
           (uint32_t(at[3]) << 24);
}
uint16_t Load16(const uint8_t* at) {
    return uint16_t(at[0] | (at[1] << 8));
}

void Store32(uint8_t* at, uint32_t value) {
    for (int32_t i = 0; i < 4; i++)
        at[i] = uint8_t(value >> (8 * i));
}
void Store16(uint8_t* at, uint16_t value) {
    at[0] = uint8_t(value);
    at[1] = uint8_t(value >> 8);
}

enum { BmpFileHeader = 14, BmpRgb = 0, BmpBitFields = 3, BmpAlphaBitFields = 6 };

// A channel under a bit mask, scaled to 8 bits.
struct BmpChannel {
    uint32_t Mask = 0;
    int32_t Shift = 0; // of the mask's lowest bit
    int32_t Bits = 0;  // set bits in the mask

    void Set(uint32_t mask) {
        Mask = mask;
        Shift = Bits = 0;
        if (!mask) return;
        while (!((mask >> Shift) & 1))
            Shift++;
        while (Shift + Bits < 32 && ((mask >> (Shift + Bits)) & 1))
            Bits++;
    }
    uint8_t Of(uint32_t value) const {
        if (!Mask) return 255;
        uint32_t v = (value & Mask) >> Shift;
        if (Bits >= 8) return uint8_t(v >> (Bits - 8));
        // Fewer bits are widened by repeating them, so that full is 255.
        uint32_t result = 0;
        int32_t filled = 0;
        while (filled < 8) {
            result = (result << Bits) | v;
            filled += Bits;
        }
        return uint8_t(result >> (filled - 8));
    }
};

} // namespace

bool ReadBmp(MPicture& picture, const uint8_t* bytes, int32_t size) {
    picture.Free();
    if (!bytes || size < BmpFileHeader + 12 || bytes[0] != 'B' || bytes[1] != 'M') return false;
    uint32_t dataOffset = Load32(bytes + 10);
    const uint8_t* info = bytes + BmpFileHeader;
    uint32_t infoSize = Load32(info);
    if (infoSize < 12 || uint64_t(BmpFileHeader) + infoSize > uint64_t(size)) return false;

    // ---- Header: the old 12-byte core header or one of the 40-byte family.
    int64_t width, height;
    uint32_t bitCount, compression = BmpRgb, coloursUsed = 0;
    int32_t entryBytes = 4;
    if (infoSize == 12) {
        width = Load16(info + 4);
        height = int16_t(Load16(info + 6));
        bitCount = Load16(info + 10);
        entryBytes = 3;
    } else {
        if (infoSize < 40) return false;
        width = int32_t(Load32(info + 4));
        height = int32_t(Load32(info + 8));
        bitCount = Load16(info + 14);
        compression = Load32(info + 16);
        coloursUsed = Load32(info + 32);
    }
    bool topDown = height < 0;
    if (topDown) height = -height;
    if (width < 1 || height < 1 || width > 0x7fff || height > 0x7fff) return false;

    // ---- Masks of the 16- and 32-bit layouts
    BmpChannel red, green, blue, alpha;
    if (compression == BmpBitFields || compression == BmpAlphaBitFields) {
        if (bitCount != 16 && bitCount != 32) return false;
        const uint8_t* masks = info + 40;
        bool inside = infoSize >= 52;
        if (!inside && uint64_t(BmpFileHeader) + 40 + 12 > uint64_t(size)) return false;
        red.Set(Load32(masks));
        green.Set(Load32(masks + 4));
        blue.Set(Load32(masks + 8));
        if (infoSize >= 56)
            alpha.Set(Load32(masks + 12));
        else if (compression == BmpAlphaBitFields && uint64_t(BmpFileHeader) + 56 <= uint64_t(size))
            alpha.Set(Load32(masks + 12));
    } else if (compression == BmpRgb) {
        if (bitCount == 16) {
            red.Set(0x7c00);
            green.Set(0x03e0);
            blue.Set(0x001f);
        } else if (bitCount == 32) {
            red.Set(0xff0000);
            green.Set(0xff00);
            blue.Set(0xff);
        }
    } else {
        return false; // run-length encoded and embedded JPEG or PNG
    }

    // ---- Palette of the 1-, 4- and 8-bit layouts
    MColour palette[256];
    int32_t paletteCount = 0;
    if (bitCount == 1 || bitCount == 4 || bitCount == 8) {
        paletteCount = coloursUsed ? int32_t(coloursUsed) : 1 << bitCount;
        if (paletteCount > 256) paletteCount = 256;
        const uint8_t* entries = info + infoSize;
        if (compression == BmpBitFields) entries += 12;
        if (entries + int64_t(paletteCount) * entryBytes > bytes + size) return false;
        for (int32_t i = 0; i < paletteCount; i++) {
            palette[i].b = entries[i * entryBytes];
            palette[i].g = entries[i * entryBytes + 1];
            palette[i].r = entries[i * entryBytes + 2];
        }
    } else if (bitCount != 16 && bitCount != 24 && bitCount != 32) {
        return false;
    }

    uint64_t stride = (uint64_t(width) * bitCount + 31) / 32 * 4;
    if (dataOffset > uint32_t(size) || uint64_t(size) - dataOffset < stride * uint64_t(height))
        return false;
    int32_t format = bitCount == 24 ? PictureBgr8 : PictureBgra8;
    if (!picture.Allocate(int32_t(width), int32_t(height), format)) return false;

    // ---- Pixels
    for (int64_t y = 0; y < height; y++) {
        const uint8_t* row = bytes + dataOffset + stride * uint64_t(topDown ? y : height - 1 - y);
        uint8_t* out = picture.Pixels + y * picture.Pitch;
        if (bitCount == 24) {
            std::memcpy(out, row, size_t(width) * 3);
            continue;
        }
        for (int64_t x = 0; x < width; x++, out += 4) {
            MColour colour;
            if (bitCount <= 8) {
                uint32_t bitsAt = uint32_t(x * bitCount);
                uint32_t index =
                    (row[bitsAt / 8] >> (8 - bitCount - bitsAt % 8)) & ((1u << bitCount) - 1);
                if (int32_t(index) < paletteCount)
                    colour = palette[index];
                else
                    colour = MColour();
            } else {
                uint32_t value = bitCount == 16 ? Load16(row + x * 2) : Load32(row + x * 4);
                colour.r = red.Of(value);
                colour.g = green.Of(value);
                colour.b = blue.Of(value);
                colour.a = alpha.Of(value);
            }
            WritePixel(colour, out, PictureBgra8);
        }
    }
    return true;
}

bool WriteBmp(const MPicture& picture, MVector<uint8_t>& bytes, int32_t& size) {
    size = 0;
    if (!picture.IsUsable()) return false;
    uint64_t stride = (uint64_t(picture.Width) * 3 + 3) / 4 * 4;
    uint64_t total = BmpFileHeader + 40 + stride * uint64_t(picture.Height);
    if (total > 0x7fffffff || !bytes.SetCount(int32_t(total))) return false;
    uint8_t* file = bytes.Data;
    std::memset(file, 0, size_t(total));
    file[0] = 'B';
    file[1] = 'M';
    Store32(file + 2, uint32_t(total));
    Store32(file + 10, BmpFileHeader + 40);
    uint8_t* info = file + BmpFileHeader;
    Store32(info, 40);
    Store32(info + 4, picture.Width);
    Store32(info + 8, uint32_t(picture.Height));
    Store16(info + 12, 1);
    Store16(info + 14, 24);
    Store32(info + 20, uint32_t(stride * uint64_t(picture.Height)));
    Store32(info + 24, 3780); // 96 dots per inch, in dots per metre
    Store32(info + 28, 3780);
    int32_t bytesPerPixel = PictureBytesPerPixel(picture.Format);
    for (int32_t y = 0; y < picture.Height; y++) {
        uint8_t* out = file + BmpFileHeader + 40 + stride * uint64_t(picture.Height - 1 - y);
        const uint8_t* at = picture.Pixels + int64_t(y) * picture.Pitch;
        for (uint32_t x = 0; x < picture.Width; x++, at += bytesPerPixel, out += 3) {
            MColour colour = ReadPixel(at, picture.Format);
            out[0] = colour.b;
            out[1] = colour.g;
            out[2] = colour.r;
        }
    }
    size = int32_t(total);
    return true;
}
