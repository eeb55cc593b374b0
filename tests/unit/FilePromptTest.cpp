// The four file prompts: what each asks with, the forced extension of the
// save prompt, and the remembered folders. The user's answers are scripted.

#include "drawing/FilePrompt.h"

#include "drawing/MMediaTypes.h"
#include "shell/Shell.h"
#include "shell/WSettings.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::u16string U16(const MString& text) {
    return std::u16string(text.Chars());
}

std::u16string Filter(const WFilePromptRequest& request) {
    if (!request.Filter) return std::u16string();
    return std::u16string(request.Filter, size_t(request.FilterLength));
}

class FilePrompts : public ::testing::Test {
  protected:
    WSettings Settings;
    FilePromptScript Script;
    MString Answers[4];
    WSettings* SavedSettings = nullptr;

    void SetUp() override {
        SavedSettings = TheSettings;
        TheSettings = &Settings;
        Settings.FolderOpenSketch = MString(u"C:\\Sketches");
        Settings.FolderSaveSketch = MString(u"C:\\Saved");
        Settings.FolderSelectPicture = MString(u"C:\\Pictures");
        Settings.FolderSelectExecutable = MString(u"C:\\Tools");
        TheFilePromptScript = &Script;
        TheFileName = MString();
    }
    void TearDown() override {
        TheFilePromptScript = nullptr;
        TheSettings = SavedSettings;
        TheFileName = MString();
        ClearMediaTypes();
    }
    void Answer(const char16_t* path) {
        Answers[Script.AnswerCount] = MString(path);
        Script.Answers = Answers;
        Script.AnswerCount++;
    }
};

} // namespace

TEST_F(FilePrompts, CancellingAPromptKeepsTheRememberedFolder) {
    for (int32_t mode = 0; mode < 4; mode++)
        EXPECT_TRUE(FilePrompt(mode).IsEmpty()) << mode;
    EXPECT_EQ(Script.Count, 4);
    EXPECT_EQ(U16(Settings.FolderOpenSketch), u"C:\\Sketches");
    EXPECT_EQ(U16(Settings.FolderSaveSketch), u"C:\\Saved");
    EXPECT_EQ(U16(Settings.FolderSelectPicture), u"C:\\Pictures");
    EXPECT_EQ(U16(Settings.FolderSelectExecutable), u"C:\\Tools");
}

TEST_F(FilePrompts, OpenSketchAsksForEpsAndTrackFiles) {
    Answer(u"D:\\work\\rides\\coaster.qo");
    MString chosen = FilePrompt(PromptOpenSketch);
    const WFilePromptRequest& asked = Script.Last;
    EXPECT_EQ(std::u16string(asked.Title), u"Open sketch");
    EXPECT_FALSE(asked.Save);
    const char16_t filter[] = u"EPS Files (*.EPS)\0*.EPS;*.QO\0";
    EXPECT_EQ(Filter(asked), std::u16string(filter, sizeof filter / sizeof filter[0]));
    EXPECT_EQ(U16(asked.InitialFolder), u"C:\\Sketches");
    EXPECT_TRUE(asked.DefaultExtension.IsEmpty());
    EXPECT_TRUE(asked.InitialFile.IsEmpty());
    // An open prompt leaves the name as chosen.
    EXPECT_EQ(U16(chosen), u"D:\\work\\rides\\coaster.qo");
    EXPECT_EQ(U16(Settings.FolderOpenSketch), u"D:\\work\\rides");
    EXPECT_EQ(U16(Settings.FolderSaveSketch), u"C:\\Saved");
}

// The prompt opens in the remembered folder and proposes the sketch's file
// name alone: a whole path there would take the prompt back to the sketch's
// own folder, and the remembered one would never be used.
TEST_F(FilePrompts, SaveSketchStartsWithTheSketchsNameAndForcesEps) {
    TheFileName = MString(u"D:\\rides\\ring.eps");
    Answer(u"E:\\out\\logo.txt");
    MString chosen = FilePrompt(PromptSaveSketch);
    const WFilePromptRequest& asked = Script.Last;
    EXPECT_EQ(std::u16string(asked.Title), u"Save sketch");
    EXPECT_TRUE(asked.Save);
    const char16_t filter[] = u"EPS Files (*.EPS)\0*.EPS\0";
    EXPECT_EQ(Filter(asked), std::u16string(filter, sizeof filter / sizeof filter[0]));
    EXPECT_EQ(U16(asked.DefaultExtension), u"EPS");
    EXPECT_EQ(U16(asked.InitialFile), u"ring.eps");
    EXPECT_EQ(U16(asked.InitialFolder), u"C:\\Saved");
    EXPECT_EQ(U16(chosen), u"E:\\out\\logo.EPS");
    EXPECT_EQ(U16(Settings.FolderSaveSketch), u"E:\\out");
}

TEST_F(FilePrompts, TheSavePromptAddsTheExtensionToANameWithoutADot) {
    Answer(u"E:\\v1.2\\logo");
    Answer(u"/home/artist/work.v2/ride");
    Answer(u"E:\\out\\logo.EPS");
    EXPECT_EQ(U16(FilePrompt(PromptSaveSketch)), u"E:\\v1.2\\logo.EPS");
    EXPECT_EQ(U16(FilePrompt(PromptSaveSketch)), u"/home/artist/work.v2/ride.EPS");
    EXPECT_EQ(U16(Settings.FolderSaveSketch), u"/home/artist/work.v2");
    EXPECT_EQ(U16(FilePrompt(PromptSaveSketch)), u"E:\\out\\logo.EPS");
}

TEST_F(FilePrompts, AnInitialNameLongerThanTheBufferIsDropped) {
    std::u16string fits(FilePromptBufferLength, u'a');
    std::u16string tooLong(FilePromptBufferLength + 1, u'a');
    TheFileName = MString(fits.c_str());
    FilePrompt(PromptSaveSketch);
    EXPECT_EQ(U16(Script.Last.InitialFile), fits);
    TheFileName = MString(tooLong.c_str());
    FilePrompt(PromptSaveSketch);
    EXPECT_TRUE(Script.Last.InitialFile.IsEmpty());
}

// The length check is made on the name, so a long folder does not drop it.
TEST_F(FilePrompts, TheLengthCheckAppliesToTheNameWithoutItsFolder) {
    std::u16string folder = u"C:\\" + std::u16string(200, u'f') + u"/" + std::u16string(100, u'g');
    std::u16string fits(FilePromptBufferLength, u'a');
    TheFileName = MString((folder + u"\\" + fits).c_str());
    FilePrompt(PromptSaveSketch);
    EXPECT_EQ(U16(Script.Last.InitialFile), fits);
    TheFileName = MString((folder + u"/" + fits + u"b").c_str());
    FilePrompt(PromptSaveSketch);
    EXPECT_TRUE(Script.Last.InitialFile.IsEmpty());
    TheFileName = MString(u"C:ring.eps");
    FilePrompt(PromptSaveSketch);
    EXPECT_EQ(U16(Script.Last.InitialFile), u"ring.eps");
}

TEST(FilePromptPaths, NameOfFileTakesWhatFollowsTheLastSeparator) {
    EXPECT_EQ(U16(NameOfFile(MString(u"C:\\a\\b.eps"))), u"b.eps");
    EXPECT_EQ(U16(NameOfFile(MString(u"/home/x/y.eps"))), u"y.eps");
    EXPECT_EQ(U16(NameOfFile(MString(u"plain.eps"))), u"plain.eps");
    EXPECT_EQ(U16(NameOfFile(MString(u"C:\\folder\\"))), u"");
    EXPECT_EQ(U16(NameOfFile(MString())), u"");
}

TEST_F(FilePrompts, SelectPictureUsesThePictureFilter) {
    ASSERT_TRUE(BuildMediaTypesWith(MString()));
    Answer(u"C:\\Photos\\cat.png");
    EXPECT_EQ(U16(FilePrompt(PromptSelectPicture)), u"C:\\Photos\\cat.png");
    const WFilePromptRequest& asked = Script.Last;
    EXPECT_EQ(std::u16string(asked.Title), u"Select picture");
    EXPECT_FALSE(asked.Save);
    const MMediaSlot& pictures = MMediaTypes[MediaPicture];
    EXPECT_EQ(Filter(asked), std::u16string(pictures.Filter.Data, size_t(pictures.Filter.Count)));
    EXPECT_EQ(U16(asked.InitialFolder), u"C:\\Pictures");
    EXPECT_EQ(U16(Settings.FolderSelectPicture), u"C:\\Photos");
    EXPECT_EQ(U16(Settings.FolderOpenSketch), u"C:\\Sketches");
}

TEST_F(FilePrompts, SelectExecutableAsksForExeFiles) {
    Answer(u"C:\\Program Files\\potrace\\potrace.exe");
    EXPECT_EQ(U16(FilePrompt(PromptSelectExecutable)), u"C:\\Program Files\\potrace\\potrace.exe");
    const WFilePromptRequest& asked = Script.Last;
    EXPECT_EQ(std::u16string(asked.Title), u"Select executable");
    const char16_t filter[] = u"Executables (*.EXE)\0*.EXE\0";
    EXPECT_EQ(Filter(asked), std::u16string(filter, sizeof filter / sizeof filter[0]));
    EXPECT_EQ(U16(asked.InitialFolder), u"C:\\Tools");
    EXPECT_EQ(U16(Settings.FolderSelectExecutable), u"C:\\Program Files\\potrace");
}

TEST_F(FilePrompts, ForceExtensionReplacesOnlyTheFilePartsExtension) {
    EXPECT_EQ(U16(ForceExtension(MString(u"a\\b.c\\name.eps"), MString(u"EPS"))),
              u"a\\b.c\\name.EPS");
    EXPECT_EQ(U16(ForceExtension(MString(u"a\\b.c\\name"), MString(u"EPS"))), u"a\\b.c\\name.EPS");
    EXPECT_EQ(U16(ForceExtension(MString(u"name.tar.gz"), MString(u".EPS"))), u"name.tar.EPS");
}

TEST_F(FilePrompts, FolderOfFileCutsAtTheLastSeparator) {
    EXPECT_EQ(U16(FolderOfFile(MString(u"C:\\a/b\\c.eps"))), u"C:\\a/b");
    EXPECT_EQ(U16(FolderOfFile(MString(u"/c.eps"))), u"/");
    EXPECT_TRUE(FolderOfFile(MString(u"c.eps")).IsEmpty());
}

TEST_F(FilePrompts, AnUnknownModeAsksNothing) {
    EXPECT_TRUE(FilePrompt(4).IsEmpty());
    EXPECT_TRUE(FilePrompt(-1).IsEmpty());
    EXPECT_EQ(Script.Count, 0);
}
