// About: sized and centred at opening, drawn on every paint, ended by any
// click.

#include "dialogs/AboutDialog.h"

#include "dialogs/Dialog.h"
#include "dialogs/DialogFields.h"
#include "drawing/MDrawSurface.h"
#include "foundation/Folders.h"
#include "foundation/Platform.h"
#include "resources/resource.h"
#include "shell/Shell.h"

void* TheAboutDialog = nullptr;

namespace {

const char16_t* const AboutCredit = u"Brambleworks";

// Off while the button is asked to paint itself after a drawing: that paint
// must neither draw over the button nor lead to another paint of ours.
bool PaintOpen = true;

void Init(void* dialog) {
    TheAboutDialog = dialog;
    SetText(dialog, MString(TheProgramName) + MString(u" - About"));
    SetDialogClientSize(dialog, AboutWidth, AboutHeight);
    WRect window = DialogWindowRect(dialog);
    MScreenArea screen = ScreenSize();
    MoveDialogTo(dialog, (screen.Width - (window.right - window.left)) / 2,
                 (screen.Height - (window.bottom - window.top)) / 2);
    WRect button = ControlRect(dialog, DialogOk);
    int32_t width = button.right - button.left, height = button.bottom - button.top;
    MoveControl(dialog, DialogOk, WRect{640 - width, 380 - height, 640, 380});
}

void Command(void* dialog, int32_t id, int32_t) {
    if (id == DialogOk || id == DialogCancel) EndModalDialog(dialog, id);
}

void LeftButtonDown(void* dialog, int32_t, int32_t) {
    EndModalDialog(dialog, DialogOk);
}

void Paint(void* dialog, void* dc) {
    MDrawSurface surface;
    PaintAbout(dialog, dc, surface);
}

} // namespace

MString AboutHeadline() {
    return MString(TheProgramName) + MString(u" ") + MVersionText();
}

MString AboutPicturePath() {
    MString skins = JoinPath(JoinPath(ProgramFolder(), MString(u"media")), MString(u"skins"));
    return JoinPath(skins, MString(u"About.png"));
}

void PaintAbout(void* dialog, void* dc, MDrawSurface& surface) {
    if (!PaintOpen) return;
    WRect client = DialogClientRect(dialog);
    surface.CreateForDc(dc, client);
    if (surface.Begin()) {
        MColour white;
        white.r = white.g = white.b = 255;
        surface.Clear(white);
        float right = float(client.right - client.left), bottom = float(client.bottom - client.top);
        MString picture = AboutPicturePath();
        if (PathExists(picture) && !FolderExists(picture))
            surface.DrawPictureFile(picture, MDrawRect{0, 0, right, bottom});
        MColour ink;
        ink.r = ink.g = ink.b = 64;
        surface.DrawText(MDrawRect{20, 75, right - 20, bottom}, AboutHeadline(),
                         MString(u"Segoe UI"), 40, ink, AlignFar, AlignNear, false);
        surface.DrawText(MDrawRect{20, 120, right - 20, bottom}, MString(AboutCredit),
                         MString(u"Segoe UI Light"), 18, ink, AlignFar, AlignNear, false);
        surface.End();
    }
    surface.Release();
    PaintOpen = false;
    RedrawControl(dialog, DialogOk);
    PaintOpen = true;
}

void RunAbout() {
    WDialogHandler handler;
    handler.Init = Init;
    handler.Command = Command;
    handler.LeftButtonDown = LeftButtonDown;
    handler.Paint = Paint;
    RunModalDialog(IDD_ABOUT, TheMainWindow, handler);
    TheAboutDialog = nullptr;
}
