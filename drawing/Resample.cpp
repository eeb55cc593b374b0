// Resampling by a box filter of our own, not the platform's scaler, so that
// a reduced picture is the same in every build. The average is alpha-aware:
// a transparent pixel adds to the alpha of the result but not to its colour,
// so the colour of a logo on a transparent background does not darken at its
// edge.

#include "drawing/MPicture.h"

#include <cmath>

namespace {

enum Precision { Precision8, Precision16, PrecisionHalf };

Precision PrecisionOf(int32_t format) {
    switch (format) {
    case PictureGray16:
    case PictureRgb16:
    case PictureRgba16:
        return Precision16;
    case PictureGrayHalf:
    case PictureRgbHalf:
    case PictureRgbaHalf:
        return PrecisionHalf;
    default:
        return Precision8;
    }
}

uint16_t Load16(const uint8_t* at) {
    return uint16_t(at[0] | (at[1] << 8));
}

void Store16(uint8_t* at, uint16_t value) {
    at[0] = uint8_t(value);
    at[1] = uint8_t(value >> 8);
}

// A pixel as red, green, blue, alpha in the precision of its format: 0 to 255,
// 0 to 65535, or the half floats' values. A missing alpha is full.
void ReadChannels(const uint8_t* at, int32_t format, double* out) {
    switch (PrecisionOf(format)) {
    case Precision8: {
        MColour colour = ReadPixel(at, format);
        out[0] = colour.r;
        out[1] = colour.g;
        out[2] = colour.b;
        out[3] = colour.a;
        return;
    }
    case Precision16:
        if (format == PictureGray16) {
            out[0] = out[1] = out[2] = Load16(at);
            out[3] = 65535;
            return;
        }
        for (int32_t c = 0; c < 3; c++)
            out[c] = Load16(at + 2 * c);
        out[3] = format == PictureRgba16 ? Load16(at + 6) : 65535;
        return;
    case PrecisionHalf:
        if (format == PictureGrayHalf) {
            out[0] = out[1] = out[2] = HalfToFloat(Load16(at));
            out[3] = 1;
            return;
        }
        for (int32_t c = 0; c < 3; c++)
            out[c] = HalfToFloat(Load16(at + 2 * c));
        out[3] = format == PictureRgbaHalf ? HalfToFloat(Load16(at + 6)) : 1;
        return;
    }
}

// A channel of a given precision as the byte ReadPixel would make of it.
uint8_t ChannelByte(double value, Precision precision) {
    if (precision == Precision8) return uint8_t(value);
    if (precision == Precision16) return uint8_t(uint32_t(value) >> 8);
    float scaled = float(value) * 255.0f;
    if (!(scaled > 0)) return 0;
    if (scaled >= 255) return 255;
    return uint8_t(scaled);
}

// Writes averaged channels (red, green, blue, alpha in the source's
// precision) to a pixel of format. Between equal precisions the values go
// straight in; otherwise through the 8-bit channels of WritePixel.
void WriteChannels(const double* value, Precision precision, uint8_t* at, int32_t format) {
    Precision target = PrecisionOf(format);
    if (target == precision && precision != Precision8) {
        int32_t channels = format == PictureGray16 || format == PictureGrayHalf ? 1
                           : PictureHasAlpha(format)                            ? 4
                                                                                : 3;
        for (int32_t c = 0; c < channels; c++)
            Store16(at + 2 * c,
                    precision == Precision16 ? uint16_t(value[c]) : FloatToHalf(float(value[c])));
        return;
    }
    MColour colour;
    colour.r = ChannelByte(value[0], precision);
    colour.g = ChannelByte(value[1], precision);
    colour.b = ChannelByte(value[2], precision);
    colour.a = ChannelByte(value[3], precision);
    WritePixel(colour, at, format);
}

} // namespace

bool MPicture::Resample(const MPicture& source, int32_t width, int32_t height, int32_t format) {
    Free();
    if (!source.IsUsable() || width < 1 || height < 1) return false;
    if (!Allocate(width, height, format)) return false;
    int64_t sourceWidth = int64_t(source.Width), sourceHeight = source.Height;
    if (width == sourceWidth && height == sourceHeight) {
        Copy(source);
        return true;
    }

    // ---- Taps: as many as the larger reduction needs, 2 to 32 each way.
    double ratio = double(sourceWidth) / width;
    if (double(sourceHeight) / height > ratio) ratio = double(sourceHeight) / height;
    int32_t taps = int32_t(std::ceil(ratio));
    if (taps < 2) taps = 2;
    if (taps > 32) taps = 32;
    int32_t tapsAcross = width == 1 ? 1 : taps;
    int32_t tapsDown = height == 1 ? 1 : taps;

    Precision precision = PrecisionOf(source.Format);
    bool integers = precision != PrecisionHalf;
    bool alphaOut = PictureHasAlpha(format);
    int32_t sourceBytes = PictureBytesPerPixel(source.Format);
    int32_t targetBytes = PictureBytesPerPixel(format);

    // ---- One output pixel at a time
    for (int32_t y = 0; y < height; y++) {
        int64_t top = int64_t(y) * sourceHeight / height;
        uint8_t* out = Pixels + int64_t(y) * Pitch;
        for (int32_t x = 0; x < width; x++, out += targetBytes) {
            int64_t left = int64_t(x) * sourceWidth / width;
            double sum[4] = {0, 0, 0, 0};
            int32_t counted = 0, coloured = 0;
            for (int32_t dy = 0; dy < tapsDown; dy++) {
                int64_t row = top + dy;
                if (row >= sourceHeight) continue;
                const uint8_t* line = source.Pixels + row * int64_t(source.Pitch);
                for (int32_t dx = 0; dx < tapsAcross; dx++) {
                    int64_t column = left + dx;
                    if (column >= sourceWidth) continue;
                    double channels[4];
                    ReadChannels(line + column * sourceBytes, source.Format, channels);
                    counted++;
                    sum[3] += channels[3];
                    if (alphaOut && channels[3] == 0) continue;
                    coloured++;
                    for (int32_t c = 0; c < 3; c++)
                        sum[c] += channels[c];
                }
            }
            if (counted == 0) continue; // the block is zero already
            double value[4];
            int32_t colourCount = alphaOut ? coloured : counted;
            for (int32_t c = 0; c < 4; c++) {
                int32_t count = c == 3 ? counted : colourCount;
                if (count == 0) {
                    value[c] = 0;
                } else if (integers) {
                    // Sums of at most 32 * 32 values of 16 bits are exact in
                    // a double, and so is their truncated quotient.
                    value[c] = std::floor(sum[c] / count);
                } else {
                    value[c] = float(float(sum[c]) / float(count));
                }
            }
            WriteChannels(value, precision, out, format);
        }
    }
    return true;
}
