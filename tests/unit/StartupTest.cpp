// The order in which the program makes its single objects at start and ends
// them at shutdown, the messages of a second creation, the start mode and
// the first command-line argument.
//
// The file named on the command line at start: a sketch is opened after one
// frame has sized the view, anything else is ignored without a word.

#include "ScratchFolder.h"
#include "ShellTestSupport.h"

#include "drawing/MDrawSurface.h"
#include "elements/WElement.h"
#include "foundation/MString.h"
#include "foundation/Platform.h"
#include "shell/Frame.h"
#include "shell/Shell.h"
#include "shell/SketchFile.h"
#include "shell/Startup.h"
#include "shell/WSettings.h"
#include "shell/Window.h"
#include "sketch/WRecording.h"
#include "sketch/WSketch.h"
#include "sketch/WUndoRing.h"
#include "view/WView.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace order {

namespace {

std::u16string U16(const MString& text) {
    return std::u16string(text.Chars());
}

// The lines of a capture that tell of an object made or ended.
std::vector<std::u16string> ObjectLines(const MString& capture) {
    std::vector<std::u16string> lines;
    std::u16string all = U16(capture), line;
    for (char16_t c : all) {
        if (c != u'\n') {
            line += c;
            continue;
        }
        auto endsWith = [&line](const std::u16string& end) {
            return line.size() >= end.size() &&
                   line.compare(line.size() - end.size(), end.size(), end) == 0;
        };
        if (endsWith(u" created") || endsWith(u" destroyed")) lines.push_back(line);
        line.clear();
    }
    return lines;
}

void EndEverything() {
    DestroySurface();
    DestroyModelObjects(ShutdownView);
    DestroySettings();
    TheMode = ModeDraw;
    TheFileName = MString();
}

// Each test is a new user on a screen of 1280 by 1024, with a settings
// folder of its own.
class StartupOrder : public ::testing::Test {
  protected:
    scratch::fs::path Folder;
    MScreenMetrics Screen;

    void SetUp() override {
        EndEverything();
        Folder = scratch::Fresh(std::string("startup-") +
                                ::testing::UnitTest::GetInstance()->current_test_info()->name());
        SetFolderOverride(FolderAppData, scratch::Text(Folder / "appdata"));
        SetFolderOverride(FolderDocuments, scratch::Text(Folder / "documents"));
        Screen.Primary.Width = Screen.Virtual.Width = 1280;
        Screen.Primary.Height = Screen.Virtual.Height = 1024;
        TheScreenOverride = &Screen;
    }
    void TearDown() override {
        TheMessageScript = nullptr;
        EndEverything();
        TheScreenOverride = nullptr;
        SetFolderOverride(FolderAppData, MString());
        SetFolderOverride(FolderDocuments, MString());
        scratch::Remove(Folder);
    }
    void WriteSettingsFile(const std::string& bytes) {
        scratch::fs::path file = scratch::Path(SettingsFileName());
        scratch::fs::create_directories(file.parent_path());
        scratch::WriteBytes(file, bytes);
    }
};

} // namespace

TEST_F(StartupOrder, ModelObjectsAreMadeInOrderAndEndedInReverse) {
    StartDebugCapture();
    EXPECT_EQ(CreateModelObjects(), 0);
    DestroyModelObjects(ShutdownView);
    std::vector<std::u16string> want = {
        u"WElement created",     u"WSketch created",     u"WUndoRing created",
        u"WRecording created",   u"WView created",       u"WView destroyed",
        u"WRecording destroyed", u"WUndoRing destroyed", u"WSketch destroyed",
        u"WElement destroyed",
    };
    EXPECT_EQ(ObjectLines(StopDebugCapture()), want);
    EXPECT_EQ(TheElement, nullptr);
    EXPECT_EQ(TheSketch, nullptr);
    EXPECT_EQ(TheRecording, nullptr);
    EXPECT_EQ(TheView, nullptr);
}

TEST_F(StartupOrder, SettingsComeBeforeTheModelObjects) {
    StartDebugCapture();
    EXPECT_TRUE(StartSettings());
    EXPECT_EQ(CreateModelObjects(), 0);
    std::vector<std::u16string> want = {u"WSettings created",  u"WElement created",
                                        u"WSketch created",    u"WUndoRing created",
                                        u"WRecording created", u"WView created"};
    EXPECT_EQ(ObjectLines(StopDebugCapture()), want);
}

TEST_F(StartupOrder, NewUserGetsTheDefaultWindowPlace) {
    ASSERT_TRUE(StartSettings());
    EXPECT_FALSE(TheSettings->Loaded) << "there is no settings file yet";
    // 0.8 of 1280 by 1024, centred.
    EXPECT_EQ(TheSettings->WindowRect.left, 128);
    EXPECT_EQ(TheSettings->WindowRect.top, 102);
    EXPECT_EQ(TheSettings->WindowRect.right, 1152);
    EXPECT_EQ(TheSettings->WindowRect.bottom, 921);
}

TEST_F(StartupOrder, SettingsFileIsReadButTheSaveChoicesStartAfresh) {
    WriteSettingsFile("PenSize\t5\r\nMaxLinesPerCurve\t7\r\nWindowRect\t50\t650\t450\t40\r\n");
    ASSERT_TRUE(StartSettings());
    EXPECT_TRUE(TheSettings->Loaded);
    EXPECT_EQ(TheSettings->PenSize, 5);
    EXPECT_EQ(TheSettings->MaxLinesPerCurve, 7)
        << "the file's value stands until the sketch is made";
    EXPECT_EQ(TheSettings->WindowRect.left, 40);
    EXPECT_EQ(TheSettings->WindowRect.top, 50);
    TheSettings->Centre = false;
    TheSettings->Scale = false;
    ASSERT_EQ(CreateModelObjects(), 0);
    EXPECT_EQ(TheSettings->MaxLinesPerCurve, 100);
    EXPECT_TRUE(TheSettings->Centre);
    EXPECT_TRUE(TheSettings->Scale);
}

TEST_F(StartupOrder, CloseSavesTheWindowPlaceForTheNextStart) {
    ASSERT_TRUE(StartSettings());
    ASSERT_EQ(CreateModelObjects(), 0);
    EXPECT_TRUE(PrepareToClose(WRect{10, 20, 810, 620}));
    DestroyModelObjects(ShutdownView);
    DestroySettings();

    ASSERT_TRUE(StartSettings());
    EXPECT_TRUE(TheSettings->Loaded) << "the file was written at the close";
    EXPECT_EQ(TheSettings->WindowRect.left, 10);
    EXPECT_EQ(TheSettings->WindowRect.top, 20);
    EXPECT_EQ(TheSettings->WindowRect.right, 810);
    EXPECT_EQ(TheSettings->WindowRect.bottom, 620);
}

TEST_F(StartupOrder, StartLeavesAnEmptySketchWithItsFirstSnapshotAndAResetView) {
    ASSERT_EQ(CreateModelObjects(), 0);
    ASSERT_NE(TheSketch, nullptr);
    EXPECT_EQ(TheSketch->PointCount, 0);
    EXPECT_EQ(TheSketch->Current, -1);
    EXPECT_EQ(TheSketch->Modified, 0);
    ASSERT_NE(TheSketch->Undo, nullptr);
    EXPECT_EQ(TheSketch->Undo->Snapshots.Count, 100);
    EXPECT_EQ(TheSketch->Undo->Depth, 1);
    EXPECT_EQ(TheSketch->Undo->RedoDepth, 0);
    ASSERT_NE(TheRecording, nullptr);
    EXPECT_EQ(TheRecording->PointCount, 0);
    ASSERT_NE(TheView, nullptr);
    EXPECT_EQ(TheView->Zoom, 0.2f);
    EXPECT_TRUE(TheView->Rotation.Identity);
}

TEST_F(StartupOrder, CorrectElementTableSaysNothingAtStart) {
    MString texts[4];
    MessageScript script;
    script.Texts = texts;
    script.Capacity = 4;
    TheMessageScript = &script;
    EXPECT_EQ(CreateModelObjects(), 0);
    TheMessageScript = nullptr;
    EXPECT_EQ(script.Count, 0);
    EXPECT_EQ(U16(texts[0]), u"");
    EXPECT_NE(TheElement, nullptr);
}

TEST_F(StartupOrder, SecondCreationShowsOneMessagePerObjectAndKeepsTheFirst) {
    ASSERT_EQ(CreateModelObjects(), 0);
    WElement* element = TheElement;
    WSketch* sketch = TheSketch;
    WUndoRing* ring = TheSketch->Undo;
    WRecording* recording = TheRecording;
    WView* view = TheView;

    MString texts[8];
    MessageIcon icons[8] = {};
    MessageScript script;
    script.Texts = texts;
    script.Icons = icons;
    script.Capacity = 8;
    TheMessageScript = &script;
    StartDebugCapture();
    EXPECT_EQ(CreateModelObjects(), 0) << "the old objects are kept and the start goes on";
    MString capture = StopDebugCapture();
    TheMessageScript = nullptr;

    ASSERT_EQ(script.Count, 4);
    EXPECT_EQ(U16(texts[0]), u"ERROR: there can only be 1 WElement object");
    EXPECT_EQ(U16(texts[1]), u"There can only be 1 WSketch object");
    EXPECT_EQ(U16(texts[2]), u"There can only be 1 WRecording object");
    EXPECT_EQ(U16(texts[3]), u"There can only be 1 WView object");
    for (int i = 0; i < 4; i++)
        EXPECT_EQ(icons[i], IconError) << i;
    EXPECT_TRUE(ObjectLines(capture).empty());
    EXPECT_EQ(TheElement, element);
    EXPECT_EQ(TheSketch, sketch);
    EXPECT_EQ(TheSketch->Undo, ring);
    EXPECT_EQ(TheRecording, recording);
    EXPECT_EQ(TheView, view);
}

TEST_F(StartupOrder, ShutdownFromAStepEndsThatStepsObjectAndTheOnesMadeBeforeIt) {
    ASSERT_EQ(CreateModelObjects(), 0);
    // A view that failed leaves recorder, sketch and element to be undone.
    StartDebugCapture();
    DestroyModelObjects(ShutdownRecording);
    std::vector<std::u16string> want = {u"WRecording destroyed", u"WUndoRing destroyed",
                                        u"WSketch destroyed", u"WElement destroyed"};
    EXPECT_EQ(ObjectLines(StopDebugCapture()), want);
    EXPECT_NE(TheView, nullptr);
    EXPECT_EQ(TheRecording, nullptr);
    EXPECT_EQ(TheSketch, nullptr);
    EXPECT_EQ(TheElement, nullptr);

    // Ending what does not exist says nothing.
    StartDebugCapture();
    DestroyModelObjects(ShutdownElement);
    DestroyModelObjects(ShutdownSketch);
    EXPECT_TRUE(ObjectLines(StopDebugCapture()).empty());
    EXPECT_NE(TheView, nullptr);
}

TEST_F(StartupOrder, StartModeIsDrawingWithNoCurrentRecordShownInMenuAndTitle) {
    ASSERT_EQ(CreateModelObjects(), 0);
    TheMode = ModeEditRoll;
    TheSketch->Current = 0;
    EnterStartMode();
    EXPECT_EQ(TheMode, ModeDraw);
    EXPECT_EQ(TheSketch->Current, -1);
    EXPECT_EQ(U16(MainWindowText()), u"Quillmere - Untitled (0 points) [DRAW FREEHAND]");
    WMenuState menu = AppliedMenuState();
    EXPECT_TRUE(menu.DrawFreehand);
    EXPECT_FALSE(menu.EditSketch);
    EXPECT_FALSE(menu.EditRoll);
    EXPECT_FALSE(menu.UndoEnabled) << "one snapshot: nothing to undo";
    EXPECT_FALSE(menu.RedoEnabled);
}

TEST_F(StartupOrder, OnlyEpsAndQoFilesAreOpenedAtStart) {
    EXPECT_TRUE(IsStartFile(MString(u"C:\\Sketches\\ring.eps")));
    EXPECT_TRUE(IsStartFile(MString(u"C:\\Sketches\\RING.EPS")));
    EXPECT_TRUE(IsStartFile(MString(u"ride.Qo")));
    EXPECT_TRUE(IsStartFile(MString(u"/home/artist/ride.qo")));
    EXPECT_FALSE(IsStartFile(MString()));
    EXPECT_FALSE(IsStartFile(MString(u"C:\\notes.txt")));
    EXPECT_FALSE(IsStartFile(MString(u"C:\\picture.png")));
    EXPECT_FALSE(IsStartFile(MString(u"ring.eps.txt")));
    EXPECT_FALSE(IsStartFile(MString(u"C:\\eps")));
    EXPECT_FALSE(IsStartFile(MString(u"-eps")));
}

TEST_F(StartupOrder, TextFileOnTheCommandLineOpensNothingAndSaysNothing) {
    ASSERT_EQ(CreateModelObjects(), 0);
    EnterStartMode();
    MString texts[2];
    MessageScript script;
    script.Texts = texts;
    script.Capacity = 2;
    TheMessageScript = &script;
    StartDebugCapture();
    OpenStartFile(MString(u"C:\\Users\\artist\\notes.txt"));
    MString capture = StopDebugCapture();
    TheMessageScript = nullptr;
    EXPECT_EQ(script.Count, 0);
    EXPECT_EQ(U16(capture), u"");
    EXPECT_EQ(TheSurface, nullptr) << "no frame is drawn for a file that is not opened";
    EXPECT_EQ(TheSketch->PointCount, 0);
    EXPECT_EQ(U16(MainWindowText()), u"Quillmere - Untitled (0 points) [DRAW FREEHAND]");
}

#if !defined(_WIN32)
// The native surface stands in for the window's; under Wine the same start
// runs against a real window in the user journeys.
TEST_F(StartupOrder, SketchFileOnTheCommandLineIsOpenedAfterAFrameSizedTheView) {
    static int window;
    TheMainWindow = &window;
    SetMainClientSize(640, 480);
    ASSERT_EQ(CreateModelObjects(), 0);
    EnterStartMode();
    StartDebugCapture();
    OpenStartFile(MString(u"C:\\Sketches\\sketch.eps"));
    std::u16string capture = U16(StopDebugCapture());
    ASSERT_NE(TheSurface, nullptr);
    EXPECT_EQ(TheView->ViewportWidth, 640.0f);
    EXPECT_EQ(TheView->ViewportHeight, 480.0f);
    size_t surface = capture.find(u"MDrawSurface created\n");
    size_t open = capture.find(u"sketch.eps");
    ASSERT_NE(surface, std::u16string::npos);
    ASSERT_NE(open, std::u16string::npos) << "the file is passed on to be opened";
    EXPECT_LT(surface, open) << "the frame comes first";
    DestroySurface();
    TheMainWindow = nullptr;
    SetMainClientSize(0, 0);
}

// The file is fitted to the window it will be seen in: a line from (0, 0) to
// (100, 30), kept where it is, gives the pivot (50, 15, 0), and for 640 by
// 480 pixels r = max(100 / 640, 30 / 480) = 0.15625, so the zoom is
// 0.15625 * 1.5 = 0.234375. Had the load come before the first frame, the
// view would have had no size to fit to and kept the zoom 0.2 of its reset.
TEST_F(StartupOrder, SketchOnTheCommandLineIsFittedToTheRealViewport) {
    static int window;
    TheMainWindow = &window;
    SetMainClientSize(640, 480);
    ASSERT_TRUE(StartSettings());
    ASSERT_EQ(CreateModelObjects(), 0);
    EnterStartMode();
    scratch::fs::path file = Folder / "sketch.eps";
    scratch::WriteBytes(file, "%%Cinderlane Centre N\r\n%%Cinderlane Scale N\r\n"
                              "0 0 moveto\r\n100 30 lineto\r\n");
    OpenStartFile(scratch::Text(file));
    ASSERT_EQ(TheSketch->PointCount, 2);
    EXPECT_EQ(TheView->ViewportWidth, 640.0f);
    EXPECT_EQ(TheView->ViewportHeight, 480.0f);
    EXPECT_EQ(TheView->Pivot.x, 50.0f);
    EXPECT_EQ(TheView->Pivot.y, 15.0f);
    EXPECT_EQ(TheView->Pivot.z, 0.0f);
    EXPECT_EQ(TheView->Zoom, 0.234375f);
    EXPECT_EQ(TheMode, ModeEditSketch);
    DestroySurface();
    TheMainWindow = nullptr;
    SetMainClientSize(0, 0);
}
#endif

} // namespace order

namespace commandline {

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

} // namespace commandline
