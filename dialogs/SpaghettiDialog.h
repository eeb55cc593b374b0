#pragma once
// The Spaghetti dialog (resource 139): the canvas on the left, the
// parameters and the three buttons on the right. It is the only place where
// the generator meets the dialog's fields; it fills the generator's hooks
// while it is open.

#include "dialogs/Dialog.h"

struct WSpaghetti;

// The reactions of the dialog, for the modal run and for tests.
const WDialogHandler& SpaghettiDialogHandler();
// The parameters into the fields of the open dialog, and back: edits read
// through a 16-unit buffer, the check box, the dropdowns' selections.
void WriteSpaghettiFields(const WSpaghetti& spaghetti);
void ReadSpaghettiFields(WSpaghetti& spaghetti);
