#pragma once
// The Cinderlane shows that go with a saved sketch.

#include "foundation/MString.h"

// Writes the show of each ticked template beside the EPS file just saved at
// epsPath. The path is not changed. Called only by SaveEps, as its last step.
void WriteShows(const MString& epsPath);
