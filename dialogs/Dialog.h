#pragma once
// What every dialog of the program stands on: a dialog made from its
// resource number, its controls reached by id, and the events a dialog
// procedure reacts to as plain calls.
//
// A dialog is an opaque pointer. It is a real window on Windows, or an
// in-memory dialog: a table of controls that keeps what the code writes into
// it. In-memory dialogs stand in for the real ones wherever no window can be
// made (the native build) and while a test answers the dialogs through
// TheDialogScript, so every flow through a dialog runs without a screen.

#include "foundation/MString.h"
#include "foundation/MVector.h"
#include "shell/WSettings.h"

#include <cstdint>

// Notification codes of a command, with the values Windows gives them.
enum DialogNotify : int32_t {
    NotifyClicked = 0,         // a button or check box was clicked
    NotifySelectionChange = 1, // a dropdown list's selection changed
    NotifyEditChange = 0x300,  // an edit's text changed
};
enum DialogResult : int32_t { DialogOk = 1, DialogCancel = 2 };

// The reactions of one dialog. Every entry may be null. The dialog given is
// the one that receives the event.
struct WDialogHandler {
    void (*Init)(void* dialog) = nullptr;
    // A command from a control (or 1 and 2 from Enter and Escape). Without a
    // Command entry, 1 and 2 end a modal dialog with that result; a modeless
    // dialog ignores them.
    void (*Command)(void* dialog, int32_t id, int32_t notify) = nullptr;
    // The close box. Without a Close entry it gives the command 2, as Escape
    // does.
    void (*Close)(void* dialog) = nullptr;
    // A paint of a real window, between its begin and end: dc is the device
    // context. In-memory dialogs are never painted.
    void (*Paint)(void* dialog, void* dc) = nullptr;
    // A left button press at client pixels.
    void (*LeftButtonDown)(void* dialog, int32_t x, int32_t y) = nullptr;
    // Any other message of a real window, before the dialog's own handling;
    // set handled to answer it with the result. The types are those of the
    // window procedure's parameters, widened.
    intptr_t (*Message)(void* dialog, uint32_t message, uintptr_t wParam, intptr_t lParam,
                        bool& handled) = nullptr;
};

// Runs the dialog of the resource number modally, owned by the given window,
// and returns the result it ended with (2 when it could not be made). The
// context is kept with the dialog for DialogContext.
int32_t RunModalDialog(int32_t resource, void* owner, const WDialogHandler& handler,
                       void* context = nullptr);
// Ends a modal dialog with the result once its handler returns.
void EndModalDialog(void* dialog, int32_t result);
// Makes the dialog of the resource number without waiting for it: hidden
// until ShowDialog, owned by the given window. Null when it cannot be made.
void* CreateModelessDialog(int32_t resource, void* owner, const WDialogHandler& handler,
                           void* context = nullptr);
void DestroyDialog(void* dialog);
void ShowDialog(void* dialog, bool show);
void* DialogContext(void* dialog); // the context it was made with
int32_t DialogResource(void* dialog);
// Gives the keyboard messages of the modeless dialogs to them (tab, Enter);
// the message loop asks this with each message before translating it. True
// when a dialog took the message. The message is the platform's MSG.
bool DispatchDialogMessage(void* message);
// Makes the common control classes ready, tooltips among them. Called once at
// start-up, before any dialog.
void InitDialogs();

// ---- Controls, by id. A missing control reads as empty, unchecked,
// disabled and without items, and ignores what is written to it.
MString GetWindowTextOf(void* window); // a dialog's title, or any window's text
void SetWindowTextOf(void* window, const MString& text);
MString GetControlText(void* dialog, int32_t id);
void SetControlText(void* dialog, int32_t id, const MString& text);
bool IsControlChecked(void* dialog, int32_t id);
void SetControlChecked(void* dialog, int32_t id, bool checked);
bool IsControlEnabled(void* dialog, int32_t id);
void EnableControl(void* dialog, int32_t id, bool enabled);
void ClearComboItems(void* dialog, int32_t id);
void AddComboItem(void* dialog, int32_t id, const MString& text);
int32_t ComboItemCount(void* dialog, int32_t id);
MString ComboItemText(void* dialog, int32_t id, int32_t index);
int32_t ComboSelection(void* dialog, int32_t id); // -1 for none
void SetComboSelection(void* dialog, int32_t id, int32_t index);
// A control's rectangle in the dialog's client pixels, and the client area.
WRect ControlRect(void* dialog, int32_t id);
WRect DialogClientRect(void* dialog);

// ---- Placement and painting
// The dialog's window rectangle in screen pixels.
WRect DialogWindowRect(void* dialog);
// Moves the window's top left corner to screen pixels, keeping its size.
void MoveDialogTo(void* dialog, int32_t left, int32_t top);
// Sizes the window so that its client area has the size, keeping its frame.
void SetDialogClientSize(void* dialog, int32_t width, int32_t height);
// Places a control at client pixels.
void MoveControl(void* dialog, int32_t id, const WRect& rect);
// Asks for a paint of the whole dialog, or of one control, at the next chance.
void RedrawDialog(void* dialog);
void RedrawControl(void* dialog, int32_t id);
// Lets the controls paint what they have waiting now, during the dialog's
// own paint, so that a drawing made after it lies over them (a group box
// fills its inside when it paints).
void PaintControlsNow(void* dialog);
// The system's colour of button faces, which dialogs are filled with.
MColour ButtonFaceColour();

// ---- In-memory dialogs
struct WMemoryControl {
    int32_t Id = 0;
    MString Text;
    bool Checked = false;
    bool Enabled = true;
    MVector<MString> Items; // the dropdown's entries
    int32_t ItemCount = 0;  // entries in use
    int32_t Selection = -1;
    WRect Rect;          // client pixels; all zero unless a test sets it or the code moves it
    int32_t Redraws = 0; // paints asked for
};
struct WMemoryDialog {
    int32_t Resource = 0;
    MString Title;
    void* Owner = nullptr;
    void* Context = nullptr;
    WDialogHandler Handler;           // a copy: the caller's may be gone
    MVector<WMemoryControl> Controls; // a control is made when it is first named
    int32_t ControlCount = 0;
    bool Modal = false;
    bool Ended = false; // a modal dialog was ended
    int32_t Result = 0;
    bool Visible = false;
    WRect Client;        // client pixels; all zero unless a test sets it or the code sizes it
    WRect Window;        // screen pixels; the frame is taken as nothing
    int32_t Redraws = 0; // paints asked for
    WMemoryDialog* NextLive = nullptr;

    WMemoryControl* Find(int32_t id);    // null when never named
    WMemoryControl& Control(int32_t id); // made on first use
};
// The in-memory dialog behind the pointer, or null for a real window.
WMemoryDialog* AsMemoryDialog(void* dialog);
// Makes and registers an in-memory dialog and runs its Init, as a real one
// would be made; DestroyDialog frees it.
WMemoryDialog* CreateMemoryDialog(int32_t resource, void* owner, const WDialogHandler& handler,
                                  void* context, bool modal);

// ---- The user, as in-memory dialogs meet one. Each step acts as the user
// would: on a disabled control it does nothing and counts as refused. A
// control the code never named counts as there and enabled.
enum WDialogStepKind {
    StepSetText, // types Text into the edit: the text changes, then the edit-change command
    StepCheck,   // clicks the check box if it is not already Value (0 or 1)
    StepClick,   // clicks the button: the click command
    StepSelect,  // selects entry Value of the dropdown, then the selection-change command
    StepPress,   // a left button press at client pixels X, Y
    StepClose,   // the close box
};
struct WDialogStep {
    WDialogStepKind Kind = StepClick;
    int32_t Id = 0;
    const char16_t* Text = nullptr;
    int32_t Value = 0;
    int32_t X = 0, Y = 0;
};
// Acts on the dialog; false when the step was refused.
bool ApplyDialogStep(void* dialog, const WDialogStep& step);

// The answer to one modal dialog: the steps, then a click on Ending (1 OK, 2
// Cancel, 0 the close box) unless a step already ended it.
struct WDialogAnswer {
    const WDialogStep* Steps = nullptr;
    int32_t StepCount = 0;
    int32_t Ending = DialogCancel;
};
// While set, every modal dialog is an in-memory dialog answered from here in
// order (Cancel once the answers run out), and modeless ones are in-memory
// dialogs too. A dialog still open after its ending is ended with 2.
struct DialogScript {
    const WDialogAnswer* Answers = nullptr;
    int32_t AnswerCount = 0;
    int32_t Count = 0;   // modal dialogs run so far
    int32_t Refused = 0; // steps refused so far
    int32_t LastResource = 0;
    int32_t LastResult = 0;
    MString LastTitle;
    // Called with each modal dialog after its Init, before the steps: a test
    // can place controls or read the dialog there.
    void (*AfterInit)(void* dialog) = nullptr;
    WMemoryDialog Opened; // the latest modal dialog just after Init
    WMemoryDialog Closed; // the same dialog as it ended
};
extern DialogScript* TheDialogScript;

// ---- The platform half. A null or 0 answer means the platform has no
// windows (the native build): the in-memory dialog stands in.
int32_t PlatformRunModalDialog(int32_t resource, void* owner, const WDialogHandler& handler,
                               void* context, bool& ran);
void* PlatformCreateModelessDialog(int32_t resource, void* owner, const WDialogHandler& handler,
                                   void* context);
