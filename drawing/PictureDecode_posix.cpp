// The native build's picture decoders and encoders, in place of the imaging
// component of Windows: libpng, libjpeg-turbo, giflib and libtiff from the
// system, and the small BMP reader of BmpFile.cpp. Each decoder delivers the
// pixel format that the Windows component would give for the same file (the
// table in PictureWic_win.cpp), so that a picture loads alike in both builds.
//
// As on Windows, the decoder is chosen by the file's first bytes, not by its
// extension, and no orientation tag is applied.

#include "drawing/BmpFile.h"
#include "drawing/MPicture.h"
#include "foundation/MFile.h"

#include <csetjmp>
#include <cstdio>
#include <cstdlib>
#include <cstring>

#include <gif_lib.h>
#include <jpeglib.h>
#include <png.h>
#include <tiffio.h>

namespace {

// ---- Pixels after the copy: red and blue swapped in every pixel of a
// format 4 or 7 picture.
void SwapRedBlue(MPicture& picture) {
    int32_t bytes = PictureBytesPerPixel(picture.Format);
    for (int32_t y = 0; y < picture.Height; y++) {
        uint8_t* at = picture.Pixels + int64_t(y) * picture.Pitch;
        for (uint32_t x = 0; x < picture.Width; x++, at += bytes) {
            uint8_t red = at[0];
            at[0] = at[2];
            at[2] = red;
        }
    }
}

// =====================================================================
// PNG

struct PngSource {
    const uint8_t* Data;
    size_t Size;
    size_t At;
    png_bytep* Rows; // owned by DecodePng, freed on every way out
};

void PngRead(png_structp png, png_bytep target, png_size_t count) {
    PngSource* source = static_cast<PngSource*>(png_get_io_ptr(png));
    if (source->Size - source->At < count) png_error(png, "truncated");
    std::memcpy(target, source->Data + source->At, count);
    source->At += count;
}

void PngQuiet(png_structp, png_const_charp) {}

void PngFail(png_structp png, png_const_charp) {
    png_longjmp(png, 1);
}

// Widens the indices in the last quarter of each row of a format 7 picture
// into blue, green, red, alpha, from the left, so that no index is written
// over before it is read. As libpng's expansion does, an index past the
// palette gives black and one past the transparency entries alpha 255.
void ExpandPalette(png_structp png, png_infop info, MPicture& picture) {
    png_colorp palette = nullptr;
    int colours = 0;
    png_get_PLTE(png, info, &palette, &colours);
    png_bytep alphas = nullptr;
    int transparent = 0;
    png_get_tRNS(png, info, &alphas, &transparent, nullptr);
    uint8_t table[256][4] = {};
    for (int i = 0; i < 256; i++) {
        if (palette && i < colours) {
            table[i][0] = palette[i].blue;
            table[i][1] = palette[i].green;
            table[i][2] = palette[i].red;
        }
        table[i][3] = alphas && i < transparent ? alphas[i] : 255;
    }
    for (int32_t y = 0; y < picture.Height; y++) {
        uint8_t* row = picture.Pixels + uint64_t(y) * picture.Pitch;
        const uint8_t* index = row + uint64_t(picture.Width) * 3;
        for (uint32_t x = 0; x < picture.Width; x++)
            std::memcpy(row + 4 * x, table[index[x]], 4);
    }
}

// The formats follow the Windows decoder: gray of 8 and 16 bits, RGB and RGBA
// of 8 and 16 bits and gray with alpha keep their depth; palettes, gray below
// 8 bits and transparency chunks become 8-bit BGRA (16-bit RGB with a
// transparency chunk 16-bit RGBA).
bool DecodePng(MPicture& picture, PngSource& source) {
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, PngFail, PngQuiet);
    if (!png) return false;
    png_infop info = png_create_info_struct(png);
    if (!info) {
        png_destroy_read_struct(&png, nullptr, nullptr);
        return false;
    }
    if (setjmp(png_jmpbuf(png))) {
        png_destroy_read_struct(&png, &info, nullptr);
        std::free(source.Rows);
        source.Rows = nullptr;
        picture.Free();
        return false;
    }
    png_set_read_fn(png, &source, PngRead);
    png_read_info(png, info);
    png_uint_32 width = png_get_image_width(png, info);
    png_uint_32 height = png_get_image_height(png, info);
    int depth = png_get_bit_depth(png, info);
    int type = png_get_color_type(png, info);
    bool transparency = png_get_valid(png, info, PNG_INFO_tRNS) != 0;
    if (width < 1 || height < 1 || width > 0x7fffffff || height > 0x7fffffff)
        png_error(png, "size");

    int32_t format;
    bool indexed = false;
    if (type == PNG_COLOR_TYPE_GRAY && !transparency && (depth == 8 || depth == 16)) {
        format = depth == 8 ? PictureGray8 : PictureGray16;
    } else if (type == PNG_COLOR_TYPE_RGB && !transparency) {
        format = depth == 8 ? PictureBgr8 : PictureRgb16;
    } else if (type == PNG_COLOR_TYPE_RGB_ALPHA || type == PNG_COLOR_TYPE_GRAY_ALPHA) {
        format = depth == 8 ? PictureBgra8 : PictureRgba16;
        if (type == PNG_COLOR_TYPE_GRAY_ALPHA) png_set_gray_to_rgb(png);
    } else if (type == PNG_COLOR_TYPE_PALETTE) {
        // Read as one index a byte and looked up below: the same pixels as
        // libpng's expansion to RGBA and swap to BGRA, in one pass instead of
        // three.
        format = PictureBgra8;
        indexed = true;
        if (depth < 8) png_set_packing(png);
    } else if (type == PNG_COLOR_TYPE_RGB && depth == 16) {
        format = PictureRgba16;
        png_set_tRNS_to_alpha(png);
    } else {
        format = PictureBgra8;
        png_set_expand(png);
        if (depth == 16) png_set_strip_16(png);
        if (type == PNG_COLOR_TYPE_GRAY || type == PNG_COLOR_TYPE_GRAY_ALPHA)
            png_set_gray_to_rgb(png);
        png_set_filler(png, 0xff, PNG_FILLER_AFTER);
    }
    if ((format == PictureBgr8 || format == PictureBgra8) && !indexed) png_set_bgr(png);
    // The wide formats hold their channels low byte first.
    if (depth == 16 && format != PictureBgra8) png_set_swap(png);
    png_set_interlace_handling(png);
    png_read_update_info(png, info);

    if (!picture.Allocate(int32_t(width), int32_t(height), format)) png_error(png, "memory");
    // Indices go to the last quarter of each row, so that the lookup can
    // widen them in place from the left.
    uint32_t offset = indexed ? width * 3 : 0;
    if (png_get_rowbytes(png, info) != picture.Pitch - offset) png_error(png, "layout");
    source.Rows = static_cast<png_bytep*>(std::malloc(sizeof(png_bytep) * height));
    if (!source.Rows) png_error(png, "memory");
    for (png_uint_32 y = 0; y < height; y++)
        source.Rows[y] = picture.Pixels + uint64_t(y) * picture.Pitch + offset;
    png_read_image(png, source.Rows);
    if (indexed) ExpandPalette(png, info, picture);
    png_destroy_read_struct(&png, &info, nullptr);
    std::free(source.Rows);
    source.Rows = nullptr;
    return true;
}

// =====================================================================
// JPEG

struct JpegError {
    jpeg_error_mgr Manager;
    jmp_buf Jump;
};

void JpegFail(j_common_ptr info) {
    longjmp(reinterpret_cast<JpegError*>(info->err)->Jump, 1);
}
void JpegQuiet(j_common_ptr) {}

struct JpegSource {
    jpeg_decompress_struct Info;
    JpegError Error;
    jpeg_progress_mgr Progress;
};

// A progressive file goes over the whole picture once per scan, so a file of
// a few hundred bytes declaring a large picture and holding many scans keeps
// the decoder busy out of all proportion to its size. Files that real
// encoders write hold up to a few dozen scans; past this many the file is
// refused. A truncated file stops at its end, with the scans it holds, and
// loads as before.
enum { JpegScanLimit = 100 };

void JpegProgress(j_common_ptr common) {
    if (!common->is_decompressor) return;
    j_decompress_ptr info = reinterpret_cast<j_decompress_ptr>(common);
    if (info->input_scan_number > JpegScanLimit) JpegFail(common);
}

// Gray stays 8-bit gray, colour becomes BGR, and CMYK goes through to BGRA as
// the Windows decoder's CMYK frames are converted.
bool DecodeJpeg(MPicture& picture, JpegSource& jpeg, const uint8_t* data, size_t size) {
    jpeg_decompress_struct& info = jpeg.Info;
    info.err = jpeg_std_error(&jpeg.Error.Manager);
    jpeg.Error.Manager.error_exit = JpegFail;
    jpeg.Error.Manager.output_message = JpegQuiet;
    if (setjmp(jpeg.Error.Jump)) {
        jpeg_destroy_decompress(&info);
        picture.Free();
        return false;
    }
    jpeg_create_decompress(&info);
    jpeg.Progress.progress_monitor = JpegProgress;
    info.progress = &jpeg.Progress;
    jpeg_mem_src(&info, data, static_cast<unsigned long>(size));
    jpeg_read_header(&info, TRUE);
    bool cmyk = info.jpeg_color_space == JCS_CMYK || info.jpeg_color_space == JCS_YCCK;
    int32_t format;
    if (info.jpeg_color_space == JCS_GRAYSCALE) {
        info.out_color_space = JCS_GRAYSCALE;
        format = PictureGray8;
    } else if (cmyk) {
        info.out_color_space = JCS_CMYK;
        format = PictureBgra8;
    } else {
        info.out_color_space = JCS_EXT_BGR;
        format = PictureBgr8;
    }
    jpeg_start_decompress(&info);
    if (!picture.Allocate(int32_t(info.output_width), int32_t(info.output_height), format))
        JpegFail(reinterpret_cast<j_common_ptr>(&info));
    bool inverted = info.saw_Adobe_marker;
    while (info.output_scanline < info.output_height) {
        JSAMPROW row = picture.Pixels + uint64_t(info.output_scanline) * picture.Pitch;
        jpeg_read_scanlines(&info, &row, 1);
        if (!cmyk) continue;
        for (uint32_t x = 0; x < picture.Width; x++) {
            uint8_t* at = row + x * 4;
            // Adobe's files store the inks inverted: 255 is no ink.
            uint32_t c = inverted ? at[0] : 255 - at[0], m = inverted ? at[1] : 255 - at[1];
            uint32_t yellow = inverted ? at[2] : 255 - at[2], k = inverted ? at[3] : 255 - at[3];
            at[0] = uint8_t(yellow * k / 255);
            at[1] = uint8_t(m * k / 255);
            at[2] = uint8_t(c * k / 255);
            at[3] = 255;
        }
    }
    jpeg_finish_decompress(&info);
    jpeg_destroy_decompress(&info);
    return true;
}

// =====================================================================
// GIF

struct GifSource {
    const uint8_t* Data;
    size_t Size;
    size_t At;
};

int GifRead(GifFileType* gif, GifByteType* target, int count) {
    GifSource* source = static_cast<GifSource*>(gif->UserData);
    size_t left = source->Size - source->At;
    size_t take = count < 0 ? 0 : size_t(count) < left ? size_t(count) : left;
    std::memcpy(target, source->Data + source->At, take);
    source->At += take;
    return int(take);
}

// True when every frame's pixels could come out of the bytes behind it. A
// code of the compressed data takes at least two bits and stands for at most
// 4096 pixels, so a frame of more than 16384 pixels per byte of its data runs
// out of data before it is full, and giflib then refuses the file anyway;
// this finds such a file from its block structure, before giflib allocates
// and clears the frame (gigabytes for a few hundred bytes of file).
bool GifFramesFitTheirData(const uint8_t* data, size_t size) {
    if (size < 13) return true; // giflib's own checks refuse it
    size_t at = 13;
    if (data[10] & 0x80) at += 3u * (2u << (data[10] & 7));
    // Skips a chain of sub-blocks; false when the file ends inside it.
    auto skipBlocks = [&](uint64_t& bytes) {
        while (at < size) {
            size_t length = data[at++];
            if (length == 0) return true;
            at += length;
            bytes += length;
        }
        return false;
    };
    while (at < size) {
        uint8_t kind = data[at++];
        uint64_t bytes = 0;
        if (kind == 0x21) {
            at++; // the extension's label
            if (!skipBlocks(bytes)) return true;
        } else if (kind == 0x2c) {
            if (at + 9 > size) return true;
            uint64_t width = data[at + 4] | (data[at + 5] << 8);
            uint64_t height = data[at + 6] | (data[at + 7] << 8);
            uint8_t flags = data[at + 8];
            at += 9;
            if (flags & 0x80) at += 3u * (2u << (flags & 7));
            at++; // the code size
            bool ended = skipBlocks(bytes);
            if (width * height > 16384 * (bytes + 1)) return false;
            if (!ended) return true;
        } else {
            return true; // the trailer, or what giflib is left to judge
        }
    }
    return true;
}

// The first frame alone, in its own size, as BGRA with the transparent index
// at alpha 0. With more than one frame the first frame's delay, disposal and
// place are kept too.
bool DecodeGif(MPicture& picture, const uint8_t* data, size_t size) {
    if (!GifFramesFitTheirData(data, size)) return false;
    GifSource source{data, size, 0};
    int error = 0;
    GifFileType* gif = DGifOpen(&source, GifRead, &error);
    if (!gif) return false;
    bool done = false;
    if (DGifSlurp(gif) == GIF_OK && gif->ImageCount > 0) {
        const SavedImage& frame = gif->SavedImages[0];
        const GifImageDesc& place = frame.ImageDesc;
        const ColorMapObject* map = place.ColorMap ? place.ColorMap : gif->SColorMap;
        GraphicsControlBlock control;
        bool hasControl = DGifSavedExtensionToGCB(gif, 0, &control) == GIF_OK;
        int transparent = hasControl ? control.TransparentColor : NO_TRANSPARENT_COLOR;
        if (map && frame.RasterBits && place.Width > 0 && place.Height > 0 &&
            picture.Allocate(place.Width, place.Height, PictureBgra8)) {
            const GifByteType* index = frame.RasterBits;
            for (int32_t y = 0; y < picture.Height; y++) {
                uint8_t* at = picture.Pixels + int64_t(y) * picture.Pitch;
                for (uint32_t x = 0; x < picture.Width; x++, at += 4, index++) {
                    MColour colour; // an index past the map is opaque black
                    if (*index < map->ColorCount) {
                        colour.r = map->Colors[*index].Red;
                        colour.g = map->Colors[*index].Green;
                        colour.b = map->Colors[*index].Blue;
                    }
                    if (*index == transparent) colour.a = 0;
                    WritePixel(colour, at, PictureBgra8);
                }
            }
            picture.FrameCount = gif->ImageCount;
            if (gif->ImageCount > 1) {
                if (hasControl) {
                    if (control.DelayTime != 0) picture.FrameDelay = control.DelayTime * 10;
                    picture.FrameDisposal = control.DisposalMode;
                }
                picture.FrameLeft = place.Left;
                picture.FrameTop = place.Top;
                picture.FrameWidth = place.Width;
                picture.FrameHeight = place.Height;
            }
            done = true;
        }
    }
    DGifCloseFile(gif, &error);
    return done;
}

// =====================================================================
// TIFF

struct TiffStream {
    const uint8_t* Data = nullptr;   // reading
    MVector<uint8_t>* Out = nullptr; // writing: Count is the capacity
    uint64_t Size = 0;
    uint64_t At = 0;
};

tmsize_t TiffRead(thandle_t handle, void* target, tmsize_t count) {
    TiffStream* stream = static_cast<TiffStream*>(handle);
    if (!stream->Data || count < 0 || stream->At >= stream->Size) return 0;
    uint64_t take = stream->Size - stream->At;
    if (uint64_t(count) < take) take = uint64_t(count);
    std::memcpy(target, stream->Data + stream->At, size_t(take));
    stream->At += take;
    return tmsize_t(take);
}

tmsize_t TiffWrite(thandle_t handle, void* source, tmsize_t count) {
    TiffStream* stream = static_cast<TiffStream*>(handle);
    if (!stream->Out || count < 0) return -1;
    uint64_t end = stream->At + uint64_t(count);
    if (end > 0x7fffffff) return -1;
    if (!stream->Out->Grow(int32_t(end), 1 << 16)) return -1;
    std::memcpy(stream->Out->Data + stream->At, source, size_t(count));
    stream->At = end;
    if (end > stream->Size) stream->Size = end;
    return count;
}

toff_t TiffSeek(thandle_t handle, toff_t offset, int whence) {
    TiffStream* stream = static_cast<TiffStream*>(handle);
    int64_t base = whence == SEEK_CUR   ? int64_t(stream->At)
                   : whence == SEEK_END ? int64_t(stream->Size)
                                        : 0;
    int64_t position = base + int64_t(offset);
    if (position < 0) return toff_t(-1);
    stream->At = uint64_t(position);
    return toff_t(position);
}

int TiffClose(thandle_t) {
    return 0;
}
toff_t TiffSize(thandle_t handle) {
    return static_cast<TiffStream*>(handle)->Size;
}
int TiffMap(thandle_t, void**, toff_t*) {
    return 0;
}
void TiffUnmap(thandle_t, void*, toff_t) {}

TIFF* OpenTiff(TiffStream& stream, const char* mode) {
    // libtiff talks to stderr unless told otherwise; the program's decoders
    // report nothing but failure.
    TIFFSetErrorHandler(nullptr);
    TIFFSetWarningHandler(nullptr);
    return TIFFClientOpen("picture", mode, &stream, TiffRead, TiffWrite, TiffSeek, TiffClose,
                          TiffSize, TiffMap, TiffUnmap);
}

// Any other TIFF through libtiff's RGBA reader, which gives premultiplied
// alpha; the Windows conversion to BGRA undoes the premultiplication too.
bool DecodeTiffRgba(MPicture& picture, TIFF* tiff) {
    char message[1024];
    TIFFRGBAImage image;
    if (!TIFFRGBAImageOK(tiff, message) || !TIFFRGBAImageBegin(&image, tiff, 0, message))
        return false;
    // Rows in the file's own order: the orientation tag is not applied.
    image.req_orientation = image.orientation;
    bool done = false;
    uint64_t count = uint64_t(image.width) * image.height;
    uint32_t* raster =
        count > 0 && count < (1u << 28) ? static_cast<uint32_t*>(MGetMemory(count * 4)) : nullptr;
    if (raster && TIFFRGBAImageGet(&image, raster, image.width, image.height) &&
        picture.Allocate(int32_t(image.width), int32_t(image.height), PictureBgra8)) {
        for (int32_t y = 0; y < picture.Height; y++) {
            uint8_t* at = picture.Pixels + int64_t(y) * picture.Pitch;
            const uint32_t* from = raster + uint64_t(y) * image.width;
            for (uint32_t x = 0; x < picture.Width; x++, at += 4) {
                uint32_t value = from[x];
                uint32_t alpha = TIFFGetA(value);
                uint32_t rgb[3] = {TIFFGetR(value), TIFFGetG(value), TIFFGetB(value)};
                for (uint32_t& c : rgb) {
                    if (alpha == 0)
                        c = 0;
                    else if (alpha < 255)
                        c = c * 255 / alpha > 255 ? 255 : c * 255 / alpha;
                }
                at[0] = uint8_t(rgb[2]);
                at[1] = uint8_t(rgb[1]);
                at[2] = uint8_t(rgb[0]);
                at[3] = uint8_t(alpha);
            }
        }
        done = true;
    }
    std::free(raster);
    TIFFRGBAImageEnd(&image);
    return done;
}

// Gray of 8 and 16 bits, RGB and RGB with straight alpha of 8 and 16 bits in
// strips keep their depth, as the Windows decoder gives them; the rest goes
// through libtiff's RGBA reader to BGRA.
bool DecodeTiff(MPicture& picture, const uint8_t* data, size_t size) {
    TiffStream stream;
    stream.Data = data;
    stream.Size = size;
    TIFF* tiff = OpenTiff(stream, "rm");
    if (!tiff) return false;
    uint32_t width = 0, height = 0;
    uint16_t depth = 1, samples = 1, photometric = 0, sampleFormat = SAMPLEFORMAT_UINT;
    uint16_t planar = PLANARCONFIG_CONTIG, extraCount = 0;
    uint16_t* extraTypes = nullptr;
    TIFFGetField(tiff, TIFFTAG_IMAGEWIDTH, &width);
    TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &height);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_BITSPERSAMPLE, &depth);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_SAMPLESPERPIXEL, &samples);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_SAMPLEFORMAT, &sampleFormat);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_PLANARCONFIG, &planar);
    TIFFGetFieldDefaulted(tiff, TIFFTAG_EXTRASAMPLES, &extraCount, &extraTypes);
    bool hasPhotometric = TIFFGetField(tiff, TIFFTAG_PHOTOMETRIC, &photometric) != 0;

    int32_t format = PictureNone;
    if (hasPhotometric && planar == PLANARCONFIG_CONTIG && sampleFormat == SAMPLEFORMAT_UINT &&
        !TIFFIsTiled(tiff) && (depth == 8 || depth == 16)) {
        bool wide = depth == 16;
        if (photometric == PHOTOMETRIC_MINISBLACK && samples == 1)
            format = wide ? PictureGray16 : PictureGray8;
        else if (photometric == PHOTOMETRIC_RGB && samples == 3)
            format = wide ? PictureRgb16 : PictureBgr8;
        else if (photometric == PHOTOMETRIC_RGB && samples == 4 && extraCount == 1 && extraTypes &&
                 extraTypes[0] == EXTRASAMPLE_UNASSALPHA)
            format = wide ? PictureRgba16 : PictureBgra8;
    }
    bool done = false;
    if (format == PictureNone) {
        done = DecodeTiffRgba(picture, tiff);
    } else if (width >= 1 && height >= 1 && width < 0x8000000 && height < 0x8000000 &&
               picture.Allocate(int32_t(width), int32_t(height), format) &&
               uint64_t(TIFFScanlineSize64(tiff)) == picture.Pitch) {
        done = true;
        for (uint32_t y = 0; y < height && done; y++)
            done = TIFFReadScanline(tiff, picture.Pixels + uint64_t(y) * picture.Pitch, y, 0) == 1;
        if (done && (format == PictureBgr8 || format == PictureBgra8)) SwapRedBlue(picture);
    }
    if (done) {
        int32_t frames = TIFFNumberOfDirectories(tiff);
        picture.FrameCount = frames > 0 ? frames : 1;
    } else {
        picture.Free();
    }
    TIFFClose(tiff);
    return done;
}

// =====================================================================
// Encoders: each writes the format 4 copy of the picture.

struct PngTarget {
    MFile* File;
    bool Failed;
};

void PngWrite(png_structp png, png_bytep data, png_size_t count) {
    PngTarget* target = static_cast<PngTarget*>(png_get_io_ptr(png));
    if (!target->File->Write(data, uint32_t(count))) target->Failed = true;
}

void PngFlush(png_structp) {}

bool EncodePng(const MPicture& picture, MFile& file) {
    PngTarget target{&file, false};
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, PngFail, PngQuiet);
    if (!png) return false;
    png_infop info = png_create_info_struct(png);
    if (!info || setjmp(png_jmpbuf(png))) {
        png_destroy_write_struct(&png, &info);
        return false;
    }
    png_set_write_fn(png, &target, PngWrite, PngFlush);
    png_set_IHDR(png, info, picture.Width, png_uint_32(picture.Height), 8, PNG_COLOR_TYPE_RGB,
                 PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_write_info(png, info);
    png_set_bgr(png);
    for (int32_t y = 0; y < picture.Height; y++)
        png_write_row(png, picture.Pixels + int64_t(y) * picture.Pitch);
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    return !target.Failed;
}

struct JpegTarget {
    jpeg_compress_struct Info;
    JpegError Error;
    unsigned char* Buffer;
    unsigned long Size;
};

bool EncodeJpeg(const MPicture& picture, JpegTarget& jpeg) {
    jpeg_compress_struct& info = jpeg.Info;
    info.err = jpeg_std_error(&jpeg.Error.Manager);
    jpeg.Error.Manager.error_exit = JpegFail;
    jpeg.Error.Manager.output_message = JpegQuiet;
    if (setjmp(jpeg.Error.Jump)) {
        jpeg_destroy_compress(&info);
        return false;
    }
    jpeg_create_compress(&info);
    jpeg_mem_dest(&info, &jpeg.Buffer, &jpeg.Size);
    info.image_width = picture.Width;
    info.image_height = JDIMENSION(picture.Height);
    info.input_components = 3;
    info.in_color_space = JCS_EXT_BGR;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, 90, TRUE);
    jpeg_start_compress(&info, TRUE);
    while (info.next_scanline < info.image_height) {
        JSAMPROW row = picture.Pixels + uint64_t(info.next_scanline) * picture.Pitch;
        jpeg_write_scanlines(&info, &row, 1);
    }
    jpeg_finish_compress(&info);
    jpeg_destroy_compress(&info);
    return true;
}

bool EncodeTiff(const MPicture& picture, MVector<uint8_t>& bytes, int32_t& size) {
    TiffStream stream;
    stream.Out = &bytes;
    TIFF* tiff = OpenTiff(stream, "w");
    if (!tiff) return false;
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, picture.Width);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, uint32_t(picture.Height));
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 3);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, COMPRESSION_NONE);
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, TIFFDefaultStripSize(tiff, 0));
    MVector<uint8_t> row;
    bool done = row.SetCount(int32_t(picture.Width * 3));
    for (int32_t y = 0; y < picture.Height && done; y++) {
        std::memcpy(row.Data, picture.Pixels + int64_t(y) * picture.Pitch, picture.Width * 3);
        for (uint32_t x = 0; x < picture.Width; x++) {
            uint8_t blue = row[int32_t(x * 3)];
            row[int32_t(x * 3)] = row[int32_t(x * 3 + 2)];
            row[int32_t(x * 3 + 2)] = blue;
        }
        done = TIFFWriteScanline(tiff, row.Data, uint32_t(y), 0) == 1;
    }
    TIFFClose(tiff);
    size = int32_t(stream.Size);
    return done;
}

int GifWrite(GifFileType* gif, const GifByteType* data, int count) {
    MFile* file = static_cast<MFile*>(gif->UserData);
    return count > 0 && file->Write(data, uint32_t(count)) ? count : 0;
}

// GIF holds 256 colours: the picture is quantised by giflib first.
bool EncodeGif(const MPicture& picture, MFile& file) {
    uint64_t count = uint64_t(picture.Width) * uint64_t(picture.Height);
    if (count > (1u << 28) || picture.Width > 0xffff || picture.Height > 0xffff) return false;
    MVector<GifByteType> planes;
    if (!planes.SetCount(int32_t(count * 4))) return false;
    GifByteType* red = planes.Data;
    GifByteType* green = red + count;
    GifByteType* blue = green + count;
    GifByteType* indices = blue + count;
    for (int32_t y = 0, i = 0; y < picture.Height; y++) {
        const uint8_t* at = picture.Pixels + int64_t(y) * picture.Pitch;
        for (uint32_t x = 0; x < picture.Width; x++, at += 3, i++) {
            blue[i] = at[0];
            green[i] = at[1];
            red[i] = at[2];
        }
    }
    int colours = 256;
    GifColorType palette[256];
    if (GifQuantizeBuffer(picture.Width, uint32_t(picture.Height), &colours, red, green, blue,
                          indices, palette) != GIF_OK)
        return false;
    ColorMapObject* map = GifMakeMapObject(256, palette);
    if (!map) return false;
    int error = 0;
    GifFileType* gif = EGifOpen(&file, GifWrite, &error);
    bool done = gif != nullptr;
    if (done)
        done = EGifPutScreenDesc(gif, int(picture.Width), picture.Height, 8, 0, map) == GIF_OK &&
               EGifPutImageDesc(gif, 0, 0, int(picture.Width), picture.Height, false, nullptr) ==
                   GIF_OK;
    for (int32_t y = 0; y < picture.Height && done; y++)
        done =
            EGifPutLine(gif, indices + uint64_t(y) * picture.Width, int(picture.Width)) == GIF_OK;
    if (gif && EGifCloseFile(gif, &error) != GIF_OK) done = false;
    GifFreeMapObject(map);
    return done;
}

} // namespace

// =====================================================================

bool PlatformLoadPicture(MPicture& picture, const MString& path) {
    picture.Free();
    MFile file;
    if (!file.Open(path, false, true) || !file.InMemory) return false;
    return DecodePictureMemory(picture, file.Memory.Data, size_t(file.Memory.Count));
}

bool DecodePictureMemory(MPicture& picture, const uint8_t* data, size_t size) {
    picture.Free();
    if (!data) return false;
    auto startsWith = [&](const char* mark, size_t length) {
        return size >= length && std::memcmp(data, mark, length) == 0;
    };
    bool done = false;
    if (startsWith("\x89PNG\r\n\x1a\n", 8)) {
        PngSource source{data, size, 0, nullptr};
        done = DecodePng(picture, source);
    } else if (startsWith("\xff\xd8\xff", 3)) {
        JpegSource* jpeg = static_cast<JpegSource*>(MGetMemory(sizeof(JpegSource)));
        if (jpeg) {
            std::memset(static_cast<void*>(jpeg), 0, sizeof(JpegSource));
            done = DecodeJpeg(picture, *jpeg, data, size);
            std::free(jpeg);
        }
    } else if (startsWith("GIF87a", 6) || startsWith("GIF89a", 6)) {
        done = DecodeGif(picture, data, size);
    } else if (startsWith("II*\0", 4) || startsWith("MM\0*", 4)) {
        done = DecodeTiff(picture, data, size);
    } else if (startsWith("BM", 2)) {
        done = ReadBmp(picture, data, int32_t(size));
    }
    if (!done) picture.Free();
    return done;
}

bool PlatformSavePicture(const MPicture& picture, const MString& path,
                         MPictureContainer container) {
    if (container == ContainerHeif || container == ContainerNone) return false;
    MPicture copy;
    if (!copy.Allocate(int32_t(picture.Width), picture.Height, PictureBgr8) || !copy.Copy(picture))
        return false;
    MVector<uint8_t> bytes;
    int32_t size = 0;
    if (container == ContainerBmp && !WriteBmp(copy, bytes, size)) return false;
    if (container == ContainerTiff && !EncodeTiff(copy, bytes, size)) return false;
    JpegTarget* jpeg = nullptr;
    if (container == ContainerJpeg) {
        jpeg = static_cast<JpegTarget*>(MGetMemory(sizeof(JpegTarget)));
        if (!jpeg) return false;
        std::memset(static_cast<void*>(jpeg), 0, sizeof(JpegTarget));
        if (!EncodeJpeg(copy, *jpeg)) {
            std::free(jpeg->Buffer);
            std::free(jpeg);
            return false;
        }
    }

    MFile file;
    bool done = file.Open(path, true, false);
    if (done) {
        if (container == ContainerPng)
            done = EncodePng(copy, file);
        else if (container == ContainerGif)
            done = EncodeGif(copy, file);
        else if (container == ContainerJpeg)
            done = file.Write(jpeg->Buffer, uint32_t(jpeg->Size));
        else
            done = file.Write(bytes.Data, uint32_t(size));
        if (done) done = file.Flush();
    }
    if (jpeg) {
        std::free(jpeg->Buffer);
        std::free(jpeg);
    }
    return done;
}

// The native build draws through its recording surface and has no imaging
// component to hand a bitmap to.
void* MPicture::ToWicBitmap() const {
    return nullptr;
}
