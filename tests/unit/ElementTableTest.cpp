// The element table: its 17 rows byte for byte, row access and lookup by
// name, the parameters of the Element tool window, the self-checks and the
// one element object.

#include "SketchTestSupport.h"

#include "elements/ElementTable.h"
#include "elements/WElement.h"
#include "foundation/Platform.h"

#include <string>

namespace {

// Captures message boxes for one test.
struct Boxes {
    MString Texts[16];
    MessageIcon Icons[16] = {};
    MessageScript Script;
    Boxes() {
        Script.Texts = Texts;
        Script.Icons = Icons;
        Script.Capacity = 16;
        TheMessageScript = &Script;
    }
    ~Boxes() { TheMessageScript = nullptr; }
};

const char16_t* const TypeMismatch = u"ERROR: ElementTypeID does not match index";
const char16_t* const EmptyLabel = u"ERROR: Element label is empty with non-zero default";

// A modifiable copy of the table, for feeding broken rows to the check.
struct TableCopy {
    WElementRow Rows[ElementTypeCount];
    TableCopy() {
        for (uint32_t i = 0; i < ElementTypeCount; i++) {
            Rows[i].TypeID = WElementTable[i].TypeID;
            Rows[i].Name = WElementTable[i].Name;
            for (int k = 0; k < 4; k++) {
                Rows[i].Label[k] = WElementTable[i].Label[k];
                Rows[i].Default[k] = WElementTable[i].Default[k];
            }
            Rows[i].Description = WElementTable[i].Description;
        }
    }
};

struct ExpectedRow {
    const char16_t* Name;
    const char16_t* Label[4];
    float Default[4];
    const char16_t* Description;
};

// The table as the Element tool window shows it. The escapes are the quotes
// inside the texts, the two control characters CR LF, and the degree sign,
// the single character U+00B0.
const ExpectedRow Expected[17] = {
    {u"Straight line", {u"Length", u"", u"", u""}, {30, 0, 0, 0}, u"A straight line."},
    {u"Lift hill",
     {u"Length", u"Height", u"", u""},
     {200, 100, 0, 0},
     u"A lift hill, or \"chain lift\" is used at the start to give the cart enough energy to "
     u"finish the ride."},
    {u"Pre-drop",
     {u"Length", u"Height", u"", u""},
     {20, 10, 0, 0},
     u"A pre-drop or \"kicker\", \"tester hill\" or \"trick hill\" is used right after a lift "
     u"hill to relieve the stress of the chain or to fool the riders the dive has already "
     u"started."},
    {u"Dive",
     {u"Length", u"Height", u"", u""},
     {200, 100, 0, 0},
     u"A dive is used after a lift hill to turn the potential energy into speed."},
    {u"Hill",
     {u"Length", u"Height", u"", u""},
     {200, 50, 0, 0},
     u"A simple hill. Move the bezier control points to change the shape of the slope."},
    {u"Turn",
     {u"Angle", u"Radius", u"Height", u"Slant"},
     {90, 30, 0, 20},
     u"Use a negative angle to turn to the left."},
    {u"Immelmann turn",
     {u"Radius", u"Width", u"Twist", u""},
     {30, 10, 0, 0},
     u"A half circular loop. Use a twist value of 1 to roll to the right."},
    {u"Circular loop",
     {u"Radius", u"Width", u"Twist", u""},
     {30, 10, 0, 0},
     u"A circular loop. Use a twist value of 1 to roll to the right."},
    {u"Clothoid loop",
     {u"Radius 1", u"Radius 2", u"Width", u"Twist"},
     {40, 20, 10, 0},
     u"A clothoid loop has a lower radius at the top. This way it loses less speed."},
    {u"Dive loop",
     {u"Angle", u"Radius", u"Height", u""},
     {-90, 30, -20, 0},
     u"A dive loop combines a loop with a turn. To turn to the right use a positive angle."},
    {u"Top hat",
     {u"Radius bottom", u"Radius top", u"Height", u""},
     {40, 10, 50, 0},
     u"A top hat or \"top cap\" features a 90\u00B0 ascent followed by a 90\u00B0 descent."},
    {u"Corkscrew",
     {u"Length", u"Radius", u"Twist", u""},
     {200, 10, 1, 0},
     u"Use a negative twist to rotate counter clockwise."},
    {u"Cobra roll",
     {u"Radius", u"Angle", u"Width", u""},
     {30, 270, 60, 0},
     u"A fancy U-turn that looks like the head of a cobra. Use a negative width to turn to "
     u"the left."},
    {u"Batwing",
     {u"Radius", u"Width", u"Height", u""},
     {30, 20, -20, 0},
     u"A U-turn that looks like the wings of a bat or butterfly. Use a negative width to turn "
     u"to the right.. and end up to the left!"},
    {u"Hammerhead turn",
     {u"Length", u"Radius", u"Width", u"Angle"},
     {100, 30, 20, 45},
     u"A U-turn often performed by planes. Use a negative width to turn to the left."},
    {u"Road straight",
     {u"Length", u"Slope %", u"", u""},
     {30, 20, 0, 0},
     u"A straight road. Use a negative slope for a descending road.\r\n\r\nThis element "
     u"ignores the pitch/slope of the previous element: the slope is the rendered slope."},
    {u"Road bend",
     {u"Angle", u"Radius", u"Slope %", u"Slant"},
     {90, 30, 20, 20},
     u"Use a negative angle to turn to the left.\r\n\r\nThis element ignores the pitch/slope "
     u"of the previous element: the slope is the rendered slope."},
};

} // namespace

// ---- The rows

TEST(ElementTable, SeventeenRowsWhoseTypeIsTheirIndex) {
    EXPECT_EQ(uint32_t(ElementTypeCount), 17u);
    EXPECT_EQ(sizeof(WElementTable) / sizeof(WElementTable[0]), size_t(17));
    const ElementTypeID ids[17] = {ElementStraightLine,  ElementLiftHill,     ElementPreDrop,
                                   ElementDive,          ElementHill,         ElementTurn,
                                   ElementImmelmannTurn, ElementCircularLoop, ElementClothoidLoop,
                                   ElementDiveLoop,      ElementTopHat,       ElementCorkscrew,
                                   ElementCobraRoll,     ElementBatwing,      ElementHammerheadTurn,
                                   ElementRoadStraight,  ElementRoadBend};
    for (uint32_t i = 0; i < 17; i++) {
        EXPECT_EQ(uint32_t(ids[i]), i);
        EXPECT_EQ(WElementTable[i].TypeID, i);
    }
}

TEST(ElementTable, NamesLabelsDefaultsAndDescriptionsExactly) {
    for (int i = 0; i < 17; i++) {
        SCOPED_TRACE(i);
        const WElementRow& row = WElementTable[i];
        EXPECT_EQ(Text(row.Name), std::u16string(Expected[i].Name));
        for (int k = 0; k < 4; k++) {
            EXPECT_EQ(Text(row.Label[k]), std::u16string(Expected[i].Label[k]));
            EXPECT_EQ(row.Default[k], Expected[i].Default[k]);
        }
        EXPECT_EQ(Text(row.Description), std::u16string(Expected[i].Description));
        // Length too, so that no stray terminator hides a difference.
        EXPECT_EQ(row.Description.Length, int32_t(std::u16string(Expected[i].Description).size()));
    }
}

TEST(ElementTable, SpecialCharactersOfTheDescriptions) {
    // Row 10: two degree signs, each the one character U+00B0.
    const MString& hat = WElementTable[ElementTopHat].Description;
    int degrees = 0;
    for (int32_t i = 0; i < hat.Length; i++)
        if (hat.Text[i] == 0x00B0) degrees++;
    EXPECT_EQ(degrees, 2);
    EXPECT_GE(hat.Find(MString(u"90\u00B0 ascent")), 0);
    // Row 13: the two dots stand as written.
    EXPECT_GE(WElementTable[ElementBatwing].Description.Find(MString(u"right.. and")), 0);
    // Rows 15 and 16: CR LF CR LF, the two control characters each time.
    for (uint32_t id : {ElementRoadStraight, ElementRoadBend}) {
        const MString& d = WElementTable[id].Description;
        int32_t at = d.Find(MString(u"\r\n\r\nThis element"));
        ASSERT_GT(at, 0);
        EXPECT_EQ(d.Text[at], 13);
        EXPECT_EQ(d.Text[at + 1], 10);
    }
    // Quotation marks are part of the texts.
    EXPECT_EQ(WElementTable[ElementLiftHill].Description.Text[16], u'"');
}

TEST(ElementTable, EveryEmptyLabelHasTheDefaultZero) {
    for (int i = 0; i < 17; i++)
        for (int k = 0; k < 4; k++) {
            if (WElementTable[i].Label[k].IsEmpty()) {
                EXPECT_EQ(WElementTable[i].Default[k], 0);
            }
        }
}

TEST(ElementTable, NegativeDefaultsAreLegalAndShownAsTheyAre) {
    EXPECT_EQ(WElementTable[ElementDiveLoop].Default[0], -90);
    EXPECT_EQ(WElementTable[ElementDiveLoop].Default[2], -20);
    EXPECT_EQ(WElementTable[ElementBatwing].Default[2], -20);
    // The edit fields show a default through the float text of MString.
    EXPECT_EQ(Text(MString(WElementTable[ElementDiveLoop].Default[0])), u"-90");
    EXPECT_EQ(Text(MString(WElementTable[ElementBatwing].Default[2])), u"-20");
    // Nothing in the self-check objects to a negative default.
    Boxes boxes;
    EXPECT_EQ(CheckElementTable(WElementTable, 17), 0);
    EXPECT_EQ(boxes.Script.Count, 0);
}

// ---- Row access and lookup

TEST(ElementTable, RowAccessRefusesIndexesOutside0To16) {
    EXPECT_EQ(ElementRow(0), &WElementTable[0]);
    EXPECT_EQ(ElementRow(16), &WElementTable[16]);
    EXPECT_EQ(ElementRow(17), nullptr);
    EXPECT_EQ(ElementRow(-1), nullptr);
}

TEST(ElementTable, LookupByNameIsExactAndCaseSensitive) {
    for (int32_t i = 0; i < 17; i++)
        EXPECT_EQ(FindElement(WElementTable[i].Name), i);
    EXPECT_EQ(FindElement(MString(u"Turn")), 5);
    EXPECT_EQ(FindElement(MString(u"turn")), -1);
    EXPECT_EQ(FindElement(MString(u"Turn ")), -1);
    EXPECT_EQ(FindElement(MString(u"Road")), -1);
    EXPECT_EQ(FindElement(MString(u"Lift Hill")), -1);
    EXPECT_EQ(FindElement(MString()), -1); // no row has an empty name
}

// ---- Parameters from the Element tool window

TEST(ElementTable, ParameterWithEmptyLabelAlwaysPassesZero) {
    const WElementRow& straight = WElementTable[ElementStraightLine];
    EXPECT_EQ(ElementParameter(straight, 0, 12.5f), 12.5f);
    EXPECT_EQ(ElementParameter(straight, 1, 12.5f), 0);
    EXPECT_EQ(ElementParameter(straight, 2, -4), 0);
    EXPECT_EQ(ElementParameter(straight, 3, 99), 0);
    const WElementRow& turn = WElementTable[ElementTurn];
    for (int k = 0; k < 4; k++)
        EXPECT_EQ(ElementParameter(turn, k, -7.25f), -7.25f);
    const WElementRow& loop = WElementTable[ElementDiveLoop];
    EXPECT_EQ(ElementParameter(loop, 2, -20), -20);
    EXPECT_EQ(ElementParameter(loop, 3, 5), 0);
}

// ---- Self-checks

TEST(ElementTableCheck, TheTableProducesNoMessage) {
    Boxes boxes;
    EXPECT_EQ(CheckElementTable(WElementTable, 17), 0);
    EXPECT_EQ(boxes.Script.Count, 0);
}

TEST(ElementTableCheck, TypeMismatchShowsItsErrorAndTheCheckGoesOn) {
    TableCopy copy;
    copy.Rows[3].TypeID = 4;
    copy.Rows[12].TypeID = 99;
    Boxes boxes;
    EXPECT_EQ(CheckElementTable(copy.Rows, 17), 2);
    ASSERT_EQ(boxes.Script.Count, 2);
    for (int i = 0; i < 2; i++) {
        EXPECT_EQ(Text(boxes.Texts[i]), TypeMismatch);
        EXPECT_EQ(boxes.Icons[i], IconError);
    }
    // Nothing is repaired.
    EXPECT_EQ(copy.Rows[3].TypeID, 4u);
}

TEST(ElementTableCheck, EmptyLabelWithNonZeroDefaultShowsItsError) {
    TableCopy copy;
    copy.Rows[0].Default[1] = 5;        // "Straight line" has no second label
    copy.Rows[16].Label[2] = MString(); // "Road bend": Slope % now unlabelled, 20
    copy.Rows[9].Default[3] = -1;       // "Dive loop": negative counts as non-zero
    Boxes boxes;
    EXPECT_EQ(CheckElementTable(copy.Rows, 17), 3);
    ASSERT_EQ(boxes.Script.Count, 3);
    for (int i = 0; i < 3; i++) {
        EXPECT_EQ(Text(boxes.Texts[i]), EmptyLabel);
        EXPECT_EQ(boxes.Icons[i], IconError);
    }
    EXPECT_EQ(copy.Rows[0].Default[1], 5); // not repaired
}

TEST(ElementTableCheck, OneRowCanShowFiveBoxesInOrder) {
    TableCopy copy;
    copy.Rows[7].TypeID = 8;
    for (int k = 0; k < 4; k++) {
        copy.Rows[7].Label[k] = MString();
        copy.Rows[7].Default[k] = float(k + 1);
    }
    copy.Rows[8].Default[0] = 40; // labelled: fine
    copy.Rows[10].TypeID = 0;     // a later row is still checked
    Boxes boxes;
    EXPECT_EQ(CheckElementTable(copy.Rows, 17), 6);
    ASSERT_EQ(boxes.Script.Count, 6);
    EXPECT_EQ(Text(boxes.Texts[0]), TypeMismatch);
    for (int i = 1; i <= 4; i++)
        EXPECT_EQ(Text(boxes.Texts[i]), EmptyLabel);
    EXPECT_EQ(Text(boxes.Texts[5]), TypeMismatch);
}

TEST(ElementTableCheck, ZeroDefaultUnderEmptyLabelPasses) {
    TableCopy copy;
    copy.Rows[5].Label[3] = MString(); // "Turn" Slant unlabelled with default 20
    copy.Rows[5].Default[3] = 0;       // ... but 0 passes
    Boxes boxes;
    EXPECT_EQ(CheckElementTable(copy.Rows, 17), 0);
    EXPECT_EQ(boxes.Script.Count, 0);
}

// ---- The element object

TEST(ElementObject, CreationRunsTheChecksQuietlyAndSaysSo) {
    if (TheElement) DestroyElement();
    Boxes boxes;
    StartDebugCapture();
    WElement* element = CreateElement();
    MString said = StopDebugCapture();
    ASSERT_NE(element, nullptr);
    EXPECT_EQ(TheElement, element);
    EXPECT_EQ(boxes.Script.Count, 0); // the table passes every check
    EXPECT_EQ(Text(said), u"WElement created\n");

    StartDebugCapture();
    DestroyElement();
    said = StopDebugCapture();
    EXPECT_EQ(TheElement, nullptr);
    EXPECT_EQ(Text(said), u"WElement destroyed\n");
}

TEST(ElementObject, SecondCreationShowsErrorAndKeepsTheFirst) {
    if (TheElement) DestroyElement();
    WElement* first;
    {
        Boxes quiet;
        first = CreateElement();
    }
    ASSERT_NE(first, nullptr);
    Boxes boxes;
    StartDebugCapture();
    WElement* second = CreateElement();
    MString said = StopDebugCapture();
    EXPECT_EQ(second, first);
    EXPECT_EQ(TheElement, first);
    ASSERT_EQ(boxes.Script.Count, 1);
    EXPECT_EQ(Text(boxes.Texts[0]), u"ERROR: there can only be 1 WElement object");
    EXPECT_EQ(boxes.Icons[0], IconError);
    EXPECT_TRUE(said.IsEmpty()); // no second object was made
    DestroyElement();
    EXPECT_EQ(TheElement, nullptr);
}
