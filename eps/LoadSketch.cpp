// Loading a sketch from an EPS file or a track file, and the finishing step
// that loads and traces share.

#include "eps/LoadSketch.h"

#include "elements/WElement.h"
#include "eps/EpsReader.h"
#include "foundation/MTextFile.h"
#include "foundation/Platform.h"
#include "foundation/Settings.h"
#include "sketch/WSketch.h"
#include "sketch/WUndoRing.h"

#include <cmath>

namespace {

void ShowCouldNotOpen(const MString& path) {
    ShowMessage(MString(u"Could not open:\n\n\"") + path + MString(u"\""), IconError);
}

// Empties the ring and stores the sketch as its only state, so that undo
// cannot go back behind a load to what the sketch held before.
void ReseedUndoRing(WSketch& sketch) {
    WUndoRing* ring = sketch.Undo;
    if (!ring) return;
    ring->Depth = 0;
    ring->RedoDepth = 0;
    ring->Slot = 0;
    ring->Push(sketch);
}

// Appends one record, growing the array in steps of 1000. A failed growth
// takes the array with it (the report is MVector's), and the point is lost.
void AppendRecord(WSketch& sketch, const WSketchPoint& record) {
    if (!sketch.Points.Grow(sketch.PointCount + 1, 1000)) {
        if (sketch.PointCount > sketch.Points.Count) sketch.PointCount = sketch.Points.Count;
        sketch.Current = -1;
        return;
    }
    sketch.Points[sketch.PointCount++] = record;
}

MPoint3 Mirror(const MPoint3& q, const MPoint3& p) {
    return p + (p - q);
}

// A token as a float; missing, no number or NaN give 0.
float Number(const MTextFile& file, int32_t index) {
    float value = file.TokenFloat(index);
    return value == value ? value : 0.0f;
}

// ---- EPS branch

// A curve needs a point to start from, and a curve that ends where it starts
// (a closed curve of one segment) is dropped. The new point's HandleOut
// mirrors its HandleIn for now: the next curve, if any, overwrites it.
void AddCurve(WSketch& sketch, const MEpsRecord& record) {
    if (sketch.PointCount < 1) return;
    WSketchPoint& last = sketch.Points[sketch.PointCount - 1];
    if (Coincide(record.PointC, last.Position)) return;
    last.HandleOut = record.PointA;
    WSketchPoint point;
    point.Position = record.PointC;
    point.HandleIn = record.PointB;
    point.HandleOut = Mirror(record.PointB, record.PointC);
    point.Roll = record.Roll;
    point.Kind = KindCurve;
    AppendRecord(sketch, point);
}

bool LoadEpsRecords(WSketch& sketch, WSettings& settings, const MEpsPath& eps,
                    const MString& path) {
    if (eps.Used == 0) {
        ShowCouldNotOpen(path);
        return false;
    }
    settings.Centre = eps.Centre;
    settings.Scale = eps.Scale;
    settings.MaxLinesPerCurve = eps.MaxLinesPerCurve;
    settings.SaveSolid = eps.Solid;
    settings.SaveRoll = eps.HasRoll;

    // Each record adds one point at most: the room is made at once, in the
    // steps of 1000 that appending point by point would have taken.
    if (eps.Used > sketch.Points.Count) {
        int32_t missing = eps.Used - sketch.Points.Count;
        if (!sketch.Points.SetCount(sketch.Points.Count + (missing + 999) / 1000 * 1000))
            sketch.PointCount = 0;
    }

    for (int32_t i = 0; i < eps.Used; i++) {
        const MEpsRecord& record = eps.Records[i];
        switch (record.Kind) {
        case EpsMoveOpen:
        case EpsMoveStroked:
        case EpsMoveFilled: {
            // How the path was ended means nothing to the sketch.
            WSketchPoint point;
            point.Position = record.PointA;
            point.Roll = record.Roll;
            point.Kind = KindMove;
            AppendRecord(sketch, point);
            break;
        }
        case EpsLine:
            sketch.AddLinePoint(record.PointA, record.Roll);
            break;
        case EpsCurve:
            AddCurve(sketch, record);
            break;
        default:
            break;
        }
    }
    return true;
}

// ---- Track file branch

// A start point heading h degrees from +Z about the y axis, with handles of
// length 10 along the heading and the roll across it. The degree factor is
// the single-precision one of the elements, so that a heading of 90 is the
// elements' own quarter turn, 1.5707964.
void AddTrackStart(WSketch& sketch, const MTextFile& file) {
    MPoint3 position{Number(file, 1), Number(file, 2), Number(file, 3)};
    float h = Number(file, 4) * 0.017453292f;
    float s = std::sin(h), c = std::cos(h);
    MPoint3 d{10.0f * s, 0, 10.0f * c};
    WSketchPoint point;
    point.Position = position;
    point.HandleIn = position - d;
    point.HandleOut = position + d;
    point.Roll = MPoint3{c, 0, -s};
    point.Smooth = 0;
    point.Kind = KindMove;
    AppendRecord(sketch, point);
    sketch.Commit();
}

// Every line after the first begins with a command word; other lines are
// skipped. An unknown element name costs one message and its line.
bool LoadTrackLines(WSketch& sketch, WSettings& settings, MTextFile& file, const MString& path) {
    settings.Centre = false;
    settings.Scale = false;
    settings.SaveSolid = false;
    settings.SaveRoll = true;

    if (!file.IsOpen || !file.ReadLine() || file.Token(0) != MString(u"Quillmere")) {
        ShowCouldNotOpen(path);
        return false;
    }
    while (file.ReadLine()) {
        MString command = file.Token(0);
        if (command == MString(u"Move")) {
            AddTrackStart(sketch, file);
        } else if (command == MString(u"Element")) {
            MString name = file.Token(1);
            int32_t id = FindElement(name);
            if (id < 0) {
                ShowMessage(MString(u"Unknown element \"") + name + MString(u"\" in:\n\n\"") +
                                path + MString(u"\""),
                            IconError);
                continue;
            }
            if (TheElement)
                TheElement->Add(uint32_t(id), Number(file, 2), Number(file, 3), Number(file, 4),
                                Number(file, 5));
        } else if (command == MString(u"Close")) {
            // The first point of the sketch, not of the last curve: a track
            // file describes one ride.
            if (sketch.PointCount >= 2) {
                WSketchPoint& last = sketch.Points[sketch.PointCount - 1];
                uint8_t kind = last.Kind;
                last = sketch.Points[0];
                last.Kind = kind;
            }
        }
    }
    return true;
}

// ---- The load

// bytes is null to read the file at path, else the file's contents.
bool Load(const MString& path, const void* bytes, int32_t size) {
    WSketch* sketch = TheSketch;
    WSettings* settings = TheSettings;
    if (!sketch || !settings) return false;

    // The emptied sketch is a state of its own, so that the old one can be
    // had back by undo should the load fail.
    sketch->PointCount = 0;
    sketch->Current = -1;
    sketch->Modified = 0;
    if (sketch->Undo) sketch->Undo->Push(*sketch);

    settings->Centre = true;
    settings->Scale = true;
    settings->MaxLinesPerCurve = 100;

    MString extension = path.FileExtension();
    if (extension == MString(u"QO")) {
        bool read;
        if (bytes) {
            MTextFile file(bytes, size);
            read = LoadTrackLines(*sketch, *settings, file, path);
        } else {
            MTextFile file(path, false, false, Encoding8Bit);
            read = LoadTrackLines(*sketch, *settings, file, path);
        }
        if (!read) return false;
    } else if (extension == MString(u"EPS")) {
        MEpsPath eps = bytes ? ReadEpsMemory(bytes, size) : ReadEps(path);
        if (!LoadEpsRecords(*sketch, *settings, eps, path)) return false;
    } else {
        ShowCouldNotOpen(path);
        return false;
    }

    if (!FinishLoad(settings->Centre, settings->Scale)) {
        ShowCouldNotOpen(path);
        return false;
    }
    ReseedUndoRing(*sketch);
    return true;
}

} // namespace

bool LoadSketch(const MString& path) {
    return Load(path, nullptr, 0);
}

bool LoadSketchMemory(const MString& path, const void* bytes, int32_t size) {
    // A file of no bytes is still a file, so null must not mean "read path".
    static const uint8_t none = 0;
    return Load(path, bytes ? bytes : &none, bytes ? size : 0);
}

// The file holds no smooth flags and no incoming handle at a curve's start:
// both are rebuilt here. A kink of up to about 26 degrees counts as smooth.
bool FinishLoad(bool centre, bool scale) {
    WSketch* sketch = TheSketch;
    if (!sketch) return false;
    if (!sketch->Points.Data) sketch->PointCount = 0;

    // A closed curve's start takes the incoming handle of its end, so the
    // joint has no kink; an open start mirrors its outgoing handle.
    for (int32_t i = 0; i < sketch->PointCount; i++) {
        WSketchPoint& point = sketch->Points[i];
        if (point.Kind != KindMove) continue;
        int32_t twin = sketch->FindTwin(i);
        point.HandleIn =
            twin >= 0 ? sketch->Points[twin].HandleIn : Mirror(point.HandleOut, point.Position);
    }
    for (int32_t i = 0; i < sketch->PointCount; i++) {
        WSketchPoint& point = sketch->Points[i];
        MPoint3 u = point.Position - point.HandleIn;
        MPoint3 v = point.HandleOut - point.Position;
        Normalize3(u);
        Normalize3(v);
        point.Smooth = Dot3(u, v) > 0.9 ? 1 : 0;
    }

    sketch->TransformAll(centre, scale);
    sketch->CleanUp();
    sketch->Modified = 0;
    if (sketch->PointCount < 2) return false;
    ReseedUndoRing(*sketch);
    return true;
}
