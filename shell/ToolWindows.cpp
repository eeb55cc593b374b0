// The tool windows and dialogs come with their own subsystem. Until a window
// exists its command does nothing, it is never open, and its refresh has
// nothing to show; the menu and the keys already lead here. The Spaghetti
// dialog lives with its tool (spaghetti/SpaghettiDialog.cpp).

#include "shell/ToolWindows.h"

void TogglePointWindow() {}
void ToggleElementWindow() {}
void ToggleModePalette() {}
void RefreshPointWindow() {}
void RefreshModePalette() {}
void RunOptionsDialog() {}
void RunAboutDialog() {}
