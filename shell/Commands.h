#pragma once
// The menu commands of the main window: one table from command id to the
// function that carries it out. The window procedure, the accelerators and
// the tests all go through RunCommand, so a command behaves the same however
// it was given.

#include "foundation/MString.h"
#include "shell/Shell.h"

#include <cstdint>

struct WCommand {
    int32_t Id;               // the menu item's id in the menu resource
    const char16_t* MenuText; // the item's text, as the menu shows it
    void (*Run)();
};
extern const WCommand Commands[];
extern const int32_t CommandCount;

// Runs the command of the id; false when no command has that id.
bool RunCommand(int32_t id);

// The mode as the commands and keys change it. Menu, title and the Mode
// palette are refreshed even when the mode stays the same.
void SetMode(WMode mode);

// ---- The commands, in the order of the menu.
void CommandNew();
void CommandOpen();
void CommandSave();
void CommandSaveAs();
void CommandTraceBitmap();
void CommandLoadBackground();
void CommandExit();
void CommandUndo();
void CommandRedo();
void CommandDrawFreehand();
void CommandEditSketch();
void CommandEditRoll();
void CommandGrid();
void CommandFlipHorizontal();
void CommandFlipVertical();
void CommandCentre();
void CommandNormalizeSize();
void CommandFront();
void CommandBack();
void CommandRight();
void CommandLeft();
void CommandTop();
void CommandBottom();
void CommandZoomIn();
void CommandZoomOut();
void CommandPoint();
void CommandElement();
void CommandMode();
void CommandSpaghetti();
void CommandOptions();
void CommandUserGuide();
void CommandCommunity();
void CommandAbout();

// ---- The maker's web pages. The host is ours to choose; the paths are
// fixed, since the pages behind them are linked from elsewhere too.
extern const char16_t* const TheMakerSite;  // scheme and host, no trailing "/"
MString MakerPageUrl(const char16_t* path); // TheMakerSite followed by path
// Opens the address in the user's browser. While TheWebPageScript is set the
// address is only recorded there.
void OpenWebPage(const MString& url);
struct WebPageScript {
    int32_t Count = 0; // pages asked for so far
    MString Last;      // the latest address
};
extern WebPageScript* TheWebPageScript;
// The platform half: the shell's "open" on the address (Windows), a debug
// line elsewhere.
void PlatformOpenWebPage(const MString& url);

// ---- Closing. Exit asks the main window to close as its close box does;
// the question about unsaved changes and the settings follow from there.
void RequestMainWindowClose();
extern int32_t TheCloseRequests; // how often a close was asked for (tests read it)
// The platform half: the close message to the main window (Windows);
// nothing elsewhere, where there is no window to close.
void PlatformRequestMainWindowClose();
