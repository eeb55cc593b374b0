// The main window's procedure: it turns messages into calls on the portable
// shell and keeps nothing of its own.

#include "shell/WindowProc_win.h"

#include "foundation/MString.h"
#include "foundation/Platform.h"
#include "resources/resource.h"
#include "shell/Commands.h"
#include "shell/Input.h"
#include "shell/Keys.h"
#include "shell/Shell.h"
#include "shell/Startup.h"

#include <shellapi.h>

// The cursor and the modifier keys, read at the head of every message rather
// than taken from the message itself: a message may wait in the queue while
// the user moves on, and the gestures act on where the mouse is now.
struct MessageInput {
    MPoint2 Position; // client pixels; (0, 0) when the cursor cannot be read
    WKeys Keys;
};

static MessageInput ReadInput(HWND window) {
    MessageInput input;
    POINT cursor = {};
    if (GetCursorPos(&cursor) && ScreenToClient(window, &cursor))
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

// Only the first file counts, and only as many characters of it as a path
// may have; the drop is finished whatever becomes of it.
static void DropFiles(HDROP drop) {
    wchar_t name[MaxDroppedPathLength + 1] = {};
    UINT count = DragQueryFileW(drop, 0xFFFFFFFF, nullptr, 0);
    UINT length = count > 0 ? DragQueryFileW(drop, 0, name, MaxDroppedPathLength + 1) : 0;
    DragFinish(drop);
    if (length > 0) OnFileDropped(MString(reinterpret_cast<const char16_t*>(name)));
}

LRESULT CALLBACK MainWindowProc(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    MessageInput input = ReadInput(window);
    switch (message) {
    case WM_COMMAND:
        if (RunCommand(LOWORD(wParam))) return 0;
        break;
    case WM_CHAR:
        OnCharacter(static_cast<char16_t>(wParam));
        return 0;
    case WM_KEYDOWN:
        if (wParam != VK_DELETE) break;
        OnDeleteKey(input.Keys);
        return 0;
    case WM_LBUTTONDOWN:
        // The capture keeps a stroke or a drag going outside the client area
        // until the last button is up (the message's flags say which are).
        SetCapture(window);
        OnLeftButtonDown(input.Position, input.Keys);
        return 0;
    case WM_LBUTTONUP:
        OnLeftButtonUp(input.Position, input.Keys);
        if (!(wParam & MK_RBUTTON)) ReleaseCapture();
        return 0;
    case WM_RBUTTONDOWN:
        SetCapture(window);
        OnRightButtonDown(input.Position, input.Keys);
        return 0;
    case WM_RBUTTONUP:
        OnRightButtonUp(input.Position, input.Keys);
        if (!(wParam & MK_LBUTTON)) ReleaseCapture();
        return 0;
    case WM_MOUSEMOVE:
        OnMouseMove(input.Position, input.Keys);
        return 0;
    case WM_MOUSEWHEEL:
        OnMouseWheel(GET_WHEEL_DELTA_WPARAM(wParam));
        return 0;
    case WM_DROPFILES:
        DropFiles(reinterpret_cast<HDROP>(wParam));
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
    return DefWindowProcW(window, message, wParam, lParam);
}
