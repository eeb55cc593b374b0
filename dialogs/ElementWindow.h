#pragma once
// The Element tool window: any of the 17 elements with its parameters, added
// to the end of the path by its button.

#include "elements/ElementTable.h"

#include <cstdint>

struct WDialog_Element {
    void* Window = nullptr; // the dialog (opaque handle)

    // Shows element index: its labels, default values and description.
    void Show(int32_t index);
    // "Add": the chosen element with the values in the edits.
    void Add();
};

extern WDialog_Element* TheElementDialog;

void ToggleElement();
void OpenElement();
void EndElement();

enum { ElementFirstShown = 1 }; // "Lift hill"
// Control ids of the four labels and the four edits.
extern const int32_t ElementLabelIds[4];
extern const int32_t ElementEditIds[4];

// Adds element index with the values read from the four edits; a parameter
// without a label passes 0.
void AddElementFromWindow(int32_t index, const float entered[4]);
