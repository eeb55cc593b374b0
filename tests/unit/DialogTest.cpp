// Dialogs without a screen: in-memory dialogs keep what the code writes, and
// a script answers modal dialogs with typed texts, clicks and OK or Cancel.

#include "dialogs/Dialog.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::u16string U16(const MString& text) {
    return std::u16string(text.Chars());
}

// A small dialog: a check box 10 that enables the edit 11, a dropdown 12,
// and OK that stores the edit's text and the selection.
struct Sample {
    MString Stored;
    int32_t Selection = -5;
    int32_t Commands = 0;
    int32_t Closes = 0;
    int32_t PressX = -1, PressY = -1;
};
Sample TheSample;

void SampleInit(void* dialog) {
    SetWindowTextOf(dialog, MString(u"Sample"));
    SetControlChecked(dialog, 10, false);
    EnableControl(dialog, 11, false);
    AddComboItem(dialog, 12, MString(u"One"));
    AddComboItem(dialog, 12, MString(u"Two"));
    SetComboSelection(dialog, 12, 0);
}
void SampleCommand(void* dialog, int32_t id, int32_t notify) {
    TheSample.Commands++;
    if (id == 10 && notify == NotifyClicked)
        EnableControl(dialog, 11, IsControlChecked(dialog, 10));
    if (id == DialogOk) {
        TheSample.Stored = GetControlText(dialog, 11);
        TheSample.Selection = ComboSelection(dialog, 12);
        EndModalDialog(dialog, DialogOk);
    }
    if (id == DialogCancel) EndModalDialog(dialog, DialogCancel);
}
void SampleClose(void* dialog) {
    TheSample.Closes++;
    EndModalDialog(dialog, 7);
}
void SamplePress(void*, int32_t x, int32_t y) {
    TheSample.PressX = x;
    TheSample.PressY = y;
}

WDialogHandler SampleHandler() {
    WDialogHandler handler;
    handler.Init = SampleInit;
    handler.Command = SampleCommand;
    handler.Close = SampleClose;
    handler.LeftButtonDown = SamplePress;
    return handler;
}

class Dialogs : public ::testing::Test {
  protected:
    DialogScript Script;
    WDialogHandler Handler = SampleHandler();
    void SetUp() override {
        TheSample = Sample();
        TheDialogScript = &Script;
    }
    void TearDown() override { TheDialogScript = nullptr; }
};

} // namespace

TEST_F(Dialogs, AScriptTypesClicksAndEndsWithOk) {
    const WDialogStep steps[] = {
        {StepCheck, 10, nullptr, 1},
        {StepSetText, 11, u"typed"},
        {StepSelect, 12, nullptr, 1},
    };
    WDialogAnswer answer{steps, 3, DialogOk};
    Script.Answers = &answer;
    Script.AnswerCount = 1;
    EXPECT_EQ(RunModalDialog(135, nullptr, Handler), DialogOk);
    EXPECT_EQ(U16(TheSample.Stored), u"typed");
    EXPECT_EQ(TheSample.Selection, 1);
    EXPECT_EQ(Script.Count, 1);
    EXPECT_EQ(Script.Refused, 0);
    EXPECT_EQ(Script.LastResource, 135);
    EXPECT_EQ(Script.LastResult, DialogOk);
    EXPECT_EQ(U16(Script.LastTitle), u"Sample");
    // The state after Init, and at the end.
    EXPECT_FALSE(Script.Opened.Find(11)->Enabled);
    EXPECT_FALSE(Script.Opened.Find(10)->Checked);
    EXPECT_TRUE(Script.Closed.Find(11)->Enabled);
    EXPECT_TRUE(Script.Closed.Find(10)->Checked);
    EXPECT_EQ(Script.Closed.Find(12)->ItemCount, 2);
    // Destroyed when it ended.
    EXPECT_EQ(AsMemoryDialog(nullptr), nullptr);
}

TEST_F(Dialogs, AStepOnADisabledControlIsRefused) {
    const WDialogStep steps[] = {{StepSetText, 11, u"typed"}, {StepSelect, 12, nullptr, 2}};
    WDialogAnswer answer{steps, 2, DialogOk};
    Script.Answers = &answer;
    Script.AnswerCount = 1;
    EXPECT_EQ(RunModalDialog(135, nullptr, Handler), DialogOk);
    EXPECT_EQ(Script.Refused, 2); // a disabled edit, an entry beyond the list
    EXPECT_TRUE(TheSample.Stored.IsEmpty());
    EXPECT_EQ(TheSample.Selection, 0);
}

TEST_F(Dialogs, CancelCloseAndRunningOutOfAnswers) {
    WDialogAnswer answers[2];
    answers[0].Ending = DialogCancel;
    answers[1].Ending = 0; // the close box
    Script.Answers = answers;
    Script.AnswerCount = 2;
    EXPECT_EQ(RunModalDialog(136, nullptr, Handler), DialogCancel);
    EXPECT_EQ(TheSample.Selection, -5);
    EXPECT_EQ(RunModalDialog(136, nullptr, Handler), 7);
    EXPECT_EQ(TheSample.Closes, 1);
    EXPECT_EQ(RunModalDialog(136, nullptr, Handler), DialogCancel);
    EXPECT_EQ(Script.Count, 3);
}

TEST_F(Dialogs, APressReachesTheHandlerAtItsPixels) {
    const WDialogStep steps[] = {{StepPress, 0, nullptr, 0, 40, 25}};
    WDialogAnswer answer{steps, 1, DialogCancel};
    Script.Answers = &answer;
    Script.AnswerCount = 1;
    RunModalDialog(139, nullptr, Handler);
    EXPECT_EQ(TheSample.PressX, 40);
    EXPECT_EQ(TheSample.PressY, 25);
}

TEST_F(Dialogs, WithoutHandlerOkAndCancelEndAModalDialog) {
    WDialogHandler none;
    WDialogAnswer answers[3];
    answers[0].Ending = DialogOk;
    answers[1].Ending = DialogCancel;
    answers[2].Ending = 0;
    Script.Answers = answers;
    Script.AnswerCount = 3;
    EXPECT_EQ(RunModalDialog(133, nullptr, none), DialogOk);
    EXPECT_EQ(RunModalDialog(133, nullptr, none), DialogCancel);
    EXPECT_EQ(RunModalDialog(133, nullptr, none), DialogCancel);
}

TEST_F(Dialogs, ADialogThatWillNotEndIsEndedWithCancel) {
    WDialogHandler stubborn;
    stubborn.Command = [](void*, int32_t, int32_t) {};
    WDialogAnswer answer;
    answer.Ending = DialogOk;
    Script.Answers = &answer;
    Script.AnswerCount = 1;
    EXPECT_EQ(RunModalDialog(135, nullptr, stubborn), DialogCancel);
}

TEST_F(Dialogs, ModelessDialogsLiveUntilDestroyed) {
    int context = 0;
    void* dialog = CreateModelessDialog(131, nullptr, Handler, &context);
    ASSERT_NE(AsMemoryDialog(dialog), nullptr);
    EXPECT_EQ(DialogContext(dialog), &context);
    EXPECT_EQ(DialogResource(dialog), 131);
    EXPECT_EQ(U16(GetWindowTextOf(dialog)), u"Sample");
    EXPECT_FALSE(AsMemoryDialog(dialog)->Visible);
    ShowDialog(dialog, true);
    EXPECT_TRUE(AsMemoryDialog(dialog)->Visible);
    WDialogStep check{StepCheck, 10, nullptr, 1};
    EXPECT_TRUE(ApplyDialogStep(dialog, check));
    EXPECT_TRUE(IsControlEnabled(dialog, 11));
    // Checking a box that is already checked clicks nothing.
    int32_t commands = TheSample.Commands;
    EXPECT_TRUE(ApplyDialogStep(dialog, check));
    EXPECT_EQ(TheSample.Commands, commands);
    DestroyDialog(dialog);
    EXPECT_EQ(AsMemoryDialog(dialog), nullptr);
}

TEST_F(Dialogs, MissingControlsReadEmptyAndDisabled) {
    void* dialog = CreateModelessDialog(132, nullptr, Handler);
    EXPECT_TRUE(GetControlText(dialog, 999).IsEmpty());
    EXPECT_FALSE(IsControlChecked(dialog, 999));
    EXPECT_FALSE(IsControlEnabled(dialog, 999));
    EXPECT_EQ(ComboItemCount(dialog, 999), 0);
    EXPECT_EQ(ComboSelection(dialog, 999), -1);
    EXPECT_TRUE(ComboItemText(dialog, 12, 5).IsEmpty());
    EXPECT_EQ(U16(ComboItemText(dialog, 12, 1)), u"Two");
    ClearComboItems(dialog, 12);
    EXPECT_EQ(ComboItemCount(dialog, 12), 0);
    EXPECT_EQ(ComboSelection(dialog, 12), -1);
    DestroyDialog(dialog);
    // A null dialog is no dialog.
    EXPECT_TRUE(GetControlText(nullptr, 1).IsEmpty());
    SetControlText(nullptr, 1, MString(u"x"));
    DestroyDialog(nullptr);
}

TEST(DialogsUnscripted, WithoutAScriptNobodyAnswersAndTheDialogIsCancelled) {
    TheSample = Sample();
    WDialogHandler handler = SampleHandler();
    // Natively there is no window to show; under Wine this would wait for a
    // user, so only the native build asks.
#ifndef _WIN32
    EXPECT_EQ(RunModalDialog(135, nullptr, handler), DialogCancel);
    EXPECT_TRUE(TheSample.Stored.IsEmpty());
#endif
    void* dialog = CreateModelessDialog(131, nullptr, handler);
    EXPECT_NE(dialog, nullptr);
    DestroyDialog(dialog);
}
