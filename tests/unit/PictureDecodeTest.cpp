// The native build's picture decoding (drawing/PictureDecode_posix.cpp): the
// palette PNGs against libpng's own expansion, and the bounds on the work of
// small JPEG files that declare large pictures.

#ifndef _WIN32

#include "PictureTestSupport.h"
#include "drawing/MPicture.h"

#include <gtest/gtest.h>

#include <png.h>

#include <csetjmp>
#include <cstring>
#include <string>
#include <vector>

using namespace picturetest;

namespace {

std::vector<uint8_t> FuzzData(const std::string& name) {
    return ReadBytes(std::string(TEST_SOURCE_DIR) + "/tests/data/fuzz/" + name);
}

struct PngBytes {
    const std::vector<uint8_t>* Bytes;
    size_t At;
};

// The straightforward decoding of a palette PNG to blue, green, red, alpha:
// libpng's expansion of the palette and the transparency entries, its swap
// of red and blue, and an opaque filler where there are no transparency
// entries. Empty on any failure.
std::vector<uint8_t> LibpngBgra(const std::vector<uint8_t>& bytes, uint32_t& width,
                                uint32_t& height) {
    std::vector<uint8_t> pixels;
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    PngBytes source{&bytes, 0};
    if (setjmp(png_jmpbuf(png))) {
        png_destroy_read_struct(&png, &info, nullptr);
        return {};
    }
    png_set_read_fn(png, &source, [](png_structp p, png_bytep target, png_size_t count) {
        PngBytes* from = static_cast<PngBytes*>(png_get_io_ptr(p));
        if (from->Bytes->size() - from->At < count) png_error(p, "truncated");
        std::memcpy(target, from->Bytes->data() + from->At, count);
        from->At += count;
    });
    png_read_info(png, info);
    width = png_get_image_width(png, info);
    height = png_get_image_height(png, info);
    png_set_expand(png);
    png_set_filler(png, 0xff, PNG_FILLER_AFTER);
    png_set_bgr(png);
    png_set_interlace_handling(png);
    png_read_update_info(png, info);
    pixels.resize(size_t(width) * height * 4);
    std::vector<png_bytep> rows(height);
    for (uint32_t y = 0; y < height; y++)
        rows[y] = pixels.data() + size_t(y) * width * 4;
    png_read_image(png, rows.data());
    png_destroy_read_struct(&png, &info, nullptr);
    return pixels;
}

} // namespace

// Palette PNGs of every index depth, with and without transparent entries,
// interlaced, and with indices past the palette and past the transparency
// entries: the lookup gives libpng's own expansion byte for byte.
TEST(PictureDecodeTest, PalettePngsDecodeAsLibpngExpandsThem) {
    for (const char* name :
         {"palette-1bit.png", "palette-2bit.png", "palette-4bit.png", "palette-8bit.png",
          "palette-opaque.png", "palette-interlaced.png", "palette-short.png", "palette.png"}) {
        std::vector<uint8_t> bytes = ReadBytes(DataPath(name));
        ASSERT_FALSE(bytes.empty()) << name;
        uint32_t width = 0, height = 0;
        std::vector<uint8_t> expected = LibpngBgra(bytes, width, height);
        ASSERT_FALSE(expected.empty()) << name;
        MPicture picture;
        ASSERT_TRUE(DecodePictureMemory(picture, bytes.data(), bytes.size())) << name;
        EXPECT_EQ(picture.Format, PictureBgra8) << name;
        ASSERT_EQ(picture.Width, width) << name;
        ASSERT_EQ(uint32_t(picture.Height), height) << name;
        ASSERT_EQ(picture.Pitch, width * 4) << name;
        EXPECT_EQ(std::memcmp(picture.Pixels, expected.data(), expected.size()), 0) << name;
    }
    // The hand-made one: entries past the palette are black, past the
    // transparency entries opaque.
    MPicture picture;
    std::vector<uint8_t> bytes = ReadBytes(DataPath("palette-short.png"));
    ASSERT_TRUE(DecodePictureMemory(picture, bytes.data(), bytes.size()));
    const uint8_t expected[5][4] = {
        {30, 20, 10, 0}, {60, 50, 40, 128}, {90, 80, 70, 255}, {0, 0, 0, 255}, {0, 0, 0, 255}};
    for (int i = 0; i < 5; i++)
        EXPECT_EQ(std::memcmp(picture.Pixels + 4 * i, expected[i], 4), 0) << i;
}

// A baseline JPEG of 354 bytes that declares 63575 x 239 pixels: its data
// end after a few blocks and the decoder fills the rest. It loads, at its
// declared size, as it always has: the rows past the data are mid gray.
TEST(PictureDecodeTest, ATruncatedJpegDeclaringALargePictureStillLoads) {
    std::vector<uint8_t> bytes = FuzzData("jpeg-tall-truncated.jpg");
    ASSERT_EQ(bytes.size(), 354u);
    MPicture picture;
    ASSERT_TRUE(DecodePictureMemory(picture, bytes.data(), bytes.size()));
    EXPECT_EQ(picture.Width, 63575u);
    EXPECT_EQ(picture.Height, 239);
    EXPECT_EQ(picture.Format, PictureBgr8);
    EXPECT_EQ(picture.Pitch, 63575u * 3);
    const uint8_t* last = picture.PixelAddress(0, picture.Height - 1);
    for (uint32_t i = 0; i < picture.Pitch; i++)
        ASSERT_EQ(last[i], 128) << i;
}

// A cut photograph loads at its size, the part past the cut filled in.
TEST(PictureDecodeTest, ACutJpegLoadsAtItsSize) {
    std::vector<uint8_t> bytes = ReadBytes(DataPath("photo.jpg"));
    ASSERT_GT(bytes.size(), 400u);
    bytes.resize(400);
    MPicture picture;
    ASSERT_TRUE(DecodePictureMemory(picture, bytes.data(), bytes.size()));
    EXPECT_EQ(picture.Width, 23u);
    EXPECT_EQ(picture.Height, 17);
}

// Each scan of a progressive file goes over the whole picture: a file that
// repeats scans past the limit of 100 is refused, while 90 scans, already far
// more than encoders write, still load.
TEST(PictureDecodeTest, AProgressiveJpegWithTooManyScansIsRefused) {
    std::vector<uint8_t> many = FuzzData("jpeg-scans-150.jpg");
    ASSERT_FALSE(many.empty());
    MPicture picture;
    EXPECT_FALSE(DecodePictureMemory(picture, many.data(), many.size()));
    EXPECT_EQ(picture.Pixels, nullptr);
    EXPECT_EQ(picture.Width, 0u);

    std::vector<uint8_t> fewer = FuzzData("jpeg-scans-90.jpg");
    ASSERT_TRUE(DecodePictureMemory(picture, fewer.data(), fewer.size()));
    EXPECT_EQ(picture.Width, 145u);
    EXPECT_EQ(picture.Height, 4000);
    EXPECT_EQ(picture.Format, PictureBgr8);
}

#endif
