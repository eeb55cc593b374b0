// Options: the fields from the settings, the limits at OK, the display size
// forms, the swatches and their colour dialog, Browse and "Reset all".

#include "ShellTestSupport.h"

#include "dialogs/ColourPrompt.h"
#include "dialogs/OptionsDialog.h"
#include "drawing/MDrawSurface.h"
#include "eps/TraceFlow.h"

namespace {

enum { IdOptions = 32842 };

MColour Rgb(uint8_t r, uint8_t g, uint8_t b, uint8_t a = 255) {
    MColour colour;
    colour.r = r;
    colour.g = g;
    colour.b = b;
    colour.a = a;
    return colour;
}

bool Same(MColour a, MColour b) {
    return a.r == b.r && a.g == b.g && a.b == b.b && a.a == b.a;
}

// The labels of the swatches as the template places them at 96 dots per
// inch: 40 by 15 pixels, one under the other.
void PlaceLabels(void* dialog) {
    for (int32_t i = 0; i < SwatchCount; i++)
        MoveControl(dialog, Swatches[i].LabelId, WRect{270, 32 + 20 * i, 360, 47 + 20 * i});
}

class OptionsDialogTest : public ShellFixture {
  protected:
    ColourScript Colours;
    MColour ColourAnswers[4];
    void SetUp() override {
        ShellFixture::SetUp();
        settings.SetDefaults();
        TheColourScript = &Colours;
        Colours.Answers = ColourAnswers;
        Dialogs.AfterInit = PlaceLabels;
    }
    void TearDown() override {
        TheColourScript = nullptr;
        ShellFixture::TearDown();
    }
    const WMemoryControl& Opened(int32_t id) {
        static WMemoryControl none;
        const WMemoryControl* control = Dialogs.Opened.Find(id);
        return control ? *control : none;
    }
    const WMemoryControl& Closed(int32_t id) {
        static WMemoryControl none;
        const WMemoryControl* control = Dialogs.Closed.Find(id);
        return control ? *control : none;
    }
    int32_t Run(int32_t ending, const WDialogStep* steps = nullptr, int32_t count = 0) {
        AnswerDialog(ending, steps, count);
        return RunOptions();
    }
    // OK after typing the text into the display size field.
    int32_t DisplaySizeOf(const char16_t* typed) {
        const WDialogStep steps[] = {{StepSetText, 1039, typed}};
        EXPECT_EQ(Run(1, steps, 1), 1);
        return settings.DisplaySize;
    }
};

} // namespace

TEST_F(OptionsDialogTest, OpensWithItsTitleAndTheSettings) {
    settings.PenSize = 3;
    settings.GridSize = 0;
    settings.DisplaySize = 150;
    settings.ShowHelpTexts = false;
    settings.ExternalTracer = MString(u"C:\\bin\\potrace.exe");
    EXPECT_EQ(Run(2), 2);
    EXPECT_EQ(Dialogs.LastResource, 136);
    EXPECT_EQ(Text(Dialogs.LastTitle), u"Quillmere - Options");
    EXPECT_EQ(Text(Opened(1033).Text), u"3");
    EXPECT_EQ(Text(Opened(1034).Text), u"8");
    EXPECT_EQ(Text(Opened(1038).Text), u""); // 0 without fillEmpty
    EXPECT_EQ(Text(Opened(1039).Text), u"150%");
    EXPECT_FALSE(Opened(1048).Checked);
    EXPECT_EQ(Text(Opened(1026).Text), u"C:\\bin\\potrace.exe");
    EXPECT_EQ(TheOptionsDialog, nullptr);
}

TEST_F(OptionsDialogTest, OkStoresTheFieldsWithPenAndPointSizeClamped) {
    const WDialogStep steps[] = {
        {StepSetText, 1033, u"0"},         {StepSetText, 1034, u"21"},
        {StepSetText, 1038, u"25"},        {StepCheck, 1048, nullptr, 0},
        {StepSetText, 1026, u"D:\\other"},
    };
    EXPECT_EQ(Run(1, steps, 5), 1);
    EXPECT_EQ(settings.PenSize, 1);
    EXPECT_EQ(settings.PointSize, 20);
    EXPECT_EQ(settings.GridSize, 25);
    EXPECT_EQ(settings.DisplaySize, 100);
    EXPECT_FALSE(settings.ShowHelpTexts);
    EXPECT_EQ(Text(settings.ExternalTracer), u"D:\\other"); // typed, without a test
    const WDialogStep more[] = {{StepSetText, 1033, u"11"}, {StepSetText, 1034, u"0"}};
    EXPECT_EQ(Run(1, more, 2), 1);
    EXPECT_EQ(settings.PenSize, 10);
    EXPECT_EQ(settings.PointSize, 1);
}

TEST_F(OptionsDialogTest, BadNumbersGiveTheLimits) {
    struct Row {
        const char16_t* Typed;
        int32_t Pen, Point, Grid;
    };
    const Row rows[] = {
        {u"", 1, 1, 0},
        {u"abc", 1, 1, 0},
        {u"-4", 1, 1, -4},
        {u"99999999999999", 10, 20, INT32_MAX},
        {u"000000000000005", 5, 5, 5},  // 15 characters
        {u"0000000000000057", 5, 5, 5}, // 16: the last is cut
    };
    for (const Row& row : rows) {
        const WDialogStep steps[] = {{StepSetText, 1033, row.Typed},
                                     {StepSetText, 1034, row.Typed},
                                     {StepSetText, 1038, row.Typed}};
        EXPECT_EQ(Run(1, steps, 3), 1);
        EXPECT_EQ(settings.PenSize, row.Pen);
        EXPECT_EQ(settings.PointSize, row.Point);
        EXPECT_EQ(settings.GridSize, row.Grid);
    }
}

TEST_F(OptionsDialogTest, DisplaySizeForms) {
    EXPECT_EQ(DisplaySizeOf(u"150%"), 150);
    EXPECT_EQ(DisplaySizeOf(u"x64"), 100);
    EXPECT_EQ(DisplaySizeOf(u"x64%"), 100);
    EXPECT_EQ(DisplaySizeOf(u""), 0);
    EXPECT_EQ(DisplaySizeOf(u"%"), 0);
    EXPECT_EQ(DisplaySizeOf(u"1%5%0"), 150);
    EXPECT_EQ(DisplaySizeOf(u"x"), 0);
    EXPECT_EQ(DisplaySizeOf(u"xzz"), 0);
    EXPECT_EQ(DisplaySizeOf(u"x1g"), 16);
    EXPECT_EQ(DisplaySizeOf(u"xFf"), 255);
    EXPECT_EQ(DisplaySizeOf(u"xFFFFFFFF"), -1);
    EXPECT_EQ(DisplaySizeOf(u"x100000001"), 1); // 32 bits unsigned wrap
    EXPECT_EQ(DisplaySizeOf(u"X64"), 0);        // only a small x is the hex mark
    EXPECT_EQ(DisplaySizeOf(u"abc"), 0);
    EXPECT_EQ(DisplaySizeOf(u"-50"), -50);
}

TEST(OptionsDisplaySize, TextAndParsing) {
    EXPECT_EQ(std::u16string(DisplaySizeText(100).Chars()), u"100%");
    EXPECT_EQ(std::u16string(DisplaySizeText(-7).Chars()), u"-7%");
    EXPECT_EQ(ParseDisplaySize(MString(u"x7fffffff")), INT32_MAX);
    EXPECT_EQ(ParseDisplaySize(MString(u"%%%%")), 0);
}

TEST_F(OptionsDialogTest, AClickOnASwatchChoosesItsColourForOkOnly) {
    settings.ColourGrid = Rgb(1, 2, 3);
    ColourAnswers[0] = Rgb(10, 20, 30, 7);
    Colours.AnswerCount = 1;
    // The Grid swatch lies right of its label: x from 360 to 375, y 52 to 67.
    const WDialogStep steps[] = {{StepPress, 0, nullptr, 0, 360, 52}};
    EXPECT_EQ(Run(2, steps, 1), 2);
    EXPECT_EQ(Colours.Count, 1);
    EXPECT_TRUE(Same(Colours.Shown, Rgb(1, 2, 3)));
    EXPECT_TRUE(Same(settings.ColourGrid, Rgb(1, 2, 3))); // Cancel keeps the settings
    EXPECT_EQ(Dialogs.Closed.Redraws, 2);                 // at opening, and after the choice

    Colours.Count = 0;
    EXPECT_EQ(Run(1, steps, 1), 1);
    EXPECT_TRUE(Same(settings.ColourGrid, Rgb(10, 20, 30, 255)));
    EXPECT_TRUE(Same(settings.ColourBackground, Rgb(255, 255, 255)));
}

TEST_F(OptionsDialogTest, ClicksBesideTheSwatchesOpenNothing) {
    // Right and bottom edges lie outside; the label itself is no swatch.
    const WDialogStep steps[] = {{StepPress, 0, nullptr, 0, 375, 52},
                                 {StepPress, 0, nullptr, 0, 360, 47},
                                 {StepPress, 0, nullptr, 0, 359, 52},
                                 {StepPress, 0, nullptr, 0, 10, 10}};
    EXPECT_EQ(Run(2, steps, 4), 2);
    EXPECT_EQ(Colours.Count, 0);
    // The corners that lie inside do.
    const WDialogStep inside[] = {{StepPress, 0, nullptr, 0, 374, 166},
                                  {StepPress, 0, nullptr, 0, 360, 32}};
    EXPECT_EQ(Run(2, inside, 2), 2);
    EXPECT_EQ(Colours.Count, 2);
}

TEST_F(OptionsDialogTest, ACancelledColourDialogKeepsTheColour) {
    settings.ColourGhost = Rgb(0, 255, 0);
    const WDialogStep steps[] = {{StepPress, 0, nullptr, 0, 365, 155}};
    EXPECT_EQ(Run(1, steps, 1), 1);
    EXPECT_EQ(Colours.Count, 1);
    EXPECT_TRUE(Same(settings.ColourGhost, Rgb(0, 255, 0)));
}

TEST_F(OptionsDialogTest, ResetAllRestoresTheDefaultsAtOnceAndCancelKeepsThem) {
    settings.PenSize = 7;
    settings.DisplaySize = 250;
    settings.ShowHelpTexts = false;
    settings.UseGrid = true;
    settings.ExternalTracer = MString(u"C:\\potrace.exe");
    settings.ColourSketch = Rgb(9, 9, 9);
    settings.FolderSaveSketch = MString(u"C:\\Somewhere");
    settings.WindowRect = WRect{1, 2, 300, 400};
    const WDialogStep steps[] = {{StepSetText, 1033, u"9"}, {StepClick, 1032}};
    EXPECT_EQ(Run(2, steps, 2), 2);
    WSettings defaults;
    defaults.SetDefaults();
    EXPECT_EQ(settings.PenSize, 2);
    EXPECT_EQ(settings.DisplaySize, 100);
    EXPECT_TRUE(settings.ShowHelpTexts);
    EXPECT_FALSE(settings.UseGrid);
    EXPECT_TRUE(settings.ExternalTracer.IsEmpty());
    EXPECT_TRUE(Same(settings.ColourSketch, Rgb(0, 0, 0)));
    EXPECT_EQ(Text(settings.FolderSaveSketch), Text(defaults.FolderSaveSketch));
    EXPECT_EQ(settings.WindowRect.right, 300); // the rectangles stay
    // The dialog shows the defaults.
    EXPECT_EQ(Text(Closed(1033).Text), u"2");
    EXPECT_EQ(Text(Closed(1039).Text), u"100%");
    EXPECT_TRUE(Closed(1048).Checked);
    EXPECT_EQ(Text(Closed(1026).Text), u"");
}

TEST_F(OptionsDialogTest, TheDefaultsOfResetAll) {
    const WDialogStep steps[] = {{StepClick, 1032}};
    EXPECT_EQ(Run(1, steps, 1), 1);
    EXPECT_TRUE(Same(settings.ColourBackground, Rgb(255, 255, 255)));
    EXPECT_TRUE(Same(settings.ColourGrid, Rgb(229, 229, 229)));
    EXPECT_TRUE(Same(settings.ColourInfo, Rgb(128, 128, 128)));
    EXPECT_TRUE(Same(settings.ColourSketch, Rgb(0, 0, 0)));
    EXPECT_TRUE(Same(settings.ColourBezier, Rgb(107, 157, 227)));
    EXPECT_TRUE(Same(settings.ColourRoll, Rgb(75, 222, 189)));
    EXPECT_TRUE(Same(settings.ColourGhost, Rgb(0, 255, 0)));
    EXPECT_EQ(settings.PenSize, 2);
    EXPECT_EQ(settings.PointSize, 8);
    EXPECT_EQ(settings.GridSize, 10);
    EXPECT_EQ(settings.DisplaySize, 100);
}

TEST_F(OptionsDialogTest, BrowseTakesAKnownTracerInAnyCase) {
    Prompt(MString(u"C:\\Tools\\Potrace.EXE"));
    const WDialogStep steps[] = {{StepClick, 1027}};
    EXPECT_EQ(Run(1, steps, 1), 1);
    EXPECT_EQ(Prompts.Count, 1);
    EXPECT_EQ(Prompts.Last.Mode, PromptSelectExecutable);
    EXPECT_EQ(Messages.Count, 0);
    EXPECT_EQ(Text(settings.ExternalTracer), u"C:\\Tools\\Potrace.EXE");
}

TEST_F(OptionsDialogTest, BrowseRefusesAnotherProgramWithItsName) {
    settings.ExternalTracer = MString(u"C:\\potrace.exe");
    Prompt(MString(u"C:\\Tools\\potrace-copy.exe"));
    const WDialogStep steps[] = {{StepClick, 1027}, {StepClick, 1027}};
    EXPECT_EQ(Run(1, steps, 2), 1); // the second Browse is cancelled
    ASSERT_EQ(Messages.Count, 1);
    EXPECT_EQ(Text(MessageTexts[0]),
              u"potrace-copy.exe is not a known external tracer.\n\nFor more info "
              u"visit:\nhttps://www.brambleworks.example/quillmeremanual#externaltracer");
    EXPECT_EQ(MessageIcons[0], IconError);
    EXPECT_EQ(Text(settings.ExternalTracer), u"C:\\potrace.exe");
}

TEST(OptionsTracer, IsKnownTracerLowerCasesTheFileName) {
    EXPECT_TRUE(IsKnownTracer(MString(u"potrace.exe")));
    EXPECT_TRUE(IsKnownTracer(MString(u"D:/x/POTRACE.exe")));
    EXPECT_FALSE(IsKnownTracer(MString(u"C:\\potrace.exe\\other.exe")));
    EXPECT_FALSE(IsKnownTracer(MString(u"mypotrace.exe")));
    EXPECT_FALSE(IsKnownTracer(MString()));
}

TEST_F(OptionsDialogTest, TheOptionsCommandAppliesTheDisplaySize) {
    const WDialogStep steps[] = {{StepSetText, 1039, u"200%"}};
    AnswerDialog(1, steps, 1);
    ASSERT_TRUE(RunCommand(IdOptions));
    EXPECT_EQ(Dialogs.Count, 1);
    EXPECT_EQ(settings.DisplaySize, 200);
}

TEST_F(OptionsDialogTest, SwatchesAreDrawnBesideTheirLabelsOnTheButtonFace) {
#if defined(_WIN32)
    GTEST_SKIP() << "reads the native recording surface";
#endif
    static MDrawSurface* target = nullptr;
    MDrawSurface surface;
    target = &surface;
    settings.ColourRoll = Rgb(75, 222, 189);
    Dialogs.AfterInit = [](void* dialog) {
        PlaceLabels(dialog);
        static int pretendDc = 0;
        PaintSwatches(dialog, &pretendDc, *target);
    };
    EXPECT_EQ(Run(2), 2);
    std::u16string text = Text(RecordingText(surface));
    // One surface over the union of the swatches, cleared to the face colour.
    EXPECT_NE(text.find(u"CreateForDc 360 32 375 167"), std::u16string::npos);
    EXPECT_NE(text.find(u"Clear 240 240 240 255"), std::u16string::npos);
    int32_t rectangles = 0;
    for (int32_t i = 0; i < surface.OperationCount; i++) {
        const MDrawOperation& op = surface.Operations[i];
        if (op.Kind != DrawRectangleKind) continue;
        EXPECT_EQ(op.X1, 0);
        EXPECT_EQ(op.Y1, 20 * rectangles);
        EXPECT_EQ(op.X2, 15);
        EXPECT_EQ(op.Y2, 20 * rectangles + 15);
        if (rectangles == 5) {
            EXPECT_TRUE(Same(op.Colour, Rgb(75, 222, 189)));
        }
        rectangles++;
    }
    EXPECT_EQ(rectangles, 7);
    EXPECT_EQ(surface.Operations[surface.OperationCount - 1].Kind, DrawRelease);
}

TEST(ColourPrompt, CustomColoursStartWhiteAndChoicesTakeFullAlpha) {
    for (uint32_t custom : TheCustomColours)
        EXPECT_EQ(custom, 0xffffffu);
    ColourScript script;
    MColour answer = Rgb(5, 6, 7, 0);
    script.Answers = &answer;
    script.AnswerCount = 1;
    TheColourScript = &script;
    MColour colour = Rgb(1, 1, 1, 9);
    EXPECT_TRUE(ChooseColour(nullptr, colour));
    EXPECT_TRUE(Same(colour, Rgb(5, 6, 7, 255)));
    EXPECT_FALSE(ChooseColour(nullptr, colour));
    EXPECT_TRUE(Same(colour, Rgb(5, 6, 7, 255)));
    TheColourScript = nullptr;
}
