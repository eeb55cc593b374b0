// Dialogs and their controls: in-memory dialogs are answered here, real
// windows are handed to the platform half.

#include "dialogs/Dialog.h"

#include "dialogs/DialogPlatform.h"

DialogScript* TheDialogScript = nullptr;

namespace {

WMemoryDialog* LiveDialogs = nullptr; // every in-memory dialog not yet destroyed

void Register(WMemoryDialog* dialog) {
    dialog->NextLive = LiveDialogs;
    LiveDialogs = dialog;
}

void Unregister(WMemoryDialog* dialog) {
    for (WMemoryDialog** link = &LiveDialogs; *link; link = &(*link)->NextLive)
        if (*link == dialog) {
            *link = dialog->NextLive;
            return;
        }
}

// A copy for the script's records, cut loose from the live list.
void Snapshot(WMemoryDialog& into, const WMemoryDialog& dialog) {
    into = dialog;
    into.NextLive = nullptr;
}

// What a real dialog does with a command: the handler's entry, or the
// default of Enter and Escape.
void SendCommand(WMemoryDialog& dialog, int32_t id, int32_t notify) {
    if (dialog.Handler.Command) {
        dialog.Handler.Command(&dialog, id, notify);
        return;
    }
    if (dialog.Modal && (id == DialogOk || id == DialogCancel)) {
        dialog.Ended = true;
        dialog.Result = id;
    }
}

void SendClose(WMemoryDialog& dialog) {
    if (dialog.Handler.Close)
        dialog.Handler.Close(&dialog);
    else
        SendCommand(dialog, DialogCancel, NotifyClicked);
}

} // namespace

// ---- In-memory dialogs

WMemoryControl* WMemoryDialog::Find(int32_t id) {
    for (int32_t i = 0; i < ControlCount; i++)
        if (Controls[i].Id == id) return &Controls[i];
    return nullptr;
}

WMemoryControl& WMemoryDialog::Control(int32_t id) {
    if (WMemoryControl* found = Find(id)) return *found;
    if (ControlCount == Controls.Count) Controls.SetCount(Controls.Count + 16);
    WMemoryControl& control = Controls[ControlCount++];
    control.Id = id;
    return control;
}

WMemoryDialog* AsMemoryDialog(void* dialog) {
    for (WMemoryDialog* live = LiveDialogs; live; live = live->NextLive)
        if (live == dialog) return live;
    return nullptr;
}

WMemoryDialog* CreateMemoryDialog(int32_t resource, void* owner, const WDialogHandler& handler,
                                  void* context, bool modal) {
    WMemoryDialog* dialog = new WMemoryDialog;
    dialog->Resource = resource;
    dialog->Owner = owner;
    dialog->Context = context;
    dialog->Handler = handler;
    dialog->Modal = modal;
    Register(dialog);
    if (handler.Init) handler.Init(dialog);
    return dialog;
}

bool ApplyDialogStep(void* window, const WDialogStep& step) {
    WMemoryDialog* dialog = AsMemoryDialog(window);
    if (!dialog) return PlatformApplyDialogStep(window, step);
    if (step.Kind == StepPress) {
        if (dialog->Handler.LeftButtonDown) dialog->Handler.LeftButtonDown(dialog, step.X, step.Y);
        return true;
    }
    if (step.Kind == StepClose) {
        SendClose(*dialog);
        return true;
    }
    // A control the code never named, such as OK or an edit left empty, is
    // there and enabled, as in the template.
    WMemoryControl* control = &dialog->Control(step.Id);
    if (!control->Enabled) return false;
    switch (step.Kind) {
    case StepSetText:
        control->Text = MString(step.Text);
        SendCommand(*dialog, step.Id, NotifyEditChange);
        return true;
    case StepCheck:
        if (control->Checked == (step.Value != 0)) return true;
        control->Checked = step.Value != 0;
        SendCommand(*dialog, step.Id, NotifyClicked);
        return true;
    case StepClick:
        SendCommand(*dialog, step.Id, NotifyClicked);
        return true;
    case StepSelect:
        if (step.Value < 0 || step.Value >= control->ItemCount) return false;
        control->Selection = step.Value;
        SendCommand(*dialog, step.Id, NotifySelectionChange);
        return true;
    default:
        return false;
    }
}

// ---- Running dialogs

int32_t RunModalDialog(int32_t resource, void* owner, const WDialogHandler& handler,
                       void* context) {
    DialogScript* script = TheDialogScript;
    if (!script) {
        bool ran = false;
        int32_t result = PlatformRunModalDialog(resource, owner, handler, context, ran);
        if (ran) return result;
        // Nobody can answer: the dialog is made and cancelled.
    }
    WMemoryDialog* dialog = CreateMemoryDialog(resource, owner, handler, context, true);
    const WDialogAnswer* answer = nullptr;
    if (script) {
        int32_t index = script->Count++;
        if (script->Answers && index < script->AnswerCount) answer = &script->Answers[index];
        Snapshot(script->Opened, *dialog);
        if (script->AfterInit) script->AfterInit(dialog);
    }
    if (answer)
        for (int32_t i = 0; i < answer->StepCount && !dialog->Ended; i++)
            if (!ApplyDialogStep(dialog, answer->Steps[i]) && script) script->Refused++;
    if (!dialog->Ended) {
        int32_t ending = answer ? answer->Ending : int32_t(DialogCancel);
        WDialogStep last;
        last.Kind = ending == 0 ? StepClose : StepClick;
        last.Id = ending;
        ApplyDialogStep(dialog, last);
    }
    if (!dialog->Ended) {
        dialog->Ended = true;
        dialog->Result = DialogCancel;
    }
    int32_t result = dialog->Result;
    if (script) {
        Snapshot(script->Closed, *dialog);
        script->LastResource = resource;
        script->LastResult = result;
        script->LastTitle = dialog->Title;
    }
    DestroyDialog(dialog);
    return result;
}

void EndModalDialog(void* window, int32_t result) {
    if (WMemoryDialog* dialog = AsMemoryDialog(window)) {
        dialog->Ended = true;
        dialog->Result = result;
        return;
    }
    PlatformEndModalDialog(window, result);
}

void* CreateModelessDialog(int32_t resource, void* owner, const WDialogHandler& handler,
                           void* context) {
    if (!TheDialogScript)
        if (void* window = PlatformCreateModelessDialog(resource, owner, handler, context))
            return window;
    return CreateMemoryDialog(resource, owner, handler, context, false);
}

void DestroyDialog(void* window) {
    if (WMemoryDialog* dialog = AsMemoryDialog(window)) {
        Unregister(dialog);
        delete dialog;
        return;
    }
    if (window) PlatformDestroyDialog(window);
}

void ShowDialog(void* window, bool show) {
    if (WMemoryDialog* dialog = AsMemoryDialog(window))
        dialog->Visible = show;
    else if (window)
        PlatformShowDialog(window, show);
}

void* DialogContext(void* window) {
    if (WMemoryDialog* dialog = AsMemoryDialog(window)) return dialog->Context;
    return window ? PlatformDialogContext(window) : nullptr;
}

int32_t DialogResource(void* window) {
    if (WMemoryDialog* dialog = AsMemoryDialog(window)) return dialog->Resource;
    return window ? PlatformDialogResource(window) : 0;
}

// ---- Controls

MString GetWindowTextOf(void* window) {
    if (WMemoryDialog* dialog = AsMemoryDialog(window)) return dialog->Title;
    return window ? PlatformGetWindowText(window) : MString();
}

void SetWindowTextOf(void* window, const MString& text) {
    if (WMemoryDialog* dialog = AsMemoryDialog(window))
        dialog->Title = text;
    else if (window)
        PlatformSetWindowText(window, text);
}

MString GetControlText(void* window, int32_t id) {
    if (WMemoryDialog* dialog = AsMemoryDialog(window)) {
        WMemoryControl* control = dialog->Find(id);
        return control ? control->Text : MString();
    }
    return window ? PlatformGetControlText(window, id) : MString();
}

void SetControlText(void* window, int32_t id, const MString& text) {
    if (WMemoryDialog* dialog = AsMemoryDialog(window))
        dialog->Control(id).Text = text;
    else if (window)
        PlatformSetControlText(window, id, text);
}

bool IsControlChecked(void* window, int32_t id) {
    if (WMemoryDialog* dialog = AsMemoryDialog(window)) {
        WMemoryControl* control = dialog->Find(id);
        return control && control->Checked;
    }
    return window && PlatformIsControlChecked(window, id);
}

void SetControlChecked(void* window, int32_t id, bool checked) {
    if (WMemoryDialog* dialog = AsMemoryDialog(window))
        dialog->Control(id).Checked = checked;
    else if (window)
        PlatformSetControlChecked(window, id, checked);
}

bool IsControlEnabled(void* window, int32_t id) {
    if (WMemoryDialog* dialog = AsMemoryDialog(window)) {
        WMemoryControl* control = dialog->Find(id);
        return control && control->Enabled;
    }
    return window && PlatformIsControlEnabled(window, id);
}

void EnableControl(void* window, int32_t id, bool enabled) {
    if (WMemoryDialog* dialog = AsMemoryDialog(window))
        dialog->Control(id).Enabled = enabled;
    else if (window)
        PlatformEnableControl(window, id, enabled);
}

void ClearComboItems(void* window, int32_t id) {
    if (WMemoryDialog* dialog = AsMemoryDialog(window)) {
        WMemoryControl& control = dialog->Control(id);
        control.ItemCount = 0;
        control.Selection = -1;
    } else if (window) {
        PlatformClearComboItems(window, id);
    }
}

void AddComboItem(void* window, int32_t id, const MString& text) {
    if (WMemoryDialog* dialog = AsMemoryDialog(window)) {
        WMemoryControl& control = dialog->Control(id);
        if (control.ItemCount == control.Items.Count &&
            !control.Items.SetCount(control.Items.Count + 16))
            control.ItemCount = 0;
        if (control.ItemCount < control.Items.Count) control.Items[control.ItemCount++] = text;
    } else if (window) {
        PlatformAddComboItem(window, id, text);
    }
}

int32_t ComboItemCount(void* window, int32_t id) {
    if (WMemoryDialog* dialog = AsMemoryDialog(window)) {
        WMemoryControl* control = dialog->Find(id);
        return control ? control->ItemCount : 0;
    }
    return window ? PlatformComboItemCount(window, id) : 0;
}

MString ComboItemText(void* window, int32_t id, int32_t index) {
    if (WMemoryDialog* dialog = AsMemoryDialog(window)) {
        WMemoryControl* control = dialog->Find(id);
        if (!control || index < 0 || index >= control->ItemCount) return MString();
        return control->Items[index];
    }
    return window ? PlatformComboItemText(window, id, index) : MString();
}

int32_t ComboSelection(void* window, int32_t id) {
    if (WMemoryDialog* dialog = AsMemoryDialog(window)) {
        WMemoryControl* control = dialog->Find(id);
        return control ? control->Selection : -1;
    }
    return window ? PlatformComboSelection(window, id) : -1;
}

// As the dropdown does: an index outside the list selects nothing.
void SetComboSelection(void* window, int32_t id, int32_t index) {
    if (WMemoryDialog* dialog = AsMemoryDialog(window)) {
        WMemoryControl& control = dialog->Control(id);
        control.Selection = index >= 0 && index < control.ItemCount ? index : -1;
    } else if (window) {
        PlatformSetComboSelection(window, id, index);
    }
}

WRect ControlRect(void* window, int32_t id) {
    if (WMemoryDialog* dialog = AsMemoryDialog(window)) {
        WMemoryControl* control = dialog->Find(id);
        return control ? control->Rect : WRect();
    }
    return window ? PlatformControlRect(window, id) : WRect();
}

WRect DialogClientRect(void* window) {
    if (WMemoryDialog* dialog = AsMemoryDialog(window)) return dialog->Client;
    return window ? PlatformDialogClientRect(window) : WRect();
}

// ---- Placement and painting

WRect DialogWindowRect(void* window) {
    if (WMemoryDialog* dialog = AsMemoryDialog(window)) return dialog->Window;
    return window ? PlatformDialogWindowRect(window) : WRect();
}

void MoveDialogTo(void* window, int32_t left, int32_t top) {
    if (WMemoryDialog* dialog = AsMemoryDialog(window)) {
        WRect& place = dialog->Window;
        place = WRect{left, top, left + place.right - place.left, top + place.bottom - place.top};
    } else if (window) {
        PlatformMoveDialogTo(window, left, top);
    }
}

void SetDialogClientSize(void* window, int32_t width, int32_t height) {
    if (WMemoryDialog* dialog = AsMemoryDialog(window)) {
        dialog->Client = WRect{0, 0, width, height};
        dialog->Window.right = dialog->Window.left + width;
        dialog->Window.bottom = dialog->Window.top + height;
    } else if (window) {
        PlatformSetDialogClientSize(window, width, height);
    }
}

void MoveControl(void* window, int32_t id, const WRect& rect) {
    if (WMemoryDialog* dialog = AsMemoryDialog(window))
        dialog->Control(id).Rect = rect;
    else if (window)
        PlatformMoveControl(window, id, rect);
}

void RedrawDialog(void* window) {
    if (WMemoryDialog* dialog = AsMemoryDialog(window))
        dialog->Redraws++;
    else if (window)
        PlatformRedrawDialog(window);
}

void RedrawControl(void* window, int32_t id) {
    if (WMemoryDialog* dialog = AsMemoryDialog(window))
        dialog->Control(id).Redraws++;
    else if (window)
        PlatformRedrawControl(window, id);
}

void PaintControlsNow(void* window) {
    if (window && !AsMemoryDialog(window)) PlatformPaintControlsNow(window);
}
