// Whole frames of a large generated sketch on the recording surface, pinned
// down by a digest of every entry (kind, the bits of every number, colour,
// texts and fonts): the digests were taken from the straightforward drawing
// code, and any change to what a frame draws, or to its order, changes them.
// The small scenes with expected entries are in SceneTest.cpp and
// SceneGridTest.cpp.

#if !defined(_WIN32)

#include "SceneTestSupport.h"

#include "bench/GeneratedSketch.h"

#include <cstring>

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

#endif
