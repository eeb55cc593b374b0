// Loading a sketch: the EPS branch with its records, handles and smooth
// flags, Centre and Scale, the track file branch with its moves, elements and
// Close, the messages, the undo ring, round trips through the writer, and
// files written by cairo and potrace.

#include "EpsDigestSupport.h"
#include "ForeignFilesSupport.h"
#include "ScratchFolder.h"
#include "SketchTestSupport.h"

#include "elements/WElement.h"
#include "eps/EpsWriter.h"
#include "eps/LoadSketch.h"
#include "foundation/MTextFile.h"
#include "foundation/Platform.h"
#include "shell/Shell.h"
#include "shell/WSettings.h"
#include "sketch/WUndoRing.h"

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

// A folder of the build machine; Wine shows the machine's root as drive Z.
fs::path Rooted(std::string folder) {
#ifdef _WIN32
    if (!folder.empty() && folder[0] == '/') folder = "Z:" + folder;
#endif
    return fs::path(folder);
}

fs::path Folder() {
    return scratch::Kept("load-sketch");
}

MString PathText(const fs::path& path) {
    return MString(path.u16string().c_str());
}

MString WriteFile(const char* name, const std::string& bytes) {
    fs::path path = Folder() / name;
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out << bytes;
    return PathText(path);
}

std::u16string CouldNotOpen(const MString& path) {
    return u"Could not open:\n\n\"" + Text(path) + u"\"";
}

::testing::AssertionResult Near(const MPoint3& a, const MPoint3& b, float tolerance) {
    if (std::fabs(a.x - b.x) <= tolerance && std::fabs(a.y - b.y) <= tolerance &&
        std::fabs(a.z - b.z) <= tolerance)
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "(" << a.x << ", " << a.y << ", " << a.z << ") vs ("
                                         << b.x << ", " << b.y << ", " << b.z << ")";
}

std::string Kinds(const WSketch& sketch) {
    std::string kinds;
    for (int32_t i = 0; i < sketch.PointCount; i++)
        kinds += char('0' + sketch.Points[i].Kind);
    return kinds;
}

// A scripted message box that keeps what it was shown and answers OK.
struct Messages {
    static const int32_t Room = 64;
    MString Texts[Room];
    MessageIcon Icons[Room] = {};
    MessageScript Data;
    Messages() {
        Data.Texts = Texts;
        Data.Icons = Icons;
        Data.Capacity = Room;
        TheMessageScript = &Data;
    }
    ~Messages() { TheMessageScript = nullptr; }
    int32_t Count() const { return Data.Count; }
    std::u16string operator[](int32_t i) const { return Text(Texts[i]); }
};

class LoadSketchTest : public ::testing::Test {
  protected:
    WSettings Settings;
    WSettings* SavedSettings = nullptr;
    WMode SavedMode = ModeDraw;
    bool OwnElement = false;

    void SetUp() override {
        if (TheSketch) DestroySketch();
        ASSERT_NE(CreateSketch(), nullptr);
        if (!TheElement) {
            ASSERT_NE(CreateElement(), nullptr);
            OwnElement = true;
        }
        SavedSettings = TheSettings;
        TheSettings = &Settings;
        for (bool& ticked : Settings.Template)
            ticked = false;
        SavedMode = TheMode;
        TheMode = ModeEditSketch;
    }
    void TearDown() override {
        TheSettings = SavedSettings;
        TheMode = SavedMode;
        TheMessageScript = nullptr;
        DestroySketch();
        if (OwnElement) DestroyElement();
    }
};

// ---- The EPS branch

TEST_F(LoadSketchTest, ForeignPathIsCentredAndScaledTo200) {
    Messages box;
    MString path = WriteFile("line.eps", "0 0 moveto\n100 0 lineto\n");
    ASSERT_TRUE(LoadSketch(path));
    EXPECT_EQ(box.Count(), 0);
    WSketch& s = *TheSketch;
    ASSERT_EQ(s.PointCount, 2);
    EXPECT_EQ(Kinds(s), "01");
    EXPECT_TRUE(Near(s.Points[0].Position, P3(-100, 0, 0), 0));
    EXPECT_TRUE(Near(s.Points[1].Position, P3(100, 0, 0), 0));
    EXPECT_TRUE(Settings.Centre);
    EXPECT_TRUE(Settings.Scale);
    EXPECT_EQ(Settings.MaxLinesPerCurve, 100);
    EXPECT_FALSE(Settings.SaveSolid);
    EXPECT_FALSE(Settings.SaveRoll);
    EXPECT_EQ(s.Modified, 0);
    EXPECT_EQ(s.Current, -1);
    EXPECT_TRUE(CheckInvariants(s));
}

TEST_F(LoadSketchTest, NanCountsAsZero) {
    Messages box;
    ASSERT_TRUE(LoadSketch(WriteFile("nan.eps", "nan 0 moveto\n100 NaN lineto\n")));
    ASSERT_EQ(TheSketch->PointCount, 2);
    EXPECT_TRUE(Near(TheSketch->Points[0].Position, P3(-100, 0, 0), 0));
    EXPECT_TRUE(Near(TheSketch->Points[1].Position, P3(100, 0, 0), 0));
}

TEST_F(LoadSketchTest, ALoneMoveCannotBeOpened) {
    Messages box;
    MString path = WriteFile("lone.eps", "%%Cinderlane Centre N\n10 20 moveto\n");
    EXPECT_FALSE(LoadSketch(path));
    ASSERT_EQ(box.Count(), 1);
    EXPECT_EQ(box[0], CouldNotOpen(path));
    EXPECT_EQ(box.Icons[0], IconError);
    EXPECT_EQ(TheSketch->PointCount, 0);
    // The reader gave nothing, so the file's comments never reached the settings.
    EXPECT_TRUE(Settings.Centre);
}

TEST_F(LoadSketchTest, BothCommentsAtNKeepTheCoordinatesToSixDecimals) {
    Messages box;
    ASSERT_TRUE(LoadSketch(WriteFile("keep.eps", "%%Cinderlane Centre N\n%%Cinderlane Scale N\n"
                                                 "1.234567 -7.654321 moveto\n"
                                                 "100.5 3.25 0.125 lineto\n")));
    ASSERT_EQ(TheSketch->PointCount, 2);
    EXPECT_TRUE(Near(TheSketch->Points[0].Position, P3(1.234567f, -7.654321f, 0), 0));
    EXPECT_TRUE(Near(TheSketch->Points[1].Position, P3(100.5f, 3.25f, 0.125f), 0));
    EXPECT_FALSE(Settings.Centre);
    EXPECT_FALSE(Settings.Scale);
}

TEST_F(LoadSketchTest, CentreAloneAndScaleAlone) {
    Messages box;
    const std::string path = "10 10 moveto\n30 10 lineto\n30 20 lineto\n";
    ASSERT_TRUE(LoadSketch(WriteFile("centre.eps", "%%Cinderlane Scale N\n" + path)));
    EXPECT_TRUE(Near(TheSketch->Points[0].Position, P3(-10, -5, 0), 0));
    EXPECT_TRUE(Near(TheSketch->Points[2].Position, P3(10, 5, 0), 0));
    ASSERT_TRUE(LoadSketch(WriteFile("scale.eps", "%%Cinderlane Centre N\n" + path)));
    // Scaled about the origin by 200 / 20.
    EXPECT_TRUE(Near(TheSketch->Points[0].Position, P3(100, 100, 0), 0));
    EXPECT_TRUE(Near(TheSketch->Points[2].Position, P3(300, 200, 0), 0));
    // Depth counts among the extents.
    ASSERT_TRUE(LoadSketch(WriteFile("deep.eps", "0 0 0 moveto\n10 0 40 lineto\n")));
    EXPECT_TRUE(Near(TheSketch->Points[0].Position, P3(-25, 0, -100), 0));
    EXPECT_TRUE(Near(TheSketch->Points[1].Position, P3(25, 0, 100), 0));
}

TEST_F(LoadSketchTest, SettingsComeFromTheFile) {
    Messages box;
    Settings.SaveSolid = false;
    Settings.SaveRoll = false;
    ASSERT_TRUE(LoadSketch(WriteFile("settings.eps", "%%Cinderlane Centre N\n"
                                                     "%%Cinderlane MaxLinesPerCurve 33\n"
                                                     "0 0 0 0 0 1 moveto\n10 0 0 lineto\n"
                                                     "10 10 0 lineto\n0 0 0 lineto\nfill\n")));
    EXPECT_FALSE(Settings.Centre);
    EXPECT_TRUE(Settings.Scale);
    EXPECT_EQ(Settings.MaxLinesPerCurve, 33);
    EXPECT_TRUE(Settings.SaveSolid);
    EXPECT_TRUE(Settings.SaveRoll);

    ASSERT_TRUE(LoadSketch(WriteFile("plain.eps", "0 0 moveto\n10 0 lineto\n")));
    EXPECT_TRUE(Settings.Centre);
    EXPECT_EQ(Settings.MaxLinesPerCurve, 100);
    EXPECT_FALSE(Settings.SaveSolid);
    EXPECT_FALSE(Settings.SaveRoll);
}

TEST_F(LoadSketchTest, LinesGetHandlesOnTheirOwnAxis) {
    Messages box;
    ASSERT_TRUE(LoadSketch(WriteFile("axis.eps", "%%Cinderlane Centre N\n%%Cinderlane Scale N\n"
                                                 "0 0 moveto\n10 0 lineto\n10 20 lineto\n")));
    const WSketch& s = *TheSketch;
    ASSERT_EQ(s.PointCount, 3);
    EXPECT_TRUE(Near(s.Points[0].HandleOut, P3(3, 0, 0), 1e-6f));
    // An open start mirrors its outgoing handle.
    EXPECT_TRUE(Near(s.Points[0].HandleIn, P3(-3, 0, 0), 1e-6f));
    EXPECT_TRUE(Near(s.Points[1].HandleIn, P3(7, 0, 0), 1e-6f));
    EXPECT_TRUE(Near(s.Points[1].HandleOut, P3(10, 6, 0), 1e-6f));
    EXPECT_TRUE(Near(s.Points[2].HandleIn, P3(10, 14, 0), 1e-6f));
    EXPECT_TRUE(Near(s.Points[2].HandleOut, P3(10, 26, 0), 1e-6f));
    // A right angle is no smooth point; a straight start and end are.
    EXPECT_EQ(s.Points[0].Smooth, 1);
    EXPECT_EQ(s.Points[1].Smooth, 0);
    EXPECT_EQ(s.Points[2].Smooth, 1);
}

TEST_F(LoadSketchTest, CurvesTakeTheirControlsAndMirrorTheLastHandle) {
    Messages box;
    ASSERT_TRUE(LoadSketch(WriteFile("curve.eps", "%%Cinderlane Centre N\n%%Cinderlane Scale N\n"
                                                  "0 0 moveto\n0 10 20 10 20 0 curveto\n")));
    const WSketch& s = *TheSketch;
    ASSERT_EQ(s.PointCount, 2);
    EXPECT_EQ(Kinds(s), "02");
    EXPECT_TRUE(Near(s.Points[0].HandleOut, P3(0, 10, 0), 0));
    EXPECT_TRUE(Near(s.Points[0].HandleIn, P3(0, -10, 0), 0));
    EXPECT_TRUE(Near(s.Points[1].HandleIn, P3(20, 10, 0), 0));
    EXPECT_TRUE(Near(s.Points[1].HandleOut, P3(20, -10, 0), 0));
}

TEST_F(LoadSketchTest, ClosedPathTakesTheIncomingHandleOfItsEnd) {
    Messages box;
    ASSERT_TRUE(LoadSketch(WriteFile("closed.eps", "%%Cinderlane Centre N\n%%Cinderlane Scale N\n"
                                                   "0 0 moveto\n30 -20 70 -20 100 0 curveto\n"
                                                   "120 40 -20 40 0 0 curveto\n")));
    const WSketch& s = *TheSketch;
    ASSERT_EQ(s.PointCount, 3);
    EXPECT_EQ(s.FindTwin(0), 2);
    // Not the mirror of (30, -20), which would be (-30, 20).
    EXPECT_TRUE(Near(s.Points[0].HandleIn, P3(-20, 40, 0), 0));
    EXPECT_TRUE(Near(s.Points[0].HandleOut, P3(30, -20, 0), 0));
    EXPECT_TRUE(CheckInvariants(s));
}

TEST_F(LoadSketchTest, SmoothComesFromTheAngleAtEachPoint) {
    // A kink of 20 degrees is smooth (cos 20 = 0.94), one of 30 is not
    // (cos 30 = 0.87).
    const float c20 = std::cos(20 * 3.14159265f / 180), s20 = std::sin(20 * 3.14159265f / 180);
    const float c30 = std::cos(30 * 3.14159265f / 180), s30 = std::sin(30 * 3.14159265f / 180);
    auto point = [](MPoint3 in, MPoint3 p, MPoint3 out, uint8_t kind) {
        WSketchPoint r;
        r.Position = p, r.HandleIn = in, r.HandleOut = out, r.Kind = kind, r.Smooth = 7;
        return r;
    };
    Fill(*TheSketch,
         {point(P3(-10, 0, 0), P3(0, 0, 0), P3(10, 0, 0), KindMove),
          point(P3(90, 0, 0), P3(100, 0, 0), P3(100 + 10 * c20, 10 * s20, 0), KindCurve),
          point(P3(190, 0, 0), P3(200, 0, 0), P3(200 + 10 * c30, 10 * s30, 0), KindCurve),
          point(P3(290, 0, 0), P3(300, 0, 0), P3(300, 0, 0), KindCurve)});
    ASSERT_TRUE(FinishLoad(false, false));
    const WSketch& s = *TheSketch;
    ASSERT_EQ(s.PointCount, 4);
    EXPECT_EQ(s.Points[0].Smooth, 1);
    EXPECT_EQ(s.Points[1].Smooth, 1);
    EXPECT_EQ(s.Points[2].Smooth, 0);
    // A handle on its point gives a zero vector and no smooth point.
    EXPECT_EQ(s.Points[3].Smooth, 0);
}

TEST_F(LoadSketchTest, CurveWithoutAMoveIsLost) {
    Messages box;
    ASSERT_TRUE(LoadSketch(WriteFile("head.eps", "%%Cinderlane Centre N\n%%Cinderlane Scale N\n"
                                                 "1 5 2 5 3 0 curveto\n0 0 moveto\n"
                                                 "10 0 lineto\n")));
    EXPECT_EQ(box.Count(), 0);
    EXPECT_EQ(Kinds(*TheSketch), "01");
    EXPECT_TRUE(Near(TheSketch->Points[0].Position, P3(0, 0, 0), 0));

    MString alone = WriteFile("alone.eps", "1 5 2 5 3 0 curveto\n");
    EXPECT_FALSE(LoadSketch(alone));
    ASSERT_EQ(box.Count(), 1);
    EXPECT_EQ(box[0], CouldNotOpen(alone));
}

TEST_F(LoadSketchTest, AClosedCurveOfOneSegmentIsDropped) {
    Messages box;
    ASSERT_TRUE(LoadSketch(WriteFile("loop.eps", "%%Cinderlane Centre N\n%%Cinderlane Scale N\n"
                                                 "0 0 moveto\n10 10 -10 10 0 0 curveto\n"
                                                 "5 -5 lineto\n")));
    EXPECT_EQ(Kinds(*TheSketch), "01");
    EXPECT_TRUE(Near(TheSketch->Points[0].HandleOut, P3(1.5f, -1.5f, 0), 1e-6f));
}

TEST_F(LoadSketchTest, EmptyOrUnreadableFilesCannotBeOpened) {
    Messages box;
    MString empty = WriteFile("empty.eps", "");
    MString missing = PathText(Folder() / "missing.eps");
    MString nothing = WriteFile("nothing.eps", "%!PS-Adobe-3.0\nshowpage\n");
    for (const MString& path : {empty, missing, nothing}) {
        int32_t before = box.Count();
        EXPECT_FALSE(LoadSketch(path));
        ASSERT_EQ(box.Count(), before + 1);
        EXPECT_EQ(box[before], CouldNotOpen(path));
        EXPECT_EQ(TheSketch->PointCount, 0);
    }
}

TEST_F(LoadSketchTest, TheExtensionDecidesInAnyCase) {
    Messages box;
    const std::string eps = "0 0 moveto\n10 0 lineto\n";
    EXPECT_TRUE(LoadSketch(WriteFile("upper.EPS", eps)));
    EXPECT_TRUE(LoadSketch(WriteFile("mixed.Eps", eps)));
    EXPECT_EQ(box.Count(), 0);
    for (const char* name : {"text.txt", "noextension", "eps.ps", "track.qo.bak"}) {
        MString path = WriteFile(name, eps);
        int32_t before = box.Count();
        EXPECT_FALSE(LoadSketch(path)) << name;
        ASSERT_EQ(box.Count(), before + 1) << name;
        EXPECT_EQ(box[before], CouldNotOpen(path));
    }
    // The track reader does not take an EPS file.
    MString track = WriteFile("eps.qo", eps);
    EXPECT_FALSE(LoadSketch(track));
    EXPECT_EQ(box[box.Count() - 1], CouldNotOpen(track));
}

TEST_F(LoadSketchTest, StepTwoSettingsStandAfterAFailure) {
    Messages box;
    Settings.Centre = false;
    Settings.Scale = false;
    Settings.MaxLinesPerCurve = 5;
    Settings.SaveSolid = true;
    Settings.SaveRoll = true;
    EXPECT_FALSE(LoadSketch(WriteFile("unknown.abc", "")));
    EXPECT_TRUE(Settings.Centre);
    EXPECT_TRUE(Settings.Scale);
    EXPECT_EQ(Settings.MaxLinesPerCurve, 100);
    EXPECT_TRUE(Settings.SaveSolid);
    EXPECT_TRUE(Settings.SaveRoll);
}

TEST_F(LoadSketchTest, MemoryAndFileLoadAlike) {
    Messages box;
    const std::string text = "%%Cinderlane Scale N\n0 0 moveto\n0 10 20 10 20 0 curveto\n"
                             "30 -5 lineto\n";
    ASSERT_TRUE(LoadSketch(WriteFile("same.eps", text)));
    std::vector<WSketchPoint> fromFile = Records(*TheSketch);
    ASSERT_TRUE(LoadSketchMemory(MString(u"same.eps"), text.data(), int32_t(text.size())));
    std::vector<WSketchPoint> fromMemory = Records(*TheSketch);
    ASSERT_EQ(fromFile.size(), fromMemory.size());
    for (size_t i = 0; i < fromFile.size(); i++)
        EXPECT_TRUE(SameRecordBits(fromFile[i], fromMemory[i])) << i;
    EXPECT_FALSE(LoadSketchMemory(MString(u"none.eps"), nullptr, 0));
    EXPECT_EQ(box[0], u"Could not open:\n\n\"none.eps\"");
}

// ---- The undo ring

TEST_F(LoadSketchTest, ALoadLeavesItsStateAloneInTheRing) {
    Messages box;
    Fill(*TheSketch, {Record(0, 0, 0, KindMove), Record(5, 5, 0, KindLine)});
    TheSketch->Commit();
    TheSketch->Points[1].Position.x = 6;
    TheSketch->Commit();
    ASSERT_GE(TheSketch->Undo->Depth, 3);

    ASSERT_TRUE(LoadSketch(WriteFile("ring.eps", "0 0 moveto\n10 0 lineto\n")));
    EXPECT_EQ(TheSketch->Undo->Depth, 1);
    EXPECT_EQ(TheSketch->Undo->RedoDepth, 0);
    EXPECT_EQ(TheSketch->Modified, 0);
    std::vector<WSketchPoint> loaded = Records(*TheSketch);
    UndoSketch();
    ASSERT_EQ(TheSketch->PointCount, 2);
    EXPECT_TRUE(SameRecordBits(TheSketch->Points[1], loaded[1]));
    // The ring's one state is the loaded sketch: a Commit finds no change.
    TheSketch->Commit();
    EXPECT_EQ(TheSketch->Modified, 0);
    EXPECT_EQ(TheSketch->Undo->Depth, 1);
}

TEST_F(LoadSketchTest, AFailedLoadCanBeUndone) {
    Messages box;
    ASSERT_TRUE(LoadSketch(WriteFile("before.eps", "0 0 moveto\n10 0 lineto\n5 5 lineto\n")));
    std::vector<WSketchPoint> before = Records(*TheSketch);
    TheSketch->Modified = 1;
    EXPECT_FALSE(LoadSketch(WriteFile("after.eps", "nothing here\n")));
    EXPECT_EQ(TheSketch->PointCount, 0);
    EXPECT_EQ(TheSketch->Modified, 0);
    EXPECT_EQ(TheSketch->Current, -1);
    EXPECT_EQ(TheSketch->Undo->Depth, 2);
    UndoSketch();
    ASSERT_EQ(TheSketch->PointCount, 3);
    for (int32_t i = 0; i < 3; i++)
        EXPECT_TRUE(SameRecordBits(TheSketch->Points[i], before[size_t(i)])) << i;
}

TEST_F(LoadSketchTest, FinishLoadWithTooFewPoints) {
    Fill(*TheSketch, {Record(3, 4, 0, KindMove)});
    TheSketch->Modified = 1;
    EXPECT_FALSE(FinishLoad(true, true));
    EXPECT_EQ(TheSketch->PointCount, 0);
    EXPECT_EQ(TheSketch->Modified, 0);
    Fill(*TheSketch, {});
    EXPECT_FALSE(FinishLoad(false, false));
}

// ---- Round trips through the writer

namespace {

// Coordinates of a few binary places, so that six decimals hold them exactly.
const char* const FlatSource = "%%Cinderlane Centre N\n%%Cinderlane Scale N\n"
                               "0 0 moveto\n40 0 lineto\n40 30 lineto\n0 30 lineto\n0 0 lineto\n"
                               "60 0 moveto\n70 -10 90 -10 100 0 curveto\n"
                               "110 10 110 30 100 40 curveto\n80 50 60 30 60 0 curveto\n";

const char* const SpaceSourceWithRoll =
    "%%Cinderlane Centre N\n%%Cinderlane Scale N\n"
    "0 0 0 0 1 0 moveto\n10 5 2.5 20 5 5 30 0 7.5 0 1 0 curveto\n"
    "40 10 10 1 0 0 lineto\n45 20 12.5 0 0.5 0.5 lineto\n"
    "35 30 15 40 35 17.5 50 30 20 0 1 0 curveto\n"
    "-20 0 5 0 1 0 moveto\n-30 0 10 0 1 0 lineto\n-30 20 10 0 1 0 lineto\n"
    "-20 0 5 0 1 0 lineto\n";

const char* const SpaceSource = "%%Cinderlane Centre N\n%%Cinderlane Scale N\n"
                                "0 0 0 moveto\n10 5 2.5 20 5 5 30 0 7.5 curveto\n"
                                "40 10 10 lineto\n45 20 12.5 lineto\n"
                                "35 30 15 40 35 17.5 50 30 20 curveto\n"
                                "-20 0 5 moveto\n-30 0 10 lineto\n-30 20 10 lineto\n"
                                "-20 0 5 lineto\n";

struct SaveForm {
    const char* Name;
    const char* Source;
    bool Roll, Solid, Centre, Scale;
    int32_t Max;
};

const SaveForm SaveForms[] = {
    {"2D stroked", FlatSource, false, false, false, false, 100},
    {"2D solid, centred and scaled, no MaxLinesPerCurve", FlatSource, false, true, true, true, 0},
    {"2D with roll (3D form), centred", FlatSource, true, false, true, false, 250},
    {"2D solid with roll, scaled", FlatSource, true, true, false, true, 100},
    {"3D stroked, scaled", SpaceSource, false, false, false, true, 100},
    {"3D stroked, centred and scaled", SpaceSource, false, false, true, true, -1},
    {"3D with roll", SpaceSourceWithRoll, true, false, false, false, 0},
    {"3D with roll, centred and scaled", SpaceSourceWithRoll, true, false, true, true, 7},
};

} // namespace

TEST_F(LoadSketchTest, SavedSketchesLoadAgainInEveryForm) {
    Messages box;
    for (const SaveForm& form : SaveForms) {
        SCOPED_TRACE(form.Name);
        ASSERT_TRUE(LoadSketch(WriteFile("source.eps", form.Source)));

        Settings.SaveRoll = form.Roll;
        Settings.SaveSolid = form.Solid;
        Settings.Centre = form.Centre;
        Settings.Scale = form.Scale;
        Settings.MaxLinesPerCurve = form.Max;
        MString path = PathText(Folder() / "saved.eps");
        ASSERT_TRUE(SaveEps(path));
        // What was saved, after the save's own clean-up, centred and scaled
        // as the file asks.
        WSketch expected;
        Fill(expected, Records(*TheSketch));
        expected.TransformAll(form.Centre, form.Scale);

        Settings.SaveRoll = !form.Roll;
        Settings.SaveSolid = !form.Solid;
        Settings.Centre = !form.Centre;
        Settings.Scale = !form.Scale;
        Settings.MaxLinesPerCurve = 12345;
        ASSERT_TRUE(LoadSketch(path));
        EXPECT_EQ(Settings.SaveRoll, form.Roll);
        EXPECT_EQ(Settings.SaveSolid, form.Solid);
        EXPECT_EQ(Settings.Centre, form.Centre);
        EXPECT_EQ(Settings.Scale, form.Scale);
        EXPECT_EQ(Settings.MaxLinesPerCurve, form.Max > 0 ? form.Max : 100);

        const WSketch& loaded = *TheSketch;
        ASSERT_EQ(loaded.PointCount, expected.PointCount);
        EXPECT_EQ(Kinds(loaded), Kinds(expected));
        // Six decimals of the file, and the rounding of the centring and
        // scaling, which the reader repeats on values that differ slightly.
        const float tolerance = form.Centre || form.Scale ? 2e-5f : 1e-6f;
        for (int32_t i = 0; i < loaded.PointCount; i++) {
            const WSketchPoint& a = loaded.Points[i];
            const WSketchPoint& b = expected.Points[i];
            EXPECT_TRUE(Near(a.Position, b.Position, tolerance)) << i;
            EXPECT_TRUE(Near(a.HandleIn, b.HandleIn, tolerance)) << i;
            EXPECT_TRUE(Near(a.HandleOut, b.HandleOut, tolerance)) << i;
            EXPECT_TRUE(Near(a.Roll, b.Roll, 1e-5f)) << i;
            EXPECT_EQ(a.Smooth, b.Smooth) << i;
            EXPECT_EQ(loaded.FindTwin(i), expected.FindTwin(i)) << i;
        }
        EXPECT_TRUE(CheckInvariants(loaded));
    }
    EXPECT_EQ(box.Count(), 0);
}

TEST_F(LoadSketchTest, ACurveWhoseFirstHandleHasNoLengthIsLostOnTheWayBack) {
    Messages box;
    auto rec = [](uint8_t kind, MPoint3 p, MPoint3 in, MPoint3 out) {
        WSketchPoint r;
        r.Position = p, r.HandleIn = in, r.HandleOut = out, r.Roll = P3(0, 0, 1), r.Kind = kind;
        return r;
    };
    // The line's point keeps its outgoing handle on itself; the curve behind
    // it is written with that handle first.
    Fill(*TheSketch, {rec(KindMove, P3(0, 0, 0), P3(-3, 0, 0), P3(3, 0, 0)),
                      rec(KindLine, P3(10, 0, 0), P3(7, 0, 0), P3(10, 0, 0)),
                      rec(KindCurve, P3(20, 10, 0), P3(15, 10, 0), P3(25, 10, 0)),
                      rec(KindLine, P3(30, 10, 0), P3(27, 10, 0), P3(33, 10, 0))});
    Settings.SaveRoll = false;
    Settings.SaveSolid = false;
    Settings.Centre = false;
    Settings.Scale = false;
    MString path = PathText(Folder() / "nohandle.eps");
    ASSERT_TRUE(SaveEps(path));
    ASSERT_EQ(Kinds(*TheSketch), "0121");
    ASSERT_TRUE(LoadSketch(path));
    // The line that followed the curve now starts from the line's end.
    EXPECT_EQ(Kinds(*TheSketch), "011");
    EXPECT_TRUE(Near(TheSketch->Points[1].Position, P3(10, 0, 0), 0));
    EXPECT_TRUE(Near(TheSketch->Points[2].Position, P3(30, 10, 0), 0));
    EXPECT_TRUE(Near(TheSketch->Points[2].HandleIn, P3(24, 7, 0), 1e-5f));
}

TEST_F(LoadSketchTest, FlatSketchSavedIn2DComesBackAtDepthZero) {
    Messages box;
    Fill(*TheSketch,
         {Record(0, 0, 5, KindMove), Record(10, 0, 5, KindLine), Record(10, 10, 5, KindLine)});
    Settings.SaveRoll = false;
    Settings.SaveSolid = false;
    Settings.Centre = false;
    Settings.Scale = false;
    MString path = PathText(Folder() / "depth.eps");
    ASSERT_TRUE(SaveEps(path));
    ASSERT_TRUE(LoadSketch(path));
    ASSERT_EQ(TheSketch->PointCount, 3);
    for (int32_t i = 0; i < 3; i++)
        EXPECT_EQ(TheSketch->Points[i].Position.z, 0) << i;
    EXPECT_TRUE(Near(TheSketch->Points[2].Position, P3(10, 10, 0), 0));
}

// ---- Track files

namespace {

// The start point a "Move" line gives, as the loader is to build it: the
// heading times the single-precision degree factor, in floats.
WSketchPoint TrackStart(float x, float y, float z, float degrees) {
    float h = degrees * 0.017453292f;
    MPoint3 d{10.0f * std::sin(h), 0, 10.0f * std::cos(h)};
    WSketchPoint point;
    point.Position = P3(x, y, z);
    point.HandleIn = point.Position - d;
    point.HandleOut = point.Position + d;
    point.Roll = P3(std::cos(h), 0, -std::sin(h));
    point.Smooth = 0;
    point.Kind = KindMove;
    return point;
}

std::string Quoted(const MString& name) {
    std::string out = "\"";
    for (int32_t i = 0; i < name.Length; i++)
        out += char(name.Text[i]);
    return out + "\"";
}

std::string Number(float value) {
    MString text(value);
    std::string out;
    for (int32_t i = 0; i < text.Length; i++)
        out += char(text.Text[i]);
    return out;
}

} // namespace

TEST_F(LoadSketchTest, TrackFileRunsEveryElementThroughTheGenerator) {
    Messages box;
    std::string text = "Quillmere 1\nMove 0 5 0 90\n";
    for (int32_t id = 0; id < ElementTypeCount; id++) {
        const WElementRow& row = *ElementRow(id);
        text += "Element " + Quoted(row.Name);
        for (float p : row.Default)
            text += " " + Number(p);
        text += "\n";
    }
    ASSERT_TRUE(LoadSketch(WriteFile("all.qo", text)));
    EXPECT_EQ(box.Count(), 0);
    std::vector<WSketchPoint> loaded = Records(*TheSketch);
    EXPECT_FALSE(Settings.Centre);
    EXPECT_FALSE(Settings.Scale);
    EXPECT_FALSE(Settings.SaveSolid);
    EXPECT_TRUE(Settings.SaveRoll);
    EXPECT_EQ(TheSketch->Undo->Depth, 1);
    EXPECT_EQ(TheSketch->Modified, 0);

    // The same ride built by hand: the start point, then each element with
    // the row's own defaults, then the finish without Centre and Scale.
    TheSketch->PointCount = 0;
    WSketchPoint start = TrackStart(0, 5, 0, 90);
    TheSketch->AppendPoints(&start, 1);
    int32_t counts[ElementTypeCount];
    for (int32_t id = 0; id < ElementTypeCount; id++) {
        const WElementRow& row = *ElementRow(id);
        int32_t before = TheSketch->PointCount;
        TheElement->Add(uint32_t(id), row.Default[0], row.Default[1], row.Default[2],
                        row.Default[3]);
        counts[id] = TheSketch->PointCount - before;
    }
    ASSERT_TRUE(FinishLoad(false, false));
    std::vector<WSketchPoint> expected = Records(*TheSketch);
    ASSERT_EQ(loaded.size(), expected.size());
    for (size_t i = 0; i < loaded.size(); i++)
        EXPECT_TRUE(SameRecordBits(loaded[i], expected[i])) << i;
    // Each element added something, so each name was found.
    for (int32_t id = 0; id < ElementTypeCount; id++)
        EXPECT_GT(counts[id], 0) << id;
}

TEST_F(LoadSketchTest, TrackMoveHeadings) {
    Messages box;
    // A move at the very end becomes a line in the clean-up; nothing else
    // touches its handles, so they are still those of the heading.
    ASSERT_TRUE(LoadSketch(WriteFile("moves.qo", "Quillmere\nMove 1 2 3 0\n"
                                                 "Element \"Straight line\" 30\n"
                                                 "Move 50 0 0 90\n")));
    const WSketch& s = *TheSketch;
    ASSERT_GE(s.PointCount, 3);
    EXPECT_TRUE(Near(s.Points[0].Position, P3(1, 2, 3), 0));
    const WSketchPoint& last = s.Points[s.PointCount - 1];
    EXPECT_TRUE(Near(last.Position, P3(50, 0, 0), 0));
    EXPECT_TRUE(Near(last.HandleIn, P3(40, 0, 0), 1e-5f));
    EXPECT_TRUE(Near(last.HandleOut, P3(60, 0, 0), 1e-5f));
    EXPECT_TRUE(Near(last.Roll, P3(0, 0, -1), 1e-5f));
    // Exactly: 90 * 0.017453292 in floats is 1.5707964, the float next to
    // pi/2, which lies 4.3711390e-8 beyond it; so sin h is 1 and cos h is
    // -4.3711388e-8, and D = (10, 0, -4.3711388e-7). A factor taken in
    // double would give 1.5707963, short of pi/2, and a z of the other sign.
    EXPECT_EQ(last.HandleIn.x, 40.0f);
    EXPECT_EQ(last.HandleOut.x, 60.0f);
    EXPECT_NEAR(last.HandleIn.z, 4.3711388e-7, 1e-13);
    EXPECT_NEAR(last.HandleOut.z, -4.3711388e-7, 1e-13);
}

TEST_F(LoadSketchTest, TrackStartPointIsBuiltFromTheHeading) {
    Messages box;
    for (float degrees : {0.0f, 90.0f, 180.0f, -45.0f, 400.0f}) {
        SCOPED_TRACE(degrees);
        // A move and a straight element: the element turns the start's
        // HandleOut into its own start handle, so compare the rest.
        std::string text =
            "Quillmere\nMove 4 5 6 " + Number(degrees) + "\nElement \"Straight line\" 30\n";
        ASSERT_TRUE(LoadSketch(WriteFile("heading.qo", text)));
        WSketchPoint want = TrackStart(4, 5, 6, degrees);
        const WSketchPoint& got = TheSketch->Points[0];
        EXPECT_TRUE(Near(got.Position, want.Position, 0));
        EXPECT_EQ(got.Kind, KindMove);
        float h = degrees * 0.017453292f;
        // The direction of travel is (sin h, 0, cos h).
        MPoint3 out = got.HandleOut - got.Position;
        Normalize3(out);
        EXPECT_TRUE(Near(out, P3(std::sin(h), 0, std::cos(h)), 1e-5f));
    }
}

TEST_F(LoadSketchTest, UnknownElementsCostOneMessageEach) {
    Messages box;
    MString path = WriteFile("unknown.qo", "Quillmere\nMove 0 0 0 0\n"
                                           "Element Loop 30\n"
                                           "Element \"Straight line\" 30\n"
                                           "Element \"straight line\" 30\n"
                                           "Element \"\" 30\n"
                                           "Element \"Straight line\" 40\n");
    ASSERT_TRUE(LoadSketch(path));
    ASSERT_EQ(box.Count(), 3);
    EXPECT_EQ(box[0], u"Unknown element \"Loop\" in:\n\n\"" + Text(path) + u"\"");
    EXPECT_EQ(box[1], u"Unknown element \"straight line\" in:\n\n\"" + Text(path) + u"\"");
    EXPECT_EQ(box[2], u"Unknown element \"\" in:\n\n\"" + Text(path) + u"\"");
    for (int32_t i = 0; i < 3; i++)
        EXPECT_EQ(box.Icons[i], IconError);
    std::vector<WSketchPoint> loaded = Records(*TheSketch);

    // The two known lines alone give the same ride.
    ASSERT_TRUE(LoadSketch(WriteFile("known.qo", "Quillmere\nMove 0 0 0 0\n"
                                                 "Element \"Straight line\" 30\n"
                                                 "Element \"Straight line\" 40\n")));
    ASSERT_EQ(Records(*TheSketch).size(), loaded.size());
    for (size_t i = 0; i < loaded.size(); i++)
        EXPECT_TRUE(SameRecordBits(TheSketch->Points[int32_t(i)], loaded[i])) << i;
}

TEST_F(LoadSketchTest, OtherTrackLinesAreSkipped) {
    Messages box;
    ASSERT_TRUE(LoadSketch(WriteFile("skip.qo", "Quillmere\n# a comment\n\nmove 9 9 9 0\n"
                                                "Move 0 0 0 0\nELEMENT x\n"
                                                "Element \"Straight line\" 30\nclose\n")));
    EXPECT_EQ(box.Count(), 0);
    EXPECT_TRUE(Near(TheSketch->Points[0].Position, P3(0, 0, 0), 0));
    EXPECT_NE(TheSketch->FindTwin(0), TheSketch->PointCount - 1);
}

TEST_F(LoadSketchTest, CloseCopiesTheFirstPointOverTheLast) {
    Messages box;
    ASSERT_TRUE(LoadSketch(WriteFile("close.qo", "Quillmere\nMove 0 0 0 0\n"
                                                 "Element Turn 180 30 0 0\n"
                                                 "Element Turn 90 30 0 0\nClose\n")));
    // The start, two points of the half turn, one of the quarter turn; the
    // last of them becomes the start's copy and keeps its own KindCurve (a
    // KindMove there would have come out of the clean-up as a line).
    const WSketch& s = *TheSketch;
    ASSERT_EQ(s.PointCount, 4);
    const int32_t last = 3;
    EXPECT_EQ(s.FindTwin(0), last);
    EXPECT_EQ(s.Points[last].Kind, KindCurve);
    EXPECT_EQ(s.Points[0].Kind, KindMove);
    EXPECT_TRUE(Near(s.Points[last].Position, s.Points[0].Position, 0));
    EXPECT_TRUE(Near(s.Points[last].HandleIn, s.Points[0].HandleIn, 0));
    EXPECT_TRUE(Near(s.Points[last].HandleOut, s.Points[0].HandleOut, 0));
    // Heading 0: the start's HandleIn is (0, 0, -10); its HandleOut is the
    // half turn's start handle, 30 * 4/3 * tan(pi/8) = 16.5685 along +Z.
    EXPECT_TRUE(Near(s.Points[0].HandleIn, P3(0, 0, -10), 0));
    EXPECT_TRUE(Near(s.Points[0].HandleOut, P3(0, 0, 16.5685f), 1e-4f));
    EXPECT_TRUE(CheckInvariants(s));
}

TEST_F(LoadSketchTest, CloseOnATrackOfOnePointDoesNothing) {
    Messages box;
    // The lone start point stays alone, and one point is no sketch.
    MString path = WriteFile("one.qo", "Quillmere\nMove 0 0 0 0\nClose\n");
    EXPECT_FALSE(LoadSketch(path));
    ASSERT_EQ(box.Count(), 1);
    EXPECT_EQ(box[0], CouldNotOpen(path));
    // Two start points: Close turns the second into a copy of the first.
    ASSERT_FALSE(LoadSketch(WriteFile("two.qo", "Quillmere\nMove 0 0 0 0\nMove 10 0 0 0\n"
                                                "Close\n")));
    EXPECT_EQ(TheSketch->PointCount, 0);
}

TEST_F(LoadSketchTest, AWrongFirstLineCannotBeOpened) {
    Messages box;
    const char* const bodies[] = {"",
                                  "\n",
                                  "quillmere\nMove 0 0 0 0\nElement \"Straight line\" 30\n",
                                  "Quillmere5\nMove 0 0 0 0\nElement \"Straight line\" 30\n",
                                  "Move 0 0 0 0\nElement \"Straight line\" 30\n",
                                  "\nQuillmere\nMove 0 0 0 0\nElement \"Straight line\" 30\n"};
    for (const char* body : bodies) {
        MString path = WriteFile("wrong.qo", body);
        int32_t before = box.Count();
        EXPECT_FALSE(LoadSketch(path)) << body;
        ASSERT_EQ(box.Count(), before + 1) << body;
        EXPECT_EQ(box[before], CouldNotOpen(path));
        EXPECT_EQ(TheSketch->PointCount, 0);
    }
    MString missing = PathText(Folder() / "missing.QO");
    EXPECT_FALSE(LoadSketch(missing));
    EXPECT_EQ(box[box.Count() - 1], CouldNotOpen(missing));
    // A quoted first token counts as the word.
    EXPECT_TRUE(LoadSketch(
        WriteFile("quoted.qo", "\"Quillmere\" any\nMove 0 0 0 0\nElement \"Straight line\" 30\n")));
}

TEST_F(LoadSketchTest, TrackFilesInEveryEncoding) {
    Messages box;
    const std::string text = "Quillmere 1\r\nMove 0 0 0 45\r\nElement \"Straight line\" 30\r\n"
                             "Element Turn 90 30 0 20\r\n";
    ASSERT_TRUE(LoadSketch(WriteFile("plain.qo", text)));
    std::vector<WSketchPoint> plain = Records(*TheSketch);
    std::string utf16le = "\xff\xfe", utf16be = "\xfe\xff", utf8 = "\xef\xbb\xbf" + text;
    for (char c : text) {
        utf16le += c, utf16le += '\0';
        utf16be += '\0', utf16be += c;
    }
    for (const std::string& bytes : {utf16le, utf16be, utf8}) {
        ASSERT_TRUE(LoadSketch(WriteFile("encoded.QO", bytes)));
        ASSERT_EQ(Records(*TheSketch).size(), plain.size());
        for (size_t i = 0; i < plain.size(); i++)
            EXPECT_TRUE(SameRecordBits(TheSketch->Points[int32_t(i)], plain[i])) << i;
    }
    ASSERT_TRUE(LoadSketchMemory(MString(u"memory.qo"), utf16be.data(), int32_t(utf16be.size())));
    EXPECT_EQ(Records(*TheSketch).size(), plain.size());
    EXPECT_EQ(box.Count(), 0);
}

// ---- Malformed input

TEST_F(LoadSketchTest, GarbageNeverLoads) {
    Messages box;
    std::string garbage;
    uint32_t state = 2024;
    for (int i = 0; i < 50000; i++) {
        state = state * 1664525u + 1013904223u;
        garbage += char(state >> 24);
    }
    MString eps = WriteFile("garbage.eps", garbage);
    EXPECT_FALSE(LoadSketch(eps));
    MString track = WriteFile("garbage.qo", garbage);
    EXPECT_FALSE(LoadSketch(track));
    ASSERT_EQ(box.Count(), 2);
    EXPECT_EQ(box[0], CouldNotOpen(eps));
    EXPECT_EQ(box[1], CouldNotOpen(track));
}

TEST_F(LoadSketchTest, ALineOfTenThousandTokens) {
    Messages box;
    std::string tokens;
    for (int i = 0; i < 10000; i++)
        tokens += "7 ";
    ASSERT_TRUE(LoadSketch(WriteFile("tokens.eps", "0 0 moveto\n" + tokens + "lineto\n" + tokens +
                                                       "\n100 0 lineto\n")));
    EXPECT_EQ(TheSketch->PointCount, 2);
    MString track = WriteFile("tokens.qo", "Quillmere " + tokens + "\nMove 0 0 0 0 " + tokens +
                                               "\nElement \"Straight line\" 30 " + tokens + "\n");
    ASSERT_TRUE(LoadSketch(track));
    EXPECT_EQ(box.Count(), 0);
}

TEST_F(LoadSketchTest, InfiniteNumbersPassThrough) {
    Messages box;
    // Kept as they are, an infinite coordinate stays in the sketch.
    ASSERT_TRUE(LoadSketch(WriteFile("inf.eps", "%%Cinderlane Centre N\n%%Cinderlane Scale N\n"
                                                "0 0 moveto\n1e40 0 lineto\n")));
    ASSERT_EQ(TheSketch->PointCount, 2);
    EXPECT_TRUE(std::isinf(TheSketch->Points[1].Position.x));
    // Centring and scaling an infinite extent leaves no number at all.
    ASSERT_TRUE(LoadSketch(WriteFile("inf2.eps", "0 0 moveto\ninf 0 lineto\n")));
    ASSERT_EQ(TheSketch->PointCount, 2);
    EXPECT_TRUE(std::isnan(TheSketch->Points[1].Position.x));
    // A track file's numbers go the same way.
    ASSERT_TRUE(LoadSketch(WriteFile("inf.qo", "Quillmere\nMove 1e40 -inf nan 0\n"
                                               "Element \"Straight line\" 30\n")));
    EXPECT_TRUE(std::isinf(TheSketch->Points[0].Position.x));
    EXPECT_EQ(TheSketch->Points[0].Position.z, 0);
    EXPECT_EQ(box.Count(), 0);
}

TEST_F(LoadSketchTest, CairoFileWithEndPageSetupAtItsVeryEnd) {
    Messages box;
    ASSERT_TRUE(LoadSketch(WriteFile("cairoend.eps", "%%Creator: cairo 1.16.0\n"
                                                     "0 0 moveto\n100 0 lineto\n%%EndPageSetup")));
    EXPECT_EQ(TheSketch->PointCount, 2);
    MString bare = WriteFile("cairobare.eps", "%%Creator: cairo 1.16.0\n%%EndPageSetup");
    EXPECT_FALSE(LoadSketch(bare));
    ASSERT_EQ(box.Count(), 1);
    EXPECT_EQ(box[0], CouldNotOpen(bare));
}

// ---- Files written by cairo

namespace {

struct Expected {
    bool Solid = false;
    WSketch Sketch; // the path as drawn, before Centre and Scale
};

// Reads the list that make_cairo_eps.py writes beside each file.
bool ReadExpected(const fs::path& path, Expected& expected) {
    MTextFile file(PathText(path), false, false, Encoding8Bit);
    if (!file.IsOpen) return false;
    std::vector<WSketchPoint> records;
    while (file.ReadLine()) {
        MString word = file.Token(0);
        auto at = [&](int32_t first) {
            return P3(ParseFloat(file.Token(first)), ParseFloat(file.Token(first + 1)), 0);
        };
        WSketchPoint point;
        if (word == MString(u"solid")) {
            expected.Solid = file.TokenBool(1);
            continue;
        } else if (word == MString(u"M")) {
            point.Kind = KindMove;
            point.Position = at(1);
        } else if (word == MString(u"L")) {
            point.Kind = KindLine;
            point.Position = at(1);
        } else if (word == MString(u"C")) {
            if (records.empty()) return false;
            records.back().HandleOut = at(1);
            point.HandleIn = at(3);
            point.Kind = KindCurve;
            point.Position = at(5);
        } else {
            continue;
        }
        records.push_back(point);
    }
    Fill(expected.Sketch, records);
    return !records.empty();
}

#ifndef _WIN32
// Runs a script of tests/data with its output folder; true when it worked.
// The scripts need the build machine's tools, so the Windows build, under
// Wine, runs none.
bool RunScript(const std::string& command, const fs::path& output) {
    std::error_code ignored;
    fs::remove_all(output, ignored);
    std::string line = command + " '" + output.string() + "'";
    return std::system(line.c_str()) == 0;
}
#endif

} // namespace

TEST_F(LoadSketchTest, CairoOutputLoadsAsDrawn) {
    Messages box;
    // The files written when the tests were, which are kept beside their
    // script, and natively those written now.
    std::vector<fs::path> folders = {Rooted(TEST_SOURCE_DIR) / "tests/data/cairo"};
#ifndef _WIN32
    const fs::path fresh = Folder() / "cairo";
    ASSERT_TRUE(RunScript(std::string("/usr/bin/python3 '") + TEST_SOURCE_DIR +
                              "/tests/data/make_cairo_eps.py'",
                          fresh))
        << "python3 and python3-cairo come with tools/setup.sh";
    folders.push_back(fresh);
#endif
    for (const fs::path& output : folders)
        for (const char* name : {"open", "hole", "transformed", "nested", "long"}) {
            SCOPED_TRACE(output.string() + " " + name);
            Expected expected;
            ASSERT_TRUE(ReadExpected(output / (std::string(name) + ".txt"), expected));
            expected.Sketch.TransformAll(true, true);

            ASSERT_TRUE(LoadSketch(PathText(output / (std::string(name) + ".eps"))));
            const WSketch& loaded = *TheSketch;
            const WSketch& want = expected.Sketch;
            EXPECT_EQ(Settings.SaveSolid, expected.Solid);
            EXPECT_FALSE(Settings.SaveRoll);
            ASSERT_EQ(Kinds(loaded), Kinds(want));
            for (int32_t i = 0; i < loaded.PointCount; i++) {
                EXPECT_TRUE(Near(loaded.Points[i].Position, want.Points[i].Position, 0.005f)) << i;
                EXPECT_EQ(loaded.FindTwin(i), want.FindTwin(i)) << i;
                if (loaded.Points[i].Kind == KindCurve) {
                    EXPECT_TRUE(
                        Near(loaded.Points[i - 1].HandleOut, want.Points[i - 1].HandleOut, 0.005f))
                        << i;
                    EXPECT_TRUE(Near(loaded.Points[i].HandleIn, want.Points[i].HandleIn, 0.005f))
                        << i;
                }
            }
            EXPECT_TRUE(CheckInvariants(loaded));
        }
    EXPECT_EQ(box.Count(), 0);
}

// ---- Files written by potrace

namespace {

struct Box {
    float MinX = 1e30f, MaxX = -1e30f, MinY = 1e30f, MaxY = -1e30f;
};

// The bounds of each curve, from its drawn points.
std::vector<Box> CurveBounds(const WSketch& sketch) {
    std::vector<Box> boxes;
    for (int32_t start = 0; start < sketch.PointCount; start = sketch.CurveEnd(start) + 1) {
        WSketch curve;
        std::vector<WSketchPoint> records;
        for (int32_t i = start; i <= sketch.CurveEnd(start); i++)
            records.push_back(sketch.Points[i]);
        Fill(curve, records);
        float b[6];
        curve.GetBounds(b);
        boxes.push_back(Box{b[0], b[1], b[2], b[3]});
    }
    return boxes;
}

int32_t ClosedCurves(const WSketch& sketch) {
    int32_t closed = 0;
    for (int32_t i = 0; i < sketch.PointCount; i++)
        if (sketch.Points[i].Kind == KindMove && sketch.FindTwin(i) >= 0) closed++;
    return closed;
}

int32_t Curves(const WSketch& sketch) {
    int32_t curves = 0;
    for (int32_t i = 0; i < sketch.PointCount; i++)
        if (sketch.Points[i].Kind == KindMove) curves++;
    return curves;
}

// The smallest and largest distance of the drawn path from the origin.
void RadiusRange(const WSketch& sketch, int32_t start, float& least, float& most) {
    least = 1e30f, most = 0;
    for (int32_t i = start + 1; i <= sketch.CurveEnd(start); i++) {
        MPoint3 controls[4] = {sketch.Points[i - 1].Position, sketch.Points[i - 1].HandleOut,
                               sketch.Points[i].HandleIn, sketch.Points[i].Position};
        bool curve = sketch.Points[i].Kind == KindCurve;
        for (int32_t k = 0; k <= 16; k++) {
            MPoint3 p = curve ? BezierPoint(controls, 0, 3, float(k) / 16)
                              : controls[0] + (controls[3] - controls[0]) * (k / 16.0);
            float r = Length3(p);
            least = r < least ? r : least;
            most = r > most ? r : most;
        }
    }
}

} // namespace

// The files traced now, and the ones traced when the tests were written,
// which are kept beside their script.
class LoadSketchPotrace : public LoadSketchTest {
  protected:
    static bool Made;
    // Natively the bitmaps are drawn and traced anew, once for the suite; the
    // Windows build, under Wine, has the kept files alone.
    static void SetUpTestSuite() {
#ifndef _WIN32
        Made = RunScript(std::string("sh '") + TEST_SOURCE_DIR + "/tests/data/make_potrace_eps.sh'",
                         Folder() / "potrace");
#else
        Made = true;
#endif
    }
    void SetUp() override {
        LoadSketchTest::SetUp();
        ASSERT_TRUE(Made) << "ImageMagick and potrace come with tools/setup.sh";
    }
    static std::vector<fs::path> Folders() {
        std::vector<fs::path> folders = {Rooted(TEST_SOURCE_DIR) / "tests/data/potrace"};
#ifndef _WIN32
        folders.push_back(Folder() / "potrace");
#endif
        return folders;
    }
    void Load(const fs::path& path) {
        ASSERT_TRUE(LoadSketch(PathText(path)));
        EXPECT_TRUE(Settings.SaveSolid);
        EXPECT_FALSE(Settings.SaveRoll);
        EXPECT_TRUE(CheckInvariants(*TheSketch));
    }
};

bool LoadSketchPotrace::Made = false;

TEST_F(LoadSketchPotrace, FilledCircle) {
    Messages box;
    for (const fs::path& folder : Folders()) {
        SCOPED_TRACE(folder.string());
        Load(folder / "circle.eps");
        const WSketch& s = *TheSketch;
        EXPECT_EQ(Curves(s), 1);
        EXPECT_EQ(ClosedCurves(s), 1);
        std::vector<Box> boxes = CurveBounds(s);
        ASSERT_EQ(boxes.size(), 1u);
        float width = boxes[0].MaxX - boxes[0].MinX, height = boxes[0].MaxY - boxes[0].MinY;
        EXPECT_NEAR(width > height ? width : height, 200, 0.01);
        EXPECT_NEAR(width > height ? height : width, 200, 2);
        float least, most;
        RadiusRange(s, 0, least, most);
        EXPECT_GT(least, 97);
        EXPECT_LT(most, 101.5);
    }
    EXPECT_EQ(box.Count(), 0);
}

TEST_F(LoadSketchPotrace, Ring) {
    Messages box;
    for (const fs::path& folder : Folders()) {
        SCOPED_TRACE(folder.string());
        Load(folder / "ring.eps");
        const WSketch& s = *TheSketch;
        EXPECT_EQ(Curves(s), 2);
        EXPECT_EQ(ClosedCurves(s), 2);
        int32_t second = s.CurveEnd(0) + 1;
        float least, most;
        RadiusRange(s, 0, least, most);
        EXPECT_GT(least, 97);
        EXPECT_LT(most, 101.5);
        // The hole: 35 pixels of 70 cleared again.
        RadiusRange(s, second, least, most);
        EXPECT_GT(least, 48);
        EXPECT_LT(most, 52.5);
    }
}

TEST_F(LoadSketchPotrace, TwoLetters) {
    Messages box;
    // In pixels, the L covers columns 20 to 90 and the T columns 110 to 190,
    // both rows 20 to 180; the outline runs along the pixels' outer edges,
    // and the picture's rows run down. Centre (105.5, 99.5), scale 200 / 171.
    const double scale = 200.0 / 171.0;
    auto x = [&](double column) { return (column - 105.5) * scale; };
    auto y = [&](double row) { return (200 - row - 99.5) * scale; };
    for (const fs::path& folder : Folders()) {
        SCOPED_TRACE(folder.string());
        Load(folder / "letters.eps");
        const WSketch& s = *TheSketch;
        EXPECT_EQ(Curves(s), 2);
        EXPECT_EQ(ClosedCurves(s), 2);
        std::vector<Box> boxes = CurveBounds(s);
        ASSERT_EQ(boxes.size(), 2u);
        const Box& l = boxes[0].MinX < boxes[1].MinX ? boxes[0] : boxes[1];
        const Box& t = boxes[0].MinX < boxes[1].MinX ? boxes[1] : boxes[0];
        EXPECT_NEAR(l.MinX, x(20), 0.01);
        EXPECT_NEAR(l.MaxX, x(91), 0.01);
        EXPECT_NEAR(l.MinY, y(181), 0.01);
        EXPECT_NEAR(l.MaxY, y(20), 0.01);
        EXPECT_NEAR(t.MinX, x(110), 0.01);
        EXPECT_NEAR(t.MaxX, x(191), 0.01);
        EXPECT_NEAR(t.MinY, y(181), 0.01);
        EXPECT_NEAR(t.MaxY, y(20), 0.01);
    }
}

} // namespace

// ---- Foreign and broken files of the corpus

namespace {

// A loaded sketch that any later operation can work on: a move first, a
// count within the array, the selection cleared.
::testing::AssertionResult Sound(const WSketch& sketch) {
    if (sketch.PointCount < 0 || sketch.PointCount > sketch.Points.Count)
        return ::testing::AssertionFailure() << "count " << sketch.PointCount;
    if (sketch.PointCount > 0 && sketch.Points[0].Kind != KindMove)
        return ::testing::AssertionFailure() << "record 0 is no move";
    if (sketch.Current != -1) return ::testing::AssertionFailure() << "a selection";
    return ::testing::AssertionSuccess();
}

bool AllFinite(const WSketch& sketch) {
    for (int32_t i = 0; i < sketch.PointCount; i++) {
        const WSketchPoint& p = sketch.Points[i];
        for (const MPoint3* v : {&p.Position, &p.HandleIn, &p.HandleOut, &p.Roll})
            if (!std::isfinite(v->x) || !std::isfinite(v->y) || !std::isfinite(v->z)) return false;
    }
    return true;
}

} // namespace

TEST_F(LoadSketchTest, EpsOfGhostscriptCairoAndPotraceLoadsInSilence) {
    const struct {
        const char* Name;
        int32_t Points;
    } files[] = {
        {"gs-from-ps.eps", 9},       {"gs-from-pdf.eps", 9},         {"cairo.eps", 9},
        {"potrace-default.eps", 17}, {"potrace-corners.eps", 63},    {"potrace-round.eps", 13},
        {"potrace-coarse.eps", 17},  {"potrace-unoptimised.eps", 38}};
    std::vector<WSketchPoint> fromPostScript;
    for (const auto& file : files) {
        Messages messages;
        fs::path path = foreign::Folder() / file.Name;
        ASSERT_TRUE(LoadSketch(MString(path.u16string().c_str()))) << file.Name;
        EXPECT_EQ(messages.Count(), 0) << file.Name;
        EXPECT_EQ(TheSketch->PointCount, file.Points) << file.Name;
        EXPECT_EQ(TheSketch->Modified, 0) << file.Name;
        EXPECT_TRUE(Sound(*TheSketch)) << file.Name;
        EXPECT_TRUE(AllFinite(*TheSketch)) << file.Name;
        std::vector<WSketchPoint> records(TheSketch->Points.Data,
                                          TheSketch->Points.Data + TheSketch->PointCount);
        if (fromPostScript.empty()) {
            fromPostScript = records;
        } else if (std::string(file.Name) == "gs-from-pdf.eps") {
            // The same page through PDF gives the same sketch.
            ASSERT_EQ(records.size(), fromPostScript.size());
            for (size_t i = 0; i < records.size(); i++)
                EXPECT_TRUE(SameRecordBits(records[i], fromPostScript[i])) << i;
        }
    }
}

TEST_F(LoadSketchTest, PotracesCompressedEpsCannotBeOpened) {
    Messages messages;
    fs::path path = foreign::Folder() / "potrace-compressed.eps";
    EXPECT_FALSE(LoadSketch(MString(path.u16string().c_str())));
    ASSERT_EQ(messages.Count(), 1);
    EXPECT_EQ(messages[0], CouldNotOpen(MString(path.u16string().c_str())));
    EXPECT_EQ(messages.Icons[0], IconError);
    EXPECT_EQ(TheSketch->PointCount, 0);
}

// Every EPS of the corpus cut at ten places and with flipped bytes either
// loads in silence or says it could not be opened, once; the sketch is
// sound either way and the file on disk is left as it was.
TEST_F(LoadSketchTest, BrokenEpsLoadsOrCannotBeOpened) {
    int32_t loaded = 0, refused = 0;
    for (const std::string& name : foreign::Names(".eps")) {
        for (const foreign::BrokenCopy& copy : foreign::BrokenCopies(name)) {
            fs::path path = Folder() / copy.Name;
            scratch::WriteBytes(path, copy.Bytes);
            Messages messages;
            bool ok = LoadSketch(MString(path.u16string().c_str()));
            if (ok) {
                loaded++;
                EXPECT_EQ(messages.Count(), 0) << copy.Name;
                EXPECT_GE(TheSketch->PointCount, 2) << copy.Name;
            } else {
                refused++;
                ASSERT_EQ(messages.Count(), 1) << copy.Name;
                EXPECT_EQ(messages[0], CouldNotOpen(MString(path.u16string().c_str())))
                    << copy.Name;
                EXPECT_EQ(messages.Icons[0], IconError) << copy.Name;
            }
            EXPECT_EQ(TheSketch->Modified, 0) << copy.Name;
            EXPECT_TRUE(Sound(*TheSketch)) << copy.Name;
            EXPECT_TRUE(AllFinite(*TheSketch)) << copy.Name;
            EXPECT_EQ(scratch::ReadBytes(path), copy.Bytes) << copy.Name;
        }
    }
    // Both outcomes occur: early cuts keep too little, late ones enough.
    EXPECT_GT(loaded, 20);
    EXPECT_GT(refused, 20);
}

TEST_F(LoadSketchTest, TrackWithGarbageLinesSkipsThemAndNamesUnknownElements) {
    // Junk and lines of no command are passed over; "Nowhere" and an
    // Element line without a name each give their message. The two
    // straight pieces in line merge into one segment at the clean-up.
    Messages messages;
    fs::path path = foreign::Folder() / "garbage.qo";
    std::u16string file = path.u16string();
    ASSERT_TRUE(LoadSketch(MString(file.c_str())));
    ASSERT_EQ(messages.Count(), 2);
    EXPECT_EQ(messages[0], u"Unknown element \"Nowhere\" in:\n\n\"" + file + u"\"");
    EXPECT_EQ(messages[1], u"Unknown element \"\" in:\n\n\"" + file + u"\"");
    ASSERT_EQ(TheSketch->PointCount, 2);
    EXPECT_TRUE(Near(TheSketch->Points[1].Position, P3(0, 0, 75), 1e-3f));
    EXPECT_TRUE(AllFinite(*TheSketch));
}

TEST_F(LoadSketchTest, TrackWithNanParametersCountsThemAsZero) {
    // A start at the origin heading 0 (along +Z of the world); a straight
    // line and a loop of NaN (0) add nothing; the last line is 40 long.
    Messages messages;
    fs::path path = foreign::Folder() / "nan.qo";
    ASSERT_TRUE(LoadSketch(MString(path.u16string().c_str())));
    EXPECT_EQ(messages.Count(), 0);
    ASSERT_EQ(TheSketch->PointCount, 2);
    EXPECT_TRUE(AllFinite(*TheSketch));
    EXPECT_TRUE(Near(TheSketch->Points[0].Position, P3(0, 0, 0), 1e-3f));
    EXPECT_TRUE(Near(TheSketch->Points[1].Position, P3(0, 0, 40), 1e-3f));
}

TEST_F(LoadSketchTest, TrackWithHugeAndInfiniteNumbersLoadsWithoutHanging) {
    // Numbers beyond a float become infinity, which is taken as it stands:
    // the sketch may then hold numbers that are not finite. The load, the
    // writer and the bounds must still come to an end.
    for (const char* name : {"huge.qo", "infinity.qo"}) {
        Messages messages;
        fs::path path = foreign::Folder() / name;
        EXPECT_TRUE(LoadSketch(MString(path.u16string().c_str()))) << name;
        EXPECT_EQ(messages.Count(), 0) << name;
        EXPECT_GE(TheSketch->PointCount, 2) << name;
        EXPECT_TRUE(Sound(*TheSketch)) << name;
        EXPECT_FALSE(AllFinite(*TheSketch)) << name;
        float bounds[6];
        TheSketch->GetBounds(bounds);
        EXPECT_FALSE(MakeSketchEps(*TheSketch, Settings).IsEmpty()) << name;
        TheSketch->CleanUp();
    }
}

TEST_F(LoadSketchTest, TrackWithVeryLongLinesLoads) {
    // A first line of 100,000 characters and a line of 20,000 numbers.
    Messages messages;
    fs::path path = foreign::Folder() / "long-lines.qo";
    ASSERT_TRUE(LoadSketch(MString(path.u16string().c_str())));
    EXPECT_EQ(messages.Count(), 0);
    ASSERT_EQ(TheSketch->PointCount, 2);
    EXPECT_TRUE(Near(TheSketch->Points[1].Position, P3(0, 0, 42), 1e-3f));
}

TEST_F(LoadSketchTest, TrackWithAWrongFirstWordCannotBeOpened) {
    Messages messages;
    fs::path path = foreign::Folder() / "wrong-first-line.qo";
    Settings.SaveRoll = false;
    Settings.SaveSolid = true;
    EXPECT_FALSE(LoadSketch(MString(path.u16string().c_str())));
    ASSERT_EQ(messages.Count(), 1);
    EXPECT_EQ(messages[0], CouldNotOpen(MString(path.u16string().c_str())));
    EXPECT_EQ(TheSketch->PointCount, 0);
    // The branch's settings stand after the failure.
    EXPECT_FALSE(Settings.Centre);
    EXPECT_FALSE(Settings.Scale);
    EXPECT_FALSE(Settings.SaveSolid);
    EXPECT_TRUE(Settings.SaveRoll);
}

// ---- The same points and bytes as the plain implementations

// The digests were taken natively; a C library of another platform may
// print or parse an odd number differently in its last place.
#ifndef _WIN32
TEST_F(LoadSketchTest, EveryInputLoadsAndSavesAsWithThePlainImplementations) {
    std::map<std::string, epsdigest::KeptDigest> kept = epsdigest::KeptDigests();
    std::vector<epsdigest::Input> inputs = epsdigest::Inputs();
    ASSERT_EQ(kept.size(), inputs.size());
    fs::path saved = scratch::Kept("load-digests") / "saved.eps";
    for (const epsdigest::Input& input : inputs) {
        ASSERT_EQ(kept.count(input.Name), 1u) << input.Name;
        EXPECT_EQ(epsdigest::LoadSaveDigest(input, saved), kept[input.Name].Load) << input.Name;
    }
}
#endif
