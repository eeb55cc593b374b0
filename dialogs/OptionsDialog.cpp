// Options: the fields from the settings, the swatches and their colour
// dialog, Browse for the external tracer, "Reset all", and the settings from
// the fields at OK.

#include "dialogs/OptionsDialog.h"

#include "dialogs/ColourPrompt.h"
#include "dialogs/Dialog.h"
#include "dialogs/DialogFields.h"
#include "drawing/FilePrompt.h"
#include "drawing/MDrawSurface.h"
#include "eps/TraceFlow.h"
#include "foundation/Platform.h"
#include "resources/resource.h"
#include "shell/Commands.h"
#include "shell/Shell.h"
#include "shell/SketchFile.h"

const WSwatch Swatches[SwatchCount] = {
    {IDC_OPTIONS_BACKGROUND, &WSettings::ColourBackground},
    {IDC_OPTIONS_GRID, &WSettings::ColourGrid},
    {IDC_OPTIONS_INFO, &WSettings::ColourInfo},
    {IDC_OPTIONS_SKETCH, &WSettings::ColourSketch},
    {IDC_OPTIONS_BEZIER, &WSettings::ColourBezier},
    {IDC_OPTIONS_ROLL, &WSettings::ColourRoll},
    {IDC_OPTIONS_GHOST, &WSettings::ColourGhost},
};

void* TheOptionsDialog = nullptr;

namespace {

// The colours as the dialog shows them; they reach the settings only at OK.
MColour WorkingColours[SwatchCount];

int32_t Clamp(int32_t value, int32_t low, int32_t high) {
    return value < low ? low : value > high ? high : value;
}

void Init(void* dialog) {
    TheOptionsDialog = dialog;
    SetText(dialog, MString(TheProgramName) + MString(u" - Options"));
    const WSettings& settings = *TheSettings;
    for (int32_t i = 0; i < SwatchCount; i++)
        WorkingColours[i] = settings.*Swatches[i].Setting;
    SetFieldInt(dialog, IDC_OPTIONS_PENSIZE, settings.PenSize, false);
    SetFieldInt(dialog, IDC_OPTIONS_POINTSIZE, settings.PointSize, false);
    SetFieldInt(dialog, IDC_OPTIONS_GRIDSIZE, settings.GridSize, false);
    SetText(dialog, IDC_OPTIONS_DISPLAYSIZE, DisplaySizeText(settings.DisplaySize));
    SetControlChecked(dialog, IDC_OPTIONS_SHOWHELPTEXTS, settings.ShowHelpTexts);
    SetText(dialog, IDC_OPTIONS_TRACER, settings.ExternalTracer);
    RedrawDialog(dialog);
}

void Browse(void* dialog) {
    MString path = FilePrompt(dialog, PromptSelectExecutable);
    if (path.IsEmpty()) return;
    if (IsKnownTracer(path)) {
        SetText(dialog, IDC_OPTIONS_TRACER, path);
        return;
    }
    ShowMessage(NameOfFile(path) +
                    MString(u" is not a known external tracer.\n\nFor more info visit:\n") +
                    MakerPageUrl(u"/quillmeremanual#externaltracer"),
                IconError);
}

void Store(void* dialog) {
    WSettings& settings = *TheSettings;
    for (int32_t i = 0; i < SwatchCount; i++)
        settings.*Swatches[i].Setting = WorkingColours[i];
    settings.PenSize = ReadFieldInt(dialog, IDC_OPTIONS_PENSIZE);
    settings.PointSize = ReadFieldInt(dialog, IDC_OPTIONS_POINTSIZE);
    settings.GridSize = ReadFieldInt(dialog, IDC_OPTIONS_GRIDSIZE);
    settings.DisplaySize = ParseDisplaySize(ReadFieldText(dialog, IDC_OPTIONS_DISPLAYSIZE));
    settings.ShowHelpTexts = IsControlChecked(dialog, IDC_OPTIONS_SHOWHELPTEXTS);
    settings.ExternalTracer = GetControlText(dialog, IDC_OPTIONS_TRACER);
    settings.PenSize = Clamp(settings.PenSize, 1, 10);
    settings.PointSize = Clamp(settings.PointSize, 1, 20);
}

void Command(void* dialog, int32_t id, int32_t notify) {
    if (notify != NotifyClicked) return;
    switch (id) {
    case DialogOk:
        Store(dialog);
        EndModalDialog(dialog, DialogOk);
        break;
    case DialogCancel:
        EndModalDialog(dialog, DialogCancel);
        break;
    case IDC_OPTIONS_BROWSE:
        Browse(dialog);
        break;
    case IDC_OPTIONS_RESETALL:
        // At once in the settings, so a later Cancel keeps the defaults.
        if (TheSettings) TheSettings->SetDefaults();
        Init(dialog);
        break;
    }
}

void LeftButtonDown(void* dialog, int32_t x, int32_t y) {
    for (int32_t i = 0; i < SwatchCount; i++) {
        WRect swatch = SwatchRect(ControlRect(dialog, Swatches[i].LabelId));
        if (x < swatch.left || x >= swatch.right || y < swatch.top || y >= swatch.bottom) continue;
        if (ChooseColour(dialog, WorkingColours[i])) RedrawDialog(dialog);
        return;
    }
}

void Paint(void* dialog, void* dc) {
    MDrawSurface surface;
    PaintSwatches(dialog, dc, surface);
}

} // namespace

MString DisplaySizeText(int32_t value) {
    return IntegerText(value) + MString(u"%");
}

int32_t ParseDisplaySize(MString text) {
    text.Remove(u'%');
    if (text.IsEmpty()) return 0;
    if (text.Text[0] != u'x') return ParseInteger(text);
    uint32_t value = 0;
    for (int32_t i = 1; i < text.Length; i++) {
        char16_t c = text.Text[i];
        uint32_t digit = 0;
        if (c >= u'0' && c <= u'9') digit = uint32_t(c - u'0');
        if (c >= u'A' && c <= u'F') digit = uint32_t(c - u'A' + 10);
        if (c >= u'a' && c <= u'f') digit = uint32_t(c - u'a' + 10);
        value = value * 16u + digit;
    }
    return int32_t(value);
}

WRect SwatchRect(const WRect& label) {
    return WRect{label.right, label.top, label.right + (label.bottom - label.top), label.bottom};
}

void PaintSwatches(void* dialog, void* dc, MDrawSurface& surface) {
    WRect swatches[SwatchCount];
    WRect all;
    for (int32_t i = 0; i < SwatchCount; i++) {
        swatches[i] = SwatchRect(ControlRect(dialog, Swatches[i].LabelId));
        const WRect& s = swatches[i];
        if (i == 0) {
            all = s;
            continue;
        }
        if (s.left < all.left) all.left = s.left;
        if (s.top < all.top) all.top = s.top;
        if (s.right > all.right) all.right = s.right;
        if (s.bottom > all.bottom) all.bottom = s.bottom;
    }
    // The group box "Colours" around the swatches would cover them when it
    // paints after the dialog.
    PaintControlsNow(dialog);
    surface.CreateForDc(dc, all);
    if (surface.Begin()) {
        surface.Clear(ButtonFaceColour());
        for (int32_t i = 0; i < SwatchCount; i++) {
            const WRect& s = swatches[i];
            // The surface takes the dialog's client pixels and draws them
            // into its own rectangle.
            MDrawRect box{float(s.left), float(s.top), float(s.right), float(s.bottom)};
            surface.DrawRectangle(box, WorkingColours[i]);
        }
        surface.End();
    }
    surface.Release();
}

int32_t RunOptions() {
    if (!TheSettings) return DialogCancel;
    WDialogHandler handler;
    handler.Init = Init;
    handler.Command = Command;
    handler.LeftButtonDown = LeftButtonDown;
    handler.Paint = Paint;
    int32_t result = RunModalDialog(IDD_OPTIONS, TheMainWindow, handler);
    TheOptionsDialog = nullptr;
    return result == DialogOk ? DialogOk : DialogCancel;
}
