// The drawing surface on Direct2D and DirectWrite, with real pixels read
// back: from a memory bitmap behind a device-context surface, and from the
// screen behind a window surface. Colours are checked away from the edges,
// where anti-aliasing blends them.

#include "drawing/DrawSurfacePlatform.h"
#include "drawing/MDrawSurface.h"
#include "drawing/MPicture.h"
#include "foundation/MString.h"
#include "shell/Frame.h"
#include "shell/Shell.h"
#include "shell/WSettings.h"
#include "sketch/WSketch.h"
#include "view/WView.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

#include <windows.h>

#include <d2d1.h>
#include <objbase.h>

#undef DrawText

namespace {

const MColour White{255, 255, 255, 255}; // blue, green, red, alpha
const MColour Black{0, 0, 0, 255};
const MColour Red{0, 0, 255, 255};
const MColour Green{0, 255, 0, 255};
const MColour Blue{255, 0, 0, 255};

const float QuarterTurn = 0.7853982f; // a square with corners at 45 degrees stands upright

struct Rgb {
    int r, g, b;
};

// A 32-bit top-down memory bitmap selected into a memory device context.
class MemoryCanvas {
  public:
    HDC Dc = nullptr;
    HBITMAP Bitmap = nullptr;
    HGDIOBJ Old = nullptr;
    uint8_t* Bits = nullptr;
    int Width, Height;

    MemoryCanvas(int width, int height) : Width(width), Height(height) {
        Dc = CreateCompatibleDC(nullptr);
        BITMAPINFO info = {};
        info.bmiHeader.biSize = sizeof info.bmiHeader;
        info.bmiHeader.biWidth = width;
        info.bmiHeader.biHeight = -height; // top-down
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        info.bmiHeader.biCompression = BI_RGB;
        void* bits = nullptr;
        Bitmap = CreateDIBSection(Dc, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
        Bits = static_cast<uint8_t*>(bits);
        if (Bitmap) Old = SelectObject(Dc, Bitmap);
    }
    ~MemoryCanvas() {
        if (Old) SelectObject(Dc, Old);
        if (Bitmap) DeleteObject(Bitmap);
        if (Dc) DeleteDC(Dc);
    }
    Rgb At(int x, int y) const {
        GdiFlush();
        const uint8_t* p = Bits + (size_t(y) * Width + x) * 4;
        return Rgb{p[2], p[1], p[0]};
    }
    // Pixels of the box (right and bottom outside) that are clearly not white.
    int Inked(int left, int top, int right, int bottom) const {
        int count = 0;
        for (int y = top; y < bottom; y++)
            for (int x = left; x < right; x++) {
                Rgb c = At(x, y);
                if (c.r < 160 && c.g < 160 && c.b < 160) count++;
            }
        return count;
    }
};

::testing::AssertionResult IsColour(Rgb got, int r, int g, int b, int tolerance = 8) {
    if (std::abs(got.r - r) <= tolerance && std::abs(got.g - g) <= tolerance &&
        std::abs(got.b - b) <= tolerance)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "pixel is (" << got.r << ", " << got.g << ", " << got.b
                                         << "), wanted (" << r << ", " << g << ", " << b << ")";
}

class DrawSurfaceWin : public ::testing::Test {
  protected:
    void SetUp() override { CoInitialize(nullptr); }
    void TearDown() override { CoUninitialize(); }
};

} // namespace

TEST_F(DrawSurfaceWin, LinesCirclesSquaresRectanglesAndTextReachTheBitmap) {
    MemoryCanvas canvas(300, 200);
    ASSERT_NE(canvas.Bits, nullptr);
    MDrawSurface surface;
    surface.CreateForDc(canvas.Dc, WRect{0, 0, 300, 200});
    ASSERT_TRUE(surface.Valid);
    EXPECT_NE(surface.DcTarget, nullptr);
    EXPECT_EQ(surface.HwndTarget, nullptr);
    ASSERT_TRUE(surface.Begin());
    surface.Clear(White);
    surface.DrawLine(MPoint2{10, 20}, MPoint2{290, 20}, 6, Red);
    surface.DrawCircle(MPoint2{50, 80}, 20, Blue, true, 1, true);
    surface.DrawCircle(MPoint2{120, 80}, 20, Blue, false, 4, true);
    surface.DrawSquare(MPoint2{200, 80}, 20, Green, true, 1, QuarterTurn, true);
    surface.DrawRectangle(MDrawRect{240, 60, 280, 100}, Black);
    surface.DrawText(MDrawRect{10, 120, 290, 190}, MString(u"WW"), MString(u"Tahoma"), 40, Black,
                     AlignNear, AlignNear, false);
    surface.End();
    // Wine draws every cap flat, so the caps are read from the stroke style.
    ID2D1StrokeStyle* style = static_cast<ID2D1StrokeStyle*>(surface.StrokeStyle);
    ASSERT_NE(style, nullptr);
    EXPECT_EQ(style->GetStartCap(), D2D1_CAP_STYLE_ROUND);
    EXPECT_EQ(style->GetEndCap(), D2D1_CAP_STYLE_ROUND);
    EXPECT_EQ(style->GetDashCap(), D2D1_CAP_STYLE_FLAT);
    EXPECT_EQ(style->GetLineJoin(), D2D1_LINE_JOIN_MITER);
    EXPECT_EQ(style->GetMiterLimit(), 10.0f);
    EXPECT_EQ(style->GetDashStyle(), D2D1_DASH_STYLE_SOLID);
    EXPECT_NE(surface.TextFormat, nullptr);
    EXPECT_EQ(surface.FontSize, 40);

    EXPECT_TRUE(IsColour(canvas.At(150, 20), 255, 0, 0)) << "on the line";
    EXPECT_TRUE(IsColour(canvas.At(150, 12), 255, 255, 255)) << "above the line";
    EXPECT_TRUE(IsColour(canvas.At(150, 28), 255, 255, 255)) << "below the line";
    EXPECT_TRUE(IsColour(canvas.At(50, 80), 0, 0, 255)) << "filled circle's centre";
    EXPECT_TRUE(IsColour(canvas.At(50, 64), 0, 0, 255));
    EXPECT_TRUE(IsColour(canvas.At(50, 104), 255, 255, 255)) << "outside the circle";
    EXPECT_TRUE(IsColour(canvas.At(33, 63), 255, 255, 255)) << "beside the circle, inside its box";
    EXPECT_TRUE(IsColour(canvas.At(120, 80), 255, 255, 255)) << "open circle's centre";
    EXPECT_TRUE(IsColour(canvas.At(140, 80), 0, 0, 255)) << "open circle's ring";
    EXPECT_TRUE(IsColour(canvas.At(120, 60), 0, 0, 255));
    EXPECT_TRUE(IsColour(canvas.At(200, 80), 0, 255, 0)) << "square's centre";
    EXPECT_TRUE(IsColour(canvas.At(211, 91), 0, 255, 0)) << "near its corner: half side 14";
    EXPECT_TRUE(IsColour(canvas.At(218, 80), 255, 255, 255)) << "beside the square";
    EXPECT_TRUE(IsColour(canvas.At(260, 80), 0, 0, 0)) << "rectangle";
    EXPECT_TRUE(IsColour(canvas.At(282, 80), 255, 255, 255)) << "right of the rectangle";
    EXPECT_GT(canvas.Inked(10, 120, 290, 190), 200) << "the text left ink in its box";
    EXPECT_EQ(canvas.Inked(120, 120, 300, 200), 0) << "two letters of 40 pixels end before 120";
    surface.Release();
}

TEST_F(DrawSurfaceWin, DisplayScaleTwoDrawsTwiceAsLarge) {
    MemoryCanvas canvas(200, 120);
    MDrawSurface surface;
    surface.CreateForDc(canvas.Dc, WRect{0, 0, 200, 120});
    surface.Scale = 2;
    ASSERT_TRUE(surface.Begin());
    surface.Clear(White);
    surface.DrawLine(MPoint2{10, 10}, MPoint2{50, 10}, 2, Red);
    surface.DrawCircle(MPoint2{70, 30}, 10, Blue, true, 1, true);
    surface.End();
    EXPECT_TRUE(IsColour(canvas.At(60, 20), 255, 0, 0)) << "at twice the coordinates";
    EXPECT_TRUE(IsColour(canvas.At(60, 10), 255, 255, 255));
    EXPECT_TRUE(IsColour(canvas.At(60, 21), 255, 0, 0)) << "twice as wide";
    EXPECT_TRUE(IsColour(canvas.At(60, 24), 255, 255, 255));
    EXPECT_TRUE(IsColour(canvas.At(140, 60), 0, 0, 255));
    EXPECT_TRUE(IsColour(canvas.At(140, 42), 0, 0, 255)) << "radius 20";
    EXPECT_TRUE(IsColour(canvas.At(140, 37), 255, 255, 255));
    surface.Release();
}

TEST_F(DrawSurfaceWin, PicturesAreFittedCentredAndNeverEnlarged) {
    MemoryCanvas canvas(200, 200);
    MPicture picture;
    ASSERT_TRUE(picture.Allocate(40, 20, PictureBgra8));
    for (int y = 0; y < 20; y++)
        for (int x = 0; x < 40; x++)
            WritePixel(x < 20 ? Red : Green, picture.PixelAddress(x, y), PictureBgra8);
    MDrawSurface surface;
    surface.CreateForDc(canvas.Dc, WRect{0, 0, 200, 200});
    ASSERT_TRUE(surface.Begin());
    surface.Clear(White);
    surface.DrawPicture(picture, MDrawRect{0, 0, 200, 200}, true);
    // Enlarging allowed: the same picture fills a band 200 wide.
    void* source = MakeSurfaceBitmap(picture);
    ASSERT_NE(source, nullptr);
    surface.DrawSource(source, MDrawRect{0, 0, 200, 60}, true, false);
    ReleaseSurfaceBitmap(source);
    surface.End();
    // Never enlarged: 40 by 20 around the centre (100, 100).
    EXPECT_TRUE(IsColour(canvas.At(85, 100), 255, 0, 0));
    EXPECT_TRUE(IsColour(canvas.At(115, 100), 0, 255, 0));
    EXPECT_TRUE(IsColour(canvas.At(75, 100), 255, 255, 255));
    EXPECT_TRUE(IsColour(canvas.At(100, 115), 255, 255, 255));
    // Fitted to 200 by 60: 120 by 60 from x 40 to 160.
    EXPECT_TRUE(IsColour(canvas.At(50, 30), 255, 0, 0));
    EXPECT_TRUE(IsColour(canvas.At(150, 30), 0, 255, 0));
    EXPECT_TRUE(IsColour(canvas.At(30, 30), 255, 255, 255));
    surface.Release();
}

TEST_F(DrawSurfaceWin, EmptyTextAndAFoldersPictureDrawNothingAndFailNothing) {
    MemoryCanvas canvas(100, 60);
    MDrawSurface surface;
    surface.CreateForDc(canvas.Dc, WRect{0, 0, 100, 60});
    ASSERT_TRUE(surface.Begin());
    surface.Clear(White);
    surface.DrawText(MDrawRect{0, 0, 100, 60}, MString(), MString(u"Tahoma"), 20, Black, 0, 0,
                     true);
    wchar_t windows[MAX_PATH] = {};
    GetWindowsDirectoryW(windows, MAX_PATH);
    surface.DrawPictureFile(MString(reinterpret_cast<const char16_t*>(windows)),
                            MDrawRect{0, 0, 100, 60});
    surface.DrawLine(MPoint2{0, 50}, MPoint2{100, 50}, 4, Black);
    surface.End();
    EXPECT_TRUE(surface.Valid);
    EXPECT_EQ(canvas.Inked(0, 0, 100, 45), 0);
    EXPECT_TRUE(IsColour(canvas.At(50, 50), 0, 0, 0)) << "drawing went on";
    surface.Release();
}

TEST_F(DrawSurfaceWin, ReleaseDropsEverythingAndLowersTheCount) {
    MemoryCanvas canvas(50, 50);
    int32_t before = TheSurfaceCount;
    MDrawSurface surface;
    surface.CreateForDc(canvas.Dc, WRect{0, 0, 50, 50});
    EXPECT_EQ(TheSurfaceCount, before + 1);
    surface.Begin();
    surface.DrawLine(MPoint2{0, 0}, MPoint2{10, 10}, 1, Red);
    surface.DrawText(MDrawRect{0, 0, 50, 50}, MString(u"a"), MString(), 0, Red, 0, 0, false);
    surface.End();
    EXPECT_EQ(surface.FontFamily, MString(u"MS Shell Dlg"));
    EXPECT_EQ(surface.FontSize, 12);
    surface.Release();
    EXPECT_EQ(TheSurfaceCount, before);
    EXPECT_EQ(surface.Brush, nullptr);
    EXPECT_EQ(surface.StrokeStyle, nullptr);
    EXPECT_EQ(surface.TextFormat, nullptr);
    EXPECT_EQ(surface.DcTarget, nullptr);
    EXPECT_EQ(surface.WriteFactory, nullptr);
    EXPECT_EQ(surface.Factory, nullptr);
}

// ---- Batches

namespace {

const MColour HalfBlack{0, 0, 0, 128};
const MColour HalfRed{0, 0, 255, 128};

// Draws the same scene twice, with batches and with every shape on its own,
// and counts the pixels that differ; ink counts the pixels the batched
// drawing left not white, so that an empty scene cannot pass.
struct BatchComparison {
    int Differing = 0;
    int Ink = 0;
    int FirstX = -1, FirstY = -1;
};

BatchComparison CompareBatched(int width, int height,
                               const std::function<void(MDrawSurface&)>& scene) {
    BatchComparison result;
    MemoryCanvas batched(width, height), single(width, height);
    for (int pass = 0; pass < 2; pass++) {
        MemoryCanvas& canvas = pass == 0 ? batched : single;
        TheDrawBatching = pass == 0;
        MDrawSurface surface;
        surface.CreateForDc(canvas.Dc, WRect{0, 0, width, height});
        if (surface.Begin()) {
            surface.Clear(White);
            scene(surface);
            surface.End();
        }
        surface.Release();
    }
    TheDrawBatching = true;
    for (int y = 0; y < height; y++)
        for (int x = 0; x < width; x++) {
            Rgb a = batched.At(x, y), b = single.At(x, y);
            if (a.r != 255 || a.g != 255 || a.b != 255) result.Ink++;
            if (a.r != b.r || a.g != b.g || a.b != b.b) {
                if (result.Differing++ == 0) {
                    result.FirstX = x;
                    result.FirstY = y;
                }
            }
        }
    return result;
}

} // namespace

TEST_F(DrawSurfaceWin, BatchedShapesDrawTheSamePixelsAsShapesOneByOne) {
    BatchComparison result = CompareBatched(400, 300, [](MDrawSurface& surface) {
        // A polyline in one colour and width, then the same in another width,
        // crossing each other; joined segments of a translucent colour.
        for (int i = 0; i < 40; i++) {
            float x = 10 + i * 9.0f;
            surface.DrawLine(MPoint2{x, 40 + 20 * std::sin(i * 0.7f)},
                             MPoint2{x + 9, 40 + 20 * std::sin((i + 1) * 0.7f)}, 2, Black);
        }
        for (int i = 0; i < 20; i++)
            surface.DrawLine(MPoint2{20.0f + i * 17, 10}, MPoint2{30.0f + i * 17, 80}, 5, Black);
        for (int i = 0; i < 20; i++)
            surface.DrawLine(MPoint2{20.0f + i * 17, 80}, MPoint2{37.0f + i * 17, 20}, 3, Red);
        for (int i = 0; i < 20; i++)
            surface.DrawLine(MPoint2{10.0f + i * 12, 100}, MPoint2{22.0f + i * 12, 130}, 4,
                             HalfRed);
        // Marks: translucent squares that overlap their neighbours, circles
        // and squares of every kind between them, and a text in the middle.
        for (int i = 0; i < 30; i++) {
            float x = 15 + i * 12.0f, y = 170 + (i % 3) * 6.0f;
            surface.DrawRectangle(MDrawRect{x - 8, y - 8, x + 8, y + 8}, HalfBlack);
            if (i % 5 == 0) surface.DrawCircle(MPoint2{x, y + 30}, 8, HalfBlack, true, 2, true);
            if (i % 7 == 0) surface.DrawCircle(MPoint2{x, y + 30}, 12, Blue, false, 2, true);
            if (i % 4 == 1)
                surface.DrawSquare(MPoint2{x, y + 60}, 8, Green, false, 2, i * 0.3f, true);
            if (i % 4 == 3) surface.DrawSquare(MPoint2{x, y + 60}, 8, HalfRed, true, 1, 0.5f, true);
            if (i == 15)
                surface.DrawText(MDrawRect{100, 140, 300, 200}, MString(u"Batch"),
                                 MString(u"Tahoma"), 30, Red, AlignNear, AlignNear, false);
        }
        // The same colour again after the text: a new batch, over the text.
        surface.DrawLine(MPoint2{90, 160}, MPoint2{320, 160}, 6, Black);
        surface.DrawLine(MPoint2{90, 290}, MPoint2{390, 280}, 1, Green);
    });
    EXPECT_GT(result.Ink, 15000) << "the scene drew";
    EXPECT_EQ(result.Differing, 0) << "first at (" << result.FirstX << ", " << result.FirstY << ")";
}

TEST_F(DrawSurfaceWin, BatchesLongerThanTheirLimitDrawEveryLine) {
    // 600 short lines of one colour and width: three batches in a row.
    BatchComparison result = CompareBatched(300, 200, [](MDrawSurface& surface) {
        for (int i = 0; i < 600; i++) {
            float x = 5 + (i % 60) * 4.8f, y = 10 + (i / 60) * 18.0f;
            surface.DrawLine(MPoint2{x, y}, MPoint2{x + 3, y + 12}, 1, Black);
        }
    });
    EXPECT_GT(result.Ink, 600 * 8);
    EXPECT_EQ(result.Differing, 0) << "first at (" << result.FirstX << ", " << result.FirstY << ")";
}

TEST_F(DrawSurfaceWin, OverlappingTranslucentShapesStillBlendTwice) {
    MemoryCanvas canvas(100, 60);
    MDrawSurface surface;
    surface.CreateForDc(canvas.Dc, WRect{0, 0, 100, 60});
    ASSERT_TRUE(surface.Begin());
    surface.Clear(White);
    surface.DrawRectangle(MDrawRect{10, 10, 50, 50}, HalfBlack);
    surface.DrawRectangle(MDrawRect{30, 10, 70, 50}, HalfBlack);
    surface.DrawLine(MPoint2{75, 30}, MPoint2{95, 30}, 6, HalfBlack);
    surface.DrawLine(MPoint2{85, 10}, MPoint2{85, 50}, 6, HalfBlack);
    surface.End();
    surface.Release();
    EXPECT_TRUE(IsColour(canvas.At(20, 30), 127, 127, 127)) << "one square";
    EXPECT_TRUE(IsColour(canvas.At(40, 30), 63, 63, 63)) << "both squares";
    EXPECT_TRUE(IsColour(canvas.At(60, 30), 127, 127, 127)) << "the other square";
    EXPECT_TRUE(IsColour(canvas.At(78, 30), 127, 127, 127)) << "one line";
    EXPECT_TRUE(IsColour(canvas.At(85, 30), 63, 63, 63)) << "where the lines cross";
}

TEST_F(DrawSurfaceWin, ABatchKeepsItsPlaceBetweenTextsAndColours) {
    // Two red lines with a square, a green line and a text between them: the
    // second red line must not join the batch of the first.
    MemoryCanvas canvas(200, 100);
    MDrawSurface surface;
    surface.CreateForDc(canvas.Dc, WRect{0, 0, 200, 100});
    ASSERT_TRUE(surface.Begin());
    surface.Clear(White);
    surface.DrawLine(MPoint2{10, 50}, MPoint2{190, 50}, 10, Red);
    surface.DrawRectangle(MDrawRect{40, 30, 60, 70}, Blue);
    surface.DrawLine(MPoint2{10, 50}, MPoint2{100, 50}, 4, Green);
    surface.DrawText(MDrawRect{120, 60, 200, 100}, MString(u"Tx"), MString(u"Tahoma"), 20, Black,
                     AlignNear, AlignNear, false);
    surface.DrawLine(MPoint2{70, 10}, MPoint2{70, 90}, 4, Red);
    surface.End();
    surface.Release();
    EXPECT_TRUE(IsColour(canvas.At(20, 46), 255, 0, 0)) << "the first line, beside the green";
    EXPECT_TRUE(IsColour(canvas.At(45, 60), 0, 0, 255)) << "the square over the red line";
    EXPECT_TRUE(IsColour(canvas.At(50, 50), 0, 255, 0)) << "the green line over the square";
    EXPECT_TRUE(IsColour(canvas.At(70, 50), 255, 0, 0)) << "the last line over the green";
    EXPECT_TRUE(IsColour(canvas.At(70, 20), 255, 0, 0));
    EXPECT_GT(canvas.Inked(120, 60, 200, 100), 20) << "the text";
}

TEST_F(DrawSurfaceWin, ShapesOutsideTheTargetOrNotFiniteSpoilNoBatch) {
    const float nan = std::numeric_limits<float>::quiet_NaN();
    const float huge = std::numeric_limits<float>::infinity();
    BatchComparison result = CompareBatched(200, 100, [&](MDrawSurface& surface) {
        surface.DrawLine(MPoint2{10, 20}, MPoint2{190, 20}, 2, Black);
        surface.DrawLine(MPoint2{-500, -500}, MPoint2{-400, -450}, 2, Black);
        surface.DrawLine(MPoint2{nan, 10}, MPoint2{50, 10}, 2, Black);
        surface.DrawLine(MPoint2{10, 40}, MPoint2{huge, 40}, 2, Black);
        surface.DrawLine(MPoint2{10, 60}, MPoint2{190, 60}, 2, Black);
        surface.DrawRectangle(MDrawRect{300, 10, 320, 30}, Black);
        surface.DrawCircle(MPoint2{-50, 50}, 10, Black, true, 1, true);
        surface.DrawRectangle(MDrawRect{20, 70, 40, 90}, Black);
    });
    EXPECT_EQ(result.Differing, 0) << "first at (" << result.FirstX << ", " << result.FirstY << ")";
    EXPECT_GT(result.Ink, 2 * 180 * 2 + 400 - 40);
}

// ---- On a window

namespace {

const wchar_t* const SurfaceClass = L"QuillmereSurfaceTest";

LRESULT CALLBACK PlainProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_PAINT) {
        ValidateRect(window, nullptr); // the frame alone draws, as in the program
        return 0;
    }
    return DefWindowProcW(window, message, wParam, lParam);
}

HWND MakeWindow(int width, int height) {
    WNDCLASSEXW windowClass = {};
    windowClass.cbSize = sizeof windowClass;
    windowClass.lpfnWndProc = PlainProc;
    windowClass.hInstance = GetModuleHandleW(nullptr);
    windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH));
    windowClass.lpszClassName = SurfaceClass;
    RegisterClassExW(&windowClass);
    HWND window = CreateWindowExW(0, SurfaceClass, L"Surface", WS_POPUP, 40, 40, width, height,
                                  nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
    ShowWindow(window, SW_SHOWNOACTIVATE);
    UpdateWindow(window);
    return window;
}

void Pump() {
    for (int round = 0; round < 5; round++) {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
        Sleep(20);
    }
}

Rgb ScreenPixel(HWND window, int x, int y) {
    POINT point = {x, y};
    ClientToScreen(window, &point);
    HDC screen = GetDC(nullptr);
    COLORREF colour = GetPixel(screen, point.x, point.y);
    ReleaseDC(nullptr, screen);
    return Rgb{GetRValue(colour), GetGValue(colour), GetBValue(colour)};
}

// The window's class paints black; under Wine the drawn picture reaches the
// screen a moment after End. Waits up to two seconds for a pixel that the
// drawing makes white.
void WaitForWhite(HWND window, int x, int y) {
    for (int round = 0; round < 100; round++) {
        Rgb c = ScreenPixel(window, x, y);
        if (c.r == 255 && c.g == 255 && c.b == 255) return;
        Pump();
    }
}

} // namespace

TEST_F(DrawSurfaceWin, WindowSurfaceDrawsOnTheScreen) {
    HWND window = MakeWindow(240, 160);
    ASSERT_NE(window, nullptr);
    Pump();
    MDrawSurface surface;
    surface.CreateForWindow(window);
    ASSERT_TRUE(surface.Valid);
    EXPECT_EQ(surface.Width(), 240);
    EXPECT_EQ(surface.Height(), 160);
    ASSERT_TRUE(surface.Begin());
    surface.Clear(White);
    surface.DrawLine(MPoint2{10, 20}, MPoint2{230, 20}, 6, Red);
    surface.DrawCircle(MPoint2{50, 80}, 20, Blue, true, 1, true);
    surface.DrawSquare(MPoint2{120, 80}, 20, Green, false, 4, QuarterTurn, true);
    surface.DrawText(MDrawRect{150, 60, 240, 110}, MString(u"WW"), MString(u"Segoe UI Light"), 40,
                     Black, AlignNear, AlignNear, false);
    surface.End();
    WaitForWhite(window, 120, 30);
    EXPECT_TRUE(IsColour(ScreenPixel(window, 120, 20), 255, 0, 0));
    EXPECT_TRUE(IsColour(ScreenPixel(window, 120, 30), 255, 255, 255));
    EXPECT_TRUE(IsColour(ScreenPixel(window, 50, 80), 0, 0, 255));
    EXPECT_TRUE(IsColour(ScreenPixel(window, 120, 80), 255, 255, 255)) << "open square's inside";
    EXPECT_TRUE(IsColour(ScreenPixel(window, 106, 80), 0, 255, 0)) << "its left side";
    int inked = 0;
    for (int y = 60; y < 110; y++)
        for (int x = 150; x < 240; x += 2) {
            Rgb c = ScreenPixel(window, x, y);
            if (c.r < 160 && c.g < 160 && c.b < 160) inked++;
        }
    EXPECT_GT(inked, 40) << "a missing family falls back to a font that draws";
    surface.Release();
    DestroyWindow(window);
    Pump();
}

TEST_F(DrawSurfaceWin, WindowWithoutHeightGivesASurfaceThatDrawsNothing) {
    HWND window = MakeWindow(240, 0);
    ASSERT_NE(window, nullptr);
    int32_t before = TheSurfaceCount;
    MDrawSurface surface;
    surface.CreateForWindow(window);
    EXPECT_FALSE(surface.Valid);
    EXPECT_EQ(surface.HwndTarget, nullptr);
    EXPECT_FALSE(surface.Begin());
    surface.DrawLine(MPoint2{0, 0}, MPoint2{10, 0}, 1, Red);
    surface.DrawText(MDrawRect{0, 0, 10, 10}, MString(u"x"), MString(), 10, Red, 0, 0, false);
    surface.End();
    EXPECT_EQ(surface.Brush, nullptr);
    surface.Release();
    EXPECT_EQ(TheSurfaceCount, before);
    DestroyWindow(window);
    Pump();
}

TEST_F(DrawSurfaceWin, FrameShowsTheSketchAndTheGridOnTheWindow) {
    HWND window = MakeWindow(400, 300);
    ASSERT_NE(window, nullptr);
    Pump();
    TheMainWindow = window;
    CreateSettings();
    CreateView();
    CreateSketch();
    TheView->Zoom = 1;
    TheView->Update();
    TheMode = ModeEditSketch;
    TheSettings->ShowHelpTexts = false;
    WSketchPoint records[2];
    records[0].Kind = KindMove;
    records[0].Position = MPoint3{-100, 50, 0};
    records[1].Kind = KindLine;
    records[1].Position = MPoint3{100, 50, 0};
    TheSketch->Points.SetCount(2);
    TheSketch->Points[0] = records[0];
    TheSketch->Points[1] = records[1];
    TheSketch->PointCount = 2;
    DrawFrame();
    WaitForWhite(window, 255, 205);
    // Client (200, 150) is the origin: the sketch line 50 up, the grid's
    // axis lines through the centre, a square mark of alpha 128 at (300, 100).
    EXPECT_TRUE(IsColour(ScreenPixel(window, 155, 100), 0, 0, 0)) << "the path";
    EXPECT_TRUE(IsColour(ScreenPixel(window, 155, 103), 255, 255, 255)) << "beside the path";
    EXPECT_TRUE(IsColour(ScreenPixel(window, 304, 94), 128, 128, 128, 12))
        << "the mark alone: black at alpha 128 on white";
    EXPECT_TRUE(IsColour(ScreenPixel(window, 255, 150), 229, 229, 229, 6)) << "grid axis";
    EXPECT_TRUE(IsColour(ScreenPixel(window, 255, 205), 255, 255, 255, 6)) << "between grid lines";
    DestroySurface();
    DestroySketch();
    DestroyView();
    DestroySettings();
    TheMode = ModeDraw;
    TheMainWindow = nullptr;
    DestroyWindow(window);
    Pump();
}
