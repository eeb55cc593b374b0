// The commands' calls on the Windows shell and the main window.

#include "shell/Commands.h"

#include "shell/Shell.h"

#include <windows.h>

#include <shellapi.h>

// The browser that the user chose opens the page; its failure is its own.
void PlatformOpenWebPage(const MString& url) {
    ShellExecuteW(static_cast<HWND>(TheMainWindow), L"open",
                  reinterpret_cast<const wchar_t*>(url.Chars()), nullptr, nullptr, SW_SHOWNORMAL);
}

// Exit closes the window exactly as its close box does.
void PlatformRequestMainWindowClose() {
    if (HWND window = static_cast<HWND>(TheMainWindow)) SendMessageW(window, WM_CLOSE, 0, 0);
}
