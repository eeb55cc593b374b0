// Pictures through the Windows Imaging Component: decoding any file whose
// extension is neither TGA nor DDS, encoding the containers of Save, and the
// premultiplied bitmap that drawing takes. COM is up on the thread (the
// start-up sees to it).

#include "drawing/PictureWic_win.h"

#include "foundation/Platform.h"

#include <cstdlib>
#include <cstring>

namespace {

// Releases a COM interface at the end of its scope.
template <typename T> struct ComPointer {
    T* Pointer = nullptr;
    ComPointer() = default;
    ComPointer(const ComPointer&) = delete;
    ComPointer& operator=(const ComPointer&) = delete;
    ~ComPointer() {
        if (Pointer) Pointer->Release();
    }
    T* operator->() const { return Pointer; }
};

const wchar_t* Wide(const MString& text) {
    return reinterpret_cast<const wchar_t*>(text.Chars());
}

bool CreateFactory(ComPointer<IWICImagingFactory>& factory) {
    return SUCCEEDED(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                                      IID_IWICImagingFactory,
                                      reinterpret_cast<void**>(&factory.Pointer)));
}

// ---- The frame's pixel format decides the picture's; the rest are first
// converted to 32bppBGRA.
struct WicFormatRow {
    const GUID* Wic;
    int32_t Format;
    bool SwapRedBlue; // after the copy
};

const WicFormatRow WicFormats[] = {
    {&GUID_WICPixelFormat8bppGray, PictureGray8, false},
    {&GUID_WICPixelFormat16bppGray, PictureGray16, false},
    {&GUID_WICPixelFormat16bppGrayHalf, PictureGrayHalf, false},
    {&GUID_WICPixelFormat24bppBGR, PictureBgr8, false},
    {&GUID_WICPixelFormat24bppRGB, PictureBgr8, true},
    {&GUID_WICPixelFormat48bppRGB, PictureRgb16, false},
    {&GUID_WICPixelFormat48bppBGR, PictureRgb16, true},
    {&GUID_WICPixelFormat48bppRGBHalf, PictureRgbHalf, false},
    {&GUID_WICPixelFormat32bppBGRA, PictureBgra8, false},
    {&GUID_WICPixelFormat32bppRGBA, PictureBgra8, true},
    {&GUID_WICPixelFormat64bppRGBA, PictureRgba16, false},
    {&GUID_WICPixelFormat64bppBGRA, PictureRgba16, true},
    {&GUID_WICPixelFormat64bppRGBAHalf, PictureRgbaHalf, false},
};

// Swaps the first and third channel of every pixel, 8 or 16 bits each.
void SwapRedBlue(MPicture& picture) {
    int32_t bytes = PictureBytesPerPixel(picture.Format);
    int32_t channel = bytes >= 6 ? 2 : 1;
    for (int32_t y = 0; y < picture.Height; y++) {
        uint8_t* at = picture.Pixels + int64_t(y) * picture.Pitch;
        for (uint32_t x = 0; x < picture.Width; x++, at += bytes)
            for (int32_t i = 0; i < channel; i++) {
                uint8_t first = at[i];
                at[i] = at[2 * channel + i];
                at[2 * channel + i] = first;
            }
    }
}

// The query names of the first frame's metadata; only multi-frame files are
// asked, and a query that fails leaves the default.
void ReadFrameMetadata(IWICBitmapFrameDecode* frame, MPicture& picture) {
    ComPointer<IWICMetadataQueryReader> reader;
    if (FAILED(frame->GetMetadataQueryReader(&reader.Pointer))) return;
    struct Query {
        const wchar_t* Name;
        VARTYPE Type;
        int32_t* Field;
    } queries[] = {
        {L"/grctlext/Delay", VT_UI2, &picture.FrameDelay},
        {L"/grctlext/Disposal", VT_UI1, &picture.FrameDisposal},
        {L"/imgdesc/Left", VT_UI2, &picture.FrameLeft},
        {L"/imgdesc/Top", VT_UI2, &picture.FrameTop},
        {L"/imgdesc/Width", VT_UI2, &picture.FrameWidth},
        {L"/imgdesc/Height", VT_UI2, &picture.FrameHeight},
    };
    for (const Query& query : queries) {
        PROPVARIANT value;
        PropVariantInit(&value);
        if (SUCCEEDED(reader->GetMetadataByName(query.Name, &value)) && value.vt == query.Type) {
            int32_t number = query.Type == VT_UI2 ? value.uiVal : value.bVal;
            if (query.Field == &picture.FrameDelay) {
                // Hundredths of a second; a delay of 0 keeps the default.
                if (number != 0) picture.FrameDelay = number * 10;
            } else {
                *query.Field = number;
            }
        }
        PropVariantClear(&value);
    }
}

} // namespace

bool CopyWicPixels(IWICBitmapSource* source, MPicture& picture) {
    UINT pitch = picture.Pitch, height = UINT(picture.Height);
    if (SUCCEEDED(source->CopyPixels(nullptr, pitch, pitch * height, picture.Pixels))) return true;

    // Some decoders cannot deliver a whole picture at once; they are asked
    // for one row after the other.
    DebugOutput(u"Failed to copy pixels. Now trying line by line...\n");
    std::free(picture.Pixels);
    picture.Pixels = nullptr;
    MVector<uint8_t*> rows;
    bool done = rows.SetCount(int32_t(height));
    for (UINT y = 0; y < height && done; y++) {
        rows[int32_t(y)] = static_cast<uint8_t*>(MGetMemory(pitch));
        WICRect line = {0, INT(y), INT(picture.Width), 1};
        done = rows[int32_t(y)] &&
               SUCCEEDED(source->CopyPixels(&line, pitch, pitch, rows[int32_t(y)]));
    }
    if (done) {
        picture.Pixels = static_cast<uint8_t*>(MGetMemory(uint64_t(pitch) * height));
        done = picture.Pixels != nullptr;
        for (UINT y = 0; y < height && done; y++)
            std::memcpy(picture.Pixels + uint64_t(y) * pitch, rows[int32_t(y)], pitch);
    }
    for (int32_t y = 0; y < rows.Count; y++)
        std::free(rows[y]);
    if (!done) picture.Free();
    return done;
}

bool PlatformLoadPicture(MPicture& picture, const MString& path) {
    picture.Free();
    ComPointer<IWICImagingFactory> factory;
    if (!CreateFactory(factory)) return false;
    ComPointer<IWICBitmapDecoder> decoder;
    if (FAILED(factory->CreateDecoderFromFilename(
            Wide(path), nullptr, GENERIC_READ, WICDecodeMetadataCacheOnDemand, &decoder.Pointer)))
        return false;
    UINT frames = 0;
    if (FAILED(decoder->GetFrameCount(&frames)) || frames == 0) return false;
    // Always the first frame alone: an animated GIF loads as its first frame.
    ComPointer<IWICBitmapFrameDecode> frame;
    if (FAILED(decoder->GetFrame(0, &frame.Pointer))) return false;
    picture.FrameCount = int32_t(frames);
    if (frames > 1) ReadFrameMetadata(frame.Pointer, picture);

    UINT width = 0, height = 0;
    if (FAILED(frame->GetSize(&width, &height)) || width == 0 || height == 0 ||
        width > 0x7fffffff || height > 0x7fffffff)
        return false;
    WICPixelFormatGUID wic;
    if (FAILED(frame->GetPixelFormat(&wic))) return false;
    const WicFormatRow* row = nullptr;
    for (const WicFormatRow& candidate : WicFormats)
        if (IsEqualGUID(*candidate.Wic, wic)) row = &candidate;
    IWICBitmapSource* source = frame.Pointer;
    ComPointer<IWICBitmapSource> converted;
    int32_t format = PictureBgra8;
    if (row) {
        format = row->Format;
    } else {
        if (FAILED(WICConvertBitmapSource(GUID_WICPixelFormat32bppBGRA, frame.Pointer,
                                          &converted.Pointer)))
            return false;
        source = converted.Pointer;
    }

    // Allocate resets the frame fields: keep them across.
    int32_t count = picture.FrameCount, delay = picture.FrameDelay;
    int32_t disposal = picture.FrameDisposal, left = picture.FrameLeft, top = picture.FrameTop;
    int32_t frameWidth = picture.FrameWidth, frameHeight = picture.FrameHeight;
    if (!picture.Allocate(int32_t(width), int32_t(height), format)) return false;
    picture.FrameCount = count;
    picture.FrameDelay = delay;
    picture.FrameDisposal = disposal;
    picture.FrameLeft = left;
    picture.FrameTop = top;
    picture.FrameWidth = frameWidth;
    picture.FrameHeight = frameHeight;
    if (!CopyWicPixels(source, picture)) return false;
    if (row && row->SwapRedBlue) SwapRedBlue(picture);
    return true;
}

bool PlatformSavePicture(const MPicture& picture, const MString& path,
                         MPictureContainer container) {
    static const GUID HeifContainer = {
        0xe1e62521, 0x6787, 0x405b, {0xa3, 0x39, 0x50, 0x07, 0x15, 0xb5, 0x76, 0x3f}};
    const GUID* format = container == ContainerBmp    ? &GUID_ContainerFormatBmp
                         : container == ContainerJpeg ? &GUID_ContainerFormatJpeg
                         : container == ContainerPng  ? &GUID_ContainerFormatPng
                         : container == ContainerTiff ? &GUID_ContainerFormatTiff
                         : container == ContainerGif  ? &GUID_ContainerFormatGif
                         : container == ContainerHeif ? &HeifContainer
                                                      : nullptr;
    if (!format || !picture.IsUsable()) return false;
    ComPointer<IWICImagingFactory> factory;
    if (!CreateFactory(factory)) return false;

    // ---- The picture in format 4, whatever its own format.
    ComPointer<IWICBitmap> bitmap;
    if (FAILED(factory->CreateBitmap(picture.Width, UINT(picture.Height),
                                     GUID_WICPixelFormat24bppBGR, WICBitmapCacheOnDemand,
                                     &bitmap.Pointer)))
        return false;
    {
        WICRect all = {0, 0, INT(picture.Width), INT(picture.Height)};
        ComPointer<IWICBitmapLock> lock;
        if (FAILED(bitmap->Lock(&all, WICBitmapLockWrite, &lock.Pointer))) return false;
        UINT stride = 0, size = 0;
        BYTE* data = nullptr;
        if (FAILED(lock->GetStride(&stride)) || FAILED(lock->GetDataPointer(&size, &data)))
            return false;
        if (!CopyPixels(picture, data, stride, PictureBgr8)) return false;
    }

    // ---- Encoder, frame, commit
    ComPointer<IWICStream> stream;
    if (FAILED(factory->CreateStream(&stream.Pointer)) ||
        FAILED(stream->InitializeFromFilename(Wide(path), GENERIC_WRITE)))
        return false;
    ComPointer<IWICBitmapEncoder> encoder;
    if (FAILED(factory->CreateEncoder(*format, nullptr, &encoder.Pointer)) ||
        FAILED(encoder->Initialize(stream.Pointer, WICBitmapEncoderNoCache)))
        return false;
    ComPointer<IWICBitmapFrameEncode> frame;
    ComPointer<IPropertyBag2> options;
    if (FAILED(encoder->CreateNewFrame(&frame.Pointer, &options.Pointer)) ||
        FAILED(frame->Initialize(options.Pointer)) ||
        FAILED(frame->SetSize(picture.Width, UINT(picture.Height))))
        return false;
    WICPixelFormatGUID wanted = GUID_WICPixelFormat24bppBGR;
    if (FAILED(frame->SetPixelFormat(&wanted))) return false;
    // The encoder may ask for another format than the bitmap's (GIF wants a
    // palette); WriteSource converts on the way.
    if (FAILED(frame->WriteSource(bitmap.Pointer, nullptr))) return false;
    return SUCCEEDED(frame->Commit()) && SUCCEEDED(encoder->Commit());
}

void* MPicture::ToWicBitmap() const {
    if (!IsUsable()) return nullptr;
    MPicture copy; // premultiplied for the formats with alpha
    if (!PremultipliedCopy(*this, copy)) return nullptr;
    ComPointer<IWICImagingFactory> factory;
    if (!CreateFactory(factory)) return nullptr;
    IWICBitmap* bitmap = nullptr;
    if (FAILED(factory->CreateBitmap(Width, UINT(Height), GUID_WICPixelFormat32bppPBGRA,
                                     WICBitmapCacheOnDemand, &bitmap)))
        return nullptr;
    WICRect all = {0, 0, INT(Width), INT(Height)};
    ComPointer<IWICBitmapLock> lock;
    UINT stride = 0, size = 0;
    BYTE* data = nullptr;
    bool done = SUCCEEDED(bitmap->Lock(&all, WICBitmapLockWrite, &lock.Pointer)) &&
                SUCCEEDED(lock->GetStride(&stride)) &&
                SUCCEEDED(lock->GetDataPointer(&size, &data)) &&
                CopyPixels(copy, data, stride, PictureBgra8);
    if (lock.Pointer) {
        lock.Pointer->Release();
        lock.Pointer = nullptr;
    }
    if (!done) {
        bitmap->Release();
        return nullptr;
    }
    return bitmap;
}
