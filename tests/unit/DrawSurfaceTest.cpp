// The drawing surface's own rules against the native surface, which records
// what reaches the platform: validity, the transform and display scale, the
// colour, stroke and font caches, and the fitting of pictures. The same
// operations on Direct2D with real pixels are in tests/win/DrawSurfaceWinTest.cpp.

#if !defined(_WIN32)

#include "drawing/MDrawSurface.h"
#include "drawing/MPicture.h"
#include "foundation/MString.h"
#include "shell/Frame.h"
#include "shell/Shell.h"
#include "shell/WSettings.h"
#include "shell/Window.h"
#include "view/WView.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace {

int PretendDc;
int PretendWindow;

const MColour Black{0, 0, 0, 255};
const MColour Red{0, 0, 255, 255}; // blue, green, red, alpha
const MColour Blue{255, 0, 0, 255};

std::u16string U16(const MString& text) {
    return std::u16string(text.Chars());
}

std::u16string Text(const MDrawSurface& surface) {
    return U16(RecordingText(surface));
}

int32_t CountOf(const MDrawSurface& surface, int32_t kind) {
    int32_t count = 0;
    for (int32_t i = 0; i < surface.OperationCount; i++)
        if (surface.Operations[i].Kind == kind) count++;
    return count;
}

// The last entry of a kind, or an entry of kind -1.
MDrawOperation LastOf(const MDrawSurface& surface, int32_t kind) {
    for (int32_t i = surface.OperationCount - 1; i >= 0; i--)
        if (surface.Operations[i].Kind == kind) return surface.Operations[i];
    MDrawOperation none;
    none.Kind = -1;
    return none;
}

// A surface over a pretend device context of 400 by 300, begun, with its
// recording emptied.
class DrawSurface : public ::testing::Test {
  protected:
    MDrawSurface Surface;
    int32_t CountBefore = 0;

    void SetUp() override {
        CountBefore = TheSurfaceCount;
        Surface.CreateForDc(&PretendDc, WRect{0, 0, 400, 300});
        ASSERT_TRUE(Surface.Valid);
        ASSERT_TRUE(Surface.Begin());
        Surface.OperationCount = 0;
    }
    void TearDown() override { Surface.Release(); }
};

MPicture Filled(int32_t width, int32_t height) {
    MPicture picture;
    picture.Allocate(width, height, PictureBgra8);
    for (int32_t y = 0; y < height; y++)
        for (int32_t x = 0; x < width; x++)
            WritePixel(MColour{10, 20, 30, 255}, picture.PixelAddress(x, y), PictureBgra8);
    return picture;
}

} // namespace

// ---- Creation, validity and release

TEST(DrawSurfaceCreation, WindowOfHeightZeroDrawsNothingAndKeepsNoError) {
    TheMainWindow = &PretendWindow;
    SetMainClientSize(640, 0);
    int32_t before = TheSurfaceCount;
    MDrawSurface surface;
    surface.CreateForWindow(&PretendWindow);
    EXPECT_FALSE(surface.Valid);
    EXPECT_EQ(TheSurfaceCount, before + 1) << "made, so to be released";
    EXPECT_FALSE(surface.Begin());
    surface.Clear(Black);
    surface.DrawLine(MPoint2{0, 0}, MPoint2{10, 10}, 1, Black);
    surface.DrawText(MDrawRect{0, 0, 100, 20}, MString(u"x"), MString(), 12, Black, 2, 2, false);
    surface.DrawCircle(MPoint2{5, 5}, 3, Black, true, 1, true);
    surface.End();
    EXPECT_EQ(Text(surface), u"CreateForWindow 640 0\n");
    EXPECT_EQ(surface.Brush, nullptr);
    surface.Release();
    EXPECT_EQ(TheSurfaceCount, before);
    surface.Release();
    EXPECT_EQ(TheSurfaceCount, before) << "a second release lowers nothing";

    // The frame makes no surface for it either, and tries again later.
    DrawFrame();
    EXPECT_EQ(TheSurface, nullptr);
    SetMainClientSize(640, 480);
    DrawFrame();
    EXPECT_NE(TheSurface, nullptr);
    DestroySurface();
    SetMainClientSize(0, 0);
    TheMainWindow = nullptr;
}

TEST(DrawSurfaceCreation, DcSurfaceTakesTheCallersRectangleAndCountsWhileAlive) {
    int32_t before = TheSurfaceCount;
    MDrawSurface surface;
    surface.CreateForDc(&PretendDc, WRect{10, 20, 110, 70});
    EXPECT_TRUE(surface.Valid);
    EXPECT_EQ(surface.Left, 10);
    EXPECT_EQ(surface.Top, 20);
    EXPECT_EQ(surface.Width(), 100);
    EXPECT_EQ(surface.Height(), 50);
    EXPECT_EQ(surface.Scale, 1.0f);
    EXPECT_EQ(TheSurfaceCount, before + 1);
    MDrawSurface empty;
    empty.CreateForDc(&PretendDc, WRect{10, 20, 10, 70});
    EXPECT_FALSE(empty.Valid);
    MDrawSurface noDc;
    noDc.CreateForDc(nullptr, WRect{0, 0, 10, 10});
    EXPECT_FALSE(noDc.Valid);
    EXPECT_EQ(TheSurfaceCount, before + 3);
    empty.Release();
    noDc.Release();
    surface.Release();
    EXPECT_EQ(TheSurfaceCount, before);
    EXPECT_FALSE(surface.Valid);
    EXPECT_EQ(surface.DcTarget, nullptr);
}

TEST(DrawSurfaceCreation, FreshSurfaceHasBlackBrushColourNoFontAndWrapOn) {
    MDrawSurface surface;
    EXPECT_EQ(surface.BrushColour.b, 0);
    EXPECT_EQ(surface.BrushColour.g, 0);
    EXPECT_EQ(surface.BrushColour.r, 0);
    EXPECT_EQ(surface.BrushColour.a, 255);
    EXPECT_TRUE(surface.FontFamily.IsEmpty());
    EXPECT_TRUE(surface.FontWrap);
    EXPECT_EQ(surface.Brush, nullptr);
    EXPECT_EQ(surface.TextFormat, nullptr);
    EXPECT_EQ(surface.StrokeStyle, nullptr);
}

// ---- Caches

TEST_F(DrawSurface, OneBrushServesARunInOneColour) {
    for (int i = 0; i < 5; i++)
        Surface.DrawLine(MPoint2{0, float(i)}, MPoint2{10, float(i)}, 1, Red);
    EXPECT_EQ(CountOf(Surface, DrawNewBrush), 1);
    EXPECT_EQ(CountOf(Surface, DrawNewStroke), 1) << "made at the first line";
    Surface.DrawLine(MPoint2{0, 0}, MPoint2{1, 1}, 1, Blue);
    Surface.DrawLine(MPoint2{0, 0}, MPoint2{1, 1}, 1, Blue);
    Surface.DrawLine(MPoint2{0, 0}, MPoint2{1, 1}, 1, MColour{255, 0, 0, 254}); // alpha differs
    EXPECT_EQ(CountOf(Surface, DrawNewBrush), 3);
    EXPECT_EQ(CountOf(Surface, DrawNewStroke), 1);
    EXPECT_EQ(Surface.BrushColour.a, 254);
    EXPECT_EQ(LastOf(Surface, DrawLineKind).Colour.a, 254);
}

TEST_F(DrawSurface, BlackAtCreationStillNeedsABrushOnce) {
    Surface.DrawRectangle(MDrawRect{0, 0, 10, 10}, Black);
    Surface.DrawRectangle(MDrawRect{0, 0, 10, 10}, Black);
    EXPECT_EQ(U16(RecordingText(Surface)),
              u"Brush 0 0 0 255\nRectangle 0 0 10 10 colour 0 0 0 255\n"
              u"Rectangle 0 0 10 10 colour 0 0 0 255\n");
}

TEST_F(DrawSurface, TextFormatIsKeptWhileFamilySizeAndAlignmentAgree) {
    MString tahoma(u"Tahoma");
    Surface.DrawText(MDrawRect{0, 0, 100, 20}, MString(u"a"), tahoma, 12, Black, 2, 2, false);
    Surface.DrawText(MDrawRect{0, 30, 100, 50}, MString(u"b"), tahoma, 12.7f, Black, 2, 2, true);
    EXPECT_EQ(CountOf(Surface, DrawNewFormat), 1) << "12.7 is truncated to 12";
    Surface.DrawText(MDrawRect{0, 0, 100, 20}, MString(u"c"), tahoma, 13, Black, 2, 2, false);
    Surface.DrawText(MDrawRect{0, 0, 100, 20}, MString(u"d"), tahoma, 13, Black, 0, 2, false);
    Surface.DrawText(MDrawRect{0, 0, 100, 20}, MString(u"e"), tahoma, 13, Black, 0, 1, false);
    Surface.DrawText(MDrawRect{0, 0, 100, 20}, MString(u"f"), MString(u"Arial"), 13, Black, 0, 1,
                     false);
    EXPECT_EQ(CountOf(Surface, DrawNewFormat), 5);
    EXPECT_EQ(U16(DescribeOperation(LastOf(Surface, DrawNewFormat))),
              u"TextFormat \"Arial\" 13 400 0 1 wrap");
    EXPECT_EQ(U16(Surface.FontFamily), u"Arial");
    EXPECT_EQ(Surface.FontWeight, 400);
    EXPECT_FALSE(Surface.FontItalic);
    EXPECT_TRUE(Surface.FontWrap);
}

TEST_F(DrawSurface, EmptyFamilyIsMsShellDlgAndNoSizeIsTwelve) {
    Surface.DrawText(MDrawRect{1, 2, 50, 60}, MString(u"x"), MString(), 0, Blue, 5, -3, true);
    EXPECT_EQ(Text(Surface), u"TextFormat \"MS Shell Dlg\" 12 400 5 -3 wrap\n"
                             u"Brush 255 0 0 255\n"
                             u"Text 1 2 50 60 \"x\" \"MS Shell Dlg\" 12 colour 255 0 0 255 clip\n");
    Surface.DrawText(MDrawRect{1, 2, 50, 60}, MString(u"y"), MString(), -4, Blue, 5, -3, false);
    EXPECT_EQ(CountOf(Surface, DrawNewFormat), 1);
}

TEST_F(DrawSurface, TextOfLengthZeroDrawsNothingVisibleAndFailsNoCall) {
    Surface.DrawText(MDrawRect{0, 0, 100, 20}, MString(), MString(u"Tahoma"), 12, Black, 2, 2,
                     false);
    MDrawOperation text = LastOf(Surface, DrawTextKind);
    ASSERT_EQ(text.Kind, DrawTextKind);
    EXPECT_TRUE(MString(text.Text).IsEmpty());
    // The surface goes on drawing.
    Surface.DrawLine(MPoint2{0, 0}, MPoint2{5, 5}, 1, Black);
    EXPECT_EQ(LastOf(Surface, DrawLineKind).Kind, DrawLineKind);
    EXPECT_TRUE(Surface.Valid);
}

// ---- Transform and scale

TEST_F(DrawSurface, WithDisplaySizeFiftyLinesAndTextDrawTwiceAsLarge) {
    CreateSettings();
    TheSettings->DisplaySize = 50;
    ApplyDisplayScale(Surface);
    DestroySettings();
    ASSERT_EQ(Surface.Scale, 2.0f);
    Surface.DrawLine(MPoint2{10, 20}, MPoint2{30, 45.5f}, 3, Black);
    Surface.DrawText(MDrawRect{10, 20, 110, 70.7f}, MString(u"Hi"), MString(u"Tahoma"), 20, Black,
                     2, 2, false);
    Surface.DrawCircle(MPoint2{50, 60}, 7, Black, false, 1.5f, true);
    Surface.DrawSquare(MPoint2{50, 60}, 7, Black, true, 1.5f, 0.25f, true);
    Surface.DrawRectangle(MDrawRect{1.3f, 2.6f, 5.2f, 6.9f}, Black);
    EXPECT_EQ(Text(Surface),
              u"Brush 0 0 0 255\nStrokeStyle\nLine 20 40 60 91 width 6 colour 0 0 0 255\n"
              u"TextFormat \"Tahoma\" 40 400 2 2 wrap\n"
              u"Text 20 40 220 141 \"Hi\" \"Tahoma\" 40 colour 0 0 0 255\n"
              u"Circle 100 120 radius 14 open width 3 colour 0 0 0 255\n"
              u"Square 100 120 radius 14 angle 0.25 filled width 3 colour 0 0 0 255\n"
              u"Rectangle 2 5 10 13 colour 0 0 0 255\n");
}

TEST(DrawSurfaceScale, TheFramesSurfaceTakesDisplaySizeFiftyAndDrawsTextTwiceAsLarge) {
    TheMainWindow = &PretendWindow;
    SetMainClientSize(640, 480);
    CreateSettings();
    CreateView();
    TheSettings->DisplaySize = 50;
    DrawFrame();
    ASSERT_NE(TheSurface, nullptr);
    EXPECT_EQ(TheSurface->Scale, 2.0f);
    // The mode text of size 40 is made at 80 device pixels.
    bool found = false;
    for (int32_t i = 0; i < TheSurface->OperationCount; i++) {
        const MDrawOperation& op = TheSurface->Operations[i];
        if (op.Kind == DrawTextKind && MString(op.Text) == MString(u"DRAW FREEHAND")) {
            found = true;
            EXPECT_EQ(op.Size, 80);
            EXPECT_EQ(op.X1, 25.0f); // 0.02 * 640 = 12.8, doubled and truncated
        }
    }
    EXPECT_TRUE(found);
    DestroySurface();
    DestroyView();
    DestroySettings();
    SetMainClientSize(0, 0);
    TheMainWindow = nullptr;
}

TEST(DrawSurfaceScale, ASurfaceAwayFromTheOriginMovesByItsLeftAndTop) {
    MDrawSurface surface;
    surface.CreateForDc(&PretendDc, WRect{100, 50, 300, 250});
    surface.Scale = 0.5f;
    surface.DrawLine(MPoint2{110, 70}, MPoint2{300, 250}, 4, Black);
    surface.DrawText(MDrawRect{101, 51, 200, 151}, MString(u"t"), MString(u"Tahoma"), 9, Black, 2,
                     2, false);
    MDrawOperation line = LastOf(surface, DrawLineKind);
    EXPECT_EQ(line.X1, 5.0f);
    EXPECT_EQ(line.Y1, 10.0f);
    EXPECT_EQ(line.X2, 100.0f);
    EXPECT_EQ(line.Y2, 100.0f);
    EXPECT_EQ(line.Width, 2.0f);
    MDrawOperation text = LastOf(surface, DrawTextKind);
    EXPECT_EQ(text.X1, 0.0f) << "0.5 truncated";
    EXPECT_EQ(text.Y1, 0.0f);
    EXPECT_EQ(text.X2, 50.0f);
    EXPECT_EQ(text.Y2, 50.0f);
    EXPECT_EQ(text.Size, 4) << "9 * 0.5 truncated";
    surface.Release();
}

// ---- Shapes

TEST_F(DrawSurface, RectangleWithoutAreaIsNotDrawn) {
    Surface.DrawRectangle(MDrawRect{10, 10, 10, 20}, Black);
    Surface.DrawRectangle(MDrawRect{10, 10, 20, 10}, Black);
    Surface.DrawRectangle(MDrawRect{20, 10, 10, 20}, Black);
    EXPECT_EQ(Surface.OperationCount, 0);
}

TEST_F(DrawSurface, CircleAndSquareNeedARadiusAboveZero) {
    Surface.DrawCircle(MPoint2{10, 10}, 0, Black, true, 1, true);
    Surface.DrawCircle(MPoint2{10, 10}, -3, Black, false, 1, true);
    Surface.DrawSquare(MPoint2{10, 10}, 0, Black, true, 1, 0, true);
    EXPECT_EQ(Surface.OperationCount, 0);
}

TEST_F(DrawSurface, WithoutTransformCircleAndSquareTakeDevicePixels) {
    Surface.Scale = 3;
    Surface.DrawCircle(MPoint2{10.5f, 11.5f}, 5, Black, true, 2, false);
    Surface.DrawSquare(MPoint2{10.5f, 11.5f}, 5, Black, false, 2, 1.5f, false);
    Surface.DrawCircle(MPoint2{10.5f, 11.5f}, 5, Black, false, 2, true);
    Surface.Scale = 1.5f;
    Surface.DrawCircle(MPoint2{2, 2}, 5, Black, false, 2, true);
    EXPECT_EQ(Text(Surface), u"Brush 0 0 0 255\n"
                             u"Circle 10.5 11.5 radius 5 filled width 2 colour 0 0 0 255\n"
                             u"Square 10.5 11.5 radius 5 angle 1.5 open width 2 colour 0 0 0 255\n"
                             u"Circle 31.5 34.5 radius 15 open width 6 colour 0 0 0 255\n"
                             u"Circle 3 3 radius 7 open width 3 colour 0 0 0 255\n");
}

TEST(SquareCorners, CornersLieAtTheRadiusFromTheStartAngleInQuarterTurns) {
    MPoint2 corners[4];
    SquareCorners(MPoint2{100, 50}, 10, 0, corners);
    // (x + r sin a, y + r cos a): the first corner straight below the centre.
    EXPECT_NEAR(corners[0].x, 100, 1e-4);
    EXPECT_NEAR(corners[0].y, 60, 1e-4);
    EXPECT_NEAR(corners[1].x, 110, 1e-4);
    EXPECT_NEAR(corners[1].y, 50, 1e-4);
    EXPECT_NEAR(corners[2].x, 100, 1e-4);
    EXPECT_NEAR(corners[2].y, 40, 1e-4);
    EXPECT_NEAR(corners[3].x, 90, 1e-4);
    EXPECT_NEAR(corners[3].y, 50, 1e-4);
    SquareCorners(MPoint2{0, 0}, 10, 0.7853982f, corners);
    EXPECT_NEAR(corners[0].x, 7.0710678, 1e-4);
    EXPECT_NEAR(corners[0].y, 7.0710678, 1e-4);
}

// ---- Pictures

TEST_F(DrawSurface, WidePictureIsReducedByThePicturesOwnResamplingBeforeDrawing) {
    MPicture wide = Filled(4000, 40);
    Surface.DrawPicture(wide, MDrawRect{0, 0, 400, 400}, true);
    MDrawOperation bitmap = LastOf(Surface, DrawBitmapKind);
    ASSERT_EQ(bitmap.Kind, DrawBitmapKind);
    EXPECT_EQ(bitmap.SourceWidth, 400) << "the bitmap handed on is already the reduced picture";
    EXPECT_EQ(bitmap.SourceHeight, 4);
    EXPECT_EQ(bitmap.X1, 0.0f);
    EXPECT_EQ(bitmap.X2, 400.0f);
    EXPECT_EQ(bitmap.Y1, 198.0f);
    EXPECT_EQ(bitmap.Y2, 202.0f);
}

TEST_F(DrawSurface, SmallPictureStaysItsSizeAndCentred) {
    MPicture small = Filled(40, 30);
    Surface.DrawPicture(small, MDrawRect{0, 0, 400, 400}, true);
    EXPECT_EQ(Text(Surface), u"Bitmap 180 185 220 215 source 40 30\n");
}

TEST_F(DrawSurface, PictureOfTheRectanglesSizeIsDrawnAsItIs) {
    MPicture exact = Filled(100, 50);
    Surface.DrawPicture(exact, MDrawRect{10, 20, 110, 70}, true);
    EXPECT_EQ(Text(Surface), u"Bitmap 10 20 110 70 source 100 50\n");
}

TEST_F(DrawSurface, SourceIsFittedCentredAndCutToTheRectangle) {
    MPicture picture = Filled(40, 20);
    void* source = MakeSurfaceBitmap(picture);
    ASSERT_NE(source, nullptr);
    // Enlarging allowed: 40 by 20 into 201 by 101 grows by the smaller ratio.
    Surface.DrawSource(source, MDrawRect{0, 0, 201, 101}, true, false);
    // Never enlarge: the same picture stays 40 by 20.
    Surface.DrawSource(source, MDrawRect{0, 0, 201, 101}, true, true);
    // A rectangle without area draws nothing.
    Surface.DrawSource(source, MDrawRect{5, 5, 5, 50}, true, false);
    Surface.DrawSource(nullptr, MDrawRect{0, 0, 100, 100}, true, false);
    // With the transform the rectangle is scaled and truncated first.
    Surface.Scale = 2;
    Surface.DrawSource(source, MDrawRect{0.7f, 0.7f, 20.2f, 10.2f}, true, true);
    EXPECT_EQ(Text(Surface), u"Bitmap 0 0 200.5 100.25 source 40 20\n"
                             u"Bitmap 80 40 120 60 source 40 20\n"
                             u"Bitmap 1 1 39 19.5 source 40 20\n");
    ReleaseSurfaceBitmap(source);
}

TEST_F(DrawSurface, PictureFileOfAFolderDrawsNothing) {
    Surface.DrawPictureFile(MString(u"/tmp"), MDrawRect{0, 0, 100, 100});
    Surface.DrawPictureFile(MString(u"/no/such/picture.png"), MDrawRect{0, 0, 100, 100});
    EXPECT_EQ(Surface.OperationCount, 0);
}

TEST_F(DrawSurface, PictureFileIsLoadedAndDrawnInTheTransformedRectangle) {
    std::string path = std::string(TEST_SOURCE_DIR) + "/tests/data/pictures/picture.bmp";
    std::u16string wide(path.begin(), path.end());
    Surface.Scale = 2;
    Surface.DrawPictureFile(MString(wide.c_str()), MDrawRect{0, 0, 100, 100});
    // 23 by 17 pixels centred in 200 by 200, never enlarged.
    EXPECT_EQ(Text(Surface), u"Bitmap 88.5 91.5 111.5 108.5 source 23 17\n");
}

TEST_F(DrawSurface, PicturePartIsCopiedOutUnlessItIsTheWholePicture) {
    MPicture picture = Filled(60, 40);
    Surface.DrawPicturePart(picture, WRect{0, 0, 60, 40}, MDrawRect{0, 0, 100, 100});
    Surface.DrawPicturePart(picture, WRect{10, 5, 30, 15}, MDrawRect{0, 0, 100, 100});
    EXPECT_EQ(Text(Surface), u"Bitmap 20 30 80 70 source 60 40\n"
                             u"Bitmap 40 45 60 55 source 20 10\n");
}

TEST_F(DrawSurface, UnusablePictureDrawsNothing) {
    MPicture empty;
    Surface.DrawPicture(empty, MDrawRect{0, 0, 100, 100}, true);
    Surface.DrawPicturePart(empty, WRect{0, 0, 1, 1}, MDrawRect{0, 0, 100, 100});
    EXPECT_EQ(Surface.OperationCount, 0);
}

// ---- A size change remakes everything

TEST(DrawSurfaceResize, WidthChangeOfOnePixelRemakesBrushStrokeAndFontAtNextUse) {
    TheMainWindow = &PretendWindow;
    SetMainClientSize(640, 480);
    CreateSettings();
    CreateView();
    DrawFrame();
    ASSERT_NE(TheSurface, nullptr);
    MDrawSurface* first = TheSurface;
    EXPECT_EQ(CountOf(*first, DrawNewStroke), 1);
    EXPECT_GE(CountOf(*first, DrawNewFormat), 1);
    DrawFrame();
    EXPECT_EQ(CountOf(*first, DrawNewStroke), 1) << "kept across frames of one size";

    SetMainClientSize(641, 480);
    DrawFrame();
    ASSERT_NE(TheSurface, nullptr);
    MDrawSurface* second = TheSurface;
    EXPECT_EQ(second->Width(), 641);
    // The new surface starts with nothing and makes its objects at first use.
    ASSERT_GE(second->OperationCount, 5);
    EXPECT_EQ(U16(DescribeOperation(second->Operations[0])), u"CreateForWindow 641 480");
    EXPECT_EQ(second->Operations[1].Kind, DrawBegin);
    EXPECT_EQ(second->Operations[2].Kind, DrawClear);
    EXPECT_EQ(second->Operations[3].Kind, DrawNewBrush);
    EXPECT_EQ(second->Operations[4].Kind, DrawNewStroke);
    EXPECT_EQ(CountOf(*second, DrawNewStroke), 1);
    EXPECT_GE(CountOf(*second, DrawNewFormat), 1);
    DestroySurface();
    DestroyView();
    DestroySettings();
    SetMainClientSize(0, 0);
    TheMainWindow = nullptr;
}

// ---- The recording as text

TEST(DrawRecording, DescribesEachKindOnOneLine) {
    MDrawOperation op;
    op.Kind = DrawSquareKind;
    op.X1 = 1.5f;
    op.Y1 = 2;
    op.Radius = 8;
    op.Angle = -0.5f;
    op.Width = 2;
    op.Colour = MColour{1, 2, 3, 128};
    EXPECT_EQ(U16(DescribeOperation(op)),
              u"Square 1.5 2 radius 8 angle -0.5 open width 2 colour 1 2 3 128");
}

// ---- The recording

TEST_F(DrawSurface, ALongRecordingReadsBackEveryEntryInOrder) {
    // Far past the first block and several doublings, shapes and texts mixed.
    const int32_t lines = 300000;
    for (int32_t i = 0; i < lines; i++) {
        Surface.DrawLine(MPoint2{float(i), 1}, MPoint2{2, float(-i)}, float(i % 7), Black);
        if (i % 50000 == 0)
            Surface.DrawText(MDrawRect{0, 0, 100, 20}, IntegerText(i), MString(u"Tahoma"), 12, Red,
                             2, 2, i % 100000 == 0);
    }
    ASSERT_EQ(CountOf(Surface, DrawLineKind), lines);
    int32_t line = 0, text = 0;
    for (int32_t k = 0; k < Surface.OperationCount; k++) {
        MDrawOperation op = Surface.Operations[k];
        if (op.Kind == DrawLineKind) {
            ASSERT_EQ(op.X1, float(line));
            ASSERT_EQ(op.Y2, float(-line));
            ASSERT_EQ(op.Width, float(line % 7));
            ASSERT_EQ(op.Colour.a, 255);
            ASSERT_FALSE(op.Filled);
            ASSERT_EQ(op.Radius, 0.0f);
            ASSERT_EQ(MString(op.Text), MString());
            line++;
        } else if (op.Kind == DrawTextKind) {
            EXPECT_EQ(U16(MString(op.Text)), U16(IntegerText(text * 50000)));
            EXPECT_EQ(U16(MString(op.Font)), u"Tahoma");
            EXPECT_EQ(op.Clip, text % 2 == 0);
            EXPECT_EQ(op.Colour.r, 255);
            text++;
        }
    }
    EXPECT_EQ(text, 6);
}

TEST_F(DrawSurface, AnEntryRecordedWholeReadsBackWhole) {
    MDrawOperation odd;
    odd.Kind = DrawLineKind; // a line with fields no line of the platform has
    odd.X1 = 1, odd.Radius = 2, odd.Size = 3, odd.SourceHeight = 4, odd.Wrap = true;
    odd.Text = u"kept";
    Surface.Record(odd);
    ASSERT_EQ(Surface.OperationCount, 1);
    MDrawOperation back = Surface.Operations[0];
    EXPECT_EQ(back.Kind, DrawLineKind);
    EXPECT_EQ(back.X1, 1.0f);
    EXPECT_EQ(back.Radius, 2.0f);
    EXPECT_EQ(back.Size, 3);
    EXPECT_EQ(back.SourceHeight, 4);
    EXPECT_TRUE(back.Wrap);
    EXPECT_EQ(U16(MString(back.Text)), u"kept");
}

TEST_F(DrawSurface, ShapesReadBackWithTheirOwnFieldsOnly) {
    Surface.DrawRectangle(MDrawRect{1, 2, 30, 40}, Red);
    Surface.DrawCircle(MPoint2{5, 6}, 7, Blue, true, 3, true);
    Surface.DrawSquare(MPoint2{8, 9}, 10, Black, false, 4, 0.5f, true);
    EXPECT_EQ(Text(Surface), u"Brush 0 0 255 255\nRectangle 1 2 30 40 colour 0 0 255 255\n"
                             u"Brush 255 0 0 255\nCircle 5 6 radius 7 filled width 3 colour 255 "
                             u"0 0 255\nBrush 0 0 0 255\nSquare 8 9 radius 10 angle 0.5 open "
                             u"width 4 colour 0 0 0 255\n");
    MDrawOperation square = LastOf(Surface, DrawSquareKind);
    EXPECT_EQ(square.X2, 0.0f);
    EXPECT_EQ(square.Size, 0);
    EXPECT_EQ(MString(square.Font), MString());
}

TEST_F(DrawSurface, ARecordingBegunAnewKeepsOnlyItsNewEntries) {
    for (int32_t i = 0; i < 100; i++)
        Surface.DrawText(MDrawRect{0, 0, 100, 20}, MString(u"a"), MString(u"Tahoma"), 12, Black, 2,
                         2, false);
    Surface.OperationCount = 0;
    Surface.DrawText(MDrawRect{0, 0, 100, 20}, MString(u"b"), MString(u"Tahoma"), 12, Black, 2, 2,
                     false);
    EXPECT_EQ(Surface.Operations.OtherCount, 1) << "the entries of before are gone";
    EXPECT_EQ(Text(Surface), u"Text 0 0 100 20 \"b\" \"Tahoma\" 12 colour 0 0 0 255\n");
}

TEST_F(DrawSurface, EachTextIsKeptOnceAndStaysWhereItIs) {
    Surface.DrawText(MDrawRect{0, 0, 100, 20}, MString(u"same"), MString(u"Tahoma"), 12, Black, 2,
                     2, false);
    const char16_t* first = LastOf(Surface, DrawTextKind).Text;
    for (int32_t i = 0; i < 1000; i++) // many other texts: the table grows
        Surface.DrawText(MDrawRect{0, 0, 100, 20}, IntegerText(i), MString(u"Tahoma"), 12, Black, 2,
                         2, false);
    Surface.DrawText(MDrawRect{0, 0, 100, 20}, MString(u"same"), MString(u"Tahoma"), 12, Black, 2,
                     2, false);
    EXPECT_EQ(LastOf(Surface, DrawTextKind).Text, first);
    EXPECT_EQ(U16(MString(first)), u"same");
    EXPECT_EQ(Surface.StringCount, 1002); // "same", the family and the thousand numbers
}

#endif
