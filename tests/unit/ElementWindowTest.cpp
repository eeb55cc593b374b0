// The Element tool window on the memory controls: the element it shows
// first, the labels, defaults and enabled edits of each element, and "Add".

#include "ShellTestSupport.h"

#include "dialogs/Dialog.h"
#include "dialogs/ElementWindow.h"
#include "elements/WElement.h"

namespace {

class ElementWindowTest : public ShellFixture {
  protected:
    void SetUp() override {
        ShellFixture::SetUp();
        CreateElement();
    }
    void TearDown() override {
        ShellFixture::TearDown();
        DestroyElement();
    }
    void* Window() { return TheElementDialog ? TheElementDialog->Window : nullptr; }
    std::u16string Field(int32_t id) { return Text(GetControlText(Window(), id)); }
    bool Type(int32_t id, const char16_t* text) {
        WDialogStep step;
        step.Kind = StepSetText;
        step.Id = id;
        step.Text = text;
        return ApplyDialogStep(Window(), step);
    }
    bool Click(int32_t id) {
        WDialogStep step;
        step.Kind = StepClick;
        step.Id = id;
        return ApplyDialogStep(Window(), step);
    }
};

TEST_F(ElementWindowTest, OpensWithTheListAndLiftHill) {
    OpenElement();
    ASSERT_NE(TheElementDialog, nullptr);
    EXPECT_EQ(Text(GetWindowTextOf(Window())), u"Quillmere - Element");
    ASSERT_EQ(ComboItemCount(Window(), 1014), 17);
    for (int32_t i = 0; i < 17; i++)
        EXPECT_EQ(Text(ComboItemText(Window(), 1014, i)), Text(WElementTable[i].Name));
    EXPECT_EQ(ComboSelection(Window(), 1014), 1);
    EXPECT_EQ(Text(ComboItemText(Window(), 1014, 1)), u"Lift hill");
    const WElementRow& row = WElementTable[1];
    const int32_t labels[4] = {1016, 1021, 1022, 1023};
    const int32_t edits[4] = {1015, 1017, 1018, 1019};
    for (int32_t i = 0; i < 4; i++) {
        EXPECT_EQ(Field(labels[i]), Text(row.Label[i]));
        if (row.Label[i].IsEmpty()) {
            EXPECT_EQ(Field(edits[i]), u"");
            EXPECT_FALSE(IsControlEnabled(Window(), edits[i]));
        } else {
            EXPECT_EQ(Field(edits[i]), Text(MString(row.Default[i])));
            EXPECT_TRUE(IsControlEnabled(Window(), edits[i]));
        }
    }
    EXPECT_EQ(Field(1026), Text(row.Description));
}

// Every element shows its own labels; an unused parameter is emptied and
// disabled even when the element before used it.
TEST_F(ElementWindowTest, EachElementShowsItsParameters) {
    OpenElement();
    const int32_t edits[4] = {1015, 1017, 1018, 1019};
    for (int32_t index = 0; index < ElementTypeCount; index++) {
        TheElementDialog->Show(index);
        const WElementRow& row = WElementTable[index];
        EXPECT_EQ(ComboSelection(Window(), 1014), index);
        for (int32_t i = 0; i < 4; i++) {
            bool used = !row.Label[i].IsEmpty();
            EXPECT_EQ(IsControlEnabled(Window(), edits[i]), used) << index << " " << i;
            if (used)
                EXPECT_EQ(ParseFloat(GetControlText(Window(), edits[i])), row.Default[i]);
            else
                EXPECT_EQ(Field(edits[i]), u"");
        }
        EXPECT_EQ(Field(1026), Text(row.Description));
    }
}

TEST_F(ElementWindowTest, AddUsesTheEditsAndSwitchesToEditing) {
    OpenElement();
    TheElementDialog->Show(ElementStraightLine);
    ASSERT_TRUE(Type(1015, u"50"));
    ASSERT_TRUE(Click(1025));
    // The start point and the straight line's points.
    ASSERT_GE(S().PointCount, 2);
    EXPECT_NEAR(S().Points[S().PointCount - 1].Position.x, 50.0f, 1e-3f);
    EXPECT_EQ(TheMode, ModeEditSketch);
    EXPECT_EQ(S().Modified, 1);
}

TEST_F(ElementWindowTest, EmptyAndInvalidEditsAddWithZero) {
    OpenElement();
    TheElementDialog->Show(ElementStraightLine);
    ASSERT_TRUE(Type(1015, u"abc"));
    ASSERT_TRUE(Click(1025));
    // A straight line of length 0 fails its test: only the start point.
    EXPECT_EQ(S().PointCount, 1);
}

TEST_F(ElementWindowTest, AParameterWithoutLabelPassesZero) {
    // Whatever an unused edit holds, the element gets 0 for it.
    float entered[4] = {60, 7, 8, 9};
    AddElementFromWindow(ElementStraightLine, entered);
    float same[4] = {60, 0, 0, 0};
    int32_t count = S().PointCount;
    WSketchPoint last = S().Points[count - 1];
    DestroySketch();
    CreateSketch();
    AddElementFromWindow(ElementStraightLine, same);
    ASSERT_EQ(S().PointCount, count);
    EXPECT_TRUE(SameBits(S().Points[count - 1].Position, last.Position));
}

TEST_F(ElementWindowTest, ChoosingAnElementInTheListShowsIt) {
    OpenElement();
    WDialogStep step;
    step.Kind = StepSelect;
    step.Id = 1014;
    step.Value = ElementCorkscrew;
    ASSERT_TRUE(ApplyDialogStep(Window(), step));
    EXPECT_EQ(Field(1026), Text(WElementTable[ElementCorkscrew].Description));
    EXPECT_EQ(Field(1016), Text(WElementTable[ElementCorkscrew].Label[0]));
}

TEST_F(ElementWindowTest, TheCommandOpensAndClosesTheWindow) {
    RunCommand(32791);
    ASSERT_NE(TheElementDialog, nullptr);
    EXPECT_TRUE(AppliedMenuState().ElementWindow);
    EXPECT_EQ(TheMode, ModeEditSketch);
    RunCommand(32791);
    EXPECT_EQ(TheElementDialog, nullptr);
    EXPECT_FALSE(AppliedMenuState().ElementWindow);
}

TEST_F(ElementWindowTest, ASecondObjectIsRefused) {
    OpenElement();
    WDialog_Element* first = TheElementDialog;
    OpenElement();
    EXPECT_EQ(TheElementDialog, first);
    EXPECT_EQ(LastMessage(), u"There can only be 1 WDialog_Element object");
}

} // namespace
