// Without windows nobody can choose: the dialog counts as cancelled.

#include "dialogs/ColourPrompt.h"

bool PlatformChooseColour(void*, MColour&, uint32_t*) {
    return false;
}
