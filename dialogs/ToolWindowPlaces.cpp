// The tool windows' places and open flags in the settings, their opening at
// start-up and their ending at shutdown.

#include "dialogs/ToolWindowPlaces.h"

#include "dialogs/Dialog.h"
#include "dialogs/ElementWindow.h"
#include "dialogs/ModePalette.h"
#include "dialogs/PointWindow.h"
#include "shell/Shell.h"

WRect& ToolWindowPlace(WSettings& settings, WToolWindow which) {
    switch (which) {
    case ToolPoint:
        return settings.WindowRect_Info;
    case ToolElement:
        return settings.WindowRect_Element;
    default:
        return settings.WindowRect_Mode;
    }
}

bool& ToolWindowShown(WSettings& settings, WToolWindow which) {
    switch (which) {
    case ToolPoint:
        return settings.ShowWindow_Point;
    case ToolElement:
        return settings.ShowWindow_Element;
    default:
        return settings.ShowWindow_Mode;
    }
}

void* ToolWindowHandle(WToolWindow which) {
    switch (which) {
    case ToolPoint:
        return TheInfoDialog ? TheInfoDialog->Window : nullptr;
    case ToolElement:
        return TheElementDialog ? TheElementDialog->Window : nullptr;
    default:
        return TheModeDialog ? TheModeDialog->Window : nullptr;
    }
}

// ---- Rectangles. An in-memory dialog has no screen: it keeps a rectangle
// here, 200 by 200 pixels at the origin until it is moved.

namespace {

struct MemoryPlace {
    void* Dialog = nullptr;
    WRect Rectangle;
};
MemoryPlace MemoryPlaces[ToolWindowCount];

MemoryPlace* PlaceOf(void* dialog, bool make) {
    for (MemoryPlace& place : MemoryPlaces)
        if (place.Dialog == dialog) return &place;
    if (!make) return nullptr;
    for (MemoryPlace& place : MemoryPlaces)
        if (!place.Dialog) {
            place.Dialog = dialog;
            place.Rectangle = WRect{0, 0, 200, 200};
            return &place;
        }
    return nullptr;
}

} // namespace

bool ToolWindowRect(void* dialog, WRect& rectangle) {
    if (!dialog) return false;
    if (!AsMemoryDialog(dialog)) return PlatformToolWindowRect(dialog, rectangle);
    MemoryPlace* place = PlaceOf(dialog, true);
    if (!place) return false;
    rectangle = place->Rectangle;
    return true;
}

void SetToolWindowRect(void* dialog, const WRect& rectangle) {
    if (!dialog) return;
    if (!AsMemoryDialog(dialog)) {
        PlatformSetToolWindowRect(dialog, rectangle);
        return;
    }
    if (MemoryPlace* place = PlaceOf(dialog, true)) place->Rectangle = rectangle;
}

void ShowToolWindowAtPlace(WToolWindow which, void* dialog) {
    WRect place = TheSettings ? ToolWindowPlace(*TheSettings, which) : WRect{};
    if (!AsMemoryDialog(dialog)) {
        PlatformShowToolWindowAt(dialog, place.left, place.top);
        return;
    }
    WRect rectangle;
    if (!ToolWindowRect(dialog, rectangle)) return;
    SetToolWindowRect(dialog,
                      WRect{place.left, place.top, place.left + rectangle.right - rectangle.left,
                            place.top + rectangle.bottom - rectangle.top});
    ShowDialog(dialog, true);
}

void EndToolWindow(void* dialog) {
    if (MemoryPlace* place = PlaceOf(dialog, false)) *place = MemoryPlace();
    DestroyDialog(dialog);
}

void OpenToolWindowRects(WRect rects[ToolWindowCount], bool open[ToolWindowCount]) {
    for (int32_t i = 0; i < ToolWindowCount; i++) {
        rects[i] = WRect{};
        void* window = ToolWindowHandle(WToolWindow(i));
        open[i] = window && ToolWindowRect(window, rects[i]);
    }
}

void StoreToolWindowRect(WToolWindow which) {
    WRect rectangle;
    void* window = ToolWindowHandle(which);
    if (TheSettings && window && ToolWindowRect(window, rectangle))
        ToolWindowPlace(*TheSettings, which) = rectangle;
}

void StoreToolWindowPlaces(int32_t alsoOpen) {
    WSettings* settings = TheSettings;
    if (!settings) return;
    WRect rects[ToolWindowCount];
    bool open[ToolWindowCount];
    OpenToolWindowRects(rects, open);
    for (int32_t i = 0; i < ToolWindowCount; i++) {
        WToolWindow which = WToolWindow(i);
        if (open[i]) ToolWindowPlace(*settings, which) = rects[i];
        ToolWindowShown(*settings, which) = open[i] || i == alsoOpen;
    }
}

void OpenToolWindowsAtStart() {
    WSettings* settings = TheSettings;
    if (!settings) return;
    if (settings->ShowWindow_Point && !TheInfoDialog) OpenInfo();
    if (settings->ShowWindow_Element && !TheElementDialog) OpenElement();
    if (settings->ShowWindow_Mode && !TheModeDialog) OpenMode();
}

void EndToolDialogs() {
    EndInfo();
    EndElement();
}

void EndModePalette() {
    EndMode();
}

void CloseToolWindowByBox(WToolWindow which) {
    StoreToolWindowPlaces(which);
    if (TheSettings) TheSettings->Save();
    switch (which) {
    case ToolPoint:
        EndInfo();
        break;
    case ToolElement:
        EndElement();
        break;
    default:
        EndMode();
        break;
    }
    RefreshMenu();
}
