// The character keys, in both cases and in every mode, and the Delete key of
// the edit modes: what each does to the sketch, the mode and the title.

#include "ShellTestSupport.h"

#include "shell/Keys.h"

#include <cmath>

namespace {

class CharacterKeysTest : public ShellFixture {
  protected:
    WKeys none, control;
    void SetUp() override {
        ShellFixture::SetUp();
        control.Control = true;
    }
    // The key in lower case, then the same sketch again with the key in
    // upper case: both leave the same records.
    void ExpectBothCasesAlike(char16_t lower, const std::vector<WSketchPoint>& records,
                              int32_t current = -1) {
        Load(records);
        S().Current = current;
        OnCharacter(lower);
        std::vector<WSketchPoint> first = Records(S());
        Load(records);
        S().Current = current;
        OnCharacter(char16_t(lower - u'a' + u'A'));
        std::vector<WSketchPoint> second = Records(S());
        ASSERT_EQ(first.size(), second.size()) << char(lower);
        for (size_t i = 0; i < first.size(); i++)
            EXPECT_TRUE(SameRecordBits(first[i], second[i])) << char(lower) << i;
    }
};

// A corner of two tangents: from (0, 0) leaving along x, into (100, 100)
// arriving along y, as a curve.
std::vector<WSketchPoint> TangentCorner() {
    WSketchPoint a = Record(0, 0, 0, KindMove), b = Record(100, 100, 0, KindCurve);
    a.HandleOut = P3(10, 0, 0);
    b.HandleIn = P3(100, 90, 0);
    a.Smooth = b.Smooth = 0;
    return {a, b};
}

} // namespace

TEST_F(CharacterKeysTest, PlusAndEqualsScaleUpMinusScalesDown) {
    Load(OpenCorner());
    OnCharacter(u'+');
    EXPECT_EQ(S().Points[2].Position.x, float(100 * 1.1));
    EXPECT_EQ(Title(), u"Quillmere - Untitled * (3 points) [DRAW FREEHAND]");
    OnCharacter(u'=');
    EXPECT_EQ(S().Points[2].Position.x, float(double(float(100 * 1.1)) * 1.1));
    OnCharacter(u'-');
    EXPECT_EQ(S().Points[2].Position.x, float(double(float(double(float(110)) * 1.1)) * 0.9));
    EXPECT_EQ(Steps(), 3);
}

TEST_F(CharacterKeysTest, KeysWorkInEveryMode) {
    for (WMode mode : {ModeDraw, ModeEditSketch, ModeEditRoll}) {
        Load(OpenCorner());
        TheMode = mode;
        OnCharacter(u'+');
        EXPECT_EQ(S().Points[1].Position.x, float(100 * 1.1)) << mode;
        EXPECT_EQ(TheMode, mode);
    }
}

TEST_F(CharacterKeysTest, TwoMakesFlatAfterAskingAndSaysSoWhenItIs) {
    std::vector<WSketchPoint> records = OpenCorner();
    records[1].Position.z = records[1].HandleIn.z = records[1].HandleOut.z = 30;
    Load(records);
    Answer(AnswerNo);
    OnCharacter(u'2');
    ASSERT_EQ(Messages.Count, 1);
    EXPECT_EQ(Text(MessageTexts[0]), u"Are you sure you want to make your sketch 2D?");
    EXPECT_EQ(MessageIcons[0], IconQuestion);
    EXPECT_EQ(S().Points[1].Position.z, 30.0f);
    Answer(AnswerYes);
    OnCharacter(u'2');
    EXPECT_EQ(S().Points[1].Position.z, 0.0f);
    EXPECT_TRUE(S().IsFlat());
    EXPECT_EQ(Title(), u"Quillmere - Untitled * (3 points) [DRAW FREEHAND]");
    OnCharacter(u'2');
    ASSERT_EQ(Messages.Count, 3);
    EXPECT_EQ(Text(MessageTexts[2]), u"The sketch is already 2D!");
    EXPECT_EQ(MessageIcons[2], IconInformation);
}

TEST_F(CharacterKeysTest, ATogglesSmoothOfTheSelectedPoint) {
    std::vector<WSketchPoint> records = OpenCorner();
    records[1].Smooth = 0;
    records[1].HandleIn = P3(90, 0, 0);
    records[1].HandleOut = P3(100, 20, 0);
    Load(records);
    OnCharacter(u'a');
    EXPECT_EQ(S().Points[1].Smooth, 0) << "nothing is selected";
    Select(1, 0);
    OnCharacter(u'a');
    EXPECT_EQ(S().Points[1].Smooth, 1);
    OnCharacter(u'A');
    EXPECT_EQ(S().Points[1].Smooth, 0);
    EXPECT_EQ(Steps(), 2);
    ExpectBothCasesAlike(u'a', records, 1);
}

TEST_F(CharacterKeysTest, CCentresTheSketch) {
    Load(OpenCorner());
    OnCharacter(u'c');
    ExpectPoint(S().Points[0].Position, -50, -50, 0);
    ExpectBothCasesAlike(u'c', OpenCorner());
}

TEST_F(CharacterKeysTest, NNormalizesTheSize) {
    Load(OpenCorner());
    OnCharacter(u'n');
    ExpectPoint(S().Points[2].Position, 200, 200, 0);
    ExpectBothCasesAlike(u'n', OpenCorner());
}

TEST_F(CharacterKeysTest, ModeLettersSetTheirModeAndDoNotToggle) {
    Load(OpenCorner());
    OnCharacter(u'e');
    EXPECT_EQ(TheMode, ModeEditSketch);
    EXPECT_EQ(Title(), u"Quillmere - Untitled (3 points) [EDIT SKETCH]");
    EXPECT_TRUE(AppliedMenuState().EditSketch);
    OnCharacter(u'E');
    EXPECT_EQ(TheMode, ModeEditSketch);
    OnCharacter(u'r');
    EXPECT_EQ(TheMode, ModeEditRoll);
    EXPECT_EQ(Title(), u"Quillmere - Untitled (3 points) [EDIT ROLL]");
    EXPECT_TRUE(AppliedMenuState().EditRoll);
    OnCharacter(u'R');
    EXPECT_EQ(TheMode, ModeEditRoll);
    Select(2, 0);
    OnCharacter(u'd');
    EXPECT_EQ(TheMode, ModeDraw);
    EXPECT_EQ(S().Current, -1);
    EXPECT_EQ(Title(), u"Quillmere - Untitled (3 points) [DRAW FREEHAND]");
    EXPECT_TRUE(AppliedMenuState().DrawFreehand);
    OnCharacter(u'D');
    EXPECT_EQ(TheMode, ModeDraw);
    TheMode = ModeEditSketch;
    Select(2, 0);
    OnCharacter(u'e');
    EXPECT_EQ(S().Current, 2) << "only the drawing mode drops the selection";
}

TEST_F(CharacterKeysTest, GFreezesAGhostAndDropsIt) {
    Load(OpenCorner());
    OnCharacter(u'g');
    ASSERT_EQ(S().GhostCount, 3);
    EXPECT_TRUE(SameRecordBits(S().Ghost[2], S().Points[2]));
    OnCharacter(u'+');
    EXPECT_EQ(S().Ghost[2].Position.x, 100.0f) << "the ghost stays as it was";
    OnCharacter(u'G');
    EXPECT_EQ(S().GhostCount, 0);
    OnCharacter(u'G');
    EXPECT_EQ(S().GhostCount, 3);
    EXPECT_EQ(S().Ghost[2].Position.x, float(100 * 1.1));
    EXPECT_EQ(Steps(), 1) << "the ghost is no edit";
}

TEST_F(CharacterKeysTest, OMakesACircleOfAClosedSquare) {
    Load(ClosedSquare());
    Select(0, 0);
    OnCharacter(u'o');
    float r = float(std::sqrt(2.0) * 50);
    ExpectPoint(S().Points[0].Position, 50, 50 + r, 0, 1e-3f);
    ExpectPoint(S().Points[1].Position, 50 + r, 50, 0, 1e-3f);
    EXPECT_EQ(S().Points[1].Kind, KindCurve);
    EXPECT_EQ(Steps(), 1);
    ExpectBothCasesAlike(u'o', ClosedSquare(), 0);
}

TEST_F(CharacterKeysTest, OFallsBackToAnArcWhenThereIsNoCircle) {
    Load(TangentCorner());
    Select(1, 0);
    OnCharacter(u'O');
    // A quarter circle of radius 100: handles 100 * 4/3 * tan(pi / 8) long.
    float h = float(100 * 4.0 / 3 * std::tan(3.1415927 / 8));
    ExpectPoint(S().Points[0].HandleOut, h, 0, 0, 1e-3f);
    ExpectPoint(S().Points[1].HandleIn, 100, 100 - h, 0, 1e-3f);
    EXPECT_EQ(S().Points[1].Kind, KindCurve);
}

// Every key in both cases from the same start, a corner with its middle
// point selected in the edit mode and a view turned away from the front:
// which keys change the sketch (and so mark the title), the mode and the
// selection. No key touches the view.
TEST_F(CharacterKeysTest, EachKeyTellsTheSelectionTheViewAndTheTitle) {
    struct Row {
        char16_t Key;
        bool Changes; // the sketch is edited, the title marked
        WMode Mode;   // the mode afterwards
        int32_t Current;
    } rows[] = {
        {u'+', true, ModeEditSketch, 1},  {u'=', true, ModeEditSketch, 1},
        {u'-', true, ModeEditSketch, 1},  {u'2', false, ModeEditSketch, 1},
        {u'a', true, ModeEditSketch, 1},  {u'c', true, ModeEditSketch, 1},
        {u'd', false, ModeDraw, -1},      {u'e', false, ModeEditSketch, 1},
        {u'g', false, ModeEditSketch, 1}, {u'n', true, ModeEditSketch, 1},
        {u'r', false, ModeEditRoll, 1},
    };
    for (const Row& row : rows) {
        for (bool upper : {false, true}) {
            char16_t key = row.Key;
            if (upper && key >= u'a' && key <= u'z')
                key = char16_t(key - u'a' + u'A');
            else if (upper)
                continue;
            TheMode = ModeEditSketch;
            Load(OpenCorner());
            Select(1, 0);
            TheView->Reset();
            TheView->SetViewport(800, 600);
            TheView->Zoom = 3;
            TheView->Pivot = P3(7, 8, 9);
            TheView->Orbit(0.25f, -0.5f, 0.125f);
            MMatrix rotation = TheView->Rotation;
            std::vector<WSketchPoint> before = Records(S());
            int32_t messages = Messages.Count;
            OnCharacter(key);
            const char c = char(key);
            bool same = S().PointCount == int32_t(before.size());
            for (int32_t i = 0; same && i < S().PointCount; i++)
                same = SameRecordBits(S().Points[i], before[size_t(i)]);
            EXPECT_EQ(!same, row.Changes) << c;
            EXPECT_EQ(Steps(), row.Changes ? 1 : 0) << c;
            EXPECT_EQ(TheMode, row.Mode) << c;
            EXPECT_EQ(S().Current, row.Current) << c;
            for (int r = 0; r < 4; r++)
                for (int k = 0; k < 4; k++)
                    EXPECT_EQ(TheView->Rotation.M[r][k], rotation.M[r][k]) << c;
            EXPECT_TRUE(SameBits(TheView->Pivot, P3(7, 8, 9))) << c;
            EXPECT_EQ(TheView->Zoom, 3.0f) << c;
            const char16_t* label = row.Mode == ModeDraw         ? u"DRAW FREEHAND"
                                    : row.Mode == ModeEditSketch ? u"EDIT SKETCH"
                                                                 : u"EDIT ROLL";
            EXPECT_EQ(Title(), std::u16string(u"Quillmere - Untitled ") +
                                   (row.Changes ? u"* " : u"") + u"(3 points) [" + label + u"]")
                << c;
            // Only "2" speaks, to say that the corner is flat already.
            EXPECT_EQ(Messages.Count - messages, row.Key == u'2' ? 1 : 0) << c;
        }
    }
}

// A closed curve of four or of six records is no circle: "o" makes the
// segment into the selected point an arc instead.
TEST_F(CharacterKeysTest, OOnAClosedCurveOfFourOrSixRecordsMakesAnArc) {
    // Four: a closed triangle whose first segment leaves (0, 0) straight up
    // and arrives at (100, 0) straight down: a half circle of radius 50.
    std::vector<WSketchPoint> four = {Record(0, 0, 0, KindMove), Record(100, 0, 0, KindLine),
                                      Record(50, 80, 0, KindLine), Record(0, 0, 0, KindLine)};
    four[0].HandleOut = four[3].HandleOut = P3(0, 10, 0);
    four[1].HandleIn = P3(100, 10, 0);
    Load(four);
    Select(1, 0);
    OnCharacter(u'o');
    float h = float(50 * 4.0 / 3 * std::tan(3.1415927 / 4));
    ExpectPoint(S().Points[0].HandleOut, 0, h, 0, 1e-3f);
    ExpectPoint(S().Points[1].HandleIn, 100, h, 0, 1e-3f);
    EXPECT_EQ(S().Points[1].Kind, KindCurve);
    ExpectPoint(S().Points[1].Position, 100, 0, 0, 0);
    ExpectPoint(S().Points[2].Position, 50, 80, 0, 0);

    // Six: a quarter turn about the origin, radius 100.
    std::vector<WSketchPoint> six = {Record(0, 100, 0, KindMove),  Record(100, 0, 0, KindLine),
                                     Record(50, -80, 0, KindLine), Record(-50, -80, 0, KindLine),
                                     Record(-100, 0, 0, KindLine), Record(0, 100, 0, KindLine)};
    six[0].HandleOut = six[5].HandleOut = P3(10, 100, 0);
    six[1].HandleIn = P3(100, 10, 0);
    Load(six);
    Select(1, 0);
    OnCharacter(u'O');
    h = float(100 * 4.0 / 3 * std::tan(1.5707964 / 4));
    ExpectPoint(S().Points[0].HandleOut, h, 100, 0, 1e-3f);
    ExpectPoint(S().Points[1].HandleIn, 100, h, 0, 1e-3f);
    ExpectPoint(S().Points[1].Position, 100, 0, 0, 0);
    EXPECT_EQ(S().Points[1].Kind, KindCurve);
    EXPECT_EQ(S().PointCount, 6);
}

TEST_F(CharacterKeysTest, OtherCharactersDoNothing) {
    Load(OpenCorner());
    TheMode = ModeEditSketch;
    Select(1, 0);
    for (char16_t c : {u'x', u'z', u'1', u' ', u'\x05', u'\r', u'b', u'*'})
        OnCharacter(c);
    EXPECT_EQ(Steps(), 0);
    EXPECT_EQ(S().PointCount, 3);
    EXPECT_EQ(TheMode, ModeEditSketch);
    EXPECT_EQ(S().Current, 1);
}

// ---- Delete

TEST_F(CharacterKeysTest, DeleteRemovesTheSelectedPointInTheEditModes) {
    for (WMode mode : {ModeEditSketch, ModeEditRoll}) {
        Load(OpenCorner());
        TheMode = mode;
        Select(1, 0);
        OnDeleteKey(none);
        ASSERT_EQ(S().PointCount, 2) << mode;
        ExpectPoint(S().Points[1].Position, 100, 100, 0, 0);
        EXPECT_EQ(Steps(), 1);
    }
    EXPECT_EQ(Title(), u"Quillmere - Untitled * (2 points) [EDIT ROLL]");
}

TEST_F(CharacterKeysTest, DeleteOfAHandleStraightensItsSegment) {
    std::vector<WSketchPoint> records = TangentCorner();
    Load(records);
    TheMode = ModeEditSketch;
    Select(1, 1);
    OnDeleteKey(none);
    ASSERT_EQ(S().PointCount, 2);
    EXPECT_EQ(S().Points[1].Kind, KindLine);
}

TEST_F(CharacterKeysTest, CtrlDeleteRemovesTheSegment) {
    Load(OpenCorner());
    TheMode = ModeEditSketch;
    Select(2, 0);
    OnDeleteKey(control);
    ASSERT_EQ(S().PointCount, 2);
    ExpectPoint(S().Points[1].Position, 100, 0, 0, 0);
}

// The only segment of a two-record curve goes, and the clean-up takes the
// single record left.
TEST_F(CharacterKeysTest, CtrlDeleteOfTheOnlySegmentLeavesNothing) {
    Load({Record(0, 0, 0, KindMove), Record(100, 0, 0, KindLine)});
    TheMode = ModeEditSketch;
    Select(1, 0);
    OnDeleteKey(control);
    EXPECT_EQ(S().PointCount, 0);
}

TEST_F(CharacterKeysTest, DeleteDoesNothingWhileDrawing) {
    Load(OpenCorner());
    TheMode = ModeDraw;
    Select(1, 0);
    OnDeleteKey(none);
    OnDeleteKey(control);
    EXPECT_EQ(S().PointCount, 3);
    EXPECT_EQ(Steps(), 0);
}
