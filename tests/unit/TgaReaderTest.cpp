// The TGA reader: true-colour pictures made by ImageMagick in both row
// orders, palette pictures with the reader's kept habits (entries read as
// red, green, blue; the map length from two signed bytes; the ID field not
// skipped), the combinations it refuses, and damaged files.

#include "drawing/MPicture.h"
#include "foundation/Platform.h"

#include "PictureTestSupport.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>

using namespace picturetest;

namespace {

// The 18 bytes of a header: ID length, colour map type, image type, first
// index, map length, entry size, width, height, depth, descriptor.
std::vector<uint8_t> Header(int id, int mapType, int type, int first, int length, int entry,
                            int width, int height, int depth, int descriptor) {
    return {uint8_t(id),
            uint8_t(mapType),
            uint8_t(type),
            uint8_t(first),
            uint8_t(first >> 8),
            uint8_t(length),
            uint8_t(length >> 8),
            uint8_t(entry),
            0,
            0,
            0,
            0,
            uint8_t(width),
            uint8_t(width >> 8),
            uint8_t(height),
            uint8_t(height >> 8),
            uint8_t(depth),
            uint8_t(descriptor)};
}

void Append(std::vector<uint8_t>& to, std::initializer_list<int> bytes) {
    for (int b : bytes)
        to.push_back(uint8_t(b));
}

bool Read(MPicture& picture, const std::vector<uint8_t>& bytes) {
    StartDebugCapture();
    bool done = ReadTga(picture, bytes.data(), int32_t(bytes.size()), MString(u"test.tga"));
    StopDebugCapture();
    return done;
}

void ExpectPixel(const MPicture& picture, int x, int y, int b, int g, int r, int a = 255) {
    MColour c = ReadPixel(picture.PixelAddress(x, y), picture.Format);
    EXPECT_EQ(c.b, b) << x << "," << y;
    EXPECT_EQ(c.g, g) << x << "," << y;
    EXPECT_EQ(c.r, r) << x << "," << y;
    EXPECT_EQ(c.a, a) << x << "," << y;
}

// A palette picture of 3 by 2 pixels, top-down, whose map of length entries
// (of entryBits bits) holds entry i as the bytes 10 i + 1, 10 i + 2, 10 i + 3
// (and 10 i + 4); the indices follow.
std::vector<uint8_t> PalettePicture(int length, int entryBits, int mapEntries,
                                    std::initializer_list<int> indices, int first = 0) {
    std::vector<uint8_t> bytes = Header(0, 1, 1, first, length, entryBits, 3, 2, 8, 0x20);
    for (int i = 0; i < mapEntries; i++) {
        Append(bytes, {10 * i + 1, 10 * i + 2, 10 * i + 3});
        if (entryBits == 32) Append(bytes, {10 * i + 4});
    }
    Append(bytes, indices);
    return bytes;
}

} // namespace

// ---- True-colour pictures by ImageMagick

TEST(TgaReaderTest, TrueColourPicturesLoadInBothRowOrders) {
    struct Case {
        const char* Name;
        int32_t Format;
    } cases[] = {{"tga24-bottom.tga", PictureBgr8},
                 {"tga24-top.tga", PictureBgr8},
                 {"tga32-bottom.tga", PictureBgra8},
                 {"tga32-top.tga", PictureBgra8}};
    for (const Case& c : cases) {
        MPicture picture;
        StartDebugCapture();
        ASSERT_TRUE(picture.Load(DataText(c.Name))) << c.Name;
        StopDebugCapture();
        EXPECT_EQ(picture.Format, c.Format) << c.Name;
        EXPECT_EQ(picture.Width, 23u);
        EXPECT_EQ(picture.Height, 17);
        EXPECT_TRUE(picture.TopDown) << c.Name;
        EXPECT_TRUE(MatchesReference8(picture, ReadBytes(DataPath(std::string(c.Name) + ".rgba"))))
            << c.Name;
    }
}

TEST(TgaReaderTest, AThirtyTwoBitPictureWithItsOriginAtTheLowerLeftComesOutTopDown) {
    std::vector<uint8_t> file = ReadBytes(DataPath("tga32-bottom.tga"));
    ASSERT_EQ(file[17] & 0x20, 0); // the file's rows go upwards
    MPicture picture;
    StartDebugCapture();
    ASSERT_TRUE(picture.Load(DataText("tga32-bottom.tga")));
    EXPECT_EQ(StopDebugCapture(),
              MString(u"TGA ") + DataText("tga32-bottom.tga") + MString(u" is top-down: N\n"));
    EXPECT_TRUE(picture.TopDown);
    // The file's first row is the picture's last.
    EXPECT_EQ(0, std::memcmp(picture.PixelAddress(0, 16), file.data() + 18, 23 * 4));
    EXPECT_EQ(0, std::memcmp(picture.PixelAddress(0, 0), file.data() + 18 + 16 * 23 * 4, 23 * 4));

    StartDebugCapture();
    ASSERT_TRUE(picture.Load(DataText("tga32-top.tga")));
    EXPECT_EQ(StopDebugCapture(),
              MString(u"TGA ") + DataText("tga32-top.tga") + MString(u" is top-down: Y\n"));
    std::vector<uint8_t> top = ReadBytes(DataPath("tga32-top.tga"));
    EXPECT_EQ(0, std::memcmp(picture.Pixels, top.data() + 18, 23 * 4 * 17));
}

TEST(TgaReaderTest, ReadingFromMemoryEqualsReadingTheFile) {
    std::vector<uint8_t> bytes = ReadBytes(DataPath("tga24-bottom.tga"));
    MPicture fromFile, fromMemory;
    StartDebugCapture();
    ASSERT_TRUE(LoadTga(fromFile, DataText("tga24-bottom.tga")));
    ASSERT_TRUE(ReadTga(fromMemory, bytes.data(), int32_t(bytes.size()), MString(u"memory")));
    EXPECT_EQ(StopDebugCapture(), MString(u"TGA ") + DataText("tga24-bottom.tga") +
                                      MString(u" is top-down: N\nTGA memory is top-down: N\n"));
    ASSERT_EQ(fromMemory.Pitch, fromFile.Pitch);
    EXPECT_EQ(0, std::memcmp(fromFile.Pixels, fromMemory.Pixels, fromFile.Pitch * 17));
}

// ---- Palette pictures

TEST(TgaReaderTest, PaletteEntriesAreReadAsRedGreenBlue) {
    // ImageMagick writes the entries blue first, as the format has them; the
    // reader takes the first byte for red, so red and blue come out swapped
    // against ImageMagick's own reading.
    MPicture picture;
    StartDebugCapture();
    ASSERT_TRUE(picture.Load(DataText("tga-palette.tga")));
    StopDebugCapture();
    EXPECT_EQ(picture.Format, PictureBgr8);
    std::vector<uint8_t> reference = ReadBytes(DataPath("tga-palette.tga.rgba"));
    for (size_t i = 0; i < reference.size(); i += 4)
        std::swap(reference[i], reference[i + 2]);
    EXPECT_TRUE(MatchesReference8(picture, reference));

    MPicture small;
    ASSERT_TRUE(Read(small, PalettePicture(3, 24, 3, {0, 1, 2, 2, 1, 0})));
    EXPECT_EQ(small.Format, PictureBgr8);
    ExpectPixel(small, 0, 0, 3, 2, 1);
    ExpectPixel(small, 1, 0, 13, 12, 11);
    ExpectPixel(small, 2, 0, 23, 22, 21);
    ExpectPixel(small, 0, 1, 23, 22, 21);
}

TEST(TgaReaderTest, ThirtyTwoBitEntriesGiveAThreeByteFormat) {
    MPicture picture;
    ASSERT_TRUE(Read(picture, PalettePicture(2, 32, 2, {0, 1, 0, 1, 1, 1})));
    EXPECT_EQ(picture.Format, PictureBgr8);
    ExpectPixel(picture, 0, 0, 3, 2, 1);
    ExpectPixel(picture, 1, 0, 13, 12, 11);
}

TEST(TgaReaderTest, APaletteIndexBeyondTheMapLeavesThePixelAsTheBlockHeldIt) {
    MPicture picture;
    ASSERT_TRUE(Read(picture, PalettePicture(3, 24, 3, {2, 3, 200, 255, 1, 2})));
    ExpectPixel(picture, 0, 0, 23, 22, 21);
    ExpectPixel(picture, 1, 0, 0, 0, 0); // index 3 of a map of 3
    ExpectPixel(picture, 2, 0, 0, 0, 0);
    ExpectPixel(picture, 0, 1, 0, 0, 0);
    ExpectPixel(picture, 1, 1, 13, 12, 11);
}

TEST(TgaReaderTest, TheMapsFirstIndexIsIgnored) {
    MPicture picture;
    ASSERT_TRUE(Read(picture, PalettePicture(3, 24, 3, {0, 1, 2, 0, 1, 2}, 5)));
    ExpectPixel(picture, 0, 0, 3, 2, 1);
    ExpectPixel(picture, 2, 0, 23, 22, 21);
}

TEST(TgaReaderTest, TheMapLengthIsBuiltFromTwoSignedBytes) {
    MPicture picture;
    std::initializer_list<int> indices = {0, 1, 2, 3, 4, 5};
    EXPECT_TRUE(Read(picture, PalettePicture(127, 24, 127, indices)));
    // 128 to 255 entries: the low byte counts negative and the length below 1.
    EXPECT_FALSE(Read(picture, PalettePicture(128, 24, 128, indices)));
    EXPECT_FALSE(Read(picture, PalettePicture(200, 24, 200, indices)));
    EXPECT_FALSE(Read(picture, PalettePicture(255, 24, 255, indices)));
    EXPECT_FALSE(picture.IsUsable());
    ASSERT_TRUE(Read(picture, PalettePicture(256, 24, 256, {0, 1, 255, 3, 4, 5})));
    ExpectPixel(picture, 2, 0, (10 * 255 + 3) & 255, (10 * 255 + 2) & 255, (10 * 255 + 1) & 255);

    // 384 entries (high byte 1, low byte 128) read as 256 - 128 = 128, so the
    // indices are taken from inside the map, at entry 128's place.
    ASSERT_TRUE(Read(picture, PalettePicture(384, 24, 384, {})));
    // Entry 128 starts with 10 * 128 + 1 = 1281, byte 1; its bytes are the
    // indices 1, 2, 3 of the first row, then entry 129 gives 11, 12, 13.
    ExpectPixel(picture, 0, 0, 13, 12, 11);
    ExpectPixel(picture, 1, 0, 23, 22, 21);
    ExpectPixel(picture, 2, 0, 33, 32, 31);
    ExpectPixel(picture, 0, 1, 113, 112, 111);
}

TEST(TgaReaderTest, ANonEmptyIdFieldLoadsShifted) {
    std::vector<uint8_t> bytes = Header(3, 0, 2, 0, 0, 0, 2, 1, 24, 0x20);
    Append(bytes, {1, 2, 3});                // the image ID
    Append(bytes, {11, 12, 13, 21, 22, 23}); // the two pixels
    MPicture picture;
    ASSERT_TRUE(Read(picture, bytes));
    ExpectPixel(picture, 0, 0, 1, 2, 3);
    ExpectPixel(picture, 1, 0, 11, 12, 13);

    // A palette picture reads its map from the ID's place too.
    std::vector<uint8_t> palette = Header(2, 1, 1, 0, 1, 24, 1, 1, 8, 0x20);
    Append(palette, {7, 8});         // the image ID
    Append(palette, {40, 0, 60, 1}); // the entry, then the index
    // The entry is read from 7, 8, 40 and the index is the entry's 0.
    ASSERT_TRUE(Read(picture, palette));
    ExpectPixel(picture, 0, 0, 40, 8, 7);
}

// ---- Refused pictures

TEST(TgaReaderTest, OtherDepthsTypesAndCombinationsFail) {
    std::vector<uint8_t> pixels(4 * 3 * 2 + 3 * 256, 9);
    auto refused = [&](std::vector<uint8_t> bytes) {
        bytes.insert(bytes.end(), pixels.begin(), pixels.end());
        MPicture picture;
        StartDebugCapture();
        bool done = ReadTga(picture, bytes.data(), int32_t(bytes.size()), MString(u"x"));
        MString debug = StopDebugCapture();
        return !done && !picture.IsUsable() && picture.Pixels == nullptr && debug.IsEmpty();
    };
    EXPECT_TRUE(refused(Header(0, 0, 2, 0, 0, 0, 3, 2, 16, 0))); // depth 16
    EXPECT_TRUE(refused(Header(0, 0, 2, 0, 0, 0, 3, 2, 15, 0)));
    EXPECT_TRUE(refused(Header(0, 0, 3, 0, 0, 0, 3, 2, 8, 0)));   // gray
    EXPECT_TRUE(refused(Header(0, 0, 10, 0, 0, 0, 3, 2, 24, 0))); // run-length encoded
    EXPECT_TRUE(refused(Header(0, 1, 9, 0, 2, 24, 3, 2, 8, 0)));
    EXPECT_TRUE(refused(Header(0, 2, 2, 0, 0, 0, 3, 2, 24, 0)));      // colour map type 2
    EXPECT_TRUE(refused(Header(0, 1, 2, 0, 2, 24, 3, 2, 24, 0)));     // type 2 with a map
    EXPECT_TRUE(refused(Header(0, 0, 2, 0, 0, 0, 3, 2, 8, 0)));       // type 2 of 8 bits
    EXPECT_TRUE(refused(Header(0, 1, 1, 0, 2, 24, 3, 2, 24, 0)));     // type 1 of 24 bits
    EXPECT_TRUE(refused(Header(0, 0, 1, 0, 2, 24, 3, 2, 8, 0)));      // type 1 without a map
    EXPECT_TRUE(refused(Header(0, 1, 1, 0, 2, 16, 3, 2, 8, 0)));      // 16-bit entries
    EXPECT_TRUE(refused(Header(0, 1, 1, 0, 0, 24, 3, 2, 8, 0)));      // an empty map
    EXPECT_TRUE(refused(Header(0, 0, 2, 0, 0, 0, 0, 2, 24, 0)));      // no width
    EXPECT_TRUE(refused(Header(0, 0, 2, 0, 0, 0, 3, 0, 24, 0)));      // no height
    EXPECT_TRUE(refused(Header(0, 0, 2, 0, 0, 0, 0x8000, 2, 24, 0))); // negative
    // The control: the same bytes with a good header load.
    EXPECT_FALSE(refused(Header(0, 0, 2, 0, 0, 0, 3, 2, 32, 0)));
}

TEST(TgaReaderTest, TruncatedFilesFailCleanly) {
    for (const char* name : {"tga24-bottom.tga", "tga32-top.tga", "tga-palette.tga"}) {
        std::vector<uint8_t> bytes = ReadBytes(DataPath(name));
        MPicture picture;
        ASSERT_TRUE(Read(picture, bytes)) << name;
        // ImageMagick adds a footer the reader never looks at; the pixels end
        // where the header says.
        size_t needed = std::string(name) == "tga-palette.tga" ? 18 + 16 * 3 + 23 * 17
                        : std::string(name) == "tga32-top.tga" ? 18 + 23 * 17 * 4
                                                               : 18 + 23 * 17 * 3;
        ASSERT_LE(needed, bytes.size());
        for (size_t length = 0; length < needed; length++) {
            std::vector<uint8_t> part(bytes.begin(), bytes.begin() + long(length));
            ASSERT_FALSE(Read(picture, part)) << name << " cut at " << length;
            ASSERT_EQ(picture.Pixels, nullptr);
        }
        std::vector<uint8_t> exact(bytes.begin(), bytes.begin() + long(needed));
        EXPECT_TRUE(Read(picture, exact)) << name;
    }
    MPicture picture;
    EXPECT_FALSE(ReadTga(picture, nullptr, 100, MString(u"x")));
}

TEST(TgaReaderTest, GarbageNeverCrashes) {
    std::mt19937 random(12345);
    std::vector<uint8_t> bytes;
    int loaded = 0;
    for (int round = 0; round < 3000; round++) {
        bytes.resize(random() % 400);
        for (uint8_t& b : bytes)
            b = uint8_t(random());
        // Half of the rounds get a header the reader accepts, with random
        // sizes, so that the pixel reading is exercised too.
        if (round % 2 && bytes.size() >= 18) {
            bytes[1] = uint8_t(random() % 2);
            bytes[2] = uint8_t(1 + random() % 2);
            static const uint8_t depths[3] = {8, 24, 32};
            bytes[16] = depths[random() % 3];
            bytes[13] = bytes[15] = 0;
            bytes[12] = uint8_t(1 + random() % 8);
            bytes[14] = uint8_t(1 + random() % 8);
            bytes[6] = 0;
        }
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
