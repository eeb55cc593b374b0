// The TGA reader: uncompressed true-colour pictures of 24 and 32 bits and
// palette pictures of 8 bits, nothing run-length encoded. Two habits of the
// reader are kept on purpose because pictures made for the program rely on
// the way it has always read them: the image ID field is not skipped, and a
// palette entry's bytes are taken as red, green, blue (and alpha).

#include "drawing/MPicture.h"
#include "foundation/MFile.h"
#include "foundation/Platform.h"

#include <cstring>

namespace {

enum { TgaHeaderSize = 18 };

// A cursor over the file's bytes; every read either delivers all it asks for
// or fails.
struct TgaBytes {
    const uint8_t* Data;
    int64_t Size;
    int64_t Position;

    bool Read(void* target, int64_t count) {
        if (count < 0 || Size - Position < count) return false;
        std::memcpy(target, Data + Position, size_t(count));
        Position += count;
        return true;
    }
};

int32_t Signed16(const uint8_t* at) {
    return int16_t(uint16_t(at[0] | (at[1] << 8)));
}

// The colour map's length is put together from its two bytes read as signed
// values, so 128 to 255 entries come out negative and fail, while 256 loads.
int32_t MapLength(const uint8_t* header) {
    return int8_t(header[6]) * 256 + int8_t(header[5]);
}

// ---- Type 1: 8-bit indices into a colour map of 24- or 32-bit entries; the
// caller has checked the map's length and entry size.
bool ReadPalettePixels(MPicture& picture, TgaBytes& bytes, const uint8_t* header) {
    int32_t length = MapLength(header);
    int32_t entryBytes = header[7] / 8;

    MVector<MColour> palette; // opaque black until the file says otherwise
    if (!palette.SetCount(length)) return false;
    for (int32_t i = 0; i < length; i++) {
        uint8_t entry[4];
        if (!bytes.Read(entry, entryBytes)) return false;
        palette[i].r = entry[0];
        palette[i].g = entry[1];
        palette[i].b = entry[2];
        if (entryBytes == 4) palette[i].a = entry[3];
    }

    int64_t count = int64_t(picture.Width) * picture.Height;
    if (bytes.Size - bytes.Position < count) return false;
    const uint8_t* index = bytes.Data + bytes.Position;
    bytes.Position += count;
    for (int32_t y = 0; y < picture.Height; y++) {
        uint8_t* row = picture.Pixels + int64_t(y) * picture.Pitch;
        for (uint32_t x = 0; x < picture.Width; x++, index++)
            if (*index < length) WritePixel(palette[*index], row + x * 3, picture.Format);
        // An index past the map leaves the pixel as the block held it.
    }
    return true;
}

} // namespace

bool ReadTga(MPicture& picture, const uint8_t* data, int32_t size, const MString& name) {
    picture.Free();
    if (!data || size < TgaHeaderSize) return false;
    TgaBytes bytes{data, size, 0};
    uint8_t header[TgaHeaderSize];
    bytes.Read(header, TgaHeaderSize);

    int32_t colourMapType = header[1];
    int32_t imageType = header[2];
    int32_t width = Signed16(header + 12);
    int32_t height = Signed16(header + 14);
    int32_t depth = header[16];
    int32_t descriptor = header[17];
    if (width < 1 || height < 1) return false;
    if (depth != 8 && depth != 24 && depth != 32) return false;
    if (imageType != 1 && imageType != 2) return false;
    if (colourMapType != 0 && colourMapType != 1) return false;

    // The two layouts the reader knows, and the bytes each needs behind the
    // header; a file too short fails before a block of its claimed size is
    // made.
    bool trueColour = imageType == 2 && colourMapType == 0 && (depth == 24 || depth == 32);
    bool palette = imageType == 1 && colourMapType == 1 && depth == 8;
    int64_t needed = int64_t(width) * height * (depth / 8);
    if (palette) {
        int32_t length = MapLength(header);
        if (length < 1 || (header[7] != 24 && header[7] != 32)) return false;
        needed += int64_t(length) * (header[7] / 8);
    } else if (!trueColour) {
        return false;
    }
    if (int64_t(size) - TgaHeaderSize < needed) return false;

    if (!picture.Allocate(width, height, depth == 32 ? PictureBgra8 : PictureBgr8)) return false;
    picture.TopDown = true;

    // The reader goes on right behind the header: a non-empty image ID is
    // read as pixels (or as the colour map), and the colour map's first index
    // is never looked at.
    bool read = trueColour ? bytes.Read(picture.Pixels, int64_t(picture.Pitch) * picture.Height)
                           : ReadPalettePixels(picture, bytes, header);
    if (!read) {
        picture.Free();
        return false;
    }

    bool topDown = (descriptor & 0x20) != 0;
    DebugOutput(MString(u"TGA ") + name + MString(u" is top-down: ") +
                MString(topDown ? u"Y" : u"N") + MString(u"\n"));
    if (!topDown) {
        // Bottom-up rows are turned over here so that the picture leaves the
        // reader top-down like every other.
        picture.FlipVertical();
        picture.TopDown = true;
    }
    return true;
}

bool LoadTga(MPicture& picture, const MString& path) {
    picture.Free();
    MFile file;
    if (!file.Open(path, false, true) || !file.InMemory) return false;
    return ReadTga(picture, file.Memory.Data, file.Memory.Count, path);
}
