// The three tool windows made from the real resources under Wine: their
// controls and texts, typing into the Point window, "Add" of the Element
// window, the palette's size, tiles, tooltips and clicks, and the close box.

#include "dialogs/ElementWindow.h"
#include "dialogs/ModePalette.h"
#include "dialogs/PointWindow.h"
#include "dialogs/ToolWindowPlaces.h"
#include "drawing/MDrawSurface.h"
#include "elements/WElement.h"
#include "foundation/Folders.h"
#include "foundation/MString.h"
#include "foundation/Platform.h"
#include "resources/resource.h"
#include "shell/Shell.h"
#include "shell/WSettings.h"
#include "sketch/WSketch.h"
#include "sketch/WUndoRing.h"
#include "view/WView.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>

namespace {

std::wstring TextOf(HWND window) {
    wchar_t buffer[512] = {};
    GetWindowTextW(window, buffer, 512);
    return buffer;
}

void Pump() {
    for (int round = 0; round < 5; round++) {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    }
}

class ToolWindowsWin : public ::testing::Test {
  protected:
    WSettings Settings;
    MString Texts[8];
    MessageIcon Icons[8] = {};
    MessageScript Messages;

    void SetUp() override {
        Messages.Texts = Texts;
        Messages.Icons = Icons;
        Messages.Capacity = 8;
        TheMessageScript = &Messages;
        TheSettings = &Settings;
        Settings.WindowRect_Info = WRect{600, 50, 0, 0};
        Settings.WindowRect_Element = WRect{600, 400, 0, 0};
        Settings.WindowRect_Mode = WRect{20, 200, 0, 0};
        CreateElement();
        CreateSketch();
        CreateView();
        TheView->SetViewport(400, 300);
        TheMode = ModeDraw;
        Messages.Count = 0;
    }
    void TearDown() override {
        EndToolDialogs();
        EndModePalette();
        Pump();
        DestroyView();
        DestroySketch();
        DestroyElement();
        TheSettings = nullptr;
        TheMessageScript = nullptr;
        TheMode = ModeDraw;
    }
    void LoadCorner() {
        WSketchPoint records[3];
        float xs[3] = {0, 100, 100}, ys[3] = {0, 0, 100};
        for (int i = 0; i < 3; i++) {
            records[i].Position = MPoint3{xs[i], ys[i], 0};
            records[i].HandleIn = records[i].HandleOut = records[i].Position;
            records[i].Roll = MPoint3{0, 0, 1};
            records[i].Kind = i == 0 ? KindMove : KindLine;
        }
        TheSketch->AppendPoints(records, 3);
        TheSketch->Current = 1;
        TheSketch->CurrentPart = 0;
    }
};

TEST_F(ToolWindowsWin, ThePointWindowShowsAndEditsTheSelectedRecord) {
    LoadCorner();
    OpenInfo();
    ASSERT_NE(TheInfoDialog, nullptr);
    HWND window = static_cast<HWND>(TheInfoDialog->Window);
    ASSERT_TRUE(IsWindow(window));
    EXPECT_TRUE(IsWindowVisible(window));
    EXPECT_EQ(TextOf(window), L"Quillmere - Point");
    RECT place;
    GetWindowRect(window, &place);
    EXPECT_EQ(place.left, 600);
    EXPECT_EQ(place.top, 50);
    for (int id = IDC_INFO_KIND; id <= IDC_INFO_ROLL_Z; id++)
        EXPECT_NE(GetDlgItem(window, id), nullptr) << id;
    EXPECT_EQ(SendDlgItemMessageW(window, IDC_INFO_KIND, CB_GETCOUNT, 0, 0), 3);
    EXPECT_EQ(SendDlgItemMessageW(window, IDC_INFO_KIND, CB_GETCURSEL, 0, 0), KindLine);
    EXPECT_EQ(TextOf(GetDlgItem(window, IDC_INFO_POSITION_X)), L"100");
    EXPECT_EQ(TextOf(GetDlgItem(window, IDC_INFO_ROLL_Z)), L"1");
    EXPECT_EQ(SendDlgItemMessageW(window, IDC_INFO_POSITION_X, EM_GETLIMITTEXT, 0, 0), 16);
    // Typing is a change of the edit's text: the record follows at once.
    SetDlgItemTextW(window, IDC_INFO_POSITION_Y, L"1.");
    EXPECT_EQ(TheSketch->Points[1].Position.y, 1.0f);
    EXPECT_EQ(TextOf(GetDlgItem(window, IDC_INFO_POSITION_Y)), L"1.");
    SetDlgItemTextW(window, IDC_INFO_POSITION_Z, L"x");
    EXPECT_EQ(TheSketch->Points[1].Position.z, 0.0f);
    // "Align" clicked off.
    SendDlgItemMessageW(window, IDC_INFO_ALIGN, BM_CLICK, 0, 0);
    EXPECT_EQ(TheSketch->Points[1].Smooth, 0);
    // No selection: empty and disabled.
    TheSketch->Current = -1;
    TheInfoDialog->Refresh();
    EXPECT_EQ(TextOf(GetDlgItem(window, IDC_INFO_POSITION_X)), L"");
    EXPECT_FALSE(IsWindowEnabled(GetDlgItem(window, IDC_INFO_POSITION_X)));
    EXPECT_FALSE(IsWindowEnabled(GetDlgItem(window, IDC_INFO_KIND)));
}

TEST_F(ToolWindowsWin, TheElementWindowAddsTheChosenElement) {
    OpenElement();
    ASSERT_NE(TheElementDialog, nullptr);
    HWND window = static_cast<HWND>(TheElementDialog->Window);
    EXPECT_EQ(TextOf(window), L"Quillmere - Element");
    EXPECT_EQ(SendDlgItemMessageW(window, IDC_ELEMENT_LIST, CB_GETCOUNT, 0, 0), 17);
    EXPECT_EQ(SendDlgItemMessageW(window, IDC_ELEMENT_LIST, CB_GETCURSEL, 0, 0), 1);
    EXPECT_EQ(TextOf(GetDlgItem(window, IDC_ELEMENT_ADD)), L"Add");
    // The user picks the straight line and types its length.
    SendDlgItemMessageW(window, IDC_ELEMENT_LIST, CB_SETCURSEL, ElementStraightLine, 0);
    SendMessageW(window, WM_COMMAND, MAKEWPARAM(IDC_ELEMENT_LIST, CBN_SELCHANGE),
                 reinterpret_cast<LPARAM>(GetDlgItem(window, IDC_ELEMENT_LIST)));
    EXPECT_FALSE(IsWindowEnabled(GetDlgItem(window, IDC_ELEMENT_VALUE2)));
    SetDlgItemTextW(window, IDC_ELEMENT_VALUE1, L"80");
    SendDlgItemMessageW(window, IDC_ELEMENT_ADD, BM_CLICK, 0, 0);
    ASSERT_GE(TheSketch->PointCount, 2);
    EXPECT_NEAR(TheSketch->Points[TheSketch->PointCount - 1].Position.x, 80.0f, 1e-3f);
    EXPECT_EQ(TheMode, ModeEditSketch);
}

TEST_F(ToolWindowsWin, ThePaletteHasItsSizeTilesAndTooltipsAndSwitchesTheMode) {
    OpenMode();
    ASSERT_NE(TheModeDialog, nullptr);
    EXPECT_EQ(Messages.Count, 0) << "the skin beside the program was not found";
    HWND window = static_cast<HWND>(TheModeDialog->Window);
    RECT client;
    GetClientRect(window, &client);
    EXPECT_EQ(client.right - client.left, 64);
    EXPECT_EQ(client.bottom - client.top, 192);
    for (MPicture* tile : TheModeDialog->Tiles)
        EXPECT_NE(tile, nullptr);
    for (void* tip : TheModeDialog->Tooltips)
        EXPECT_TRUE(IsWindow(static_cast<HWND>(tip)));
    EXPECT_EQ(TextOf(window), L"");
    // A click is placed where the cursor stands when it is handled.
    POINT at = {32, 191};
    ClientToScreen(window, &at);
    SetCursorPos(at.x, at.y);
    SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(32, 5));
    EXPECT_EQ(TheMode, ModeEditRoll);
    at = POINT{32, 64};
    ClientToScreen(window, &at);
    SetCursorPos(at.x, at.y);
    SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(32, 5));
    EXPECT_EQ(TheMode, ModeEditSketch);
    // A paint draws through the cached surface.
    InvalidateRect(window, nullptr, FALSE);
    UpdateWindow(window);
    ASSERT_NE(TheModeDialog->Surface, nullptr);
    EXPECT_TRUE(TheModeDialog->Surface->Valid);
}

TEST_F(ToolWindowsWin, TheCloseBoxStoresAndSavesWithTheWindowOpen) {
    // The settings file goes to a folder of the test's own.
    wchar_t temp[MAX_PATH] = {};
    GetTempPathW(MAX_PATH, temp);
    SetFolderOverride(FolderAppData,
                      MString(reinterpret_cast<const char16_t*>(temp)) + "quillmere-toolwindows");
    OpenInfo();
    OpenMode();
    HWND window = static_cast<HWND>(TheInfoDialog->Window);
    SetWindowPos(window, nullptr, 610, 70, 0, 0, SWP_NOSIZE | SWP_NOZORDER);
    SendMessageW(window, WM_CLOSE, 0, 0);
    EXPECT_EQ(TheInfoDialog, nullptr);
    EXPECT_FALSE(IsWindow(window));
    EXPECT_TRUE(Settings.ShowWindow_Point);
    EXPECT_TRUE(Settings.ShowWindow_Mode);
    EXPECT_FALSE(Settings.ShowWindow_Element);
    EXPECT_EQ(Settings.WindowRect_Info.left, 610);
    EXPECT_EQ(Settings.WindowRect_Info.top, 70);
    SetFolderOverride(FolderAppData, MString());
}

} // namespace
