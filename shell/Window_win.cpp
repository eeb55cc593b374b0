// The main window's title, menu and client size on Win32. Until the window
// exists (and in the unit tests, which run without one) the same state is
// kept in memory, as the native build does, so that the shell behaves alike.

#include "shell/Window.h"

#include "foundation/MVector.h"
#include "resources/resource.h"
#include "shell/Shell.h"

#include <windows.h>

static MString WindowText;
static WMenuState MenuState;

static HWND MainWindow() {
    return static_cast<HWND>(TheMainWindow);
}
static HMENU MainMenu() {
    return MainWindow() ? GetMenu(MainWindow()) : nullptr;
}

MString MainWindowText() {
    HWND window = MainWindow();
    if (!window) return WindowText;
    int length = GetWindowTextLengthW(window);
    MVector<char16_t> buffer;
    if (length <= 0 || !buffer.SetCount(length + 1)) return MString();
    buffer[0] = 0;
    int got = GetWindowTextW(window, reinterpret_cast<wchar_t*>(buffer.Data), length + 1);
    buffer[got > 0 && got <= length ? got : 0] = 0;
    return MString(buffer.Data);
}

void SetMainWindowText(const MString& text) {
    WindowText = text;
    if (HWND window = MainWindow())
        SetWindowTextW(window, reinterpret_cast<const wchar_t*>(text.Chars()));
}

static void Check(HMENU menu, UINT id, bool on) {
    CheckMenuItem(menu, id, MF_BYCOMMAND | (on ? MF_CHECKED : MF_UNCHECKED));
}
static void Enable(HMENU menu, UINT id, bool on) {
    EnableMenuItem(menu, id, MF_BYCOMMAND | (on ? MF_ENABLED : MF_GRAYED));
}

void ApplyMenuState(const WMenuState& state) {
    MenuState = state;
    HMENU menu = MainMenu();
    if (!menu) return;
    Check(menu, IDM_DRAWFREEHAND, state.DrawFreehand);
    Check(menu, IDM_EDITSKETCH, state.EditSketch);
    Check(menu, IDM_EDITROLL, state.EditRoll);
    Check(menu, IDM_GRID, state.Grid);
    Check(menu, IDM_POINT, state.PointWindow);
    Check(menu, IDM_ELEMENT, state.ElementWindow);
    Check(menu, IDM_MODE, state.ModeWindow);
    Enable(menu, IDM_UNDO, state.UndoEnabled);
    Enable(menu, IDM_REDO, state.RedoEnabled);
}

// Read back from the menu itself, so that a test sees what the user sees.
WMenuState AppliedMenuState() {
    HMENU menu = MainMenu();
    if (!menu) return MenuState;
    auto checked = [menu](UINT id) {
        return (GetMenuState(menu, id, MF_BYCOMMAND) & MF_CHECKED) != 0;
    };
    auto enabled = [menu](UINT id) {
        return (GetMenuState(menu, id, MF_BYCOMMAND) & (MF_GRAYED | MF_DISABLED)) == 0;
    };
    WMenuState state;
    state.DrawFreehand = checked(IDM_DRAWFREEHAND);
    state.EditSketch = checked(IDM_EDITSKETCH);
    state.EditRoll = checked(IDM_EDITROLL);
    state.Grid = checked(IDM_GRID);
    state.PointWindow = checked(IDM_POINT);
    state.ElementWindow = checked(IDM_ELEMENT);
    state.ModeWindow = checked(IDM_MODE);
    state.UndoEnabled = enabled(IDM_UNDO);
    state.RedoEnabled = enabled(IDM_REDO);
    return state;
}
