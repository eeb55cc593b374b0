// The save dialog: its controls from the settings, the state pass after every
// click on a check box, and the settings from its controls at OK.

#include "dialogs/SaveDialog.h"

#include "dialogs/Dialog.h"
#include "dialogs/DialogFields.h"
#include "resources/resource.h"
#include "shell/Shell.h"
#include "sketch/WSketch.h"

const WSaveTemplate SaveTemplates[TemplateCount] = {
    {IDC_SAVE_SPINNINGLOGO, u"Spinning logo"},
    {IDC_SAVE_HANDWRITTENTEXT, u"Handwritten text"},
    {IDC_SAVE_COASTER1ST, u"Roller coaster 1st person"},
    {IDC_SAVE_COASTER3RD, u"Roller coaster 3rd person"},
    {IDC_SAVE_ROAD1ST, u"Road 1st person"},
    {IDC_SAVE_ROAD3RD, u"Road 3rd person"},
    {IDC_SAVE_BOB1ST, u"Bob 1st person"},
    {IDC_SAVE_BOB3RD, u"Bob 3rd person"},
    {IDC_SAVE_TUNNEL, u"Tunnel"},
};

const char16_t* const TreeEntries[TreeEntryCount] = {u"Abstract", u"Beech", u"Elm",  u"Fir",
                                                     u"Juniper",  u"Oak",   u"Palm", u"Spruce"};

void* TheSaveDialog = nullptr;

namespace {

// The templates that follow a track: roller coasters, roads and bobs.
bool FollowsTrack(int32_t index) {
    return index >= 2 && index <= 7;
}

bool IsSaveCheckBox(int32_t id) {
    for (const WSaveTemplate& row : SaveTemplates)
        if (row.Id == id) return true;
    return id == IDC_SAVE_SOLID || id == IDC_SAVE_ROLL || id == IDC_SAVE_CENTRE ||
           id == IDC_SAVE_SCALE;
}

// Runs the state pass over the dialog's boxes and writes its result back.
void UpdateState(void* dialog) {
    WSaveChoices choices;
    for (int32_t i = 0; i < TemplateCount; i++)
        choices.Ticked[i] = IsControlChecked(dialog, SaveTemplates[i].Id);
    choices.Solid = IsControlChecked(dialog, IDC_SAVE_SOLID);
    choices.Roll = IsControlChecked(dialog, IDC_SAVE_ROLL);
    choices.Centre = IsControlChecked(dialog, IDC_SAVE_CENTRE);
    choices.Scale = IsControlChecked(dialog, IDC_SAVE_SCALE);
    bool centre = choices.Centre, scale = choices.Scale;
    bool enabled[TemplateCount];
    ApplySaveState(CountCurves(), choices, enabled);
    for (int32_t i = 0; i < TemplateCount; i++) {
        EnableControl(dialog, SaveTemplates[i].Id, enabled[i]);
        if (!enabled[i]) SetControlChecked(dialog, SaveTemplates[i].Id, false);
    }
    EnableControl(dialog, IDC_SAVE_SMOOTH, true);
    EnableControl(dialog, IDC_SAVE_TREES, true);
    if (centre != choices.Centre) SetControlChecked(dialog, IDC_SAVE_CENTRE, false);
    if (scale != choices.Scale) SetControlChecked(dialog, IDC_SAVE_SCALE, false);
}

void Init(void* dialog) {
    TheSaveDialog = dialog;
    SetText(dialog, MString(TheProgramName) + MString(u" - Save sketch"));
    WSettings& settings = *TheSettings;
    for (int32_t i = 0; i < TemplateCount; i++)
        SetControlChecked(dialog, SaveTemplates[i].Id, settings.Template[i]);
    SetControlChecked(dialog, IDC_SAVE_SOLID, settings.SaveSolid);
    SetControlChecked(dialog, IDC_SAVE_ROLL, settings.SaveRoll);
    SetControlChecked(dialog, IDC_SAVE_CENTRE, settings.Centre);
    SetControlChecked(dialog, IDC_SAVE_SCALE, settings.Scale);
    SetFieldInt(dialog, IDC_SAVE_SMOOTH, settings.Smooth, false);
    SetFieldInt(dialog, IDC_SAVE_MAXLINES, settings.MaxLinesPerCurve, false);
    ClearComboItems(dialog, IDC_SAVE_TREES);
    for (const char16_t* entry : TreeEntries)
        AddComboItem(dialog, IDC_SAVE_TREES, MString(entry));
    // Only the selection is limited; the setting keeps its value until OK.
    int32_t tree = settings.TreeType;
    if (tree < 0) tree = 0;
    if (tree > TreeEntryCount - 1) tree = TreeEntryCount - 1;
    SetComboIndex(dialog, IDC_SAVE_TREES, tree);
    UpdateState(dialog);
}

void Store(void* dialog) {
    WSettings& settings = *TheSettings;
    for (int32_t i = 0; i < TemplateCount; i++)
        settings.Template[i] = IsControlChecked(dialog, SaveTemplates[i].Id);
    settings.SaveSolid = IsControlChecked(dialog, IDC_SAVE_SOLID);
    settings.SaveRoll = IsControlChecked(dialog, IDC_SAVE_ROLL);
    settings.Centre = IsControlChecked(dialog, IDC_SAVE_CENTRE);
    settings.Scale = IsControlChecked(dialog, IDC_SAVE_SCALE);
    settings.MaxLinesPerCurve = ReadFieldInt(dialog, IDC_SAVE_MAXLINES);
    int32_t smooth = ReadFieldInt(dialog, IDC_SAVE_SMOOTH);
    settings.Smooth = smooth < 0 ? 0 : smooth > 1000 ? 1000 : smooth;
    settings.TreeType = ComboSelection(dialog, IDC_SAVE_TREES);
}

void Command(void* dialog, int32_t id, int32_t notify) {
    if (id == DialogOk) {
        Store(dialog);
        EndModalDialog(dialog, DialogOk);
    } else if (id == DialogCancel) {
        EndModalDialog(dialog, DialogCancel);
    } else if (notify == NotifyClicked && IsSaveCheckBox(id)) {
        UpdateState(dialog);
    }
}

} // namespace

// Which templates may be ticked. A show that follows a track needs one curve
// with roll; the spinning logo needs a solid file. "Smooth" and "Trees" stay
// enabled whatever the templates are.
bool IsSaveTemplateEnabled(int32_t index, int32_t curves, bool solid, bool roll) {
    if (index == 0) return solid;
    if (index >= 2) return roll && curves == 1;
    return true;
}

MString SaveTemplateRefusal(int32_t index, int32_t curves, bool solid, bool roll) {
    if (index < 0 || index >= TemplateCount) return MString();
    if (IsSaveTemplateEnabled(index, curves, solid, roll)) return MString();
    MString text = MString(u"\"") + SaveTemplates[index].Label + "\" is greyed out: ";
    if (index == 0) return text + "the spinning logo needs a solid file (\"Solid\").";
    return text + "a show that follows a track needs one curve with roll (\"Roll\").";
}

void ApplySaveState(int32_t curves, WSaveChoices& choices, bool enabled[TemplateCount]) {
    bool trackTicked = false;
    for (int32_t i = 0; i < TemplateCount; i++)
        if (FollowsTrack(i) && choices.Ticked[i]) trackTicked = true;
    for (int32_t i = 0; i < TemplateCount; i++) {
        enabled[i] = IsSaveTemplateEnabled(i, curves, choices.Solid, choices.Roll);
        if (!enabled[i]) choices.Ticked[i] = false;
    }
    // A ride keeps its place and size: the track templates measure it as it
    // is. The boxes stay clickable; the next pass unticks them again.
    if (trackTicked) {
        choices.Centre = false;
        choices.Scale = false;
    }
}

int32_t CountCurves() {
    int32_t curves = 0;
    if (const WSketch* sketch = TheSketch)
        for (int32_t i = 0; i < sketch->PointCount; i++)
            if (sketch->Points[i].Kind == KindMove) curves++;
    return curves;
}

bool RunSaveDialog() {
    if (!TheSettings) return false;
    WDialogHandler handler;
    handler.Init = Init;
    handler.Command = Command;
    int32_t result = RunModalDialog(IDD_SAVE, TheMainWindow, handler);
    TheSaveDialog = nullptr;
    return result == DialogOk;
}
