#include "shell/Startup.h"

#include "dialogs/ToolWindowPlaces.h"
#include "elements/WElement.h"
#include "shell/Frame.h"
#include "shell/Shell.h"
#include "shell/SketchFile.h"
#include "shell/ToolWindows.h"
#include "sketch/WRecording.h"
#include "sketch/WSketch.h"
#include "view/WView.h"

bool StartSettings() {
    if (!CreateSettings()) return false;
    TheSettings->Load();
    return true;
}

int32_t CreateModelObjects() {
    // The model tells the windows of its changes from its first commit on.
    InstallModelHooks();
    // Step 9: the element table checks itself as it is made; its messages are
    // for developers, and the start goes on after them.
    if (!CreateElement()) return ShutdownElement;
    // Step 10. The ring is made with the sketch and holds the empty sketch as
    // its first snapshot.
    if (!CreateSketch()) return ShutdownElement;
    if (TheSettings) TheSettings->ResetSaveChoices();
    // Step 11.
    if (!CreateRecording()) return ShutdownSketch;
    // Step 12: the view is reset by its creation.
    if (!CreateView()) return ShutdownRecording;
    return 0;
}

void DestroyModelObjects(int32_t from) {
    if (from <= ShutdownView && TheView) DestroyView();
    if (from <= ShutdownRecording && TheRecording) DestroyRecording();
    if (from <= ShutdownSketch && TheSketch) DestroySketch();
    if (from <= ShutdownElement && TheElement) DestroyElement();
}

void EnterStartMode() {
    TheMode = ModeDraw;
    if (TheSketch) TheSketch->Current = -1;
    RefreshMenu();
    RefreshTitle();
    RefreshModePalette();
}

bool IsStartFile(const MString& argument) {
    if (argument.IsEmpty()) return false;
    MString extension = argument.FileExtension();
    return extension == MString(u"EPS") || extension == MString(u"QO");
}

void OpenStartFile(const MString& argument) {
    if (!IsStartFile(argument)) return;
    DrawFrame();
    OpenSketch(argument);
}

// The question about unsaved changes comes first: a cancel keeps everything
// as it was. An open tool window is saved at its present place as shown.
bool PrepareToClose(const WRect& mainWindow) {
    if (!AskToSave()) return false;
    WRect rects[ToolWindowCount];
    bool open[ToolWindowCount];
    OpenToolWindowRects(rects, open);
    SaveSettingsAtClose(mainWindow, open[ToolPoint] ? &rects[ToolPoint] : nullptr,
                        open[ToolElement] ? &rects[ToolElement] : nullptr,
                        open[ToolMode] ? &rects[ToolMode] : nullptr);
    return true;
}
