// The native build's picture decoding (drawing/PictureDecode_posix.cpp): the
// bounds on the work of small JPEG files that declare large pictures.

#ifndef _WIN32

#include "PictureTestSupport.h"
#include "drawing/MPicture.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

using namespace picturetest;

namespace {

std::vector<uint8_t> FuzzData(const std::string& name) {
    return ReadBytes(std::string(TEST_SOURCE_DIR) + "/tests/data/fuzz/" + name);
}

} // namespace

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
