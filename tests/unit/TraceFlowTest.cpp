// The trace flow: the built-in tracer on pictures made by ImageMagick and by
// MPicture::Save, and the external tracer for real (Debian's potrace behind
// a link named potrace.exe) and through a recording stand-in, with the
// command text, the loaded result and the deleted temporary files.

#include "eps/TraceFlow.h"

#include "ShellTestSupport.h"
#include "WTracerTestSupport.h"
#include "drawing/MPicture.h"
#include "eps/LoadSketch.h"
#include "eps/WTracer.h"
#include "foundation/Folders.h"
#include "shell/SketchFile.h"

#include <gtest/gtest.h>

#ifdef _WIN32
#include <windows.h>

#include <objbase.h>
#endif

#include <algorithm>
#include <cmath>

namespace {

MString TracerPicture(const std::string& name) {
    return scratch::Text(scratch::fs::path(TEST_SOURCE_DIR) / "tests/data/tracer" / name);
}

int Curves(const WSketch& sketch) {
    int count = 0;
    for (int32_t i = 0; i < sketch.PointCount; i++)
        count += sketch.Points[i].Kind == KindMove;
    return count;
}

// Width and height of the sketch.
std::pair<float, float> Size(const WSketch& sketch) {
    float box[6];
    sketch.GetBounds(box);
    return {box[1] - box[0], box[3] - box[2]};
}

class TraceFlowTest : public ShellFixture {
  protected:
    bool Com = false;

    void SetUp() override {
        ShellFixture::SetUp();
        TheInternalTracer = TraceInternal;
        TheExternalTracer = TraceExternal;
#ifdef _WIN32
        Com = SUCCEEDED(CoInitialize(nullptr)); // the picture decoders
#endif
    }
    void TearDown() override {
        ShellFixture::TearDown();
#ifdef _WIN32
        if (Com) CoUninitialize();
#endif
    }
    MString TempFolder() {
        return JoinPath(PathOf("appdata/Brambleworks/Quillmere"), u"Temp");
    }
    bool TempFilesGone() {
        return !Exists(JoinPath(TempFolder(), u"temp.bmp")) &&
               !Exists(JoinPath(TempFolder(), u"temp.eps"));
    }
    // An executable shell script named potrace.exe in the test's folder.
    MString StandIn(const std::string& body) {
        scratch::fs::create_directories(Folder / "bin");
        MString path = WriteFile("bin/potrace.exe", "#!/bin/sh\n" + body);
        scratch::fs::permissions(scratch::Path(path), scratch::fs::perms::owner_all);
        return path;
    }
};

} // namespace

// ---- IsKnownTracer

TEST_F(TraceFlowTest, KnownTracerIsPotraceExeInAnyCase) {
    EXPECT_TRUE(IsKnownTracer(MString(u"C:\\Tools\\POTRACE.EXE")));
    EXPECT_TRUE(IsKnownTracer(MString(u"potrace.exe")));
    EXPECT_TRUE(IsKnownTracer(MString(u"D:PoTrace.Exe")));
    EXPECT_TRUE(IsKnownTracer(MString(u"/usr/local/bin/potrace.exe")));
    EXPECT_FALSE(IsKnownTracer(MString(u"/usr/bin/potrace")));
    EXPECT_FALSE(IsKnownTracer(MString(u"C:\\Tools\\potrace.exe\\")));
    EXPECT_FALSE(IsKnownTracer(MString(u"C:\\Tools\\autotrace.exe")));
    EXPECT_FALSE(IsKnownTracer(MString()));
}

// ---- Built-in tracer

// The logo: a square ring and a block, 45 by 30 pixels together; the
// outlines come as three curves (outer border, hole, block), scaled so that
// the width is 200 and centred.
TEST_F(TraceFlowTest, InternalTracerTracesTheLogo) {
    Load(OpenCorner());
    ASSERT_TRUE(TraceInternal(TracerPicture("logo.png")));
    EXPECT_EQ(Curves(S()), 3);
    auto size = Size(S());
    EXPECT_NEAR(size.first, 200, 1e-3);
    EXPECT_NEAR(size.second, 30 * 200.0f / 45, 1e-3);
    float box[6];
    S().GetBounds(box);
    EXPECT_NEAR(box[0] + box[1], 0, 1e-3);
    EXPECT_NEAR(box[2] + box[3], 0, 1e-3);
    EXPECT_EQ(S().Modified, 0);
    EXPECT_EQ(S().Current, -1);
    // The undo ring holds the traced state alone.
    EXPECT_EQ(S().Undo->Depth, 1);
    EXPECT_TRUE(settings.Centre);
    EXPECT_TRUE(settings.Scale);
    EXPECT_EQ(settings.MaxLinesPerCurve, 100);
    // Every curve is closed: it ends where it starts.
    for (int32_t i = 0; i < S().PointCount; i++) {
        if (S().Points[i].Kind != KindMove) continue;
        int32_t end = S().CurveEnd(i);
        EXPECT_TRUE(Coincide(S().Points[i].Position, S().Points[end].Position)) << i;
        EXPECT_EQ(S().FindTwin(i), end);
    }
    // The picture's y axis points down: the block, right in the picture,
    // reaches higher than the ring.
    for (int32_t i = 0; i < S().PointCount; i++)
        EXPECT_NEAR(S().Points[i].Position.z, 0, 1e-6);
}

TEST_F(TraceFlowTest, FullyTransparentPictureLeavesAnEmptySketch) {
    Load(OpenCorner());
    int32_t before = S().Undo->Depth;
    EXPECT_FALSE(TraceInternal(TracerPicture("transparent.png")));
    EXPECT_EQ(S().PointCount, 0);
    EXPECT_EQ(S().Modified, 0);
    // The emptied sketch was recorded, so undo brings the old one back.
    EXPECT_EQ(S().Undo->Depth, before + 1);
}

TEST_F(TraceFlowTest, PictureThatDoesNotLoadLeavesAnEmptySketch) {
    Load(OpenCorner());
    EXPECT_FALSE(TraceInternal(PathOf("missing.png")));
    EXPECT_EQ(S().PointCount, 0);
    WriteFile("broken.png", "\x89PNG\r\n\x1a\nnot really");
    EXPECT_FALSE(TraceInternal(PathOf("broken.png")));
    EXPECT_EQ(S().PointCount, 0);
}

// No alpha channel: the whole rectangle, whatever is drawn in it.
TEST_F(TraceFlowTest, PictureWithoutAlphaTracesInternallyAsItsRectangle) {
    ASSERT_TRUE(TraceInternal(TracerPicture("noalpha.png")));
    EXPECT_EQ(Curves(S()), 1);
    auto size = Size(S());
    EXPECT_NEAR(size.first, 200, 1e-3);
    EXPECT_NEAR(size.second, 200, 1e-3);
    // Four corners and the closing record.
    EXPECT_EQ(S().PointCount, 5);
}

// MPicture::Save writes no alpha: a disc drawn with alpha comes back as the
// rectangle.
TEST_F(TraceFlowTest, PictureSavedByTheProgramHasNoAlpha) {
    MPicture picture;
    tracertest::Draw(picture, 50, 25, {{10, 5, 20, 15}});
    MString path = PathOf("saved.png");
    ASSERT_TRUE(picture.Save(path));
    ASSERT_TRUE(TraceInternal(path));
    auto size = Size(S());
    EXPECT_NEAR(size.first, 200, 1e-3);
    EXPECT_NEAR(size.second, 100, 1e-3);
    EXPECT_EQ(S().PointCount, 5);
}

TEST_F(TraceFlowTest, OnePixelPictureIsASquare) {
    ASSERT_TRUE(TraceInternal(TracerPicture("one.png")));
    auto size = Size(S());
    EXPECT_NEAR(size.first, 200, 1e-3);
    EXPECT_NEAR(size.second, 200, 1e-3);
}

// A 2 by 2 block is kept by the small branch (32 x 32) and dropped by the
// large one (33 x 33).
TEST_F(TraceFlowTest, ThirtyTwoAndThirtyThreePixelPictures) {
    ASSERT_TRUE(TraceInternal(TracerPicture("small32.png")));
    EXPECT_EQ(Curves(S()), 1);
    EXPECT_FALSE(TraceInternal(TracerPicture("large33.png")));
    EXPECT_EQ(S().PointCount, 0);
}

TEST_F(TraceFlowTest, PictureWiderThan2048IsScaledDownBeforeTracing) {
    WTracer tracer;
    ASSERT_TRUE(tracer.Load(TracerPicture("wide2049.png")));
    EXPECT_EQ(tracer.Width, 2048 + 2);
    EXPECT_EQ(tracer.Height, 39 + 2); // 40 * 2048 / 2049
    tracer.Trace();
    auto outlines = tracertest::Present(tracer);
    ASSERT_EQ(outlines.size(), 1u);
    int minX = 1 << 30, maxX = -1;
    for (auto p : tracertest::Points(*outlines[0])) {
        minX = std::min(minX, p.first);
        maxX = std::max(maxX, p.first);
    }
    // The block's sides, 100 and 2000, scaled by 2048 / 2049 and rounded by
    // the box filter to a pixel.
    EXPECT_NEAR(minX, 100 * 2048 / 2049.0, 1);
    EXPECT_NEAR(maxX, 2000 * 2048 / 2049.0, 1);
}

// The outlines appended one by one, each with AppendPoints, as the plain
// reading of the flow has it, give the same records as the one append of
// TraceInternal.
TEST_F(TraceFlowTest, OneAppendGivesTheRecordsOfAnAppendPerOutline) {
    for (const char* name : {"logo.png", "small32.png"}) {
        WTracer tracer;
        tracer.Detail = 2;
        ASSERT_TRUE(tracer.Load(TracerPicture(name)));
        tracer.Trace();
        S().PointCount = 0;
        for (int32_t i = 0; i < tracer.OutlineCount; i++) {
            const WTraceOutline* outline = tracer.Outlines[i];
            if (!outline || outline->PointCount == 0) continue;
            WRecording& recording = *TheRecording;
            recording.Clear();
            int32_t samples = outline->PointCount + (outline->Closed ? 1 : 0);
            recording.Points.Grow(samples, 1000);
            for (int32_t k = 0; k < samples; k++) {
                WTracePoint corner = outline->Points[k % outline->PointCount];
                WSketchPoint point;
                point.Position = MPoint3{float(corner.x), -float(corner.y), 0};
                point.Roll = MPoint3{0, 0, 1};
                point.Kind = k == 0 ? KindMove : KindCurve;
                recording.Points[k] = point;
            }
            recording.PointCount = samples;
            recording.Finish();
            S().AppendPoints(recording.Points.Data, recording.PointCount);
            recording.Clear();
        }
        ASSERT_TRUE(FinishLoad(true, true));
        std::vector<WSketchPoint> plain(S().Points.Data, S().Points.Data + S().PointCount);

        ASSERT_TRUE(TraceInternal(TracerPicture(name)));
        ASSERT_EQ(S().PointCount, int32_t(plain.size())) << name;
        for (int32_t i = 0; i < S().PointCount; i++) {
            const WSketchPoint &a = S().Points[i], &b = plain[size_t(i)];
            for (auto pair :
                 {std::make_pair(a.Position, b.Position), std::make_pair(a.HandleIn, b.HandleIn),
                  std::make_pair(a.HandleOut, b.HandleOut), std::make_pair(a.Roll, b.Roll)}) {
                EXPECT_EQ(pair.first.x, pair.second.x) << name << " " << i;
                EXPECT_EQ(pair.first.y, pair.second.y) << name << " " << i;
                EXPECT_EQ(pair.first.z, pair.second.z) << name << " " << i;
            }
            EXPECT_EQ(a.Kind, b.Kind);
            EXPECT_EQ(a.Smooth, b.Smooth);
        }
    }
}

// ---- The command and the external tracer

TEST_F(TraceFlowTest, CommandTextQuotesTheThreePaths) {
    EXPECT_EQ(Text(TraceCommand(MString(u"C:\\Tools\\potrace.exe"), MString(u"C:\\T\\temp.eps"),
                                MString(u"C:\\T\\temp.bmp"))),
              u"\"C:\\Tools\\potrace.exe\" -c -q -o \"C:\\T\\temp.eps\" \"C:\\T\\temp.bmp\"");
}

// The stand-ins below are shell scripts and the real potrace is Debian's:
// these run natively. Under Wine the Windows-side tests run a stand-in
// potrace.exe through the command interpreter.
#ifndef _WIN32

TEST_F(TraceFlowTest, UnknownTracerRunsNothing) {
    Load(OpenCorner());
    MString marker = PathOf("ran");
    settings.ExternalTracer = StandIn("touch '" + Bytes(marker) + "'\n");
    settings.ExternalTracer = PathOf("bin/autotrace.exe");
    EXPECT_FALSE(TraceExternal(TracerPicture("logo.png")));
    EXPECT_FALSE(Exists(marker));
    EXPECT_EQ(S().PointCount, 3);
    EXPECT_EQ(Messages.Count, 0);
}

// A stand-in records its arguments and the picture it was given, and writes
// a known EPS file: the command line, the picture, the load and the clean-up
// of the temporary files are all visible.
TEST_F(TraceFlowTest, ExternalTracerGetsTheCommandAndItsOutputIsLoaded) {
    MString arguments = PathOf("arguments.txt");
    MString copy = PathOf("given.bmp");
    MString eps = WriteFile("known.eps", ThreePointEps());
    settings.ExternalTracer =
        StandIn("printf '%s\\n' \"$@\" > '" + Bytes(arguments) + "'\n" + "cp \"$5\" '" +
                Bytes(copy) + "'\n" + "cp '" + Bytes(eps) + "' \"$4\"\n");
    ASSERT_TRUE(TraceExternal(TracerPicture("logo.png")));
    MString folder = TempFolder();
    EXPECT_EQ(ReadFile(arguments), "-c\n-q\n-o\n" + Bytes(JoinPath(folder, u"temp.eps")) + "\n" +
                                       Bytes(JoinPath(folder, u"temp.bmp")) + "\n");
    // The three points of the file, loaded as written.
    ASSERT_EQ(S().PointCount, 3);
    ExpectPoint(S().Points[2].Position, 100, 50, 0);
    EXPECT_TRUE(TempFilesGone());
    EXPECT_TRUE(FolderExists(folder));

    // The picture went as black on white: opaque black, transparent white.
    MPicture given;
    ASSERT_TRUE(given.Load(copy));
    EXPECT_EQ(given.Width, 60u);
    MColour inside = ReadPixel(given.PixelAddress(12, 12), given.Format);
    MColour hole = ReadPixel(given.PixelAddress(20, 20), given.Format);
    EXPECT_EQ(inside.r, 0);
    EXPECT_EQ(inside.g, 0);
    EXPECT_EQ(hole.r, 255);
    EXPECT_EQ(hole.b, 255);
}

TEST_F(TraceFlowTest, ExternalTracerWithoutOutputFailsSilentlyAndCleansUp) {
    Load(OpenCorner());
    settings.ExternalTracer = StandIn("exit 1\n");
    EXPECT_FALSE(TraceExternal(TracerPicture("logo.png")));
    EXPECT_EQ(Messages.Count, 0);
    EXPECT_TRUE(TempFilesGone());
    // An empty output counts as none.
    settings.ExternalTracer = StandIn(": > \"$4\"\n");
    EXPECT_FALSE(TraceExternal(TracerPicture("logo.png")));
    EXPECT_EQ(Messages.Count, 0);
    EXPECT_TRUE(TempFilesGone());
    EXPECT_EQ(S().PointCount, 3);
}

TEST_F(TraceFlowTest, ExternalTracerWithAPictureThatDoesNotLoad) {
    Load(OpenCorner());
    MString marker = PathOf("ran");
    settings.ExternalTracer = StandIn("touch '" + Bytes(marker) + "'\n");
    EXPECT_FALSE(TraceExternal(PathOf("missing.png")));
    EXPECT_FALSE(Exists(marker));
    EXPECT_EQ(S().PointCount, 3);
}

// Debian's potrace behind a link named potrace.exe: the alpha shape of the
// logo comes back as its three paths.
TEST_F(TraceFlowTest, RealPotraceTracesTheAlphaShape) {
    scratch::fs::create_directories(Folder / "potrace");
    scratch::fs::create_symlink("/usr/bin/potrace", Folder / "potrace" / "potrace.exe");
    settings.ExternalTracer = PathOf("potrace/potrace.exe");
    ASSERT_TRUE(TraceExternal(TracerPicture("logo.png")));
    EXPECT_EQ(Curves(S()), 3);
    auto size = Size(S());
    EXPECT_NEAR(size.first, 200, 1e-3);
    EXPECT_NEAR(size.second, 30 * 200.0f / 45, 2);
    EXPECT_TRUE(TempFilesGone());
}

// Without alpha the external tracer works from brightness: the black disc,
// not the rectangle.
TEST_F(TraceFlowTest, RealPotraceTracesTheDarkPartsOfAPictureWithoutAlpha) {
    scratch::fs::create_directories(Folder / "potrace");
    scratch::fs::create_symlink("/usr/bin/potrace", Folder / "potrace" / "potrace.exe");
    settings.ExternalTracer = PathOf("potrace/potrace.exe");
    ASSERT_TRUE(TraceExternal(TracerPicture("noalpha.png")));
    EXPECT_EQ(Curves(S()), 1);
    // A disc: the points lie on a circle of radius 100 about the centre.
    for (int32_t i = 0; i < S().PointCount; i++) {
        const MPoint3& p = S().Points[i].Position;
        EXPECT_NEAR(std::sqrt(p.x * p.x + p.y * p.y), 100, 8) << i;
    }
    EXPECT_TRUE(TempFilesGone());
}

#endif

// ---- Through "Trace bitmap..."

TEST_F(TraceFlowTest, TraceBitmapSavesFilledShapes) {
    Prompt(TracerPicture("logo.png"));
    TraceBitmap();
    EXPECT_EQ(Curves(S()), 3);
    EXPECT_TRUE(TheFileName.IsEmpty());
    EXPECT_TRUE(settings.SaveSolid);
    EXPECT_FALSE(settings.SaveRoll);
    EXPECT_EQ(TheMode, ModeEditSketch);
    MString path = PathOf("traced.eps");
    ASSERT_TRUE(SaveEps(path));
    std::string text = ReadFile(path);
    EXPECT_NE(text.find("closepath\r\nfill\r\n"), std::string::npos);
    EXPECT_EQ(text.find("stroke"), std::string::npos);
}

// An outline that is not closed cannot be saved solid.
TEST_F(TraceFlowTest, SolidSaveOfAnOpenOutlineIsRefused) {
    Prompt(TracerPicture("logo.png"));
    TraceBitmap();
    // Open the first curve by moving its closing record away.
    int32_t end = S().CurveEnd(0);
    S().Points[end].Position.x += 50;
    MString path = PathOf("open.eps");
    EXPECT_FALSE(SaveEps(path));
    EXPECT_EQ(LastMessage(), u"Your sketch can't be saved as solid because not all curves are "
                             u"closed");
    EXPECT_FALSE(Exists(path));
}

#ifndef _WIN32
TEST_F(TraceFlowTest, TracerNamedInCapitalsRunsExternally) {
    MString eps = WriteFile("known.eps", ThreePointEps());
    StandIn("cp '" + Bytes(eps) + "' \"$4\"\n");
    scratch::fs::rename(Folder / "bin/potrace.exe", Folder / "bin/POTRACE.EXE");
    settings.ExternalTracer = PathOf("bin/POTRACE.EXE");
    Prompt(TracerPicture("logo.png"));
    TraceBitmap();
    EXPECT_EQ(S().PointCount, 3);
    EXPECT_EQ(Messages.Count, 0);
    EXPECT_TRUE(TempFilesGone());
}
#endif
