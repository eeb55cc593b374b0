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
