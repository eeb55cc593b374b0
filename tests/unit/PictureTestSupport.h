#pragma once
// Helpers of the picture tests: the pictures made by tests/data/make_pictures.sh
// with the pixels their makers decode from them, and comparisons of a loaded
// picture with those pixels.

#include "ScratchFolder.h"
#include "drawing/MPicture.h"
#include "foundation/MString.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

namespace picturetest {

inline std::string DataPath(const std::string& name) {
    return std::string(TEST_SOURCE_DIR) + "/tests/data/pictures/" + name;
}

inline MString Text(const std::string& path) {
    std::u16string wide(path.begin(), path.end()); // the paths here are ASCII
    return MString(wide.c_str());
}

inline MString DataText(const std::string& name) {
    return Text(DataPath(name));
}

inline std::vector<uint8_t> ReadBytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::vector<uint8_t>(std::istreambuf_iterator<char>(in),
                                std::istreambuf_iterator<char>());
}

inline void WriteBytes(const std::string& path, const std::vector<uint8_t>& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()), std::streamsize(bytes.size()));
}

// A scratch file name in the test process's own folder, for saving.
inline std::string ScratchPath(const std::string& name) {
    return (scratch::Kept("pictures") / name).string();
}

// Compares every pixel, read as blue, green, red, alpha by ReadPixel, with
// the reference's red, green, blue, alpha bytes; each channel may be off by
// tolerance. Stops at the first mismatch with a message that names it.
inline ::testing::AssertionResult
MatchesReference8(const MPicture& picture, const std::vector<uint8_t>& rgba, int tolerance = 0) {
    if (!picture.IsUsable()) return ::testing::AssertionFailure() << "picture not usable";
    size_t count = size_t(picture.Width) * size_t(picture.Height);
    if (rgba.size() != count * 4)
        return ::testing::AssertionFailure()
               << "reference holds " << rgba.size() << " bytes for " << count << " pixels";
    for (int32_t y = 0; y < picture.Height; y++)
        for (uint32_t x = 0; x < picture.Width; x++) {
            MColour c = ReadPixel(picture.PixelAddress(int32_t(x), y), picture.Format);
            const uint8_t* r = &rgba[(size_t(y) * picture.Width + x) * 4];
            int got[4] = {c.r, c.g, c.b, c.a};
            for (int k = 0; k < 4; k++)
                if (std::abs(got[k] - int(r[k])) > tolerance)
                    return ::testing::AssertionFailure()
                           << "pixel (" << x << ", " << y << ") channel "
                           << "RGBA"[k] << ": " << got[k] << " where the reference has "
                           << int(r[k]);
        }
    return ::testing::AssertionSuccess();
}

// The same for a 16-bit picture (formats 2, 5, 8) against 16-bit red, green,
// blue, alpha, low byte first: gray stands in all three, no alpha is 65535.
inline ::testing::AssertionResult MatchesReference16(const MPicture& picture,
                                                     const std::vector<uint8_t>& rgba) {
    if (!picture.IsUsable()) return ::testing::AssertionFailure() << "picture not usable";
    size_t count = size_t(picture.Width) * size_t(picture.Height);
    if (rgba.size() != count * 8) return ::testing::AssertionFailure() << "reference size";
    for (int32_t y = 0; y < picture.Height; y++)
        for (uint32_t x = 0; x < picture.Width; x++) {
            const uint8_t* p = picture.PixelAddress(int32_t(x), y);
            const uint8_t* r = &rgba[(size_t(y) * picture.Width + x) * 8];
            int got[4];
            for (int k = 0; k < 4; k++) {
                int channel = picture.Format == PictureGray16            ? (k < 3 ? 0 : -1)
                              : picture.Format == PictureRgb16 && k == 3 ? -1
                                                                         : k;
                got[k] = channel < 0 ? 65535 : p[2 * channel] | (p[2 * channel + 1] << 8);
            }
            for (int k = 0; k < 4; k++) {
                int want = r[2 * k] | (r[2 * k + 1] << 8);
                if (got[k] != want)
                    return ::testing::AssertionFailure()
                           << "pixel (" << x << ", " << y << ") channel "
                           << "RGBA"[k] << ": " << got[k] << " where the reference has " << want;
            }
        }
    return ::testing::AssertionSuccess();
}

} // namespace picturetest
