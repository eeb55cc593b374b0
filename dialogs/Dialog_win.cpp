// Dialogs as Windows makes them from the program's resources: one dialog
// procedure turns messages into the calls of a WDialogHandler.

#include "dialogs/DialogPlatform.h"

#include <windows.h>

#include <commctrl.h>
#include <windowsx.h>

namespace {

// What a dialog window keeps in its user slot from creation to destruction.
struct WDialogBinding {
    WDialogHandler Handler;
    void* Context = nullptr;
    int32_t Resource = 0;
    bool Modal = false;
};

// The modeless dialogs alive, for DispatchDialogMessage.
enum { ModelessCapacity = 16 };
HWND Modeless[ModelessCapacity] = {};

void ForgetModeless(HWND window) {
    for (HWND& slot : Modeless)
        if (slot == window) slot = nullptr;
}

WDialogBinding* BindingOf(HWND window) {
    return reinterpret_cast<WDialogBinding*>(GetWindowLongPtrW(window, DWLP_USER));
}

HWND Item(void* dialog, int32_t id) {
    return GetDlgItem(static_cast<HWND>(dialog), id);
}

const wchar_t* Wide(const MString& text) {
    return reinterpret_cast<const wchar_t*>(text.Chars());
}

MString TextOf(HWND window) {
    if (!window) return MString();
    int length = GetWindowTextLengthW(window);
    if (length <= 0) return MString();
    MVector<wchar_t> buffer;
    if (!buffer.SetCount(length + 1)) return MString();
    int got = GetWindowTextW(window, buffer.Data, length + 1);
    buffer[got > 0 && got <= length ? got : 0] = 0;
    return MString(reinterpret_cast<const char16_t*>(buffer.Data));
}

INT_PTR CALLBACK DialogProcedure(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
    if (message == WM_INITDIALOG) {
        WDialogBinding* binding = reinterpret_cast<WDialogBinding*>(lParam);
        SetWindowLongPtrW(window, DWLP_USER, LONG_PTR(binding));
        if (binding && binding->Handler.Init) binding->Handler.Init(window);
        return TRUE;
    }
    WDialogBinding* binding = BindingOf(window);
    if (!binding) return FALSE;
    const WDialogHandler& handler = binding->Handler;
    if (handler.Message) {
        bool handled = false;
        intptr_t result = handler.Message(window, message, wParam, lParam, handled);
        if (handled) {
            SetWindowLongPtrW(window, DWLP_MSGRESULT, LONG_PTR(result));
            return TRUE;
        }
    }
    switch (message) {
    case WM_COMMAND: {
        int32_t id = LOWORD(wParam);
        if (handler.Command)
            handler.Command(window, id, HIWORD(wParam));
        else if (binding->Modal && (id == IDOK || id == IDCANCEL))
            EndDialog(window, id);
        return TRUE;
    }
    case WM_CLOSE:
        if (!handler.Close) return FALSE; // the dialog manager sends IDCANCEL
        handler.Close(window);
        return TRUE;
    case WM_PAINT: {
        if (!handler.Paint) return FALSE;
        PAINTSTRUCT paint;
        HDC dc = BeginPaint(window, &paint);
        handler.Paint(window, dc);
        EndPaint(window, &paint);
        return TRUE;
    }
    case WM_LBUTTONDOWN:
        if (!handler.LeftButtonDown) return FALSE;
        handler.LeftButtonDown(window, GET_X_LPARAM(lParam), GET_Y_LPARAM(lParam));
        return TRUE;
    case WM_NCDESTROY:
        SetWindowLongPtrW(window, DWLP_USER, 0);
        if (!binding->Modal) {
            ForgetModeless(window);
            delete binding;
        }
        return FALSE;
    }
    return FALSE;
}

} // namespace

void InitDialogs() {
    INITCOMMONCONTROLSEX controls = {};
    controls.dwSize = sizeof controls;
    controls.dwICC = ICC_WIN95_CLASSES | ICC_STANDARD_CLASSES;
    InitCommonControlsEx(&controls);
}

int32_t PlatformRunModalDialog(int32_t resource, void* owner, const WDialogHandler& handler,
                               void* context, bool& ran) {
    WDialogBinding binding;
    binding.Handler = handler;
    binding.Context = context;
    binding.Resource = resource;
    binding.Modal = true;
    INT_PTR result = DialogBoxParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(resource),
                                     static_cast<HWND>(owner), DialogProcedure, LPARAM(&binding));
    ran = true;
    return result <= 0 ? int32_t(DialogCancel) : int32_t(result);
}

void* PlatformCreateModelessDialog(int32_t resource, void* owner, const WDialogHandler& handler,
                                   void* context) {
    WDialogBinding* binding = new WDialogBinding;
    binding->Handler = handler;
    binding->Context = context;
    binding->Resource = resource;
    HWND window = CreateDialogParamW(GetModuleHandleW(nullptr), MAKEINTRESOURCEW(resource),
                                     static_cast<HWND>(owner), DialogProcedure, LPARAM(binding));
    if (!window) {
        delete binding;
        return nullptr;
    }
    for (HWND& slot : Modeless)
        if (!slot) {
            slot = window;
            break;
        }
    return window;
}

bool DispatchDialogMessage(void* message) {
    MSG* msg = static_cast<MSG*>(message);
    for (HWND window : Modeless)
        if (window && IsDialogMessageW(window, msg)) return true;
    return false;
}

MString PlatformGetWindowText(void* window) {
    return TextOf(static_cast<HWND>(window));
}
void PlatformSetWindowText(void* window, const MString& text) {
    SetWindowTextW(static_cast<HWND>(window), Wide(text));
}
MString PlatformGetControlText(void* dialog, int32_t id) {
    return TextOf(Item(dialog, id));
}
void PlatformSetControlText(void* dialog, int32_t id, const MString& text) {
    SetDlgItemTextW(static_cast<HWND>(dialog), id, Wide(text));
}
bool PlatformIsControlChecked(void* dialog, int32_t id) {
    return IsDlgButtonChecked(static_cast<HWND>(dialog), id) == BST_CHECKED;
}
void PlatformSetControlChecked(void* dialog, int32_t id, bool checked) {
    CheckDlgButton(static_cast<HWND>(dialog), id, checked ? BST_CHECKED : BST_UNCHECKED);
}
bool PlatformIsControlEnabled(void* dialog, int32_t id) {
    HWND item = Item(dialog, id);
    return item && IsWindowEnabled(item);
}
void PlatformEnableControl(void* dialog, int32_t id, bool enabled) {
    if (HWND item = Item(dialog, id)) EnableWindow(item, enabled);
}
void PlatformClearComboItems(void* dialog, int32_t id) {
    SendDlgItemMessageW(static_cast<HWND>(dialog), id, CB_RESETCONTENT, 0, 0);
}
void PlatformAddComboItem(void* dialog, int32_t id, const MString& text) {
    SendDlgItemMessageW(static_cast<HWND>(dialog), id, CB_ADDSTRING, 0, LPARAM(Wide(text)));
}
int32_t PlatformComboItemCount(void* dialog, int32_t id) {
    LRESULT count = SendDlgItemMessageW(static_cast<HWND>(dialog), id, CB_GETCOUNT, 0, 0);
    return count < 0 ? 0 : int32_t(count);
}
MString PlatformComboItemText(void* dialog, int32_t id, int32_t index) {
    HWND combo = Item(dialog, id);
    LRESULT length = SendMessageW(combo, CB_GETLBTEXTLEN, WPARAM(index), 0);
    if (!combo || length <= 0) return MString();
    MVector<wchar_t> buffer;
    if (!buffer.SetCount(int32_t(length) + 1)) return MString();
    LRESULT got = SendMessageW(combo, CB_GETLBTEXT, WPARAM(index), LPARAM(buffer.Data));
    buffer[got > 0 && got <= length ? int32_t(got) : 0] = 0;
    return MString(reinterpret_cast<const char16_t*>(buffer.Data));
}
int32_t PlatformComboSelection(void* dialog, int32_t id) {
    LRESULT selection = SendDlgItemMessageW(static_cast<HWND>(dialog), id, CB_GETCURSEL, 0, 0);
    return selection < 0 ? -1 : int32_t(selection);
}
void PlatformSetComboSelection(void* dialog, int32_t id, int32_t index) {
    SendDlgItemMessageW(static_cast<HWND>(dialog), id, CB_SETCURSEL, WPARAM(index), 0);
}
WRect PlatformControlRect(void* dialog, int32_t id) {
    WRect rect;
    HWND item = Item(dialog, id);
    RECT box;
    if (!item || !GetWindowRect(item, &box)) return rect;
    MapWindowPoints(nullptr, static_cast<HWND>(dialog), reinterpret_cast<POINT*>(&box), 2);
    rect.left = box.left;
    rect.top = box.top;
    rect.right = box.right;
    rect.bottom = box.bottom;
    return rect;
}
WRect PlatformDialogClientRect(void* dialog) {
    WRect rect;
    RECT box;
    if (!GetClientRect(static_cast<HWND>(dialog), &box)) return rect;
    rect.left = box.left;
    rect.top = box.top;
    rect.right = box.right;
    rect.bottom = box.bottom;
    return rect;
}
void PlatformEndModalDialog(void* dialog, int32_t result) {
    EndDialog(static_cast<HWND>(dialog), result);
}
void PlatformDestroyDialog(void* dialog) {
    DestroyWindow(static_cast<HWND>(dialog));
}
void PlatformShowDialog(void* dialog, bool show) {
    ShowWindow(static_cast<HWND>(dialog), show ? SW_SHOW : SW_HIDE);
}
void* PlatformDialogContext(void* dialog) {
    WDialogBinding* binding = BindingOf(static_cast<HWND>(dialog));
    return binding ? binding->Context : nullptr;
}
int32_t PlatformDialogResource(void* dialog) {
    WDialogBinding* binding = BindingOf(static_cast<HWND>(dialog));
    return binding ? binding->Resource : 0;
}

// The user's acts as the controls themselves report them: a typed text and a
// click come back through the controls' own notifications.
bool PlatformApplyDialogStep(void* dialog, const WDialogStep& step) {
    HWND window = static_cast<HWND>(dialog);
    if (step.Kind == StepPress) {
        SendMessageW(window, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(step.X, step.Y));
        return true;
    }
    if (step.Kind == StepClose) {
        SendMessageW(window, WM_CLOSE, 0, 0);
        return true;
    }
    HWND item = Item(dialog, step.Id);
    if (!item || !IsWindowEnabled(item)) return false;
    switch (step.Kind) {
    case StepSetText:
        SetWindowTextW(item, reinterpret_cast<const wchar_t*>(step.Text ? step.Text : u""));
        return true;
    case StepCheck:
        if ((IsDlgButtonChecked(window, step.Id) == BST_CHECKED) != (step.Value != 0))
            SendMessageW(item, BM_CLICK, 0, 0);
        return true;
    case StepClick:
        SendMessageW(item, BM_CLICK, 0, 0);
        return true;
    case StepSelect:
        if (SendMessageW(item, CB_SETCURSEL, WPARAM(step.Value), 0) == CB_ERR) return false;
        SendMessageW(window, WM_COMMAND, MAKEWPARAM(step.Id, CBN_SELCHANGE), LPARAM(item));
        return true;
    default:
        return false;
    }
}

WRect PlatformDialogWindowRect(void* dialog) {
    RECT box;
    if (!GetWindowRect(static_cast<HWND>(dialog), &box)) return WRect();
    return WRect{box.left, box.top, box.right, box.bottom};
}
void PlatformMoveDialogTo(void* dialog, int32_t left, int32_t top) {
    SetWindowPos(static_cast<HWND>(dialog), nullptr, left, top, 0, 0,
                 SWP_NOSIZE | SWP_NOZORDER | SWP_NOACTIVATE);
}
// The frame is what lies between the window and its client area now.
void PlatformSetDialogClientSize(void* dialog, int32_t width, int32_t height) {
    HWND window = static_cast<HWND>(dialog);
    RECT outer, inner;
    if (!GetWindowRect(window, &outer) || !GetClientRect(window, &inner)) return;
    int32_t frameWidth = (outer.right - outer.left) - (inner.right - inner.left);
    int32_t frameHeight = (outer.bottom - outer.top) - (inner.bottom - inner.top);
    SetWindowPos(window, nullptr, 0, 0, width + frameWidth, height + frameHeight,
                 SWP_NOMOVE | SWP_NOZORDER | SWP_NOACTIVATE);
}
void PlatformMoveControl(void* dialog, int32_t id, const WRect& rect) {
    if (HWND item = Item(dialog, id))
        MoveWindow(item, rect.left, rect.top, rect.right - rect.left, rect.bottom - rect.top, TRUE);
}
void PlatformRedrawDialog(void* dialog) {
    InvalidateRect(static_cast<HWND>(dialog), nullptr, TRUE);
}
void PlatformRedrawControl(void* dialog, int32_t id) {
    if (HWND item = Item(dialog, id)) InvalidateRect(item, nullptr, TRUE);
}
MColour ButtonFaceColour() {
    DWORD face = GetSysColor(COLOR_BTNFACE);
    MColour colour;
    colour.r = GetRValue(face);
    colour.g = GetGValue(face);
    colour.b = GetBValue(face);
    colour.a = 255;
    return colour;
}
void PlatformPaintControlsNow(void* dialog) {
    for (HWND child = GetWindow(static_cast<HWND>(dialog), GW_CHILD); child;
         child = GetWindow(child, GW_HWNDNEXT))
        UpdateWindow(child);
}
