// The reading side of the Spaghetti project: the tag lines of the comment
// block, key by key, from a file or from memory. It shares no code with the
// rest of the tool, so that its fuzz target stays small.

#include "foundation/MTextFile.h"
#include "spaghetti/WSpaghetti.h"

#include <cmath>

namespace {

// Each value takes effect at once; no range is checked here, the cleaning
// of the next run does that.
bool Apply(WSpaghetti& s, const MString& key, const MString& value) {
    auto is = [&](const char* name) { return key == Narrow(name); };
    auto number = [&]() {
        float v = ParseFloat(value);
        return std::isnan(v) ? 0.0f : v;
    };
    if (is("PathBitmap"))
        s.PathBitmap = value;
    else if (is("Strings"))
        s.Strings = ParseInteger(value);
    else if (is("CurvesPerString"))
        s.CurvesPerString = ParseInteger(value);
    else if (is("Radius"))
        s.Radius = number();
    else if (is("MarginMin"))
        s.MarginMin = number();
    else if (is("MarginMax"))
        s.MarginMax = number();
    else if (is("CurveLengthMin"))
        s.CurveLengthMin = number();
    else if (is("CurveLengthMax"))
        s.CurveLengthMax = number();
    else if (is("ShapeJumps"))
        s.ShapeJumps = ParseInteger(value);
    else if (is("Depth"))
        s.Depth = number();
    else if (is("BezierMin"))
        s.BezierMin = number();
    else if (is("BezierMax"))
        s.BezierMax = number();
    else if (is("CollisionDetection"))
        s.CollisionDetection = value == Narrow("Y");
    else if (is("Shape"))
        s.Shape = ParseInteger(value);
    else if (is("Texture"))
        s.Texture = ParseInteger(value);
    else if (is("Particle"))
        s.Particle = ParseInteger(value);
    else if (is("Animation"))
        s.Animation = ParseInteger(value);
    else
        return false;
    return true;
}

} // namespace

int32_t ReadProjectParameters(MTextFile& text, WSpaghetti& spaghetti) {
    int32_t tags = 0;
    MString tag(SpaghettiTag);
    while (text.ReadLine()) {
        if (text.TokenCount() < 1 || text.Token(0) != tag) continue;
        tags++;
        Apply(spaghetti, text.Token(1), text.Token(2));
    }
    return tags;
}

int32_t ReadProjectMemory(const void* bytes, int32_t size, WSpaghetti& spaghetti) {
    MTextFile text(bytes, size);
    if (!text.IsOpen) return 0;
    return ReadProjectParameters(text, spaghetti);
}
