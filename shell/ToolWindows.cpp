// The modal dialogs come with their own subsystem; until one exists its
// command does nothing.

#include "shell/ToolWindows.h"

#include "dialogs/ModePalette.h"
#include "dialogs/PointWindow.h"

void RefreshPointWindow() {
    if (TheInfoDialog) TheInfoDialog->Refresh();
}
void RefreshModePalette() {
    if (TheModeDialog) TheModeDialog->Repaint();
}
void RunSpaghettiDialog() {}
void RunOptionsDialog() {}
void RunAboutDialog() {}
