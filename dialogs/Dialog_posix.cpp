// The native build has no windows: every dialog is an in-memory one, so the
// platform half is never handed a window it could show.

#include "dialogs/DialogPlatform.h"

int32_t PlatformRunModalDialog(int32_t, void*, const WDialogHandler&, void*, bool& ran) {
    ran = false;
    return DialogCancel;
}
void* PlatformCreateModelessDialog(int32_t, void*, const WDialogHandler&, void*) {
    return nullptr;
}
bool DispatchDialogMessage(void*) {
    return false;
}
void InitDialogs() {}

MString PlatformGetWindowText(void*) {
    return MString();
}
void PlatformSetWindowText(void*, const MString&) {}
MString PlatformGetControlText(void*, int32_t) {
    return MString();
}
void PlatformSetControlText(void*, int32_t, const MString&) {}
bool PlatformIsControlChecked(void*, int32_t) {
    return false;
}
void PlatformSetControlChecked(void*, int32_t, bool) {}
bool PlatformIsControlEnabled(void*, int32_t) {
    return false;
}
void PlatformEnableControl(void*, int32_t, bool) {}
void PlatformClearComboItems(void*, int32_t) {}
void PlatformAddComboItem(void*, int32_t, const MString&) {}
int32_t PlatformComboItemCount(void*, int32_t) {
    return 0;
}
MString PlatformComboItemText(void*, int32_t, int32_t) {
    return MString();
}
int32_t PlatformComboSelection(void*, int32_t) {
    return -1;
}
void PlatformSetComboSelection(void*, int32_t, int32_t) {}
WRect PlatformControlRect(void*, int32_t) {
    return WRect();
}
WRect PlatformDialogClientRect(void*) {
    return WRect();
}
void PlatformEndModalDialog(void*, int32_t) {}
void PlatformDestroyDialog(void*) {}
void PlatformShowDialog(void*, bool) {}
void* PlatformDialogContext(void*) {
    return nullptr;
}
int32_t PlatformDialogResource(void*) {
    return 0;
}
bool PlatformApplyDialogStep(void*, const WDialogStep&) {
    return false;
}
WRect PlatformDialogWindowRect(void*) {
    return WRect();
}
void PlatformMoveDialogTo(void*, int32_t, int32_t) {}
void PlatformSetDialogClientSize(void*, int32_t, int32_t) {}
void PlatformMoveControl(void*, int32_t, const WRect&) {}
void PlatformRedrawDialog(void*) {}
void PlatformRedrawControl(void*, int32_t) {}
// The face colour of a fresh Windows installation.
MColour ButtonFaceColour() {
    MColour face;
    face.r = face.g = face.b = 240;
    return face;
}
void PlatformPaintControlsNow(void*) {}
