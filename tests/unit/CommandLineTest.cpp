// The file named on the command line at start: a sketch is opened after one
// frame has sized the view, anything else is ignored without a word.

#include "ShellTestSupport.h"

#include "elements/WElement.h"
#include "shell/Frame.h"
#include "shell/SketchFile.h"
#include "shell/Startup.h"

namespace {

class CommandLineTest : public ShellFixture {
  protected:
    int Window = 0; // stands for the main window: the frame needs one

    void SetUp() override {
        ShellFixture::SetUp();
        // A fresh start: the view has no viewport until the first frame.
        TheView->Reset();
        TheView->SetViewport(0, 0);
#if !defined(_WIN32)
        // The native frame draws for any window; the Windows build needs a
        // real one, which the user journeys give it.
        TheMainWindow = &Window;
#endif
        SetMainClientSize(640, 480);
        EnterStartMode();
    }
    void TearDown() override {
        DestroySurface();
        TheMainWindow = nullptr;
        SetMainClientSize(0, 0);
        ShellFixture::TearDown();
    }
};

} // namespace

#if !defined(_WIN32)
// The native surface stands in for the window's; under Wine the same start
// runs against a real window in the user journeys.
TEST_F(CommandLineTest, SketchIsOpenedIntoAViewSizedByAFirstFrame) {
    MString path = WriteFile("sketch.eps", ThreePointEps());
    OpenStartFile(path);
    ASSERT_NE(TheSurface, nullptr);
    EXPECT_EQ(TheView->ViewportWidth, 640.0f);
    EXPECT_EQ(TheView->ViewportHeight, 480.0f);
    EXPECT_EQ(S().PointCount, 3);
    // Fitted to the real viewport: 100 by 50 on 640 by 480, so
    // 1.5 * 100 / 640 world units per pixel, centred on (50, 25).
    EXPECT_NEAR(TheView->Zoom, 0.234375f, 1e-7f);
    ExpectPoint(TheView->Pivot, 50, 25, 0);
    EXPECT_EQ(Text(TheFileName), Text(path));
    EXPECT_EQ(Title(), u"Quillmere - sketch.eps (3 points) [EDIT SKETCH]");
    EXPECT_EQ(Messages.Count, 0);
}

TEST_F(CommandLineTest, TrackFileInCapitalsIsOpenedWithoutAName) {
    MessageScript quiet;
    TheMessageScript = &quiet;
    CreateElement();
    TheMessageScript = &Messages;
    MString path = WriteFile(
        "RIDE.QO", "Quillmere\r\nMove 0 0 0 90\r\nElement \"Straight line\" 50 0 0 0\r\n");
    OpenStartFile(path);
    EXPECT_EQ(Messages.Count, 0);
    EXPECT_GE(S().PointCount, 2);
    EXPECT_TRUE(TheFileName.IsEmpty());
    EXPECT_EQ(TheMode, ModeEditSketch);
    DestroyElement();
}
#endif

// Without the first frame the view would have no viewport, and the fit
// would leave the zoom of a fresh view.
TEST_F(CommandLineTest, OpeningWithoutAFrameCannotFit) {
    OpenSketch(WriteFile("sketch.eps", ThreePointEps()));
    EXPECT_EQ(S().PointCount, 3);
    EXPECT_EQ(TheView->Zoom, 0.2f);
}

TEST_F(CommandLineTest, TextFileOpensNothingAndSaysNothing) {
    MString path = WriteFile("notes.txt", "Quillmere\r\nMove 0 0 0 0\r\n");
    OpenStartFile(path);
    EXPECT_EQ(Messages.Count, 0);
    EXPECT_EQ(TheSurface, nullptr);
    EXPECT_EQ(S().PointCount, 0);
    EXPECT_EQ(TheMode, ModeDraw);
    EXPECT_EQ(Title(), u"Quillmere - Untitled (0 points) [DRAW FREEHAND]");
    OpenStartFile(MString());
    EXPECT_EQ(Prompts.Count, 0) << "an empty argument asks for no file";
}
