#include "shell/Window.h"

// Without a real window the title and menu are kept here, where tests read them.
static MString WindowText;
static WMenuState MenuState;
static int32_t ClientWidth = 0, ClientHeight = 0;

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
void MainClientSize(int32_t& width, int32_t& height) {
    width = ClientWidth;
    height = ClientHeight;
}
void SetMainClientSize(int32_t width, int32_t height) {
    ClientWidth = width;
    ClientHeight = height;
}
