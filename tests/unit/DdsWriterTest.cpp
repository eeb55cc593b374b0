// Writing DDS files: the legacy header of the writer's three formats, and
// pictures saved and loaded back.

#include "DdsTestSupport.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>

using namespace ddstest;

// ---- The writer

TEST(DdsWriter, TheWriterUsesTheLegacyHeaderOfItsThreeFormats) {
    MPicture picture;
    ASSERT_TRUE(picture.Allocate(3, 2, PictureBgr8));
    MVector<uint8_t> bytes;
    int32_t size = 0;
    ASSERT_TRUE(WriteDds(picture, bytes, size));
    ASSERT_EQ(size, 4 + 124 + 3 * 2 * 4);
    std::vector<uint8_t> file(bytes.Data, bytes.Data + size);
    EXPECT_EQ(0, std::memcmp(file.data(), "DDS ", 4));
    auto at = [&](size_t offset) {
        return uint32_t(file[offset]) | (uint32_t(file[offset + 1]) << 8) |
               (uint32_t(file[offset + 2]) << 16) | (uint32_t(file[offset + 3]) << 24);
    };
    EXPECT_EQ(at(4), 124u);
    EXPECT_EQ(at(8), 0x2100Fu); // caps, height, width, pitch, pixel format, mip count
    EXPECT_EQ(at(12), 2u);
    EXPECT_EQ(at(16), 3u);
    EXPECT_EQ(at(20), 12u); // the row pitch
    EXPECT_EQ(at(24), 1u);
    EXPECT_EQ(at(28), 1u);
    EXPECT_EQ(at(76), 32u);
    EXPECT_EQ(at(80), 0x41u); // RGB with alpha
    EXPECT_EQ(at(88), 32u);
    EXPECT_EQ(at(92), 0xffu);
    EXPECT_EQ(at(96), 0xff00u);
    EXPECT_EQ(at(100), 0xff0000u);
    EXPECT_EQ(at(104), 0xff000000u);
    EXPECT_EQ(at(108), 0x1000u);

    ASSERT_TRUE(picture.Allocate(3, 2, PictureRgb16));
    ASSERT_TRUE(WriteDds(picture, bytes, size));
    EXPECT_EQ(size, 4 + 124 + 3 * 2 * 8);
    EXPECT_EQ(bytes[80], 0x4);
    EXPECT_EQ(bytes[84], 36);
    ASSERT_TRUE(picture.Allocate(3, 2, PictureGrayHalf));
    ASSERT_TRUE(WriteDds(picture, bytes, size));
    EXPECT_EQ(bytes[84], 113);
    MPicture empty;
    EXPECT_FALSE(WriteDds(empty, bytes, size));
}

TEST(DdsWriter, SavedPicturesLoadBackInTheWriterFormats) {
    std::string path = ScratchPath("save.dds");
    // 8-bit pictures: all opaque, alpha channel or not.
    MPicture bgra, loaded;
    ASSERT_TRUE(bgra.Allocate(2, 1, PictureBgra8));
    const uint8_t pixels[8] = {10, 20, 30, 40, 50, 60, 70, 255};
    std::memcpy(bgra.Pixels, pixels, 8);
    ASSERT_TRUE(bgra.Save(Text(path)));
    ASSERT_TRUE(loaded.Load(Text(path)));
    EXPECT_EQ(loaded.Format, PictureBgra8);
    ExpectPixel(loaded, 0, 0, 30, 20, 10, 255);
    ExpectPixel(loaded, 1, 0, 70, 60, 50, 255);

    MPicture gray;
    ASSERT_TRUE(gray.Allocate(1, 1, PictureGray8));
    gray.Pixels[0] = 99;
    ASSERT_TRUE(gray.Save(Text(path)));
    ASSERT_TRUE(loaded.Load(Text(path)));
    ExpectPixel(loaded, 0, 0, 99, 99, 99, 255);

    // 16-bit pictures keep all 16 bits; gray fills three channels and a
    // missing alpha is full.
    MPicture gray16;
    ASSERT_TRUE(gray16.Allocate(1, 1, PictureGray16));
    gray16.Pixels[0] = 0x34, gray16.Pixels[1] = 0x12;
    ASSERT_TRUE(gray16.Save(Text(path)));
    ASSERT_TRUE(loaded.Load(Text(path)));
    EXPECT_EQ(loaded.Format, PictureRgba16);
    const uint8_t wide[8] = {0x34, 0x12, 0x34, 0x12, 0x34, 0x12, 0xff, 0xff};
    EXPECT_EQ(0, std::memcmp(loaded.Pixels, wide, 8));

    MPicture rgba16;
    ASSERT_TRUE(rgba16.Allocate(1, 1, PictureRgba16));
    const uint8_t four[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    std::memcpy(rgba16.Pixels, four, 8);
    ASSERT_TRUE(rgba16.Save(Text(path)));
    ASSERT_TRUE(loaded.Load(Text(path)));
    EXPECT_EQ(0, std::memcmp(loaded.Pixels, four, 8));

    // Half floats: a missing alpha is 1.0.
    MPicture rgbHalf;
    ASSERT_TRUE(rgbHalf.Allocate(1, 1, PictureRgbHalf));
    const uint8_t three[6] = {0x00, 0x38, 0x00, 0x34, 0x00, 0x3C};
    std::memcpy(rgbHalf.Pixels, three, 6);
    ASSERT_TRUE(rgbHalf.Save(Text(path)));
    ASSERT_TRUE(loaded.Load(Text(path)));
    EXPECT_EQ(loaded.Format, PictureRgbaHalf);
    const uint8_t half[8] = {0x00, 0x38, 0x00, 0x34, 0x00, 0x3C, 0x00, 0x3C};
    EXPECT_EQ(0, std::memcmp(loaded.Pixels, half, 8));
}
