// The EPS writer: header and trailer, every form of the path lines, the text
// of a whole sketch, and SaveEps with its clean-up, refusals and file.

#include "FileTrouble.h"
#include "ScratchFolder.h"
#include "SketchTestSupport.h"

#include "eps/EpsWriter.h"
#include "eps/LoadSketch.h"
#include "foundation/Platform.h"
#include "shell/WSettings.h"

#include <filesystem>
#include <fstream>
#include <initializer_list>
#include <iterator>
#include <string>

namespace {

namespace fs = std::filesystem;

// Lines joined, each ending in CR LF.
std::string Lines(std::initializer_list<const char*> lines) {
    std::string text;
    for (const char* line : lines)
        text += std::string(line) + "\r\n";
    return text;
}

// The text as bytes; every character the writer produces is 7-bit.
std::string Ascii(const MString& text) {
    std::string out;
    for (int32_t i = 0; i < text.Length; i++) {
        EXPECT_LT(int(text.Text[i]), 128) << "at " << i;
        out += char(text.Text[i]);
    }
    return out;
}

fs::path Folder() {
    return scratch::Kept("eps-writer");
}

// A path in the test folder with no file behind it.
fs::path FreshPath(const char* name) {
    fs::path path = Folder() / name;
    std::error_code ignored;
    fs::remove(path, ignored);
    return path;
}

MString PathText(const fs::path& path) {
    return MString(path.u16string().c_str());
}

std::string ReadBytes(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

void WriteBytes(const fs::path& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << bytes;
}

WSketchPoint Rec(uint8_t kind, MPoint3 position, MPoint3 in, MPoint3 out, MPoint3 roll) {
    WSketchPoint r;
    r.Position = position;
    r.HandleIn = in;
    r.HandleOut = out;
    r.Roll = roll;
    r.Kind = kind;
    return r;
}

// A point whose handles lie one unit behind and ahead along x.
WSketchPoint AlongX(uint8_t kind, float x, float y, MPoint3 roll) {
    return Rec(kind, P3(x, y, 0), P3(x - 1, y, 0), P3(x + 1, y, 0), roll);
}

// The example of the dialect: a move at the origin, a curve straight up to
// z 30 with both handles on its chord, a line to x 10, all rolled (0, 1, 0).
std::vector<WSketchPoint> Example() {
    return {Rec(KindMove, P3(0, 0, 0), P3(0, 0, 0), P3(0, 0, 10), P3(0, 1, 0)),
            Rec(KindCurve, P3(0, 0, 30), P3(0, 0, 20), P3(0, 0, 40), P3(0, 1, 0)),
            Rec(KindLine, P3(10, 0, 30), P3(7, 0, 30), P3(13, 0, 30), P3(0, 1, 0))};
}

// A flat sketch at depth 5: a curve that bulges down to y -3.75, a line, and
// a second curve of one line.
std::vector<WSketchPoint> FlatAtFive() {
    return {Rec(KindMove, P3(0, 0, 5), P3(-10, 5, 5), P3(10, -5, 5), P3(0, 0, 1)),
            Rec(KindCurve, P3(30, 0, 5), P3(20, -5, 5), P3(40, 5, 5), P3(0, 0, 1)),
            Rec(KindLine, P3(30, 20.5f, 5), P3(30, 20, 5), P3(30, 21, 5), P3(0, 0, 1)),
            Record(50, 50, 5, KindMove), Record(60, 50, 5, KindLine)};
}

// A sketch in space with decimals: a curve whose controls keep it inside the
// box of its ends, then a line.
std::vector<WSketchPoint> InSpace() {
    return {
        Rec(KindMove, P3(1.5f, 2, 3), P3(1.5f, 2, 1.75f), P3(1.5f, 2, 4.25f), P3(0.5f, -0.25f, 1)),
        Rec(KindCurve, P3(4, 5, 6), P3(4, 5, 5), P3(4, 5, 7), P3(0, 1, 0)),
        Rec(KindLine, P3(-2.5f, 5, 6), P3(-2, 5, 6), P3(-3, 5, 6), P3(-1, 0, 0.125f))};
}

// Two closed flat outlines: a square and a triangle.
std::vector<WSketchPoint> SquareAndTriangle() {
    return {Record(0, 0, 0, KindMove),  Record(40, 0, 0, KindLine),  Record(40, 40, 0, KindLine),
            Record(0, 40, 0, KindLine), Record(0, 0, 0, KindLine),   Record(60, 0, 0, KindMove),
            Record(80, 0, 0, KindLine), Record(70, 30, 0, KindLine), Record(60, 0, 0, KindLine)};
}

// A scripted message box that records what was shown and answers OK.
struct Script {
    MString Texts[4];
    MessageIcon Icons[4] = {};
    MessageScript Data;
    Script() {
        Data.Texts = Texts;
        Data.Icons = Icons;
        Data.Capacity = 4;
        TheMessageScript = &Data;
    }
    ~Script() { TheMessageScript = nullptr; }
};

class EpsWriter : public ::testing::Test {
  protected:
    WSettings Settings;
    WSettings* SavedSettings = nullptr;

    void SetUp() override {
        if (TheSketch) DestroySketch();
        ASSERT_NE(CreateSketch(), nullptr);
        SavedSettings = TheSettings;
        TheSettings = &Settings;
        Settings.SaveSolid = false;
        Settings.SaveRoll = false;
        Settings.Centre = true;
        Settings.Scale = true;
        Settings.MaxLinesPerCurve = 100;
        for (bool& ticked : Settings.Template)
            ticked = false;
    }
    void TearDown() override {
        TheSettings = SavedSettings;
        TheMessageScript = nullptr;
        DestroySketch();
    }
    WSketch& Load(const std::vector<WSketchPoint>& records) {
        Fill(*TheSketch, records);
        return *TheSketch;
    }
};

// ---- Header and trailer

TEST_F(EpsWriter, HeaderHoldsTheCommentsAndTheWidenedBox) {
    const float box[6] = {0, 10, 0, 0, 0, 30};
    EXPECT_EQ(
        Ascii(MakeEpsHeader(true, false, 100, box)),
        Lines({"%!PS-Adobe-3.0 EPSF-3.0", "%%Creator: Brambleworks Quillmere",
               "%%Cinderlane Centre Y", "%%Cinderlane Scale N", "%%Cinderlane MaxLinesPerCurve 100",
               "%%LanguageLevel: 2", "%%BoundingBox: -10 -10 20 10", "%%Pages: 1", "%%EndComments",
               "%Page: 1 1", "gsave", "1 1 scale"}));
}

TEST_F(EpsWriter, HeaderBoxKeepsDecimalsAndIgnoresDepth) {
    const float box[6] = {-3.25f, 7.5f, 0.125f, 2, -1000, 1000};
    EXPECT_EQ(
        Ascii(MakeEpsHeader(false, true, 7, box)),
        Lines({"%!PS-Adobe-3.0 EPSF-3.0", "%%Creator: Brambleworks Quillmere",
               "%%Cinderlane Centre N", "%%Cinderlane Scale Y", "%%Cinderlane MaxLinesPerCurve 7",
               "%%LanguageLevel: 2", "%%BoundingBox: -13.25 -9.875 17.5 12", "%%Pages: 1",
               "%%EndComments", "%Page: 1 1", "gsave", "1 1 scale"}));
}

TEST_F(EpsWriter, MaxLinesPerCurveOfZeroOrLessLeavesTheCommentOut) {
    const float box[6] = {0, 10, 0, 10, 0, 0};
    for (int32_t value : {0, -5}) {
        std::string header = Ascii(MakeEpsHeader(true, true, value, box));
        EXPECT_EQ(header, Lines({"%!PS-Adobe-3.0 EPSF-3.0", "%%Creator: Brambleworks Quillmere",
                                 "%%Cinderlane Centre Y", "%%Cinderlane Scale Y",
                                 "%%LanguageLevel: 2", "%%BoundingBox: -10 -10 20 20", "%%Pages: 1",
                                 "%%EndComments", "%Page: 1 1", "gsave", "1 1 scale"}))
            << value;
    }
}

TEST_F(EpsWriter, TrailerEndsTheFile) {
    EXPECT_EQ(Ascii(MakeEpsTrailer()), Lines({"grestore", "%%EOF"}));
}

// ---- The text of a sketch

TEST_F(EpsWriter, ExampleOfTheDialectByteForByte) {
    WSketch& s = Load(Example());
    Settings.Centre = true;
    Settings.Scale = false;
    Settings.MaxLinesPerCurve = 100;
    Settings.SaveSolid = false;
    Settings.SaveRoll = true;
    EXPECT_EQ(
        Ascii(MakeSketchEps(s, Settings)),
        Lines({"%!PS-Adobe-3.0 EPSF-3.0", "%%Creator: Brambleworks Quillmere",
               "%%Cinderlane Centre Y", "%%Cinderlane Scale N", "%%Cinderlane MaxLinesPerCurve 100",
               "%%LanguageLevel: 2", "%%BoundingBox: -10 -10 20 10", "%%Pages: 1", "%%EndComments",
               "%Page: 1 1", "gsave", "1 1 scale", "0 0 0 0 1 0 moveto",
               "0 0 10 0 0 20 0 0 30 0 1 0 curveto", "10 0 30 0 1 0 lineto", "0 setgray",
               "2 setlinewidth stroke", "grestore", "%%EOF"}));
    // Building the text changes nothing.
    EXPECT_EQ(s.PointCount, 3);
    EXPECT_EQ(s.Points[1].Kind, KindCurve);
}

TEST_F(EpsWriter, FlatSketchAtDepthFiveIsWrittenIn2DStroked) {
    WSketch& s = Load(FlatAtFive());
    ASSERT_TRUE(s.IsFlat());
    Settings.Centre = false;
    Settings.Scale = true;
    Settings.MaxLinesPerCurve = 0;
    EXPECT_EQ(Ascii(MakeSketchEps(s, Settings)), Lines({"%!PS-Adobe-3.0 EPSF-3.0",
                                                        "%%Creator: Brambleworks Quillmere",
                                                        "%%Cinderlane Centre N",
                                                        "%%Cinderlane Scale Y",
                                                        "%%LanguageLevel: 2",
                                                        "%%BoundingBox: -10 -13.75 70 60",
                                                        "%%Pages: 1",
                                                        "%%EndComments",
                                                        "%Page: 1 1",
                                                        "gsave",
                                                        "1 1 scale",
                                                        "0 0 moveto",
                                                        "10 -5 20 -5 30 0 curveto",
                                                        "30 20.5 lineto",
                                                        "0 setgray",
                                                        "2 setlinewidth stroke",
                                                        "50 50 moveto",
                                                        "60 50 lineto",
                                                        "0 setgray",
                                                        "2 setlinewidth stroke",
                                                        "grestore",
                                                        "%%EOF"}));
}

TEST_F(EpsWriter, FlatSketchAtDepthFiveComesBackAtDepthZero) {
    std::vector<WSketchPoint> records = FlatAtFive();
    Load(records);
    Settings.Centre = false;
    Settings.Scale = false;
    fs::path target = FreshPath("depth-five.eps");
    MString path = PathText(target);
    ASSERT_TRUE(SaveEps(path));
    EXPECT_EQ(ReadBytes(target).find(" 5 "), std::string::npos);

    Script script;
    ASSERT_TRUE(LoadSketch(path));
    EXPECT_EQ(script.Data.Count, 0);
    WSketch& s = *TheSketch;
    ASSERT_EQ(s.PointCount, int32_t(records.size()));
    for (int32_t i = 0; i < s.PointCount; i++) {
        const MPoint3& p = s.Points[i].Position;
        EXPECT_EQ(p.x, records[size_t(i)].Position.x) << i;
        EXPECT_EQ(p.y, records[size_t(i)].Position.y) << i;
        EXPECT_EQ(p.z, 0.0f) << i;
        EXPECT_EQ(s.Points[i].Kind, records[size_t(i)].Kind) << i;
    }
}

TEST_F(EpsWriter, FlatSketchIn2DSolid) {
    WSketch& s = Load(FlatAtFive());
    Settings.SaveSolid = true;
    EXPECT_EQ(Ascii(MakeSketchEps(s, Settings)), Lines({"%!PS-Adobe-3.0 EPSF-3.0",
                                                        "%%Creator: Brambleworks Quillmere",
                                                        "%%Cinderlane Centre Y",
                                                        "%%Cinderlane Scale Y",
                                                        "%%Cinderlane MaxLinesPerCurve 100",
                                                        "%%LanguageLevel: 2",
                                                        "%%BoundingBox: -10 -13.75 70 60",
                                                        "%%Pages: 1",
                                                        "%%EndComments",
                                                        "%Page: 1 1",
                                                        "gsave",
                                                        "1 1 scale",
                                                        "0 0 moveto",
                                                        "10 -5 20 -5 30 0 curveto",
                                                        "30 20.5 lineto",
                                                        "closepath",
                                                        "fill",
                                                        "50 50 moveto",
                                                        "60 50 lineto",
                                                        "closepath",
                                                        "fill",
                                                        "grestore",
                                                        "%%EOF"}));
}

TEST_F(EpsWriter, SketchInSpaceIn3DWithoutRoll) {
    WSketch& s = Load(InSpace());
    Settings.MaxLinesPerCurve = 250;
    EXPECT_EQ(
        Ascii(MakeSketchEps(s, Settings)),
        Lines({"%!PS-Adobe-3.0 EPSF-3.0", "%%Creator: Brambleworks Quillmere",
               "%%Cinderlane Centre Y", "%%Cinderlane Scale Y", "%%Cinderlane MaxLinesPerCurve 250",
               "%%LanguageLevel: 2", "%%BoundingBox: -12.5 -8 14 15", "%%Pages: 1", "%%EndComments",
               "%Page: 1 1", "gsave", "1 1 scale", "1.5 2 3 moveto",
               "1.5 2 4.25 4 5 5 4 5 6 curveto", "-2.5 5 6 lineto", "0 setgray",
               "2 setlinewidth stroke", "grestore", "%%EOF"}));
}

TEST_F(EpsWriter, SketchInSpaceIn3DWithRoll) {
    WSketch& s = Load(InSpace());
    Settings.SaveRoll = true;
    EXPECT_EQ(
        Ascii(MakeSketchEps(s, Settings)),
        Lines({"%!PS-Adobe-3.0 EPSF-3.0", "%%Creator: Brambleworks Quillmere",
               "%%Cinderlane Centre Y", "%%Cinderlane Scale Y", "%%Cinderlane MaxLinesPerCurve 100",
               "%%LanguageLevel: 2", "%%BoundingBox: -12.5 -8 14 15", "%%Pages: 1", "%%EndComments",
               "%Page: 1 1", "gsave", "1 1 scale", "1.5 2 3 0.5 -0.25 1 moveto",
               "1.5 2 4.25 4 5 5 4 5 6 0 1 0 curveto", "-2.5 5 6 -1 0 0.125 lineto", "0 setgray",
               "2 setlinewidth stroke", "grestore", "%%EOF"}));
}

TEST_F(EpsWriter, ARollOffTheDepthAxisForces3DWithoutWritingIt) {
    WSketch& s = Load({Record(0, 0, 0, KindMove), Record(10, 0, 0, KindLine)});
    s.Points[1].Roll = P3(0.1f, 0, 1);
    ASSERT_FALSE(s.IsFlat());
    EXPECT_EQ(
        Ascii(MakeSketchEps(s, Settings)),
        Lines({"%!PS-Adobe-3.0 EPSF-3.0", "%%Creator: Brambleworks Quillmere",
               "%%Cinderlane Centre Y", "%%Cinderlane Scale Y", "%%Cinderlane MaxLinesPerCurve 100",
               "%%LanguageLevel: 2", "%%BoundingBox: -10 -10 20 10", "%%Pages: 1", "%%EndComments",
               "%Page: 1 1", "gsave", "1 1 scale", "0 0 0 moveto", "10 0 0 lineto", "0 setgray",
               "2 setlinewidth stroke", "grestore", "%%EOF"}));
}

TEST_F(EpsWriter, ACoordinateTooSmallForSixDecimalsIsWrittenAsZero) {
    WSketch& s =
        Load({Record(0.0000001f, -0.0000001f, 0, KindMove), Record(10, 0.0000004f, 0, KindLine)});
    std::string text = Ascii(MakeSketchEps(s, Settings));
    EXPECT_NE(text.find("\r\n1 1 scale\r\n0 0 moveto\r\n10 0 lineto\r\n"), std::string::npos)
        << text;
    EXPECT_NE(text.find("\r\n%%BoundingBox: -10 -10 20 10\r\n"), std::string::npos) << text;
}

// ---- SaveEps

TEST_F(EpsWriter, SaveEpsCleansTheExampleUpAndWritesIt) {
    Load(Example());
    TheSketch->Modified = 1;
    Settings.Centre = true;
    Settings.Scale = false;
    Settings.SaveRoll = true;
    fs::path target = FreshPath("example.eps");
    FreshPath("example.txt");
    MString path = PathText(Folder() / "example.txt");
    Script script;
    ASSERT_TRUE(SaveEps(path));
    EXPECT_EQ(script.Data.Count, 0);
    EXPECT_EQ(Text(path), Text(PathText(target)));
    EXPECT_FALSE(fs::exists(Folder() / "example.txt"));
    // The curve with its handles on the chord has become a line; the rolls
    // come from the frames and stay (0, 1, 0).
    EXPECT_EQ(
        ReadBytes(target),
        Lines({"%!PS-Adobe-3.0 EPSF-3.0", "%%Creator: Brambleworks Quillmere",
               "%%Cinderlane Centre Y", "%%Cinderlane Scale N", "%%Cinderlane MaxLinesPerCurve 100",
               "%%LanguageLevel: 2", "%%BoundingBox: -10 -10 20 10", "%%Pages: 1", "%%EndComments",
               "%Page: 1 1", "gsave", "1 1 scale", "0 0 0 0 1 0 moveto", "0 0 30 0 1 0 lineto",
               "10 0 30 0 1 0 lineto", "0 setgray", "2 setlinewidth stroke", "grestore", "%%EOF"}));
    EXPECT_EQ(TheSketch->Modified, 0);
    EXPECT_EQ(TheSketch->Points[1].Kind, KindLine);
}

TEST_F(EpsWriter, SaveEpsReplacesAnEarlierFile) {
    Load(SquareAndTriangle());
    fs::path target = FreshPath("replaced.eps");
    WriteBytes(target, std::string(5000, '#'));
    MString path = PathText(target);
    ASSERT_TRUE(SaveEps(path));
    std::string bytes = ReadBytes(target);
    EXPECT_EQ(bytes.rfind("%!PS-Adobe-3.0 EPSF-3.0\r\n", 0), 0u);
    EXPECT_EQ(bytes.find('#'), std::string::npos);
    EXPECT_LT(bytes.size(), 5000u);
}

TEST_F(EpsWriter, ClosedFlatSketchSavedSolid) {
    Load(SquareAndTriangle());
    Settings.SaveSolid = true;
    fs::path target = FreshPath("solid.eps");
    MString path = PathText(target);
    Script script;
    ASSERT_TRUE(SaveEps(path));
    EXPECT_EQ(script.Data.Count, 0);
    EXPECT_EQ(ReadBytes(target), Lines({"%!PS-Adobe-3.0 EPSF-3.0",
                                        "%%Creator: Brambleworks Quillmere",
                                        "%%Cinderlane Centre Y",
                                        "%%Cinderlane Scale Y",
                                        "%%Cinderlane MaxLinesPerCurve 100",
                                        "%%LanguageLevel: 2",
                                        "%%BoundingBox: -10 -10 90 50",
                                        "%%Pages: 1",
                                        "%%EndComments",
                                        "%Page: 1 1",
                                        "gsave",
                                        "1 1 scale",
                                        "0 0 moveto",
                                        "40 0 lineto",
                                        "40 40 lineto",
                                        "0 40 lineto",
                                        "0 0 lineto",
                                        "closepath",
                                        "fill",
                                        "60 0 moveto",
                                        "80 0 lineto",
                                        "70 30 lineto",
                                        "60 0 lineto",
                                        "closepath",
                                        "fill",
                                        "grestore",
                                        "%%EOF"}));
}

TEST_F(EpsWriter, OneClosedCurveSavedSolidIsFilledOnce) {
    std::vector<WSketchPoint> triangle = SquareAndTriangle();
    triangle.erase(triangle.begin(), triangle.begin() + 5);
    Load(triangle);
    Settings.SaveSolid = true;
    fs::path target = FreshPath("triangle.eps");
    MString path = PathText(target);
    ASSERT_TRUE(SaveEps(path));
    std::string bytes = ReadBytes(target);
    EXPECT_NE(bytes.find("60 0 lineto\r\nclosepath\r\nfill\r\ngrestore\r\n%%EOF\r\n"),
              std::string::npos)
        << bytes;
    EXPECT_EQ(bytes.find("closepath"), bytes.rfind("closepath"));
}

TEST_F(EpsWriter, FlatSketchWithSaveRollIsSavedIn3DWithRoll) {
    Load({AlongX(KindMove, 60, 0, P3(0, 0, 1)), AlongX(KindLine, 80, 0, P3(0, 0, 1)),
          AlongX(KindLine, 70, 30, P3(0, 0, 1)), AlongX(KindLine, 60, 0, P3(0, 0, 1))});
    Settings.SaveSolid = true;
    Settings.SaveRoll = true;
    fs::path target = FreshPath("rolled.eps");
    MString path = PathText(target);
    ASSERT_TRUE(SaveEps(path));
    EXPECT_EQ(ReadBytes(target), Lines({"%!PS-Adobe-3.0 EPSF-3.0",
                                        "%%Creator: Brambleworks Quillmere",
                                        "%%Cinderlane Centre Y",
                                        "%%Cinderlane Scale Y",
                                        "%%Cinderlane MaxLinesPerCurve 100",
                                        "%%LanguageLevel: 2",
                                        "%%BoundingBox: 50 -10 90 40",
                                        "%%Pages: 1",
                                        "%%EndComments",
                                        "%Page: 1 1",
                                        "gsave",
                                        "1 1 scale",
                                        "60 0 0 0 0 1 moveto",
                                        "80 0 0 0 0 1 lineto",
                                        "70 30 0 0 0 1 lineto",
                                        "60 0 0 0 0 1 lineto",
                                        "closepath",
                                        "fill",
                                        "grestore",
                                        "%%EOF"}));
}

TEST_F(EpsWriter, EmptySketchOrOnePointIsNotWritten) {
    for (int32_t count : {0, 1}) {
        std::vector<WSketchPoint> records;
        if (count == 1) records.push_back(Record(3, 3, 0, KindMove));
        Load(records);
        TheSketch->Modified = 1;
        fs::path target = FreshPath("nothing.eps");
        MString path = PathText(Folder() / "nothing.txt");
        Script script;
        EXPECT_FALSE(SaveEps(path)) << count;
        EXPECT_EQ(script.Data.Count, 0) << count;
        EXPECT_FALSE(fs::exists(target)) << count;
        EXPECT_EQ(Text(path), Text(PathText(Folder() / "nothing.txt"))) << count;
        EXPECT_EQ(TheSketch->PointCount, 0) << count;
        EXPECT_EQ(TheSketch->Modified, 1) << count;
    }
}

TEST_F(EpsWriter, SolidRefusedForASketchThatIsNotFlat) {
    std::vector<WSketchPoint> records = SquareAndTriangle();
    records[2].Position.z = 1;
    Load(records);
    TheSketch->Modified = 1;
    Settings.SaveSolid = true;
    Settings.Template[3] = true;
    fs::path target = FreshPath("refused.eps");
    WriteBytes(target, "earlier");
    MString path = PathText(Folder() / "refused.txt");
    Script script;
    EXPECT_FALSE(SaveEps(path));
    ASSERT_EQ(script.Data.Count, 1);
    EXPECT_EQ(Text(script.Texts[0]), u"Your sketch can't be saved as solid because it's not 2D");
    EXPECT_EQ(script.Icons[0], IconError);
    EXPECT_EQ(ReadBytes(target), "earlier");
    EXPECT_EQ(Text(path), Text(PathText(target))); // the caller's path has the new extension
    EXPECT_EQ(TheSketch->Modified, 1);
    EXPECT_TRUE(Settings.Centre); // the template choice is not applied
    EXPECT_TRUE(Settings.Scale);
}

TEST_F(EpsWriter, SolidRefusedForOpenCurves) {
    std::vector<WSketchPoint> records = SquareAndTriangle();
    records[8].Position = P3(65, 5, 0); // the triangle no longer closes
    Load(records);
    Settings.SaveSolid = true;
    fs::path target = FreshPath("open.eps");
    WriteBytes(target, "earlier");
    MString path = PathText(target);
    Script script;
    EXPECT_FALSE(SaveEps(path));
    ASSERT_EQ(script.Data.Count, 1);
    EXPECT_EQ(Text(script.Texts[0]),
              u"Your sketch can't be saved as solid because not all curves are closed");
    EXPECT_EQ(script.Icons[0], IconError);
    EXPECT_EQ(ReadBytes(target), "earlier");
}

TEST_F(EpsWriter, SolidRefusalForDepthComesBeforeTheOneForOpenCurves) {
    Load({Record(0, 0, 0, KindMove), Record(10, 0, 3, KindLine), Record(10, 10, 0, KindLine)});
    Settings.SaveSolid = true;
    MString path = PathText(FreshPath("both.eps"));
    Script script;
    EXPECT_FALSE(SaveEps(path));
    ASSERT_EQ(script.Data.Count, 1);
    EXPECT_EQ(Text(script.Texts[0]), u"Your sketch can't be saved as solid because it's not 2D");
}

TEST_F(EpsWriter, OpenCurvesAreFineWhenStroked) {
    Load({Record(0, 0, 0, KindMove), Record(10, 0, 0, KindLine), Record(10, 10, 0, KindLine)});
    MString path = PathText(FreshPath("stroked.eps"));
    Script script;
    EXPECT_TRUE(SaveEps(path));
    EXPECT_EQ(script.Data.Count, 0);
}

TEST_F(EpsWriter, RideTemplatesClearCentreAndScaleForGood) {
    for (int32_t index = 0; index < TemplateCount; index++) {
        Load(SquareAndTriangle());
        for (bool& ticked : Settings.Template)
            ticked = false;
        Settings.Template[index] = true;
        Settings.Centre = true;
        Settings.Scale = true;
        fs::path target = FreshPath("template.eps");
        MString path = PathText(target);
        Script script; // whatever the shows have to say is not looked at here
        ASSERT_TRUE(SaveEps(path)) << index;
        bool ride = index >= 2 && index <= 7;
        EXPECT_EQ(Settings.Centre, !ride) << index;
        EXPECT_EQ(Settings.Scale, !ride) << index;
        std::string bytes = ReadBytes(target);
        EXPECT_NE(bytes.find(ride ? "\r\n%%Cinderlane Centre N\r\n%%Cinderlane Scale N\r\n"
                                  : "\r\n%%Cinderlane Centre Y\r\n%%Cinderlane Scale Y\r\n"),
                  std::string::npos)
            << index;
    }
}

TEST_F(EpsWriter, AFileThatCannotBeOpenedIsAFailureWithoutMessage) {
    Load(SquareAndTriangle());
    TheSketch->Modified = 1;
    MString path = PathText(Folder() / "no such folder" / "sketch.eps");
    Script script;
    EXPECT_FALSE(SaveEps(path));
    EXPECT_EQ(script.Data.Count, 0);
    EXPECT_EQ(TheSketch->Modified, 1);
}

// ---- Saves that fail: the earlier file stays as it was, nothing is shown,
// and the sketch stays marked changed.

// A zigzag of the given number of points, none of them on a line with its
// neighbours, so the clean-up keeps them all; about 30 bytes a point.
std::vector<WSketchPoint> LongZigzag(int count) {
    std::vector<WSketchPoint> records;
    for (int i = 0; i < count; i++)
        records.push_back(Record(float(i) * 1.234567f,
                                 float(i % 2) * 10.654321f + float(i) * 0.001f, 0,
                                 i == 0 ? KindMove : KindLine));
    return records;
}

// A save that must fail: no message, the sketch still changed.
void ExpectSaveFails(const fs::path& target) {
    Script script;
    TheSketch->Modified = 1;
    MString path = PathText(target);
    EXPECT_FALSE(SaveEps(path));
    EXPECT_EQ(script.Data.Count, 0);
    EXPECT_EQ(TheSketch->Modified, 1);
}

// What a failed save must leave on the disk: the earlier bytes, no side
// file. (A file held with no sharing cannot be read by the test either, so
// this is looked at once it is free again.)
void ExpectEarlierFile(const fs::path& target, const std::string& earlier) {
    EXPECT_EQ(ReadBytes(target), earlier);
    EXPECT_FALSE(fs::exists(target.string() + ".saving"));
}

void ExpectFailedSave(const fs::path& target, const std::string& earlier) {
    ExpectSaveFails(target);
    ExpectEarlierFile(target, earlier);
}

TEST_F(EpsWriter, AFileOpenElsewhereIsNotReplaced) {
    Load(SquareAndTriangle());
    fs::path target = FreshPath("held.eps");
    WriteBytes(target, "the earlier file");
    {
        trouble::ForeignLock lock(target);
        ASSERT_TRUE(lock.Held());
        ExpectSaveFails(target);
    }
    ExpectEarlierFile(target, "the earlier file");
}

TEST_F(EpsWriter, AFolderThatCannotBeWrittenKeepsTheEarlierFile) {
    trouble::SmallDisk disk(Folder() / "read-only disk", 256);
    if (!disk.Mounted()) GTEST_SKIP() << "mounting a small disk is not permitted here";
    fs::path target = disk.Folder / "sketch.eps";
    WriteBytes(target, "the earlier file");
    ASSERT_TRUE(disk.MakeReadOnly());
    Load(SquareAndTriangle());
    ExpectFailedSave(target, "the earlier file");
}

TEST_F(EpsWriter, AFullDiskKeepsTheEarlierFile) {
    // The earlier file is a real save of a small sketch; the disk is then
    // filled, and the long sketch's text does not fit. Writing straight into
    // the file would have lost the earlier one and reported success.
    trouble::SmallDisk disk(Folder() / "full disk", 64);
    if (!disk.Mounted()) GTEST_SKIP() << "mounting a small disk is not permitted here";
    fs::path target = disk.Folder / "sketch.eps";
    Load(SquareAndTriangle());
    MString first = PathText(target);
    ASSERT_TRUE(SaveEps(first));
    std::string earlier = ReadBytes(target);
    ASSERT_TRUE(disk.Fill());
    Load(LongZigzag(3000));
    ExpectFailedSave(target, earlier);
    ASSERT_EQ(TheSketch->PointCount, 3000); // the clean-up kept every point
}

} // namespace
