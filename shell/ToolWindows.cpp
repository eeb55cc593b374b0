// The refreshes that edits ask of the tool windows, which live in dialogs/.

#include "shell/ToolWindows.h"

#include "dialogs/ModePalette.h"
#include "dialogs/PointWindow.h"

void RefreshPointWindow() {
    if (TheInfoDialog) TheInfoDialog->Refresh();
}
void RefreshModePalette() {
    if (TheModeDialog) TheModeDialog->Repaint();
}
