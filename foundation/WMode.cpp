#include "foundation/WMode.h"

WMode TheMode = ModeDraw;

MString ModeText(int mode) {
    switch (mode) {
    case ModeDraw:
        return MString(u"DRAW FREEHAND");
    case ModeEditSketch:
        return MString(u"EDIT SKETCH");
    case ModeEditRoll:
        return MString(u"EDIT ROLL");
    default:
        return MString(u"UNKNOWN MODE");
    }
}
