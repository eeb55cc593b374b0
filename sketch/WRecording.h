#pragma once
// The freehand recorder: the samples of one stroke while the left button is
// down in the drawing mode, turned at the release into a curve with few
// points and fitted handles, or into a polyline when Ctrl is held.

#include "foundation/MVector.h"
#include "sketch/WSketch.h"
#include <cstdint>

struct WRecording {
    int32_t PointCount = 0;       // samples of the stroke
    MVector<WSketchPoint> Points; // Count is the capacity; kept between strokes
    uint8_t Closed = 0;           // the stroke came back to its start

    // Starts an empty stroke; the array is kept.
    void Clear();
    // One mouse position in client pixels: the first sample of a stroke, or
    // a further one if it lies at least 10 pixels from the last, or the close
    // of the stroke if it comes back within PointSize pixels of the first.
    // Each sample takes its roll from the view as it stands now. Does nothing
    // without TheView.
    void AddSample(const MPoint2& mousePosition);
    // Thins the samples and gives them handles and kinds, ready for
    // AppendPoints with the PointCount it leaves. control selects the
    // polyline form. Fewer than 2 samples, or no TheView, are left alone.
    void Finish(bool control);
    // The same, with Ctrl read from the keyboard now, at the release.
    void Finish();
};

// The one recorder of the process, set by its creation and cleared at its end.
extern WRecording* TheRecording;
// A second call shows "There can only be 1 WRecording object" and keeps the
// first. Null only if memory ran out.
WRecording* CreateRecording();
void DestroyRecording();
