#pragma once
// The fixed vocabulary of track pieces: 17 rows, each with a display name, up
// to four parameters with labels and defaults, and a help text. The table is
// data only; the generator (WElement.h) gives each row its geometry through
// the row's index.

#include "foundation/MString.h"
#include <cstdint>

// A row's index in WElementTable and its type are the same number; the
// generator branches on it.
enum ElementTypeID {
    ElementStraightLine = 0,
    ElementLiftHill = 1,
    ElementPreDrop = 2,
    ElementDive = 3,
    ElementHill = 4,
    ElementTurn = 5,
    ElementImmelmannTurn = 6,
    ElementCircularLoop = 7,
    ElementClothoidLoop = 8,
    ElementDiveLoop = 9,
    ElementTopHat = 10,
    ElementCorkscrew = 11,
    ElementCobraRoll = 12,
    ElementBatwing = 13,
    ElementHammerheadTurn = 14,
    ElementRoadStraight = 15,
    ElementRoadBend = 16,
    ElementTypeCount = 17
};

struct WElementRow {
    uint32_t TypeID;     // the row's ElementTypeID
    MString Name;        // display name and the word in track files; compared exactly
    MString Label[4];    // parameter labels p1 to p4; empty: the parameter does not exist
    float Default[4];    // the value shown first for each parameter; no bounds anywhere
    MString Description; // help text of the Element tool window
};

// Built by the static initialisers before the entry point runs and never
// changed; its strings are released at process exit.
extern const WElementRow WElementTable[ElementTypeCount];

// The row of an index, or null above 16 (and below 0): no row exists there.
const WElementRow* ElementRow(int32_t index);

// The first row, walking from 0 to 16, whose Name equals name exactly and
// case-sensitively; -1 when there is none. An empty name matches no row.
int32_t FindElement(const MString& name);

// The value the Element tool window passes for parameter index (0 to 3) of
// a row: what the user entered, or 0 when the parameter has no label.
float ElementParameter(const WElementRow& row, int32_t index, float entered);

// The developer checks of a table, row by row in order: a TypeID that differs
// from the index shows "ERROR: ElementTypeID does not match index"; each of
// the four parameters whose label is empty while its default is not 0 shows
// "ERROR: Element label is empty with non-zero default". Each message is an
// error box; the checks go on after it and repair nothing. Returns the number
// of messages shown.
int32_t CheckElementTable(const WElementRow* rows, int32_t count);
