// The main window's procedure turning real messages into commands, keys,
// gestures and drops: WM_COMMAND, WM_CHAR, WM_KEYDOWN, the mouse with the
// cursor read from the system, WM_MOUSEWHEEL, WM_DROPFILES and WM_CLOSE,
// each checked by the window's own title.

#include "foundation/MString.h"
#include "foundation/Platform.h"
#include "resources/resource.h"
#include "shell/Commands.h"
#include "shell/Shell.h"
#include "shell/WSettings.h"
#include "shell/Window.h"
#include "shell/WindowProc_win.h"
#include "sketch/WRecording.h"
#include "sketch/WSketch.h"
#include "sketch/WUndoRing.h"
#include "view/WView.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <shellapi.h>
#include <shlobj.h>

#include <cstring>
#include <string>
#include <vector>

namespace {

const wchar_t* const TestClass = L"QuillmereCommandsWinTest";

class CommandsWin : public ::testing::Test {
  protected:
    HWND Window = nullptr;
    WSettings Settings;
    MString Texts[8];
    MessageIcon Icons[8] = {};
    MessageAnswer Answers[8] = {};
    MessageScript Messages;
    WebPageScript Pages;

    void SetUp() override {
        WNDCLASSEXW windowClass = {};
        windowClass.cbSize = sizeof windowClass;
        windowClass.style = CS_VREDRAW | CS_HREDRAW | CS_DBLCLKS;
        windowClass.lpfnWndProc = MainWindowProc;
        windowClass.hInstance = GetModuleHandleW(nullptr);
        windowClass.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
        windowClass.lpszMenuName = MAKEINTRESOURCEW(IDR_MAINMENU);
        windowClass.lpszClassName = TestClass;
        RegisterClassExW(&windowClass);
        Messages.Texts = Texts;
        Messages.Icons = Icons;
        Messages.Capacity = 8;
        Messages.Answers = Answers;
        TheMessageScript = &Messages;
        TheWebPageScript = &Pages;
        TheSettings = &Settings;
        InstallModelHooks(); // as the start-up does before the model is made
        CreateSketch();
        CreateRecording();
        CreateView();
        Messages.Count = 0;
        Window = CreateWindowExW(0, TestClass, L"Quillmere", WS_OVERLAPPEDWINDOW, 100, 100, 640,
                                 480, nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
        ASSERT_NE(Window, nullptr);
        TheMainWindow = Window;
        DragAcceptFiles(Window, TRUE);
        ShowWindow(Window, SW_SHOWNORMAL);
        UpdateWindow(Window);
        RECT client = {};
        GetClientRect(Window, &client);
        TheView->SetViewport(float(client.right), float(client.bottom));
        TheView->Zoom = 1;
        TheView->Update();
        TheMode = ModeDraw;
        TheFileName = MString();
        Pump();
        RefreshTitle();
        RefreshMenu();
    }

    void TearDown() override {
        if (Window && IsWindow(Window)) DestroyWindow(Window);
        Pump();
        TheMainWindow = nullptr;
        DestroyView();
        DestroyRecording();
        DestroySketch();
        TheSettings = nullptr;
        TheMessageScript = nullptr;
        TheWebPageScript = nullptr;
        TheMode = ModeDraw;
        TheFileName = MString();
        TheLeftDown = TheRightDown = false;
    }

    void Pump() {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            if (message.message == WM_QUIT) continue;
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }

    std::u16string Title() {
        wchar_t text[256] = {};
        GetWindowTextW(Window, text, 256);
        return std::u16string(reinterpret_cast<const char16_t*>(text));
    }
    void Command(UINT id) { SendMessageW(Window, WM_COMMAND, MAKEWPARAM(id, 0), 0); }
    void Char(wchar_t c) { SendMessageW(Window, WM_CHAR, c, 1); }
    // The pointer at a client pixel, where the procedure reads it.
    void PointerAt(int x, int y) {
        POINT point = {x, y};
        ClientToScreen(Window, &point);
        SetCursorPos(point.x, point.y);
    }
    // A mouse message with the pointer moved there first; the message's
    // own coordinates are deliberately wrong, since the procedure reads the
    // cursor itself.
    void Mouse(UINT message, int x, int y, WPARAM buttons) {
        PointerAt(x, y);
        SendMessageW(Window, message, buttons, MAKELPARAM(1, 1));
    }
    // A sketch of two points from (0, 0) to (100, 0), unchanged since loaded.
    void TwoPoints() {
        WSketch& sketch = *TheSketch;
        sketch.Points.SetCount(2);
        sketch.PointCount = 2;
        sketch.Points[0] = WSketchPoint();
        sketch.Points[1] = WSketchPoint();
        sketch.Points[1].Position = MPoint3{100, 0, 0};
        sketch.Points[1].Kind = KindLine;
        sketch.Commit();
        sketch.Modified = 0;
        RefreshTitle();
    }
};

// A drop of these files as the shell hands it to the window: a DROPFILES
// block followed by the wide names, each ending in a zero, and one more zero.
HDROP MakeDrop(const std::vector<std::wstring>& files) {
    size_t characters = 1;
    for (const std::wstring& file : files)
        characters += file.size() + 1;
    HGLOBAL memory = GlobalAlloc(GHND, sizeof(DROPFILES) + characters * sizeof(wchar_t));
    DROPFILES* drop = static_cast<DROPFILES*>(GlobalLock(memory));
    drop->pFiles = sizeof(DROPFILES);
    drop->fWide = TRUE;
    wchar_t* names = reinterpret_cast<wchar_t*>(reinterpret_cast<char*>(drop) + sizeof(DROPFILES));
    for (const std::wstring& file : files) {
        std::memcpy(names, file.c_str(), (file.size() + 1) * sizeof(wchar_t));
        names += file.size() + 1;
    }
    *names = 0;
    GlobalUnlock(memory);
    return static_cast<HDROP>(memory);
}

std::wstring TempFile(const wchar_t* name, const std::string& bytes) {
    wchar_t folder[MAX_PATH] = {};
    GetTempPathW(MAX_PATH, folder);
    std::wstring path = std::wstring(folder) + name;
    HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    DWORD written = 0;
    WriteFile(file, bytes.data(), DWORD(bytes.size()), &written, nullptr);
    CloseHandle(file);
    return path;
}

std::string FlatEps() {
    const char* lines[] = {"%!PS-Adobe-3.0 EPSF-3.0",
                           "%%Cinderlane Centre N",
                           "%%Cinderlane Scale N",
                           "0 0 moveto",
                           "100 0 lineto",
                           "100 50 lineto",
                           "0 setgray",
                           "2 setlinewidth stroke",
                           "%%EOF"};
    std::string text;
    for (const char* line : lines)
        text += std::string(line) + "\r\n";
    return text;
}

} // namespace

// Every command of the table stands in the menu under its id with its text.
TEST_F(CommandsWin, EveryCommandIsAMenuItemWithItsText) {
    HMENU menu = GetMenu(Window);
    ASSERT_NE(menu, nullptr);
    for (int32_t i = 0; i < CommandCount; i++) {
        wchar_t text[128] = {};
        ASSERT_GT(GetMenuStringW(menu, UINT(Commands[i].Id), text, 128, MF_BYCOMMAND), 0)
            << Commands[i].Id;
        EXPECT_EQ(std::u16string(reinterpret_cast<const char16_t*>(text)),
                  std::u16string(Commands[i].MenuText))
            << Commands[i].Id;
    }
}

TEST_F(CommandsWin, ModeCommandsAndKeysReachTheTitleAndTheMenu) {
    EXPECT_EQ(Title(), u"Quillmere - Untitled (0 points) [DRAW FREEHAND]");
    Command(IDM_EDITROLL);
    EXPECT_EQ(Title(), u"Quillmere - Untitled (0 points) [EDIT ROLL]");
    EXPECT_TRUE(GetMenuState(GetMenu(Window), IDM_EDITROLL, MF_BYCOMMAND) & MF_CHECKED);
    Command(IDM_DRAWFREEHAND);
    EXPECT_EQ(Title(), u"Quillmere - Untitled (0 points) [DRAW FREEHAND]");
    Command(IDM_DRAWFREEHAND);
    EXPECT_EQ(Title(), u"Quillmere - Untitled (0 points) [EDIT SKETCH]");
    Char(L'd');
    EXPECT_EQ(Title(), u"Quillmere - Untitled (0 points) [DRAW FREEHAND]");
    Char(L'R');
    EXPECT_EQ(Title(), u"Quillmere - Untitled (0 points) [EDIT ROLL]");
    Char(L'E');
    EXPECT_EQ(Title(), u"Quillmere - Untitled (0 points) [EDIT SKETCH]");
    EXPECT_TRUE(GetMenuState(GetMenu(Window), IDM_EDITSKETCH, MF_BYCOMMAND) & MF_CHECKED);
}

TEST_F(CommandsWin, CharacterKeysAndCommandsEditTheSketch) {
    TwoPoints();
    EXPECT_EQ(Title(), u"Quillmere - Untitled (2 points) [DRAW FREEHAND]");
    Char(L'+');
    EXPECT_EQ(Title(), u"Quillmere - Untitled * (2 points) [DRAW FREEHAND]");
    EXPECT_EQ(TheSketch->Points[1].Position.x, float(100 * 1.1));
    Command(IDM_UNDO);
    EXPECT_EQ(TheSketch->Points[1].Position.x, 100.0f);
    Command(IDM_FLIPHORIZONTAL);
    EXPECT_EQ(TheSketch->Points[1].Position.x, -100.0f);
    Answers[0] = AnswerNo; // to the question about the changed sketch
    Messages.AnswerCount = 1;
    Command(IDM_NEW);
    EXPECT_EQ(Title(), u"Quillmere - Untitled (0 points) [DRAW FREEHAND]");
}

TEST_F(CommandsWin, DeleteKeyRemovesTheSelectedPointInTheEditMode) {
    TwoPoints();
    Char(L'e');
    TheSketch->Current = 1;
    TheSketch->CurrentPart = 0;
    SendMessageW(Window, WM_KEYDOWN, VK_INSERT, 0);
    EXPECT_EQ(TheSketch->PointCount, 2) << "only Delete";
    SendMessageW(Window, WM_KEYDOWN, VK_DELETE, 0);
    EXPECT_EQ(Title(), u"Quillmere - Untitled * (0 points) [EDIT SKETCH]");
}

TEST_F(CommandsWin, StrokeDrawnWithTheCursorTheWindowReads) {
    Mouse(WM_LBUTTONDOWN, 100, 200, MK_LBUTTON);
    for (int x = 120; x <= 300; x += 20)
        Mouse(WM_MOUSEMOVE, x, 200, MK_LBUTTON);
    Mouse(WM_LBUTTONUP, 300, 200, 0);
    ASSERT_EQ(TheSketch->PointCount, 2);
    MPoint3 start = TheView->ToScreen(TheSketch->Points[0].Position);
    MPoint3 end = TheView->ToScreen(TheSketch->Points[1].Position);
    EXPECT_NEAR(start.x, 100, 0.01f);
    EXPECT_NEAR(start.y, 200, 0.01f);
    EXPECT_NEAR(end.x, 300, 0.01f);
    EXPECT_EQ(Title(), u"Quillmere - Untitled * (2 points) [DRAW FREEHAND]");
}

TEST_F(CommandsWin, DragInTheEditModeMovesThePoint) {
    TwoPoints();
    Char(L'e');
    MPoint3 at = TheView->ToScreen(TheSketch->Points[1].Position);
    Mouse(WM_MOUSEMOVE, int(at.x), int(at.y), 0);
    Mouse(WM_LBUTTONDOWN, int(at.x), int(at.y), MK_LBUTTON);
    EXPECT_EQ(TheSketch->Current, 1);
    Mouse(WM_MOUSEMOVE, int(at.x) + 10, int(at.y) - 20, MK_LBUTTON);
    Mouse(WM_LBUTTONUP, int(at.x) + 10, int(at.y) - 20, 0);
    EXPECT_EQ(TheSketch->Points[1].Position.x, 110.0f);
    EXPECT_EQ(TheSketch->Points[1].Position.y, 20.0f);
    EXPECT_EQ(Title(), u"Quillmere - Untitled * (2 points) [EDIT SKETCH]");
}

// A press on a Bezier segment moves the real pointer onto the handle it
// picked (SetCursorPos). The mouse move that the jump causes comes through
// the message queue once the press is handled, and the drag that follows
// must carry the handle with the pointer rather than throw it by the jump.
TEST_F(CommandsWin, HandlePickedOnACurveFollowsThePointer) {
    WSketch& sketch = *TheSketch;
    sketch.Points.SetCount(2);
    sketch.PointCount = 2;
    sketch.Points[0] = WSketchPoint();
    sketch.Points[0].HandleOut = MPoint3{30, 0, 0};
    sketch.Points[0].Smooth = 0;
    sketch.Points[1] = WSketchPoint();
    sketch.Points[1].Position = MPoint3{100, 0, 0};
    sketch.Points[1].HandleIn = MPoint3{70, 0, 0};
    sketch.Points[1].Kind = KindCurve;
    sketch.Points[1].Smooth = 0;
    sketch.Commit();
    Char(L'e');
    // Whole pixels: the world origin on a pixel, so that the path lies on a
    // row of pixels and the pointer can stand exactly on the handle.
    float cx = TheView->ViewportWidth / 2, cy = TheView->ViewportHeight / 2;
    TheView->Pivot = MPoint3{cx - float(int(cx)), -(cy - float(int(cy))), 0};
    TheView->Update();
    MPoint3 handle = TheView->ToScreen(MPoint3{30, 0, 0});
    int hx = int(handle.x), hy = int(handle.y);
    ASSERT_EQ(float(hx), handle.x);
    ASSERT_EQ(float(hy), handle.y);
    // Pressed 15 pixels along the path from the handle and 2 below it.
    Mouse(WM_MOUSEMOVE, hx + 15, hy + 2, 0);
    Mouse(WM_LBUTTONDOWN, hx + 15, hy + 2, MK_LBUTTON);
    ASSERT_EQ(sketch.Current, 0);
    ASSERT_EQ(sketch.CurrentPart, 2);
    POINT pointer = {};
    GetCursorPos(&pointer);
    ScreenToClient(Window, &pointer);
    EXPECT_EQ(pointer.x, hx) << "the pointer was put on the handle";
    EXPECT_EQ(pointer.y, hy);
    // Whatever the jump queued, and a move read at the handle as the queue
    // would deliver it.
    Pump();
    SendMessageW(Window, WM_MOUSEMOVE, MK_LBUTTON, MAKELPARAM(1, 1));
    EXPECT_EQ(sketch.Points[0].HandleOut.x, 30.0f);
    EXPECT_EQ(sketch.Points[0].HandleOut.y, 0.0f);
    Mouse(WM_MOUSEMOVE, hx + 10, hy - 20, MK_LBUTTON);
    Mouse(WM_LBUTTONUP, hx + 10, hy - 20, 0);
    EXPECT_EQ(sketch.Points[0].HandleOut.x, 40.0f);
    EXPECT_EQ(sketch.Points[0].HandleOut.y, 20.0f);
    EXPECT_EQ(sketch.Points[0].Position.x, 0.0f);
    EXPECT_EQ(Title(), u"Quillmere - Untitled * (2 points) [EDIT SKETCH]");
}

TEST_F(CommandsWin, WheelZoomsByItsSignedDelta) {
    SendMessageW(Window, WM_MOUSEWHEEL, MAKEWPARAM(0, WORD(-120)), 0);
    EXPECT_EQ(TheView->Zoom, float(1 - (-120) * 0.001));
    SendMessageW(Window, WM_MOUSEWHEEL, MAKEWPARAM(0, 240), 0);
    EXPECT_EQ(TheView->Zoom, float(double(float(1.12)) * (1 - 240 * 0.001)));
}

TEST_F(CommandsWin, DropOfTwoFilesOpensTheFirst) {
    std::wstring first = TempFile(L"quillmere-first.eps", FlatEps());
    std::wstring second = TempFile(L"quillmere-second.eps", "%!PS\r\n0 0 moveto\r\n");
    SendMessageW(Window, WM_DROPFILES, WPARAM(MakeDrop({first, second})), 0);
    EXPECT_EQ(Messages.Count, 0);
    EXPECT_EQ(Title(), u"Quillmere - quillmere-first.eps (3 points) [EDIT SKETCH]");
    DeleteFileW(first.c_str());
    DeleteFileW(second.c_str());
}

TEST_F(CommandsWin, DropOfAPictureDoesNothing) {
    std::wstring picture = TempFile(L"quillmere-picture.png", "\x89PNG");
    SendMessageW(Window, WM_DROPFILES, WPARAM(MakeDrop({picture})), 0);
    EXPECT_EQ(Messages.Count, 0);
    EXPECT_EQ(Title(), u"Quillmere - Untitled (0 points) [DRAW FREEHAND]");
    DeleteFileW(picture.c_str());
}

TEST_F(CommandsWin, CloseCancelledAtTheQuestionKeepsTheWindow) {
    TwoPoints();
    Char(L'+');
    Answers[0] = AnswerCancel;
    Messages.AnswerCount = 1;
    SendMessageW(Window, WM_CLOSE, 0, 0);
    ASSERT_EQ(Messages.Count, 1);
    EXPECT_EQ(std::u16string(Texts[0].Chars()),
              u"The sketch has changed.\r\n\r\nDo you want to save the changes ? ");
    EXPECT_EQ(Icons[0], IconQuestion);
    EXPECT_TRUE(IsWindow(Window));
    // Exit goes the same way.
    Answers[1] = AnswerCancel;
    Messages.AnswerCount = 2;
    Command(IDM_EXIT);
    EXPECT_EQ(Messages.Count, 2);
    EXPECT_TRUE(IsWindow(Window));
}

TEST_F(CommandsWin, CloseAnsweredNoDestroysTheWindow) {
    TwoPoints();
    Char(L'+');
    TheSettings = nullptr; // no settings file is written by the test
    Answers[0] = AnswerNo;
    Messages.AnswerCount = 1;
    Command(IDM_EXIT);
    EXPECT_FALSE(IsWindow(Window));
}

TEST_F(CommandsWin, HelpCommandsOpenTheMakersPages) {
    Command(IDM_USERGUIDE);
    EXPECT_EQ(std::u16string(Pages.Last.Chars()),
              std::u16string(TheMakerSite) + u"/quillmeremanual");
    Command(IDM_COMMUNITY);
    EXPECT_EQ(std::u16string(Pages.Last.Chars()), std::u16string(TheMakerSite) + u"/community/");
}
