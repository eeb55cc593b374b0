// The mouse gestures of the three modes. Positions are client pixels with y
// downward; the keys are those read at the head of the message, not the
// message's own flags.

#include "shell/Input.h"

#include "shell/Shell.h"
#include "sketch/WRecording.h"
#include "sketch/WSketch.h"

void OnLeftButtonDown(const MPoint2& position, const WKeys& keys) {
    (void)keys;
    if (TheMode == ModeDraw) {
        if (!TheRecording) return;
        TheRecording->Clear();
        TheRecording->AddSample(position);
        return;
    }
    // Edit modes: insert with Alt, hit test with Shift as tie-break, curve
    // hit, Point window refresh, TheLastMouse, TheLeftDown (point editing).
}

void OnLeftButtonUp(const MPoint2& position, const WKeys& keys) {
    (void)position;
    if (TheMode == ModeDraw) {
        // A click without a move leaves one sample, which Finish leaves alone
        // and the sketch takes as a lone KindMove record.
        WRecording* recording = TheRecording;
        if (recording) {
            recording->Finish(keys.Control);
            if (TheSketch) TheSketch->AppendPoints(recording->Points.Data, recording->PointCount);
            recording->Clear();
        }
    }
    // Edit modes: the grid snap of the selected point, then Commit, so that
    // a drag is one undo step (point editing).
    TheLeftDown = false;
}

void OnMouseMove(const MPoint2& position, const WKeys& keys) {
    (void)keys;
    if (!TheMouseEnabled) return;
    if (TheMode == ModeDraw) {
        if (TheRecording && TheRecording->PointCount > 0) TheRecording->AddSample(position);
        return;
    }
    // Edit modes: TheLastMouse follows every move; drag, pan, orbit and roll
    // by the buttons and Ctrl (point editing and the camera's Orbit).
}
