#pragma once
// The tool windows and modal dialogs as the commands and gestures reach them:
// the Point and Element tool windows, the Mode palette, and the Spaghetti,
// Options and About dialogs. Each command has its own entry here, so the menu
// ids stay wired while the windows themselves are built elsewhere.

// F7 and "Point": opens the Point tool window, or closes it when open.
void TogglePointWindow();
// F8 and "Element": opens the Element tool window, or closes it when open.
void ToggleElementWindow();
// F9 and "Mode": opens the Mode palette, or closes it when open.
void ToggleModePalette();
// After a hit test, a drag or a load: the Point tool window, if open, shows
// the selected record anew.
void RefreshPointWindow();
// After a change of mode: the Mode palette, if open, shows the mode anew.
void RefreshModePalette();
// The modal dialogs; each returns when the user has closed it.
void RunSpaghettiDialog();
void RunOptionsDialog();
void RunAboutDialog();
