#include "shell/Frame.h"

#include "drawing/MDrawSurface.h"
#include "foundation/Platform.h"
#include "shell/Background.h"
#include "shell/Shell.h"
#include "shell/WSettings.h"
#include "shell/Window.h"
#include "sketch/WRecording.h"
#include "sketch/WSketch.h"
#include "view/Scene.h"
#include "view/WView.h"

#include <new>

MDrawSurface* TheSurface = nullptr;

// Without settings the frame still clears, in the default background colour.
static const MColour DefaultBackground = {255, 255, 255, 255};

void ApplyDisplayScale(MDrawSurface& surface) {
    if (!TheSettings || TheSettings->DisplaySize == 0) return;
    float scale = 100.0f / float(TheSettings->DisplaySize);
    if (scale != 0) surface.Scale = scale;
}

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
    ApplyDisplayScale(*surface);
    if (TheView) TheView->SetViewport(float(width), float(height));
    return true;
}

WSceneContent FrameScene() {
    WSceneContent content;
    content.View = TheView;
    content.Settings = TheSettings;
    content.Mode = TheMode;
    content.Sketch = TheSketch;
    content.Recording = TheRecording;
    content.Background.Bitmap = TheBackground;
    content.Background.Zoom = TheBackgroundZoom;
    content.Background.Pivot = TheBackgroundPivot;
    return content;
}

void DrawFrame() {
    int32_t width = 0, height = 0;
    MainClientSize(width, height);
    if (width < 1 || height < 1) return;
    if (TheSurface && (TheSurface->Width() != width || TheSurface->Height() != height))
        DestroySurface();
    if (!TheSurface && !CreateSurface(width, height)) return;
    if (!TheSurface->Begin()) return;
    TheSurface->Clear(TheSettings ? TheSettings->ColourBackground : DefaultBackground);
    DrawScene(*TheSurface, FrameScene());
    TheSurface->End();
}
