// The menu commands by their ids: the table itself, and what each command
// does to the sketch, the settings, the view, the mode, the title and the
// menu.

#include "ShellTestSupport.h"

#include "drawing/MDrawSurface.h"
#include "drawing/MPicture.h"
#include "eps/TraceFlow.h"
#include "shell/Frame.h"
#include "shell/SketchFile.h"

#include <cmath>
#include <utility>

namespace {

// The menu of the main window: every id with its text.
const std::pair<int32_t, const char16_t*> MenuItems[] = {
    {32798, u"New"},
    {32779, u"Open..."},
    {32780, u"Save"},
    {32799, u"Save as..."},
    {32841, u"Trace bitmap..."},
    {32850, u"Load background picture..."},
    {105, u"Exit"},
    {32828, u"Draw freehand"},
    {32829, u"Edit sketch"},
    {32830, u"Edit roll"},
    {32846, u"Grid"},
    {32851, u"Flip horizontal"},
    {32852, u"Flip Vertical"},
    {32803, u"Centre"},
    {32806, u"Normalize size"},
    {32785, u"Undo"},
    {32786, u"Redo"},
    {32773, u"Front"},
    {32774, u"Back"},
    {32775, u"Right"},
    {32776, u"Left"},
    {32777, u"Top"},
    {32778, u"Bottom"},
    {32820, u"Zoom in"},
    {32821, u"Zoom out"},
    {32809, u"Point"},
    {32791, u"Element"},
    {32847, u"Mode"},
    {32854, u"Spaghetti..."},
    {32842, u"Options..."},
    {32834, u"User guide"},
    {32835, u"Community"},
    {104, u"About Quillmere"},
};

enum {
    IdNew = 32798,
    IdOpen = 32779,
    IdSave = 32780,
    IdSaveAs = 32799,
    IdTrace = 32841,
    IdBackground = 32850,
    IdExit = 105,
    IdDraw = 32828,
    IdEditSketch = 32829,
    IdEditRoll = 32830,
    IdGrid = 32846,
    IdFlipH = 32851,
    IdFlipV = 32852,
    IdCentre = 32803,
    IdNormalize = 32806,
    IdUndo = 32785,
    IdRedo = 32786,
    IdFront = 32773,
    IdZoomIn = 32820,
    IdZoomOut = 32821,
    IdPoint = 32809,
    IdElement = 32791,
    IdMode = 32847,
    IdSpaghetti = 32854,
    IdOptions = 32842,
    IdUserGuide = 32834,
    IdCommunity = 32835,
    IdAbout = 104,
};

// Tracers that stand in for the real ones: each fills the sketch with an
// open line from (0, 0) to (300, 100) and notes the picture it was given.
int TracerCalls = 0;
MString TracedPicture;
bool FakeTracer(const MString& picture) {
    TracerCalls++;
    TracedPicture = picture;
    Fill(*TheSketch, {Record(0, 0, 0, KindMove), Record(300, 100, 0, KindLine)});
    TheSketch->Commit();
    return true;
}

class CommandsTest : public ShellFixture {
  protected:
    void SetUp() override {
        ShellFixture::SetUp();
        TracerCalls = 0;
        TracedPicture = MString();
        TheInternalTracer = nullptr;
        TheExternalTracer = nullptr;
    }
    void TearDown() override {
        TheInternalTracer = TraceInternal;
        TheExternalTracer = TraceExternal;
        ShellFixture::TearDown();
    }
    void Run(int32_t id) { ASSERT_TRUE(RunCommand(id)) << id; }
    // A stroke in the drawing mode from (0, 0) to (100, 0).
    void DrawStroke() {
        WKeys none;
        OnLeftButtonDown(Screen(0, 0), none);
        for (int x = 25; x <= 100; x += 25)
            OnMouseMove(Screen(float(x), 0), none);
        OnLeftButtonUp(Screen(100, 0), none);
    }
    bool RotationIs(const MMatrix& want) {
        for (int r = 0; r < 4; r++)
            for (int c = 0; c < 4; c++)
                if (TheView->Rotation.M[r][c] != want.M[r][c]) return false;
        return true;
    }
};

// A picture of 2 by 2 pixels as an uncompressed 24-bit TGA, rows top-down.
std::string SmallTga() {
    std::string bytes(18, '\0');
    bytes[2] = 2;     // true colour
    bytes[12] = 2;    // width
    bytes[14] = 2;    // height
    bytes[16] = 24;   // bits per pixel
    bytes[17] = 0x20; // top-down
    for (int i = 0; i < 4; i++)
        bytes += std::string("\x10\x20\x30", 3);
    return bytes;
}

} // namespace

TEST_F(CommandsTest, TableHoldsEveryMenuItemOnceWithItsText) {
    EXPECT_EQ(CommandCount, int32_t(sizeof MenuItems / sizeof MenuItems[0]));
    for (const auto& item : MenuItems) {
        int found = 0;
        for (int32_t i = 0; i < CommandCount; i++) {
            if (Commands[i].Id != item.first) continue;
            found++;
            EXPECT_EQ(std::u16string(Commands[i].MenuText), item.second) << item.first;
            EXPECT_NE(Commands[i].Run, nullptr);
        }
        EXPECT_EQ(found, 1) << item.first;
    }
    EXPECT_FALSE(RunCommand(0));
    EXPECT_FALSE(RunCommand(40000));
}

// ---- New

TEST_F(CommandsTest, NewEmptiesTheSketchAndStartsAfreshInTheDrawingMode) {
    Load(ClosedSquare());
    Select(2, 0);
    TheFileName = PathOf("a.eps");
    settings.Centre = false;
    settings.Scale = false;
    settings.MaxLinesPerCurve = 7;
    TheView->Zoom = 5;
    TheView->Pivot = P3(10, 20, 30);
    TheView->Orbit(0.3f, 0.2f, 0.1f);
    TheMode = ModeEditRoll;
    Run(IdNew);
    EXPECT_EQ(Messages.Count, 0) << "an unchanged sketch is not asked about";
    EXPECT_EQ(S().PointCount, 0);
    EXPECT_EQ(S().Current, -1);
    EXPECT_EQ(S().Modified, 0);
    EXPECT_TRUE(settings.Centre);
    EXPECT_TRUE(settings.Scale);
    EXPECT_EQ(settings.MaxLinesPerCurve, 100);
    EXPECT_EQ(TheView->Zoom, 0.2f);
    ExpectPoint(TheView->Pivot, 0, 0, 0, 0);
    EXPECT_TRUE(RotationIs(MMatrix()));
    EXPECT_EQ(TheMode, ModeDraw);
    EXPECT_EQ(Title(), u"Quillmere - a.eps (0 points) [DRAW FREEHAND]");
    WMenuState menu = AppliedMenuState();
    EXPECT_TRUE(menu.DrawFreehand);
    EXPECT_FALSE(menu.EditRoll);
    EXPECT_TRUE(menu.UndoEnabled);
}

TEST_F(CommandsTest, NewAfterOpeningThenSaveOverwritesTheOldFileWithoutAsking) {
    MString path = WriteFile("a.eps", ThreePointEps());
    OpenSketch(path);
    ASSERT_EQ(S().PointCount, 3);
    Run(IdNew);
    EXPECT_EQ(Text(TheFileName), Text(path));
    DrawStroke();
    ASSERT_EQ(S().PointCount, 2);
    EXPECT_EQ(Title(), u"Quillmere - a.eps * (2 points) [DRAW FREEHAND]");
    Run(IdSave);
    EXPECT_EQ(Prompts.Count, 0);
    EXPECT_EQ(Messages.Count, 0);
    EXPECT_EQ(ReadFile(path), Bytes(MakeSketchEps(S(), settings)));
    EXPECT_EQ(ReadFile(path).find("100 50 lineto"), std::string::npos) << "the old sketch is gone";
    EXPECT_EQ(Title(), u"Quillmere - a.eps (2 points) [DRAW FREEHAND]");
}

TEST_F(CommandsTest, UndoAfterNewBringsTheOldPointsBack) {
    Load(ClosedSquare());
    Run(IdNew);
    ASSERT_EQ(S().PointCount, 0);
    Run(IdUndo);
    ASSERT_EQ(S().PointCount, 5);
    ExpectPoint(S().Points[2].Position, 100, 100, 0, 0);
    EXPECT_EQ(Title(), u"Quillmere - Untitled (5 points) [DRAW FREEHAND]");
    Run(IdRedo);
    EXPECT_EQ(S().PointCount, 0);
}

// ---- Save and Save as

TEST_F(CommandsTest, LoneClickIsCountedAndThenCleanedAwayBySave) {
    WKeys none;
    OnLeftButtonDown(Screen(10, 20), none);
    OnLeftButtonUp(Screen(10, 20), none);
    ASSERT_EQ(S().PointCount, 1);
    EXPECT_EQ(S().Points[0].Kind, KindMove);
    EXPECT_EQ(Title(), u"Quillmere - Untitled * (1 points) [DRAW FREEHAND]");
    Run(IdSave);
    EXPECT_EQ(S().PointCount, 0);
    ASSERT_EQ(Messages.Count, 1);
    EXPECT_EQ(Text(MessageTexts[0]), u"The sketch is empty");
    EXPECT_EQ(MessageIcons[0], IconError);
    EXPECT_EQ(MessageButtonList[0], ButtonsOk);
    EXPECT_EQ(Prompts.Count, 0);
    EXPECT_EQ(Title(), u"Quillmere - Untitled * (0 points) [DRAW FREEHAND]");
}

TEST_F(CommandsTest, SaveAsOfAnEmptySketchSaysSoAndAsksForNoName) {
    AnswerDialog(1);
    Run(IdSaveAs);
    EXPECT_EQ(LastMessage(), u"The sketch is empty");
    EXPECT_EQ(MessageIcons[0], IconError);
    EXPECT_EQ(Dialogs.Count, 0);
    EXPECT_EQ(Prompts.Count, 0);
}

TEST_F(CommandsTest, SaveWithoutANameAsksForOne) {
    Load(OpenCorner());
    MString path = PathOf("corner.eps");
    Prompt(path);
    Run(IdSave);
    EXPECT_EQ(Prompts.Count, 1);
    EXPECT_EQ(Prompts.Last.Mode, PromptSaveSketch);
    EXPECT_EQ(ReadFile(path), Bytes(MakeSketchEps(S(), settings)));
    EXPECT_EQ(Title(), u"Quillmere - corner.eps (3 points) [DRAW FREEHAND]");
}

// The save dialog comes first; after its OK the prompt proposes the name of
// the old file alone, in the remembered folder, not the old file's folder.
TEST_F(CommandsTest, SaveAsAlwaysAsksAndTheNameBecomesTheFileName) {
    Load(OpenCorner());
    TheFileName = PathOf("old.eps");
    settings.FolderSaveSketch = PathOf("saved");
    MString path = PathOf("new.eps");
    AnswerDialog(1);
    Prompt(path);
    Run(IdSaveAs);
    EXPECT_EQ(Dialogs.Count, 1);
    EXPECT_EQ(Dialogs.LastResource, 135);
    EXPECT_EQ(Prompts.Count, 1);
    EXPECT_EQ(Prompts.Last.Mode, PromptSaveSketch);
    EXPECT_EQ(Text(Prompts.Last.InitialFile), u"old.eps");
    EXPECT_EQ(Text(Prompts.Last.InitialFolder), Text(PathOf("saved")));
    EXPECT_FALSE(Exists(PathOf("old.eps")));
    EXPECT_EQ(ReadFile(path), Bytes(MakeSketchEps(S(), settings)));
    EXPECT_EQ(Text(TheFileName), Text(path));
    EXPECT_EQ(Title(), u"Quillmere - new.eps (3 points) [DRAW FREEHAND]");
}

TEST_F(CommandsTest, SaveAsCancelledKeepsTheOldName) {
    Load(OpenCorner());
    Change();
    TheFileName = PathOf("old.eps");
    AnswerDialog(1);
    Run(IdSaveAs);
    EXPECT_EQ(Prompts.Count, 1);
    EXPECT_EQ(Text(TheFileName), Text(PathOf("old.eps")));
    EXPECT_FALSE(Exists(PathOf("old.eps")));
    EXPECT_EQ(Title(), u"Quillmere - old.eps * (3 points) [DRAW FREEHAND]");
}

TEST_F(CommandsTest, SaveAsCancelledInTheDialogAsksForNoName) {
    Load(OpenCorner());
    TheFileName = PathOf("old.eps");
    AnswerDialog(2);
    AnswerDialog(0);
    Run(IdSaveAs);
    Run(IdSaveAs);
    EXPECT_EQ(Dialogs.Count, 2);
    EXPECT_EQ(Prompts.Count, 0);
    EXPECT_EQ(Text(TheFileName), Text(PathOf("old.eps")));
    EXPECT_FALSE(Exists(PathOf("old.eps")));
}

// Save asks nothing but the prompt: the dialog belongs to "Save as..." only.
TEST_F(CommandsTest, SaveOpensNoDialog) {
    Load(OpenCorner());
    Prompt(PathOf("corner.eps"));
    Run(IdSave);
    EXPECT_EQ(Dialogs.Count, 0);
    EXPECT_TRUE(Exists(PathOf("corner.eps")));
}

// The clean-up before a save removes a segment of no length at the end; the
// title counts the points that are left even when the prompt is cancelled.
TEST_F(CommandsTest, SaveAndSaveAsRefreshTheTitleWhenThePromptIsCancelled) {
    std::vector<WSketchPoint> records = OpenCorner();
    records.push_back(Record(100, 100, 0, KindLine));
    Load(records);
    ASSERT_EQ(Title(), u"Quillmere - Untitled (4 points) [DRAW FREEHAND]");
    Run(IdSave);
    EXPECT_EQ(Prompts.Count, 1);
    EXPECT_EQ(Title(), u"Quillmere - Untitled (3 points) [DRAW FREEHAND]");

    Load(records);
    ASSERT_EQ(Title(), u"Quillmere - Untitled (4 points) [DRAW FREEHAND]");
    AnswerDialog(1);
    Run(IdSaveAs);
    EXPECT_EQ(Prompts.Count, 2);
    EXPECT_EQ(Title(), u"Quillmere - Untitled (3 points) [DRAW FREEHAND]");

    Load(records);
    AnswerDialog(2);
    Run(IdSaveAs);
    EXPECT_EQ(Prompts.Count, 2);
    EXPECT_EQ(Title(), u"Quillmere - Untitled (3 points) [DRAW FREEHAND]");
}

// ---- Trace bitmap

TEST_F(CommandsTest, TraceCancelledAtTheQuestionAsksForNoPicture) {
    Load(OpenCorner());
    Change();
    TheInternalTracer = FakeTracer;
    Answer(AnswerCancel);
    Run(IdTrace);
    EXPECT_EQ(Prompts.Count, 0);
    EXPECT_EQ(TracerCalls, 0);
    EXPECT_EQ(S().PointCount, 3);
}

TEST_F(CommandsTest, TraceWithoutAPictureChangesNothing) {
    Load(OpenCorner());
    TheFileName = PathOf("corner.eps");
    TheInternalTracer = FakeTracer;
    Run(IdTrace);
    EXPECT_EQ(Prompts.Count, 1);
    EXPECT_EQ(Prompts.Last.Mode, PromptSelectPicture);
    EXPECT_EQ(TracerCalls, 0);
    EXPECT_FALSE(settings.SaveSolid);
    EXPECT_EQ(Text(TheFileName), Text(PathOf("corner.eps")));
    EXPECT_EQ(TheMode, ModeDraw);
}

TEST_F(CommandsTest, TraceRunsTheBuiltInTracerWhenNoneIsNamed) {
    TheFileName = PathOf("corner.eps");
    settings.SaveRoll = true;
    TheInternalTracer = FakeTracer;
    TheExternalTracer = FakeTracer;
    Prompt(MString(u"C:\\Pictures\\logo.png"));
    Run(IdTrace);
    EXPECT_EQ(TracerCalls, 1);
    EXPECT_EQ(Text(TracedPicture), u"C:\\Pictures\\logo.png");
    EXPECT_TRUE(settings.SaveSolid);
    EXPECT_FALSE(settings.SaveRoll);
    EXPECT_TRUE(TheFileName.IsEmpty());
    EXPECT_EQ(TheMode, ModeEditSketch);
    // The front view fitted to the traced line: centre (150, 50), 300 wide
    // on 800 pixels, so 1.5 * 300 / 800 world units per pixel.
    ExpectPoint(TheView->Pivot, 150, 50, 0);
    EXPECT_NEAR(TheView->Zoom, 0.5625f, 1e-6f);
    EXPECT_EQ(Title(), u"Quillmere - Untitled * (2 points) [EDIT SKETCH]");
}

TEST_F(CommandsTest, TraceAcceptsPotraceInCapitals) {
    settings.ExternalTracer = MString(u"C:\\Tools\\POTRACE.EXE");
    TheExternalTracer = FakeTracer;
    Prompt(MString(u"C:\\Pictures\\logo.png"));
    Run(IdTrace);
    EXPECT_EQ(TracerCalls, 1);
    EXPECT_EQ(Messages.Count, 0);
    EXPECT_TRUE(IsKnownTracer(MString(u"potrace.exe")));
    EXPECT_TRUE(IsKnownTracer(MString(u"D:PoTrace.Exe")));
    EXPECT_TRUE(IsKnownTracer(MString(u"/usr/local/bin/potrace.exe")));
    EXPECT_FALSE(IsKnownTracer(MString(u"C:\\Tools\\potrace.exe.bak")));
    EXPECT_FALSE(IsKnownTracer(MString(u"C:\\Tools\\mypotrace.exe")));
    EXPECT_FALSE(IsKnownTracer(MString()));
}

TEST_F(CommandsTest, UnknownTracerIsNamedAndTheSketchStaysButLosesItsName) {
    Load(OpenCorner());
    TheFileName = PathOf("corner.eps");
    settings.ExternalTracer = MString(u"C:\\Tools\\autotrace.exe");
    TheInternalTracer = FakeTracer;
    TheExternalTracer = FakeTracer;
    Prompt(MString(u"C:\\Pictures\\logo.png"));
    Run(IdTrace);
    EXPECT_EQ(TracerCalls, 0);
    ASSERT_EQ(Messages.Count, 1);
    EXPECT_EQ(Text(MessageTexts[0]), u"Unknown external tracer\n\n\"C:\\Tools\\autotrace.exe\"");
    EXPECT_EQ(MessageIcons[0], IconError);
    EXPECT_EQ(MessageButtonList[0], ButtonsOk);
    EXPECT_EQ(S().PointCount, 3);
    EXPECT_TRUE(TheFileName.IsEmpty());
    EXPECT_TRUE(settings.SaveSolid);
    EXPECT_EQ(Title(), u"Quillmere - Untitled (3 points) [EDIT SKETCH]");
}

// ---- Background picture

TEST_F(CommandsTest, BackgroundPictureIsKeptWithTheViewOfItsLoading) {
    MString picture = WriteFile("back.tga", SmallTga());
    TheView->Zoom = 3;
    TheView->Pivot = P3(5, 6, 7);
    TheView->Update();
    Prompt(picture);
    Run(IdBackground);
    EXPECT_EQ(Prompts.Last.Mode, PromptSelectPicture);
    ASSERT_NE(TheBackground, nullptr);
    EXPECT_EQ(TheBackgroundZoom, 3.0f);
    ExpectPoint(TheBackgroundPivot, 5, 6, 7, 0);
    // Cancelling the next prompt removes the picture; the view is taken again.
    TheView->Zoom = 2;
    TheView->Update();
    Run(IdBackground);
    EXPECT_EQ(TheBackground, nullptr);
    EXPECT_EQ(TheBackgroundZoom, 2.0f);
}

TEST_F(CommandsTest, BackgroundThatDoesNotLoadLeavesNone) {
    Prompt(WriteFile("broken.tga", "not a picture"));
    Run(IdBackground);
    EXPECT_EQ(TheBackground, nullptr);
    EXPECT_EQ(TheBackgroundZoom, 1.0f);
    EXPECT_EQ(Messages.Count, 0);
}

// ---- Exit

TEST_F(CommandsTest, ExitAsksTheWindowToClose) {
    int32_t before = TheCloseRequests;
    Run(IdExit);
    EXPECT_EQ(TheCloseRequests, before + 1);
}

// ---- Modes

TEST_F(CommandsTest, DrawFreehandTogglesBetweenDrawingAndEditing) {
    Load(OpenCorner());
    Select(1, 0);
    Run(IdDraw);
    EXPECT_EQ(TheMode, ModeEditSketch) << "pressed while drawing, it goes to editing";
    EXPECT_EQ(S().Current, -1);
    EXPECT_EQ(Title(), u"Quillmere - Untitled (3 points) [EDIT SKETCH]");
    EXPECT_TRUE(AppliedMenuState().EditSketch);
    Run(IdDraw);
    EXPECT_EQ(TheMode, ModeDraw);
    EXPECT_TRUE(AppliedMenuState().DrawFreehand);
    TheMode = ModeEditRoll;
    Select(1, 0);
    Run(IdDraw);
    EXPECT_EQ(TheMode, ModeDraw);
    EXPECT_EQ(S().Current, -1);
    EXPECT_EQ(Title(), u"Quillmere - Untitled (3 points) [DRAW FREEHAND]");
}

TEST_F(CommandsTest, EditSketchTogglesBackToDrawing) {
    Load(OpenCorner());
    Run(IdEditSketch);
    EXPECT_EQ(TheMode, ModeEditSketch);
    Select(1, 0);
    Run(IdEditSketch);
    EXPECT_EQ(TheMode, ModeDraw);
    EXPECT_EQ(S().Current, -1);
    TheMode = ModeEditRoll;
    Select(1, 0);
    Run(IdEditSketch);
    EXPECT_EQ(TheMode, ModeEditSketch);
    EXPECT_EQ(S().Current, 1) << "the selection stays on the way into editing";
    EXPECT_EQ(Title(), u"Quillmere - Untitled (3 points) [EDIT SKETCH]");
}

TEST_F(CommandsTest, EditRollTogglesBackToEditSketch) {
    Run(IdEditRoll);
    EXPECT_EQ(TheMode, ModeEditRoll);
    EXPECT_EQ(Title(), u"Quillmere - Untitled (0 points) [EDIT ROLL]");
    EXPECT_TRUE(AppliedMenuState().EditRoll);
    Run(IdEditRoll);
    EXPECT_EQ(TheMode, ModeEditSketch);
    TheMode = ModeDraw;
    Run(IdEditRoll);
    EXPECT_EQ(TheMode, ModeEditRoll);
}

// ---- Edit

TEST_F(CommandsTest, GridTogglesTheSettingAndItsCheck) {
    Run(IdGrid);
    EXPECT_TRUE(settings.UseGrid);
    EXPECT_TRUE(AppliedMenuState().Grid);
    Run(IdGrid);
    EXPECT_FALSE(settings.UseGrid);
    EXPECT_FALSE(AppliedMenuState().Grid);
}

TEST_F(CommandsTest, FlipsMirrorAboutTheWorldAxes) {
    std::vector<WSketchPoint> records = OpenCorner();
    for (WSketchPoint& r : records)
        r.Roll = P3(0.6f, 0.8f, 0);
    Load(records);
    Run(IdFlipH);
    ExpectPoint(S().Points[2].Position, -100, 100, 0, 0);
    ExpectPoint(S().Points[2].Roll, -0.6f, 0.8f, 0, 0);
    EXPECT_EQ(Title(), u"Quillmere - Untitled * (3 points) [DRAW FREEHAND]");
    Run(IdFlipV);
    ExpectPoint(S().Points[2].Position, -100, -100, 0, 0);
    ExpectPoint(S().Points[2].Roll, -0.6f, -0.8f, 0, 0);
    EXPECT_EQ(Steps(), 2);
}

TEST_F(CommandsTest, CentreAndNormalizeSize) {
    Load(OpenCorner());
    Run(IdCentre);
    ExpectPoint(S().Points[0].Position, -50, -50, 0);
    ExpectPoint(S().Points[2].Position, 50, 50, 0);
    Run(IdNormalize);
    ExpectPoint(S().Points[0].Position, -100, -100, 0);
    ExpectPoint(S().Points[2].Position, 100, 100, 0);
    EXPECT_EQ(Steps(), 2);
}

TEST_F(CommandsTest, UndoAndRedoFollowTheRingAndTheMenu) {
    Load(OpenCorner());
    Run(IdFlipH);
    EXPECT_TRUE(AppliedMenuState().UndoEnabled);
    EXPECT_FALSE(AppliedMenuState().RedoEnabled);
    Run(IdUndo);
    ExpectPoint(S().Points[2].Position, 100, 100, 0, 0);
    EXPECT_TRUE(AppliedMenuState().RedoEnabled);
    Run(IdRedo);
    ExpectPoint(S().Points[2].Position, -100, 100, 0, 0);
    EXPECT_FALSE(AppliedMenuState().RedoEnabled);
}

// ---- View

TEST_F(CommandsTest, StandardViewsWithoutASelectionFitTheSketch) {
    Load(OpenCorner());
    const int32_t ids[] = {32773, 32774, 32775, 32776, 32777, 32778};
    for (int32_t v = 0; v < 6; v++) {
        TheView->Zoom = 7;
        TheView->Update();
        Run(ids[v]);
        EXPECT_TRUE(RotationIs(YawPitchRoll(StandardViews[v].Yaw, StandardViews[v].Pitch, 0))) << v;
        ExpectPoint(TheView->Pivot, 50, 50, 0);
        EXPECT_NE(TheView->Zoom, 7.0f) << v;
    }
    // The front view: 100 by 100 on 800 by 600, so 1.5 * 100 / 600.
    Run(IdFront);
    EXPECT_NEAR(TheView->Zoom, 0.25f, 1e-6f);
    EXPECT_EQ(StandardViews[ViewBack].Yaw, 3.1415927f);
    EXPECT_EQ(StandardViews[ViewTop].Pitch, -1.5707964f);
}

TEST_F(CommandsTest, StandardViewTurnsAboutTheSelectedPoint) {
    Load(OpenCorner());
    Select(1, 0);
    TheView->Zoom = 7;
    Run(32775); // Right
    EXPECT_TRUE(RotationIs(YawPitchRoll(1.5707964f, 0, 0)));
    ExpectPoint(TheView->Pivot, 100, 0, 0, 0);
    EXPECT_EQ(TheView->Zoom, 7.0f) << "no fit with a selection";
}

TEST_F(CommandsTest, ZoomCommandsAreLimited) {
    TheView->Zoom = 1;
    Run(IdZoomIn);
    EXPECT_EQ(TheView->Zoom, float(1.0 * 0.9));
    Run(IdZoomOut);
    EXPECT_EQ(TheView->Zoom, float(double(float(0.9)) * 1.1));
    TheView->Zoom = 0.00105f;
    Run(IdZoomIn);
    EXPECT_EQ(TheView->Zoom, 0.001f);
    Run(IdZoomIn);
    EXPECT_EQ(TheView->Zoom, 0.001f);
    TheView->Zoom = 999;
    Run(IdZoomOut);
    EXPECT_EQ(TheView->Zoom, 1000.0f);
}

TEST_F(CommandsTest, ElementCommandGoesToEditSketch) {
    Run(IdElement);
    EXPECT_EQ(TheMode, ModeEditSketch);
    EXPECT_EQ(Title(), u"Quillmere - Untitled (0 points) [EDIT SKETCH]");
}

// The tool windows and dialogs are wired to their ids; until they exist the
// commands leave the sketch, mode and title as they are.
TEST_F(CommandsTest, WindowCommandsAreWired) {
    Load(OpenCorner());
    RefreshTitle();
    std::u16string title = Title();
    for (int32_t id : {int32_t(IdPoint), int32_t(IdMode), int32_t(IdSpaghetti), int32_t(IdAbout)})
        Run(id);
    EXPECT_EQ(Title(), title);
    EXPECT_EQ(S().PointCount, 3);
    EXPECT_EQ(TheMode, ModeDraw);
}

TEST_F(CommandsTest, OptionsSetsTheDisplayScaleAnew) {
    MDrawSurface surface;
    TheSurface = &surface;
    settings.DisplaySize = 50;
    Run(IdOptions);
    EXPECT_EQ(surface.Scale, 2.0f);
    settings.DisplaySize = 0; // no division by zero: the scale stays
    Run(IdOptions);
    EXPECT_EQ(surface.Scale, 2.0f);
    settings.DisplaySize = 125;
    Run(IdOptions);
    EXPECT_EQ(surface.Scale, 0.8f);
    TheSurface = nullptr;
}

// ---- Help

TEST_F(CommandsTest, UserGuideAndCommunityOpenTheMakersPages) {
    Run(IdUserGuide);
    EXPECT_EQ(Pages.Count, 1);
    EXPECT_EQ(Text(Pages.Last), std::u16string(TheMakerSite) + u"/quillmeremanual");
    Run(IdCommunity);
    EXPECT_EQ(Pages.Count, 2);
    EXPECT_EQ(Text(Pages.Last), std::u16string(TheMakerSite) + u"/community/");
    std::u16string site(TheMakerSite);
    EXPECT_EQ(site.rfind(u"https://", 0), 0u);
    EXPECT_NE(site.back(), u'/');
}

// ---- Menu state

TEST_F(CommandsTest, MenuEnablesUndoFromTheSecondStateAndRedoFromTheFirst) {
    RefreshMenu();
    EXPECT_FALSE(AppliedMenuState().UndoEnabled) << "the empty sketch alone";
    EXPECT_FALSE(AppliedMenuState().RedoEnabled);
    DrawStroke();
    EXPECT_TRUE(AppliedMenuState().UndoEnabled);
    Run(IdUndo);
    EXPECT_FALSE(AppliedMenuState().UndoEnabled);
    EXPECT_TRUE(AppliedMenuState().RedoEnabled);
}
