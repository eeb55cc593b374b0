// The Spaghetti project: the EPS file with its tag lines and curves, the
// reading back of the parameters from memory and from files, and the Open
// and Save as... buttons with their prompts, searches and messages.

#include "SpaghettiTestSupport.h"

#include "foundation/Folders.h"

#include <filesystem>

using namespace spaghettitest;

namespace {

// The folder separator of the paths the program makes.
#if defined(_WIN32)
const char* const Separator = "\\";
#else
const char* const Separator = "/";
#endif

class SpaghettiProject : public SpaghettiFixture {
  protected:
    // A mask of 100 by 50 pixels (5 units a pixel) and three hand-made
    // curves: a string of two curves in front and behind, and a flat one.
    void HandMadeCurves() {
        MakeMask(Tool, 100, 50,
                 [](int32_t x, int32_t y) { return x >= 10 && x < 30 && y >= 10 && y < 20; });
        Tool.PathBitmap = Text("C:\\pics\\logo.png");
        const float points[3][4][3] = {
            {{10, 20, 6}, {10, 20, 7.5f}, {30, 40, 7.5f}, {30, 40, 6}},
            {{30, 40, -6}, {30, 40, -7}, {50, 25, -7}, {50, 25, -6}},
            {{0, 0, 0}, {0, 0, 2}, {100, 50, 2}, {100, 50, 0}},
        };
        const float tangents[3][2] = {{1, 0}, {0, -1}, {0.5f, 0.25f}};
        const bool first[3] = {true, false, true};
        ASSERT_TRUE(Tool.Curves.SetCount(3));
        for (int32_t i = 0; i < 3; i++) {
            WStringCurve& c = Tool.Curves[i];
            c.First = first[i];
            ASSERT_TRUE(c.Points.SetCount(4));
            for (int32_t k = 0; k < 4; k++)
                c.Points[k] = MPoint3{points[i][k][0], points[i][k][1], points[i][k][2]};
            c.Tangent = MPoint3{tangents[i][0], tangents[i][1], 0};
        }
        Tool.CurveCount = 3;
    }
    std::string Head() const {
        return "%!PS-Adobe-3.0 EPSF-3.0\r\n"
               "%%Creator: Brambleworks Spaghetti Generator\r\n"
               "%%LanguageLevel: 2\r\n"
               "%%BoundingBox: -100 -100 100 100\r\n"
               "%%Cinderlane Scale N\r\n"
               "%%Cinderlane Centre N\r\n";
    }
    // The project of a picture file with a tag line per key.
    std::string TagLines(const std::string& picture, int32_t count) const {
        const char* lines[] = {
            "PathBitmap \"",        "Strings 7",   "CurvesPerString 30", "Radius 2.5",
            "MarginMin 3",          "MarginMax 4", "CurveLengthMin 0.1", "CurveLengthMax 0.7",
            "ShapeJumps 12",        "Depth 8",     "BezierMin 0.4",      "BezierMax 0.9",
            "CollisionDetection Y", "Shape 1",     "Texture 6",          "Particle 1",
            "Animation 3",
        };
        std::string text = Head();
        for (int32_t i = 0; i < count && i < 17; i++) {
            text += std::string("%%QuillmereSpaghettiTool ") + lines[i];
            if (i == 0) text += picture + "\"";
            text += "\r\n";
        }
        return text + "%%EOF\r\n";
    }
};

} // namespace

TEST_F(SpaghettiProject, FileOfAHandMadeCurveListIsByteExact) {
    HandMadeCurves();
    std::string path = Path("project.eps");
    ASSERT_TRUE(Tool.WriteEps(Text(path)));
    std::string expected = Head() + "%%QuillmereSpaghettiTool PathBitmap \"C:\\pics\\logo.png\"\r\n"
                                    "%%QuillmereSpaghettiTool Strings 20\r\n"
                                    "%%QuillmereSpaghettiTool CurvesPerString 20\r\n"
                                    "%%QuillmereSpaghettiTool Radius 1\r\n"
                                    "%%QuillmereSpaghettiTool MarginMin 1\r\n"
                                    "%%QuillmereSpaghettiTool MarginMax 2\r\n"
                                    "%%QuillmereSpaghettiTool CurveLengthMin 0.05\r\n"
                                    "%%QuillmereSpaghettiTool CurveLengthMax 0.5\r\n"
                                    "%%QuillmereSpaghettiTool ShapeJumps 0\r\n"
                                    "%%QuillmereSpaghettiTool Depth 6\r\n"
                                    "%%QuillmereSpaghettiTool BezierMin 0.2\r\n"
                                    "%%QuillmereSpaghettiTool BezierMax 0.3\r\n"
                                    "%%QuillmereSpaghettiTool CollisionDetection N\r\n"
                                    "%%QuillmereSpaghettiTool Shape 2\r\n"
                                    "%%QuillmereSpaghettiTool Texture 3\r\n"
                                    "%%QuillmereSpaghettiTool Particle 0\r\n"
                                    "%%QuillmereSpaghettiTool Animation 0\r\n"
                                    "%%Pages: 1\r\n"
                                    "%%EndComments\r\n"
                                    "%Page: 1 1\r\n"
                                    "gsave\r\n"
                                    "1 1 scale\r\n"
                                    "-200 25 6 1 0 0 moveto\r\n"
                                    "-200 25 7.5 -100 -75 7.5 -100 -75 6 1 0 0 curveto\r\n"
                                    "-100 -75 -6 1 0 0 lineto\r\n"
                                    "-100 -75 -7 0 0 -7 0 0 -6 0 1 0 curveto\r\n"
                                    "0 0 6 0 1 0 lineto\r\n"
                                    "-250 125 0 0.5 -0.25 0 moveto\r\n"
                                    "-250 125 2 250 -125 2 250 -125 0 0.5 -0.25 0 curveto\r\n"
                                    "0 setgray\r\n"
                                    "2 setlinewidth stroke\r\n"
                                    "grestore\r\n"
                                    "%%EOF\r\n";
    EXPECT_EQ(ReadFileBytes(path), expected);
    EXPECT_EQ(Bytes(Tool.ProjectText()), expected);
}

TEST_F(SpaghettiProject, AFileThatCannotBeWrittenFails) {
    HandMadeCurves();
    EXPECT_FALSE(Tool.WriteEps(Text(Path("missing-folder/project.eps"))));
}

TEST_F(SpaghettiProject, ParametersReadBackFromMemory) {
    HandMadeCurves();
    Tool.Strings = 55;
    Tool.Radius = 3.25f;
    Tool.CollisionDetection = true;
    Tool.Animation = 4;
    MString text = Tool.ProjectText();
    std::string bytes = Bytes(text);
    WSpaghetti other;
    EXPECT_EQ(ReadProjectMemory(bytes.data(), int32_t(bytes.size()), other), 17);
    EXPECT_EQ(Bytes(other.PathBitmap), "C:\\pics\\logo.png");
    EXPECT_EQ(other.Strings, 55);
    EXPECT_EQ(other.Radius, 3.25f);
    EXPECT_TRUE(other.CollisionDetection);
    EXPECT_EQ(other.Animation, 4);
    EXPECT_EQ(other.CurveLengthMin, 0.05f);
    EXPECT_EQ(other.CurveCount, 0); // the curves are not read
}

TEST_F(SpaghettiProject, ValuesAreReadAsTheyStandWithoutRangeChecks) {
    std::string text = "%%QuillmereSpaghettiTool Strings 500\n"
                       "%%QuillmereSpaghettiTool Radius nan\n"
                       "%%QuillmereSpaghettiTool Depth\n"
                       "%%QuillmereSpaghettiTool MarginMin \"\"\n"
                       "%%QuillmereSpaghettiTool CollisionDetection y\n"
                       "%%QuillmereSpaghettiTool BezierMax abc\n"
                       "%%QuillmereSpaghettiTool shape 1\n"
                       "%%QuillmereSpaghettiTool\n"
                       "  %%QuillmereSpaghettiTool Texture 9\n"
                       "%%QuillmereSpaghettiToolTexture 8\n";
    WSpaghetti other;
    other.CollisionDetection = true;
    EXPECT_EQ(ReadProjectMemory(text.data(), int32_t(text.size()), other), 9);
    EXPECT_EQ(other.Strings, 500);
    EXPECT_EQ(other.Radius, 0.0f);
    EXPECT_EQ(other.Depth, 0.0f);
    EXPECT_EQ(other.MarginMin, 0.0f);
    EXPECT_FALSE(other.CollisionDetection);
    EXPECT_EQ(other.BezierMax, 0.0f);
    EXPECT_EQ(other.Shape, 2); // keys are case-sensitive
    EXPECT_EQ(other.Texture, 9);
}

TEST_F(SpaghettiProject, RandomAndTruncatedBytesReadWithoutHarm) {
    HandMadeCurves();
    std::string bytes = Bytes(Tool.ProjectText());
    for (size_t cut = 0; cut < bytes.size(); cut += 7) {
        WSpaghetti other;
        int32_t tags = ReadProjectMemory(bytes.data(), int32_t(cut), other);
        EXPECT_GE(tags, 0);
        EXPECT_LE(tags, 17);
    }
    uint32_t state = 1;
    std::string noise(4096, '\0');
    for (char& c : noise) {
        state = state * 1103515245u + 12345u;
        c = char(state >> 24);
    }
    WSpaghetti other;
    EXPECT_EQ(ReadProjectMemory(noise.data(), int32_t(noise.size()), other), 0);
    EXPECT_EQ(ReadProjectMemory(nullptr, 0, other), 0);
}

TEST_F(SpaghettiProject, APathWithAQuoteReadsBackByTheTokenRules) {
    HandMadeCurves();
    Tool.PathBitmap = Text("C:\\pics\\say \"hi\".png");
    std::string bytes = Bytes(Tool.ProjectText());
    EXPECT_NE(bytes.find("PathBitmap \"C:\\pics\\say \"hi\".png\"\r\n"), std::string::npos);
    WSpaghetti other;
    EXPECT_EQ(ReadProjectMemory(bytes.data(), int32_t(bytes.size()), other), 17);
    // The quoted token ends at the next quote.
    EXPECT_EQ(Bytes(other.PathBitmap), "C:\\pics\\say ");
}

// ---- Open

TEST_F(SpaghettiProject, CancelledOpenChangesNothing) {
    TheFileName = Text("before.eps");
    Answer({});
    Tool.OpenProject();
    EXPECT_EQ(Prompts.Count, 1);
    EXPECT_EQ(Prompts.Last.Mode, int32_t(PromptOpenSketch));
    EXPECT_EQ(Bytes(TheFileName), "before.eps");
    EXPECT_EQ(Messages.Count, 0);
}

TEST_F(SpaghettiProject, SixteenTagLinesAreRefusedAfterTakingTheirValues) {
    std::string path = Path("sixteen.eps");
    WriteFileBytes(path, TagLines(Path("missing.tga"), 16));
    Answer({path});
    Tool.OpenProject();
    EXPECT_EQ(Bytes(TheFileName), path);
    ASSERT_EQ(Messages.Count, 1);
    EXPECT_EQ(Bytes(MessageTexts[0]), "This EPS file has not been generated by the spaghetti tool");
    EXPECT_EQ(MessageIcons[0], IconError);
    EXPECT_EQ(Tool.Strings, 7);
    EXPECT_EQ(Tool.Particle, 1);
    EXPECT_EQ(Tool.Animation, 0); // the seventeenth line was missing
}

TEST_F(SpaghettiProject, SeventeenTagLinesPassEvenWithAnUnknownKey) {
    std::string text = TagLines(Path("missing.tga"), 16);
    text.insert(text.find("%%EOF"), "%%QuillmereSpaghettiTool Colour 5\r\n");
    std::string path = Path("seventeen.eps");
    WriteFileBytes(path, text);
    Tool.Animation = 2;
    Answer({path});
    Tool.OpenProject();
    EXPECT_EQ(Tool.Animation, 2); // missing from the file: kept
    EXPECT_EQ(Tool.Strings, 7);
    EXPECT_EQ(Tool.Radius, 2.5f);
    EXPECT_TRUE(Tool.CollisionDetection);
    // Nothing refuses the file; the picture is not found anywhere.
    ASSERT_EQ(Messages.Count, 1);
    EXPECT_EQ(Bytes(MessageTexts[0]), "Could not find:\n\n\"missing.tga\"");
    EXPECT_EQ(MessageIcons[0], IconError);
    EXPECT_EQ(Tool.Picture, nullptr);
}

TEST_F(SpaghettiProject, AMovedProjectFindsItsPictureBesideIt) {
    std::string moved = Path("moved");
    std::filesystem::create_directories(moved);
    WriteTga(moved + "/logo.tga", 20, 20, [](int32_t x, int32_t) { return x < 10 ? 255 : 0; });
    std::string path = moved + "/project.eps";
    WriteFileBytes(path, TagLines(Path("original/logo.tga"), 17));
    Answer({path});
    Tool.OpenProject();
    EXPECT_EQ(Bytes(Tool.PathBitmap), moved + Separator + "logo.tga");
    EXPECT_EQ(Messages.Count, 0);
}

TEST_F(SpaghettiProject, APictureFoundWhereItWasKeepsItsPath) {
    std::string picture = Path("logo.tga");
    WriteTga(picture, 20, 20, [](int32_t x, int32_t) { return x < 10 ? 255 : 0; });
    std::string path = Path("elsewhere.eps");
    WriteFileBytes(path, TagLines(picture, 17));
    Answer({path});
    Tool.OpenProject();
    EXPECT_EQ(Bytes(Tool.PathBitmap), picture);
    EXPECT_EQ(Messages.Count, 0);
}

TEST_F(SpaghettiProject, APictureIsLookedForAmongTheProgramsPictures) {
    std::string program = Path("program");
    std::filesystem::create_directories(program + "/Media/Pictures");
    WriteTga(program + "/Media/Pictures/logo.tga", 20, 20, [](int32_t, int32_t) { return 255; });
    SetFolderOverride(FolderProgram, Text(program));
    std::string path = Path("project.eps");
    WriteFileBytes(path, TagLines("D:\\gone\\logo.tga", 17));
    Answer({path});
    Tool.OpenProject();
    SetFolderOverride(FolderProgram, MString());
    EXPECT_EQ(Bytes(Tool.PathBitmap),
              program + Separator + "Media" + Separator + "Pictures" + Separator + "logo.tga");
    EXPECT_EQ(Messages.Count, 1); // only the warning about transparency
    EXPECT_EQ(Bytes(MessageTexts[0]), "Warning: this picture has no transparent pixels");
}

TEST_F(SpaghettiProject, OpenWritesTheFieldsOfAnOpenDialog) {
    static int32_t writes = 0;
    writes = 0;
    TheSpaghettiHooks.WriteFields = [](const WSpaghetti& s) {
        writes++;
        EXPECT_EQ(s.Strings, 7);
    };
    std::string path = Path("project.eps");
    WriteFileBytes(path, TagLines(Path("none.tga"), 17));
    Answer({path});
    int dialog = 0;
    Tool.Dialog = &dialog;
    Tool.OpenProject();
    Tool.Dialog = nullptr;
    EXPECT_EQ(writes, 1);
}

// ---- Save as...

TEST_F(SpaghettiProject, SaveWantsAPictureAndCurves) {
    Tool.SaveProject();
    ASSERT_EQ(Messages.Count, 1);
    EXPECT_EQ(Bytes(MessageTexts[0]), "Click on the canvas to load a picture");
    EXPECT_EQ(MessageIcons[0], IconError);
    MakeRectanglePicture(Tool, 40, 30, 10, 10, 30, 20);
    Tool.SaveProject();
    ASSERT_EQ(Messages.Count, 2);
    EXPECT_EQ(Bytes(MessageTexts[1]), "Click on the 'GENERATE' button to generate strings");
    EXPECT_EQ(MessageIcons[1], IconError);
    EXPECT_EQ(Prompts.Count, 0);
}

TEST_F(SpaghettiProject, CancelledSaveWritesNothing) {
    HandMadeCurves();
    SampleRectangle(Tool, 10, 10, 30, 20);
    Answer({});
    Tool.SaveProject();
    EXPECT_EQ(Prompts.Count, 1);
    EXPECT_EQ(Prompts.Last.Mode, int32_t(PromptSaveSketch));
    EXPECT_EQ(Messages.Count, 0);
    EXPECT_TRUE(TheFileName.IsEmpty());
}

TEST_F(SpaghettiProject, NoToTheReplaceQuestionKeepsTheOldShow) {
    HandMadeCurves();
    SampleRectangle(Tool, 10, 10, 30, 20);
    std::string show = Path("strings.CND");
    WriteFileBytes(show, "old show");
    Answer({Path("strings.eps")});
    MessageAnswers[0] = AnswerNo;
    Messages.AnswerCount = 1;
    Tool.SaveProject();
    EXPECT_EQ(Bytes(TheFileName), Path("strings.EPS"));
    std::string eps = Path("strings.EPS");
    EXPECT_EQ(ReadFileBytes(eps), Bytes(Tool.ProjectText()));
    EXPECT_EQ(ReadFileBytes(show), "old show");
    ASSERT_EQ(Messages.Count, 2);
    EXPECT_EQ(Bytes(MessageTexts[0]), "strings.CND already exists.\nDo you want to replace it?");
    EXPECT_EQ(MessageIcons[0], IconWarning);
    EXPECT_EQ(MessageButtonList[0], ButtonsYesNo);
    EXPECT_EQ(Bytes(MessageTexts[1]), "The following file has been generated:\n\n" + eps);
    EXPECT_EQ(MessageIcons[1], IconInformation);
}

TEST_F(SpaghettiProject, OnlyTheLastDotOfTheChosenNameIsReplaced) {
    HandMadeCurves();
    SampleRectangle(Tool, 10, 10, 30, 20);
    WriteFileBytes(Path("a.b.CND"), "old");
    Answer({Path("a.b.c")});
    MessageAnswers[0] = AnswerNo;
    Messages.AnswerCount = 1;
    Tool.SaveProject();
    EXPECT_TRUE(std::filesystem::exists(Path("a.b.EPS")));
    EXPECT_EQ(Bytes(MessageTexts[0]), "a.b.CND already exists.\nDo you want to replace it?");

    WriteFileBytes(Path("plain.CND"), "old");
    Answer({Path("plain")});
    Messages.Count = 0;
    Tool.SaveProject();
    EXPECT_TRUE(std::filesystem::exists(Path("plain.EPS")));
    EXPECT_EQ(Bytes(MessageTexts[0]), "plain.CND already exists.\nDo you want to replace it?");
}

TEST_F(SpaghettiProject, SaveWritesTheProjectAndItsShowSideBySide) {
    HandMadeCurves();
    SampleRectangle(Tool, 10, 10, 30, 20);
    Tool.Texture = 1;
    Tool.Radius = 5;
    Answer({Path("strings.eps")});
    Tool.SaveProject();
    std::string eps = Path("strings.EPS"), show = Path("strings.CND");
    EXPECT_EQ(ReadFileBytes(eps), Bytes(Tool.ProjectText()));
    std::string text = ReadFileBytes(show);
    EXPECT_EQ(text.rfind("Cinderlane Show 4 7\r\n", 0), 0u);
    EXPECT_NE(text.find("FNA\t\"" + eps + "\""), std::string::npos);
    EXPECT_NE(text.find("MPA\t\"C:\\pics\\logo.png\""), std::string::npos);
    EXPECT_NE(text.find("PFS\t5 5\r\n"), std::string::npos);
    EXPECT_NE(text.find("TES\t-1\t0.5\r\n"), std::string::npos);
    ASSERT_EQ(Messages.Count, 1);
    EXPECT_EQ(Bytes(MessageTexts[0]),
              "The following 2 files have been generated:\n\n" + eps + "\n" + show);
    EXPECT_EQ(MessageIcons[0], IconInformation);
    EXPECT_EQ(Bytes(TheFileName), eps);
}

TEST_F(SpaghettiProject, YesToTheReplaceQuestionWritesTheNewShow) {
    HandMadeCurves();
    SampleRectangle(Tool, 10, 10, 30, 20);
    std::string show = Path("strings.CND");
    WriteFileBytes(show, "old show");
    Answer({Path("strings.eps")});
    MessageAnswers[0] = AnswerYes;
    Messages.AnswerCount = 1;
    Tool.SaveProject();
    EXPECT_EQ(ReadFileBytes(show).rfind("Cinderlane Show 4 7\r\n", 0), 0u);
    ASSERT_EQ(Messages.Count, 2);
    EXPECT_EQ(Bytes(MessageTexts[1]).rfind("The following 2 files have been generated:", 0), 0u);
}

TEST_F(SpaghettiProject, AnUnknownShapeWritesTheProjectButNoShowAndSaysNothing) {
    HandMadeCurves();
    SampleRectangle(Tool, 10, 10, 30, 20);
    Tool.Shape = 7;
    Answer({Path("strings.eps")});
    Tool.SaveProject();
    EXPECT_TRUE(std::filesystem::exists(Path("strings.EPS")));
    EXPECT_FALSE(std::filesystem::exists(Path("strings.CND")));
    EXPECT_EQ(Messages.Count, 0);
}
