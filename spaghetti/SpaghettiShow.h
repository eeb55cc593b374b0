#pragma once
// The show file written beside a Spaghetti project.

#include "foundation/MString.h"

struct WSpaghetti;

// Writes the show at showPath for the project EPS at epsPath, with the
// picture and the show choices of spaghetti. False when nothing was written.
bool WriteProjectShow(const WSpaghetti& spaghetti, const MString& showPath, const MString& epsPath);
