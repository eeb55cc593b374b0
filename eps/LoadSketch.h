#pragma once
// Loading replaces the one sketch by the contents of a file: an EPS file
// through the PostScript reader, or a track file (extension word "QO") whose
// moves and named elements are run through the element generator. Both end in
// FinishLoad.

#include "foundation/MString.h"

#include <cstdint>

// Loads the file at path into TheSketch, by its extension ("EPS" or "QO", in
// any case). TheSettings gets the file's Centre, Scale, MaxLinesPerCurve and,
// for EPS, SaveSolid and SaveRoll. True if the sketch now holds the file's
// contents; the undo ring then holds that state alone. On failure a message
// "Could not open:..." has been shown and the sketch stays as far as it got
// (it was emptied first). The caller brings view, title and menus up to date.
bool LoadSketch(const MString& path);

// The same, with the file's bytes given instead of read from path; path still
// decides the kind of file and appears in the messages.
bool LoadSketchMemory(const MString& path, const void* bytes, int32_t size);

// Completes a sketch that has just been filled from a file or a trace: the
// handles of curve starts, the smooth flags from the angle at each point, the
// Centre and Scale requests, the clean-up. Clears Modified. True if at least
// two points are left; the undo ring then holds this state alone.
bool FinishLoad(bool centre, bool scale);
