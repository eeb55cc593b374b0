// The Point tool window: what it shows of the selected record, and how its
// fields become a record again.

#include "dialogs/PointWindow.h"

#include "dialogs/Dialog.h"
#include "dialogs/DialogFields.h"
#include "dialogs/ToolWindowPlaces.h"
#include "foundation/Platform.h"
#include "resources/resource.h"
#include "shell/Shell.h"

WDialog_Info* TheInfoDialog = nullptr;

const int32_t InfoEditIds[12] = {IDC_INFO_POSITION_X,  IDC_INFO_POSITION_Y,  IDC_INFO_POSITION_Z,
                                 IDC_INFO_HANDLEIN_X,  IDC_INFO_HANDLEIN_Y,  IDC_INFO_HANDLEIN_Z,
                                 IDC_INFO_HANDLEOUT_X, IDC_INFO_HANDLEOUT_Y, IDC_INFO_HANDLEOUT_Z,
                                 IDC_INFO_ROLL_X,      IDC_INFO_ROLL_Y,      IDC_INFO_ROLL_Z};
const char16_t* const InfoKindNames[3] = {u"Move", u"Line", u"Curve"};

void InfoValues(const WSketchPoint& record, float values[12]) {
    const MPoint3* vectors[4] = {&record.Position, &record.HandleIn, &record.HandleOut,
                                 &record.Roll};
    for (int32_t i = 0; i < 4; i++) {
        values[3 * i] = vectors[i]->x;
        values[3 * i + 1] = vectors[i]->y;
        values[3 * i + 2] = vectors[i]->z;
    }
}

WSketchPoint InfoRecord(int32_t kind, const float values[12], bool smooth) {
    WSketchPoint record;
    MPoint3* vectors[4] = {&record.Position, &record.HandleIn, &record.HandleOut, &record.Roll};
    for (int32_t i = 0; i < 4; i++)
        *vectors[i] = MPoint3{values[3 * i], values[3 * i + 1], values[3 * i + 2]};
    record.Kind = uint8_t(kind < KindMove || kind > KindCurve ? KindMove : kind);
    record.Smooth = smooth ? 1 : 0;
    return record;
}

static WSketchPoint* SelectedRecord() {
    WSketch* sketch = TheSketch;
    if (!sketch || sketch->Current < 0 || sketch->Current >= sketch->PointCount) return nullptr;
    return &sketch->Points[sketch->Current];
}

static void EnableAll(void* dialog, bool enabled) {
    EnableControl(dialog, IDC_INFO_KIND, enabled);
    EnableControl(dialog, IDC_INFO_ALIGN, enabled);
    for (int32_t id : InfoEditIds)
        EnableControl(dialog, id, enabled);
}

// The writers leave a field alone when its text already means the value, so
// a refresh while the user types keeps the caret and the typed form ("1.").
void WDialog_Info::Refresh() {
    if (!Window) return;
    WSketchPoint* record = SelectedRecord();
    EnableAll(Window, record != nullptr);
    if (!record) {
        for (int32_t id : InfoEditIds)
            SetText(Window, id, MString());
        SetControlChecked(Window, IDC_INFO_ALIGN, false);
        SetComboIndex(Window, IDC_INFO_KIND, 0);
        return;
    }
    Active = false;
    float values[12];
    InfoValues(*record, values);
    SetComboIndex(Window, IDC_INFO_KIND, record->Kind);
    for (int32_t i = 0; i < 12; i++)
        SetFieldFloat(Window, InfoEditIds[i], values[i]);
    SetControlChecked(Window, IDC_INFO_ALIGN, record->Smooth != 0);
    Active = true;
}

// Every change commits: SetPoint ends in Commit, which refreshes this window
// again; the writers then find the fields already showing their values.
void WDialog_Info::Apply() {
    if (!Active || !Window || !SelectedRecord()) return;
    float values[12];
    for (int32_t i = 0; i < 12; i++)
        values[i] = ReadFieldFloat(Window, InfoEditIds[i]);
    WSketchPoint record = InfoRecord(ComboSelection(Window, IDC_INFO_KIND), values,
                                     IsControlChecked(Window, IDC_INFO_ALIGN));
    TheSketch->SetPoint(TheSketch->Current, record);
}

// ---- The window's events

static void InitInfo(void* dialog) {
    PlatformLimitEdits(dialog, InfoEditIds, 12, 16);
}

// A new kind, a click on "Align" or any edit's change applies at once.
static void InfoCommand(void* dialog, int32_t id, int32_t notify) {
    WDialog_Info* info = TheInfoDialog;
    if (!info || info->Window != dialog) return;
    bool change = (id == IDC_INFO_KIND && notify == NotifySelectionChange) ||
                  (id == IDC_INFO_ALIGN && notify == NotifyClicked) ||
                  (id != IDC_INFO_KIND && id != IDC_INFO_ALIGN && notify == NotifyEditChange);
    if (change) info->Apply();
}

static void CloseInfo(void*) {
    CloseToolWindowByBox(ToolPoint);
}

// ---- The window's life

void OpenInfo() {
    if (TheInfoDialog) {
        ShowMessage(MString(u"There can only be 1 WDialog_Info object"), IconError);
        return;
    }
    WDialog_Info* dialog = new WDialog_Info();
    TheInfoDialog = dialog;
    WDialogHandler handler;
    handler.Init = InitInfo;
    handler.Command = InfoCommand;
    handler.Close = CloseInfo;
    dialog->Window = CreateModelessDialog(IDD_INFO, TheMainWindow, handler, dialog);
    if (!dialog->Window) {
        TheInfoDialog = nullptr;
        delete dialog;
        return;
    }
    DebugOutput(u"WDialog_Info created\n");
    SetText(dialog->Window, MString(TheProgramName) + " - Point");
    for (const char16_t* name : InfoKindNames)
        AddComboItem(dialog->Window, IDC_INFO_KIND, MString(name));
    dialog->Refresh();
    ShowToolWindowAtPlace(ToolPoint, dialog->Window);
}

void EndInfo() {
    WDialog_Info* dialog = TheInfoDialog;
    if (!dialog) return;
    TheInfoDialog = nullptr;
    EndToolWindow(dialog->Window);
    delete dialog;
    DebugOutput(u"WDialog_Info destroyed\n");
}

void ToggleInfo() {
    if (TheInfoDialog) {
        StoreToolWindowRect(ToolPoint);
        EndInfo();
    } else {
        OpenInfo();
    }
    RefreshMenu();
}
