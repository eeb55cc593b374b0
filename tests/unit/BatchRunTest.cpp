// The batch program against the window: for the same input, choices and
// seed, its files are the bytes that "Open"/"Trace bitmap..." and "Save
// as..." write, and each failure ends with the window's message and a
// non-zero result.

#include "ShellTestSupport.h"

#include "batch/BatchRun.h"
#include "elements/WElement.h"
#include "eps/TraceFlow.h"
#include "resources/resource.h"
#include "shell/Commands.h"
#include "shell/SketchFile.h"
#include "show/WriteShows.h"

#include <map>

#ifdef _WIN32
#include <windows.h>

#include <objbase.h>
#endif

namespace {

enum { IdSaveAs = 32799, IdTrace = 32841 };

std::vector<std::u16string> BatchMessages;
void CollectMessage(const MString& text) {
    BatchMessages.push_back(scratch::U16(text));
}

// A ride: a start, a straight, a climbing turn and a hill.
const char* const RideTrack = "Quillmere track\r\n"
                              "Move 0 0 0 90\r\n"
                              "Element \"Straight line\" 100\r\n"
                              "Element Turn 180 50 20 0\r\n"
                              "Element Hill 80 30\r\n";

MString SourceFile(const std::string& name) {
    return scratch::Text(scratch::fs::path(TEST_SOURCE_DIR) / name);
}

class BatchRunTest : public ShellFixture {
  protected:
    uint32_t Seed = 4242;
    bool Com = false;

    void SetUp() override {
        ShellFixture::SetUp();
        CreateElement();
        TheInternalTracer = TraceInternal;
        TheExternalTracer = TraceExternal;
        settings.SetDefaults();
        settings.ResetSaveChoices();
        scratch::fs::create_directories(Folder / "program");
        scratch::fs::copy(scratch::fs::path(TEST_SOURCE_DIR) / "tests/data/shows/Media",
                          Folder / "program" / "Media", scratch::fs::copy_options::recursive);
        SetFolderOverride(FolderProgram, PathOf("program"));
        TheShowSeedOverride = &Seed;
        BatchMessages.clear();
        TheBatchMessageSink = CollectMessage;
#ifdef _WIN32
        Com = SUCCEEDED(CoInitialize(nullptr)); // the picture decoders
#endif
    }
    void TearDown() override {
        TheBatchMessageSink = nullptr;
        TheShowSeedOverride = nullptr;
        SetFolderOverride(FolderProgram, MString());
        DestroyElement();
        if (!TheSketch) CreateSketch();
        ShellFixture::TearDown();
#ifdef _WIN32
        if (Com) CoUninitialize();
#endif
    }

    // Every file of the folder by name, then the folder is emptied.
    std::map<std::string, std::string> TakeFiles(const std::string& folder) {
        std::map<std::string, std::string> files;
        for (const auto& entry : scratch::fs::directory_iterator(Folder / folder))
            files[entry.path().filename().string()] = scratch::ReadBytes(entry.path());
        scratch::fs::remove_all(Folder / folder);
        scratch::fs::create_directories(Folder / folder);
        return files;
    }

    // The window's "Save as..." with these clicks in the dialog, to path.
    void WindowSaveAs(const MString& path, const WDialogStep* steps, int32_t count) {
        AnswerDialog(1, steps, count);
        Prompt(path);
        ASSERT_TRUE(RunCommand(IdSaveAs));
    }

    int32_t Batch(std::vector<std::u16string> args) {
        std::vector<MString> texts;
        for (const std::u16string& arg : args)
            texts.push_back(MString(arg.c_str()));
        texts.push_back(u"--seed");
        texts.push_back(IntegerText(Seed));
        texts.push_back(u"--program-folder");
        texts.push_back(PathOf("program"));
        return RunBatch(texts);
    }
    std::u16string U(const MString& text) {
        return scratch::U16(text);
    }
};

} // namespace

// A track file with roll, a road show with trees and its track files.
TEST_F(BatchRunTest, TrackFileWithARoadShowGivesTheWindowsFiles) {
    MString track = WriteFile("ride.qo", RideTrack);
    scratch::fs::create_directories(Folder / "out");
    MString out = PathOf("out/ride.eps");
    OpenSketch(track);
    const WDialogStep steps[] = {{StepCheck, IDC_SAVE_ROAD1ST, nullptr, 1},
                                 {StepSelect, IDC_SAVE_TREES, nullptr, 3},
                                 {StepSetText, IDC_SAVE_SMOOTH, u"40"}};
    WindowSaveAs(out, steps, 3);
    ASSERT_EQ(Messages.Count, 0);
    auto window = TakeFiles("out");
    ASSERT_EQ(window.count("ride.eps"), 1u);
    ASSERT_EQ(window.count("ride_Road1stPerson.cnd"), 1u);
    ASSERT_EQ(window.count("ride_Structure.eps"), 1u);

    EXPECT_EQ(Batch({u"open", U(track), u"--save", U(out), u"--template", u"Road 1st person",
                     u"--trees", u"Fir", u"--smooth", u"40"}),
              0);
    EXPECT_TRUE(BatchMessages.empty());
    auto batch = TakeFiles("out");
    EXPECT_EQ(batch, window);
}

// A potrace EPS saved solid with the spinning logo.
TEST_F(BatchRunTest, PotraceEpsSavedSolidGivesTheWindowsFiles) {
    MString eps = SourceFile("tests/data/potrace/letters.eps");
    scratch::fs::create_directories(Folder / "out");
    MString out = PathOf("out/letters.eps");
    OpenSketch(eps);
    const WDialogStep steps[] = {{StepCheck, IDC_SAVE_SOLID, nullptr, 1},
                                 {StepCheck, IDC_SAVE_SPINNINGLOGO, nullptr, 1},
                                 {StepSetText, IDC_SAVE_MAXLINES, u"30"}};
    WindowSaveAs(out, steps, 3);
    ASSERT_EQ(Messages.Count, 0);
    auto window = TakeFiles("out");
    ASSERT_EQ(window.size(), 2u);
    ASSERT_EQ(window.count("letters_SpinningLogo.cnd"), 1u);

    EXPECT_EQ(Batch({u"open", U(eps), u"--save", U(out), u"--solid", u"--template", u"0",
                     u"--max-lines", u"30"}),
              0);
    EXPECT_TRUE(BatchMessages.empty());
    EXPECT_EQ(TakeFiles("out"), window);
}

// A picture through the built-in tracer: solid without roll, as the trace
// leaves the choices.
TEST_F(BatchRunTest, InternalTraceGivesTheWindowsFiles) {
    MString picture = SourceFile("tests/data/tracer/logo.png");
    scratch::fs::create_directories(Folder / "out");
    MString out = PathOf("out/logo.eps");
    Prompt(picture);
    ASSERT_TRUE(RunCommand(IdTrace));
    const WDialogStep steps[] = {{StepCheck, IDC_SAVE_HANDWRITTENTEXT, nullptr, 1}};
    WindowSaveAs(out, steps, 1);
    ASSERT_EQ(Messages.Count, 0);
    auto window = TakeFiles("out");
    ASSERT_EQ(window.size(), 2u);
    EXPECT_NE(window["logo.eps"].find("closepath\r\nfill\r\n"), std::string::npos);

    EXPECT_EQ(Batch({u"open", U(picture), u"--trace", u"internal", u"--save", U(out), u"--template",
                     u"Handwritten text"}),
              0);
    EXPECT_TRUE(BatchMessages.empty());
    EXPECT_EQ(TakeFiles("out"), window);
}

#ifndef _WIN32
// Debian's potrace behind a link named potrace.exe.
TEST_F(BatchRunTest, RealPotraceGivesTheWindowsFiles) {
    scratch::fs::create_directories(Folder / "potrace");
    scratch::fs::create_symlink("/usr/bin/potrace", Folder / "potrace" / "potrace.exe");
    MString tracer = PathOf("potrace/potrace.exe");
    MString picture = SourceFile("tests/data/tracer/logo.png");
    scratch::fs::create_directories(Folder / "out");
    MString out = PathOf("out/logo.eps");
    settings.ExternalTracer = tracer;
    Prompt(picture);
    ASSERT_TRUE(RunCommand(IdTrace));
    WindowSaveAs(out, nullptr, 0);
    ASSERT_EQ(Messages.Count, 0);
    auto window = TakeFiles("out");
    ASSERT_EQ(window.size(), 1u);

    EXPECT_EQ(Batch({u"open", U(picture), u"--trace", U(tracer), u"--save", U(out)}), 0);
    EXPECT_TRUE(BatchMessages.empty());
    EXPECT_EQ(TakeFiles("out"), window);
}
#endif

// Several inputs with --out-dir: one set each, named after the input.
TEST_F(BatchRunTest, SeveralInputsWriteOneSetEachIntoTheFolder) {
    MString track = WriteFile("ride.qo", RideTrack);
    MString eps = SourceFile("tests/data/potrace/circle.eps");
    EXPECT_EQ(Batch({u"open", U(track), U(eps), u"--out-dir", U(PathOf("sets"))}), 0);
    auto files = TakeFiles("sets");
    ASSERT_EQ(files.size(), 2u);
    EXPECT_EQ(files.count("ride.eps"), 1u);
    EXPECT_EQ(files.count("circle.eps"), 1u);
}

// ---- Failures: the window's message and a non-zero result

TEST_F(BatchRunTest, AFileThatDoesNotOpenGivesTheWindowsMessage) {
    MString missing = PathOf("missing.qo");
    OpenSketch(missing);
    ASSERT_EQ(Messages.Count, 1);
    EXPECT_EQ(Batch({u"open", U(missing), u"--save", U(PathOf("m.eps"))}), 1);
    ASSERT_EQ(BatchMessages.size(), 1u);
    EXPECT_EQ(BatchMessages[0], U(MessageTexts[0]));
    EXPECT_EQ(BatchMessages[0], u"Could not open:\n\n\"" + U(missing) + u"\"");
    EXPECT_FALSE(Exists(PathOf("m.eps")));
}

TEST_F(BatchRunTest, AnUnknownTracerGivesTheWindowsMessage) {
    MString picture = SourceFile("tests/data/tracer/logo.png");
    settings.ExternalTracer = MString(u"/usr/bin/potrace");
    Prompt(picture);
    ASSERT_TRUE(RunCommand(IdTrace));
    ASSERT_EQ(Messages.Count, 1);
    EXPECT_EQ(Batch({u"open", U(picture), u"--trace", u"/usr/bin/potrace", u"--save",
                     U(PathOf("p.eps"))}),
              1);
    ASSERT_EQ(BatchMessages.size(), 1u);
    EXPECT_EQ(BatchMessages[0], U(MessageTexts[0]));
    EXPECT_EQ(BatchMessages[0], u"Unknown external tracer\n\n\"/usr/bin/potrace\"");
}

TEST_F(BatchRunTest, APictureThatYieldsNothingIsAnEmptySketch) {
    MString picture = SourceFile("tests/data/tracer/transparent.png");
    Prompt(picture);
    ASSERT_TRUE(RunCommand(IdTrace));
    Prompt(PathOf("t.eps"));
    ASSERT_TRUE(RunCommand(IdSaveAs));
    ASSERT_EQ(Messages.Count, 1);
    EXPECT_EQ(U(MessageTexts[0]), u"The sketch is empty");
    EXPECT_EQ(Batch({u"open", U(picture), u"--trace", u"internal", u"--save", U(PathOf("t.eps"))}),
              1);
    ASSERT_EQ(BatchMessages.size(), 1u);
    EXPECT_EQ(BatchMessages[0], u"The sketch is empty");
    EXPECT_FALSE(Exists(PathOf("t.eps")));
}

TEST_F(BatchRunTest, ASolidSaveOfARideGivesTheWindowsMessage) {
    MString track = WriteFile("ride.qo", RideTrack);
    OpenSketch(track);
    const WDialogStep steps[] = {{StepCheck, IDC_SAVE_SOLID, nullptr, 1}};
    WindowSaveAs(PathOf("s.eps"), steps, 1);
    ASSERT_EQ(Messages.Count, 1);
    EXPECT_EQ(Batch({u"open", U(track), u"--solid", u"--save", U(PathOf("b.eps"))}), 1);
    ASSERT_EQ(BatchMessages.size(), 1u);
    EXPECT_EQ(BatchMessages[0], U(MessageTexts[0]));
    EXPECT_EQ(BatchMessages[0], u"Your sketch can't be saved as solid because it's not 2D");
    EXPECT_FALSE(Exists(PathOf("b.eps")));
}

// A template the dialog greys out is refused with its reason, and nothing is
// written.
TEST_F(BatchRunTest, GreyedTemplatesAreRefusedWithTheReason) {
    MString track = WriteFile("ride.qo", RideTrack);
    EXPECT_EQ(Batch({u"open", U(track), u"--no-roll", u"--template", u"Tunnel", u"--save",
                     U(PathOf("r.eps"))}),
              1);
    ASSERT_EQ(BatchMessages.size(), 1u);
    EXPECT_EQ(BatchMessages[0], u"\"Tunnel\" is greyed out: a show that follows a track needs one "
                                u"curve with roll (\"Roll\").");
    EXPECT_FALSE(Exists(PathOf("r.eps")));
    BatchMessages.clear();
    // Two curves: no track template, and without Solid no spinning logo.
    MString eps = SourceFile("tests/data/potrace/letters.eps");
    EXPECT_EQ(Batch({u"open", U(eps), u"--roll", u"--no-solid", u"--template", u"Bob 1st person",
                     u"--template", u"Spinning logo", u"--save", U(PathOf("l.eps"))}),
              1);
    ASSERT_EQ(BatchMessages.size(), 2u);
    EXPECT_EQ(BatchMessages[0], u"\"Spinning logo\" is greyed out: the spinning logo needs a "
                                u"solid file (\"Solid\").");
    EXPECT_EQ(BatchMessages[1], u"\"Bob 1st person\" is greyed out: a show that follows a track "
                                u"needs one curve with roll (\"Roll\").");
    EXPECT_FALSE(Exists(PathOf("l.eps")));
}

// A ride's template unticks Centre and Normalize size, as the dialog does.
TEST_F(BatchRunTest, ARideTemplateUnticksCentreAndNormalize) {
    MString track = WriteFile("ride.qo", RideTrack);
    EXPECT_EQ(Batch({u"open", U(track), u"--centre", u"--normalize", u"--template",
                     u"Bob 3rd person", u"--save", U(PathOf("r.eps"))}),
              0);
    std::string eps = ReadFile(PathOf("r.eps"));
    EXPECT_NE(eps.find("%%Cinderlane Centre N\r\n"), std::string::npos);
    EXPECT_NE(eps.find("%%Cinderlane Scale N\r\n"), std::string::npos);
    EXPECT_TRUE(Exists(PathOf("r_Bob3rdPerson.cnd")));
}

TEST_F(BatchRunTest, WrongArgumentsGiveTwoAndTheReason) {
    EXPECT_EQ(Batch({u"close"}), 2);
    ASSERT_EQ(BatchMessages.size(), 1u);
    EXPECT_EQ(BatchMessages[0], u"The first argument must be \"open\"; see --help");
}

TEST(BatchOutputPath, SaveOrTheInputsNameInTheFolder) {
    WBatchOptions options;
    options.OutDir = MString(u"out");
    EXPECT_EQ(scratch::U16(BatchOutputPath(options, MString(u"in/logo.png"))),
              scratch::U16(JoinPath(MString(u"out"), MString(u"logo.eps"))));
    EXPECT_EQ(scratch::U16(BatchOutputPath(options, MString(u"C:\\in\\ride.qo"))),
              scratch::U16(JoinPath(MString(u"out"), MString(u"ride.eps"))));
    options.Save = MString(u"x.eps");
    EXPECT_EQ(scratch::U16(BatchOutputPath(options, MString(u"in/logo.png"))), u"x.eps");
}
