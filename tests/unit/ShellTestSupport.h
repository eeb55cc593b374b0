#pragma once
// The fixture of the shell's tests: a user at the main window with the one
// sketch and its ring, the recorder and the view, settings of their defaults
// (PointSize 8, PenSize 2, GridSize 10, grid off) and folders of a scratch
// tree. Message boxes, file prompts, modal dialogs and web pages are
// scripted; a modal dialog that is given no answer is cancelled. The view is
// 800 by 600 pixels at zoom 1 in the front view with the pivot at the
// origin, so the world point (x, y, z) lies on the client pixel
// (400 + x, 300 - y).

#include "SketchTestSupport.h"

#include "ScratchFolder.h"

#include "dialogs/Dialog.h"
#include "drawing/FilePrompt.h"
#include "eps/EpsWriter.h"
#include "foundation/Platform.h"
#include "shell/Background.h"
#include "shell/Commands.h"
#include "shell/Input.h"
#include "shell/Shell.h"
#include "shell/WSettings.h"
#include "shell/Window.h"
#include "sketch/WRecording.h"
#include "sketch/WUndoRing.h"
#include "view/WView.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

inline MPoint2 Screen(float x, float y) {
    return MPoint2{400 + x, 300 - y};
}

inline void ExpectPoint(const MPoint3& p, float x, float y, float z, float tolerance = 1e-4f) {
    EXPECT_NEAR(p.x, x, tolerance);
    EXPECT_NEAR(p.y, y, tolerance);
    EXPECT_NEAR(p.z, z, tolerance);
}

// The 8-bit text of a file written from an MString of 7-bit characters.
inline std::string Bytes(const MString& text) {
    std::string bytes;
    for (int32_t i = 0; i < text.Length; i++)
        bytes += char(text.Text[i]);
    return bytes;
}

// A flat EPS file of this system with three points, (0, 0), (100, 0) and
// (100, 50), that asks for neither centring nor scaling, so it loads as
// written.
inline std::string ThreePointEps() {
    const char* lines[] = {"%!PS-Adobe-3.0 EPSF-3.0",
                           "%%Creator: Brambleworks Quillmere",
                           "%%Cinderlane Centre N",
                           "%%Cinderlane Scale N",
                           "%%LanguageLevel: 2",
                           "%%BoundingBox: -10 -10 110 60",
                           "%%Pages: 1",
                           "%%EndComments",
                           "%Page: 1 1",
                           "gsave",
                           "1 1 scale",
                           "0 0 moveto",
                           "100 0 lineto",
                           "100 50 lineto",
                           "0 setgray",
                           "2 setlinewidth stroke",
                           "grestore",
                           "%%EOF"};
    std::string text;
    for (const char* line : lines)
        text += std::string(line) + "\r\n";
    return text;
}

class ShellFixture : public ::testing::Test {
  protected:
    WSettings settings;
    WSettings* oldSettings = nullptr;
    scratch::fs::path Folder;

    MString MessageTexts[16];
    MessageIcon MessageIcons[16] = {};
    MessageAnswer MessageAnswers[16] = {};
    MessageButtons MessageButtonList[16] = {};
    MessageScript Messages;
    MString PromptAnswers[16];
    FilePromptScript Prompts;
    WebPageScript Pages;
    WDialogAnswer DialogAnswers[16];
    DialogScript Dialogs;
    int32_t depth = 0; // the ring's depth right after Load

    void SetUp() override {
        oldSettings = TheSettings;
        TheSettings = &settings;
        Folder = scratch::Fresh(std::string("shell-") +
                                ::testing::UnitTest::GetInstance()->current_test_info()->name());
        SetFolderOverride(FolderAppData, scratch::Text(Folder / "appdata"));
        SetFolderOverride(FolderDocuments, scratch::Text(Folder / "documents"));
        Messages.Texts = MessageTexts;
        Messages.Icons = MessageIcons;
        Messages.Buttons = MessageButtonList;
        Messages.Capacity = 16;
        Messages.Answers = MessageAnswers;
        TheMessageScript = &Messages;
        InstallModelHooks();
        if (TheView) DestroyView();
        if (TheRecording) DestroyRecording();
        if (TheSketch) DestroySketch();
        CreateSketch();
        CreateRecording();
        CreateView();
        Messages.Count = 0;
        TheView->SetViewport(800, 600);
        TheView->Zoom = 1;
        TheView->Update();
        TheMode = ModeDraw;
        TheFileName = MString();
        TheLeftDown = TheRightDown = false;
        TheLastMouse = MPoint2{};
        TheMouseEnabled = true;
        TheFilePromptScript = &Prompts;
        TheWebPageScript = &Pages;
        Dialogs.Answers = DialogAnswers;
        TheDialogScript = &Dialogs;
        SetMainWindowText(MString());
        ApplyMenuState(WMenuState());
    }
    void TearDown() override {
        ReleaseBackground();
        DestroyView();
        DestroyRecording();
        DestroySketch();
        TheMessageScript = nullptr;
        TheFilePromptScript = nullptr;
        TheWebPageScript = nullptr;
        TheDialogScript = nullptr;
        TheSettings = oldSettings;
        TheMode = ModeDraw;
        TheFileName = MString();
        TheLeftDown = TheRightDown = false;
        TheMouseEnabled = true;
        SetFolderOverride(FolderAppData, MString());
        SetFolderOverride(FolderDocuments, MString());
        scratch::Remove(Folder);
    }

    WSketch& S() { return *TheSketch; }

    // The next answer of a message box.
    void Answer(MessageAnswer answer) { MessageAnswers[Messages.AnswerCount++] = answer; }
    // The next answer of a file prompt; empty is a cancel.
    void Prompt(const MString& path) {
        PromptAnswers[Prompts.AnswerCount++] = path;
        Prompts.Answers = PromptAnswers;
    }
    // The next answer of a modal dialog: the steps (kept by the caller), then
    // a click on ending (1 OK, 2 Cancel, 0 the close box).
    void AnswerDialog(int32_t ending, const WDialogStep* steps = nullptr, int32_t stepCount = 0) {
        DialogAnswers[Dialogs.AnswerCount++] = WDialogAnswer{steps, stepCount, ending};
    }
    std::u16string Title() const { return Text(MainWindowText()); }
    std::u16string LastMessage() const {
        return Messages.Count > 0 ? Text(MessageTexts[Messages.Count - 1]) : std::u16string();
    }

    // A file in the test's folder with these bytes; its path as the system's
    // string.
    MString WriteFile(const std::string& name, const std::string& bytes) {
        scratch::WriteBytes(Folder / name, bytes);
        return scratch::Text(Folder / name);
    }
    MString PathOf(const std::string& name) { return scratch::Text(Folder / name); }
    std::string ReadFile(const MString& path) { return scratch::ReadBytes(scratch::Path(path)); }
    bool Exists(const MString& path) { return scratch::fs::exists(scratch::Path(path)); }

    // The records become the sketch and its present undo state, with
    // nothing selected and the sketch unchanged since its last save.
    void Load(const std::vector<WSketchPoint>& records) {
        Fill(*TheSketch, records);
        TheSketch->Current = -1;
        TheSketch->CurrentPart = 0;
        TheSketch->Commit();
        TheSketch->Modified = 0;
        RefreshTitle();
        depth = TheSketch->Undo->Depth;
    }
    // Undo steps stored since Load.
    int32_t Steps() const { return TheSketch->Undo->Depth - depth; }
    void Select(int32_t index, int32_t part) {
        TheSketch->Current = index;
        TheSketch->CurrentPart = part;
    }
    // The same sketch, changed by an edit (a key's scaling) and so Modified.
    void Change() {
        TheSketch->Scale(2);
        ASSERT_EQ(TheSketch->Modified, 1);
    }
};

// A closed square of side 100 at the origin: records 0 and 4 are twins.
inline std::vector<WSketchPoint> ClosedSquare(float z = 0) {
    return {Record(0, 0, z, KindMove), Record(100, 0, z, KindLine), Record(100, 100, z, KindLine),
            Record(0, 100, z, KindLine), Record(0, 0, z, KindLine)};
}

// An open polyline of three points: (0, 0), (100, 0), (100, 100).
inline std::vector<WSketchPoint> OpenCorner() {
    return {Record(0, 0, 0, KindMove), Record(100, 0, 0, KindLine), Record(100, 100, 0, KindLine)};
}
