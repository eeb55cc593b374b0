#pragma once
// The tool windows and modal dialogs as the rest of the program reaches them:
// the refreshes that edits ask of the Point tool window and the Mode palette,
// and the Spaghetti dialog. The tool windows themselves live in dialogs/.

// After a hit test, a drag or a commit: the Point tool window, if open,
// shows the selected record anew.
void RefreshPointWindow();
// After a change of mode: the Mode palette, if open, shows the mode anew.
void RefreshModePalette();
// The Spaghetti tool's dialog (dialogs/SpaghettiDialog.cpp); returns when the
// user has closed it.
void RunSpaghettiDialog();
