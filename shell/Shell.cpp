#include "shell/Shell.h"
#include "dialogs/ElementWindow.h"
#include "dialogs/ModePalette.h"
#include "dialogs/PointWindow.h"
#include "shell/ToolWindows.h"
#include "shell/WSettings.h"
#include "shell/Window.h"
#include "sketch/ModelHooks.h"
#include "sketch/WSketch.h"
#include "sketch/WUndoRing.h"

bool TheLeftDown = false, TheRightDown = false;
MPoint2 TheLastMouse;

// The file part begins behind the last "/", "\" or ":".
static MString FilePart(const MString& path) {
    int32_t start = 0;
    for (int32_t i = 0; i < path.Length; i++) {
        char16_t c = path.Text[i];
        if (c == u'/' || c == u'\\' || c == u':') start = i + 1;
    }
    return MString(path.Chars() + start);
}

MString TitleText() {
    MString title(TheProgramName);
    title = title + " - ";
    MString file = FilePart(TheFileName);
    title = title + (file.IsEmpty() ? MString(u"Untitled") : file);
    if (TheSketch && TheSketch->Modified) title = title + " *";
    title = title + " (" + IntegerText(TheSketch ? TheSketch->PointCount : 0) + " points)";
    title = title + " [" + ModeText(TheMode) + "]";
    return title;
}

void RefreshTitle() {
    MString title = TitleText();
    // The title is refreshed after every small edit; only a change reaches the window.
    if (MainWindowText() != title) SetMainWindowText(title);
}

void RefreshMenu() {
    WMenuState state;
    state.DrawFreehand = TheMode == ModeDraw;
    state.EditSketch = TheMode == ModeEditSketch;
    state.EditRoll = TheMode == ModeEditRoll;
    state.Grid = TheSettings && TheSettings->UseGrid;
    state.PointWindow = TheInfoDialog != nullptr;
    state.ElementWindow = TheElementDialog != nullptr;
    state.ModeWindow = TheModeDialog != nullptr;
    if (TheSketch && TheSketch->Undo) {
        state.UndoEnabled = TheSketch->Undo->Depth >= 2;
        state.RedoEnabled = TheSketch->Undo->RedoDepth >= 1;
    }
    ApplyMenuState(state);
}

void InstallModelHooks() {
    TheModelHooks.ShowMenuState = RefreshMenu;
    TheModelHooks.ShowTitle = RefreshTitle;
    TheModelHooks.ShowSelection = RefreshPointWindow;
    TheModelHooks.ShowMode = RefreshModePalette;
}
