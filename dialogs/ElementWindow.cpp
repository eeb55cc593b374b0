// The Element tool window: what it shows of an element, and its "Add".

#include "dialogs/ElementWindow.h"

#include "dialogs/Dialog.h"
#include "dialogs/DialogFields.h"
#include "dialogs/ToolWindowPlaces.h"
#include "elements/WElement.h"
#include "foundation/Platform.h"
#include "resources/resource.h"
#include "shell/Shell.h"

WDialog_Element* TheElementDialog = nullptr;

const int32_t ElementLabelIds[4] = {IDC_ELEMENT_LABEL1, IDC_ELEMENT_LABEL2, IDC_ELEMENT_LABEL3,
                                    IDC_ELEMENT_LABEL4};
const int32_t ElementEditIds[4] = {IDC_ELEMENT_VALUE1, IDC_ELEMENT_VALUE2, IDC_ELEMENT_VALUE3,
                                   IDC_ELEMENT_VALUE4};

void AddElementFromWindow(int32_t index, const float entered[4]) {
    const WElementRow* row = ElementRow(index);
    if (!row || !TheElement) return;
    float p[4];
    for (int32_t i = 0; i < 4; i++)
        p[i] = ElementParameter(*row, i, entered[i]);
    TheElement->Add(uint32_t(index), p[0], p[1], p[2], p[3]);
}

// A parameter with a label shows its default and can be edited; one
// without is empty and disabled.
void WDialog_Element::Show(int32_t index) {
    const WElementRow* row = ElementRow(index);
    if (!Window || !row) return;
    SetComboIndex(Window, IDC_ELEMENT_LIST, index);
    for (int32_t i = 0; i < 4; i++) {
        SetText(Window, ElementLabelIds[i], row->Label[i]);
        bool used = !row->Label[i].IsEmpty();
        if (used)
            SetFieldFloat(Window, ElementEditIds[i], row->Default[i]);
        else
            SetText(Window, ElementEditIds[i], MString());
        EnableControl(Window, ElementEditIds[i], used);
    }
    SetText(Window, IDC_ELEMENT_DESCRIPTION, row->Description);
}

void WDialog_Element::Add() {
    if (!Window) return;
    float entered[4];
    for (int32_t i = 0; i < 4; i++)
        entered[i] = ReadFieldFloat(Window, ElementEditIds[i]);
    AddElementFromWindow(ComboSelection(Window, IDC_ELEMENT_LIST), entered);
}

// ---- The window's events

static void InitElement(void* dialog) {
    PlatformLimitEdits(dialog, ElementEditIds, 4, 16);
}

static void ElementCommand(void* dialog, int32_t id, int32_t notify) {
    WDialog_Element* element = TheElementDialog;
    if (!element || element->Window != dialog) return;
    if (id == IDC_ELEMENT_LIST && notify == NotifySelectionChange)
        element->Show(ComboSelection(dialog, IDC_ELEMENT_LIST));
    else if (id == IDC_ELEMENT_ADD && notify == NotifyClicked)
        element->Add();
}

static void CloseElement(void*) {
    CloseToolWindowByBox(ToolElement);
}

// ---- The window's life

void OpenElement() {
    if (TheElementDialog) {
        ShowMessage(MString(u"There can only be 1 WDialog_Element object"), IconError);
        return;
    }
    WDialog_Element* dialog = new WDialog_Element();
    TheElementDialog = dialog;
    WDialogHandler handler;
    handler.Init = InitElement;
    handler.Command = ElementCommand;
    handler.Close = CloseElement;
    dialog->Window = CreateModelessDialog(IDD_ELEMENT, TheMainWindow, handler, dialog);
    if (!dialog->Window) {
        TheElementDialog = nullptr;
        delete dialog;
        return;
    }
    DebugOutput(u"WDialog_Element created\n");
    SetText(dialog->Window, MString(TheProgramName) + " - Element");
    for (int32_t i = 0; i < ElementTypeCount; i++)
        AddComboItem(dialog->Window, IDC_ELEMENT_LIST, WElementTable[i].Name);
    dialog->Show(ElementFirstShown);
    ShowToolWindowAtPlace(ToolElement, dialog->Window);
}

void EndElement() {
    WDialog_Element* dialog = TheElementDialog;
    if (!dialog) return;
    TheElementDialog = nullptr;
    EndToolWindow(dialog->Window);
    delete dialog;
    DebugOutput(u"WDialog_Element destroyed\n");
}

void ToggleElement() {
    if (TheElementDialog) {
        StoreToolWindowRect(ToolElement);
        EndElement();
    } else {
        OpenElement();
    }
    RefreshMenu();
}
