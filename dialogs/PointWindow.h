#pragma once
// The Point tool window: the selected record of the sketch as numbers. Every
// change in it is applied at once through SetPoint, so each keystroke is an
// edit with its own undo step.

#include "sketch/WSketch.h"

#include <cstdint>

struct WDialog_Info {
    void* Window = nullptr; // the dialog (opaque handle)
    bool Active = false;    // field changes count; off while the window fills its own fields

    // Fills the fields from the selected record; without one, empties and
    // disables them.
    void Refresh();
    // Reads every field into a new record for the selected one. Only while
    // Active.
    void Apply();
};

extern WDialog_Info* TheInfoDialog;

// Opens the window at its place in the settings, or stores its rectangle
// and closes it; then the menu shows it.
void ToggleInfo();
// Opens it; a second object is refused with a message.
void OpenInfo();
// Ends and frees it, if open, without storing anything.
void EndInfo();

// The twelve edits in the order of InfoValues: Position, HandleIn,
// HandleOut, Roll, each x, y, z.
extern const int32_t InfoEditIds[12];
extern const char16_t* const InfoKindNames[3];

// The numbers a record shows, in the order of InfoEditIds.
void InfoValues(const WSketchPoint& record, float values[12]);
// The record that the fields describe.
WSketchPoint InfoRecord(int32_t kind, const float values[12], bool smooth);
