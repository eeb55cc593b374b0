#pragma once
// Helpers of the scene tests: a world of settings, view, sketch and recorder
// with a recording surface of 640 by 480, the expected drawing entries, and a
// comparison of what was drawn with what was expected.

#include "drawing/MDrawSurface.h"
#include "foundation/MString.h"
#include "shell/Background.h"
#include "shell/Frame.h"
#include "shell/Shell.h"
#include "shell/WSettings.h"
#include "sketch/WRecording.h"
#include "sketch/WSketch.h"
#include "view/Scene.h"
#include "view/WView.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>
#include <vector>

namespace scenetest {

// The default colours of the settings, blue, green, red, alpha.
const MColour Background{255, 255, 255, 255};
const MColour Grid{229, 229, 229, 255};
const MColour Info{128, 128, 128, 255};
const MColour Sketch{0, 0, 0, 255};
const MColour SketchHalf{0, 0, 0, 128};
const MColour Bezier{227, 157, 107, 255};
const MColour Roll{189, 222, 75, 255};
const MColour GhostHalf{0, 255, 0, 128};

inline std::string Narrow(const MString& text) {
    std::string out;
    for (const char16_t* c = text.Chars(); *c; c++)
        out += char(*c < 128 ? *c : '?');
    return out;
}

// ---- Expected entries, in device pixels

inline MDrawOperation Line(float x1, float y1, float x2, float y2, float width, MColour colour) {
    MDrawOperation op;
    op.Kind = DrawLineKind;
    op.X1 = x1, op.Y1 = y1, op.X2 = x2, op.Y2 = y2;
    op.Width = width;
    op.Colour = colour;
    return op;
}
inline MDrawOperation Line(MPoint2 a, MPoint2 b, float width, MColour colour) {
    return Line(a.x, a.y, b.x, b.y, width, colour);
}
inline MDrawOperation Rectangle(float left, float top, float right, float bottom, MColour colour) {
    MDrawOperation op;
    op.Kind = DrawRectangleKind;
    op.X1 = left, op.Y1 = top, op.X2 = right, op.Y2 = bottom;
    op.Filled = true;
    op.Colour = colour;
    return op;
}
inline MDrawOperation Circle(float x, float y, float radius, bool filled, float width,
                             MColour colour) {
    MDrawOperation op;
    op.Kind = DrawCircleKind;
    op.X1 = x, op.Y1 = y;
    op.Radius = radius;
    op.Filled = filled;
    op.Width = width;
    op.Colour = colour;
    return op;
}
inline MDrawOperation Square(float x, float y, float radius, float angle, bool filled, float width,
                             MColour colour) {
    MDrawOperation op = Circle(x, y, radius, filled, width, colour);
    op.Kind = DrawSquareKind;
    op.Angle = angle;
    return op;
}
inline MDrawOperation Text(float left, float top, float right, float bottom, const char16_t* text,
                           int32_t size, MColour colour) {
    MDrawOperation op;
    op.Kind = DrawTextKind;
    op.X1 = left, op.Y1 = top, op.X2 = right, op.Y2 = bottom;
    op.Text = text;
    op.Font = u"Segoe UI Light";
    op.Size = size;
    op.Colour = colour;
    op.Horizontal = AlignNear;
    op.Vertical = AlignNear;
    return op;
}

inline bool IsDrawing(const MDrawOperation& op) {
    return op.Kind == DrawLineKind || op.Kind == DrawRectangleKind || op.Kind == DrawCircleKind ||
           op.Kind == DrawSquareKind || op.Kind == DrawTextKind || op.Kind == DrawBitmapKind;
}

// What the surface drew, without its creation and the making of brushes,
// stroke style and text formats.
inline std::vector<MDrawOperation> Drawn(const MDrawSurface& surface) {
    std::vector<MDrawOperation> ops;
    for (int32_t i = 0; i < surface.OperationCount; i++)
        if (IsDrawing(surface.Operations[i])) ops.push_back(surface.Operations[i]);
    return ops;
}

inline bool Near(float a, float b) {
    return std::fabs(a - b) <= 1e-3f * (1 + std::fabs(b));
}

inline bool Same(const MDrawOperation& a, const MDrawOperation& e) {
    return a.Kind == e.Kind && Near(a.X1, e.X1) && Near(a.Y1, e.Y1) && Near(a.X2, e.X2) &&
           Near(a.Y2, e.Y2) && Near(a.Radius, e.Radius) && Near(a.Angle, e.Angle) &&
           Near(a.Width, e.Width) && a.Filled == e.Filled && a.Colour.b == e.Colour.b &&
           a.Colour.g == e.Colour.g && a.Colour.r == e.Colour.r && a.Colour.a == e.Colour.a &&
           MString(a.Text) == MString(e.Text) &&
           (e.Kind != DrawTextKind || (MString(a.Font) == MString(e.Font) && a.Size == e.Size &&
                                       a.Horizontal == e.Horizontal && a.Vertical == e.Vertical));
}

// Entry by entry, within a thousandth of a pixel; names the first difference.
inline ::testing::AssertionResult SameOps(const std::vector<MDrawOperation>& actual,
                                          const std::vector<MDrawOperation>& expected) {
    size_t n = actual.size() < expected.size() ? actual.size() : expected.size();
    for (size_t i = 0; i < n; i++)
        if (!Same(actual[i], expected[i]))
            return ::testing::AssertionFailure()
                   << "entry " << i << " of " << actual.size()
                   << "\n  drawn:    " << Narrow(DescribeOperation(actual[i]))
                   << "\n  expected: " << Narrow(DescribeOperation(expected[i]));
    if (actual.size() != expected.size())
        return ::testing::AssertionFailure()
               << actual.size() << " entries drawn, " << expected.size() << " expected; next: "
               << Narrow(DescribeOperation(actual.size() > n ? actual[n] : expected[n]));
    return ::testing::AssertionSuccess();
}

// ---- Records

inline WSketchPoint Point(uint8_t kind, MPoint3 position, MPoint3 handleIn, MPoint3 handleOut,
                          MPoint3 roll = MPoint3{0, 1, 0}, uint8_t smooth = 1) {
    WSketchPoint p;
    p.Kind = kind;
    p.Position = position;
    p.HandleIn = handleIn;
    p.HandleOut = handleOut;
    p.Roll = roll;
    p.Smooth = smooth;
    return p;
}

inline void SetRecords(MVector<WSketchPoint>& array, int32_t& count,
                       const std::vector<WSketchPoint>& records) {
    array.SetCount(int32_t(records.size()) + 1);
    for (size_t i = 0; i < records.size(); i++)
        array[int32_t(i)] = records[i];
    count = int32_t(records.size());
}

// Settings at their defaults, the view 640 by 480 at Zoom 1 around the origin
// in the front view, an empty sketch and recorder, ModeDraw, no background,
// and a begun recording surface of the same size.
class SceneWorld : public ::testing::Test {
  protected:
    int Dc = 0;
    MDrawSurface Surface;

    void SetUp() override {
        CreateSettings();
        CreateView();
        TheView->Zoom = 1;
        TheView->SetViewport(640, 480);
        CreateSketch();
        CreateRecording();
        TheMode = ModeDraw;
        TheBackground = nullptr;
        Surface.CreateForDc(&Dc, WRect{0, 0, 640, 480});
        Surface.Begin();
        Surface.OperationCount = 0;
    }
    void TearDown() override {
        Surface.Release();
        DestroyRecording();
        DestroySketch();
        DestroyView();
        DestroySettings();
        TheMode = ModeDraw;
        TheBackground = nullptr;
    }

    void SetSketch(const std::vector<WSketchPoint>& records, int32_t current = -1) {
        SetRecords(TheSketch->Points, TheSketch->PointCount, records);
        TheSketch->Current = current;
    }
    // The sketch alone, as the frame draws it in a mode.
    std::vector<MDrawOperation> DrawnSketch(int32_t mode) {
        Surface.OperationCount = 0;
        DrawSketch(Surface, *TheView, *TheSettings, *TheSketch, mode);
        return Drawn(Surface);
    }
    MPoint2 Screen(MPoint3 world) const {
        MPoint3 s = TheView->ToScreen(world);
        return MPoint2{s.x, s.y};
    }
};

} // namespace scenetest
