// Decoding of compressed blocks: BC1 to BC5 blocks by hand, their palettes
// worked out in floats, and BC7 blocks of all eight modes worked out by hand
// from the format's rules.

#include "DdsTestSupport.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>

using namespace ddstest;

// ---- BC1 to BC5 blocks by hand

TEST(BlockDecode, Bc1HasAThreeColourModeThatBc2AndBc3Ignore) {
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

TEST(BlockDecode, Bc4IsGrayAndBc5FillsRedAndGreenWithBlueZeroAndAlphaFull) {
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

TEST(BlockDecode, Bc1FourColoursAreInterpolatedInFloats) {
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

TEST(BlockDecode, Bc1ThreeColoursTakeTheHalfInFloats) {
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

TEST(BlockDecode, Bc2ColoursInFloatsAndAlphasInFifteenths) {
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

TEST(BlockDecode, Bc3AlphaSeventhsAndColoursInFloats) {
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

TEST(BlockDecode, Bc4ValuesInFloatsGiveGray) {
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

TEST(BlockDecode, Bc5ValuesInFloatsGiveRedAndGreen) {
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

TEST(BlockDecode, BlocksHangOverTheEdgesOfOddSizes) {
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

TEST(BlockDecode, Bc7ModeZero) {
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

TEST(BlockDecode, Bc7ModeOne) {
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

TEST(BlockDecode, Bc7ModeTwo) {
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

TEST(BlockDecode, Bc7ModeThree) {
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

TEST(BlockDecode, Bc7ModeFour) {
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

TEST(BlockDecode, Bc7ModeFive) {
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

TEST(BlockDecode, Bc7ModeSix) {
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

TEST(BlockDecode, Bc7ModeSeven) {
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

TEST(BlockDecode, Bc7WithoutAModeIsTransparentBlackAndLoadsThroughTheFile) {
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
