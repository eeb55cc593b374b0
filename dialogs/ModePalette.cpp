// The Mode palette's decisions: the colours of its six tiles, its place on
// the desktop, what it draws and what a click does.

#include "dialogs/ModePalette.h"

#include "dialogs/Dialog.h"
#include "dialogs/ToolWindowPlaces.h"
#include "drawing/MDrawSurface.h"
#include "foundation/Folders.h"
#include "resources/resource.h"
#include "shell/ToolWindows.h"
#include "sketch/WSketch.h"

WDialog_Mode* TheModeDialog = nullptr;

MString PaletteSkinPath() {
    MString skins = JoinPath(JoinPath(ProgramFolder(), MString(u"media")), MString(u"skins"));
    return JoinPath(skins, MString(u"Skin.png"));
}

// ---- Tile colours. All blending is in 32-bit floats, truncated to a byte
// at the end.

namespace {

const MColour Accent = {217, 122, 0, 255}; // blue, green, red, alpha

// A channel under the mask: the base where m is 0, over where m is 1.
uint8_t Blend(uint8_t base, float over, float m) {
    return uint8_t(float(base) * (1 - m) + over * m);
}

// A channel pushed a fraction of the way towards black when it is above
// 128, towards white otherwise.
float Push(float channel, float fraction) {
    if (channel > 128) return channel - channel * fraction;
    return channel + (255 - channel) * fraction;
}

// The contrast channel of a face channel: the face's own tint (5 percent
// towards black or white) taken 60 percent further the same way. Only the
// contrast is truncated, the tint stays a float.
uint8_t ContrastChannel(uint8_t face) {
    float tint = Push(float(face), 0.05f);
    float contrast = Push(tint, 0.6f);
    int32_t value = int32_t(contrast);
    return uint8_t(value < 0 ? 0 : value > 255 ? 255 : value);
}

// White over the accent; a channel that is 255 already stays, where the
// float blend would fall just short of it.
uint8_t SelectedChannel(uint8_t accent, float m) {
    if (accent == 255) return 255;
    return Blend(accent, 255, m);
}

// The face where it agrees with its contrast, which the float blend could
// otherwise move by one.
uint8_t UnselectedChannel(uint8_t face, float m) {
    uint8_t contrast = ContrastChannel(face);
    if (contrast == face) return face;
    return Blend(face, float(contrast), m);
}

} // namespace

MColour SelectedTileColour(float m) {
    MColour colour;
    colour.b = SelectedChannel(Accent.b, m);
    colour.g = SelectedChannel(Accent.g, m);
    colour.r = SelectedChannel(Accent.r, m);
    colour.a = SelectedChannel(Accent.a, m);
    return colour;
}

MColour UnselectedTileColour(MColour face, float m) {
    MColour colour;
    colour.b = UnselectedChannel(face.b, m);
    colour.g = UnselectedChannel(face.g, m);
    colour.r = UnselectedChannel(face.r, m);
    colour.a = face.a;
    return colour;
}

void FreePaletteTiles(MPicture* tiles[PaletteTileCount]) {
    for (int32_t i = 0; i < PaletteTileCount; i++) {
        delete tiles[i];
        tiles[i] = nullptr;
    }
}

// The skin is a gray mask whose red channel, over 255, says how much of the
// symbol a pixel holds; column i of it is the symbol of mode i.
bool MakePaletteTiles(const MPicture& skin, MColour face, MPicture* tiles[PaletteTileCount]) {
    if (!skin.IsUsable() || skin.Width != uint32_t(PaletteSkinWidth) ||
        skin.Height != PaletteSkinHeight)
        return false;
    for (int32_t t = 0; t < PaletteTileCount; t++) {
        MPicture* tile = new MPicture();
        if (!tile->Allocate(PaletteTileSize, PaletteTileSize, PictureBgra8)) {
            delete tile;
            FreePaletteTiles(tiles);
            return false;
        }
        tiles[t] = tile;
        bool selected = (t & 1) != 0;
        int32_t column = t / 2;
        for (int32_t y = 0; y < PaletteTileSize; y++) {
            for (int32_t x = 0; x < PaletteTileSize; x++) {
                MColour mask =
                    ReadPixel(skin.PixelAddress(column * PaletteTileSize + x, y), skin.Format);
                float m = float(mask.r) / 255;
                MColour colour = selected ? SelectedTileColour(m) : UnselectedTileColour(face, m);
                WritePixel(colour, tile->PixelAddress(x, y), PictureBgra8);
            }
        }
    }
    return true;
}

// ---- Clicks

WMode PaletteModeAt(float y) {
    if (y < PaletteTileSize) return ModeDraw;
    if (y >= 2 * PaletteTileSize) return ModeEditRoll;
    return ModeEditSketch;
}

void ClickPalette(float y) {
    TheMode = PaletteModeAt(y);
    if (TheMode == ModeDraw && TheSketch) TheSketch->Current = -1;
    RefreshMenu();
    RefreshTitle();
    RefreshModePalette();
}

// ---- Drawing

void DrawPalette(MDrawSurface& surface, MPicture* const tiles[PaletteTileCount], MColour face,
                 int32_t mode) {
    surface.Clear(face);
    for (int32_t i = 0; i < PaletteTileCount / 2; i++) {
        const MPicture* tile = tiles[2 * i + (mode == i ? 1 : 0)];
        if (!tile) continue;
        MDrawRect box;
        box.left = 0;
        box.top = float(i * PaletteTileSize);
        box.right = PaletteTileSize;
        box.bottom = float((i + 1) * PaletteTileSize);
        surface.DrawPicture(*tile, box, false);
    }
}

// ---- Placement

bool PlacePaletteRound(const WRect& window, int32_t clientWidth, int32_t clientHeight,
                       const MScreenArea& desktop, WRect& placed) {
    // The frame is whatever the window has around its client area.
    int32_t width = (window.right - window.left) - clientWidth + PaletteWidth;
    int32_t height = (window.bottom - window.top) - clientHeight + PaletteHeight;
    bool fault = clientWidth != PaletteWidth || clientHeight != PaletteHeight;
    int32_t left = window.left, top = window.top;
    if (left < desktop.Left) {
        left = desktop.Left;
        fault = true;
    }
    if (top < desktop.Top) {
        top = desktop.Top;
        fault = true;
    }
    // Back inside by one pixel more than the overshoot.
    int32_t right = desktop.Left + desktop.Width, bottom = desktop.Top + desktop.Height;
    if (left + width > right) {
        left -= left + width - right + 1;
        fault = true;
    }
    if (top + height > bottom) {
        top -= top + height - bottom + 1;
        fault = true;
    }
    placed = WRect{left, top, left + width, top + height};
    return fault;
}

int32_t PlacePalette(void* window, const WPaletteWindowCalls& calls, const MScreenArea& desktop) {
    int32_t rounds = 0;
    while (rounds < PaletteMaxPlacingRounds) {
        rounds++;
        WRect rectangle, placed;
        int32_t clientWidth = 0, clientHeight = 0;
        if (!calls.Read(window, rectangle, clientWidth, clientHeight)) break;
        if (!PlacePaletteRound(rectangle, clientWidth, clientHeight, desktop, placed)) break;
        calls.Place(window, placed);
    }
    return rounds;
}

// ---- The palette's life

// ---- The palette's window. An in-memory dialog (no window system, or a
// test) has no frame: its client area is its whole rectangle, and its device
// context a token for the recording surface.

namespace {

char MemoryPaletteDc;

bool PaletteClient(void* window, WRect& client) {
    if (!AsMemoryDialog(window)) return PlatformPaletteClient(window, client);
    WRect rectangle;
    if (!ToolWindowRect(window, rectangle)) return false;
    client = WRect{0, 0, rectangle.right - rectangle.left, rectangle.bottom - rectangle.top};
    return true;
}

bool ReadPaletteWindow(void* window, WRect& rectangle, int32_t& clientWidth,
                       int32_t& clientHeight) {
    WRect client;
    if (!ToolWindowRect(window, rectangle) || !PaletteClient(window, client)) return false;
    clientWidth = client.right - client.left;
    clientHeight = client.bottom - client.top;
    return true;
}

void* PaletteDc(void* window) {
    return AsMemoryDialog(window) ? &MemoryPaletteDc : PlatformPaletteDc(window);
}

} // namespace

void WDialog_Mode::ReleaseSurface() {
    if (Surface) {
        Surface->Release();
        delete Surface;
        Surface = nullptr;
    }
    if (SurfaceDc && SurfaceDc != &MemoryPaletteDc)
        PlatformReleasePaletteDc(SurfaceWindow, SurfaceDc);
    SurfaceDc = nullptr;
    SurfaceWindow = nullptr;
    SurfaceRect = WRect{};
}

void WDialog_Mode::Repaint() {
    WRect client;
    if (!Window || !PaletteClient(Window, client)) return;
    if (client.right <= client.left || client.bottom <= client.top) return;
    bool sameRect = client.left == SurfaceRect.left && client.top == SurfaceRect.top &&
                    client.right == SurfaceRect.right && client.bottom == SurfaceRect.bottom;
    if (Surface && (SurfaceWindow != Window || !sameRect)) ReleaseSurface();
    if (!Surface) {
        SurfaceDc = PaletteDc(Window);
        SurfaceWindow = Window;
        SurfaceRect = client;
        Surface = new MDrawSurface();
        Surface->CreateForDc(SurfaceDc, client);
    }
    if (!Surface->Begin()) return;
    DrawPalette(*Surface, Tiles, PlatformButtonFace(), TheMode);
    Surface->End();
}

MString PaletteTooltipText(int32_t id) {
    switch (id) {
    case PaletteTooltipFirstId:
        return MString(u"Draw freehand");
    case PaletteTooltipFirstId + 1:
        return MString(u"Edit sketch");
    case PaletteTooltipFirstId + 2:
        return MString(u"Edit roll");
    default:
        return MString();
    }
}

// A missing skin is told; one of another size leaves the buttons blank in
// silence. Either way the buttons still switch the mode.
static void LoadTiles(WDialog_Mode& palette) {
    MString path = PaletteSkinPath();
    if (!PathExists(path) || FolderExists(path)) {
        ShowMessage(MString(u"Could not open:\n\n\"") + path + "\"", IconError);
        return;
    }
    MPicture skin;
    if (!skin.Load(path)) return;
    MakePaletteTiles(skin, PlatformButtonFace(), palette.Tiles);
}

// ---- The palette's events

static void PaintPalette(void* dialog, void*) {
    if (TheModeDialog && TheModeDialog->Window == dialog) TheModeDialog->Repaint();
}

static void PressPalette(void* dialog, int32_t, int32_t y) {
    ClickPalette(PaletteCursorRow(dialog, float(y)));
}

static void ClosePalette(void*) {
    CloseToolWindowByBox(ToolMode);
}

// ---- The palette's life

void OpenMode() {
    if (TheModeDialog) {
        ShowMessage(MString(u"There can only be 1 WDialog_Mode object"), IconError);
        return;
    }
    WDialog_Mode* palette = new WDialog_Mode();
    palette->Instance = TheInstance;
    TheModeDialog = palette;
    WDialogHandler handler;
    handler.Paint = PaintPalette;
    handler.LeftButtonDown = PressPalette;
    handler.Close = ClosePalette;
    handler.Message = PlatformPaletteMessage;
    palette->Window = CreateModelessDialog(IDD_MODE, TheMainWindow, handler, palette);
    if (!palette->Window) {
        TheModeDialog = nullptr;
        delete palette;
        return;
    }
    DebugOutput(u"WDialog_Mode created\n");
    ShowToolWindowAtPlace(ToolMode, palette->Window);
    PlacePalette(palette->Window, WPaletteWindowCalls{ReadPaletteWindow, SetToolWindowRect},
                 VirtualScreen());
    LoadTiles(*palette);
    PlatformMakePaletteTooltips(*palette);
    palette->Repaint();
}

void EndMode() {
    WDialog_Mode* palette = TheModeDialog;
    if (!palette) return;
    palette->ReleaseSurface();
    FreePaletteTiles(palette->Tiles);
    EndToolWindow(palette->Window);
    TheModeDialog = nullptr;
    delete palette;
    DebugOutput(u"WDialog_Mode destroyed\n");
}

void ToggleMode() {
    if (TheModeDialog) {
        StoreToolWindowRect(ToolMode);
        EndMode();
    } else {
        OpenMode();
    }
    RefreshMenu();
}
