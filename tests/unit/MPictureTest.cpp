// The picture: its block and usability, pixel addresses, the per-format
// reading and writing of pixels, transparency, flips, copies between formats,
// crops, loading by extension through the platform's decoders, and saving.

#include "drawing/MPicture.h"
#include "foundation/Platform.h"

#include "ForeignFilesSupport.h"
#include "PictureTestSupport.h"
#include "ScratchFolder.h"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstring>

using namespace picturetest;

namespace {

void Put16(uint8_t* at, uint16_t value) {
    at[0] = uint8_t(value);
    at[1] = uint8_t(value >> 8);
}
uint16_t Get16(const uint8_t* at) {
    return uint16_t(at[0] | (at[1] << 8));
}

MColour Bgra(uint8_t b, uint8_t g, uint8_t r, uint8_t a) {
    MColour c;
    c.b = b;
    c.g = g;
    c.r = r;
    c.a = a;
    return c;
}

void ExpectColour(MColour c, int b, int g, int r, int a) {
    EXPECT_EQ(c.b, b);
    EXPECT_EQ(c.g, g);
    EXPECT_EQ(c.r, r);
    EXPECT_EQ(c.a, a);
}

} // namespace

// ---- The block

TEST(PictureTest, AllocateGivesAZeroBlockWithTheFormatsPitch) {
    static const int32_t bytes[10] = {0, 1, 2, 2, 3, 6, 6, 4, 8, 8};
    for (int32_t format = 1; format <= 9; format++) {
        MPicture picture;
        ASSERT_TRUE(picture.Allocate(5, 3, format));
        EXPECT_EQ(picture.Width, 5u);
        EXPECT_EQ(picture.Height, 3);
        EXPECT_EQ(picture.Format, format);
        EXPECT_EQ(picture.Pitch, uint32_t(5 * bytes[format]));
        EXPECT_TRUE(picture.TopDown);
        EXPECT_EQ(picture.FrameCount, 1);
        for (uint32_t i = 0; i < picture.Pitch * 3; i++)
            ASSERT_EQ(picture.Pixels[i], 0);
        EXPECT_TRUE(picture.IsUsable());
    }
    MPicture picture;
    EXPECT_FALSE(picture.Allocate(0, 3, PictureBgr8));
    EXPECT_FALSE(picture.Allocate(3, 0, PictureBgr8));
    EXPECT_FALSE(picture.Allocate(3, 3, 10));
    EXPECT_FALSE(picture.IsUsable());
}

TEST(PictureTest, APictureIsUsableOnlyWithAllFieldsAndAPitchThatHoldsARow) {
    MPicture picture;
    ASSERT_TRUE(picture.Allocate(4, 2, PictureBgr8));
    picture.Pitch = 11; // below 4 * 3
    EXPECT_FALSE(picture.IsUsable());
    picture.Pitch = 12;
    EXPECT_TRUE(picture.IsUsable());
    picture.Format = PictureBgra8; // now 4 * 4 bytes are needed
    EXPECT_FALSE(picture.IsUsable());
    picture.Pitch = 16;
    EXPECT_TRUE(picture.IsUsable());
    picture.Format = PictureGray8; // only formats 4 and 7 check the pitch
    picture.Pitch = 1;
    EXPECT_TRUE(picture.IsUsable());
    picture.Format = 0;
    EXPECT_FALSE(picture.IsUsable());
    picture.Format = PictureGray8;
    picture.Pitch = 0;
    EXPECT_FALSE(picture.IsUsable());
    picture.Pitch = 4;
    picture.Height = 0;
    EXPECT_FALSE(picture.IsUsable());
    // Every operation tests this first: a picture that is not usable has no
    // pixel addresses and no transparency.
    picture.Height = 2;
    picture.Format = PictureBgra8;
    picture.Pixels[0] = 0;
    picture.Pitch = 15;
    EXPECT_EQ(picture.PixelAddress(0, 0), nullptr);
    EXPECT_FALSE(picture.HasTransparency());
    picture.Pitch = 16;
}

TEST(PictureTest, FreeEmptiesThePicture) {
    MPicture picture;
    ASSERT_TRUE(picture.Allocate(4, 2, PictureBgra8));
    picture.FrameCount = 3;
    picture.Free();
    EXPECT_EQ(picture.Width, 0u);
    EXPECT_EQ(picture.Height, 0);
    EXPECT_EQ(picture.Format, 0);
    EXPECT_EQ(picture.Pitch, 0u);
    EXPECT_EQ(picture.Pixels, nullptr);
    EXPECT_EQ(picture.FrameCount, 1);
    EXPECT_EQ(picture.FrameDelay, 100);
}

// ---- Pixel addresses

TEST(PictureTest, PixelAddressesWrapOnBothAxes) {
    MPicture picture;
    ASSERT_TRUE(picture.Allocate(5, 3, PictureBgr8));
    EXPECT_EQ(picture.PixelAddress(0, 0), picture.Pixels);
    EXPECT_EQ(picture.PixelAddress(2, 1), picture.Pixels + 15 + 6);
    EXPECT_EQ(picture.PixelAddress(5, 0), picture.PixelAddress(0, 0));
    EXPECT_EQ(picture.PixelAddress(7, 4), picture.PixelAddress(2, 1));
    EXPECT_EQ(picture.PixelAddress(-1, 0), picture.PixelAddress(4, 0));
    EXPECT_EQ(picture.PixelAddress(0, -1), picture.PixelAddress(0, 2));
    EXPECT_EQ(picture.PixelAddress(-11, -7), picture.PixelAddress(4, 2));
    EXPECT_EQ(picture.PixelAddress(16, 9), picture.PixelAddress(1, 0));
}

// ---- Reading and writing pixels

TEST(PictureTest, ReadPixelGivesBlueGreenRedAlphaInEveryFormat) {
    uint8_t p[8];
    p[0] = 77;
    ExpectColour(ReadPixel(p, PictureGray8), 77, 77, 77, 255);
    Put16(p, 0xA1B2);
    ExpectColour(ReadPixel(p, PictureGray16), 0xA1, 0xA1, 0xA1, 255);
    Put16(p, 0x3800); // 0.5: 127.5 truncated
    ExpectColour(ReadPixel(p, PictureGrayHalf), 127, 127, 127, 255);
    p[0] = 1, p[1] = 2, p[2] = 3, p[3] = 4;
    ExpectColour(ReadPixel(p, PictureBgr8), 1, 2, 3, 255);
    ExpectColour(ReadPixel(p, PictureBgra8), 1, 2, 3, 4);
    Put16(p, 0x1011), Put16(p + 2, 0x2022), Put16(p + 4, 0x3033), Put16(p + 6, 0x4044);
    ExpectColour(ReadPixel(p, PictureRgb16), 0x30, 0x20, 0x10, 255);
    ExpectColour(ReadPixel(p, PictureRgba16), 0x30, 0x20, 0x10, 0x40);
    // Half floats: 1.0, 2.0 (limited to 255), -1.0 (limited to 0), 0.25.
    Put16(p, 0x3C00), Put16(p + 2, 0x4000), Put16(p + 4, 0xBC00), Put16(p + 6, 0x3400);
    ExpectColour(ReadPixel(p, PictureRgbHalf), 0, 255, 255, 255);
    ExpectColour(ReadPixel(p, PictureRgbaHalf), 0, 255, 255, 63);
    Put16(p, 0x7E00); // not a number
    ExpectColour(ReadPixel(p, PictureGrayHalf), 0, 0, 0, 255);
}

TEST(PictureTest, WritePixelIsTheReverseWithItsOwnRounding) {
    uint8_t p[8];
    std::memset(p, 0xEE, sizeof p);
    WritePixel(Bgra(1, 2, 3, 4), p, PictureGray8);
    EXPECT_EQ(p[0], 3); // gray takes the red byte
    EXPECT_EQ(p[1], 0xEE);
    WritePixel(Bgra(1, 2, 0x12, 4), p, PictureGray16);
    EXPECT_EQ(Get16(p), 0x12FF); // the byte high, 255 low
    WritePixel(Bgra(1, 2, 128, 4), p, PictureGrayHalf);
    EXPECT_EQ(Get16(p), 0x3800); // 128 / 256
    std::memset(p, 0xEE, sizeof p);
    WritePixel(Bgra(1, 2, 3, 4), p, PictureBgr8);
    EXPECT_EQ(p[0], 1);
    EXPECT_EQ(p[2], 3);
    EXPECT_EQ(p[3], 0xEE);
    WritePixel(Bgra(1, 2, 3, 4), p, PictureBgra8);
    EXPECT_EQ(p[3], 4);
    WritePixel(Bgra(0x30, 0x20, 0x10, 0x40), p, PictureRgba16);
    EXPECT_EQ(Get16(p), 0x10FF);
    EXPECT_EQ(Get16(p + 2), 0x20FF);
    EXPECT_EQ(Get16(p + 4), 0x30FF);
    EXPECT_EQ(Get16(p + 6), 0x40FF);
    std::memset(p, 0xEE, sizeof p);
    WritePixel(Bgra(0x30, 0x20, 0x10, 0x40), p, PictureRgb16);
    EXPECT_EQ(Get16(p + 4), 0x30FF);
    EXPECT_EQ(Get16(p + 6), 0xEEEE);
    WritePixel(Bgra(255, 1, 0, 128), p, PictureRgbaHalf);
    EXPECT_EQ(Get16(p), 0x0000);     // 0
    EXPECT_EQ(Get16(p + 2), 0x1C00); // 1 / 256
    EXPECT_EQ(Get16(p + 4), 0x3BF8); // 255 / 256
    EXPECT_EQ(Get16(p + 6), 0x3800); // 128 / 256
    // The division by 256 against the multiplication by 255 loses one step
    // on the way back for every byte but 0.
    ExpectColour(ReadPixel(p, PictureRgbaHalf), 254, 0, 0, 127);
}

TEST(PictureTest, HalfFloatsConvertBothWays) {
    EXPECT_EQ(HalfToFloat(0x3C00), 1.0f);
    EXPECT_EQ(HalfToFloat(0xC000), -2.0f);
    EXPECT_EQ(HalfToFloat(0x0001), 5.9604644775390625e-8f); // the smallest subnormal
    EXPECT_EQ(HalfToFloat(0x7BFF), 65504.0f);
    EXPECT_EQ(FloatToHalf(1.0f), 0x3C00);
    EXPECT_EQ(FloatToHalf(65504.0f), 0x7BFF);
    EXPECT_EQ(FloatToHalf(1e6f), 0x7C00);
    EXPECT_EQ(FloatToHalf(5.9604644775390625e-8f), 0x0001);
    EXPECT_EQ(FloatToHalf(1.0f + 1.0f / 2048), 0x3C00); // a tie goes to even
    EXPECT_EQ(FloatToHalf(1.0f + 3.0f / 2048), 0x3C02);
    for (uint32_t h = 0; h < 0x7C00; h++)
        ASSERT_EQ(FloatToHalf(HalfToFloat(uint16_t(h))), h);
}

// ---- Transparency

TEST(PictureTest, OnlyAlphaFormatsWithAnAlphaBelowFullAreTransparent) {
    for (int32_t format : {1, 2, 3, 4, 5, 6}) {
        MPicture picture;
        ASSERT_TRUE(picture.Allocate(3, 2, format)); // all zero
        EXPECT_FALSE(picture.HasTransparency()) << format;
    }
    MPicture bgra;
    ASSERT_TRUE(bgra.Allocate(3, 2, PictureBgra8));
    for (int32_t i = 0; i < 6; i++)
        WritePixel(Bgra(0, 0, 0, 255), bgra.Pixels + 4 * i, PictureBgra8);
    EXPECT_FALSE(bgra.HasTransparency());
    bgra.PixelAddress(2, 1)[3] = 254;
    EXPECT_TRUE(bgra.HasTransparency());

    MPicture wide;
    ASSERT_TRUE(wide.Allocate(2, 1, PictureRgba16));
    Put16(wide.Pixels + 6, 0xFFFF);
    Put16(wide.Pixels + 14, 0xFF00); // its high byte is full
    EXPECT_FALSE(wide.HasTransparency());
    Put16(wide.Pixels + 14, 0xFEFF);
    EXPECT_TRUE(wide.HasTransparency());

    MPicture half;
    ASSERT_TRUE(half.Allocate(1, 1, PictureRgbaHalf));
    Put16(half.Pixels + 6, 0x3C00);
    EXPECT_FALSE(half.HasTransparency());
    Put16(half.Pixels + 6, 0x3BF8);
    EXPECT_TRUE(half.HasTransparency());
}

// ---- Flip, copy, crop

TEST(PictureTest, FlipVerticalSwapsRowsAndTogglesTopDown) {
    MPicture picture;
    ASSERT_TRUE(picture.Allocate(2, 3, PictureGray8));
    for (int32_t i = 0; i < 6; i++)
        picture.Pixels[i] = uint8_t(10 + i);
    picture.FlipVertical();
    const uint8_t expected[6] = {14, 15, 12, 13, 10, 11};
    EXPECT_EQ(0, std::memcmp(picture.Pixels, expected, 6));
    EXPECT_FALSE(picture.TopDown);
    picture.FlipVertical();
    EXPECT_TRUE(picture.TopDown);
    EXPECT_EQ(picture.Pixels[0], 10);
}

TEST(PictureTest, CopyOfTheSameLayoutIsOneBlockIncludingRowPadding) {
    MPicture source, target;
    ASSERT_TRUE(source.Allocate(4, 2, PictureGray8));
    ASSERT_TRUE(target.Allocate(4, 2, PictureGray8));
    // The rows are 3 pixels wide in a pitch of 4: the padding byte goes along.
    source.Width = target.Width = 3;
    for (int32_t i = 0; i < 8; i++)
        source.Pixels[i] = uint8_t(i + 1);
    ASSERT_TRUE(target.Copy(source));
    EXPECT_EQ(0, std::memcmp(target.Pixels, source.Pixels, 8));
    source.Width = target.Width = 4;
}

TEST(PictureTest, CopyConvertsTowardsFormatsFourAndSevenAndBetweenFiveAndEight) {
    MPicture gray, bgra;
    ASSERT_TRUE(gray.Allocate(2, 1, PictureGray8));
    gray.Pixels[0] = 100;
    gray.Pixels[1] = 7;
    ASSERT_TRUE(bgra.Allocate(2, 1, PictureBgra8));
    ASSERT_TRUE(bgra.Copy(gray));
    ExpectColour(ReadPixel(bgra.Pixels, PictureBgra8), 100, 100, 100, 255);
    ExpectColour(ReadPixel(bgra.Pixels + 4, PictureBgra8), 7, 7, 7, 255);

    MPicture half, bgr;
    ASSERT_TRUE(half.Allocate(1, 1, PictureRgbaHalf));
    Put16(half.Pixels, 0x3800), Put16(half.Pixels + 2, 0x3400), Put16(half.Pixels + 4, 0x3C00);
    Put16(half.Pixels + 6, 0x0000);
    ASSERT_TRUE(bgr.Allocate(1, 1, PictureBgr8));
    ASSERT_TRUE(bgr.Copy(half));
    EXPECT_EQ(bgr.Pixels[0], 255);
    EXPECT_EQ(bgr.Pixels[1], 63);
    EXPECT_EQ(bgr.Pixels[2], 127);

    MPicture rgb16, rgba16, back;
    ASSERT_TRUE(rgb16.Allocate(1, 1, PictureRgb16));
    Put16(rgb16.Pixels, 0x1234), Put16(rgb16.Pixels + 2, 0x5678), Put16(rgb16.Pixels + 4, 0x9ABC);
    ASSERT_TRUE(rgba16.Allocate(1, 1, PictureRgba16));
    ASSERT_TRUE(rgba16.Copy(rgb16));
    EXPECT_EQ(Get16(rgba16.Pixels), 0x1234);
    EXPECT_EQ(Get16(rgba16.Pixels + 4), 0x9ABC);
    EXPECT_EQ(Get16(rgba16.Pixels + 6), 0xFFFF);
    Put16(rgba16.Pixels + 2, 0x0102);
    ASSERT_TRUE(back.Allocate(1, 1, PictureRgb16));
    ASSERT_TRUE(back.Copy(rgba16));
    EXPECT_EQ(Get16(back.Pixels + 2), 0x0102);
}

TEST(PictureTest, CopyBetweenOtherFormatsWritesNothingAndSucceeds) {
    MPicture bgra, gray, half;
    ASSERT_TRUE(bgra.Allocate(2, 2, PictureBgra8));
    std::memset(bgra.Pixels, 200, 16);
    ASSERT_TRUE(gray.Allocate(2, 2, PictureGray8));
    EXPECT_TRUE(gray.Copy(bgra));
    for (int32_t i = 0; i < 4; i++)
        EXPECT_EQ(gray.Pixels[i], 0);
    ASSERT_TRUE(half.Allocate(2, 2, PictureRgbaHalf));
    EXPECT_TRUE(half.Copy(bgra));
    for (int32_t i = 0; i < 32; i++)
        EXPECT_EQ(half.Pixels[i], 0);
}

TEST(PictureTest, CopyNeedsTheSameSize) {
    MPicture a, b;
    ASSERT_TRUE(a.Allocate(2, 2, PictureBgra8));
    ASSERT_TRUE(b.Allocate(2, 3, PictureBgra8));
    EXPECT_FALSE(b.Copy(a));
    MPicture empty;
    EXPECT_FALSE(b.Copy(empty));
}

TEST(PictureTest, CropIsClippedToTheSourceInItsFormat) {
    MPicture source;
    ASSERT_TRUE(source.Allocate(4, 3, PictureBgr8));
    for (int32_t y = 0; y < 3; y++)
        for (int32_t x = 0; x < 4; x++)
            WritePixel(Bgra(uint8_t(x), uint8_t(y), 9, 255), source.PixelAddress(x, y),
                       PictureBgr8);
    MPicture part;
    ASSERT_TRUE(part.Crop(source, WRect{1, 1, 3, 3}));
    EXPECT_EQ(part.Width, 2u);
    EXPECT_EQ(part.Height, 2);
    EXPECT_EQ(part.Format, PictureBgr8);
    ExpectColour(ReadPixel(part.PixelAddress(0, 0), PictureBgr8), 1, 1, 9, 255);
    ExpectColour(ReadPixel(part.PixelAddress(1, 1), PictureBgr8), 2, 2, 9, 255);

    ASSERT_TRUE(part.Crop(source, WRect{-5, 2, 100, 50}));
    EXPECT_EQ(part.Width, 4u);
    EXPECT_EQ(part.Height, 1);
    ExpectColour(ReadPixel(part.PixelAddress(3, 0), PictureBgr8), 3, 2, 9, 255);

    EXPECT_FALSE(part.Crop(source, WRect{4, 0, 6, 2}));
    EXPECT_FALSE(part.IsUsable());
    EXPECT_FALSE(part.Crop(source, WRect{2, 2, 2, 3}));
}

TEST(PictureTest, PremultipliedCopyScalesColourByAlphaBelowFull) {
    MPicture source, target;
    ASSERT_TRUE(source.Allocate(3, 1, PictureBgra8));
    WritePixel(Bgra(200, 100, 50, 255), source.PixelAddress(0, 0), PictureBgra8);
    WritePixel(Bgra(200, 100, 50, 128), source.PixelAddress(1, 0), PictureBgra8);
    WritePixel(Bgra(200, 100, 50, 0), source.PixelAddress(2, 0), PictureBgra8);
    ASSERT_TRUE(PremultipliedCopy(source, target));
    EXPECT_EQ(target.Format, PictureBgra8);
    ExpectColour(ReadPixel(target.PixelAddress(0, 0), PictureBgra8), 200, 100, 50, 255);
    ExpectColour(ReadPixel(target.PixelAddress(1, 0), PictureBgra8), 100, 50, 25, 128);
    ExpectColour(ReadPixel(target.PixelAddress(2, 0), PictureBgra8), 0, 0, 0, 0);
    // 255 is left alone rather than scaled by 255 / 256.
    MPicture gray;
    ASSERT_TRUE(gray.Allocate(1, 1, PictureGray8));
    gray.Pixels[0] = 255;
    ASSERT_TRUE(PremultipliedCopy(gray, target));
    ExpectColour(ReadPixel(target.Pixels, PictureBgra8), 255, 255, 255, 255);
}

// ---- Loading through the platform's decoders

TEST(PictureTest, AnEightBitGrayPngLoadsAsFormatOneWithoutTransparency) {
    MPicture picture;
    ASSERT_TRUE(picture.Load(DataText("gray8.png")));
    EXPECT_EQ(picture.Format, PictureGray8);
    EXPECT_EQ(picture.Width, 23u);
    EXPECT_EQ(picture.Height, 17);
    EXPECT_EQ(picture.Pitch, 23u);
    EXPECT_TRUE(picture.TopDown);
    EXPECT_TRUE(MatchesReference8(picture, ReadBytes(DataPath("gray8.png.rgba"))));
    EXPECT_FALSE(picture.HasTransparency());
}

TEST(PictureTest, PngsLoadInTheirOwnDepths) {
    struct Case {
        const char* Name;
        int32_t Format;
    } cases[] = {{"rgb.png", PictureBgr8},
                 {"rgba.png", PictureBgra8},
                 {"palette.png", PictureBgra8},
                 {"gray-alpha.png", PictureBgra8}};
    for (const Case& c : cases) {
        MPicture picture;
        ASSERT_TRUE(picture.Load(DataText(c.Name))) << c.Name;
        EXPECT_EQ(picture.Format, c.Format) << c.Name;
        EXPECT_TRUE(MatchesReference8(picture, ReadBytes(DataPath(std::string(c.Name) + ".rgba"))))
            << c.Name;
    }
    MPicture rgba;
    ASSERT_TRUE(rgba.Load(DataText("rgba.png")));
    EXPECT_TRUE(rgba.HasTransparency());

    MPicture gray16;
    ASSERT_TRUE(gray16.Load(DataText("gray16.png")));
    EXPECT_EQ(gray16.Format, PictureGray16);
    EXPECT_TRUE(MatchesReference16(gray16, ReadBytes(DataPath("gray16.png.rgba16"))));

    MPicture rgba16;
    ASSERT_TRUE(rgba16.Load(DataText("rgba16.png")));
    EXPECT_EQ(rgba16.Format, PictureRgba16);
    EXPECT_EQ(rgba16.Pitch, 23u * 8);
    EXPECT_TRUE(MatchesReference16(rgba16, ReadBytes(DataPath("rgba16.png.rgba16"))));
}

TEST(PictureTest, JpegBmpAndTiffLoadInTheDecodersFormats) {
    MPicture jpeg;
    ASSERT_TRUE(jpeg.Load(DataText("photo.jpg")));
    EXPECT_EQ(jpeg.Format, PictureBgr8);
    // Decoders of JPEG may differ in their last bit of rounding.
    EXPECT_TRUE(MatchesReference8(jpeg, ReadBytes(DataPath("photo.jpg.rgba")), 2));

    MPicture bmp;
    ASSERT_TRUE(bmp.Load(DataText("picture.bmp")));
    EXPECT_EQ(bmp.Format, PictureBgr8);
    EXPECT_TRUE(MatchesReference8(bmp, ReadBytes(DataPath("picture.bmp.rgba"))));

    MPicture palette;
    ASSERT_TRUE(palette.Load(DataText("palette.bmp")));
    EXPECT_EQ(palette.Format, PictureBgra8);
    EXPECT_TRUE(MatchesReference8(palette, ReadBytes(DataPath("palette.bmp.rgba"))));

    MPicture tiff;
    ASSERT_TRUE(tiff.Load(DataText("picture.tif")));
    EXPECT_EQ(tiff.Format, PictureBgr8);
    EXPECT_TRUE(MatchesReference8(tiff, ReadBytes(DataPath("picture.tif.rgba"))));
}

TEST(PictureTest, AThreeFrameGifGivesFrameOneAndADelayOfOneHundredForZero) {
    MPicture picture;
    ASSERT_TRUE(picture.Load(DataText("anim.gif")));
    EXPECT_EQ(picture.Format, PictureBgra8);
    EXPECT_EQ(picture.FrameCount, 3);
    EXPECT_EQ(picture.FrameDelay, 100);  // the file says 0
    EXPECT_EQ(picture.FrameDisposal, 1); // "do not dispose"
    EXPECT_EQ(picture.FrameLeft, 0);
    EXPECT_EQ(picture.FrameTop, 0);
    EXPECT_EQ(picture.FrameWidth, 23);
    EXPECT_EQ(picture.FrameHeight, 17);
    // Frame one is the rose with a transparent right part, not a flat frame.
    EXPECT_TRUE(MatchesReference8(picture, ReadBytes(DataPath("anim.gif.rgba"))));
    EXPECT_TRUE(picture.HasTransparency());
}

TEST(PictureTest, AGifFrameLoadsInItsOwnSizeWithItsPlaceDelayAndDisposal) {
    MPicture picture;
    ASSERT_TRUE(picture.Load(DataText("anim-offset.gif")));
    EXPECT_EQ(picture.Width, 10u);
    EXPECT_EQ(picture.Height, 6);
    EXPECT_EQ(picture.FrameCount, 2);
    EXPECT_EQ(picture.FrameDelay, 70);
    EXPECT_EQ(picture.FrameDisposal, 2);
    EXPECT_EQ(picture.FrameLeft, 3);
    EXPECT_EQ(picture.FrameTop, 2);
    EXPECT_EQ(picture.FrameWidth, 10);
    EXPECT_EQ(picture.FrameHeight, 6);
    EXPECT_TRUE(MatchesReference8(picture, ReadBytes(DataPath("anim-offset.gif.rgba"))));
}

TEST(PictureTest, ASingleFramePictureKeepsTheFrameDefaults) {
    MPicture picture;
    ASSERT_TRUE(picture.Load(DataText("rgb.png")));
    EXPECT_EQ(picture.FrameCount, 1);
    EXPECT_EQ(picture.FrameDelay, 100);
    EXPECT_EQ(picture.FrameDisposal, 0);
    EXPECT_EQ(picture.FrameLeft, 0);
    EXPECT_EQ(picture.FrameWidth, 0);
}

TEST(PictureTest, TheExtensionAloneChoosesTheLoader) {
    // A TGA file under another name goes to the platform's decoders (the TGA
    // reader would say so in the debug output); a PNG file named TGA goes to
    // the TGA reader, which refuses it.
    std::string tgaAsPng = ScratchPath("tga-as.png"), pngAsTga = ScratchPath("png-as.tga");
    WriteBytes(tgaAsPng, ReadBytes(DataPath("tga24-top.tga")));
    WriteBytes(pngAsTga, ReadBytes(DataPath("rgb.png")));
    MPicture picture;
    StartDebugCapture();
    ASSERT_TRUE(picture.Load(DataText("tga24-top.tga")));
    EXPECT_EQ(StopDebugCapture().Find(MString(u"TGA ")), 0);
    StartDebugCapture();
    bool loaded = picture.Load(Text(tgaAsPng));
    EXPECT_EQ(StopDebugCapture().Find(MString(u"TGA ")), -1);
#ifdef _WIN32
    // What the installed codecs make of it is theirs to say (Wine has a TGA
    // decoder, Windows has none).
    (void)loaded;
#else
    // The native decoders know no TGA.
    EXPECT_FALSE(loaded);
    EXPECT_FALSE(picture.IsUsable());
    EXPECT_EQ(picture.Width, 0u);
#endif
    EXPECT_FALSE(picture.Load(Text(pngAsTga)));
    EXPECT_EQ(picture.Pixels, nullptr);

    // The extension is compared upper-case.
    std::string lower = ScratchPath("lower.Tga");
    WriteBytes(lower, ReadBytes(DataPath("tga24-top.tga")));
    EXPECT_TRUE(picture.Load(Text(lower)));
    EXPECT_FALSE(picture.Load(Text(ScratchPath("missing.png"))));
    EXPECT_EQ(picture.Format, 0);
}

// ---- Saving

TEST(PictureTest, SaveToANameWithoutAKnownExtensionFails) {
    MPicture picture;
    ASSERT_TRUE(picture.Allocate(3, 2, PictureBgr8));
    for (const char* name : {"noextension", "picture.xyz", "picture.tga", "picture.png.txt"}) {
        std::string path = ScratchPath(name);
        std::remove(path.c_str());
        EXPECT_FALSE(picture.Save(Text(path))) << name;
        EXPECT_TRUE(ReadBytes(path).empty()) << name;
    }
    MPicture empty;
    EXPECT_FALSE(empty.Save(Text(ScratchPath("empty.png"))));
}

namespace {

// A picture of flat colours whose channels survive every container, GIF's
// palette of 5-bit colours included.
void MakeFlatPicture(MPicture& picture, int32_t format) {
    ASSERT_TRUE(picture.Allocate(9, 5, format));
    const MColour colours[3] = {Bgra(0, 0, 248, 255), Bgra(128, 248, 0, 255),
                                Bgra(64, 32, 96, 255)};
    for (int32_t y = 0; y < 5; y++)
        for (int32_t x = 0; x < 9; x++)
            WritePixel(colours[(x / 3 + y) % 3], picture.PixelAddress(x, y), format);
}

} // namespace

TEST(PictureTest, SaveWritesEveryContainerInFormatFour) {
    const char* names[] = {"save.bmp", "save.png", "save.tif", "save.tiff"};
    for (const char* name : names) {
        MPicture picture, loaded;
        MakeFlatPicture(picture, PictureBgra8);
        std::string path = ScratchPath(name);
        ASSERT_TRUE(picture.Save(Text(path))) << name;
        ASSERT_TRUE(loaded.Load(Text(path))) << name;
        EXPECT_EQ(loaded.Format, PictureBgr8) << name;
        ASSERT_EQ(loaded.Width, 9u);
        for (int32_t y = 0; y < 5; y++)
            for (int32_t x = 0; x < 9; x++) {
                MColour a = ReadPixel(picture.PixelAddress(x, y), picture.Format);
                MColour b = ReadPixel(loaded.PixelAddress(x, y), loaded.Format);
                ASSERT_TRUE(a.r == b.r && a.g == b.g && a.b == b.b) << name << " " << x << "," << y;
            }
    }
    // JPEG keeps the colours only roughly.
    MPicture picture, loaded;
    MakeFlatPicture(picture, PictureGray8);
    ASSERT_TRUE(picture.Save(Text(ScratchPath("save.jpeg"))));
    ASSERT_TRUE(loaded.Load(Text(ScratchPath("save.jpeg"))));
    EXPECT_EQ(loaded.Width, 9u);
    EXPECT_EQ(loaded.Height, 5);
}

#ifndef _WIN32
TEST(PictureTest, SaveWritesGifThroughAPalette) {
    MPicture picture, loaded;
    MakeFlatPicture(picture, PictureBgr8);
    ASSERT_TRUE(picture.Save(Text(ScratchPath("save.gif"))));
    ASSERT_TRUE(loaded.Load(Text(ScratchPath("save.gif"))));
    EXPECT_EQ(loaded.Format, PictureBgra8);
    EXPECT_EQ(loaded.FrameCount, 1);
    for (int32_t y = 0; y < 5; y++)
        for (int32_t x = 0; x < 9; x++) {
            MColour a = ReadPixel(picture.PixelAddress(x, y), picture.Format);
            MColour b = ReadPixel(loaded.PixelAddress(x, y), loaded.Format);
            ASSERT_TRUE(a.r == b.r && a.g == b.g && a.b == b.b && b.a == 255) << x << "," << y;
        }
}
#endif

// ---- The Windows imaging component's side

#ifdef _WIN32
#include "drawing/PictureWic_win.h"

namespace {

// WIC needs COM on the thread, as the program's start-up provides.
struct ComEnvironment : ::testing::Environment {
    bool Started = false;
    void SetUp() override { Started = SUCCEEDED(CoInitialize(nullptr)); }
    void TearDown() override {
        if (Started) CoUninitialize();
    }
};
::testing::Environment* const TheComEnvironment =
    ::testing::AddGlobalTestEnvironment(new ComEnvironment);

// A 3 by 4 gray source that refuses to copy more than one row at a time, and
// from FailingRow on refuses rows too. Row y holds the value 10 * (y + 1) + x.
struct RowSource : IWICBitmapSource {
    int32_t FailingRow = -1;
    int32_t Calls = 0;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID id, void** out) override {
        if (IsEqualIID(id, IID_IUnknown) || IsEqualIID(id, IID_IWICBitmapSource)) {
            *out = this;
            return S_OK;
        }
        *out = nullptr;
        return E_NOINTERFACE;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
    ULONG STDMETHODCALLTYPE Release() override { return 1; }
    HRESULT STDMETHODCALLTYPE GetSize(UINT* width, UINT* height) override {
        *width = 3;
        *height = 4;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetPixelFormat(WICPixelFormatGUID* format) override {
        *format = GUID_WICPixelFormat8bppGray;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetResolution(double* x, double* y) override {
        *x = *y = 96;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE CopyPalette(IWICPalette*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE CopyPixels(const WICRect* rect, UINT, UINT size,
                                         BYTE* target) override {
        Calls++;
        if (!rect || rect->Height != 1 || rect->Width != 3 || size < 3) return E_FAIL;
        if (FailingRow >= 0 && rect->Y >= FailingRow) return E_FAIL;
        for (int32_t x = 0; x < 3; x++)
            target[x] = BYTE(10 * (rect->Y + 1) + x);
        return S_OK;
    }
};

} // namespace

TEST(PictureTest, AFailedWholeCopyIsRetriedRowByRow) {
    RowSource source;
    MPicture picture;
    ASSERT_TRUE(picture.Allocate(3, 4, PictureGray8));
    StartDebugCapture();
    ASSERT_TRUE(CopyWicPixels(&source, picture));
    EXPECT_EQ(StopDebugCapture(), MString(u"Failed to copy pixels. Now trying line by line...\n"));
    EXPECT_EQ(source.Calls, 5);
    for (int32_t y = 0; y < 4; y++)
        for (int32_t x = 0; x < 3; x++)
            EXPECT_EQ(*picture.PixelAddress(x, y), 10 * (y + 1) + x);

    // The first row that fails ends the copy, and the picture is empty.
    RowSource failing;
    failing.FailingRow = 2;
    ASSERT_TRUE(picture.Allocate(3, 4, PictureGray8));
    StartDebugCapture();
    EXPECT_FALSE(CopyWicPixels(&failing, picture));
    StopDebugCapture();
    EXPECT_EQ(failing.Calls, 4);
    EXPECT_FALSE(picture.IsUsable());
}

TEST(PictureTest, ToWicBitmapGivesPremultipliedBgraOfThePicture) {
    MPicture picture;
    ASSERT_TRUE(picture.Allocate(2, 1, PictureRgba16));
    Put16(picture.Pixels, 0xC8FF), Put16(picture.Pixels + 2, 0x64FF);
    Put16(picture.Pixels + 4, 0x32FF), Put16(picture.Pixels + 6, 0x80FF);
    Put16(picture.Pixels + 8, 0x10FF), Put16(picture.Pixels + 10, 0x20FF);
    Put16(picture.Pixels + 12, 0x30FF), Put16(picture.Pixels + 14, 0xFFFF);
    IWICBitmap* bitmap = static_cast<IWICBitmap*>(picture.ToWicBitmap());
    ASSERT_NE(bitmap, nullptr);
    WICPixelFormatGUID format;
    ASSERT_TRUE(SUCCEEDED(bitmap->GetPixelFormat(&format)));
    EXPECT_TRUE(IsEqualGUID(format, GUID_WICPixelFormat32bppPBGRA));
    BYTE pixels[8];
    ASSERT_TRUE(SUCCEEDED(bitmap->CopyPixels(nullptr, 8, 8, pixels)));
    const BYTE expected[8] = {
        0x32 * 0x80 >> 8, 0x64 * 0x80 >> 8, 0xC8 * 0x80 >> 8, 0x80, 0x30, 0x20, 0x10, 0xFF};
    EXPECT_EQ(0, std::memcmp(pixels, expected, 8));
    bitmap->Release();
    MPicture empty;
    EXPECT_EQ(empty.ToWicBitmap(), nullptr);
}
#endif

#if !defined(_WIN32)
// A GIF of 248 bytes whose frame claims 65535 x 32767 pixels: its data cannot
// fill the frame, so the file is refused, without a frame being made first.
TEST(PictureTest, AGifFrameLargerThanItsDataCanFillIsRefused) {
    std::vector<uint8_t> bytes =
        ReadBytes(std::string(TEST_SOURCE_DIR) + "/tests/data/fuzz/gif-huge-frame.gif");
    ASSERT_EQ(bytes.size(), 248u);
    MPicture picture;
    EXPECT_FALSE(DecodePictureMemory(picture, bytes.data(), bytes.size()));
    EXPECT_EQ(picture.Pixels, nullptr);
    // The same picture with a frame of its real size decodes.
    std::vector<uint8_t> gif = ReadBytes(DataPath("anim.gif"));
    EXPECT_TRUE(DecodePictureMemory(picture, gif.data(), gif.size()));
    EXPECT_NE(picture.Pixels, nullptr);
}
#endif

// ---- Pictures of the corpus, whole, cut and with flipped bytes

TEST(PictureTest, CorpusPicturesLoadWhole) {
    for (const char* name : {"picture.png", "picture.jpg", "picture.gif", "picture.tif",
                             "picture.bmp", "picture.tga", "picture.dds"}) {
        MPicture picture;
        foreign::fs::path path = foreign::Folder() / name;
        ASSERT_TRUE(picture.Load(MString(path.u16string().c_str()))) << name;
        EXPECT_EQ(picture.Width, 16u) << name;
        EXPECT_EQ(picture.Height, 12) << name;
        EXPECT_TRUE(picture.IsUsable()) << name;
    }
}

// A broken picture either loads at its size or leaves the picture empty; it
// never takes the program down, and the file stays as it was.
TEST(PictureTest, BrokenCorpusPicturesLoadOrLeaveThePictureEmpty) {
    foreign::fs::path folder = scratch::Kept("broken-pictures");
    int32_t refused = 0;
    for (const char* name : {"picture.png", "picture.jpg", "picture.gif", "picture.tif",
                             "picture.bmp", "picture.tga", "picture.dds"}) {
        for (const foreign::BrokenCopy& copy : foreign::BrokenCopies(name)) {
            foreign::fs::path path = folder / copy.Name;
            scratch::WriteBytes(path, copy.Bytes);
            MPicture picture;
            if (picture.Load(MString(path.u16string().c_str()))) {
                EXPECT_TRUE(picture.IsUsable()) << copy.Name;
                EXPECT_EQ(picture.Width, 16u) << copy.Name;
                EXPECT_EQ(picture.Height, 12) << copy.Name;
            } else {
                refused++;
                EXPECT_EQ(picture.Width, 0u) << copy.Name;
                EXPECT_EQ(picture.Format, 0) << copy.Name;
                EXPECT_EQ(picture.Pixels, nullptr) << copy.Name;
            }
            EXPECT_EQ(scratch::ReadBytes(path), copy.Bytes) << copy.Name;
        }
    }
    EXPECT_GT(refused, 50);
}
