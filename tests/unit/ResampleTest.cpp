// Resampling by the box filter: the tap count and its limits, the window of
// each output pixel, alpha-aware averaging (a logo keeps its colours at its
// edge), the precisions of the sources, and a comparison with a plain box
// filter written here from the rules.

#include "drawing/MPicture.h"

#include "PictureTestSupport.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstring>
#include <random>

namespace {

MColour Bgra(int b, int g, int r, int a) {
    MColour c;
    c.b = uint8_t(b);
    c.g = uint8_t(g);
    c.r = uint8_t(r);
    c.a = uint8_t(a);
    return c;
}

void ExpectPixel(const MPicture& picture, int x, int y, int b, int g, int r, int a) {
    MColour c = ReadPixel(picture.PixelAddress(x, y), picture.Format);
    EXPECT_EQ(int(c.b), b) << x << "," << y;
    EXPECT_EQ(int(c.g), g) << x << "," << y;
    EXPECT_EQ(int(c.r), r) << x << "," << y;
    EXPECT_EQ(int(c.a), a) << x << "," << y;
}

void Put16(uint8_t* at, uint16_t value) {
    at[0] = uint8_t(value);
    at[1] = uint8_t(value >> 8);
}
uint16_t Get16(const uint8_t* at) {
    return uint16_t(at[0] | (at[1] << 8));
}

// The box filter as the rules state it, for 8-bit sources: n taps each way
// (the larger reduction rounded up, 2 to 32), the window at
// (x * sw / nw, y * sh / nh), pixels outside skipped, an axis of size 1 not
// sampled; with alpha in the output, colour averages only the taps whose
// alpha is not zero and alpha averages all taps.
MColour BoxPixel(const MPicture& source, int nw, int nh, bool alphaOut, int x, int y) {
    int sw = int(source.Width), sh = source.Height;
    double ratio = std::max(double(sw) / nw, double(sh) / nh);
    int n = std::min(32, std::max(2, int(std::ceil(ratio))));
    int x0 = int(int64_t(x) * sw / nw), y0 = int(int64_t(y) * sh / nh);
    long sum[4] = {0, 0, 0, 0};
    int all = 0, coloured = 0;
    for (int dy = 0; dy < (nh == 1 ? 1 : n); dy++)
        for (int dx = 0; dx < (nw == 1 ? 1 : n); dx++) {
            int sx = x0 + dx, sy = y0 + dy;
            if (sx >= sw || sy >= sh) continue;
            MColour c = ReadPixel(source.PixelAddress(sx, sy), source.Format);
            all++;
            sum[3] += c.a;
            if (alphaOut && c.a == 0) continue;
            coloured++;
            sum[0] += c.b, sum[1] += c.g, sum[2] += c.r;
        }
    int colourCount = alphaOut ? coloured : all;
    MColour result = Bgra(0, 0, 0, 0);
    if (all == 0) return result;
    if (colourCount > 0)
        result = Bgra(int(sum[0] / colourCount), int(sum[1] / colourCount),
                      int(sum[2] / colourCount), 0);
    result.a = uint8_t(alphaOut ? sum[3] / all : 255);
    return result;
}

void ExpectBoxFilter(const MPicture& source, int nw, int nh, int32_t format) {
    MPicture result;
    ASSERT_TRUE(result.Resample(source, nw, nh, format));
    ASSERT_EQ(result.Width, uint32_t(nw));
    ASSERT_EQ(result.Height, nh);
    ASSERT_EQ(result.Format, format);
    bool alphaOut = format == PictureBgra8;
    for (int y = 0; y < nh; y++)
        for (int x = 0; x < nw; x++) {
            MColour want = BoxPixel(source, nw, nh, alphaOut, x, y);
            MColour got = ReadPixel(result.PixelAddress(x, y), format);
            ASSERT_TRUE(want.b == got.b && want.g == got.g && want.r == got.r && want.a == got.a)
                << nw << "x" << nh << " at " << x << "," << y << ": got " << int(got.b) << " "
                << int(got.g) << " " << int(got.r) << " " << int(got.a) << ", want " << int(want.b)
                << " " << int(want.g) << " " << int(want.r) << " " << int(want.a);
        }
}

} // namespace

TEST(ResampleTest, AGrayPictureHalvedAveragesTwoByTwoTruncated) {
    MPicture source, result;
    ASSERT_TRUE(source.Allocate(4, 4, PictureGray8));
    for (int i = 0; i < 16; i++)
        source.Pixels[i] = uint8_t(i);
    ASSERT_TRUE(result.Resample(source, 2, 2, PictureGray8));
    EXPECT_EQ(result.Pixels[0], 2);  // (0 + 1 + 4 + 5) / 4 = 2.5
    EXPECT_EQ(result.Pixels[1], 4);  // (2 + 3 + 6 + 7) / 4
    EXPECT_EQ(result.Pixels[2], 10); // (8 + 9 + 12 + 13) / 4 = 10.5
    EXPECT_EQ(result.Pixels[3], 12);
}

TEST(ResampleTest, EnlargingStillTakesTwoTapsAndSkipsThoseOutside) {
    MPicture source, result;
    ASSERT_TRUE(source.Allocate(2, 1, PictureBgr8));
    WritePixel(Bgra(0, 0, 0, 255), source.PixelAddress(0, 0), PictureBgr8);
    WritePixel(Bgra(31, 20, 10, 255), source.PixelAddress(1, 0), PictureBgr8);
    ASSERT_TRUE(result.Resample(source, 4, 1, PictureBgr8));
    // Windows start at 0, 0, 1, 1; the second tap of 1 lies outside.
    ExpectPixel(result, 0, 0, 15, 10, 5, 255);
    ExpectPixel(result, 1, 0, 15, 10, 5, 255);
    ExpectPixel(result, 2, 0, 31, 20, 10, 255);
    ExpectPixel(result, 3, 0, 31, 20, 10, 255);
}

TEST(ResampleTest, TheTapCountStopsAtThirtyTwo) {
    MPicture source, result;
    ASSERT_TRUE(source.Allocate(100, 1, PictureGray8));
    for (int x = 0; x < 100; x++)
        source.Pixels[x] = uint8_t(x);
    ASSERT_TRUE(result.Resample(source, 2, 1, PictureGray8));
    EXPECT_EQ(result.Pixels[0], 15); // 0 to 31, not 0 to 49
    EXPECT_EQ(result.Pixels[1], 65); // 50 to 81
}

TEST(ResampleTest, AnAxisOfSizeOneIsNotSampled) {
    MPicture source, result;
    ASSERT_TRUE(source.Allocate(4, 2, PictureGray8));
    const uint8_t pixels[8] = {10, 200, 200, 200, 30, 200, 200, 200};
    std::memcpy(source.Pixels, pixels, 8);
    ASSERT_TRUE(result.Resample(source, 1, 2, PictureGray8));
    // Four taps down from each row's start, column 0 only.
    EXPECT_EQ(result.Pixels[0], 20);
    EXPECT_EQ(result.Pixels[1], 30);
    ASSERT_TRUE(result.Resample(source, 1, 1, PictureGray8));
    EXPECT_EQ(result.Pixels[0], 10);
}

TEST(ResampleTest, ALogoOnTransparentBackgroundKeepsItsColoursAtItsEdge) {
    // A disc of one colour on fully transparent black.
    MPicture logo;
    ASSERT_TRUE(logo.Allocate(64, 64, PictureBgra8));
    for (int y = 0; y < 64; y++)
        for (int x = 0; x < 64; x++) {
            bool inside = (x - 31.5) * (x - 31.5) + (y - 31.5) * (y - 31.5) < 24 * 24;
            WritePixel(inside ? Bgra(40, 120, 200, 255) : Bgra(0, 0, 0, 0), logo.PixelAddress(x, y),
                       PictureBgra8);
        }
    MPicture small;
    ASSERT_TRUE(small.Resample(logo, 20, 20, PictureBgra8));
    int edge = 0;
    for (int y = 0; y < 20; y++)
        for (int x = 0; x < 20; x++) {
            MColour c = ReadPixel(small.PixelAddress(x, y), PictureBgra8);
            if (c.a == 0) {
                EXPECT_TRUE(c.b == 0 && c.g == 0 && c.r == 0);
                continue;
            }
            if (c.a < 255) edge++;
            EXPECT_EQ(int(c.b), 40) << x << "," << y;
            EXPECT_EQ(int(c.g), 120) << x << "," << y;
            EXPECT_EQ(int(c.r), 200) << x << "," << y;
        }
    EXPECT_GT(edge, 10);

    // Half a window on the logo: full colour at half alpha, where plain
    // averaging would darken it by half.
    MPicture strip;
    ASSERT_TRUE(strip.Allocate(4, 2, PictureBgra8));
    for (int y = 0; y < 2; y++)
        for (int x = 0; x < 4; x++)
            WritePixel(x < 3 ? Bgra(40, 120, 200, 255) : Bgra(0, 0, 0, 0), strip.PixelAddress(x, y),
                       PictureBgra8);
    MPicture half;
    ASSERT_TRUE(half.Resample(strip, 2, 1, PictureBgra8));
    ExpectPixel(half, 1, 0, 40, 120, 200, 127);
    // Without alpha in the output every tap counts.
    ASSERT_TRUE(half.Resample(strip, 2, 1, PictureBgr8));
    ExpectPixel(half, 1, 0, 20, 60, 100, 255);
}

TEST(ResampleTest, AWindowOfOnlyTransparentPixelsGivesZero) {
    MPicture source, result;
    ASSERT_TRUE(source.Allocate(4, 4, PictureBgra8));
    for (int i = 0; i < 16; i++)
        WritePixel(Bgra(90, 90, 90, i < 8 ? 0 : 255), source.Pixels + 4 * i, PictureBgra8);
    ASSERT_TRUE(result.Resample(source, 2, 2, PictureBgra8));
    ExpectPixel(result, 0, 0, 0, 0, 0, 0);
    ExpectPixel(result, 1, 1, 90, 90, 90, 255);
}

TEST(ResampleTest, SixteenBitSourcesAverageOnSixteenBits) {
    MPicture source, result;
    ASSERT_TRUE(source.Allocate(4, 1, PictureRgba16));
    const uint16_t channels[4][4] = {{0x01FF, 0x0100, 0x0000, 0xFFFF},
                                     {0x0201, 0x0300, 0xFFFF, 0x0000},
                                     {0x1000, 0x2000, 0x3000, 0x4000},
                                     {0x1002, 0x2004, 0x3006, 0x4008}};
    for (int x = 0; x < 4; x++)
        for (int c = 0; c < 4; c++)
            Put16(source.Pixels + x * 8 + c * 2, channels[x][c]);
    ASSERT_TRUE(result.Resample(source, 2, 1, PictureRgba16));
    // The second tap is transparent: its colour does not count, its alpha does.
    EXPECT_EQ(Get16(result.Pixels), 0x01FF);
    EXPECT_EQ(Get16(result.Pixels + 6), 0x7FFF);
    EXPECT_EQ(Get16(result.Pixels + 8), 0x1001);
    EXPECT_EQ(Get16(result.Pixels + 10), 0x2002);
    EXPECT_EQ(Get16(result.Pixels + 12), 0x3003);
    EXPECT_EQ(Get16(result.Pixels + 14), 0x4004);

    // Towards 8 bits the 16-bit average gives its high byte: 0x01FF and
    // 0x0201 average to 0x0200, where averaging the high bytes would give 1.
    MPicture rgb;
    ASSERT_TRUE(rgb.Allocate(2, 1, PictureRgb16));
    Put16(rgb.Pixels, 0x01FF);
    Put16(rgb.Pixels + 6, 0x0201);
    ASSERT_TRUE(result.Resample(rgb, 1, 1, PictureBgr8));
    EXPECT_EQ(result.Pixels[2], 0x01); // one axis of 1 each way: pixel 0 alone
    ASSERT_TRUE(rgb.Allocate(4, 1, PictureRgb16));
    Put16(rgb.Pixels, 0x01FF);
    Put16(rgb.Pixels + 6, 0x0201);
    ASSERT_TRUE(result.Resample(rgb, 2, 1, PictureBgr8));
    EXPECT_EQ(result.Pixels[2], 0x02);
}

TEST(ResampleTest, HalfFloatSourcesAverageAsFloats) {
    MPicture source, result;
    ASSERT_TRUE(source.Allocate(4, 1, PictureRgbaHalf));
    const uint16_t one = 0x3C00, quarter = 0x3400, half = 0x3800;
    const uint16_t pixels[4][4] = {
        {quarter, 0, 0, one}, {half, 0, 0, one}, {one, 0, 0, one}, {one, 0, 0, 0}};
    for (int x = 0; x < 4; x++)
        for (int c = 0; c < 4; c++)
            Put16(source.Pixels + x * 8 + c * 2, pixels[x][c]);
    ASSERT_TRUE(result.Resample(source, 2, 1, PictureRgbaHalf));
    EXPECT_EQ(Get16(result.Pixels), 0x3600);     // 0.375
    EXPECT_EQ(Get16(result.Pixels + 6), 0x3C00); // 1.0
    EXPECT_EQ(Get16(result.Pixels + 8), 0x3C00); // the transparent tap's colour is left out
    EXPECT_EQ(Get16(result.Pixels + 14), 0x3800);
}

TEST(ResampleTest, EqualSizesAreACopy) {
    MPicture source, result;
    ASSERT_TRUE(source.Allocate(3, 2, PictureBgra8));
    for (int i = 0; i < 24; i++)
        source.Pixels[i] = uint8_t(i * 9);
    ASSERT_TRUE(result.Resample(source, 3, 2, PictureBgra8));
    EXPECT_EQ(0, std::memcmp(result.Pixels, source.Pixels, 24));
    ASSERT_TRUE(result.Resample(source, 3, 2, PictureBgr8));
    ExpectPixel(result, 2, 1, 180, 189, 198, 255);
    // A copy between formats that do not convert writes nothing.
    ASSERT_TRUE(result.Resample(source, 3, 2, PictureGray8));
    for (int i = 0; i < 6; i++)
        EXPECT_EQ(result.Pixels[i], 0);
}

TEST(ResampleTest, NothingComesOfAnUnusableSourceOrSize) {
    MPicture source, result;
    EXPECT_FALSE(result.Resample(source, 2, 2, PictureBgra8));
    ASSERT_TRUE(source.Allocate(3, 2, PictureBgra8));
    EXPECT_FALSE(result.Resample(source, 0, 2, PictureBgra8));
    EXPECT_FALSE(result.Resample(source, 2, -1, PictureBgra8));
    EXPECT_FALSE(result.Resample(source, 2, 2, 0));
    EXPECT_EQ(result.Pixels, nullptr);
}

TEST(ResampleTest, ResultsMatchAPlainBoxFilter) {
    std::mt19937 random(777);
    MPicture source;
    ASSERT_TRUE(source.Allocate(37, 29, PictureBgra8));
    for (int i = 0; i < 37 * 29; i++) {
        uint32_t value = random();
        // A quarter of the pixels fully transparent, some half.
        int alpha = value % 4 == 0 ? 0 : value % 4 == 1 ? int(value >> 24) : 255;
        WritePixel(
            Bgra(int(value >> 8) & 255, int(value >> 16) & 255, int(value >> 4) & 255, alpha),
            source.Pixels + 4 * i, PictureBgra8);
    }
    const int sizes[][2] = {{11, 8}, {18, 14}, {5, 29}, {37, 3},  {1, 7},
                            {9, 1},  {50, 40}, {2, 2},  {36, 29}, {13, 13}};
    for (const auto& size : sizes) {
        ExpectBoxFilter(source, size[0], size[1], PictureBgra8);
        ExpectBoxFilter(source, size[0], size[1], PictureBgr8);
    }
    MPicture bgr;
    ASSERT_TRUE(bgr.Allocate(37, 29, PictureBgr8));
    ASSERT_TRUE(bgr.Copy(source));
    ExpectBoxFilter(bgr, 7, 6, PictureBgra8);
    ExpectBoxFilter(bgr, 7, 6, PictureBgr8);
}
