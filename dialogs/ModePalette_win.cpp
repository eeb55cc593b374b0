// The palette's window calls: its client area and device context, the
// button face colour, the tooltips over its buttons, and its placement.

#include "dialogs/ModePalette.h"

#include "dialogs/Dialog.h"

#include <windows.h>

#include <commctrl.h>

bool PlatformPaletteClient(void* window, WRect& client) {
    RECT rect = {};
    if (!window || !GetClientRect(static_cast<HWND>(window), &rect)) return false;
    client = WRect{rect.left, rect.top, rect.right, rect.bottom};
    return true;
}

void* PlatformPaletteDc(void* window) {
    return GetDC(static_cast<HWND>(window));
}

void PlatformReleasePaletteDc(void* window, void* dc) {
    ReleaseDC(static_cast<HWND>(window), static_cast<HDC>(dc));
}

MColour PlatformButtonFace() {
    COLORREF face = GetSysColor(COLOR_BTNFACE);
    return MColour{GetBValue(face), GetGValue(face), GetRValue(face), 255};
}

// One tooltip window per button, each with one tool over its rows whose text
// the palette gives when asked.
void PlatformMakePaletteTooltips(WDialog_Mode& palette) {
    if (AsMemoryDialog(palette.Window)) return;
    HWND owner = static_cast<HWND>(palette.Window);
    HINSTANCE instance =
        palette.Instance ? static_cast<HINSTANCE>(palette.Instance) : GetModuleHandleW(nullptr);
    for (int32_t i = 0; i < 3; i++) {
        HWND tip =
            CreateWindowExW(WS_EX_TOPMOST, TOOLTIPS_CLASSW, nullptr,
                            WS_POPUP | TTS_ALWAYSTIP | TTS_NOPREFIX, CW_USEDEFAULT, CW_USEDEFAULT,
                            CW_USEDEFAULT, CW_USEDEFAULT, owner, nullptr, instance, nullptr);
        palette.Tooltips[i] = tip;
        if (!tip) continue;
        TOOLINFOW tool = {};
        tool.cbSize = sizeof tool;
        tool.uFlags = TTF_SUBCLASS;
        tool.hwnd = owner;
        tool.uId = UINT_PTR(PaletteTooltipFirstId + i);
        tool.rect = RECT{0, i * PaletteTileSize, PaletteWidth, (i + 1) * PaletteTileSize};
        tool.hinst = instance;
        tool.lpszText = LPSTR_TEXTCALLBACKW;
        SendMessageW(tip, TTM_ADDTOOLW, 0, reinterpret_cast<LPARAM>(&tool));
        SendMessageW(tip, TTM_SETDELAYTIME, TTDT_AUTOPOP, PaletteTooltipHideTime);
    }
}

// The click message's own position is not used: the palette acts on where
// the cursor is now, as the main window does.
float PaletteCursorRow(void* window, float y) {
    if (AsMemoryDialog(window)) return y;
    POINT cursor = {};
    if (!GetCursorPos(&cursor) || !ScreenToClient(static_cast<HWND>(window), &cursor)) return 0;
    return float(cursor.y);
}

// A tooltip asks for the text of its tool by the tool's id.
intptr_t PlatformPaletteMessage(void*, uint32_t message, uintptr_t, intptr_t lParam,
                                bool& handled) {
    handled = false;
    if (message != WM_NOTIFY) return 0;
    NMHDR* header = reinterpret_cast<NMHDR*>(lParam);
    if (!header || header->code != TTN_GETDISPINFOW) return 0;
    static MString shown; // kept until the tooltip has copied it
    shown = PaletteTooltipText(int32_t(header->idFrom));
    NMTTDISPINFOW* info = reinterpret_cast<NMTTDISPINFOW*>(lParam);
    info->lpszText = reinterpret_cast<wchar_t*>(shown.Text);
    info->hinst = nullptr;
    handled = true;
    return 0;
}
