// The Spaghetti dialog. Everything happens inside its handlers on the one
// thread: GENERATE runs the whole generation inside the button's command,
// redrawing the canvas after every string and polling Escape itself, with no
// message pump and no timer.

#include "dialogs/SpaghettiDialog.h"

#include "dialogs/DialogFields.h"
#include "foundation/Platform.h"
#include "resources/resource.h"
#include "shell/Shell.h"
#include "shell/ToolWindows.h"
#include "spaghetti/WSpaghetti.h"

namespace {

// The dropdowns in the order they are filled, with the message shown when a
// list does not hold its items afterwards.
struct WDropdown {
    int32_t Id;
    const char* Error;
    const char16_t* const* Items;
    int32_t Count;
};
const char16_t* const ShapeItems[] = {u"Flat", u"Square", u"Round"};
const char16_t* const TextureItems[] = {u"No texture", u"Bamboo", u"Danger", u"Rope",
                                        u"Knitting",   u"Mummy",  u"Snake",  u"Stem",
                                        u"Stripes",    u"Wood"};
const char16_t* const ParticleItems[] = {u"No particles", u"Leaves"};
const char16_t* const AnimationItems[] = {u"No animation", u"Writer", u"Cleaner", u"Walker",
                                          u"Light snake"};
const WDropdown Dropdowns[] = {
    {IDC_SPAGHETTI_SHAPE, "Error: shapes dropdown", ShapeItems, 3},
    {IDC_SPAGHETTI_TEXTURE, "Error: textures dropdown", TextureItems, 10},
    {IDC_SPAGHETTI_PARTICLE, "Error: particles dropdown", ParticleItems, 2},
    {IDC_SPAGHETTI_ANIMATION, "Error: animations dropdown", AnimationItems, 5},
};

// The three edit pairs and the single number edits, as a table.
struct WIntField {
    int32_t Id;
    int32_t WSpaghetti::*Field;
};
struct WFloatField {
    int32_t Id;
    float WSpaghetti::*Field;
};
const WIntField IntFields[] = {
    {IDC_SPAGHETTI_STRINGS, &WSpaghetti::Strings},
    {IDC_SPAGHETTI_CURVESPERSTRING, &WSpaghetti::CurvesPerString},
    {IDC_SPAGHETTI_SHAPEJUMPS, &WSpaghetti::ShapeJumps},
};
const WFloatField FloatFields[] = {
    {IDC_SPAGHETTI_RADIUS, &WSpaghetti::Radius},
    {IDC_SPAGHETTI_MARGINMIN, &WSpaghetti::MarginMin},
    {IDC_SPAGHETTI_MARGINMAX, &WSpaghetti::MarginMax},
    {IDC_SPAGHETTI_CURVELENGTHMIN, &WSpaghetti::CurveLengthMin},
    {IDC_SPAGHETTI_CURVELENGTHMAX, &WSpaghetti::CurveLengthMax},
    {IDC_SPAGHETTI_DEPTH, &WSpaghetti::Depth},
    {IDC_SPAGHETTI_BEZIERMIN, &WSpaghetti::BezierMin},
    {IDC_SPAGHETTI_BEZIERMAX, &WSpaghetti::BezierMax},
};
struct WComboField {
    int32_t Id;
    int32_t WSpaghetti::*Field;
};
const WComboField ComboFields[] = {
    {IDC_SPAGHETTI_SHAPE, &WSpaghetti::Shape},
    {IDC_SPAGHETTI_TEXTURE, &WSpaghetti::Texture},
    {IDC_SPAGHETTI_PARTICLE, &WSpaghetti::Particle},
    {IDC_SPAGHETTI_ANIMATION, &WSpaghetti::Animation},
};

void Redraw(WSpaghetti& spaghetti, float progress) {
    DrawCanvas(spaghetti, nullptr, progress);
}

void Init(void* dialog) {
    WSpaghetti& s = TheSpaghetti;
    s.Dialog = dialog;
    SetText(dialog, MString(TheProgramName) + " - Spaghetti tool");
    // The canvas is all of the client area left of the first group box.
    WRect box = ControlRect(dialog, IDC_SPAGHETTI_VECTORFILE);
    WRect client = DialogClientRect(dialog);
    s.CanvasRect = WRect{0, 0, box.left - 12, client.bottom};
    for (const WDropdown& dropdown : Dropdowns) {
        for (int32_t i = 0; i < dropdown.Count; i++)
            AddComboItem(dialog, dropdown.Id, MString(dropdown.Items[i]));
        if (ComboItemCount(dialog, dropdown.Id) != dropdown.Count)
            ShowMessage(Narrow(dropdown.Error), IconError);
    }
    TheSpaghettiHooks.ReadFields = ReadSpaghettiFields;
    TheSpaghettiHooks.WriteFields = WriteSpaghettiFields;
    TheSpaghettiHooks.Redraw = Redraw;
    WriteSpaghettiFields(s);
}

void Paint(void*, void* dc) {
    DrawCanvas(TheSpaghetti, dc, 1);
}

void LeftButtonDown(void*, int32_t x, int32_t y) {
    const WRect& canvas = TheSpaghetti.CanvasRect;
    if (x >= canvas.left && x < canvas.right && y >= canvas.top && y < canvas.bottom)
        TheSpaghetti.PreparePicture(MString());
}

void Command(void*, int32_t id, int32_t notify) {
    switch (id) {
    case IDC_SPAGHETTI_GENERATE:
        if (notify == NotifyClicked && TheSpaghetti.Generate())
            DrawCanvas(TheSpaghetti, nullptr, 1);
        break;
    case IDC_SPAGHETTI_OPEN:
        TheSpaghetti.OpenProject();
        break;
    case IDC_SPAGHETTI_SAVEAS:
        TheSpaghetti.SaveProject();
        break;
    }
}

void Close(void* dialog) {
    TheSpaghetti.ClearState();
    EndModalDialog(dialog, 0);
}

} // namespace

const WDialogHandler& SpaghettiDialogHandler() {
    static WDialogHandler handler = [] {
        WDialogHandler h;
        h.Init = Init;
        h.Command = Command;
        h.Close = Close;
        h.Paint = Paint;
        h.LeftButtonDown = LeftButtonDown;
        return h;
    }();
    return handler;
}

void WriteSpaghettiFields(const WSpaghetti& s) {
    void* dialog = s.Dialog;
    if (!dialog) return;
    for (const WIntField& field : IntFields)
        SetFieldInt(dialog, field.Id, s.*field.Field, true);
    for (const WFloatField& field : FloatFields)
        SetFieldFloat(dialog, field.Id, s.*field.Field);
    SetControlChecked(dialog, IDC_SPAGHETTI_COLLISION, s.CollisionDetection);
    for (const WComboField& field : ComboFields)
        SetComboIndex(dialog, field.Id, s.*field.Field);
}

void ReadSpaghettiFields(WSpaghetti& s) {
    void* dialog = s.Dialog;
    if (!dialog) return;
    for (const WIntField& field : IntFields)
        s.*field.Field = ReadFieldInt(dialog, field.Id);
    for (const WFloatField& field : FloatFields)
        s.*field.Field = ReadFieldFloat(dialog, field.Id);
    s.CollisionDetection = IsControlChecked(dialog, IDC_SPAGHETTI_COLLISION);
    for (const WComboField& field : ComboFields)
        s.*field.Field = ComboSelection(dialog, field.Id);
}

// Tools > Spaghetti...: the tool's parameters stay from one opening to the
// next, its picture and curves do not.
void RunSpaghettiDialog() {
    RunModalDialog(IDD_SPAGHETTI, TheMainWindow, SpaghettiDialogHandler());
    TheSpaghetti.ClearState();
    TheSpaghetti.Dialog = nullptr;
    TheSpaghettiHooks.ReadFields = nullptr;
    TheSpaghettiHooks.WriteFields = nullptr;
    TheSpaghettiHooks.Redraw = nullptr;
}
