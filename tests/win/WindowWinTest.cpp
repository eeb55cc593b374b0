// The main window's Win32 side against a real window under the real window
// procedure: title, menu state, client size, painting, closing, and frames
// drawn with Direct2D.

#include "drawing/MDrawSurface.h"
#include "foundation/MString.h"
#include "foundation/Platform.h"
#include "resources/resource.h"
#include "shell/Frame.h"
#include "shell/Shell.h"
#include "shell/Window.h"
#include "shell/WindowProc_win.h"

#include <gtest/gtest.h>

#include <windows.h>

namespace {

int SetTextCount = 0;

// The real procedure, with the title changes counted on the way.
LRESULT CALLBACK CountingProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_SETTEXT) SetTextCount++;
    return MainWindowProc(window, message, wParam, lParam);
}

const wchar_t* const TestClass = L"QuillmereWinTest";

class WindowWin : public ::testing::Test {
  protected:
    HWND Window = nullptr;
    bool QuitSeen = false;
    WPARAM QuitCode = 12345;

    void SetUp() override {
        // A black background, so that a white client area can only come from
        // a frame.
        WNDCLASSEXW windowClass = {};
        windowClass.cbSize = sizeof windowClass;
        windowClass.style = CS_VREDRAW | CS_HREDRAW | CS_DBLCLKS;
        windowClass.lpfnWndProc = CountingProc;
        windowClass.hInstance = GetModuleHandleW(nullptr);
        windowClass.hCursor = LoadCursorW(nullptr, reinterpret_cast<LPCWSTR>(IDC_ARROW));
        windowClass.hbrBackground = static_cast<HBRUSH>(GetStockObject(BLACK_BRUSH));
        windowClass.lpszMenuName = MAKEINTRESOURCEW(IDR_MAINMENU);
        windowClass.lpszClassName = TestClass;
        RegisterClassExW(&windowClass);
        Window = CreateWindowExW(0, TestClass, L"Quillmere", WS_OVERLAPPEDWINDOW, 100, 100, 420,
                                 340, nullptr, nullptr, GetModuleHandleW(nullptr), nullptr);
        ASSERT_NE(Window, nullptr);
        TheMainWindow = Window;
        TheMode = ModeDraw;
        ShowWindow(Window, SW_SHOWNORMAL);
        UpdateWindow(Window);
        Pump();
        SetTextCount = 0;
    }

    void TearDown() override {
        DestroySurface();
        if (Window && IsWindow(Window)) DestroyWindow(Window);
        Pump();
        TheMainWindow = nullptr;
        TheMode = ModeDraw;
    }

    // Hands out what waits, as the program's loop does, noting the quit.
    void Pump() {
        for (int round = 0; round < 5; round++) {
            MSG message;
            while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
                if (message.message == WM_QUIT) {
                    QuitSeen = true;
                    QuitCode = message.wParam;
                    continue;
                }
                TranslateMessage(&message);
                DispatchMessageW(&message);
            }
            Sleep(20);
        }
    }

    void ClientSize(int& width, int& height) {
        RECT client = {};
        GetClientRect(Window, &client);
        width = client.right;
        height = client.bottom;
    }

    COLORREF ScreenPixelAtClient(int x, int y) {
        POINT point = {x, y};
        ClientToScreen(Window, &point);
        HDC screen = GetDC(nullptr);
        COLORREF colour = GetPixel(screen, point.x, point.y);
        ReleaseDC(nullptr, screen);
        return colour;
    }

    // The screen under Wine shows a window's drawing a moment after it is
    // made: the pixel is read again, pumping between, until it is the one
    // expected or three seconds have passed; the last colour read comes back.
    COLORREF ScreenPixelSoon(int x, int y, COLORREF expected) {
        COLORREF colour = ScreenPixelAtClient(x, y);
        for (int tries = 0; colour != expected && tries < 30; tries++) {
            Pump();
            colour = ScreenPixelAtClient(x, y);
        }
        return colour;
    }
};

MString WindowTitle(HWND window) {
    wchar_t text[256] = {};
    GetWindowTextW(window, text, 256);
    return MString(reinterpret_cast<const char16_t*>(text));
}

} // namespace

TEST_F(WindowWin, RefreshTitleSetsTheWindowTextOnlyWhenItChanges) {
    RefreshTitle();
    EXPECT_EQ(WindowTitle(Window), MString(u"Quillmere - Untitled (0 points) [DRAW FREEHAND]"));
    EXPECT_EQ(MainWindowText(), MString(u"Quillmere - Untitled (0 points) [DRAW FREEHAND]"));
    EXPECT_EQ(SetTextCount, 1);
    RefreshTitle();
    RefreshTitle();
    EXPECT_EQ(SetTextCount, 1) << "an unchanged title is not set again";
    TheMode = ModeEditRoll;
    RefreshTitle();
    EXPECT_EQ(SetTextCount, 2);
    EXPECT_EQ(WindowTitle(Window), MString(u"Quillmere - Untitled (0 points) [EDIT ROLL]"));
}

TEST_F(WindowWin, MenuStateReachesTheMenuItems) {
    HMENU menu = GetMenu(Window);
    ASSERT_NE(menu, nullptr);
    WMenuState state;
    state.EditSketch = true;
    state.Grid = true;
    state.ElementWindow = true;
    state.RedoEnabled = true;
    ApplyMenuState(state);
    auto checked = [menu](UINT id) {
        return (GetMenuState(menu, id, MF_BYCOMMAND) & MF_CHECKED) != 0;
    };
    auto grayed = [menu](UINT id) {
        return (GetMenuState(menu, id, MF_BYCOMMAND) & MF_GRAYED) != 0;
    };
    EXPECT_FALSE(checked(IDM_DRAWFREEHAND));
    EXPECT_TRUE(checked(IDM_EDITSKETCH));
    EXPECT_FALSE(checked(IDM_EDITROLL));
    EXPECT_TRUE(checked(IDM_GRID));
    EXPECT_FALSE(checked(IDM_POINT));
    EXPECT_TRUE(checked(IDM_ELEMENT));
    EXPECT_FALSE(checked(IDM_MODE));
    EXPECT_TRUE(grayed(IDM_UNDO));
    EXPECT_FALSE(grayed(IDM_REDO));

    WMenuState read = AppliedMenuState();
    EXPECT_FALSE(read.DrawFreehand);
    EXPECT_TRUE(read.EditSketch);
    EXPECT_TRUE(read.Grid);
    EXPECT_TRUE(read.ElementWindow);
    EXPECT_FALSE(read.UndoEnabled);
    EXPECT_TRUE(read.RedoEnabled);

    // The shell's refresh: the mode's item alone is checked, and with no
    // sketch there is nothing to undo or redo.
    TheMode = ModeDraw;
    RefreshMenu();
    EXPECT_TRUE(checked(IDM_DRAWFREEHAND));
    EXPECT_FALSE(checked(IDM_EDITSKETCH));
    EXPECT_TRUE(grayed(IDM_UNDO));
    EXPECT_TRUE(grayed(IDM_REDO));
}

TEST_F(WindowWin, ClientSizeIsTheWindowsClientRectangle) {
    int width = 0, height = 0;
    ClientSize(width, height);
    int32_t got_width = -1, got_height = -1;
    MainClientSize(got_width, got_height);
    EXPECT_EQ(got_width, width);
    EXPECT_EQ(got_height, height);
    EXPECT_GT(width, 300);
}

TEST_F(WindowWin, PaintOnlyValidates) {
    InvalidateRect(Window, nullptr, FALSE);
    EXPECT_TRUE(GetUpdateRect(Window, nullptr, FALSE));
    UpdateWindow(Window);
    EXPECT_FALSE(GetUpdateRect(Window, nullptr, FALSE));
}

TEST_F(WindowWin, ExitCommandClosesTheWindowAndQuitsWithZero) {
    StartDebugCapture();
    SendMessageW(Window, WM_COMMAND, MAKEWPARAM(IDM_EXIT, 0), 0);
    MString lines = StopDebugCapture();
    EXPECT_FALSE(IsWindow(Window));
    EXPECT_EQ(TheMainWindow, nullptr);
    EXPECT_GE(lines.Find(MString(u"Main window destroyed\n")), 0);
    Pump();
    EXPECT_TRUE(QuitSeen);
    EXPECT_EQ(QuitCode, 0u);
}

TEST_F(WindowWin, CloseDestroysTheWindowAndQuitsWithZero) {
    SendMessageW(Window, WM_CLOSE, 0, 0);
    EXPECT_FALSE(IsWindow(Window));
    Pump();
    EXPECT_TRUE(QuitSeen);
    EXPECT_EQ(QuitCode, 0u);
}

TEST_F(WindowWin, FrameMakesOneSurfaceOfTheClientSizeAndKeepsIt) {
    int width = 0, height = 0;
    ClientSize(width, height);
    StartDebugCapture();
    DrawFrame();
    ASSERT_NE(TheSurface, nullptr);
    MDrawSurface* first = TheSurface;
    EXPECT_TRUE(first->Valid);
    EXPECT_NE(first->HwndTarget, nullptr);
    EXPECT_EQ(first->Width(), width);
    EXPECT_EQ(first->Height(), height);
    DrawFrame();
    DrawFrame();
    EXPECT_EQ(TheSurface, first);
    EXPECT_EQ(StopDebugCapture(), MString(u"MDrawSurface created\n"));
}

TEST_F(WindowWin, FrameRemakesTheSurfaceAfterASizeChange) {
    DrawFrame();
    ASSERT_NE(TheSurface, nullptr);
    SetWindowPos(Window, nullptr, 0, 0, 500, 300, SWP_NOMOVE | SWP_NOZORDER);
    Pump();
    int width = 0, height = 0;
    ClientSize(width, height);
    StartDebugCapture();
    DrawFrame();
    EXPECT_EQ(StopDebugCapture(), MString(u"MDrawSurface destroyed\nMDrawSurface created\n"));
    ASSERT_NE(TheSurface, nullptr);
    EXPECT_EQ(TheSurface->Width(), width);
    EXPECT_EQ(TheSurface->Height(), height);
}

TEST_F(WindowWin, MinimisedWindowDrawsNothingAndKeepsItsSurface) {
    DrawFrame();
    ASSERT_NE(TheSurface, nullptr);
    int width = 0, height = 0;
    ClientSize(width, height);
    ShowWindow(Window, SW_MINIMIZE);
    Pump();
    int32_t minimisedWidth = -1, minimisedHeight = -1;
    MainClientSize(minimisedWidth, minimisedHeight);
    EXPECT_EQ(minimisedWidth, 0);
    EXPECT_EQ(minimisedHeight, 0);
    StartDebugCapture();
    DrawFrame();
    EXPECT_EQ(StopDebugCapture(), MString());
    ASSERT_NE(TheSurface, nullptr);
    EXPECT_EQ(TheSurface->Width(), width);
    EXPECT_EQ(TheSurface->Height(), height);
    ShowWindow(Window, SW_RESTORE);
    Pump();
    StartDebugCapture();
    DrawFrame();
    EXPECT_EQ(StopDebugCapture(), MString()) << "restored to the same size, the surface stays";
}

TEST_F(WindowWin, FrameClearsTheClientAreaWhite) {
    int width = 0, height = 0;
    ClientSize(width, height);
    EXPECT_EQ(ScreenPixelSoon(width / 2, height / 2, RGB(0, 0, 0)), RGB(0, 0, 0))
        << "the class's black before any frame";
    DrawFrame();
    Pump();
    EXPECT_EQ(ScreenPixelSoon(width / 2, height / 2, RGB(255, 255, 255)), RGB(255, 255, 255));
    EXPECT_EQ(ScreenPixelSoon(2, 2, RGB(255, 255, 255)), RGB(255, 255, 255));
    EXPECT_EQ(ScreenPixelSoon(width - 3, height - 3, RGB(255, 255, 255)), RGB(255, 255, 255));
}
