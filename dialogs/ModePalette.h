#pragma once
// The Mode palette: a small window of three picture buttons, one per mode,
// from top to bottom drawing, editing and rolling. This header holds what the
// palette decides (its tiles' colours, its place on the desktop, what a click
// does); ModePalette_win.cpp makes the window, its tooltips and its drawing.

#include "drawing/MPicture.h"
#include "foundation/MString.h"
#include "foundation/Platform.h"
#include "shell/Shell.h"
#include "shell/WSettings.h"

#include <cstdint>

struct MDrawSurface;

struct WDialog_Mode {
    void* Instance = nullptr; // module handle (opaque)
    void* Window = nullptr;   // the palette (opaque handle)
    MPicture* Tiles[6] = {};  // owned, or null: tile 2i unselected, 2i + 1 selected, for mode i
    void* Tooltips[3] = {};   // tooltip windows (opaque), one per button
    // The cached drawing surface, kept while window and client rectangle stay.
    void* SurfaceWindow = nullptr; // the window it was made for
    void* SurfaceDc = nullptr;     // its device context (opaque)
    WRect SurfaceRect;             // the client rectangle it was made for
    MDrawSurface* Surface = nullptr;

    // Draws the palette for TheMode: nothing while the client area is empty.
    void Repaint();
    // Drops the surface and its device context.
    void ReleaseSurface();
};

extern WDialog_Mode* TheModeDialog;

// Opens the palette at its place in the settings, or stores its rectangle
// and closes it; then the menu shows it.
void ToggleMode();
// Opens it: placed, made 64 by 192 on the desktop, its tiles made from the
// skin ("Could not open" when the file is missing), its tooltips, and a
// repaint. A second object is refused with a message.
void OpenMode();
// Ends and frees it, if open, with its surface and tiles.
void EndMode();
// The tooltip text of button id (100 to 102); empty for any other id.
MString PaletteTooltipText(int32_t id);

// The palette's client area and the size of one button, in pixels.
enum {
    PaletteWidth = 64,
    PaletteHeight = 192,
    PaletteTileSize = 64,
    PaletteTileCount = 6, // tile 2i unselected, 2i + 1 selected, for mode i
    PaletteSkinWidth = 192,
    PaletteSkinHeight = 64,
    PaletteMaxPlacingRounds = 10,
    PaletteTooltipFirstId = 100,   // the tools over the three buttons: 100, 101, 102
    PaletteTooltipHideTime = 2000, // milliseconds
};

// The skin picture below the program's folder.
MString PaletteSkinPath();

// The colour of a selected tile's pixel for the mask value m (0 to 1): the
// accent colour (red 0, green 122, blue 217) blended towards white.
MColour SelectedTileColour(float m);
// The colour of an unselected tile's pixel for the mask value m on the
// system's button face: the face blended towards a contrast colour of it.
MColour UnselectedTileColour(MColour face, float m);

// Makes the six tiles from a skin of exactly 192 by 64 pixels; tiles[i] must
// be null on entry and becomes an owned format 7 picture. Any other skin
// makes no tiles and gives false.
bool MakePaletteTiles(const MPicture& skin, MColour face, MPicture* tiles[PaletteTileCount]);
void FreePaletteTiles(MPicture* tiles[PaletteTileCount]);

// The mode of the button at client row y.
WMode PaletteModeAt(float y);
// A left click at client row y: the button's mode; the drawing mode also
// drops the selection. Menu, title and palette show the new mode.
void ClickPalette(float y);

// What the palette draws for the mode: the face colour, then for each button
// its selected or unselected tile, if it exists.
void DrawPalette(MDrawSurface& surface, MPicture* const tiles[PaletteTileCount], MColour face,
                 int32_t mode);

// One round of the palette's placement. window is the window's rectangle on
// the screen, clientWidth and clientHeight its client size; desktop the
// virtual desktop. placed is where the window must go so that its client
// area is 64 by 192 and it lies on the desktop. False when the round found
// nothing wrong (placed is then the window's rectangle).
bool PlacePaletteRound(const WRect& window, int32_t clientWidth, int32_t clientHeight,
                       const MScreenArea& desktop, WRect& placed);

// The placement loop on a window reached through two calls: reading its
// rectangles and placing it. Stops after a round without a fault, or after
// 10 rounds. Returns the rounds run.
struct WPaletteWindowCalls {
    // The window's screen rectangle and its client size; false when unknown.
    bool (*Read)(void* window, WRect& rectangle, int32_t& clientWidth, int32_t& clientHeight);
    void (*Place)(void* window, const WRect& rectangle); // moves and sizes
};
int32_t PlacePalette(void* window, const WPaletteWindowCalls& calls, const MScreenArea& desktop);

// ---- The platform's part of the palette, for a real window.

// The client rectangle; false without one.
bool PlatformPaletteClient(void* window, WRect& client);
void* PlatformPaletteDc(void* window);
void PlatformReleasePaletteDc(void* window, void* dc);
// The system's button face colour, alpha 255.
MColour PlatformButtonFace();
// The three tooltip windows over the buttons.
void PlatformMakePaletteTooltips(WDialog_Mode& palette);
// The row of a click as the cursor stands when the click is handled; y is
// the row the click message carried, which the native build takes.
float PaletteCursorRow(void* window, float y);
// The palette's other messages: the tooltips ask it for their texts.
intptr_t PlatformPaletteMessage(void* dialog, uint32_t message, uintptr_t wParam, intptr_t lParam,
                                bool& handled);
