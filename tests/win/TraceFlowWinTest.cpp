// The external tracer under Wine: a stand-in potrace.exe started through the
// command interpreter and waited for, with the exact command line it got,
// the picture it was given, the EPS it wrote loaded into the sketch, and the
// temporary files deleted afterwards.

#include "eps/TraceFlow.h"

#include "drawing/MPicture.h"
#include "foundation/Folders.h"
#include "foundation/MString.h"
#include "foundation/Platform.h"
#include "foundation/Process.h"
#include "shell/WSettings.h"
#include "sketch/WRecording.h"
#include "sketch/WSketch.h"
#include "view/WView.h"

#include "tests/unit/ScratchFolder.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <objbase.h>

#include <fstream>
#include <sstream>
#include <string>

namespace {

// A path of the build machine as Wine sees it: drive Z: is the root.
std::string WinePath(std::string path) {
    for (char& c : path)
        if (c == '/') c = '\\';
    return "Z:" + path;
}

MString Wide(const std::string& text) {
    MString result;
    result.AssignNarrow(text.c_str(), 65001);
    return result;
}

std::string Narrow(const MString& text) {
    std::string bytes;
    for (int32_t i = 0; i < text.Length; i++)
        bytes += char(text.Text[i]);
    return bytes;
}

std::string ReadAll(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::stringstream text;
    text << in.rdbuf();
    return text.str();
}

class TraceFlowWin : public ::testing::Test {
  protected:
    WSettings Settings;
    MessageScript Messages;
    MString Texts[4];
    MessageIcon Icons[4] = {};
    scratch::fs::path Folder;
    std::string StandIn = WinePath(POTRACE_STANDIN);
    std::string StandInFolder = StandIn.substr(0, StandIn.find_last_of('\\') + 1);

    bool Com = false;

    void SetUp() override {
        Com = SUCCEEDED(CoInitialize(nullptr)); // the picture decoders
        Messages.Texts = Texts;
        Messages.Icons = Icons;
        Messages.Capacity = 4;
        TheMessageScript = &Messages;
        TheSettings = &Settings;
        Folder = scratch::Fresh("trace-external");
        SetFolderOverride(FolderAppData, scratch::Text(Folder));
        CreateSketch();
        CreateRecording();
        CreateView();
        TheView->SetViewport(800, 600);
        DeleteFileAt(Wide(StandInFolder + "arguments.txt"));
        DeleteFileAt(Wide(StandInFolder + "given.bmp"));
    }
    void TearDown() override {
        DestroyView();
        DestroyRecording();
        DestroySketch();
        SetFolderOverride(FolderAppData, MString());
        TheSettings = nullptr;
        TheMessageScript = nullptr;
        scratch::Remove(Folder);
        if (Com) CoUninitialize();
    }
};

} // namespace

TEST_F(TraceFlowWin, StandInIsRunWithTheCommandAndItsOutputLoaded) {
    Settings.ExternalTracer = Wide(StandIn);
    MString picture = Wide(WinePath(TRACER_PICTURES "/logo.png"));
    ASSERT_TRUE(TraceExternal(picture));

    MString temp = TraceTempFolder();
    MString eps = JoinPath(temp, u"temp.eps"), bmp = JoinPath(temp, u"temp.bmp");
    std::string recorded = ReadAll(
        std::string(POTRACE_STANDIN).substr(0, std::string(POTRACE_STANDIN).find_last_of('/') + 1) +
        "arguments.txt");
    // The command interpreter strips the outer quotes and starts the
    // program with the command text as its command line.
    EXPECT_EQ(recorded, Narrow(TraceCommand(Settings.ExternalTracer, eps, bmp)) + "\n-c\n-q\n-o\n" +
                            Narrow(eps) + "\n" + Narrow(bmp) + "\n");
    // The EPS of three points, loaded as written.
    ASSERT_EQ(TheSketch->PointCount, 3);
    EXPECT_FLOAT_EQ(TheSketch->Points[2].Position.x, 100);
    EXPECT_FLOAT_EQ(TheSketch->Points[2].Position.y, 50);
    // Both temporary files are gone, their folder stays.
    EXPECT_FALSE(PathExists(eps));
    EXPECT_FALSE(PathExists(bmp));
    EXPECT_TRUE(FolderExists(temp));
    EXPECT_EQ(Messages.Count, 0);

    // The picture went as black on white.
    MPicture given;
    ASSERT_TRUE(given.Load(Wide(StandInFolder + "given.bmp")));
    EXPECT_EQ(given.Width, 60u);
    EXPECT_EQ(ReadPixel(given.PixelAddress(12, 12), given.Format).r, 0);
    EXPECT_EQ(ReadPixel(given.PixelAddress(20, 20), given.Format).r, 255);
    EXPECT_EQ(ReadPixel(given.PixelAddress(2, 2), given.Format).g, 255);
}

TEST_F(TraceFlowWin, RefusedCommandStartsNothing) {
    std::string marker = Narrow(scratch::Text(Folder / "marker.txt"));
    EXPECT_FALSE(RunCommand(Wide("del \"" + marker + "\" & echo x > \"" + marker + "\"")));
    EXPECT_FALSE(PathExists(Wide(marker)));
    EXPECT_TRUE(RunCommand(Wide("echo x > \"" + marker + "\"")));
    EXPECT_TRUE(PathExists(Wide(marker)));
}
