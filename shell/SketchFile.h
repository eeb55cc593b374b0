#pragma once
// Opening and saving the sketch as the commands, the command line and a file
// drop ask for it.

#include "foundation/MString.h"

// Opens a sketch file (EPS or track file); an empty path asks for one first.
void OpenSketch(const MString& path);
