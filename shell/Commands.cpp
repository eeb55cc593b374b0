// The menu commands: what each id does, and the table that joins them.

#include "shell/Commands.h"

#include "dialogs/AboutDialog.h"
#include "dialogs/OptionsDialog.h"
#include "drawing/FilePrompt.h"
#include "drawing/MDrawSurface.h"
#include "eps/EpsWriter.h"
#include "foundation/Platform.h"
#include "resources/resource.h"
#include "shell/Background.h"
#include "shell/Frame.h"
#include "shell/SketchFile.h"
#include "shell/ToolWindows.h"
#include "shell/WSettings.h"
#include "sketch/WSketch.h"
#include "sketch/WUndoRing.h"
#include "view/WView.h"

const char16_t* const TheMakerSite = u"https://www.brambleworks.example";
WebPageScript* TheWebPageScript = nullptr;
int32_t TheCloseRequests = 0;

void SetMode(WMode mode) {
    TheMode = mode;
    RefreshMenu();
    RefreshTitle();
    RefreshModePalette();
}

static void ClearCurrent() {
    if (TheSketch) TheSketch->Current = -1;
}

// ---- File

// The sketch is emptied on the same ring, so Undo brings the old points
// back. The file name stays: a later Save writes over the old file.
void CommandNew() {
    if (!AskToSave()) return;
    if (WSketch* sketch = TheSketch) {
        sketch->PointCount = 0;
        if (sketch->Undo) sketch->Undo->Push(*sketch);
        sketch->Current = -1;
        sketch->Modified = 0;
    }
    if (TheSettings) TheSettings->ResetSaveChoices();
    if (TheView) TheView->Reset();
    RefreshPointWindow();
    SetMode(ModeDraw);
}

void CommandOpen() {
    if (!AskToSave()) return;
    OpenSketch(MString());
}

// The clean-up that both saves begin with. False, after the message, when
// nothing worth saving is left.
static bool CleanUpForSave() {
    WSketch* sketch = TheSketch;
    if (!sketch) return false;
    if (sketch->CleanUp()) return true;
    // The clean-up may have removed a lone record the title still counts.
    RefreshTitle();
    ShowMessage(MString(u"The sketch is empty"), IconError);
    return false;
}

void CommandSave() {
    if (CleanUpForSave()) SaveSketch();
}

void CommandSaveAs() {
    if (CleanUpForSave()) SaveSketchAs();
}

void CommandTraceBitmap() {
    if (!AskToSave()) return;
    TraceBitmap();
}

void CommandLoadBackground() {
    LoadBackgroundPicture();
}

void CommandExit() {
    RequestMainWindowClose();
}

// ---- Edit

void CommandUndo() {
    UndoSketch();
}
void CommandRedo() {
    RedoSketch();
}

// The three mode items toggle, where the keys "d", "e" and "r" do not.
void CommandDrawFreehand() {
    ClearCurrent();
    SetMode(TheMode == ModeDraw ? ModeEditSketch : ModeDraw);
}
void CommandEditSketch() {
    if (TheMode == ModeEditSketch) {
        ClearCurrent();
        SetMode(ModeDraw);
    } else {
        SetMode(ModeEditSketch);
    }
}
void CommandEditRoll() {
    SetMode(TheMode == ModeEditRoll ? ModeEditSketch : ModeEditRoll);
}

void CommandGrid() {
    if (TheSettings) TheSettings->UseGrid = !TheSettings->UseGrid;
    RefreshMenu();
}

void CommandFlipHorizontal() {
    if (TheSketch) TheSketch->FlipHorizontal();
}
void CommandFlipVertical() {
    if (TheSketch) TheSketch->FlipVertical();
}
void CommandCentre() {
    if (TheSketch) TheSketch->TransformAll(true, false);
}
void CommandNormalizeSize() {
    if (TheSketch) TheSketch->TransformAll(false, true);
}

// ---- View

void CommandFront() {
    ShowStandardView(ViewFront);
}
void CommandBack() {
    ShowStandardView(ViewBack);
}
void CommandRight() {
    ShowStandardView(ViewRight);
}
void CommandLeft() {
    ShowStandardView(ViewLeft);
}
void CommandTop() {
    ShowStandardView(ViewTop);
}
void CommandBottom() {
    ShowStandardView(ViewBottom);
}

// The numeric pad's plus and minus; the character keys scale the sketch.
void CommandZoomIn() {
    if (TheView) TheView->ZoomBy(0.9);
}
void CommandZoomOut() {
    if (TheView) TheView->ZoomBy(1.1);
}

void CommandPoint() {
    TogglePointWindow();
    RefreshMenu();
}
// Elements are added at the selected end of the path, which the edit mode
// shows.
void CommandElement() {
    ToggleElementWindow();
    SetMode(ModeEditSketch);
}
void CommandMode() {
    ToggleModePalette();
    RefreshMenu();
}

// ---- Tools

void CommandSpaghetti() {
    RunSpaghettiDialog();
}

// The dialog may have changed DisplaySize; the surface takes it at once.
void CommandOptions() {
    RunOptions();
    if (TheSurface) ApplyDisplayScale(*TheSurface);
}

// ---- Help

MString MakerPageUrl(const char16_t* path) {
    return MString(TheMakerSite) + MString(path);
}

void OpenWebPage(const MString& url) {
    if (WebPageScript* script = TheWebPageScript) {
        script->Count++;
        script->Last = url;
        return;
    }
    PlatformOpenWebPage(url);
}

void CommandUserGuide() {
    OpenWebPage(MakerPageUrl(u"/quillmeremanual"));
}
void CommandCommunity() {
    OpenWebPage(MakerPageUrl(u"/community/"));
}
void CommandAbout() {
    RunAbout();
}

void RequestMainWindowClose() {
    TheCloseRequests++;
    PlatformRequestMainWindowClose();
}

// ---- The table

const WCommand Commands[] = {
    {IDM_NEW, u"New", CommandNew},
    {IDM_OPEN, u"Open...", CommandOpen},
    {IDM_SAVE, u"Save", CommandSave},
    {IDM_SAVEAS, u"Save as...", CommandSaveAs},
    {IDM_TRACEBITMAP, u"Trace bitmap...", CommandTraceBitmap},
    {IDM_LOADBACKGROUND, u"Load background picture...", CommandLoadBackground},
    {IDM_EXIT, u"Exit", CommandExit},
    {IDM_DRAWFREEHAND, u"Draw freehand", CommandDrawFreehand},
    {IDM_EDITSKETCH, u"Edit sketch", CommandEditSketch},
    {IDM_EDITROLL, u"Edit roll", CommandEditRoll},
    {IDM_GRID, u"Grid", CommandGrid},
    {IDM_FLIPHORIZONTAL, u"Flip horizontal", CommandFlipHorizontal},
    {IDM_FLIPVERTICAL, u"Flip Vertical", CommandFlipVertical},
    {IDM_CENTRE, u"Centre", CommandCentre},
    {IDM_NORMALIZESIZE, u"Normalize size", CommandNormalizeSize},
    {IDM_UNDO, u"Undo", CommandUndo},
    {IDM_REDO, u"Redo", CommandRedo},
    {IDM_FRONT, u"Front", CommandFront},
    {IDM_BACK, u"Back", CommandBack},
    {IDM_RIGHT, u"Right", CommandRight},
    {IDM_LEFT, u"Left", CommandLeft},
    {IDM_TOP, u"Top", CommandTop},
    {IDM_BOTTOM, u"Bottom", CommandBottom},
    {IDM_ZOOMIN, u"Zoom in", CommandZoomIn},
    {IDM_ZOOMOUT, u"Zoom out", CommandZoomOut},
    {IDM_POINT, u"Point", CommandPoint},
    {IDM_ELEMENT, u"Element", CommandElement},
    {IDM_MODE, u"Mode", CommandMode},
    {IDM_SPAGHETTI, u"Spaghetti...", CommandSpaghetti},
    {IDM_OPTIONS, u"Options...", CommandOptions},
    {IDM_USERGUIDE, u"User guide", CommandUserGuide},
    {IDM_COMMUNITY, u"Community", CommandCommunity},
    {IDM_ABOUT, u"About Quillmere", CommandAbout},
};
const int32_t CommandCount = int32_t(sizeof Commands / sizeof Commands[0]);

bool RunCommand(int32_t id) {
    for (int32_t i = 0; i < CommandCount; i++) {
        if (Commands[i].Id != id) continue;
        Commands[i].Run();
        return true;
    }
    return false;
}
