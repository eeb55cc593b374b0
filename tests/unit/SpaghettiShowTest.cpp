// The show of the Spaghetti tool: a whole file byte for byte, and the lines
// that each choice of texture, particle, shape and animation changes.

#include "ScratchFolder.h"

#include "foundation/Folders.h"
#include "show/SpaghettiShow.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>

namespace {

// The program folder of these tests; textures lie below it.
const char* const Program = "/prog";

// Lines joined, each ending in CR LF.
std::string Lines(std::initializer_list<std::string> lines) {
    std::string text;
    for (const std::string& line : lines)
        text += line + "\r\n";
    return text;
}

// A path with the build's own separator in place of every "/".
std::string Native(std::string path) {
    for (char& c : path)
        if (c == '/') c = char(PathSeparator);
    return path;
}

std::string Texture(const char* name) {
    return Native(std::string(Program) + "/Media/Textures/" + name);
}

std::string Bytes(const MString& text) {
    std::string out;
    for (int32_t i = 0; i < text.Length; i++) {
        EXPECT_LT(int(text.Text[i]), 256) << "at " << i;
        out += char(text.Text[i]);
    }
    return out;
}

MString Wide(const std::string& text) {
    std::u16string wide(text.begin(), text.end());
    return MString(wide.c_str());
}

class SpaghettiShow : public ::testing::Test {
  protected:
    void SetUp() override { SetFolderOverride(FolderProgram, Wide(Native(Program))); }
    void TearDown() override { SetFolderOverride(FolderProgram, MString()); }

    // The text for the choices, with the file paths of every test.
    std::string Show(int32_t texture, int32_t particle, float radius, int32_t shape,
                     int32_t animation) {
        MString text;
        EXPECT_TRUE(MakeSpaghettiShow(text, MString(u"C:\\work\\strings.eps"),
                                      MString(u"C:\\pics\\logo.png"), texture, particle, radius,
                                      shape, animation));
        return Bytes(text);
    }
};

// Everything before the strings' layer, which no choice but the animation's
// length changes.
std::string FixedLayers(const char* length, const std::string& picture) {
    return Lines({"Cinderlane Show 4 7",
                  std::string("LEN\t") + length,
                  "SIZ\t1920\t1080",
                  "PAR\t1",
                  "BGC\t-1 -1 -1",
                  "",
                  "LAY\tCamera",
                  "TP1\t0",
                  "TP2\t0",
                  "TP3\t0",
                  "PHY\t0",
                  "VIS\tY",
                  "KEY\t0",
                  "POS\t0\t0\t0",
                  "ROT\t0\t0\t0",
                  "FOV\t1.047198",
                  "SIZ\t300",
                  "DRC\t0\t0\t0",
                  "TAR\t0",
                  "BRI\t1",
                  "GAM\t1",
                  "KLE\t1\t1\t1",
                  "COL\t1",
                  "FOR\t0\t0",
                  "FOC\t0\t0\t0",
                  "GWI\t1",
                  "GWR\t50",
                  "GCO\t1\t1\t1",
                  "FAS\t0",
                  "FAC\t0\t0\t0",
                  "ACA\t1",
                  "PUD\t0",
                  "PAL\t0",
                  "",
                  "LAY\tLight",
                  "TP1\t1",
                  "TP2\t0",
                  "TP3\t3",
                  "PHY\t0",
                  "VIS\tY",
                  "KEY\t0",
                  "POS\t-200 200 -200",
                  "DIR\t-200 200 -700",
                  "COL\t1\t1\t1",
                  "COS\t0\t0\t0",
                  "INT\t1",
                  "BEA\t0",
                  "BER\t500",
                  "BEC\t0.5\t0.5\t0.5",
                  "SHA\t0.2",
                  "SSO\t1\t1",
                  "SMQ\t0.5\t0.5",
                  "SPP\t-25",
                  "FLS\t100",
                  "FLC\t1\t1\t1",
                  "PAL\t0",
                  "",
                  "LAY\tContainer",
                  "PHY\t0",
                  "VIS\tY",
                  "KEY\t0",
                  "POS\t0\t0\t250",
                  "ROT\t0\t0\t0",
                  "ROC\t0\t0\t0",
                  "SCA\t1\t1\t1",
                  "ALP\t0",
                  "JOI\t0",
                  "PAR\t0",
                  "",
                  "LAY\tMedia",
                  "TP1\t0",
                  "TP2\t2",
                  "TP3\t0",
                  "PHY\t0",
                  "VIS\tY",
                  "MPA\t\"" + picture + "\"",
                  "KEY\t0",
                  "POS\t0\t0\t0",
                  "ROT\t0\t0\t0",
                  "ROC\t0\t0\t0",
                  "SCA\t1\t1\t1",
                  "COL\t1\t1\t1",
                  "COS\t0\t0\t0",
                  "SPE\t0",
                  "ALP\t0",
                  "BEV\t1\t1\t0",
                  "TRE\t0\t0",
                  "ORE\t1\t1\t1",
                  "FLE\t0.25\t1\t0",
                  "FRA\t1\t1",
                  "FPS\t10",
                  "RAD\t0.2",
                  "STA\t12\t30\t0",
                  "DEC\t0\t0\t0",
                  "DES\t50",
                  "XPL\t0\t0",
                  "MAX\t0\t0",
                  "VOL\t1",
                  "MOS\t1",
                  "BIA\t-1",
                  "PAL\t3",
                  ""});
}

// The falling leaves, as the product reads them: the picture line ends in a
// stray "r" and a bare line feed, and no empty line follows the block.
std::string LeavesLayer() {
    return Lines({"LAY\tParticle", "LPR\tN\tN\tN\tN\tN\tX\tN\tY\tN", "TP1\t10", "TP2\t11",
                  "TP3\t12", "PHY\t0", "VIS\tY"}) +
           "MPA\t\"" + Texture("Leaf.png") + "\"r\n" +
           Lines({"FXP\tPBR.cfx",
                  "KEY\t0",
                  "POS\t0 - 100\t300",
                  "ARE\t0\t0\t0",
                  "DIR\t0\t1.5708\t0",
                  "SPE\t0.01",
                  "RSP\t1",
                  "SPR\t0\t0\t0",
                  "EMI\t100",
                  "MMP\t0\t10000",
                  "GRA\t0\t0\t0",
                  "LIF\t10",
                  "SIZ\t5\t0\t0",
                  "EFS\t1",
                  "CO1\t1\t1\t1",
                  "CO2\t0.8 0.8 0.8",
                  "COS\t0\t0\t0",
                  "SCL\t0",
                  "GLW\t1",
                  "ALP\t0",
                  "CHA\t0",
                  "LCO\t0\t0\t1",
                  "LCT\t1",
                  "LNO\t0\t1\t0",
                  "LNT\t1",
                  "MRO\t0\t0\t0",
                  "ROT\t0\t0\t0",
                  "TRA\t0",
                  "DEN\t5",
                  "GRI\t0\t0\t0",
                  "MDI\t0",
                  "VAR\t0.3",
                  "TUR\t0",
                  "WFP\t0\t0\t0",
                  "WFR\t1.5708\t0\t0",
                  "WFS\t-1",
                  "FLO\t-2000",
                  "DAM\t0.8",
                  "TAR\t0",
                  "ANI\t1\t0\t0",
                  "ANS\t1\t0",
                  "BIA\t0",
                  "PAL\t5",
                  "EF0\t-1 -1",
                  "EF1\t1",
                  "EF2\t1",
                  "EF3\t0\t0\t0",
                  "EF4\t1",
                  "EF5\t0.5",
                  "EF6\t0.5",
                  "EF7\t-1"});
}

// The plain effect lines of a sketch layer without glow.
std::string PlainEffects(const char* first) {
    return Lines(
        {first, "EF1\t1", "EF2\t1", "EF3\t0\t0\t0", "EF4\t1", "EF5\t0.5", "EF6\t0.5", "EF7\t-1"});
}

bool Has(const std::string& show, const std::string& lines) {
    return show.find(lines) != std::string::npos;
}

TEST_F(SpaghettiShow, WalkerWithBambooLeavesAndFlatStringsWholeFile) {
    std::string expected = FixedLayers("30000", "C:\\pics\\logo.png") +
                           Lines({"LAY\tSketch",
                                  "TP1\t1",
                                  "TP2\t10",
                                  "TP3\t0",
                                  "PHY\t0",
                                  "VIS\tY",
                                  "MPA\t\"" + Texture("Bamboo.png") + "\"",
                                  "MPB\t\"\"",
                                  "FXP\t\"PBR.cfx\"",
                                  "FNA\t\"C:\\work\\strings.eps\"\t19\t1\t0\tN\t0\tN",
                                  "KEY\t0",
                                  "POS\t0\t0\t0",
                                  "ROT\t0\t0\t0",
                                  "SCA\t1\t1\t1",
                                  "PFS\t5 5",
                                  "RAD\t1\t1\t0",
                                  "PRO\t1.570796",
                                  "COL\t1\t1\t1",
                                  "COS\t0\t0\t0",
                                  "SPE\t0",
                                  "ALP\t0",
                                  "OFF\t0\t0\t0",
                                  "SHE\t0\t0\t0",
                                  "STA\t0.1 0",
                                  "TRA\t0",
                                  "TEP\t0\t0",
                                  "TES\t-1\t0.5",
                                  "SMO\t0",
                                  "SLE\t0",
                                  "GRA\t0",
                                  "FRI\t1",
                                  "MSP\t1\t1",
                                  "ESP\t0",
                                  "BIA\t0",
                                  "PAL\t3"}) +
                           PlainEffects("EF0\t-1 -1") + Lines({"KEY\t30000", "STA\t1 0.9", ""}) +
                           LeavesLayer();

    scratch::fs::path folder = scratch::Fresh("spaghetti-show");
    MString showPath = scratch::Text(folder / "strings.cnd");
    ASSERT_TRUE(WriteSpaghettiShow(showPath, MString(u"C:\\work\\strings.eps"),
                                   MString(u"C:\\pics\\logo.png"), 1, 1, 5, 0, 3));
    // 8-bit, no mark: the file is the text itself.
    EXPECT_EQ(scratch::ReadBytes(folder / "strings.cnd"), expected);
    scratch::Remove(folder);
}

TEST_F(SpaghettiShow, NoAnimationHasOneKeyAndLengthOf1000) {
    std::string show = Show(0, 0, 5, 2, 0);
    EXPECT_EQ(show.substr(0, std::string("Cinderlane Show 4 7\r\nLEN\t1000\r\n").size()),
              "Cinderlane Show 4 7\r\nLEN\t1000\r\n");
    EXPECT_TRUE(Has(show, "\r\nSTA\t1 0\r\n"));
    // Layers 1 to 5 each have their key at 0; the sketch has no second key.
    size_t keys = 0;
    for (size_t at = show.find("KEY\t"); at != std::string::npos; at = show.find("KEY\t", at + 1))
        keys++;
    EXPECT_EQ(keys, 5u);
    EXPECT_EQ(show.find("KEY\t1000"), std::string::npos);
    // Round strings have type 0; without leaves the file ends with the
    // sketch layer's empty line.
    EXPECT_TRUE(Has(show, "LAY\tSketch\r\nTP1\t0\r\n"));
    EXPECT_EQ(show.substr(show.size() - 10), "EF7\t-1\r\n\r\n");
    EXPECT_EQ(show.find("Particle"), std::string::npos);
}

TEST_F(SpaghettiShow, WriterAndCleanerKeyTheirEndsAt30000) {
    std::string writer = Show(0, 0, 5, 0, 1);
    EXPECT_TRUE(Has(writer, "\r\nLEN\t30000\r\n"));
    EXPECT_TRUE(Has(writer, "\r\nSTA\t0 0\r\nTRA\t0\r\n"));
    EXPECT_TRUE(Has(writer, "EF7\t-1\r\nKEY\t30000\r\nSTA\t1 0\r\n\r\n"));
    std::string cleaner = Show(0, 0, 5, 0, 2);
    EXPECT_TRUE(Has(cleaner, "\r\nSTA\t1 0\r\nTRA\t0\r\n"));
    EXPECT_TRUE(Has(cleaner, "EF7\t-1\r\nKEY\t30000\r\nSTA\t0 0\r\n\r\n"));
}

TEST_F(SpaghettiShow, WalkerStartsAndEndsItsDrawnPart) {
    std::string show = Show(0, 0, 5, 0, 3);
    EXPECT_TRUE(Has(show, "\r\nKEY\t0\r\nPOS\t0\t0\t0\r\nROT\t0\t0\t0\r\nSCA\t1\t1\t1\r\n"));
    EXPECT_TRUE(Has(show, "\r\nSTA\t0.1 0\r\n"));
    EXPECT_TRUE(Has(show, "\r\nKEY\t30000\r\nSTA\t1 0.9\r\n"));
}

TEST_F(SpaghettiShow, LightSnakeHasOneKeyGlowAndNoPictures) {
    std::string show = Show(3, 0, 5, 1, 4);
    EXPECT_TRUE(Has(show, "\r\nLEN\t30000\r\n"));
    EXPECT_EQ(show.find("KEY\t30000"), std::string::npos);
    EXPECT_TRUE(Has(show, "LAY\tSketch\r\nLPR\tN\tN\tN\tN\tN\tX\tN\tN\tY\r\nTP1\t3\r\n"));
    // The rope's pictures are dropped, and its repeat length is the radius.
    EXPECT_TRUE(Has(show, "\r\nMPA\t\"\"\r\nMPB\t\"\"\r\nFXP\t\"Gradient.cfx\"\r\n"));
    EXPECT_TRUE(Has(show, "\r\nTES\t-1\t5\r\n"));
    EXPECT_TRUE(Has(show, "\r\nSPE\t0\r\n"));
    EXPECT_TRUE(
        Has(show, Lines({"PAL\t3", "EF0\t0\t0\t0", "EF1\t1\t0\t0", "EF2\t1.570796", "EF3\t0.2",
                         "EF4\t0", "EF5\t1", "EF6\t1", "EF7\t0.9\t0.9", "EF8\t1", "EF9\t0",
                         "EF10\t0.5", "EF11\t1\t1\t1", "EF12\t0", ""})));
    EXPECT_EQ(show.substr(show.size() - 10), "EF12\t0\r\n\r\n");
}

TEST_F(SpaghettiShow, LightSnakeWithStripesMultipliesByBoth) {
    std::string show = Show(8, 0, 5, 0, 4);
    // 5 * 0.1 * 50 * 10
    EXPECT_TRUE(Has(show, "\r\nTES\t-1\t250\r\n"));
    // Stripes stay shiny, but the glow replaces the shiny effect line.
    EXPECT_TRUE(Has(show, "\r\nSPE\t0.8\r\n"));
    EXPECT_TRUE(Has(show, "\r\nPAL\t3\r\nEF0\t0\t0\t0\r\n"));
}

TEST_F(SpaghettiShow, NoTextureWritesEmptyPictureLines) {
    std::string show = Show(0, 0, 5, 0, 1);
    EXPECT_TRUE(Has(show, "VIS\tY\r\nMPA\t\"\"\r\nMPB\t\"\"\r\nFXP\t\"PBR.cfx\"\r\n"));
    EXPECT_TRUE(Has(show, "\r\nTES\t-1\t0.5\r\nSMO\t0\r\n"));
}

TEST_F(SpaghettiShow, RadiusFiveWithBamboo) {
    std::string show = Show(1, 0, 5, 0, 0);
    EXPECT_TRUE(Has(show, "\r\nPFS\t5 5\r\n"));
    EXPECT_TRUE(Has(show, "\r\nTES\t-1\t0.5\r\n"));
    EXPECT_TRUE(Has(show, "\r\nMPA\t\"" + Texture("Bamboo.png") + "\"\r\nMPB\t\"\"\r\n"));
}

TEST_F(SpaghettiShow, EmptyPictureFileWritesEmptyMediaPath) {
    MString text;
    ASSERT_TRUE(MakeSpaghettiShow(text, MString(u"C:\\s.eps"), MString(), 0, 0, 5, 0, 0));
    EXPECT_TRUE(Has(Bytes(text), "VIS\tY\r\nMPA\t\"\"\r\nKEY\t0\r\n"));
}

TEST_F(SpaghettiShow, EachTextureRow) {
    struct Row {
        int32_t Texture;
        std::string First, Second, Spe, Ef0, Bia, Tes;
    };
    const Row rows[] = {
        {2, Texture("Danger.png"), "", "SPE\t0", "EF0\t-1 -1", "BIA\t0", "TES\t-1\t0.5"},
        {3, Texture("Rope.png"), Texture("Rope_Normalmap.png"), "SPE\t0", "EF0\t-1 -1", "BIA\t0",
         "TES\t-1\t0.5"},
        {4, Texture("Knitting.png"), "", "SPE\t0", "EF0\t-1 -1", "BIA\t0", "TES\t-1\t5"},
        {5, Texture("Mummy.png"), "", "SPE\t0", "EF0\t-1 -1", "BIA\t-2", "TES\t-1\t0.5"},
        {6, Texture("Snake.png"), Texture("Snake_Normalmap.png"), "SPE\t0.8", "EF0\t0.3 1",
         "BIA\t0", "TES\t-1\t0.5"},
        {7, Texture("Stem.png"), "", "SPE\t0", "EF0\t-1 -1", "BIA\t0", "TES\t-1\t0.5"},
        {8, Texture("Stripes.png"), "", "SPE\t0.8", "EF0\t0.3 1", "BIA\t0", "TES\t-1\t25"},
        {9, Texture("Wood.png"), Texture("Wood_Normalmap.png"), "SPE\t0", "EF0\t-1 -1", "BIA\t0",
         "TES\t-1\t0.5"},
    };
    for (const Row& row : rows) {
        std::string show = Show(row.Texture, 0, 5, 0, 0);
        EXPECT_TRUE(Has(show, Lines({"MPA\t\"" + row.First + "\"", "MPB\t\"" + row.Second + "\"",
                                     "FXP\t\"PBR.cfx\""})))
            << row.Texture;
        EXPECT_TRUE(Has(show, Lines({"COS\t0\t0\t0", row.Spe, "ALP\t0"}))) << row.Texture;
        EXPECT_TRUE(Has(show, Lines({"ESP\t0", row.Bia, "PAL\t3", row.Ef0}))) << row.Texture;
        EXPECT_TRUE(Has(show, Lines({"TEP\t0\t0", row.Tes}))) << row.Texture;
    }
}

TEST_F(SpaghettiShow, ShapesGiveTheirTypeNumbers) {
    EXPECT_TRUE(Has(Show(0, 0, 5, 0, 0), "LAY\tSketch\r\nTP1\t1\r\n"));
    EXPECT_TRUE(Has(Show(0, 0, 5, 1, 0), "LAY\tSketch\r\nTP1\t3\r\n"));
    EXPECT_TRUE(Has(Show(0, 0, 5, 2, 0), "LAY\tSketch\r\nTP1\t0\r\n"));
}

TEST_F(SpaghettiShow, UnknownShapeWritesNothing) {
    scratch::fs::path folder = scratch::Fresh("spaghetti-shape");
    MString showPath = scratch::Text(folder / "s.cnd");
    for (int32_t shape : {-1, 3, 100}) {
        MString text(u"untouched");
        EXPECT_FALSE(MakeSpaghettiShow(text, MString(u"s.eps"), MString(), 0, 0, 5, shape, 0));
        EXPECT_EQ(text, MString(u"untouched"));
        EXPECT_FALSE(WriteSpaghettiShow(showPath, MString(u"s.eps"), MString(), 0, 0, 5, shape, 0));
        EXPECT_FALSE(scratch::fs::exists(folder / "s.cnd"));
    }
    scratch::Remove(folder);
}

TEST_F(SpaghettiShow, IndicesOutsideTheirTablesCountAsZero) {
    std::string plain = Show(0, 0, 5, 0, 0);
    EXPECT_EQ(Show(10, 0, 5, 0, 0), plain);
    EXPECT_EQ(Show(-1, 0, 5, 0, 0), plain);
    EXPECT_EQ(Show(0, 2, 5, 0, 0), plain);
    EXPECT_EQ(Show(0, -1, 5, 0, 0), plain);
    EXPECT_EQ(Show(0, 0, 5, 0, 5), plain);
    EXPECT_EQ(Show(0, 0, 5, 0, -3), plain);
}

TEST_F(SpaghettiShow, FileThatCannotBeOpenedGivesFalse) {
    scratch::fs::path folder = scratch::Fresh("spaghetti-folder");
    // A folder stands where the show would go.
    scratch::fs::create_directories(folder / "taken.cnd");
    EXPECT_FALSE(WriteSpaghettiShow(scratch::Text(folder / "taken.cnd"), MString(u"s.eps"),
                                    MString(), 0, 0, 5, 0, 0));
    scratch::Remove(folder);
}

TEST_F(SpaghettiShow, ReplacesAnEarlierFile) {
    scratch::fs::path folder = scratch::Fresh("spaghetti-replace");
    scratch::WriteBytes(folder / "s.cnd", std::string(100000, 'x'));
    ASSERT_TRUE(WriteSpaghettiShow(scratch::Text(folder / "s.cnd"), MString(u"s.eps"), MString(), 0,
                                   0, 5, 0, 0));
    MString text;
    ASSERT_TRUE(MakeSpaghettiShow(text, MString(u"s.eps"), MString(), 0, 0, 5, 0, 0));
    EXPECT_EQ(scratch::ReadBytes(folder / "s.cnd"), Bytes(text));
    scratch::Remove(folder);
}

} // namespace
