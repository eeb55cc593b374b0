// The colour dialog: its scripted answers and its custom colours.

#include "dialogs/ColourPrompt.h"

uint32_t TheCustomColours[CustomColourCount] = {
    0xffffff, 0xffffff, 0xffffff, 0xffffff, 0xffffff, 0xffffff, 0xffffff, 0xffffff,
    0xffffff, 0xffffff, 0xffffff, 0xffffff, 0xffffff, 0xffffff, 0xffffff, 0xffffff};

ColourScript* TheColourScript = nullptr;

bool ChooseColour(void* owner, MColour& colour) {
    MColour chosen = colour;
    bool ok = false;
    if (ColourScript* script = TheColourScript) {
        int32_t index = script->Count++;
        script->Shown = colour;
        script->Owner = owner;
        if (script->Answers && index < script->AnswerCount) {
            chosen = script->Answers[index];
            ok = true;
        }
    } else {
        ok = PlatformChooseColour(owner, chosen, TheCustomColours);
    }
    if (!ok) return false;
    colour = chosen;
    colour.a = 255;
    return true;
}
