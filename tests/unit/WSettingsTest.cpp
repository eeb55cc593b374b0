// The settings object: defaults and default window places, the settings file
// read at start-up with its limits and window fitting, and the file written
// at exit, down to its bytes.

#include "shell/WSettings.h"

#include "FileTrouble.h"
#include "ForeignFilesSupport.h"
#include "ScratchFolder.h"
#include "foundation/Folders.h"
#include "foundation/MTextFile.h"
#include "foundation/Platform.h"
#include "shell/Shell.h"
#include "shell/Window.h"

#include <gtest/gtest.h>

#include <random>
#include <string>

using scratch::U16;
using trouble::ForeignLock;

namespace {

namespace fs = std::filesystem;

MScreenMetrics Screen(int32_t width, int32_t height) {
    MScreenMetrics metrics;
    metrics.Primary.Width = width;
    metrics.Primary.Height = height;
    metrics.Virtual = metrics.Primary;
    return metrics;
}

fs::path SourceFile(const char* relative) {
    std::string root = TEST_SOURCE_DIR;
#ifdef _WIN32
    // Wine shows the machine's root as drive Z.
    if (!root.empty() && root[0] == '/') root = "Z:" + root;
#endif
    return fs::path(root) / relative;
}

// The bytes a UTF-16 little endian file with its mark holds for text.
std::string Utf16File(const std::u16string& text) {
    std::string bytes("\xff\xfe", 2);
    for (char16_t c : text) {
        bytes += char(c & 0xff);
        bytes += char(c >> 8);
    }
    return bytes;
}

class Settings : public ::testing::Test {
  protected:
    fs::path Folder;
    MScreenMetrics Metrics = Screen(1920, 1080);
    MessageScript Messages;
    MString Texts[8];
    MessageIcon Icons[8];

    void SetUp() override {
        Folder = scratch::Fresh(std::string("settings-") +
                                ::testing::UnitTest::GetInstance()->current_test_info()->name());
        SetFolderOverride(FolderProgram, scratch::Text(Folder / "program"));
        SetFolderOverride(FolderAppData, scratch::Text(Folder / "appdata"));
        SetFolderOverride(FolderDocuments, scratch::Text(Folder / "documents"));
        TheScreenOverride = &Metrics;
        Messages.Texts = Texts;
        Messages.Icons = Icons;
        Messages.Capacity = 8;
        TheMessageScript = &Messages;
        DestroySettings();
    }
    void TearDown() override {
        DestroySettings();
        TheMessageScript = nullptr;
        TheScreenOverride = nullptr;
        SetFolderOverride(FolderProgram, MString());
        SetFolderOverride(FolderAppData, MString());
        SetFolderOverride(FolderDocuments, MString());
        scratch::Remove(Folder);
    }

    fs::path FilePath() { return scratch::Path(SettingsFileName()); }
    void WriteFile(const std::string& bytes) { scratch::WriteBytes(FilePath(), bytes); }
    std::string FileBytes() { return scratch::ReadBytes(FilePath()); }

    // A fresh settings object that has read the given file text.
    WSettings& LoadFrom(const std::string& bytes) {
        WriteFile(bytes);
        WSettings* settings = CreateSettings();
        settings->Load();
        return *settings;
    }
};

void ExpectRect(const WRect& rect, int32_t left, int32_t top, int32_t right, int32_t bottom) {
    EXPECT_EQ(rect.left, left);
    EXPECT_EQ(rect.top, top);
    EXPECT_EQ(rect.right, right);
    EXPECT_EQ(rect.bottom, bottom);
}

void ExpectColour(const MColour& colour, int r, int g, int b) {
    EXPECT_EQ(colour.r, r);
    EXPECT_EQ(colour.g, g);
    EXPECT_EQ(colour.b, b);
    EXPECT_EQ(colour.a, 255);
}

} // namespace

// ---- Creation

TEST_F(Settings, CreationGivesTheDefaultsOfEveryKey) {
    StartDebugCapture();
    WSettings* settings = CreateSettings();
    EXPECT_EQ(U16(StopDebugCapture()).find(u"WSettings created\n") != std::u16string::npos, true);
    ASSERT_NE(settings, nullptr);
    EXPECT_EQ(TheSettings, settings);
    const WSettings& s = *settings;
    EXPECT_TRUE(s.ShowWindow_Point);
    EXPECT_TRUE(s.ShowWindow_Element);
    EXPECT_TRUE(s.ShowWindow_Mode);
    EXPECT_FALSE(s.SaveSolid);
    EXPECT_FALSE(s.SaveRoll);
    EXPECT_EQ(s.MaxLinesPerCurve, 100);
    MString program = scratch::Text(Folder / "program");
    EXPECT_EQ(U16(s.FolderOpenSketch), U16(NormalisePath(program + "/Media/Sketches")));
    EXPECT_EQ(U16(s.FolderSelectPicture), U16(NormalisePath(program + "/Media/Pictures")));
    EXPECT_EQ(U16(s.FolderSaveSketch),
              U16(scratch::Text(Folder / "documents" / "Brambleworks" / "Quillmere")));
    EXPECT_TRUE(FolderExists(s.FolderSaveSketch));
    EXPECT_TRUE(s.FolderSelectExecutable.IsEmpty());
    ExpectColour(s.ColourBackground, 255, 255, 255);
    ExpectColour(s.ColourGrid, 229, 229, 229);
    ExpectColour(s.ColourInfo, 128, 128, 128);
    ExpectColour(s.ColourSketch, 0, 0, 0);
    ExpectColour(s.ColourBezier, 107, 157, 227);
    ExpectColour(s.ColourRoll, 75, 222, 189);
    ExpectColour(s.ColourGhost, 0, 255, 0);
    EXPECT_EQ(s.PenSize, 2);
    EXPECT_EQ(s.PointSize, 8);
    EXPECT_EQ(s.GridSize, 10);
    EXPECT_FALSE(s.UseGrid);
    EXPECT_EQ(s.DisplaySize, 100);
    EXPECT_TRUE(s.ShowHelpTexts);
    EXPECT_TRUE(s.ExternalTracer.IsEmpty());
    for (int32_t i = 0; i < TemplateCount; i++)
        EXPECT_FALSE(s.Template[i]) << i;
    EXPECT_EQ(s.Smooth, 200);
    EXPECT_EQ(s.TreeType, 5);
    EXPECT_TRUE(s.Centre);
    EXPECT_TRUE(s.Scale);
    EXPECT_FALSE(s.Loaded);
}

TEST_F(Settings, AColourIsHeldBlueGreenRedAlpha) {
    const WSettings& s = *CreateSettings();
    const uint8_t* bytes = reinterpret_cast<const uint8_t*>(&s.ColourBezier);
    EXPECT_EQ(bytes[0], 227);
    EXPECT_EQ(bytes[1], 157);
    EXPECT_EQ(bytes[2], 107);
    EXPECT_EQ(bytes[3], 255);
}

TEST_F(Settings, DefaultRectanglesFollowTheScreen) {
    const WSettings& s = *CreateSettings();
    ExpectRect(s.WindowRect, 192, 108, 1728, 972);     // 1536 by 864, centred
    ExpectRect(s.WindowRect_Info, 1420, 151, 0, 0);    // 192 + 1228, 108 + 43
    ExpectRect(s.WindowRect_Element, 1420, 583, 0, 0); // 151 + 432
    ExpectRect(s.WindowRect_Mode, 192, 453, 0, 0);     // 108 + 345
}

TEST_F(Settings, DefaultRectanglesTruncateEveryFraction) {
    Metrics = Screen(1366, 768);
    const WSettings& s = *CreateSettings();
    ExpectRect(s.WindowRect, 137, 77, 1229, 691);      // 1092.8 by 614.4
    ExpectRect(s.WindowRect_Info, 1010, 107, 0, 0);    // 137 + 873.6, 77 + 30.7
    ExpectRect(s.WindowRect_Element, 1010, 414, 0, 0); // 107 + 307
    ExpectRect(s.WindowRect_Mode, 137, 322, 0, 0);     // 77 + 245.6
}

TEST_F(Settings, ASecondCreationKeepsTheFirst) {
    WSettings* first = CreateSettings();
    first->PenSize = 7;
    WSettings* second = CreateSettings();
    EXPECT_EQ(second, first);
    EXPECT_EQ(TheSettings->PenSize, 7);
    ASSERT_EQ(Messages.Count, 1);
    EXPECT_EQ(U16(Texts[0]), u"There can only be 1 WSettings object");
    EXPECT_EQ(Icons[0], IconError);
}

TEST_F(Settings, DestroyClearsTheObjectAndSaysSo) {
    CreateSettings();
    StartDebugCapture();
    DestroySettings();
    EXPECT_EQ(U16(StopDebugCapture()), u"WSettings destroyed\n");
    EXPECT_EQ(TheSettings, nullptr);
    StartDebugCapture();
    DestroySettings();
    EXPECT_EQ(U16(StopDebugCapture()), u"");
}

TEST_F(Settings, SetDefaultsLeavesRectanglesAndTheSaveChoicesAlone) {
    WSettings& s = *CreateSettings();
    s.WindowRect = WRect{1, 2, 3, 4};
    s.Centre = false;
    s.Scale = false;
    s.PenSize = 9;
    s.Template[4] = true;
    s.FolderSelectExecutable = MString(u"x");
    s.SetDefaults();
    ExpectRect(s.WindowRect, 1, 2, 3, 4);
    EXPECT_FALSE(s.Centre);
    EXPECT_FALSE(s.Scale);
    EXPECT_EQ(s.PenSize, 2);
    EXPECT_FALSE(s.Template[4]);
    EXPECT_TRUE(s.FolderSelectExecutable.IsEmpty());
}

TEST_F(Settings, ResetSaveChoicesOverridesTheFile) {
    WSettings& s = LoadFrom("MaxLinesPerCurve\t7\r\n");
    EXPECT_EQ(s.MaxLinesPerCurve, 7);
    s.Centre = false;
    s.Scale = false;
    s.ResetSaveChoices();
    EXPECT_TRUE(s.Centre);
    EXPECT_TRUE(s.Scale);
    EXPECT_EQ(s.MaxLinesPerCurve, 100);
}

TEST_F(Settings, TheFileIsNamedAfterTheProductInTheUsersFolder) {
    MString name = SettingsFileName();
    EXPECT_EQ(U16(name), U16(scratch::Text(Folder / "appdata" / "Brambleworks" / "Quillmere" /
                                           "Quillmere.txt")));
    EXPECT_TRUE(FolderExists(scratch::Text(Folder / "appdata" / "Brambleworks" / "Quillmere")));
}

// ---- Load

TEST_F(Settings, ValuesAreLimitedAtLoad) {
    WSettings& s = LoadFrom("PenSize\t0\r\nPointSize\t99\r\nSmooth\t-1\r\n");
    EXPECT_EQ(s.PenSize, 1);
    EXPECT_EQ(s.PointSize, 20);
    EXPECT_EQ(s.Smooth, 0);
    DestroySettings();
    WSettings& t = LoadFrom("PenSize\t99\r\nPointSize\t0\r\nSmooth\t5000\r\n");
    EXPECT_EQ(t.PenSize, 10);
    EXPECT_EQ(t.PointSize, 1);
    EXPECT_EQ(t.Smooth, 1000);
}

TEST_F(Settings, OtherNumbersAreTakenAsTheyAre) {
    WSettings& s = LoadFrom("GridSize\t-3\r\nDisplaySize\t0\r\nTreeType\t77\r\n"
                            "MaxLinesPerCurve\t100000\r\n");
    EXPECT_EQ(s.GridSize, -3);
    EXPECT_EQ(s.DisplaySize, 0);
    EXPECT_EQ(s.TreeType, 77);
    EXPECT_EQ(s.MaxLinesPerCurve, 100000);
}

TEST_F(Settings, AMissingValueGivesZeroFalseOrEmpty) {
    WSettings& s = LoadFrom("GridSize\r\nUseGrid\r\nShowHelpTexts\r\nShowWindow_Point\r\n"
                            "FolderOpenSketch\r\nPenSize\r\nPointSize\r\nSmooth\r\n"
                            "ColourBackground\t12\r\n");
    EXPECT_EQ(s.GridSize, 0);
    EXPECT_FALSE(s.UseGrid);
    EXPECT_FALSE(s.ShowHelpTexts);
    EXPECT_FALSE(s.ShowWindow_Point);
    EXPECT_TRUE(s.FolderOpenSketch.IsEmpty());
    EXPECT_EQ(s.PenSize, 1);   // 0, limited
    EXPECT_EQ(s.PointSize, 1); // 0, limited
    EXPECT_EQ(s.Smooth, 0);
    ExpectColour(s.ColourBackground, 12, 0, 0);
    EXPECT_TRUE(s.Loaded);
}

TEST_F(Settings, AnUnknownKeyLeavesTheOthersWorking) {
    WSettings& s = LoadFrom("PenSize\t4\r\nColourOfTheSky\t1\t2\t3\r\nUseGrid\tY\r\n"
                            "\r\n   \r\nGridSize\t25\r\n");
    EXPECT_EQ(s.PenSize, 4);
    EXPECT_TRUE(s.UseGrid);
    EXPECT_EQ(s.GridSize, 25);
    EXPECT_TRUE(s.Loaded);
}

TEST_F(Settings, KeysAreCaseSensitiveAndOnlyExactlyYIsTrue) {
    WSettings& s = LoadFrom("pensize\t4\r\nPENSIZE\t5\r\nPenSize \t6\r\nUseGrid\ty\r\n"
                            "ShowHelpTexts\tYes\r\nSaveSolid\tY\r\n");
    EXPECT_EQ(s.PenSize, 6); // the blank ends the token: the key is PenSize
    EXPECT_FALSE(s.UseGrid);
    EXPECT_FALSE(s.ShowHelpTexts);
    EXPECT_TRUE(s.SaveSolid);
}

TEST_F(Settings, ALaterRecordWins) {
    WSettings& s = LoadFrom("PenSize\t3\r\nPenSize\t5\r\n");
    EXPECT_EQ(s.PenSize, 5);
}

TEST_F(Settings, ColoursAreReadRedGreenBlue) {
    WSettings& s = LoadFrom("ColourGrid\t1\t2\t3\r\nColourGhost\t300\t-1\t256\r\n");
    ExpectColour(s.ColourGrid, 1, 2, 3);
    ExpectColour(s.ColourGhost, 44, 255, 0); // only the low byte of each value is kept
}

TEST_F(Settings, TemplateIndicesOutsideZeroToEightAreIgnored) {
    WSettings& s = LoadFrom("Template\t9\tY\r\nTemplate\t-1\tY\r\nTemplate\t0\tY\r\n"
                            "Template\t8\tY\r\nTemplate\t3\r\n");
    bool expected[TemplateCount] = {true, false, false, false, false, false, false, false, true};
    for (int32_t i = 0; i < TemplateCount; i++)
        EXPECT_EQ(s.Template[i], expected[i]) << i;
    DestroySettings();
    WSettings& t = LoadFrom("Template\t3\tY\r\nTemplate\t3\r\n"); // no value: false
    EXPECT_FALSE(t.Template[3]);
}

TEST_F(Settings, StringsAreReadWithTheirEscapes) {
    WSettings& s = LoadFrom("ExternalTracer\t\"C:\\Program Files\\potrace\\potrace.exe\"\r\n"
                            "FolderSelectExecutable\t\"a&#34;b<br />c\"\r\n");
    EXPECT_EQ(U16(s.ExternalTracer), u"C:\\Program Files\\potrace\\potrace.exe");
    EXPECT_EQ(U16(s.FolderSelectExecutable), u"a\"b\r\nc");
}

TEST_F(Settings, ARecordIsReadInAnyEncoding) {
    WSettings& s =
        LoadFrom(Utf16File(u"PenSize\t7\r\nFolderSelectExecutable\tD:\\\u00e9t\u00e9\u4e2d\r\n"));
    EXPECT_EQ(s.PenSize, 7);
    EXPECT_EQ(U16(s.FolderSelectExecutable), u"D:\\\u00e9t\u00e9\u4e2d");
    DestroySettings();
    WSettings& t = LoadFrom("\xef\xbb\xbfPenSize\t9\r\n");
    EXPECT_EQ(t.PenSize, 9);
}

// ---- Window rectangles at load

TEST_F(Settings, AWindowRectWithAWidthOf50IsWidenedTo200) {
    WSettings& s = LoadFrom("WindowRect\t100\t150\t700\t100\r\n"); // top, right, bottom, left
    ExpectRect(s.WindowRect, 100, 100, 300, 700);
}

TEST_F(Settings, RectanglesAreAtLeast200AndAtMostTheVirtualScreen) {
    WSettings& s = LoadFrom("WindowRect_Info\t10\t20\t15\t10\r\n"
                            "WindowRect_Mode\t0\t5000\t3000\t0\r\n");
    ExpectRect(s.WindowRect_Info, 10, 10, 210, 210);
    ExpectRect(s.WindowRect_Mode, 0, 0, 1920, 1080);
}

TEST_F(Settings, AWindowOfAMonitorThatIsGoneComesBack) {
    WSettings& s = LoadFrom("WindowRect\t-900\t-3000\t-400\t-3800\r\n"
                            "WindowRect_Element\t1200\t2600\t1500\t2400\r\n");
    ExpectRect(s.WindowRect, 0, 0, 800, 500);
    ExpectRect(s.WindowRect_Element, 0, 0, 200, 300);
}

TEST_F(Settings, ARectangleOverTheFarSideIsMovedBackInside) {
    WSettings& s = LoadFrom("WindowRect\t900\t2000\t1200\t1800\r\n"
                            "WindowRect_Info\t1079\t1919\t1379\t1719\r\n");
    ExpectRect(s.WindowRect, 1720, 780, 1920, 1080);
    ExpectRect(s.WindowRect_Info, 1719, 780, 1919, 1080);
}

TEST_F(Settings, FittingUsesTheVirtualScreenOfAllMonitors) {
    // A second monitor of 1280 by 1024 left of the primary one.
    Metrics.Virtual.Left = -1280;
    Metrics.Virtual.Top = -200;
    Metrics.Virtual.Width = 3200;
    Metrics.Virtual.Height = 1280;
    WSettings& s = LoadFrom("WindowRect\t-100\t-300\t500\t-1200\r\n"
                            "WindowRect_Mode\t-500\t-1300\t-100\t-1500\r\n"
                            "WindowRect_Info\t1000\t2100\t1400\t1900\r\n");
    ExpectRect(s.WindowRect, -1200, -100, -300, 500);
    ExpectRect(s.WindowRect_Mode, -1280, -200, -1080, 200);
    ExpectRect(s.WindowRect_Info, 1720, 680, 1920, 1080);
}

TEST_F(Settings, ExtremeNumbersStillGiveAWindowOnTheScreen) {
    WSettings& s =
        LoadFrom("WindowRect\t-2147483648\t2147483647\t2147483647\t-2147483648\r\n"
                 "WindowRect_Mode\t2147483647\t-2147483648\t-2147483648\t2147483647\r\n");
    ExpectRect(s.WindowRect, 0, 0, 1920, 1080);
    ExpectRect(s.WindowRect_Mode, 0, 0, 200, 200);
}

TEST_F(Settings, FitToVirtualScreenOnItsOwn) {
    ExpectRect(FitToVirtualScreen(WRect{10, 20, 1000, 900}), 10, 20, 1000, 900);
    ExpectRect(FitToVirtualScreen(WRect{1920, 1080, 0, 0}), 0, 0, 200, 200);
    ExpectRect(FitToVirtualScreen(WRect{500, 500, 400, 400}), 500, 500, 700, 700);
}

// ---- Which files are read

TEST_F(Settings, WithoutAFileTheDefaultsStandAndNothingIsLoaded) {
    WSettings& s = *CreateSettings();
    EXPECT_FALSE(s.Load());
    EXPECT_FALSE(s.Loaded);
    EXPECT_EQ(s.PenSize, 2);
}

TEST_F(Settings, AFolderInThePlaceOfTheFileIsNotRead) {
    fs::create_directories(FilePath());
    WSettings& s = *CreateSettings();
    EXPECT_FALSE(s.Load());
    EXPECT_FALSE(s.Loaded);
}

TEST_F(Settings, AnEmptyFileLeavesTheDefaultsAndIsRewrittenAtExit) {
    WSettings& s = LoadFrom("");
    EXPECT_TRUE(s.Loaded);
    EXPECT_EQ(s.PenSize, 2);
    EXPECT_TRUE(s.Save());
    EXPECT_GT(FileBytes().size(), 100u);
    EXPECT_EQ(FileBytes().substr(0, 2), std::string("\xff\xfe", 2));
}

TEST_F(Settings, AFileLockedByAnotherProgramSurvivesTheRunUnchanged) {
    std::string original = "PenSize\t9\r\nGridSize\t33\r\n";
    WriteFile(original);
    {
        ForeignLock lock(FilePath());
        ASSERT_TRUE(lock.Held());
        WSettings& s = *CreateSettings();
        EXPECT_FALSE(s.Load());
        EXPECT_FALSE(s.Loaded);
        EXPECT_EQ(s.PenSize, 2); // defaults stand
        EXPECT_EQ(s.GridSize, 10);
        s.PenSize = 5;
        EXPECT_FALSE(s.Save()); // skipped in silence
        EXPECT_EQ(Messages.Count, 0);
        SaveSettingsAtClose(WRect{1, 2, 300, 400}, nullptr, nullptr, nullptr);
        EXPECT_EQ(Messages.Count, 0);
    }
    // The lock is gone, and so is the program's chance to write: it was
    // never written.
    EXPECT_EQ(FileBytes(), original);
    EXPECT_FALSE(TheSettings->Save());
    EXPECT_EQ(FileBytes(), original);
}

// Random bytes hold no record the program knows, yet they are read to the
// end of the file: Loaded is set and the exit writes a proper file over them.
TEST_F(Settings, AFileOfRandomBytesGivesTheDefaultsAndIsReplacedAtExit) {
    std::mt19937 generator(20240601);
    std::string garbage;
    for (int i = 0; i < 4096; i++)
        garbage += char(generator() & 0xff);
    WSettings& s = LoadFrom(garbage);
    EXPECT_TRUE(s.Loaded);
    EXPECT_EQ(s.PenSize, 2);
    EXPECT_EQ(s.PointSize, 8);
    EXPECT_EQ(s.Smooth, 200);
    ExpectRect(s.WindowRect, 192, 108, 1728, 972);
    EXPECT_TRUE(s.Save());
    std::string written = FileBytes();
    EXPECT_NE(written, garbage);
    // The same bytes as a file written by a fresh object with defaults.
    DestroySettings();
    fs::remove(FilePath());
    ASSERT_TRUE(CreateSettings()->Save());
    EXPECT_EQ(written, FileBytes());
}

// ---- Save

TEST_F(Settings, AFirstRunWritesTheFile) {
    WSettings& s = *CreateSettings();
    EXPECT_FALSE(s.Load());
    EXPECT_FALSE(fs::exists(FilePath()));
    EXPECT_TRUE(s.Save());
    EXPECT_TRUE(fs::exists(FilePath()));
    EXPECT_EQ(Messages.Count, 0);
}

TEST_F(Settings, AWrittenFileReadsBackTheSameValues) {
    WSettings& s = *CreateSettings();
    s.WindowRect = WRect{10, 20, 1010, 820};
    s.WindowRect_Info = WRect{1500, 30, 1800, 630};
    s.WindowRect_Element = WRect{1500, 640, 1800, 1000};
    s.WindowRect_Mode = WRect{15, 300, 215, 700};
    s.ShowWindow_Point = false;
    s.ShowWindow_Element = true;
    s.ShowWindow_Mode = false;
    s.SaveSolid = true;
    s.SaveRoll = true;
    s.MaxLinesPerCurve = 37;
    s.FolderOpenSketch = MString(u"D:\\My Sketches\\\u4e2d\u6587");
    s.FolderSaveSketch = MString(u"E:\\out");
    s.FolderSelectPicture = MString(u"F:\\pic \"quoted\"");
    s.FolderSelectExecutable = MString(u"G:\\two\r\nlines");
    s.ColourBackground.r = 1, s.ColourBackground.g = 2, s.ColourBackground.b = 3;
    s.ColourGrid.r = 4, s.ColourGrid.g = 5, s.ColourGrid.b = 6;
    s.ColourInfo.r = 7, s.ColourInfo.g = 8, s.ColourInfo.b = 9;
    s.ColourSketch.r = 10, s.ColourSketch.g = 11, s.ColourSketch.b = 12;
    s.ColourBezier.r = 13, s.ColourBezier.g = 14, s.ColourBezier.b = 15;
    s.ColourRoll.r = 16, s.ColourRoll.g = 17, s.ColourRoll.b = 18;
    s.ColourGhost.r = 19, s.ColourGhost.g = 20, s.ColourGhost.b = 21;
    s.PenSize = 7;
    s.PointSize = 13;
    s.GridSize = 4;
    s.UseGrid = true;
    s.DisplaySize = 150;
    s.ShowHelpTexts = false;
    s.ExternalTracer = MString(u"C:\\Program Files\\potrace\\potrace.exe");
    bool templates[TemplateCount] = {true, false, true, true, false, false, true, false, true};
    for (int32_t i = 0; i < TemplateCount; i++)
        s.Template[i] = templates[i];
    s.Smooth = 650;
    s.TreeType = 2;
    ASSERT_TRUE(s.Save());

    WSettings saved = s;
    DestroySettings();
    WSettings& r = *CreateSettings();
    ASSERT_TRUE(r.Load());
    ExpectRect(r.WindowRect, 10, 20, 1010, 820);
    ExpectRect(r.WindowRect_Info, 1500, 30, 1800, 630);
    ExpectRect(r.WindowRect_Element, 1500, 640, 1800, 1000);
    ExpectRect(r.WindowRect_Mode, 15, 300, 215, 700);
    EXPECT_EQ(r.ShowWindow_Point, saved.ShowWindow_Point);
    EXPECT_EQ(r.ShowWindow_Element, saved.ShowWindow_Element);
    EXPECT_EQ(r.ShowWindow_Mode, saved.ShowWindow_Mode);
    EXPECT_EQ(r.SaveSolid, saved.SaveSolid);
    EXPECT_EQ(r.SaveRoll, saved.SaveRoll);
    EXPECT_EQ(r.MaxLinesPerCurve, 37);
    EXPECT_EQ(U16(r.FolderOpenSketch), U16(saved.FolderOpenSketch));
    EXPECT_EQ(U16(r.FolderSaveSketch), U16(saved.FolderSaveSketch));
    EXPECT_EQ(U16(r.FolderSelectPicture), U16(saved.FolderSelectPicture));
    EXPECT_EQ(U16(r.FolderSelectExecutable), U16(saved.FolderSelectExecutable));
    ExpectColour(r.ColourBackground, 1, 2, 3);
    ExpectColour(r.ColourGrid, 4, 5, 6);
    ExpectColour(r.ColourInfo, 7, 8, 9);
    ExpectColour(r.ColourSketch, 10, 11, 12);
    ExpectColour(r.ColourBezier, 13, 14, 15);
    ExpectColour(r.ColourRoll, 16, 17, 18);
    ExpectColour(r.ColourGhost, 19, 20, 21);
    EXPECT_EQ(r.PenSize, 7);
    EXPECT_EQ(r.PointSize, 13);
    EXPECT_EQ(r.GridSize, 4);
    EXPECT_TRUE(r.UseGrid);
    EXPECT_EQ(r.DisplaySize, 150);
    EXPECT_FALSE(r.ShowHelpTexts);
    EXPECT_EQ(U16(r.ExternalTracer), U16(saved.ExternalTracer));
    for (int32_t i = 0; i < TemplateCount; i++)
        EXPECT_EQ(r.Template[i], templates[i]) << i;
    EXPECT_EQ(r.Smooth, 650);
    EXPECT_EQ(r.TreeType, 2);
    EXPECT_TRUE(r.Loaded);

    // And written again, the file is the same to the byte.
    std::string first = FileBytes();
    ASSERT_TRUE(r.Save());
    EXPECT_EQ(FileBytes(), first);
}

// The golden file names a documents folder of its own; the test's documents
// folder lies in its scratch folder instead, so that test processes running
// at once never share a folder, and the golden text is read with it.
TEST_F(Settings, ADefaultFileHasExactlyTheseBytes) {
#ifdef _WIN32
    const char* golden = "tests/data/settings/default_win.txt";
    MString program(u"C:\\Program Files\\Quillmere");
    const std::u16string goldenDocuments = u"C:\\quillmere-golden\\Documents";
#else
    const char* golden = "tests/data/settings/default_posix.txt";
    MString program(u"/opt/Brambleworks Quillmere");
    const std::u16string goldenDocuments = u"/tmp/quillmere-golden/Documents";
#endif
    MString documents = scratch::Text(Folder / "golden" / "Documents");
    ASSERT_EQ(documents.Find(MString(u" ")), -1) << "the golden record is not quoted";
    SetFolderOverride(FolderProgram, program);
    SetFolderOverride(FolderDocuments, documents);
    WSettings& s = *CreateSettings();
    ASSERT_TRUE(s.Save());
    std::string expected = scratch::ReadBytes(SourceFile(golden));
    ASSERT_FALSE(expected.empty());
    std::string from = Utf16File(u"FolderSaveSketch\t" + goldenDocuments).substr(2);
    std::string to = Utf16File(u"FolderSaveSketch\t" + U16(documents)).substr(2);
    size_t at = expected.find(from);
    ASSERT_NE(at, std::string::npos) << "the golden file names its documents folder";
    expected.replace(at, from.size(), to);
    EXPECT_EQ(FileBytes(), expected);
}

TEST_F(Settings, AFailedWriteSaysCouldNotOpen) {
    fs::create_directories(FilePath()); // a folder where the file should go
    WSettings& s = *CreateSettings();
    EXPECT_FALSE(s.Save());
    ASSERT_EQ(Messages.Count, 1);
    EXPECT_EQ(U16(Texts[0]), U16(MString(u"Could not open:\n\n\"") + SettingsFileName() + "\""));
    EXPECT_EQ(Icons[0], IconError);
}

TEST_F(Settings, AFileThatExistsIsOverwrittenOnlyOnceItWasRead) {
    WriteFile("PenSize\t4\r\n");
    WSettings& s = *CreateSettings(); // never loaded
    EXPECT_FALSE(s.Save());
    EXPECT_EQ(FileBytes(), "PenSize\t4\r\n");
    ASSERT_TRUE(s.Load());
    EXPECT_TRUE(s.Save());
    EXPECT_NE(FileBytes(), "PenSize\t4\r\n");
}

// ---- Closing the main window

TEST_F(Settings, ClosingStoresTheOpenWindowsAndSaves) {
    WSettings& s = *CreateSettings();
    WRect main{100, 50, 1100, 850}, point{1200, 60, 1500, 500}, mode{10, 400, 110, 800};
    s.WindowRect_Element = WRect{1200, 600, 1500, 900}; // written when it closed
    SaveSettingsAtClose(main, &point, nullptr, &mode);
    ExpectRect(s.WindowRect, 100, 50, 1100, 850);
    ExpectRect(s.WindowRect_Info, 1200, 60, 1500, 500);
    ExpectRect(s.WindowRect_Element, 1200, 600, 1500, 900);
    ExpectRect(s.WindowRect_Mode, 10, 400, 110, 800);
    EXPECT_TRUE(s.ShowWindow_Point);
    EXPECT_FALSE(s.ShowWindow_Element);
    EXPECT_TRUE(s.ShowWindow_Mode);
    ASSERT_TRUE(fs::exists(FilePath()));

    DestroySettings();
    WSettings& r = *CreateSettings();
    ASSERT_TRUE(r.Load());
    ExpectRect(r.WindowRect, 100, 50, 1100, 850);
    ExpectRect(r.WindowRect_Element, 1200, 600, 1500, 900);
    EXPECT_TRUE(r.ShowWindow_Point);
    EXPECT_FALSE(r.ShowWindow_Element);
    EXPECT_TRUE(r.ShowWindow_Mode);
}

TEST_F(Settings, ClosingWithoutSettingsDoesNothing) {
    SaveSettingsAtClose(WRect{}, nullptr, nullptr, nullptr);
    EXPECT_FALSE(fs::exists(FilePath()));
    EXPECT_EQ(Messages.Count, 0);
}

// ---- The menu

TEST_F(Settings, TheGridMenuItemIsCheckedByUseGrid) {
    WSettings& s = *CreateSettings();
    s.UseGrid = true;
    RefreshMenu();
    EXPECT_TRUE(AppliedMenuState().Grid);
    s.UseGrid = false;
    RefreshMenu();
    EXPECT_FALSE(AppliedMenuState().Grid);
}

// ---- Settings files of every encoding from the corpus, whole and broken

TEST_F(Settings, SettingsFilesOfEveryEncodingLoad) {
    const struct {
        const char* Name;
        const char16_t* Folder;
    } files[] = {
        // The 8-bit file has a question mark where the euro sign had no byte.
        {"settings-8bit.txt", u"/tmp/Dokumente-\u00e9t\u00e9-?/Brambleworks/Quillmere"},
        {"settings-utf16le.txt", u"/tmp/Dokumente-\u00e9t\u00e9-\u20ac/Brambleworks/Quillmere"},
        {"settings-utf16be.txt", u"/tmp/Dokumente-\u00e9t\u00e9-\u20ac/Brambleworks/Quillmere"},
        {"settings-utf8.txt", u"/tmp/Dokumente-\u00e9t\u00e9-\u20ac/Brambleworks/Quillmere"}};
    for (const auto& file : files) {
        WSettings& s = LoadFrom(foreign::Bytes(file.Name));
        EXPECT_TRUE(s.Loaded) << file.Name;
        EXPECT_EQ(U16(s.FolderSaveSketch), std::u16string(file.Folder)) << file.Name;
        EXPECT_EQ(U16(s.FolderOpenSketch), u"/opt/Brambleworks Quillmere/Media/Sketches")
            << file.Name;
        EXPECT_EQ(s.PenSize, 2) << file.Name;
        EXPECT_EQ(s.PointSize, 8) << file.Name;
        EXPECT_EQ(s.Smooth, 200) << file.Name;
        DestroySettings();
    }
}

// Cut at ten places and with flipped bytes: the values stay within their
// limits, reading leaves the file alone, and a file that was read to its
// end is written whole again at exit.
TEST_F(Settings, BrokenSettingsFilesStayWithinTheLimits) {
    for (const char* name : {"settings-8bit.txt", "settings-utf16le.txt", "settings-utf16be.txt",
                             "settings-utf8.txt"}) {
        for (const foreign::BrokenCopy& copy : foreign::BrokenCopies(name)) {
            WSettings& s = LoadFrom(copy.Bytes);
            EXPECT_GE(s.PenSize, 1) << copy.Name;
            EXPECT_LE(s.PenSize, 10) << copy.Name;
            EXPECT_GE(s.PointSize, 1) << copy.Name;
            EXPECT_LE(s.PointSize, 20) << copy.Name;
            EXPECT_GE(s.Smooth, 0) << copy.Name;
            EXPECT_LE(s.Smooth, 1000) << copy.Name;
            EXPECT_EQ(FileBytes(), copy.Bytes) << copy.Name;
            EXPECT_EQ(Messages.Count, 0) << copy.Name;
            if (s.Loaded) {
                int32_t pen = s.PenSize, point = s.PointSize;
                EXPECT_TRUE(s.Save()) << copy.Name;
                DestroySettings();
                WSettings& again = LoadFrom(FileBytes());
                EXPECT_EQ(again.PenSize, pen) << copy.Name;
                EXPECT_EQ(again.PointSize, point) << copy.Name;
            }
            DestroySettings();
        }
    }
}
