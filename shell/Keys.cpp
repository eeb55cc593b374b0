// The character keys and the Delete key of the main window.

#include "shell/Keys.h"

#include "shell/Commands.h"
#include "shell/Shell.h"
#include "sketch/WSketch.h"

// "g": a ghost that exists is dropped; otherwise the points as they are now
// are frozen into one, drawn behind the sketch for comparison.
static void ToggleGhost(WSketch& sketch) {
    if (sketch.GhostCount > 0) {
        sketch.GhostCount = 0;
        return;
    }
    int32_t count = sketch.PointCount;
    if (count <= 0) return;
    if (sketch.Ghost.Count < count && !sketch.Ghost.SetCount(count)) return;
    for (int32_t i = 0; i < count; i++)
        sketch.Ghost[i] = sketch.Points[i];
    sketch.GhostCount = count;
}

// The keys work in every mode. The mode letters set their mode and do not
// toggle, unlike the menu items.
void OnCharacter(char16_t character) {
    if (character >= u'A' && character <= u'Z') character = char16_t(character - u'A' + u'a');
    WSketch* sketch = TheSketch;
    switch (character) {
    case u'd':
        if (sketch) sketch->Current = -1;
        SetMode(ModeDraw);
        return;
    case u'e':
        SetMode(ModeEditSketch);
        return;
    case u'r':
        SetMode(ModeEditRoll);
        return;
    default:
        break;
    }
    if (!sketch) return;
    switch (character) {
    case u'+':
    case u'=':
        sketch->Scale(1.1);
        break;
    case u'-':
        sketch->Scale(0.9);
        break;
    case u'2':
        sketch->MakeFlat();
        break;
    case u'a':
        sketch->ToggleSmooth();
        break;
    case u'c':
        sketch->TransformAll(true, false);
        break;
    case u'g':
        ToggleGhost(*sketch);
        break;
    case u'n':
        sketch->TransformAll(false, true);
        break;
    case u'o':
        if (!sketch->MakeCircle()) sketch->MakeArc();
        break;
    default:
        break;
    }
}

void OnDeleteKey(const WKeys& keys) {
    if (TheMode != ModeEditSketch && TheMode != ModeEditRoll) return;
    WSketch* sketch = TheSketch;
    if (!sketch) return;
    if (keys.Control)
        sketch->DeleteSegment();
    else
        sketch->DeleteCurrent();
}
