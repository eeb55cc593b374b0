#pragma once
// The PostScript reader: an EPS file becomes a flat list of path records and a
// few flags. It is no interpreter. Each line is split into tokens and judged
// by its token count and its last token against a fixed set of line shapes;
// every other line is passed over. That covers the system's own dialect, the
// path sections of many simple EPS files, and the output of cairo once its
// bytes have been rewritten so that every operator ends its line.

#include "foundation/MString.h"
#include "foundation/MVector.h"
#include "view/Geometry.h"

#include <cstdint>

// Kinds of path record.
enum : uint32_t {
    EpsMoveOpen = 1,    // start of a path not yet ended
    EpsMoveStroked = 2, // start of a path ended by a stroke or by the next move
    EpsMoveFilled = 3,  // start of a path ended by a fill
    EpsLine = 4,        // line to PointA
    EpsCurve = 5,       // Bezier: controls PointA and PointB, end PointC
};

struct MEpsRecord {
    uint32_t Kind = 0; // EpsMoveOpen to EpsCurve
    MPoint3 PointA;    // position of a move, end of a line, first control of a curve
    MPoint3 PointB;    // second control of a curve
    MPoint3 PointC;    // end of a curve
    MPoint3 Roll;      // (0, 0, 1) from 2D operators, (0, 0, 0) from 3D ones without roll
};

struct MEpsPath {
    MVector<MEpsRecord> Records; // Count is the capacity; grows in steps of 1000
    int32_t Used = 0;            // records filled
    bool Centre = true;          // the file asks its reader to centre it
    bool Scale = true;           // the file asks its reader to scale it to 200 units
    int32_t MaxLinesPerCurve = 100;
    bool Solid = false;   // some path was filled
    bool HasRoll = false; // some operator carried roll operands
    bool ThreeD = false;  // some z of a stored point is not 0
};

// Reads the EPS file at path. Never fails visibly: a file that cannot be
// opened, or in which nothing is recognised, gives Used 0 and the start
// values of the flags.
MEpsPath ReadEps(const MString& path);
// The same for the bytes of a file that are already in memory (a copy is
// taken, the caller's bytes are not changed).
MEpsPath ReadEpsMemory(const void* bytes, int32_t size);

// ---- The byte rewrite of cairo's page content. Each works in place on a
// byte buffer of the given length and keeps its length.
namespace MCairo {

// Replaces every occurrence of find by with, left to right in one pass,
// occurrences not overlapping. Both are zero-terminated and must be of the
// same length; otherwise "ERROR MCairo 1\n" goes to the debug output and the
// text stays as it was.
void Substitute(uint8_t* text, int32_t length, const char* find, const char* with);

// Puts the operator word on the end of its line: the four substitutions
// LF-blank-W-blank, blank-LF-W-blank, blank-W-blank and LF-W-blank, in this
// order, each over the whole text. The word is taken byte by byte from the
// low bytes of its characters.
void Separate(uint8_t* text, int32_t length, const MString& word);

// The whole rewrite of a cairo file's bytes: behind the first
// "%%EndPageSetup", line feeds that cairo put in place of a blank become
// blanks again, and then each of cairo's one- and two-letter operators (and
// "rectclip") is separated. Bytes without "%%EndPageSetup" stay as they are.
void RewritePage(uint8_t* text, int32_t length);

} // namespace MCairo
