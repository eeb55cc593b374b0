// Fuzz target of the picture readers that are ours: TGA, DDS with its block
// decoders, and the native build's BMP reader, all from memory. Each loaded
// picture is read back pixel by pixel, resampled and written as DDS again, so
// that whatever a reader accepts is a picture the rest can take.
//
// Seeds: tests/data/pictures/*.tga tests/data/pictures/*.dds tests/data/pictures/*.bmp
// Max length: 65536

#include "drawing/BmpFile.h"
#include "drawing/MPicture.h"
#include "foundation/Platform.h"

#include <cstddef>
#include <cstdint>

namespace {

void UseEverything(MPicture& picture) {
    if (!picture.IsUsable()) __builtin_trap();
    uint32_t sum = 0;
    for (int32_t y = 0; y < picture.Height; y++)
        for (uint32_t x = 0; x < picture.Width; x++) {
            MColour c = ReadPixel(picture.PixelAddress(int32_t(x), y), picture.Format);
            sum += c.b + c.g + c.r + c.a;
        }
    picture.HasTransparency();
    MPicture small;
    small.Resample(picture, int32_t(picture.Width / 3 + 1), picture.Height / 3 + 1, PictureBgra8);
    MVector<uint8_t> bytes;
    int32_t size = 0;
    if (!WriteDds(picture, bytes, size)) __builtin_trap();
    MPicture again;
    if (!ReadDds(again, bytes.Data, size)) __builtin_trap();
    if (again.Width != picture.Width || again.Height != picture.Height) __builtin_trap();
    (void)sum;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    if (size > (1 << 20)) return 0;
    int32_t length = int32_t(size);
    StartDebugCapture(); // the TGA reader's line about the row order
    {
        MPicture picture;
        if (ReadTga(picture, data, length, MString(u"fuzz")))
            UseEverything(picture);
        else if (picture.Pixels)
            __builtin_trap();
    }
    StopDebugCapture();
    {
        MPicture picture;
        if (ReadDds(picture, data, length))
            UseEverything(picture);
        else if (picture.Pixels)
            __builtin_trap();
    }
    {
        MPicture picture;
        if (ReadBmp(picture, data, length))
            UseEverything(picture);
        else if (picture.Pixels)
            __builtin_trap();
    }
    return 0;
}
