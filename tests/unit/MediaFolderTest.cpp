// The files that ship beside the program in media/: every template, tree
// model and texture whose name the program builds exists there, and the
// sample ride saved with every ride template and trees writes shows whose
// quoted files all exist, head and layers as a show has them.

#include "ScratchFolder.h"
#include "ShowTestSupport.h"

#include "elements/WElement.h"
#include "eps/EpsWriter.h"
#include "eps/LoadSketch.h"
#include "foundation/Folders.h"
#include "foundation/MTextFile.h"
#include "foundation/Platform.h"
#include "foundation/Settings.h"
#include "show/SpaghettiShow.h"
#include "show/WriteShows.h"
#include "sketch/WSketch.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

using showtest::Rooted;

fs::path Media() {
    return Rooted(TEST_SOURCE_DIR) / "media";
}

std::string Narrow(const std::u16string& text) {
    std::string out;
    for (char16_t c : text)
        out += c < 128 ? char(c) : '?';
    return out;
}

std::vector<std::string> Lines(const std::u16string& text) {
    std::vector<std::string> lines;
    std::string line;
    for (char16_t c : text) {
        if (c == u'\n') {
            if (!line.empty() && line.back() == '\r') line.pop_back();
            lines.push_back(line);
            line.clear();
        } else {
            line += c < 128 ? char(c) : '?';
        }
    }
    if (!line.empty()) lines.push_back(line);
    return lines;
}

// Every text between double quotes on the lines of a show.
std::vector<std::string> QuotedPaths(const std::vector<std::string>& lines) {
    std::vector<std::string> paths;
    for (const std::string& line : lines) {
        size_t open = line.find('"');
        while (open != std::string::npos) {
            size_t close = line.find('"', open + 1);
            if (close == std::string::npos) break;
            std::string text = line.substr(open + 1, close - open - 1);
            // Names without a folder are the product's own (layer names,
            // effect files).
            if (text.find('/') != std::string::npos || text.find('\\') != std::string::npos)
                paths.push_back(text);
            open = line.find('"', close + 1);
        }
    }
    return paths;
}

bool Exists(const std::string& path) {
    return PathExists(MString(std::u16string(path.begin(), path.end()).c_str()));
}

class MediaFolder : public ::testing::Test, protected showtest::ShowGround {
  protected:
    void SetUp() override {
        Open("media", 77);
        if (!TheElement) {
            ASSERT_NE(CreateElement(), nullptr);
        }
        // The program folder as installed: media/ beside the program. The
        // program names "Media\..." and "media\skins\..."; a case-sensitive
        // file system gets both spellings.
        auto copy = fs::copy_options::recursive | fs::copy_options::overwrite_existing;
        fs::copy(Media(), Program / "media", copy);
        if (!fs::exists(Program / "Media" / "Templates"))
            fs::copy(Media(), Program / "Media", copy);
    }
    void TearDown() override { Close(); }
    std::string Messages() {
        std::string all;
        for (int32_t i = 0; i < Script.Count && i < Script.Capacity; i++)
            all += Narrow(scratch::U16(Texts[i])) + "\n";
        return all;
    }
    // A show as the format has it: the head, then blocks that begin with a
    // layer line and hold a key at time 0 and a parent line.
    void ExpectShowShape(const std::string& name, const std::vector<std::string>& lines) {
        ASSERT_GE(lines.size(), 7u) << name;
        EXPECT_EQ(lines[0], "Cinderlane Show 4 7") << name;
        EXPECT_EQ(lines[1].rfind("LEN\t", 0), 0u) << name;
        EXPECT_NE(lines[1].find_first_of("0123456789"), std::string::npos) << name;
        EXPECT_EQ(lines[2], "SIZ\t1920\t1080") << name;
        EXPECT_EQ(lines[3], "PAR\t1") << name;
        EXPECT_EQ(lines[4], "BGC\t-1 -1 -1") << name;
        EXPECT_EQ(lines[5], "") << name;
        std::vector<std::vector<std::string>> blocks(1);
        for (size_t i = 6; i < lines.size(); i++) {
            if (lines[i].empty()) {
                if (!blocks.back().empty()) blocks.emplace_back();
            } else {
                blocks.back().push_back(lines[i]);
            }
        }
        if (blocks.back().empty()) blocks.pop_back();
        ASSERT_GE(blocks.size(), 3u) << name;
        for (const std::vector<std::string>& block : blocks) {
            const std::string& first = block[0];
            EXPECT_TRUE(first.rfind("LAY\t", 0) == 0 || first.rfind("LAY ", 0) == 0)
                << name << ": " << first;
            bool container = first.find("Container") != std::string::npos;
            bool key0 = false, parent = false;
            for (const std::string& line : block) {
                if (line == "KEY\t0" || line == "KEY 0" || line.find("KEY\t0") != std::string::npos)
                    key0 = true;
                if (line.rfind(container ? "PAR" : "PAL", 0) == 0) parent = true;
                EXPECT_EQ(line.find('['), std::string::npos) << name << ": marker left: " << line;
            }
            EXPECT_TRUE(key0) << name << ": " << first;
            EXPECT_TRUE(parent) << name << ": " << first;
        }
    }
};

} // namespace

TEST_F(MediaFolder, EveryTemplateOfTheSaveDialogExists) {
    for (bool solid : {false, true}) {
        Settings.SaveSolid = solid;
        for (int32_t index = 0; index < 9; index++) {
            MString path = TemplatePath(index);
            ASSERT_FALSE(path.IsEmpty()) << index;
            EXPECT_TRUE(PathExists(path)) << Narrow(scratch::U16(path));
        }
    }
}

TEST_F(MediaFolder, EveryTextureOfTheSpaghettiShowExists) {
    for (int32_t texture = 0; texture < 10; texture++) {
        for (int32_t animation : {0, 4}) {
            MString text;
            ASSERT_TRUE(MakeSpaghettiShow(text, MString(u"/nowhere/a.eps"),
                                          MString(u"/nowhere/a.png"), texture, 1, 5.0f, 0,
                                          animation));
            for (const std::string& path : QuotedPaths(Lines(scratch::U16(text)))) {
                if (path.find("nowhere") != std::string::npos) continue;
                EXPECT_TRUE(Exists(path)) << "texture " << texture << ": " << path;
            }
        }
    }
}

TEST_F(MediaFolder, SampleRideWithEveryRideTemplateAndEachTreeNamesFilesThatExist) {
    MString ride = scratch::Text(Program / "media" / "Samples" / "Ride.qo");
    for (int32_t tree = 1; tree <= 7; tree++) {
        ASSERT_TRUE(LoadSketch(ride)) << Messages();
        ASSERT_GT(TheSketch->PointCount, 10);
        for (int32_t index = 0; index < 9; index++)
            Settings.Template[index] = index >= 2 && index <= 7;
        Settings.TreeType = tree;
        Settings.Smooth = 2;
        Settings.MaxLinesPerCurve = 100;
        MString eps = scratch::Text(Saves / ("ride" + std::to_string(tree) + ".eps"));
        ASSERT_TRUE(SaveEps(eps));
        EXPECT_EQ(Script.Count, 0) << Messages();
        std::string base = (Saves / ("ride" + std::to_string(tree))).string();
        for (const char* word : {"_Structure.eps", "_Foundation.eps", "_Trunks.eps", "_Leaves.eps"})
            EXPECT_TRUE(fs::exists(base + word)) << word;
        int32_t models = 0;
        for (const char* suffix :
             {"_Rollercoaster1stPerson.cnd", "_Rollercoaster3rdPerson.cnd", "_Road1stPerson.cnd",
              "_Road3rdPerson.cnd", "_Bob1stPerson.cnd", "_Bob3rdPerson.cnd"}) {
            std::string show = base + suffix;
            ASSERT_TRUE(fs::exists(show)) << show;
            std::vector<std::string> lines = Lines(scratch::U16(
                ReadTextFile(MString(std::u16string(show.begin(), show.end()).c_str()))));
            ExpectShowShape(suffix, lines);
            for (const std::string& path : QuotedPaths(lines)) {
                EXPECT_TRUE(Exists(path)) << suffix << ": " << path;
                if (path.size() > 4 && path.substr(path.size() - 4) == ".obj") models++;
            }
        }
        EXPECT_GT(models, 0) << "tree type " << tree;
    }
}

TEST_F(MediaFolder, SampleLogoAndWordSaveWithTheirTemplates) {
    struct Case {
        const char* sample;
        int32_t index;
        bool solid;
        const char* suffix;
    };
    for (const Case& c : {Case{"Logo.eps", 0, true, "_SpinningLogo.cnd"},
                          Case{"Logo.eps", 0, false, "_SpinningLogo.cnd"},
                          Case{"Hello.eps", 1, false, "_HandwrittenText.cnd"},
                          Case{"Hello.eps", 8, false, "_Tunnel.cnd"}}) {
        ASSERT_TRUE(LoadSketch(scratch::Text(Program / "media" / "Samples" / c.sample)))
            << c.sample << Messages();
        for (bool& ticked : Settings.Template)
            ticked = false;
        Settings.Template[c.index] = true;
        Settings.SaveSolid = c.solid;
        MString eps = scratch::Text(Saves / "sample.eps");
        ASSERT_TRUE(SaveEps(eps));
        EXPECT_EQ(Script.Count, 0) << Messages();
        std::string show = (Saves / "sample").string() + c.suffix;
        ASSERT_TRUE(fs::exists(show)) << show;
        std::vector<std::string> lines = Lines(
            scratch::U16(ReadTextFile(MString(std::u16string(show.begin(), show.end()).c_str()))));
        ExpectShowShape(c.suffix, lines);
        for (const std::string& path : QuotedPaths(lines))
            EXPECT_TRUE(Exists(path)) << c.suffix << ": " << path;
        fs::remove(show);
    }
}
