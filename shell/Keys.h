#pragma once
// The keys of the main window that are not accelerators: the character keys
// of every mode, and Delete in the edit modes.

#include "shell/Input.h"

// One character as WM_CHAR brings it. Both cases of a letter act alike;
// characters without a meaning are ignored.
void OnCharacter(char16_t character);
// The Delete key: in the edit modes, the segment into the selected point
// with Ctrl, otherwise the selected point or handle. Nothing while drawing.
void OnDeleteKey(const WKeys& keys);
