// The extension lists of the installed WIC decoders. COM must be up on this
// thread; without it the factory cannot be made and the list is empty.

#include "drawing/MMediaTypes.h"

#include <windows.h>

#include <wincodec.h>

namespace {

// Releases a COM interface at the end of its scope.
template <typename T> struct ComPointer {
    T* Pointer = nullptr;
    ~ComPointer() {
        if (Pointer) Pointer->Release();
    }
};

} // namespace

MString PlatformDecoderExtensions() {
    MString all;
    ComPointer<IWICImagingFactory> factory;
    if (FAILED(CoCreateInstance(CLSID_WICImagingFactory, nullptr, CLSCTX_INPROC_SERVER,
                                IID_IWICImagingFactory,
                                reinterpret_cast<void**>(&factory.Pointer))))
        return all;
    ComPointer<IEnumUnknown> decoders;
    if (FAILED(factory.Pointer->CreateComponentEnumerator(WICDecoder, WICComponentEnumerateDefault,
                                                          &decoders.Pointer)))
        return all;
    for (;;) {
        ComPointer<IUnknown> item;
        ULONG fetched = 0;
        if (decoders.Pointer->Next(1, &item.Pointer, &fetched) != S_OK || fetched != 1) break;
        ComPointer<IWICBitmapDecoderInfo> info;
        if (FAILED(item.Pointer->QueryInterface(IID_IWICBitmapDecoderInfo,
                                                reinterpret_cast<void**>(&info.Pointer))))
            continue;
        UINT length = 0;
        if (FAILED(info.Pointer->GetFileExtensions(0, nullptr, &length)) || length == 0) continue;
        MVector<wchar_t> text;
        if (!text.SetCount(int32_t(length) + 1)) continue;
        if (FAILED(info.Pointer->GetFileExtensions(length, text.Data, &length))) continue;
        text[int32_t(text.Count) - 1] = 0;
        all = all + MString(reinterpret_cast<const char16_t*>(text.Data));
    }
    return all;
}
