// The main window's title: program, file part or "Untitled", the changed
// mark, the point count and the mode.

#include "shell/Shell.h"
#include "foundation/MString.h"
#include "shell/Window.h"
#include "sketch/WSketch.h"

#include <gtest/gtest.h>

#include <string>

namespace {

std::u16string U16(const MString& text) {
    return std::u16string(text.Chars());
}

class WindowTitle : public ::testing::Test {
  protected:
    void SetUp() override {
        if (TheSketch) DestroySketch();
        ASSERT_NE(CreateSketch(), nullptr);
        TheMode = ModeDraw;
        TheFileName = MString();
    }
    void TearDown() override {
        TheSketch->PointCount = 0;
        DestroySketch();
        TheMode = ModeDraw;
        TheFileName = MString();
    }
    // A title with the given file name and everything else as for a new sketch.
    std::u16string TitleFor(const char16_t* fileName) {
        TheFileName = MString(fileName);
        return U16(TitleText());
    }
};

} // namespace

TEST_F(WindowTitle, NewProgram) {
    EXPECT_EQ(U16(TitleText()), u"Quillmere - Untitled (0 points) [DRAW FREEHAND]");
    RefreshTitle();
    EXPECT_EQ(U16(MainWindowText()), u"Quillmere - Untitled (0 points) [DRAW FREEHAND]");
}

TEST_F(WindowTitle, ChangedSketchOfTwelvePointsInTheEditMode) {
    TheFileName = MString(u"C:\\Users\\artist\\Documents\\ring.eps");
    TheSketch->Points.SetCount(12);
    TheSketch->PointCount = 12;
    TheSketch->Modified = 1;
    TheMode = ModeEditSketch;
    RefreshTitle();
    EXPECT_EQ(U16(MainWindowText()), u"Quillmere - ring.eps * (12 points) [EDIT SKETCH]");
    TheSketch->Modified = 0;
    RefreshTitle();
    EXPECT_EQ(U16(MainWindowText()), u"Quillmere - ring.eps (12 points) [EDIT SKETCH]");
}

TEST_F(WindowTitle, FilePartBeginsBehindTheLastSlashBackslashOrColon) {
    EXPECT_EQ(TitleFor(u"/home/artist/ring.eps"),
              u"Quillmere - ring.eps (0 points) [DRAW FREEHAND]");
    EXPECT_EQ(TitleFor(u"C:\\Sketches\\ring.eps"),
              u"Quillmere - ring.eps (0 points) [DRAW FREEHAND]");
    EXPECT_EQ(TitleFor(u"C:ring.eps"), u"Quillmere - ring.eps (0 points) [DRAW FREEHAND]");
    EXPECT_EQ(TitleFor(u"C:\\a/b\\ride.qo"), u"Quillmere - ride.qo (0 points) [DRAW FREEHAND]");
    EXPECT_EQ(TitleFor(u"D:/x\\y:z.eps"), u"Quillmere - z.eps (0 points) [DRAW FREEHAND]");
    EXPECT_EQ(TitleFor(u"ring.eps"), u"Quillmere - ring.eps (0 points) [DRAW FREEHAND]");
    // Nothing behind the last separator: no file part to show.
    EXPECT_EQ(TitleFor(u"C:\\Sketches\\"), u"Quillmere - Untitled (0 points) [DRAW FREEHAND]");
}

TEST_F(WindowTitle, ModesInCapitals) {
    TheMode = ModeEditRoll;
    EXPECT_EQ(U16(TitleText()), u"Quillmere - Untitled (0 points) [EDIT ROLL]");
    TheMode = ModeEditSketch;
    EXPECT_EQ(U16(TitleText()), u"Quillmere - Untitled (0 points) [EDIT SKETCH]");
    TheMode = static_cast<WMode>(3);
    EXPECT_EQ(U16(TitleText()), u"Quillmere - Untitled (0 points) [UNKNOWN MODE]");
}
