#pragma once
// The system's in-memory bitmap: pixels in one of nine formats, read and
// written as 8-bit blue, green, red, alpha whatever the format, loaded by
// extension (the TGA reader, the DDS reader, or the platform's decoders),
// saved, cropped and resampled. Every loader delivers rows top-down.

#include "foundation/MColour.h"
#include "foundation/MString.h"
#include "foundation/MVector.h"
#include "foundation/WRect.h"

#include <cstddef>
#include <cstdint>

// The nine pixel layouts. The 8-bit formats are blue first and the wider ones
// red first: those are the layouts the platform's decoders deliver without a
// conversion.
enum MPictureFormat : int32_t {
    PictureNone = 0,
    PictureGray8 = 1,    // 1 byte: gray
    PictureGray16 = 2,   // 2 bytes: gray
    PictureGrayHalf = 3, // 2 bytes: gray as a half float
    PictureBgr8 = 4,     // 3 bytes: blue, green, red
    PictureRgb16 = 5,    // 6 bytes: red, green, blue
    PictureRgbHalf = 6,  // 6 bytes: red, green, blue as half floats
    PictureBgra8 = 7,    // 4 bytes: blue, green, red, alpha
    PictureRgba16 = 8,   // 8 bytes: red, green, blue, alpha
    PictureRgbaHalf = 9, // 8 bytes: red, green, blue, alpha as half floats
};

// Bytes per pixel of a format; 0 for anything that is no format.
int32_t PictureBytesPerPixel(int32_t format);
// True for the three formats with an alpha channel (7, 8, 9).
bool PictureHasAlpha(int32_t format);

struct MPicture {
    uint32_t Width = 0;                      // pixels; 0 means an empty picture
    int32_t Height = 0;                      // pixels
    int32_t Format = 0;                      // an MPictureFormat, 0 when empty
    uint32_t Pitch = 0;                      // bytes from one row to the next
    uint8_t* Pixels = nullptr;               // owned, Pitch * Height bytes
    bool TopDown = true;                     // row 0 is the top
    int32_t FrameCount = 1;                  // frames in the file
    int32_t FrameDelay = 100;                // of the first frame, milliseconds
    int32_t FrameDisposal = 0;               // of the first frame, as the file gives it
    int32_t FrameLeft = 0, FrameTop = 0;     // position of the first frame
    int32_t FrameWidth = 0, FrameHeight = 0; // size of the first frame

    MPicture() = default;
    MPicture(const MPicture&) = delete;
    MPicture& operator=(const MPicture&) = delete;
    MPicture(MPicture&& other) noexcept { *this = static_cast<MPicture&&>(other); }
    MPicture& operator=(MPicture&& other) noexcept;
    ~MPicture() { Free(); }

    // Back to an empty picture: the block is freed and every field reset.
    void Free();
    // Makes an empty picture of width by height pixels in format, with the
    // pitch of the format's bytes times the width and a block of zeros. Any
    // old contents go first. False (and an empty picture) for a size below 1,
    // an unknown format or a failed allocation.
    bool Allocate(int32_t width, int32_t height, int32_t format);
    // Width, height, format, block and pitch all non-zero, and for formats 4
    // and 7 a pitch that holds a row. Every operation tests this first.
    bool IsUsable() const;

    // Loads a file by its extension: "TGA" to the TGA reader, "DDS" to the
    // DDS reader, anything else to the platform's decoders. On failure the
    // picture is empty.
    bool Load(const MString& path);
    // Writes the picture by its extension; see MPicture.cpp for the table.
    bool Save(const MString& path) const;

    // The byte address of pixel (x, y), coordinates wrapping around both
    // sides. Null for a picture that is not usable.
    uint8_t* PixelAddress(int32_t x, int32_t y) const;
    bool HasTransparency() const;
    // Swaps the rows and toggles TopDown.
    void FlipVertical();
    // Fills this picture, already made in the source's size, from source:
    // see CopyPixels for which pairs of formats convert.
    bool Copy(const MPicture& source);
    // Makes this picture the part of source inside rectangle (left and top
    // inclusive, right and bottom exclusive), clipped to the source, in the
    // source's format. False when nothing of the rectangle lies inside.
    bool Crop(const MPicture& source, WRect rectangle);
    // Makes this picture source resampled to width by height in format, by
    // the box filter of Resample.cpp.
    bool Resample(const MPicture& source, int32_t width, int32_t height, int32_t format);
    // Windows build only: a new IWICBitmap of 32bppPBGRA for drawing, owned by
    // the caller (one reference), or null. Defined in PictureWic_win.cpp.
    void* ToWicBitmap() const;
};

// Four bytes blue, green, red, alpha of the pixel at address in format: no
// alpha gives 255, gray gives its value thrice, a 16-bit channel its high
// byte, a half float value * 255 truncated to 0 to 255.
MColour ReadPixel(const uint8_t* address, int32_t format);
// The reverse: a 16-bit channel gets the byte as its high byte and 255 as its
// low byte, a half float the byte * (1 / 256); gray takes the red byte.
void WritePixel(MColour colour, uint8_t* address, int32_t format);

// Fills a block of source's size (pixels with its own pitch and format) from
// source. The same format and pitch are one block copy; towards format 4 or 7
// every format converts pixel by pixel, and 5 and 8 convert into each other
// on 16 bits. Other pairs write nothing and still give true. False only when
// the source is not usable or the target has no block.
bool CopyPixels(const MPicture& source, uint8_t* pixels, uint32_t pitch, int32_t format);

// The premultiplied copy that drawing wants: target becomes a format 7 copy
// of source in which every colour channel of a pixel with alpha below 255 is
// channel * alpha >> 8. Sources without alpha are copied unchanged.
bool PremultipliedCopy(const MPicture& source, MPicture& target);

// The block of a picture: size bytes, not cleared, freed with std::free; null
// (with the debug line of a failed allocation) when there is no memory.
// Natively a large block is asked for in huge pages, so that a fresh picture
// of many megabytes costs a few page faults instead of thousands.
void* AllocatePictureBlock(uint64_t size);

// ---- Half floats, as the formats 3, 6 and 9 hold them.
float HalfToFloat(uint16_t half);
uint16_t FloatToHalf(float value); // rounds to the nearest half, ties to even

// ---- The readers, from memory as well as from files. Each fills an empty
// picture and leaves it empty on failure.

// The TGA reader. name is only for the debug line about the row order.
bool ReadTga(MPicture& picture, const uint8_t* bytes, int32_t size, const MString& name);
bool LoadTga(MPicture& picture, const MString& path);
// The DDS reader: a simple 2D image, its first mip level, block compression
// BC1 to BC5 and BC7 decompressed.
bool ReadDds(MPicture& picture, const uint8_t* bytes, int32_t size);
bool LoadDds(MPicture& picture, const MString& path);
// The DDS writer: formats 1, 4 and 7 as R8G8B8A8_UNORM with alpha 255, 2, 5
// and 8 as R16G16B16A16_UNORM, 3, 6 and 9 as R16G16B16A16_FLOAT. The whole
// file goes to bytes (capacity counted in bytes.Count, fill in size).
bool WriteDds(const MPicture& picture, MVector<uint8_t>& bytes, int32_t& size);
bool SaveDds(const MPicture& picture, const MString& path);

// ---- Saving through the platform: the container follows the extension.
enum MPictureContainer {
    ContainerNone = 0, // the save fails
    ContainerBmp,
    ContainerJpeg,
    ContainerPng,
    ContainerTiff,
    ContainerGif,
    ContainerHeif,
};
// The container of an upper-case extension without its dot.
MPictureContainer PictureContainer(const MString& extension);

// ---- The platform's decoders and encoders (PictureWic_win.cpp on Windows,
// PictureDecode_posix.cpp natively).
bool PlatformLoadPicture(MPicture& picture, const MString& path);
// The native build's decoding of a file's bytes, as PlatformLoadPicture does
// after reading them: PNG, JPEG, GIF, TIFF or BMP by the first bytes. The
// Windows build decodes through its imaging component and has no such entry.
bool DecodePictureMemory(MPicture& picture, const uint8_t* data, size_t size);
// Writes picture into a container other than none, in format 4 whatever the
// picture's own format.
bool PlatformSavePicture(const MPicture& picture, const MString& path, MPictureContainer container);
