// The canvas of the Spaghetti dialog, read from the recording surface: what
// each state of the tool draws, the line width rule and the progress bar.

// The recording surface is the native build's; on Windows the canvas draws
// through Direct2D and is seen by the dialog's Windows-side tests.
#if !defined(_WIN32)

#include "SpaghettiTestSupport.h"

#include "drawing/MDrawSurface.h"

#include <vector>

using namespace spaghettitest;

namespace {

class SpaghettiCanvas : public SpaghettiFixture {
  protected:
    int FakeDc = 0;
    MDrawSurface Surface;

    void Draw(float progress) {
        Surface.Release();
        Surface = MDrawSurface();
        Surface.CreateForDc(&FakeDc, Tool.CanvasRect);
        ASSERT_TRUE(Surface.Begin());
        DrawSpaghettiCanvas(Surface, Tool, progress);
        Surface.End();
    }
    void TearDown() override {
        Surface.Release();
        SpaghettiFixture::TearDown();
    }
    std::vector<MDrawOperation> Of(int32_t kind) const {
        std::vector<MDrawOperation> found;
        for (int32_t i = 0; i < Surface.OperationCount; i++)
            if (Surface.Operations[i].Kind == kind) found.push_back(Surface.Operations[i]);
        return found;
    }
    static bool Same(MColour a, MColour b) {
        return a.b == b.b && a.g == b.g && a.r == b.r && a.a == b.a;
    }
    // Two curves of one string on a 100 by 50 mask.
    void WithCurves() {
        MakeRectanglePicture(Tool, 100, 50, 0, 0, 100, 50);
        Tool.PathBitmap = Text("C:\\pictures\\logo.png");
        Tool.FitPicture();
        ASSERT_TRUE(Tool.Curves.SetCount(2));
        const float ends[2][4] = {{10, -1, 20, 51}, {20, 51, 40, -2}};
        for (int32_t i = 0; i < 2; i++) {
            WStringCurve& c = Tool.Curves[i];
            c.First = i == 0;
            ASSERT_TRUE(c.Points.SetCount(4));
            c.Points[0] = c.Points[1] = MPoint3{ends[i][0], ends[i][1], 6};
            c.Points[2] = c.Points[3] = MPoint3{ends[i][2], ends[i][3], 6};
        }
        Tool.CurveCount = 2;
    }
};

} // namespace

TEST_F(SpaghettiCanvas, WithoutAPictureOnlyTheInvitationShows) {
    Draw(1);
    std::vector<MDrawOperation> clears = Of(DrawClear), texts = Of(DrawTextKind);
    ASSERT_EQ(clears.size(), 1u);
    EXPECT_TRUE(Same(clears[0].Colour, Settings.ColourBackground));
    ASSERT_EQ(texts.size(), 1u);
    EXPECT_EQ(Bytes(texts[0].Text), "Click here to load a picture");
    EXPECT_EQ(texts[0].X1, 0);
    EXPECT_EQ(texts[0].Y1, 0);
    EXPECT_EQ(texts[0].X2, 600);
    EXPECT_EQ(texts[0].Y2, 500);
    EXPECT_TRUE(Same(texts[0].Colour, Settings.ColourInfo));
    EXPECT_EQ(Of(DrawLineKind).size(), 0u);
    EXPECT_EQ(Of(DrawBitmapKind).size(), 0u);
    std::vector<MDrawOperation> formats = Of(DrawNewFormat);
    ASSERT_EQ(formats.size(), 1u);
    EXPECT_EQ(formats[0].Horizontal, AlignCentre);
    EXPECT_EQ(formats[0].Vertical, AlignCentre);
}

TEST_F(SpaghettiCanvas, APictureFitsTheCanvasCentredAndNeverEnlarged) {
    MakeRectanglePicture(Tool, 100, 50, 0, 0, 100, 50);
    Tool.FitPicture();
    EXPECT_EQ(Tool.Zoom, 1.0f);
    EXPECT_EQ(Tool.PictureRect.left, 250);
    EXPECT_EQ(Tool.PictureRect.right, 350);
    EXPECT_EQ(Tool.PictureRect.top, 225);
    EXPECT_EQ(Tool.PictureRect.bottom, 275);
    MakeRectanglePicture(Tool, 2000, 1000, 0, 0, 2000, 1000);
    Tool.FitPicture();
    EXPECT_EQ(Tool.Zoom, 600.0f / 2000.0f * 0.9f);
    EXPECT_EQ(Tool.PictureRect.left, int32_t(300.0f - 2000.0f * Tool.Zoom * 0.5f));
    EXPECT_EQ(Tool.PictureRect.right, int32_t(300.0f + 2000.0f * Tool.Zoom * 0.5f));
    // A canvas without area leaves both alone.
    Tool.CanvasRect = WRect{0, 0, 0, 500};
    Tool.Zoom = 0.25f;
    Tool.FitPicture();
    EXPECT_EQ(Tool.Zoom, 0.25f);
}

TEST_F(SpaghettiCanvas, APictureShowsItsNameMaskAndStrings) {
    WithCurves();
    Draw(1);
    std::vector<MDrawOperation> texts = Of(DrawTextKind);
    ASSERT_EQ(texts.size(), 1u);
    EXPECT_EQ(Bytes(texts[0].Text), "logo.png\n2 curves");
    EXPECT_EQ(texts[0].X1, 16);
    EXPECT_EQ(texts[0].Y1, 16);
    EXPECT_EQ(texts[0].X2, 600);
    EXPECT_EQ(texts[0].Y2, 500);
    std::vector<MDrawOperation> formats = Of(DrawNewFormat);
    ASSERT_EQ(formats.size(), 1u);
    EXPECT_EQ(formats[0].Horizontal, AlignNear);
    EXPECT_EQ(formats[0].Vertical, AlignNear);
    std::vector<MDrawOperation> bitmaps = Of(DrawBitmapKind);
    ASSERT_EQ(bitmaps.size(), 1u);
    EXPECT_EQ(bitmaps[0].X1, 250);
    EXPECT_EQ(bitmaps[0].Y1, 225);
    EXPECT_EQ(bitmaps[0].SourceWidth, 100);
    std::vector<MDrawOperation> lines = Of(DrawLineKind);
    ASSERT_EQ(lines.size(), 2u);
    // x * Zoom + left, truncated; width Radius / (UnitsPerPixel / Zoom) = 0.2,
    // raised to 1.
    EXPECT_EQ(lines[0].X1, 260);
    EXPECT_EQ(lines[0].Y1, 224);
    EXPECT_EQ(lines[0].X2, 270);
    EXPECT_EQ(lines[0].Y2, 276);
    EXPECT_EQ(lines[0].Width, 1);
    EXPECT_TRUE(Same(lines[0].Colour, Settings.ColourSketch));
    EXPECT_EQ(lines[1].X2, 290);
    EXPECT_EQ(lines[1].Y2, 223);
}

TEST_F(SpaghettiCanvas, TheLineWidthFollowsTheRadiusBetweenOneAndTen) {
    WithCurves();
    Tool.Radius = 30; // 30 / 5 = 6 pixels
    Draw(1);
    EXPECT_EQ(Of(DrawLineKind)[0].Width, 6);
    Tool.Radius = 100;
    Draw(1);
    EXPECT_EQ(Of(DrawLineKind)[0].Width, 10);
    Tool.Radius = 0.5f;
    Draw(1);
    EXPECT_EQ(Of(DrawLineKind)[0].Width, 1);
}

TEST_F(SpaghettiCanvas, TheProgressBarShowsOnlyBetweenZeroAndOne) {
    WithCurves();
    Draw(0.25f);
    std::vector<MDrawOperation> lines = Of(DrawLineKind);
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[2].X1, 16);
    EXPECT_EQ(lines[2].Y1, 484);
    EXPECT_EQ(lines[2].X2, 16 + 0.25f * (584 - 16));
    EXPECT_EQ(lines[2].Y2, 484);
    EXPECT_EQ(lines[2].Width, 3);
    EXPECT_TRUE(Same(lines[2].Colour, Settings.ColourBezier));
    Draw(0);
    EXPECT_EQ(Of(DrawLineKind).size(), 2u);
    Draw(1);
    EXPECT_EQ(Of(DrawLineKind).size(), 2u);
}

TEST_F(SpaghettiCanvas, WithoutCurvesTheCaptionIsTheFileNameAlone) {
    MakeRectanglePicture(Tool, 100, 50, 0, 0, 100, 50);
    Tool.PathBitmap = Text("/home/user/shape:one.tga");
    Tool.FitPicture();
    Draw(1);
    ASSERT_EQ(Of(DrawTextKind).size(), 1u);
    EXPECT_EQ(Bytes(Of(DrawTextKind)[0].Text), "one.tga");
}

TEST_F(SpaghettiCanvas, DrawingWithoutADialogMakesNoSurface) {
    int32_t before = TheSurfaceCount;
    DrawCanvas(Tool, nullptr, 1);
    EXPECT_EQ(TheSurfaceCount, before);
    // With a context the surface lives for the one drawing only.
    WithCurves();
    DrawCanvas(Tool, &FakeDc, 0.5f);
    EXPECT_EQ(TheSurfaceCount, before);
}

TEST_F(SpaghettiCanvas, TracedOutlinesAreDrawnClosedInTheInfoColour) {
    std::string path = Path("opaque.tga");
    WriteTga(path, 40, 30, [](int32_t, int32_t) { return 255; });
    ASSERT_TRUE(Tool.PreparePicture(Text(path)));
    EXPECT_EQ(Tool.Zoom, 1.0f);
    EXPECT_EQ(Tool.PictureRect.left, 280);
    EXPECT_EQ(Tool.PictureRect.top, 235);
    Draw(1);
    std::vector<MDrawOperation> lines = Of(DrawLineKind);
    // The picture's rectangle: (0, 0), (0, 30), (40, 30), (40, 0) and the
    // closing line back to the start.
    ASSERT_EQ(lines.size(), 4u);
    const float expected[4][4] = {
        {280, 235, 280, 265}, {280, 265, 320, 265}, {320, 265, 320, 235}, {320, 235, 280, 235}};
    for (int32_t i = 0; i < 4; i++) {
        EXPECT_EQ(lines[i].X1, expected[i][0]) << i;
        EXPECT_EQ(lines[i].Y1, expected[i][1]) << i;
        EXPECT_EQ(lines[i].X2, expected[i][2]) << i;
        EXPECT_EQ(lines[i].Y2, expected[i][3]) << i;
        EXPECT_EQ(lines[i].Width, 2) << i;
        EXPECT_TRUE(Same(lines[i].Colour, Settings.ColourInfo)) << i;
    }
    std::vector<MDrawOperation> texts = Of(DrawTextKind);
    ASSERT_EQ(texts.size(), 1u);
    EXPECT_EQ(Bytes(texts[0].Text), "opaque.tga");
}

#endif
