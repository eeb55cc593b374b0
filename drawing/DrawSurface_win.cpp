// The drawing surface on Direct2D: a factory and a window render target over
// the client area.

#include "drawing/MDrawSurface.h"

#include <d2d1.h>
#include <windows.h>

static ID2D1Factory* FactoryOf(const MDrawSurface& surface) {
    return static_cast<ID2D1Factory*>(surface.Factory);
}
static ID2D1HwndRenderTarget* TargetOf(const MDrawSurface& surface) {
    return static_cast<ID2D1HwndRenderTarget*>(surface.HwndTarget);
}

// The factory is made anew with each surface: a surface is remade only when
// the window's size changes, so nothing is gained by sharing it.
void MDrawSurface::CreateForWindow(void* window) {
    Valid = false;
    Scale = 1;
    HWND handle = static_cast<HWND>(window);
    RECT client = {};
    if (!handle || !GetClientRect(handle, &client)) return;
    Left = client.left;
    Top = client.top;
    Right = client.right;
    Bottom = client.bottom;
    if (Right - Left < 1 || Bottom - Top < 1) return;

    ID2D1Factory* factory = nullptr;
    if (FAILED(D2D1CreateFactory(D2D1_FACTORY_TYPE_SINGLE_THREADED, __uuidof(ID2D1Factory), nullptr,
                                 reinterpret_cast<void**>(&factory))))
        return;
    Factory = factory;

    D2D1_RENDER_TARGET_PROPERTIES properties = {};
    properties.type = D2D1_RENDER_TARGET_TYPE_DEFAULT;
    properties.pixelFormat.format = DXGI_FORMAT_UNKNOWN;
    properties.pixelFormat.alphaMode = D2D1_ALPHA_MODE_UNKNOWN;
    properties.usage = D2D1_RENDER_TARGET_USAGE_NONE;
    properties.minLevel = D2D1_FEATURE_LEVEL_DEFAULT;
    D2D1_HWND_RENDER_TARGET_PROPERTIES windowProperties = {};
    windowProperties.hwnd = handle;
    windowProperties.pixelSize.width = static_cast<UINT32>(Right - Left);
    windowProperties.pixelSize.height = static_cast<UINT32>(Bottom - Top);
    windowProperties.presentOptions = D2D1_PRESENT_OPTIONS_NONE;
    ID2D1HwndRenderTarget* target = nullptr;
    if (FAILED(factory->CreateHwndRenderTarget(&properties, &windowProperties, &target))) return;
    HwndTarget = target;
    Valid = true;
}

void MDrawSurface::Release() {
    Valid = false;
    if (ID2D1HwndRenderTarget* target = TargetOf(*this)) target->Release();
    HwndTarget = nullptr;
    if (ID2D1Factory* factory = FactoryOf(*this)) factory->Release();
    Factory = nullptr;
}

bool MDrawSurface::Begin() {
    if (!Valid) return false;
    ID2D1HwndRenderTarget* target = TargetOf(*this);
    target->BeginDraw();
    D2D1_MATRIX_3X2_F identity = {1, 0, 0, 1, 0, 0};
    target->SetTransform(&identity);
    return true;
}

void MDrawSurface::End() {
    if (!Valid) return;
    TargetOf(*this)->EndDraw(nullptr, nullptr);
}

void MDrawSurface::Clear(MColour colour) {
    if (!Valid) return;
    D2D1_COLOR_F value = {ColourChannel(colour.r), ColourChannel(colour.g), ColourChannel(colour.b),
                          ColourChannel(colour.a)};
    TargetOf(*this)->Clear(&value);
}
