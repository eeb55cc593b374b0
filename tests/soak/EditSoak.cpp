// The edit soak: a user at the main window, played by a seeded random
// generator, runs through the editor's whole repertoire that needs no dialog
// (strokes, clicks, drags of points, handles and roll tips, inserts,
// deletions, character keys, menu commands, elements, undo and redo runs,
// clean-ups, saves and reloads) while the sketch's invariants are checked
// after every operation.
//
//   edit_soak [OPERATIONS] [SEED]
//
// OPERATIONS defaults to 20000, SEED to 1. A failure prints the seed and the
// number of the operation; the same seed replays the same run. The last line
// gives the figures: operations, seconds, failures. The exit code is 0 only
// when nothing failed.

#include "drawing/FilePrompt.h"
#include "elements/WElement.h"
#include "eps/EpsWriter.h"
#include "eps/LoadSketch.h"
#include "foundation/Folders.h"
#include "foundation/Platform.h"
#include "shell/Commands.h"
#include "shell/Input.h"
#include "shell/Keys.h"
#include "shell/Shell.h"
#include "shell/WSettings.h"
#include "sketch/PointEditing.h"
#include "sketch/WRecording.h"
#include "sketch/WSketch.h"
#include "sketch/WUndoRing.h"
#include "view/WView.h"

#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <random>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

namespace fs = std::filesystem;

// ---- The run's state

struct Soak {
    std::mt19937_64 Random;
    uint64_t Seed = 1;
    int64_t Operation = 0;  // number of the operation running, from 1
    const char* Name = "";  // its name, for the failure report
    int64_t Failures = 0;   // failed checks so far
    int64_t Saves = 0;      // saves and reloads compared record by record
    int64_t LooseSaves = 0; // saves and reloads near a threshold, compared loosely
    fs::path Folder;        // scratch folder of the run
    bool LastWasCleanUp = false;

    // Scripted answers of message boxes and file prompts for one operation.
    MString Texts[16];
    MessageIcon Icons[16] = {};
    MessageAnswer Answers[16] = {};
    MessageScript Messages;
    MString PromptAnswers[4];
    FilePromptScript Prompts;
};

Soak TheSoak;

int32_t Below(int32_t count) {
    return int32_t(TheSoak.Random() % uint64_t(count));
}
float Between(float low, float high) {
    return low + (high - low) * float(TheSoak.Random() % 1000001) / 1000000.0f;
}
bool Chance(int32_t percent) {
    return Below(100) < percent;
}

std::string Narrow(const MString& text) {
    std::string bytes;
    for (int32_t i = 0; i < text.Length; i++)
        bytes += text.Text[i] < 128 ? char(text.Text[i]) : '?';
    return bytes;
}

MString Wide(const std::string& text) {
    std::u16string wide(text.begin(), text.end());
    return MString(wide.c_str());
}

void Fail(const std::string& what) {
    TheSoak.Failures++;
    if (TheSoak.Failures <= 20)
        std::printf("FAILED seed %llu operation %lld (%s): %s\n", (unsigned long long)TheSoak.Seed,
                    (long long)TheSoak.Operation, TheSoak.Name, what.c_str());
}

// Message boxes answer from a small random list; the texts are kept so
// that a reload can be checked for silence.
void ScriptAnswers() {
    TheSoak.Messages.Count = 0;
    TheSoak.Messages.AnswerCount = 16;
    // A Yes to the question about unsaved changes meets a cancelled file
    // prompt, as no prompt answer is scripted.
    const MessageAnswer choices[] = {AnswerYes, AnswerNo, AnswerCancel, AnswerOk};
    for (MessageAnswer& answer : TheSoak.Answers)
        answer = choices[Below(4)];
    TheSoak.Prompts.Count = 0;
    TheSoak.Prompts.AnswerCount = 0;
}

// ---- Positions a user would point at

MPoint2 AnyPixel() {
    return MPoint2{Between(-20, 820), Between(-20, 620)};
}

// A pixel on or near something of the sketch: a position, a handle, a roll
// tip, or a point along a segment.
MPoint2 PixelNearSketch() {
    WSketch& s = *TheSketch;
    if (s.PointCount < 1 || Chance(15)) return AnyPixel();
    const WSketchPoint& p = s.Points[Below(s.PointCount)];
    MPoint3 target = p.Position;
    switch (Below(5)) {
    case 1:
        target = p.HandleIn;
        break;
    case 2:
        target = p.HandleOut;
        break;
    case 3:
        target = RollTip(p);
        break;
    case 4: {
        int32_t i = Below(s.PointCount);
        if (i > 0) {
            float t = Between(0, 1);
            const MPoint3& a = s.Points[i - 1].Position;
            const MPoint3& b = s.Points[i].Position;
            target = MPoint3{a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t, a.z + (b.z - a.z) * t};
        }
        break;
    }
    default:
        break;
    }
    MPoint2 pixel = ScreenPoint(target);
    if (!std::isfinite(pixel.x) || !std::isfinite(pixel.y)) return AnyPixel();
    float jitter = Chance(50) ? 0 : 3;
    return MPoint2{pixel.x + Between(-jitter, jitter), pixel.y + Between(-jitter, jitter)};
}

WKeys RandomKeys(int32_t percent) {
    WKeys keys;
    keys.Control = Chance(percent);
    keys.Shift = Chance(percent);
    keys.Alt = Chance(percent / 2);
    return keys;
}

void EnsureEditMode() {
    if (TheMode == ModeDraw) SetMode(Chance(70) ? ModeEditSketch : ModeEditRoll);
}

// ---- Operations

void Stroke() {
    SetMode(ModeDraw);
    MPoint2 at = AnyPixel();
    WKeys keys = RandomKeys(30);
    OnLeftButtonDown(at, keys);
    int32_t samples = 1 + Below(40);
    float heading = Between(0, 6.2831855f);
    bool closing = Chance(20);
    MPoint2 start = at;
    for (int32_t i = 0; i < samples; i++) {
        heading += Between(-0.6f, 0.6f);
        float step = Between(2, 30);
        at = MPoint2{at.x + std::cos(heading) * step, at.y + std::sin(heading) * step};
        OnMouseMove(at, keys);
    }
    if (closing) OnMouseMove(start, keys);
    OnLeftButtonUp(at, RandomKeys(40));
}

void Click() {
    EnsureEditMode();
    MPoint2 at = PixelNearSketch();
    OnMouseMove(at, WKeys());
    OnLeftButtonDown(at, RandomKeys(15));
    OnLeftButtonUp(at, WKeys());
}

void Drag() {
    EnsureEditMode();
    MPoint2 at = PixelNearSketch();
    WKeys keys = RandomKeys(15);
    OnMouseMove(at, WKeys());
    OnLeftButtonDown(at, keys);
    int32_t moves = 1 + Below(12);
    for (int32_t i = 0; i < moves; i++) {
        at = Chance(20) ? PixelNearSketch()
                        : MPoint2{at.x + Between(-25, 25), at.y + Between(-25, 25)};
        OnMouseMove(at, keys.Control && Chance(70) ? WKeys() : keys);
    }
    OnLeftButtonUp(at, keys);
}

void RightClick() {
    EnsureEditMode();
    MPoint2 at = PixelNearSketch();
    WKeys keys = RandomKeys(40);
    OnMouseMove(at, WKeys());
    OnRightButtonDown(at, keys);
    if (Chance(30)) OnMouseMove(MPoint2{at.x + Between(-20, 20), at.y + Between(-20, 20)}, keys);
    OnRightButtonUp(at, keys);
}

void InsertWithAlt() {
    EnsureEditMode();
    MPoint2 at = PixelNearSketch();
    WKeys keys;
    keys.Alt = true;
    OnMouseMove(at, WKeys());
    OnLeftButtonDown(at, keys);
    OnLeftButtonUp(at, WKeys());
}

void DeleteKey() {
    OnDeleteKey(RandomKeys(50));
}

void Character() {
    const char16_t keys[] = u"aocn+=-2gderAOCNGDERxz ";
    OnCharacter(keys[Below(int32_t(sizeof keys / sizeof keys[0]) - 1)]);
}

void MenuCommand() {
    void (*const commands[])() = {CommandUndo,
                                  CommandRedo,
                                  CommandDrawFreehand,
                                  CommandEditSketch,
                                  CommandEditRoll,
                                  CommandGrid,
                                  CommandFlipHorizontal,
                                  CommandFlipVertical,
                                  CommandCentre,
                                  CommandNormalizeSize,
                                  CommandFront,
                                  CommandBack,
                                  CommandRight,
                                  CommandLeft,
                                  CommandTop,
                                  CommandBottom,
                                  CommandZoomIn,
                                  CommandZoomOut,
                                  CommandNew};
    int32_t count = int32_t(sizeof commands / sizeof commands[0]);
    // New empties the sketch; it comes less often than the others.
    int32_t pick = Below(count);
    if (pick == count - 1 && !Chance(20)) pick = 0;
    commands[pick]();
}

void ViewGesture() {
    EnsureEditMode();
    MPoint2 at = AnyPixel();
    OnMouseMove(at, WKeys());
    WKeys keys;
    keys.Control = true;
    bool left = Chance(50);
    if (left)
        OnLeftButtonDown(at, keys);
    else
        OnRightButtonDown(at, keys);
    for (int32_t i = 0; i < 3; i++) {
        at = MPoint2{at.x + Between(-30, 30), at.y + Between(-30, 30)};
        OnMouseMove(at, keys);
    }
    if (left)
        OnLeftButtonUp(at, keys);
    else
        OnRightButtonUp(at, keys);
    OnMouseWheel(Chance(50) ? 120 : -120);
}

void AddElement() {
    uint32_t id = uint32_t(Below(18));
    const WElementRow* row = ElementRow(int32_t(id));
    float p[4] = {};
    for (int32_t i = 0; i < 4; i++) {
        float base = row ? row->Default[i] : 10;
        switch (Below(5)) {
        case 0:
            p[i] = 0;
            break;
        case 1:
            p[i] = -base;
            break;
        default:
            p[i] = base * Between(0.1f, 3);
        }
    }
    if (TheElement) TheElement->Add(id, p[0], p[1], p[2], p[3]);
}

void UndoRedoRun() {
    int32_t undos = Below(8), redos = Below(8);
    for (int32_t i = 0; i < undos; i++)
        CommandUndo();
    for (int32_t i = 0; i < redos; i++)
        CommandRedo();
}

void CleanUpOnly() {
    TheSketch->CleanUp();
    TheSoak.LastWasCleanUp = true;
}

void PointOperation() {
    WSketch& s = *TheSketch;
    if (s.PointCount > 0 && Chance(80)) {
        s.Current = Below(s.PointCount);
        s.CurrentPart = Below(4);
    }
    switch (Below(4)) {
    case 0:
        s.ToggleSmooth();
        break;
    case 1:
        s.MakeCircle();
        break;
    case 2:
        s.MakeArc();
        break;
    default:
        s.DeleteSegment();
        break;
    }
    s.Commit();
}

// ---- Save and reload

// Two floats that the file's six decimals carry alike: the difference is
// within half a unit of the sixth decimal and the float's own rounding.
bool SameToSixDecimals(float a, float b) {
    float tolerance = 0.5e-6f + std::fabs(a) * 2.4e-7f;
    return std::fabs(a - b) <= tolerance * 1.01f;
}
bool SameToSixDecimals(const MPoint3& a, const MPoint3& b) {
    return SameToSixDecimals(a.x, b.x) && SameToSixDecimals(a.y, b.y) &&
           SameToSixDecimals(a.z, b.z);
}

std::string Describe(const MPoint3& p) {
    char text[120];
    std::snprintf(text, sizeof text, "(%.9g, %.9g, %.9g)", double(p.x), double(p.y), double(p.z));
    return text;
}

MPoint3 Flattened(const MPoint3& p, bool flat, float z) {
    return flat ? MPoint3{p.x, p.y, p.z - z} : p;
}

// What the reader makes of the saved records. Two of its rules change a
// sketch on purpose: a curve whose handles are both shorter than a tenth of
// its chord comes back as a line, and a curve whose first handle lies on
// the end of a line or curve before it is dropped.
// A curve whose handles lie within a thousandth of its chord's line may be
// straight by the clean-up's measure once its numbers are rounded to six
// decimals, and come back as a line: such a record is marked in loose.
std::vector<WSketchPoint> ReadBack(const std::vector<WSketchPoint>& saved,
                                   std::vector<bool>& loose) {
    std::vector<WSketchPoint> read;
    loose.clear();
    for (size_t i = 0; i < saved.size(); i++) {
        WSketchPoint record = saved[i];
        if (record.Kind == KindCurve && i > 0 && !read.empty()) {
            const MPoint3& start = saved[i - 1].Position;
            const MPoint3& first = saved[i - 1].HandleOut;
            float chord = Length3(record.Position - start);
            if (chord > 0 && Length3(first - start) / chord < 0.1f &&
                Length3(record.Position - record.HandleIn) / chord < 0.1f) {
                record.Kind = KindLine;
            } else if (read.back().Kind != KindMove && Coincide(read.back().Position, first)) {
                continue;
            } else {
                // The curve's first control goes to the record before it,
                // which is the file's previous point even after a drop.
                read.back().HandleOut = first;
            }
        }
        bool nearlyStraight =
            record.Kind == KindCurve && i > 0 &&
            DistanceToLine3(saved[i - 1].Position, record.Position, saved[i - 1].HandleOut) <
                1e-3f &&
            DistanceToLine3(saved[i - 1].Position, record.Position, record.HandleIn) < 1e-3f;
        loose.push_back(nearlyStraight);
        read.push_back(record);
    }
    return read;
}

// The reloaded sketch against the one saved, as the reader reads it: the
// same records and kinds, the positions and the curve handles the file
// carries, to its six decimals. Line handles and smooth flags are not in the
// file and are rebuilt by the load. Where the load's clean-up removed more
// (a curve read as a line may fall in line with its neighbours), the
// reloaded positions must still come in the saved order.
// The six decimals move a number by up to half a millionth, which can tip
// the load's decisions that rest on a threshold: whether two points
// coincide (a difference below 2^-14), whether a curve is straight or a
// point lies on a line (a distance below 2^-14), and the reader's test of
// a curve's handles against a tenth of its chord. A sketch where any such
// measure lies close to its threshold is compared loosely.
bool NearThreshold(float value) {
    float magnitude = std::fabs(value);
    return magnitude > 4.5e-5f && magnitude < 8e-5f;
}
bool NearThreshold(const MPoint3& a, const MPoint3& b) {
    return NearThreshold(a.x - b.x) || NearThreshold(a.y - b.y) || NearThreshold(a.z - b.z);
}

bool ClearOfThresholds(const std::vector<WSketchPoint>& saved) {
    size_t start = 0;
    for (size_t i = 1; i <= saved.size(); i++) {
        if (i == saved.size() || saved[i].Kind == KindMove) {
            if (NearThreshold(saved[start].Position, saved[i - 1].Position)) return false;
            start = i;
        }
        if (i == saved.size()) break;
        const WSketchPoint& a = saved[i - 1];
        const WSketchPoint& b = saved[i];
        if (NearThreshold(a.Position, b.Position) || NearThreshold(a.Roll, b.Roll) ||
            NearThreshold(a.HandleOut, a.Position) || NearThreshold(b.HandleIn, b.Position) ||
            NearThreshold(DistanceToLine3(a.Position, b.Position, a.HandleOut)) ||
            NearThreshold(DistanceToLine3(a.Position, b.Position, b.HandleIn)))
            return false;
        if (i + 1 < saved.size() &&
            NearThreshold(DistanceToLine3(a.Position, saved[i + 1].Position, b.Position)))
            return false;
        float chord = Length3(b.Position - a.Position);
        if (b.Kind == KindCurve && chord > 0) {
            float first = Length3(a.HandleOut - a.Position) / chord;
            float second = Length3(b.Position - b.HandleIn) / chord;
            if (std::fabs(first - 0.1f) < 1e-3f || std::fabs(second - 0.1f) < 1e-3f) return false;
        }
    }
    return true;
}

// Crumbs: two neighbouring points, or the two ends of a curve, that are
// not equal and yet closer than a thousandth (more where the coordinates
// are large). Which of them a clean-up keeps can change with the rounding
// to six decimals and with the rolls rebuilt by the load.
bool HasCrumbs(const std::vector<WSketchPoint>& saved) {
    auto crumbs = [](const MPoint3& a, const MPoint3& b) {
        float size = std::fabs(a.x) + std::fabs(a.y) + std::fabs(a.z);
        float d = Length3(a - b);
        return d > 0 && d < 1e-3f + size * 1e-5f;
    };
    size_t start = 0;
    for (size_t i = 1; i <= saved.size(); i++) {
        if (i < saved.size() && crumbs(saved[i - 1].Position, saved[i].Position)) return true;
        if (i == saved.size() || saved[i].Kind == KindMove) {
            if (crumbs(saved[start].Position, saved[i - 1].Position)) return true;
            start = i;
        }
    }
    return false;
}

// p lies on the line through a and b within a thousandth, or within the
// float precision of the coordinates where they are large.
bool OnLine(const MPoint3& a, const MPoint3& b, const MPoint3& p) {
    float size = std::fabs(a.x) + std::fabs(a.y) + std::fabs(a.z) + std::fabs(b.x) +
                 std::fabs(b.y) + std::fabs(b.z);
    return DistanceToLine3(a, b, p) < 1e-3f + size * 1e-5f;
}

// a and b meet as the clean-up sees it: each coordinate apart by less than
// its threshold, loosened by the rounding of the file's six decimals.
bool Meet(const MPoint3& a, const MPoint3& b) {
    return std::fabs(a.x - b.x) < 1e-4f && std::fabs(a.y - b.y) < 1e-4f &&
           std::fabs(a.z - b.z) < 1e-4f;
}

// Every difference is collected first: a sketch near a threshold may
// differ after its reload, and is then counted as compared loosely; any
// other difference is a failure.
void CompareReload(const std::vector<WSketchPoint>& saved, bool flatWithoutRoll, float flatZ) {
    WSketch& s = *TheSketch;
    std::vector<bool> loose;
    std::vector<WSketchPoint> expected = ReadBack(saved, loose);
    std::vector<std::string> problems;
    if (s.PointCount > int32_t(expected.size())) {
        problems.push_back("reload has " + std::to_string(s.PointCount) + " records, the save " +
                           std::to_string(expected.size()));
    } else if (s.PointCount < int32_t(expected.size())) {
        // The load's clean-up removed more: a middle point of a straight
        // run goes when the rolls rebuilt from the file (and from the line
        // handles the load makes) coincide where the saved ones did not.
        // What is left comes in order, and only such points are missing.
        size_t at = 0;
        for (int32_t i = 0; i < s.PointCount && problems.empty(); i++) {
            while (at < expected.size() &&
                   !SameToSixDecimals(Flattened(expected[at].Position, flatWithoutRoll, flatZ),
                                      s.Points[i].Position)) {
                // The clean-up measures against the neighbours left after
                // its earlier removals, and takes a line between two points
                // that meet as of no length: every point lies on it.
                bool middle = false;
                if (expected[at].Kind == KindLine && at > 0 && at + 1 < expected.size()) {
                    const MPoint3& p = expected[at].Position;
                    const MPoint3& before = expected[at - 1].Position;
                    const MPoint3& after = expected[at + 1].Position;
                    middle = OnLine(before, after, p) || Meet(before, after) ||
                             (i > 0 && OnLine(s.Points[i - 1].Position, s.Points[i].Position, p));
                }
                if (!middle)
                    problems.push_back("saved record " + std::to_string(at) + " at " +
                                       Describe(expected[at].Position) +
                                       " is missing from the reload");
                at++;
            }
            if (at == expected.size())
                problems.push_back("reloaded record " + std::to_string(i) + " at " +
                                   Describe(s.Points[i].Position) + " is not among the saved ones");
            at++;
        }
    } else {
        for (int32_t i = 0; i < s.PointCount; i++) {
            const WSketchPoint& a = expected[size_t(i)];
            const WSketchPoint& b = s.Points[i];
            std::string record = "record " + std::to_string(i);
            // A flat sketch written in two dimensions comes back at z 0.
            MPoint3 position = Flattened(a.Position, flatWithoutRoll, flatZ);
            if (a.Kind != b.Kind && loose[size_t(i)] && b.Kind == KindLine) continue;
            if (a.Kind != b.Kind)
                problems.push_back(record + " kind " + std::to_string(a.Kind) + " became " +
                                   std::to_string(b.Kind));
            if (!SameToSixDecimals(position, b.Position))
                problems.push_back(record + " position " + Describe(position) + " became " +
                                   Describe(b.Position));
            if (a.Kind == KindCurve && b.Kind == KindCurve) {
                MPoint3 in = Flattened(a.HandleIn, flatWithoutRoll, flatZ);
                if (!SameToSixDecimals(in, b.HandleIn))
                    problems.push_back(record + " handle in " + Describe(in) + " became " +
                                       Describe(b.HandleIn));
                MPoint3 out = Flattened(expected[size_t(i - 1)].HandleOut, flatWithoutRoll, flatZ);
                if (!SameToSixDecimals(out, s.Points[i - 1].HandleOut))
                    problems.push_back("record " + std::to_string(i - 1) + " handle out " +
                                       Describe(out) + " became " +
                                       Describe(s.Points[i - 1].HandleOut));
            }
        }
    }
    if (problems.empty()) {
        TheSoak.Saves++;
    } else if ((!ClearOfThresholds(saved) || HasCrumbs(saved)) &&
               s.PointCount <= int32_t(saved.size())) {
        TheSoak.LooseSaves++;
    } else {
        for (const std::string& problem : problems)
            Fail(problem);
    }
}

void SaveAndReload() {
    WSketch& s = *TheSketch;
    WSettings& settings = *TheSettings;
    settings.SaveSolid = false;
    settings.SaveRoll = Chance(70);
    settings.Centre = settings.Scale = false;
    for (bool& ticked : settings.Template)
        ticked = false;
    // The sketch is saved as clean-ups leave it once they change nothing
    // more, so that the load's own clean-up has nothing left to repair.
    for (int32_t round = 0, before = -1; round < 8 && before != s.PointCount; round++) {
        before = s.PointCount;
        if (!s.CleanUp()) return; // nothing worth saving
    }
    TheSoak.LastWasCleanUp = true;
    std::vector<WSketchPoint> saved(s.Points.Data, s.Points.Data + s.PointCount);
    bool flatWithoutRoll = s.IsFlat() && !settings.SaveRoll;
    float flatZ = saved[0].Position.z;
    bool throughFile = Chance(50);
    bool loaded;
    TheSoak.Messages.Count = 0;
    std::string bytes = Narrow(MakeSketchEps(s, settings));
    int64_t failuresBefore = TheSoak.Failures;
    if (throughFile) {
        MString path = Wide((TheSoak.Folder / "soak.eps").string());
        if (!SaveEps(path)) {
            Fail("the save of " + Narrow(path) + " failed");
            return;
        }
        if (s.Modified) Fail("a save left the sketch marked changed");
        loaded = LoadSketch(path);
    } else {
        loaded = LoadSketchMemory(MString(u"soak.eps"), bytes.data(), int32_t(bytes.size()));
    }
    if (!loaded) Fail("the reload failed");
    if (TheSoak.Messages.Count != 0) Fail("the reload showed \"" + Narrow(TheSoak.Texts[0]) + "\"");
    if (s.Modified) Fail("a reload left the sketch marked changed");
    CompareReload(saved, flatWithoutRoll, flatZ);
    TheSoak.LastWasCleanUp = true;
    // The text of the first failed reloads is kept in the working folder.
    if (TheSoak.Failures != failuresBefore && failuresBefore < 20) {
        std::string name = "soak-failure-" + std::to_string(TheSoak.Operation) + ".eps";
        if (FILE* file = std::fopen(name.c_str(), "wb")) {
            std::fwrite(bytes.data(), 1, bytes.size(), file);
            std::fclose(file);
            std::printf("the saved text is in %s\n", name.c_str());
        }
    }
}

// ---- Invariants

bool Finite(const MPoint3& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

bool SameBits(const MPoint3& a, const MPoint3& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

void CheckCleanSketch(WSketch& s);

// The kinds of the records from two before to two after index, with the
// positions of the record and of its neighbours.
std::string KindsAround(const WSketch& s, int32_t index) {
    std::string text;
    for (int32_t i = index - 2; i <= index + 2; i++)
        if (i >= 0 && i < s.PointCount)
            text += std::to_string(s.Points[i].Kind) + Describe(s.Points[i].Position) + " ";
    return text;
}

void CheckInvariants() {
    WSketch& s = *TheSketch;
    if (s.PointCount < 0 || s.PointCount > s.Points.Count)
        Fail("PointCount " + std::to_string(s.PointCount) + " outside the array of " +
             std::to_string(s.Points.Count));
    if (s.Current < -1 || s.Current >= s.PointCount)
        Fail("Current " + std::to_string(s.Current) + " out of range");
    if (s.CurrentPart < 0 || s.CurrentPart > 3)
        Fail("CurrentPart " + std::to_string(s.CurrentPart));
    if (s.GhostCount < 0 || s.GhostCount > s.Ghost.Count) Fail("GhostCount out of range");
    if (s.PointCount > 0 && s.Points[0].Kind != KindMove) Fail("record 0 is not a move");
    for (int32_t i = 0; i < s.PointCount; i++) {
        const WSketchPoint& p = s.Points[i];
        if (p.Kind > KindCurve) Fail("record " + std::to_string(i) + " of unknown kind");
        if (!Finite(p.Position) || !Finite(p.HandleIn) || !Finite(p.HandleOut) || !Finite(p.Roll)) {
            Fail("record " + std::to_string(i) + " holds a number that is not finite");
            break;
        }
    }
    const WUndoRing* ring = s.Undo;
    if (!ring) {
        Fail("no undo ring");
    } else {
        if (ring->Depth < 1 || ring->Depth > 100) Fail("ring depth " + std::to_string(ring->Depth));
        if (ring->RedoDepth < 0 || ring->Depth + ring->RedoDepth > 100)
            Fail("ring redo depth " + std::to_string(ring->RedoDepth));
        if (ring->Slot < 0 || ring->Slot > 99) Fail("ring slot " + std::to_string(ring->Slot));
        if (ring->Snapshots.Count != 100) Fail("ring of " + std::to_string(ring->Snapshots.Count));
    }
    if (TheMode < ModeDraw || TheMode > ModeEditRoll) Fail("unknown mode");

    if (!TheSoak.LastWasCleanUp) return;
    // One clean-up runs each of its steps once, in order, and may leave a
    // case for the next one to repair (a move at the end or two moves in a
    // row after a zero segment went, twins that differ after a removal, a
    // repeated curve uncovered by a removal): the sketch is checked on a copy
    // cleaned up again until a clean-up changes nothing more. A round that
    // changes the count removes a record, so the copy settles within as many
    // rounds as it has records; a clean-up that never settles is a failure.
    WSketch copy;
    copy.Points.SetCount(s.PointCount + 1);
    for (int32_t i = 0; i < s.PointCount; i++)
        copy.Points[i] = s.Points[i];
    copy.PointCount = s.PointCount;
    int32_t limit = s.PointCount + 2;
    int32_t rounds = 0;
    bool settled = false;
    while (!settled && rounds < limit) {
        int32_t before = copy.PointCount;
        copy.CleanUp();
        rounds++;
        settled = copy.PointCount == before;
    }
    if (!settled) Fail("clean-ups in a row never stopped removing records");
    CheckCleanSketch(copy);
}

// After a clean-up: twins equal, no curve of fewer than two records, no move
// at the end.
void CheckCleanSketch(WSketch& s) {
    if (s.PointCount == 1) Fail("a clean-up left one record");
    if (s.PointCount > 1 && s.Points[s.PointCount - 1].Kind == KindMove)
        Fail("a clean-up left a move at the end");
    for (int32_t i = 0; i < s.PointCount; i++) {
        if (s.Points[i].Kind != KindMove) continue;
        if (i + 1 >= s.PointCount || s.Points[i + 1].Kind == KindMove)
            Fail("a clean-up left a curve of one record at " + std::to_string(i) + " of " +
                 std::to_string(s.PointCount) + ", kinds around it " + KindsAround(s, i));
        int32_t twin = s.FindTwin(i);
        if (twin < 0) continue;
        const WSketchPoint& a = s.Points[i];
        const WSketchPoint& b = s.Points[twin];
        if (!SameBits(a.Position, b.Position) || !SameBits(a.HandleIn, b.HandleIn) ||
            !SameBits(a.HandleOut, b.HandleOut) || !SameBits(a.Roll, b.Roll) ||
            a.Smooth != b.Smooth)
            Fail("twins " + std::to_string(i) + " and " + std::to_string(twin) + " differ");
    }
}

// ---- The table of operations, with the weight of each

struct SoakOperation {
    const char* Name;
    int32_t Weight;
    void (*Run)();
};

const SoakOperation Operations[] = {
    {"stroke", 12, Stroke},
    {"click", 10, Click},
    {"drag", 22, Drag},
    {"right click", 5, RightClick},
    {"insert", 5, InsertWithAlt},
    {"delete key", 4, DeleteKey},
    {"character key", 12, Character},
    {"menu command", 10, MenuCommand},
    {"view gesture", 3, ViewGesture},
    {"element", 8, AddElement},
    {"undo and redo", 6, UndoRedoRun},
    {"clean-up", 3, CleanUpOnly},
    {"point operation", 5, PointOperation},
    {"save and reload", 2, SaveAndReload},
};

int32_t PickOperation() {
    int32_t total = 0;
    for (const SoakOperation& op : Operations)
        total += op.Weight;
    int32_t pick = Below(total);
    for (int32_t i = 0; i < int32_t(sizeof Operations / sizeof Operations[0]); i++) {
        if (pick < Operations[i].Weight) return i;
        pick -= Operations[i].Weight;
    }
    return 0;
}

// ---- Set-up

void Start(fs::path folder) {
    TheSoak.Folder = folder;
    fs::create_directories(folder / "appdata");
    fs::create_directories(folder / "documents");
    SetFolderOverride(FolderAppData, Wide((folder / "appdata").string()));
    SetFolderOverride(FolderDocuments, Wide((folder / "documents").string()));
    static WSettings settings;
    TheSettings = &settings;
    TheSoak.Messages.Texts = TheSoak.Texts;
    TheSoak.Messages.Icons = TheSoak.Icons;
    TheSoak.Messages.Capacity = 16;
    TheSoak.Messages.Answers = TheSoak.Answers;
    TheMessageScript = &TheSoak.Messages;
    TheSoak.Prompts.Answers = TheSoak.PromptAnswers;
    TheFilePromptScript = &TheSoak.Prompts;
    static WebPageScript pages;
    TheWebPageScript = &pages;
    CreateElement();
    CreateSketch();
    CreateRecording();
    CreateView();
    TheView->SetViewport(800, 600);
    TheView->Zoom = 1;
    TheView->Update();
    TheMode = ModeDraw;
}

void Stop() {
    DestroyView();
    DestroyRecording();
    DestroySketch();
    DestroyElement();
    TheMessageScript = nullptr;
    TheFilePromptScript = nullptr;
    TheWebPageScript = nullptr;
}

// Debug lines of the clean-up and the loaders would flood the terminal; they
// are captured and dropped every so often.
void DropDebugOutput() {
    StopDebugCapture();
    StartDebugCapture();
}

} // namespace

int main(int argc, char** argv) {
    int64_t operations = argc > 1 ? std::atoll(argv[1]) : 20000;
    TheSoak.Seed = argc > 2 ? std::strtoull(argv[2], nullptr, 10) : 1;
    if (operations < 1) {
        std::fprintf(stderr, "usage: edit_soak [OPERATIONS] [SEED]\n");
        return 2;
    }
    TheSoak.Random.seed(TheSoak.Seed);
    fs::path folder =
        fs::temp_directory_path() / ("quillmere-soak-" + std::to_string(int(getpid())));
    fs::remove_all(folder);
    Start(folder);
    StartDebugCapture();

    auto begin = std::chrono::steady_clock::now();
    for (TheSoak.Operation = 1; TheSoak.Operation <= operations; TheSoak.Operation++) {
        int32_t index = PickOperation();
        TheSoak.Name = Operations[index].Name;
        TheSoak.LastWasCleanUp = false;
        ScriptAnswers();
        int64_t failuresBefore = TheSoak.Failures;
        Operations[index].Run();
        CheckInvariants();
        // A sketch that grows without end makes every later operation slower
        // and tests nothing new: it is emptied as New would.
        if (TheSketch->PointCount > 1500 || TheSoak.Failures != failuresBefore) {
            TheSketch->Modified = 0;
            CommandNew();
        }
        if (TheSoak.Operation % 1000 == 0) DropDebugOutput();
        if (TheSoak.Operation % 100000 == 0) {
            double seconds =
                std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
            std::printf("%lld operations, %.1f s, %lld failures\n", (long long)TheSoak.Operation,
                        seconds, (long long)TheSoak.Failures);
            std::fflush(stdout);
        }
    }
    double seconds =
        std::chrono::duration<double>(std::chrono::steady_clock::now() - begin).count();
    StopDebugCapture();
    Stop();
    fs::remove_all(folder);
    std::printf("edit soak: seed %llu, %lld operations, %lld saves and reloads compared (%lld "
                "more loosely), %.1f s, %lld failures\n",
                (unsigned long long)TheSoak.Seed, (long long)operations, (long long)TheSoak.Saves,
                (long long)TheSoak.LooseSaves, seconds, (long long)TheSoak.Failures);
    return TheSoak.Failures == 0 ? 0 : 1;
}
