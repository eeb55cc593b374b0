// The Cinderlane shows that go with a saved sketch. Instantiating a template
// is plain text work: the template is never parsed, only its markers and the
// lines that open a layer are looked at. A failure in one template never
// stops the next.

#include "show/WriteShows.h"

#include "foundation/Folders.h"
#include "foundation/MRandom.h"
#include "foundation/MTextFile.h"
#include "foundation/Platform.h"
#include "foundation/Settings.h"
#include "show/TrackBuilder.h"

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <string>

const uint32_t* TheShowSeedOverride = nullptr;

namespace {

// One template of the save dialog, by its index in WSettings::Template.
struct TemplateRow {
    const char16_t* File;
    const char16_t* SolidFile; // taken when SaveSolid is on; null: File
    const char16_t* Suffix;    // replaces ".cnd" in the show's path
    bool TrackFiles;           // the ride gets pillars, trees and their files
};

const TemplateRow Templates[TemplateCount] = {
    {u"SpinningLogo.cnd", u"SpinningLogoSolid.cnd", u"_SpinningLogo.cnd", false},
    {u"HandwrittenText.cnd", nullptr, u"_HandwrittenText.cnd", false},
    {u"Rollercoaster1stPerson.cnd", nullptr, u"_Rollercoaster1stPerson.cnd", true},
    {u"Rollercoaster3rdPerson.cnd", nullptr, u"_Rollercoaster3rdPerson.cnd", true},
    {u"Road1stPerson.cnd", nullptr, u"_Road1stPerson.cnd", true},
    {u"Road3rdPerson.cnd", nullptr, u"_Road3rdPerson.cnd", true},
    {u"Bob1stPerson.cnd", nullptr, u"_Bob1stPerson.cnd", true},
    {u"Bob3rdPerson.cnd", nullptr, u"_Bob3rdPerson.cnd", true},
    {u"Tunnel.cnd", nullptr, u"_Tunnel.cnd", false},
};

// The four track files, in the order of the markers [EP2] to [EP5].
const char16_t* const TrackWords[4] = {u"_Structure.eps", u"_Foundation.eps", u"_Trunks.eps",
                                       u"_Leaves.eps"};

const char16_t* const TreeNames[7] = {u"Beech", u"Elm",  u"Fir",   u"Juniper",
                                      u"Oak",   u"Palm", u"Spruce"};

// The shows of templates 2 to 7 may get tree models.
bool TakesTreeModels(int32_t index) {
    return index >= 2 && index <= 7;
}

MString MediaPath(const char16_t* folder, const MString& name) {
    return JoinPath(JoinPath(JoinPath(ProgramFolder(), MString(u"Media")), MString(folder)), name);
}

MString Quoted(const MString& text) {
    return MString(u"\"") + text + "\"";
}

// A path that names a file: not empty, there, and not a folder.
bool IsFile(const MString& path) {
    return !path.IsEmpty() && PathExists(path) && !FolderExists(path);
}

// 0.03 seconds per unit of track, in whole seconds.
MString LengthText(float length) {
    float seconds = length * 0.03f;
    if (!(seconds >= 1)) return MString(u"0");
    int64_t whole = seconds >= 2147483647.0f ? 2147483647 : int64_t(seconds);
    return IntegerText(whole * 1000);
}

// One letter V per 3.313518 units of track, 1 to 1000 of them.
MString RunOfV(float length) {
    float letters = std::ceil(length / 3.313518f);
    int32_t n = 1;
    if (letters >= 1000)
        n = 1000;
    else if (letters > 1)
        n = int32_t(letters);
    MString run;
    run.Reserve(n + 1, false);
    for (int32_t i = 0; i < n; i++)
        run += MString(u"V");
    return run;
}

// The number of lines that open a layer: "LAY" and a tab at the very start
// of the text or right behind a CR or LF, which is where every line begins.
int32_t LayerLines(const MString& text) {
    MString opener(u"LAY\t");
    int32_t count = 0;
    for (int32_t at = text.Find(opener); at >= 0; at = text.Find(opener, at + 1))
        if (at == 0 || text.Text[at - 1] == u'\r' || text.Text[at - 1] == u'\n') count++;
    return count;
}

// Appends the container of tree models: the container stands on the ground,
// so each tree, its child, has y 0. A model 200 units tall comes out at the
// height of its tree. Each tree draws its turn from MRandom.
void AppendTreeModels(MString& text, const WShowInfo& info, int32_t treeType) {
    int32_t index = treeType - 1;
    if (index < 0) index = 0;
    if (index > 6) index = 6;
    MString model = MediaPath(u"Models", MString(TreeNames[index]) + ".obj");
    if (!IsFile(model)) {
        ShowMessage(MString(u"Could not find model file:\n\n\"") + model + "\"", IconError);
        return;
    }
    text.Trim();
    int32_t layers = LayerLines(text);
    if (layers < 2) return;

    text += MString(u"\r\n\r\n");
    // The name's line end is missing; the product reads the next key on the
    // same line.
    text += MString(u"LAY\tContainer\r\nNAM \"Realistic trees\"PHY\t0\r\nVIS\tY\r\nKEY\t0\r\n");
    text += MString(u"POS\t0\t") + MString(info.Ground) + "\t0\r\n";
    text += MString(u"ROT\t0\t0\t0\r\nROC\t0\t0\t0\r\nSCA\t1\t1\t1\r\nALP\t0\r\nPAR\t0\r\n");
    MString parent = IntegerText(int64_t(layers) + 1);
    for (int32_t i = 0; i < info.TreeCount; i++) {
        const WTreeSpot& tree = info.Trees[i];
        float angle = float(MRandomInt(10000)) * 6.2831855f;
        angle = angle * 0.0001f;
        float scale = tree.Height / 200.0f;
        MString s(scale);
        text += MString(u"\r\nLAY Model\r\nTP1 0\r\nTP2 2\r\nPHY 0\r\nVIS Y\r\n");
        text += MString(u"MOP ") + Quoted(model) + "\r\nKEY 0\r\n";
        text += MString(u"POS ") + MString(tree.X) + " 0 " + MString(tree.Z) + "\r\n";
        text += MString(u"ROT ") + MString(angle) + " 0 0\r\nROC 0\t0 0\r\n";
        text += MString(u"SCA ") + s + " " + s + " " + s + "\r\n";
        text += MString(u"COL 1\t1 1\r\nCOS 0\t0 0\r\nSPE 0\r\nALP 0\r\nSUB 0\r\nBIA 0\r\n");
        text += MString(u"PAL ") + parent + "\r\n";
    }
}

} // namespace

MString TemplatePath(int32_t index) {
    if (index < 0 || index >= TemplateCount) return MString();
    const TemplateRow& row = Templates[index];
    bool solid = TheSettings && TheSettings->SaveSolid && row.SolidFile;
    return MediaPath(u"Templates", MString(solid ? row.SolidFile : row.File));
}

MString ShowPath(int32_t index, const MString& epsPath) {
    if (index < 0 || index >= TemplateCount) return MString();
    MString path = epsPath;
    path.SetFileExtension(MString(u"cnd"));
    path.ReplaceFirst(MString(u".cnd"), MString(Templates[index].Suffix));
    return path;
}

MString TrackFilePath(const MString& epsPath, const char16_t* word) {
    MString path = epsPath;
    path.SetFileExtension(MString(u"eps"));
    path.ReplaceFirst(MString(u".eps"), MString(word));
    return path;
}

// Text before an occurrence holds none, and only the replacement changed it,
// so each search starts where a new occurrence could first begin: the first
// occurrence of the whole text is found each time, as the rule asks, without
// searching the text from its start again. The text may hold zero units.
void ReplaceMarker(MString& text, const MString& marker, const MString& replacement) {
    if (text.IsEmpty() || marker.IsEmpty() || marker == replacement) return;
    if (replacement.Find(marker) >= 0) return;
    std::u16string work(text.Text, size_t(text.Length));
    std::u16string find(marker.Text, size_t(marker.Length));
    std::u16string with(replacement.Chars(), size_t(replacement.Length));
    size_t at = work.find(find);
    if (at == std::u16string::npos) return;
    while (at != std::u16string::npos) {
        work.replace(at, find.size(), with);
        size_t back = find.size() - 1;
        at = work.find(find, at > back ? at - back : 0);
    }
    if (work.size() >= size_t(INT32_MAX)) return;
    int32_t length = int32_t(work.size());
    text.Reserve(0, false);
    if (length == 0 || !text.Reserve(length + 1, false)) return;
    for (int32_t i = 0; i < length; i++)
        text.Text[i] = work[size_t(i)];
    text.Text[length] = 0;
    text.Length = length;
}

void WriteShows(const MString& epsPath) {
    MRandomSeed =
        TheShowSeedOverride ? *TheShowSeedOverride : MilliSeconds() + uint32_t(std::rand());
    const WSettings* settings = TheSettings;
    if (!settings) return;

    WShowInfo info; // all 0 when the save begins
    for (int32_t index = 0; index < TemplateCount; index++) {
        if (!settings->Template[index]) continue;
        info.TreeCount = 0;
        info.Trees.SetCount(0);

        MString track[4];
        if (Templates[index].TrackFiles)
            for (int32_t k = 0; k < 4; k++)
                track[k] = TrackFilePath(epsPath, TrackWords[k]);
        MString templatePath = TemplatePath(index);
        MString showPath = ShowPath(index, epsPath);
        MString road = MediaPath(u"Textures", MString(u"Road.png"));
        MString tunnel = MediaPath(u"Textures", MString(u"Tunnel.png"));
        MString bob = MediaPath(u"Textures", MString(u"Bob.png"));

        if (!IsFile(templatePath)) {
            ShowMessage(MString(u"Could not open the template show:\n\n\"") + templatePath + "\"",
                        IconError);
            continue;
        }
        MString text = ReadTextFile(templatePath);

        if (BuildTrack(info, track[0], track[1], track[2], track[3])) {
            MString visible(info.TreeCount < 1 ? u"Y" : u"N");
            ReplaceMarker(text, MString(u"[EPS]"), Quoted(epsPath));
            ReplaceMarker(text, MString(u"[EP2]"), Quoted(track[0]));
            ReplaceMarker(text, MString(u"[EP3]"), Quoted(track[1]));
            ReplaceMarker(text, MString(u"[EP4]"), Quoted(track[2]));
            ReplaceMarker(text, MString(u"[EP5]"), Quoted(track[3]));
            ReplaceMarker(text, MString(u"[VI4]"), visible);
            ReplaceMarker(text, MString(u"[VI5]"), visible);
            ReplaceMarker(text, MString(u"[SMO]"), IntegerText(settings->Smooth));
            ReplaceMarker(text, MString(u"[LEN]"), LengthText(info.Length));
            ReplaceMarker(text, MString(u"[VVV]"), RunOfV(info.Length));
            ReplaceMarker(text, MString(u"[SPP]"), MString(info.Ground));
        }
        ReplaceMarker(text, MString(u"[TRO]"), Quoted(road));
        ReplaceMarker(text, MString(u"[TTU]"), Quoted(tunnel));
        ReplaceMarker(text, MString(u"[TBO]"), Quoted(bob));

        if (TakesTreeModels(index) && settings->TreeType > 0 && info.TreeCount > 0)
            AppendTreeModels(text, info, settings->TreeType);

        WriteTextFile(text, showPath, EncodingUtf16LE);
    }
}
