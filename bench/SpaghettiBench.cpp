// A Spaghetti run at the largest settings, 100 strings of 1000 curves, on a
// 2048 by 2048 picture: a ring with a bar across its hole, so that strings
// meet holes, curved edges and straight ones. The seed is fixed, so the run
// is the same every time; the checksum of its curves shows it. Prints the
// time of the picture's preparation and of the run.

#include "drawing/MPicture.h"
#include "foundation/MRandom.h"
#include "spaghetti/WSpaghetti.h"

#include <chrono>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstring>

namespace {

const int32_t Side = 2048;
const float Outer = 950, Inner = 500;

bool Solid(int32_t x, int32_t y) {
    float dx = float(x) + 0.5f - Side / 2, dy = float(y) + 0.5f - Side / 2;
    float r = std::sqrt(dx * dx + dy * dy);
    if (r < Outer && r >= Inner) return true;
    return r < Inner && std::fabs(dy) < 60;
}

uint32_t Seed() {
    return 20261123u;
}

// The outline of a circle as a polygon of whole-pixel corners, in the turn
// given, as a tracer gives it.
void SampleCircle(WSpaghetti& s, float radius, bool clockwise) {
    const int32_t corners = 720;
    MPoint2 previous{};
    for (int32_t i = 0; i <= corners; i++) {
        double angle = 2 * 3.14159265358979 * (clockwise ? i : -i) / corners;
        MPoint2 p;
        p.x = float(std::floor(Side / 2 + radius * std::cos(angle)));
        p.y = float(std::floor(Side / 2 + radius * std::sin(angle)));
        if (i > 0) s.SampleSegment(previous, p);
        previous = p;
    }
}

uint64_t Checksum(const WSpaghetti& s) {
    uint64_t hash = 1469598103934665603ull;
    for (int32_t i = 0; i < s.CurveCount; i++)
        for (int32_t k = 0; k < 4; k++) {
            const float values[3] = {s.Curves[i].Points[k].x, s.Curves[i].Points[k].y,
                                     s.Curves[i].Points[k].z};
            for (float v : values) {
                uint32_t bits;
                std::memcpy(&bits, &v, sizeof bits);
                hash = (hash ^ bits) * 1099511628211ull;
            }
        }
    return hash;
}

} // namespace

int main() {
    WSpaghetti& s = TheSpaghetti;
    auto start = std::chrono::steady_clock::now();
    s.Picture = new MPicture;
    if (!s.Picture->Allocate(Side, Side, PictureBgra8)) return 1;
    MColour grid;
    grid.b = grid.g = grid.r = 229;
    for (int32_t y = 0; y < Side; y++)
        for (int32_t x = 0; x < Side; x++)
            if (Solid(x, y)) WritePixel(grid, s.Picture->PixelAddress(x, y), PictureBgra8);
    s.UnitsPerPixel = 250.0f / Side;
    SampleCircle(s, Outer, true);
    SampleCircle(s, Inner, false);
    auto prepared = std::chrono::steady_clock::now();

    s.Strings = 100;
    s.CurvesPerString = 1000;
    TheSpaghettiHooks.Seed = Seed;
    TheSpaghettiHooks.EscapeDown = [] { return false; };
    auto run = std::chrono::steady_clock::now();
    bool done = s.Generate();
    auto stop = std::chrono::steady_clock::now();
    double prepare = std::chrono::duration<double>(prepared - start).count();
    double seconds = std::chrono::duration<double>(stop - run).count();
    std::printf("shape points %d\n", s.ShapePointCount);
    std::printf("preparation %.3f s\n", prepare);
    std::printf("run %s: %d curves in %.3f s (limit 2 s)\n", done ? "done" : "refused",
                s.CurveCount, seconds);
    std::printf("checksum %016llx\n", static_cast<unsigned long long>(Checksum(s)));
    return seconds < 2 ? 0 : 2;
}
