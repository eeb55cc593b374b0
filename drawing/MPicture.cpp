// The picture itself: its block, the per-pixel conversions between the nine
// formats and 8-bit blue, green, red, alpha, the copies between formats, and
// the choice of loader and writer by extension.

#include "drawing/MPicture.h"

#include <cstdlib>
#include <cstring>

// ---- Formats

int32_t PictureBytesPerPixel(int32_t format) {
    static const int32_t Bytes[10] = {0, 1, 2, 2, 3, 6, 6, 4, 8, 8};
    return format >= 0 && format <= 9 ? Bytes[format] : 0;
}

bool PictureHasAlpha(int32_t format) {
    return format == PictureBgra8 || format == PictureRgba16 || format == PictureRgbaHalf;
}

// ---- Half floats

float HalfToFloat(uint16_t half) {
    uint32_t sign = uint32_t(half & 0x8000u) << 16;
    uint32_t exponent = (half >> 10) & 0x1f;
    uint32_t mantissa = half & 0x3ffu;
    uint32_t bits;
    if (exponent == 0x1f) {
        bits = sign | 0x7f800000u | (mantissa << 13);
    } else if (exponent != 0) {
        bits = sign | ((exponent + 112) << 23) | (mantissa << 13);
    } else if (mantissa == 0) {
        bits = sign;
    } else {
        // A subnormal half is a normal float: shift the mantissa up to its
        // leading one.
        int32_t shift = 0;
        while (!(mantissa & 0x400u)) {
            mantissa <<= 1;
            shift++;
        }
        bits = sign | (uint32_t(113 - shift) << 23) | ((mantissa & 0x3ffu) << 13);
    }
    float value;
    std::memcpy(&value, &bits, 4);
    return value;
}

uint16_t FloatToHalf(float value) {
    uint32_t bits;
    std::memcpy(&bits, &value, 4);
    uint16_t sign = uint16_t((bits >> 16) & 0x8000u);
    int32_t exponent = int32_t((bits >> 23) & 0xff);
    uint32_t mantissa = bits & 0x7fffffu;
    if (exponent == 0xff) return uint16_t(sign | 0x7c00u | (mantissa ? 0x200u : 0));
    int32_t halfExponent = exponent - 112;
    if (halfExponent >= 0x1f) return uint16_t(sign | 0x7c00u);
    uint32_t full; // the mantissa with its leading one, 24 bits
    int32_t shift; // bits dropped to reach the half's mantissa
    if (halfExponent <= 0) {
        if (halfExponent < -10) return sign;
        full = mantissa | 0x800000u;
        shift = 14 - halfExponent;
    } else {
        full = mantissa;
        shift = 13;
    }
    uint32_t kept = full >> shift;
    uint32_t rest = full & ((1u << shift) - 1);
    uint32_t halfway = 1u << (shift - 1);
    if (rest > halfway || (rest == halfway && (kept & 1))) kept++;
    // A carry out of the mantissa moves into the exponent, which is right.
    if (halfExponent <= 0) return uint16_t(sign | kept);
    return uint16_t(sign | ((uint32_t(halfExponent) << 10) + kept));
}

// ---- The picture's block

namespace {

// Every field as a new picture has it; the block is the caller's business.
void ResetFields(MPicture& picture) {
    picture.Width = 0;
    picture.Height = 0;
    picture.Format = PictureNone;
    picture.Pitch = 0;
    picture.Pixels = nullptr;
    picture.TopDown = true;
    picture.FrameCount = 1;
    picture.FrameDelay = 100;
    picture.FrameDisposal = 0;
    picture.FrameLeft = picture.FrameTop = 0;
    picture.FrameWidth = picture.FrameHeight = 0;
}

} // namespace

void MPicture::Free() {
    std::free(Pixels);
    ResetFields(*this);
}

// Moving hands the block over; the source is left empty.
MPicture& MPicture::operator=(MPicture&& other) noexcept {
    if (this == &other) return *this;
    std::free(Pixels);
    Width = other.Width;
    Height = other.Height;
    Format = other.Format;
    Pitch = other.Pitch;
    Pixels = other.Pixels;
    TopDown = other.TopDown;
    FrameCount = other.FrameCount;
    FrameDelay = other.FrameDelay;
    FrameDisposal = other.FrameDisposal;
    FrameLeft = other.FrameLeft;
    FrameTop = other.FrameTop;
    FrameWidth = other.FrameWidth;
    FrameHeight = other.FrameHeight;
    ResetFields(other);
    return *this;
}

bool MPicture::Allocate(int32_t width, int32_t height, int32_t format) {
    Free();
    int32_t bytes = PictureBytesPerPixel(format);
    if (width < 1 || height < 1 || bytes == 0) return false;
    uint64_t pitch = uint64_t(width) * uint64_t(bytes);
    uint64_t size = pitch * uint64_t(height);
    if (pitch > 0xffffffffu) return false;
    uint8_t* block = static_cast<uint8_t*>(AllocatePictureBlock(size));
    if (!block) return false;
    std::memset(block, 0, size_t(size));
    Width = uint32_t(width);
    Height = height;
    Format = format;
    Pitch = uint32_t(pitch);
    Pixels = block;
    return true;
}

bool MPicture::IsUsable() const {
    if (Width == 0 || Height == 0 || Format == 0 || !Pixels || Pitch == 0) return false;
    if (Format == PictureBgr8 && uint64_t(Pitch) < uint64_t(Width) * 3) return false;
    if (Format == PictureBgra8 && uint64_t(Pitch) < uint64_t(Width) * 4) return false;
    return true;
}

// ---- Pixels

uint8_t* MPicture::PixelAddress(int32_t x, int32_t y) const {
    if (!IsUsable()) return nullptr;
    // Repeated steps rather than a remainder: callers pass coordinates at
    // most one size outside, and the wrap must work for negative ones.
    int64_t column = x, row = y;
    int64_t width = int64_t(Width), height = Height;
    while (column < 0)
        column += width;
    while (column >= width)
        column -= width;
    while (row < 0)
        row += height;
    while (row >= height)
        row -= height;
    return Pixels + row * int64_t(Pitch) + column * PictureBytesPerPixel(Format);
}

namespace {

uint16_t Load16(const uint8_t* at) {
    return uint16_t(at[0] | (at[1] << 8));
}

void Store16(uint8_t* at, uint16_t value) {
    at[0] = uint8_t(value & 0xff);
    at[1] = uint8_t(value >> 8);
}

uint8_t HalfToByte(const uint8_t* at) {
    float value = HalfToFloat(Load16(at)) * 255.0f;
    if (!(value > 0)) return 0;
    if (value >= 255) return 255;
    return uint8_t(value);
}

// A byte as a 16-bit channel: the byte is the high byte, 255 the low byte.
uint16_t ByteTo16(uint8_t byte) {
    return uint16_t((byte << 8) | 0xff);
}

uint16_t ByteToHalf(uint8_t byte) {
    return FloatToHalf(float(byte) * (1.0f / 256.0f));
}

} // namespace

MColour ReadPixel(const uint8_t* at, int32_t format) {
    MColour colour; // alpha 255 unless the format has its own
    switch (format) {
    case PictureGray8:
        colour.b = colour.g = colour.r = at[0];
        break;
    case PictureGray16:
        colour.b = colour.g = colour.r = at[1];
        break;
    case PictureGrayHalf:
        colour.b = colour.g = colour.r = HalfToByte(at);
        break;
    case PictureBgr8:
    case PictureBgra8:
        colour.b = at[0];
        colour.g = at[1];
        colour.r = at[2];
        if (format == PictureBgra8) colour.a = at[3];
        break;
    case PictureRgb16:
    case PictureRgba16:
        colour.r = at[1];
        colour.g = at[3];
        colour.b = at[5];
        if (format == PictureRgba16) colour.a = at[7];
        break;
    case PictureRgbHalf:
    case PictureRgbaHalf:
        colour.r = HalfToByte(at);
        colour.g = HalfToByte(at + 2);
        colour.b = HalfToByte(at + 4);
        if (format == PictureRgbaHalf) colour.a = HalfToByte(at + 6);
        break;
    default:
        break;
    }
    return colour;
}

void WritePixel(MColour colour, uint8_t* at, int32_t format) {
    switch (format) {
    case PictureGray8:
        at[0] = colour.r;
        break;
    case PictureGray16:
        Store16(at, ByteTo16(colour.r));
        break;
    case PictureGrayHalf:
        Store16(at, ByteToHalf(colour.r));
        break;
    case PictureBgr8:
    case PictureBgra8:
        at[0] = colour.b;
        at[1] = colour.g;
        at[2] = colour.r;
        if (format == PictureBgra8) at[3] = colour.a;
        break;
    case PictureRgb16:
    case PictureRgba16:
        Store16(at, ByteTo16(colour.r));
        Store16(at + 2, ByteTo16(colour.g));
        Store16(at + 4, ByteTo16(colour.b));
        if (format == PictureRgba16) Store16(at + 6, ByteTo16(colour.a));
        break;
    case PictureRgbHalf:
    case PictureRgbaHalf:
        Store16(at, ByteToHalf(colour.r));
        Store16(at + 2, ByteToHalf(colour.g));
        Store16(at + 4, ByteToHalf(colour.b));
        if (format == PictureRgbaHalf) Store16(at + 6, ByteToHalf(colour.a));
        break;
    default:
        break;
    }
}

bool MPicture::HasTransparency() const {
    if (!IsUsable() || !PictureHasAlpha(Format)) return false;
    int32_t bytes = PictureBytesPerPixel(Format);
    for (int32_t y = 0; y < Height; y++) {
        const uint8_t* at = Pixels + int64_t(y) * Pitch;
        for (uint32_t x = 0; x < Width; x++, at += bytes)
            if (ReadPixel(at, Format).a < 255) return true;
    }
    return false;
}

void MPicture::FlipVertical() {
    if (!IsUsable()) return;
    for (int32_t top = 0, bottom = Height - 1; top < bottom; top++, bottom--) {
        uint8_t* a = Pixels + int64_t(top) * Pitch;
        uint8_t* b = Pixels + int64_t(bottom) * Pitch;
        for (uint32_t i = 0; i < Pitch; i++) {
            uint8_t keep = a[i];
            a[i] = b[i];
            b[i] = keep;
        }
    }
    TopDown = !TopDown;
}

// ---- Copies

bool CopyPixels(const MPicture& source, uint8_t* pixels, uint32_t pitch, int32_t format) {
    if (!source.IsUsable() || !pixels) return false;
    int32_t sourceBytes = PictureBytesPerPixel(source.Format);
    int32_t targetBytes = PictureBytesPerPixel(format);
    if (targetBytes == 0 || uint64_t(pitch) < uint64_t(source.Width) * targetBytes) return false;
    if (format == source.Format && pitch == source.Pitch) {
        std::memcpy(pixels, source.Pixels, size_t(pitch) * size_t(source.Height));
        return true;
    }
    bool toEight = format == PictureBgr8 || format == PictureBgra8;
    bool wide = (source.Format == PictureRgb16 && format == PictureRgba16) ||
                (source.Format == PictureRgba16 && format == PictureRgb16);
    if (!toEight && !wide) return true;
    for (int32_t y = 0; y < source.Height; y++) {
        const uint8_t* from = source.Pixels + int64_t(y) * source.Pitch;
        uint8_t* to = pixels + int64_t(y) * pitch;
        for (uint32_t x = 0; x < source.Width; x++, from += sourceBytes, to += targetBytes) {
            if (toEight) {
                WritePixel(ReadPixel(from, source.Format), to, format);
            } else {
                std::memcpy(to, from, 6);
                if (format == PictureRgba16) to[6] = to[7] = 0xff;
            }
        }
    }
    return true;
}

bool MPicture::Copy(const MPicture& source) {
    if (!IsUsable() || !source.IsUsable()) return false;
    if (source.Width != Width || source.Height != Height) return false;
    return CopyPixels(source, Pixels, Pitch, Format);
}

bool MPicture::Crop(const MPicture& source, WRect rectangle) {
    Free();
    if (!source.IsUsable()) return false;
    int32_t left = rectangle.left < 0 ? 0 : rectangle.left;
    int32_t top = rectangle.top < 0 ? 0 : rectangle.top;
    int64_t right =
        rectangle.right > int64_t(source.Width) ? int64_t(source.Width) : rectangle.right;
    int32_t bottom = rectangle.bottom > source.Height ? source.Height : rectangle.bottom;
    if (right <= left || bottom <= top) return false;
    int32_t width = int32_t(right - left), height = bottom - top;
    if (!Allocate(width, height, source.Format)) return false;
    int32_t bytes = PictureBytesPerPixel(source.Format);
    for (int32_t y = 0; y < height; y++)
        std::memcpy(Pixels + int64_t(y) * Pitch,
                    source.Pixels + int64_t(top + y) * source.Pitch + int64_t(left) * bytes,
                    size_t(width) * size_t(bytes));
    TopDown = source.TopDown;
    return true;
}

bool PremultipliedCopy(const MPicture& source, MPicture& target) {
    target.Free();
    if (!source.IsUsable()) return false;
    if (!target.Allocate(int32_t(source.Width), source.Height, PictureBgra8)) return false;
    if (!target.Copy(source)) {
        target.Free();
        return false;
    }
    if (!PictureHasAlpha(source.Format)) return true;
    for (int32_t y = 0; y < target.Height; y++) {
        uint8_t* at = target.Pixels + int64_t(y) * target.Pitch;
        for (uint32_t x = 0; x < target.Width; x++, at += 4) {
            uint32_t alpha = at[3];
            if (alpha == 255) continue;
            for (int32_t c = 0; c < 3; c++)
                at[c] = uint8_t((at[c] * alpha) >> 8);
        }
    }
    return true;
}

// ---- Loading and saving by extension

namespace {

bool IsExtension(const MString& extension, const char16_t* name) {
    return extension == MString(name);
}

} // namespace

bool MPicture::Load(const MString& path) {
    Free();
    MString extension = path.FileExtension();
    bool loaded;
    // No look at the contents: a TGA file under another name goes to the
    // platform's decoders, which do not know TGA.
    if (IsExtension(extension, u"TGA"))
        loaded = LoadTga(*this, path);
    else if (IsExtension(extension, u"DDS"))
        loaded = LoadDds(*this, path);
    else
        loaded = PlatformLoadPicture(*this, path);
    if (!loaded || !IsUsable()) {
        Free();
        return false;
    }
    return true;
}

MPictureContainer PictureContainer(const MString& extension) {
    static const struct {
        const char16_t* Extension;
        MPictureContainer Container;
    } Table[] = {
        {u"BMP", ContainerBmp},   {u"JPG", ContainerJpeg},  {u"JPEG", ContainerJpeg},
        {u"JPE", ContainerJpeg},  {u"JFIF", ContainerJpeg}, {u"PNG", ContainerPng},
        {u"TIF", ContainerTiff},  {u"TIFF", ContainerTiff}, {u"GIF", ContainerGif},
        {u"HEIC", ContainerHeif}, {u"HEIF", ContainerHeif},
    };
    for (const auto& row : Table)
        if (IsExtension(extension, row.Extension)) return row.Container;
    return ContainerNone;
}

bool MPicture::Save(const MString& path) const {
    if (!IsUsable()) return false;
    MString extension = path.FileExtension();
    if (IsExtension(extension, u"DDS")) return SaveDds(*this, path);
    MPictureContainer container = PictureContainer(extension);
    if (container == ContainerNone) return false;
    return PlatformSavePicture(*this, path, container);
}
