// The Mode palette: the colours of its tiles from a skin and a button face,
// its placement on the desktop, what it draws, and what a click does.

#include "ShellTestSupport.h"

#include "dialogs/ModePalette.h"
#include "dialogs/ToolWindowPlaces.h"
#include "drawing/MDrawSurface.h"
#include "drawing/MPicture.h"
#include "elements/WElement.h"
#include "shell/Keys.h"
#include "shell/ToolWindows.h"

namespace {

void ExpectColour(MColour colour, int r, int g, int b, int a) {
    EXPECT_EQ(int(colour.r), r);
    EXPECT_EQ(int(colour.g), g);
    EXPECT_EQ(int(colour.b), b);
    EXPECT_EQ(int(colour.a), a);
}

MColour Rgb(uint8_t r, uint8_t g, uint8_t b) {
    return MColour{b, g, r, 255};
}

// ---- Tile colours

TEST(ModePaletteColours, SelectedTilesBlendTheAccentTowardsWhite) {
    ExpectColour(SelectedTileColour(0), 0, 122, 217, 255);
    ExpectColour(SelectedTileColour(1), 255, 255, 255, 255);
    // m = 128 / 255: 122 * 127/255 + 128 = 188.76, 217 * 127/255 + 128 = 236.07.
    ExpectColour(SelectedTileColour(128.0f / 255), 128, 188, 236, 255);
}

TEST(ModePaletteColours, UnselectedTilesBlendTheFaceTowardsItsContrast) {
    // A light face of 240: its tint is 228, the contrast 228 * 0.4 = 91.2.
    MColour light = Rgb(240, 240, 240);
    ExpectColour(UnselectedTileColour(light, 0), 240, 240, 240, 255);
    ExpectColour(UnselectedTileColour(light, 1), 91, 91, 91, 255);
    // Halfway: 240 * 127/255 + 91 * 128/255 = 119.53 + 45.68 = 165.2.
    ExpectColour(UnselectedTileColour(light, 128.0f / 255), 165, 165, 165, 255);
    // A dark channel of 64 goes towards white: tint 73.55, contrast
    // 73.55 + 181.45 * 0.6 = 182.42. A channel of 130 is above 128 but its
    // tint of 123.5 is not: the contrast is 123.5 + 131.5 * 0.6 = 202.4.
    MColour mixed = Rgb(64, 130, 0);
    // Blue 0: tint 12.75, contrast 12.75 + 242.25 * 0.6 = 158.1.
    ExpectColour(UnselectedTileColour(mixed, 1), 182, 202, 158, 255);
}

// A skin of gray steps: column i holds the value 100 * i in its top row and
// 255 below, so each tile shows its own symbol.
MPicture StepSkin(int32_t width = 192, int32_t height = 64) {
    MPicture skin;
    EXPECT_TRUE(skin.Allocate(width, height, PictureGray8));
    for (int32_t y = 0; y < height; y++)
        for (int32_t x = 0; x < width; x++)
            *skin.PixelAddress(x, y) = uint8_t(y == 0 ? (x / 64) * 100 : 255);
    return skin;
}

MColour TilePixel(const MPicture& tile, int32_t x, int32_t y) {
    return ReadPixel(tile.PixelAddress(x, y), tile.Format);
}

TEST(ModePaletteTiles, SixTilesFromTheSkinColumns) {
    MPicture skin = StepSkin();
    MPicture* tiles[PaletteTileCount] = {};
    ASSERT_TRUE(MakePaletteTiles(skin, Rgb(240, 240, 240), tiles));
    for (int32_t t = 0; t < PaletteTileCount; t++) {
        ASSERT_NE(tiles[t], nullptr);
        EXPECT_EQ(tiles[t]->Width, 64u);
        EXPECT_EQ(tiles[t]->Height, 64);
        EXPECT_EQ(tiles[t]->Format, int32_t(PictureBgra8));
    }
    // Column 0 is 0 in its top row: face and accent show unchanged.
    ExpectColour(TilePixel(*tiles[0], 10, 0), 240, 240, 240, 255);
    ExpectColour(TilePixel(*tiles[1], 10, 0), 0, 122, 217, 255);
    // Column 1 is 100: m = 0.392. Face: 240 * 0.608 + 91 * 0.392 = 181.6.
    ExpectColour(TilePixel(*tiles[2], 63, 0), 181, 181, 181, 255);
    // Accent: 0 + 100 = 100, 122 * 0.608 + 100 = 174.2, 217 * 0.608 + 100 = 231.9.
    ExpectColour(TilePixel(*tiles[3], 0, 0), 100, 174, 231, 255);
    // Below the top row every tile shows its symbol colour whole.
    ExpectColour(TilePixel(*tiles[4], 5, 5), 91, 91, 91, 255);
    ExpectColour(TilePixel(*tiles[5], 5, 63), 255, 255, 255, 255);
    FreePaletteTiles(tiles);
    for (MPicture* tile : tiles)
        EXPECT_EQ(tile, nullptr);
}

TEST(ModePaletteTiles, ASkinOfAnotherSizeMakesNoTiles) {
    MPicture* tiles[PaletteTileCount] = {};
    EXPECT_FALSE(MakePaletteTiles(StepSkin(191, 64), Rgb(240, 240, 240), tiles));
    EXPECT_FALSE(MakePaletteTiles(StepSkin(192, 65), Rgb(240, 240, 240), tiles));
    for (MPicture* tile : tiles)
        EXPECT_EQ(tile, nullptr);
}

// ---- Placement

TEST(ModePalettePlacement, ARoundFindsNothingWrongOnAGoodWindow) {
    MScreenArea desktop{0, 0, 1920, 1080};
    WRect placed;
    EXPECT_FALSE(PlacePaletteRound(WRect{100, 100, 172, 322}, 64, 192, desktop, placed));
    EXPECT_EQ(placed.left, 100);
    EXPECT_EQ(placed.right, 172);
}

TEST(ModePalettePlacement, TheClientAreaIsMadeSixtyFourByHundredNinetyTwo) {
    MScreenArea desktop{0, 0, 1920, 1080};
    WRect placed;
    // A frame of 4 on each side and 30 above: 8 wide and 34 high in all.
    EXPECT_TRUE(PlacePaletteRound(WRect{100, 100, 308, 334}, 200, 200, desktop, placed));
    EXPECT_EQ(placed.left, 100);
    EXPECT_EQ(placed.top, 100);
    EXPECT_EQ(placed.right - placed.left, 72);
    EXPECT_EQ(placed.bottom - placed.top, 226);
}

TEST(ModePalettePlacement, AWindowBeyondTheDesktopComesBackOneMorePixel) {
    MScreenArea desktop{-1280, 0, 3200, 1080}; // a second monitor on the left
    WRect placed;
    EXPECT_TRUE(PlacePaletteRound(WRect{5000, 2000, 5072, 2226}, 64, 192, desktop, placed));
    EXPECT_EQ(placed.left, 1920 - 72 - 1);
    EXPECT_EQ(placed.top, 1080 - 226 - 1);
    EXPECT_TRUE(PlacePaletteRound(WRect{-3000, -50, -2928, 176}, 64, 192, desktop, placed));
    EXPECT_EQ(placed.left, -1280);
    EXPECT_EQ(placed.top, 0);
}

// A window with a frame that the placement only learns by reading it.
struct FramedWindow {
    WRect Rectangle;
    int32_t Frame = 8, Caption = 30;
    int32_t Placed = 0;
};

bool ReadFramed(void* window, WRect& rectangle, int32_t& clientWidth, int32_t& clientHeight) {
    FramedWindow& w = *static_cast<FramedWindow*>(window);
    rectangle = w.Rectangle;
    clientWidth = rectangle.right - rectangle.left - w.Frame;
    clientHeight = rectangle.bottom - rectangle.top - w.Frame - w.Caption;
    return true;
}

void PlaceFramed(void* window, const WRect& rectangle) {
    FramedWindow& w = *static_cast<FramedWindow*>(window);
    w.Rectangle = rectangle;
    w.Placed++;
}

TEST(ModePalettePlacement, TheLoopEndsAfterARoundWithoutFault) {
    FramedWindow window;
    window.Rectangle = WRect{3000, -40, 3300, 400};
    MScreenArea desktop{0, 0, 1920, 1080};
    int32_t rounds = PlacePalette(&window, WPaletteWindowCalls{ReadFramed, PlaceFramed}, desktop);
    EXPECT_EQ(rounds, 2);
    EXPECT_EQ(window.Placed, 1);
    EXPECT_EQ(window.Rectangle.left, 1920 - 72 - 1);
    EXPECT_EQ(window.Rectangle.top, 0);
    EXPECT_EQ(window.Rectangle.right - window.Rectangle.left, 72);
    EXPECT_EQ(window.Rectangle.bottom - window.Rectangle.top, 230);
}

// A window that never takes its place: the loop gives up after 10 rounds.
void PlaceNowhere(void*, const WRect&) {}

TEST(ModePalettePlacement, TheLoopRunsAtMostTenRounds) {
    FramedWindow window;
    window.Rectangle = WRect{-500, 0, -400, 300};
    EXPECT_EQ(PlacePalette(&window, WPaletteWindowCalls{ReadFramed, PlaceNowhere},
                           MScreenArea{0, 0, 1920, 1080}),
              10);
}

// ---- Drawing

TEST(ModePaletteDrawing, EachButtonDrawsItsSelectedOrUnselectedTile) {
#if defined(_WIN32)
    GTEST_SKIP() << "reads the native recording surface";
#endif
    MPicture only;
    ASSERT_TRUE(only.Allocate(64, 64, PictureBgra8));
    MPicture* tiles[PaletteTileCount] = {};
    tiles[3] = &only; // the selected "Edit sketch"
    MDrawSurface surface;
    char dc;
    surface.CreateForDc(&dc, WRect{0, 0, 64, 192});
    ASSERT_TRUE(surface.Begin());
    DrawPalette(surface, tiles, Rgb(240, 240, 240), ModeEditSketch);
    DrawPalette(surface, tiles, Rgb(240, 240, 240), ModeDraw);
    surface.End();
    std::u16string recording = Text(RecordingText(surface));
    // One picture only, in the middle row, and only while its mode is on.
    size_t first = recording.find(u"Bitmap");
    ASSERT_NE(first, std::u16string::npos) << std::string(recording.begin(), recording.end());
    EXPECT_EQ(recording.find(u"Bitmap", first + 1), std::u16string::npos);
    std::u16string bitmapLine = recording.substr(first, recording.find(u'\n', first) - first);
    EXPECT_EQ(bitmapLine.substr(0, 18), u"Bitmap 0 64 64 128")
        << std::string(bitmapLine.begin(), bitmapLine.end());
    EXPECT_EQ(recording.find(u"Clear"), recording.rfind(u"Clear", first));
    surface.Release();
}

// ---- The window

class ModePaletteTest : public ShellFixture {
  protected:
    MScreenMetrics Metrics;
    void SetUp() override {
        ShellFixture::SetUp();
        Metrics.Primary = MScreenArea{0, 0, 1920, 1080};
        Metrics.Virtual = Metrics.Primary;
        TheScreenOverride = &Metrics;
    }
    void TearDown() override {
        ShellFixture::TearDown();
        TheScreenOverride = nullptr;
        SetFolderOverride(FolderProgram, MString());
    }
    // The program's folder becomes the test's, with a skin of this size.
    void Skin(int32_t width, int32_t height) {
        scratch::fs::create_directories(Folder / "program" / "media" / "skins");
        SetFolderOverride(FolderProgram, scratch::Text(Folder / "program"));
        if (width == 0) return;
        MPicture skin = StepSkin(width, height);
        ASSERT_TRUE(skin.Save(PaletteSkinPath()));
    }
    WRect Place() {
        WRect rect;
        EXPECT_TRUE(ToolWindowRect(TheModeDialog->Window, rect));
        return rect;
    }
};

TEST_F(ModePaletteTest, TheShippedSkinMakesSixTiles) {
    OpenMode();
    ASSERT_NE(TheModeDialog, nullptr);
    EXPECT_EQ(Messages.Count, 0) << std::string(LastMessage().begin(), LastMessage().end());
    for (MPicture* tile : TheModeDialog->Tiles)
        EXPECT_NE(tile, nullptr);
}

TEST_F(ModePaletteTest, AMissingSkinIsToldAndLeavesBlankButtonsThatWork) {
    Skin(0, 0);
    OpenMode();
    ASSERT_NE(TheModeDialog, nullptr);
    ASSERT_EQ(Messages.Count, 1);
    EXPECT_EQ(LastMessage(), u"Could not open:\n\n\"" + Text(PaletteSkinPath()) + u"\"");
    EXPECT_EQ(MessageIcons[0], IconError);
    for (MPicture* tile : TheModeDialog->Tiles)
        EXPECT_EQ(tile, nullptr);
    ClickPalette(150);
    EXPECT_EQ(TheMode, ModeEditRoll);
}

TEST_F(ModePaletteTest, ASkinOfOneNinetyOneGivesBlankButtonsAndNoMessage) {
#if defined(_WIN32)
    GTEST_SKIP() << "reads the native recording surface";
#endif
    Skin(191, 64);
    OpenMode();
    ASSERT_NE(TheModeDialog, nullptr);
    EXPECT_EQ(Messages.Count, 0);
    for (MPicture* tile : TheModeDialog->Tiles)
        EXPECT_EQ(tile, nullptr);
    ASSERT_NE(TheModeDialog->Surface, nullptr);
    EXPECT_EQ(Text(RecordingText(*TheModeDialog->Surface)).find(u"Bitmap"), std::u16string::npos);
}

TEST_F(ModePaletteTest, APaletteStoredOffScreenComesBackOntoTheDesktop) {
    settings.WindowRect_Mode = WRect{4000, 3000, 4100, 3300};
    OpenMode();
    WRect place = Place();
    EXPECT_EQ(place.left, 1920 - 64 - 1);
    EXPECT_EQ(place.top, 1080 - 192 - 1);
    EXPECT_EQ(place.right - place.left, 64);
    EXPECT_EQ(place.bottom - place.top, 192);
    EndMode();
    settings.WindowRect_Mode = WRect{-300, -20, 0, 0};
    OpenMode();
    EXPECT_EQ(Place().left, 0);
    EXPECT_EQ(Place().top, 0);
}

TEST_F(ModePaletteTest, AClickInTheLowestRowGivesTheRollAndAtSixtyFourTheSketch) {
    Load(OpenCorner());
    OpenMode();
    ClickPalette(191);
    EXPECT_EQ(TheMode, ModeEditRoll);
    EXPECT_EQ(Title(), u"Quillmere - Untitled (3 points) [EDIT ROLL]");
    EXPECT_TRUE(AppliedMenuState().EditRoll);
    ClickPalette(64);
    EXPECT_EQ(TheMode, ModeEditSketch);
    ClickPalette(127.9f);
    EXPECT_EQ(TheMode, ModeEditSketch);
    ClickPalette(128);
    EXPECT_EQ(TheMode, ModeEditRoll);
    Select(1, 0);
    ClickPalette(63.9f);
    EXPECT_EQ(TheMode, ModeDraw);
    EXPECT_EQ(S().Current, -1);
    EXPECT_TRUE(AppliedMenuState().DrawFreehand);
}

TEST_F(ModePaletteTest, EveryModeChangeRepaintsThePalette) {
#if defined(_WIN32)
    GTEST_SKIP() << "reads the native recording surface";
#endif
    OpenMode();
    ASSERT_NE(TheModeDialog->Surface, nullptr);
    auto begins = [] {
        std::u16string text = Text(RecordingText(*TheModeDialog->Surface));
        int32_t count = 0;
        for (size_t at = text.find(u"Begin"); at != std::u16string::npos;
             at = text.find(u"Begin", at + 1))
            count++;
        return count;
    };
    int32_t before = begins();
    EXPECT_EQ(before, 1);
    OnCharacter(u'e');
    EXPECT_EQ(begins(), 2);
    RunCommand(32830); // Edit roll
    EXPECT_EQ(begins(), 3);
    ClickPalette(10);
    EXPECT_EQ(begins(), 4);
    // The surface was made once: window and client area stayed.
    std::u16string text = Text(RecordingText(*TheModeDialog->Surface));
    EXPECT_EQ(text.find(u"CreateForDc"), text.rfind(u"CreateForDc"));
}

TEST_F(ModePaletteTest, AnElementAddedWhileDrawingRepaintsThePalette) {
#if defined(_WIN32)
    GTEST_SKIP() << "reads the native recording surface";
#endif
    CreateElement();
    OpenMode();
    MDrawSurface* surface = TheModeDialog->Surface;
    ASSERT_NE(surface, nullptr);
    int32_t before = surface->OperationCount;
    TheElement->Add(ElementStraightLine, 100, 0, 0, 0);
    EXPECT_EQ(TheMode, ModeEditSketch);
    EXPECT_GT(surface->OperationCount, before);
    DestroyElement();
}

TEST_F(ModePaletteTest, TheCommandTogglesThePaletteAndStoresItsPlace) {
    settings.WindowRect_Mode = WRect{300, 200, 0, 0};
    RunCommand(32847);
    ASSERT_NE(TheModeDialog, nullptr);
    EXPECT_TRUE(AppliedMenuState().ModeWindow);
    SetToolWindowRect(TheModeDialog->Window, WRect{50, 60, 114, 252});
    RunCommand(32847);
    EXPECT_EQ(TheModeDialog, nullptr);
    EXPECT_FALSE(AppliedMenuState().ModeWindow);
    EXPECT_EQ(settings.WindowRect_Mode.left, 50);
    EXPECT_EQ(settings.WindowRect_Mode.bottom, 252);
    RefreshModePalette(); // closed: nothing to repaint
}

TEST_F(ModePaletteTest, ASecondObjectIsRefused) {
    OpenMode();
    Messages.Count = 0;
    WDialog_Mode* first = TheModeDialog;
    OpenMode();
    EXPECT_EQ(TheModeDialog, first);
    EXPECT_EQ(LastMessage(), u"There can only be 1 WDialog_Mode object");
}

TEST(ModePaletteTooltips, TheButtonsTellTheirModes) {
    EXPECT_EQ(Text(PaletteTooltipText(100)), u"Draw freehand");
    EXPECT_EQ(Text(PaletteTooltipText(101)), u"Edit sketch");
    EXPECT_EQ(Text(PaletteTooltipText(102)), u"Edit roll");
    EXPECT_EQ(Text(PaletteTooltipText(103)), u"");
}

} // namespace
