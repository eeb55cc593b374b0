// The colour dialog of the common dialogs.

#include "dialogs/ColourPrompt.h"

#include <windows.h>

#include <commdlg.h>

bool PlatformChooseColour(void* owner, MColour& colour, uint32_t* custom) {
    static_assert(sizeof(COLORREF) == sizeof(uint32_t), "custom colours are COLORREF values");
    CHOOSECOLORW dialog = {};
    dialog.lStructSize = sizeof dialog;
    dialog.hwndOwner = static_cast<HWND>(owner);
    dialog.rgbResult = RGB(colour.r, colour.g, colour.b);
    dialog.lpCustColors = reinterpret_cast<COLORREF*>(custom);
    dialog.Flags = CC_FULLOPEN | CC_ANYCOLOR | CC_RGBINIT;
    if (!ChooseColorW(&dialog)) return false;
    colour.r = GetRValue(dialog.rgbResult);
    colour.g = GetGValue(dialog.rgbResult);
    colour.b = GetBValue(dialog.rgbResult);
    return true;
}
