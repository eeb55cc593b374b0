// The tool windows' rectangles on the screen, and the length limit of their
// edits.

#include "dialogs/ToolWindowPlaces.h"

#include "shell/Shell.h"

#include <windows.h>

bool PlatformToolWindowRect(void* dialog, WRect& rectangle) {
    RECT rect = {};
    if (!dialog || !GetWindowRect(static_cast<HWND>(dialog), &rect)) return false;
    rectangle = WRect{rect.left, rect.top, rect.right, rect.bottom};
    return true;
}

void PlatformSetToolWindowRect(void* dialog, const WRect& rectangle) {
    if (!dialog) return;
    SetWindowPos(static_cast<HWND>(dialog), nullptr, rectangle.left, rectangle.top,
                 rectangle.right - rectangle.left, rectangle.bottom - rectangle.top,
                 SWP_NOZORDER | SWP_NOACTIVATE);
}

// Shown without activation: the keyboard stays with the main window. The
// dialog's creation gave the focus to its first control, which made the
// dialog the active window; the main window takes it back.
void PlatformShowToolWindowAt(void* dialog, int32_t left, int32_t top) {
    if (!dialog) return;
    SetWindowPos(static_cast<HWND>(dialog), nullptr, left, top, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE | SWP_SHOWWINDOW);
    HWND main = static_cast<HWND>(TheMainWindow);
    if (main && IsWindowVisible(main)) {
        SetActiveWindow(main);
        SetFocus(main);
    }
}

void PlatformLimitEdits(void* dialog, const int32_t* ids, int32_t count, int32_t length) {
    for (int32_t i = 0; i < count; i++)
        SendDlgItemMessageW(static_cast<HWND>(dialog), ids[i], EM_LIMITTEXT, WPARAM(length), 0);
}
