#pragma once
// The sketch as Encapsulated PostScript in the system's dialect. moveto,
// lineto and curveto carry depth and roll as extra operands when the sketch
// has them; such a file is no longer valid PostScript, which is accepted, and
// a flat sketch without rolls stays a drawing that any PostScript reader shows.

#include "foundation/MString.h"

#include <cstdint>

struct WSketch;
struct WSettings;

// Lines 1 to 12 of every EPS file of the system, each ending in CR LF: the
// comments with the reader's Centre and Scale requests, MaxLinesPerCurve
// (left out when 0 or less), and the bounding box of box (min x, max x,
// min y, max y, min z, max z) widened by 10 on every side. Depth is ignored.
MString MakeEpsHeader(bool centre, bool scale, int32_t maxLinesPerCurve, const float box[6]);
// "grestore" and "%%EOF", each ending in CR LF.
MString MakeEpsTrailer();
// The whole file for the sketch as it stands, with SaveSolid, SaveRoll,
// Centre, Scale and MaxLinesPerCurve of settings. Neither the sketch nor the
// settings change; the clean-up and the refusals are SaveEps's business.
MString MakeSketchEps(const WSketch& sketch, const WSettings& settings);
// Saves TheSketch with TheSettings: cleans the sketch up, forces the
// extension of path to "eps" (the caller's path changes), refuses a solid
// save of a sketch that is not flat or has open curves with a message, and
// writes the file in 8-bit text. On success clears Modified, writes the shows
// of the ticked templates and returns true. Nothing is written, and an
// earlier file stays, when the result is false.
bool SaveEps(MString& path);
