// Writes the 2D EPS files of a known flat sketch, stroked and solid, through
// SaveEps, and the sketch's bounds beside them, for the Ghostscript check in
// tests/ghostscript/render_eps.sh.
//
// Usage: write_sample_eps <folder>
// Makes <folder>/stroked.eps, <folder>/solid.eps and <folder>/bounds.txt
// ("min x, max x, min y, max y" in sketch units, one line). Exit code 0 when
// all three were written.

#include "eps/EpsWriter.h"
#include "shell/WSettings.h"
#include "sketch/WSketch.h"

#include <cstdio>
#include <string>

namespace {

WSketchPoint Point(uint8_t kind, float x, float y, float inX, float inY, float outX, float outY) {
    WSketchPoint p;
    p.Position = MPoint3{x, y, 0};
    p.HandleIn = MPoint3{inX, inY, 0};
    p.HandleOut = MPoint3{outX, outY, 0};
    p.Roll = MPoint3{0, 0, 1};
    p.Kind = kind;
    return p;
}

// One closed outline: a rectangle from (20, 30) to (120, 90) whose right side
// is a curve bulging out to x 150, so that the bounds come from a sampled
// curve and not from a point.
void LoadSample(WSketch& sketch) {
    const WSketchPoint points[] = {
        Point(KindMove, 20, 30, 20, 40, 30, 30),     Point(KindLine, 120, 30, 110, 30, 160, 30),
        Point(KindCurve, 120, 90, 160, 90, 110, 90), Point(KindLine, 20, 90, 30, 90, 20, 80),
        Point(KindLine, 20, 30, 20, 40, 30, 30),
    };
    const int32_t count = int32_t(sizeof points / sizeof points[0]);
    sketch.Points.SetCount(count);
    for (int32_t i = 0; i < count; i++)
        sketch.Points[i] = points[i];
    sketch.PointCount = count;
}

bool Save(const std::string& folder, const char* name, bool solid) {
    LoadSample(*TheSketch);
    TheSettings->SaveSolid = solid;
    std::string narrow = folder + "/" + name;
    MString path;
    path.AssignNarrow(narrow.c_str(), 65001);
    if (!SaveEps(path)) {
        std::fprintf(stderr, "SaveEps failed for %s\n", narrow.c_str());
        return false;
    }
    return true;
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: write_sample_eps <folder>\n");
        return 2;
    }
    std::string folder = argv[1];
    WSettings settings;
    settings.SaveRoll = false;
    settings.MaxLinesPerCurve = 100;
    TheSettings = &settings;
    if (!CreateSketch()) return 1;

    bool ok = Save(folder, "stroked.eps", false) && Save(folder, "solid.eps", true);
    if (ok) {
        float bounds[6];
        TheSketch->GetBounds(bounds);
        std::FILE* file = std::fopen((folder + "/bounds.txt").c_str(), "w");
        ok = file && std::fprintf(file, "%.6f %.6f %.6f %.6f\n", double(bounds[0]),
                                  double(bounds[1]), double(bounds[2]), double(bounds[3])) > 0;
        if (file) std::fclose(file);
    }
    DestroySketch();
    TheSettings = nullptr;
    return ok ? 0 : 1;
}
