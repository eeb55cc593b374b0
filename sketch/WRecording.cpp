// The freehand recorder: sampling a stroke at a fixed spacing on the screen,
// closing it when it comes back, and at the release thinning the samples and
// fitting handles to what is left.

#include "sketch/WRecording.h"

#include "foundation/MString.h"
#include "foundation/Platform.h"
#include "foundation/Settings.h"
#include "view/WView.h"

#include <new>

WRecording* TheRecording = nullptr;

// ---- Lifetime

WRecording* CreateRecording() {
    if (TheRecording) {
        ShowMessage(MString(u"There can only be 1 WRecording object"), IconError);
        return TheRecording;
    }
    WRecording* recording = new (std::nothrow) WRecording;
    if (!recording) return nullptr;
    DebugOutput(u"WRecording created\n");
    TheRecording = recording;
    return recording;
}

void DestroyRecording() {
    WRecording* recording = TheRecording;
    if (!recording) return;
    TheRecording = nullptr;
    delete recording;
    DebugOutput(u"WRecording destroyed\n");
}

void WRecording::Clear() {
    PointCount = 0;
    Closed = 0;
}

// ---- Sampling

void WRecording::AddSample(const MPoint2& m) {
    WView* view = TheView;
    if (!view) return;
    int32_t n = PointCount;

    MPoint3 p = Transform(view->ScreenToWorld, MPoint3{m.x, m.y, 0});
    // The roll points along the view axis, out of the screen, as the view
    // stands at this moment; orbiting later does not change it.
    MPoint3 r = Transform(view->InverseRotation, MPoint3{0, 0, -1});

    if (n == 0) {
        if (!Points.Grow(1, 1000)) return;
        // Only these three fields: the handles are made by Finish.
        Points[0].Position = p;
        Points[0].Roll = r;
        Points[0].Kind = KindMove;
        PointCount = 1;
        return;
    }

    if (n >= 2 && TheSettings) {
        MPoint3 first = Transform(view->WorldToScreen, Points[0].Position);
        MPoint3 here = Transform(view->WorldToScreen, p);
        float distance = Length2(MPoint2{first.x - here.x, first.y - here.y});
        if (distance <= (float)TheSettings->PointSize) {
            MPoint3 common = (p + Points[0].Position) * 0.5;
            Points[0].Position = common;
            Points[n - 1].Position = common;
            Closed = 1;
            return;
        }
    }

    // The spacing is measured in pixels, so it is the same at every zoom.
    if (Length3(p - Points[n - 1].Position) / view->Zoom < 10) return;

    // A failed growth has lost the array with the stroke in it.
    if (!Points.Grow(n + 1, 1000)) {
        Clear();
        return;
    }
    Points[n].Position = p;
    Points[n].Roll = r;
    Points[n].Kind = KindCurve;
    PointCount = n + 1;
}

// ---- Finishing

void WRecording::Finish() {
    Finish(IsKeyDown(KeyControl));
}

void WRecording::Finish(bool control) {
    int32_t n = PointCount;
    if (n < 2 || !TheView) return;
    WSketchPoint* s = Points.Data;

    // Thinning: a sample goes where the direction barely turns, measured
    // between neighbours that are already thinned. The polyline form keeps
    // only turns of more than 60 degrees, the curve form those of about 26.
    // The limits are compared as written, in double precision.
    double limit = control ? 0.5 : 0.9;
    for (int32_t i = 1; i < n - 1;) {
        MPoint3 a = s[i].Position - s[i - 1].Position;
        MPoint3 b = s[i + 1].Position - s[i].Position;
        Normalize3(a);
        Normalize3(b);
        if (Dot3(a, b) > limit) {
            for (int32_t j = i; j < n - 1; j++)
                s[j] = s[j + 1];
            n--;
        } else {
            i++;
        }
    }
    PointCount = n;

    if (control) {
        // Samples that snap to one grid point both stay, as a segment of
        // length 0 that the next clean-up removes.
        if (TheSettings && TheSettings->UseGrid && TheSettings->GridSize >= 1)
            for (int32_t i = 0; i < n; i++)
                s[i].Position = SnapToGrid(s[i].Position, TheSettings->GridSize);
        s[0].Kind = KindMove;
        for (int32_t i = 1; i < n; i++)
            s[i].Kind = KindLine;
        return;
    }

    // Handles at 0.3 of the chords on either side. A point whose chords turn
    // by less than about 87 degrees is smooth, with both handles along the
    // mean direction; a sharper corner keeps the two chord directions.
    for (int32_t i = Closed ? 0 : 1; i < n - 1; i++) {
        // At the start of a closed stroke the previous sample is the last
        // one before the closing sample, which sits on the start itself.
        int32_t previous = i == 0 ? n - 2 : i - 1;
        MPoint3 u = s[i + 1].Position - s[i].Position;
        MPoint3 v = s[i].Position - s[previous].Position;
        float lu = Length3(u);
        float lv = Length3(v);
        Normalize3(u);
        Normalize3(v);
        bool smooth = Dot3(u, v) > 0.05;
        if (smooth) {
            MPoint3 mean = u + v;
            Normalize3(mean);
            u = mean;
            v = mean;
        }
        s[i].Smooth = smooth ? 1 : 0;
        s[i].HandleIn = s[i].Position - (v * lv) * 0.3;
        s[i].HandleOut = s[i].Position + (u * lu) * 0.3;
    }

    if (!Closed) {
        MPoint3 e = s[1].Position - s[0].Position;
        s[0].HandleIn = s[0].Position - e * 0.3;
        s[0].HandleOut = s[0].Position + e * 0.3;
        s[0].Smooth = 0;
        e = s[n - 1].Position - s[n - 2].Position;
        s[n - 1].HandleIn = s[n - 1].Position - e * 0.3;
        s[n - 1].HandleOut = s[n - 1].Position + e * 0.3;
        s[n - 1].Smooth = 0;
    } else {
        // The closing record is the start's twin from the outset.
        uint8_t kind = s[n - 1].Kind;
        s[n - 1] = s[0];
        s[n - 1].Kind = kind;
    }
}
