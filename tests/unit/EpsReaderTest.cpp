// The PostScript reader: the line shapes in their order, the word lists and
// their aliases, the matrix step, the duplicate and line tests, the end of
// the file, the cairo rewrite of the bytes, and the system's own files read
// back.

#include "EpsDigestSupport.h"
#include "ScratchFolder.h"
#include "SketchTestSupport.h"

#include "eps/EpsReader.h"
#include "eps/EpsWriter.h"
#include "foundation/MTextFile.h"
#include "foundation/Platform.h"
#include "shell/WSettings.h"

#include <cmath>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

MEpsPath Read(const std::string& text) {
    return ReadEpsMemory(text.data(), int32_t(text.size()));
}

std::string Bytes(const MString& text) {
    std::string out;
    for (int32_t i = 0; i < text.Length; i++)
        out += char(text.Text[i] & 0xFF);
    return out;
}

::testing::AssertionResult Near(const MPoint3& a, const MPoint3& b, float tolerance = 0) {
    if (std::fabs(a.x - b.x) <= tolerance && std::fabs(a.y - b.y) <= tolerance &&
        std::fabs(a.z - b.z) <= tolerance)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "(" << a.x << ", " << a.y << ", " << a.z << ") vs ("
                                         << b.x << ", " << b.y << ", " << b.z << ")";
}

// The exact floats.
::testing::AssertionResult Same(const MPoint3& a, const MPoint3& b) {
    return Near(a, b, 0);
}

std::string Kinds(const MEpsPath& path) {
    std::string kinds;
    for (int32_t i = 0; i < path.Used; i++)
        kinds += char('0' + path.Records[i].Kind);
    return kinds;
}

const MPoint3 Up{0, 0, 1};
const MPoint3 None{0, 0, 0};

fs::path Folder() {
    return scratch::Kept("eps-reader");
}

void WriteBytes(const fs::path& path, const std::string& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << bytes;
}

MString PathText(const fs::path& path) {
    return MString(path.u16string().c_str());
}

// The example file of the system's dialect: 3D with roll, Centre Y, Scale N.
const char* const OwnExample = "%!PS-Adobe-3.0 EPSF-3.0\r\n"
                               "%%Creator: Brambleworks Quillmere\r\n"
                               "%%Cinderlane Centre Y\r\n"
                               "%%Cinderlane Scale N\r\n"
                               "%%Cinderlane MaxLinesPerCurve 100\r\n"
                               "%%LanguageLevel: 2\r\n"
                               "%%BoundingBox: -10 -10 20 10\r\n"
                               "%%Pages: 1\r\n"
                               "%%EndComments\r\n"
                               "%Page: 1 1\r\n"
                               "gsave\r\n"
                               "1 1 scale\r\n"
                               "0 0 0 0 1 0 moveto\r\n"
                               "0 0 10 0 0 20 0 0 30 0 1 0 curveto\r\n"
                               "10 0 30 0 1 0 lineto\r\n"
                               "0 setgray\r\n"
                               "2 setlinewidth stroke\r\n"
                               "grestore\r\n"
                               "%%EOF\r\n";

} // namespace

// ---- The system's own files

TEST(EpsReader, ReadsTheExampleOfTheOwnDialect) {
    MEpsPath path = Read(OwnExample);
    ASSERT_EQ(path.Used, 3);
    EXPECT_EQ(Kinds(path), "254");
    EXPECT_TRUE(Same(path.Records[0].PointA, P3(0, 0, 0)));
    EXPECT_TRUE(Same(path.Records[0].Roll, P3(0, 1, 0)));
    EXPECT_TRUE(Same(path.Records[1].PointA, P3(0, 0, 10)));
    EXPECT_TRUE(Same(path.Records[1].PointB, P3(0, 0, 20)));
    EXPECT_TRUE(Same(path.Records[1].PointC, P3(0, 0, 30)));
    EXPECT_TRUE(Same(path.Records[1].Roll, P3(0, 1, 0)));
    EXPECT_TRUE(Same(path.Records[2].PointA, P3(10, 0, 30)));
    EXPECT_TRUE(Same(path.Records[2].Roll, P3(0, 1, 0)));
    EXPECT_TRUE(path.Centre);
    EXPECT_FALSE(path.Scale);
    EXPECT_EQ(path.MaxLinesPerCurve, 100);
    EXPECT_FALSE(path.Solid);
    EXPECT_TRUE(path.HasRoll);
    EXPECT_TRUE(path.ThreeD);
}

TEST(EpsReader, HeaderAndPaintingLinesOfTheOwnDialectDoNothing) {
    // The same path with and without the lines a PostScript reader needs.
    MEpsPath bare = Read("1 2 moveto\n3 4 lineto\n");
    MEpsPath full = Read("gsave\n1 1 scale\n1 2 moveto\n3 4 lineto\nclosepath\n0 setgray\n"
                         "grestore\n");
    ASSERT_EQ(bare.Used, 2);
    ASSERT_EQ(full.Used, 2);
    EXPECT_EQ(Kinds(full), Kinds(bare));
    for (int32_t i = 0; i < 2; i++)
        EXPECT_TRUE(Same(full.Records[i].PointA, bare.Records[i].PointA)) << i;
    EXPECT_EQ(Kinds(full), "14"); // nothing ended the path
}

// A sketch of every kind with coordinates of up to seven decimals, written by
// the writer in each of its forms and read back.
TEST(EpsReader, FilesOfTheWriterReadBackToSixDecimals) {
    WSketch sketch;
    auto rec = [](uint8_t kind, MPoint3 p, MPoint3 in, MPoint3 out, MPoint3 roll) {
        WSketchPoint r;
        r.Position = p, r.HandleIn = in, r.HandleOut = out, r.Roll = roll, r.Kind = kind;
        return r;
    };
    Fill(sketch,
         {rec(KindMove, P3(1.2345678f, -2.5f, 0.1234567f), P3(0, 0, 0), P3(2.7182818f, -1.1f, 0.5f),
              P3(0.25f, 0.5f, 0.75f)),
          rec(KindCurve, P3(6.1f, 3.3333333f, -1.75f), P3(4.0000004f, 3.1415926f, -1), P3(7, 3, -2),
              P3(0, 1, 0)),
          rec(KindLine, P3(-7.9999999f, 5.5f, 2.25f), P3(0, 0, 0), P3(0, 0, 0), P3(1, 0, 0)),
          rec(KindMove, P3(0.000001f, 0.0000004f, 1), P3(0, 0, 0), P3(0.5f, 0.5f, 1), P3(0, 0, 1)),
          rec(KindCurve, P3(3, 3, 1), P3(2, 2.5f, 1), P3(0, 0, 0), P3(0, 0, 1))});
    struct Form {
        bool Flat, Roll, Solid, Centre, Scale;
        int32_t Max;
    };
    const Form forms[] = {
        {false, false, false, true, true, 100}, {false, true, false, false, true, 0},
        {false, true, true, true, false, 250},  {true, false, false, false, false, -3},
        {true, false, true, true, true, 7},     {true, true, false, false, false, 100}};
    for (const Form& form : forms) {
        SCOPED_TRACE(testing::Message() << "flat " << form.Flat << " roll " << form.Roll
                                        << " solid " << form.Solid << " max " << form.Max);
        WSketch copy;
        Fill(copy, Records(sketch));
        if (form.Flat)
            for (int32_t i = 0; i < copy.PointCount; i++) {
                copy.Points[i].Position.z = copy.Points[i].HandleIn.z = 0;
                copy.Points[i].HandleOut.z = 0;
                copy.Points[i].Roll = P3(0, 0, 1);
            }
        WSettings settings;
        settings.SaveRoll = form.Roll;
        settings.SaveSolid = form.Solid;
        settings.Centre = form.Centre;
        settings.Scale = form.Scale;
        settings.MaxLinesPerCurve = form.Max;
        MEpsPath path = Read(Bytes(MakeSketchEps(copy, settings)));

        ASSERT_EQ(path.Used, 5);
        EXPECT_EQ(Kinds(path), form.Solid ? "35435" : "25425");
        EXPECT_EQ(path.Centre, form.Centre);
        EXPECT_EQ(path.Scale, form.Scale);
        EXPECT_EQ(path.MaxLinesPerCurve, form.Max > 0 ? form.Max : 100);
        EXPECT_EQ(path.Solid, form.Solid);
        EXPECT_EQ(path.HasRoll, form.Roll);
        EXPECT_EQ(path.ThreeD, !form.Flat);
        // Record order: move, curve, line, move, curve.
        const int32_t point[5] = {0, 1, 2, 3, 4};
        for (int32_t i : point) {
            const WSketchPoint& p = copy.Points[i];
            const MEpsRecord& r = path.Records[i];
            const MPoint3& end = p.Kind == KindCurve ? r.PointC : r.PointA;
            EXPECT_TRUE(Near(end, p.Position, 1e-6f)) << i;
            if (p.Kind == KindCurve) {
                EXPECT_TRUE(Near(r.PointA, copy.Points[i - 1].HandleOut, 1e-6f)) << i;
                EXPECT_TRUE(Near(r.PointB, p.HandleIn, 1e-6f)) << i;
            }
            if (form.Roll)
                EXPECT_TRUE(Same(r.Roll, p.Roll)) << i;
            else if (form.Flat)
                EXPECT_TRUE(Same(r.Roll, Up)) << i;
            else
                EXPECT_TRUE(Same(r.Roll, None)) << i;
        }
    }
}

TEST(EpsReader, ThreeDWithoutRollGivesZeroRollsUnlessAllDepthIsZero) {
    MEpsPath deep = Read("0 0 5 moveto\n10 0 5 lineto\n");
    ASSERT_EQ(deep.Used, 2);
    EXPECT_TRUE(deep.ThreeD);
    EXPECT_TRUE(Same(deep.Records[0].Roll, None));
    EXPECT_TRUE(Same(deep.Records[1].Roll, None));

    MEpsPath level = Read("0 0 0 moveto\n10 0 0 lineto\n");
    ASSERT_EQ(level.Used, 2);
    EXPECT_FALSE(level.ThreeD);
    EXPECT_TRUE(Same(level.Records[0].Roll, Up));
    EXPECT_TRUE(Same(level.Records[1].Roll, Up));

    // One roll given keeps every roll as it is.
    MEpsPath mixed = Read("0 0 0 moveto\n10 0 0 1 0 0 lineto\n20 5 0 lineto\n");
    ASSERT_EQ(mixed.Used, 3);
    EXPECT_TRUE(Same(mixed.Records[0].Roll, None));
    EXPECT_TRUE(Same(mixed.Records[1].Roll, P3(1, 0, 0)));
    EXPECT_TRUE(Same(mixed.Records[2].Roll, None));
    EXPECT_TRUE(mixed.HasRoll);
}

TEST(EpsReader, DepthOfAnyControlPointMakesThreeD) {
    MEpsPath path = Read("0 0 0 moveto\n1 0 0 2 0 5 10 0 0 curveto\n");
    ASSERT_EQ(path.Used, 2);
    EXPECT_TRUE(path.ThreeD);
    EXPECT_TRUE(Same(path.Records[1].Roll, None));
}

// ---- The line shapes

TEST(EpsReader, MoveAndLineOnOneLineAreIgnoredOutsideCairo) {
    MEpsPath path = Read("0 0 moveto 10 0 lineto\n");
    EXPECT_EQ(path.Used, 0);
}

TEST(EpsReader, EveryStartWordHasItsMeaning) {
    MEpsPath path = Read("1 1 m\n2 2 M\n3 3 mo\n4 4 moveto\n5 5 L\n6 6 li\n7 7 lineto\n"
                         "1 1 l\n1 1 rlineto\n20 9 21 9 30 12 C\n31 20 32 20 40 22 cv\n"
                         "41 30 42 30 50 32 curveto\n1 9 2 9 10 10 c\n1 9 2 9 10 10 rcurveto\n");
    EXPECT_EQ(Kinds(path), "22214444455555");
    EXPECT_TRUE(Same(path.Records[3].PointA, P3(4, 4, 0)));
    EXPECT_TRUE(Same(path.Records[6].PointA, P3(7, 7, 0)));
    EXPECT_TRUE(Same(path.Records[7].PointA, P3(8, 8, 0))); // relative
    EXPECT_TRUE(Same(path.Records[8].PointA, P3(9, 9, 0)));
    EXPECT_TRUE(Same(path.Records[11].PointC, P3(50, 32, 0)));
    EXPECT_TRUE(Same(path.Records[12].PointA, P3(51, 41, 0)));
    EXPECT_TRUE(Same(path.Records[12].PointC, P3(60, 42, 0)));
    EXPECT_TRUE(Same(path.Records[13].PointC, P3(70, 52, 0)));

    MEpsPath ends = Read("0 0 moveto\n5 5 lineto\nS\n10 0 moveto\n5 6 lineto\ns\n"
                         "20 0 moveto\n5 7 lineto\nstroke\n30 0 moveto\n5 8 lineto\nF\n"
                         "40 0 moveto\n5 9 lineto\nf\n50 0 moveto\n5 10 lineto\nfill\n"
                         "60 0 moveto\n5 11 lineto\n");
    EXPECT_EQ(Kinds(ends), "24242434343414");
}

TEST(EpsReader, WordsAreCaseSensitive) {
    MEpsPath path = Read("1 1 MOVETO\n1 1 Moveto\n1 1 moveto\n2 2 LINETO\n3 3 lineto\n");
    EXPECT_EQ(Kinds(path), "14");
}

TEST(EpsReader, FillAndStrokeCountOnlyAtTheirPlace) {
    // "fill" behind an operand does nothing; a lone fill marks the open path.
    MEpsPath path = Read("0 0 moveto\n10 0 lineto\n1 fill\n");
    EXPECT_EQ(Kinds(path), "14");
    EXPECT_FALSE(path.Solid);

    // Stroke behind one or two operands counts, behind three it does not.
    EXPECT_EQ(Kinds(Read("0 0 moveto\n10 0 lineto\n2 setlinewidth stroke\n")), "24");
    EXPECT_EQ(Kinds(Read("0 0 moveto\n10 0 lineto\n2 stroke\n")), "24");
    EXPECT_EQ(Kinds(Read("0 0 moveto\n10 0 lineto\n1 2 3 stroke\n")), "14");
}

TEST(EpsReader, FillMarksTheNearestOpenMoveAndSetsSolidAlways) {
    MEpsPath path = Read("0 0 moveto\n10 0 lineto\n20 0 moveto\n30 0 lineto\nfill\n");
    EXPECT_EQ(Kinds(path), "2434");
    EXPECT_TRUE(path.Solid);

    // With no open move nothing is marked, and the file still counts as solid.
    MEpsPath stroked = Read("0 0 moveto\n10 0 lineto\nstroke\nfill\n");
    EXPECT_EQ(Kinds(stroked), "24");
    EXPECT_TRUE(stroked.Solid);

    // The search passes lines and curves on its way back.
    MEpsPath back = Read("0 0 moveto\n10 0 lineto\n20 5 lineto\n1 2 3 4 5 6 curveto\nfill\n");
    EXPECT_EQ(Kinds(back), "3445");
}

TEST(EpsReader, ThreeDFormsAndRolls) {
    MEpsPath path = Read("1 2 3 moveto\n4 5 6 lineto\n7 8 9 0 1 0 lineto\n"
                         "1 1 1 2 2 2 9 9 9 curveto\n10 10 10 11 11 11 12 12 15 1 0 0 curveto\n"
                         "1 2 3 0 0 1 moveto\n5 5 5 lineto\n");
    EXPECT_EQ(Kinds(path), "2445514");
    EXPECT_TRUE(Same(path.Records[0].PointA, P3(1, 2, 3)));
    EXPECT_TRUE(Same(path.Records[0].Roll, None));
    EXPECT_TRUE(Same(path.Records[2].PointA, P3(7, 8, 9)));
    EXPECT_TRUE(Same(path.Records[2].Roll, P3(0, 1, 0)));
    EXPECT_TRUE(Same(path.Records[3].PointB, P3(2, 2, 2)));
    EXPECT_TRUE(Same(path.Records[3].Roll, None));
    EXPECT_TRUE(Same(path.Records[4].PointA, P3(10, 10, 10)));
    EXPECT_TRUE(Same(path.Records[4].PointC, P3(12, 12, 15)));
    EXPECT_TRUE(Same(path.Records[4].Roll, P3(1, 0, 0)));
    EXPECT_TRUE(Same(path.Records[5].Roll, P3(0, 0, 1)));
    EXPECT_TRUE(path.HasRoll);
    EXPECT_TRUE(path.ThreeD);
}

TEST(EpsReader, HasRollIsSetByAMoveWithRollAlone) {
    MEpsPath path = Read("1 2 3 0 1 0 moveto\n1 2 0 lineto\n");
    EXPECT_TRUE(path.HasRoll);
    EXPECT_FALSE(Read("1 2 3 moveto\n1 2 0 lineto\n").HasRoll);
}

TEST(EpsReader, NoRelativeFormsWithThreeCoordinates) {
    MEpsPath path = Read("0 0 0 moveto\n1 1 1 rlineto\n1 1 1 2 2 2 3 3 3 rcurveto\n5 5 5 lineto\n");
    EXPECT_EQ(Kinds(path), "14");
}

TEST(EpsReader, RelativeFormsStartFromTheCurrentPoint) {
    MEpsPath path = Read("10 20 moveto\n5 0 rlineto\n1 1 2 2 3 10 rcurveto\n");
    ASSERT_EQ(path.Used, 3);
    EXPECT_TRUE(Same(path.Records[1].PointA, P3(15, 20, 0)));
    EXPECT_TRUE(Same(path.Records[2].PointA, P3(16, 21, 0)));
    EXPECT_TRUE(Same(path.Records[2].PointB, P3(17, 22, 0)));
    EXPECT_TRUE(Same(path.Records[2].PointC, P3(18, 30, 0)));
}

TEST(EpsReader, CurrentMovesEvenWhenALineIsDropped) {
    MEpsPath path = Read("0 0 moveto\n10 0 lineto\n10 0 lineto\n5 5 rlineto\n");
    EXPECT_EQ(Kinds(path), "144");
    EXPECT_TRUE(Same(path.Records[2].PointA, P3(15, 5, 0)));
}

TEST(EpsReader, DuplicateTestComparesWithTheLastEnd) {
    // A line back onto the last line's end (within the zero test) is dropped;
    // a line onto a move's position is kept.
    MEpsPath path = Read("0 0 moveto\n0 0 lineto\n10 0 lineto\n10.00001 0 lineto\n"
                         "10.0001 0 lineto\n");
    EXPECT_EQ(Kinds(path), "1444");
    // Behind a curve the curve's end is compared.
    MEpsPath curve = Read("0 0 moveto\n0 5 10 5 10 0 curveto\n10 0 lineto\n");
    EXPECT_EQ(Kinds(curve), "15");
}

TEST(EpsReader, FlatCurvesBecomeLinesAndZeroChordsStayCurves) {
    MEpsPath flat = Read("0 0 moveto\n9.9 0.5 90.1 -0.5 100 0 curveto\n");
    ASSERT_EQ(flat.Used, 2);
    EXPECT_EQ(flat.Records[1].Kind, EpsLine);
    EXPECT_TRUE(Same(flat.Records[1].PointA, P3(100, 0, 0)));
    EXPECT_TRUE(Same(flat.Records[1].Roll, Up));

    // One handle at a tenth of the chord is not below it.
    MEpsPath tenth = Read("0 0 moveto\n10 0 95 0 100 0 curveto\n");
    EXPECT_EQ(Kinds(tenth), "15");

    MEpsPath loop = Read("0 0 moveto\n10 10 -10 10 0 0 curveto\n");
    EXPECT_EQ(Kinds(loop), "15");

    // The test runs on the untransformed points: under a matrix that
    // squeezes x, the handles would look long, yet the curve is a line.
    MEpsPath squeezed = Read("[0.01 0 0 1 0 0] concat\n0 0 moveto\n5 1 95 1 100 0 curveto\n");
    EXPECT_EQ(Kinds(squeezed), "14");
    EXPECT_TRUE(Same(squeezed.Records[1].PointA, P3(1, 0, 0)));

    // A flat curve in 3D with roll keeps its roll as a line.
    MEpsPath rolled = Read("0 0 0 moveto\n1 0 0 99 0 0 100 0 0 0 1 0 curveto\n");
    ASSERT_EQ(rolled.Used, 2);
    EXPECT_EQ(rolled.Records[1].Kind, EpsLine);
    EXPECT_TRUE(Same(rolled.Records[1].Roll, P3(0, 1, 0)));
}

TEST(EpsReader, CurveWithoutFirstHandleBehindALineOrCurveIsDropped) {
    // The writer puts the previous HandleOut first; lying on its point, it
    // repeats the last end, and the duplicate test drops the whole curve.
    MEpsPath behindLine = Read("0 0 moveto\n10 0 lineto\n10 0 15 10 20 10 curveto\n"
                               "30 10 lineto\n");
    EXPECT_EQ(Kinds(behindLine), "144");
    EXPECT_TRUE(Same(behindLine.Records[1].PointA, P3(10, 0, 0)));
    EXPECT_TRUE(Same(behindLine.Records[2].PointA, P3(30, 10, 0)));

    MEpsPath behindCurve = Read("0 0 0 moveto\n0 5 0 10 5 0 10 0 0 curveto\n"
                                "10 0 0 15 5 0 20 0 0 curveto\n25 5 0 30 5 0 30 0 0 curveto\n");
    EXPECT_EQ(Kinds(behindCurve), "155");
    EXPECT_TRUE(Same(behindCurve.Records[2].PointA, P3(25, 5, 0)));
    EXPECT_TRUE(Same(behindCurve.Records[2].PointC, P3(30, 0, 0)));

    // Behind a move the same curve is kept.
    EXPECT_EQ(Kinds(Read("10 0 moveto\n10 0 15 10 20 10 curveto\n")), "15");

    // Roll operands still count when the curve is dropped.
    MEpsPath rolled = Read("0 0 0 moveto\n10 0 0 lineto\n10 0 0 15 10 0 20 10 0 0 1 0 curveto\n");
    EXPECT_EQ(Kinds(rolled), "14");
    EXPECT_TRUE(rolled.HasRoll);
}

// ---- The matrix step

TEST(EpsReader, ConcatScalesButDoesNotTranslate) {
    MEpsPath path = Read("[0.5 0 0 0.5 10 10] concat\n4 6 moveto\n8 2 lineto\n"
                         "2 2 4 6 8 8 curveto\n");
    ASSERT_EQ(path.Used, 3);
    EXPECT_TRUE(Same(path.Records[0].PointA, P3(2, 3, 0)));
    EXPECT_TRUE(Same(path.Records[1].PointA, P3(4, 1, 0)));
    EXPECT_TRUE(Same(path.Records[2].PointA, P3(1, 1, 0)));
    EXPECT_TRUE(Same(path.Records[2].PointB, P3(2, 3, 0)));
    EXPECT_TRUE(Same(path.Records[2].PointC, P3(4, 4, 0)));
}

TEST(EpsReader, ASecondConcatReplacesTheFirst) {
    MEpsPath path = Read("[2 0 0 2 0 0] concat\n[3 0 0 3 0 0] CT\n1 1 moveto\n");
    ASSERT_EQ(path.Used, 0); // the lone move is dropped at the end
    MEpsPath kept = Read("[2 0 0 2 0 0] concat\n[3 0 0 3 0 0] CT\n1 1 moveto\n2 1 lineto\n");
    ASSERT_EQ(kept.Used, 2);
    EXPECT_TRUE(Same(kept.Records[0].PointA, P3(3, 3, 0)));
    EXPECT_TRUE(Same(kept.Records[1].PointA, P3(6, 3, 0)));
}

TEST(EpsReader, ConcatShearsAndFlips) {
    MEpsPath path = Read("[1 0 1 -1 0 0] concat\n2 3 moveto\n0 0 lineto\n");
    ASSERT_EQ(path.Used, 2);
    EXPECT_TRUE(Same(path.Records[0].PointA, P3(5, -3, 0)));
}

TEST(EpsReader, ThreeDFormsIgnoreTheMatrix) {
    MEpsPath path = Read("[2 0 0 2 0 0] concat\n1 1 1 moveto\n2 2 2 lineto\n"
                         "3 3 3 4 4 4 5 5 5 curveto\n");
    ASSERT_EQ(path.Used, 3);
    EXPECT_TRUE(Same(path.Records[0].PointA, P3(1, 1, 1)));
    EXPECT_TRUE(Same(path.Records[1].PointA, P3(2, 2, 2)));
    EXPECT_TRUE(Same(path.Records[2].PointC, P3(5, 5, 5)));
}

TEST(EpsReader, RelativeOperandsAddToTheUntransformedCurrentPoint) {
    MEpsPath path = Read("[2 0 0 2 0 0] concat\n1 1 moveto\n1 0 rlineto\n");
    ASSERT_EQ(path.Used, 2);
    EXPECT_TRUE(Same(path.Records[1].PointA, P3(4, 2, 0)));
}

TEST(EpsReader, ANearIdentityMatrixIsTheIdentity) {
    // 1.00001 differs from 1 by less than 2^-14, so the matrix is skipped and
    // the point comes through bit for bit.
    MEpsPath path = Read("[1 0 0 1.00001 0 0] concat\n3 1000 moveto\n4 4 lineto\n");
    ASSERT_EQ(path.Used, 2);
    EXPECT_TRUE(Same(path.Records[0].PointA, P3(3, 1000, 0)));
    MEpsPath scaled = Read("[1 0 0 1.001 0 0] concat\n3 1000 moveto\n4 4 lineto\n");
    EXPECT_FALSE(Same(scaled.Records[0].PointA, P3(3, 1000, 0)));
}

TEST(EpsReader, CmCountsOnlyBehindItsAliasLine) {
    MEpsPath plain = Read("2 0 0 2 0 0 cm\n1 1 moveto\n2 1 lineto\n");
    ASSERT_EQ(plain.Used, 2);
    EXPECT_TRUE(Same(plain.Records[0].PointA, P3(1, 1, 0)));

    MEpsPath aliased = Read("/cm { 6 array astore concat } bind def\n2 0 0 2 0 0 cm\n"
                            "1 1 moveto\n2 1 lineto\n");
    ASSERT_EQ(aliased.Used, 2);
    EXPECT_TRUE(Same(aliased.Records[0].PointA, P3(2, 2, 0)));
}

TEST(EpsReader, CairoFilesHaveTheirDNegated) {
    MEpsPath path = Read("%%Creator: cairo 1.16.0\n/cm { 6 array astore concat } bind def\n"
                         "2 0 0 3 0 0 cm\n1 1 m\n2 1 moveto\n");
    ASSERT_EQ(path.Used, 1);
    EXPECT_TRUE(Same(path.Records[0].PointA, P3(2, -3, 0)));
    // Cairo's page flip becomes the identity.
    MEpsPath page = Read("%%Creator: cairo 1.16.0\n1 0 0 -1 0 200 concat\n7 9 m\n8 9 lineto\n");
    ASSERT_EQ(page.Used, 2);
    EXPECT_TRUE(Same(page.Records[0].PointA, P3(7, 9, 0)));
}

// ---- Alias lines

TEST(EpsReader, AliasLinesMakeLAndCAbsolute) {
    const std::string path = "10 10 moveto\n5 5 l\n1 2 3 4 6 6 c\n";
    MEpsPath relative = Read(path);
    ASSERT_EQ(relative.Used, 3);
    EXPECT_TRUE(Same(relative.Records[1].PointA, P3(15, 15, 0)));
    EXPECT_TRUE(Same(relative.Records[2].PointC, P3(21, 21, 0)));

    for (const char* lineAlias : {"/l { lineto } bind def", "/l/lineto", "/l { lineto } bd"}) {
        MEpsPath absolute = Read(std::string(lineAlias) + "\n" + path);
        ASSERT_EQ(absolute.Used, 3) << lineAlias;
        EXPECT_TRUE(Same(absolute.Records[1].PointA, P3(5, 5, 0))) << lineAlias;
        EXPECT_TRUE(Same(absolute.Records[2].PointC, P3(11, 11, 0))) << lineAlias;
    }
    for (const char* curveAlias : {"/c { curveto } bind def", "/c/curveto", "/c { curveto } bd"}) {
        MEpsPath absolute = Read(std::string(curveAlias) + "\n" + path);
        ASSERT_EQ(absolute.Used, 3) << curveAlias;
        EXPECT_TRUE(Same(absolute.Records[1].PointA, P3(15, 15, 0))) << curveAlias;
        EXPECT_TRUE(Same(absolute.Records[2].PointA, P3(1, 2, 0))) << curveAlias;
        EXPECT_TRUE(Same(absolute.Records[2].PointC, P3(6, 6, 0))) << curveAlias;
    }
}

TEST(EpsReader, AliasLinesMustBeWholeLinesButMayHaveBlanksAround) {
    // From (10, 10) an absolute "l" ends at (5, 5), a relative one at (15, 15).
    auto end = [](const char* alias) {
        return Read(std::string(alias) + "\n10 10 moveto\n5 5 l\n").Records[1].PointA;
    };
    EXPECT_TRUE(Same(end("   /l/lineto \t"), P3(5, 5, 0)));
    EXPECT_TRUE(Same(end("/l/lineto %"), P3(15, 15, 0)));
    EXPECT_TRUE(Same(end("/l  { lineto } bind def"), P3(15, 15, 0)));
    EXPECT_TRUE(Same(end("/L/lineto"), P3(15, 15, 0)));
    EXPECT_TRUE(Same(end("/l/lineto/l/lineto"), P3(15, 15, 0)));
}

TEST(EpsReader, AnAliasTakesTheWordOutOfEveryOtherList) {
    // "c" and "l" become absolute; the relative lists keep their long words.
    MEpsPath path = Read("/c/curveto\n/l/lineto\n0 0 moveto\n1 1 rlineto\n2 2 l\n"
                         "1 5 2 5 3 3 rcurveto\n");
    ASSERT_EQ(path.Used, 4);
    EXPECT_TRUE(Same(path.Records[1].PointA, P3(1, 1, 0)));
    EXPECT_TRUE(Same(path.Records[2].PointA, P3(2, 2, 0)));
    EXPECT_TRUE(Same(path.Records[3].PointC, P3(5, 5, 0)));
}

// ---- Comments

TEST(EpsReader, CinderlaneComments) {
    auto max = [](const char* value) {
        return Read(std::string("%%Cinderlane MaxLinesPerCurve ") + value + "\n").MaxLinesPerCurve;
    };
    EXPECT_EQ(max("250"), 250);
    EXPECT_EQ(max("1"), 1);
    EXPECT_EQ(max("0"), 100);
    EXPECT_EQ(max("-5"), 100);
    EXPECT_EQ(max("many"), 100);
    EXPECT_EQ(max(""), 100);
    EXPECT_EQ(
        Read("%%Cinderlane MaxLinesPerCurve 7\n%%Cinderlane MaxLinesPerCurve\n").MaxLinesPerCurve,
        100);

    EXPECT_FALSE(Read("%%Cinderlane Centre N\n").Centre);
    EXPECT_FALSE(Read("%%Cinderlane Centre y\n").Centre);
    EXPECT_FALSE(Read("%%Cinderlane Centre\n").Centre);
    EXPECT_FALSE(Read("%%Cinderlane Centre Yes\n").Centre);
    EXPECT_TRUE(Read("%%Cinderlane Centre N\n%%Cinderlane Centre Y\n").Centre);
    EXPECT_FALSE(Read("%%Cinderlane Scale N\n").Scale);
    EXPECT_TRUE(Read("%%Cinderlane Scale N\n").Centre);
    EXPECT_TRUE(Read("%%Cinderlane Scale Y\n").Scale);

    MEpsPath other = Read("%%Cinderlane Colour N\n%%cinderlane Centre N\n%%Cinderlane: Scale N\n");
    EXPECT_TRUE(other.Centre);
    EXPECT_TRUE(other.Scale);
    EXPECT_EQ(other.MaxLinesPerCurve, 100);
}

// ---- Numbers

TEST(EpsReader, NumbersThatAreNoNumbersCountAsZero) {
    MEpsPath path = Read("nan 5 moveto\nabc NaN lineto\n3 -nan lineto\n");
    EXPECT_EQ(Kinds(path), "144");
    EXPECT_TRUE(Same(path.Records[0].PointA, P3(0, 5, 0)));
    EXPECT_TRUE(Same(path.Records[1].PointA, P3(0, 0, 0)));
    EXPECT_TRUE(Same(path.Records[2].PointA, P3(3, 0, 0)));
}

TEST(EpsReader, HugeNumbersBecomeInfinite) {
    MEpsPath path = Read("1e40 -inf moveto\ninf 2 lineto\n");
    ASSERT_EQ(path.Used, 2);
    EXPECT_TRUE(std::isinf(path.Records[0].PointA.x) && path.Records[0].PointA.x > 0);
    EXPECT_TRUE(std::isinf(path.Records[0].PointA.y) && path.Records[0].PointA.y < 0);
    EXPECT_TRUE(std::isinf(path.Records[1].PointA.x));
}

TEST(EpsReader, QuotedTokensAndEscapesFollowTheTextStream) {
    // A quoted token keeps its blank: the line has three tokens, a 2D move,
    // and the number of "1 2" is read as far as it goes.
    MEpsPath quoted = Read("\"1 2\" 3 moveto\n4 4 lineto\n");
    ASSERT_EQ(quoted.Used, 2);
    EXPECT_TRUE(Same(quoted.Records[0].PointA, P3(1, 3, 0)));
}

// ---- End of file

TEST(EpsReader, LowerCaseEofStopsTheReader) {
    MEpsPath path = Read("0 0 moveto\n10 0 lineto\n%%eof\n20 0 lineto\n");
    EXPECT_EQ(Kinds(path), "14");
    EXPECT_EQ(Kinds(Read("0 0 moveto\n10 0 lineto\n  %%EoF  \n20 0 lineto\n")), "14");
    // With a second token the line is no end.
    EXPECT_EQ(Kinds(Read("0 0 moveto\n10 0 lineto\n%%EOF x\n20 0 lineto\n")), "144");
    // Comments behind the end are not read either.
    EXPECT_TRUE(Read("%%EOF\n%%Cinderlane Centre N\n").Centre);
}

TEST(EpsReader, ALoneMoveAtTheEndIsDroppedOnce) {
    MEpsPath path = Read("0 0 moveto\n10 0 lineto\n20 0 moveto\n30 0 moveto\n");
    EXPECT_EQ(Kinds(path), "242");
    EXPECT_EQ(path.Used, 3);
    EXPECT_EQ(Read("0 0 moveto\n").Used, 0);
    // A filled or stroked move at the end goes as well.
    EXPECT_EQ(Kinds(Read("0 0 moveto\n10 0 lineto\n20 0 moveto\nfill\n")), "24");
}

TEST(EpsReader, NothingRecognisedGivesTheStartValues) {
    for (const char* text : {"", "hello world\n", "%!PS-Adobe-3.0\nshowpage\n", "\n\n\n",
                             "\xff\xfe", "%%Cinderlane Nothing Y\n"}) {
        MEpsPath path = Read(text);
        EXPECT_EQ(path.Used, 0) << text;
        EXPECT_TRUE(path.Centre);
        EXPECT_TRUE(path.Scale);
        EXPECT_EQ(path.MaxLinesPerCurve, 100);
        EXPECT_FALSE(path.Solid);
        EXPECT_FALSE(path.HasRoll);
        EXPECT_FALSE(path.ThreeD);
    }
}

// ---- Files and encodings

TEST(EpsReader, ReadsFilesAndMissingFilesGiveNothing) {
    fs::path file = Folder() / "own.eps";
    WriteBytes(file, OwnExample);
    MEpsPath path = ReadEps(PathText(file));
    EXPECT_EQ(Kinds(path), "254");
    EXPECT_FALSE(path.Scale);

    MEpsPath missing = ReadEps(PathText(Folder() / "missing.eps"));
    EXPECT_EQ(missing.Used, 0);
    EXPECT_TRUE(missing.Scale);
    EXPECT_EQ(ReadEps(MString()).Used, 0);
}

TEST(EpsReader, ReadsEveryEncodingOfTheTextStream) {
    const std::string text = "%%Cinderlane Scale N\r\n1 2 moveto\r\n3 4 lineto\r\n";
    std::string utf16le = "\xff\xfe", utf16be = "\xfe\xff", utf8 = "\xef\xbb\xbf" + text;
    for (char c : text) {
        utf16le += c, utf16le += '\0';
        utf16be += '\0', utf16be += c;
    }
    for (const std::string& bytes : {text, utf16le, utf16be, utf8}) {
        MEpsPath path = Read(bytes);
        ASSERT_EQ(path.Used, 2);
        EXPECT_FALSE(path.Scale);
        EXPECT_TRUE(Same(path.Records[1].PointA, P3(3, 4, 0)));
    }
}

TEST(EpsReader, LineEndsOfEveryKind) {
    EXPECT_EQ(Kinds(Read("0 0 moveto\r1 1 lineto\r2 2 lineto")), "144");
    EXPECT_EQ(Kinds(Read("0 0 moveto\r\n1 1 lineto\n\n2 2 lineto\r")), "144");
}

// ---- The cairo rewrite

namespace {

std::string Substituted(std::string text, const char* find, const char* with) {
    MCairo::Substitute(reinterpret_cast<uint8_t*>(&text[0]), int32_t(text.size()), find, with);
    return text;
}

std::string Separated(std::string text, const char16_t* word) {
    MCairo::Separate(reinterpret_cast<uint8_t*>(&text[0]), int32_t(text.size()), MString(word));
    return text;
}

std::string Rewritten(std::string text) {
    MCairo::RewritePage(reinterpret_cast<uint8_t*>(&text[0]), int32_t(text.size()));
    return text;
}

} // namespace

TEST(EpsReaderCairo, SubstituteReplacesLeftToRightWithoutOverlap) {
    EXPECT_EQ(Substituted("a b a b", "a", "x"), "x b x b");
    EXPECT_EQ(Substituted("aaaa", "aa", "ba"), "baba");
    EXPECT_EQ(Substituted("aaa", "aa", "ba"), "baa");
    EXPECT_EQ(Substituted("abab", "ab", "ba"), "baba");
    EXPECT_EQ(Substituted("xyz", "xyzw", "abcd"), "xyz");
    EXPECT_EQ(Substituted("", "a", "b"), "");
}

TEST(EpsReaderCairo, SubstituteRefusesDifferentLengths) {
    StartDebugCapture();
    std::string text = Substituted("a b a", "a", "xy");
    MString output = StopDebugCapture();
    EXPECT_EQ(text, "a b a");
    EXPECT_EQ(Text(output), u"ERROR MCairo 1\n");
}

TEST(EpsReaderCairo, SeparateRunsItsFourSubstitutionsInOrder) {
    EXPECT_EQ(Separated("1 2 m 3 4 l", u"m"), "1 2 m\n3 4 l");
    EXPECT_EQ(Separated("x\n m y", u"m"), "x  m\ny");    // 1
    EXPECT_EQ(Separated("x \nm y", u"m"), "x  m\ny");    // 2
    EXPECT_EQ(Separated("x\nm y", u"m"), "x\nm\ny");     // 4
    EXPECT_EQ(Separated("x m\ny", u"m"), "x m\ny");      // already at a line end
    EXPECT_EQ(Separated("x mm y", u"m"), "x mm y");      // a longer word stays
    EXPECT_EQ(Separated(" l l l ", u"l"), " l\nl\nl\n"); // 3 takes every other, 4 the rest
    EXPECT_EQ(Separated("a rectclip b", u"rectclip"), "a rectclip\nb");
    EXPECT_EQ(Separated("a  b", u""), "a  b");
}

TEST(EpsReaderCairo, RewriteStartsBehindTheEndOfThePageSetup) {
    EXPECT_EQ(Rewritten("q 1 w\n%%EndPageSetup\nq 1 w\n"), "q 1 w\n%%EndPageSetup\nq\n1 w\n");
    EXPECT_EQ(Rewritten("q 1 w m 2 l\n"), "q 1 w m 2 l\n");
    // Wrapped lines: a line feed beside one blank becomes a blank; one between
    // two blanks, or beside none, stays.
    EXPECT_EQ(Rewritten("%%EndPageSetup\n1 2 m 3 \n4 l 5\n 6 l\n7 8 l\n"),
              "%%EndPageSetup\n1 2 m\n3  4 l\n5  6 l\n7 8 l\n");
    EXPECT_EQ(Rewritten("%%EndPageSetup\n1 \n 2"), "%%EndPageSetup\n1 \n 2");
    // The region's ends count as no blank.
    EXPECT_EQ(Rewritten("%%EndPageSetup\n 5"), "%%EndPageSetup  5");
    EXPECT_EQ(Rewritten("%%EndPageSetup"), "%%EndPageSetup");
    EXPECT_EQ(Rewritten("x %%EndPageSetup"), "x %%EndPageSetup");
}

TEST(EpsReaderCairo, RewriteSeparatesAllFifteenWords) {
    EXPECT_EQ(Rewritten("%%EndPageSetup\nq 0 g 2 w 0 J 0 j [] 0.0 d 10 M 1 0 0 1 0 0 cm "
                        "1 2 m 3 4 l 5 6 7 8 9 10 c h S Q 0 0 9 9 rectclip f\n"),
              "%%EndPageSetup\nq\n0 g\n2 w\n0 J\n0 j\n[] 0.0 d\n10 M\n1 0 0 1 0 0 cm\n"
              "1 2 m\n3 4 l\n5 6 7 8 9 10 c\nh\nS\nQ\n0 0 9 9 rectclip\nf\n");
}

TEST(EpsReaderCairo, CairoContentIsReadOperatorByOperator) {
    const std::string file = "%!PS-Adobe-3.0 EPSF-3.0\n"
                             "%%Creator: cairo 1.16.0 (https://cairographics.org)\n"
                             "/cm { 6 array astore concat } bind def\n"
                             "/m { moveto } bind def\n"
                             "/l { lineto } bind def\n"
                             "/c { curveto } bind def\n"
                             "/S { stroke } bind def\n"
                             "%%EndPageSetup\n"
                             "q 0 0 200 200 rectclip\n"
                             "1 0 0 -1 0 200 cm q\n"
                             "10 M 10 20 m 100 30 l 120 40 150 80 160 150 c S\n"
                             "5 5 m 50 5 l 50 \n50 l 5 50\n l h\n5 5 m f\n"
                             "Q Q\n"
                             "showpage\n"
                             "%%EOF\n";
    MEpsPath path = Read(file);
    EXPECT_EQ(Kinds(path), "2452444");
    EXPECT_TRUE(Same(path.Records[1].PointA, P3(100, 30, 0)));
    EXPECT_TRUE(Same(path.Records[2].PointA, P3(120, 40, 0)));
    EXPECT_TRUE(Same(path.Records[2].PointC, P3(160, 150, 0)));
    EXPECT_TRUE(Same(path.Records[4].PointA, P3(50, 5, 0)));
    EXPECT_TRUE(Same(path.Records[5].PointA, P3(50, 50, 0)));
    EXPECT_TRUE(Same(path.Records[6].PointA, P3(5, 50, 0)));
    // Cairo moves once more before its fill; that move is the one filled,
    // and as the last record it goes.
    EXPECT_TRUE(path.Solid);
}

TEST(EpsReaderCairo, TheRewriteNeedsTheCreatorLine) {
    const std::string page = "/l/lineto\n%%EndPageSetup\n0 0 m 10 0 l 10 10 l\n";
    EXPECT_EQ(Read(page).Used, 0);
    EXPECT_EQ(Kinds(Read("%%Creator: cairo\n" + page)), "144");
    // Blanks before the creator line are trimmed away.
    EXPECT_EQ(Kinds(Read("  %%Creator: cairo\n" + page)), "144");
    EXPECT_EQ(Read("%%Creator: Cairo\n" + page).Used, 0);
}

TEST(EpsReaderCairo, EndPageSetupAtTheVeryEndOfTheFile) {
    MEpsPath path = Read("%%Creator: cairo\n0 0 m\n%%EndPageSetup");
    EXPECT_EQ(path.Used, 0);
    MEpsPath lines = Read("%%Creator: cairo\n0 0 moveto\n5 5 lineto\n%%EndPageSetup");
    EXPECT_EQ(Kinds(lines), "14");
}

TEST(EpsReaderCairo, RewriteTouchesOnlyTheReadersCopy) {
    fs::path file = Folder() / "cairo.eps";
    const std::string bytes = "%%Creator: cairo\n/l/lineto\n%%EndPageSetup\n0 0 m 10 0 l S\n";
    WriteBytes(file, bytes);
    MEpsPath path = ReadEps(PathText(file));
    EXPECT_EQ(Kinds(path), "24");
    std::ifstream in(file, std::ios::binary);
    std::string after((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    EXPECT_EQ(after, bytes);

    std::string memory = bytes;
    EXPECT_EQ(Kinds(ReadEpsMemory(memory.data(), int32_t(memory.size()))), "24");
    EXPECT_EQ(memory, bytes);
}

// ---- Malformed input

TEST(EpsReaderMalformed, GarbageAndLongLinesEndQuietly) {
    std::string garbage;
    uint32_t state = 12345;
    for (int i = 0; i < 20000; i++) {
        state = state * 1103515245u + 12345u;
        garbage += char(state >> 24);
    }
    // Nothing in these bytes has the shape of a line the reader knows: the
    // start values come back. A path behind them is still read, so the
    // garbage was passed over line by line and did not stop the reader.
    MEpsPath path = Read(garbage);
    EXPECT_EQ(path.Used, 0);
    EXPECT_TRUE(path.Centre);
    EXPECT_TRUE(path.Scale);
    EXPECT_EQ(path.MaxLinesPerCurve, 100);
    EXPECT_FALSE(path.Solid);
    EXPECT_FALSE(path.HasRoll);
    EXPECT_FALSE(path.ThreeD);
    MEpsPath behind = Read(garbage + "\n0 0 moveto\n10 5 lineto\n");
    ASSERT_EQ(Kinds(behind), "14");
    EXPECT_TRUE(Same(behind.Records[1].PointA, P3(10, 5, 0)));

    std::string tokens;
    for (int i = 0; i < 10000; i++)
        tokens += "1 ";
    MEpsPath wide = Read("0 0 moveto\n" + tokens + "lineto\n5 5 lineto\n");
    EXPECT_EQ(Kinds(wide), "14");

    // A stream of nothing but line ends and a line without any.
    EXPECT_EQ(Read(std::string(100000, '\n')).Used, 0);
    EXPECT_EQ(Read(std::string(100000, 'x')).Used, 0);
}

TEST(EpsReaderMalformed, ManyRecordsGrowTheArray) {
    std::string text = "0 0 moveto\n";
    for (int i = 1; i <= 2500; i++)
        text += std::to_string(i) + " " + std::to_string(i % 2) + " lineto\n";
    MEpsPath path = Read(text);
    EXPECT_EQ(path.Used, 2501);
    EXPECT_GE(path.Records.Count, 2501);
    EXPECT_EQ(path.Records.Count % 1000, 0);
    EXPECT_TRUE(Same(path.Records[2500].PointA, P3(2500, 0, 0)));
}

// A large file of many paths ended in every way (by a fill, a stroke, the
// next move, or not at all, with fills and strokes that find no open path):
// every move takes the kind that the search from the last record back for
// the nearest open move gives.
TEST(EpsReader, MoveKindsOfManyPathsAreThoseOfTheSearchBack) {
    std::string text = "%!PS-Adobe-3.0 EPSF-3.0\n";
    std::vector<uint32_t> expected; // the kind of each move, in order
    auto endOpen = [&expected](uint32_t kind) {
        for (size_t i = expected.size(); i-- > 0;)
            if (expected[i] == EpsMoveOpen) {
                expected[i] = kind;
                return;
            }
    };
    uint32_t seed = 3;
    auto next = [&seed](uint32_t range) {
        seed = seed * 1664525u + 1013904223u;
        return (seed >> 16) % range;
    };
    for (int32_t path = 0; path < 3000; path++) {
        endOpen(EpsMoveStroked);
        expected.push_back(EpsMoveOpen);
        text += std::to_string(path) + " " + std::to_string(path % 7) + " moveto\n";
        uint32_t lines = 1 + next(4);
        for (uint32_t k = 0; k < lines; k++)
            text += std::to_string(path) + "." + std::to_string(k + 1) + " " +
                    std::to_string(k * 3 + 1) + " lineto\n";
        switch (next(5)) {
        case 0:
            text += "fill\n";
            endOpen(EpsMoveFilled);
            break;
        case 1:
            text += "2 setlinewidth stroke\n";
            endOpen(EpsMoveStroked);
            break;
        case 2: // a fill and a stroke with no open path left
            text += "fill\nstroke\n";
            endOpen(EpsMoveFilled);
            break;
        default: // ended by the next move, or never
            break;
        }
    }
    MEpsPath path = ReadEpsMemory(text.data(), int32_t(text.size()));
    std::vector<uint32_t> kinds;
    for (int32_t i = 0; i < path.Used; i++)
        if (path.Records[i].Kind <= EpsMoveFilled) kinds.push_back(path.Records[i].Kind);
    EXPECT_EQ(kinds, expected);
    EXPECT_TRUE(path.Solid);
}

// ---- The same records as the plain reader

// The digests were taken natively; a C library of another platform may
// parse an odd number differently in its last place.
#ifndef _WIN32
TEST(EpsReaderDigests, EveryInputReadsAsWithThePlainReader) {
    std::map<std::string, epsdigest::KeptDigest> kept = epsdigest::KeptDigests();
    int32_t compared = 0;
    for (const epsdigest::Input& input : epsdigest::Inputs()) {
        if (input.Name.size() < 4 || input.Name.substr(input.Name.size() - 4) != ".eps") continue;
        EXPECT_EQ(epsdigest::ReadDigest(input.Bytes), kept[input.Name].Read) << input.Name;
        compared++;
    }
    EXPECT_GT(compared, 100);
}
#endif
