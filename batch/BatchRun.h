#pragma once
// The batch program's work: each input opened or traced as the window does,
// the save dialog's rules checked and the EPS saved with its shows and track
// files. Every message the window would show in a box goes to the sink.

#include "batch/BatchOptions.h"

// Where the messages go; standard error in the program.
extern void (*TheBatchMessageSink)(const MString& text);

// The EPS path of one input: --save for a single input, else the input's
// file name with the extension "eps" in --out-dir.
MString BatchOutputPath(const WBatchOptions& options, const MString& input);
// Opens, checks and saves one input; true when its EPS was written.
bool RunBatchInput(const WBatchOptions& options, const MString& input);
// Every input in turn: 0 when all were saved, 1 when one failed to load or
// save, 2 when the arguments are wrong. --help prints the help and gives 0.
int32_t RunBatch(const std::vector<MString>& args);
