// DDS files: block-compressed pictures made by ImageMagick (BC1, BC3) and
// libsquish (BC2, BC4, BC5) against their makers' own decoding, BC7 blocks of
// all eight modes worked out by hand from the format's rules, the formats
// and header variants the reader takes or refuses, damaged files, and the
// writer.

#include "drawing/BlockDecode.h"
#include "drawing/MPicture.h"

#include "PictureTestSupport.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>

using namespace picturetest;

namespace {

// ---- Building DDS files

void Put32(std::vector<uint8_t>& bytes, size_t at, uint32_t value) {
    for (int i = 0; i < 4; i++)
        bytes[at + i] = uint8_t(value >> (8 * i));
}

uint32_t FourCC(const char* text) {
    return uint32_t(uint8_t(text[0])) | (uint32_t(uint8_t(text[1])) << 8) |
           (uint32_t(uint8_t(text[2])) << 16) | (uint32_t(uint8_t(text[3])) << 24);
}

struct DdsLayout {
    uint32_t Width = 4, Height = 4;
    uint32_t Flags = 0x1007; // caps, height, width, pixel format
    uint32_t Depth = 0, MipCount = 0, Caps2 = 0;
    uint32_t PixelFlags = 0x4, FourCC = 0, BitCount = 0;
    uint32_t Masks[4] = {0, 0, 0, 0};
    bool Dx10 = false;
    uint32_t DxgiFormat = 0, Dimension = 3, Misc = 0, ArraySize = 1;
};

std::vector<uint8_t> Dds(const DdsLayout& layout, const std::vector<uint8_t>& data) {
    std::vector<uint8_t> bytes(4 + 124, 0);
    std::memcpy(bytes.data(), "DDS ", 4);
    Put32(bytes, 4, 124);
    Put32(bytes, 8, layout.Flags);
    Put32(bytes, 12, layout.Height);
    Put32(bytes, 16, layout.Width);
    Put32(bytes, 24, layout.Depth);
    Put32(bytes, 28, layout.MipCount);
    Put32(bytes, 76, 32);
    Put32(bytes, 80, layout.Dx10 ? 0x4 : layout.PixelFlags);
    Put32(bytes, 84, layout.Dx10 ? FourCC("DX10") : layout.FourCC);
    Put32(bytes, 88, layout.BitCount);
    for (int i = 0; i < 4; i++)
        Put32(bytes, 92 + 4 * i, layout.Masks[i]);
    Put32(bytes, 108, 0x1000);
    Put32(bytes, 112, layout.Caps2);
    if (layout.Dx10) {
        size_t at = bytes.size();
        bytes.resize(at + 20, 0);
        Put32(bytes, at, layout.DxgiFormat);
        Put32(bytes, at + 4, layout.Dimension);
        Put32(bytes, at + 8, layout.Misc);
        Put32(bytes, at + 12, layout.ArraySize);
    }
    bytes.insert(bytes.end(), data.begin(), data.end());
    return bytes;
}

DdsLayout Dx10(uint32_t format, uint32_t width = 4, uint32_t height = 4) {
    DdsLayout layout;
    layout.Dx10 = true;
    layout.DxgiFormat = format;
    layout.Width = width;
    layout.Height = height;
    return layout;
}

DdsLayout Legacy(uint32_t bits, uint32_t r, uint32_t g, uint32_t b, uint32_t a) {
    DdsLayout layout;
    layout.PixelFlags = 0x40 | (a ? 0x1 : 0);
    layout.BitCount = bits;
    layout.Masks[0] = r, layout.Masks[1] = g, layout.Masks[2] = b, layout.Masks[3] = a;
    return layout;
}

DdsLayout Compressed(const char* fourCC, uint32_t width = 4, uint32_t height = 4) {
    DdsLayout layout;
    layout.FourCC = FourCC(fourCC);
    layout.Width = width;
    layout.Height = height;
    return layout;
}

std::vector<uint8_t> Counting(size_t count) {
    std::vector<uint8_t> data(count);
    for (size_t i = 0; i < count; i++)
        data[i] = uint8_t(i * 7 + 3);
    return data;
}

bool Read(MPicture& picture, const std::vector<uint8_t>& bytes) {
    return ReadDds(picture, bytes.data(), int32_t(bytes.size()));
}

void ExpectPixel(const MPicture& picture, int x, int y, int r, int g, int b, int a) {
    MColour c = ReadPixel(picture.PixelAddress(x, y), picture.Format);
    EXPECT_EQ(int(c.r), r) << x << "," << y;
    EXPECT_EQ(int(c.g), g) << x << "," << y;
    EXPECT_EQ(int(c.b), b) << x << "," << y;
    EXPECT_EQ(int(c.a), a) << x << "," << y;
}

// ---- BC7 blocks are written field by field, from the lowest bit up.
struct BlockWriter {
    uint8_t Bytes[16] = {};
    int At = 0;

    void Put(uint32_t value, int bits) {
        ASSERT_LT(value, 1u << bits);
        for (int i = 0; i < bits; i++, At++)
            if ((value >> i) & 1) Bytes[At / 8] |= uint8_t(1 << (At % 8));
    }
};

void ExpectBlock(const uint8_t* rgba, const int (&expected)[16][4], const char* what) {
    for (int i = 0; i < 16; i++)
        for (int c = 0; c < 4; c++)
            EXPECT_EQ(int(rgba[i * 4 + c]), expected[i][c]) << what << " pixel " << i << " channel "
                                                            << "RGBA"[c];
}

} // namespace

// ---- Pictures made by ImageMagick and libsquish

// The makers decode the middle palette entries in integers and truncate;
// the program works them out in floats and takes the nearest byte, so a
// pixel may stand one level above the maker's. The makers' BC4 is red alone,
// the program's gray: the reference's red is the expected gray.
TEST(DdsTest, BlockCompressedPicturesMatchTheirMakersDecoding) {
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

TEST(DdsTest, ABc3DdsLoadsAsFormatSevenWithItsAlpha) {
    MPicture picture;
    ASSERT_TRUE(picture.Load(DataText("dxt5.dds")));
    EXPECT_EQ(picture.Format, PictureBgra8);
    EXPECT_EQ(picture.Pitch, 23u * 4);
    EXPECT_TRUE(picture.HasTransparency());
}

TEST(DdsTest, OnlyTheFirstMipLevelIsTaken) {
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

TEST(DdsTest, ReadingFromMemoryEqualsReadingTheFile) {
    std::vector<uint8_t> bytes = ReadBytes(DataPath("bc5.dds"));
    MPicture fromFile, fromMemory;
    ASSERT_TRUE(LoadDds(fromFile, DataText("bc5.dds")));
    ASSERT_TRUE(Read(fromMemory, bytes));
    EXPECT_EQ(0, std::memcmp(fromFile.Pixels, fromMemory.Pixels, 23 * 17 * 4));
}

// ---- Header variants

TEST(DdsTest, ACubeMapFails) {
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

TEST(DdsTest, ArraysAndDeepVolumesFailAndFlatOnesLoad) {
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

TEST(DdsTest, DxgiFormatsOfTheTableLoadAndOthersFail) {
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

TEST(DdsTest, LegacyPixelFormatsMapAsTheDirect3DLoadersMapThem) {
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

TEST(DdsTest, MipLevelsMustAllBeThereAndPossible) {
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

TEST(DdsTest, BrokenHeadersFail) {
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

TEST(DdsTest, TruncatedFilesFailCleanly) {
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

TEST(DdsTest, GarbageNeverCrashes) {
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

// ---- BC1 to BC5 blocks by hand

TEST(DdsTest, Bc1HasAThreeColourModeThatBc2AndBc3Ignore) {
    // 0xF800 is pure red and 0x001F pure blue in 5:6:5; the indices of each
    // row run 0, 1, 2, 3 (the byte 0b11100100).
    const uint8_t fourColours[8] = {0x00, 0xF8, 0x1F, 0x00, 0xE4, 0xE4, 0xE4, 0xE4};
    uint8_t rgba[64];
    DecodeBc1Block(fourColours, rgba);
    // First above second: red, blue, then the thirds between them: 2/3 and
    // 1/3 of 255 are 170 and 85 exactly.
    const int four[16][4] = {
        {255, 0, 0, 255}, {0, 0, 255, 255}, {170, 0, 85, 255}, {85, 0, 170, 255},
        {255, 0, 0, 255}, {0, 0, 255, 255}, {170, 0, 85, 255}, {85, 0, 170, 255},
        {255, 0, 0, 255}, {0, 0, 255, 255}, {170, 0, 85, 255}, {85, 0, 170, 255},
        {255, 0, 0, 255}, {0, 0, 255, 255}, {170, 0, 85, 255}, {85, 0, 170, 255}};
    ExpectBlock(rgba, four, "BC1 four colours");

    // First not above second: blue, red, the half and transparent black. The
    // half is 0.5 * 255 = 127.5, whose nearest byte is 128 (an integer
    // palette truncating (255 + 0) / 2 gave 127, one level below the float
    // rule the program follows).
    const uint8_t threeColours[8] = {0x1F, 0x00, 0x00, 0xF8, 0xE4, 0xE4, 0xE4, 0xE4};
    DecodeBc1Block(threeColours, rgba);
    const int three[4][4] = {{0, 0, 255, 255}, {255, 0, 0, 255}, {128, 0, 128, 255}, {0, 0, 0, 0}};
    for (int i = 0; i < 16; i++)
        for (int c = 0; c < 4; c++)
            EXPECT_EQ(int(rgba[i * 4 + c]), three[i % 4][c]) << i;

    // The same colour block in BC3 keeps four colours; its alpha block has
    // 255 and 0 with 3-bit indices 0 to 7 in each half: 255, 0, then the
    // sevenths 6/7 to 1/7 of 255 to the nearest byte: 218.57 gives 219,
    // 182.14 182, 145.71 146, 109.29 109, 72.86 73, 36.43 36 (truncating
    // them, as an integer palette did, gave 218, 145 and 72).
    uint8_t bc3[16] = {255, 0, 0x88, 0xC6, 0xFA, 0x88, 0xC6, 0xFA};
    std::memcpy(bc3 + 8, threeColours, 8);
    DecodeBc3Block(bc3, rgba);
    const int alphas[8] = {255, 0, 219, 182, 146, 109, 73, 36};
    const int colours[4][3] = {{0, 0, 255}, {255, 0, 0}, {85, 0, 170}, {170, 0, 85}};
    for (int i = 0; i < 16; i++) {
        for (int c = 0; c < 3; c++)
            EXPECT_EQ(int(rgba[i * 4 + c]), colours[i % 4][c]) << i;
        EXPECT_EQ(int(rgba[i * 4 + 3]), alphas[i % 8]) << i;
    }

    // BC2: explicit 4-bit alphas times 17.
    uint8_t bc2[16] = {0x10, 0x32, 0x54, 0x76, 0x98, 0xBA, 0xDC, 0xFE};
    std::memcpy(bc2 + 8, threeColours, 8);
    DecodeBc2Block(bc2, rgba);
    for (int i = 0; i < 16; i++) {
        EXPECT_EQ(int(rgba[i * 4 + 3]), 17 * i) << i;
        EXPECT_EQ(int(rgba[i * 4 + 2]), colours[i % 4][2]) << i;
    }
}

TEST(DdsTest, Bc4IsGrayAndBc5FillsRedAndGreenWithBlueZeroAndAlphaFull) {
    // 0 and 255 in ascending order: six steps and the two ends. Indices 0 to
    // 7 in each half: 0, 255, 255 / 5 = 51, 102, 153, 204, then 0 and 255.
    const uint8_t block[16] = {0,   255, 0x88, 0xC6, 0xFA, 0x88, 0xC6, 0xFA,
                               200, 100, 0,    0,    0,    0,    0,    0};
    uint8_t rgba[64];
    DecodeBc4Block(block, rgba);
    // BC4 is one gray channel: its value stands in red, green and blue (it
    // once went to red alone, with green and blue 0).
    const int reds[8] = {0, 255, 51, 102, 153, 204, 0, 255};
    for (int i = 0; i < 16; i++) {
        EXPECT_EQ(int(rgba[i * 4]), reds[i % 8]) << i;
        EXPECT_EQ(int(rgba[i * 4 + 1]), reds[i % 8]) << i;
        EXPECT_EQ(int(rgba[i * 4 + 2]), reds[i % 8]) << i;
        EXPECT_EQ(int(rgba[i * 4 + 3]), 255);
    }
    DecodeBc5Block(block, rgba);
    for (int i = 0; i < 16; i++) {
        EXPECT_EQ(int(rgba[i * 4]), reds[i % 8]) << i;
        EXPECT_EQ(int(rgba[i * 4 + 1]), 200); // all indices 0 of the second half
        EXPECT_EQ(int(rgba[i * 4 + 2]), 0);
        EXPECT_EQ(int(rgba[i * 4 + 3]), 255);
    }
}

// ---- Palettes in floats. Each block below is chosen so that a palette of
// integers (ends widened by repeating their top bits, middle entries
// truncated) gives other bytes than the float rule: ends c / 31, c / 63 and
// v / 255, middle entries interpolated in floats, and the nearest byte of
// value * 255. The integer results are named beside each case.

namespace {

// Each row of a BC1 block with the indices 0, 1, 2, 3 from left to right.
const uint8_t RowsOf0123[4] = {0xE4, 0xE4, 0xE4, 0xE4};
// The 3-bit indices 0 to 7 in each half of a channel block.
const uint8_t Indices0To7[6] = {0x88, 0xC6, 0xFA, 0x88, 0xC6, 0xFA};

void ExpectColumns(const uint8_t* rgba, const int (&columns)[4][4], const char* what) {
    int expected[16][4];
    for (int i = 0; i < 16; i++)
        std::memcpy(expected[i], columns[i % 4], sizeof expected[i]);
    ExpectBlock(rgba, expected, what);
}

} // namespace

TEST(DdsTest, Bc1FourColoursAreInterpolatedInFloats) {
    // 0x7BEF is (15, 31, 15) and 0x2945 (5, 10, 5): 123.39, 125.48, 123.39
    // and 41.13, 40.48, 41.13. A third of the way: 95.97 and 97.14 give 96
    // and 97 (integers: 95 and 96); two thirds: 68.55 and 68.81 give 69
    // (integers: 68).
    const uint8_t block[8] = {0xEF, 0x7B, 0x45, 0x29, 0xE4, 0xE4, 0xE4, 0xE4};
    uint8_t rgba[64];
    DecodeBc1Block(block, rgba);
    const int expected[4][4] = {
        {123, 125, 123, 255}, {41, 40, 41, 255}, {96, 97, 96, 255}, {69, 69, 69, 255}};
    ExpectColumns(rgba, expected, "BC1 four colours");
}

TEST(DdsTest, Bc1ThreeColoursTakeTheHalfInFloats) {
    // Black and 0x2B65, (5, 27, 5): 41.13, 109.29, 41.13 (bytes 41, 109,
    // 41). The half, 20.56 and 54.64, gives 21 and 55 (integers: 20 and 54);
    // the fourth entry is transparent black.
    uint8_t block[8] = {0x00, 0x00, 0x65, 0x2B};
    std::memcpy(block + 4, RowsOf0123, 4);
    uint8_t rgba[64];
    DecodeBc1Block(block, rgba);
    const int expected[4][4] = {
        {0, 0, 0, 255}, {41, 109, 41, 255}, {21, 55, 21, 255}, {0, 0, 0, 0}};
    ExpectColumns(rgba, expected, "BC1 three colours");
}

TEST(DdsTest, Bc2ColoursInFloatsAndAlphasInFifteenths) {
    // The colour block of BC2 has four colours even with its first end
    // below its second: 0x2945 then 0x7BEF, the thirds of the BC1 case
    // above in the other order. Alpha n / 15 is n * 17 exactly.
    uint8_t block[16] = {0x10, 0x32, 0x54, 0x76, 0x98, 0xBA, 0xDC, 0xFE, 0x45, 0x29, 0xEF, 0x7B};
    std::memcpy(block + 12, RowsOf0123, 4);
    uint8_t rgba[64];
    DecodeBc2Block(block, rgba);
    const int colours[4][3] = {{41, 40, 41}, {123, 125, 123}, {69, 69, 69}, {96, 97, 96}};
    for (int i = 0; i < 16; i++) {
        for (int c = 0; c < 3; c++)
            EXPECT_EQ(int(rgba[i * 4 + c]), colours[i % 4][c]) << i;
        EXPECT_EQ(int(rgba[i * 4 + 3]), 17 * i) << i;
    }
}

TEST(DdsTest, Bc3AlphaSeventhsAndColoursInFloats) {
    // Alpha 200 and 10, eight entries: the sevenths (6 * 200 + 10) / 7 =
    // 172.86 and on give 173, 146, 119, 91, 64, 37 (integers: 172, 145, 118,
    // 91, 64, 37).
    uint8_t block[16] = {200, 10};
    std::memcpy(block + 2, Indices0To7, 6);
    const uint8_t colour[8] = {0x45, 0x29, 0xEF, 0x7B, 0xE4, 0xE4, 0xE4, 0xE4};
    std::memcpy(block + 8, colour, 8);
    uint8_t rgba[64];
    DecodeBc3Block(block, rgba);
    const int alphas[8] = {200, 10, 173, 146, 119, 91, 64, 37};
    const int colours[4][3] = {{41, 40, 41}, {123, 125, 123}, {69, 69, 69}, {96, 97, 96}};
    for (int i = 0; i < 16; i++) {
        for (int c = 0; c < 3; c++)
            EXPECT_EQ(int(rgba[i * 4 + c]), colours[i % 4][c]) << i;
        EXPECT_EQ(int(rgba[i * 4 + 3]), alphas[i % 8]) << i;
    }
}

TEST(DdsTest, Bc4ValuesInFloatsGiveGray) {
    // Eight entries from 200 and 10 as in the BC3 alpha; six from 0 and 18:
    // the fifths 3.6, 7.2, 10.8, 14.4 give 4, 7, 11, 14 (integers: 3, 7, 10,
    // 14), then 0 and 255.
    uint8_t eight[8] = {200, 10}, six[8] = {0, 18};
    std::memcpy(eight + 2, Indices0To7, 6);
    std::memcpy(six + 2, Indices0To7, 6);
    const int eightValues[8] = {200, 10, 173, 146, 119, 91, 64, 37};
    const int sixValues[8] = {0, 18, 4, 7, 11, 14, 0, 255};
    uint8_t rgba[64];
    DecodeBc4Block(eight, rgba);
    for (int i = 0; i < 16; i++) {
        for (int c = 0; c < 3; c++)
            EXPECT_EQ(int(rgba[i * 4 + c]), eightValues[i % 8]) << i;
        EXPECT_EQ(int(rgba[i * 4 + 3]), 255);
    }
    DecodeBc4Block(six, rgba);
    for (int i = 0; i < 16; i++) {
        for (int c = 0; c < 3; c++)
            EXPECT_EQ(int(rgba[i * 4 + c]), sixValues[i % 8]) << i;
        EXPECT_EQ(int(rgba[i * 4 + 3]), 255);
    }
}

TEST(DdsTest, Bc5ValuesInFloatsGiveRedAndGreen) {
    // Red from the eight entries of 200 and 10, green from the six of 0 and
    // 18, as in the BC4 case.
    uint8_t block[16] = {200, 10};
    std::memcpy(block + 2, Indices0To7, 6);
    block[8] = 0;
    block[9] = 18;
    std::memcpy(block + 10, Indices0To7, 6);
    const int reds[8] = {200, 10, 173, 146, 119, 91, 64, 37};
    const int greens[8] = {0, 18, 4, 7, 11, 14, 0, 255};
    uint8_t rgba[64];
    DecodeBc5Block(block, rgba);
    for (int i = 0; i < 16; i++) {
        EXPECT_EQ(int(rgba[i * 4]), reds[i % 8]) << i;
        EXPECT_EQ(int(rgba[i * 4 + 1]), greens[i % 8]) << i;
        EXPECT_EQ(int(rgba[i * 4 + 2]), 0);
        EXPECT_EQ(int(rgba[i * 4 + 3]), 255);
    }
}

TEST(DdsTest, BlocksHangOverTheEdgesOfOddSizes) {
    // A 5 by 3 BC1 picture: two blocks across, one down. The first is all
    // red (index 0), the second all blue (index 1).
    std::vector<uint8_t> data = {0x00, 0xF8, 0x1F, 0x00, 0,    0,    0,    0,
                                 0x00, 0xF8, 0x1F, 0x00, 0x55, 0x55, 0x55, 0x55};
    MPicture picture;
    ASSERT_TRUE(Read(picture, Dds(Compressed("DXT1", 5, 3), data)));
    EXPECT_EQ(picture.Width, 5u);
    EXPECT_EQ(picture.Height, 3);
    ExpectPixel(picture, 3, 2, 255, 0, 0, 255);
    ExpectPixel(picture, 4, 0, 0, 0, 255, 255);
    ExpectPixel(picture, 4, 2, 0, 0, 255, 255);
}

// ---- BC7, one block per mode. Endpoints are unquantised by appending the
// p-bit where the mode has one and repeating the top bits below; a pixel is
// ((64 - w) * e0 + w * e1 + 32) >> 6 per channel, with the weights
// 2 bits: 0 21 43 64; 3 bits: 0 9 18 27 37 46 55 64;
// 4 bits: 0 4 9 13 17 21 26 30 34 38 43 47 51 55 60 64.
// Indices are read pixel by pixel; the anchor pixel of each subset (pixel 0,
// and the table's anchors) has one bit less.

TEST(DdsTest, Bc7ModeZero) {
    // Three subsets, partition 0 (4 bits): subsets by pixel
    // 0 0 1 1 / 0 0 1 1 / 0 2 2 1 / 2 2 2 2, anchors 0, 3 and 15.
    // 4-bit colour and a p-bit per endpoint make 5 bits, widened by
    // v << 3 | v >> 2: subset 0 runs from (15, 0, 0) p 1 = (31, 1, 1) =
    // (255, 8, 8) to (0, 0, 0) p 0 = (0, 0, 0); subset 1 from (0, 15, 0) p 1
    // = (8, 255, 8) to (0, 7, 0) p 0 = (0, 14, 0) = (0, 115, 0); subset 2
    // from (0, 0, 15) p 0 = (0, 0, 30) = (0, 0, 247) to (8, 8, 8) p 1 =
    // (17, 17, 17) = (140, 140, 140). Pixel 1 has index 1 (w 9):
    // (55 * 255 + 32) >> 6 = 219 and (55 * 8 + 32) >> 6 = 7.
    BlockWriter w;
    w.Put(1, 1);
    w.Put(0, 4);
    const uint32_t ends[6][3] = {{15, 0, 0}, {0, 0, 0},  {0, 15, 0},
                                 {0, 7, 0},  {0, 0, 15}, {8, 8, 8}};
    for (int c = 0; c < 3; c++)
        for (int e = 0; e < 6; e++)
            w.Put(ends[e][c], 4);
    for (uint32_t p : {1, 0, 1, 0, 0, 1})
        w.Put(p, 1);
    const uint32_t index[16] = {0, 1, 2, 3, 4, 5, 6, 7, 0, 1, 2, 3, 4, 5, 6, 3};
    for (int i = 0; i < 16; i++)
        w.Put(index[i], i == 0 || i == 3 || i == 15 ? 2 : 3);
    ASSERT_EQ(w.At, 128);
    uint8_t rgba[64];
    DecodeBc7Block(w.Bytes, rgba);
    const int expected[16][4] = {
        {255, 8, 8, 255},   {219, 7, 7, 255},     {6, 216, 6, 255},     {5, 196, 5, 255},
        {108, 3, 3, 255},   {72, 2, 2, 255},      {1, 135, 1, 255},     {0, 115, 0, 255},
        {255, 8, 8, 255},   {20, 20, 232, 255},   {39, 39, 217, 255},   {5, 196, 5, 255},
        {81, 81, 185, 255}, {101, 101, 170, 255}, {120, 120, 155, 255}, {59, 59, 202, 255}};
    ExpectBlock(rgba, expected, "mode 0");
}

TEST(DdsTest, Bc7ModeOne) {
    // Two subsets, partition 13: the upper two rows subset 0, the lower two
    // subset 1, anchor 15. 6-bit colour with one p-bit per subset make 7
    // bits, widened by v << 1 | v >> 6: subset 0 (p 1) from (63, 32, 0) =
    // (127, 65, 1) = (255, 131, 2) to (0, 10, 63) = (1, 21, 127) =
    // (2, 42, 255); subset 1 (p 0) from (20, 40, 60) = (40, 80, 120) =
    // (80, 161, 241) to (5, 5, 5) = (10, 10, 10) = (20, 20, 20). Pixel 8 is
    // index 0 of subset 1; pixel 9 (w 9) has red (55 * 80 + 9 * 20 + 32) >> 6
    // = 72.
    BlockWriter w;
    w.Put(2, 2);
    w.Put(13, 6);
    const uint32_t ends[4][3] = {{63, 32, 0}, {0, 10, 63}, {20, 40, 60}, {5, 5, 5}};
    for (int c = 0; c < 3; c++)
        for (int e = 0; e < 4; e++)
            w.Put(ends[e][c], 6);
    w.Put(1, 1);
    w.Put(0, 1);
    const uint32_t index[16] = {0, 1, 2, 3, 4, 5, 6, 7, 0, 1, 2, 3, 4, 5, 6, 2};
    for (int i = 0; i < 16; i++)
        w.Put(index[i], i == 0 || i == 15 ? 2 : 3);
    ASSERT_EQ(w.At, 128);
    uint8_t rgba[64];
    DecodeBc7Block(w.Bytes, rgba);
    const int expected[16][4] = {
        {255, 131, 2, 255},  {219, 118, 38, 255}, {184, 106, 73, 255}, {148, 93, 109, 255},
        {109, 80, 148, 255}, {73, 67, 184, 255},  {38, 55, 219, 255},  {2, 42, 255, 255},
        {80, 161, 241, 255}, {72, 141, 210, 255}, {63, 121, 179, 255}, {55, 102, 148, 255},
        {45, 79, 113, 255},  {37, 60, 82, 255},   {28, 40, 51, 255},   {63, 121, 179, 255}};
    ExpectBlock(rgba, expected, "mode 1");
}

TEST(DdsTest, Bc7ModeTwo) {
    // Three subsets, partition 11: columns 0 and 1 subset 0, column 2 subset
    // 1, column 3 subset 2; anchors 0, 6 and 15. 5-bit colour without p-bits,
    // widened by v << 3 | v >> 2: subset 0 from (31, 0, 0) = (255, 0, 0) to
    // (0, 31, 0) = (0, 255, 0); subset 1 from (0, 0, 31) = (0, 0, 255) to
    // (16, 16, 16) = (132, 132, 132); subset 2 from (1, 2, 3) = (8, 16, 24) to
    // (30, 29, 28) = (247, 239, 231). The index is the row (pixel 15, an
    // anchor, has 1). Row 1 of subset 0 (w 21): (43 * 255 + 32) >> 6 = 171
    // and (21 * 255 + 32) >> 6 = 84.
    BlockWriter w;
    w.Put(4, 3);
    w.Put(11, 6);
    const uint32_t ends[6][3] = {{31, 0, 0},   {0, 31, 0}, {0, 0, 31},
                                 {16, 16, 16}, {1, 2, 3},  {30, 29, 28}};
    for (int c = 0; c < 3; c++)
        for (int e = 0; e < 6; e++)
            w.Put(ends[e][c], 5);
    const uint32_t index[16] = {0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2, 2, 3, 3, 3, 1};
    for (int i = 0; i < 16; i++)
        w.Put(index[i], i == 0 || i == 6 || i == 15 ? 1 : 2);
    ASSERT_EQ(w.At, 128);
    uint8_t rgba[64];
    DecodeBc7Block(w.Bytes, rgba);
    const int expected[16][4] = {
        {255, 0, 0, 255},  {255, 0, 0, 255},  {0, 0, 255, 255},     {8, 16, 24, 255},
        {171, 84, 0, 255}, {171, 84, 0, 255}, {43, 43, 215, 255},   {86, 89, 92, 255},
        {84, 171, 0, 255}, {84, 171, 0, 255}, {89, 89, 172, 255},   {169, 166, 163, 255},
        {0, 255, 0, 255},  {0, 255, 0, 255},  {132, 132, 132, 255}, {86, 89, 92, 255}};
    ExpectBlock(rgba, expected, "mode 2");
}

TEST(DdsTest, Bc7ModeThree) {
    // Two subsets, partition 33: rows 0 and 2 subset 0, rows 1 and 3 subset
    // 1, anchor 15. 7-bit colour and a p-bit per endpoint make 8 bits: subset
    // 0 from (100, 50, 25) p 1 = (201, 101, 51) to (0, 127, 64) p 0 =
    // (0, 254, 128); subset 1 from (127, 127, 127) p 1 = (255, 255, 255) to
    // (10, 20, 30) p 1 = (21, 41, 61). Indices 0 1 2 3 in each row (pixel 15
    // has 1). Pixel 1 (w 21): (43 * 201 + 32) >> 6 = 135.
    BlockWriter w;
    w.Put(8, 4);
    w.Put(33, 6);
    const uint32_t ends[4][3] = {{100, 50, 25}, {0, 127, 64}, {127, 127, 127}, {10, 20, 30}};
    for (int c = 0; c < 3; c++)
        for (int e = 0; e < 4; e++)
            w.Put(ends[e][c], 7);
    for (uint32_t p : {1, 0, 1, 1})
        w.Put(p, 1);
    for (int i = 0; i < 16; i++)
        w.Put(i == 15 ? 1 : uint32_t(i % 4), i == 0 || i == 15 ? 1 : 2);
    ASSERT_EQ(w.At, 128);
    uint8_t rgba[64];
    DecodeBc7Block(w.Bytes, rgba);
    const int expected[16][4] = {
        {201, 101, 51, 255},  {135, 151, 76, 255},  {66, 204, 103, 255}, {0, 254, 128, 255},
        {255, 255, 255, 255}, {178, 185, 191, 255}, {98, 111, 125, 255}, {21, 41, 61, 255},
        {201, 101, 51, 255},  {135, 151, 76, 255},  {66, 204, 103, 255}, {0, 254, 128, 255},
        {255, 255, 255, 255}, {178, 185, 191, 255}, {98, 111, 125, 255}, {178, 185, 191, 255}};
    ExpectBlock(rgba, expected, "mode 3");
}

TEST(DdsTest, Bc7ModeFour) {
    // One subset, rotation 1 (alpha and red swap at the end), index
    // selection 1 (colour takes the 3-bit indices, alpha the 2-bit ones).
    // 5-bit colour from (31, 0, 10) = (255, 0, 82) to (0, 31, 20) =
    // (0, 255, 165); 6-bit alpha, widened by v << 2 | v >> 4, from 40 = 162
    // to 5 = 20. Alpha index i % 4, colour index 3 i % 8. Pixel 1: colour
    // index 3 (w 27) gives red (37 * 255 + 32) >> 6 = 147, green 108, blue
    // (37 * 82 + 27 * 165 + 32) >> 6 = 117; alpha index 1 (w 21) gives
    // (43 * 162 + 21 * 20 + 32) >> 6 = 115; then red and alpha swap.
    BlockWriter w;
    w.Put(16, 5);
    w.Put(1, 2);
    w.Put(1, 1);
    const uint32_t colour[2][3] = {{31, 0, 10}, {0, 31, 20}};
    for (int c = 0; c < 3; c++)
        for (int e = 0; e < 2; e++)
            w.Put(colour[e][c], 5);
    w.Put(40, 6);
    w.Put(5, 6);
    for (int i = 0; i < 16; i++)
        w.Put(uint32_t(i % 4), i == 0 ? 1 : 2);
    for (int i = 0; i < 16; i++)
        w.Put(uint32_t(i * 3 % 8), i == 0 ? 2 : 3);
    ASSERT_EQ(w.At, 128);
    uint8_t rgba[64];
    DecodeBc7Block(w.Bytes, rgba);
    const int expected[16][4] = {
        {162, 0, 82, 255},    {115, 108, 117, 147}, {67, 219, 153, 36}, {20, 36, 94, 219},
        {162, 147, 130, 108}, {115, 255, 165, 0},   {67, 72, 105, 183}, {20, 183, 142, 72},
        {162, 0, 82, 255},    {115, 108, 117, 147}, {67, 219, 153, 36}, {20, 36, 94, 219},
        {162, 147, 130, 108}, {115, 255, 165, 0},   {67, 72, 105, 183}, {20, 183, 142, 72}};
    ExpectBlock(rgba, expected, "mode 4");
}

TEST(DdsTest, Bc7ModeFive) {
    // One subset, rotation 2 (alpha and green swap). 7-bit colour, widened by
    // v << 1 | v >> 6, from (127, 0, 64) = (255, 0, 129) to (1, 100, 127) =
    // (2, 201, 255); 8-bit alpha from 255 to 3. Colour index i % 4, alpha
    // index the row. Pixel 4: colour (255, 0, 129), alpha (43 * 255 + 21 * 3
    // + 32) >> 6 = 172; then green and alpha swap.
    BlockWriter w;
    w.Put(32, 6);
    w.Put(2, 2);
    const uint32_t colour[2][3] = {{127, 0, 64}, {1, 100, 127}};
    for (int c = 0; c < 3; c++)
        for (int e = 0; e < 2; e++)
            w.Put(colour[e][c], 7);
    w.Put(255, 8);
    w.Put(3, 8);
    for (int i = 0; i < 16; i++)
        w.Put(uint32_t(i % 4), i == 0 ? 1 : 2);
    for (int i = 0; i < 16; i++)
        w.Put(uint32_t(i / 4), i == 0 ? 1 : 2);
    ASSERT_EQ(w.At, 128);
    uint8_t rgba[64];
    DecodeBc7Block(w.Bytes, rgba);
    const int expected[16][4] = {
        {255, 255, 129, 0}, {172, 255, 170, 66}, {85, 255, 214, 135}, {2, 255, 255, 201},
        {255, 172, 129, 0}, {172, 172, 170, 66}, {85, 172, 214, 135}, {2, 172, 255, 201},
        {255, 86, 129, 0},  {172, 86, 170, 66},  {85, 86, 214, 135},  {2, 86, 255, 201},
        {255, 3, 129, 0},   {172, 3, 170, 66},   {85, 3, 214, 135},   {2, 3, 255, 201}};
    ExpectBlock(rgba, expected, "mode 5");
}

TEST(DdsTest, Bc7ModeSix) {
    // One subset, 7-bit colour and alpha with a p-bit per endpoint: from
    // (10, 20, 30, 127) p 0 = (20, 40, 60, 254) to (120, 110, 100, 0) p 1 =
    // (241, 221, 201, 1); 4-bit indices 0 to 15 in pixel order. Pixel 8
    // (w 34): red (30 * 20 + 34 * 241 + 32) >> 6 = 137, alpha
    // (30 * 254 + 34 + 32) >> 6 = 120.
    BlockWriter w;
    w.Put(64, 7);
    const uint32_t ends[2][4] = {{10, 20, 30, 127}, {120, 110, 100, 0}};
    for (int c = 0; c < 4; c++)
        for (int e = 0; e < 2; e++)
            w.Put(ends[e][c], 7);
    w.Put(0, 1);
    w.Put(1, 1);
    for (int i = 0; i < 16; i++)
        w.Put(uint32_t(i), i == 0 ? 3 : 4);
    ASSERT_EQ(w.At, 128);
    uint8_t rgba[64];
    DecodeBc7Block(w.Bytes, rgba);
    const int expected[16][4] = {
        {20, 40, 60, 254},    {34, 51, 69, 238},    {51, 65, 80, 218},    {65, 77, 89, 203},
        {79, 88, 97, 187},    {93, 99, 106, 171},   {110, 114, 117, 151}, {124, 125, 126, 135},
        {137, 136, 135, 120}, {151, 147, 144, 104}, {168, 162, 155, 84},  {182, 173, 164, 68},
        {196, 184, 172, 52},  {210, 196, 181, 37},  {227, 210, 192, 17},  {241, 221, 201, 1}};
    ExpectBlock(rgba, expected, "mode 6");
}

TEST(DdsTest, Bc7ModeSeven) {
    // Two subsets, partition 1: column 3 subset 1, the rest subset 0, anchor
    // 15. 5-bit colour and alpha with a p-bit per endpoint make 6 bits,
    // widened by v << 2 | v >> 4: subset 0 from (31, 0, 0, 31) p 1 =
    // (255, 4, 4, 255) to (0, 0, 31, 0) p 0 = (0, 0, 251, 0); subset 1 from
    // (16, 16, 16, 16) p 0 = (130, 130, 130, 130) to (3, 7, 11, 15) p 1 =
    // (28, 60, 93, 125). The index is the row (pixel 15 has 1). Row 1 of
    // subset 0 (w 21): (43 * 255 + 32) >> 6 = 171, (43 * 4 + 32) >> 6 = 3,
    // (43 * 4 + 21 * 251 + 32) >> 6 = 85.
    BlockWriter w;
    w.Put(128, 8);
    w.Put(1, 6);
    const uint32_t ends[4][4] = {{31, 0, 0, 31}, {0, 0, 31, 0}, {16, 16, 16, 16}, {3, 7, 11, 15}};
    for (int c = 0; c < 4; c++)
        for (int e = 0; e < 4; e++)
            w.Put(ends[e][c], 5);
    for (uint32_t p : {1, 0, 0, 1})
        w.Put(p, 1);
    const uint32_t index[16] = {0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2, 2, 3, 3, 3, 1};
    for (int i = 0; i < 16; i++)
        w.Put(index[i], i == 0 || i == 15 ? 1 : 2);
    ASSERT_EQ(w.At, 128);
    uint8_t rgba[64];
    DecodeBc7Block(w.Bytes, rgba);
    const int expected[16][4] = {
        {255, 4, 4, 255},  {255, 4, 4, 255},  {255, 4, 4, 255},  {130, 130, 130, 130},
        {171, 3, 85, 171}, {171, 3, 85, 171}, {171, 3, 85, 171}, {97, 107, 118, 128},
        {84, 1, 170, 84},  {84, 1, 170, 84},  {84, 1, 170, 84},  {61, 83, 105, 127},
        {0, 0, 251, 0},    {0, 0, 251, 0},    {0, 0, 251, 0},    {97, 107, 118, 128}};
    ExpectBlock(rgba, expected, "mode 7");
}

TEST(DdsTest, Bc7WithoutAModeIsTransparentBlackAndLoadsThroughTheFile) {
    uint8_t block[16];
    std::memset(block, 0xAA, 16);
    block[0] = 0;
    uint8_t rgba[64];
    std::memset(rgba, 0x55, 64);
    DecodeBc7Block(block, rgba);
    for (int i = 0; i < 64; i++)
        ASSERT_EQ(rgba[i], 0) << i;

    // A DX10 file of one mode 6 block: the decoded red lands where format 7
    // keeps red, third in each pixel.
    BlockWriter w;
    w.Put(64, 7);
    const uint32_t ends[2][4] = {{10, 20, 30, 127}, {120, 110, 100, 0}};
    for (int c = 0; c < 4; c++)
        for (int e = 0; e < 2; e++)
            w.Put(ends[e][c], 7);
    w.Put(0, 1);
    w.Put(1, 1);
    for (int i = 0; i < 16; i++)
        w.Put(uint32_t(i), i == 0 ? 3 : 4);
    MPicture picture;
    ASSERT_TRUE(Read(picture, Dds(Dx10(98), std::vector<uint8_t>(w.Bytes, w.Bytes + 16))));
    EXPECT_EQ(picture.Format, PictureBgra8);
    EXPECT_EQ(picture.Pixels[0], 60);
    EXPECT_EQ(picture.Pixels[2], 20);
    ExpectPixel(picture, 0, 2, 137, 136, 135, 120);
    ExpectPixel(picture, 3, 3, 241, 221, 201, 1);
}

// ---- The writer

TEST(DdsTest, TheWriterUsesTheLegacyHeaderOfItsThreeFormats) {
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

TEST(DdsTest, SavedPicturesLoadBackInTheWriterFormats) {
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
