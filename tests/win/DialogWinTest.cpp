// The save dialog, Options and About as real modal dialogs made from the
// resources. A thread timer runs inside each dialog's own message loop: it
// reads the real controls, clicks them as the user would, and ends the dialog.

#include "dialogs/AboutDialog.h"
#include "dialogs/Dialog.h"
#include "dialogs/OptionsDialog.h"
#include "dialogs/SaveDialog.h"
#include "resources/resource.h"
#include "shell/WSettings.h"
#include "sketch/WSketch.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <string>

namespace {

// What the timer does once the dialog is open; it runs once.
void (*Act)(HWND dialog) = nullptr;
void** Watched = nullptr; // the global that holds the open dialog
bool Acted = false;

void CALLBACK OnTimer(HWND, UINT, UINT_PTR id, DWORD) {
    if (Acted || !Watched || !*Watched) return;
    Acted = true;
    KillTimer(nullptr, id);
    Act(static_cast<HWND>(*Watched));
}

// Runs the dialog through run() with act() done inside it.
template <typename Run> void WithinDialog(void** watched, void (*act)(HWND), Run run) {
    Act = act;
    Watched = watched;
    Acted = false;
    UINT_PTR timer = SetTimer(nullptr, 0, 50, OnTimer);
    run();
    if (!Acted) KillTimer(nullptr, timer);
    EXPECT_TRUE(Acted);
    Watched = nullptr;
}

bool Checked(HWND dialog, int id) {
    return IsDlgButtonChecked(dialog, id) == BST_CHECKED;
}
bool Enabled(HWND dialog, int id) {
    return IsWindowEnabled(GetDlgItem(dialog, id)) != FALSE;
}
std::wstring TextOf(HWND window) {
    wchar_t text[256] = {};
    GetWindowTextW(window, text, 256);
    return text;
}
void Click(HWND dialog, int id) {
    SendMessageW(GetDlgItem(dialog, id), BM_CLICK, 0, 0);
}

class DialogWin : public ::testing::Test {
  protected:
    WSettings Settings;
    WSettings* SavedSettings = nullptr;
    bool MadeSketch = false;
    void SetUp() override {
        InitDialogs();
        SavedSettings = TheSettings;
        TheSettings = &Settings;
        Settings.SetDefaults();
        Settings.ResetSaveChoices();
        // The sketch is this test's own: the tests after it expect none.
        MadeSketch = !TheSketch;
        if (MadeSketch) CreateSketch();
        TheSketch->PointCount = 0;
        WSketchPoint first, second;
        second.Position.x = 100;
        second.Kind = KindLine;
        TheSketch->AppendPoints(&first, 1);
        TheSketch->AppendPoints(&second, 1);
    }
    void TearDown() override {
        if (MadeSketch)
            DestroySketch();
        else
            TheSketch->PointCount = 0;
        TheSettings = SavedSettings;
    }
};

} // namespace

TEST_F(DialogWin, SaveDialogStateAfterClicks) {
    Settings.SaveRoll = true;
    WithinDialog(
        &TheSaveDialog,
        [](HWND dialog) {
            EXPECT_EQ(TextOf(dialog), L"Quillmere - Save sketch");
            EXPECT_FALSE(Enabled(dialog, IDC_SAVE_SPINNINGLOGO)); // "Solid" is off
            EXPECT_TRUE(Enabled(dialog, IDC_SAVE_HANDWRITTENTEXT));
            EXPECT_TRUE(Enabled(dialog, IDC_SAVE_ROAD1ST));
            EXPECT_TRUE(Checked(dialog, IDC_SAVE_CENTRE));
            EXPECT_TRUE(Checked(dialog, IDC_SAVE_SCALE));
            EXPECT_EQ(SendDlgItemMessageW(dialog, IDC_SAVE_TREES, CB_GETCOUNT, 0, 0), 8);
            EXPECT_EQ(SendDlgItemMessageW(dialog, IDC_SAVE_TREES, CB_GETCURSEL, 0, 0), 5);

            Click(dialog, IDC_SAVE_ROAD1ST);
            EXPECT_TRUE(Checked(dialog, IDC_SAVE_ROAD1ST));
            EXPECT_FALSE(Checked(dialog, IDC_SAVE_CENTRE));
            EXPECT_FALSE(Checked(dialog, IDC_SAVE_SCALE));
            Click(dialog, IDC_SAVE_CENTRE); // clickable, and unticked again
            EXPECT_TRUE(Enabled(dialog, IDC_SAVE_CENTRE));
            EXPECT_FALSE(Checked(dialog, IDC_SAVE_CENTRE));

            Click(dialog, IDC_SAVE_SOLID);
            EXPECT_TRUE(Enabled(dialog, IDC_SAVE_SPINNINGLOGO));
            Click(dialog, IDC_SAVE_SPINNINGLOGO);
            Click(dialog, IDC_SAVE_TUNNEL);
            Click(dialog, IDC_SAVE_ROLL); // off: the rides grey and untick
            for (int id : {IDC_SAVE_COASTER1ST, IDC_SAVE_COASTER3RD, IDC_SAVE_ROAD1ST,
                           IDC_SAVE_ROAD3RD, IDC_SAVE_BOB1ST, IDC_SAVE_BOB3RD, IDC_SAVE_TUNNEL}) {
                EXPECT_FALSE(Enabled(dialog, id)) << id;
                EXPECT_FALSE(Checked(dialog, id)) << id;
            }
            EXPECT_TRUE(Enabled(dialog, IDC_SAVE_SMOOTH));
            EXPECT_TRUE(Enabled(dialog, IDC_SAVE_TREES));
            SetDlgItemTextW(dialog, IDC_SAVE_SMOOTH, L"5000");
            SetDlgItemTextW(dialog, IDC_SAVE_MAXLINES, L"");
            Click(dialog, IDOK);
        },
        [] { EXPECT_TRUE(RunSaveDialog()); });
    EXPECT_EQ(Settings.Smooth, 1000);
    EXPECT_EQ(Settings.MaxLinesPerCurve, 0);
    EXPECT_TRUE(Settings.SaveSolid);
    EXPECT_FALSE(Settings.SaveRoll);
    EXPECT_TRUE(Settings.Template[0]);
    EXPECT_FALSE(Settings.Template[4]);
    EXPECT_FALSE(Settings.Template[8]);
    EXPECT_FALSE(Settings.Centre);
}

TEST_F(DialogWin, SaveDialogCancelAndCloseBoxChangeNothing) {
    WithinDialog(
        &TheSaveDialog,
        [](HWND dialog) {
            Click(dialog, IDC_SAVE_SOLID);
            SetDlgItemTextW(dialog, IDC_SAVE_SMOOTH, L"7");
            Click(dialog, IDCANCEL);
        },
        [] { EXPECT_FALSE(RunSaveDialog()); });
    WithinDialog(
        &TheSaveDialog,
        [](HWND dialog) {
            Click(dialog, IDC_SAVE_SOLID);
            SendMessageW(dialog, WM_CLOSE, 0, 0);
        },
        [] { EXPECT_FALSE(RunSaveDialog()); });
    EXPECT_FALSE(Settings.SaveSolid);
    EXPECT_EQ(Settings.Smooth, 200);
}

TEST_F(DialogWin, OptionsFieldsSwatchesAndOk) {
    Settings.ColourGrid.r = 10;
    Settings.ColourGrid.g = 200;
    Settings.ColourGrid.b = 30;
    WithinDialog(
        &TheOptionsDialog,
        [](HWND dialog) {
            EXPECT_EQ(TextOf(dialog), L"Quillmere - Options");
            EXPECT_EQ(TextOf(GetDlgItem(dialog, IDC_OPTIONS_PENSIZE)), L"2");
            EXPECT_EQ(TextOf(GetDlgItem(dialog, IDC_OPTIONS_DISPLAYSIZE)), L"100%");
            EXPECT_TRUE(Checked(dialog, IDC_OPTIONS_SHOWHELPTEXTS));
            // The Grid swatch, right of its label, as high as the label.
            ShowWindow(dialog, SW_SHOW);
            RedrawWindow(dialog, nullptr, nullptr,
                         RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
            RECT label;
            GetWindowRect(GetDlgItem(dialog, IDC_OPTIONS_GRID), &label);
            MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&label), 2);
            int side = label.bottom - label.top;
            HDC dc = GetDC(dialog);
            COLORREF inside = GetPixel(dc, label.right + side / 2, label.top + side / 2);
            ReleaseDC(dialog, dc);
            EXPECT_EQ(inside, RGB(10, 200, 30));
            SetDlgItemTextW(dialog, IDC_OPTIONS_PENSIZE, L"11");
            SetDlgItemTextW(dialog, IDC_OPTIONS_DISPLAYSIZE, L"x64%");
            Click(dialog, IDC_OPTIONS_SHOWHELPTEXTS);
            Click(dialog, IDOK);
        },
        [] { EXPECT_EQ(RunOptions(), 1); });
    EXPECT_EQ(Settings.PenSize, 10);
    EXPECT_EQ(Settings.DisplaySize, 100);
    EXPECT_FALSE(Settings.ShowHelpTexts);
}

TEST_F(DialogWin, OptionsResetAllThenCancelKeepsTheDefaults) {
    Settings.PenSize = 7;
    WithinDialog(
        &TheOptionsDialog,
        [](HWND dialog) {
            Click(dialog, IDC_OPTIONS_RESETALL);
            EXPECT_EQ(TextOf(GetDlgItem(dialog, IDC_OPTIONS_PENSIZE)), L"2");
            Click(dialog, IDCANCEL);
        },
        [] { EXPECT_EQ(RunOptions(), 2); });
    EXPECT_EQ(Settings.PenSize, 2);
}

TEST_F(DialogWin, AboutIsSizedItsButtonPlacedAndAClickEndsIt) {
    WithinDialog(
        &TheAboutDialog,
        [](HWND dialog) {
            EXPECT_EQ(TextOf(dialog), L"Quillmere - About");
            RECT client;
            GetClientRect(dialog, &client);
            EXPECT_EQ(client.right, 680);
            EXPECT_EQ(client.bottom, 420);
            RECT button;
            GetWindowRect(GetDlgItem(dialog, IDOK), &button);
            MapWindowPoints(nullptr, dialog, reinterpret_cast<POINT*>(&button), 2);
            EXPECT_EQ(button.right, 640);
            EXPECT_EQ(button.bottom, 380);
            // Drawn white, with the button still on top.
            ShowWindow(dialog, SW_SHOW);
            RedrawWindow(dialog, nullptr, nullptr,
                         RDW_INVALIDATE | RDW_UPDATENOW | RDW_ALLCHILDREN);
            HDC dc = GetDC(dialog);
            EXPECT_EQ(GetPixel(dc, 10, 10), RGB(255, 255, 255));
            EXPECT_EQ(GetPixel(dc, 300, 300), RGB(255, 255, 255));
            ReleaseDC(dialog, dc);
            SendMessageW(dialog, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(30, 30));
        },
        [] { RunAbout(); });
}
