// Reading DDS files: block-compressed pictures made by ImageMagick (BC1,
// BC3) and libsquish (BC2, BC4, BC5) against their makers' own decoding, the
// formats and header variants the reader takes or refuses, and damaged files.

#include "DdsTestSupport.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>

using namespace ddstest;

// ---- Pictures made by ImageMagick and libsquish

// The makers decode the middle palette entries in integers and truncate;
// the program works them out in floats and takes the nearest byte, so a
// pixel may stand one level above the maker's. The makers' BC4 is red alone,
// the program's gray: the reference's red is the expected gray.
TEST(DdsReader, BlockCompressedPicturesMatchTheirMakersDecoding) {
    const char* names[] = {"dxt1.dds", "dxt5.dds", "bgra.dds", "bc2.dds", "bc4.dds", "bc5.dds"};
    for (const char* name : names) {
        MPicture picture;
        ASSERT_TRUE(picture.Load(DataText(name))) << name;
        EXPECT_EQ(picture.Format, PictureBgra8) << name;
        EXPECT_EQ(picture.Width, 23u) << name;
        EXPECT_EQ(picture.Height, 17) << name;
        EXPECT_TRUE(picture.TopDown);
        std::vector<uint8_t> reference = ReadBytes(DataPath(std::string(name) + ".rgba"));
        if (std::string(name) == "bc4.dds")
            for (size_t i = 0; i + 3 < reference.size(); i += 4)
                reference[i + 1] = reference[i + 2] = reference[i];
        int tolerance = std::string(name) == "bgra.dds" ? 0 : 1;
        EXPECT_TRUE(MatchesReference8(picture, reference, tolerance)) << name;
    }
}

TEST(DdsReader, ABc3DdsLoadsAsFormatSevenWithItsAlpha) {
    MPicture picture;
    ASSERT_TRUE(picture.Load(DataText("dxt5.dds")));
    EXPECT_EQ(picture.Format, PictureBgra8);
    EXPECT_EQ(picture.Pitch, 23u * 4);
    EXPECT_TRUE(picture.HasTransparency());
}

TEST(DdsReader, OnlyTheFirstMipLevelIsTaken) {
    std::vector<uint8_t> bytes = ReadBytes(DataPath("dxt1-mips.dds"));
    MPicture picture;
    ASSERT_TRUE(Read(picture, bytes));
    EXPECT_EQ(picture.Width, 32u);
    EXPECT_EQ(picture.Height, 16);
    // Within one level of ImageMagick's integer decoding (see above).
    EXPECT_TRUE(MatchesReference8(picture, ReadBytes(DataPath("dxt1-mips.dds.rgba")), 1));
    // All four levels must be in the file, though three are never used.
    bytes.resize(bytes.size() - 1);
    EXPECT_FALSE(Read(picture, bytes));
}

TEST(DdsReader, ReadingFromMemoryEqualsReadingTheFile) {
    std::vector<uint8_t> bytes = ReadBytes(DataPath("bc5.dds"));
    MPicture fromFile, fromMemory;
    ASSERT_TRUE(LoadDds(fromFile, DataText("bc5.dds")));
    ASSERT_TRUE(Read(fromMemory, bytes));
    EXPECT_EQ(0, std::memcmp(fromFile.Pixels, fromMemory.Pixels, 23 * 17 * 4));
}

// ---- Header variants

TEST(DdsReader, ACubeMapFails) {
    std::vector<uint8_t> faces = Counting(6 * 16 * 4);
    DdsLayout cube = Legacy(32, 0xff0000, 0xff00, 0xff, 0xff000000);
    cube.Caps2 = 0x200 | 0xfc00; // cube map with all six faces
    MPicture picture;
    EXPECT_FALSE(Read(picture, Dds(cube, faces)));
    EXPECT_EQ(picture.Pixels, nullptr);
    DdsLayout dx10Cube = Dx10(87);
    dx10Cube.Misc = 0x4;
    EXPECT_FALSE(Read(picture, Dds(dx10Cube, faces)));
    // The same files as plain 2D pictures load.
    cube.Caps2 = 0;
    EXPECT_TRUE(Read(picture, Dds(cube, faces)));
    dx10Cube.Misc = 0;
    EXPECT_TRUE(Read(picture, Dds(dx10Cube, faces)));
}

TEST(DdsReader, ArraysAndDeepVolumesFailAndFlatOnesLoad) {
    MPicture picture;
    std::vector<uint8_t> data = Counting(2 * 16 * 4);
    DdsLayout array = Dx10(87);
    array.ArraySize = 2;
    EXPECT_FALSE(Read(picture, Dds(array, data)));
    array.ArraySize = 0;
    EXPECT_FALSE(Read(picture, Dds(array, data)));

    DdsLayout volume = Legacy(32, 0xff0000, 0xff00, 0xff, 0xff000000);
    volume.Flags |= 0x800000;
    volume.Caps2 = 0x200000;
    volume.Depth = 2;
    EXPECT_FALSE(Read(picture, Dds(volume, data)));
    volume.Depth = 1;
    EXPECT_TRUE(Read(picture, Dds(volume, data)));

    DdsLayout dx10Volume = Dx10(87);
    dx10Volume.Dimension = 4;
    dx10Volume.Depth = 1;
    EXPECT_FALSE(Read(picture, Dds(dx10Volume, data))); // without the depth flag
    dx10Volume.Flags |= 0x800000;
    EXPECT_TRUE(Read(picture, Dds(dx10Volume, data)));
    dx10Volume.Depth = 2;
    EXPECT_FALSE(Read(picture, Dds(dx10Volume, data)));

    DdsLayout line = Dx10(87, 4, 1);
    line.Dimension = 2;
    ASSERT_TRUE(Read(picture, Dds(line, Counting(16))));
    EXPECT_EQ(picture.Height, 1);
    line.Dimension = 5;
    EXPECT_FALSE(Read(picture, Dds(line, Counting(16))));
}

TEST(DdsReader, DxgiFormatsOfTheTableLoadAndOthersFail) {
    MPicture picture;
    std::vector<uint8_t> wide = Counting(4 * 4 * 8);
    ASSERT_TRUE(Read(picture, Dds(Dx10(10), wide))); // R16G16B16A16_FLOAT
    EXPECT_EQ(picture.Format, PictureRgbaHalf);
    EXPECT_EQ(0, std::memcmp(picture.Pixels, wide.data(), wide.size()));
    for (uint32_t format : {11u, 12u}) { // R16G16B16A16_UNORM and _UINT
        ASSERT_TRUE(Read(picture, Dds(Dx10(format), wide)));
        EXPECT_EQ(picture.Format, PictureRgba16);
        EXPECT_EQ(0, std::memcmp(picture.Pixels, wide.data(), wide.size()));
    }
    std::vector<uint8_t> pixel = {10, 20, 30, 40};
    std::vector<uint8_t> one;
    for (int i = 0; i < 16; i++)
        one.insert(one.end(), pixel.begin(), pixel.end());
    for (uint32_t format : {28u, 30u}) { // R8G8B8A8_UNORM and _UINT: red first
        ASSERT_TRUE(Read(picture, Dds(Dx10(format), one)));
        EXPECT_EQ(picture.Format, PictureBgra8);
        ExpectPixel(picture, 3, 3, 10, 20, 30, 40);
    }
    ASSERT_TRUE(Read(picture, Dds(Dx10(87), one))); // B8G8R8A8_UNORM
    ExpectPixel(picture, 3, 3, 30, 20, 10, 40);
    ASSERT_TRUE(Read(picture, Dds(Dx10(88), one))); // B8G8R8X8_UNORM
    ExpectPixel(picture, 3, 3, 30, 20, 10, 255);

    // R32G32B32A32_FLOAT, R8_UNORM, R8G8_UNORM, the sRGB forms of BC1, BC7
    // and B8G8R8A8, BC4 and BC5 signed, BC6H, and nonsense.
    for (uint32_t format : {2u, 61u, 49u, 72u, 99u, 91u, 81u, 84u, 95u, 0u, 200u})
        EXPECT_FALSE(Read(picture, Dds(Dx10(format), Counting(4 * 4 * 16)))) << format;
}

TEST(DdsReader, LegacyPixelFormatsMapAsTheDirect3DLoadersMapThem) {
    MPicture picture;
    std::vector<uint8_t> one;
    for (int i = 0; i < 16; i++)
        one.insert(one.end(), {10, 20, 30, 40});
    ASSERT_TRUE(Read(picture, Dds(Legacy(32, 0xff, 0xff00, 0xff0000, 0xff000000), one)));
    ExpectPixel(picture, 0, 0, 10, 20, 30, 40);
    ASSERT_TRUE(Read(picture, Dds(Legacy(32, 0xff0000, 0xff00, 0xff, 0xff000000), one)));
    ExpectPixel(picture, 0, 0, 30, 20, 10, 40);
    ASSERT_TRUE(Read(picture, Dds(Legacy(32, 0xff0000, 0xff00, 0xff, 0), one)));
    ExpectPixel(picture, 0, 0, 30, 20, 10, 255);
    ASSERT_TRUE(Read(picture, Dds(Legacy(32, 0xff, 0xff00, 0xff0000, 0), one)));
    ExpectPixel(picture, 0, 0, 10, 20, 30, 255);
    // 24 bits are widened to four bytes with opaque alpha.
    std::vector<uint8_t> three = Counting(16 * 3);
    ASSERT_TRUE(Read(picture, Dds(Legacy(24, 0xff0000, 0xff00, 0xff, 0), three)));
    ExpectPixel(picture, 1, 0, three[5], three[4], three[3], 255);
    ExpectPixel(picture, 3, 3, three[47], three[46], three[45], 255);

    std::vector<uint8_t> wide = Counting(16 * 8);
    DdsLayout sixteen;
    sixteen.FourCC = 36; // A16B16G16R16
    ASSERT_TRUE(Read(picture, Dds(sixteen, wide)));
    EXPECT_EQ(picture.Format, PictureRgba16);
    sixteen.FourCC = 113; // A16B16G16R16F
    ASSERT_TRUE(Read(picture, Dds(sixteen, wide)));
    EXPECT_EQ(picture.Format, PictureRgbaHalf);
    EXPECT_EQ(0, std::memcmp(picture.Pixels, wide.data(), wide.size()));

    // 5:6:5, luminance, and a signed or unknown FourCC fail.
    EXPECT_FALSE(Read(picture, Dds(Legacy(16, 0xf800, 0x7e0, 0x1f, 0), Counting(32))));
    DdsLayout luminance;
    luminance.PixelFlags = 0x20000;
    luminance.BitCount = 8;
    luminance.Masks[0] = 0xff;
    EXPECT_FALSE(Read(picture, Dds(luminance, Counting(16))));
    EXPECT_FALSE(Read(picture, Dds(Compressed("BC4S"), Counting(8))));
    EXPECT_FALSE(Read(picture, Dds(Compressed("XYZW"), Counting(16))));
    for (const char* fourCC :
         {"DXT1", "DXT2", "DXT3", "DXT4", "DXT5", "ATI1", "BC4U", "ATI2", "BC5U"})
        EXPECT_TRUE(Read(picture, Dds(Compressed(fourCC), Counting(16)))) << fourCC;
}

TEST(DdsReader, MipLevelsMustAllBeThereAndPossible) {
    MPicture picture;
    DdsLayout layout = Legacy(32, 0xff0000, 0xff00, 0xff, 0xff000000);
    layout.MipCount = 2;
    EXPECT_FALSE(Read(picture, Dds(layout, Counting(16 * 4))));
    EXPECT_FALSE(Read(picture, Dds(layout, Counting(16 * 4 + 4 * 4 - 1))));
    ASSERT_TRUE(Read(picture, Dds(layout, Counting(16 * 4 + 4 * 4))));
    EXPECT_EQ(picture.Width, 4u);
    layout.MipCount = 3; // 4, 2, 1
    EXPECT_TRUE(Read(picture, Dds(layout, Counting(21 * 4))));
    layout.MipCount = 4; // no fourth level below a side of 4
    EXPECT_FALSE(Read(picture, Dds(layout, Counting(100 * 4))));
}

TEST(DdsReader, BrokenHeadersFail) {
    MPicture picture;
    std::vector<uint8_t> good = Dds(Legacy(32, 0xff0000, 0xff00, 0xff, 0xff000000), Counting(64));
    ASSERT_TRUE(Read(picture, good));
    std::vector<uint8_t> bad = good;
    bad[0] = 'X';
    EXPECT_FALSE(Read(picture, bad));
    bad = good;
    bad[4] = 123; // header size
    EXPECT_FALSE(Read(picture, bad));
    bad = good;
    bad[76] = 31; // pixel format size
    EXPECT_FALSE(Read(picture, bad));
    bad = good;
    Put32(bad, 16, 0); // width 0
    EXPECT_FALSE(Read(picture, bad));
    bad = good;
    Put32(bad, 12, 16385); // taller than any texture
    EXPECT_FALSE(Read(picture, bad));
    std::vector<uint8_t> noDx10 = Dds(Dx10(87), {});
    noDx10.resize(4 + 124 + 10);
    EXPECT_FALSE(Read(picture, noDx10));
    EXPECT_FALSE(ReadDds(picture, nullptr, 200));
    EXPECT_EQ(picture.Pixels, nullptr);
}

TEST(DdsReader, TruncatedFilesFailCleanly) {
    for (const char* name : {"dxt5.dds", "bc4.dds", "bgra.dds"}) {
        std::vector<uint8_t> bytes = ReadBytes(DataPath(name));
        MPicture picture;
        ASSERT_TRUE(Read(picture, bytes)) << name;
        for (size_t length = 0; length < bytes.size(); length++) {
            std::vector<uint8_t> part(bytes.begin(), bytes.begin() + long(length));
            ASSERT_FALSE(Read(picture, part)) << name << " cut at " << length;
            ASSERT_EQ(picture.Pixels, nullptr);
        }
    }
}

TEST(DdsReader, GarbageNeverCrashes) {
    std::mt19937 random(4242);
    int loaded = 0;
    for (int round = 0; round < 3000; round++) {
        // A real header with random changes, so that the reader gets far.
        std::vector<uint8_t> bytes = round % 3 == 0 ? Dds(Dx10(98, 8, 8), Counting(64))
                                     : round % 3 == 1
                                         ? Dds(Compressed("DXT5", 5, 7), Counting(64))
                                         : Dds(Legacy(24, 0xff0000, 0xff00, 0xff, 0), Counting(48));
        int changes = 1 + int(random() % 6);
        for (int i = 0; i < changes; i++)
            bytes[random() % bytes.size()] = uint8_t(random());
        bytes.resize(random() % (bytes.size() + 1));
        MPicture picture;
        if (Read(picture, bytes)) {
            loaded++;
            ASSERT_TRUE(picture.IsUsable());
        } else {
            ASSERT_EQ(picture.Pixels, nullptr);
        }
    }
    EXPECT_GT(loaded, 0);
}
