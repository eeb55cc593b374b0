#include "shell/Frame.h"

#include "drawing/MDrawSurface.h"
#include "foundation/Platform.h"
#include "shell/Shell.h"
#include "shell/Window.h"
#include "view/WView.h"

#include <new>

MDrawSurface* TheSurface = nullptr;

// The background colour of the settings' default; the settings object will
// supply ColourBackground once it exists.
static const MColour BackgroundColour = {255, 255, 255, 255};

void DestroySurface() {
    if (!TheSurface) return;
    TheSurface->Release();
    delete TheSurface;
    TheSurface = nullptr;
    DebugOutput(u"MDrawSurface destroyed\n");
}

// Makes TheSurface for the main window; false leaves it null.
static bool CreateSurface(int32_t width, int32_t height) {
    MDrawSurface* surface = new (std::nothrow) MDrawSurface;
    if (!surface) return false;
    surface->CreateForWindow(TheMainWindow);
    if (!surface->Valid) {
        surface->Release();
        delete surface;
        return false;
    }
    TheSurface = surface;
    DebugOutput(u"MDrawSurface created\n");
    // The display scale of the DisplaySize setting is set here once the
    // settings object exists.
    if (TheView) TheView->SetViewport(float(width), float(height));
    return true;
}

void DrawFrame() {
    int32_t width = 0, height = 0;
    MainClientSize(width, height);
    if (width < 1 || height < 1) return;
    if (TheSurface && (TheSurface->Width() != width || TheSurface->Height() != height))
        DestroySurface();
    if (!TheSurface && !CreateSurface(width, height)) return;
    if (!TheSurface->Begin()) return;
    TheSurface->Clear(BackgroundColour);
    // The scene follows here: background picture, view decorations, sketch,
    // running stroke.
    TheSurface->End();
}
