// The background picture, loaded by its command and drawn by the frame.

#include "shell/Background.h"

#include "drawing/FilePrompt.h"
#include "drawing/MPicture.h"
#include "view/WView.h"

void* TheBackground = nullptr;
float TheBackgroundZoom = 0;
MPoint3 TheBackgroundPivot;

void ReleaseBackground() {
    if (!TheBackground) return;
    ReleaseBackgroundBitmap(TheBackground);
    TheBackground = nullptr;
}

void LoadBackgroundPicture() {
    ReleaseBackground();
    MString path = FilePrompt(PromptSelectPicture);
    if (!path.IsEmpty()) {
        // The bitmap holds its own copy of the pixels; the picture goes at
        // the end of this block.
        MPicture picture;
        if (picture.Load(path) && picture.IsUsable()) TheBackground = MakeBackgroundBitmap(picture);
    }
    // Even without a picture: the world scale at this moment is what a later
    // picture would be glued to, and the frame reads both only with one.
    if (TheView) {
        TheBackgroundZoom = TheView->Zoom;
        TheBackgroundPivot = TheView->Pivot;
    }
}
