// The question before the sketch is replaced or left: its text, icon and
// buttons, and what each of Yes, No and Cancel does for New, Open, a file
// drop and the close of the window. SaveSketch with and without a name.

#include "ShellTestSupport.h"

#include "shell/SketchFile.h"
#include "shell/Startup.h"

namespace {

const char16_t* const Question =
    u"The sketch has changed.\r\n\r\nDo you want to save the changes ? ";

class AskToSaveTest : public ShellFixture {
  protected:
    MString Other; // a sketch file to open, of three points

    void SetUp() override {
        ShellFixture::SetUp();
        Other = WriteFile("other.eps", ThreePointEps());
        Load(ClosedSquare());
        Change(); // the square at twice its size, not saved
    }
    void ExpectQuestionAsked() {
        ASSERT_GE(Messages.Count, 1);
        EXPECT_EQ(Text(MessageTexts[0]), Question);
        EXPECT_EQ(MessageIcons[0], IconQuestion);
        EXPECT_EQ(MessageButtonList[0], ButtonsYesNoCancel);
    }
    // The changed square is still there, unsaved.
    void ExpectSketchKept() {
        EXPECT_EQ(S().PointCount, 5);
        EXPECT_EQ(S().Modified, 1);
        ExpectPoint(S().Points[2].Position, 200, 200, 0);
    }
};

} // namespace

TEST_F(AskToSaveTest, UnchangedSketchIsNotAskedAbout) {
    S().Modified = 0;
    EXPECT_TRUE(AskToSave());
    EXPECT_EQ(Messages.Count, 0);
}

TEST_F(AskToSaveTest, QuestionWithItsThreeAnswers) {
    Answer(AnswerCancel);
    EXPECT_FALSE(AskToSave());
    ExpectQuestionAsked();
    Answer(AnswerNo);
    EXPECT_TRUE(AskToSave());
    EXPECT_EQ(Messages.Count, 2);
    // Yes saves; a cancelled name prompt is a failed save.
    Answer(AnswerYes);
    EXPECT_FALSE(AskToSave());
    EXPECT_EQ(Prompts.Count, 1);
    EXPECT_EQ(Prompts.Last.Mode, PromptSaveSketch);
    EXPECT_EQ(S().Modified, 1);
}

TEST_F(AskToSaveTest, YesSavesUnderTheNameAskedFor) {
    Answer(AnswerYes);
    MString path = PathOf("square.eps");
    Prompt(path);
    EXPECT_TRUE(AskToSave());
    EXPECT_EQ(Text(TheFileName), Text(path));
    EXPECT_EQ(S().Modified, 0);
    EXPECT_NE(ReadFile(path).find("200 200 lineto"), std::string::npos);
    EXPECT_EQ(Title(), u"Quillmere - square.eps (5 points) [DRAW FREEHAND]");
}

// ---- New

TEST_F(AskToSaveTest, NewCancelledKeepsTheSketch) {
    Answer(AnswerCancel);
    RunCommand(32798);
    ExpectQuestionAsked();
    ExpectSketchKept();
}

TEST_F(AskToSaveTest, NewAnsweredNoEmptiesTheSketchWithoutSaving) {
    Answer(AnswerNo);
    RunCommand(32798);
    ExpectQuestionAsked();
    EXPECT_EQ(S().PointCount, 0);
    EXPECT_EQ(Prompts.Count, 0);
    EXPECT_EQ(Title(), u"Quillmere - Untitled (0 points) [DRAW FREEHAND]");
}

TEST_F(AskToSaveTest, NewAnsweredYesSavesFirst) {
    Answer(AnswerYes);
    MString path = PathOf("kept.eps");
    Prompt(path);
    RunCommand(32798);
    EXPECT_TRUE(Exists(path));
    EXPECT_NE(ReadFile(path).find("200 200 lineto"), std::string::npos);
    EXPECT_EQ(S().PointCount, 0);
    // The name of the saved file stays for the empty sketch.
    EXPECT_EQ(Title(), u"Quillmere - kept.eps (0 points) [DRAW FREEHAND]");
}

TEST_F(AskToSaveTest, NewAnsweredYesButNoNameKeepsTheSketch) {
    Answer(AnswerYes);
    RunCommand(32798); // the name prompt is cancelled
    ExpectSketchKept();
}

// ---- Open

TEST_F(AskToSaveTest, OpenCancelledAsksForNoFile) {
    Answer(AnswerCancel);
    RunCommand(32779);
    ExpectQuestionAsked();
    EXPECT_EQ(Prompts.Count, 0);
    ExpectSketchKept();
}

TEST_F(AskToSaveTest, OpenAnsweredNoOpensTheChosenFile) {
    Answer(AnswerNo);
    Prompt(Other);
    RunCommand(32779);
    EXPECT_EQ(Prompts.Count, 1);
    EXPECT_EQ(Prompts.Last.Mode, PromptOpenSketch);
    EXPECT_EQ(S().PointCount, 3);
    EXPECT_EQ(Text(TheFileName), Text(Other));
    EXPECT_EQ(Title(), u"Quillmere - other.eps (3 points) [EDIT SKETCH]");
}

TEST_F(AskToSaveTest, OpenAnsweredYesSavesThenOpens) {
    Answer(AnswerYes);
    MString path = PathOf("square.eps");
    Prompt(path);
    Prompt(Other);
    RunCommand(32779);
    EXPECT_EQ(Prompts.Count, 2);
    EXPECT_NE(ReadFile(path).find("200 200 lineto"), std::string::npos);
    EXPECT_EQ(S().PointCount, 3);
    EXPECT_EQ(Title(), u"Quillmere - other.eps (3 points) [EDIT SKETCH]");
}

// ---- A file dropped on the window

TEST_F(AskToSaveTest, DropCancelledOpensNothing) {
    Answer(AnswerCancel);
    OnFileDropped(Other);
    ExpectQuestionAsked();
    ExpectSketchKept();
    EXPECT_TRUE(TheFileName.IsEmpty());
}

TEST_F(AskToSaveTest, DropAnsweredNoOpensTheFile) {
    Answer(AnswerNo);
    OnFileDropped(Other);
    EXPECT_EQ(Prompts.Count, 0);
    EXPECT_EQ(S().PointCount, 3);
    EXPECT_EQ(Title(), u"Quillmere - other.eps (3 points) [EDIT SKETCH]");
}

TEST_F(AskToSaveTest, DropAnsweredYesSavesThenOpens) {
    Answer(AnswerYes);
    MString path = PathOf("square.eps");
    Prompt(path);
    OnFileDropped(Other);
    EXPECT_EQ(Prompts.Count, 1);
    EXPECT_NE(ReadFile(path).find("200 200 lineto"), std::string::npos);
    EXPECT_EQ(S().PointCount, 3);
    EXPECT_EQ(Text(TheFileName), Text(Other));
}

// ---- Closing the window

TEST_F(AskToSaveTest, CloseCancelledKeepsTheWindowAndWritesNoSettings) {
    Answer(AnswerCancel);
    EXPECT_FALSE(PrepareToClose(WRect{10, 20, 810, 620}));
    ExpectQuestionAsked();
    ExpectSketchKept();
    EXPECT_FALSE(Exists(SettingsFileName()));
}

TEST_F(AskToSaveTest, CloseAnsweredNoSavesTheSettingsOnly) {
    Answer(AnswerNo);
    EXPECT_TRUE(PrepareToClose(WRect{10, 20, 810, 620}));
    EXPECT_EQ(Prompts.Count, 0);
    EXPECT_TRUE(Exists(SettingsFileName()));
    EXPECT_EQ(settings.WindowRect.left, 10);
}

TEST_F(AskToSaveTest, CloseAnsweredYesSavesTheSketchThenTheSettings) {
    Answer(AnswerYes);
    MString path = PathOf("square.eps");
    Prompt(path);
    EXPECT_TRUE(PrepareToClose(WRect{10, 20, 810, 620}));
    EXPECT_NE(ReadFile(path).find("200 200 lineto"), std::string::npos);
    EXPECT_TRUE(Exists(SettingsFileName()));
}

TEST_F(AskToSaveTest, CloseAnsweredYesWithAFailedSaveStays) {
    Answer(AnswerYes);
    EXPECT_FALSE(PrepareToClose(WRect{10, 20, 810, 620})); // the name prompt is cancelled
    EXPECT_FALSE(Exists(SettingsFileName()));
}

// ---- SaveSketch

TEST_F(AskToSaveTest, SaveSketchWithANameWritesWithoutAsking) {
    MString path = PathOf("named.eps");
    TheFileName = path;
    EXPECT_TRUE(SaveSketch());
    EXPECT_EQ(Prompts.Count, 0);
    EXPECT_EQ(ReadFile(path), Bytes(MakeSketchEps(S(), settings)));
    EXPECT_EQ(Title(), u"Quillmere - named.eps (5 points) [DRAW FREEHAND]");
}

TEST_F(AskToSaveTest, SaveSketchWithoutANameAsksAndKeepsTheName) {
    MString path = PathOf("asked.eps");
    Prompt(path);
    EXPECT_TRUE(SaveSketch());
    EXPECT_EQ(Prompts.Last.Mode, PromptSaveSketch);
    EXPECT_EQ(Text(TheFileName), Text(path));
    EXPECT_TRUE(Exists(path));
}

TEST_F(AskToSaveTest, SaveSketchCancelledIsFalseAndKeepsNoName) {
    EXPECT_FALSE(SaveSketch());
    EXPECT_TRUE(TheFileName.IsEmpty());
    EXPECT_EQ(S().Modified, 1);
}

// The name asked for is kept even when the writer refuses: a solid save of a
// sketch that is not flat.
TEST_F(AskToSaveTest, SaveSketchKeepsTheNameAskedForWhenTheWriterRefuses) {
    S().Points[1].Position.z = 5;
    S().Points[1].HandleIn.z = 5;
    S().Points[1].HandleOut.z = 5;
    settings.SaveSolid = true;
    MString path = PathOf("solid.eps");
    Prompt(path);
    EXPECT_FALSE(SaveSketch());
    EXPECT_EQ(LastMessage(), u"Your sketch can't be saved as solid because it's not 2D");
    EXPECT_FALSE(Exists(path));
    EXPECT_EQ(Text(TheFileName), Text(path));
    EXPECT_EQ(Title(), u"Quillmere - solid.eps * (5 points) [DRAW FREEHAND]");
}
