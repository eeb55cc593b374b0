// The program's folders: the program folder, the user's folders below company
// and product, creating folders, and file sizes.

#include "foundation/Folders.h"

#include "ScratchFolder.h"
#include "foundation/Platform.h"

#include <gtest/gtest.h>

using scratch::U16;

namespace {

class Folders : public ::testing::Test {
  protected:
    scratch::fs::path Folder;
    void SetUp() override {
        Folder = scratch::Fresh(::testing::UnitTest::GetInstance()->current_test_info()->name());
    }
    void TearDown() override {
        SetFolderOverride(FolderProgram, MString());
        SetFolderOverride(FolderAppData, MString());
        SetFolderOverride(FolderDocuments, MString());
        scratch::Remove(Folder);
    }
    MString In(const char16_t* relative) {
        return NormalisePath(scratch::Text(Folder) + PathSeparator + MString(relative));
    }
};

// Every separator of the build's kind turned into a forward slash.
MString WithForwardSlashes(MString path) {
    for (int32_t i = 0; i < path.Length; i++)
        if (path.Text[i] == u'\\') path.Text[i] = u'/';
    return path;
}

MString WithBackslashes(MString path) {
    for (int32_t i = 0; i < path.Length; i++)
        if (path.Text[i] == u'/') path.Text[i] = u'\\';
    return path;
}

} // namespace

TEST_F(Folders, ProgramFolderIsTheFolderOfTheRunningProgram) {
    MString folder = ProgramFolder();
    ASSERT_FALSE(folder.IsEmpty());
    EXPECT_NE(folder.Text[folder.Length - 1], u'/');
    EXPECT_NE(folder.Text[folder.Length - 1], u'\\');
    EXPECT_TRUE(FolderExists(folder));
    // The module path is that folder, a separator and the program's file.
    MString module = PlatformModulePath();
    ASSERT_GT(module.Length, folder.Length + 1);
    EXPECT_EQ(U16(module).substr(0, size_t(folder.Length)), U16(folder));
    char16_t separator = module.Text[folder.Length];
    EXPECT_TRUE(separator == u'/' || separator == u'\\' || separator == u':');
    std::u16string file = U16(module).substr(size_t(folder.Length) + 1);
    EXPECT_EQ(file.find_first_of(u"/\\:"), std::u16string::npos);
}

TEST_F(Folders, ProgramFolderOverrideStandsForTheSystemsAnswer) {
    SetFolderOverride(FolderProgram, MString(u"Q:\\Tools\\Quillmere"));
    EXPECT_EQ(U16(ProgramFolder()), u"Q:\\Tools\\Quillmere");
    SetFolderOverride(FolderProgram, MString());
    EXPECT_NE(U16(ProgramFolder()), u"Q:\\Tools\\Quillmere");
}

TEST_F(Folders, NormalisePathUsesTheBuildsSeparatorAndDropsATrailingOne) {
    MString expected =
        MString(u"a") + PathSeparator + MString(u"b") + PathSeparator + MString(u"c");
    EXPECT_EQ(U16(NormalisePath(MString(u"a/b\\c/"))), U16(expected));
    EXPECT_EQ(U16(NormalisePath(MString(u"a\\b/c\\"))), U16(expected));
    EXPECT_EQ(U16(JoinPath(MString(u"a"), MString(u"b"))),
              U16(MString(u"a") + PathSeparator + MString(u"b")));
}

TEST_F(Folders, FolderExistsTellsFoldersFromFilesAndMissingPaths) {
    scratch::WriteBytes(Folder / "file.txt", "x");
    EXPECT_TRUE(FolderExists(scratch::Text(Folder)));
    EXPECT_TRUE(FolderExists(scratch::Text(Folder) + PathSeparator)); // a trailing separator goes
    EXPECT_FALSE(FolderExists(In(u"file.txt")));
    EXPECT_FALSE(FolderExists(In(u"missing")));
    EXPECT_FALSE(FolderExists(MString()));
    EXPECT_TRUE(PathExists(In(u"file.txt")));
    EXPECT_TRUE(PathExists(scratch::Text(Folder)));
    EXPECT_FALSE(PathExists(In(u"missing")));
}

TEST_F(Folders, CreateFoldersMakesEveryMissingParentAndSaysSo) {
    MString deep = In(u"one/two/three");
    StartDebugCapture();
    EXPECT_TRUE(CreateFolders(deep));
    MString said = StopDebugCapture();
    EXPECT_TRUE(FolderExists(deep));
    MString one = In(u"one"), two = In(u"one/two");
    MString expected = MString(u"New folder created: \"") + one + "\"\n" +
                       MString(u"New folder created: \"") + two + "\"\n" +
                       MString(u"New folder created: \"") + deep + "\"\n";
    EXPECT_EQ(U16(said), U16(expected));
}

TEST_F(Folders, CreateFoldersOnAnExistingFolderCreatesNothingAndSaysNothing) {
    MString existing = scratch::Text(Folder);
    StartDebugCapture();
    EXPECT_TRUE(CreateFolders(existing));
    EXPECT_TRUE(CreateFolders(existing + PathSeparator));
    EXPECT_EQ(U16(StopDebugCapture()), u"");
    EXPECT_TRUE(FolderExists(existing));
}

TEST_F(Folders, APathGivenWithForwardSlashesWorks) {
    MString forward = WithForwardSlashes(In(u"fwd/sub"));
    ASSERT_NE(forward.Find(MString(u"/")), -1);
    EXPECT_TRUE(CreateFolders(forward));
    EXPECT_TRUE(FolderExists(forward));
    EXPECT_TRUE(FolderExists(In(u"fwd/sub")));
    scratch::WriteBytes(Folder / "fwd" / "sub" / "f.bin", "12345");
    EXPECT_EQ(FileSizeOf(WithForwardSlashes(In(u"fwd/sub/f.bin"))), 5);
}

TEST_F(Folders, APathGivenWithBackslashesWorksInEitherBuild) {
    MString back = WithBackslashes(In(u"bwd/sub"));
    EXPECT_TRUE(CreateFolders(back));
    EXPECT_TRUE(FolderExists(In(u"bwd/sub")));
    EXPECT_TRUE(FolderExists(back));
}

TEST_F(Folders, CreateFoldersFailsOnAnEmptyPathAndBelowAFile) {
    EXPECT_FALSE(CreateFolders(MString()));
    scratch::WriteBytes(Folder / "blocker", "x");
    StartDebugCapture();
    EXPECT_FALSE(CreateFolders(In(u"blocker/inner")));
    EXPECT_EQ(U16(StopDebugCapture()), u"");
    EXPECT_FALSE(FolderExists(In(u"blocker/inner")));
}

TEST_F(Folders, FileSizeOfGivesTheSizeOrZero) {
    std::string bytes(70001, 'q');
    scratch::WriteBytes(Folder / "sized.bin", bytes);
    scratch::WriteBytes(Folder / "empty.bin", "");
    EXPECT_EQ(FileSizeOf(In(u"sized.bin")), 70001);
    EXPECT_EQ(FileSizeOf(In(u"empty.bin")), 0);
    EXPECT_EQ(FileSizeOf(In(u"missing.bin")), 0);
    EXPECT_EQ(FileSizeOf(scratch::Text(Folder)), 0); // a folder is no file to open
}

TEST_F(Folders, AppDataFolderIsCompanyAndProductBelowTheUsersFolderAndIsMade) {
    SetFolderOverride(FolderAppData, In(u"roaming"));
    ASSERT_TRUE(CreateFolders(In(u"roaming")));
    MString folder = AppDataFolder(MString(u"Brambleworks"), MString(u"Quillmere"));
    EXPECT_EQ(U16(folder), U16(In(u"roaming/Brambleworks/Quillmere")));
    EXPECT_TRUE(FolderExists(folder));
}

TEST_F(Folders, DocumentsFolderIsCompanyAndProductBelowTheUsersDocuments) {
    SetFolderOverride(FolderDocuments, In(u"documents"));
    MString folder = DocumentsFolder(MString(u"Brambleworks"), MString(u"Quillmere"));
    EXPECT_EQ(U16(folder), U16(In(u"documents/Brambleworks/Quillmere")));
    EXPECT_TRUE(FolderExists(folder));
}

TEST_F(Folders, UserFoldersAreEmptyWhenTheyCannotBeMade) {
    scratch::WriteBytes(Folder / "notafolder", "x");
    SetFolderOverride(FolderAppData, In(u"notafolder"));
    SetFolderOverride(FolderDocuments, In(u"notafolder"));
    EXPECT_TRUE(AppDataFolder(MString(u"Brambleworks"), MString(u"Quillmere")).IsEmpty());
    EXPECT_TRUE(DocumentsFolder(MString(u"Brambleworks"), MString(u"Quillmere")).IsEmpty());
}

TEST_F(Folders, TheSystemsUserFoldersAreKnown) {
    EXPECT_FALSE(PlatformUserFolder(FolderAppData).IsEmpty());
    EXPECT_FALSE(PlatformUserFolder(FolderDocuments).IsEmpty());
}

TEST(FoldersTest, DeleteFileAtRemovesAFileOnly) {
    scratch::fs::path folder = scratch::Fresh("delete");
    scratch::WriteBytes(folder / "a.txt", "x");
    EXPECT_TRUE(DeleteFileAt(scratch::Text(folder / "a.txt")));
    EXPECT_FALSE(scratch::fs::exists(folder / "a.txt"));
    EXPECT_FALSE(DeleteFileAt(scratch::Text(folder / "a.txt")));
    EXPECT_FALSE(DeleteFileAt(MString()));
    EXPECT_FALSE(DeleteFileAt(scratch::Text(folder)));
    EXPECT_TRUE(scratch::fs::exists(folder));
    scratch::Remove(folder);
}
