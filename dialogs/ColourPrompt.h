#pragma once
// The system's colour dialog, with the sixteen custom colours that it keeps
// for the program's run.

#include "shell/WSettings.h"

#include <cstdint>

enum { CustomColourCount = 16 };
// The custom colours as the colour dialog keeps them (red in the low byte);
// all white until the user changes them, kept until the program ends.
extern uint32_t TheCustomColours[CustomColourCount];

// Opens the colour dialog owned by the window, fully open, any colour, with
// colour chosen. On OK colour becomes the choice with alpha 255 and the result
// is true; on cancel colour stays.
bool ChooseColour(void* owner, MColour& colour);

// ---- A script for tests: while set, ChooseColour records the colour it was
// opened with and takes the next answer (a cancel once they run out).
struct ColourScript {
    const MColour* Answers = nullptr;
    int32_t AnswerCount = 0;
    int32_t Count = 0; // dialogs opened so far
    MColour Shown;     // the colour the latest one opened with
    void* Owner = nullptr;
};
extern ColourScript* TheColourScript;

// The platform half: the real dialog. False on cancel.
bool PlatformChooseColour(void* owner, MColour& colour, uint32_t* custom);
