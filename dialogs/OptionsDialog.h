#pragma once
// Options: colours, sizes and the external tracer.

#include "foundation/MString.h"
#include "shell/WSettings.h"

#include <cstdint>

struct MDrawSurface;

// The colour swatches, each drawn right beside its label, in swatch order.
enum { SwatchCount = 7 };
struct WSwatch {
    int32_t LabelId;
    MColour WSettings::*Setting;
};
extern const WSwatch Swatches[SwatchCount];

// Runs Options modally: 1 after OK, 2 otherwise. The caller applies the
// display size.
int32_t RunOptions();
extern void* TheOptionsDialog; // the dialog while it is open, else null

// The display size field's text: the number and "%".
MString DisplaySizeText(int32_t value);
// The display size typed: every "%" removed; an empty rest gives 0, a rest
// that begins with "x" is hexadecimal from its second character (any other
// character a digit of 0, summed in 32 bits unsigned), anything else decimal.
int32_t ParseDisplaySize(MString text);
// The swatch beside a label: a square as high as the label, at its right.
WRect SwatchRect(const WRect& label);
// Paints the swatches of the open dialog through a short-lived surface for
// the device context; the surface is the caller's so that tests can read it.
void PaintSwatches(void* dialog, void* dc, MDrawSurface& surface);
