#pragma once
// The platform half of the dialogs, defined in Dialog_win.cpp and
// Dialog_posix.cpp. Dialog.cpp has already sent in-memory dialogs their own
// way; these receive real windows only. Without windows (the native build)
// they answer as for a missing control.

#include "dialogs/Dialog.h"

MString PlatformGetWindowText(void* window);
void PlatformSetWindowText(void* window, const MString& text);
MString PlatformGetControlText(void* dialog, int32_t id);
void PlatformSetControlText(void* dialog, int32_t id, const MString& text);
bool PlatformIsControlChecked(void* dialog, int32_t id);
void PlatformSetControlChecked(void* dialog, int32_t id, bool checked);
bool PlatformIsControlEnabled(void* dialog, int32_t id);
void PlatformEnableControl(void* dialog, int32_t id, bool enabled);
void PlatformClearComboItems(void* dialog, int32_t id);
void PlatformAddComboItem(void* dialog, int32_t id, const MString& text);
int32_t PlatformComboItemCount(void* dialog, int32_t id);
MString PlatformComboItemText(void* dialog, int32_t id, int32_t index);
int32_t PlatformComboSelection(void* dialog, int32_t id);
void PlatformSetComboSelection(void* dialog, int32_t id, int32_t index);
WRect PlatformControlRect(void* dialog, int32_t id);
WRect PlatformDialogClientRect(void* dialog);
void PlatformEndModalDialog(void* dialog, int32_t result);
void PlatformDestroyDialog(void* dialog);
void PlatformShowDialog(void* dialog, bool show);
void* PlatformDialogContext(void* dialog);
int32_t PlatformDialogResource(void* dialog);
bool PlatformApplyDialogStep(void* dialog, const WDialogStep& step);
WRect PlatformDialogWindowRect(void* dialog);
void PlatformMoveDialogTo(void* dialog, int32_t left, int32_t top);
void PlatformSetDialogClientSize(void* dialog, int32_t width, int32_t height);
void PlatformMoveControl(void* dialog, int32_t id, const WRect& rect);
void PlatformRedrawDialog(void* dialog);
void PlatformRedrawControl(void* dialog, int32_t id);
void PlatformPaintControlsNow(void* dialog);
