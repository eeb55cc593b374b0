#include "shell/Window.h"

// Without a real window the title and menu are kept here, where tests read them.
static MString WindowText;
static WMenuState MenuState;

MString MainWindowText() {
    return WindowText;
}
void SetMainWindowText(const MString& text) {
    WindowText = text;
}
void ApplyMenuState(const WMenuState& state) {
    MenuState = state;
}
WMenuState AppliedMenuState() {
    return MenuState;
}
