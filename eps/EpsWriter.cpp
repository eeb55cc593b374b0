// The EPS writer of the sketch. The whole text is built in memory before the
// file is touched, so a refusal or a failure leaves an earlier file intact.

#include "eps/EpsWriter.h"

#include "foundation/MTextFile.h"
#include "foundation/Platform.h"
#include "foundation/SafeWrite.h"
#include "foundation/Settings.h"
#include "show/WriteShows.h"
#include "sketch/WSketch.h"

#include <climits>
#include <cstdlib>

namespace {

// The text of a file being built: 7-bit characters gathered as bytes in one
// block that realloc grows by doubling (moving pages rather than copying and
// clearing them). Printing each number into a string of its own and joining
// wide strings cost more than everything else of a save together.
struct EpsText {
    char* Bytes = nullptr; // owned, from malloc; null when memory ran out
    int32_t Used = 0;      // bytes filled
    int32_t Size = 0;      // bytes allocated
    bool Failed = false;   // memory ran out: the text is incomplete

    EpsText() = default;
    EpsText(const EpsText&) = delete;
    EpsText& operator=(const EpsText&) = delete;
    ~EpsText() { std::free(Bytes); }

    bool Room(int32_t more) {
        if (Failed) return false;
        if (Used + int64_t(more) <= Size) return true;
        int64_t grown = int64_t(Size) * 2;
        if (grown < Used + int64_t(more) + 65536) grown = Used + int64_t(more) + 65536;
        if (grown > INT32_MAX) grown = INT32_MAX;
        void* block = grown >= Used + int64_t(more) ? std::realloc(Bytes, size_t(grown)) : nullptr;
        if (!block) {
            Failed = true;
            return false;
        }
        Bytes = static_cast<char*>(block);
        Size = int32_t(grown);
        return true;
    }
    void Append(const char16_t* text) {
        int32_t n = 0;
        while (text[n])
            n++;
        if (!Room(n)) return;
        for (int32_t i = 0; i < n; i++)
            Bytes[Used++] = char(text[i]);
    }
    void Append(const MString& text) {
        if (!Room(text.Length)) return;
        for (int32_t i = 0; i < text.Length; i++)
            Bytes[Used++] = char(text.Text[i]);
    }
    // One field and the blank behind it.
    void AppendNumber(float value) {
        if (!Room(FloatTextSize + 1)) return;
        Used += FloatText(value, Bytes + Used);
        Bytes[Used++] = ' ';
    }
    // x y, or x y z in the 3D forms.
    void AppendPoint(const MPoint3& p, bool threeD) {
        AppendNumber(p.x);
        AppendNumber(p.y);
        if (threeD) AppendNumber(p.z);
    }
};

// What ends a path before the next move and before the trailer.
const char16_t* PathEnd(bool solid) {
    return solid ? u"closepath\r\nfill\r\n" : u"0 setgray\r\n2 setlinewidth stroke\r\n";
}

} // namespace

MString MakeEpsHeader(bool centre, bool scale, int32_t maxLinesPerCurve, const float box[6]) {
    MString text(u"%!PS-Adobe-3.0 EPSF-3.0\r\n"
                 u"%%Creator: Brambleworks Quillmere\r\n");
    text += MString(centre ? u"%%Cinderlane Centre Y\r\n" : u"%%Cinderlane Centre N\r\n");
    text += MString(scale ? u"%%Cinderlane Scale Y\r\n" : u"%%Cinderlane Scale N\r\n");
    if (maxLinesPerCurve > 0)
        text += MString(u"%%Cinderlane MaxLinesPerCurve ") + IntegerText(maxLinesPerCurve) + "\r\n";
    text += MString(u"%%LanguageLevel: 2\r\n");
    // Floats, decimals and all, rather than the integers of the convention:
    // the box then matches the drawing exactly.
    text += MString(u"%%BoundingBox: ") + MString(box[0] - 10.0f) + " " + MString(box[2] - 10.0f) +
            " " + MString(box[1] + 10.0f) + " " + MString(box[3] + 10.0f) + "\r\n";
    text += MString(u"%%Pages: 1\r\n"
                    u"%%EndComments\r\n"
                    u"%Page: 1 1\r\n"
                    u"gsave\r\n"
                    u"1 1 scale\r\n");
    return text;
}

MString MakeEpsTrailer() {
    return MString(u"grestore\r\n%%EOF\r\n");
}

namespace {

// The operand count of every path line follows from two choices made once:
// a sketch that is flat and saved without rolls is written in 2D; anything
// else carries z, and with SaveRoll the roll too. A flat sketch's common z is
// therefore lost in the 2D form. The HandleOut of a point is written by the
// curve that follows it, and the handles of lines not at all.
void BuildSketchEps(const WSketch& sketch, const WSettings& settings, EpsText& text) {
    const bool threeD = !(sketch.IsFlat() && !settings.SaveRoll);
    const bool withRoll = threeD && settings.SaveRoll;
    const bool solid = settings.SaveSolid;

    float box[6];
    sketch.GetBounds(box);
    text.Append(MakeEpsHeader(settings.Centre, settings.Scale, settings.MaxLinesPerCurve, box));

    bool drawn = false; // a line or curve has been written; never cleared
    for (int32_t i = 0; i < sketch.PointCount; i++) {
        const WSketchPoint& p = sketch.Points[i];
        const char16_t* op;
        if (p.Kind == KindMove) {
            if (drawn) text.Append(PathEnd(solid));
            op = u"moveto\r\n";
        } else if (p.Kind == KindLine) {
            op = u"lineto\r\n";
        } else if (p.Kind == KindCurve) {
            if (i > 0) text.AppendPoint(sketch.Points[i - 1].HandleOut, threeD);
            text.AppendPoint(p.HandleIn, threeD);
            op = u"curveto\r\n";
        } else {
            continue;
        }
        text.AppendPoint(p.Position, threeD);
        if (withRoll) text.AppendPoint(p.Roll, true);
        text.Append(op);
        if (p.Kind != KindMove) drawn = true;
    }
    if (drawn) text.Append(PathEnd(solid));
    text.Append(MakeEpsTrailer());
}

} // namespace

MString MakeSketchEps(const WSketch& sketch, const WSettings& settings) {
    EpsText bytes;
    BuildSketchEps(sketch, settings, bytes);
    MString text;
    if (bytes.Failed || bytes.Used == 0) return text;
    text.Reserve(bytes.Used + 1, false);
    char16_t* wide = text.Text;
    const unsigned char* narrow = reinterpret_cast<const unsigned char*>(bytes.Bytes);
    for (int32_t i = 0; i < bytes.Used; i++)
        wide[i] = narrow[i];
    wide[bytes.Used] = 0;
    text.Length = bytes.Used;
    return text;
}

bool SaveEps(MString& path) {
    WSketch* sketch = TheSketch;
    WSettings* settings = TheSettings;
    if (!sketch || !settings) return false;

    if (!sketch->CleanUp()) return false;
    path.SetFileExtension(MString(u"eps"));

    // Filling needs a flat drawing of closed outlines.
    if (settings->SaveSolid) {
        if (!sketch->IsFlat()) {
            ShowMessage(MString(u"Your sketch can't be saved as solid because it's not 2D"),
                        IconError);
            return false;
        }
        for (int32_t i = 0; i < sketch->PointCount; i++) {
            if (sketch->Points[i].Kind == KindMove && sketch->FindTwin(i) < 0) {
                ShowMessage(MString(u"Your sketch can't be saved as solid because not all "
                                    u"curves are closed"),
                            IconError);
                return false;
            }
        }
    }

    // A ride's templates need the track where it was drawn and at its own
    // size, so the file must not ask a reader to move or scale it. The
    // choice stays in the settings after the save.
    for (int32_t t = 2; t <= 7; t++) {
        if (settings->Template[t]) {
            settings->Centre = false;
            settings->Scale = false;
            break;
        }
    }

    // The earlier file is replaced only once the whole new text is on the
    // disk: a full disk or a file held elsewhere leaves it as it was, and
    // the sketch stays marked changed.
    // The text is all 7-bit, so its bytes are those of the 8-bit encoding.
    EpsText text;
    BuildSketchEps(*sketch, *settings, text);
    if (text.Failed || !ReplaceFileBytes(text.Bytes, text.Used, path)) return false;

    sketch->Modified = 0;
    WriteShows(path);
    return true;
}
