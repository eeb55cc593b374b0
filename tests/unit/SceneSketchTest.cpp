// Whole frames of a large generated sketch on the recording surface, pinned
// down by a digest of every entry (kind, the bits of every number, colour,
// texts and fonts): the digests were taken from the straightforward drawing
// code, and any change to what a frame draws, or to its order, changes them.
// The small scenes with expected entries are in SceneTest.cpp and
// SceneGridTest.cpp.

#if !defined(_WIN32)

#include "SceneTestSupport.h"

#include "bench/GeneratedSketch.h"

#include <cmath>
#include <cstring>
#include <random>

using namespace scenetest;

namespace {

struct Digest {
    uint64_t Value = 1469598103934665603ull; // FNV-1a, 64 bits

    void Bytes(const void* data, size_t size) {
        const unsigned char* p = static_cast<const unsigned char*>(data);
        for (size_t i = 0; i < size; i++) {
            Value ^= p[i];
            Value *= 1099511628211ull;
        }
    }
    void Int(int32_t value) { Bytes(&value, sizeof value); }
    void Float(float value) {
        uint32_t bits;
        std::memcpy(&bits, &value, sizeof bits);
        Bytes(&bits, sizeof bits);
    }
    void Text(const MString& text) {
        Int(text.Length);
        for (int32_t i = 0; i < text.Length; i++)
            Int(text.Chars()[i]);
    }
};

MString TextOf(const MDrawOperation& op) {
    return MString(op.Text);
}
MString FontOf(const MDrawOperation& op) {
    return MString(op.Font);
}

// Every field of every entry, in recording order.
uint64_t RecordingDigest(const MDrawSurface& surface) {
    Digest d;
    d.Int(surface.OperationCount);
    for (int32_t i = 0; i < surface.OperationCount; i++) {
        const MDrawOperation& op = surface.Operations[i];
        d.Int(op.Kind);
        for (float value : {op.X1, op.Y1, op.X2, op.Y2, op.Radius, op.Angle, op.Width})
            d.Float(value);
        d.Int(op.Filled);
        d.Int(op.Colour.b), d.Int(op.Colour.g), d.Int(op.Colour.r), d.Int(op.Colour.a);
        d.Text(TextOf(op));
        d.Text(FontOf(op));
        for (int32_t value :
             {op.Size, op.Weight, op.Horizontal, op.Vertical, op.SourceWidth, op.SourceHeight})
            d.Int(value);
        d.Int(op.Wrap), d.Int(op.Clip);
    }
    return d.Value;
}

int32_t CountKind(const MDrawSurface& surface, int32_t kind) {
    int32_t n = 0;
    for (int32_t i = 0; i < surface.OperationCount; i++)
        if (surface.Operations[i].Kind == kind) n++;
    return n;
}

// The generated sketch of 10,000 records with a ghost of its first 600 and a
// stroke being drawn, the view fitted to it in a window of 800 by 600.
class GeneratedScene : public SceneWorld {
  protected:
    void SetUp() override {
        SceneWorld::SetUp();
        MakeGeneratedSketch(*TheSketch, 10000);
        TheSketch->Current = 5017;
        SetRecords(TheSketch->Ghost, TheSketch->GhostCount,
                   std::vector<WSketchPoint>(TheSketch->Points.Data, TheSketch->Points.Data + 600));
        SetRecords(TheRecording->Points, TheRecording->PointCount,
                   {Point(KindMove, {-50, -50, 0}, {}, {}), Point(KindLine, {-20, -60, 0}, {}, {}),
                    Point(KindLine, {10, -40, 0}, {}, {})});
        TheView->SetViewport(800, 600);
        TheView->FitToSketch();
        Surface.Release();
        Surface.CreateForDc(&Dc, WRect{0, 0, 800, 600});
    }
    // One whole frame as the frame loop draws it, on a fresh recording.
    uint64_t Frame(WMode mode) {
        TheMode = mode;
        Surface.OperationCount = 0;
        Surface.Begin();
        Surface.Clear(TheSettings->ColourBackground);
        DrawScene(Surface, FrameScene());
        Surface.End();
        return RecordingDigest(Surface);
    }
};

} // namespace

TEST_F(GeneratedScene, EditSketchFrameInTheFrontView) {
    EXPECT_EQ(Frame(ModeEditSketch), 17263308076606751613ull);
    EXPECT_EQ(Surface.OperationCount, 57335);
    EXPECT_EQ(CountKind(Surface, DrawTextKind), 3);
}

TEST_F(GeneratedScene, DrawingFrameInATurnedView) {
    TheView->Orbit(0.3f, -0.4f, 0.1f);
    EXPECT_EQ(Frame(ModeDraw), 5689298990345338707ull);
    EXPECT_EQ(Surface.OperationCount, 47324);
}

TEST_F(GeneratedScene, EditRollFrameInTheTopViewAtTwiceTheDisplaySize) {
    TheView->SetStandardView(ViewTop);
    Surface.Scale = 0.5f;
    TheSettings->PenSize = 3;
    TheSettings->PointSize = 5;
    EXPECT_EQ(Frame(ModeEditRoll), 11704492208386978729ull);
    EXPECT_EQ(Surface.OperationCount, 111333);
}

TEST_F(GeneratedScene, EditSketchFrameWithAHandleSelectedInTheRightView) {
    TheView->SetStandardView(ViewRight);
    TheView->ZoomBy(0.25);
    // The first record of an outline: the handle-in of its twin and its own
    // handle-out are shown.
    TheSketch->Current = 20 * 250;
    EXPECT_EQ(Frame(ModeEditSketch), 11167784510422156884ull);
    EXPECT_EQ(Surface.OperationCount, 57239);
    EXPECT_EQ(CountKind(Surface, DrawSquareKind), 2);
}

TEST_F(GeneratedScene, FramesInARowRecordTheSameEntries) {
    uint64_t first = Frame(ModeEditSketch);
    int32_t count = Surface.OperationCount;
    // The surface's brush and format stay from the frame before, so later
    // frames make none of them.
    uint64_t second = Frame(ModeEditSketch);
    EXPECT_EQ(Frame(ModeEditSketch), second);
    EXPECT_NE(first, second);
    EXPECT_GT(count, Surface.OperationCount);
}

// Curves of all sizes, from a thousandth of a unit to a curve that reaches
// the sampling limit, in a turned view: every line of the path lies exactly
// (bit for bit) on the points the model's own BezierPoint, CurveSteps and
// the view's ToScreen give.
TEST_F(SceneWorld, PathLinesAreExactlyTheModelsCurvePointsOnTheScreen) {
    std::mt19937 random(18);
    std::uniform_real_distribution<float> unit(-1, 1);
    std::vector<WSketchPoint> records;
    for (int32_t curve = 0; curve < 300; curve++) {
        float size = std::pow(10.0f, float(curve % 7) - 3); // 0.001 to 1000
        auto at = [&]() {
            return MPoint3{unit(random) * size, unit(random) * size, unit(random) * size};
        };
        MPoint3 start = at();
        records.push_back(Point(KindMove, start, start, at()));
        MPoint3 end = at();
        records.push_back(Point(KindCurve, end, at(), end));
    }
    SetSketch(records, -1);
    TheView->SetRotation(YawPitchRoll(0.4f, -0.3f, 0.2f));
    TheView->ZoomBy(3.7);
    std::vector<MDrawOperation> drawn = DrawnSketch(ModeDraw);

    size_t next = 0;
    bool limitReached = false;
    for (size_t i = 1; i < records.size(); i += 2) {
        MPoint3 c[4] = {records[i - 1].Position, records[i - 1].HandleOut, records[i].HandleIn,
                        records[i].Position};
        int32_t steps = CurveSteps(c);
        limitReached = limitReached || steps == 1000;
        MPoint3 previous = TheView->ToScreen(c[0]);
        for (int32_t k = 1; k <= steps; k++, next++) {
            MPoint3 point = TheView->ToScreen(BezierPoint(c, 0, 3, float(k) / float(steps)));
            ASSERT_LT(next, drawn.size());
            const MDrawOperation& line = drawn[next];
            ASSERT_EQ(line.Kind, DrawLineKind);
            ASSERT_EQ(std::memcmp(&line.X1, &previous.x, 4), 0) << "curve " << i << " step " << k;
            ASSERT_EQ(std::memcmp(&line.Y1, &previous.y, 4), 0) << "curve " << i << " step " << k;
            ASSERT_EQ(std::memcmp(&line.X2, &point.x, 4), 0) << "curve " << i << " step " << k;
            ASSERT_EQ(std::memcmp(&line.Y2, &point.y, 4), 0) << "curve " << i << " step " << k;
            previous = point;
        }
    }
    EXPECT_EQ(next, drawn.size());
    EXPECT_TRUE(limitReached);
}

#endif
