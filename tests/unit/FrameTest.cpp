// One frame of the main window against the native surface, which records
// what it is asked to do. The same frame against Direct2D and a real window
// is tested in tests/win/WindowWinTest.cpp.

#if !defined(_WIN32)

#include "shell/Frame.h"
#include "drawing/MDrawSurface.h"
#include "foundation/MString.h"
#include "foundation/Platform.h"
#include "shell/Shell.h"
#include "shell/WSettings.h"
#include "shell/Window.h"
#include "view/WView.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::u16string U16(const MString& text) {
    return std::u16string(text.Chars());
}

int PretendWindow;

// The surface's own steps, without what the scene drew between Clear and End.
std::u16string Lifecycle(const MDrawSurface& surface) {
    MString text;
    for (int32_t i = 0; i < surface.OperationCount; i++) {
        const MDrawOperation& operation = surface.Operations[i];
        if (operation.Kind == DrawCreateForWindow || operation.Kind == DrawRelease ||
            operation.Kind == DrawBegin || operation.Kind == DrawEnd || operation.Kind == DrawClear)
            text = text + DescribeOperation(operation) + "\n";
    }
    return U16(text);
}

class Frame : public ::testing::Test {
  protected:
    void SetUp() override {
        DestroySurface();
        if (!TheView) CreateView();
        TheMainWindow = &PretendWindow;
        SetMainClientSize(640, 480);
    }
    void TearDown() override {
        DestroySurface();
        DestroySettings();
        DestroyView();
        TheMainWindow = nullptr;
        SetMainClientSize(0, 0);
    }
};

} // namespace

TEST_F(Frame, FirstFrameMakesASurfaceOfTheClientSizeAndClearsItWhite) {
    StartDebugCapture();
    DrawFrame();
    EXPECT_EQ(U16(StopDebugCapture()), u"MDrawSurface created\n");
    ASSERT_NE(TheSurface, nullptr);
    EXPECT_EQ(TheSurface->Width(), 640);
    EXPECT_EQ(TheSurface->Height(), 480);
    EXPECT_EQ(TheSurface->Scale, 1.0f);
    EXPECT_EQ(U16(RecordingText(*TheSurface)),
              u"CreateForWindow 640 480\nBegin\nClear 255 255 255 255\nEnd\n");
    EXPECT_EQ(TheView->ViewportWidth, 640.0f);
    EXPECT_EQ(TheView->ViewportHeight, 480.0f);
}

TEST_F(Frame, SurfaceIsKeptWhileTheSizeStays) {
    DrawFrame();
    MDrawSurface* first = TheSurface;
    StartDebugCapture();
    DrawFrame();
    DrawFrame();
    EXPECT_EQ(U16(StopDebugCapture()), u"");
    EXPECT_EQ(TheSurface, first);
    EXPECT_EQ(U16(RecordingText(*TheSurface)),
              u"CreateForWindow 640 480\nBegin\nClear 255 255 255 255\nEnd\n"
              u"Begin\nClear 255 255 255 255\nEnd\nBegin\nClear 255 255 255 255\nEnd\n");
}

TEST_F(Frame, SizeChangeRemakesTheSurfaceAndResizesTheView) {
    DrawFrame();
    SetMainClientSize(641, 480); // one pixel wider
    StartDebugCapture();
    DrawFrame();
    EXPECT_EQ(U16(StopDebugCapture()), u"MDrawSurface destroyed\nMDrawSurface created\n");
    ASSERT_NE(TheSurface, nullptr);
    EXPECT_EQ(TheSurface->Width(), 641);
    EXPECT_EQ(U16(RecordingText(*TheSurface)),
              u"CreateForWindow 641 480\nBegin\nClear 255 255 255 255\nEnd\n");
    EXPECT_EQ(TheView->ViewportWidth, 641.0f);
}

TEST_F(Frame, MinimisedWindowDrawsNothingAndTheSurfaceKeepsItsSize) {
    DrawFrame();
    MDrawSurface* first = TheSurface;
    MString before = RecordingText(*first);
    for (auto size : {std::pair<int, int>(0, 0), {0, 480}, {640, 0}}) {
        SetMainClientSize(size.first, size.second);
        StartDebugCapture();
        DrawFrame();
        EXPECT_EQ(U16(StopDebugCapture()), u"");
        EXPECT_EQ(TheSurface, first);
        EXPECT_EQ(TheSurface->Width(), 640);
        EXPECT_EQ(TheSurface->Height(), 480);
        EXPECT_EQ(U16(RecordingText(*TheSurface)), U16(before));
    }
    EXPECT_EQ(TheView->ViewportWidth, 640.0f);
    SetMainClientSize(640, 480); // restored
    DrawFrame();
    EXPECT_EQ(TheSurface, first);
}

TEST_F(Frame, SurfaceThatCannotBeMadeIsTriedAgainNextFrame) {
    TheMainWindow = nullptr; // nothing to draw on
    StartDebugCapture();
    DrawFrame();
    EXPECT_EQ(U16(StopDebugCapture()), u"");
    EXPECT_EQ(TheSurface, nullptr);
    TheMainWindow = &PretendWindow;
    DrawFrame();
    ASSERT_NE(TheSurface, nullptr);
    EXPECT_TRUE(TheSurface->Valid);
}

TEST_F(Frame, WithoutAViewTheFrameStillDraws) {
    DestroyView();
    DrawFrame();
    ASSERT_NE(TheSurface, nullptr);
    EXPECT_EQ(U16(RecordingText(*TheSurface)),
              u"CreateForWindow 640 480\nBegin\nClear 255 255 255 255\nEnd\n");
}

TEST_F(Frame, ClearsWithTheBackgroundColourOfTheSettings) {
    CreateSettings();
    TheSettings->ColourBackground = MColour{30, 20, 10, 255}; // blue, green, red, alpha
    DrawFrame();
    ASSERT_NE(TheSurface, nullptr);
    EXPECT_EQ(Lifecycle(*TheSurface), u"CreateForWindow 640 480\nBegin\nClear 30 20 10 255\nEnd\n");
}

TEST_F(Frame, NewSurfaceTakesTheDisplayScale) {
    CreateSettings();
    TheSettings->DisplaySize = 50;
    DrawFrame();
    ASSERT_NE(TheSurface, nullptr);
    EXPECT_EQ(TheSurface->Scale, 2.0f);
    // A kept surface keeps its scale; the next new one takes the setting.
    TheSettings->DisplaySize = 400;
    DrawFrame();
    EXPECT_EQ(TheSurface->Scale, 2.0f);
    SetMainClientSize(600, 480);
    DrawFrame();
    EXPECT_EQ(TheSurface->Scale, 0.25f);
    TheSettings->DisplaySize = 300;
    SetMainClientSize(640, 480);
    DrawFrame();
    EXPECT_EQ(TheSurface->Scale, 100.0f / 300.0f);
}

TEST_F(Frame, DisplaySizeZeroLeavesTheDefaultScale) {
    CreateSettings();
    TheSettings->DisplaySize = 0;
    DrawFrame();
    ASSERT_NE(TheSurface, nullptr);
    EXPECT_EQ(TheSurface->Scale, 1.0f);
    EXPECT_EQ(Lifecycle(*TheSurface),
              u"CreateForWindow 640 480\nBegin\nClear 255 255 255 255\nEnd\n");
}

TEST(ColourChannel, ByteTimesTheFactor) {
    EXPECT_EQ(ColourChannel(0), 0.0f);
    EXPECT_EQ(ColourChannel(255), 255 * 0.003921569f);
    EXPECT_NEAR(ColourChannel(255), 1.0f, 1e-6f);
    EXPECT_NEAR(ColourChannel(128), 0.50196f, 1e-5f);
}

#endif
