// The show of the Spaghetti tool. Nearly all of it is fixed text that the
// product reads as it stands, separators and quirks included (the particle
// layer's picture line ends in a stray "r" and a bare line feed); only a few
// lines follow the tool's choices.

#include "show/SpaghettiShow.h"

#include "foundation/Folders.h"
#include "foundation/MTextFile.h"

#include <initializer_list>

namespace {

// What a texture of the dropdown brings.
struct TextureRow {
    const char16_t* First;  // picture file below Media/Textures; null for none
    const char16_t* Second; // normal map, or null
    float ScaleFactor;      // the repeat length is multiplied by it
    bool Shiny;
};

const TextureRow Textures[] = {
    {nullptr, nullptr, 1, false},                    // No texture
    {u"Bamboo.png", nullptr, 1, false},              // Bamboo
    {u"Danger.png", nullptr, 1, false},              // Danger
    {u"Rope.png", u"Rope_Normalmap.png", 1, false},  // Rope
    {u"Knitting.png", nullptr, 10, false},           // Knitting
    {u"Mummy.png", nullptr, 1, false},               // Mummy: depth bias -2
    {u"Snake.png", u"Snake_Normalmap.png", 1, true}, // Snake
    {u"Stem.png", nullptr, 1, false},                // Stem
    {u"Stripes.png", nullptr, 50, true},             // Stripes
    {u"Wood.png", u"Wood_Normalmap.png", 1, false},  // Wood
};
const int32_t TextureCount = int32_t(sizeof Textures / sizeof Textures[0]);
const int32_t MummyTexture = 5;

// What an animation of the dropdown brings: the show's length and the drawn
// part of the path at its start and at its end.
struct AnimationRow {
    int32_t Length; // milliseconds
    float Start[2];
    float End[2];
};

const AnimationRow Animations[] = {
    {1000, {1, 0}, {1, 0}},        // No animation
    {30000, {0, 0}, {1, 0}},       // Writer
    {30000, {1, 0}, {0, 0}},       // Cleaner
    {30000, {0.1f, 0}, {1, 0.9f}}, // Walker
    {30000, {1, 0}, {1, 0}},       // Light snake: glowing gradient, no pictures
};
const int32_t AnimationCount = int32_t(sizeof Animations / sizeof Animations[0]);
const int32_t LightSnake = 4;

const int32_t ShapeTypes[] = {1, 3, 0}; // Flat, Square, Round

MString TexturePath(const char16_t* name) {
    if (!name) return MString();
    MString folder = JoinPath(JoinPath(ProgramFolder(), MString(u"Media")), MString(u"Textures"));
    return JoinPath(folder, MString(name));
}

// Appends fixed lines, each with its CR LF.
void Lines(MString& text, std::initializer_list<const char*> lines) {
    for (const char* line : lines)
        text += Narrow(line) + "\r\n";
}

// Appends a line made of parts, with its CR LF.
void Line(MString& text, const MString& line) {
    text += line + "\r\n";
}

MString Pair(const float pair[2]) {
    return MString(pair[0]) + " " + MString(pair[1]);
}

} // namespace

bool MakeSpaghettiShow(MString& text, const MString& epsPath, const MString& pictureFile,
                       int32_t texture, int32_t particle, float radius, int32_t shape,
                       int32_t animation) {
    if (shape < 0 || shape > 2) return false;
    int32_t shapeType = ShapeTypes[shape];
    if (texture < 0 || texture >= TextureCount) texture = 0;
    if (animation < 0 || animation >= AnimationCount) animation = 0;
    const TextureRow& look = Textures[texture];
    const AnimationRow& motion = Animations[animation];

    float textureScale = radius * 0.1f;
    textureScale = textureScale * look.ScaleFactor;
    MString first = TexturePath(look.First);
    MString second = TexturePath(look.Second);
    MString effect(u"PBR.cfx");
    bool glow = animation == LightSnake;
    if (glow) {
        effect = u"Gradient.cfx";
        first = MString();
        second = MString();
        textureScale = textureScale * 10;
    }
    MString leaf = particle == 1 ? TexturePath(u"Leaf.png") : MString();
    bool moves = motion.Start[0] != motion.End[0] || motion.Start[1] != motion.End[1];

    MString show;
    // Head.
    Lines(show, {"Cinderlane Show 4 7"});
    Line(show, Narrow("LEN\t") + IntegerText(motion.Length));
    Lines(show, {"SIZ\t1920\t1080", "PAR\t1", "BGC\t-1 -1 -1", ""});

    // Camera, layer 1.
    Lines(show, {"LAY\tCamera",  "TP1\t0",        "TP2\t0",       "TP3\t0",
                 "PHY\t0",       "VIS\tY",        "KEY\t0",       "POS\t0\t0\t0",
                 "ROT\t0\t0\t0", "FOV\t1.047198", "SIZ\t300",     "DRC\t0\t0\t0",
                 "TAR\t0",       "BRI\t1",        "GAM\t1",       "KLE\t1\t1\t1",
                 "COL\t1",       "FOR\t0\t0",     "FOC\t0\t0\t0", "GWI\t1",
                 "GWR\t50",      "GCO\t1\t1\t1",  "FAS\t0",       "FAC\t0\t0\t0",
                 "ACA\t1",       "PUD\t0",        "PAL\t0",       ""});

    // Light, layer 2.
    Lines(show, {"LAY\tLight",
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
                 ""});

    // Container, layer 3.
    Lines(show, {"LAY\tContainer", "PHY\t0", "VIS\tY", "KEY\t0", "POS\t0\t0\t250", "ROT\t0\t0\t0",
                 "ROC\t0\t0\t0", "SCA\t1\t1\t1", "ALP\t0", "JOI\t0", "PAR\t0", ""});

    // The picture, layer 4.
    Lines(show, {"LAY\tMedia", "TP1\t0", "TP2\t2", "TP3\t0", "PHY\t0", "VIS\tY"});
    Line(show, Narrow("MPA\t\"") + pictureFile + "\"");
    Lines(show, {"KEY\t0",          "POS\t0\t0\t0",
                 "ROT\t0\t0\t0",    "ROC\t0\t0\t0",
                 "SCA\t1\t1\t1",    "COL\t1\t1\t1",
                 "COS\t0\t0\t0",    "SPE\t0",
                 "ALP\t0",          "BEV\t1\t1\t0",
                 "TRE\t0\t0",       "ORE\t1\t1\t1",
                 "FLE\t0.25\t1\t0", "FRA\t1\t1",
                 "FPS\t10",         "RAD\t0.2",
                 "STA\t12\t30\t0",  "DEC\t0\t0\t0",
                 "DES\t50",         "XPL\t0\t0",
                 "MAX\t0\t0",       "VOL\t1",
                 "MOS\t1",          "BIA\t-1",
                 "PAL\t3",          ""});

    // The strings, layer 5.
    Lines(show, {"LAY\tSketch"});
    if (glow) Lines(show, {"LPR\tN\tN\tN\tN\tN\tX\tN\tN\tY"});
    Line(show, Narrow("TP1\t") + IntegerText(shapeType));
    Lines(show, {"TP2\t10", "TP3\t0", "PHY\t0", "VIS\tY"});
    Line(show, Narrow("MPA\t\"") + first + "\"");
    Line(show, Narrow("MPB\t\"") + second + "\"");
    Line(show, Narrow("FXP\t\"") + effect + "\"");
    Line(show, Narrow("FNA\t\"") + epsPath + "\"\t19\t1\t0\tN\t0\tN");
    Lines(show, {"KEY\t0", "POS\t0\t0\t0", "ROT\t0\t0\t0", "SCA\t1\t1\t1"});
    Line(show, Narrow("PFS\t") + MString(radius) + " " + MString(radius));
    Lines(show, {"RAD\t1\t1\t0"});
    Line(show, Narrow("PRO\t") + MString(1.57079637f));
    Lines(show, {"COL\t1\t1\t1", "COS\t0\t0\t0"});
    Lines(show, {look.Shiny ? "SPE\t0.8" : "SPE\t0"});
    Lines(show, {"ALP\t0", "OFF\t0\t0\t0", "SHE\t0\t0\t0"});
    Line(show, Narrow("STA\t") + Pair(motion.Start));
    Lines(show, {"TRA\t0", "TEP\t0\t0"});
    Line(show, Narrow("TES\t-1\t") + MString(textureScale));
    Lines(show, {"SMO\t0", "SLE\t0", "GRA\t0", "FRI\t1", "MSP\t1\t1", "ESP\t0"});
    Lines(show, {texture == MummyTexture ? "BIA\t-2" : "BIA\t0"});
    Lines(show, {"PAL\t3"});
    if (glow) {
        Lines(show, {"EF0\t0\t0\t0", "EF1\t1\t0\t0", "EF2\t1.570796", "EF3\t0.2", "EF4\t0",
                     "EF5\t1", "EF6\t1", "EF7\t0.9\t0.9", "EF8\t1", "EF9\t0", "EF10\t0.5",
                     "EF11\t1\t1\t1", "EF12\t0"});
    } else {
        Lines(show, {look.Shiny ? "EF0\t0.3 1" : "EF0\t-1 -1"});
        Lines(show,
              {"EF1\t1", "EF2\t1", "EF3\t0\t0\t0", "EF4\t1", "EF5\t0.5", "EF6\t0.5", "EF7\t-1"});
    }
    if (moves) {
        Line(show, Narrow("KEY\t") + IntegerText(motion.Length));
        Line(show, Narrow("STA\t") + Pair(motion.End));
    }
    Lines(show, {""});

    // Falling leaves, layer 6. The picture line's stray "r" and bare line
    // feed are what the product has always been given.
    if (!leaf.IsEmpty()) {
        Lines(show, {"LAY\tParticle", "LPR\tN\tN\tN\tN\tN\tX\tN\tY\tN", "TP1\t10", "TP2\t11",
                     "TP3\t12", "PHY\t0", "VIS\tY"});
        show += Narrow("MPA\t\"") + leaf + "\"r\n";
        Lines(show, {"FXP\tPBR.cfx",
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
    text = show;
    return true;
}

bool WriteSpaghettiShow(const MString& showPath, const MString& epsPath, const MString& pictureFile,
                        int32_t texture, int32_t particle, float radius, int32_t shape,
                        int32_t animation) {
    MString text;
    if (!MakeSpaghettiShow(text, epsPath, pictureFile, texture, particle, radius, shape, animation))
        return false;
    return WriteTextFile(text, showPath, Encoding8Bit);
}
