// The element table and its self-check.

#include "elements/ElementTable.h"

#include "foundation/Platform.h"

// The names are also the words of track files, so they are never translated.
// Unused parameters have an empty label and a default of 0; the self-check
// holds the table to that.
const WElementRow WElementTable[ElementTypeCount] = {
    {ElementStraightLine,
     u"Straight line",
     {u"Length", u"", u"", u""},
     {30, 0, 0, 0},
     u"A straight line."},
    {ElementLiftHill,
     u"Lift hill",
     {u"Length", u"Height", u"", u""},
     {200, 100, 0, 0},
     u"A lift hill, or \"chain lift\" is used at the start to give the cart enough energy "
     u"to finish the ride."},
    {ElementPreDrop,
     u"Pre-drop",
     {u"Length", u"Height", u"", u""},
     {20, 10, 0, 0},
     u"A pre-drop or \"kicker\", \"tester hill\" or \"trick hill\" is used right after a lift "
     u"hill to relieve the stress of the chain or to fool the riders the dive has already "
     u"started."},
    {ElementDive,
     u"Dive",
     {u"Length", u"Height", u"", u""},
     {200, 100, 0, 0},
     u"A dive is used after a lift hill to turn the potential energy into speed."},
    {ElementHill,
     u"Hill",
     {u"Length", u"Height", u"", u""},
     {200, 50, 0, 0},
     u"A simple hill. Move the bezier control points to change the shape of the slope."},
    {ElementTurn,
     u"Turn",
     {u"Angle", u"Radius", u"Height", u"Slant"},
     {90, 30, 0, 20},
     u"Use a negative angle to turn to the left."},
    {ElementImmelmannTurn,
     u"Immelmann turn",
     {u"Radius", u"Width", u"Twist", u""},
     {30, 10, 0, 0},
     u"A half circular loop. Use a twist value of 1 to roll to the right."},
    {ElementCircularLoop,
     u"Circular loop",
     {u"Radius", u"Width", u"Twist", u""},
     {30, 10, 0, 0},
     u"A circular loop. Use a twist value of 1 to roll to the right."},
    {ElementClothoidLoop,
     u"Clothoid loop",
     {u"Radius 1", u"Radius 2", u"Width", u"Twist"},
     {40, 20, 10, 0},
     u"A clothoid loop has a lower radius at the top. This way it loses less speed."},
    {ElementDiveLoop,
     u"Dive loop",
     {u"Angle", u"Radius", u"Height", u""},
     {-90, 30, -20, 0},
     u"A dive loop combines a loop with a turn. To turn to the right use a positive angle."},
    {ElementTopHat,
     u"Top hat",
     {u"Radius bottom", u"Radius top", u"Height", u""},
     {40, 10, 50, 0},
     u"A top hat or \"top cap\" features a 90\u00B0 ascent followed by a 90\u00B0 descent."},
    {ElementCorkscrew,
     u"Corkscrew",
     {u"Length", u"Radius", u"Twist", u""},
     {200, 10, 1, 0},
     u"Use a negative twist to rotate counter clockwise."},
    {ElementCobraRoll,
     u"Cobra roll",
     {u"Radius", u"Angle", u"Width", u""},
     {30, 270, 60, 0},
     u"A fancy U-turn that looks like the head of a cobra. Use a negative width to turn to "
     u"the left."},
    {ElementBatwing,
     u"Batwing",
     {u"Radius", u"Width", u"Height", u""},
     {30, 20, -20, 0},
     u"A U-turn that looks like the wings of a bat or butterfly. Use a negative width to "
     u"turn to the right.. and end up to the left!"},
    {ElementHammerheadTurn,
     u"Hammerhead turn",
     {u"Length", u"Radius", u"Width", u"Angle"},
     {100, 30, 20, 45},
     u"A U-turn often performed by planes. Use a negative width to turn to the left."},
    {ElementRoadStraight,
     u"Road straight",
     {u"Length", u"Slope %", u"", u""},
     {30, 20, 0, 0},
     u"A straight road. Use a negative slope for a descending road.\r\n\r\nThis element "
     u"ignores the pitch/slope of the previous element: the slope is the rendered slope."},
    {ElementRoadBend,
     u"Road bend",
     {u"Angle", u"Radius", u"Slope %", u"Slant"},
     {90, 30, 20, 20},
     u"Use a negative angle to turn to the left.\r\n\r\nThis element ignores the pitch/slope "
     u"of the previous element: the slope is the rendered slope."},
};

const WElementRow* ElementRow(int32_t index) {
    if (index < 0 || index >= int32_t(ElementTypeCount)) return nullptr;
    return &WElementTable[index];
}

// Track files name their elements by Name, so the comparison is of the
// whole text and case-sensitive; the first match wins.
int32_t FindElement(const MString& name) {
    for (int32_t i = 0; i < int32_t(ElementTypeCount); i++)
        if (WElementTable[i].Name == name) return i;
    return -1;
}

// A parameter without a label does not exist for its element: whatever its
// field held, the generator sees 0, the value its unused slots expect.
float ElementParameter(const WElementRow& row, int32_t index, float entered) {
    if (index < 0 || index > 3 || row.Label[index].IsEmpty()) return 0;
    return entered;
}

// A row can show up to five messages: one for its TypeID and one for each
// parameter. Nothing stops and nothing is repaired; the table of this file
// passes every test.
int32_t CheckElementTable(const WElementRow* rows, int32_t count) {
    if (!rows) return 0;
    int32_t shown = 0;
    for (int32_t i = 0; i < count; i++) {
        const WElementRow& row = rows[i];
        if (row.TypeID != uint32_t(i)) {
            ShowMessage(MString(u"ERROR: ElementTypeID does not match index"), IconError);
            shown++;
        }
        for (int32_t k = 0; k < 4; k++) {
            if (row.Label[k].IsEmpty() && row.Default[k] != 0) {
                ShowMessage(MString(u"ERROR: Element label is empty with non-zero default"),
                            IconError);
                shown++;
            }
        }
    }
    return shown;
}
