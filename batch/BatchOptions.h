#pragma once
// The command line of the batch program: what to open, how to trace it and
// the choices of the save dialog, which become the settings of each save.

#include "foundation/MString.h"
#include "foundation/Settings.h"

#include <cstdint>
#include <vector>

struct WBatchOptions {
    std::vector<MString> Inputs;
    MString Save;   // --save: the EPS file of a single input
    MString OutDir; // --out-dir: one set of files per input in this folder
    bool Trace = false;
    MString Tracer; // empty for the built-in tracer, else the potrace program
    // The save dialog's boxes and fields. What is not given stays as the
    // open or the trace left it, as the dialog shows it.
    bool Solid = false, SolidGiven = false;
    bool Roll = false, RollGiven = false;
    bool Centre = true, CentreGiven = false;
    bool Scale = true, ScaleGiven = false;
    int32_t MaxLines = 100;
    bool MaxLinesGiven = false;
    bool Template[TemplateCount] = {};
    int32_t TreeType = 5;
    int32_t Smooth = 200;
    // For repeatable shows: the seed of the show writer instead of the clock.
    bool SeedGiven = false;
    uint32_t Seed = 0;
    MString ProgramFolder; // where Media/Templates is; empty: beside the program
    bool Help = false;
};

// Reads the arguments after the program's name. Empty on success, otherwise
// the text that says what is wrong with them.
MString ParseBatchOptions(const std::vector<MString>& args, WBatchOptions& options);
// The text of --help: every option with its default.
MString BatchHelpText();
// The template of a name: the label of its box in the save dialog, in any
// case, with "-" or "_" for a space, or its index 0 to 8. -1 when unknown.
int32_t FindTemplate(const MString& name);
// The entry of "Trees" by its name in any case, or its index. -1 when unknown.
int32_t FindTreeType(const MString& name);
// The settings before an input is opened: the defaults of a fresh start with
// the options' choices.
void ApplyBatchOptions(const WBatchOptions& options, WSettings& settings);
// After the open or the trace: the choices that were given replace what the
// load set, as a click in the dialog would.
void ApplyGivenChoices(const WBatchOptions& options, WSettings& settings);
