// The Point tool window on the memory controls: what it shows of the
// selected record, how typing becomes an edit, and that the edits, drags and
// selections of the rest of the program reach it.

#include "ShellTestSupport.h"

#include "dialogs/Dialog.h"
#include "dialogs/PointWindow.h"
#include "shell/Keys.h"
#include "shell/ToolWindows.h"

namespace {

// Edit ids in the order Position, HandleIn, HandleOut, Roll, each x, y, z.
const int32_t PositionX = 1001, PositionY = 1002, HandleOutX = 1008, RollZ = 1013;

class PointWindowTest : public ShellFixture {
  protected:
    void* Window() { return TheInfoDialog ? TheInfoDialog->Window : nullptr; }
    std::u16string Field(int32_t id) { return Text(GetControlText(Window(), id)); }
    // The user types text into an edit: the text changes, the window applies.
    bool Type(int32_t id, const char16_t* text) {
        WDialogStep step;
        step.Kind = StepSetText;
        step.Id = id;
        step.Text = text;
        return ApplyDialogStep(Window(), step);
    }
    bool Step(WDialogStepKind kind, int32_t id, int32_t value) {
        WDialogStep step;
        step.Kind = kind;
        step.Id = id;
        step.Value = value;
        return ApplyDialogStep(Window(), step);
    }
};

TEST_F(PointWindowTest, OpensWithItsTitleKindsAndTheSelectedRecord) {
    Load(OpenCorner());
    Select(1, 0);
    OpenInfo();
    ASSERT_NE(TheInfoDialog, nullptr);
    EXPECT_EQ(Text(GetWindowTextOf(Window())), u"Quillmere - Point");
    ASSERT_EQ(ComboItemCount(Window(), 1000), 3);
    EXPECT_EQ(Text(ComboItemText(Window(), 1000, 0)), u"Move");
    EXPECT_EQ(Text(ComboItemText(Window(), 1000, 1)), u"Line");
    EXPECT_EQ(Text(ComboItemText(Window(), 1000, 2)), u"Curve");
    EXPECT_EQ(ComboSelection(Window(), 1000), int32_t(KindLine));
    EXPECT_EQ(Field(PositionX), u"100");
    EXPECT_EQ(Field(PositionY), u"0");
    EXPECT_EQ(Field(RollZ), u"1");
    EXPECT_TRUE(IsControlChecked(Window(), 1004));
    for (int32_t id : InfoEditIds)
        EXPECT_TRUE(IsControlEnabled(Window(), id)) << id;
    EXPECT_TRUE(TheInfoDialog->Active);
}

TEST_F(PointWindowTest, WithoutSelectionTheFieldsAreEmptyAndDisabled) {
    Load(OpenCorner());
    Select(1, 0);
    OpenInfo();
    S().Current = -1;
    TheInfoDialog->Refresh();
    for (int32_t id : InfoEditIds) {
        EXPECT_EQ(Field(id), u"") << id;
        EXPECT_FALSE(IsControlEnabled(Window(), id)) << id;
    }
    EXPECT_FALSE(IsControlChecked(Window(), 1004));
    EXPECT_FALSE(IsControlEnabled(Window(), 1004));
    EXPECT_FALSE(IsControlEnabled(Window(), 1000));
    EXPECT_EQ(ComboSelection(Window(), 1000), 0);
    // Nothing can apply: the user cannot type into a disabled edit, and the
    // window would not take a change without a selection.
    EXPECT_FALSE(Type(PositionX, u"5"));
    SetControlText(Window(), PositionX, MString(u"5"));
    TheInfoDialog->Apply();
    EXPECT_EQ(Steps(), 0);
    EXPECT_EQ(S().Points[1].Position.x, 100.0f);
}

TEST_F(PointWindowTest, TypingOneAndAPointKeepsTheText) {
    Load(OpenCorner());
    Select(0, 0);
    OpenInfo();
    Type(PositionX, u"1");
    EXPECT_EQ(S().Points[0].Position.x, 1.0f);
    EXPECT_EQ(Steps(), 1);
    Type(PositionX, u"1.");
    // "1." already means the stored 1: the refresh after the edit leaves it.
    EXPECT_EQ(Field(PositionX), u"1.");
    EXPECT_EQ(S().Points[0].Position.x, 1.0f);
    EXPECT_EQ(Steps(), 1);
    EXPECT_EQ(S().Modified, 1);
}

TEST_F(PointWindowTest, AnInvalidNumberCommitsZero) {
    Load(OpenCorner());
    Select(2, 0);
    OpenInfo();
    Type(PositionY, u"abc");
    EXPECT_EQ(S().Points[2].Position.y, 0.0f);
    EXPECT_EQ(S().Points[2].Position.x, 100.0f);
    EXPECT_EQ(Steps(), 1);
    // The text stays as typed: it parses to the stored 0.
    EXPECT_EQ(Field(PositionY), u"abc");
    Type(PositionX, u"nan");
    EXPECT_EQ(S().Points[2].Position.x, 0.0f);
}

TEST_F(PointWindowTest, AFieldIsReadToFifteenCharacters) {
    Load(OpenCorner());
    Select(1, 0);
    OpenInfo();
    Type(PositionX, u"1234567890123456");
    EXPECT_EQ(S().Points[1].Position.x, 123456789012345.0f);
}

TEST_F(PointWindowTest, KindAndAlignApplyAtOnce) {
    Load(OpenCorner());
    Select(1, 0);
    OpenInfo();
    EXPECT_TRUE(Step(StepSelect, 1000, KindCurve));
    EXPECT_EQ(S().Points[1].Kind, KindCurve);
    EXPECT_TRUE(Step(StepCheck, 1004, 0));
    EXPECT_EQ(S().Points[1].Smooth, 0);
    EXPECT_EQ(Steps(), 2);
}

TEST_F(PointWindowTest, AHandleTypedOnAClosingRecordReachesItsTwin) {
    Load(ClosedSquare());
    Select(0, 0);
    OpenInfo();
    Type(HandleOutX, u"30");
    EXPECT_EQ(S().Points[0].HandleOut.x, 30.0f);
    EXPECT_EQ(S().Points[4].HandleOut.x, 30.0f);
}

TEST_F(PointWindowTest, WhileFillingItselfTheWindowAppliesNothing) {
    Load(OpenCorner());
    Select(1, 0);
    OpenInfo();
    TheInfoDialog->Active = false;
    EXPECT_TRUE(Type(PositionX, u"7"));
    EXPECT_EQ(S().Points[1].Position.x, 100.0f);
    EXPECT_EQ(Steps(), 0);
}

TEST_F(PointWindowTest, ACommitReloadsTheWindow) {
    Load(OpenCorner());
    Select(1, 0);
    OpenInfo();
    OnCharacter(u'+'); // scaled by 1.1 about the origin, then Commit
    EXPECT_EQ(Field(PositionX), Text(MString(S().Points[1].Position.x)));
    EXPECT_NE(Field(PositionX), u"100");
}

// A drag has no Commit until the button goes up, yet the window follows it.
TEST_F(PointWindowTest, ADragReloadsTheWindowAtEveryMove) {
    Load(OpenCorner());
    TheMode = ModeEditSketch;
    OpenInfo();
    OnLeftButtonDown(Screen(100, 0), WKeys());
    ASSERT_EQ(S().Current, 1);
    EXPECT_EQ(Field(PositionX), u"100");
    OnMouseMove(Screen(110, 20), WKeys());
    EXPECT_EQ(Field(PositionX), u"110");
    EXPECT_EQ(Field(PositionY), u"20");
    EXPECT_EQ(Steps(), 0);
    OnMouseMove(Screen(120, 20), WKeys());
    EXPECT_EQ(Field(PositionX), u"120");
}

TEST_F(PointWindowTest, ASelectionChangeReloadsTheWindow) {
    Load(OpenCorner());
    TheMode = ModeEditSketch;
    OpenInfo();
    EXPECT_EQ(Field(PositionX), u"");
    OnLeftButtonDown(Screen(100, 100), WKeys());
    OnLeftButtonUp(Screen(100, 100), WKeys());
    EXPECT_EQ(Field(PositionX), u"100");
    EXPECT_EQ(Field(PositionY), u"100");
    // A click on nothing deselects, and the window empties.
    OnLeftButtonDown(Screen(-300, -250), WKeys());
    OnLeftButtonUp(Screen(-300, -250), WKeys());
    EXPECT_EQ(Field(PositionX), u"");
    EXPECT_FALSE(IsControlEnabled(Window(), PositionX));
}

TEST_F(PointWindowTest, ASecondObjectIsRefused) {
    OpenInfo();
    WDialog_Info* first = TheInfoDialog;
    OpenInfo();
    EXPECT_EQ(TheInfoDialog, first);
    EXPECT_EQ(LastMessage(), u"There can only be 1 WDialog_Info object");
    EXPECT_EQ(MessageIcons[Messages.Count - 1], IconError);
}

TEST_F(PointWindowTest, TheCommandOpensAndClosesTheWindowAndTheMenuShowsIt) {
    RunCommand(32809);
    ASSERT_NE(TheInfoDialog, nullptr);
    EXPECT_TRUE(AppliedMenuState().PointWindow);
    RunCommand(32809);
    EXPECT_EQ(TheInfoDialog, nullptr);
    EXPECT_FALSE(AppliedMenuState().PointWindow);
    // While closed, refreshes do nothing.
    RefreshPointWindow();
}

TEST_F(PointWindowTest, ValuesAndRecordRoundTrip) {
    WSketchPoint record = Record(1, 2, 3, KindCurve);
    record.HandleIn = P3(4, 5, 6);
    record.HandleOut = P3(7, 8, 9);
    record.Roll = P3(10, 11, 12);
    record.Smooth = 0;
    float values[12];
    InfoValues(record, values);
    for (int32_t i = 0; i < 12; i++)
        EXPECT_EQ(values[i], float(i + 1));
    WSketchPoint back = InfoRecord(KindCurve, values, false);
    EXPECT_TRUE(SameBits(back.Position, record.Position));
    EXPECT_TRUE(SameBits(back.Roll, record.Roll));
    EXPECT_EQ(back.Kind, KindCurve);
    EXPECT_EQ(back.Smooth, 0);
    EXPECT_EQ(InfoRecord(-1, values, true).Kind, KindMove);
}

} // namespace
