#pragma once
// The save dialog of "Save as...": what the vector file looks like and for
// which templates a show comes with it. Its choices are settings.

#include "shell/WSettings.h"

#include <cstdint>

// The check box of each template, by the index of WSettings::Template.
struct WSaveTemplate {
    int32_t Id;
    const char16_t* Label;
};
extern const WSaveTemplate SaveTemplates[TemplateCount];
enum { TreeEntryCount = 8 };
// The entries of "Trees": "Abstract", then the tree models by their names.
extern const char16_t* const TreeEntries[TreeEntryCount];

// Runs the dialog modally on TheSettings. True when it ended with OK, which
// has stored every choice; otherwise no setting changed.
bool RunSaveDialog();
extern void* TheSaveDialog; // the dialog while it is open, else null

// The number of curves of the sketch: its records of the kind Move.
int32_t CountCurves();

// The check boxes of the dialog: the templates, "Solid", "Roll", "Centre" and
// "Normalize size".
struct WSaveChoices {
    bool Ticked[TemplateCount] = {};
    bool Solid = false, Roll = false, Centre = false, Scale = false;
};
// Whether the template of index may be ticked for a sketch of curves curves.
bool IsSaveTemplateEnabled(int32_t index, int32_t curves, bool solid, bool roll);
// Why the template of index is greyed out for these boxes; empty when it is
// not.
MString SaveTemplateRefusal(int32_t index, int32_t curves, bool solid, bool roll);
// The dialog's state pass, run at opening and after each click on a box:
// fills enabled, unticks each template that is not enabled, and unticks
// Centre and Scale when a template that follows a track was ticked at the
// start of the pass.
void ApplySaveState(int32_t curves, WSaveChoices& choices, bool enabled[TemplateCount]);
