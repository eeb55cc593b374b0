// The shows of a save: template and show paths, the markers and their
// replacements, the container of tree models, the messages, and whole shows
// byte for byte for a fixed seed. The templates are the test templates of
// tests/data/shows (made by tests/data/make_show_templates.py), copied into a
// scratch program folder.

#include "ScratchFolder.h"
#include "ShowTestSupport.h"
#include "TrackTestSupport.h"

#include "foundation/Folders.h"
#include "foundation/MTextFile.h"
#include "foundation/Platform.h"
#include "show/TrackBuilder.h"
#include "show/WriteShows.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

using showtest::Rooted;

fs::path TestTemplates() {
    return Rooted(TEST_SOURCE_DIR) / "tests" / "data" / "shows";
}

std::u16string U16(const std::string& text) {
    return std::u16string(text.begin(), text.end());
}

std::u16string U16(const MString& text) {
    return std::u16string(text.Text ? text.Text : u"", size_t(text.Length));
}

void ReplaceAll(std::u16string& text, const std::u16string& marker, const std::u16string& with) {
    for (size_t at = text.find(marker); at != std::u16string::npos; at = text.find(marker))
        text.replace(at, marker.size(), with);
}

// The bytes of a show: the mark FF FE, then UTF-16 little endian.
std::string ShowBytes(const std::u16string& text) {
    std::string out = "\xFF\xFE";
    for (char16_t c : text) {
        out += char(c & 0xFF);
        out += char(c >> 8);
    }
    return out;
}

const char* const Ride = "Rollercoaster1stPerson.cnd";

class WriteShows : public ::testing::Test, protected showtest::ShowGround {
  protected:
    void SetUp() override {
        Open("shows", 4242);
        Settings.Smooth = 0;
        Settings.MaxLinesPerCurve = 100;
        Settings.TreeType = 5;
        Settings.SaveSolid = false;
        fs::copy(TestTemplates() / "Media", Program / "Media", fs::copy_options::recursive);
    }
    void TearDown() override { Close(); }

    MString Eps(const char* name = "ride.eps") { return scratch::Text(Saves / name); }
    std::string Native(const fs::path& path) { return Narrowed(scratch::Text(path)); }
    fs::path TemplateFile(const char* name) { return Program / "Media" / "Templates" / name; }
    std::u16string TemplateText(const char* name) {
        return U16(ReadTextFile(scratch::Text(TemplateFile(name))));
    }
    std::u16string Quoted(const fs::path& path) { return U16("\"" + Native(path) + "\""); }
    std::u16string Texture(const char* name) {
        return Quoted(Program / "Media" / "Textures" / name);
    }
    // The three texture markers, replaced in every show.
    void ReplaceTextures(std::u16string& text) {
        ReplaceAll(text, u"[TRO]", Texture("Road.png"));
        ReplaceAll(text, u"[TTU]", Texture("Tunnel.png"));
        ReplaceAll(text, u"[TBO]", Texture("Bob.png"));
    }
};

} // namespace

// ---- Paths

TEST_F(WriteShows, TemplateAndShowPaths) {
    fs::path templates = Program / "Media" / "Templates";
    EXPECT_EQ(Narrowed(TemplatePath(0)), Native(templates / "SpinningLogo.cnd"));
    Settings.SaveSolid = true;
    EXPECT_EQ(Narrowed(TemplatePath(0)), Native(templates / "SpinningLogoSolid.cnd"));
    EXPECT_EQ(Narrowed(TemplatePath(1)), Native(templates / "HandwrittenText.cnd"));
    EXPECT_EQ(Narrowed(TemplatePath(5)), Native(templates / "Road3rdPerson.cnd"));
    EXPECT_EQ(Narrowed(TemplatePath(8)), Native(templates / "Tunnel.cnd"));
    EXPECT_TRUE(TemplatePath(9).IsEmpty());
    EXPECT_TRUE(TemplatePath(-1).IsEmpty());

    EXPECT_EQ(Narrowed(ShowPath(8, MString(u"a.eps"))), "a_Tunnel.cnd");
    EXPECT_EQ(Narrowed(ShowPath(0, MString(u"C:\\s\\a.EPS"))), "C:\\s\\a_SpinningLogo.cnd");
    EXPECT_EQ(Narrowed(ShowPath(6, MString(u"/s/a"))), "/s/a_Bob1stPerson.cnd");
    EXPECT_EQ(Narrowed(TrackFilePath(MString(u"a.EPS"), u"_Leaves.eps")), "a_Leaves.eps");
}

TEST_F(WriteShows, FirstOccurrenceInTheWholePathCounts) {
    EXPECT_EQ(Narrowed(TrackFilePath(MString(u"C:\\x.eps\\ride.eps"), u"_Structure.eps")),
              "C:\\x_Structure.eps\\ride.eps");
    EXPECT_EQ(Narrowed(ShowPath(2, MString(u"/a.cnd/ride.eps"))),
              "/a_Rollercoaster1stPerson.cnd/ride.cnd");
}

// ---- Replacing markers

TEST(ShowMarkers, EveryOccurrenceAndTheRefusals) {
    MString text(u"[A] and [A]");
    ReplaceMarker(text, MString(u"[A]"), MString(u"x"));
    EXPECT_EQ(Narrowed(text), "x and x");
    // The replacement holding the marker would never end: nothing happens.
    text = u"[A]";
    ReplaceMarker(text, MString(u"[A]"), MString(u"<[A]>"));
    EXPECT_EQ(Narrowed(text), "[A]");
    ReplaceMarker(text, MString(u"[A]"), MString(u"[A]"));
    EXPECT_EQ(Narrowed(text), "[A]");
    ReplaceMarker(text, MString(), MString(u"y"));
    EXPECT_EQ(Narrowed(text), "[A]");
    MString empty;
    ReplaceMarker(empty, MString(u"[A]"), MString(u"y"));
    EXPECT_TRUE(empty.IsEmpty());
    // A replacement that completes a new occurrence with what stands before
    // it: the first occurrence is replaced again.
    text = u"[[A]A]";
    ReplaceMarker(text, MString(u"[A]"), MString(u""));
    EXPECT_EQ(Narrowed(text), "");
    text = u"[[[A]A]A]!";
    ReplaceMarker(text, MString(u"[A]"), MString(u"[A"));
    EXPECT_EQ(Narrowed(text), "[[[AA]A]!");
}

TEST(ShowMarkers, ZeroUnitsInTheTextStay) {
    MString text(u"ab");
    text.Text[1] = 0; // "a", zero, then nothing: Length stays 2
    text += MString(u"[M]");
    ReplaceMarker(text, MString(u"[M]"), MString(u"yz"));
    ASSERT_EQ(text.Length, 4);
    EXPECT_EQ(text.Text[1], 0);
    EXPECT_EQ(text.Text[2], u'y');
}

// ---- Whole saves

TEST_F(WriteShows, NoTemplateTickedWritesNothingButSetsTheSeed) {
    FillStraightRide(*TheSketch);
    MRandomSeed = 1;
    ::WriteShows(Eps());
    EXPECT_EQ(MRandomSeed, Seed);
    EXPECT_TRUE(fs::is_empty(Saves));
    EXPECT_EQ(Script.Count, 0);
}

TEST_F(WriteShows, RideShowAndTrackFilesByteForByte) {
    FillStraightRide(*TheSketch);
    Settings.Template[2] = true;
    ::WriteShows(Eps());
    EXPECT_EQ(Script.Count, 0);

    // The trees of the scatter, then one turn drawn for each model.
    std::vector<ExpectedTree> trees = RideTrees(Seed, 4.5f);
    ASSERT_FALSE(trees.empty());
    std::vector<float> turns;
    for (size_t k = 0; k < trees.size(); k++) {
        float turn = float(MRandomInt(10000)) * 6.2831855f;
        turns.push_back(turn * 0.0001f);
    }

    std::u16string text = TemplateText(Ride);
    ReplaceAll(text, u"[EPS]", Quoted(Saves / "ride.eps"));
    ReplaceAll(text, u"[EP2]", Quoted(Saves / "ride_Structure.eps"));
    ReplaceAll(text, u"[EP3]", Quoted(Saves / "ride_Foundation.eps"));
    ReplaceAll(text, u"[EP4]", Quoted(Saves / "ride_Trunks.eps"));
    ReplaceAll(text, u"[EP5]", Quoted(Saves / "ride_Leaves.eps"));
    ReplaceAll(text, u"[VI4]", u"N");
    ReplaceAll(text, u"[VI5]", u"N");
    ReplaceAll(text, u"[SMO]", u"0");
    // 40 units: 1.2 seconds, whole seconds 1; 40 / 3.313518 is 12.07: 13 letters.
    ReplaceAll(text, u"[LEN]", u"1000");
    ReplaceAll(text, u"[VVV]", u"VVVVVVVVVVVVV");
    ReplaceAll(text, u"[SPP]", u"4.5");
    ReplaceTextures(text);
    // Trimmed, two line ends, the container (its name without a line end)
    // as layer 4 behind the three layers of the template.
    while (!text.empty() && text.back() <= 32)
        text.pop_back();
    text += u"\r\n\r\nLAY\tContainer\r\nNAM \"Realistic trees\"PHY\t0\r\nVIS\tY\r\nKEY\t0\r\n"
            u"POS\t0\t4.5\t0\r\nROT\t0\t0\t0\r\nROC\t0\t0\t0\r\nSCA\t1\t1\t1\r\nALP\t0\r\n"
            u"PAR\t0\r\n";
    std::string model = Native(Program / "Media" / "Models" / "Oak.obj");
    for (size_t k = 0; k < trees.size(); k++) {
        float scale = (trees[k].Top - 4.5f) / 200.0f;
        text +=
            U16("\r\nLAY Model\r\nTP1 0\r\nTP2 2\r\nPHY 0\r\nVIS Y\r\nMOP \"" + model +
                "\"\r\nKEY 0\r\nPOS " + Num(trees[k].X) + " 0 " + Num(trees[k].Z) + "\r\nROT " +
                Num(turns[k]) + " 0 0\r\nROC 0\t0 0\r\nSCA " + Num(scale) + " " + Num(scale) + " " +
                Num(scale) +
                "\r\nCOL 1\t1 1\r\nCOS 0\t0 0\r\nSPE 0\r\nALP 0\r\nSUB 0\r\nBIA 0\r\nPAL 4\r\n");
    }
    EXPECT_EQ(scratch::ReadBytes(Saves / "ride_Rollercoaster1stPerson.cnd"), ShowBytes(text));

    // The track files of the same draws.
    EXPECT_EQ(scratch::ReadBytes(Saves / "ride_Structure.eps"),
              TrackFile(PoleLines(2, 5, 0, 2, 10, 0) + PoleLines(24, 5, 0, 24, 10, 0)));
    EXPECT_EQ(scratch::ReadBytes(Saves / "ride_Foundation.eps"),
              TrackFile(PoleLines(2, 4.5f, 0, 2, 5.5f, 0) + PoleLines(24, 4.5f, 0, 24, 5.5f, 0)));
    std::string trunks, leaves;
    for (const ExpectedTree& t : trees) {
        trunks += PoleLines(t.X, 4.5f, t.Z, t.X, t.Base, t.Z);
        leaves += PoleLines(t.X, t.Base, t.Z, t.X, t.Top, t.Z);
    }
    EXPECT_EQ(scratch::ReadBytes(Saves / "ride_Trunks.eps"), TrackFile(trunks));
    EXPECT_EQ(scratch::ReadBytes(Saves / "ride_Leaves.eps"), TrackFile(leaves));
}

TEST_F(WriteShows, AbstractTreesAddNoModelsAndStayVisible) {
    FillStraightRide(*TheSketch);
    Settings.Template[3] = true;
    Settings.TreeType = 0;
    ::WriteShows(Eps());
    std::u16string text = TemplateText("Rollercoaster3rdPerson.cnd");
    ReplaceAll(text, u"[EPS]", Quoted(Saves / "ride.eps"));
    ReplaceAll(text, u"[EP2]", Quoted(Saves / "ride_Structure.eps"));
    ReplaceAll(text, u"[EP3]", Quoted(Saves / "ride_Foundation.eps"));
    ReplaceAll(text, u"[EP4]", Quoted(Saves / "ride_Trunks.eps"));
    ReplaceAll(text, u"[EP5]", Quoted(Saves / "ride_Leaves.eps"));
    ReplaceAll(text, u"[VI4]", u"Y");
    ReplaceAll(text, u"[VI5]", u"Y");
    ReplaceAll(text, u"[SMO]", u"0");
    ReplaceAll(text, u"[LEN]", u"1000");
    ReplaceAll(text, u"[VVV]", u"VVVVVVVVVVVVV");
    ReplaceAll(text, u"[SPP]", u"4.5");
    ReplaceTextures(text);
    EXPECT_EQ(scratch::ReadBytes(Saves / "ride_Rollercoaster3rdPerson.cnd"), ShowBytes(text));
    EXPECT_TRUE(fs::exists(Saves / "ride_Trunks.eps"));
}

TEST_F(WriteShows, TemplatesWithoutTrackFilesKeepTheGroundOfAnEarlierOne) {
    FillStraightRide(*TheSketch);
    Settings.Template[0] = true;
    Settings.Template[1] = true;
    Settings.Template[4] = true;
    Settings.Template[8] = true;
    Settings.Smooth = 7;
    ::WriteShows(Eps("a.eps"));
    auto show = [&](const char* name) { return scratch::ReadBytes(Saves / name); };
    // Before the road: ground 0; after it: its 4.5. No track paths: "".
    std::u16string logo = TemplateText("SpinningLogo.cnd");
    ReplaceAll(logo, u"[EPS]", Quoted(Saves / "a.eps"));
    for (const char16_t* marker : {u"[EP2]", u"[EP3]", u"[EP4]", u"[EP5]"})
        ReplaceAll(logo, marker, u"\"\"");
    ReplaceAll(logo, u"[VI4]", u"Y");
    ReplaceAll(logo, u"[VI5]", u"Y");
    ReplaceAll(logo, u"[SMO]", u"7");
    ReplaceAll(logo, u"[LEN]", u"1000");
    ReplaceAll(logo, u"[VVV]", u"VVVVVVVVVVVVV");
    std::u16string tunnel = logo;
    ReplaceAll(logo, u"[SPP]", u"0");
    ReplaceAll(tunnel, u"[SPP]", u"4.5");
    ReplaceTextures(logo);
    ReplaceTextures(tunnel);
    ReplaceAll(tunnel, u"SpinningLogo.cnd", u"Tunnel.cnd");
    EXPECT_EQ(show("a_SpinningLogo.cnd"), ShowBytes(logo));
    EXPECT_EQ(show("a_Tunnel.cnd"), ShowBytes(tunnel));
    EXPECT_TRUE(fs::exists(Saves / "a_HandwrittenText.cnd"));
    EXPECT_TRUE(fs::exists(Saves / "a_Road1stPerson.cnd"));
    EXPECT_TRUE(fs::exists(Saves / "a_Structure.eps"));
}

TEST_F(WriteShows, TrackOfNoLengthLeavesTheMarksButTheTextures) {
    Fill(*TheSketch, {Record(5, 5, 5, KindMove), Record(5, 5, 5, KindLine)});
    Settings.Template[5] = true;
    ::WriteShows(Eps());
    std::u16string text = TemplateText("Road3rdPerson.cnd");
    ReplaceTextures(text);
    EXPECT_EQ(scratch::ReadBytes(Saves / "ride_Road3rdPerson.cnd"), ShowBytes(text));
    EXPECT_NE(text.find(u"[EPS]"), std::u16string::npos);
}

TEST_F(WriteShows, EpsInAFolderNameTakesTheWord) {
    FillStraightRide(*TheSketch);
    fs::create_directories(Saves / "x.eps");
    fs::create_directories(Saves / "x_Structure.eps");
    Settings.Template[2] = true;
    ::WriteShows(scratch::Text(Saves / "x.eps" / "ride.eps"));
    EXPECT_TRUE(fs::exists(Saves / "x.eps" / "ride_Rollercoaster1stPerson.cnd"));
    // The structure file goes where the word replaced the folder's ".eps".
    EXPECT_TRUE(fs::exists(Saves / "x_Structure.eps" / "ride.eps"));
    EXPECT_FALSE(fs::exists(Saves / "x.eps" / "ride_Structure.eps"));
}

TEST_F(WriteShows, MissingTemplateIsReportedAndTheNextOneFollows) {
    FillStraightRide(*TheSketch);
    fs::remove(TemplateFile("HandwrittenText.cnd"));
    fs::remove(TemplateFile("Tunnel.cnd"));
    fs::create_directories(TemplateFile("Tunnel.cnd")); // a folder of that name
    Settings.Template[1] = true;
    Settings.Template[2] = true;
    Settings.Template[8] = true;
    ::WriteShows(Eps());
    ASSERT_EQ(Script.Count, 2);
    EXPECT_EQ(Narrowed(Texts[0]), "Could not open the template show:\n\n\"" +
                                      Native(TemplateFile("HandwrittenText.cnd")) + "\"");
    EXPECT_EQ(Narrowed(Texts[1]), "Could not open the template show:\n\n\"" +
                                      Native(TemplateFile("Tunnel.cnd")) + "\"");
    EXPECT_EQ(Icons[0], IconError);
    EXPECT_FALSE(fs::exists(Saves / "ride_HandwrittenText.cnd"));
    EXPECT_FALSE(fs::exists(Saves / "ride_Tunnel.cnd"));
    EXPECT_TRUE(fs::exists(Saves / "ride_Rollercoaster1stPerson.cnd"));
}

TEST_F(WriteShows, EmptyTemplateWritesNothingAndRandomBytesAreCopied) {
    FillStraightRide(*TheSketch);
    scratch::WriteBytes(TemplateFile("Bob1stPerson.cnd"), "");
    std::string noise;
    uint32_t state = 7;
    for (int i = 0; i < 3000; i++) {
        state = state * 1103515245u + 12345u;
        noise += char(0x20 + (state >> 16) % 200);
    }
    scratch::WriteBytes(TemplateFile("Bob3rdPerson.cnd"), noise);
    Settings.Template[6] = true;
    Settings.Template[7] = true;
    ::WriteShows(Eps());
    EXPECT_EQ(Script.Count, 0);
    // An empty text is never written.
    EXPECT_FALSE(fs::exists(Saves / "ride_Bob1stPerson.cnd"));
    // No marker and fewer than two layer lines: copied as read, but trimmed
    // at both ends, as trees were asked for.
    std::u16string copied = TemplateText("Bob3rdPerson.cnd");
    while (!copied.empty() && (copied.back() <= 32 || copied.back() == 127))
        copied.pop_back();
    while (!copied.empty() && (copied.front() <= 32 || copied.front() == 127))
        copied.erase(0, 1);
    EXPECT_EQ(scratch::ReadBytes(Saves / "ride_Bob3rdPerson.cnd"), ShowBytes(copied));
}

TEST_F(WriteShows, MissingModelIsReportedAndTheShowHasNoTrees) {
    FillStraightRide(*TheSketch);
    fs::remove(Program / "Media" / "Models" / "Palm.obj");
    Settings.TreeType = 6;
    Settings.Template[4] = true;
    ::WriteShows(Eps());
    ASSERT_EQ(Script.Count, 1);
    EXPECT_EQ(Narrowed(Texts[0]), "Could not find model file:\n\n\"" +
                                      Native(Program / "Media" / "Models" / "Palm.obj") + "\"");
    EXPECT_EQ(Icons[0], IconError);
    std::string show = scratch::ReadBytes(Saves / "ride_Road1stPerson.cnd");
    ASSERT_FALSE(show.empty());
    EXPECT_EQ(show.find(ShowBytes(u"Container").substr(2)), std::string::npos);
    EXPECT_NE(show.find(ShowBytes(u"VIS\tN").substr(2)), std::string::npos);
}

TEST_F(WriteShows, TreeTypeIsLimitedToTheNamesAndOneLayerGetsNoContainer) {
    FillStraightRide(*TheSketch);
    Settings.TreeType = 40; // the last name: Spruce
    Settings.Template[5] = true;
    ::WriteShows(Eps());
    std::string show = scratch::ReadBytes(Saves / "ride_Road3rdPerson.cnd");
    EXPECT_NE(show.find(ShowBytes(U16("Spruce.obj\"")).substr(2)), std::string::npos);

    // A template with a single layer line: nothing appended, but trimmed.
    scratch::WriteBytes(TemplateFile("Road3rdPerson.cnd"), "\r\n LAY\tSketch\r\nLAY Model\r\n\r\n");
    ::WriteShows(Eps());
    EXPECT_EQ(scratch::ReadBytes(Saves / "ride_Road3rdPerson.cnd"),
              ShowBytes(u"LAY\tSketch\r\nLAY Model"));
}

TEST_F(WriteShows, LengthAndLettersOfLongAndShortRides) {
    Settings.Template[1] = true;
    scratch::WriteBytes(TemplateFile("HandwrittenText.cnd"), "[LEN]|[VVV]");
    // 20 units: 0.6 seconds is "0"; 20 / 3.313518 is 6.04: 7 letters.
    Fill(*TheSketch, {Record(0, 0, 0, KindMove), Record(20, 0, 0, KindLine)});
    ::WriteShows(Eps());
    EXPECT_EQ(scratch::ReadBytes(Saves / "ride_HandwrittenText.cnd"), ShowBytes(u"0|VVVVVVV"));
    // 10050 units: 301.5 seconds; letters stop at 1000.
    Fill(*TheSketch, {Record(0, 0, 0, KindMove), Record(10050, 0, 0, KindLine)});
    ::WriteShows(Eps());
    EXPECT_EQ(scratch::ReadBytes(Saves / "ride_HandwrittenText.cnd"),
              ShowBytes(u"301000|" + std::u16string(1000, u'V')));
}

TEST_F(WriteShows, PathHoldingALaterMarkerIsRewrittenByIt) {
    Fill(*TheSketch, {Record(0, 0, 0, KindMove), Record(20, 0, 0, KindLine)});
    Settings.Template[1] = true;
    Settings.Smooth = 7;
    scratch::WriteBytes(TemplateFile("HandwrittenText.cnd"), "[EPS]|[SMO]");
    fs::create_directories(Saves / "x[SMO]");
    ::WriteShows(scratch::Text(Saves / "x[SMO]" / "r.eps"));
    EXPECT_EQ(scratch::ReadBytes(Saves / "x[SMO]" / "r_HandwrittenText.cnd"),
              ShowBytes(U16("\"" + Native(Saves / "x7" / "r.eps") + "\"|7")));

    // A path holding the marker itself: [EPS] is left alone.
    fs::create_directories(Saves / "y[EPS]");
    ::WriteShows(scratch::Text(Saves / "y[EPS]" / "r.eps"));
    EXPECT_EQ(scratch::ReadBytes(Saves / "y[EPS]" / "r_HandwrittenText.cnd"),
              ShowBytes(u"[EPS]|7"));
}
