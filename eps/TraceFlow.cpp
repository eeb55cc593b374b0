// The trace flow: the built-in tracer with the freehand fit, and the
// external potrace program through temporary files.

#include "eps/TraceFlow.h"

#include "drawing/MPicture.h"
#include "eps/LoadSketch.h"
#include "eps/WTracer.h"
#include "foundation/Folders.h"
#include "foundation/Platform.h"
#include "foundation/Process.h"
#include "foundation/Program.h"
#include "foundation/Settings.h"
#include "sketch/WRecording.h"
#include "sketch/WSketch.h"
#include "sketch/WUndoRing.h"

bool IsKnownTracer(MString path) {
    if (path.IsEmpty()) return false;
    LowerCaseInPlace(path.Text, path.Length);
    int32_t start = 0;
    for (int32_t i = 0; i < path.Length; i++) {
        char16_t c = path.Text[i];
        if (c == u'/' || c == u'\\' || c == u':') start = i + 1;
    }
    return MString(path.Chars() + start) == MString(u"potrace.exe");
}

// ---- The built-in tracer

namespace {

// One outline through the recorder: corners at (x, -y, 0) since the
// picture's y axis points down, a closed outline ending on its first corner
// again, then the fit of a stroke. The fitted records are added to records
// (count is its fill).
void FitOutline(WRecording& recording, const WTraceOutline& outline, MVector<WSketchPoint>& records,
                int32_t& count) {
    recording.Clear();
    int32_t samples = outline.PointCount + (outline.Closed ? 1 : 0);
    if (!recording.Points.Grow(samples, 1000)) return;
    for (int32_t i = 0; i < samples; i++) {
        const WTracePoint& corner = outline.Points[i % outline.PointCount];
        WSketchPoint& point = recording.Points[i];
        point = WSketchPoint();
        point.Position = MPoint3{float(corner.x), -float(corner.y), 0};
        point.Roll = MPoint3{0, 0, 1};
        point.Kind = i == 0 ? KindMove : KindCurve;
    }
    recording.PointCount = samples;
    recording.Finish();
    if (records.Grow(count + recording.PointCount, records.Count + 1000)) {
        for (int32_t i = 0; i < recording.PointCount; i++)
            records[count + i] = recording.Points[i];
        count += recording.PointCount;
    }
    recording.Clear();
}

} // namespace

bool TraceInternal(const MString& picturePath) {
    WSketch* sketch = TheSketch;
    if (!sketch) return false;
    WTracer* tracer = new WTracer;
    tracer->Detail = 2;
    if (tracer->Load(picturePath)) tracer->Trace();

    // The emptied sketch is a state of its own, as after New.
    sketch->PointCount = 0;
    sketch->Current = -1;
    sketch->Modified = 0;
    if (sketch->Undo) sketch->Undo->Push(*sketch);
    if (TheSettings) {
        TheSettings->Centre = true;
        TheSettings->Scale = true;
        TheSettings->MaxLinesPerCurve = 100;
    }

    // The fitted outlines are appended in one go: appending them one by one
    // would copy the growing sketch and store an undo state per outline,
    // states that the finish below drops again. The records are the same.
    MVector<WSketchPoint> records;
    int32_t count = 0;
    if (TheRecording)
        for (int32_t i = 0; i < tracer->OutlineCount; i++) {
            const WTraceOutline* outline = tracer->Outlines[i];
            if (outline && outline->PointCount > 0)
                FitOutline(*TheRecording, *outline, records, count);
        }
    delete tracer;
    sketch->AppendPoints(records.Data, count);

    // The finish of a load: handles, smooth flags, centre, scale to 200
    // units, clean-up; with two points or more the ring holds this alone.
    return FinishLoad(true, true);
}

// ---- The external tracer

MString TraceTempFolder() {
    MString folder = AppDataFolder(MString(u"Brambleworks"), MString(TheProgramName));
    if (folder.IsEmpty()) return MString();
    folder = JoinPath(folder, MString(u"Temp"));
    return CreateFolders(folder) ? folder : MString();
}

MString TraceCommand(const MString& tracer, const MString& epsPath, const MString& bmpPath) {
    return MString(u"\"") + tracer + MString(u"\" -c -q -o \"") + epsPath + MString(u"\" \"") +
           bmpPath + MString(u"\"");
}

bool TraceExternal(const MString& picturePath) {
    MString tracer = TheSettings ? TheSettings->ExternalTracer : MString();
    if (!IsKnownTracer(tracer)) return false;
    MString folder = TraceTempFolder();
    if (folder.IsEmpty()) return false;

    MPicture picture;
    if (!picture.Load(picturePath)) return false;
    if (!RowsHoldWidth(picture)) return false;
    // The external tracer reads brightness: the alpha shape becomes black on
    // white. A picture without transparency goes as it is.
    if (picture.HasTransparency())
        for (int32_t y = 0; y < picture.Height; y++)
            for (uint32_t x = 0; x < picture.Width; x++) {
                uint8_t* address = picture.PixelAddress(int32_t(x), y);
                uint8_t g = uint8_t(255 - ReadPixel(address, picture.Format).a);
                MColour colour;
                colour.b = colour.g = colour.r = g;
                colour.a = 255;
                WritePixel(colour, address, picture.Format);
            }

    MString bmpPath = JoinPath(folder, MString(u"temp.bmp"));
    MString epsPath = JoinPath(folder, MString(u"temp.eps"));
    picture.Save(bmpPath);
    RunCommand(TraceCommand(tracer, epsPath, bmpPath));
    bool result = FileSizeOf(epsPath) > 0 && LoadSketch(epsPath);
    if (!bmpPath.IsEmpty()) DeleteFileAt(bmpPath);
    if (!epsPath.IsEmpty()) DeleteFileAt(epsPath);
    return result;
}
