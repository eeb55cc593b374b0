// The main window's procedure: it turns messages into calls on the portable
// shell and keeps nothing of its own.

#include "shell/WindowProc_win.h"

#include "foundation/Platform.h"
#include "resources/resource.h"
#include "shell/Input.h"
#include "shell/Shell.h"
#include "shell/Startup.h"

// The cursor and the modifier keys, read at the head of every message rather
// than taken from the message itself: a message may wait in the queue while
// the user moves on, and the gestures act on where the mouse is now.
struct MessageInput {
    MPoint2 Position;
    WKeys Keys;
};

static MessageInput ReadInput(HWND window) {
    MessageInput input;
    POINT cursor = {};
    GetCursorPos(&cursor);
    ScreenToClient(window, &cursor);
    input.Position = MPoint2{static_cast<float>(cursor.x), static_cast<float>(cursor.y)};
    input.Keys.Control = (GetAsyncKeyState(VK_CONTROL) & 0x8000) != 0;
    input.Keys.Shift = (GetAsyncKeyState(VK_SHIFT) & 0x8000) != 0;
    input.Keys.Alt = (GetAsyncKeyState(VK_MENU) & 0x8000) != 0;
    return input;
}

// The user's close (the window's close box, Alt+F4, File > Exit): the window
// goes only when the shell agrees; its destruction then ends the loop.
static void CloseMainWindow(HWND window) {
    RECT place = {};
    GetWindowRect(window, &place);
    if (!PrepareToClose(WRect{place.left, place.top, place.right, place.bottom})) return;
    DestroyWindow(window);
}

LRESULT CALLBACK MainWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    MessageInput input = ReadInput(window);
    switch (message) {
    case WM_COMMAND:
        switch (LOWORD(wParam)) {
        case IDM_EXIT:
            CloseMainWindow(window);
            return 0;
        default:
            break; // the other commands arrive with their subsystems
        }
        break;
    case WM_LBUTTONDOWN:
        // The capture keeps a stroke going when it leaves the client area.
        SetCapture(window);
        OnLeftButtonDown(input.Position, input.Keys);
        return 0;
    case WM_MOUSEMOVE:
        OnMouseMove(input.Position, input.Keys);
        return 0;
    case WM_LBUTTONUP:
        OnLeftButtonUp(input.Position, input.Keys);
        ReleaseCapture();
        return 0;
    case WM_CLOSE:
        CloseMainWindow(window);
        return 0;
    case WM_DESTROY:
        DebugOutput(u"Main window destroyed\n");
        PostQuitMessage(0);
        return 0;
    case WM_NCDESTROY:
        // From here on the shell works on its in-memory title and menu.
        if (TheMainWindow == window) TheMainWindow = nullptr;
        break;
    case WM_PAINT: {
        // Frames are drawn by the loop whenever it is idle; painting only
        // tells the system that the window is up to date.
        PAINTSTRUCT paint;
        BeginPaint(window, &paint);
        EndPaint(window, &paint);
        return 0;
    }
    default:
        break;
    }
    (void)input;
    return DefWindowProcW(window, message, wParam, lParam);
}
